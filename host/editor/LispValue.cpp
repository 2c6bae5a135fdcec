#include "host/editor/LispValue.h"

#include <algorithm>
#include <cwchar>
#include <utility>

#include "host/editor/SelectionSets.h"
#include "host/editor/Words.h"

namespace host::editor::lisp {

namespace {

const PairPtr* pairOf(const Value& value) {
    return std::get_if<PairPtr>(&value);
}

int nesting(const Value& first, const Value& rest) {
    const PairPtr* inner = pairOf(first);
    const PairPtr* next = pairOf(rest);
    return std::max(inner == nullptr ? 1 : (*inner)->depth + 1,
                    next == nullptr ? 1 : (*next)->depth);
}

std::size_t sizeOf(const Value& value) {
    if (const PairPtr* pair = pairOf(value)) return (*pair)->size;
    const auto* plain = std::get_if<std::wstring>(&value);
    return plain == nullptr ? 1 : 1 + plain->size() / 64;
}

// The nil that ends a list is none of its values.
std::size_t sizeOf(const Value& first, const Value& rest) {
    return sizeOf(first) + (isNil(rest) ? 0 : sizeOf(rest));
}

std::wstring quotedText(const std::wstring& plain) {
    std::wstring quoted = L"\"";
    for (const wchar_t c : plain) {
        switch (c) {
            case L'"':
                quoted += L"\\\"";
                break;
            case L'\\':
                quoted += L"\\\\";
                break;
            case L'\n':
                quoted += L"\\n";
                break;
            case L'\r':
                quoted += L"\\r";
                break;
            case L'\t':
                quoted += L"\\t";
                break;
            default:
                quoted += c;
        }
    }
    return quoted + L'"';
}

std::wstring hexText(std::int64_t number) {
    wchar_t digits[20];
    std::swprintf(digits, 20, L"%llx", static_cast<unsigned long long>(number));
    return digits;
}

std::wstring listText(const Value& value, bool quoted) {
    std::wstring all = L"(";
    Value dotted;
    const std::vector<Value> parts = members(value, &dotted);
    for (std::size_t i = 0; i < parts.size(); ++i) {
        if (i != 0) all += L' ';
        all += text(parts[i], quoted);
    }
    if (!isNil(dotted)) all += L" . " + text(dotted, quoted);
    return all + L')';
}

}  // namespace

Error::Error(std::wstring sentence, Position where)
    : std::runtime_error(toUtf8(sentence)), sentence_(std::move(sentence)), where_(where) {}

HeldSet::HeldSet(std::int64_t first, std::int64_t second) : name_{first, second} {
    SelectionSets::instance().keep(name_);
}

HeldSet::~HeldSet() {
    SelectionSets::instance().free(name_);
}

Pair::Pair(Value first, Value rest, Position position)
    : car(std::move(first)),
      cdr(std::move(rest)),
      where(position),
      depth(nesting(car, cdr)),
      size(sizeOf(car, cdr)) {}

Pair::~Pair() {
    auto* next = std::get_if<PairPtr>(&cdr);
    PairPtr rest = next == nullptr ? nullptr : std::move(*next);
    while (rest != nullptr && rest.use_count() == 1) {
        auto* after = std::get_if<PairPtr>(&const_cast<Pair&>(*rest).cdr);
        PairPtr following = after == nullptr ? nullptr : std::move(*after);
        rest = std::move(following);
    }
}

Value cons(Value first, Value rest, Position where) {
    if (nesting(first, rest) > deepestNesting) {
        throw Error(L"lists are nested more than " + std::to_wstring(deepestNesting) + L" deep",
                    where);
    }
    if (sizeOf(first, rest) > largestSize) {
        throw Error(L"a list holds more than " + std::to_wstring(largestSize) + L" values", where);
    }
    // Not made const: a pair takes down those behind it.
    return std::make_shared<Pair>(std::move(first), std::move(rest), where);
}

Value list(std::vector<Value> values, Position where, Value tail) {
    Value all = std::move(tail);
    for (auto value = values.rbegin(); value != values.rend(); ++value) {
        all = cons(std::move(*value), std::move(all), where);
    }
    return all;
}

std::vector<Value> members(const Value& value, Value* dotted) {
    std::vector<Value> all;
    const Value* rest = &value;
    while (const PairPtr* pair = pairOf(*rest)) {
        all.push_back((*pair)->car);
        rest = &(*pair)->cdr;
    }
    if (dotted != nullptr) *dotted = *rest;
    return all;
}

std::optional<AcGePoint3d> pointOf(const Value& value) {
    Value dotted;
    const std::vector<Value> parts = members(value, &dotted);
    if (!isNil(dotted) || parts.size() < 2 || parts.size() > 3) return std::nullopt;
    AcGePoint3d point;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        const auto* whole = std::get_if<std::int32_t>(&parts[i]);
        const auto* real = std::get_if<double>(&parts[i]);
        if (whole == nullptr && real == nullptr) return std::nullopt;
        point[static_cast<unsigned>(i)] = whole != nullptr ? *whole : *real;
    }
    return point;
}

std::wstring text(const Value& value, bool quoted) {
    struct Show {
        bool quoted;
        std::wstring operator()(const Nil&) const { return L"nil"; }
        std::wstring operator()(const Symbol& symbol) const { return symbol.name; }
        std::wstring operator()(std::int32_t number) const { return std::to_wstring(number); }
        std::wstring operator()(double number) const { return numberText(number); }
        std::wstring operator()(const std::wstring& plain) const {
            return quoted ? quotedText(plain) : plain;
        }
        std::wstring operator()(const AcDbObjectId& id) const {
            return L"<Entity name: " + hexText(id.asOldId()) + L">";
        }
        std::wstring operator()(const SetPtr& set) const {
            return L"<Selection set: " + hexText(set->name()[0]) + L">";
        }
        std::wstring operator()(const PairPtr& pair) const { return listText(pair, quoted); }
    };
    return std::visit(Show{quoted}, value);
}

}  // namespace host::editor::lisp
