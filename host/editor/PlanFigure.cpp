#include "host/editor/PlanFigure.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

namespace host::editor {

namespace {

using Points = std::vector<PlanPoint>;

bool same(const PlanPoint& a, const PlanPoint& b) {
    return a.x == b.x && a.y == b.y;
}

// Above 0 when c lies left of the line from a to b, 0 on it.
double side(const PlanPoint& a, const PlanPoint& b, const PlanPoint& c) {
    return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
}

PlanBox boxOf(const PlanPoint& a, const PlanPoint& b) {
    return PlanBox::around(a, b);
}

PlanBox boxOf(const Points& points) {
    PlanBox box;
    for (const PlanPoint& point : points) box.add(point);
    return box;
}

// `c` is known to lie on the line through a and b.
bool between(const PlanPoint& a, const PlanPoint& b, const PlanPoint& c) {
    return boxOf(a, b).contains(c);
}

bool onSegment(const PlanPoint& a, const PlanPoint& b, const PlanPoint& point) {
    return boxOf(a, b).contains(point) && side(a, b, point) == 0.0;
}

// Calls `use(a, b)` for every piece of a path, a dot being a piece of no length, until it answers
// true.
template <class Use>
bool anyPiece(const Points& points, Use use) {
    if (points.size() == 1) return use(points[0], points[0]);
    for (std::size_t i = 0; i + 1 < points.size(); ++i) {
        if (use(points[i], points[i + 1])) return true;
    }
    return false;
}

template <class Use>
bool anyEdge(const Points& polygon, Use use) {
    for (std::size_t i = 0; i < polygon.size(); ++i) {
        if (use(polygon[i], polygon[(i + 1) % polygon.size()])) return true;
    }
    return false;
}

Points corners(const PlanBox& box) {
    return {box.min, {box.max.x, box.min.y}, box.max, {box.min.x, box.max.y}};
}

bool pathInBox(const PlanPath& path, const PlanBox& box) {
    return std::all_of(path.points.begin(), path.points.end(),
                       [&](const PlanPoint& point) { return box.contains(point); });
}

bool segmentMeetsBox(const PlanPoint& a, const PlanPoint& b, const PlanBox& box) {
    if (box.contains(a) || box.contains(b)) return true;
    if (!boxOf(a, b).overlaps(box)) return false;
    return anyEdge(corners(box), [&](const PlanPoint& c, const PlanPoint& d) {
        return segmentsMeet(a, b, c, d);
    });
}

bool encloses(const PlanPath& path, const PlanPoint& point) {
    if (!path.filled || path.points.size() < 4) return false;
    return insideOrOn(Points(path.points.begin(), path.points.end() - 1), point);
}

// Where along a..b (0 to 1) it meets the polygon's edges: between two neighbours of the sorted list
// the piece lies wholly on one side.
std::vector<double> cuts(const PlanPoint& a, const PlanPoint& b, const Points& polygon) {
    std::vector<double> at{0.0, 1.0};
    const double dx = b.x - a.x;
    const double dy = b.y - a.y;
    const double length2 = dx * dx + dy * dy;
    anyEdge(polygon, [&](const PlanPoint& c, const PlanPoint& d) {
        if (!segmentsMeet(a, b, c, d)) return false;
        const double sc = side(a, b, c);
        const double sd = side(a, b, d);
        if (sc == sd) {  // along one another
            at.push_back(((c.x - a.x) * dx + (c.y - a.y) * dy) / length2);
            at.push_back(((d.x - a.x) * dx + (d.y - a.y) * dy) / length2);
        } else {
            const double t = sc / (sc - sd);
            const PlanPoint hit{c.x + (d.x - c.x) * t, c.y + (d.y - c.y) * t};
            at.push_back(((hit.x - a.x) * dx + (hit.y - a.y) * dy) / length2);
        }
        return false;
    });
    for (double& t : at) t = std::clamp(t, 0.0, 1.0);
    std::sort(at.begin(), at.end());
    return at;
}

// A piece whose ends are inside can leave a polygon only between two cuts.
bool segmentInPolygon(const PlanPoint& a, const PlanPoint& b, const Points& polygon) {
    // Pieces shorter than this share of the segment lie on the border but for rounding.
    constexpr double least = 1e-9;
    if (!insideOrOn(polygon, a) || !insideOrOn(polygon, b)) return false;
    if (same(a, b)) return true;
    const std::vector<double> at = cuts(a, b, polygon);
    for (std::size_t i = 0; i + 1 < at.size(); ++i) {
        if (at[i + 1] - at[i] < least) continue;
        const double middle = (at[i] + at[i + 1]) / 2.0;
        const PlanPoint point{a.x + (b.x - a.x) * middle, a.y + (b.y - a.y) * middle};
        if (!insideOrOn(polygon, point)) {
            // Along an edge the middle may miss it by a rounding.
            const bool alongEdge = anyEdge(polygon, [&](const PlanPoint& c, const PlanPoint& d) {
                return side(c, d, a) == 0.0 && side(c, d, b) == 0.0 && between(c, d, point);
            });
            if (!alongEdge) return false;
        }
    }
    return true;
}

bool meetsPolygon(const PlanPoint& a, const PlanPoint& b, const Points& polygon) {
    return insideOrOn(polygon, a) || anyEdge(polygon, [&](const PlanPoint& c, const PlanPoint& d) {
               return segmentsMeet(a, b, c, d);
           });
}

double distance(const PlanPoint& a, const PlanPoint& b, const PlanPoint& point) {
    const double dx = b.x - a.x;
    const double dy = b.y - a.y;
    const double square = dx * dx + dy * dy;
    double along = 0.0;
    if (square > 0.0) along = ((point.x - a.x) * dx + (point.y - a.y) * dy) / square;
    along = std::clamp(along, 0.0, 1.0);
    return std::hypot(point.x - (a.x + along * dx), point.y - (a.y + along * dy));
}

}  // namespace

double PlanBox::distanceTo(const PlanPoint& point) const {
    return std::hypot(std::max({min.x - point.x, point.x - max.x, 0.0}),
                      std::max({min.y - point.y, point.y - max.y, 0.0}));
}

double PlanFigure::distanceTo(const PlanPoint& point) const {
    double least = std::numeric_limits<double>::max();
    for (const PlanPath& path : paths_) {
        anyPiece(path.points, [&](const PlanPoint& a, const PlanPoint& b) {
            least = std::min(least, distance(a, b, point));
            return false;
        });
    }
    return least;
}

PlanBox PlanBox::around(const PlanPoint& a, const PlanPoint& b) {
    return {{std::min(a.x, b.x), std::min(a.y, b.y)}, {std::max(a.x, b.x), std::max(a.y, b.y)}};
}

void PlanBox::add(const PlanPoint& point) {
    min = {std::min(min.x, point.x), std::min(min.y, point.y)};
    max = {std::max(max.x, point.x), std::max(max.y, point.y)};
}

bool PlanBox::contains(const PlanPoint& point) const {
    return min.x <= point.x && point.x <= max.x && min.y <= point.y && point.y <= max.y;
}

bool PlanBox::contains(const PlanBox& box) const {
    return contains(box.min) && contains(box.max);
}

bool PlanBox::overlaps(const PlanBox& box) const {
    return min.x <= box.max.x && box.min.x <= max.x && min.y <= box.max.y && box.min.y <= max.y;
}

void PlanFigure::add(PlanPath path) {
    if (path.points.empty()) return;
    for (const PlanPoint& point : path.points) box_.add(point);
    paths_.push_back(std::move(path));
}

bool PlanFigure::inside(const PlanBox& box) const {
    return !empty() && std::all_of(paths_.begin(), paths_.end(),
                                   [&](const PlanPath& path) { return pathInBox(path, box); });
}

bool PlanFigure::crosses(const PlanBox& box) const {
    if (empty() || !box_.overlaps(box)) return false;
    return std::any_of(paths_.begin(), paths_.end(), [&](const PlanPath& path) {
        return encloses(path, box.min) ||
               anyPiece(path.points, [&](const PlanPoint& a, const PlanPoint& b) {
                   return segmentMeetsBox(a, b, box);
               });
    });
}

bool PlanFigure::inside(const Points& polygon) const {
    if (empty() || !boxOf(polygon).contains(box_)) return false;
    return std::all_of(paths_.begin(), paths_.end(), [&](const PlanPath& path) {
        return !anyPiece(path.points, [&](const PlanPoint& a, const PlanPoint& b) {
            return !segmentInPolygon(a, b, polygon);
        });
    });
}

bool PlanFigure::crosses(const Points& polygon) const {
    if (empty() || polygon.empty() || !boxOf(polygon).overlaps(box_)) return false;
    return std::any_of(paths_.begin(), paths_.end(), [&](const PlanPath& path) {
        return encloses(path, polygon.front()) ||
               anyPiece(path.points, [&](const PlanPoint& a, const PlanPoint& b) {
                   return meetsPolygon(a, b, polygon);
               });
    });
}

bool PlanFigure::touches(const Points& fence) const {
    if (empty() || fence.empty() || !boxOf(fence).overlaps(box_)) return false;
    return std::any_of(paths_.begin(), paths_.end(), [&](const PlanPath& path) {
        return encloses(path, fence.front()) ||
               anyPiece(path.points, [&](const PlanPoint& a, const PlanPoint& b) {
                   return anyPiece(fence, [&](const PlanPoint& c, const PlanPoint& d) {
                       return segmentsMeet(a, b, c, d);
                   });
               });
    });
}

bool segmentsMeet(const PlanPoint& a, const PlanPoint& b, const PlanPoint& c, const PlanPoint& d) {
    if (!boxOf(a, b).overlaps(boxOf(c, d))) return false;
    const double sc = side(a, b, c);
    const double sd = side(a, b, d);
    const double sa = side(c, d, a);
    const double sb = side(c, d, b);
    const auto apart = [](double s, double t) {
        return (s > 0.0 && t > 0.0) || (s < 0.0 && t < 0.0);
    };
    return !apart(sc, sd) && !apart(sa, sb);
}

bool insideOrOn(const Points& polygon, const PlanPoint& point) {
    bool inside = false;
    const bool onBorder = anyEdge(polygon, [&](const PlanPoint& a, const PlanPoint& b) {
        if (onSegment(a, b, point)) return true;
        if ((a.y > point.y) != (b.y > point.y)) {
            const double s = side(a, b, point);
            if ((b.y > a.y) == (s > 0.0)) inside = !inside;
        }
        return false;
    });
    return onBorder || inside;
}

bool staysSimple(const Points& line, const PlanPoint& next) {
    if (line.empty()) return true;
    const PlanPoint& last = line.back();
    if (same(last, next)) return false;
    for (std::size_t i = 0; i + 2 < line.size(); ++i) {
        if (segmentsMeet(line[i], line[i + 1], last, next)) return false;
    }
    if (line.size() < 2) return true;
    const PlanPoint& before = line[line.size() - 2];
    return !onSegment(before, last, next) && !onSegment(last, next, before);
}

bool closesSimply(const Points& line) {
    if (line.size() < 3) return false;
    const PlanPoint& first = line.front();
    const PlanPoint& last = line.back();
    for (std::size_t i = 1; i + 2 < line.size(); ++i) {
        if (segmentsMeet(line[i], line[i + 1], last, first)) return false;
    }
    const PlanPoint& before = line[line.size() - 2];
    return !onSegment(before, last, first) && !onSegment(last, first, before) &&
           !onSegment(last, first, line[1]) && !onSegment(first, line[1], last);
}

}  // namespace host::editor
