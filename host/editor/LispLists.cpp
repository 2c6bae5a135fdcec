// Functions of LISP that work on values alone.
#include "host/editor/Lisp.h"

namespace host::editor::lisp {

namespace {

constexpr std::size_t anyNumber = static_cast<std::size_t>(-1);

// The pair that car and cdr look into; null for nil, whose parts are nil.
const Pair* partsOf(Call& call) {
    const Value& value = call.any(0);
    if (isNil(value)) return nullptr;
    const auto* pair = std::get_if<PairPtr>(&value);
    if (pair == nullptr)
        call.fail(std::wstring(call.function) + L" takes a list, not " + brief(value));
    return pair->get();
}

Value car(Call& call) {
    const Pair* pair = partsOf(call);
    return pair == nullptr ? Value(Nil{}) : pair->car;
}

Value cdr(Call& call) {
    const Pair* pair = partsOf(call);
    return pair == nullptr ? Value(Nil{}) : pair->cdr;
}

Value princ(Call& call) {
    if (!call.has(0)) return Symbol{Text(L"")};  // shows as nothing
    const std::wstring printed = text(call.arguments[0], false);
    call.spend(making * printed.size());
    call.interpreter.print(printed);
    return call.arguments[0];
}

}  // namespace

void defineListFunctions(Interpreter& interpreter) {
    interpreter.define(L"list", {0, anyNumber, [](Call& call) {
                                     return list(std::move(call.arguments), call.where);
                                 }});
    interpreter.define(L"cons", {2, 2, [](Call& call) {
                                     return cons(call.arguments[0], call.arguments[1], call.where);
                                 }});
    interpreter.define(L"car", {1, 1, car});
    interpreter.define(L"cdr", {1, 1, cdr});
    interpreter.define(L"princ", {0, 1, princ});
}

}  // namespace host::editor::lisp
