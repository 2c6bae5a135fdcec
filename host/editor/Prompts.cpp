// The interface's prompts for one entity, a text, a point or a keyword.
#include <acdbads.h>
#include <acedads.h>
#include <windows.h>

#include <algorithm>
#include <cwchar>
#include <vector>

#include "host/database/Fault.h"
#include "host/editor/Drawn.h"
#include "host/editor/EntityName.h"
#include "host/editor/Keywords.h"
#include "host/editor/Points.h"
#include "host/editor/Scripted.h"
#include "host/editor/SelectionSets.h"
#include "host/editor/SessionState.h"
#include "host/editor/Words.h"

using namespace host::editor;

namespace {

using State = Session::Implementation;
using Kind = PromptRecord::Kind;

// The room that a caller of the form without a size gives.
constexpr std::size_t textRoom = 132;

// What the variable ERRNO says about a pick.
constexpr short nothingThere = 7;
constexpr short emptyReply = 52;

std::wstring orDefault(const ACHAR* prompt, const wchar_t* text) {
    return prompt == nullptr ? text : prompt;
}

void setPoint(ads_point to, const AcGePoint3d& point) {
    to[0] = point.x;
    to[1] = point.y;
    to[2] = point.z;
}

Scripted::Prompt scriptedPrompt(const char* function, const ACHAR* prompt) {
    Scripted::Prompt record;
    record.function = function;
    record.text = orDefault(prompt, L"");
    record.focus = GetFocus();
    return record;
}

// Bits and keywords of acedInitGet hold for one prompt.
struct Expected {
    explicit Expected(State& state) : bits(state.initialBits), keywords(state.keywords) {
        state.initialBits = 0;
        state.keywords.clear();
        state.keywordInput.clear();
    }
    int bits;
    std::wstring keywords;
};

// RTKWORD when the reply is one of the keywords, or any with RSG_OTHER; otherwise RTERROR.
int takeKeyword(State& state, const Expected& expected, const std::wstring& reply) {
    if (auto keyword = matchKeyword(reply, expected.keywords)) {
        state.keywordInput = *keyword;
        return RTKWORD;
    }
    if ((expected.bits & RSG_OTHER) == 0) return RTERROR;
    state.keywordInput = reply;
    return RTKWORD;
}

// A distance for people to read: one decimal from 1 on, two digits below.
std::wstring roundedText(double distance) {
    wchar_t text[400];
    const int length = std::swprintf(text, 400, distance < 1.0 ? L"%.2g" : L"%.1f", distance);
    return length < 0 ? numberText(distance) : std::wstring(text);
}

// --- one entity --------------------------------------------------------------------------------

struct Pick {
    int code = RTERROR;
    AcDbObjectId entity;
    AcGePoint3d point;
    bool hasPoint = false;
};

class EntityPrompt {
  public:
    explicit EntityPrompt(State& state) : state_(state), expected_(state) {}

    Pick take(const Answer& answer) {
        if (answer.isCancel()) return {RTCAN, {}, {}, false};
        if (answer.kind == Answer::Kind::failed) return {};
        if (answer.kind == Answer::Kind::value) return value(answer);
        const std::wstring_view word = trimmed(answer.text);
        if (word.empty()) return empty();
        if (const auto point = parsePoint(word, state_.lastPoint)) return at(*point);
        if (takeKeyword(state_, expected_, std::wstring(word)) == RTKWORD)
            return {RTKWORD, {}, {}, false};
        if (matchKeyword(word, L"Last"))
            return told(named(Drawn(*state_.drawing()).last(), L"Nothing is visible."));
        return refuse(
            L"*Invalid* " + std::wstring(word) +
            L" is no point; a point as in 3,4, or an entity as in (handent \"2F\"), is expected.");
    }

  private:
    Pick refuse(const std::wstring& text) {
        state_.print(L"\n" + text);
        return {};
    }

    // Says what was picked where the answer did not name it.
    Pick told(Pick pick) {
        if (pick.code == RTNORM) state_.print(L"\n" + entityOnLayer(pick.entity));
        return pick;
    }

    Pick empty() {
        state_.variables.set(L"ERRNO", emptyReply);
        return refuse(L"Nothing was picked.");
    }

    Pick at(const AcGePoint3d& point) {
        state_.lastPoint = point;
        const AcDbObjectId id =
            Drawn(*state_.drawing()).topmostAt({point.x, point.y}, state_.pickReach());
        if (!id.isNull()) return told({RTNORM, id, point, true});
        state_.variables.set(L"ERRNO", nothingThere);
        Pick miss = refuse(L"Nothing visible lies within " + numberText(state_.pickReach()) +
                           L" of " + numberText(point.x) + L"," + numberText(point.y) + L"." +
                           nearestLines({point.x, point.y}));
        miss.point = point;
        miss.hasPoint = true;
        return miss;
    }

