// What LIST tells of polylines and their vertices.
#include <dbents.h>
#include <dbpl.h>
#include <gemat3d.h>

#include <cmath>
#include <memory>
#include <optional>

#include "host/editor/EntityDetails.h"

namespace host::editor {

namespace {

// A vertex in its polyline's own coordinates, with the segment that follows.
struct Vertex {
    AcGePoint3d point;
    double bulge = 0.0;
    double startWidth = 0.0;
    double endWidth = 0.0;
    const wchar_t* kind = L"at point";
};

// The arc of a bulged segment: its centre and radius.
void describeArc(const Vertex& from, const AcGePoint3d& to, const AcGeMatrix3d& toWorld,
                 Details& details) {
    const double dx = to.x - from.point.x;
    const double dy = to.y - from.point.y;
    const double chord = std::sqrt(dx * dx + dy * dy);
    if (!(chord > 0.0)) return;
    const double aside = (1.0 - from.bulge * from.bulge) / (4.0 * from.bulge);
    const AcGePoint3d center(from.point.x + dx / 2.0 - dy * aside,
                             from.point.y + dy / 2.0 + dx * aside, from.point.z);
    details.point(L"center point", toWorld * center);
    details.value(L"radius",
                  chord * (1.0 + from.bulge * from.bulge) / (4.0 * std::fabs(from.bulge)));
}

void describeVertex(const Vertex& vertex, const AcGePoint3d* next, const AcGeMatrix3d& toWorld,
                    Details& details) {
    details.point(vertex.kind, toWorld * vertex.point);
    const Details::Indented indented(details);
    if (vertex.bulge != 0.0) {
        details.value(L"bulge", vertex.bulge);
        if (next != nullptr) describeArc(vertex, *next, toWorld, details);
    }
    if (vertex.startWidth != 0.0 || vertex.endWidth != 0.0) {
        details.value(L"starting width", vertex.startWidth);
        details.value(L"ending width", vertex.endWidth);
    }
}

void describeVertices(const std::vector<Vertex>& vertices, bool closed, const AcGeMatrix3d& toWorld,
                      Details& details) {
    for (std::size_t i = 0; i < vertices.size(); ++i) {
        const bool last = i + 1 == vertices.size();
        const AcGePoint3d* const next =
            last && !closed ? nullptr : &vertices[last ? 0 : i + 1].point;
        describeVertex(vertices[i], next, toWorld, details);
    }
}

void describe(const AcDbPolyline& line, Details& details) {
    describeRun(line, details);
    details.thickness(line.thickness());
    details.normal(line.normal());
    const double width = line.getConstantWidth();
    if (width != 0.0) details.value(L"constant width", width);
    std::vector<Vertex> vertices(line.numVerts());
    for (unsigned int i = 0; i < line.numVerts(); ++i) {
        AcGePoint2d point;
        line.getPointAt(i, point);
        vertices[i].point = {point.x, point.y, line.elevation()};
        line.getBulgeAt(i, vertices[i].bulge);
        if (width == 0.0) line.getWidthsAt(i, vertices[i].startWidth, vertices[i].endWidth);
    }
    describeVertices(vertices, line.isClosed(), AcGeMatrix3d::planeToWorld(line.normal()), details);
}

// Calls `take` with each part of `owner` that is of class Part, open for read.
template <class Part, class Take>
void forEachPart(AcDbObjectIterator* made, const Take& take) {
    const std::unique_ptr<AcDbObjectIterator> at(made);
    for (; at != nullptr && !at->done(); at->step()) {
        AcDbObject* object = nullptr;
        if (acdbOpenAcDbObject(object, at->objectId(), AcDb::kForRead) != Acad::eOk) continue;
        if (const Part* part = Part::cast(object)) take(*part);
        object->close();
    }
}

const wchar_t* kindOf(AcDb::Vertex2dType type) {
    switch (type) {
        case AcDb::k2dSplineCtlVertex:
            return L"control point";
        case AcDb::k2dSplineFitVertex:
            return L"spline point";
        case AcDb::k2dCurveFitVertex:
            return L"curve-fit point";
        default:
            return L"at point";
    }
}

const wchar_t* kindOf(AcDb::Vertex3dType type) {
    return type == AcDb::k3dControlVertex ? L"control point"
           : type == AcDb::k3dFitVertex   ? L"spline point"
                                          : L"at point";
}

Vertex vertexOf(const AcDb2dVertex& corner, double elevation) {
    const AcGePoint3d at = corner.position();
    return {{at.x, at.y, elevation},
            corner.bulge(),
            corner.startWidth(),
            corner.endWidth(),
            kindOf(corner.vertexType())};
}

void describe(const AcDb2dPolyline& line, Details& details) {
    const wchar_t* const types[] = {nullptr, L"curve fit", L"quadratic B-spline",
                                    L"cubic B-spline"};
    if (const wchar_t* const type = types[line.polyType()]) details.line(type);
    describeRun(line, details);
    details.thickness(line.thickness());
    details.normal(line.normal());
    std::vector<Vertex> vertices;
    forEachPart<AcDb2dVertex>(line.vertexIterator(), [&](const AcDb2dVertex& corner) {
        vertices.push_back(vertexOf(corner, line.elevation()));
    });
    describeVertices(vertices, line.isClosed(), AcGeMatrix3d::planeToWorld(line.normal()), details);
}

void describe(const AcDb3dPolyline& line, Details& details) {
    const wchar_t* const types[] = {nullptr, L"quadratic B-spline", L"cubic B-spline"};
    if (const wchar_t* const type = types[line.polyType()]) details.line(type);
    describeRun(line, details);
    forEachPart<AcDb3dPolylineVertex>(line.vertexIterator(), [&](const AcDb3dPolylineVertex& part) {
        details.point(kindOf(part.vertexType()), part.position());
    });
}

void describeClosing(bool m, bool n, Details& details) {
    details.line(std::wstring(m ? L"closed" : L"open") + L" in M, " + (n ? L"closed" : L"open") +
                 L" in N");
}

void describe(const AcDbPolygonMesh& mesh, Details& details) {
    details.line(std::to_wstring(mesh.mSize()) + L" x " + std::to_wstring(mesh.nSize()) + L" mesh");
    describeClosing(mesh.isMClosed(), mesh.isNClosed(), details);
    switch (mesh.polyMeshType()) {
        case AcDb::kQuadSurfaceMesh:
            details.line(L"quadratic B-spline surface");
            break;
        case AcDb::kCubicSurfaceMesh:
            details.line(L"cubic B-spline surface");
            break;
        case AcDb::kBezierSurfaceMesh:
            details.line(L"Bezier surface");
            break;
        default:
            break;
    }
    forEachPart<AcDbPolygonMeshVertex>(mesh.vertexIterator(),
                                       [&](const AcDbPolygonMeshVertex& vertex) {
                                           details.point(L"at point", vertex.position());
                                       });
}

// "face 1 2 3 4", as in the drawing: negative where the edge that starts there is hidden.
void describe(const AcDbFaceRecord& face, Details& details) {
    std::wstring text = L"face";
    for (Adesk::UInt16 corner = 0; corner < 4; ++corner) {
        Adesk::Int16 vertex = 0;
        if (face.getVertexAt(corner, vertex) == Acad::eOk && vertex != 0)
            text += L" " + std::to_wstring(vertex);
    }
    details.line(text);
}

void describe(const AcDbPolyFaceMesh& mesh, Details& details) {
    details.count(L"vertices", mesh.numVertices());
    details.count(L"faces", mesh.numFaces());
    forEachPart<AcDbVertex>(mesh.vertexIterator(), [&](const AcDbVertex& part) {
        if (const auto* vertex = AcDbPolyFaceMeshVertex::cast(&part))
            details.point(L"at point", vertex->position());
        else if (const auto* face = AcDbFaceRecord::cast(&part))
            describe(*face, details);
    });
}

// A vertex by itself, in its polyline's own coordinates.
bool describePart(const AcDbVertex& part, Details& details) {
    if (const auto* corner = AcDb2dVertex::cast(&part)) {
        describeVertex(vertexOf(*corner, corner->position().z), nullptr, AcGeMatrix3d::kIdentity,
                       details);
    } else if (const auto* vertex = AcDb3dPolylineVertex::cast(&part)) {
        details.point(kindOf(vertex->vertexType()), vertex->position());
    } else if (const auto* knot = AcDbPolygonMeshVertex::cast(&part)) {
        details.point(L"at point", knot->position());
    } else if (const auto* point = AcDbPolyFaceMeshVertex::cast(&part)) {
        details.point(L"at point", point->position());
    } else if (const auto* face = AcDbFaceRecord::cast(&part)) {
        describe(*face, details);
    } else {
        return false;
    }
    return true;
}

}  // namespace

bool describePolyline(const AcDbEntity& entity, Details& details) {
    if (const auto* light = AcDbPolyline::cast(&entity))
        describe(*light, details);
    else if (const auto* plane = AcDb2dPolyline::cast(&entity))
        describe(*plane, details);
    else if (const auto* space = AcDb3dPolyline::cast(&entity))
        describe(*space, details);
    else if (const auto* mesh = AcDbPolygonMesh::cast(&entity))
        describe(*mesh, details);
    else if (const auto* faces = AcDbPolyFaceMesh::cast(&entity))
        describe(*faces, details);
    else if (const auto* part = AcDbVertex::cast(&entity))
        return describePart(*part, details);
    else
        return false;
    return true;
}

}  // namespace host::editor
