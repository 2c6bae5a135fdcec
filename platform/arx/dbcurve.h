// AcDbCurve: what every curve can be asked. Points are in world coordinates. Parameters are
//   line        0 to its length                polylines   0 to the number of segments
//   circle, arc angles, the end above the start ellipse     its angle parameter
//   spline      the range of its knots
// Distances are measured along the curve from its start and are true to 1e-9. A parameter, distance
// or point outside gives eInvalidInput and leaves the result untouched; a curve without length or
// with fields that fit no curve gives eDegenerateGeometry; one that isn't open gives
// eNotOpenForRead.
#pragma once

#include <dbmain.h>

class AcDbCurve : public AcDbEntity {
  public:
    ACRX_DECLARE_MEMBERS(AcDbCurve);

    // Closed by flag (polylines, splines), by a full turn (circle, ellipse), or a spline whose ends
    // meet.
    virtual Adesk::Boolean isClosed() const;
    virtual Adesk::Boolean isPeriodic() const;
    virtual Acad::ErrorStatus getStartParam(double& parameter) const;
    virtual Acad::ErrorStatus getEndParam(double& parameter) const;
    virtual Acad::ErrorStatus getStartPoint(AcGePoint3d& point) const;
    virtual Acad::ErrorStatus getEndPoint(AcGePoint3d& point) const;
    virtual Acad::ErrorStatus getPointAtParam(double parameter, AcGePoint3d& point) const;
    virtual Acad::ErrorStatus getDistAtParam(double parameter, double& distance) const;
    virtual Acad::ErrorStatus getParamAtDist(double distance, double& parameter) const;
    virtual Acad::ErrorStatus getPointAtDist(double distance, AcGePoint3d& point) const;
    // By the curve's parameter; not a unit vector.
    virtual Acad::ErrorStatus getFirstDeriv(double parameter, AcGeVector3d& derivative) const;

  protected:
    AcDbCurve();
};
