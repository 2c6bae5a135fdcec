// AcBrVertex: an end of an edge.
#pragma once

#include <brent.h>
#include <gepnt3d.h>

class AcBrVertex : public AcBrEntity {
  public:
    ACRX_DECLARE_MEMBERS(AcBrVertex);

    // In the world's coordinates. eNullObjectPointer for a vertex that no edge gave.
    AcBr::ErrorStatus getPoint(AcGePoint3d& point) const;
};
