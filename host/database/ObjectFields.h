// The fields of each class of objects that the host reads. Angles are radians; points are as the
// drawing has them, in the object's own plane for the classes with a normal (but for line, point
// and ellipse).
#pragma once

#include <optional>

#include "host/database/Fields.h"
#include "host/database/RegionLoops.h"

namespace host::database {

// Of an object that the host only keeps.
struct NoFields : FieldsOf<NoFields> {
    static FieldTable fieldTable() { return {}; }
};

struct EntityFields : Fields {
    static constexpr int kLayerCode = 8;
    static constexpr const wchar_t* kDefaultLayer = L"0";

    std::wstring layer = kDefaultLayer;
    std::wstring linetype = L"BYLAYER";
    int color = 256;
    int invisible = 0;
    int paperSpace = 0;
    double oldElevation = 0.0;  // group 38 of R10 and before, for points without a z
    bool layerChosen = false;   // of a new entity: it was given its layer

    // The normal of the plane that points lie in; +z for those in world coordinates.
    virtual AcGeVector3d plane() const { return AcGeVector3d::kZAxis; }

    Names namesUsed() const override;

    // The entries that all entities begin with.
    static FieldTable entityTable(std::initializer_list<FieldSpec> own);

  protected:
    // Gives the points their z from group 38 when the record has one and no z of the point's own.
    void useOldElevation(const std::function<bool(int)>& seen, int zCode, double& z) const;
};

struct OpaqueFields : FieldsOf<OpaqueFields, EntityFields> {
    static FieldTable fieldTable() { return entityTable({}); }
};

// REGION.
struct RegionFields : FieldsOf<RegionFields, EntityFields> {
    std::optional<RegionLoop> loop;  // of a region that was made of curves
    static FieldTable fieldTable() { return entityTable({}); }
    Acad::ErrorStatus mayBeWritten(const Manner& manner) const override;
    void write(RecordWriter& out) const override;
    bool isFinite() const override;
};

// 3DSOLID. Of a new one, the cylinder that it is.
struct SolidFields : FieldsOf<SolidFields, EntityFields> {
    AcGePoint3d base;
    AcGeVector3d axis;
    double radius = 0.0;
    bool hasBody = false;
    static FieldTable fieldTable() { return entityTable({}); }
    Acad::ErrorStatus mayBeWritten(const Manner& manner) const override;
    void write(RecordWriter& out) const override;
    bool isFinite() const override;
};

struct DimensionFields : FieldsOf<DimensionFields, EntityFields> {
    std::wstring block;  // holds what is drawn
    int type = 0;
    static FieldTable fieldTable();
};

struct LeaderFields : FieldsOf<LeaderFields, EntityFields> {
    std::vector<AcGePoint3d> vertices;
    static FieldTable fieldTable() { return entityTable({}); }
    bool takeGroup(const dxf::Document& document, const dxf::Group& group) override;
    std::shared_ptr<const Curve> makeCurve(const AcDbImpObject& object) const override;
};

struct LineFields : FieldsOf<LineFields, EntityFields> {
    AcGePoint3d start, end;
    AcGeVector3d normal = AcGeVector3d::kZAxis;
    double thickness = 0.0;
    static FieldTable fieldTable();
    Acad::ErrorStatus mayBeWritten(const Manner& manner) const override;
    void write(RecordWriter& out) const override;
    void finish(const std::function<bool(int)>& seen) override;
    std::shared_ptr<const Curve> makeCurve(const AcDbImpObject& object) const override;
};

struct PointFields : FieldsOf<PointFields, EntityFields> {
    AcGePoint3d position;
    AcGeVector3d normal = AcGeVector3d::kZAxis;
    double thickness = 0.0;
    static FieldTable fieldTable();
    Acad::ErrorStatus mayBeWritten(const Manner& manner) const override;
    void write(RecordWriter& out) const override;
    void finish(const std::function<bool(int)>& seen) override;
};

struct CircleFields : FieldsOf<CircleFields, EntityFields> {
    AcGePoint3d center;
    AcGeVector3d normal = AcGeVector3d::kZAxis;
    double radius = 0.0;
    double thickness = 0.0;
    static FieldTable fieldTable();
    Acad::ErrorStatus mayBeWritten(const Manner& manner) const override;
    void write(RecordWriter& out) const override;
    void finish(const std::function<bool(int)>& seen) override;
    std::shared_ptr<const Curve> makeCurve(const AcDbImpObject& object) const override;
    bool isClosed(const AcDbImpObject& object) const override;
    AcGeVector3d plane() const override { return normal; }
};

struct ArcFields : FieldsOf<ArcFields, EntityFields> {
    AcGePoint3d center;
    AcGeVector3d normal = AcGeVector3d::kZAxis;
    double radius = 0.0;
    double startAngle = 0.0;
    double endAngle = 0.0;
    double thickness = 0.0;
    static FieldTable fieldTable();
    Acad::ErrorStatus mayBeWritten(const Manner& manner) const override;
    void write(RecordWriter& out) const override;
    void finish(const std::function<bool(int)>& seen) override;
    std::shared_ptr<const Curve> makeCurve(const AcDbImpObject& object) const override;
    // The end, above the start.
    double endAbove() const;
    AcGeVector3d plane() const override { return normal; }
};

struct EllipseFields : FieldsOf<EllipseFields, EntityFields> {
    AcGePoint3d center;
    AcGeVector3d major;
    AcGeVector3d normal = AcGeVector3d::kZAxis;
    double ratio = 1.0;
    double start = 0.0;
    double end = 6.283185307179586;
    static FieldTable fieldTable();
    Acad::ErrorStatus mayBeWritten(const Manner& manner) const override;
    void write(RecordWriter& out) const override;
    std::shared_ptr<const Curve> makeCurve(const AcDbImpObject& object) const override;
    AcGeVector3d minor() const;
    double endAbove() const;
    bool isClosed(const AcDbImpObject& object) const override;
};

struct SplineFields : FieldsOf<SplineFields, EntityFields> {
    static constexpr int kClosed = 1;
    static constexpr int kPeriodic = 2;
    static constexpr int kRational = 4;

