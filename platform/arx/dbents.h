// The entities of a drawing, but for those with headers of their own. Points are in world
// coordinates unless an operation says otherwise; angles are radians; "own coordinates" are those
// of the entity's plane, which getEcs maps to the world's.
//
// Every class can be made with `new`, which gives null when memory is refused, and is then the
// maker's until appendAcDbEntity (dbsymtb.h) takes it. Setters answer eNotOpenForWrite for an
// object of a database that isn't open for write and eInvalidInput for values that are no finite
// numbers or make no sense for the property; the entity is unchanged then. setNormal leaves the
// points where they are in the world.
#pragma once

#include <dbcurve.h>
#include <dbmain.h>
#include <gedblar.h>

class AcDbLine : public AcDbCurve {
  public:
    ACRX_DECLARE_MEMBERS(AcDbLine);
    AcDbLine();
    AcDbLine(const AcGePoint3d& start, const AcGePoint3d& end);

    AcGePoint3d startPoint() const;
    Acad::ErrorStatus setStartPoint(const AcGePoint3d& point);
    AcGePoint3d endPoint() const;
    Acad::ErrorStatus setEndPoint(const AcGePoint3d& point);
    double thickness() const;
    Acad::ErrorStatus setThickness(double thickness);
    AcGeVector3d normal() const;
    Acad::ErrorStatus setNormal(const AcGeVector3d& normal);
};

class AcDbPoint : public AcDbEntity {
  public:
    ACRX_DECLARE_MEMBERS(AcDbPoint);
    AcDbPoint();
    explicit AcDbPoint(const AcGePoint3d& position);

    AcGePoint3d position() const;
    Acad::ErrorStatus setPosition(const AcGePoint3d& position);
    double thickness() const;
    Acad::ErrorStatus setThickness(double thickness);
    AcGeVector3d normal() const;
    Acad::ErrorStatus setNormal(const AcGeVector3d& normal);
};

class AcDbCircle : public AcDbCurve {
  public:
    ACRX_DECLARE_MEMBERS(AcDbCircle);
    AcDbCircle();
    AcDbCircle(const AcGePoint3d& center, const AcGeVector3d& normal, double radius);

    AcGePoint3d center() const;
    Acad::ErrorStatus setCenter(const AcGePoint3d& center);
    double radius() const;
    // Refuses a negative one.
    Acad::ErrorStatus setRadius(double radius);
    double thickness() const;
    Acad::ErrorStatus setThickness(double thickness);
    AcGeVector3d normal() const;
    Acad::ErrorStatus setNormal(const AcGeVector3d& normal);
};

class AcDbArc : public AcDbCurve {
  public:
    ACRX_DECLARE_MEMBERS(AcDbArc);
    AcDbArc();
    AcDbArc(const AcGePoint3d& center, double radius, double startAngle, double endAngle);
    AcDbArc(const AcGePoint3d& center, const AcGeVector3d& normal, double radius, double startAngle,
            double endAngle);

    AcGePoint3d center() const;
    Acad::ErrorStatus setCenter(const AcGePoint3d& center);
    double radius() const;
    // Refuses a negative one.
    Acad::ErrorStatus setRadius(double radius);
    // From the x axis of the arc's plane, counter-clockwise, as the drawing has them or as they
    // were set; the end may be below the start.
    double startAngle() const;
    Acad::ErrorStatus setStartAngle(double angle);
    double endAngle() const;
    Acad::ErrorStatus setEndAngle(double angle);
    double thickness() const;
    Acad::ErrorStatus setThickness(double thickness);
    AcGeVector3d normal() const;
    Acad::ErrorStatus setNormal(const AcGeVector3d& normal);
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
    // The tangent and the identifier are not kept.
    explicit AcDb2dVertex(const AcGePoint3d& position, double bulge = 0.0, double startWidth = 0.0,
                          double endWidth = 0.0, double tangent = 0.0,
                          Adesk::Int32 vertexIdentifier = 0);

    AcDb::Vertex2dType vertexType() const;
    // In the polyline's own coordinates, z as the drawing has it.
    AcGePoint3d position() const;
    Acad::ErrorStatus setPosition(const AcGePoint3d& position);
    double bulge() const;
    Acad::ErrorStatus setBulge(double bulge);
    double startWidth() const;
    Acad::ErrorStatus setStartWidth(double width);
    double endWidth() const;
    Acad::ErrorStatus setEndWidth(double width);
};

class AcDb3dPolylineVertex : public AcDbVertex {
  public:
    ACRX_DECLARE_MEMBERS(AcDb3dPolylineVertex);
    AcDb3dPolylineVertex();
    explicit AcDb3dPolylineVertex(const AcGePoint3d& position);

