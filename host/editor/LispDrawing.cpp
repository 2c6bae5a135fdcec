// Functions of LISP that reach the drawing, by way of the interface's own functions.
#include <acdbads.h>
#include <acedads.h>
#include <dbapserv.h>
#include <dbmain.h>

#include <memory>
#include <new>
#include <utility>

#include "host/database/Drawing.h"
#include "host/editor/Drawn.h"
#include "host/editor/EntityGroups.h"
#include "host/editor/Filter.h"
#include "host/editor/Lisp.h"
#include "host/editor/ResultBuffers.h"
#include "host/editor/SelectionMode.h"
#include "host/editor/Words.h"

namespace host::editor::lisp {

namespace {

// A chain that grows at its end.
class Chain {
  public:
    Chain() = default;
    Chain(Chain&& other) noexcept
        : first_(std::exchange(other.first_, nullptr)),
          last_(std::exchange(other.last_, nullptr)) {}
    Chain& operator=(Chain&& other) noexcept {
        std::swap(first_, other.first_);
        std::swap(last_, other.last_);
        return *this;
    }
    ~Chain() { acutRelRb(first_); }

    // A new element at the end. Throws std::bad_alloc.
    resbuf& append(int type) {
        resbuf* element = acutNewRb(type);
        if (element == nullptr) throw std::bad_alloc();
        (last_ == nullptr ? first_ : last_->rbnext) = element;
        return *(last_ = element);
    }
    const resbuf* get() const { return first_; }

