// How a PolyLine lies to another: the sides of polygons, crossings and touches at shared vertices.
#include <optional>

#include "GeomStructs/SegmentIndex.h"

namespace TamLib {
namespace {

// Below this many vertices to ask a ring for, times its own, an index costs more than it saves.
constexpr std::uint64_t kPairsWorthAnIndex = 256;

// Questions to one polygon, through an index when they are many.
class Polygon {
  public:
    Polygon(const PolyLine& line, std::uint32_t questions) : line_(line) {
        if (std::uint64_t{line.count} * questions >= kPairsWorthAnIndex) index_.emplace(line);
    }
    int Inside(const Point3d& p) const {
        return index_ ? index_->Inside(p, true) : line_.Inside(p, false, true);
    }
    int MidPointInside(const Point3d& a, const Point3d& b) const {
        return index_ ? index_->MidPointInside(a, b) : line_.MidPointInside(a, b);
    }
    int Crosses(const Line& line) const {
        return index_ ? index_->Crosses(line) : line_.Crosses(line);
    }

  private:
    const PolyLine& line_;
    std::optional<SegmentIndex> index_;
};

// How many vertices of one lie outside, inside and on the other.
struct Sides {
    std::uint32_t outside = 0, inside = 0, on = 0;

    void Count(int code) { ++(code == 0 ? outside : code == 1 ? inside : on); }
};

Sides CountSides(const PolyLine& vertices, const Polygon& polygon) {
    Sides sides;
    for (const Point3d& vertex : vertices) sides.Count(polygon.Inside(vertex));
    return sides;
}

// Whether a segment of `line` crosses the polygon; or, when no vertex lies inside, runs through it
// between two vertices.
bool RunsThrough(const PolyLine& line, const Polygon& polygon, bool anyInside) {
    for (std::uint32_t i = 0; i + 1 < line.count; ++i)
        if (polygon.Crosses(Line(line.data[i], line.data[i + 1])) == 1) return true;
    for (std::uint32_t i = 0; !anyInside && i + 1 < line.count; ++i)
        if (polygon.MidPointInside(line.data[i], line.data[i + 1]) == 1) return true;
    return false;
}

// One of two polylines at a shared vertex, as a walk along a ring, forward or backward.
class Way {
  public:
    Way(const PolyLine& line, bool closed, int vertex, int step)
        : line_(line), closed_(closed), vertex_(vertex), step_(step) {}

    const Point3d& Here() const { return line_.data[vertex_]; }
    bool HasAhead() const { return Exists(vertex_ + step_); }
    bool HasBehind() const { return Exists(vertex_ - step_); }
    const Point3d& Ahead() const { return line_.data[Wrapped(vertex_ + step_)]; }
    const Point3d& Behind() const { return line_.data[Wrapped(vertex_ - step_)]; }
    void Advance() { vertex_ = Wrapped(vertex_ + step_); }

  private:
    int Size() const { return static_cast<int>(line_.count); }
    bool Exists(int vertex) const { return closed_ || (vertex >= 0 && vertex < Size()); }
    int Wrapped(int vertex) const { return (vertex + Size()) % Size(); }

