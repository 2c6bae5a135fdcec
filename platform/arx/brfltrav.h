// AcBrFaceLoopTraverser: over the loops that bound a face, its outer one first.
#pragma once

#include <brbftrav.h>

class AcBrFaceLoopTraverser : public AcBrTraverser {
  public:
    ACRX_DECLARE_MEMBERS(AcBrFaceLoopTraverser);

    // Of the face at which that one stands. eNullObjectPointer at its end.
    AcBr::ErrorStatus setFace(const AcBrBrepFaceTraverser& face);
};