    AcDb::Vertex3dType vertexType() const;
    AcGePoint3d position() const;
    Acad::ErrorStatus setPosition(const AcGePoint3d& position);
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
    explicit AcDbPolyFaceMeshVertex(const AcGePoint3d& position);

    AcGePoint3d position() const;
    Acad::ErrorStatus setPosition(const AcGePoint3d& position);
};

// A face of a polyface mesh: up to four vertices of the mesh, counted from 1.
class AcDbFaceRecord : public AcDbVertex {
  public:
    ACRX_DECLARE_MEMBERS(AcDbFaceRecord);
    AcDbFaceRecord();
    AcDbFaceRecord(Adesk::Int16 vertex0, Adesk::Int16 vertex1, Adesk::Int16 vertex2,
                   Adesk::Int16 vertex3 = 0);

    // The vertex number of corner 0 to 3, negative when the edge that starts there is hidden, 0 for
    // no corner. eInvalidIndex outside.
    Acad::ErrorStatus getVertexAt(Adesk::UInt16 corner, Adesk::Int16& vertex) const;
    Acad::ErrorStatus setVertexAt(Adesk::UInt16 corner, Adesk::Int16 vertex);
};

// The old-style plane polyline, whose vertices are sub-objects. Its curve consists of the vertices
// that are drawn: control vertices of a splined polyline are passed over.
//
// appendVertex puts a vertex behind the last one and takes it over. That of a polyline that is in
// no database yet follows it into one; that of one that is in a database is open for write then,
// with the layer, colour and linetype of the polyline, and the caller closes it.
// eNullObjectPointer, eNotOpenForWrite, eAlreadyInDb, eOutOfMemory: the vertex remains the
// caller's.
class AcDb2dPolyline : public AcDbCurve {
  public:
    ACRX_DECLARE_MEMBERS(AcDb2dPolyline);
    AcDb2dPolyline();
    // Vertices at x and y of the points, all at `elevation`; `bulges`, when given, holds one for
    // each of them as far as it goes.
    explicit AcDb2dPolyline(const AcGePoint3dArray& vertices,
                            AcDb::Poly2dType type = AcDb::k2dSimplePoly, double elevation = 0.0,
                            Adesk::Boolean closed = false, double defaultStartWidth = 0.0,
                            double defaultEndWidth = 0.0, const AcGeDoubleArray* bulges = nullptr);

    AcDb::Poly2dType polyType() const;
    double elevation() const;
    Acad::ErrorStatus setElevation(double elevation);
    double thickness() const;
    Acad::ErrorStatus setThickness(double thickness);
    AcGeVector3d normal() const;
    // The elevation is kept, the vertices keep their own coordinates.
    Acad::ErrorStatus setNormal(const AcGeVector3d& normal);
    Acad::ErrorStatus makeClosed();
    Acad::ErrorStatus makeOpen();
    Acad::ErrorStatus appendVertex(AcDb2dVertex* vertex);
    Acad::ErrorStatus appendVertex(AcDbObjectId& id, AcDb2dVertex* vertex);
    // All vertices in the drawing's order; null when memory is refused, when the polyline isn't
    // open or is in no database.
    AcDbObjectIterator* vertexIterator() const;
};

class AcDb3dPolyline : public AcDbCurve {
  public:
    ACRX_DECLARE_MEMBERS(AcDb3dPolyline);
    AcDb3dPolyline();
    AcDb3dPolyline(AcDb::Poly3dType type, const AcGePoint3dArray& vertices,
                   Adesk::Boolean closed = false);

    AcDb::Poly3dType polyType() const;
    Acad::ErrorStatus makeClosed();
    Acad::ErrorStatus makeOpen();
    // As of AcDb2dPolyline.
    Acad::ErrorStatus appendVertex(AcDb3dPolylineVertex* vertex);
    Acad::ErrorStatus appendVertex(AcDbObjectId& id, AcDb3dPolylineVertex* vertex);
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
    // As of AcDb2dPolyline. Vertices are to come before the faces that name them.
    Acad::ErrorStatus appendVertex(AcDbPolyFaceMeshVertex* vertex);
    Acad::ErrorStatus appendVertex(AcDbObjectId& id, AcDbPolyFaceMeshVertex* vertex);
    Acad::ErrorStatus appendFaceRecord(AcDbFaceRecord* face);
    Acad::ErrorStatus appendFaceRecord(AcDbObjectId& id, AcDbFaceRecord* face);
    // The vertices first, then the face records, as the drawing has them.
    AcDbObjectIterator* vertexIterator() const;
};