    const PolyLine& line_;
    bool closed_;
    int vertex_;
    int step_;
};

// Whether a point lies to the left of the way through a vertex, within the sweep from the next
// vertex round to the one before.
bool IsLeft(const Point3d& vertex, const Point3d& before, const Point3d& after,
            const Point3d& point) {
    return AngleAt(vertex, after, point) < AngleAt(vertex, after, before);
}

// Both ways run along a stretch they share from here on, having come from different vertices.
// Whether they have changed sides where they part.
bool CrossesAlongStretch(Way here, Way there, int vertices) {
    const bool leftBefore = IsLeft(here.Here(), here.Behind(), here.Ahead(), there.Behind());
    for (int i = 0; i < vertices; ++i) {
        if (!here.HasAhead() || !there.HasAhead()) return false;
        if (!Equals(here.Ahead(), there.Ahead()))
            return leftBefore != IsLeft(here.Here(), here.Behind(), here.Ahead(), there.Ahead());
        here.Advance();
        there.Advance();
    }
    return false;
}

// A node: a vertex that both have. A stretch is decided at the end at which `here` comes to it.
bool CrossesAtNode(const PolyLine& here, bool hereClosed, int vertex, const PolyLine& there,
                   bool thereClosed, int other) {
    const Way way(here, hereClosed, vertex, 1);
    const Way forward(there, thereClosed, other, 1), backward(there, thereClosed, other, -1);
    if (!way.HasBehind() || !way.HasAhead() || !forward.HasBehind() || !forward.HasAhead())
        return false;
    const auto comesFrom = [&](const Point3d& point) { return Equals(way.Behind(), point); };
    if (comesFrom(forward.Behind()) || comesFrom(forward.Ahead())) return false;
    const int vertices = static_cast<int>(here.count);
    if (Equals(way.Ahead(), forward.Ahead())) return CrossesAlongStretch(way, forward, vertices);
    if (Equals(way.Ahead(), forward.Behind())) return CrossesAlongStretch(way, backward, vertices);
    return IsLeft(way.Here(), way.Behind(), way.Ahead(), forward.Behind()) !=
           IsLeft(way.Here(), way.Behind(), way.Ahead(), forward.Ahead());
}

bool IsInBox(const Line& segment, const Point3d& p) {
    const PlanBox box = BoxOf(segment.Start(), segment.End());
    return p.x > box.xMin - 0.0001 && p.x < box.xMax + 0.0001 && p.y > box.yMin - 0.0001 &&
           p.y < box.yMax + 0.0001;
}

// Where a segment and a polyline meet: their intersections with touches, as far as they lie on the
// segment, for an upright one is touched by what lies below it; and the vertices that lie on the
// segment, of which `Line::Intersect` gives one at most.
PolyLine Nodes(const Line& segment, const PolyLine& line, const SegmentIndex& index) {
    PolyLine nodes;
    for (const Point3d& point : index.Intersections(segment, nullptr, /*touchFirstEnd=*/true, 0))
        if (IsInBox(segment, point)) nodes.Append(point);
    index.ForEachNear(segment, [&](int i) {
        for (const Point3d& vertex : {line.data[i], line.data[i + 1]})
            if (segment.PointOn(vertex, 0.0001)) nodes.Append(vertex);
        return false;
    });
    nodes.SortByDistance(segment.Start());
    return nodes;
}

// `line` with the nodes that `other` makes on it, cleaned. True when it is closed; its repeated
// last vertex is gone then.
bool Node(const PolyLine& line, const PolyLine& other, PolyLine& noded) {
    const SegmentIndex index(other);
    for (std::uint32_t i = 0; i + 1 < line.count; ++i) {
        const Line segment(line.data[i], line.data[i + 1]);
        noded.Append(segment.Start());
        for (const Point3d& node : Nodes(segment, other, index))
            if (!Equals(node, segment.Start()) && !Equals(node, segment.End())) noded.Append(node);
    }
    noded.Append(line.data[line.count - 1]);
    noded.RemoveNearDuplicates(1e-07);
    const bool closed = noded.IsClosed();
    if (closed) noded.Remove(-1, 1);
    return closed;
}

PolyLine Flattened(const PolyLine& line) {
    PolyLine flat(line);
    flat.SetElevation(0.0);
    return flat;
}

}  // namespace

int PolyLine::CrossesPolygon(const PolyLine& other) const {
    if (count == 0 || other.count == 0 || !GetBox().Overlaps2d(other.GetBox())) return 0;
    if (count == 1) return other.Inside(data[0], false, true) == 2 ? 2 : 0;
    if (other.count == 1) return Inside(other.data[0], false, true) == 2 ? 2 : 0;
    const PolyLine flatHere = Flattened(*this), flatThere = Flattened(other);
    PolyLine here, there;
    const bool hereClosed = Node(flatHere, flatThere, here);
    const bool thereClosed = Node(flatThere, flatHere, there);
    const SegmentIndex nodes(there);
    int result = 0;
    for (int i = 0; i < static_cast<int>(here.count); ++i) {
        const int node = nodes.FindVertex(here.data[i]);
        if (node < 0) continue;
        result = 2;
        if (CrossesAtNode(here, hereClosed, i, there, thereClosed, node)) return 1;
    }
    return result;
}

int PolyLine::Relation(const PolyLine& polygon) const {
    const Polygon there(polygon, count), here(*this, polygon.count);
    const Sides ofThis = CountSides(*this, there), ofPolygon = CountSides(polygon, here);
    const bool anyOn = ofThis.on > 0 || ofPolygon.on > 0;
    if (anyOn) {
        const bool noneApart = ofThis.outside == 0 && ofPolygon.outside == 0;
        if (noneApart && ofThis.inside == 0 && ofPolygon.inside == 0) return 2;
        if (ofThis.outside == 0 && ofPolygon.inside == 0) return 5;
        if (ofPolygon.outside == 0 && ofThis.inside == 0) return 4;
    }
    if ((ofThis.inside > 0 && ofThis.outside > 0) ||
        (ofPolygon.inside > 0 && ofPolygon.outside > 0))
        return 3;
    if (RunsThrough(*this, there, ofThis.inside > 0)) return 3;
    if (anyOn) return Intersections(polygon).count > 0 ? 3 : 4;
    if (ofThis.inside > 0) return 1;
    return ofPolygon.inside > 0 ? 4 : 0;
}

}  // namespace TamLib
