#include "host/database/RegionLoops.h"

#include <dbents.h>
#include <dbpl.h>

#include <algorithm>
#include <cmath>
#include <optional>

#include "host/database/ChainJoin.h"
#include "host/database/Curve.h"
#include "host/database/ObjectImp.h"
#include "host/database/Setting.h"

namespace host::database {
namespace {

// The vertices of a curve of straight spans; nothing for any other.
Corners cornersOf(const AcDbCurve& entity) {
    const Curve* const curve = entity.impl()->curve();
    if (curve == nullptr) return {};
    Corners corners;
    for (std::size_t span = 0; span < curve->breaks().size(); ++span) {
        if (span + 1 < curve->breaks().size() && !curve->isStraight(span)) return {};
        const AcGePoint3d corner = curve->pointAt(curve->breaks()[span]);
        if (!isFinite(corner)) return {};
        if (corners.empty() || corner.distanceTo(corners.back()) > 0.0) corners.push_back(corner);
    }
    return corners;
}

// Newell's: the doubled area about the normal.
AcGeVector3d areaVector(const Corners& corners) {
    AcGeVector3d sum;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const AcGeVector3d a = corners[i] - corners[0];
        const AcGeVector3d b = corners[(i + 1) % corners.size()] - corners[0];
        sum = sum + a.crossProduct(b);
    }
    return sum;
}

// Moves what lies off the plane through the first corner by more than the modeller allows into it.
// False when something does by more than the ring's size allows.
bool flatten(Corners& ring, const AcGeVector3d& normal, double size) {
    for (AcGePoint3d& corner : ring) {
        const double off = (corner - ring[0]).dotProduct(normal);
        if (std::fabs(off) > kMeeting * size) return false;
        if (std::fabs(off) > kShortestEdge) corner = corner - normal * off;
    }
    return true;
}

// The loop of a ring whose last corner repeats the first.
std::optional<RegionLoop> polygon(Corners ring) {
    const double size = sizeOf(ring);
    ring.pop_back();
    if (ring.size() < 3) return std::nullopt;
    const AcGeVector3d area = areaVector(ring);
    if (!(area.length() > kMeeting * size * size)) return std::nullopt;
    RegionLoop loop;
    loop.normal = area.normal();
    if (!flatten(ring, loop.normal, size)) return std::nullopt;
    dropShortEdges(ring);
    if (ring.size() < 3) return std::nullopt;
    loop.corners = std::move(ring);
    return loop;
}

}  // namespace

void dropShortEdges(std::vector<AcGePoint3d>& ring) {
    Corners kept;
    for (const AcGePoint3d& corner : ring)
        if (kept.empty() || !(corner.distanceTo(kept.back()) < kShortestEdge))
            kept.push_back(corner);
    while (kept.size() > 1 && kept.back().distanceTo(kept.front()) < kShortestEdge) kept.pop_back();
    ring = std::move(kept);
}

std::vector<RegionLoop> regionLoops(const std::vector<const AcDbCurve*>& curves) {
    std::vector<RegionLoop> loops;
    std::vector<Corners> chains;
    for (const AcDbCurve* const curve : curves) {
        if (const auto* const circle = AcDbCircle::cast(curve)) {
            if (circle->radius() >= kShortestEdge)
                loops.push_back({circle->center(), circle->normal(), circle->radius(), {}});
            continue;
        }
        Corners corners = cornersOf(*curve);
        if (corners.size() >= 2) chains.push_back(std::move(corners));
    }
    joinChains(chains);
    for (Corners& chain : chains) {
        if (!meet(chain.front(), chain.back(), sizeOf(chain))) continue;
        if (std::optional<RegionLoop> loop = polygon(std::move(chain)))
            loops.push_back(std::move(*loop));
    }
    return loops;
}

}  // namespace host::database
