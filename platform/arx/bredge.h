// AcBrEdge: where two faces of a body meet, or where one ends.
#pragma once

#include <brent.h>

class AcBrVertex;

class AcBrEdge : public AcBrEntity {
  public:
    ACRX_DECLARE_MEMBERS(AcBrEdge);

    // Where it begins and where it ends; the same vertex for a closed edge. eNullObjectPointer for
    // an edge that no traverser gave.
    AcBr::ErrorStatus getVertex1(AcBrVertex& vertex) const;
    AcBr::ErrorStatus getVertex2(AcBrVertex& vertex) const;
};
