// The entities of a drawing, but for those with headers of their own. Points are in world
// coordinates unless an operation says otherwise; angles are radians; "own coordinates" are those
// of the entity's plane, which getEcs maps to the world's.
#pragma once

#include <dbcurve.h>
#include <dbmain.h>

class AcDbLine : public AcDbCurve {
  public:
    ACRX_DECLARE_MEMBERS(AcDbLine);
    AcDbLine();

    AcGePoint3d startPoint() const;
    AcGePoint3d endPoint() const;
    double thickness() const;
    AcGeVector3d normal() const;
};

class AcDbPoint : public AcDbEntity {
  public:
    ACRX_DECLARE_MEMBERS(AcDbPoint);
    AcDbPoint();

    AcGePoint3d position() const;
    double thickness() const;
    AcGeVector3d normal() const;
};

class AcDbCircle : public AcDbCurve {
  public:
    ACRX_DECLARE_MEMBERS(AcDbCircle);
    AcDbCircle();

    AcGePoint3d center() const;
    double radius() const;
    double thickness() const;
    AcGeVector3d normal() const;
};

class AcDbArc : public AcDbCurve {
  public:
    ACRX_DECLARE_MEMBERS(AcDbArc);
    AcDbArc();

    AcGePoint3d center() const;
    double radius() const;
    // From the x axis of the arc's plane, counter-clockwise, 0 to below 2 pi; the end may be below
    // the start.
    double startAngle() const;
    double endAngle() const;
    double thickness() const;
    AcGeVector3d normal() const;
};

// A corner of an old-style plane polyline. A sub-object with an id of its own.
class AcDbVertex : public AcDbEntity {
  public:
    ACRX_DECLARE_MEMBERS(AcDbVertex);

  protected:
    AcDbVertex() = default;
};

class AcDb2dVertex : public AcDbVertex {
  public:
    ACRX_DECLARE_MEMBERS(AcDb2dVertex);
    AcDb2dVertex();

    AcDb::Vertex2dType vertexType() const;
    // In the polyline's own coordinates, z as the drawing has it.
    AcGePoint3d position() const;
    double bulge() const;
    double startWidth() const;
    double endWidth() const;
};

class AcDb3dPolylineVertex : public AcDbVertex {
  public:
    ACRX_DECLARE_MEMBERS(AcDb3dPolylineVertex);
    AcDb3dPolylineVertex();

    AcDb::Vertex3dType vertexType() const;
    AcGePoint3d position() const;
};

class AcDbPolygonMeshVertex : public AcDbVertex {
  public:
    ACRX_DECLARE_MEMBERS(AcDbPolygonMeshVertex);
    AcDbPolygonMeshVertex();

    AcGePoint3d position() const;
};

class AcDbPolyFaceMeshVertex : public AcDbVertex {
  public:
    ACRX_DECLARE_MEMBERS(AcDbPolyFaceMeshVertex);
    AcDbPolyFaceMeshVertex();

    AcGePoint3d position() const;
};

// A face of a polyface mesh: up to four vertices of the mesh, counted from 1.
class AcDbFaceRecord : public AcDbVertex {
  public:
    ACRX_DECLARE_MEMBERS(AcDbFaceRecord);
    AcDbFaceRecord();

    // The vertex number of corner 0 to 3, negative when the edge that starts there is hidden, 0 for
    // no corner. eInvalidIndex outside.
    Acad::ErrorStatus getVertexAt(Adesk::UInt16 corner, Adesk::Int16& vertex) const;
};

// The old-style plane polyline, whose vertices are sub-objects. Its curve consists of the vertices
// that are drawn: control vertices of a splined polyline are passed over.
class AcDb2dPolyline : public AcDbCurve {
  public:
    ACRX_DECLARE_MEMBERS(AcDb2dPolyline);
    AcDb2dPolyline();

    AcDb::Poly2dType polyType() const;
    double elevation() const;
    double thickness() const;
    AcGeVector3d normal() const;
    // All vertices in the drawing's order; null when memory is refused or the polyline isn't open.
    AcDbObjectIterator* vertexIterator() const;
};

class AcDb3dPolyline : public AcDbCurve {
  public:
    ACRX_DECLARE_MEMBERS(AcDb3dPolyline);
    AcDb3dPolyline();

    AcDb::Poly3dType polyType() const;
    AcDbObjectIterator* vertexIterator() const;
};

class AcDbPolygonMesh : public AcDbEntity {
  public:
    ACRX_DECLARE_MEMBERS(AcDbPolygonMesh);
    AcDbPolygonMesh();

    AcDb::PolyMeshType polyMeshType() const;
    Adesk::Int16 mSize() const;
    Adesk::Int16 nSize() const;
    bool isMClosed() const;
    bool isNClosed() const;
    AcDbObjectIterator* vertexIterator() const;
};

class AcDbPolyFaceMesh : public AcDbEntity {
  public:
    ACRX_DECLARE_MEMBERS(AcDbPolyFaceMesh);
    AcDbPolyFaceMesh();

    Adesk::Int16 numVertices() const;
    Adesk::Int16 numFaces() const;
    // The vertices first, then the face records, as the drawing has them.
    AcDbObjectIterator* vertexIterator() const;
};

