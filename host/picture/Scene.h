// What of a drawing can be seen, and how far it reaches.
#pragma once

#include <dbmain.h>

#include <unordered_set>
#include <vector>

#include "host/picture/Change.h"
#include "host/picture/Sheet.h"

namespace host::picture {

// The box of an entity on a picture: of texts that of their letters as they are set, of hatches
// that of their area, of anything else that of its geometry. Empty without any.
PlanBox boxOf(AcDbImpDatabase& database, AcDbObjectId entity);

class Scene {
  public:
    Scene(AcDbImpDatabase& database, const Change& change);

    struct Member {
        AcDbObjectId id;
        PlanBox box;
    };
    // What of model space can be seen, in the drawing's order.
    const std::vector<Member>& members() const { return members_; }

    // Whether the entity is a part of model space, seen or not.
    bool isInModelSpace(AcDbObjectId entity) const;
    // Whether the change shows the entity by itself: the picked lines, and what was turned.
    bool isSpecial(AcDbObjectId entity) const { return special_.count(entity) != 0; }

    // The part of the plane to be shown.
    PlanBox view() const;

  private:
    bool isSeen(AcDbObjectId entity) const;

    AcDbImpDatabase& database_;
    std::vector<AcDbObjectId> lines_;
    std::unordered_set<AcDbObjectId> special_;
    std::vector<Member> members_;
};

}  // namespace host::picture
