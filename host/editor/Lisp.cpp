#include "host/editor/Lisp.h"

#include <utility>

#include "host/database/Fault.h"
#include "host/editor/Words.h"

namespace host::editor::lisp {

namespace {

const char* const ordinals[] = {"first", "second", "third", "fourth", "fifth"};

std::wstring ordinal(std::size_t index) {
    return fromUtf8(ordinals[index < 4 ? index : 4]);
}

// Names of functions elsewhere, which would pass for symbols without a value here.
bool looksLikeNumber(const Symbol& symbol) {
    return symbol.name() == L"1+" || symbol.name() == L"1-";
}

// "ssget takes 1 to 4 arguments, not 0"
std::wstring countSentence(std::wstring_view name, const Function& function, std::size_t given) {
    std::wstring wanted = std::to_wstring(function.least);
    if (function.most != function.least) wanted += L" to " + std::to_wstring(function.most);
    const bool one = function.most == 1;
    return std::wstring(name) + L" takes " + wanted +
           (one ? L" argument, not " : L" arguments, not ") + std::to_wstring(given);
}

}  // namespace

void Call::fail(const std::wstring& sentence) const {
    throw Error(sentence, where);
}

void Call::spend(std::size_t work) const {
    interpreter.spend(work, where);
}

const Value& Call::any(std::size_t index) const {
    if (!has(index)) fail(std::wstring(function) + L" lacks its " + ordinal(index) + L" argument");
    return arguments[index];
}

const std::wstring& Call::text(std::size_t index) const {
    const std::wstring* value = textIn(any(index));
    if (value == nullptr) {
        fail(std::wstring(function) + L" takes a text as its " + ordinal(index) +
             L" argument, not " + brief(any(index)));
    }
    spend(value->size());
    return *value;
}

std::int32_t Call::whole(std::size_t index) const {
    const auto* value = std::get_if<std::int32_t>(&any(index));
    if (value == nullptr) {
        fail(std::wstring(function) + L" takes a whole number as its " + ordinal(index) +
             L" argument, not " + brief(any(index)));
    }
    return *value;
}

AcDbObjectId Call::entity(std::size_t index) const {
    const auto* value = std::get_if<AcDbObjectId>(&any(index));
    if (value == nullptr) {
        fail(std::wstring(function) + L" takes an entity as its " + ordinal(index) +
             L" argument, not " + brief(any(index)));
    }
    return *value;
}

const SetPtr& Call::set(std::size_t index) const {
    const auto* value = std::get_if<SetPtr>(&any(index));
    if (value == nullptr) {
        fail(std::wstring(function) + L" takes a selection set as its " + ordinal(index) +
             L" argument, not " + brief(any(index)));
    }
    return *value;
}

Interpreter::Interpreter(std::function<void(const std::wstring&)> print)
    : print_(std::move(print)) {
    defineListFunctions(*this);
    clear();
}

void Interpreter::clear() {
    variables_.clear();
    variables_.insert_or_assign(L"PAUSE", Text(L"\\"));
}

class Interpreter::Inside {
  public:
    Inside(Interpreter& interpreter, Position start) : depth_(interpreter.depth_) {
        if (depth_ == deepestAnswers) {
            throw Error(L"expressions answer each other's prompts more than " +
                            std::to_wstring(deepestAnswers) + L" deep",
                        start);
        }
        if (depth_++ == 0) interpreter.steps_ = 0;
    }
    ~Inside() { --depth_; }
    Inside(const Inside&) = delete;
    Inside& operator=(const Inside&) = delete;

