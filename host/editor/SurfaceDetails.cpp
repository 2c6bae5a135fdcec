// What LIST tells of faces, filled figures, regions and solids.
#include <dbents.h>
#include <dbregion.h>
#include <dbsol3d.h>

#include "host/database/Area.h"
#include "host/database/Geometry.h"
#include "host/editor/EntityDetails.h"

namespace host::editor {

namespace {

constexpr const wchar_t* ordinals[] = {L"first point", L"second point", L"third point",
                                       L"fourth point"};

void describe(const AcDbFace& face, Details& details) {
    for (Adesk::UInt16 corner = 0; corner < 4; ++corner) {
        AcGePoint3d point;
        Adesk::Boolean visible = true;
        if (face.getVertexAt(corner, point) != Acad::eOk) continue;
        details.point(ordinals[corner], point);
        const Details::Indented indented(details);
        if (face.isEdgeVisibleAt(corner, visible) == Acad::eOk && !visible)
            details.line(L"edge hidden");
    }
}

// Of SOLID and TRACE.
template <class Filled>
void describeFilled(const Filled& figure, Details& details) {
    for (Adesk::UInt16 corner = 0; corner < 4; ++corner) {
        AcGePoint3d point;
        if (figure.getPointAt(corner, point) == Acad::eOk) details.point(ordinals[corner], point);
    }
    details.thickness(figure.thickness());
    details.normal(figure.normal());
}

// A body keeps to itself, but for the regions and solids that the host has made.
void describeBody(const AcDbEntity& entity, bool isNull, Details& details) {
    if (isNull) return details.line(L"without a body");
    if (const auto area = database::enclosedArea(entity)) details.value(L"area", *area);
    if (const auto box = database::extentsOf(entity)) {
        details.point(L"bounding box from", box->minPoint());
        details.point(L"bounding box to", box->maxPoint());
    } else {
        details.line(L"its body is kept as it stands in the drawing");
    }
}

}  // namespace

bool describeSurface(const AcDbEntity& entity, Details& details) {
    if (const auto* face = AcDbFace::cast(&entity))
        describe(*face, details);
    else if (const auto* filled = AcDbSolid::cast(&entity))
        describeFilled(*filled, details);
    else if (const auto* trace = AcDbTrace::cast(&entity))
        describeFilled(*trace, details);
    else if (const auto* region = AcDbRegion::cast(&entity))
        describeBody(*region, region->isNull(), details);
    else if (const auto* solid = AcDb3dSolid::cast(&entity))
        describeBody(*solid, solid->isNull(), details);
    else
        return false;
    return true;
}

}  // namespace host::editor
