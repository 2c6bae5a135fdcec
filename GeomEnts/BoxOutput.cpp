// Boxes written into a drawing and shown on the screen.
#include <dbmain.h>

#include "GeomEnts/Box.h"
#include "GeomEnts/Line.h"
#include "datastruct/Array.h"

namespace TamLib {
namespace {

// The edges of a box by the numbers of their corners (see `Box::Corner`): the lower ones round the
// plan, the upper ones, the upright ones.
struct Edge {
    int from, to;
};
constexpr Edge kEdges[] = {{0, 1}, {1, 3}, {3, 2}, {2, 0}, {4, 5}, {5, 7},
                           {7, 6}, {6, 4}, {0, 4}, {1, 5}, {3, 7}, {2, 6}};
constexpr int kPlanEdges = 4;

Line EdgeOf(const Box& box, const Edge& edge) {
    return {box.Corner(edge.from), box.Corner(edge.to)};
}

Line PlanEdgeOf(const Box& box, const Edge& edge) {
    Line line = EdgeOf(box, edge);
    line.z1 = line.z2 = 0.0;
    return line;
}

void EnsureRoom(Array<AcDbObjectId>* ids, std::uint32_t room) {
    if (ids != nullptr && ids->capacity < room) ids->Resize(room);
}

// Adds a line; its status in `result` unless one has failed already.
void AddLine(const Line& line, int colour, const wchar_t* layer, Array<AcDbObjectId>* ids,
             AcDbDatabase* database, int& result) {
    AcDbObjectId id;
    const int status = line.ToDb(colour, layer, &id, database);
    if (status == Acad::eOk && ids != nullptr) ids->Append(id);
    if (result == Acad::eOk) result = status;
}

}  // namespace

void Box::Draw(int colour) const {
    for (int i = 0; i < kPlanEdges; ++i) PlanEdgeOf(*this, kEdges[i]).Draw(colour);
}

int Box::ToDb(int colour, const wchar_t* layer, Array<AcDbObjectId>* ids,
              AcDbDatabase* database) const {
    if (ids != nullptr) ids->increment = 12;
    EnsureRoom(ids, 12);
    int result = Acad::eOk;
    for (const Edge& edge : kEdges)
        AddLine(EdgeOf(*this, edge), colour, layer, ids, database, result);
    return result;
}

int Box::ToDb2d(int colour, const wchar_t* layer, Array<AcDbObjectId>* ids,
                AcDbDatabase* database) const {
    EnsureRoom(ids, kPlanEdges);
    int result = Acad::eOk;
    for (int i = 0; i < kPlanEdges; ++i)
        AddLine(PlanEdgeOf(*this, kEdges[i]), colour, layer, ids, database, result);
    return result;
}

}  // namespace TamLib
