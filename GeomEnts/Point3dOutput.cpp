// Points written into a drawing and shown on the screen.
#include <acedads.h>
#include <acutads.h>
#include <dbents.h>

#include <memory>

#include "GeomEnts/DrawingOutput.h"
#include "GeomEnts/EntityReading.h"
#include "GeomEnts/Line.h"
#include "GeomEnts/Point3d.h"
#include "GeomEnts/circle.h"
#include "datastruct/Array.h"
#include "datastruct/String.h"
#include "datastruct/StringPrint.h"
#include "tam/TamExceptions.h"

namespace TamLib {
namespace {

// Heights of the view per label, per circle of a marked point, and per circle of a marker.
constexpr double kLabelsPerView = 120.0;
constexpr double kMarksPerView = 140.0;
constexpr double kMarkersPerView = 170.0;

int Label(const Point3d& point, const wchar_t* text, int colour, const wchar_t* layer,
          AcDbObjectId* id, AcDbDatabase* database) {
    return ARXMakeText(point, text, layer, ARXViewSize() / kLabelsPerView, 0.0, colour, nullptr, id,
                       database);
}

}  // namespace

int Point3d::ToDb(int colour, const wchar_t* layer, AcDbObjectId* id,
                  AcDbDatabase* database) const {
    std::unique_ptr<AcDbPoint> point(new AcDbPoint(ToAcGePoint3d(*this)));
    if (point == nullptr)
        throw TamExpAcad(L"Allocation of AcDbPoint failed", __LINE__, L"GeomEnts/Point3d");
    SetColourAndLayer(*point, colour, layer, database);
    return ARXAddToModelSpace(point.release(), id, /*close=*/true, database);
}

int Point3d::ToDbMarked(int colour, const wchar_t* layer, Array<AcDbObjectId>* ids, double size,
                        AcDbDatabase* database) const {
    AcDbObjectId id;
    const int status = ToDb(colour, layer, &id, database);
    if (status == Acad::eOk && ids != nullptr) ids->Append(id);
    const Circle circle(*this, size < 0.0 ? ARXViewSize() / kMarksPerView : size);
    if (circle.ToDb(colour, layer, &id, database) == Acad::eOk && ids != nullptr) ids->Append(id);
    return status;
}

int Point3d::LabelXYZ(int colour, const wchar_t* layer, AcDbObjectId* id,
                      AcDbDatabase* database) const {
    wchar_t text[39 + 1];
    return Label(*this, PrintWithin(text, L"%.3lf, %.3lf, %.3lf", x, y, z), colour, layer, id,
                 database);
}

int Point3d::LabelZ(int colour, const wchar_t* layer, AcDbObjectId* id,
                    AcDbDatabase* database) const {
    wchar_t text[19 + 1];
    return Label(*this, PrintWithin(text, L"%.3lf", z), colour, layer, id, database);
}

int Point3d::LabelXY(int colour, const wchar_t* layer, AcDbObjectId* id,
                     AcDbDatabase* database) const {
    wchar_t text[29 + 1];
    return Label(*this, PrintWithin(text, L"%.3lf, %.3lf", x, y), colour, layer, id, database);
}

void Point3d::DrawMarker(int colour, bool withCircle, double size) const {
    Line(*this, *this).Draw(colour);
    if (withCircle) Circle(*this, size < 0.0 ? ARXViewSize() / kMarkersPerView : size).Draw(colour);
}

void Point3d::Print(int colour) const {
    const StringBase<wchar_t> text = ToString(L"(%f, %f, %f)");
    acutPrintf(L"%s", text.Data());
    ShowTextAt(*this, text.Data());
    const double half = 0.1;
    const auto diagonal = [&](double dy) {
        const Point3d from(x - half, y - dy, z - half), to(x + half, y + dy, z + half);
        acedGrDraw(&from.x, &to.x, colour, 0);
    };
    diagonal(half);
    diagonal(-half);
}

}  // namespace TamLib
