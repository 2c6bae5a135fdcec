// Lines written into a drawing and shown on the screen.
#include <aced.h>
#include <acutads.h>
#include <afxwin.h>
#include <dbents.h>

#include <cmath>
#include <memory>

#include "GeomEnts/DrawingOutput.h"
#include "GeomEnts/EntityReading.h"
#include "GeomEnts/Line.h"
#include "datastruct/Array.h"
#include "tam/TamExceptions.h"

namespace TamLib {
namespace {

// The width in drawing units of the first pixel of the current window.
double PixelWidth() {
    const int window = acedGetWinNum(0, 0);
    Point3d first, second;
    acedCoordFromPixelToWorld(window, CPoint(0, 0), &first.x);
    acedCoordFromPixelToWorld(window, CPoint(1, 0), &second.x);
    return std::fabs(second.x - first.x);
}

using Label = int (Point3d::*)(int, const wchar_t*, AcDbObjectId*, AcDbDatabase*) const;

int LabelEnds(const Line& line, Label label, int colour, const wchar_t* layer,
              Array<AcDbObjectId>* ids, AcDbDatabase* database) {
    int result = Acad::eOk;
    for (const Point3d& end : {line.Start(), line.End()}) {
        AcDbObjectId id;
        const int status = (end.*label)(colour, layer, &id, database);
        if (status == Acad::eOk && ids != nullptr) ids->Append(id);
        if (result == Acad::eOk) result = status;
    }
    return result;
}

}  // namespace

int Line::ToDb(int colour, const wchar_t* layer, AcDbObjectId* id, AcDbDatabase* database) const {
    std::unique_ptr<AcDbLine> line(new AcDbLine(ToAcGePoint3d(Start()), ToAcGePoint3d(End())));
    if (line == nullptr)
        throw TamExpAcad(L"Allocation of AcDbLine failed", __LINE__, L"GeomEnts/Line");
    SetColourAndLayer(*line, colour, layer, database);
    return ARXAddToModelSpace(line.release(), id, /*close=*/true, database);
}

void Line::Draw(int colour, bool highlight, int width) const {
    if (width == 0) {
        const Point3d from = Start(), to = End();
        acedGrDraw(&from.x, &to.x, colour, highlight ? 1 : 0);
        return;
    }
    const Point3d across = Point3d(y2 - y1, -(x2 - x1), 0.0).Unit();
    const double pixel = PixelWidth();
    const int n = width / 2;
    for (int k = -n; k <= n; ++k) {
        Line copy(*this);
        copy.Translate({across.x * (k * pixel), across.y * (k * pixel), 0.0});
        copy.Draw(colour, highlight, 0);
    }
}

void Line::DrawExtended(int colour, double extension) const {
    Line longer(*this);
    longer.Extend(extension);
    longer.Draw(colour, /*highlight=*/true);
    Draw(colour);
}

void Line::Print(int colour) const {
    Draw(colour);
    acutPrintf(L"Line:  ");
    Start().Print(colour);
    acutPrintf(L" - ");
    End().Print(colour);
    acutPrintf(L".\n");
}

int Line::LabelEndsXYZ(int colour, const wchar_t* layer, Array<AcDbObjectId>* ids,
                       AcDbDatabase* database) const {
    return LabelEnds(*this, &Point3d::LabelXYZ, colour, layer, ids, database);
}

int Line::LabelEndsZ(int colour, const wchar_t* layer, Array<AcDbObjectId>* ids,
                     AcDbDatabase* database) const {
    return LabelEnds(*this, &Point3d::LabelZ, colour, layer, ids, database);
}

int Line::LabelEndsXY(int colour, const wchar_t* layer, Array<AcDbObjectId>* ids,
                      AcDbDatabase* database) const {
    return LabelEnds(*this, &Point3d::LabelXY, colour, layer, ids, database);
}

}  // namespace TamLib