  private:
    resbuf* first_ = nullptr;
    resbuf* last_ = nullptr;
};

AcDbDatabase& drawing(const Call& call) {
    AcDbDatabase* open = acdbHostApplicationServices()->workingDatabase();
    if (open == nullptr) call.fail(L"no drawing is open");
    return *open;
}

// --- values to result buffers and back ---------------------------------------------------------

std::optional<double> number(const Value& value) {
    if (const auto* whole = std::get_if<std::int32_t>(&value)) return *whole;
    if (const auto* real = std::get_if<double>(&value)) return *real;
    return std::nullopt;
}

// Puts a value into an element whose type is settled; false when it is of another kind.
bool fill(resbuf& element, const Value& value) {
    ads_u_val& place = element.resval;
    switch (valueKind(element.restype)) {
        case ValueKind::text: {
            const std::wstring* text = textIn(value);
            if (text != nullptr) place.rstring = copyText(text->c_str());
            return text != nullptr && place.rstring != nullptr;
        }
        case ValueKind::real: {
            const auto real = number(value);
            if (real) place.rreal = *real;
            return real.has_value();
        }
        case ValueKind::point: {
            const auto point = pointOf(value);
            for (unsigned i = 0; point && i < 3; ++i) place.rpoint[i] = (*point)[i];
            return point.has_value();
        }
        case ValueKind::int16: {
            const auto* whole = std::get_if<std::int32_t>(&value);
            const bool fits = whole != nullptr && *whole >= -32768 && *whole <= 32767;
            if (fits) place.rint = static_cast<short>(*whole);
            return fits;
        }
        case ValueKind::int32: {
            const auto* whole = std::get_if<std::int32_t>(&value);
            if (whole != nullptr) place.rlong = *whole;
            return whole != nullptr;
        }
        case ValueKind::int64: {
            const auto* whole = std::get_if<std::int32_t>(&value);
            if (whole != nullptr) place.mnInt64 = *whole;
            return whole != nullptr;
        }
        default:
            return false;
    }
}

// The chain of a filter: a list of (code . value), points as (code x y z).
Chain filterChain(const Call& call, const Value& filter) {
    Chain chain;
    Value dotted;
    const std::vector<Value> tests = members(filter, &dotted);
    if (!isNil(dotted)) call.fail(L"a filter is a list of pairs, not " + brief(filter));
    for (const Value& test : tests) {
        const auto* pair = std::get_if<PairPtr>(&test);
        const auto* code = pair == nullptr ? nullptr : std::get_if<std::int32_t>(&(*pair)->car);
        if (code == nullptr || *code < -4 || *code > 1071) {
            call.fail(L"a filter consists of pairs like (0 . \"TEXT\"), not " + brief(test));
        }
        if (!fill(chain.append(*code), (*pair)->cdr)) {
            call.fail(L"group " + std::to_wstring(*code) + L" of a filter can't be " +
                      brief((*pair)->cdr));
        }
    }
    return chain;
}

Value fromResult(const Call& call, const resbuf& result) {
    switch (result.restype) {
        case RTSHORT:
            return static_cast<std::int32_t>(result.resval.rint);
        case RTLONG:
            return result.resval.rlong;
        case RTREAL:
        case RTANG:
            return result.resval.rreal;
        case RTPOINT:
            return list({result.resval.rpoint[0], result.resval.rpoint[1]}, call.where);
        case RT3DPOINT: {
            const double* point = result.resval.rpoint;
            return list({point[0], point[1], point[2]}, call.where);
        }
        case RTSTR: {
            std::wstring text = result.resval.rstring;
            call.spend(text.size());
            return Text(std::move(text), call.where);
        }
        default:
            return Nil{};
    }
}

// --- entities ----------------------------------------------------------------------------------

Value entityOrNil(AcDbObjectId id) {
    return isLivingEntity(id) ? Value(id) : Value(Nil{});
}

Value handent(Call& call) {
    const auto handle = parseHandle(call.text(0));
    if (!handle)
        call.fail(brief(call.any(0)) + L" is no handle: handles are hexadecimal, as in \"2F\"");
    return entityOrNil(database::idFromHandle(drawing(call), static_cast<std::uint64_t>(*handle)));
}

Value entlast(Call& call) {
    const std::vector<AcDbObjectId> all = Drawn(drawing(call)).entities();
    call.spend(all.size());
    return all.empty() ? Value(Nil{}) : Value(all.back());
}

// A group as (code . value). Handles of other objects are entity names, as entget has them.
Value groupPair(const Call& call, int code, const GroupValue& value) {
    if (const auto* point = std::get_if<AcGePoint3d>(&value))
        return list({code, point->x, point->y, point->z}, call.where);
    if (const auto* real = std::get_if<double>(&value)) return cons(code, *real, call.where);
    if (const auto* whole = std::get_if<long long>(&value)) {
        const auto small = static_cast<std::int32_t>(*whole);
        return cons(code, small == *whole ? Value(small) : Value(static_cast<double>(*whole)),
                    call.where);
    }
    const auto& text = std::get<std::wstring>(value);
    const auto handle = valueKind(code) == ValueKind::name ? parseHandle(text) : std::nullopt;
    const AcDbObjectId id =
        handle ? database::idFromHandle(drawing(call), static_cast<std::uint64_t>(*handle))
               : AcDbObjectId();
    return cons(code, id.isNull() ? Value(Text(text, call.where)) : Value(id), call.where);
}

Value entget(Call& call) {
    const AcDbObjectId id = call.entity(0);
    drawing(call);
    if (!isLivingEntity(id)) return Nil{};
    std::vector<Value> groups{cons(-1, id, call.where)};
    const auto all = EntityGroups(id).all();
    call.spend(making * all.size());
    for (const auto& group : all) groups.push_back(groupPair(call, group.first, group.second));
    return list(std::move(groups), call.where);
}

// --- selection sets ----------------------------------------------------------------------------

// What a selection is given besides its mode and filter.
struct SelectionArguments {
    ads_point corners[2] = {};
    Chain points;
    std::wstring texts[2];
    const ACHAR* prompts[2] = {};
    const void* given[2] = {nullptr, nullptr};  // for acedSSGet; into this object
};

void takeCorner(const AcGePoint3d& point, int index, SelectionArguments& into) {
    for (unsigned axis = 0; axis < 3; ++axis) into.corners[index][axis] = point[axis];
    into.given[index] = into.corners[index];
}

void takeCorners(const Call& call, std::size_t first, SelectionArguments& into) {
    for (int i = 0; i < 2; ++i) {
        const auto point = pointOf(call.any(first + static_cast<std::size_t>(i)));
        if (!point) {
            call.fail(L"ssget " + brief(call.any(0)) + L" takes two points, not " +
                      brief(call.any(first + static_cast<std::size_t>(i))));
        }
        takeCorner(*point, i, into);
    }
}

void takePoints(const Call& call, const Value& points, SelectionArguments& into) {
    Value dotted;
    const std::vector<Value> all = members(points, &dotted);
    bool good = !all.empty() && isNil(dotted);
    for (std::size_t i = 0; good && i < all.size(); ++i) {
        const auto point = pointOf(all[i]);
        good = point.has_value();
        if (!good) break;
        resbuf& element = into.points.append(RT3DPOINT);
        for (unsigned axis = 0; axis < 3; ++axis) element.resval.rpoint[axis] = (*point)[axis];
    }
    if (!good) call.fail(L"a list of points is needed, not " + brief(points));
    // Each side may be held against each other one.
    call.spend(all.size() * all.size());
    into.given[0] = into.points.get();
}

void takePrompts(const Call& call, const Value& prompts, SelectionArguments& into) {
    const std::vector<Value> all = members(prompts);
    for (std::size_t i = 0; i < 2; ++i) {
        const std::wstring* plain = all.size() == 2 ? textIn(all[i]) : nullptr;
        if (plain == nullptr)
            call.fail(L"a list of two texts to ask with is needed, not " + brief(prompts));
        into.texts[i] = *plain;
        into.prompts[i] = into.texts[i].c_str();
    }
    into.given[0] = into.prompts;
}

// Takes what the mode has to be told from the arguments behind it; gives the index of what follows.
std::size_t takeArguments(const Call& call, const SelectionMode& mode, std::size_t next,
                          SelectionArguments& into) {
    using Takes = SelectionMode::Takes;
    switch (mode.takes) {
        case Takes::unknown:
            call.fail(L"ssget has no mode " + brief(call.any(0)));
        case Takes::corners:
            takeCorners(call, next, into);
            return next + 2;
        case Takes::points:
            takePoints(call, call.any(next), into);
            return next + 1;
        case Takes::prompts:
            takePrompts(call, call.any(next), into);
            return next + 1;
        case Takes::point:
            if (const auto at = call.has(next) ? pointOf(call.any(next)) : std::nullopt) {
                takeCorner(*at, 0, into);
                return next + 1;
            }
            return next;
        case Takes::nothing:
            break;
    }
    return next;
}

// (ssget [mode] [point [point] | points | prompts] [filter])
Value ssget(Call& call) {
    AcDbDatabase& open = drawing(call);
    for (const Value& argument : call.arguments) call.spend(sizeOf(argument));
    const std::wstring* mode = call.has(0) ? textIn(call.arguments[0]) : nullptr;
    SelectionArguments arguments;
    std::size_t next = takeArguments(call, parseSelectionMode(mode == nullptr ? L"" : *mode),
                                     mode == nullptr ? 0 : 1, arguments);
    Chain filter;
    std::size_t tests = 1;
    if (call.has(next)) {
        tests += sizeOf(call.arguments[next]);
        filter = filterChain(call, call.arguments[next++]);
    }
    if (call.has(next))
        call.fail(L"ssget does not take " + brief(call.arguments[next]) + L" there");
    call.spend(tests * Drawn(open).entities().size());
    std::wstring problem;
    if (!Filter().read(filter.get(), problem)) call.fail(briefText(problem));
    ads_name set;
    const int code = acedSSGet(mode == nullptr ? nullptr : mode->c_str(), arguments.given[0],
                               arguments.given[1], filter.get(), set);
    if (code == RTCAN) call.spend(0);  // it may have been stopped
    if (code != RTNORM) return Nil{};
    const auto held = std::make_shared<const HeldSet>(set[0], set[1]);
    needRoom(0, call.where);
    return held;
}

Value sslength(Call& call) {
    Adesk::Int32 length = 0;
    if (acedSSLength(call.set(0)->name(), &length) != RTNORM)
        call.fail(L"the selection set is gone");
    return length;
}

Value ssname(Call& call) {
    ads_name name;
    if (acedSSName(call.set(0)->name(), call.whole(1), name) != RTNORM) return Nil{};
    AcDbObjectId id;
    return acdbGetObjectId(id, name) == Acad::eOk ? Value(id) : Value(Nil{});
}

// --- system variables --------------------------------------------------------------------------

Value getvar(Call& call) {
    resbuf result{};
    if (acedGetVar(call.text(0).c_str(), &result) != RTNORM) return Nil{};
    const std::unique_ptr<ACHAR, void (*)(ACHAR*)> owned(
        result.restype == RTSTR ? result.resval.rstring : nullptr, freeText);
    return fromResult(call, result);
}

Value setvar(Call& call) {
    const Value& value = call.any(1);
    call.spend(sizeOf(value));
    resbuf current{};
    if (acedGetVar(call.text(0).c_str(), &current) != RTNORM) {
        call.fail(L"there is no system variable " + briefText(call.text(0)));
    }
    if (current.restype == RTSTR) freeText(current.resval.rstring);
    current.resval = {};
    const bool filled = fill(current, value);
    const bool done = filled && acedSetVar(call.text(0).c_str(), &current) == RTNORM;
    if (filled && current.restype == RTSTR) freeText(current.resval.rstring);
    if (!done) call.fail(briefText(call.text(0)) + L" can't be set to " + brief(value));
    return value;
}

}  // namespace

void defineDrawingFunctions(Interpreter& interpreter) {
    interpreter.define(L"handent", {1, 1, handent});
    interpreter.define(L"entget", {1, 1, entget});
    interpreter.define(L"entlast", {0, 0, entlast});
    interpreter.define(L"ssget", {0, 4, ssget});
    interpreter.define(L"sslength", {1, 1, sslength});
    interpreter.define(L"ssname", {2, 2, ssname});
    interpreter.define(L"getvar", {1, 1, getvar});
    interpreter.define(L"setvar", {2, 2, setvar});
}

}  // namespace host::editor::lisp
