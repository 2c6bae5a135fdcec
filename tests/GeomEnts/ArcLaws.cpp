// What holds for all arcs: chord, height, bulge, radius and sweep agree, and what is made from one
// of them has the others.
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cmath>

#include "GeomEnts/Arc.h"
#include "GeomEnts/Box.h"
#include "GeomEnts/circle.h"
#include "tests/GeomEnts/AnyArc.h"
#include "tests/support/Points.h"

namespace TamLib {
namespace {

RC_GTEST_PROP(ArcLaws, ChordHeightRadiusAndSweepAgree, ()) {
    const Arc arc = AnyArc(false, 5);
    const double chord = arc.Length2d(), h = std::fabs(arc.height);
    const double radius = (chord * chord / 4 + h * h) / (2 * h);
    RC_ASSERT(std::fabs(arc.Radius() - radius) < 1e-9 * radius);
    RC_ASSERT(std::fabs(arc.SweepAngle() - 4 * std::atan(2 * h / chord)) < 1e-12);
    RC_ASSERT(std::fabs(2 * radius * std::sin(arc.SweepAngle() / 2) - chord) < 1e-8 * chord);
    RC_ASSERT(std::fabs(arc.Length() - radius * arc.SweepAngle()) < 1e-8 * arc.Length());
    // Area of the segment by the angle alone.
    const double area = radius * radius / 2 * (arc.SweepAngle() - std::sin(arc.SweepAngle()));
    RC_ASSERT(std::fabs(arc.SegmentArea() - area) < 1e-8 * (area + radius * radius));
}

RC_GTEST_PROP(ArcLaws, BulgeThereAndBackIsTheHeight, ()) {
    Arc arc = AnyArc(false, 5);
    arc.z2 = arc.z1;
    const double height = arc.height;
    RC_ASSERT((arc.Bulge() > 0) == (height < 0));
    RC_ASSERT(std::fabs(std::fabs(arc.Bulge()) - std::tan(arc.SweepAngle() / 4)) < 1e-9);
    arc.SetBulge(arc.Bulge());
    RC_ASSERT(std::fabs(arc.height - height) < 1e-8 * std::fabs(height));
}

RC_GTEST_PROP(ArcLaws, EndsAndMiddleLieOnTheCircle, (bool onMap)) {
    const Arc arc = AnyArc(onMap, 5);
    const Circle circle(arc);
    const double slack = Slack(arc);
    RC_ASSERT(std::fabs(Distance2d(circle.centre, arc.Start()) - circle.radius) < slack);
    RC_ASSERT(std::fabs(Distance2d(circle.centre, arc.End()) - circle.radius) < slack);
    Point3d middle;
    arc.PointAtFraction(0.5, middle);
    RC_ASSERT(std::fabs(Distance2d(circle.centre, middle) - circle.radius) < slack);
    RC_ASSERT(std::fabs(Distance2d(middle, arc.MidPoint()) - std::fabs(arc.height)) < slack);
    RC_ASSERT(arc.IsOnBulgeSide(middle));
}

RC_GTEST_PROP(ArcLaws, AboutItsOwnCentreItIsTheSameArc, (bool onMap)) {
    const Arc arc = AnyArc(onMap, 5);
    // A centre near the chord counts as on it.
    Point3d centre;
    arc.Centre(centre);
    RC_PRE(static_cast<const Line&>(arc).Side(centre, true) != 0);
    const Arc again(centre, arc, arc.height > 0);
    RC_ASSERT(std::fabs(again.height - arc.height) < 100 * Slack(arc));
    // The other way round is the rest of the circle.
    const Arc rest(centre, arc, arc.height < 0);
    RC_ASSERT(std::fabs(rest.SweepAngle() + arc.SweepAngle() - 2 * kPi) < 1e-4);
}

RC_GTEST_PROP(ArcLaws, ThroughItsOwnPointItIsTheSameArc, (bool onMap)) {
    const Arc arc = AnyArc(onMap, 5);
    Point3d through;
    arc.PointAtFraction(*rc::gen::inRange(10, 91) / 100.0, through);
    RC_PRE(static_cast<const Line&>(arc).Side(through, true) != 0);
    const Arc again(arc, through);
    const double relative = onMap ? 1e-4 : 1e-8;
    RC_ASSERT(std::fabs(again.height - arc.height) <
              relative * (std::fabs(arc.height) + arc.Radius()));
}

RC_GTEST_PROP(ArcLaws, AnglesSpanTheSweepClockwise, ()) {
    const Arc arc = AnyArc(false, 5);
    const double start = arc.StartAngle(), end = arc.EndAngle();
    RC_ASSERT(start >= 0 && start <= 2 * kPi && end >= 0 && end <= 2 * kPi);
    const double turned = start >= end ? start - end : start - end + 2 * kPi;
    RC_ASSERT(std::fabs(turned - arc.SweepAngle()) < 1e-7);
}

RC_GTEST_PROP(ArcLaws, BoxHoldsEveryPointAndTouchesTheArcOnEachSide, ()) {
    const Arc arc = AnyArc(false, 5);
    const Box box = arc.GetBox();
    double xMin = 1e9, xMax = -1e9, yMin = 1e9, yMax = -1e9;
    for (int i = 0; i <= 2000; ++i) {
        Point3d p;
        arc.PointAtFraction(i / 2000.0, p);
        xMin = std::min(xMin, p.x);
        xMax = std::max(xMax, p.x);
        yMin = std::min(yMin, p.y);
        yMax = std::max(yMax, p.y);
    }
    // Floats; between the samples the arc rises by up to r (1 - cos); points within the dead band
    // of the chord are not looked at.
    const double rise = arc.Radius() * (1 - std::cos(arc.SweepAngle() / 4000));
    const double slack = rise + 1e-6 * (1000 + arc.Radius()) + 0.01 / arc.Length2d();
    RC_ASSERT(std::fabs(box.xMin - xMin) < slack);
    RC_ASSERT(std::fabs(box.xMax - xMax) < slack);
    RC_ASSERT(std::fabs(box.yMin - yMin) < slack);
    RC_ASSERT(std::fabs(box.yMax - yMax) < slack);
}

RC_GTEST_PROP(ArcLaws, ReversedWithTheOtherSignItIsTheSameArc, ()) {
    const Arc arc = AnyArc(false, 5);
    Arc back = arc;
    back.Reverse();
    back.SetHeight(-arc.height);
    const double fraction = *rc::gen::inRange(0, 101) / 100.0;
    Point3d here, there;
    arc.PointAtFraction(fraction, here);
    back.PointAtFraction(1 - fraction, there);
    RC_ASSERT(Distance2d(here, there) < 100 * Slack(arc));
    RC_ASSERT(arc.Length() == back.Length());
}

RC_GTEST_PROP(ArcLaws, SidesOfAnArcAreInsideAndOutsideOfItsCircle, ()) {
    const Arc arc = AnyArc(false, 5);
    Point3d on, centre;
    arc.PointAtFraction(*rc::gen::inRange(5, 96) / 100.0, on);
    arc.Centre(centre);
    const Point3d out = (on - centre) / arc.Radius();
    const Point3d step(out.x * 0.01, out.y * 0.01, 0);
    const int outside = arc.height > 0 ? -1 : 1;
    RC_ASSERT(arc.Side(on, false) == 0);
    RC_ASSERT(arc.Side(on - step, false) == -outside);
    // Beyond the band of the chord.
    RC_PRE(static_cast<const Line&>(arc).Side(on, true) != 0);
    RC_ASSERT(arc.Side(on + step, false) == outside);
    RC_ASSERT(arc.InSweep(on + step));
}

}  // namespace
}  // namespace TamLib
