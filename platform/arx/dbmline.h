// AcDbMline: parallel lines along a run of vertices, in one plane; AcDbMlineStyle says which.
#pragma once

#include <dbmain.h>

namespace Mline {
// Which line runs through the vertices: the one farthest to the left, none, whose offset is 0, or
// the one farthest to the right.
enum MlineJustification { kTop = 0, kZero = 1, kBottom = 2 };
}  // namespace Mline

// The offsets of the lines. Styles of a drawing are kept; none can be made or changed.
class AcDbMlineStyle : public AcDbObject {
  public:
    ACRX_DECLARE_MEMBERS(AcDbMlineStyle);
    AcDbMlineStyle();

    // Belongs to the style.
    const ACHAR* name() const;
    int numElements() const;
};

// What came with the drawing is kept as it is: setters give eNotImplementedYet for it. In a
// database they give eInvalidInput for what makes numbers too large to be written.
class AcDbMline : public AcDbEntity {
  public:
    ACRX_DECLARE_MEMBERS(AcDbMline);
    AcDbMline();

    // Of the style's name, which is looked for in the database that the entity is put into;
    // "STANDARD" unless set. eNullObjectId, eNoDatabase, eNotThatKindOfClass, eWasErased.
    Acad::ErrorStatus setStyle(const AcDbObjectId& style);
    // Null when there is no such style.
    AcDbObjectId style() const;
    // eInvalidInput for any other value.
    Acad::ErrorStatus setJustification(Mline::MlineJustification justification);
    Mline::MlineJustification justification() const;
    // Of the offsets.
    Acad::ErrorStatus setScale(double scale);
    double scale() const;
    // Across the plane, which goes through the first vertex; all others are moved into it along
    // the normal. eInvalidInput for a vector without length.
    Acad::ErrorStatus setNormal(const AcGeVector3d& normal);
    AcGeVector3d normal() const;
    // A vertex, in world coordinates, behind the last one. A database takes no entity with fewer
    // than two.
    Acad::ErrorStatus appendSeg(const AcGePoint3d& vertex);
    int numVertices() const;
    // In the plane, one of a drawing as it stands there; the origin outside.
    AcGePoint3d vertexAt(int index) const;
    Acad::ErrorStatus setClosedMline(bool closed);
    bool closedMline() const;
};
