// The evaluator: symbols, functions, limits.
//
// What a function does to the drawing goes through the host's own interface functions, so that LISP
// sees what a module sees. Beyond the drawing and the command line, files of expressions are read.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "host/editor/LispValue.h"

namespace host::editor::lisp {

class Interpreter;

// The work of making or printing a value or character, in those that are looked at.
constexpr std::size_t making = 10;

// A call of a function, its arguments evaluated.
struct Call {
    Interpreter& interpreter;
    std::wstring_view function;
    std::vector<Value> arguments;
    Position where;

    // Throws Error at the call's position.
    [[noreturn]] void fail(const std::wstring& sentence) const;
    // As Interpreter::spend, at the call's position.
    void spend(std::size_t work) const;

    // The argument `index` as what it has to be; Error otherwise, and when it is missing.
    const Value& any(std::size_t index) const;
    const std::wstring& text(std::size_t index) const;
    std::int32_t whole(std::size_t index) const;
    AcDbObjectId entity(std::size_t index) const;
    const SetPtr& set(std::size_t index) const;
    bool has(std::size_t index) const { return index < arguments.size(); }
};

struct Function {
    std::size_t least = 0;
    std::size_t most = 0;
    std::function<Value(Call&)> run;
};

class Interpreter {
  public:
    // Prints what (princ ...) gives; may be empty.
    explicit Interpreter(std::function<void(const std::wstring&)> print = {});

    // Evaluates all expressions of a text and gives the value of the last, nil for none. Throws
    // Error for what can't be read, for functions that are not there or have too few or too many
    // arguments, and then nothing was evaluated; for what can't be evaluated; when it is asked to
    // stop; and after 100000 steps, one for each symbol, constant and call, and more for calls with
    // much work. An expression may ask, and be answered by an expression, which is evaluated inside
    // of it: the steps count together, and more than 20 of them are an Error.
    Value evaluate(std::wstring_view text, Position start = {});
    // The same for what has been read.
    Value evaluateAll(const std::vector<Value>& expressions, Position start = {});

    // nil for a symbol without a value. Names in any case. PAUSE is "\\" from the beginning.
    Value variable(std::wstring_view name) const;
    // Forgets the values, as a drawing that is closed takes its names along.
    void clear();

    // Whether `evaluate` is running.
    bool isEvaluating() const { return depth_ > 0; }
    // Asked before each step; true ends the evaluation.
    void stopWhen(std::function<bool()> stop) { stop_ = std::move(stop); }
    // Counts work of a call that a single step is too little for: one step for each 1000 characters
    // or values that are looked at, or 100 that are made or printed. Throws Error as `evaluate`.
    void spend(std::size_t work, Position where);

    void define(std::wstring_view name, Function function);
    // Of the functions and of the symbols that have a value, in capitals.
    std::vector<std::wstring> names() const;
    void print(const std::wstring& text) const;

  private:
    static constexpr std::size_t mostSteps = 100000;
    static constexpr std::size_t workOfAStep = 1000;
    static constexpr int deepestAnswers = 20;

    class Inside;  // one call of evaluate

    void takeSteps(std::size_t steps, Position where);
    void check(const Value& expression, Position where) const;
    void checkSetq(const std::vector<Value>& parts, Position where) const;
    Value evaluateForm(const Value& expression, Position where);
    Value evaluateList(const Pair& form);
    Value setq(const std::vector<Value>& parts, Position where);

    std::map<std::wstring, Value, std::less<>> variables_;
    std::map<std::wstring, Function, std::less<>> functions_;
    std::function<void(const std::wstring&)> print_;
    std::function<bool()> stop_;
    std::size_t steps_ = 0;
    int depth_ = 0;  // of evaluate inside evaluate
};

// The functions that work on values alone: list, cons, car, cdr, princ.
void defineListFunctions(Interpreter& interpreter);

// handent, entget, entlast, ssget, ssname, sslength, getvar, setvar.
void defineDrawingFunctions(Interpreter& interpreter);

// command, load. A file is a regular one of at most 16 MB; the values of its expressions are
// forgotten but for the last one.
void defineSessionFunctions(Interpreter& interpreter);

}  // namespace host::editor::lisp
