#include "GeomStructs/PolyArc.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "GeomEnts/Box.h"
#include "GeomStructs/LengthWalk.h"
#include "GeomStructs/MeetingPoints.h"

namespace TamLib {
namespace {

bool IsStraight(double height) {
    return std::fabs(height) < 0.0001;
}

// `result.Append(points, 1)` for a run of calls. The array itself would give room back for the
// vertex that is dropped, and take it again in fixed steps, copying all for every segment.
void AppendJoined(PolyLine& result, const PolyLine& points) {
    if (result.count > 0 && Equals(result.data[result.count - 1], points.data[0])) --result.count;
    const std::uint32_t needed = result.count + points.count;
    if (result.capacity < needed) result.Resize(std::max(needed, 2 * result.capacity));
    std::copy(points.begin(), points.end(), result.data + result.count);
    result.count = needed;
}

template <class Figure>
PolyLine AllPoints(const PolyArc& line, const Figure& figure, Array<int>* segments) {
    return MeetingPoints(line, segments, [&](int i, Point3dArrayBase<Point3d>& here) {
        line.GetArc(i).Intersect(figure, here);
    });
}

}  // namespace

PolyArc::PolyArc(int initialCapacity) : PolyLine(initialCapacity) {}

PolyArc::PolyArc(const PolyLine& line) : PolyLine(line) {
    for (std::uint32_t i = 1; i < count; ++i) heights.Append(0.0);
}

PolyArc::~PolyArc() = default;

void PolyArc::Reverse() {
    if (count < 2) return;
    PolyLine::Reverse();
    const std::uint32_t segments = count - 1;
    while (heights.count < segments) heights.Append(0.0);
    if (heights.count > segments)
        heights.Remove(static_cast<int>(segments), heights.count - segments);
    heights.Reverse();
    for (double& height : heights) height = -height;
}

void PolyArc::Close() {
    if (count == 0) return;
    if (!Equals(data[count - 1], data[0])) AddVertex(data[0], 0.0);
    heights.Append(0.0);
}

bool PolyArc::DropLastIfEqual(const Point3d& point, bool remove) {
    if (count == 0) return false;
    const bool equal = PolyLine::DropLastIfEqual(point, remove);
    if (!equal || !remove) heights.Append(0.0);
    return equal;
}

// --- Segments.

void PolyArc::AddVertex(const Point3d& point, double height) {
    const bool endsSegment = count > 0;
    Append(point);
    if (endsSegment) heights.Append(height);
}

Arc PolyArc::GetArc(int index) const {
    const double height =
        static_cast<std::uint32_t>(index) < heights.count ? heights.data[index] : 0.0;
    return {height, Line(data[index], data[index + 1])};
}

double PolyArc::BulgeAt(int index) const {
    const Arc arc = GetArc(index);
    return IsStraight(arc.height) ? 0.0 : arc.Bulge();
}

void PolyArc::SetBulgeAt(int index, double bulge) {
    heights[index] = Arc::BulgeToHeight(bulge, Distance(data[index], data[index + 1]));
}

bool PolyArc::HasArcs() const {
    return std::any_of(heights.begin(), heights.end(),
                       [](double height) { return std::fabs(height) >= 0.0001; });
}

// --- Measures.

double PolyArc::Length() const {
    return LengthToVertex(static_cast<int>(count) - 1);
}

double PolyArc::LengthToVertex(int index) const {
    const int segments = std::min(index, static_cast<int>(count) - 1);
    double sum = 0.0;
    for (int i = 0; i < segments; ++i) sum += GetArc(i).Length();
    return sum;
}

double PolyArc::Area() const {
    const double clockwise = IsClockwise() ? 1.0 : -1.0;
    double sum = 0.0;
    for (int i = 0; i + 1 < static_cast<int>(count); ++i) {
        const Arc arc = GetArc(i);
        sum += arc.SegmentArea() * (arc.height > 0.0 ? 1.0 : -1.0) * clockwise;
    }
    return PolyLine::Area() + sum;
}

double PolyArc::MinDistance2d(const Point3d& point) const {
    if (count == 0) return 0.0;
    if (count == 1) return Distance2d(point, data[0]);
    double distance = 0.0;
    NearestSegment(point, &distance);
    return distance;
}

int PolyArc::NearestSegment(const Point3d& point, double* distance, int* side) const {
    if (count < 2) return PolyLine::NearestSegment(point, distance, side);
    double best = std::numeric_limits<double>::max();
    int nearest = -1;
    for (int i = 0; i + 1 < static_cast<int>(count); ++i) {
        const double here = GetArc(i).Distance(point, nullptr);
        if (!(here < best)) continue;
        best = here;
        nearest = i;
    }
    if (side != nullptr) *side = nearest < 0 ? 0 : GetArc(nearest).Side(point, /*touch=*/true);
    if (distance != nullptr) *distance = best;
    return std::max(nearest, 0);
}

Box PolyArc::GetBox() const {
    Box box;
    for (int i = 0; i + 1 < static_cast<int>(count); ++i) box.Add(GetArc(i).GetBox());
    return box;
}

// --- Points at a length.

PolyArc::Place PolyArc::Locate(double fraction, double total) const {
    const int vertices = static_cast<int>(count);
    if (fraction < 0.0) return {0, 0.0, 0.0};
    if (fraction > 1.0) return {vertices - 2, 1.0, std::numeric_limits<double>::infinity()};
    const double target = total * fraction;
    const auto lengthOf = [this](int segment) { return GetArc(segment).Length(); };
    const detail::LengthStop stop = detail::WalkTo(vertices, target, lengthOf);
    const int segment = stop.vertex - 1;
    const double length = lengthOf(segment), back = stop.sum - target;
    return {segment, 1.0 - back / length, length - back};
}

Point3d PolyArc::SideVector(double length, double sideOffset) const {
    if (std::fabs(sideOffset) < 0.0001) return {};
    Point3d direction;
    DirectionAtLength(&direction, length);
    return {direction.y * sideOffset, -direction.x * sideOffset, 0.0 * sideOffset};
}

void PolyArc::PointAtFraction(Point3d* result, double fraction, int* segment,
                              double* segmentFraction, double sideOffset) const {
    const double total = Length();
    Point3d point;
    double length = 0.0;
    if (count >= 2) {
        const Place place = Locate(fraction, total);
        if (segment != nullptr) *segment = place.segment;
        if (segmentFraction != nullptr) *segmentFraction = place.fraction;
        GetArc(place.segment).PointAtDistance(place.distance, point);
        if (!(fraction < 0.0)) length = fraction > 1.0 ? total : total * fraction;
    } else if (count == 1) {
        point = data[0];
    }
    *result = point + SideVector(length, sideOffset);
}

void PolyArc::PointAtLength(Point3d* result, double length, int* segment, double* segmentFraction,
                            double sideOffset) const {
    PointAtFraction(result, detail::RelativeLength(length, Length()), segment, segmentFraction,
                    sideOffset);
}

void PolyArc::DirectionAtLength(Point3d* result, double length) const {
    *result = {};
    if (count < 2) return;
    Point3d point, centre;
    int segment = 0;
    PointAtLength(&point, length, &segment);
    const Arc arc = GetArc(segment);
    if (IsStraight(arc.height)) {
        *result = arc.Direction().Unit();
        return;
    }
    arc.Centre(centre);
    const Point3d outward = arc.height < 0.0 ? Point3d() - (point - centre) : point - centre;
    *result = Point3d(outward.y, -outward.x, 0.0).Unit();
}

// --- Meetings.

PolyLine PolyArc::Intersections(const Line& line, Array<int>* segments) const {
    return AllPoints(*this, line, segments);
}

PolyLine PolyArc::Intersections(const Arc& arc, Array<int>* segments) const {
    return AllPoints(*this, arc, segments);
}

// --- New lines.

PolyLine PolyArc::ToPolyLine(double step, bool stepIsAngle) const {
    PolyLine result(20);
    for (int i = 0; i + 1 < static_cast<int>(count); ++i) {
        const Arc arc = GetArc(i);
        PolyLine points = arc.ToPolyLine(step, stepIsAngle);
        if (Distance(points[0], arc.Start()) > Distance(points[0], arc.End())) points.Reverse();
        AppendJoined(result, points);
    }
    return result;
}

void PolyArc::RemoveNearDuplicates(double tolerance) {
    if (count == 0) return;
    PolyArc kept(static_cast<int>(count));
    kept.AddVertex(data[0], 0.0);
    for (std::uint32_t i = 1; i < count; ++i) {
        const Point3d& last = kept.data[kept.count - 1];
        if (std::fabs(data[i].x - last.x) >= tolerance ||
            std::fabs(data[i].y - last.y) >= tolerance)
            kept.AddVertex(data[i], GetArc(static_cast<int>(i) - 1).height);
    }
    SwapBlocks(kept);
    heights.SwapBlocks(kept.heights);
}

}  // namespace TamLib
