#include "ARX/Contains.h"

#include <dbents.h>

#include <algorithm>
#include <array>
#include <memory>

#include "GeomEnts/EntityReading.h"
#include "GeomStructs/Point3dArrayARX.h"
#include "tam/TamExceptions.h"

namespace TamLib {
namespace {

constexpr const wchar_t* kSource = L"ARX/Contains";

// The lines that the exceptions report.
struct RaiseLines {
    std::int32_t stretchPoints;
    std::int32_t polyline;
    std::int32_t intersect;
};
constexpr RaiseLines kTouchLines{185, 194, 198};
constexpr RaiseLines kCrossLines{0, 234, 238};
constexpr RaiseLines kInsideLines{288, 297, 301};

bool IsInside(const PolyLine& region, const Point3d& point) {
    return region.Inside(point, /*useBox=*/false, /*touch=*/true) == 1;
}

AcGePoint3dArray StretchPoints(const AcDbEntity& entity, const RaiseLines& lines) {
    AcGePoint3dArray points;
    if (entity.getStretchPoints(points) != Acad::eOk || points.length() == 0)
        throw TamExpInternal(L"Getting StretchPoints failed", lines.stretchPoints, kSource);
    return points;
}

// Whether the entity meets the region's vertices as a polyline, which needs no closing: the last
// vertex repeats the first.
bool MeetsBoundary(const PolyLine& region, const AcDbEntity& entity, const RaiseLines& lines) {
    const std::unique_ptr<AcGePoint3dArray> vertices(region.ToAcGePoint3dArray());
    const std::unique_ptr<AcDb3dPolyline> boundary(
        new AcDb3dPolyline(AcDb::k3dSimplePoly, *vertices, false));
    if (boundary == nullptr) throw TamExpNoMem(L"", lines.polyline, kSource);
    AcGePoint3dArray points;
    if (entity.intersectWith(boundary.get(), AcDb::kOnBothOperands, points) != Acad::eOk)
        throw TamExpInternal(L"IntersectWith failed", lines.intersect, kSource);
    return points.length() > 0;
}

constexpr int kCorners = 4;
constexpr int kEdges = 3;  // intended: not the fourth

// The corners, and the first one again.
using Corners = std::array<Point3d, kCorners + 1>;

Corners CornersOf(const AcDbFace& face) {
    Corners corners;
    for (Adesk::UInt16 i = 0; i < kCorners; ++i) {
        AcGePoint3d corner;
        face.getVertexAt(i, corner);
        corners[i] = ToPoint3d(corner);
    }
    corners[kCorners] = corners[0];
    return corners;
}

struct Rectangle {
    Point3d low, high;
};

Rectangle RectangleOf(const PolyLine& region) {
    if (region.hasBounds != 0) return {region.minPoint, region.maxPoint};
    const double most = 1.7976931348623157e308;
    Rectangle rectangle{{most, most, 0}, {-most, -most, 0}};
    for (const Point3d& p : region) {
        rectangle.low.x = std::min(rectangle.low.x, p.x);
        rectangle.low.y = std::min(rectangle.low.y, p.y);
        rectangle.high.x = std::max(rectangle.high.x, p.x);
        rectangle.high.y = std::max(rectangle.high.y, p.y);
    }
    return rectangle;
}

// Whether the corners all lie beyond one side of the region's rectangle.
bool OutsideBounds(const PolyLine& region, const Corners& corners) {
    const Rectangle r = RectangleOf(region);
    const auto all = [&](const auto& isBeyond) {
        return std::all_of(corners.begin(), corners.begin() + kCorners, isBeyond);
    };
    return all([&](const Point3d& p) { return p.x > r.high.x; }) ||
           all([&](const Point3d& p) { return p.x < r.low.x; }) ||
           all([&](const Point3d& p) { return p.y > r.high.y; }) ||
           all([&](const Point3d& p) { return p.y < r.low.y; });
}

bool EdgesCross(const PolyLine& region, const Corners& corners) {
    int touching = 0;
    for (int i = 0; i < kEdges; ++i) {
        const int code = region.Crosses(Line(corners[i], corners[i + 1]));
        if (code == 1) return true;
        if (code == 2) ++touching;
    }
    if (touching != kEdges) return false;
    for (int i = 0; i < kEdges; ++i)
        for (int j = i + 1; j < kEdges; ++j)
            if (region.MidPointInside(corners[i], corners[j]) == 1) return true;
    return false;
}

}  // namespace

bool EntityTouchesRegion(const PolyLine& region, const AcDbEntity* entity) {
    const AcGePoint3dArray points = StretchPoints(*entity, kTouchLines);
    for (int i = 0; i < points.length(); ++i)
        if (IsInside(region, ToPoint3d(points[i]))) return true;
    return MeetsBoundary(region, *entity, kTouchLines);
}

bool EntityCrossesRegion(const PolyLine& region, const AcDbEntity* entity) {
    return MeetsBoundary(region, *entity, kCrossLines);
}

bool EntityInsideRegion(const PolyLine& region, const AcDbEntity* entity) {
    if (entity->isA() == AcDbPoint::desc())
        return IsInside(region, ToPoint3d(static_cast<const AcDbPoint*>(entity)->position()));
    const AcGePoint3dArray points = StretchPoints(*entity, kInsideLines);
    for (int i = 0; i < points.length(); ++i)
        if (!IsInside(region, ToPoint3d(points[i]))) return false;
    return !MeetsBoundary(region, *entity, kInsideLines);
}

bool FaceTouchesRegion(const PolyLine& region, const AcDbFace* face) {
    const Corners corners = CornersOf(*face);
    if (region.Area() != 0.0 && OutsideBounds(region, corners)) return false;
    const bool anyInside =
        std::any_of(corners.begin(), corners.begin() + kCorners, [&](const Point3d& corner) {
            return region.Inside(corner, /*useBox=*/true, /*touch=*/false) == 1;
        });
    return anyInside || EdgesCross(region, corners);
}

bool FaceCrossesRegion(const PolyLine& region, const AcDbFace* face) {
    const Corners corners = CornersOf(*face);
    return !OutsideBounds(region, corners) && EdgesCross(region, corners);
}

bool FaceInsideRegion(const PolyLine& region, const AcDbFace* face) {
    const Corners corners = CornersOf(*face);
    if (OutsideBounds(region, corners)) return false;
    const bool allInside =
        std::all_of(corners.begin(), corners.begin() + kCorners,
                    [&](const Point3d& corner) { return IsInside(region, corner); });
    return allInside && !EdgesCross(region, corners);
}

}  // namespace TamLib
