// The places where a figure meets the segments of a polyline, one by one.
#pragma once

#include "GeomStructs/Point3dArray.h"
#include "GeomStructs/PolyLine.h"

namespace TamLib {

// What `meet(i, points)` gives for each segment `i` of `line`, in their order: sorted and unique,
// or as it comes with the index of the segment for each point appended to `segments`.
template <class Meet>
PolyLine MeetingPoints(const PolyLine& line, Array<int>* segments, const Meet& meet) {
    PolyLine points;
    for (int i = 0; i + 1 < static_cast<int>(line.count); ++i) {
        Point3dArrayBase<Point3d> here;
        meet(i, here);
        for (const Point3d& point : here) {
            points.Append(point);
            if (segments != nullptr) segments->Append(i);
        }
    }
    if (segments == nullptr) points.SortUnique();
    return points;
}

}  // namespace TamLib
