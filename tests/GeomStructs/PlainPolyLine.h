// The queries of PolyLine written down step by step, one segment after the other through Line: what
// the faster loops are compared with, bit for bit.
#pragma once

#include <cmath>
#include <limits>

#include "GeomStructs/PolyLine.h"

namespace TamLib {

struct PlainNearest {
    int index = 0;
    double distance = 1.7976931348623157e308;
    int side = 0;
};

// At least two vertices.
inline PlainNearest NearestPlainly(const PolyLine& line, const Point3d& point) {
    PlainNearest best;
    const int count = static_cast<int>(line.count);
    for (int i = 0; i <= count - 2; ++i) {
        int pointSide = 0;
        double parameter = 0;
        const Line segment = line.GetSegment(i);
        const double d = segment.Distance2d(point, &pointSide, &parameter);
        if (!(d < best.distance)) continue;
        best.distance = d;
        best.index = i;
        int neighbour = -1;
        if (parameter < 0 && i > 0) {
            neighbour = i - 1;
        } else if (parameter > 1.0 && i + 2 < count) {
            neighbour = i + 2;
        }
        best.side = pointSide;
        if (neighbour >= 0) {
            const Point3d v = line.data[neighbour];
            const double c = (segment.x2 - segment.x1) * (v.y - segment.y1) -
                             (segment.y2 - segment.y1) * (v.x - segment.x1);
            best.side = std::sqrt(0.0001) > std::fabs(c) ? 0 : (c > 0 ? 1 : -1);
        }
    }
    return best;
}

inline double LengthPlainly(const PolyLine& line, int index) {
    double sum = 0;
    for (int i = 0; i < index && i + 1 < static_cast<int>(line.count); ++i)
        sum += Line(line.data[i], line.data[i + 1]).Length();
    return sum;
}

inline Point3d DirectionPlainly(const PolyLine& line, double length) {
    const int count = static_cast<int>(line.count);
    const double total = LengthPlainly(line, count);
    const double relative = std::fabs(total) >= 0.0001 ? length / total : length;
    int segment = 0;
    if (count >= 2 && relative > 1.0) {
        segment = count - 2;
    } else if (count >= 2 && !(relative < 0)) {
        const double target = total * relative;
        double sum = 0;
        int j = 0;
        for (; j < count - 1; ++j) {
            if (target < sum) break;
            sum += Line(line.data[j], line.data[j + 1]).Length();
        }
        segment = (j == 0 ? 1 : j) - 1;
    }
    if (count < 2) return {};
    const Point3d vector = line.GetSegment(segment).End() - line.GetSegment(segment).Start();
    const double size = Line({}, vector).Length();
    return size < 0.0001 ? vector : vector / size;
}

}  // namespace TamLib
