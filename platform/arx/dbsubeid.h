// The way to an entity, or a part of one, from outside: through the references that hold it.
#pragma once

#include <dbid.h>
#include <dbidar.h>

namespace AcDb {
enum SubentType { kNullSubentType = 0, kFaceSubentType, kEdgeSubentType, kVertexSubentType };
}

class AcDbFullSubentPath {
  public:
    AcDbFullSubentPath() = default;
    // Of an entity that no reference holds. The host knows whole entities only: no type, index 0.
    AcDbFullSubentPath(AcDbObjectId entId, AcDb::SubentType /*type*/, Adesk::GsMarker /*index*/) {
        m_ids.append(entId);
    }

    // From the outermost reference to the entity, which is the last.
    AcDbObjectIdArray& objectIds() { return m_ids; }
    const AcDbObjectIdArray& objectIds() const { return m_ids; }

  private:
    AcDbObjectIdArray m_ids;
};
