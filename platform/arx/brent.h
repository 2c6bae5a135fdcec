// AcBrEntity: a part of a body as the boundary reader gives it: the body, an edge, a vertex.
#pragma once

#include <brgbl.h>
#include <dbsubeid.h>
#include <rxboiler.h>

#include <cstddef>
#include <memory>

class AcBrBrep;
struct AcBrImpBody;  // the host's

class AcBrEntity : public AcRxObject {
  public:
    ACRX_DECLARE_MEMBERS(AcBrEntity);

    // The whole body of the entity that `path` leads to. The host reads the bodies that it made
    // itself. eNullObjectId without an entity, eInvalidObjectId for one that is gone,
    // eWrongObjectType for one without a body, eNotImplementedYet for the body of a drawing's
    // entity, which is kept as it stands. The object is unchanged then.
    AcBr::ErrorStatus setSubentPath(AcDbFullSubentPath& path);
    AcBr::ErrorStatus setValidationLevel(const AcBr::ValidationLevel& level);
    // The body that this is part of. eNullObjectPointer before a path was set.
    AcBr::ErrorStatus getBrep(AcBrBrep& owner) const;

  protected:
    friend struct AcBrImpAccess;
    std::shared_ptr<const AcBrImpBody> m_body;
    std::size_t m_face = 0, m_loop = 0, m_edge = 0, m_end = 0;
};
