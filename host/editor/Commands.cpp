// Running commands: finding them, one undo step each, exceptions, and what they leave open.
#include <adscodes.h>
#include <dbapserv.h>

#include <algorithm>
#include <utility>

#include "host/database/DatabaseImp.h"
#include "host/database/Fault.h"
#include "host/database/Ledger.h"
#include "host/database/ObjectImp.h"
#include "host/database/Undo.h"
#include "host/editor/CommandStack.h"
#include "host/editor/SelectionSets.h"
#include "host/editor/SessionState.h"
#include "host/editor/VariablePrompt.h"
#include "host/editor/Words.h"

namespace host::editor {

using State = Session::Implementation;

// A command that was found: one of the host's or one of a module's.
struct State::Callable {
    std::wstring name;
    bool undoable = true;
    std::function<void(Session&)> run;
};

// What was open when a command began, so that what it leaves open can be told and closed.
class State::Ledgered {
  public:
    explicit Ledgered(const State& state)
        : drawing_(state.drawing()),
          locks_(state.documentLocks().size()),
          before_(database::Ledger::instance().leaks()),
          sets_(SelectionSets::instance().existing()) {
        if (drawing_ != nullptr) objects_ = drawing_->impl()->openObjects();
        std::sort(before_.begin(), before_.end());
    }

    std::vector<std::string> leaks() const {
        std::vector<std::string> now = database::Ledger::instance().leaks();
        std::sort(now.begin(), now.end());
        std::vector<std::string> more;
        std::set_difference(now.begin(), now.end(), before_.begin(), before_.end(),
                            std::back_inserter(more));
        return more;
    }

    // Gives back what can be given back without its holder.
    void tidy(State& state) const {
        SelectionSets::instance().freeOthers(sets_);
        state.unlockDocument(locks_);
        AcDbDatabase* drawing = state.drawing();
        if (drawing == nullptr || drawing != drawing_) return;
        for (AcDbObject* object : drawing->impl()->openObjects()) {
            const bool wasOpen =
                std::find(objects_.begin(), objects_.end(), object) != objects_.end();
            if (!wasOpen) object->impl()->closeAll();
        }
    }

