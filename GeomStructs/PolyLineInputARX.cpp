// PolyLine picked vertex by vertex, printed and labelled.
#include <acedads.h>
#include <acutads.h>
#include <adscodes.h>
#include <dbid.h>

#include "GeomStructs/PolyLine.h"

namespace TamLib {
namespace {

// The room that the host fills at most.
constexpr int kReplySize = 133;

// A reply of one word; empty when the host gives none.
bool SaysNo(const wchar_t* prompt) {
    wchar_t reply[kReplySize] = {};
    acedGetString(0, prompt, reply);
    return reply[0] == L'n' || reply[0] == L'N';
}

// `label` of each vertex, shifted by the line's `offset`.
template <class Label>
int LabelAll(const PolyLine& line, Array<AcDbObjectId>* ids, const Label& label) {
    int result = 0;
    for (const Point3d& vertex : line) {
        AcDbObjectId id;
        const int status = label(vertex + line.offset, &id);
        if (status == 0 && ids != nullptr) ids->Append(id);
        if (result == 0) result = status;
    }
    return result;
}

}  // namespace

void PolyLine::GetFromUser(bool close, bool askClose) {
    Clear();
    Point3d point;
    int code = acedGetPoint(nullptr, L"\nFrom point: ", &point.x);
    while (code == RTNORM) {
        Append(point);
        if (count > 1) Draw(1);
        const Point3d last = point;
        code = acedGetPoint(&last.x, L"\nTo point: ", &point.x);
        if (code == RTNORM) acedGrDraw(&last.x, &point.x, -1, 1);
    }
    const bool staysOpen = !close && askClose && SaysNo(L"\nClose [<Y>,N]? ");
    if (!staysOpen && count > 0) Append(Point3d(data[0]));
    Draw(1);
}

void PolyLine::Print(std::int32_t colour) const {
    Draw(colour);
    acutPrintf(L"PolyLine:\n");
    for (std::uint32_t i = 0; i < count; ++i) {
        acutPrintf(L"    Point %i: ", static_cast<int>(i));
        (data[i] + offset).Print(colour);
        acutPrintf(L"\n");
    }
    acutPrintf(L"End of PolyLine.\n");
}

int PolyLine::LabelXYZ(int colour, const wchar_t* layer, Array<AcDbObjectId>* ids,
                       AcDbDatabase* database) const {
    return LabelAll(*this, ids, [&](const Point3d& vertex, AcDbObjectId* id) {
        return vertex.LabelXYZ(colour, layer, id, database);
    });
}

int PolyLine::LabelZ(int colour, const wchar_t* layer, Array<AcDbObjectId>* ids,
                     AcDbDatabase* database) const {
    return LabelAll(*this, ids, [&](const Point3d& vertex, AcDbObjectId* id) {
        return vertex.LabelZ(colour, layer, id, database);
    });
}

int PolyLine::LabelXY(int colour, const wchar_t* layer, Array<AcDbObjectId>* ids,
                      AcDbDatabase* database) const {
    return LabelAll(*this, ids, [&](const Point3d& vertex, AcDbObjectId* id) {
        return vertex.LabelXY(colour, layer, id, database);
    });
}

}  // namespace TamLib
