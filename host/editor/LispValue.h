// Values of the LISP that scripts may use: nil, symbols, whole and real numbers, texts, entity
// names, selection sets and pairs.
//
// Values are immutable and shared. Lists are chains of pairs ended by nil; a pair whose rest is
// neither nil nor a pair is a dotted one. Nesting and size are bounded, so that no value is too
// deep to be printed or destroyed, nor too long to be printed, however often its parts are shared;
// and so is the room that all values take together.
//
// Sizes are counted in values: a pair, 64 characters of a text or name, and 8 members of a
// selection set are one each.
#pragma once

#include <dbid.h>
#include <gepnt3d.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace host::editor::lisp {

// In the text of an expression, from 1.
struct Position {
    std::size_t line = 1;
    std::size_t column = 1;
};

// What can't be read or evaluated: a sentence, and where the expression stands.
class Error : public std::runtime_error {
  public:
    Error(std::wstring sentence, Position where);
    const std::wstring& sentence() const { return sentence_; }
    const Position& where() const { return where_; }

  private:
    std::wstring sentence_;
    Position where_;
};

// All values that live take at most so much room together, counted in values: some 500 MB.
constexpr std::size_t mostRoom = 2000000;

// Throws Error when the living values and `more` would take more room than there is.
void needRoom(std::size_t more, Position where);

// The room that a part of a value takes while it lives. Values belong to the session's thread.
class Room {
  public:
    explicit Room(std::size_t size);
    ~Room();
    Room(const Room&) = delete;
    Room& operator=(const Room&) = delete;
    // By all that live.
    static std::size_t taken();

  private:
    std::size_t size_;
};

struct Nil {};

// A text, shared by all values that hold it.
class Text {
  public:
    // Throws Error when there is no room for it.
    Text(std::wstring plain, Position where = {});
    const std::wstring& plain() const { return kept_->plain; }
    std::size_t size() const { return sizeOf(kept_->plain); }

  private:
    static std::size_t sizeOf(const std::wstring& plain) { return 1 + plain.size() / 64; }
    struct Kept {
        explicit Kept(std::wstring text) : room(sizeOf(text)), plain(std::move(text)) {}
        Room room;
        std::wstring plain;
    };
    std::shared_ptr<const Kept> kept_;
};

struct Symbol {
    Text text;  // upper case
    const std::wstring& name() const { return text.plain(); }
};

// A selection set as LISP holds it: given back with the last value that stands for it.
class HeldSet {
  public:
    // Takes over the set of this name (the two numbers of an ads_name).
    HeldSet(std::int64_t first, std::int64_t second);
    ~HeldSet();
    HeldSet(const HeldSet&) = delete;
    HeldSet& operator=(const HeldSet&) = delete;
    const std::int64_t* name() const { return name_; }
    std::size_t size() const { return size_; }

  private:
    std::int64_t name_[2];
    std::size_t size_;
    Room room_;
};

struct Pair;
using PairPtr = std::shared_ptr<const Pair>;
using SetPtr = std::shared_ptr<const HeldSet>;
using Value = std::variant<Nil, Symbol, std::int32_t, double, Text, AcDbObjectId, SetPtr, PairPtr>;

struct Pair {
    Pair(Value first, Value rest, Position where);
    ~Pair();  // long lists are taken down without recursion
    Pair(const Pair&) = delete;
    Pair& operator=(const Pair&) = delete;

    Room room{1};
    Value car;
    Value cdr;
    Position where;    // of the opening parenthesis, for messages
    int depth;         // of nesting; 1 for a flat list
    std::size_t size;  // values in it, counted as often as they would be printed
};

constexpr int deepestNesting = 200;
constexpr std::size_t largestSize = 1000000;

inline bool isNil(const Value& value) {
    return std::holds_alternative<Nil>(value);
}

// The text that a value is; null for another kind of value.
const std::wstring* textIn(const Value& value);

// A text or a number: what stands for a word where one is asked for.
inline bool isWord(const Value& value) {
    return textIn(value) != nullptr || std::holds_alternative<double>(value) ||
           std::holds_alternative<std::int32_t>(value);
}

// How many values it counts as, what it shares with others included.
std::size_t sizeOf(const Value& value);

// A pair. Throws Error when it would nest too deeply or hold too many values, and when there is no
// room.
Value cons(Value first, Value rest, Position where = {});

// A list of the values, ended by `tail`.
Value list(std::vector<Value> values, Position where = {}, Value tail = Nil{});

// The members of a list; `dotted` (may be null) takes what stands behind the dot, nil for a proper
// list. nil is the empty list; any other value gives no members and itself behind the dot.
std::vector<Value> members(const Value& value, Value* dotted = nullptr);

// A list of two or three numbers as a point (z 0 when it is left out); none for anything else.
std::optional<AcGePoint3d> pointOf(const Value& value);

// As it is shown: texts in quotes with escapes when `quoted`, as they are otherwise. Reals with the
// fewest digits that read back to the same value. What is longer than `most` characters ends there
// with "...".
std::wstring text(const Value& value, bool quoted, std::size_t most = std::wstring::npos);

// As much of a value or text as a message has room for: 100 characters. The value is quoted.
std::wstring brief(const Value& value);
std::wstring briefText(std::wstring_view text);

// As much of a value as is shown to a person.
constexpr std::size_t longestShown = 10000;

// Reads all expressions of a text, whose first character stands at `start`. Throws Error.
std::vector<Value> read(std::wstring_view text, Position start = {});

}  // namespace host::editor::lisp
