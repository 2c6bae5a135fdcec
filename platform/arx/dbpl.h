// AcDbPolyline: the light polyline; plane vertices at one elevation, each with a bulge for the
// segment that follows (tangent of a quarter of the arc's angle, positive counter-clockwise).
#pragma once

#include <dbcurve.h>
#include <gepnt2d.h>

class AcDbPolyline : public AcDbCurve {
  public:
    ACRX_DECLARE_MEMBERS(AcDbPolyline);
    AcDbPolyline();

    unsigned int numVerts() const;
    // The vertex in world coordinates. eNotOpenForRead; eInvalidIndex outside.
    Acad::ErrorStatus getPointAt(unsigned int index, AcGePoint3d& point) const;
    // The vertex in the polyline's own coordinates.
    Acad::ErrorStatus getPointAt(unsigned int index, AcGePoint2d& point) const;
    Acad::ErrorStatus getBulgeAt(unsigned int index, double& bulge) const;
    Adesk::Boolean hasBulges() const;
    double elevation() const;
    double thickness() const;
    AcGeVector3d normal() const;
    double getConstantWidth() const;
};
