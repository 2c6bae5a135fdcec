// AcDbPolyline: the light polyline; plane vertices at one elevation, each with a bulge for the
// segment that follows (tangent of a quarter of the arc's angle, positive counter-clockwise).
#pragma once

#include <dbcurve.h>
#include <gepnt2d.h>

class AcDbPolyline : public AcDbCurve {
  public:
    ACRX_DECLARE_MEMBERS(AcDbPolyline);
    AcDbPolyline();
    // Room for so many vertices; none is made.
    explicit AcDbPolyline(unsigned int vertexCount);

    unsigned int numVerts() const;
    // The vertex in world coordinates. eNotOpenForRead; eInvalidIndex outside.
    Acad::ErrorStatus getPointAt(unsigned int index, AcGePoint3d& point) const;
    // The vertex in the polyline's own coordinates.
    Acad::ErrorStatus getPointAt(unsigned int index, AcGePoint2d& point) const;
    Acad::ErrorStatus getBulgeAt(unsigned int index, double& bulge) const;
    // A vertex before that of `index`, which may be their number. A negative width is 0; the
    // identifier is not kept. eNotOpenForWrite, eInvalidIndex, eInvalidInput; eNotImplementedYet
    // for a polyline that came with the drawing, here and in the other setters of vertices.
    Acad::ErrorStatus addVertexAt(unsigned int index, const AcGePoint2d& point, double bulge = 0.0,
                                  double startWidth = -1.0, double endWidth = -1.0,
                                  Adesk::Int32 vertexIdentifier = 0);
    // eDegenerateGeometry when the polyline would be left with one vertex.
    Acad::ErrorStatus removeVertexAt(unsigned int index);
    Acad::ErrorStatus setPointAt(unsigned int index, const AcGePoint2d& point);
    Acad::ErrorStatus setBulgeAt(unsigned int index, double bulge);
    Acad::ErrorStatus getWidthsAt(unsigned int index, double& startWidth, double& endWidth) const;
    Acad::ErrorStatus setWidthsAt(unsigned int index, double startWidth, double endWidth);
    Adesk::Boolean hasBulges() const;
    void setClosed(Adesk::Boolean closed);
    double elevation() const;
    Acad::ErrorStatus setElevation(double elevation);
    double thickness() const;
    Acad::ErrorStatus setThickness(double thickness);
    AcGeVector3d normal() const;
    // The elevation is kept, the vertices keep their own coordinates.
    Acad::ErrorStatus setNormal(const AcGeVector3d& normal);
    double getConstantWidth() const;
    // Refuses a negative one.
    Acad::ErrorStatus setConstantWidth(double width);
};
