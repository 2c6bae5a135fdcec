// A drawn line in space: straight pieces and cubic Bezier curves, which any affine map leaves what
// they are.
#pragma once

#include <gemat3d.h>
#include <gepnt3d.h>

#include <cstdint>
#include <vector>

#include "host/database/Curve.h"

namespace host::picture {

class Path {
  public:
    // move, line and curve take 1, 1 and 3 points of points(); close takes none.
    enum class Step : std::uint8_t { move, line, curve, close };

    void moveTo(const AcGePoint3d& point);
    void lineTo(const AcGePoint3d& point);
    void curveTo(const AcGePoint3d& handle1, const AcGePoint3d& handle2, const AcGePoint3d& point);
    void close();

    // The whole of a curve. Straight spans stay straight; others become cubics that have its
    // points and tangents where they meet and keep within `largestError`, and within 1/20000 of the
    // length of the span, as far as 256 pieces for a span allow. One that returns to its first
    // point is closed.
    void add(const database::Curve& curve, double largestError);
    // Straight pieces through points.
    void add(const std::vector<AcGePoint3d>& chain);
    // A closed polygon, whose first point may stand at its end once more.
    void addRing(const std::vector<AcGePoint3d>& ring);

    bool empty() const { return steps_.empty(); }
    const std::vector<Step>& steps() const { return steps_; }
    const std::vector<AcGePoint3d>& points() const { return points_; }

    // The path through another map.
    Path mapped(const AcGeMatrix3d& matrix) const;

  private:
    std::vector<Step> steps_;
    std::vector<AcGePoint3d> points_;
};

}  // namespace host::picture