  private:
    int& depth_;
};

Value Interpreter::evaluate(std::wstring_view text, Position start) {
    return evaluateAll(read(text, start), start);
}

Value Interpreter::evaluateAll(const std::vector<Value>& expressions, Position start) {
    const fault::Quiet quiet;
    const Inside inside(*this, start);
    for (const Value& expression : expressions) check(expression, start);
    Value value;
    for (const Value& expression : expressions) value = evaluateForm(expression, start);
    return value;
}

Value Interpreter::variable(std::wstring_view name) const {
    const auto found = variables_.find(upperCase(name));
    return found == variables_.end() ? Value(Nil{}) : found->second;
}

void Interpreter::define(std::wstring_view name, Function function) {
    functions_[upperCase(name)] = std::move(function);
}

std::vector<std::wstring> Interpreter::names() const {
    std::vector<std::wstring> all{L"QUOTE", L"SETQ"};
    for (const auto& function : functions_) all.push_back(function.first);
    for (const auto& variable : variables_) all.push_back(variable.first);
    return all;
}

void Interpreter::print(const std::wstring& text) const {
    if (print_) print_(text);
}

void Interpreter::spend(std::size_t work, Position where) {
    takeSteps(work / workOfAStep, where);
}

void Interpreter::takeSteps(std::size_t steps, Position where) {
    const bool isEnough = steps > mostSteps - steps_;
    steps_ = isEnough ? mostSteps : steps_ + steps;
    if (isEnough) throw Error(L"stopped after " + std::to_wstring(mostSteps) + L" steps", where);
    if (stop_ && stop_()) throw Error(L"stopped, as it was asked to", where);
}

// What can be said of an expression before anything is done: all that will be called is read
// before. `where` is the place of the list that it stands in.
void Interpreter::check(const Value& expression, Position where) const {
    const auto* name = std::get_if<Symbol>(&expression);
    if (name != nullptr && looksLikeNumber(*name))
        throw Error(name->name() + L" is no number, and has no value", where);
    const auto* list = std::get_if<PairPtr>(&expression);
    if (list == nullptr) return;
    const Pair& form = **list;
    const auto* symbol = std::get_if<Symbol>(&form.car);
    if (symbol == nullptr) {
        throw Error(L"a list begins with the name of a function, not with " + brief(form.car) +
                        L"; put a quote mark before it if it is meant as it stands",
                    form.where);
    }
    Value dotted;
    const std::vector<Value> parts = members(form.cdr, &dotted);
    if (!isNil(dotted))
        throw Error(L"a dotted pair can't be called; put a quote mark before it", form.where);
    if (symbol->name() == L"SETQ") return checkSetq(parts, form.where);
    if (symbol->name() == L"QUOTE") {
        if (parts.size() == 1) return;
        throw Error(L"quote takes 1 argument, not " + std::to_wstring(parts.size()), form.where);
    }
    const auto found = functions_.find(symbol->name());
    if (found == functions_.end())
        throw Error(L"there is no function " + briefText(symbol->name()), form.where);
    const Function& function = found->second;
    if (parts.size() < function.least || parts.size() > function.most)
        throw Error(countSentence(symbol->name(), function, parts.size()), form.where);
    for (const Value& part : parts) check(part, form.where);
}

void Interpreter::checkSetq(const std::vector<Value>& parts, Position where) const {
    if (parts.empty() || parts.size() % 2 != 0)
        throw Error(L"setq takes symbols and values in pairs", where);
    for (std::size_t i = 0; i < parts.size(); i += 2) {
        const auto* symbol = std::get_if<Symbol>(&parts[i]);
        if (symbol == nullptr || symbol->name() == L"T" || looksLikeNumber(*symbol))
            throw Error(L"setq takes a symbol, not " + brief(parts[i]), where);
        check(parts[i + 1], where);
    }
}

Value Interpreter::evaluateForm(const Value& expression, Position where) {
    const auto* form = std::get_if<PairPtr>(&expression);
    if (form != nullptr) where = (*form)->where;
    takeSteps(1, where);
    if (const auto* symbol = std::get_if<Symbol>(&expression)) {
        if (symbol->name() == L"T") return *symbol;
        return variable(symbol->name());
    }
    return form != nullptr ? evaluateList(**form) : expression;
}

// A form that `check` has let pass.
Value Interpreter::evaluateList(const Pair& form) {
    const std::wstring& name = std::get<Symbol>(form.car).name();
    std::vector<Value> parts = members(form.cdr);
    if (name == L"QUOTE") return parts.front();
    if (name == L"SETQ") return setq(parts, form.where);
    for (Value& part : parts) part = evaluateForm(part, form.where);
    Call call{*this, name, std::move(parts), form.where};
    return functions_.find(name)->second.run(call);
}

Value Interpreter::setq(const std::vector<Value>& parts, Position where) {
    Value value;
    for (std::size_t i = 0; i < parts.size(); i += 2) {
        value = evaluateForm(parts[i + 1], where);
        variables_[std::get<Symbol>(parts[i]).name()] = value;
    }
    return value;
}

}  // namespace host::editor::lisp
