// PolyLine against polygons and boxes: the constellations of tests/data/constellations.txt, one
// named case a row, and what does not fit there.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "GeomStructs/PolyLine.h"
#include "tests/GeomStructs/TextLines.h"

namespace TamLib {
namespace {

using Row = std::vector<std::string>;

std::vector<Row> Rows(const std::string& kind) {
    std::ifstream file(ORLINTH_TEST_DATA "/constellations.txt");
    std::vector<Row> rows;
    for (std::string line; std::getline(file, line);) {
        if (line.empty() || line[0] == '#') continue;
        Row row;
        std::istringstream cells(line);
        for (std::string cell; std::getline(cells, cell, '|');) row.push_back(cell);
        if (row[0] == kind + " ") rows.push_back(row);
    }
    return rows;
}

std::vector<double> Numbers(const std::string& text) {
    std::istringstream stream(text);
    std::vector<double> numbers;
    for (double number = 0; stream >> number;) numbers.push_back(number);
    return numbers;
}

TEST(PolyLineRelation, ConstellationsOfLines) {
    const std::vector<Row> rows = Rows("lines");
    ASSERT_GE(rows.size(), 35u);
    // Also far away, where whole numbers are still exact.
    for (const Point3d& place : {Point3d(), Point3d(25e6, 7e6, 0), Point3d(-3e5, 6.7e6, 50)}) {
        for (const Row& row : rows) {
            SCOPED_TRACE(row[1] + "at " + std::to_string(place.x));
            ASSERT_EQ(6u, row.size());
            PolyLine here = FromText(row[2]), there = FromText(row[3]);
            here += place;
            there += place;
            const std::vector<double> relations = Numbers(row[4]), crossings = Numbers(row[5]);
            EXPECT_EQ(relations.at(0), here.Relation(there));
            EXPECT_EQ(relations.at(1), there.Relation(here));
            EXPECT_EQ(crossings.at(0), here.CrossesPolygon(there));
            EXPECT_EQ(crossings.at(1), there.CrossesPolygon(here));
        }
    }
}

TEST(PolyLineRelation, ConstellationsOfLinesTheOtherWayRound) {
    for (const Row& row : Rows("lines")) {
        SCOPED_TRACE(row[1]);
        PolyLine here = FromText(row[2]), there = FromText(row[3]);
        const int relation = here.Relation(there), crossing = here.CrossesPolygon(there);
        here.Reverse();
        EXPECT_EQ(relation, here.Relation(there));
        EXPECT_EQ(crossing, here.CrossesPolygon(there));
        there.Reverse();
        EXPECT_EQ(relation, here.Relation(there));
        EXPECT_EQ(crossing, here.CrossesPolygon(there));
    }
}

TEST(PolyLineRelation, ConstellationsOfBoxes) {
    const std::vector<Row> rows = Rows("box");
    ASSERT_GE(rows.size(), 12u);
    for (const Row& row : rows) {
        SCOPED_TRACE(row[1]);
        ASSERT_EQ(6u, row.size());
        const PolyLine line = FromText(row[2]);
        const std::vector<double> limits = Numbers(row[3]);
        ASSERT_EQ(4u, limits.size());
        const Box box(limits[0], limits[2], limits[1], limits[3], 100.0, 200.0);
        EXPECT_EQ(Numbers(row[4]).at(0), line.BoxRelation(box));
        EXPECT_EQ(Numbers(row[5]).at(0), line.BoxTouches(box) ? 1 : 0);
    }
}

TEST(PolyLineRelation, OfAPolygonWithItselfIsTwo) {
    const PolyLine ring = FromText("(0 0, 7 1, 9 6, 2 8)");
    EXPECT_EQ(2, ring.Relation(ring));
    EXPECT_EQ(2, ring.CrossesPolygon(ring));
}

TEST(PolyLineRelation, OfAnUnclosedPolygonIsNoInside) {
    const PolyLine line = FromText("2 2, 8 2, 8 8");
    EXPECT_EQ(0, line.Relation(FromText("0 0, 10 0, 10 10, 0 10")));
    EXPECT_EQ(1, line.Relation(FromText("(0 0, 10 0, 10 10, 0 10)")));
}

TEST(PolyLineRelation, CrossingsAreSeenInPlanWhateverTheHeights) {
    const PolyLine low = FromText("(0 0 1, 10 0 1, 10 10 1, 0 10 1)");
    EXPECT_EQ(1, low.CrossesPolygon(FromText("(5 5 7, 15 5 8, 15 15 9, 5 15 10)")));
    EXPECT_EQ(2, low.CrossesPolygon(FromText("(10 0 7, 20 0 7, 20 10 7, 10 10 7)")));
}

TEST(PolyLineRelation, StoredBoxHidesSegmentsFromIt) {
    PolyLine polygon = FromText("(0 0, 10 0, 10 10, 0 10)");
    const PolyLine bar = FromText("(-5 4, 15 4, 15 6, -5 6)");
    EXPECT_EQ(3, bar.Relation(polygon));
    polygon.hasBounds = 1;
    polygon.minPoint = {0, 8, 0};
    polygon.maxPoint = {10, 10, 0};
    EXPECT_EQ(0, polygon.Crosses(bar.GetSegment(0)));
}

// --- The parts of a line inside a polygon.

TEST(PolyLineInsideParts, OfALineThrough) {
    const PolyLine square = FromText("(0 0, 10 0, 10 10, 0 10)");
    EXPECT_EQ("0 5, 10 5", ToText(FromText("-5 5, 15 5").InsideParts(square)));
    EXPECT_EQ("10 5, 0 5", ToText(FromText("15 5, -5 5").InsideParts(square)));
    EXPECT_EQ("10 5, 5 5", ToText(FromText("15 5, 5 5").InsideParts(square)));
    EXPECT_EQ("2 5, 8 5, 8 7", ToText(FromText("2 5, 8 5, 8 7").InsideParts(square)));
    EXPECT_EQ("", ToText(FromText("-5 5, -5 8").InsideParts(square)));
    EXPECT_EQ("", ToText(FromText("-5 5, 15 5").InsideParts(FromText("0 0, 10 0"))));
}

TEST(PolyLineInsideParts, FollowTheLineThroughNotchAndBackHeightsTaken) {
    const PolyLine notched = FromText("(0 0, 30 0, 30 30, 20 30, 20 10, 10 10, 10 30, 0 30)");
    EXPECT_EQ("30 20 5, 20 20 15, 10 20 25, 0 20 35",
              ToText(FromText("35 20 0, -5 20 40").InsideParts(notched)));
    EXPECT_EQ("5 20, 10 20, 20 20, 25 20, 25 5",
              ToText(FromText("5 20, 25 20, 25 5").InsideParts(notched)));
}

TEST(PolyLineInsideParts, StretchesBecomeOneLine) {
    const PolyLine square = FromText("(0 0, 10 0, 10 10, 0 10)");
    EXPECT_EQ("10 2, 5 2, 5 10, 8 10, 8 8",
              ToText(FromText("15 2, 5 2, 5 15, 8 15, 8 8").InsideParts(square)));
}

}  // namespace
}  // namespace TamLib
