// Expressions of any bytes over a small drawing, in two ways. By themselves: reading and evaluating
// them ends in a value or a lisp::Error, what they ask is answered by nobody, and a value that is
// printed reads back as the same value. As the script of a session: they are commands and answers
// to prompts, other expressions and "!symbol" among them, until the script ends. Nothing stays
// open, and what is told stays short.
#include <aced.h>
#include <acedads.h>
#include <dbmain.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <random>

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

namespace fs = std::filesystem;

const char* const drawingText =
    "0\nSECTION\n2\nENTITIES\n"
    "0\nLINE\n5\n10\n8\n0\n10\n0.0\n20\n0.0\n30\n0.0\n11\n100.0\n21\n0.0\n31\n0.0\n"
    "0\nCIRCLE\n5\n11\n330\n10\n8\n0\n10\n50.0\n20\n25.0\n30\n0.0\n40\n10.0\n"
    "0\nTEXT\n5\n12\n8\n0\n10\n10.0\n20\n2.0\n30\n0.0\n40\n2.0\n1\nKatu\n50\n12.5\n"
    "0\nENDSEC\n0\nEOF\n";

// An evaluation prints ten million characters at most; an error has the words of a few values and
// names, shortened, or those of a reply.
constexpr std::size_t longestPrint = 10000100;
constexpr std::size_t longestError = 10000;

class Silence : public Output {
  public:
    void print(std::wstring_view text) override {
        if (text.size() > longestPrint) std::abort();
    }
    void prompt(std::wstring_view) override {}
    void reply(const Reply&) override {}
    void error(std::wstring_view sentence) override {
        if (sentence.size() > longestError) std::abort();
    }
};

// (load ...) reads files by whatever name the bytes make: there are none. The fuzzer's own files
// are named from its folder, to which each input goes back.
class InAnEmptyFolder {
  public:
    InAnEmptyFolder() : before_(fs::current_path()) {
        static const Folder empty;
        fs::current_path(empty.path);
    }
    ~InAnEmptyFolder() { fs::current_path(before_); }
    InAnEmptyFolder(const InAnEmptyFolder&) = delete;
    InAnEmptyFolder& operator=(const InAnEmptyFolder&) = delete;

  private:
    struct Folder {
        Folder() { fs::create_directory(path); }
        ~Folder() {
            std::error_code ignored;
            fs::remove(path, ignored);
        }
        fs::path path =
            fs::temp_directory_path() / ("orlinth-fuzz-" + std::to_string(std::random_device()()));
    };
    fs::path before_;
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

// A session over the drawing that a script answers.
class Scene {
  public:
    explicit Scene(std::wstring script)
        : input_(std::move(script), L"fuzz.scr"), session_(input_, silence_) {
        static const auto document = dxf::Document::fromBytes(drawingText, "fuzz.dxf");
        session_.useDrawing(database::drawingOf(document));
        addCommands(session_);
        session_.onCommandEnded([](CommandResult& result) {
            result.stopInput = false;
            if (!result.leaks.empty() || result.end == CommandResult::End::exceptionLeft)
                std::abort();
        });
    }
    Session& session() { return session_; }

  private:
    ScriptInput input_;
    Silence silence_;
    Session session_;
};

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
        const std::size_t length = error.sentence().size();
        if (length == 0 || length > longestError || error.where().line == 0 ||
            error.where().column == 0)
            std::abort();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const InAnEmptyFolder nowhere;
    const std::wstring text = decodeScript({reinterpret_cast<const char*>(data), size});
    {
        const Scene scene(L"");
        evaluate(text);
    }
    Scene(text).session().run();
    if (database::Ledger::instance().count() != 0 || lisp::Room::taken() != 0) std::abort();
    return 0;
}
