// Expressions of any bytes: reading and evaluating them ends in a value or a lisp::Error, and a
// value that is printed reads back as the same value.
#include <cstdint>
#include <cstdlib>

#include "host/editor/Lisp.h"
#include "host/editor/Script.h"

using namespace host::editor;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::wstring text = decodeScript({reinterpret_cast<const char*>(data), size});
    lisp::Interpreter interpreter;
    lisp::defineDrawingFunctions(interpreter);
    try {
        const lisp::Value value = interpreter.evaluate(text);
        const std::wstring printed = lisp::text(value, true);
        if (lisp::text(interpreter.evaluate(L"'" + printed), true) != printed) std::abort();
    } catch (const lisp::Error& error) {
        if (error.sentence().empty() || error.where().line == 0 || error.where().column == 0)
            std::abort();
    }
    return 0;
}