    int flags = 0;
    int degree = 3;
    AcGeVector3d startTangent, endTangent;
    bool hasStartTangent = false;
    bool hasEndTangent = false;
    std::vector<double> knots, weights;
    std::vector<AcGePoint3d> controlPoints, fitPoints;
    static FieldTable fieldTable();
    bool takeGroup(const dxf::Document& document, const dxf::Group& group) override;
    void finish(const std::function<bool(int)>& seen) override;
    std::shared_ptr<const Curve> makeCurve(const AcDbImpObject& object) const override;
    bool isClosed(const AcDbImpObject& object) const override;
    bool isPeriodic(const AcDbImpObject& object) const override;
};

// LWPOLYLINE.
struct PolylineFields : FieldsOf<PolylineFields, EntityFields> {
    static constexpr int kClosed = 1;

    struct Vertex {
        double x = 0.0;
        double y = 0.0;
        double bulge = 0.0;
        double startWidth = 0.0;
        double endWidth = 0.0;
    };
    int flags = 0;
    double constantWidth = 0.0;
    double elevation = 0.0;
    double thickness = 0.0;
    AcGeVector3d normal = AcGeVector3d::kZAxis;
    std::vector<Vertex> vertices;
    static FieldTable fieldTable();
    Acad::ErrorStatus mayBeWritten(const Manner& manner) const override;
    void write(RecordWriter& out) const override;
    bool isFinite() const override;
    void writeAsOld(RecordWriter& out) const;  // for releases without light polylines
    bool takeGroup(const dxf::Document& document, const dxf::Group& group) override;
    std::shared_ptr<const Curve> makeCurve(const AcDbImpObject& object) const override;
    AcGeVector3d plane() const override { return normal; }
    bool isClosed(const AcDbImpObject& object) const override;
};

// POLYLINE: plane and space polylines and both kinds of meshes.
struct OldPolylineFields : FieldsOf<OldPolylineFields, EntityFields> {
    static constexpr int kClosed = 1;
    static constexpr int kCurveFit = 2;
    static constexpr int kSplineFit = 4;
    static constexpr int kSpace = 8;
    static constexpr int kPolygonMesh = 16;
    static constexpr int kClosedInN = 32;
    static constexpr int kPolyface = 64;

    AcGePoint3d origin;  // x and y mean nothing, z is the elevation
    double thickness = 0.0;
    int flags = 0;
    int countM = 0;
    int countN = 0;
    int smoothType = 0;
    AcGeVector3d normal = AcGeVector3d::kZAxis;
    static FieldTable fieldTable();
    Acad::ErrorStatus mayBeWritten(const Manner& manner) const override;
    void write(RecordWriter& out) const override;
    void finish(const std::function<bool(int)>& seen) override;
    std::shared_ptr<const Curve> makeCurve(const AcDbImpObject& object) const override;
    AcGeVector3d plane() const override {
        return (flags & (kSpace | kPolygonMesh | kPolyface)) != 0 ? AcGeVector3d::kZAxis : normal;
    }
    bool isClosed(const AcDbImpObject& object) const override;
};

// VERTEX of any POLYLINE.
struct VertexFields : FieldsOf<VertexFields, EntityFields> {
    static constexpr int kCurveFit = 1;
    static constexpr int kSplineFit = 8;
    static constexpr int kSplineControl = 16;
    static constexpr int kSpace = 32;
    static constexpr int kMesh = 64;
    static constexpr int kPolyface = 128;