  private:
    AcDbDatabase* drawing_;
    std::size_t locks_;
    std::vector<std::string> before_;
    std::vector<std::int64_t> sets_;
    std::vector<AcDbObject*> objects_;
};

namespace {

// "_" asks for the English name, "." for the host's own command, "'" for running inside another.
std::wstring_view withoutPrefixes(std::wstring_view typed) {
    const std::size_t first = typed.find_first_not_of(L"_.'");
    return first == std::wstring_view::npos ? std::wstring_view() : typed.substr(first);
}

bool gotNothing(const PromptRecord& prompt) {
    if (prompt.code == RTCAN) return true;
    const bool pick =
        prompt.kind == PromptRecord::Kind::entity || prompt.kind == PromptRecord::Kind::selection;
    return pick && prompt.code != RTNORM;
}

}  // namespace

std::optional<State::Callable> State::find(std::wstring_view typed) const {
    const std::wstring_view name = withoutPrefixes(trimmed(typed));
    for (const HostCommand& command : hostCommands) {
        const auto same = [&](const std::wstring& other) { return equalIgnoringCase(other, name); };
        if (same(command.name) ||
            std::any_of(command.aliases.begin(), command.aliases.end(), same)) {
            return Callable{command.name, command.undoable, command.run};
        }
    }
    const RegisteredCommand* command = CommandStack::instance().find(name);
    if (command == nullptr) return variableCommand(name);
    const AcRxFunctionPtr function = command->function;
    return Callable{command->global, (command->flags & ACRX_CMD_NO_UNDO_MARKER) == 0,
                    [function](Session&) { function(); }};
}

// The name of a system variable is a command that sets it.
std::optional<State::Callable> State::variableCommand(std::wstring_view name) const {
    const std::wstring known = upperCase(name);
    const std::vector<std::wstring> names = variables.names();
    if (!std::binary_search(names.begin(), names.end(), known)) return std::nullopt;
    return Callable{known, false, [known](Session& session) { askVariable(session, known); }};
}

// Runs the command inside its undo group. Exceptions of another kind than the host's own leave with
// the group rolled back.
void State::call(const Callable& command, CommandResult& result) {
    AcDbDatabase* drawing = command.undoable ? drawing_.get() : nullptr;
    if (drawing != nullptr) result.undoGroup = database::beginGroup(*drawing, command.name);
    const auto endGroup = [&](bool keep) {
        if (drawing == nullptr || drawing != drawing_.get()) return;
        keep ? database::endGroup(*drawing) : database::rollback(*drawing);
    };
    try {
        const fault::Outside outside;
        command.run(owner_);
        endGroup(true);
    } catch (const Cancelled&) {
        endGroup(true);
    } catch (const CommandFailure& failure) {
        endGroup(true);
        error(failure.sentence());
        result.end = CommandResult::End::failed;
    } catch (...) {
        endGroup(false);
        throw;
    }
}

bool State::ranTransparently(const Answer& answer) {
    const bool asks = answer.kind == Answer::Kind::text && answer.text.size() > 1 &&
                      answer.text.front() == L'\'' && commandIsRunning() && !transparent_;
    const std::optional<Callable> command = asks ? find(answer.text) : std::nullopt;
    if (!command) return false;
    const auto known =
        std::find_if(hostCommands.begin(), hostCommands.end(),
                     [&](const HostCommand& own) { return own.name == command->name; });
    if (known == hostCommands.end() || !known->transparent) return false;
    transparent_ = true;
    CommandResult result;
    try {
        result = runCommand(answer.text, answer.where);
        transparent_ = false;
    } catch (...) {
        transparent_ = false;
        throw;
    }
    if (result.end != CommandResult::End::done) conclude(result, answer);
    print(L"\nResuming " + commandName_ + L" command.");
    return true;
}

CommandResult State::runCommand(std::wstring_view typed, std::wstring where) {
    CommandResult result;
    result.where = std::move(where);
    const std::optional<Callable> command = find(typed);
    if (!command) {
        result.end = CommandResult::End::unknown;
        result.name = trimmed(typed);
        return result;
    }
    result.name = command->name;
    const bool outermost = depth_ == 0;
    if (outermost) {
        interrupted = false;
        commandName_ = command->name;
    }
    CommandResult* const before = std::exchange(running_, &result);
    const Ledgered ledgered(*this);
    ++depth_;
    const auto leave = [&] {
        --depth_;
        running_ = before;
    };
    try {
        call(*command, result);
        leave();
    } catch (...) {
        leave();
        if (!outermost) throw;
        result.end = CommandResult::End::exceptionLeft;
        result.exception = describeException();
    }
    result.leaks = ledgered.leaks();
    if (outermost) ledgered.tidy(*this);
    judge(result);
    return result;
}

void State::judge(CommandResult& result) const {
    using End = CommandResult::End;
    if (result.end != End::done) return;
    const auto& prompts = result.prompts;
    if (std::any_of(prompts.begin(), prompts.end(), gotNothing)) result.end = End::cancelled;
    if (result.end == End::cancelled && inputEnded_) result.end = End::inputEnded;
    if (result.expressionFailed) result.end = End::failed;
}

void State::conclude(CommandResult& result, const Answer& given) {
    using End = CommandResult::End;
    result.stopInput = given.stops && result.end != End::done && result.end != End::exceptionLeft;
    if (listener)
        listener(result);
    else
        sayWhatHappened(result);
    if (result.stopInput) stopInputs();
    if (!given.stops && (result.end != End::done || result.stopInput)) input_.dropLine();
}

// The input that gave a command and those that have led to it.
void State::stopInputs() {
    if (ahead_ != nullptr) ahead_->stop();
    if (script_ != nullptr) script_->stop();
    if (input_.stopsWhenOutOfStep()) input_.stop();
}

void State::sayWhatHappened(const CommandResult& result) {
    using End = CommandResult::End;
    const std::wstring place = result.where.empty() ? L"" : result.where + L": ";
    if (result.end == End::unknown) error(place + L"there is no command " + result.name);
    if (result.end == End::inputEnded) error(place + L"the answers ended inside " + result.name);
    if (result.end == End::exceptionLeft) {
        error(place + result.name + L" was stopped by " + result.exception +
              L"; its changes were taken back");
    }
    for (const std::string& leak : result.leaks)
        error(result.name + L" left open: " + fromUtf8(leak));
}

void State::run() {
    while (!quitting) {
        if ((ahead_ == nullptr || !ahead_->pending()) && !sent_.empty()) {
            aheadIsShown_ = sent_.front().echo;
            ahead_ = std::make_unique<ScriptInput>(std::move(sent_.front().text),
                                                   L"text sent to the command line",
                                                   ScriptInput::Of::sentText);
            sent_.pop_front();
        }
        if (script_ != nullptr) script_->commandComes();
        if (script_ != nullptr && !script_->pending()) endScript();
        input_.commandComes();
        settleCancel();
        const Answer answer = ask({Request::Kind::command, L"\nCommand: ", owner_.commandNames()});
        switch (answer.kind) {
            case Answer::Kind::end:
                quitting = true;
                break;
            case Answer::Kind::cancel:
                break;
            case Answer::Kind::text:
                repeatOrRun(answer);
                break;
            default:
                evaluateAtCommandPrompt(answer);
                break;
        }
    }
    endScript();
}

bool State::hearsStop() {
    stopHeard_ = stopHeard_ || interrupted;
    return interrupted;
}

// A wish to cancel that came while a command worked was for that command: the prompt for the next
// one is not cancelled by it. A script is, where it takes its next answer.
void State::settleCancel() {
    if (&source() == &input_) {
        if (input_.takeCancel()) input_.dropLine();
        if (stopHeard_ && !cancelShown_) print(L"\n*Cancel*");
    }
    stopHeard_ = cancelShown_ = false;
}

void State::repeatOrRun(const Answer& answer) {
    const std::wstring_view typed = trimmed(answer.text);
    if (typed.empty() && lastCommand_.empty()) return;
    CommandResult result =
        runCommand(typed.empty() ? std::wstring_view(lastCommand_) : typed, answer.where);
    result.repeated = typed.empty();
    if (result.end != CommandResult::End::unknown) lastCommand_ = result.name;
    conclude(result, answer);
}

void State::evaluateAtCommandPrompt(const Answer& answer) {
    CommandResult result;
    result.name = L"LISP";
    result.where = answer.where;
    if (answer.kind == Answer::Kind::failed) {
        result.end = CommandResult::End::failed;
    } else if (inputEnded_) {
        result.end = CommandResult::End::inputEnded;
    } else {
        const std::wstring shown = lisp::text(answer.value, true, lisp::longestShown);
        if (!shown.empty()) print(L"\n" + shown);
        return;
    }
    conclude(result, answer);
}

}  // namespace host::editor
