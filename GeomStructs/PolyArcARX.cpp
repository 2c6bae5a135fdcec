// PolyArc read from drawing entities.
#include <dbelipse.h>
#include <dbpl.h>
#include <dbspline.h>

#include <cmath>
#include <memory>

#include "GeomEnts/circle.h"
#include "GeomStructs/OldVerticesARX.h"
#include "GeomStructs/PolyArc.h"
#include "tam/TamExceptions.h"

namespace TamLib {
namespace {

// Appends a vertex; the height of the segment that ends there is set at its place, since there may
// be heights too many or too few.
void AppendVertex(PolyArc& line, const Point3d& point, double height) {
    line.AddVertex(point, 0.0);
    if (line.count < 2) return;
    const std::uint32_t segments = line.count - 1;
    while (line.heights.count < segments) line.heights.Append(0.0);
    line.heights[static_cast<int>(segments) - 1] = height;
}

// Appends vertices of which each holds the bulge of the segment behind it.
class BulgedRun {
  public:
    explicit BulgedRun(PolyArc& line) : line_(line) {}

    void Add(const Point3d& vertex, double bulge) {
        const double chord = isAny_ ? Distance(line_.data[line_.count - 1], vertex) : 0.0;
        AppendVertex(line_, vertex, Arc::BulgeToHeight(bulge_, chord));
        bulge_ = bulge;
        isAny_ = true;
    }
    void Close() {
        if (isAny_) Add(line_.data[0], 0.0);
    }

  private:
    PolyArc& line_;
    double bulge_ = 0.0;
    bool isAny_ = false;
};

void AddVertices(PolyArc& line, AcDbEntity* entity, AcDbObjectIterator* vertices,
                 const AcDb2dPolyline& polyline) {
    BulgedRun run(line);
    const double elevation = polyline.elevation();
    ForEachVertex<AcDb2dVertex>(
        entity, vertices, AcDb::k2dSplineCtlVertex, &elevation,
        [&run](const Point3d& position, double bulge) { run.Add(position, bulge); });
    if (polyline.isClosed()) run.Close();
}

void AddVertices(PolyArc& line, AcDbEntity* entity, AcDbObjectIterator* vertices,
                 const AcDb3dPolyline& polyline) {
    ForEachVertex<AcDb3dPolylineVertex>(
        entity, vertices, AcDb::k3dControlVertex, nullptr,
        [&line](const Point3d& position, double /*bulge*/) { AppendVertex(line, position, 0.0); });
    const bool endsApart = line.count > 0 && !Equals(line.data[line.count - 1], line.data[0]);
    if (polyline.isClosed() && endsApart) AppendVertex(line, Point3d(line.data[0]), 0.0);
}

void AddVertices(PolyArc& line, const AcDbPolyline& polyline) {
    BulgedRun run(line);
    for (unsigned int i = 0; i < polyline.numVerts(); ++i) {
        AcGePoint3d point;
        if (polyline.getPointAt(i, point) != Acad::eOk)
            throw TamExpAcad(L"LightWeight PolyLine conversion to PolyLine failed!", __LINE__,
                             L"GeomStructs/PolyArc");
        double bulge = 0.0;
        polyline.getBulgeAt(i, bulge);
        run.Add(ToPoint3d(point), bulge);
    }
    if (polyline.isClosed()) run.Close();
}

// An arc as the drawing has it; `valid` says whether it could be read.
Arc ReadArc(AcDbEntity* entity) {
    Line none(false);
    none.SetStart({});
    none.SetEnd({});
    Arc arc(0.0, none);
    arc.FromEntity(entity, 0);
    return arc;
}

void AddArc(PolyArc& line, const Arc& arc) {
    if (arc.valid == 0) return;
    AppendVertex(line, arc.Start(), 0.0);
    AppendVertex(line, arc.End(), arc.height);
}

void AddCircle(PolyArc& line, const Circle& circle) {
    const Point3d right = circle.centre + Point3d(circle.radius, 0.0, 0.0);
    AppendVertex(line, right, 0.0);
    AppendVertex(line, circle.centre - Point3d(circle.radius, 0.0, 0.0), circle.radius);
    AppendVertex(line, right, circle.radius);
}

}  // namespace

PolyArc::PolyArc(AcDbEntity* entity, int disposal) : PolyArc() {
    PolyArc::FromEntity(entity, disposal);
}

PolyArc::PolyArc(AcDbObjectId id) : PolyArc() {
    AcDbEntity* entity = nullptr;
    if (acdbOpenAcDbEntity(entity, id, AcDb::kForRead) == Acad::eOk) PolyArc::FromEntity(entity, 1);
}

void PolyArc::FromEntity(AcDbEntity* entity, std::int32_t disposal) {
    if (entity == nullptr) return;
    const AcRxClass* const type = entity->isA();
    std::unique_ptr<AcDbObjectIterator> vertices;  // outlives the disposal
    if (type == AcDb3dPolyline::desc()) {
        const auto* const polyline = static_cast<AcDb3dPolyline*>(entity);
        vertices.reset(polyline->vertexIterator());
        AddVertices(*this, entity, vertices.get(), *polyline);
    } else if (type == AcDb2dPolyline::desc()) {
        const auto* const polyline = static_cast<AcDb2dPolyline*>(entity);
        vertices.reset(polyline->vertexIterator());
        AddVertices(*this, entity, vertices.get(), *polyline);
    } else if (type->isDerivedFrom(AcDbPolyline::desc())) {
        AddVertices(*this, *static_cast<AcDbPolyline*>(entity));
    } else if (type->isDerivedFrom(AcDbLine::desc())) {
        AppendVertex(*this, ToPoint3d(static_cast<AcDbLine*>(entity)->startPoint()), 0.0);
        AppendVertex(*this, ToPoint3d(static_cast<AcDbLine*>(entity)->endPoint()), 0.0);
    } else if (type->isDerivedFrom(AcDbArc::desc())) {
        AddArc(*this, ReadArc(entity));
    } else if (type->isDerivedFrom(AcDbCircle::desc())) {
        AddCircle(*this, Circle(entity, 0));
    }
    DisposeOf(entity, disposal);
}

bool PolyArc::IsPolyEntity(AcDbEntity* entity) const {
    return IsArcEntity(entity, /*lineLike=*/true);
}

bool PolyArc::IsArcEntity(AcDbEntity* entity, bool lineLike) {
    if (entity == nullptr) return false;
    const AcRxClass* const type = entity->isA();
    if (type == AcDbLine::desc() || type == AcDbArc::desc()) return lineLike;
    return type == AcDb3dPolyline::desc() || type == AcDb2dPolyline::desc() ||
           type == AcDbPolyline::desc() || type == AcDbSpline::desc() ||
           type == AcDbCircle::desc() || type == AcDbEllipse::desc();
}

bool PolyArc::HasArcs(AcDbEntity* entity) {
    if (!IsArcEntity(entity, /*lineLike=*/true)) return false;
    const AcRxClass* const type = entity->isA();
    if (type == AcDbPolyline::desc()) return static_cast<AcDbPolyline*>(entity)->hasBulges();
    if (type == AcDbCircle::desc() || type == AcDbEllipse::desc()) return true;
    if (type == AcDbArc::desc()) return std::fabs(ReadArc(entity).height) >= 0.0001;
    return type == AcDb2dPolyline::desc() && PolyArc(entity, 0).HasArcs();
}

}  // namespace TamLib