    AcGePoint3d position;
    double startWidth = 0.0;
    double endWidth = 0.0;
    double bulge = 0.0;
    int flags = 0;
    int corner1 = 0, corner2 = 0, corner3 = 0, corner4 = 0;
    static FieldTable fieldTable();
    Acad::ErrorStatus mayBeWritten(const Manner& manner) const override;
    void write(RecordWriter& out) const override;
    // What follows the groups of all entities.
    void writeOwn(RecordWriter& out) const;
};

// TEXT, and what ATTRIB and ATTDEF have of it.
struct TextFields : FieldsOf<TextFields, EntityFields> {
    double thickness = 0.0;
    AcGePoint3d position;
    double height = 0.0;
    std::wstring text;
    double rotation = 0.0;
    double widthFactor = 1.0;
    double oblique = 0.0;
    std::wstring style = L"STANDARD";
    int mirrored = 0;
    int horizontal = 0;
    int vertical = 0;
    AcGePoint3d alignment;
    bool hasAlignment = false;
    AcGeVector3d normal = AcGeVector3d::kZAxis;
    double rotationOfPosition = 0.0;  // the rotation that `position` was computed for

    static FieldTable fieldTable();
    Acad::ErrorStatus mayBeWritten(const Manner& manner) const override;
    void write(RecordWriter& out) const override;
    Names namesUsed() const override;
    void finish(const std::function<bool(int)>& seen) override;
    std::unique_ptr<Fields> stored() const override;
    // `position`, turned about the alignment point for texts that hang on it: all but those on the
    // baseline at the left and those aligned or fitted between two points.
    AcGePoint3d turnedPosition() const;
    AcGeVector3d plane() const override { return normal; }

  protected:
    static FieldTable textTable(std::initializer_list<FieldSpec> own, int verticalCode);
    // From the thickness to the normal.
    void writeText(RecordWriter& out) const;
};

struct AttributeFields : TextFields {
    std::wstring tag;
    std::wstring prompt;
    int flags = 0;

    std::unique_ptr<Fields> clone() const override {
        return std::make_unique<AttributeFields>(*this);
    }
    std::unique_ptr<Fields> fresh() const override { return std::make_unique<AttributeFields>(); }
    const FieldTable& table() const override;
    void write(RecordWriter& out) const override;
    bool isDefinition = false;
};

struct MTextFields : FieldsOf<MTextFields, EntityFields> {
    AcGePoint3d location;
    double height = 0.0;
    double width = 0.0;
    int attachment = 1;
    std::wstring contents;
    std::wstring style = L"STANDARD";
    AcGeVector3d normal = AcGeVector3d::kZAxis;
    AcGeVector3d direction;
    double rotation = 0.0;
    bool hasDirection = false;
    static FieldTable fieldTable();
    Acad::ErrorStatus mayBeWritten(const Manner& manner) const override;
    void write(RecordWriter& out) const override;
    Names namesUsed() const override;
    bool takeGroup(const dxf::Document& document, const dxf::Group& group) override;
    void finish(const std::function<bool(int)>& seen) override;
    AcGeVector3d plane() const override { return normal; }
};

struct InsertFields : FieldsOf<InsertFields, EntityFields> {
    std::wstring block;
    AcGePoint3d position;
    AcGeScale3d scale;
    double rotation = 0.0;
    int columns = 1;
    int rows = 1;
    double columnSpacing = 0.0;
    double rowSpacing = 0.0;
    AcGeVector3d normal = AcGeVector3d::kZAxis;
    static FieldTable fieldTable();
    Acad::ErrorStatus mayBeWritten(const Manner& manner) const override;
    void write(RecordWriter& out) const override;
    Names namesUsed() const override;
    void finish(const std::function<bool(int)>& seen) override;
    bool isArray() const { return columns > 1 || rows > 1; }
    AcGeVector3d plane() const override { return normal; }
    void writeWith(RecordWriter& out, bool attributes) const;
};

// 3DFACE, SOLID and TRACE.
struct CornerFields : FieldsOf<CornerFields, EntityFields> {
    enum class Kind : std::uint8_t { face, solid, trace };

    Kind kind = Kind::face;  // of a new one
    AcGePoint3d corner1, corner2, corner3, corner4;
    int hiddenEdges = 0;
    double thickness = 0.0;
    AcGeVector3d normal = AcGeVector3d::kZAxis;
    static FieldTable fieldTable();
    Acad::ErrorStatus mayBeWritten(const Manner& manner) const override;
    void write(RecordWriter& out) const override;
    void finish(const std::function<bool(int)>& seen) override;
    const AcGePoint3d& corner(int index) const;
    AcGeVector3d plane() const override { return normal; }
};

// The lines of a multi-line style.
struct MlineElements {
    std::vector<double> offsets{0.5, -0.5};  // to the left
    double startAngle = 1.5707963267948966;  // at which the lines of an open one begin and end
    double endAngle = 1.5707963267948966;
};

// MLINE. Vertices are in world coordinates.
struct MlineFields : FieldsOf<MlineFields, EntityFields> {
    static constexpr int kHasVertices = 1;
    static constexpr int kClosed = 2;

