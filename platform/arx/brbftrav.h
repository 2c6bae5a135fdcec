// AcBrBrepFaceTraverser: over the faces of a body.
#pragma once

#include <brbrep.h>
#include <brtrav.h>

class AcBrBrepFaceTraverser : public AcBrTraverser {
  public:
    ACRX_DECLARE_MEMBERS(AcBrBrepFaceTraverser);

    // Stands at the first face then. eNullObjectPointer for a body without a path.
    AcBr::ErrorStatus setBrep(const AcBrBrep& brep);
};
