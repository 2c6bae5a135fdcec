// What holds for all polylines of arcs: reversal, bulges, walks beside the flattened line, offsets.
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cmath>

#include "GeomStructs/PolyArc.h"
#include "tests/GeomEnts/AnyArc.h"

namespace TamLib {
namespace {

// Segments of 1 to 60 units, every third straight, the others with bulges up to `most`.
PolyArc AnyLine(double most) {
    const bool onMap = *rc::gen::arbitrary<bool>();
    PolyArc line;
    Point3d at = onMap ? Point3d(25496000, 6672000, 5) : Point3d();
    line.AddVertex(at, 0);
    const int segments = *rc::gen::inRange(1, 8);
    for (int i = 0; i < segments; ++i) {
        const double way = AnyNumber(3.14159), length = *rc::gen::inRange(1, 60);
        at += Point3d(length * std::cos(way), length * std::sin(way), 0);
        line.AddVertex(at, 0);
        const double bulge = AnyNumber(most);
        if (*rc::gen::inRange(0, 3) > 0 && std::fabs(bulge) > 0.01) line.SetBulgeAt(i, bulge);
    }
    return line;
}

// The radii reach 60 / 0.01 / 4, and coordinates have some 4e-9 on the map.
constexpr double kSlack = 1e-5;

RC_GTEST_PROP(PolyArcLaws, ReversalKeepsTheCurve, ()) {
    const PolyArc line = AnyLine(3);
    PolyArc back = line;
    back.Reverse();
    RC_ASSERT(back.heights.count == back.count - 1);
    const double total = line.Length();
    RC_ASSERT(std::fabs(back.Length() - total) < kSlack);
    for (int i = 0; i <= 20; ++i) {
        Point3d there, here;
        line.PointAtFraction(&there, i / 20.0);
        back.PointAtFraction(&here, 1 - i / 20.0);
        RC_ASSERT(Distance2d(there, here) < kSlack);
    }
    back.Reverse();
    for (std::uint32_t i = 0; i < line.count; ++i) {
        RC_ASSERT(back.data[i].x == line.data[i].x && back.data[i].y == line.data[i].y);
        if (i + 1 < line.count) RC_ASSERT(back.heights.data[i] == line.heights.data[i]);
    }
}

RC_GTEST_PROP(PolyArcLaws, BulgeAndHeightAreEachOthersInverse, ()) {
    PolyArc line = AnyLine(9);
    for (int i = 0; i + 1 < static_cast<int>(line.count); ++i) {
        const double height = line.HeightAt(i);
        line.SetBulgeAt(i, line.BulgeAt(i));
        RC_ASSERT(std::fabs(line.HeightAt(i) - height) <= 1e-9 * (1 + std::fabs(height)));
    }
}

RC_GTEST_PROP(PolyArcLaws, TheFlattenedLineIsTheCurveUpToItsChords, ()) {
    const PolyArc line = AnyLine(3);
    const double step = *rc::gen::inRange(1, 30) / 100.0;
    const PolyLine flat = line.ToPolyLine(step, true);
    double rise = 0;  // of the widest chord, two steps, at the largest radius
    for (int i = 0; i + 1 < static_cast<int>(line.count); ++i)
        if (std::fabs(line.HeightAt(i)) > 0.0001)
            rise = std::max(rise, line.GetArc(i).Radius() * (1 - std::cos(step)));
    for (const Point3d& p : flat) {
        double nearest = 1e9;
        for (int i = 0; i + 1 < static_cast<int>(line.count); ++i) {
            Point3d centre;
            const Arc arc = line.GetArc(i);
            arc.Centre(centre);
            nearest = std::min(nearest, std::fabs(arc.height) < 0.0001
                                            ? arc.Distance2d(p, nullptr, nullptr)
                                            : std::fabs(Distance2d(p, centre) - arc.Radius()));
        }
        RC_ASSERT(nearest < kSlack);
    }
    for (int i = 0; i <= 50; ++i) {
        Point3d on;
        line.PointAtFraction(&on, i / 50.0);
        RC_ASSERT(flat.MinDistance2d(on) < rise + kSlack);
    }
    RC_ASSERT(flat.Length2d() < line.Length() + kSlack);
    RC_ASSERT(flat.Length2d() > line.Length() * (1 - step * step / 4) - kSlack);
}

RC_GTEST_PROP(PolyArcLaws, WalksAgreeWithTheFlattenedLine, ()) {
    const PolyArc line = AnyLine(1.5);
    const PolyLine flat = line.ToPolyLine(0.002, true);
    const double total = line.Length();
    for (int i = 1; i < 20; ++i) {
        const double length = total * (i + 0.37) / 21;
        Point3d here, there, direction, flatDirection;
        int segment = 0;
        double part = 0;
        line.PointAtLength(&here, length, &segment, &part);
        flat.PointAtLength(&there, length);
        RC_ASSERT(Distance2d(here, there) < 1e-4 * total + kSlack);
        RC_ASSERT(std::fabs(line.LengthToVertex(segment) + part * line.GetArc(segment).Length() -
                            length) < kSlack);
        if (part < 0.05 || part > 0.95) continue;  // corners
        line.DirectionAtLength(&direction, length);
        flat.DirectionAtLength(&flatDirection, length);
        RC_ASSERT(Distance2d(direction, flatDirection) < 0.005);
        line.PointAtLength(&there, length, nullptr, nullptr, 2.0);
        RC_ASSERT(std::fabs(Distance2d(here, there) - 2) < kSlack);
        RC_ASSERT(Line(here, here + direction).Side(there, false) == 1);
    }
}

RC_GTEST_PROP(PolyArcLaws, AreaIsThatOfTheFlattenedRing, ()) {
    // A ring of five corners about the origin; bulging in, its sides take off less than its area.
    PolyArc ring;
    for (int i = 0; i < 5; ++i) {
        const double angle = i * 1.2566370614359172;
        const double radius = *rc::gen::inRange(20, 40);
        ring.AddVertex({radius * std::cos(angle), radius * std::sin(angle), 0}, 0);
    }
    ring.AddVertex(Point3d(ring.data[0]), 0);
    for (int i = 0; i < 5; ++i) ring.SetBulgeAt(i, AnyNumber(0.5));
    if (*rc::gen::arbitrary<bool>()) ring.Reverse();
    const double area = ring.ToPolyLine(0.002, true).Area();
    RC_ASSERT(std::fabs(ring.Area() - area) < 1e-3 * area);
}

RC_GTEST_PROP(PolyArcLaws, NearestIsTheNearestPointOfTheFlattenedLine, ()) {
    PolyArc line = AnyLine(0.9);
    Point3d point(AnyNumber(60), AnyNumber(60), 0);
    point += line.data[0];
    const double distance = line.MinDistance2d(point);
    const double flat = line.ToPolyLine(0.005, true).MinDistance2d(point);
    RC_ASSERT(std::fabs(distance - flat) < 0.01 + 1e-4 * distance);
}

RC_GTEST_PROP(PolyArcLaws, OffsetsOfArcsKeepTheirDistance, ()) {
    const PolyArc line = AnyLine(0.9);
    const double distance = AnyNumber(3);
    RC_PRE(std::fabs(distance) > 0.01);
    PolyArc result;
    line.Offset(&result, distance);
    RC_ASSERT(result.count == 0 || result.heights.count == result.count - 1);
    for (const double height : result.heights) RC_ASSERT(std::isfinite(height));
    // Each point of the result is on the shifted circle or line of some segment, or on a joint.
    for (int i = 0; i + 1 < static_cast<int>(result.count); ++i) {
        const Arc arc = result.GetArc(i);
        if (std::fabs(arc.height) < 0.01 || arc.Length2d() < 0.01) continue;
        Point3d centre;
        arc.Centre(centre);
        double best = 1e9;
        for (int k = 0; k + 1 < static_cast<int>(line.count); ++k) {
            const Arc old = line.GetArc(k);
            if (std::fabs(old.height) < 0.0001) continue;
            Point3d oldCentre;
            old.Centre(oldCentre);
            const double offBy =
                std::fabs(std::fabs(arc.Radius() - old.Radius()) - std::fabs(distance));
            best = std::min(best, Distance2d(centre, oldCentre) + offBy);
        }
        RC_ASSERT(best < 0.01);
    }
}

}  // namespace
}  // namespace TamLib
