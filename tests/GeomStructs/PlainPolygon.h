// The tests of PolyLine against points, lines and polygons written down step by step, one segment
// after the other through Line, and the comparisons of results by their bits: what the filtered
// loops and the index are compared with.
#pragma once

#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include "GeomStructs/PolyLine.h"

namespace TamLib {

inline bool SameBits(const Point3d& a, const Point3d& b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

// Empty when the vertices are the same to the bit, otherwise where they differ.
inline std::string Difference(const Array<Point3d>& a, const Array<Point3d>& b) {
    if (a.count != b.count)
        return std::to_string(a.count) + " and " + std::to_string(b.count) + " points";
    for (std::uint32_t i = 0; i < a.count; ++i)
        if (!SameBits(a.data[i], b.data[i])) return "point " + std::to_string(i);
    return {};
}
inline std::string Difference(const Array<int>& a, const Array<int>& b) {
    const bool same = std::vector<int>(a.begin(), a.end()) == std::vector<int>(b.begin(), b.end());
    return same ? "" : "other segments";
}

inline int InsidePlainly(const PolyLine& line, const Point3d& p, bool useBox, bool touch) {
    const int count = static_cast<int>(line.count);
    if (count < 3 || !line.IsClosed()) return 0;
    if (useBox && line.hasBounds != 0 &&
        (p.x < line.minPoint.x || p.x > line.maxPoint.x || p.y < line.minPoint.y ||
         p.y > line.maxPoint.y))
        return 0;
    int winding = 0;
    for (int i = 0; i <= count - 2; ++i) {
        const Line s = line.GetSegment(i);
        const bool rising = !(s.y1 > p.y) && s.y2 > p.y, falling = s.y1 > p.y && !(s.y2 > p.y);
        const bool ending = !(s.y1 > p.y) && s.y2 == p.y;
        if (!rising && !falling && !ending) continue;
        const double c = (s.x2 - s.x1) * (p.y - s.y1) - (s.y2 - s.y1) * (p.x - s.x1);
        if (touch && std::fabs(c) < std::sqrt(0.0001) &&
            !(s.Distance2d(p, nullptr, nullptr) > 0.0001))
            return 2;
        if (rising && c + 5e-8 > 0.0) ++winding;
        if (falling && c - 5e-8 < 0.0) --winding;
    }
    return winding & 1;
}

inline bool BeyondBoxPlainly(const PolyLine& line, const Line& s) {
    const Point3d &low = line.minPoint, &high = line.maxPoint;
    return line.hasBounds != 0 &&
           ((s.x1 < low.x && s.x2 < low.x) || (s.x1 > high.x && s.x2 > high.x) ||
            (s.y1 < low.y && s.y2 < low.y) || (s.y1 > high.y && s.y2 > high.y));
}

inline int CrossesPlainly(const PolyLine& line, const Line& query) {
    if (BeyondBoxPlainly(line, query)) return 0;
    int code = 0;
    for (int i = 0; i <= static_cast<int>(line.count) - 2; ++i) {
        Point3d point;
        const int here = query.Intersect3d(line.GetSegment(i), point, 0, true);
        if (here == 1) return 1;
        if (here == 2) code = 2;
    }
    return code;
}

inline int FirstPlainly(const PolyLine& line, const Line& query, Point3d* result, bool lineFirst,
                        int* index) {
    if (BeyondBoxPlainly(line, query)) return 0;
    Point3d touch;
    int touched = -1;
    for (int i = *index < 0 ? 0 : *index; i <= static_cast<int>(line.count) - 2; ++i) {
        Point3d point;
        const Line segment = line.GetSegment(i);
        const int code = lineFirst ? query.Intersect3d(segment, point, 0, true)
                                   : segment.Intersect3d(query, point, 0, true);
        if (code == 1) {
            *result = point;
            *index = i;
            return 1;
        }
        if (code == 2) {
            touch = point;
            touched = i;
        }
    }
    if (touched < 0) return 0;
    *result = touch;
    *index = touched;
    return 2;
}

inline PolyLine IntersectionsPlainly(const PolyLine& line, const Line& query, Array<int>* segments,
                                     bool touchFirstEnd, int zMode) {
    PolyLine points;
    int previous = 0;
    for (int i = 0; i <= static_cast<int>(line.count) - 2 && !BeyondBoxPlainly(line, query); ++i) {
        Point3d point;
        const int code = query.Intersect3d(line.GetSegment(i), point, zMode, true);
        bool taken = code == 1;
        if (code == 2 && previous == 2 && i > 0) {
            const int before = query.Side(line.data[i - 1], true);
            const int after = query.Side(line.data[i + 1], true);
            taken = before != 0 && after != 0 && before != after;
        }
        if (code == 2 && touchFirstEnd) taken = true;
        previous = code;
        if (!taken) continue;
        points.Append(point);
        if (segments != nullptr) segments->Append(i);
    }
    if (segments == nullptr) points.SortUnique();
    return points;
}

inline PolyLine NodedPlainly(const PolyLine& line, const PolyLine& other, Array<int>* segments,
                             bool touchFirstEnd, int zMode) {
    if (line.count < 2 || other.count < 2) return line;
    PolyLine noded;
    for (int i = 0; i <= static_cast<int>(line.count) - 2; ++i) {
        const Line segment = line.GetSegment(i);
        PolyLine points = IntersectionsPlainly(other, segment, nullptr, touchFirstEnd, zMode);
        points.SortByDistance(segment.Start());
        noded.Append(segment.Start());
        for (const Point3d& p : points) {
            const Point3d ends[2] = {segment.Start(), segment.End()};
            if (Equals(p, ends[0]) || Equals(p, ends[1])) continue;
            noded.Append(p);
            if (segments != nullptr) segments->Append(static_cast<int>(noded.count) - 1);
        }
    }
    noded.Append(line.data[line.count - 1]);
    return noded;
}

inline PolyLine AllIntersectionsPlainly(const PolyLine& line, const PolyLine& other,
                                        Array<int>* segments) {
    PolyLine points;
    for (int i = 0; i <= static_cast<int>(line.count) - 2; ++i)
        points.Append(IntersectionsPlainly(other, line.GetSegment(i), segments, false, 0), 2);
    return points;
}

inline int RelationPlainly(const PolyLine& line, const PolyLine& polygon) {
    int here[3] = {}, there[3] = {};
    for (const Point3d& p : line) ++here[InsidePlainly(polygon, p, false, true)];
    for (const Point3d& p : polygon) ++there[InsidePlainly(line, p, false, true)];
    const bool on = here[2] > 0 || there[2] > 0;
    if (on && here[0] + here[1] + there[0] + there[1] == 0) return 2;
    if (on && here[0] == 0 && there[1] == 0) return 5;
    if (on && there[0] == 0 && here[1] == 0) return 4;
    if (here[0] > 0 && here[1] > 0) return 3;
    if (there[0] > 0 && there[1] > 0) return 3;
    for (int i = 0; i <= static_cast<int>(line.count) - 2; ++i) {
        const Line segment = line.GetSegment(i);
        if (CrossesPlainly(polygon, segment) == 1) return 3;
        if (here[1] == 0 && InsidePlainly(polygon, segment.MidPoint(), false, true) == 1) return 3;
    }
    if (on) return AllIntersectionsPlainly(line, polygon, nullptr).count > 0 ? 3 : 4;
    if (here[1] > 0) return 1;
    return there[1] > 0 ? 4 : 0;
}

inline int FindPlainly(const PolyLine& line, const Point3d& point) {
    for (std::uint32_t i = 0; i < line.count; ++i)
        if (Equals(line.data[i], point)) return static_cast<int>(i);
    return -1;
}

inline PolyLine ResamplePlainly(const PolyLine& line, double step) {
    PolyLine points;
    const double total = line.Length();
    for (int k = 0; k * step < total; ++k) {
        Point3d point;
        line.PointAtFraction(&point, k * step / total);
        points.Append(point);
    }
    return points;
}

}  // namespace TamLib
