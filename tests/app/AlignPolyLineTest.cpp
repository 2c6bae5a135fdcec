// The command's class by itself: its constants, its construction and the angle at a point.
#include "app/AlignPolyLine.h"

#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>
#include <random>
#include <vector>

#include "BruteForce.h"

namespace {

using app_test::Vertex;

class Line : public AlignPolyLine {
  public:
    Line(std::initializer_list<Vertex> vertices) : Line(std::vector<Vertex>(vertices)) {}
    explicit Line(const std::vector<Vertex>& vertices) {
        for (const Vertex& vertex : vertices) Append({vertex.x, vertex.y, vertex.z});
    }

    double Angle(Vertex at) {
        double angle = -1.0;
        EXPECT_TRUE(GetAngleAtPoint({at.x, at.y, at.z}, angle));
        return angle;
    }
};

TEST(AlignConstants, AreShortDecimals) {
    EXPECT_EQ(ALIGN_HALF_TURN, 3.14159);
    EXPECT_EQ(ALIGN_UPRIGHT_LOW, 1.5708);
    EXPECT_EQ(ALIGN_UPRIGHT_HIGH, 4.7124);
    EXPECT_EQ(ALIGN_FULL_TURN, 6.2832);
}

TEST(AlignPolyLine, StartsWithoutVerticesWithoutBufferAndGrowsByFive) {
    AlignPolyLine line;
    EXPECT_EQ(line.count, 0u);
    EXPECT_EQ(line.capacity, 0u);
    EXPECT_EQ(line.data, nullptr);
    EXPECT_EQ(line.increment, 5u);
    EXPECT_EQ(line.entityIds.length(), 0);
    EXPECT_EQ(line.entityIds.physicalLength(), 0);
    EXPECT_EQ(line.entityIds.growLength(), 8);
    EXPECT_FALSE(line.flipSymbols);
}

TEST(AlignPolyLine, IdsGrowByEightThenByTheirNumberThenBy8192) {
    AlignPolyLine line;
    std::vector<int> capacities;
    for (int i = 0; i < 30000; ++i) {
        line.entityIds.append(AcDbObjectId());
        if (capacities.empty() || capacities.back() != line.entityIds.physicalLength()) {
            capacities.push_back(line.entityIds.physicalLength());
        }
    }
    EXPECT_EQ(capacities, (std::vector<int>{8, 16, 32, 64, 128, 256, 512, 1024, 2048, 4096, 8192,
                                            16384, 24576, 32768}));
}

TEST(AngleAtPoint, PointsAgainstTheDirection) {
    const double pi = 3.141592653589793;
    EXPECT_EQ(Line({{0, 0}, {10, 0}}).Angle({5, 1}), pi);
    EXPECT_EQ(Line({{10, 0}, {0, 0}}).Angle({5, 1}), 0.0);
    EXPECT_EQ(Line({{0, 0}, {0, 10}}).Angle({1, 5}), -1.5707963267948966);
    EXPECT_EQ(Line({{0, 10}, {0, 0}}).Angle({1, 5}), 1.5707963267948966);
}

// 0 - y is +0 for a direction along +x, so that the angle is pi; a negated y would give -pi.
TEST(AngleAtPoint, EastGivesPlusPiAndWestPlusZero) {
    EXPECT_GT(Line({{0, 0}, {10, 0}}).Angle({5, 1}), 0.0);
    EXPECT_FALSE(std::signbit(Line({{10, 0}, {0, 0}}).Angle({5, 1})));
    EXPECT_GT(Line({{0, -0.0}, {10, -0.0}}).Angle({5, 1}), 0.0);
}

TEST(AngleAtPoint, OfALineWithoutLengthIsJustBelowAFullTurn) {
    EXPECT_EQ(Line({{3, 4}, {3, 4}}).Angle({0, 0}), 6.283185307179585);
    EXPECT_EQ(Line({{3, 4}, {3 + 0.00009, 4}}).Angle({0, 0}), 6.283185307179585);
    EXPECT_EQ(Line({{3, 4}, {3 + 0.00011, 4}}).Angle({0, 0}), 3.141592653589793);
}

TEST(AngleAtPoint, WithFewerThanTwoVerticesIsThatOfALineWithoutLength) {
    EXPECT_EQ(Line({}).Angle({1, 1}), 6.283185307179585);
    EXPECT_EQ(Line({{3, 4}}).Angle({1, 1}), 6.283185307179585);
}

TEST(AngleAtPoint, OfAVerticalSegmentIsZero) {
    EXPECT_EQ(Line({{3, 4, 0}, {3, 4, 10}}).Angle({1, 1}), 0.0);
    EXPECT_EQ(Line({{3, 4, 10}, {3, 4, 0}}).Angle({1, 1}), 0.0);
}

TEST(AngleAtPoint, OfASteepSegmentIsThatOfItsShortPlanVector) {
    EXPECT_EQ(Line({{0, 0, 0}, {0, 1e-3, 100}}).Angle({1, 1}), -1.5707963267948966);
}

TEST(AngleAtPoint, IgnoresHeights) {
    const Line flat({{0, 0, 0}, {10, 0, 0}, {10, 10, 0}});
    Line line(flat);
    EXPECT_EQ(line.Angle({11, 5, 500}), line.Angle({11, 5, 0}));
    EXPECT_EQ(line.Angle({11, 5, 500}), -1.5707963267948966);
}

TEST(AngleAtPoint, OfAPointEquallyNearToTwoSegmentsIsThatOfTheFirst) {
    Line corner({{0, 0}, {10, 0}, {10, 10}});
    EXPECT_EQ(corner.Angle({12, -2}), 3.141592653589793);
    EXPECT_EQ(corner.Angle({9, 1}), 3.141592653589793);
}

// 22 * (15 / 22) is below 15, so the walk stops at the corner.
TEST(AngleAtPoint, NearTheSecondSegmentOf15And7IsThatOfTheFirst) {
    ASSERT_LT(22.0 * (15.0 / 22.0), 15.0);
    Line line({{0, 0}, {15, 0}, {15, 7}});
    EXPECT_EQ(line.NearestSegment({16, 5, 0}, nullptr, nullptr), 1);
    EXPECT_EQ(line.Angle({16, 5}), 3.141592653589793);
}

TEST(AngleAtPoint, NearTheSecondSegmentOf15And8IsItsOwn) {
    ASSERT_EQ(23.0 * (15.0 / 23.0), 15.0);
    EXPECT_EQ(Line({{0, 0}, {15, 0}, {15, 8}}).Angle({16, 5}), -1.5707963267948966);
}

TEST(AngleAtPoint, NearTheLastSegmentOfAClosedLineIsThatOfTheLast) {
    Line square({{0, 0}, {8, 0}, {8, 8}, {0, 8}, {0, 0}});
    EXPECT_EQ(square.NearestSegment({-1, 4, 0}, nullptr, nullptr), 3);
    EXPECT_EQ(square.Angle({-1, 4}), 1.5707963267948966);
}

TEST(AngleAtPoint, OfAZeroSegmentInBetweenIsFoundByWalkingPastIt) {
    // Both vertices at (10, 0) have the same sum; the walk passes the second one too.
    EXPECT_EQ(Line({{0, 0}, {10, 0}, {10, 0}, {10, 10}}).Angle({11, 6}), -1.5707963267948966);
}

// Every answer against the plain calculation, on lines of different kinds near and far.
class AngleSweep : public ::testing::TestWithParam<double> {
  protected:
    static std::vector<Vertex> RandomLine(std::mt19937& random, double origin, int kind) {
        std::uniform_real_distribution<double> free(-100.0, 100.0);
        std::uniform_int_distribution<int> whole(-5, 5);
        std::vector<Vertex> line;
        const int count = 2 + static_cast<int>(random() % 12);
        for (int i = 0; i < count; ++i) {
            Vertex vertex;
            switch (kind) {
                case 0:  // anywhere in space
                    vertex = {origin + free(random), origin / 4 + free(random), free(random)};
                    break;
                case 1:  // on a small grid, with many ties, doubled vertices and right angles
                    vertex = {origin + whole(random), origin / 4 + whole(random), 0.0};
                    break;
                default:  // almost one point
                    vertex = {origin + 1e-4 * whole(random), origin / 4 + 1e-4 * whole(random),
                              0.0};
            }
            line.push_back(vertex);
        }
        if (random() % 3 == 0) line.push_back(line.front());
        return line;
    }
};

TEST_P(AngleSweep, AgreesWithThePlainCalculationToTheBit) {
    std::mt19937 random(20091117);
    std::uniform_real_distribution<double> free(-120.0, 120.0);
    std::uniform_int_distribution<int> whole(-6, 6);
    int roundedBack = 0;
    for (int round = 0; round < 3000; ++round) {
        const std::vector<Vertex> vertices = RandomLine(random, GetParam(), round % 3);
        Line line(vertices);
        for (int i = 0; i < 8; ++i) {
            const Vertex at =
                i % 2 == 0
                    ? Vertex{GetParam() + free(random), GetParam() / 4 + free(random), free(random)}
                    : Vertex{GetParam() + whole(random), GetParam() / 4 + whole(random), 0.0};
            ASSERT_EQ(line.Angle(at), app_test::PlainAngle(vertices, at))
                << "round " << round << ", point " << i;
            const std::size_t nearest = app_test::NearestSegment(vertices, at);
            if (app_test::SegmentAfterRoundTrip(vertices, nearest) < nearest) ++roundedBack;
        }
    }
    EXPECT_GT(roundedBack, 0) << "the sweep never met the rounding that moves a segment back";
}

INSTANTIATE_TEST_SUITE_P(NearAndFar, AngleSweep, ::testing::Values(0.0, 25496000.0),
                         [](const auto& origin) { return origin.index == 0 ? "Near" : "Far"; });

}  // namespace
