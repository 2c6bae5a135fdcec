#include "host/editor/SelectionSets.h"

#include <acdbads.h>
#include <acedads.h>

#include <algorithm>

#include "host/database/Fault.h"
#include "host/database/Ledger.h"

namespace host::editor {

namespace {

constexpr const char* ledgerKind = "selection set";

// The second number of a set's name; entity names have 0 there.
constexpr std::int64_t setMark = 0x5353;

std::string describe(std::uint64_t key) {
    ads_name name = {static_cast<std::int64_t>(key), setMark};
    const SelectionSet* set = SelectionSets::instance().find(name);
    return "number " + std::to_string(key) + ", " +
           std::to_string(set == nullptr ? 0 : set->members.size()) + " members";
}

}  // namespace

SelectionSets& SelectionSets::instance() {
    static SelectionSets sets;
    return sets;
}

SelectionSet& SelectionSets::make(std::vector<AcDbObjectId> members, ads_name name) {
    SelectionSet& set = sets_[++last_];
    set.known.insert(members.begin(), members.end());
    set.members = std::move(members);
    name[0] = last_;
    name[1] = setMark;
    database::Ledger::instance().opened(ledgerKind, static_cast<std::uint64_t>(last_), &describe);
    return set;
}

SelectionSet* SelectionSets::find(const ads_name name) {
    if (name == nullptr || name[1] != setMark) return nullptr;
    const auto found = sets_.find(name[0]);
    return found == sets_.end() ? nullptr : &found->second;
}

bool SelectionSets::free(const ads_name name) {
    if (find(name) == nullptr) return false;
    database::Ledger::instance().closed(ledgerKind, static_cast<std::uint64_t>(name[0]));
    sets_.erase(name[0]);
    return true;
}

void SelectionSets::keep(const ads_name name) {
    SelectionSet* set = find(name);
    if (set == nullptr) return;
    set->kept = true;
    database::Ledger::instance().closed(ledgerKind, static_cast<std::uint64_t>(name[0]));
}

std::vector<std::int64_t> SelectionSets::existing() const {
    std::vector<std::int64_t> numbers;
    for (const auto& entry : sets_) numbers.push_back(entry.first);
    return numbers;
}

void SelectionSets::freeOthers(const std::vector<std::int64_t>& known) {
    for (const std::int64_t number : existing()) {
        if (std::binary_search(known.begin(), known.end(), number) || sets_[number].kept) continue;
        const ads_name name = {number, setMark};
        free(name);
    }
}

}  // namespace host::editor

using namespace host::editor;

namespace {

// The id behind an entity's name; null for anything else.
AcDbObjectId entityOf(const ads_name name) {
    AcDbObjectId id;
    if (name == nullptr || acdbGetObjectId(id, name) != Acad::eOk) return {};
    return id;
}

}  // namespace

int acedSSLength(const ads_name set, Adesk::Int32* length) {
    HOST_CALL("acedSSLength");
    const SelectionSet* found = SelectionSets::instance().find(set);
    if (found == nullptr || length == nullptr) return RTERROR;
    if (found->lengthCode != RTNORM) return found->lengthCode;
    *length = static_cast<Adesk::Int32>(found->members.size());
    return RTNORM;
}

int acedSSName(const ads_name set, Adesk::Int32 index, ads_name entity) {
    HOST_CALL("acedSSName");
    const SelectionSet* found = SelectionSets::instance().find(set);
    if (found == nullptr || index < 0 || static_cast<std::size_t>(index) >= found->members.size()) {
        return RTERROR;
    }
    const auto& refused = found->refusedMembers;
    if (std::find(refused.begin(), refused.end(), index) != refused.end()) return RTERROR;
    ads_name name;
    if (acdbGetAdsName(name, found->members[static_cast<std::size_t>(index)]) != Acad::eOk) {
        return RTERROR;
    }
    ads_name_set(name, entity);
    return RTNORM;
}

int acedSSAdd(const ads_name entity, const ads_name set, ads_name result) {
    HOST_CALL("acedSSAdd");
    const bool noEntity = entity == nullptr || ads_name_nil(entity);
    const bool noSet = set == nullptr || ads_name_nil(set);
    const AcDbObjectId id = noEntity ? AcDbObjectId() : entityOf(entity);
    if (result == nullptr || (!noEntity && id.isNull()) || (noEntity && !noSet)) return RTERROR;
    if (noSet) {
        SelectionSets::instance().make(noEntity ? std::vector<AcDbObjectId>() : std::vector{id},
                                       result);
        return RTNORM;
    }
    SelectionSet* found = SelectionSets::instance().find(set);
    if (found == nullptr) return RTERROR;
    if (found->known.insert(id).second) found->members.push_back(id);
    ads_name_set(set, result);
    return RTNORM;
}

int acedSSDel(const ads_name entity, const ads_name set) {
    HOST_CALL("acedSSDel");
    SelectionSet* found = SelectionSets::instance().find(set);
    const AcDbObjectId id = entityOf(entity);
    if (found == nullptr || found->known.erase(id) == 0) return RTERROR;
    auto& members = found->members;
    members.erase(std::remove(members.begin(), members.end(), id), members.end());
    return RTNORM;
}

int acedSSMemb(const ads_name entity, const ads_name set) {
    HOST_CALL("acedSSMemb");
    const SelectionSet* found = SelectionSets::instance().find(set);
    return found != nullptr && found->known.count(entityOf(entity)) != 0 ? RTNORM : RTERROR;
}

// Frees the set even when a test orders the answer to be a failure: nobody would ask a second time.
int acedSSFree(const ads_name set) {
    const host::fault::Call call("acedSSFree");
    const bool freed = SelectionSets::instance().free(set);
    if (call.refused()) return call.refusal();
    return freed ? RTNORM : RTERROR;
}
