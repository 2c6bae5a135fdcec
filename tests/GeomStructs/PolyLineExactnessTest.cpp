// The loops of PolyLine against the plain forms of the same queries, bit for bit, on random,
// degenerate and far-away input.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <string>

#include "tests/GeomStructs/PlainPolyLine.h"

namespace TamLib {
namespace {

// Equal to the bit; NaN equals NaN, 0.0 differs from -0.0.
bool SameBits(double a, double b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

void ExpectSameNearest(const PolyLine& line, const Point3d& point, const std::string& what) {
    const PlainNearest plain = NearestPlainly(line, point);
    double distance = -5;
    int side = 5;
    ASSERT_EQ(plain.index, line.NearestSegment(point, &distance, &side)) << what;
    ASSERT_TRUE(SameBits(plain.distance, distance)) << what;
    ASSERT_EQ(plain.side, side) << what;
    ASSERT_EQ(plain.index, line.NearestSegment(point)) << what;
    ASSERT_TRUE(SameBits(plain.distance, line.MinDistance2d(point))) << what;
    ASSERT_EQ(plain.side, line.SideOf(point)) << what;
}

void ExpectSameLengths(const PolyLine& line, const std::string& what) {
    const int count = static_cast<int>(line.count);
    ASSERT_TRUE(SameBits(LengthPlainly(line, count), line.Length())) << what;
    for (int i = -1; i <= count + 1; ++i) {
        const double length = LengthPlainly(line, i);
        ASSERT_TRUE(SameBits(length, line.LengthToVertex(i))) << what << " vertex " << i;
        Point3d direction;
        line.DirectionAtLength(&direction, length);
        const Point3d plain = DirectionPlainly(line, length);
        ASSERT_TRUE(SameBits(plain.x, direction.x) && SameBits(plain.y, direction.y) &&
                    SameBits(plain.z, direction.z))
            << what << " vertex " << i;
    }
}

class Generator {
  public:
    explicit Generator(unsigned seed) : random_(seed) {}

    double Real(double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(random_);
    }
    int Whole(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random_); }

    // A walk of `count` vertices about `base` with steps up to `step`. On a grid, equal distances,
    // equal vertices, vertical and collinear segments come up all the time.
    PolyLine Walk(int count, const Point3d& base, double step, bool grid) {
        PolyLine line(count);
        Point3d at = base;
        for (int i = 0; i < count; ++i) {
            line.Append(at);
            at += grid ? Point3d(Whole(-2, 2) * step, Whole(-2, 2) * step, Whole(-1, 1) * step)
                       : Point3d(Real(-step, step), Real(-step, step), Real(-step, step));
        }
        if (Whole(0, 3) == 0) line.Close();
        return line;
    }

  private:
    std::mt19937 random_;
};

TEST(PolyLineExactness, RandomWalks) {
    Generator random(1);
    for (const Point3d& base : {Point3d(), Point3d(25e6, 7e6, 100), Point3d(1e15, -1e15, 0)}) {
        for (int i = 0; i < 400; ++i) {
            const double step = std::pow(10.0, random.Whole(-6, 6));
            const bool grid = i % 2 == 0;
            const PolyLine line = random.Walk(random.Whole(2, 40), base, step, grid);
            const std::string what =
                "base " + std::to_string(base.x) + " walk " + std::to_string(i);
            ExpectSameLengths(line, what);
            for (int k = 0; k < 20; ++k) {
                const double reach = step * std::pow(10.0, random.Whole(-3, 3));
                Point3d p = *line.At(random.Whole(0, static_cast<int>(line.count) - 1));
                p += grid ? Point3d(random.Whole(-3, 3) * step, random.Whole(-3, 3) * step, 0)
                          : Point3d(random.Real(-reach, reach), random.Real(-reach, reach), 0);
                ExpectSameNearest(line, p, what + " point " + std::to_string(k));
            }
        }
    }
}

TEST(PolyLineExactness, PointsFarFromTheLine) {
    // The distances are so large that rounding decides between segments.
    Generator random(2);
    for (int i = 0; i < 2000; ++i) {
        const PolyLine line = random.Walk(20, {25e6, 7e6, 0}, 10, i % 2 == 0);
        const double far = std::pow(10.0, random.Whole(6, 18));
        ExpectSameNearest(line, {random.Real(-far, far), random.Real(-far, far), 0},
                          std::to_string(i));
    }
}

TEST(PolyLineExactness, LongSegmentsThatAllPassNearThePoint) {
    // Cancellation in the cross product is at its worst: the coordinates are large, the distances
    // tiny.
    Generator random(3);
    for (int i = 0; i < 2000; ++i) {
        const double size = std::pow(10.0, random.Whole(3, 12));
        PolyLine line(20);
        for (int k = 0; k < 20; ++k) {
            const double a = random.Real(0, 7), side = k % 2 == 0 ? size : -size;
            line.Append({side * std::cos(a), side * std::sin(a), 0});
        }
        ExpectSameNearest(line, {random.Real(-1, 1), random.Real(-1, 1), 0}, std::to_string(i));
    }
}

TEST(PolyLineExactness, PointsOnTheLine) {
    Generator random(4);
    for (int i = 0; i < 500; ++i) {
        const PolyLine line = random.Walk(30, {25e6, 7e6, 0}, 3, false);
        for (int k = 0; k + 1 < static_cast<int>(line.count); ++k) {
            ExpectSameNearest(line, line.GetSegment(k).PointAt(random.Real(0, 1)),
                              std::to_string(i));
            ExpectSameNearest(line, line[k], std::to_string(i));
        }
    }
}

TEST(PolyLineExactness, SegmentsAboutTheLengthThatCountsAsNone) {
    Generator random(5);
    for (int i = 0; i < 2000; ++i) {
        const PolyLine line = random.Walk(15, {}, 1e-8, i % 2 == 0);
        const double reach = std::pow(10.0, random.Whole(-9, 0));
        ExpectSameNearest(line, {random.Real(-reach, reach), random.Real(-reach, reach), 0},
                          std::to_string(i));
        ExpectSameLengths(line, std::to_string(i));
    }
}

TEST(PolyLineExactness, NumbersAtTheLimitsOfDouble) {
    const double infinity = std::numeric_limits<double>::infinity();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double largest = std::numeric_limits<double>::max();
    const double values[] = {0.0,     -0.0,    1.0,      -1.0,     1e-320,    1e-160,
                             -1e-160, 1e-150,  1e150,    -1e150,   1e155,     -1e155,
                             1e200,   largest, -largest, infinity, -infinity, nan};
    Generator random(6);
    const auto value = [&] { return values[random.Whole(0, 17)]; };
    for (int i = 0; i < 20000; ++i) {
        PolyLine line(8);
        for (int k = random.Whole(2, 8); k > 0; --k) line.Append({value(), value(), value()});
        ExpectSameNearest(line, {value(), value(), value()}, std::to_string(i));
    }
}

TEST(PolyLineExactness, EqualBeginningsHaveEqualSums) {
    Generator random(7);
    const PolyLine line = random.Walk(1001, {25e6, 7e6, 0}, 3, false);
    for (int vertices = 1; vertices <= 1000; vertices += 37) {
        PolyLine beginning(vertices);
        for (int i = 0; i < vertices; ++i) beginning.Append(line[i]);
        EXPECT_TRUE(SameBits(beginning.Length(), line.LengthToVertex(vertices - 1))) << vertices;
    }
}

}  // namespace
}  // namespace TamLib
