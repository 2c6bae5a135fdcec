// PolyArc written to the drawing and shown on the screen.
#include <dbents.h>
#include <dbpl.h>

#include <memory>

#include "GeomEnts/DrawingOutput.h"
#include "GeomEnts/EntityReading.h"
#include "GeomStructs/PolyArc.h"
#include "GeomStructs/WrittenPolyLine.h"

namespace TamLib {
namespace {

constexpr const wchar_t* kSource = L"GeomStructs/PolyArc";

// The vertices to write: of a closed line without the repeated last one.
int Written(const PolyArc& line) {
    return static_cast<int>(line.count) - (line.IsClosed() ? 1 : 0);
}

double BulgeBehind(const PolyArc& line, int vertex) {
    return vertex + 1 < static_cast<int>(line.count) ? line.BulgeAt(vertex) : 0.0;
}

std::unique_ptr<AcDbEntity> LightPolyline(const PolyArc& line) {
    auto polyline = detail::Allocated(new AcDbPolyline, kSource);
    for (int i = 0; i < Written(line); ++i)
        polyline->addVertexAt(polyline->numVerts(), AcGePoint2d(line.data[i].x, line.data[i].y),
                              BulgeBehind(line, i), -1.0, -1.0, 0);
    polyline->setClosed(line.IsClosed());
    return polyline;
}

std::unique_ptr<AcDbEntity> PlanePolyline(const PolyArc& line) {
    auto polyline = detail::Allocated(new AcDb2dPolyline, kSource);
    for (int i = 0; i < Written(line); ++i) {
        auto vertex = detail::Allocated(
            new AcDb2dVertex(ToAcGePoint3d(line.data[i]), BulgeBehind(line, i)), kSource);
        if (polyline->appendVertex(vertex.get()) != Acad::eOk)
            throw TamExpAcad(L"Adding AcDbPolyLine to Acad DB failed", __LINE__, kSource);
        static_cast<void>(vertex.release());  // the polyline's now
    }
    if (line.IsClosed()) polyline->makeClosed();
    return polyline;
}

}  // namespace

int PolyArc::ToDb(int colour, const wchar_t* layer, AcDbObjectId* id, AcDbDatabase* database,
                  int kind) const {
    if (count == 0) return 0;
    if (kind != 1 && kind != 2) {
        PolyLine line = ToPolyLine(0.1, /*stepIsAngle=*/true);
        line.offset = offset;
        return line.ToDb(colour, layer, id, database);
    }
    const PolyArc line = detail::Shifted(*this);
    std::unique_ptr<AcDbEntity> entity = kind == 1 ? LightPolyline(line) : PlanePolyline(line);
    SetColourAndLayer(*entity, colour, layer, database);
    return ARXAddToModelSpace(entity.release(), id, /*close=*/true, database);
}

void PolyArc::Draw(std::int32_t colour) const {
    for (int i = 0; i + 1 < static_cast<int>(count); ++i) {
        Arc arc = GetArc(i);
        arc.Translate(offset);
        if (std::fabs(arc.height) < 0.0001) {
            arc.Line::Draw(colour);
        } else {
            arc.Draw(colour);
        }
    }
}

}  // namespace TamLib
