// AcDbSpline: a rational or plain B-spline in world coordinates, given by control points and knots,
// or by fit points alone, which are then interpolated by a cubic.
#pragma once

#include <dbcurve.h>

class AcDbSpline : public AcDbCurve {
  public:
    ACRX_DECLARE_MEMBERS(AcDbSpline);
    AcDbSpline();

    Adesk::Boolean isRational() const;
    int degree() const;
    int numControlPoints() const;
    int numFitPoints() const;
    // eInvalidIndex outside.
    Acad::ErrorStatus getControlPointAt(int index, AcGePoint3d& point) const;
    Acad::ErrorStatus getFitPointAt(int index, AcGePoint3d& point) const;
};
