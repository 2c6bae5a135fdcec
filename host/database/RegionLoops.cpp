#include "host/database/RegionLoops.h"

#include <dbents.h>
#include <dbpl.h>

#include <algorithm>
#include <cmath>
#include <optional>

#include "host/database/Curve.h"
#include "host/database/ObjectImp.h"

namespace host::database {
namespace {

using Corners = std::vector<AcGePoint3d>;

constexpr double kSlack = 1e-6;

double sizeOf(const Corners& corners) {
    double size = 0.0;
    for (const AcGePoint3d& corner : corners)
        size = std::max(size, corner.distanceTo(corners.front()));
    return size;
}

bool meet(const AcGePoint3d& a, const AcGePoint3d& b, double size) {
    return a.distanceTo(b) <= kSlack * size;
}

// The vertices of a curve of straight spans; nothing for any other.
Corners cornersOf(const AcDbCurve& entity) {
    const Curve* const curve = entity.impl()->curve();
    if (curve == nullptr) return {};
    Corners corners;
    for (std::size_t span = 0; span < curve->breaks().size(); ++span) {
        if (span + 1 < curve->breaks().size() && !curve->isStraight(span)) return {};
        const AcGePoint3d corner = curve->pointAt(curve->breaks()[span]);
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

// The loop of a ring whose last corner repeats the first.
std::optional<RegionLoop> polygon(Corners ring) {
    const double size = sizeOf(ring);
    ring.pop_back();
    if (ring.size() < 3) return std::nullopt;
    const AcGeVector3d area = areaVector(ring);
    if (!(area.length() > kSlack * size * size)) return std::nullopt;
    RegionLoop loop;
    loop.normal = area.normal();
    for (const AcGePoint3d& corner : ring)
        if (std::fabs((corner - ring[0]).dotProduct(loop.normal)) > kSlack * size)
            return std::nullopt;
    loop.corners = std::move(ring);
    return loop;
}

// Puts open chains together until no end meets another.
void join(std::vector<Corners>& chains) {
    for (std::size_t i = 0; i < chains.size(); ++i) {
        for (std::size_t j = 0; j < chains.size(); ++j) {
            Corners &a = chains[i], &b = chains[j];
            const double size = std::max(sizeOf(a), sizeOf(b));
            if (i == j || meet(a.front(), a.back(), size) || meet(b.front(), b.back(), size))
                continue;  // rings are whole
            const auto meets = [&](const AcGePoint3d& end) {
                return meet(end, b.front(), size) || meet(end, b.back(), size);
            };
            if (!meets(a.back()) && meets(a.front())) std::reverse(a.begin(), a.end());
            if (!meets(a.back())) continue;
            if (!meet(a.back(), b.front(), size)) std::reverse(b.begin(), b.end());
            a.insert(a.end(), b.begin() + 1, b.end());
            chains.erase(chains.begin() + static_cast<std::ptrdiff_t>(j));
            if (j < i) --i;
            j = static_cast<std::size_t>(-1);  // from the first one again
        }
    }
}

}  // namespace

std::vector<RegionLoop> regionLoops(const std::vector<const AcDbCurve*>& curves) {
    std::vector<RegionLoop> loops;
    std::vector<Corners> chains;
    for (const AcDbCurve* const curve : curves) {
        if (const auto* const circle = AcDbCircle::cast(curve)) {
            if (circle->radius() > 0.0)
                loops.push_back({circle->center(), circle->normal(), circle->radius(), {}});
            continue;
        }
        Corners corners = cornersOf(*curve);
        if (corners.size() >= 2) chains.push_back(std::move(corners));
    }
    join(chains);
    for (Corners& chain : chains) {
        if (!meet(chain.front(), chain.back(), sizeOf(chain))) continue;
        if (std::optional<RegionLoop> loop = polygon(std::move(chain)))
            loops.push_back(std::move(*loop));
    }
    return loops;
}

}  // namespace host::database
