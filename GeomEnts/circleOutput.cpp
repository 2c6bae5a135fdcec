// Circles written into a drawing and shown on the screen.
#include <dbents.h>

#include <cmath>
#include <memory>

#include "GeomEnts/DrawingOutput.h"
#include "GeomEnts/EntityReading.h"
#include "GeomEnts/Line.h"
#include "GeomEnts/circle.h"
#include "tam/TamExceptions.h"

namespace TamLib {

int Circle::ToDb(int colour, const wchar_t* layer, AcDbObjectId* id, AcDbDatabase* database) const {
    std::unique_ptr<AcDbCircle> circle(new AcDbCircle);
    if (circle == nullptr)
        throw TamExpAcad(L"Allocation of AcDbCircle failed", __LINE__, L"GeomEnts/circle");
    circle->setRadius(radius);
    SetColourAndLayer(*circle, colour, layer, database);
    circle->setCenter(ToAcGePoint3d(centre));
    return ARXAddToModelSpace(circle.release(), id, /*close=*/true, database);
}

void Circle::Draw(int colour) const {
    const double a = std::atan(1.0);
    const auto pointAt = [this](double angle) {
        return Point3d(centre.x + radius * std::cos(angle), centre.y + radius * std::sin(angle),
                       centre.z);
    };
    // Intended: the first of the 21 lines has no length.
    double previous = 0.0;
    for (double angle = 0.0; angle < a * 8.1; angle += a * 8.0 / 20.0) {
        Line(pointAt(angle), pointAt(previous)).Draw(colour);
        previous = angle;
    }
}

int Circle::LabelXYZ(int colour, const wchar_t* layer, AcDbObjectId* id,
                     AcDbDatabase* database) const {
    return centre.LabelXYZ(colour, layer, id, database);
}

int Circle::LabelZ(int colour, const wchar_t* layer, AcDbObjectId* id,
                   AcDbDatabase* database) const {
    return centre.LabelZ(colour, layer, id, database);
}

int Circle::LabelXY(int colour, const wchar_t* layer, AcDbObjectId* id,
                    AcDbDatabase* database) const {
    return centre.LabelXY(colour, layer, id, database);
}

}  // namespace TamLib
