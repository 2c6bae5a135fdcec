// Expressions of any bytes in a session with a small drawing: reading and evaluating them ends in a
// value or a lisp::Error, what they ask is answered by nobody, a value that is printed reads back
// as the same value, and nothing stays open.
#include <aced.h>
#include <acedads.h>
#include <dbmain.h>

#include <cstdint>
#include <cstdlib>

#include "host/database/Drawing.h"
#include "host/database/Ledger.h"
#include "host/editor/Lisp.h"
#include "host/editor/Listing.h"
#include "host/editor/Script.h"
#include "host/editor/Session.h"
#include "host/editor/VariablePrompt.h"
#include "host/editor/Zoom.h"

using namespace host;
using namespace host::editor;

namespace {

const char* const drawingText =
    "0\nSECTION\n2\nENTITIES\n"
    "0\nLINE\n5\n10\n8\n0\n10\n0.0\n20\n0.0\n30\n0.0\n11\n100.0\n21\n0.0\n31\n0.0\n"
    "0\nCIRCLE\n5\n11\n330\n10\n8\n0\n10\n50.0\n20\n25.0\n30\n0.0\n40\n10.0\n"
    "0\nTEXT\n5\n12\n8\n0\n10\n10.0\n20\n2.0\n30\n0.0\n40\n2.0\n1\nKatu\n50\n12.5\n"
    "0\nENDSEC\n0\nEOF\n";

class Silence : public Output {
  public:
    void print(std::wstring_view) override {}
    void prompt(std::wstring_view) override {}
    void reply(const Reply&) override {}
    void error(std::wstring_view) override {}
};

void addCommands(Session& session) {
    const auto add = [&](const wchar_t* name, void (*run)(Session&)) {
        Session::HostCommand command;
        command.name = name;
        command.run = run;
        command.transparent = true;
        session.addHostCommand(std::move(command));
    };
    add(L"ZOOM", zoom);
    add(L"LIST", listEntities);
    add(L"LAYER", listLayers);
    add(L"SETVAR", setVariables);
}

// Whether a value holds an entity or a set, whose names do not read back.
bool namesAnything(const std::wstring& printed) {
    return printed.find(L"name: ") != std::wstring::npos ||
           printed.find(L"set: ") != std::wstring::npos;
}

void evaluate(const std::wstring& text) {
    lisp::Interpreter interpreter;
    lisp::defineDrawingFunctions(interpreter);
    lisp::defineSessionFunctions(interpreter);
    try {
        const lisp::Value value = interpreter.evaluate(text);
        const std::wstring printed = lisp::text(value, true);
        if (namesAnything(printed)) return;
        if (lisp::text(interpreter.evaluate(L"'" + printed), true) != printed) std::abort();
    } catch (const lisp::Error& error) {
        if (error.sentence().empty() || error.where().line == 0 || error.where().column == 0)
            std::abort();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const auto document = dxf::Document::fromBytes(drawingText, "fuzz.dxf");
    ScriptInput input(L"", L"fuzz.scr");
    Silence silence;
    {
        Session session(input, silence);
        session.useDrawing(database::drawingOf(document));
        addCommands(session);
        session.onCommandEnded([](CommandResult& result) {
            if (!result.leaks.empty() || result.end == CommandResult::End::exceptionLeft)
                std::abort();
        });
        evaluate(decodeScript({reinterpret_cast<const char*>(data), size}));
    }
    if (database::Ledger::instance().count() != 0) std::abort();
    return 0;
}
