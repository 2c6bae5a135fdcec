// AcDbRegion: a bounded plane figure. Its body is kept as the drawing has it.
#pragma once

#include <dbmain.h>
#include <dbptrar.h>

namespace AcDb {
enum BoolOperType { kBoolUnite = 0, kBoolIntersect = 1, kBoolSubtract = 2 };
}

class AcDbRegion : public AcDbEntity {
  public:
    ACRX_DECLARE_MEMBERS(AcDbRegion);
    AcDbRegion();

    // Without a body.
    Adesk::Boolean isNull() const;

    // New regions, the caller's, bounded by curves, appended to `regions`: each loop that circles,
    // closed polylines of straight segments, and lines and open polylines joined by their ends make
    // in a plane. All other curves are passed over, and what is shorter than 1e-6 is nothing.
    // eInvalidInput when none was made; eNullObjectPointer for a null among the curves;
    // eOutOfMemory.
    static Acad::ErrorStatus createFromCurves(const AcDbVoidPtrArray& curves,
                                              AcDbVoidPtrArray& regions);

    // Takes `other` into this region; it is left without a body. The host knows the union of new
    // polygons in one plane, within 1e-6 (eNonCoplanarGeometry), that is one polygon without holes;
    // eNotImplementedYet for everything else, eInvalidInput for a region without a body,
    // eAlreadyInDb. Both stay as they are then.
    Acad::ErrorStatus booleanOper(AcDb::BoolOperType operation, AcDbRegion* other);
};