class AcDbText : public AcDbEntity {
  public:
    ACRX_DECLARE_MEMBERS(AcDbText);
    AcDbText();
    // The null style is "STANDARD". A height of 0 is that of the style; where the style has none,
    // the drawing's $TEXTSIZE when the text is put into it.
    AcDbText(const AcGePoint3d& position, const ACHAR* text,
             AcDbObjectId style = AcDbObjectId::kNull, double height = 0.0, double rotation = 0.0);

    // Where the text begins. Counts for texts that are justified left on the baseline, aligned and
    // fitted; for the others it follows from the alignment point and turns with the text.
    AcGePoint3d position() const;
    Acad::ErrorStatus setPosition(const AcGePoint3d& position);
    // The point that a justified text hangs on. A drawing that gives none has the position here.
    AcGePoint3d alignmentPoint() const;
    Acad::ErrorStatus setAlignmentPoint(const AcGePoint3d& point);
    AcGeVector3d normal() const;
    Acad::ErrorStatus setNormal(const AcGeVector3d& normal);
    double thickness() const;
    Acad::ErrorStatus setThickness(double thickness);
    double oblique() const;
    Acad::ErrorStatus setOblique(double angle);
    // In the text's plane, from its x axis; kept as it was set, not reduced.
    double rotation() const;
    // eNotOpenForWrite; eInvalidInput for a value that is no number. The text is unchanged then.
    Acad::ErrorStatus setRotation(double rotation);
    double height() const;
    // Refuses what is not above 0.
    Acad::ErrorStatus setHeight(double height);
    double widthFactor() const;
    // Refuses what is not above 0.
    Acad::ErrorStatus setWidthFactor(double factor);
    // A new text that the caller frees (acutDelString).
    ACHAR* textString() const;
    // Belongs to the entity and holds until it changes.
    const ACHAR* textStringConst() const;
    // Refuses null and texts with line ends.
    Acad::ErrorStatus setTextString(const ACHAR* text);
    AcDbObjectId textStyle() const;
    // eNotThatKindOfClass when the id names no text style.
    Acad::ErrorStatus setTextStyle(AcDbObjectId style);
    bool isMirroredInX() const;
    Acad::ErrorStatus mirrorInX(bool mirrored);
    bool isMirroredInY() const;
    Acad::ErrorStatus mirrorInY(bool mirrored);
    AcDb::TextHorzMode horizontalMode() const;
    Acad::ErrorStatus setHorizontalMode(AcDb::TextHorzMode mode);
    AcDb::TextVertMode verticalMode() const;
    Acad::ErrorStatus setVerticalMode(AcDb::TextVertMode mode);
};

class AcDbAttributeDefinition : public AcDbText {
  public:
    ACRX_DECLARE_MEMBERS(AcDbAttributeDefinition);
    AcDbAttributeDefinition();

    // New texts that the caller frees.
    ACHAR* tag() const;
    Acad::ErrorStatus setTag(const ACHAR* tag);
    ACHAR* prompt() const;
    Acad::ErrorStatus setPrompt(const ACHAR* prompt);
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
    Acad::ErrorStatus setTag(const ACHAR* tag);
    Adesk::Boolean isInvisible() const;
    Adesk::Boolean isConstant() const;
    // Takes tag, text, flags, style, sizes, justification and properties of the definition, which
    // is open for read; points, heights, angles and the normal by the block's transform.
    // eNotOpenForRead, eNullObjectPointer.
    Acad::ErrorStatus setAttributeFromBlock(const AcDbAttributeDefinition* definition,
                                            const AcGeMatrix3d& blockTransform);
};

class AcDbMText : public AcDbEntity {
  public:
    ACRX_DECLARE_MEMBERS(AcDbMText);
    AcDbMText();

    AcGePoint3d location() const;
    Acad::ErrorStatus setLocation(const AcGePoint3d& location);
    AcGeVector3d normal() const;
    Acad::ErrorStatus setNormal(const AcGeVector3d& normal);
    // The unit vector along the text; it wins over a stored angle.
    AcGeVector3d direction() const;
    // From the x axis of the text's plane to its direction.
    double rotation() const;
    // eNotImplementedYet for a text that came with the drawing and has a direction.
    Acad::ErrorStatus setRotation(double rotation);
    double textHeight() const;
    // Refuses what is not above 0.
    Acad::ErrorStatus setTextHeight(double height);
    // Width of the column that the text is broken in; 0 for none.
    double width() const;
    Acad::ErrorStatus setWidth(double width);
    // 1 to 9, in rows from the top left to the bottom right.
    int attachment() const;
    // A new text that the caller frees; format codes are left in.
    ACHAR* contents() const;
    // Line ends become \\P. eNotImplementedYet for a text that came with the drawing.
    Acad::ErrorStatus setContents(const ACHAR* contents);
    AcDbObjectId textStyle() const;
    Acad::ErrorStatus setTextStyle(AcDbObjectId style);
};