    struct Vertex {
        AcGePoint3d position;
        AcGeVector3d direction;  // of the segment that follows
        AcGeVector3d miter;      // across it, to the left
        double stretch = 1.0;    // of offsets along the miter
    };
    // A vertex as the drawing has it: how far along its miter each line passes.
    struct Joint {
        AcGeVector3d miter;
        std::vector<double> crossings;
    };
    std::wstring style = L"STANDARD";
    double scale = 1.0;
    int justification = 0;
    int flags = 0;
    AcGeVector3d normal = AcGeVector3d::kZAxis;
    std::vector<AcGePoint3d> points;  // as they were given
    std::vector<Joint> joints;        // of the drawing, one for each point; none of a new one
    MlineElements elements;           // of the style, once it is in a database
    static FieldTable fieldTable();
    bool takeGroup(const dxf::Document& document, const dxf::Group& group) override;
    Acad::ErrorStatus mayBeWritten(const Manner& manner) const override;
    bool isFinite() const override;
    Names namesUsed() const override;
    void write(RecordWriter& out) const override { writeWith(out, 0); }
    void writeWith(RecordWriter& out, std::uint64_t styleHandle) const;
    bool isClosedLine() const { return (flags & kClosed) != 0; }
    // The point in the plane.
    AcGePoint3d position(std::size_t index) const;
    std::vector<Vertex> vertices() const;
    // What is drawn: each line of the style from vertex to vertex, without its gaps; the line
    // through the vertices where a record doesn't give its lines. A closed one returns to its first
    // point.
    std::vector<std::vector<AcGePoint3d>> lines() const;

  private:
    std::vector<Joint> ownJoints() const;
    std::vector<AcGeVector3d> directions() const;
    // What is added to offsets for the justification.
    double shift() const;
    bool crossingFollows_ = false;  // while reading: the next group 41 is a crossing
};

// What the header says and the host changes.
struct HeaderFields : FieldsOf<HeaderFields> {
    std::wstring currentLayer;
    static FieldTable fieldTable() { return {}; }
};

struct SymbolFields : Fields {
    static constexpr int kDependent = 16;

    std::wstring name;
    int flags = 0;
};

struct OtherSymbolFields : FieldsOf<OtherSymbolFields, SymbolFields> {
    static FieldTable fieldTable();
};

struct LayerFields : FieldsOf<LayerFields, SymbolFields> {
    static constexpr int kFrozen = 1;
    static constexpr int kLocked = 4;

    int color = 7;  // negative while the layer is off
    std::wstring linetype = L"CONTINUOUS";
    int plottable = 1;
    static FieldTable fieldTable();
    Acad::ErrorStatus mayBeWritten(const Manner& manner) const override;
    void write(RecordWriter& out) const override;
    Names namesUsed() const override;
};

struct LinetypeFields : FieldsOf<LinetypeFields, SymbolFields> {
    std::wstring comments;
    int dashes = 0;
    double patternLength = 0.0;
    static FieldTable fieldTable();
    Acad::ErrorStatus mayBeWritten(const Manner& manner) const override;
    void write(RecordWriter& out) const override;
};

struct TextStyleFields : FieldsOf<TextStyleFields, SymbolFields> {
    double textSize = 0.0;
    double xScale = 1.0;
    double oblique = 0.0;
    std::wstring fileName;
    static FieldTable fieldTable();
    Acad::ErrorStatus mayBeWritten(const Manner& manner) const override;
    void write(RecordWriter& out) const override;
};

// MLINESTYLE. Of a new one, the style that every drawing has.
struct MlineStyleFields : FieldsOf<MlineStyleFields, SymbolFields> {
    MlineElements elements;
    static FieldTable fieldTable();
    bool takeGroup(const dxf::Document& document, const dxf::Group& group) override;
    void finish(const std::function<bool(int)>& seen) override;
    void write(RecordWriter& out) const override;

  private:
    std::vector<double> read_;
};

struct BlockFields : FieldsOf<BlockFields, SymbolFields> {
    static constexpr int kAnonymous = 1;
    static constexpr int kHasAttributes = 2;
    static constexpr int kExternal = 4;
    static constexpr int kOverlay = 8;

    AcGePoint3d origin;
    std::wstring path;
    static FieldTable fieldTable();
};

}  // namespace host::database
