#include "host/console/HostCommands.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "host/console/Files.h"
#include "host/console/Interruption.h"
#include "host/console/Meter.h"
#include "host/console/Table.h"
#include "host/database/Drawing.h"
#include "host/database/Undo.h"
#include "host/dxf/Errors.h"
#include "host/editor/Listing.h"
#include "host/editor/Script.h"
#include "host/editor/VariablePrompt.h"
#include "host/editor/Words.h"
#include "host/editor/Zoom.h"

namespace host::console {

namespace {

using editor::CommandFailure;
using editor::Session;

std::wstring wide(const std::filesystem::path& path) {
    return editor::fromUtf8(utf8(path));
}

std::filesystem::path pathFrom(const std::wstring& text) {
    return pathFromUtf8(editor::toUtf8(text));
}

// A failure with an exit code of its own.
[[noreturn]] void fail(Workplace& workplace, Exit code, const std::string& sentence) {
    workplace.verdict.fail(code);
    throw CommandFailure(editor::fromUtf8(sentence));
}

AcDbDatabase& openedDrawing(const Session& session) {
    if (session.drawing() == nullptr) throw CommandFailure(L"No drawing is open; OPEN opens one");
    return *session.drawing();
}

bool isModified(const Session& session, const Workplace& workplace) {
    return session.drawing() != nullptr && workplace.saver.isModified(*session.drawing());
}

// Asks until the answer is Yes, No or Enter, which means No.
bool confirmed(Session& session, const std::wstring& question) {
    for (;;) {
        const std::wstring reply = editor::upperCase(
            session.askWord(L"\n" + question + L" [Yes/No] <N>: ", {L"Yes", L"No"}));
        if (reply == L"Y" || reply == L"YES" || reply == L"_Y" || reply == L"_YES") return true;
        if (reply.empty() || reply == L"N" || reply == L"NO" || reply == L"_N" || reply == L"_NO")
            return false;
        session.print(L"\nYes or No is expected.");
    }
}

void saveTo(Session& session, Workplace& workplace, const std::filesystem::path& target) {
    try {
        workplace.saver.save(openedDrawing(session), target);
    } catch (const NotSaved& error) {
        fail(workplace, Exit::unwritable, error.what());
    }
}

// A hint to the quotes that a name with blanks needs, when something follows it in its line.
std::wstring quotesHint(const Session& session, const std::wstring& name) {
    if (session.restOfLine().empty()) return {};
    return L". A name with blanks stands in double quotes: \"" + name + L" " +
           std::wstring(editor::trimmed(session.restOfLine())) + L"\"";
}

// "out name.dxf" without its quotes would be written as "out".
void refuseHalfName(Session& session, const std::wstring& name) {
    const auto isDrawing = [](const std::wstring& text) {
        constexpr std::wstring_view ending = L".dxf";
        return text.size() >= ending.size() &&
               editor::equalIgnoringCase(text.substr(text.size() - ending.size()), ending);
    };
    const std::vector<std::wstring> words = editor::split(session.restOfLine(), L' ');
    if (isDrawing(name) || std::none_of(words.begin(), words.end(), isDrawing)) return;
    const std::wstring hint = quotesHint(session, name);
    session.dropRestOfLine();
    throw CommandFailure(name + L" was not written: more of its name seems to follow" + hint);
}

// Asks where to save.
std::filesystem::path askTarget(Session& session, Workplace& workplace) {
    const std::wstring shown =
        workplace.drawing.empty() ? L"" : L" <" + wide(workplace.drawing) + L">";
    const std::wstring reply = session.askFile(L"\nSave drawing as" + shown + L": ", {L".dxf"});
    if (reply.empty()) return workplace.drawing;
    refuseHalfName(session, reply);
    std::filesystem::path target = drawingFile(pathFrom(reply));
    try {
        workplace.saver.demandTarget(target);
    } catch (const NotSaved& error) {
        fail(workplace, Exit::unwritable, error.what());
    }
    std::error_code error;
    const bool replaces =
        std::filesystem::exists(target, error) && !isSameFile(target, workplace.drawing);
    if (replaces && !confirmed(session, wide(target) + L" exists already. Replace it?"))
        throw CommandFailure(wide(target) + L" was not written: it exists already");
    return target;
}

void save(Session& session, Workplace& workplace) {
    openedDrawing(session);
    saveTo(session, workplace, askTarget(session, workplace));
}

void saveAs(Session& session, Workplace& workplace) {
    openedDrawing(session);
    const std::filesystem::path target = askTarget(session, workplace);
    saveTo(session, workplace, target);
    workplace.drawing = target;
}

void qsave(Session& session, Workplace& workplace) {
    openedDrawing(session);
    saveTo(session, workplace, workplace.drawing);
}

// As saving does, ".dxf" is added to a name without an extension; unless a file is called so.
std::filesystem::path existingDrawing(const std::filesystem::path& named) {
    std::error_code error;
    std::filesystem::path withExtension = named;
    withExtension += ".dxf";
    const bool extended = !named.has_extension() && !std::filesystem::exists(named, error) &&
                          std::filesystem::exists(withExtension, error);
    return extended ? withExtension : named;
}

void open(Session& session, Workplace& workplace) {
    if (isModified(session, workplace) && !confirmed(session, L"Discard the changes?")) return;
    const std::wstring reply = session.askFile(L"\nOpen drawing: ", {L".dxf"});
    if (reply.empty()) return;
    try {
        const std::filesystem::path path = existingDrawing(pathFrom(reply));
        if (const char* option = claimant(workplace.options, path); option != nullptr)
            fail(workplace, Exit::unreadable,
                 utf8(path) + " was not opened: " + option + " names it, and would overwrite it");
        openDrawing(session, workplace, path);
    } catch (const dxf::ReadError& error) {
        const std::wstring hint = quotesHint(session, reply);
        session.dropRestOfLine();
        fail(workplace, Exit::unreadable, error.what() + editor::toUtf8(hint));
    } catch (const UnreadableFile& error) {
        fail(workplace, Exit::unreadable, error.what());
    }
}

// Asks only when changes would be lost: -o saves them all the same.
void quit(Session& session, Workplace& workplace) {
    const bool losesChanges = workplace.options.output.empty() && isModified(session, workplace);
    if (losesChanges && !confirmed(session, L"Really want to discard all changes to the drawing?"))
        return;
    workplace.discarded = losesChanges;
    session.quit();
}

using StepNote = database::UndoLog::StepNote;

// "ZEPTAlignEntities taken back: 68 entities."
void tellStep(Session& session, const StepNote& step, const wchar_t* what) {
    const std::wstring name = step.name.empty() ? L"A change outside of commands" : step.name;
    const std::wstring count = step.entities == 0
                                   ? L""
                                   : L": " + std::to_wstring(step.entities) +
                                         (step.entities == 1 ? L" entity" : L" entities");
    session.print(L"\n" + name + what + count + L".");
}

void undo(Session& session, int steps) {
    for (int done = 0; done < steps; ++done) {
        std::optional<StepNote> step;
        if (session.drawing() != nullptr) step = database::undoLog(*session.drawing()).undoStep();
        if (session.undo() == 0) {
            if (done == 0) session.print(L"\nNothing to undo.");
            return;
        }
        tellStep(session, *step, L" taken back");
    }
}

void undoSome(Session& session) {
    const std::wstring reply = session.askWord(L"\nEnter the number of operations to undo <1>: ");
    const std::optional<int> steps = reply.empty() ? 1 : editor::parseInteger(reply);
    if (!steps || *steps < 1)
        throw CommandFailure(L"UNDO takes a whole number from 1, not '" + reply + L"'");
    undo(session, *steps);
}

void redo(Session& session) {
    std::optional<StepNote> step;
    if (session.drawing() != nullptr) step = database::undoLog(*session.drawing()).redoStep();
    if (session.redo() == 0) return session.print(L"\nNothing to redo.");
    tellStep(session, *step, L" done again");
}

void script(Session& session, Workplace& workplace) {
    const std::wstring reply = session.askFile(L"\nScript file: ", {L".scr"});
    if (reply.empty()) return;
    try {
        session.runScript(readScript(pathFrom(reply)), reply);
    } catch (const UnreadableFile& error) {
        fail(workplace, Exit::unreadable, error.what());
    } catch (const CommandFailure&) {  // it has led to itself
        workplace.verdict.fail(Exit::scriptEnded);
        throw;
    }
}

// Scripts wait so that people can look on; nobody does here.
void delay(Session& session) {
    const std::wstring reply = session.askWord(L"\nDelay time in milliseconds: ");
    if (!reply.empty() && !editor::parseInteger(reply))
        throw CommandFailure(L"DELAY takes a whole number of milliseconds, not '" + reply + L"'");
}

void help(Session& session) {
    std::wstring text = L"\nCommands of the loaded modules:\n";
    for (const std::wstring& name : session.commandNames()) {
        bool own = false;
        for (const Session::HostCommand& command : session.hostCommands())
            own = own || command.name == name;
        if (!own) text += L"  " + name + L"\n";
    }
    text += L"Commands of the program:\n";
    for (const Session::HostCommand& command : session.hostCommands())
        text += L"  " + command.name +
                std::wstring(10 - std::min<std::size_t>(9, command.name.size()), L' ') +
                command.help + L"\n";
    text +=
        L"An entity is picked by a point, as in 25496080,6672015, or by its handle, as in (handent "
        L"\"2F\").\n"
        L"Entities are selected by points, ALL, W, C, L, P, F, WP, CP, (handent ...) and (ssget "
        L"\"X\" ...); R removes,\n"
        L"A adds again, U takes back, Enter ends the selection.";
    session.print(text);
}

// What is odd in a drawing that was read all the same, in one line.
void tellFindings(Session& session, const std::filesystem::path& path,
                  const dxf::Document& drawing) {
    const std::string text = findingsOf(drawing).text();
    if (text.empty()) return;
    session.print(
        editor::fromUtf8("\n" + tame(shownName(path)) + ", " + text + "; kept as it stands."));
}

// "streets.dxf, R2010, 98 entities."
std::wstring introduction(const AcDbDatabase& drawing, const std::filesystem::path& path,
                          const std::string& release) {
    const std::size_t count = database::modelSpaceIds(drawing).size();
    return L"\n" + wide(path) + (release.empty() ? L"" : L", " + editor::fromUtf8(release)) +
           L", " + std::to_wstring(count) + (count == 1 ? L" entity." : L" entities.");
}

std::unique_ptr<AcDbDatabase> readUnlessInterrupted(const std::filesystem::path& path,
                                                    dxf::Progress progress) {
    const Interruption interruption;
    try {
        return database::readDrawing(path, interruption.watching(std::move(progress)));
    } catch (const Interruption::Happened&) {
        throw UnreadableFile(utf8(path) + " was not opened: it was interrupted");
    }
}

}  // namespace

void openDrawing(Session& session, Workplace& workplace, const std::filesystem::path& path) {
    dxf::Progress progress = progressMeter("Reading " + utf8(path.filename()));
    if (workplace.person)
        session.useDrawing(readUnlessInterrupted(path, std::move(progress)));
    else
        session.useDrawing(database::readDrawing(path, progress));
    if (workplace.person) {
        const AcDbDatabase& drawing = *session.drawing();
        session.print(introduction(drawing, path, workplace.account.record(drawing).release));
    }
    tellFindings(session, path, database::document(*session.drawing()));
    workplace.saver.forget();
    workplace.account.forget();
    workplace.drawing = path;
}

void addHostCommands(Session& session, Workplace& workplace) {
    const auto add = [&](const wchar_t* name, const wchar_t* text, auto action) {
        session.addHostCommand({name, {}, text, false, std::move(action)});
    };
    const auto addTransparent = [&](const wchar_t* name, const wchar_t* text, auto action,
                                    std::vector<std::wstring> aliases = {}) {
        session.addHostCommand({name, std::move(aliases), text, false, std::move(action), true});
    };
    add(L"OPEN", L"opens another drawing", [&](Session& s) { open(s, workplace); });
    add(L"QSAVE", L"saves the drawing where it came from",
        [&](Session& s) { qsave(s, workplace); });
    add(L"SAVE", L"saves a copy; the drawing keeps its name",
        [&](Session& s) { save(s, workplace); });
    add(L"SAVEAS", L"saves under another name and goes on with that",
        [&](Session& s) { saveAs(s, workplace); });
    add(L"QUIT", L"leaves; asks when changes would be lost",
        [&](Session& s) { quit(s, workplace); });
    add(L"U", L"takes back the last command", [](Session& s) { undo(s, 1); });
    add(L"UNDO", L"takes back a number of commands", [](Session& s) { undoSome(s); });
    add(L"REDO", L"does again what U took back", [](Session& s) { redo(s); });
    add(L"SCRIPT", L"takes the answers from a file", [&](Session& s) { script(s, workplace); });
    add(L"LIST", L"tells of entities what they are and where", editor::listEntities);
    addTransparent(L"LAYER", L"lists the layers (also -LAYER)", editor::listLayers, {L"-LAYER"});
    addTransparent(L"ZOOM", L"chooses the view, which decides how far a pick reaches",
                   editor::zoom);
    addTransparent(L"SETVAR", L"shows and sets system variables", editor::setVariables);
    addTransparent(L"REGEN", L"does nothing without a screen",
                   [](Session& s) { s.print(L"\nRegenerating model."); });
    add(L"DELAY", L"is passed over: nothing waits", [](Session& s) { delay(s); });
    add(L"RESUME", L"is passed over: a script that stopped is not gone on with", [](Session&) {});
    add(L"RSCRIPT", L"is passed over: a script runs once", [](Session&) {});
    addTransparent(L"HELP", L"this list", [](Session& s) { help(s); });
}

}  // namespace host::console