class AcDbBlockReference : public AcDbEntity {
  public:
    ACRX_DECLARE_MEMBERS(AcDbBlockReference);
    AcDbBlockReference();
    AcDbBlockReference(const AcGePoint3d& position, AcDbObjectId block);

    // The block's record; null when the drawing has no block of that name.
    AcDbObjectId blockTableRecord() const;
    // eNotThatKindOfClass when the id names no block.
    Acad::ErrorStatus setBlockTableRecord(AcDbObjectId block);
    AcGePoint3d position() const;
    Acad::ErrorStatus setPosition(const AcGePoint3d& position);
    AcGeScale3d scaleFactors() const;
    // Refuses a factor of 0.
    Acad::ErrorStatus setScaleFactors(const AcGeScale3d& factors);
    // In the reference's plane, from its x axis; kept as it was set, not reduced.
    double rotation() const;
    // eNotOpenForWrite; eInvalidInput for a value that is no number. Attributes stay where they
    // are.
    Acad::ErrorStatus setRotation(double rotation);
    AcGeVector3d normal() const;
    Acad::ErrorStatus setNormal(const AcGeVector3d& normal);
    // Puts an attribute behind the last one, as AcDb2dPolyline's appendVertex does; the reference
    // is to be in a database (eNotInDatabase).
    Acad::ErrorStatus appendAttribute(AcDbAttribute* attribute);
    Acad::ErrorStatus appendAttribute(AcDbObjectId& id, AcDbAttribute* attribute);
    // From the block's coordinates to the world's: position, plane, rotation, scale, and the
    // block's base point taken off first.
    AcGeMatrix3d blockTransform() const;
    // The block's content in the world's coordinates, with its layers and colours, and that again
    // for each row and column. The host knows lines, points, circles, arcs, light polylines (round
    // ones as long as they stay round) and what references in the block hold in their turn, 64
    // blocks deep, for a broken drawing may hold a block within itself; it passes over everything
    // else. eOutOfMemory, and nothing is appended, for more than 2 000 000 entities.
    Acad::ErrorStatus explode(AcDbVoidPtrArray& entities) const override;
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
    AcDbFace(const AcGePoint3d& point0, const AcGePoint3d& point1, const AcGePoint3d& point2,
             const AcGePoint3d& point3, Adesk::Boolean edge0Visible = true,
             Adesk::Boolean edge1Visible = true, Adesk::Boolean edge2Visible = true,
             Adesk::Boolean edge3Visible = true);
    AcDbFace(const AcGePoint3d& point0, const AcGePoint3d& point1, const AcGePoint3d& point2,
             Adesk::Boolean edge0Visible = true, Adesk::Boolean edge1Visible = true,
             Adesk::Boolean edge2Visible = true, Adesk::Boolean edge3Visible = true);

    // Corner 0 to 3. eNotOpenForRead; eInvalidIndex outside.
    Acad::ErrorStatus getVertexAt(Adesk::UInt16 corner, AcGePoint3d& point) const;
    Acad::ErrorStatus setVertexAt(Adesk::UInt16 corner, const AcGePoint3d& point);
    Acad::ErrorStatus isEdgeVisibleAt(Adesk::UInt16 edge, Adesk::Boolean& visible) const;
    Acad::ErrorStatus makeEdgeVisibleAt(Adesk::UInt16 edge);
    Acad::ErrorStatus makeEdgeInvisibleAt(Adesk::UInt16 edge);
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
    AcDbSolid(const AcGePoint3d& point0, const AcGePoint3d& point1, const AcGePoint3d& point2,
              const AcGePoint3d& point3);
    AcDbSolid(const AcGePoint3d& point0, const AcGePoint3d& point1, const AcGePoint3d& point2);

    Acad::ErrorStatus getPointAt(Adesk::UInt16 corner, AcGePoint3d& point) const;
    Acad::ErrorStatus setPointAt(Adesk::UInt16 corner, const AcGePoint3d& point);
    double thickness() const;
    Acad::ErrorStatus setThickness(double thickness);
    AcGeVector3d normal() const;
    Acad::ErrorStatus setNormal(const AcGeVector3d& normal);
};
