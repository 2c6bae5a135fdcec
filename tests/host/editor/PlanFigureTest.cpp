#include "host/editor/PlanFigure.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace host::editor;

namespace {

using Points = std::vector<PlanPoint>;

PlanFigure figure(Points points, bool filled = false) {
    PlanFigure made;
    made.add({std::move(points), filled});
    return made;
}

const PlanBox box{{0, 0}, {10, 10}};
const Points square{{0, 0}, {10, 0}, {10, 10}, {0, 10}};
// A square with a notch from above down to (5, 2).
const Points notched{{0, 0}, {10, 0}, {10, 10}, {5, 2}, {0, 10}};

}  // namespace

TEST(PlanFigure, ABordersPointIsInside) {
    EXPECT_TRUE(figure({{0, 0}, {10, 10}}).inside(box));
    EXPECT_FALSE(figure({{0, 0}, {10, 10.0000001}}).inside(box));
    EXPECT_TRUE(figure({{10, 5}}).inside(box));
    EXPECT_TRUE(figure({{0, 5}, {0, 7}}).inside(square));
}

TEST(PlanFigure, CrossingTakesWhatPassesThroughWithoutAnEndInside) {
    EXPECT_TRUE(figure({{-5, 5}, {15, 5}}).crosses(box));
    EXPECT_TRUE(figure({{-5, 5}, {15, 5}}).crosses(square));
    EXPECT_TRUE(figure({{-1, 9}, {1, 11}}).crosses(box)) << "cuts a corner off";
    EXPECT_TRUE(figure({{-1, 1}, {1, -1}}).crosses(box)) << "touches the corner";
    EXPECT_FALSE(figure({{-1, 0.5}, {0.5, -1}}).crosses(box));
    EXPECT_FALSE(figure({{-5, 11}, {15, 11}}).crosses(box));
}

TEST(PlanFigure, ARingAroundTheWindowIsNotCrossed) {
    const Points ring{{-5, -5}, {15, -5}, {15, 15}, {-5, 15}, {-5, -5}};
    EXPECT_FALSE(figure(ring).crosses(box));
    EXPECT_FALSE(figure(ring).crosses(square));
    EXPECT_FALSE(figure(ring).touches({{1, 1}, {2, 2}}));
}

TEST(PlanFigure, AFilledOneAroundTheWindowIs) {
    const Points ring{{-5, -5}, {15, -5}, {15, 15}, {-5, 15}, {-5, -5}};
    EXPECT_TRUE(figure(ring, true).crosses(box));
    EXPECT_TRUE(figure(ring, true).crosses(square));
    EXPECT_TRUE(figure(ring, true).touches({{1, 1}, {2, 2}}));
    EXPECT_FALSE(figure(ring, true).inside(box));
}

TEST(PlanFigure, ALineAcrossANotchIsNotInside) {
    EXPECT_FALSE(figure({{1, 5}, {9, 5}}).inside(notched));
    EXPECT_TRUE(figure({{1, 1}, {9, 1}}).inside(notched));
    EXPECT_TRUE(figure({{0, 2}, {10, 2}}).inside(notched)) << "touches the notch's tip";
    EXPECT_TRUE(figure({{5, 2}, {10, 10}}).inside(notched)) << "runs along its side";
    EXPECT_FALSE(figure({{0, 10}, {10, 10}}).inside(notched))
        << "both ends on corners, open air between";
}

TEST(PlanFigure, AllPathsHaveToBeInside) {
    PlanFigure two;
    two.add({{{1, 1}, {2, 2}}, false});
    two.add({{{9, 9}, {11, 11}}, false});
    EXPECT_FALSE(two.inside(box));
    EXPECT_TRUE(two.crosses(box));
}

TEST(PlanFigure, AnEmptyOneIsNowhere) {
    PlanFigure none;
    none.add({{}, true});
    EXPECT_TRUE(none.empty());
    EXPECT_FALSE(none.inside(box));
    EXPECT_FALSE(none.crosses(box));
    EXPECT_FALSE(none.inside(square));
    EXPECT_FALSE(none.touches(square));
}

TEST(PlanFigure, ADotIsTouchedWhereItLies) {
    EXPECT_TRUE(figure({{5, 5}}).crosses(box));
    EXPECT_TRUE(figure({{5, 5}}).touches({{0, 0}, {10, 10}}));
    EXPECT_FALSE(figure({{5, 5.0000001}}).touches({{0, 0}, {10, 10}}));
    EXPECT_TRUE(figure({{5, 5}}).inside(square));
    EXPECT_FALSE(figure({{11, 5}}).crosses(square));
}

