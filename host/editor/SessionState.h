// What a session keeps between calls, and the operations that the functions of the interface are
// made of. Only host/editor includes this.
#pragma once

#include <acdocman.h>
#include <adsdef.h>
#include <dbmain.h>
#include <gepnt3d.h>

#include <atomic>
#include <deque>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/editor/Lisp.h"
#include "host/editor/Script.h"
#include "host/editor/Session.h"
#include "host/editor/Variables.h"

namespace host::editor {

// What came of a prompt.
struct Answer {
    // value: an expression was evaluated; failed: it could not be, which has been said.
    enum class Kind { text, value, failed, cancel, end };
    Kind kind = Kind::end;
    std::wstring text;  // as it was given, expressions too
    lisp::Value value;
    std::wstring where;
    // Whether the input that gave it is stopped when its answers are out of step.
    bool stops = false;
    std::vector<AcDbObjectId> lockedOut = {};  // as the reply has it

    bool isEmpty() const { return kind == Kind::text && text.empty(); }
    bool isCancel() const { return kind == Kind::cancel || kind == Kind::end; }
    // What ends a prompt that asks again: a person sees why an expression failed, and answers; the
    // next line of a script is the answer to another prompt.
    bool givesUp() const { return isCancel() || (kind == Kind::failed && stops); }
    // As a prompt for a word takes it: the text, or the value of an expression as it is printed.
    std::wstring word() const {
        const std::wstring* plain = kind == Kind::value ? lisp::textIn(value) : &text;
        return plain != nullptr ? *plain : lisp::text(value, false, lisp::longestShown);
    }
};

class Session::Implementation {
  public:
    Implementation(Session& owner, Input& input, Output& output);
    ~Implementation();

    // --- the command line ----------------------------------------------------------------------

    void print(std::wstring_view text);
    void error(std::wstring_view sentence);
    // Shows the prompt and takes a reply. What is no free text may be an expression or "!symbol".
    Answer ask(const Request& request);
    Answer askWord(std::wstring_view prompt, std::vector<std::wstring> completions = {});
    // One reply of a host command's own, noted as a prompt; throws Cancelled, also when it could
    // not be evaluated. The second as a text.
    Answer askOrCancel(const Request& request);
    std::wstring askForWord(const Request& request);
    // The point that a reply means; none for anything else.
    std::optional<AcGePoint3d> pointFrom(const Answer& answer) const;
    // Notes how a prompt of the running command ended.
    void record(PromptRecord record);
    // Notes that a prompt could not be shown for want of a drawing; gives RTERROR.
    int refusePrompt(PromptRecord::Kind kind);

    // Of the last reply; empty when an expression gave it.
    const std::wstring& restOfLine() const { return restOfLine_; }
    void dropRestOfLine() { input_.dropLine(); }

    Output& output() { return output_; }
    Session& session() const { return owner_; }

    // --- commands ------------------------------------------------------------------------------

    CommandResult runCommand(std::wstring_view typed, std::wstring where);
    void run();
    bool commandIsRunning() const { return depth_ > 0; }
    const std::wstring& commandName() const { return commandName_; }
    // Text that is taken as if it was typed, once the running command has ended; without `echo` it
    // and the prompts that it answers are not shown.
    void sendString(std::wstring text, bool echo);
    bool inputPending() const;

    void startScript(std::wstring text, std::wstring name);

    // Runs the commands that `values` name, each answered by the values behind its name: texts and
    // numbers as if they were typed, "" Enter, "\\" whatever the input says, nil cancels, entities,
    // sets and points as they are. When the values end inside of a command the input goes on
    // answering. Throws lisp::Error for a value that names no command, for a command that does not
    // get to its end, and inside of a command.
    void runFromLisp(const std::vector<lisp::Value>& values, lisp::Position where);

    // --- the drawing ---------------------------------------------------------------------------

    void useDrawing(std::unique_ptr<AcDbDatabase> drawing);
    void closeDrawing();
    AcDbDatabase* drawing() const { return drawing_.get(); }

    // Locks of the drawing as a document, in the order they were taken; each stands in the ledger.
    const std::vector<AcAp::DocLockMode>& documentLocks() const { return documentLocks_; }
    void lockDocument(AcAp::DocLockMode mode);
    // Takes back all but the first `kept`.
    void unlockDocument(std::size_t kept);

