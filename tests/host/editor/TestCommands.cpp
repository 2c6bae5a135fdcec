#include "tests/host/editor/TestCommands.h"

#include <acdbads.h>
#include <aced.h>
#include <dbapserv.h>
#include <dbents.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "host/database/Drawing.h"

namespace host::test {

namespace {

// What a prompt answered, for the names of codes that tests see.
const wchar_t* codeName(int code) {
    switch (code) {
        case RTNORM:
            return L"RTNORM";
        case RTCAN:
            return L"RTCAN";
        case RTNONE:
            return L"RTNONE";
        case RTKWORD:
            return L"RTKWORD";
        default:
            return L"RTERROR";
    }
}

std::vector<AcDbObjectId> selected(ads_name set) {
    std::vector<AcDbObjectId> ids;
    Adesk::Int32 length = 0;
    acedSSLength(set, &length);
    for (Adesk::Int32 i = 0; i < length; ++i) {
        ads_name name;
        AcDbObjectId id;
        if (acedSSName(set, i, name) == RTNORM && acdbGetObjectId(id, name) == Acad::eOk)
            ids.push_back(id);
    }
    acedSSFree(set);
    return ids;
}

void pick() {
    ads_name name;
    ads_point point = {-1, -1, -1};
    const int code = acedEntSel(L"\nPick: ", name, point);
    AcDbObjectId id;
    const bool known = acdbGetObjectId(id, name) == Acad::eOk;
    acutPrintf(L"\n%s %s at %.15g,%.15g,%.15g", codeName(code),
               known ? database::handleText(id).c_str() : L"-", point[0], point[1], point[2]);
}

void select() {
    ads_name set;
    const int code = acedSSGet(nullptr, nullptr, nullptr, nullptr, set);
    acutPrintf(L"\n%s", codeName(code));
    if (code != RTNORM) return;
    for (const AcDbObjectId id : selected(set))
        acutPrintf(L" %s", database::handleText(id).c_str());
}

void askFor(int withBlanks) {
    ACHAR text[132] = L"untouched";
    const int code = acedGetString(withBlanks, L"\nText: ", text);
    acutPrintf(L"\n%s [%s]", codeName(code), text);
}

void ask() {
    askFor(0);
}
void askLong() {
    askFor(1);
}

void point() {
    const ads_point base = {10.0, 20.0, 0.0};
    ads_point result = {-1, -1, -1};
    acedInitGet(0, L"Here There");
    const int code = acedGetPoint(base, L"\nPoint: ", result);
    ACHAR word[132] = L"";
    acedGetInput(word);
    acutPrintf(L"\n%s %.15g,%.15g,%.15g %s", codeName(code), result[0], result[1], result[2], word);
}

void key() {
    ACHAR word[132] = L"-";
    acedInitGet(RSG_NONULL, L"Left Right");
    const int code = acedGetKword(L"\nLeft or right: ", word);
    acutPrintf(L"\n%s %s", codeName(code), word);
}

void turn() {
    ads_name set;
    if (acedSSGet(nullptr, nullptr, nullptr, nullptr, set) != RTNORM) return;
    for (const AcDbObjectId id : selected(set)) {
        AcDbEntity* entity = nullptr;
        if (acdbOpenAcDbEntity(entity, id, AcDb::kForWrite) != Acad::eOk) continue;
        if (auto* text = AcDbText::cast(entity)) text->setRotation(1.5);
        if (auto* reference = AcDbBlockReference::cast(entity)) reference->setRotation(1.5);
        entity->close();
    }
}

void throwStandard() {
    turn();
    throw std::runtime_error("broken");
}

void throwNumber() {
    turn();
    throw 42;
}

void leave() {
    AcDbEntity* entity = nullptr;
    const AcDbObjectId first =
        database::modelSpaceIds(*acdbHostApplicationServices()->workingDatabase()).front();
    acdbOpenAcDbEntity(entity, first, AcDb::kForRead);
    ads_name set;
    acedSSAdd(nullptr, nullptr, set);
    static resbuf* kept = nullptr;
    acutRelRb(kept);
    kept = acutNewRb(RTSHORT);
}

void nothing() {}

struct Entry {
    const wchar_t* name;
    AcRxFunctionPtr function;
};

constexpr Entry entries[] = {
    {L"PICK", pick},       {L"SELECT", select},       {L"ASK", ask},
    {L"ASKLONG", askLong}, {L"POINT", point},         {L"KEY", key},
    {L"TURN", turn},       {L"THROW", throwStandard}, {L"THROWINT", throwNumber},
    {L"LEAVE", leave},     {L"NOTHING", nothing}};

}  // namespace

void registerTestCommands() {
    for (const Entry& entry : entries) {
        acedRegCmds->addCommand(L"TESTS", entry.name, entry.name, ACRX_CMD_MODAL, entry.function);
    }
}

void removeTestCommands() {
    acedRegCmds->removeGroup(L"TESTS");
}

}  // namespace host::test
