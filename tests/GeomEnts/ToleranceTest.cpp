// Every tolerance of points, lines, planes, circles and boxes, just below, on and above it, at the
// origin and at a place on the map. Where coordinates of the map are too coarse for the value
// itself (steps of 3.7e-9 in x), the nearest ones on either side are taken.
#include <gtest/gtest.h>

#include <cmath>

#include "GeomEnts/Box.h"
#include "GeomEnts/Line.h"
#include "GeomEnts/Plane.h"
#include "GeomEnts/circle.h"
#include "GeomStructs/Point3dArray.h"

namespace TamLib {
namespace {

const Point3d kPlaces[] = {Point3d(), Point3d(25e6, 7e6, 0)};

// Asks `inside(value)` a tenth below and above the tolerance; it has to be true below alone.
template <class Ask>
void ExpectBelow(double tolerance, const Ask& inside) {
    for (const Point3d& base : kPlaces) {
        EXPECT_TRUE(inside(base, tolerance * 0.9)) << base.x;
        EXPECT_FALSE(inside(base, tolerance * 1.1)) << base.x;
    }
}

// The same strictly below, on and above at the origin, where each value can be had.
template <class Ask>
void ExpectStrictlyBelow(double tolerance, const Ask& inside) {
    ExpectBelow(tolerance, inside);
    EXPECT_TRUE(inside(Point3d(), std::nextafter(tolerance, 0.0)));
    EXPECT_FALSE(inside(Point3d(), tolerance));
    EXPECT_FALSE(inside(Point3d(), std::nextafter(tolerance, 1.0)));
}

Point3d Along(int axis, double value) {
    return {axis == 0 ? value : 0, axis == 1 ? value : 0, axis == 2 ? value : 0};
}

TEST(Tolerance, OfEqualPoints) {
    for (int axis = 0; axis < 3; ++axis) {
        for (const double sign : {1.0, -1.0}) {
            ExpectStrictlyBelow(0.0001, [=](const Point3d& base, double value) {
                return Equals(base, base + Along(axis, sign * value));
            });
            ExpectStrictlyBelow(0.0001, [=](const Point3d& base, double value) {
                const Point3d other = base + Along(axis, sign * value);
                return Point3d::Compare(&base, &other) == 0;
            });
            ExpectStrictlyBelow(1e-6, [=](const Point3d& base, double value) {
                const Point3d other = base + Along(axis, sign * value);
                return Point3d::CompareArray(&base, &other) == 0;
            });
        }
    }
    ExpectStrictlyBelow(0.0001, [](const Point3d& base, double value) {
        return Equals2d(base, base + Point3d(value, -value, 99));
    });
    // A billionth is less than a step of x and y of the map; z has it.
    ExpectStrictlyBelow(1e-9, [](const Point3d& base, double value) {
        const Point3d other = base + Point3d(0, 0, value);
        return Point3d::CompareFine(&base, &other) == 0;
    });
}

TEST(Tolerance, OfPointsThatHaveNoAngle) {
    const double none = std::atan(1.0) * 7.999999999999999;
    ExpectStrictlyBelow(0.0001, [=](const Point3d& base, double value) {
        return Angle(base, base + Point3d(value, 0, 0)) == none;
    });
    ExpectStrictlyBelow(0.0001, [=](const Point3d& base, double value) {
        return SlopeAngle(base, base + Point3d(0, 0, value)) == none;
    });
    ExpectStrictlyBelow(0.0001, [=](const Point3d& base, double value) {
        return ElevationDifference(base, base + Point3d(0, value, 0)) == none;
    });
    ExpectStrictlyBelow(0.0001, [=](const Point3d& base, double value) {
        return Line(base, base + Point3d(0, value, 0)).Azimuth() == none;
    });
}

TEST(Tolerance, OfVectorsTooShortToHaveADirection) {
    for (int axis = 0; axis < 3; ++axis) {
        ExpectStrictlyBelow(0.0001, [=](const Point3d& base, double value) {
            const Point3d v = (base + Along(axis, value)) - base;
            return VectorLength(v.Unit()) < 0.5;
        });
    }
    // By the square: 0.01 and its neighbours.
    ExpectBelow(0.01, [](const Point3d& base, double value) {
        const Point3d v = (base + Point3d(value, 0, 0)) - base;
        return !IsSameDirection(v, {5, 0, 0});
    });
}

TEST(Tolerance, OfSidesOfALine) {
    // A line one long: the cross product is the distance.
    const double limit = std::sqrt(0.0001);
    ExpectStrictlyBelow(limit, [](const Point3d& base, double value) {
        return Line(base, base + Point3d(1, 0, 0)).Side(base + Point3d(0.5, value, 0), true) == 0;
    });
}

TEST(Tolerance, OfLinesTooShortToMeasureFrom) {
    const auto sideOne = [](const Point3d& base, double value) {
        int side = 0;
        double parameter = 7;
        // Left of the direction, if there is one.
        Line(base, base + Point3d(value, 0, 0))
            .Distance2d(base + Point3d(0, 1, 0), &side, &parameter);
        return side == 1;
    };
    EXPECT_TRUE(sideOne(kPlaces[0], std::nextafter(1e-8, 0)));
    EXPECT_FALSE(sideOne(kPlaces[0], 1e-8));
    EXPECT_FALSE(sideOne(kPlaces[0], std::nextafter(1e-8, 1)));
    const double step = std::nextafter(25e6, 1e9) - 25e6;
    EXPECT_TRUE(sideOne(kPlaces[1], 2 * step));   // 7.5e-9
    EXPECT_FALSE(sideOne(kPlaces[1], 3 * step));  // 1.1e-8

    ExpectStrictlyBelow(0.0001, [](const Point3d& base, double value) {
        double along = 7;
        Line(base, base + Point3d(value, 0, 0)).LineDistance2d(base + Point3d(5, 0, 0), &along);
        return along == 0.0;
    });
    ExpectStrictlyBelow(0.0001, [](const Point3d& base, double value) {
        Point3d foot;
        Line(base, base + Point3d(value, 0, 0)).Project(foot, base + Point3d(5, 0, 0));
        return foot.x == base.x;
    });
}

TEST(Tolerance, OfHeightsAtTheEndsOfALine) {
    // 1 from end to end, so that the parameter is the height above the base.
    for (const Point3d& base : kPlaces) {
        const Line line(base, base + Point3d(8, 0, 1));
        Point3d p;
        EXPECT_EQ(2, line.PointAtZ(std::nextafter(0.0001, 0), p));
        EXPECT_EQ(1, line.PointAtZ(0.0001, p));
        EXPECT_EQ(2, line.PointAtZ(-0.00009, p));
        EXPECT_EQ(0, line.PointAtZ(-0.0001, p));
        EXPECT_EQ(2, line.PointAtZ(1 - 0.00009, p));
        EXPECT_EQ(1, line.PointAtZ(1 - 0.00011, p));
        EXPECT_EQ(2, line.PointAtZ(1.00009, p));
        EXPECT_EQ(0, line.PointAtZ(1.00011, p));
    }
}

TEST(Tolerance, OfSlopesThatCountAsParallel) {
    ExpectBelow(2e-8, [](const Point3d& base, double value) {
        // 10 metres of rise at the far end.
        const double reach = 10 / value;
        const Line level(base, base + Point3d(reach, 0, 0));
        return level.IsParallel2d(Line(base, base + Point3d(reach, 10, 0)));
    });
}

TEST(Tolerance, OfPointsOnALine) {
    ExpectBelow(0.0001, [](const Point3d& base, double value) {
        return Line(base, base + Point3d(8, 0, 0)).PointOn(base + Point3d(4, value, 0), 0.0001);
    });
    ExpectBelow(0.0001, [](const Point3d& base, double value) {
        Point3d foot;
        return Line(base, base + Point3d(8, 0, 0))
                   .IsBelow(base + Point3d(4, -value, 0), foot, true) == 2;
    });
    ExpectBelow(0.0001, [](const Point3d& base, double value) {
        Point3d foot;
        return Line(base, base + Point3d(value, 8, 0))
                   .IsBelow(base + Point3d(0, 4, 0), foot, true) == 2;
    });
}

TEST(Tolerance, OfInterceptsOfParallelLines) {
    // Slopes of 1, so that no end lies on the other line while the intercepts differ by less.
    for (const Point3d& base : kPlaces) {
        const auto meets = [&](double value) {
            Point3d p;
            const Line line(base, base + Point3d(8, 8, 0));
            return line.Intersect(
                       Line(base + Point3d(0, value, 0), base + Point3d(8, 8 + value, 0)), p,
                       false) == 1;
        };
        EXPECT_TRUE(meets(0.00009));
        EXPECT_FALSE(meets(0.00011));
    }
}

TEST(Tolerance, OfSegmentsThatCountAsParallelInSpace) {
    // Unit vectors: the determinant is the square of the sine of their angle, 1e-7 at 0.000316228.
    const auto parallel = [](const Point3d& base, double angle) {
        const Line here(base, base + Point3d(1, 0, 0));
        // It crosses above the far end, so that the numerator, which has 1e-7 for a limit too, is
        // nearly the determinant; parallel lines are measured from the start of the other, at 0.45.
        const Point3d cross = base + Point3d(0.95, 0, 1);
        const Point3d half(0.5 * std::cos(angle), 0.5 * std::sin(angle), 0);
        Point3d onHere;
        here.SegmentDistance(Line(cross - half, cross + half), &onHere, nullptr);
        return std::fabs(onHere.x - base.x) < 0.7;
    };
    ExpectBelow(3.16227766e-4, parallel);
}

TEST(Tolerance, OfPlanes) {
    ExpectStrictlyBelow(0.0001, [](const Point3d& base, double value) {
        return Plane(Point3d(0, 0, 1), base).Side(base + Point3d(5, 5, value)) == 0;
    });
    ExpectBelow(0.0001, [](const Point3d& base, double value) {
        Point3d p;
        double t = 99;
        Plane(Point3d(0, 0, 1), base).IntersectLine(Line(base, base + Point3d(8, 0, value)), p, &t);
        return t == 99;
    });
    ExpectBelow(0.01, [](const Point3d& base, double value) {
        return Plane(Point3d(value, 0, 0), base).IsInvalid();
    });
    ExpectBelow(0.01, [](const Point3d& base, double value) {
        Point3d direction, p;
        return !Plane(Point3d(0, 0, 1), base)
                    .IntersectPlane(Plane(Point3d(value, 0, 1), base), direction, p);
    });
}

TEST(Tolerance, OfCircles) {
    const auto touches = [](const Point3d& base, double value) {
        // Radius 1: the squares differ by 2 e + e^2.
        return Circle(base, 1).Contains(base + Point3d(0, std::sqrt(1 + value), 0), true) == 2;
    };
    ExpectBelow(0.0001, touches);
    ExpectBelow(0.0001, [](const Point3d& base, double value) {
        Point3dArrayBase<Point3d> points;
        Circle(base, 2).Intersect(Circle(base + Point3d(5 + value, 0, 0), 3), points);
        return points.count == 1;
    });
    ExpectBelow(0.0001, [](const Point3d& base, double value) {
        Point3dArrayBase<Point3d> points;
        Circle(base, 2).Intersect(Circle(base + Point3d(5 - value, 0, 0), 3), points);
        return points.count == 1;
    });
    // The discriminant of a line 1 long at height 2 + e: 4 - (2 + e)^2.
    for (const Point3d& base : kPlaces) {
        const auto points = [&](double discriminant) {
            const double y = std::sqrt(4 - discriminant);
            Point3dArrayBase<Point3d> hits;
            Circle(base, 2).Intersect(Line(base + Point3d(-0.5, y, 0), base + Point3d(0.5, y, 0)),
                                      hits);
            return hits;
        };
        EXPECT_EQ(0u, points(-0.00011).count);
        EXPECT_EQ(2u, points(-0.00009).count);
        EXPECT_EQ(points(-0.00009)[0].x, points(-0.00009)[1].x);
        EXPECT_EQ(points(0.00009)[0].x, points(0.00009)[1].x);
        EXPECT_EQ(2u, points(0.00011).count);
        EXPECT_GT(points(0.00011)[0].x, points(0.00011)[1].x + 0.02);
    }
    // Level chords choose another reference, which adds its height.
    ExpectBelow(0.0001, [](const Point3d& base, double value) {
        const Circle circle(base, base + Point3d(2, value, 0), base + Point3d(1, 1, 3));
        return circle.centre.z == 4.0;
    });
    ExpectBelow(0.0001, [](const Point3d& base, double value) {
        const Circle circle(base, base + Point3d(1, 1, 3), base + Point3d(2, value, 0));
        return circle.centre.z == 4.0;
    });
}

TEST(Tolerance, OfRays) {
    const auto misses = [](const Point3d& base, double value) {
        const Box box(base + Point3d(-1, -1, -1), base + Point3d(1, 1, 1));
        return !box.RayHit(base + Point3d(0, 0, -5), {0, 0, value}, nullptr);
    };
    ExpectStrictlyBelow(1e-10, misses);
    // A component too small to reach a plane by, of a unit vector.
    ExpectBelow(1e-9, [](const Point3d& base, double value) {
        const double reach = 6e9;
        const Box box(Point3d(base.x - 2, base.y - reach, -1),
                      Point3d(base.x + 2, base.y + reach, 1));
        return !box.RayHit(base + Point3d(0, 0, -3), {0, 1, value}, nullptr);
    });
}

}  // namespace
}  // namespace TamLib
