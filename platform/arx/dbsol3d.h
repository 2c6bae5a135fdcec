// AcDb3dSolid: a body in space. That of a drawing is kept as the drawing has it.
#pragma once

#include <dbcurve.h>
#include <dbregion.h>

class AcDb3dSolid : public AcDbEntity {
  public:
    ACRX_DECLARE_MEMBERS(AcDb3dSolid);
    AcDb3dSolid();

    // Without a body.
    Adesk::Boolean isNull() const;

    // Makes the body that `region` sweeps along `path`. The host knows one: a disc and an AcDbLine
    // across it, which give a cylinder; the line's direction and length count, not where it stands.
    // eNullObjectPointer; eAlreadyInDb for a solid in a database; eInvalidInput for a region that
    // is empty or no disc, a path shorter than 1e-6, a path that is not across the region, and a
    // taper; eNotImplementedYet for other paths. The solid is unchanged then.
    Acad::ErrorStatus extrudeAlongPath(const AcDbRegion* region, const AcDbCurve* path,
                                       double taperAngle = 0.0);
};
