// The command's angles computed a second time, plainly and apart from the library: what a test
// compares with.
#pragma once

#include <cmath>
#include <limits>
#include <vector>

#include "DrawingText.h"

namespace app_test {

inline double Length3d(Vertex a, Vertex b) {
    const double dx = b.x - a.x, dy = b.y - a.y, dz = b.z - a.z;
    return std::sqrt(dx * dx + dy * dy + dz * dz);
}

// The distance in plan from `p` to the segment.
inline double PlanDistance(Vertex a, Vertex b, Vertex p) {
    const double dx = b.x - a.x, dy = b.y - a.y;
    const double length = std::sqrt(dx * dx + dy * dy);
    const double toStart = std::sqrt((p.x - a.x) * (p.x - a.x) + (p.y - a.y) * (p.y - a.y));
    if (length < 1e-8) return toStart;
    const double squared = length * length;
    const double s = (dx * (a.y - p.y) - dy * (a.x - p.x)) / squared;
    const double t = ((a.y - b.y) * (a.y - p.y) - (a.x - p.x) * dx) / squared;
    if (t < 0.0) return toStart;
    if (t > 1.0) return std::sqrt((p.x - b.x) * (p.x - b.x) + (p.y - b.y) * (p.y - b.y));
    return std::fabs(s * length);
}

inline std::size_t NearestSegment(const std::vector<Vertex>& line, Vertex p) {
    std::size_t best = 0;
    double least = std::numeric_limits<double>::max();
    for (std::size_t i = 0; i + 1 < line.size(); ++i) {
        const double distance = PlanDistance(line[i], line[i + 1], p);
        if (distance < least) {
            least = distance;
            best = i;
        }
    }
    return best;
}

// The segment found again from its distance along the line, by division and multiplication.
inline std::size_t SegmentAfterRoundTrip(const std::vector<Vertex>& line, std::size_t segment) {
    double total = 0.0;
    double length = 0.0;
    for (std::size_t i = 0; i + 1 < line.size(); ++i) {
        if (i == segment) length = total;
        total += Length3d(line[i], line[i + 1]);
    }
    const double relative = std::fabs(total) < 0.0001 ? length : length / total;
    const double target = total * relative;
    std::size_t j = 0;
    for (double sum = 0.0; j + 1 < line.size(); ++j) {
        if (target < sum) break;
        sum += Length3d(line[j], line[j + 1]);
    }
    return j == 0 ? 0 : j - 1;
}

// The angle of the direction reversed.
inline double PlainAngle(const std::vector<Vertex>& line, Vertex p) {
    const std::size_t segment = SegmentAfterRoundTrip(line, NearestSegment(line, p));
    const Vertex a = line[segment], b = line[segment + 1];
    double dx = b.x - a.x, dy = b.y - a.y, dz = b.z - a.z;
    const double length = std::sqrt(dx * dx + dy * dy + dz * dz);
    if (!(length < 0.0001)) {
        dx /= length;
        dy /= length;
        dz /= length;
    }
    if (std::fabs(dx) < 0.0001 && std::fabs(dy) < 0.0001 && std::fabs(dz) < 0.0001) {
        return 6.283185307179585;
    }
    return std::atan2(0.0 - dy, 0.0 - dx);
}

inline double TextRotation(const std::vector<Vertex>& line, Vertex p) {
    double angle = PlainAngle(line, p);
    if (angle < 0.0) angle += 6.2832;
    if (1.5708 < angle && angle < 4.7124) angle += 3.14159;
    return angle;
}

inline double SymbolRotation(const std::vector<Vertex>& line, Vertex p, bool flip) {
    return flip ? PlainAngle(line, p) + 3.14159 : PlainAngle(line, p);
}

}  // namespace app_test
