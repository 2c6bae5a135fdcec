// What an entity looks like in plan, and the questions that selecting asks of it: is it inside a
// rectangle or polygon, does it cross one, does a fence touch it. All in plan (x and y), all
// borders included, computed exactly on the given coordinates but for one rounding of each product.
#pragma once

#include <vector>

namespace host::editor {

struct PlanPoint {
    double x = 0.0;
    double y = 0.0;
};

// A rectangle with its sides along the axes; empty while `min` lies above `max`.
struct PlanBox {
    PlanPoint min{1e300, 1e300};
    PlanPoint max{-1e300, -1e300};

    static PlanBox around(const PlanPoint& a, const PlanPoint& b);
    bool empty() const { return min.x > max.x || min.y > max.y; }
    void add(const PlanPoint& point);
    bool contains(const PlanPoint& point) const;
    bool contains(const PlanBox& box) const;
    bool overlaps(const PlanBox& box) const;
    // How far a point is from the rectangle, 0 inside; of one that is not empty.
    double distanceTo(const PlanPoint& point) const;
};

// One drawn line of straight pieces; a single point is a dot. A closed one repeats its first point.
// What a filled one encloses belongs to the figure, as with texts, which are taken as their boxes.
struct PlanPath {
    std::vector<PlanPoint> points;
    bool filled = false;
};

class PlanFigure {
  public:
    void add(PlanPath path);
    bool empty() const { return paths_.empty(); }
    const PlanBox& box() const { return box_; }
    const std::vector<PlanPath>& paths() const { return paths_; }

    // Wholly inside. An empty figure is inside of nothing.
    bool inside(const PlanBox& box) const;
    bool inside(const std::vector<PlanPoint>& polygon) const;
    // Inside, or touched by the border or the interior.
    bool crosses(const PlanBox& box) const;
    bool crosses(const std::vector<PlanPoint>& polygon) const;
    // Touched by an open line of straight pieces, which may cross itself.
    bool touches(const std::vector<PlanPoint>& fence) const;
    // How far a point is from the drawn lines, the borders of what is filled among them; above
    // 1e300 for an empty figure.
    double distanceTo(const PlanPoint& point) const;

  private:
    std::vector<PlanPath> paths_;
    PlanBox box_;
};

// Whether two straight pieces have a point in common, ends included.
bool segmentsMeet(const PlanPoint& a, const PlanPoint& b, const PlanPoint& c, const PlanPoint& d);

// Whether a point is inside a polygon (which does not repeat its first point) or on its border.
bool insideOrOn(const std::vector<PlanPoint>& polygon, const PlanPoint& point);

// Whether the open line stays free of itself when `next` is added: its new last piece may meet the
// one before only in their common point, and no other piece at all.
bool staysSimple(const std::vector<PlanPoint>& line, const PlanPoint& next);

// Whether the piece from the last point back to the first one closes the line to a polygon that
// does not cross itself. False for fewer than three points.
bool closesSimply(const std::vector<PlanPoint>& line);

}  // namespace host::editor
