// The inside test of a ring, segment by segment, for loops over vertices and for the index.
// `PolyLine::Inside` says what it decides.
#pragma once

#include <cmath>

#include "GeomEnts/PlanDistance.h"
#include "GeomEnts/Point3d.h"

namespace TamLib {

struct WindingCount {
    double px, py;
    bool touch;
    int winding = 0;

    // Takes the segment from `from[0]` to `from[1]` into account. True when it is touched.
    bool Add(const Point3d* from) {
        const double y1 = from[0].y, y2 = from[1].y;
        bool rising = false, falling = false;
        if (y1 > py) {
            if (y2 > py) return false;
            falling = true;
        } else {
            rising = y2 > py;
            if (!rising && y2 != py) return false;
        }
        const double x1 = from[0].x, x2 = from[1].x;
        const double c = (x2 - x1) * (py - y1) - (y2 - y1) * (px - x1);
        if (touch && std::fabs(c) < std::sqrt(0.0001) &&
            !(PlanDistance(x1, y1, x2, y2, px, py).distance > 0.0001))
            return true;
        // 5e-8 lets rounding decide for inside.
        if (rising && c + 5e-8 > 0.0) ++winding;
        if (falling && c - 5e-8 < 0.0) --winding;
        return false;
    }
};

}  // namespace TamLib
