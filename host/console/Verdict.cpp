#include "host/console/Verdict.h"

#include <adscodes.h>
#include <dbregion.h>

#include <algorithm>
#include <string>
#include <utility>

#include "host/console/SelectionNotes.h"
#include "host/database/Drawing.h"
#include "host/editor/EntityName.h"
#include "host/editor/Nearest.h"
#include "host/editor/Points.h"
#include "host/editor/Words.h"

namespace host::console {

namespace {

using editor::CommandResult;
using editor::PromptRecord;
using editor::Session;

constexpr const wchar_t* alignCommand = L"ZEPTALIGNENTITIES";

bool isHostCommand(const Session& session, const CommandResult& result) {
    const auto& commands = session.hostCommands();
    return std::any_of(commands.begin(), commands.end(), [&](const Session::HostCommand& command) {
        return editor::equalIgnoringCase(command.name, result.name);
    });
}

std::wstring place(const CommandResult& result) {
    return result.where.empty() ? L"" : result.where + L": ";
}

// What was typed, as a message tells it: an expression may go on over lines, and anything may be
// long.
std::wstring shown(const std::wstring& typed) {
    constexpr std::size_t longest = 100;
    const std::size_t end = std::min({typed.find(L'\n'), longest, typed.size()});
    return end == typed.size() ? typed : typed.substr(0, end) + L" ...";
}

std::wstring begins(const CommandResult& result) {
    return L" is empty and begins " + result.name + L" once more";
}

// "; line 6 is empty and begins LIST once more": what a person who wrote the script has not seen.
std::wstring begunBy(const CommandResult& result) {
    const std::size_t line = result.where.rfind(L"line ");
    if (!result.repeated || line == std::wstring::npos) return {};
    return L"; " + result.where.substr(line) + begins(result);
}

// Names in other programs for what a command here does.
std::wstring knownElsewhereAs(const std::wstring& typed) {
    constexpr std::pair<const wchar_t*, const wchar_t*> others[] = {
        {L"EXIT", L"QUIT"}, {L"END", L"QUIT"}, {L"CLOSE", L"QUIT"}, {L"?", L"HELP"}};
    for (const auto& [name, ours] : others)
        if (editor::equalIgnoringCase(typed, name)) return ours;
    return {};
}

std::wstring unknownCommand(const Session& session, const std::wstring& typed) {
    const std::wstring name = typed.substr(std::min(typed.find_first_not_of(L"_.'"), typed.size()));
    const std::wstring ours = knownElsewhereAs(name);
    const std::wstring hint = ours.empty() ? editor::didYouMean(name, session.commandNames())
                                           : L"; did you mean " + ours + L"?";
    return L"there is no command " + shown(typed) + (hint.empty() ? L"." : hint) +
           L" HELP lists the commands";
}

bool isExpression(const std::wstring& reply) {
    return !reply.empty() && (reply.front() == L'(' || reply.front() == L'!');
}

// The aligning command asks nothing more when the entity that was picked gives no line.
bool pickWasNoLine(const CommandResult& result) {
    return result.end == CommandResult::End::done &&
           editor::equalIgnoringCase(result.name, alignCommand) && result.prompts.size() == 1 &&
           result.prompts.front().code == RTNORM;
}

std::wstring noLine(const CommandResult& result) {
    const auto& picked = result.prompts.front().entities;
    if (!picked.empty() && picked.front().objectClass() == AcDbRegion::desc())
        return editor::entityName(picked.front()) +
               L" can't be read as a line: the body of a region of a drawing is kept as it stands, "
               L"unread. Pick one of the curves along it, or a polyline drawn over them";
    return (picked.empty() ? L"what was picked" : editor::entityName(picked.front())) +
           L" can't be read as a line. Lines, polylines, arcs, circles, ellipses, splines and "
           L"points can; pick one of these";
}

}  // namespace

// Why a prompt that ended a command got nothing.
std::wstring Verdict::reason(const Session& session, const PromptRecord& prompt) const {
    const bool align = options_.align.has_value();
    if (session.drawing() == nullptr) return L"no drawing is open; OPEN opens one";
    if (prompt.code == RTCAN) return L"it was cancelled";
    if (prompt.kind == PromptRecord::Kind::selection)
        return align ? editor::fromUtf8(whyNothing(*session.drawing(), options_.align->filters))
                     : L"nothing was selected. ALL selects what is not on a frozen or locked layer";
    if (prompt.kind == PromptRecord::Kind::entity) {
        if (prompt.reply.empty()) return L"nothing was picked";
        if (align && !options_.align->lineLayer.empty())
            return editor::fromUtf8(whyNoLine(*session.drawing(), options_.align->lineLayer));
        if (align && !options_.align->lineHandle.empty())
            return L"no entity of the drawing has the handle " +
                   editor::fromUtf8(options_.align->lineHandle);
        if (isExpression(prompt.reply))
            return shown(prompt.reply) + L" is no entity of the drawing";
        if (!editor::parsePoint(editor::trimmed(prompt.reply), {}))
            return shown(prompt.reply) +
                   L" is no point as in 3,4 and no entity as in (handent \"2F\")";
        return L"there is nothing at the point " + shown(prompt.reply) +
               L". A pick reaches a hundredth of the height of the drawing's view; " +
               (align ? L"--line handle=2F" : L"(handent \"2F\")") +
               L" names an entity by its handle";
    }
    return L"it did not get what it asked for";
}

void Verdict::hear(Session& session, CommandResult& result) {
    using End = CommandResult::End;
    const bool ofModule = !isHostCommand(session, result);
    const std::wstring start = place(result);
    for (const std::string& leak : result.leaks)
        session.error(L"internal: " + result.name + L" left open: " + editor::fromUtf8(leak));
    switch (result.end) {
        case End::done:
            if (pickWasNoLine(result)) {
                session.error(start + result.name + L" did nothing: " + noLine(result));
                result.stopInput = true;
                judge(Exit::cancelled, true);
            } else if (ofModule) {
                judge(Exit::done, true);
            }
            break;
        case End::cancelled:
            if (ofModule && !result.prompts.empty() && (!person_ || session.drawing() == nullptr))
                session.error(start + result.name + L" did not finish: " +
                              reason(session, result.prompts.back()) + begunBy(result));
            judge(Exit::cancelled, ofModule);
            break;
        case End::inputEnded:
            session.error(start + L"the answers ended inside " + result.name +
                          (result.repeated ? begunBy(result)
                                           : L". Give an answer for each of its prompts, an empty "
                                             L"line for Enter"));
            judge(Exit::scriptEnded, ofModule);
            break;
        case End::exceptionLeft:
            session.error(start + result.name + L" was stopped by " + result.exception +
                          L". What it had changed was taken back");
            judge(Exit::cancelled, true);
            break;
        case End::unknown:
            session.error(start + unknownCommand(session, result.name));
            judge(Exit::scriptEnded, false);
            break;
        case End::failed:
            if (result.expressionFailed && ofModule && result.name != L"LISP")
                session.error(start + result.name +
                              L" did not finish: an expression could not be evaluated");
            if (result.repeated && !result.where.empty())
                session.error(result.where + begins(result));
            judge(pending_ == Exit::done ? Exit::cancelled : pending_, false);
            break;
    }
    pending_ = Exit::done;
}

void Verdict::fail(Exit code) {
    pending_ = code;
}

void Verdict::judge(Exit code, bool decidesForPerson) {
    if (person_) {
        if (decidesForPerson) exit_ = code;
    } else if (exit_ == Exit::done) {
        exit_ = code;
    }
}

}  // namespace host::console
