// Which of the places where a line meets the segments of a polyline count: the rule of
// `PolyLine::Intersections`, segment by segment, for the loop over all and for the index.
#pragma once

#include "GeomStructs/PolyLine.h"

namespace TamLib {

class IntersectionWalk {
  public:
    IntersectionWalk(const Line& line, const Point3d* vertices, bool touchFirstEnd, int zMode,
                     PolyLine& points, Array<int>* segments)
        : line_(line),
          vertices_(vertices),
          touchFirstEnd_(touchFirstEnd),
          zMode_(zMode),
          points_(points),
          segments_(segments) {}

    // Takes segment `i` into account. Segments come in ascending order; those left out don't meet
    // the line.
    void Look(int i) {
        const Point3d* const vertex = vertices_ + i;
        const Line segment(vertex[0], vertex[1]);
        Point3d point;
        const int code = line_.Intersect(segment, point, true);
        if (code == 0) return;
        const bool secondTouch = code == 2 && lastTouched_ == i - 1;
        if (code == 2) lastTouched_ = i;
        if (code == 2 && !touchFirstEnd_ && !(secondTouch && PassesThrough(vertex))) return;
        line_.Intersect3d(segment, point, zMode_, true);
        points_.Append(point);
        if (segments_ != nullptr) segments_->Append(i);
    }

    // The points as they are handed out: sorted and unique unless the caller has their segments.
    void Finish() {
        if (segments_ == nullptr) points_.SortUnique();
    }

  private:
    // Whether the neighbours of a vertex lie on different sides of the line.
    bool PassesThrough(const Point3d* vertex) const {
        const int before = line_.Side(vertex[-1], true), after = line_.Side(vertex[1], true);
        return before != 0 && after != 0 && before != after;
    }

    const Line& line_;
    const Point3d* vertices_;
    bool touchFirstEnd_;
    int zMode_;
    PolyLine& points_;
    Array<int>* segments_;
    int lastTouched_ = -2;
};

}  // namespace TamLib