TEST(PlanFigure, SegmentsMeetAtEndsAlongAndAcross) {
    EXPECT_TRUE(segmentsMeet({0, 0}, {2, 2}, {0, 2}, {2, 0}));
    EXPECT_TRUE(segmentsMeet({0, 0}, {1, 1}, {1, 1}, {2, 0}));
    EXPECT_TRUE(segmentsMeet({0, 0}, {3, 0}, {1, 0}, {2, 0}));
    EXPECT_FALSE(segmentsMeet({0, 0}, {1, 0}, {2, 0}, {3, 0}));
    EXPECT_FALSE(segmentsMeet({0, 0}, {1, 1}, {1, 0}, {2, 1}));
    EXPECT_TRUE(segmentsMeet({1, 1}, {1, 1}, {0, 0}, {2, 2}));
    EXPECT_FALSE(segmentsMeet({1, 1}, {1, 1}, {1, 2}, {1, 2}));
}

TEST(PlanFigure, LinesThatCrossThemselvesAreTold) {
    EXPECT_TRUE(staysSimple({}, {0, 0}));
    EXPECT_FALSE(staysSimple({{0, 0}}, {0, 0}));
    EXPECT_TRUE(staysSimple({{0, 0}, {1, 0}}, {2, 0})) << "straight on";
    EXPECT_FALSE(staysSimple({{0, 0}, {2, 0}}, {1, 0})) << "back over itself";
    EXPECT_FALSE(staysSimple({{0, 0}, {1, 0}}, {-1, 0})) << "back over all of it";
    EXPECT_FALSE(staysSimple({{0, 0}, {10, 10}, {10, 0}}, {0, 10}));
    EXPECT_FALSE(staysSimple({{0, 0}, {10, 0}, {10, 10}}, {5, 0})) << "ends on it";
    EXPECT_TRUE(staysSimple({{0, 0}, {10, 0}, {10, 10}}, {0, 10}));
    EXPECT_TRUE(closesSimply(square));
    EXPECT_FALSE(closesSimply({{0, 0}, {1, 0}}));
    EXPECT_FALSE(closesSimply({{0, 0}, {1, 0}, {2, 0}})) << "the last side lies on the others";
    EXPECT_FALSE(closesSimply({{0, 0}, {4, 4}, {8, 0}, {12, 0}, {12, 4}, {8, 4}}));
}

TEST(PlanFigure, InsideOrOnFollowsTheBorder) {
    EXPECT_TRUE(insideOrOn(notched, {1, 5}));
    EXPECT_FALSE(insideOrOn(notched, {5, 5}));
    EXPECT_TRUE(insideOrOn(notched, {5, 2}));
    EXPECT_TRUE(insideOrOn(notched, {0, 10}));
    EXPECT_FALSE(insideOrOn(notched, {0, 10.5}));
    Points turned = notched;
    std::reverse(turned.begin(), turned.end());
    EXPECT_TRUE(insideOrOn(turned, {1, 5}));
    EXPECT_FALSE(insideOrOn(turned, {5, 5}));
}

TEST(PlanFigure, FarFromTheOriginTheSameHolds) {
    const double x = 25496062.0;
    const double y = 6672008.0;
    const PlanBox far{{x, y}, {x + 10, y + 10}};
    EXPECT_TRUE(figure({{x - 5, y + 5}, {x + 15, y + 5}}).crosses(far));
    EXPECT_FALSE(figure({{x - 1, y + 0.5}, {x + 0.5, y - 1}}).crosses(far));
    EXPECT_TRUE(figure({{x, y}, {x + 10, y + 10}}).inside(far));
}

TEST(PlanFigure, DistancesAreToTheDrawnLinesAndTheirEnds) {
    EXPECT_EQ(figure({{0, 0}, {10, 0}}).distanceTo({5, 3}), 3.0);
    EXPECT_EQ(figure({{0, 0}, {10, 0}}).distanceTo({13, 4}), 5.0);
    EXPECT_EQ(figure({{0, 0}, {10, 0}}).distanceTo({4, 0}), 0.0);
    EXPECT_EQ(figure({{3, 4}}).distanceTo({0, 0}), 5.0) << "a dot";
    EXPECT_EQ(figure(square, true).distanceTo({5, 4}), 4.0) << "the border counts";
    EXPECT_GT(figure({}).distanceTo({0, 0}), 1e300);
    // Where maps are.
    EXPECT_EQ(figure({{25496000, 6672000}, {25496000, 6673000}}).distanceTo({25496002.5, 6672100}),
              2.5);
}

TEST(PlanFigure, ABoxIsAsFarAsItsNearestPoint) {
    EXPECT_EQ(box.distanceTo({5, 5}), 0.0);
    EXPECT_EQ(box.distanceTo({10, 0}), 0.0);
    EXPECT_EQ(box.distanceTo({5, 12}), 2.0);
    EXPECT_EQ(box.distanceTo({-3, -4}), 5.0);
}
