// AcBrLoopEdgeTraverser: over the edges of a loop, in the loop's direction.
#pragma once

#include <bredge.h>
#include <brfltrav.h>

class AcBrLoopEdgeTraverser : public AcBrTraverser {
  public:
    ACRX_DECLARE_MEMBERS(AcBrLoopEdgeTraverser);

    // Of the loop at which that one stands. eNullObjectPointer at its end.
    AcBr::ErrorStatus setLoop(const AcBrFaceLoopTraverser& loop);
    // The edge, and whether it runs in the loop's direction. eNotApplicable at the end.
    AcBr::ErrorStatus getEdge(AcBrEdge& edge) const;
    AcBr::ErrorStatus getEdgeOrientToLoop(Adesk::Boolean& isForward) const;
};