    std::wstring nearestLines(const PlanPoint& point) const {
        constexpr std::size_t most = 3;
        std::wstring text;
        for (const Drawn::Near& line : Drawn(*state_.drawing()).linesNear(point, most))
            text += (text.empty() ? L"\nThe nearest lines: " : L"; ") + entityOnLayer(line.entity) +
                    L", " + roundedText(line.distance) + L" away";
        return text.empty() ? text : text + L".";
    }

    Pick named(AcDbObjectId id, const std::wstring& otherwise) {
        return isLivingEntity(id) ? Pick{RTNORM, id, {}, false} : refuse(otherwise);
    }

    Pick value(const Answer& answer) {
        const lisp::Value& given = answer.value;
        const std::wstring otherwise = answer.text + L" gives no entity of the drawing.";
        if (const auto point = lisp::pointOf(given)) return at(*point);
        if (const auto* id = std::get_if<AcDbObjectId>(&given)) return named(*id, otherwise);
        if (const auto* set = std::get_if<lisp::SetPtr>(&given)) return onlyOf(**set, answer.text);
        const std::vector<lisp::Value> parts = lisp::members(given);
        const auto* first = parts.size() == 2 ? std::get_if<AcDbObjectId>(&parts[0]) : nullptr;
        const auto point = first == nullptr ? std::nullopt : lisp::pointOf(parts[1]);
        if (!point) return refuse(otherwise);
        Pick pick = named(*first, otherwise);
        pick.point = *point;
        pick.hasPoint = true;
        return pick;
    }

    // A selection set with one entity stands for that.
    Pick onlyOf(const lisp::HeldSet& set, const std::wstring& text) {
        const SelectionSet* const found = SelectionSets::instance().find(set.name());
        const std::size_t count = found == nullptr ? 0 : found->members.size();
        if (count == 1) return told(named(found->members.front(), text + L" has been erased."));
        return refuse(text + L" gives " + std::to_wstring(count) + L" entities; one is expected.");
    }

    State& state_;
    Expected expected_;
};

// The answer of a test; the point is written whatever the code.
int scriptedPick(Scripted& scripted, const ACHAR* prompt, ads_name entity, ads_point point) {
    scripted.record(scriptedPrompt("acedEntSel", prompt));
    const Scripted::PickAnswer answer = scripted.nextPick();
    setPoint(point, answer.point);
    ads_name_clear(entity);
    if (answer.stale)
        entity[0] = -1;
    else if (answer.code == RTNORM &&
             acdbGetAdsName(reinterpret_cast<ads_name&>(*entity), answer.entity) != Acad::eOk)
        return RTERROR;
    return answer.code;
}

// --- texts -------------------------------------------------------------------------------------

int copyOut(const std::wstring& text, ACHAR* result, std::size_t size) {
    const std::size_t length = std::min(text.size(), size - 1);
    std::wmemcpy(result, text.c_str(), length);
    result[length] = L'\0';
    return length == text.size() ? RTNORM : RTINPUTTRUNCATED;
}

int getText(int withBlanks, const ACHAR* prompt, ACHAR* result, std::size_t size) {
    if (result == nullptr || size == 0) return RTERROR;
    if (Scripted* scripted = Scripted::current()) {
        Scripted::Prompt record = scriptedPrompt("acedGetString", prompt);
        record.withBlanks = withBlanks;
        scripted->record(record);
        const Scripted::TypeAnswer answer = scripted->nextType();
        return answer.code == RTNORM ? copyOut(answer.text, result, size) : answer.code;
    }
    State* state = currentState();
    if (state == nullptr) return RTERROR;
    const Request::Kind kind = withBlanks == 0 ? Request::Kind::word : Request::Kind::text;
    const Answer answer = state->ask({kind, orDefault(prompt, L""), {}});
    PromptRecord record;
    record.reply = answer.text;
    record.code = answer.isCancel()                     ? RTCAN
                  : answer.kind == Answer::Kind::failed ? RTERROR
                                                        : RTNORM;
    if (record.code == RTNORM) {
        record.code = copyOut(answer.word(), result, size);
    }
    state->record(record);
    return record.code;
}

// --- points and keywords -----------------------------------------------------------------------

// One reply to a point prompt; nothing when it is to be asked again.
std::optional<int> takePoint(State& state, const Expected& expected, const Answer& answer,
                             AcGePoint3d& result) {
    if (answer.givesUp()) return RTCAN;
    if (answer.kind == Answer::Kind::failed) return std::nullopt;
    if (answer.isEmpty()) {
        if ((expected.bits & RSG_NONULL) == 0) return RTNONE;
        state.print(L"\nA point is needed, as in 3,4.");
        return std::nullopt;
    }
    const auto point = state.pointFrom(answer);
    if (point) {
        state.lastPoint = *point;
        result = *point;
        if ((expected.bits & RSG_2D) != 0) result.z = 0.0;
        return RTNORM;
    }
    if (takeKeyword(state, expected, answer.word()) == RTKWORD) return RTKWORD;
    state.print(L"\nInvalid point.");
    return std::nullopt;
}

}  // namespace

