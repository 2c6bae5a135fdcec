// What holds for all lines, points and boxes, over random input.
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cmath>
#include <vector>

#include "GeomEnts/Box.h"
#include "GeomEnts/Line.h"
#include "GeomEnts/Plane.h"

namespace TamLib {
namespace {

// Coordinates in millimetres about the origin or about a place on the map.
Point3d AnyPoint(bool onMap) {
    const auto coordinate = [] { return *rc::gen::inRange(-100000, 100000) / 1000.0; };
    Point3d p(coordinate(), coordinate(), coordinate());
    if (onMap) p += Point3d(25e6, 7e6, 0);
    return p;
}

// On a coarse grid, so that ends, directions and places coincide often.
Point3d GridPoint() {
    const auto coordinate = [] { return *rc::gen::inRange(-3, 4) * 1.0; };
    return {coordinate(), coordinate(), coordinate()};
}

RC_GTEST_PROP(PointLaws, UnitVectorsHaveLengthOne, ()) {
    const Point3d v = AnyPoint(false);
    RC_PRE(VectorLength(v) >= 0.0001);
    RC_ASSERT(std::fabs(VectorLength(v.Unit()) - 1) < 1e-12);
}

RC_GTEST_PROP(PointLaws, ComparisonsAreAntisymmetric, ()) {
    const Point3d a = GridPoint(), b = GridPoint();
    RC_ASSERT(Point3d::Compare(&a, &b) == -Point3d::Compare(&b, &a));
    RC_ASSERT(Point3d::CompareFine(&a, &b) == -Point3d::CompareFine(&b, &a));
    RC_ASSERT(Point3d::CompareArray(&a, &b) == -Point3d::CompareArray(&b, &a));
    RC_ASSERT(Point3d::CompareExact(&a, &b) == -Point3d::CompareExact(&b, &a));
}

RC_GTEST_PROP(PointLaws, TurningBackRestores, ()) {
    const Point3d before = AnyPoint(false), axis = AnyPoint(false);
    RC_PRE(VectorLength(axis) > 0.01);
    const double angle = *rc::gen::inRange(-7000, 7000) / 1000.0;
    Point3d after = before;
    after.RotateAxis(axis, angle);
    after.RotateAxis(axis, -angle);
    RC_ASSERT(Distance(before, after) < 1e-9);
}

RC_GTEST_PROP(PlaneLaws, FootLiesInThePlaneAtTheDistance, ()) {
    const Plane plane(AnyPoint(false), AnyPoint(false), AnyPoint(false));
    RC_PRE(VectorLength(plane.Normal()) > 1.0);
    const Point3d point = AnyPoint(false);
    Point3d foot;
    const double distance = plane.Project(point, foot);
    RC_ASSERT(plane.Distance(foot) < 1e-7);
    RC_ASSERT(std::fabs(distance - plane.Distance(point)) < 1e-7);
    RC_ASSERT(std::fabs(distance - Distance(point, foot)) < 1e-7);
}

RC_GTEST_PROP(LineLaws, DistanceDoesNotDependOnTheDirection, (bool onMap)) {
    const Line line(AnyPoint(onMap), AnyPoint(onMap));
    RC_PRE(line.Length2d() > 0.001);
    Line back = line;
    back.Reverse();
    const Point3d point = AnyPoint(onMap);
    int side = 0, backSide = 0;
    const double distance = line.Distance2d(point, &side, nullptr);
    RC_ASSERT(std::fabs(distance - back.Distance2d(point, &backSide, nullptr)) < 1e-6);
    RC_ASSERT(side == -backSide || distance < 1e-6);
}

RC_GTEST_PROP(LineLaws, TheFootIsWhereTheDistanceIsTaken, (bool onMap)) {
    const Line line(AnyPoint(onMap), AnyPoint(onMap));
    RC_PRE(line.Length2d() > 0.001);
    const Point3d point = AnyPoint(onMap);
    double t = 0;
    const double distance = line.Distance2d(point, nullptr, &t);
    RC_ASSERT(std::fabs(distance - Distance2d(point, line.PointAt(t))) < 1e-6);
}

RC_GTEST_PROP(LineLaws, SlantingPairsMeetWhicheverIsAskedAndHoweverDirected, ()) {
    const Line a(GridPoint(), GridPoint()), b(GridPoint(), GridPoint());
    RC_PRE(a.x1 != a.x2 && b.x1 != b.x2);
    Line backA = a, backB = b;
    backA.Reverse();
    backB.Reverse();
    Point3d p;
    const int code = a.Intersect(b, p, true);
    RC_ASSERT(b.Intersect(a, p, true) == code);
    RC_ASSERT(backA.Intersect(b, p, true) == code);
    RC_ASSERT(a.Intersect(backB, p, true) == code);
}

RC_GTEST_PROP(LineLaws, ACrossingLiesOnBothLines, (bool onMap)) {
    const Line a(AnyPoint(onMap), AnyPoint(onMap)), b(AnyPoint(onMap), AnyPoint(onMap));
    Point3d p;
    RC_PRE(a.Intersect(b, p, false) == 1);
    RC_ASSERT(a.Distance2d(p, nullptr, nullptr) < 1e-5);
    RC_ASSERT(b.Distance2d(p, nullptr, nullptr) < 1e-5);
}

RC_GTEST_PROP(LineLaws, SegmentDistanceIsSymmetric, ()) {
    const Line a(GridPoint(), GridPoint()), b(GridPoint(), GridPoint());
    RC_PRE(a.Length() > 0 && b.Length() > 0);
    Point3d onA, onB, backOnA, backOnB;
    const double distance = a.SegmentDistance(b, &onA, &onB);
    RC_ASSERT(std::fabs(distance - b.SegmentDistance(a, &backOnB, &backOnA)) < 1e-9);
    RC_ASSERT(distance <= Distance(a.Start(), b.Start()) + 1e-12);
    RC_ASSERT(distance <= Distance(a.End(), b.End()) + 1e-12);
}

RC_GTEST_PROP(LineLaws, OrderedFormsStartAtTheSmallerEnd, ()) {
    const Point3d a = GridPoint(), b = GridPoint();
    const Line line(a, b, true);
    const Point3d start = line.Start(), end = line.End();
    RC_ASSERT(Point3d::CompareExact(&start, &end) <= 0);
}

RC_GTEST_PROP(BoxLaws, BoxOfASetContainsItsPoints, (bool onMap)) {
    const auto count = *rc::gen::inRange<std::size_t>(1, 20);
    std::vector<Point3d> points;
    Box box;
    for (std::size_t i = 0; i < count; ++i) {
        points.push_back(AnyPoint(onMap));
        box.Add(points.back());
    }
    for (const Point3d& p : points) {
        RC_ASSERT(box.Contains(p));
        RC_ASSERT(box.Contains2d(p));
        Box one;
        one.Add(p);
        RC_ASSERT(box.Contains(one));
        RC_ASSERT(box.Overlaps(one));
    }
}

RC_GTEST_PROP(BoxLaws, IntersectionLiesInThisBox, ()) {
    Box a, b, cut;
    a.Add(GridPoint());
    a.Add(GridPoint());
    b.Add(GridPoint());
    b.Add(GridPoint());
    a.Intersection(b, cut);
    RC_ASSERT(a.Contains(cut));
    if (a.Overlaps(b)) RC_ASSERT(b.Contains(cut));
}

RC_GTEST_PROP(BoxLaws, WhatIsClampedIsInside, ()) {
    Box box;
    box.Add(AnyPoint(true));
    box.Add(AnyPoint(true));
    Point3d p = AnyPoint(true);
    box.Clamp(p);
    RC_ASSERT(box.Contains(p));
    RC_ASSERT(p.x >= box.xMin && p.x <= box.xMax && p.z >= box.zMin && p.z <= box.zMax);
}

}  // namespace
}  // namespace TamLib
