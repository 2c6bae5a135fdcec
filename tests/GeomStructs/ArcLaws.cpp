// What holds for all arcs made into polylines and met by lines.
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cmath>

#include "GeomEnts/Arc.h"
#include "GeomStructs/PolyLine.h"
#include "tests/GeomEnts/AnyArc.h"

namespace TamLib {
namespace {

RC_GTEST_PROP(ArcFlatteningLaws, KeepsTheEndsAndStaysWithinTheStep, (bool onMap, bool byAngle)) {
    const Arc arc = AnyArc(onMap, 4);
    const double angle = *rc::gen::inRange(1, 100) / 100.0;
    const PolyLine line = arc.ToPolyLine(byAngle ? angle : angle * arc.Radius(), byAngle);
    const double slack = Slack(arc), radius = arc.Radius();
    RC_ASSERT(Distance(line[0], arc.Start()) < 10 * slack);
    RC_ASSERT(Distance(line[-1], arc.End()) < 10 * slack);
    Point3d centre;
    arc.Centre(centre);
    for (std::uint32_t i = 0; i < line.count; ++i) {
        RC_ASSERT(std::fabs(Distance2d(centre, line.data[i]) - radius) < slack);
        if (i == 0) continue;
        // One step, the last up to two: the chord of that angle, and its rise.
        const Line piece(line.data[i - 1], line.data[i]);
        const double widest = i + 1 == line.count || i == 1 ? 2 * angle : angle;
        RC_ASSERT(piece.Length2d() <= 2 * radius * std::sin(widest / 2) + 2 * slack);
        const double rise = radius - Distance2d(centre, piece.MidPoint());
        RC_ASSERT(rise <= radius * (1 - std::cos(widest / 2)) + 2 * slack);
    }
}

RC_GTEST_PROP(ArcFlatteningLaws, LengthsComeNearTheArc, ()) {
    const Arc arc = AnyArc(false, 4);
    const double length = arc.ToPolyLine(0.01, true).Length2d();
    RC_ASSERT(length < arc.Length() * (1 + 1e-9));
    RC_ASSERT(length > arc.Length() * (1 - 1e-4));
}

RC_GTEST_PROP(ArcIntersectLaws, HitsLieOnTheLineAndOnTheArc, ()) {
    const Arc arc = AnyArc(false, 4);
    const Line line({AnyNumber(300), AnyNumber(300), 0}, {AnyNumber(300), AnyNumber(300), 0});
    RC_PRE(line.Length2d() > 1.0);
    Point3dArrayBase<Point3d> points;
    arc.Intersect(line, points);
    RC_ASSERT(points.count <= 2);
    for (const Point3d& p : points) {
        RC_ASSERT(line.Distance2d(p, nullptr, nullptr) < 1e-5);
        // On the chord's band too.
        RC_ASSERT(arc.Distance(p, nullptr) < 1e-5 + 0.01 / arc.Length2d() * 20);
    }
}

RC_GTEST_PROP(ArcIntersectLaws, ArcsMeetInTheSamePointsWhicheverIsAsked, ()) {
    const Arc a = AnyArc(false, 4), b = AnyArc(false, 4);
    Point3dArrayBase<Point3d> here, there;
    // Circles are compared by the distance of their centres in space.
    const Arc flatA(a.height, Line({a.x1, a.y1, 0}, {a.x2, a.y2, 0}));
    const Arc flatB(b.height, Line({b.x1, b.y1, 0}, {b.x2, b.y2, 0}));
    flatA.Intersect(flatB, here);
    flatB.Intersect(flatA, there);
    const auto inside = [](const Arc& arc, const Point3d& p) {
        return std::fabs((arc.x2 - arc.x1) * (p.y - arc.y1) - (arc.y2 - arc.y1) * (p.x - arc.x1)) >
               1.0;
    };
    // Circles within one another give points that are on one of them alone.
    for (const Point3d& p : here) {
        RC_PRE(inside(a, p) && inside(b, p));
        RC_PRE(a.Distance(p, nullptr) < 1e-6 && b.Distance(p, nullptr) < 1e-6);
        bool found = false;
        for (const Point3d& q : there) found = found || Distance2d(p, q) < 1e-4;
        RC_ASSERT(found);
    }
}

}  // namespace
}  // namespace TamLib
