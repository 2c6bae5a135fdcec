// The command line of a session: showing prompts, taking replies, expressions among them.
#include <adscodes.h>

#include <algorithm>
#include <new>
#include <utility>

#include "host/database/Undo.h"
#include "host/editor/SelectionSets.h"
#include "host/editor/SessionState.h"
#include "host/editor/Words.h"

namespace host::editor {

using State = Session::Implementation;

namespace {

// "!name" stands for the value of a LISP symbol, unless it stood in quotes.
bool isSymbolReply(const Reply& reply) {
    return reply.kind == Reply::Kind::text && !reply.quoted && reply.text.size() > 1 &&
           reply.text.front() == L'!';
}

}  // namespace

void State::print(std::wstring_view text) {
    if (text.empty()) return;
    // Texts begin with the line end that a typed reply lacks on the screens they were written for.
    if (freshLine_ && text.front() == L'\n') text.remove_prefix(1);
    freshLine_ = false;
    if (!text.empty()) output_.print(text);
}

void State::error(std::wstring_view sentence) {
    output_.error(sentence);
    freshLine_ = true;
}

void State::showPrompt(std::wstring_view prompt) {
    std::wstring shown(prompt);
    if (transparent_) shown.insert(!shown.empty() && shown.front() == L'\n' ? 1 : 0, L">>");
    if (freshLine_ && !shown.empty() && shown.front() == L'\n') shown.erase(0, 1);
    freshLine_ = false;
    if (!shown.empty()) output_.prompt(shown);
}

Input& State::source() {
    if (ahead_ != nullptr && ahead_->pending()) return *ahead_;
    if (script_ != nullptr && script_->pending()) return *script_;
    return input_;
}

// A person answers what stands on the screen. For other inputs the prompt is shown together with
// the reply, so that none is left hanging where a script ends.
Reply State::fetch(const Request& request, bool& stops, bool& hidden) {
    bool shown = false;
    while (true) {
        Input& from = source();
        stops = from.stopsWhenOutOfStep();
        if (&from != &input_ && input_.takeCancel()) {
            showPrompt(request.prompt);
            sent_.clear();
            stopInputs();
            return {Reply::Kind::cancel, {}, {}, 0, 0};
        }
        if (!shown && !stops) {
            showPrompt(request.prompt);
            shown = true;
        }
        Reply reply = from.next(request);
        const bool ended = reply.kind == Reply::Kind::end;
        if (ended && &from != &input_) continue;
        const bool commandsAreOver = ended && request.kind == Request::Kind::command;
        hidden = &from == ahead_.get() && !aheadIsShown_;
        if (!shown && !commandsAreOver && !hidden) {
            showPrompt(request.prompt);
            shown = true;
        }
        if (ended && shown) output_.print(L"\n");
        return reply;
    }
}

Answer State::askOnce(const Request& request, bool& quoted) {
    restOfLine_.clear();
    if (isGiven()) {
        if (!isPauseGiven()) {
            Answer answer = takeGiven();
            echo(request.prompt, answer);
            return answer;
        }
        ++given_->next;
    }
    if (inputEnded_) return {};
    bool stops = false;
    bool hidden = false;
    const Reply reply = fetch(request, stops, hidden);
    freshLine_ = freshLine_ || !hidden;
    if (reply.kind == Reply::Kind::end) {
        inputEnded_ = true;
        return {};
    }
    if (!hidden) output_.reply(reply);
    quoted = reply.quoted;
    restOfLine_ = reply.rest;
    if (reply.kind == Reply::Kind::cancel) {
        cancelShown_ = true;
        return {Answer::Kind::cancel, {}, {}, {}, stops};
    }
    if (request.kind != Request::Kind::text &&
        (reply.kind == Reply::Kind::lisp || isSymbolReply(reply))) {
        return evaluated(reply, stops);
    }
    if (reply.kind == Reply::Kind::entities) {
        ads_name set;
        SelectionSets::instance().make(reply.entities, set);
        return {
            Answer::Kind::value, reply.text, std::make_shared<const lisp::HeldSet>(set[0], set[1]),
            reply.where,         stops,      reply.lockedOut};
    }
    return {Answer::Kind::text, reply.text, {}, reply.where, stops};
}

Answer State::ask(const Request& request) {
    while (true) {
        bool quoted = false;
        Answer answer = askOnce(request, quoted);
        const bool mayBeCommand = request.kind == Request::Kind::word && !quoted;
        if (!mayBeCommand || !ranTransparently(answer)) return answer;
    }
}

Answer State::askWord(std::wstring_view prompt, std::vector<std::wstring> completions) {
    return ask({Request::Kind::word, std::wstring(prompt), std::move(completions)});
}

lisp::Value State::evaluate(const Reply& reply) {
    // A wish to stop that came before was meant for something else.
    if (!commandIsRunning() && !lisp.isEvaluating()) interrupted = false;
    if (reply.kind != Reply::Kind::lisp) return lisp.variable(reply.text.substr(1));
    // What a person types counts for itself.
    const bool typed = reply.where.empty();
    const lisp::Position start{typed ? 1 : reply.line, typed ? 1 : reply.column};
    return lisp.evaluate(reply.text, start);
}

void State::tellLisp(const lisp::Error& failure, const Reply& reply) {
    // "RUN.scr, line 3" is where the expression begins; the place told is inside of it.
    const std::size_t comma = reply.where.rfind(L", line ");
    const std::wstring file =
        comma == std::wstring::npos ? L"" : reply.where.substr(0, comma) + L", ";
    error(L"LISP: " + failure.sentence() + L" (" + file + L"line " +
          std::to_wstring(failure.where().line) + L", column " +
          std::to_wstring(failure.where().column) + L")");
}

Answer State::evaluated(const Reply& reply, bool stops) {
    Answer answer{Answer::Kind::value, reply.text, {}, reply.where, stops};
    // What the expression asks is not asked by the running command, nor answered by what was given
    // to it.
    CommandResult* const running = std::exchange(running_, nullptr);
    Given* const given = std::exchange(given_, nullptr);
    const bool failedBefore = std::exchange(expressionFailed_, false);
    try {
        answer.value = evaluate(reply);
        // An expression that was answered wrongly has a value, but not the one that was meant.
        if (expressionFailed_) answer.kind = Answer::Kind::failed;
    } catch (const lisp::Error& failure) {
        tellLisp(failure, reply);
        answer.kind = Answer::Kind::failed;
    } catch (const std::bad_alloc&) {
        lisp.clear();
        error(L"LISP: there is not enough memory for " + lisp::briefText(reply.text) +
              L"; all symbols have lost their values");
        answer.kind = Answer::Kind::failed;
    } catch (...) {
        running_ = running;
        given_ = given;
        expressionFailed_ = failedBefore;
        throw;
    }
    running_ = running;
    given_ = given;
    const bool failed = answer.kind == Answer::Kind::failed && stops;
    expressionFailed_ = failedBefore || failed;
    if (failed && running_ != nullptr) running_->expressionFailed = true;
    return answer;
}

void State::record(PromptRecord record) {
    if (running_ != nullptr) running_->prompts.push_back(std::move(record));
}

int State::refusePrompt(PromptRecord::Kind kind) {
    PromptRecord refused;
    refused.kind = kind;
    refused.code = RTERROR;
    record(std::move(refused));
    return RTERROR;
}

void State::sendString(std::wstring text, bool echo) {
    sent_.push_back({std::move(text), echo});
}

bool State::inputPending() const {
    return !sent_.empty() || (ahead_ != nullptr && ahead_->pending()) ||
           (script_ != nullptr && script_->pending()) || input_.pending();
}

void State::startScript(std::wstring text, std::wstring name) {
    if (script_ == nullptr) scriptChain_.clear();
    if (std::find(scriptChain_.begin(), scriptChain_.end(), name) != scriptChain_.end())
        throw CommandFailure(L"the script '" + name +
                             L"' was not run: it has led to itself and would never end");
    scriptChain_.push_back(name);
    endScript();
    if (input_.isScript()) input_.stop();
    script_ = std::make_unique<ScriptInput>(std::move(text), std::move(name));
    if (drawing_ != nullptr) {
        database::beginGroup(*drawing_, L"SCRIPT");
        scriptGroupIsOpen_ = true;
    }
}

void State::endScript() {
    if (scriptGroupIsOpen_) database::endGroup(*drawing_);
    scriptGroupIsOpen_ = false;
    script_.reset();
}

}  // namespace host::editor