int acedEntSel(const ACHAR* prompt, ads_name entity, ads_point point) {
    HOST_CALL("acedEntSel");
    if (entity == nullptr || point == nullptr) return RTERROR;
    ads_name_clear(entity);
    if (Scripted* scripted = Scripted::current())
        return scriptedPick(*scripted, prompt, entity, point);
    State* state = currentState();
    if (state == nullptr) return RTERROR;
    if (state->drawing() == nullptr) return state->refusePrompt(Kind::entity);
    EntityPrompt dialogue(*state);
    const Answer answer = state->askWord(orDefault(prompt, L"\nSelect object: "), {L"(handent \""});
    const Pick pick = dialogue.take(answer);
    setPoint(point, pick.point);
    PromptRecord record;
    record.kind = Kind::entity;
    record.code = pick.code;
    record.reply = answer.text;
    if (pick.code == RTNORM) {
        record.entities.push_back(pick.entity);
        if (pick.hasPoint) record.point = pick.point;
        ads_name name;
        if (acdbGetAdsName(name, pick.entity) != Acad::eOk)
            record.code = RTERROR;
        else
            ads_name_set(name, entity);
    }
    state->record(record);
    return record.code;
}

int acedGetString(int withBlanks, const ACHAR* prompt, ACHAR* result) {
    HOST_CALL("acedGetString");
    const int code = getText(withBlanks, prompt, result, textRoom);
    return code == RTINPUTTRUNCATED ? RTNORM : code;
}

int acedGetString(int withBlanks, const ACHAR* prompt, ACHAR* result, std::size_t size) {
    HOST_CALL("acedGetString");
    return getText(withBlanks, prompt, result, size);
}

int acedGetPoint(const ads_point base, const ACHAR* prompt, ads_point result) {
    HOST_CALL("acedGetPoint");
    if (result == nullptr) return RTERROR;
    if (Scripted* scripted = Scripted::current()) {
        Scripted::Prompt record = scriptedPrompt("acedGetPoint", prompt);
        record.hasPoint = base != nullptr;
        if (base != nullptr) record.point = {base[0], base[1], base[2]};
        scripted->record(record);
        const Scripted::PointAnswer answer = scripted->nextPoint();
        if (answer.write) setPoint(result, answer.point);
        return answer.code;
    }
    State* state = currentState();
    if (state == nullptr) return RTERROR;
    if (base != nullptr) state->lastPoint = {base[0], base[1], base[2]};
    const Expected expected(*state);
    PromptRecord record;
    record.kind = Kind::point;
    AcGePoint3d point;
    std::optional<int> code;
    while (!code) {
        const Answer answer =
            state->askWord(orDefault(prompt, L"\nSpecify point: "), split(expected.keywords, L' '));
        code = takePoint(*state, expected, answer, point);
        record.reply = answer.text;
    }
    if (*code == RTNORM) setPoint(result, point);
    record.code = *code;
    state->record(record);
    return *code;
}

int acedGetKword(const ACHAR* prompt, ACHAR* result) {
    HOST_CALL("acedGetKword");
    if (result == nullptr) return RTERROR;
    if (Scripted* scripted = Scripted::current()) {
        scripted->record(scriptedPrompt("acedGetKword", prompt));
        const Scripted::KeywordAnswer answer = scripted->nextKeyword();
        if (answer.code == RTNORM) copyOut(answer.word, result, textRoom);
        return answer.code;
    }
    State* state = currentState();
    if (state == nullptr) return RTERROR;
    const Expected expected(*state);
    PromptRecord record;
    record.kind = Kind::keyword;
    std::optional<int> code;
    while (!code) {
        const Answer answer = state->askWord(orDefault(prompt, L"\nEnter an option: "),
                                             split(expected.keywords, L' '));
        record.reply = answer.text;
        if (answer.givesUp())
            code = RTCAN;
        else if (answer.kind == Answer::Kind::failed)
            continue;
        else if (answer.isEmpty() && (expected.bits & RSG_NONULL) == 0)
            code = RTNONE;
        else if (!answer.isEmpty() && takeKeyword(*state, expected, answer.word()) == RTKWORD)
            code = RTNORM;
        else
            state->print(L"\nInvalid option keyword.");
    }
    if (*code == RTNORM) copyOut(state->keywordInput, result, textRoom);
    record.code = *code;
    state->record(record);
    return *code;
}

int acedInitGet(int bits, const ACHAR* keywords) {
    HOST_CALL("acedInitGet");
    if (Scripted* scripted = Scripted::current()) {
        scripted->recordInitial({bits, orDefault(keywords, L"")});
        return RTNORM;
    }
    State* state = currentState();
    if (state == nullptr) return RTERROR;
    state->initialBits = bits;
    state->keywords = orDefault(keywords, L"");
    return RTNORM;
}

int acedGetInput(ACHAR* text) {
    HOST_CALL("acedGetInput");
    if (text == nullptr) return RTERROR;
    if (const Scripted* scripted = Scripted::current()) {
        copyOut(scripted->keywordInput(), text, textRoom);
        return RTNORM;
    }
    const State* state = currentState();
    if (state == nullptr) return RTERROR;
    copyOut(state->keywordInput, text, textRoom);
    return RTNORM;
}
