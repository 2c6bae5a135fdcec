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

// The nil that ends a list is none of its values.
std::size_t sizeOf(const Value& first, const Value& rest) {
    return lisp::sizeOf(first) + (isNil(rest) ? 0 : lisp::sizeOf(rest));
}

std::size_t membersOf(const std::int64_t* name) {
    const SelectionSet* set = SelectionSets::instance().find(name);
    return set == nullptr ? 0 : set->members.size();
}

std::wstring hexText(std::int64_t number) {
    wchar_t digits[20];
    std::swprintf(digits, 20, L"%llx", static_cast<unsigned long long>(number));
    return digits;
}

// Writes a value as long as there is room.
class Printer {
  public:
    Printer(bool quoted, std::size_t most)
        : quoted_(quoted), most_(std::min(most, std::wstring::npos - 1)) {}

    void operator()(const Nil&) { all_ += L"nil"; }
    void operator()(const Symbol& symbol) { add(symbol.name()); }
    void operator()(std::int32_t number) { all_ += std::to_wstring(number); }
    void operator()(double number) { all_ += numberText(number); }
    void operator()(const Text& text) { quoted_ ? addQuoted(text.plain()) : add(text.plain()); }
    void operator()(const AcDbObjectId& id) {
        all_ += L"<Entity name: " + hexText(id.asOldId()) + L">";
    }
    void operator()(const SetPtr& set) {
        all_ += L"<Selection set: " + hexText(set->name()[0]) + L">";
    }
    void operator()(const PairPtr& pair) {
        const Value* rest = &pair->cdr;
        all_ += L'(';
        std::visit(*this, pair->car);
        while (const PairPtr* next = isFull() ? nullptr : pairOf(*rest)) {
            all_ += L' ';
            std::visit(*this, (*next)->car);
            rest = &(*next)->cdr;
        }
        if (!isNil(*rest) && !isFull()) {
            all_ += L" . ";
            std::visit(*this, *rest);
        }
        all_ += L')';
    }

    std::wstring take() {
        if (!isFull()) return std::move(all_);
        return all_.substr(0, most_) + L"...";
    }

  private:
    bool isFull() const { return all_.size() > most_; }

    void add(const std::wstring& plain) { all_.append(plain, 0, most_ + 1); }

    void addQuoted(const std::wstring& plain) {
        all_ += L'"';
        for (auto c = plain.begin(); c != plain.end() && !isFull(); ++c) {
            const std::size_t escape = std::wstring_view(L"\"\\\n\r\t").find(*c);
            if (escape == std::wstring_view::npos)
                all_ += *c;
            else
                (all_ += L'\\') += L"\"\\nrt"[escape];
        }
        all_ += L'"';
    }

    bool quoted_;
    std::size_t most_;
    std::wstring all_;
};

constexpr std::size_t longestBrief = 100;

std::size_t roomTaken = 0;

}  // namespace

Error::Error(std::wstring sentence, Position where)
    : std::runtime_error(toUtf8(sentence)), sentence_(std::move(sentence)), where_(where) {}

Room::Room(std::size_t size) : size_(size) {
    roomTaken += size_;
}

Room::~Room() {
    roomTaken -= size_;
}

std::size_t Room::taken() {
    return roomTaken;
}

void needRoom(std::size_t more, Position where) {
    if (more <= mostRoom && Room::taken() <= mostRoom - more) return;
    throw Error(L"all values together are more than " + std::to_wstring(mostRoom), where);
}

Text::Text(std::wstring plain, Position where) {
    needRoom(sizeOf(plain), where);
    kept_ = std::make_shared<const Kept>(std::move(plain));
}

HeldSet::HeldSet(std::int64_t first, std::int64_t second)
    : name_{first, second}, size_(1 + membersOf(name_) / 8), room_(size_) {
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

const std::wstring* textIn(const Value& value) {
    const auto* text = std::get_if<Text>(&value);
    return text == nullptr ? nullptr : &text->plain();
}

std::size_t sizeOf(const Value& value) {
    if (const PairPtr* pair = pairOf(value)) return (*pair)->size;
    if (const auto* text = std::get_if<Text>(&value)) return text->size();
    if (const auto* symbol = std::get_if<Symbol>(&value)) return symbol->text.size();
    const auto* set = std::get_if<SetPtr>(&value);
    return set == nullptr ? 1 : (*set)->size();
}

Value cons(Value first, Value rest, Position where) {
    if (nesting(first, rest) > deepestNesting) {
        throw Error(L"lists are nested more than " + std::to_wstring(deepestNesting) + L" deep",
                    where);
    }
    if (sizeOf(first, rest) > largestSize) {
        throw Error(L"a list holds more than " + std::to_wstring(largestSize) + L" values", where);
    }
    needRoom(1, where);
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
    AcGePoint3d point;
    unsigned axis = 0;
    const Value* rest = &value;
    for (; const PairPtr* pair = pairOf(*rest); ++axis, rest = &(*pair)->cdr) {
        const auto* whole = std::get_if<std::int32_t>(&(*pair)->car);
        const auto* real = std::get_if<double>(&(*pair)->car);
        if (axis == 3 || (whole == nullptr && real == nullptr)) return std::nullopt;
        point[axis] = whole != nullptr ? *whole : *real;
    }
    if (!isNil(*rest) || axis < 2) return std::nullopt;
    return point;
}

std::wstring text(const Value& value, bool quoted, std::size_t most) {
    Printer printer(quoted, most);
    std::visit(printer, value);
    return printer.take();
}

std::wstring brief(const Value& value) {
    return text(value, true, longestBrief);
}

std::wstring briefText(std::wstring_view text) {
    if (text.size() <= longestBrief) return std::wstring(text);
    return std::wstring(text.substr(0, longestBrief)) + L"...";
}

}  // namespace host::editor::lisp