    struct View {
        AcGePoint3d center;
        double height = 1.0;
    };
    const View& view();
    void setView(const View& view) { view_ = view; }
    // Those before it, the latest last.
    std::deque<View> earlierViews;
    // How far from a typed point an entity may lie to be picked: a hundredth of the view's height.
    double pickReach() { return view().height / 100.0; }

    std::wstring describeException() const;

    // --- state that the functions of the interface share ---------------------------------------

    Variables variables;
    lisp::Interpreter lisp;
    std::vector<AcDbObjectId> previousSelection;
    AcGePoint3d lastPoint;
    std::wstring lastVariable;  // that SETVAR was given
    // What acedInitGet has set for the next prompt.
    int initialBits = 0;
    std::wstring keywords;
    std::wstring keywordInput;
    std::atomic<bool> interrupted{false};
    // Whether the running command is asked to stop; from then on it knows, and its end is told as a
    // cancel unless one of its prompts has been.
    bool hearsStop();
    std::optional<Meter> meter;

    std::vector<HostCommand> hostCommands;
    std::function<void(CommandResult&)> listener;
    std::function<std::wstring()> exceptionReporter;
    bool quitting = false;

  private:
    struct Callable;
    class Ledgered;

    std::optional<Callable> find(std::wstring_view typed) const;
    std::optional<Callable> variableCommand(std::wstring_view name) const;
    void call(const Callable& command, CommandResult& result);
    void judge(CommandResult& result) const;
    void conclude(CommandResult& result, const Answer& given);
    void stopInputs();
    void sayWhatHappened(const CommandResult& result);
    void repeatOrRun(const Answer& answer);
    void settleCancel();
    void evaluateAtCommandPrompt(const Answer& answer);
    void endScript();
    Input& source();
    Reply fetch(const Request& request, bool& stops, bool& hidden);
    Answer evaluated(const Reply& reply, bool stops);
    lisp::Value evaluate(const Reply& reply);
    void tellLisp(const lisp::Error& failure, const Reply& reply);
    struct Given {
        const std::vector<lisp::Value>& values;
        std::size_t next = 0;
    };
    bool isGiven() const;
    bool isPauseGiven() const;
    Answer takeGiven();
    void echo(std::wstring_view prompt, const Answer& answer);
    void runNextFromLisp(lisp::Position where);
    Answer askOnce(const Request& request, bool& quoted);
    // Runs a command that was given as the answer to the prompt of another; false for any other
    // answer. Not inside of such a command.
    bool ranTransparently(const Answer& answer);
    void showPrompt(std::wstring_view prompt);

    Session& owner_;
    Input& input_;
    Output& output_;
    std::unique_ptr<ScriptInput> script_;
    std::wstring restOfLine_;
    std::vector<std::wstring> scriptChain_;  // the running script behind those that led to it
    bool scriptGroupIsOpen_ = false;
    std::unique_ptr<ScriptInput> ahead_;
    struct Sent {
        std::wstring text;
        bool echo = true;
    };
    std::deque<Sent> sent_;
    bool aheadIsShown_ = true;
    bool freshLine_ =
        true;  // nothing stands on the line: it is the first, or a reply has ended the last
    bool inputEnded_ = false;
    int depth_ = 0;
    Given* given_ = nullptr;    // while (command ...) runs commands
    bool transparent_ = false;  // a command runs inside a prompt of another
    CommandResult* running_ = nullptr;
    bool stopHeard_ = false;         // by a command since the last prompt for one
    bool cancelShown_ = false;       // at a prompt, since then
    bool expressionFailed_ = false;  // since the innermost evaluation began, in an input that stops
    std::vector<AcAp::DocLockMode> documentLocks_;
    std::wstring commandName_;
    std::wstring lastCommand_;
    std::unique_ptr<AcDbDatabase> drawing_;
    std::optional<View> view_;
};

// The living session's state, or null.
inline Session::Implementation* currentState() {
    Session* session = Session::current();
    return session == nullptr ? nullptr : &session->implementation();
}

}  // namespace host::editor
