#include "host/console/Verdict.h"

#include <adscodes.h>

#include <algorithm>
#include <string>

#include "host/database/Drawing.h"
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

// "ARC 3C"
std::wstring described(AcDbObjectId entity) {
    wchar_t handle[AcDbHandle::kStrSiz] = {};
    entity.handle().getIntoAsciiBuffer(handle);
    const dxf::Document& document = database::document(*entity.database());
    const auto record = document.find(entity.handle());
    const std::wstring type = record ? editor::fromUtf8(document.type(*record)) : L"entity";
    return type + L" " + handle;
}

// Where a script gave the command, as the beginning of a sentence.
std::wstring place(const CommandResult& result) {
    return result.where.empty() ? L"" : result.where + L": ";
}

bool isExpression(const std::wstring& reply) {
    return !reply.empty() && reply.front() == L'(';
}

// An expression may go on over lines; a message is one.
std::wstring firstLine(const std::wstring& expression) {
    const std::size_t end = expression.find(L'\n');
    return end == std::wstring::npos ? expression : expression.substr(0, end) + L" ...";
}

// Why a prompt that ended a command got nothing.
std::wstring reason(const PromptRecord& prompt) {
    if (prompt.code == RTCAN) return L"it was cancelled";
    if (prompt.kind == PromptRecord::Kind::selection)
        return L"nothing was selected. ALL selects what is not on a frozen or locked layer";
    if (prompt.kind == PromptRecord::Kind::entity) {
        if (prompt.reply.empty()) return L"nothing was picked";
        if (isExpression(prompt.reply))
            return firstLine(prompt.reply) + L" is no entity of the drawing";
        return L"there is nothing at the point " + prompt.reply +
               L". A pick reaches a hundredth of the height of the drawing's view; (handent "
               L"\"2F\") names an entity"
               L" by its handle";
    }
    return L"it did not get what it asked for";
}

// The aligning command asks nothing more when the entity that was picked gives no line.
bool pickWasNoLine(const CommandResult& result) {
    return result.end == CommandResult::End::done &&
           editor::equalIgnoringCase(result.name, alignCommand) && result.prompts.size() == 1 &&
           result.prompts.front().code == RTNORM;
}

std::wstring noLine(const CommandResult& result) {
    const auto& picked = result.prompts.front().entities;
    return (picked.empty() ? L"what was picked" : described(picked.front())) +
           L" can't be read as a line. Lines, points, splines, ellipses and polylines without "
           L"bulges can; pick one"
           L" of these (arcs, circles and bulged polylines are for a later version)";
}

}  // namespace

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
                result.stopInput = !person_;
                judge(Exit::cancelled, true);
            } else if (ofModule) {
                judge(Exit::done, true);
            }
            break;
        case End::cancelled:
            if (ofModule && !person_ && !result.prompts.empty())
                session.error(start + result.name + L" did not finish: " +
                              reason(result.prompts.back()));
            judge(Exit::cancelled, ofModule);
            break;
        case End::inputEnded:
            session.error(start + L"the answers ended inside " + result.name +
                          L". Give an answer for each of its prompts, an empty line for Enter");
            judge(Exit::scriptEnded, ofModule);
            break;
        case End::exceptionLeft:
            session.error(start + result.name + L" was stopped by " + result.exception +
                          L". What it had changed was taken back");
            judge(Exit::cancelled, true);
            break;
        case End::unknown:
            session.error(start + L"there is no command " + result.name +
                          L". HELP lists the commands");
            judge(Exit::scriptEnded, false);
            break;
        case End::failed:
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
