// Gaps closed between polylines: each rule, and everything against the plain walk.
#include <gtest/gtest.h>

#include "tests/GeomStructs/NewFaults.h"
#include "tests/GeomStructs/PlainLinking.h"
#include "tests/datastruct/ArrayFaults.h"

namespace TamLib {
namespace {

void Close(PolyArray& array, const GapSettings& s) {
    array.CloseGaps(s.angle, s.length, s.width, s.zTol, s.region, s.closeOpen, s.fromBothEnds);
}

std::string Joined(const std::vector<Points>& lines, const GapSettings& settings) {
    PolyArray array = MakeArray(lines);
    Close(array, settings);
    EXPECT_EQ(Text(PlainGaps(lines, settings).result), Text(array));
    return Text(array);
}

std::string Told(const std::vector<Points>& lines) {
    return Text(lines);
}

GapSettings Width(double width) {
    GapSettings settings;
    settings.width = width;
    return settings;
}
GapSettings Wedge(double angle, double length) {
    GapSettings settings;
    settings.angle = angle;
    settings.length = length;
    return settings;
}

const Points kLeft = {{0, 0, 0}, {10, 0, 0}};

TEST(CloseGaps, NothingIsNothing) {
    EXPECT_EQ("", Joined({}, Width(1)));
    EXPECT_EQ("0,0,0 10,0,0\n", Joined({kLeft}, Width(1)));
}

TEST(CloseGaps, EndsInTheSquareAreJoined) {
    EXPECT_EQ("0,0,0 10,0,0 11,0.5,0 20,0,0\n",
              Joined({kLeft, {{11, 0.5, 0}, {20, 0, 0}}}, Width(1.5)));
    // Turned where needed.
    EXPECT_EQ(Told({{{20, 0, 0}, {11, 0.5, 0}, {10, 0, 0}, {0, 0, 0}}}),
              Joined({kLeft, {{20, 0, 0}, {11, 0.5, 0}}}, Width(1.5)));
    // Farther than the half-side: apart, and in descending order.
    EXPECT_EQ(Told({{{11, 0.5, 0}, {20, 0, 0}}, kLeft}),
              Joined({kLeft, {{11, 0.5, 0}, {20, 0, 0}}}, Width(0.9)));
}

TEST(CloseGaps, EndsOnTheUpperBorderOfTheSquareAreOutsideOfIt) {
    const auto joins = [](double y) {
        PolyArray array = MakeArray({kLeft, {{10, y, 0}, {30, y + 20, 0}}});
        Close(array, Width(2));
        return array.count == 1;
    };
    EXPECT_TRUE(joins(1.999999));
    EXPECT_FALSE(joins(2.000001));
}

TEST(CloseGaps, EndsInTheWedgeAheadAreJoined) {
    // 4 ahead; half-angle 10 degrees allows 0.705 aside.
    const auto joins = [](double aside) {
        PolyArray array = MakeArray({kLeft, {{14, aside, 0}, {14, aside + 20, 0}}});
        Close(array, Wedge(10, 5));
        return array.count == 1;
    };
    EXPECT_TRUE(joins(0.0));
    EXPECT_TRUE(joins(0.7));
    EXPECT_TRUE(joins(-0.7));
    EXPECT_FALSE(joins(0.71));
    EXPECT_FALSE(joins(-0.71));
}

TEST(CloseGaps, AWedgeReachesTheLengthAhead) {
    const auto joins = [](double ahead) {
        PolyArray array = MakeArray({kLeft, {{10 + ahead, 0, 0}, {10 + ahead, 20, 0}}});
        Close(array, Wedge(10, 5));
        return array.count == 1;
    };
    EXPECT_TRUE(joins(4.999999));
    EXPECT_FALSE(joins(5.000001));
    EXPECT_FALSE(joins(-1));  // behind
}

TEST(CloseGaps, TheWedgeOfTheOtherEndCountsToo) {
    // (10,0) lies in the wedge that the lower line opens to the south; it is aside of the other.
    EXPECT_EQ(Told({{{0, 0, 0}, {10, 0, 0}, {10, 3, 0}, {10, 20, 0}}}),
              Joined({kLeft, {{10, 3, 0}, {10, 20, 0}}}, Wedge(10, 5)));
}

TEST(CloseGaps, AZeroAngleLeavesTheSquareAlone) {
    GapSettings settings = Wedge(0, 5);
    EXPECT_EQ(Told({{{13, 0, 0}, {20, 0, 0}}, kLeft}),
              Joined({kLeft, {{13, 0, 0}, {20, 0, 0}}}, settings));
    settings.width = 3.1;
    EXPECT_EQ(Told({{{0, 0, 0}, {10, 0, 0}, {13, 0, 0}, {20, 0, 0}}}),
              Joined({kLeft, {{13, 0, 0}, {20, 0, 0}}}, settings));
}

TEST(CloseGaps, HeightsHaveToDifferByLess) {
    const auto joins = [](double z) {
        PolyArray array = MakeArray({kLeft, {{11, 0, z}, {20, 0, z}}});
        GapSettings settings = Width(1.5);
        settings.zTol = 0.5;
        Close(array, settings);
        return array.count == 1;
    };
    EXPECT_TRUE(joins(0.49));
    EXPECT_FALSE(joins(0.5));
    EXPECT_FALSE(joins(-0.5));
}

TEST(CloseGaps, TheRegionHasToHoldTheOtherEnd) {
    PolyLine region = MakeLine({{10.5, -5, 0}, {12, -5, 0}, {12, 5, 0}, {10.5, 5, 0}});
    region.Close();
    GapSettings settings = Width(1.5);
    settings.region = &region;
    // Found from the right, whose wedge and square are around (11,0): the end (10,0) is outside.
    EXPECT_EQ(Told({{{11, 0, 0}, {20, 0, 0}}, kLeft}),
              Joined({kLeft, {{11, 0, 0}, {20, 0, 0}}}, settings));
    // Found from (10,0), which is outside: the other end alone is asked about.
    EXPECT_EQ(Told({{{10, -9, 0}, {10, 0, 0}, {11, 0, 0}, {5, 9, 0}}}),
              Joined({{{5, 9, 0}, {11, 0, 0}}, {{10, -9, 0}, {10, 0, 0}}}, settings));
    // An open region holds nothing.
    PolyLine open = MakeLine({{-99, -99, 0}, {99, -99, 0}, {99, 99, 0}, {-99, 99, 0}});
    settings.region = &open;
    EXPECT_EQ(Told({{{11, 0, 0}, {20, 0, 0}}, kLeft}),
              Joined({kLeft, {{11, 0, 0}, {20, 0, 0}}}, settings));
    open.Close();
    EXPECT_EQ(Told({{{0, 0, 0}, {10, 0, 0}, {11, 0, 0}, {20, 0, 0}}}),
              Joined({kLeft, {{11, 0, 0}, {20, 0, 0}}}, settings));
}

TEST(CloseGaps, EndsThatTouchNeedNothingElse) {
    PolyLine region = MakeLine({{90, 90, 0}, {91, 90, 0}, {91, 91, 0}});
    region.Close();
    GapSettings settings;  // no square, no wedge
    settings.zTol = 0;
    settings.region = &region;
    EXPECT_EQ(Told({{{0, 0, 0}, {10, 0, 0}, {20, 5, 0}}}),
              Joined({kLeft, {{10, 0, 0}, {20, 5, 0}}}, settings));
    // 0.00009 off in plan: equal, the vertex of the one that was searched from goes.
    EXPECT_EQ(1u, [&] {
        PolyArray array = MakeArray({kLeft, {{10.00009, -0.00009, 0}, {20, 5, 0}}});
        Close(array, settings);
        return array.count;
    }());
    EXPECT_EQ(2u, [&] {
        PolyArray array = MakeArray({kLeft, {{10.00011, 0, 0}, {20, 5, 0}}});
        Close(array, settings);
        return array.count;
    }());
}

TEST(CloseGaps, EndsThatTouchInPlanAtAnotherHeightKeepBothVertices) {
    EXPECT_EQ(Told({{{0, 0, 0}, {10, 0, 0}, {10, 0, 7}, {20, 5, 7}}}),
              Joined({kLeft, {{10, 0, 7}, {20, 5, 7}}}, GapSettings()));
}

TEST(CloseGaps, ClosedAndShortPolylinesComeFirstAndAsTheyAre) {
    const Points ring = {{50, 0, 0}, {60, 0, 0}, {60, 9, 0}, {50.00009, 0, 0}};
    const Points point = {{10.1, 0, 0}}, none;
    EXPECT_EQ(Told({ring, point, none, {{0, 0, 0}, {10, 0, 0}, {10.5, 0, 0}, {20, 0, 0}}}),
              Joined({ring, kLeft, point, {{10.5, 0, 0}, {20, 0, 0}}, none}, Width(1)));
}

TEST(CloseGaps, EndsThatAreExactlyTheSameAtInfinityMakeARingToo) {
    // An open one of these is the last in the descending order.
    const Points ring = {{-HUGE_VAL, 0, 0}, {50, 0, 0}, {-HUGE_VAL, 0, 0}};
    const Points open = {{-HUGE_VAL, 0, 0}, {50, 0, 0}, {-HUGE_VAL, 1, 0}};
    EXPECT_EQ(Told({ring, kLeft}), Joined({kLeft, ring}, Width(1)));
    EXPECT_EQ(Told({kLeft, open}), Joined({kLeft, open}, Width(1)));
}

TEST(CloseGaps, TheLastPolylineInOrderIsFollowedFirst) {
    // The middle one would find either neighbour; the last one, from x 20, takes it.
    EXPECT_EQ(Told({{{0, 0, 0}, {9, 0, 0}, {10, 0, 0}, {19, 0, 0}, {20, 0, 0}, {29, 0, 0}}}),
              Joined({{{10, 0, 0}, {19, 0, 0}}, {{20, 0, 0}, {29, 0, 0}}, {{0, 0, 0}, {9, 0, 0}}},
                     Width(1.5)));
}

TEST(CloseGaps, TheNearestIn3dIsTaken) {
    // From the start of `near`: in plan `high` is nearer than the end of the line on the left.
    const Points near = {{10.5, 0, 0}, {12, 5, 0}}, high = {{10.25, 0, 0.9}, {12, -5, 0}};
    EXPECT_EQ(Told({{{0, 0, 0}, {10, 0, 0}, {10.5, 0, 0}, {12, 5, 0}}, high}),
              Joined({kLeft, near, high}, Width(1)));
}

TEST(CloseGaps, EndsTooFarAboveEachOtherToMeasureStayApart) {
    // They touch in plan, but the square of their distance is no number any more.
    const Points high = {{0, 0, 1e200}, {10, 0, 1e200}}, low = {{10, 0, -1e200}, {20, 5, -1e200}};
    EXPECT_EQ(Told({low, high}), Joined({high, low}, GapSettings()));
}

TEST(CloseGaps, TheNearestPairIsJoinedThoughAnotherWasFound) {
    // Searched from the end at (10,0), only the far end of the short one is ahead in the wedge;
    // its other end is nearer and is where the join is made.
    const Points shortOne = {{14, 0.2, 0}, {11, 2, 0}};
    const std::string joined = Joined({{{0, 0, 0}, {10, 0, 0}}, shortOne}, Wedge(10, 5));
    EXPECT_EQ(Told({{{14, 0.2, 0}, {11, 2, 0}, {10, 0, 0}, {0, 0, 0}}}), joined);
}

TEST(CloseGaps, OfEqualDistancesTheTailWins) {
    // A square's sides: both ends of one are equally far from both ends of the other.
    const Points low = {{0, 0, 0}, {1, 0, 0}}, up = {{0, 1, 0}, {1, 1, 0}};
    // Last in order is `up`, from its tail (1,1): to the other's tail, (1,0), which is turned.
    EXPECT_EQ(Told({{{0, 1, 0}, {1, 1, 0}, {1, 0, 0}, {0, 0, 0}}}), Joined({low, up}, Width(1.2)));
}

TEST(CloseGaps, OfEqualDistancesTheOneThatTurnsNothingWins) {
    // Both ends of the short one are equally far from (5,0): its start goes to an end, and its end
    // to a start.
    const Points shortOne = {{4, 1, 0}, {4, -1, 0}};
    EXPECT_EQ(Told({{{20, 0, 0}, {5, 0, 0}, {4, 1, 0}, {4, -1, 0}}}),
              Joined({shortOne, {{20, 0, 0}, {5, 0, 0}}}, Width(1.5)));
    EXPECT_EQ(Told({{{4, 1, 0}, {4, -1, 0}, {5, 0, 0}, {20, 0, 0}}}),
              Joined({shortOne, {{5, 0, 0}, {20, 0, 0}}}, Width(1.5)));
}

TEST(CloseGaps, FromBothEndsLooksAtTheSecondEndToo) {
    // Around (20,0): of the first one the start is near enough, so that its end, which is nearer,
    // is not looked at; the other one is nearer than the start.
    const Points first = {{18.5, 1.5, 0}, {19.9, 0.1, 0}}, other = {{19, 0, 0}, {19, -9, 0}};
    const std::vector<Points> lines = {{{30, 0, 0}, {20, 0, 0}}, first, other};
    GapSettings settings = Width(2);
    EXPECT_EQ(Told({{{30, 0, 0}, {20, 0, 0}, {19, 0, 0}, {19, -9, 0}}, first}),
              Joined(lines, settings));
    settings.fromBothEnds = true;
    EXPECT_EQ(
        Told({{{30, 0, 0}, {20, 0, 0}, {19.9, 0.1, 0}, {18.5, 1.5, 0}, {19, 0, 0}, {19, -9, 0}}}),
        Joined(lines, settings));
}

TEST(CloseGaps, OpenOnesAreClosedOnRequest) {
    const Points horseshoe = {{0, 0, 0}, {5, 0, 0}, {5, 5, 0}, {0, 5, 0}, {0, 0.5, 0}};
    EXPECT_EQ(Told({horseshoe}), Joined({horseshoe}, Width(1)));
    GapSettings settings = Width(1);
    settings.closeOpen = true;
    Points closed = horseshoe;
    closed.push_back(closed[0]);
    EXPECT_EQ(Told({closed}), Joined({horseshoe}, settings));
    // Something nearer is joined, and then the ends are too far apart.
    Points longer = horseshoe;
    longer.insert(longer.end(), {{0, 0.4, 0}, {-5, 0.4, 0}});
    EXPECT_EQ(Told({longer}), Joined({horseshoe, {{0, 0.4, 0}, {-5, 0.4, 0}}}, settings));
    // Equally near: the other polyline, which is found before the own end.
    longer = horseshoe;
    longer.insert(longer.end(), {{-0.5, 0.5, 0}, {-2, -2, 0}});
    EXPECT_EQ(Told({longer}), Joined({horseshoe, {{-2, -2, 0}, {-0.5, 0.5, 0}}}, settings));
    // Its ends touch in plan at another height: closed by a vertical edge.
    const Points spiral = {{0, 0, 0}, {5, 0, 0}, {5, 5, 0}, {0, 0, 9}};
    Points lid = spiral;
    lid.push_back(lid[0]);
    settings.zTol = 0;
    EXPECT_EQ(Told({lid}), Joined({spiral}, settings));
}

TEST(CloseGaps, TheArrayComparesByFirstVertexAfterwardsAndIsNotSorted) {
    PolyArray array = MakeArray({kLeft, {{50, 0, 0}, {60, 0, 0}}});
    array.sorted = true;
    Close(array, Width(1));
    EXPECT_EQ(&PolyArray::Compare, array.compare);
    EXPECT_FALSE(array.sorted);
    EXPECT_EQ(Told({{{50, 0, 0}, {60, 0, 0}}, kLeft}), Text(array));
}

TEST(CloseGaps, APolylineThatNothingJoinsStaysTheSameObject) {
    PolyArray array = MakeArray({kLeft, {{50, 0, 0}, {60, 0, 0}}, {{60.5, 0, 0}, {70, 0, 0}}});
    const PolyLine* const left = array[0];
    array[1]->offset = array[2]->offset = {1, 2, 3};
    Close(array, Width(1));
    ASSERT_EQ(2u, array.count);
    EXPECT_EQ(left, array[1]);
    EXPECT_EQ(2.0, array[0]->offset.y);
}

// --- Against the plain walk.

std::vector<Points> RandomPieces(Numbers& numbers, double east, double north, double step) {
    std::vector<Points> all(static_cast<std::size_t>(numbers.Below(14)));
    for (Points& points : all) {
        Point3d p(east + numbers.Below(8) * step, north + numbers.Below(8) * step,
                  numbers.Below(3) * 0.4);
        for (int i = 1 + numbers.Below(4) + (numbers.OneIn(5) ? 0 : 1); i > 0; --i) {
            points.push_back(p);
            p += {numbers.Below(5) * step - 2 * step, numbers.Below(5) * step - 2 * step,
                  numbers.OneIn(3) ? 0.4 : 0.0};
            if (numbers.OneIn(4)) p += {numbers.Between(-1, 1), numbers.Between(-1, 1), 0};
            if (numbers.OneIn(6)) p += {numbers.Between(-0.00012, 0.00012), 0, 0};
        }
        if (numbers.OneIn(6)) points.push_back(points[0]);
    }
    return all;
}

TEST(CloseGaps, JoinsAsThePlainWalkDoes) {
    Numbers numbers(11);
    int joins = 0;
    for (int round = 0; round < 6000; ++round) {
        const bool onMap = numbers.OneIn(3);
        const double step = numbers.One(std::vector<double>{1, 1, 0.02, 25});
        const std::vector<Points> lines =
            RandomPieces(numbers, onMap ? 25e6 : 0, onMap ? 7e6 : 0, step);
        PolyLine region = MakeLine({{-1, -1, 0}, {5, -1, 0}, {4, 9, 0}, {-1, 6, 0}});
        if (onMap) region += {25e6, 7e6, 0};
        region.Close();
        GapSettings settings;
        settings.angle = numbers.One(std::vector<double>{0, 5, 30, 60, 89, 90, 120, -20});
        settings.length = numbers.One(std::vector<double>{0, 0.5, 1.5, 4, 400, -2});
        settings.width = numbers.One(std::vector<double>{0, 0.3, 1, 1.5, 30, -1});
        settings.zTol = numbers.One(std::vector<double>{0, 0.2, 0.4, 0.5, 9});
        settings.region = numbers.OneIn(4) ? &region : nullptr;
        settings.closeOpen = numbers.OneIn(2);
        settings.fromBothEnds = numbers.OneIn(2);
        PolyArray array = MakeArray(lines);
        Close(array, settings);
        ASSERT_EQ(Text(PlainGaps(lines, settings).result), Text(array)) << "round " << round;
        joins += static_cast<int>(lines.size()) - static_cast<int>(array.count);
    }
    EXPECT_GT(joins, 5000);
}

TEST(CloseGaps, ANumberThatIsNoneEnds) {
    const double nan = std::nan("");
    const std::vector<Points> lines = {{{nan, 0, 0}, {1, nan, 0}},
                                       {{0, 0, nan}, {1, 1, 1}},
                                       {{HUGE_VAL, 0, 0}, {-HUGE_VAL, 5, 0}},
                                       kLeft};
    for (const double strange : {nan, HUGE_VAL, -HUGE_VAL, 1e300})
        for (int which = 0; which < 4; ++which) {
            PolyArray array = MakeArray(lines);
            GapSettings settings{10, 5, 1, 1, nullptr, true, true};
            (which == 0   ? settings.angle
             : which == 1 ? settings.length
             : which == 2 ? settings.width
                          : settings.zTol) = strange;
            Close(array, settings);
            EXPECT_GE(array.count, 1u);
        }
}

// --- Refused memory.

TEST(CloseGaps, WithoutMemoryForAPolylineTheArrayIsAsItWas) {
    const std::vector<Points> lines = {
        kLeft, {{11, 0, 0}, {20, 0, 0}}, {{50, 0, 0}, {60, 0, 0}}, {{61, 0, 0}, {70, 0, 0}}};
    for (int n = 1; n <= 2; ++n) {
        PolyArray array = MakeArray(lines);
        const test::NewFaults faults;
        test::NewFaults::Fail(n);
        test::ExpectNoMemory(test::Catch([&] { Close(array, Width(2)); }), L"", 615,
                             L"GeomStructs/PolyArray");
        EXPECT_EQ(Text(lines), Text(array));
    }
    int n = 1;
    for (;; ++n) {
        PolyArray array = MakeArray(lines);
        test::MemoryFaults faults;
        faults.Fail(test::Request::any, n);
        const test::Raised raised = test::Catch([&] { Close(array, Width(2)); });
        if (raised.type == "nothing") break;
        EXPECT_EQ(L"datastruct/Array", raised.file);
        EXPECT_EQ(Text(lines), Text(array));
    }
    EXPECT_GT(n, 10);
}

}  // namespace
}  // namespace TamLib