class AcDbText : public AcDbEntity {
  public:
    ACRX_DECLARE_MEMBERS(AcDbText);
    AcDbText();

    // Where the text begins. Counts for texts that are justified left on the baseline, aligned and
    // fitted; for the others it follows from the alignment point and turns with the text.
    AcGePoint3d position() const;
    // The point that a justified text hangs on. A drawing that gives none has the position here.
    AcGePoint3d alignmentPoint() const;
    AcGeVector3d normal() const;
    double thickness() const;
    double oblique() const;
    // In the text's plane, from its x axis; kept as it was set, not reduced.
    double rotation() const;
    // eNotOpenForWrite; eInvalidInput for a value that is no number. The text is unchanged then.
    Acad::ErrorStatus setRotation(double rotation);
    double height() const;
    double widthFactor() const;
    // A new text that the caller frees (acutDelString).
    ACHAR* textString() const;
    // Belongs to the entity and holds until it changes.
    const ACHAR* textStringConst() const;
    AcDbObjectId textStyle() const;
    bool isMirroredInX() const;
    bool isMirroredInY() const;
    AcDb::TextHorzMode horizontalMode() const;
    AcDb::TextVertMode verticalMode() const;
};

class AcDbAttributeDefinition : public AcDbText {
  public:
    ACRX_DECLARE_MEMBERS(AcDbAttributeDefinition);
    AcDbAttributeDefinition();

    // New texts that the caller frees.
    ACHAR* tag() const;
    ACHAR* prompt() const;
    Adesk::Boolean isInvisible() const;
    Adesk::Boolean isConstant() const;
};

// A text of a block reference; a sub-object of it. It stays where it is when the reference is
// turned.
class AcDbAttribute : public AcDbText {
  public:
    ACRX_DECLARE_MEMBERS(AcDbAttribute);
    AcDbAttribute();

    // A new text that the caller frees.
    ACHAR* tag() const;
    Adesk::Boolean isInvisible() const;
    Adesk::Boolean isConstant() const;
};

class AcDbMText : public AcDbEntity {
  public:
    ACRX_DECLARE_MEMBERS(AcDbMText);
    AcDbMText();

    AcGePoint3d location() const;
    AcGeVector3d normal() const;
    // The unit vector along the text; it wins over a stored angle.
    AcGeVector3d direction() const;
    // From the x axis of the text's plane to its direction.
    double rotation() const;
    double textHeight() const;
    // Width of the column that the text is broken in; 0 for none.
    double width() const;
    // 1 to 9, in rows from the top left to the bottom right.
    int attachment() const;
    // A new text that the caller frees; format codes are left in.
    ACHAR* contents() const;
    AcDbObjectId textStyle() const;
};

class AcDbBlockReference : public AcDbEntity {
  public:
    ACRX_DECLARE_MEMBERS(AcDbBlockReference);
    AcDbBlockReference();

    // The block's record; null when the drawing has no block of that name.
    AcDbObjectId blockTableRecord() const;
    AcGePoint3d position() const;
    AcGeScale3d scaleFactors() const;
    // In the reference's plane, from its x axis; kept as it was set, not reduced.
    double rotation() const;
    // eNotOpenForWrite; eInvalidInput for a value that is no number. Attributes stay where they
    // are.
    Acad::ErrorStatus setRotation(double rotation);
    AcGeVector3d normal() const;
    // From the block's coordinates to the world's: position, plane, rotation, scale, and the
    // block's base point taken off first.
    AcGeMatrix3d blockTransform() const;
    // The attributes in the drawing's order; null when memory is refused or the reference isn't
    // open.
    AcDbObjectIterator* attributeIterator() const;
};

// A block reference repeated in rows and columns.
class AcDbMInsertBlock : public AcDbBlockReference {
  public:
    ACRX_DECLARE_MEMBERS(AcDbMInsertBlock);
    AcDbMInsertBlock();

    Adesk::UInt16 columns() const;
    Adesk::UInt16 rows() const;
    double columnSpacing() const;
    double rowSpacing() const;
};

// Three or four corners in space; the fourth repeats the third for a triangle.
class AcDbFace : public AcDbEntity {
  public:
    ACRX_DECLARE_MEMBERS(AcDbFace);
    AcDbFace();

    // Corner 0 to 3. eNotOpenForRead; eInvalidIndex outside.
    Acad::ErrorStatus getVertexAt(Adesk::UInt16 corner, AcGePoint3d& point) const;
    Acad::ErrorStatus isEdgeVisibleAt(Adesk::UInt16 edge, Adesk::Boolean& visible) const;
};

// A filled figure of three or four corners in a plane; the third and fourth are crosswise, as
// drawn.
class AcDbTrace : public AcDbEntity {
  public:
    ACRX_DECLARE_MEMBERS(AcDbTrace);
    AcDbTrace();

    Acad::ErrorStatus getPointAt(Adesk::UInt16 corner, AcGePoint3d& point) const;
    double thickness() const;
    AcGeVector3d normal() const;
};

class AcDbSolid : public AcDbEntity {
  public:
    ACRX_DECLARE_MEMBERS(AcDbSolid);
    AcDbSolid();

    Acad::ErrorStatus getPointAt(Adesk::UInt16 corner, AcGePoint3d& point) const;
    double thickness() const;
    AcGeVector3d normal() const;
};
