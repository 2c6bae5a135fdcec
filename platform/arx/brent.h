// AcBrEntity: a part of a body as the boundary reader gives it: the body, an edge, a vertex.
#pragma once

#include <brgbl.h>
#include <dbsubeid.h>
#include <rxboiler.h>

#include <cstddef>
#include <memory>

class AcBrBrep;
struct AcBrImpBody;  // the host's, as the next one
struct AcBrImpEdge;

class AcBrEntity : public AcRxObject {
  public:
    ACRX_DECLARE_MEMBERS(AcBrEntity);

    // The whole body of the entity that `path` leads to. The host reads the bodies that it made
    // itself. eNullObjectId without an entity, eInvalidObjectId for one that is gone,
    // eWrongObjectType for one without a body, eNotImplementedYet for the body of a drawing's
    // entity, which is kept as it stands. The object is unchanged then. An edge or vertex that is
    // given a path is no longer the one that it was, and none of its new body.
    AcBr::ErrorStatus setSubentPath(AcDbFullSubentPath& path);
    AcBr::ErrorStatus setValidationLevel(const AcBr::ValidationLevel& level);
    // The body that this is part of. eNullObjectPointer before a path was set.
    AcBr::ErrorStatus getBrep(AcBrBrep& owner) const;

  protected:
    friend struct AcBrImpAccess;
    std::shared_ptr<const AcBrImpBody> m_body;
    const AcBrImpEdge* m_edge = nullptr;  // of the body; null for the whole of it
    std::size_t m_end = 0;
};
