// Selection sets: ordered collections of entities behind the names that acedSSGet gives out.
#pragma once

#include <adscodes.h>
#include <adsdef.h>
#include <dbid.h>

#include <cstdint>
#include <map>
#include <unordered_set>
#include <vector>

namespace host::editor {

struct SelectionSet {
    std::vector<AcDbObjectId> members;
    std::unordered_set<AcDbObjectId> known;  // the same, for asking
    // Orders of a test: acedSSName fails for these indexes, acedSSLength answers this code.
    std::vector<int> refusedMembers;
    int lengthCode = RTNORM;
    bool kept = false;  // by somebody of the host, beyond the command
};

class SelectionSets {
  public:
    static SelectionSets& instance();

    // A new set of these entities, as they come; `name` becomes its name. It stands in the ledger
    // until it is freed.
    SelectionSet& make(std::vector<AcDbObjectId> members, ads_name name);
    // Null for a name that is no set.
    SelectionSet* find(const ads_name name);
    bool free(const ads_name name);
    // Takes the set out of the ledger: somebody of the host keeps it, and frees it.
    void keep(const ads_name name);

    // The sets that exist now, and freeing those that have come since and are not kept.
    std::vector<std::int64_t> existing() const;
    void freeOthers(const std::vector<std::int64_t>& known);

  private:
    std::map<std::int64_t, SelectionSet> sets_;
    std::int64_t last_ = 0;
};

}  // namespace host::editor
