// The running host: one drawing, the command line, the loaded modules. Everything that a module
// reaches through the interface's functions belongs to the session that lives.
//
// A session runs on one thread. Texts are wide. Nothing it says ever waits for a key.
#pragma once

#include <dbid.h>
#include <gepnt3d.h>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "host/editor/Console.h"

class AcDbDatabase;

namespace host::editor {

// A prompt that a command has shown, and what it got.
struct PromptRecord {
    enum class Kind { entity, selection, point, text, keyword };
    Kind kind = Kind::text;
    int code = 0;                        // RTNORM, RTCAN, RTNONE, RTERROR ...
    std::wstring reply;                  // the text given; for a selection nothing
    std::vector<AcDbObjectId> entities;  // the picked entity, or the selection
    std::optional<AcGePoint3d> point;    // where an entity was picked, when a point picked it
    // What a selection found and left out because it is on a locked layer.
    std::vector<AcDbObjectId> lockedOut;
};

// How a command went.
struct CommandResult {
    enum class End {
        done,           // returned, every prompt answered
        cancelled,      // returned after a prompt was cancelled or a pick or selection got nothing
        inputEnded,     // returned after the input ended inside one of its prompts
        exceptionLeft,  // an exception left it; what it changed was rolled back
        unknown,        // there is no such command
        failed,         // a command of the host could not do it, or an expression that a script
                        // answered with could not be evaluated; which was said
    };
    End end = End::done;
    std::wstring name;       // the global name, or what was typed when there is no such command
    std::wstring where;      // where a script called it; empty for a person
    bool repeated = false;   // an empty reply began it, because it was the last command
    std::wstring exception;  // class, message, line and source name, as the reporter tells them
    std::vector<PromptRecord> prompts;
    std::uint64_t undoGroup = 0;     // the group of the drawing's undo log that it was; 0: none
    std::vector<std::string> leaks;  // what the command left open
    // Whether the input is stopped (Input::stop) because its next answers would be out of step.
    // Preset for inputs that want it, with every end but done and exceptionLeft; a listener may
    // change it.
    // What is stopped is the script that gave the command with all that have led to it; a person is
    // asked on.
    bool stopInput = false;
    // An expression that answered one of its prompts could not be evaluated, and there was nobody
    // to answer again.
    bool expressionFailed = false;
};

// A module that can't be loaded; what() (UTF-8) says which file and why.
class ModuleError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// Thrown by commands of the host for what can't be done; the sentence goes to Output::error.
class CommandFailure : public std::runtime_error {
  public:
    explicit CommandFailure(std::wstring sentence);
    const std::wstring& sentence() const { return sentence_; }

  private:
    std::wstring sentence_;
};

class Session {
  public:
    // The session uses `input` and `output` for its whole life; both belong to the caller. There is
    // one session at a time: a second one throws std::logic_error.
    Session(Input& input, Output& output);
    // Unloads the modules, in reverse order, and closes the drawing unsaved.
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    // The living session, or null.
    static Session* current();

    // --- the drawing ---------------------------------------------------------------------------

    // Opens a drawing in place of the one that is open, which is closed unsaved. Throws
    // dxf::ReadError; the drawing that was open stays then.
    void openDrawing(const std::filesystem::path& path);
    // The same for a drawing that is in memory already.
    void useDrawing(std::unique_ptr<AcDbDatabase> drawing);
    void closeDrawing();
    // Null when no drawing is open.
    AcDbDatabase* drawing() const;

    // --- modules -------------------------------------------------------------------------------

    // Loads a module: both exports are checked, kInitAppMsg sent, then kLoadDwgMsg when a drawing
    // is open. Loading it again does nothing. Throws ModuleError; nothing stays loaded then.
    void loadModule(const std::filesystem::path& path);
    // Sends kUnloadDwgMsg (with a drawing open) and kUnloadAppMsg and unloads. Throws ModuleError
    // when it is not loaded or has not been unlocked.
    void unloadModule(const std::filesystem::path& path);
    std::vector<std::filesystem::path> modules() const;

    // --- commands ------------------------------------------------------------------------------

    struct HostCommand {
        std::wstring name;  // in capitals
        std::vector<std::wstring> aliases;
        std::wstring help;  // one line
        // Whether what it does can be undone in one step. Without, no undo step is made, as for U
        // and QSAVE.
        bool undoable = false;
        std::function<void(Session&)> run;  // throws CommandFailure for what can't be done
        // Whether it can be given as the answer to a word prompt of another command, with "'" in
        // front; that prompt is shown again then.
        bool transparent = false;
    };
    // Host commands are found before those of modules. A name that is taken throws
    // std::logic_error.
    void addHostCommand(HostCommand command);
    const std::vector<HostCommand>& hostCommands() const;
    // Names of all commands, the modules' included, sorted; for HELP and completion.
    std::vector<std::wstring> commandNames() const;
    // Names of LISP's functions and of the symbols that have a value, in capitals; for completion.
    std::vector<std::wstring> lispNames() const;

    // Runs one command by name; `_`, `.` and `'` in front are passed over, case is ignored. One
    // undo step. Exceptions that leave the command are caught by the outermost call: the changes
    // are rolled back, and the result tells the exception in the reporter's words.
    CommandResult runCommand(std::wstring_view name);

    // Reads commands from the input until it ends or quit() is called. An empty reply repeats the
    // last command, an expression is evaluated and its value shown. Listeners hear of each command.
    void run();
    // Ends run() when the running command has returned.
    void quit();
    bool quitting() const;

    // Asks the running command to stop: acedUsrBrk answers 1 until the next command begins. May be
    // called from a signal handler.
    void interrupt();

    // What the listener is told when a command has ended, before the next reply is read. Without a
    // listener the session itself says what went wrong.
    void onCommandEnded(std::function<void(CommandResult&)> listener);

    // Puts the exception that is being handled into words; called inside a catch block. Without
    // one, what() of a standard exception or "an exception of an unknown class" is told.
    void setExceptionReporter(std::function<std::wstring()> reporter);

    // Answers come from `text` first, until it ends; then from the input again. A script that is
    // running already is stopped, be it the input itself (Input::isScript). All commands of the
    // script are one undo step together, each one still a step inside of it. Throws CommandFailure
    // when `name` has run already in the chain of scripts that have started each other: it would
    // never end.
    void runScript(std::wstring text, std::wstring name);

    // --- prompts of host commands --------------------------------------------------------------

    // One reply; throws Cancelled when it is cancelled or the input has ended, which a command lets
    // pass. `text` replies may hold blanks; a word may be the text or number that an expression
    // gives, any other value throws CommandFailure.
    class Cancelled {};
    std::wstring askWord(std::wstring_view prompt, std::vector<std::wstring> completions = {});
    std::wstring askText(std::wstring_view prompt);
    // The name of a file, which ends like one of `types` (".dxf"; "": any), as a word.
    std::wstring askFile(std::wstring_view prompt, std::vector<std::wstring> types);

    // What stands behind the last reply in its line, unread; a person's can be dropped.
    const std::wstring& restOfLine() const;
    void dropRestOfLine();

    void print(std::wstring_view text);
    void error(std::wstring_view sentence);

    // --- undo ----------------------------------------------------------------------------------

    // Takes back, or does again, up to `steps` commands and gives how many it was.
    int undo(int steps = 1);
    int redo(int steps = 1);

    class Implementation;
    Implementation& implementation() const { return *implementation_; }

  private:
    std::unique_ptr<Implementation> implementation_;
};

}  // namespace host::editor
