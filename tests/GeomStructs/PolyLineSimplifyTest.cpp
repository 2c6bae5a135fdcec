// Vertices thinned out: each limit just below, on and above, and everything against the plain walk.
#include <gtest/gtest.h>

#include "tests/GeomStructs/PlainChaining.h"
#include "tests/datastruct/ArrayFaults.h"

namespace TamLib {
namespace {

std::string Simplified(const Points& points, double deviation, double maxLength) {
    PolyLine line = MakeLine(points);
    const int kept = line.Simplify(deviation, maxLength);
    EXPECT_EQ(static_cast<std::uint32_t>(kept), line.count);
    return Text(line);
}

TEST(PolyLineSimplify, AStraightRunKeepsItsEndsAlone) {
    Points run;
    for (int i = 0; i <= 20; ++i) run.push_back({1.0 * i, 2.0 * i, 3.0 * i});
    EXPECT_EQ("0,0,0 20,40,60", Simplified(run, 0.01, 0.0));
}

TEST(PolyLineSimplify, BelowThreeVerticesNothingHappens) {
    EXPECT_EQ("", Simplified({}, 1, 0));
    EXPECT_EQ("1,2,3", Simplified({{1, 2, 3}}, 1, 0));
    PolyLine two = MakeLine({{1, 2, 3}, {1, 2, 3}});
    two.offset = {9, 9, 9};
    two.hasBounds = 1;
    EXPECT_EQ(2, two.Simplify(1, 0));
    EXPECT_EQ(9.0, two.offset.x);
    EXPECT_EQ(1, two.hasBounds);
}

TEST(PolyLineSimplify, NearDuplicatesGoFirst) {
    EXPECT_EQ("0,0,0 5,5,0", Simplified({{0, 0, 0}, {5e-8, 0, 0}, {5, 5, 0}}, 0, 0));
    EXPECT_EQ("0,0,0", Simplified({{0, 0, 0}, {5e-8, 0, 0}, {0, 5e-8, 7}}, 0, 0));
}

TEST(PolyLineSimplify, ATurnAboveAQuarterKeepsTheVertex) {
    // The deviation allows everything.
    const auto vertices = [](const Point3d& end) {
        PolyLine line = MakeLine({{0, 0, 0}, {10, 0, 0}, end});
        return line.Simplify(1e9, 0.0);
    };
    EXPECT_EQ(2, vertices({10, 10, 0}));  // exactly a quarter is not above
    EXPECT_EQ(2, vertices({10.001, 10, 0}));
    EXPECT_EQ(3, vertices({9.999, 10, 0}));
    EXPECT_EQ(3, vertices({0, 1, 0}));
}

TEST(PolyLineSimplify, DirectionsAboutMinusXCountAsATurn) {
    // Intended: 179 and -179 degrees differ by 358. The same run along +x keeps its ends alone.
    EXPECT_EQ("0,0,0 -10,0.125,0 -20,0,0",
              Simplified({{0, 0, 0}, {-10, 0.125, 0}, {-20, 0, 0}}, 1, 0));
    EXPECT_EQ("0,0,0 20,0,0", Simplified({{0, 0, 0}, {10, 0.125, 0}, {20, 0, 0}}, 1, 0));
}

TEST(PolyLineSimplify, TheSidewaysLimitIsNotPassedWhenReached) {
    // Seen from (1,0) the last one lies 0.5 aside of +x, to rounding.
    const double side =
        std::fabs(std::sin(Angle({1, 0, 0}, {2, 0.5, 0}) - Angle({0, 0, 0}, {1, 0, 0})) *
                  Distance2d({1, 0, 0}, {2, 0.5, 0}));
    const Points bend = {{0, 0, 0}, {1, 0, 0}, {2, 0.5, 0}};
    EXPECT_EQ("0,0,0 2,0.5,0", Simplified(bend, side, 0));
    EXPECT_EQ(Text(bend), Simplified(bend, std::nextafter(side, 0), 0));
}

TEST(PolyLineSimplify, TheProfileIsLookedAtBehindTheVertexAhead) {
    // A spike at the vertex behind the kept one is not seen while it is the one ahead as well.
    EXPECT_EQ("0,0,0 2,0,0", Simplified({{0, 0, 0}, {1, 0, 50}, {2, 0, 0}}, 0.1, 0));
    // A vertex farther on is: level up to 1, then up by 5.
    EXPECT_EQ("0,0,0 2,0,5 3,0,5",
              Simplified({{0, 0, 0}, {1, 0, 0}, {2, 0, 5}, {3, 0, 5}}, 0.1, 0));
    const Points rising = {{0, 0, 0}, {1, 0, 1}, {2, 0, 2.05}, {3, 0, 3}};
    EXPECT_EQ("0,0,0 3,0,3", Simplified(rising, 0.1, 0));
    EXPECT_EQ("0,0,0 2,0,2.0499999999999998 3,0,3", Simplified(rising, 0.03, 0));
}

TEST(PolyLineSimplify, TheLengthLimitIsToTheVertexBehindTheKeptOne) {
    const Points run = {{0, 0, 0}, {2, 0, 0}, {3, 0, 0}, {4, 0, 0}, {5, 0, 0}};
    EXPECT_EQ("0,0,0 5,0,0", Simplified(run, 0.1, 0.0));   // no limit
    EXPECT_EQ("0,0,0 5,0,0", Simplified(run, 0.1, -1.0));  // none either
    EXPECT_EQ("0,0,0 5,0,0", Simplified(run, 0.1, 2.0));   // not above
    // 2 is above 1.9: (2,0) is kept; from there each next one is 1 away, whatever goes.
    EXPECT_EQ("0,0,0 2,0,0 5,0,0", Simplified(run, 0.1, 1.9));
    // Measured in 3D.
    EXPECT_EQ(3, [] {
        PolyLine steep = MakeLine({{0, 0, 0}, {1, 0, 5}, {2, 0, 10}});
        return steep.Simplify(0.1, 5.0);
    }());
}

TEST(PolyLineSimplify, CoincidentPlacesHaveTheDirectionOfNone) {
    // Within 0.0001 in 3D but no near duplicates: their direction is just short of a full turn.
    const Points points = {{0, 0, 0}, {0.00005, 0, 0}, {5, 0, 0}, {9, 0, 0}};
    EXPECT_EQ(Text(SimplifyPlainly(points, 1, 0)), Simplified(points, 1, 0));
    EXPECT_EQ(Text(Points{points[0], points[1], points[3]}), Simplified(points, 1, 0));
}

TEST(PolyLineSimplify, BoxAndOffsetAreCleared) {
    PolyLine line = MakeLine({{0, 0, 0}, {1, 0, 0}, {2, 0, 0}});
    line.offset = {9, 9, 9};
    line.hasBounds = 1;
    line.sorted = true;
    EXPECT_EQ(2, line.Simplify(1, 0));
    EXPECT_EQ(0, line.hasBounds);
    EXPECT_EQ(0.0, line.offset.x);
    EXPECT_FALSE(line.sorted);
    EXPECT_EQ(10u, line.increment);
}

TEST(PolyLineSimplify, KeepsWhatThePlainWalkKeeps) {
    Numbers numbers(31);
    int gone = 0;
    for (int round = 0; round < 3000; ++round) {
        const double east = numbers.OneIn(3) ? 25e6 : 0, north = east == 0 ? 0 : 7e6;
        Points points;
        double bearing = numbers.Between(-4, 4), z = 0;
        Point3d p(east, north, 0);
        for (int i = numbers.Below(30); i > 0; --i) {
            points.push_back(p);
            bearing += numbers.Between(-0.3, 0.3) * (numbers.OneIn(10) ? 8 : 1);
            const double step = numbers.OneIn(12) ? 5e-5 : numbers.Between(0, 3);
            z += numbers.Between(-0.5, 0.5);
            p = {p.x + std::cos(bearing) * step, p.y + std::sin(bearing) * step, z};
        }
        PolyLine cleaned = MakeLine(points);
        cleaned.RemoveNearDuplicates(1e-7);
        const double deviation = numbers.One(std::vector<double>{0, 0.05, 0.5, 2, 50});
        const double maxLength = numbers.One(std::vector<double>{0, 0.5, 2, 9});
        const std::string expected =
            points.size() < 3   ? Text(points)
            : cleaned.count < 3 ? Text(cleaned)
                                : Text(SimplifyPlainly(PointsOf(cleaned), deviation, maxLength));
        PolyLine line = MakeLine(points);
        gone += static_cast<int>(points.size()) - line.Simplify(deviation, maxLength);
        ASSERT_EQ(expected, Text(line)) << "round " << round;
    }
    EXPECT_GT(gone, 3000);
}

TEST(PolyLineSimplify, RefusedMemoryLeavesThePolyline) {
    const Points points = {{0, 0, 0}, {1, 0, 0}, {2, 0, 0}};
    for (int n = 1;; ++n) {
        PolyLine line = MakeLine(points);
        test::MemoryFaults faults;
        faults.Fail(test::Request::any, n);
        const test::Raised raised = test::Catch([&] { line.Simplify(1, 0); });
        if (raised.type == "nothing") break;
        EXPECT_EQ(Text(points), Text(line));
    }
}

}  // namespace
}  // namespace TamLib
