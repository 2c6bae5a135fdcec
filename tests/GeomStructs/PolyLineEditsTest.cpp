// The edits of PolyLine: cleaning, joining on, resampling, cutting out.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "GeomStructs/LineArray.h"
#include "GeomStructs/PolyLine.h"
#include "tests/GeomStructs/PlainPolygon.h"
#include "tests/GeomStructs/RandomLines.h"
#include "tests/GeomStructs/TextLines.h"

namespace TamLib {
namespace {

Line Segment(const std::string& text) {
    return FromText(text).GetSegment(0);
}
std::string Cleaned(const std::string& text, double tolerance) {
    PolyLine line = FromText(text);
    line.RemoveNearDuplicates(tolerance);
    return ToText(line);
}

TEST(PolyLineRemoveNearDuplicates, ComparesWithTheLastVertexKept) {
    EXPECT_EQ("0 0, 1.5 0, 3 0", Cleaned("0 0, 0.5 0, 0.9 0, 1.5 0, 2 0, 3 0", 1));
    EXPECT_EQ("0 0", Cleaned("0 0, 0.5 0.5, -0.5 -0.5", 1));
    EXPECT_EQ("", Cleaned("", 1));
}

TEST(PolyLineRemoveNearDuplicates, ADifferenceInXOrYOfAtLeastTheToleranceKeeps) {
    EXPECT_EQ("0 0, 1 0, 1 1", Cleaned("0 0, 1 0, 1 1", 1));
    EXPECT_EQ("0 0", Cleaned("0 0, 0.999 0.999", 1));
    EXPECT_EQ("0 0, 1e-07 0", Cleaned("0 0, 1e-07 0", 1e-07));
    EXPECT_EQ("0 0", Cleaned("0 0, 0.99e-07 0", 1e-07));
}

TEST(PolyLineRemoveNearDuplicates, HeightPlaysNoPart) {
    EXPECT_EQ("0 0 1, 5 5 7", Cleaned("0 0 1, 0 0 99, 5 5 7, 5 5 8", 1e-07));
}

TEST(PolyLineRemoveNearDuplicates, KeepsCapacityAndSettings) {
    PolyLine line(30);
    for (int i = 0; i < 12; ++i) line.Append({1, 1, 0});
    line.sorted = true;
    line.offset = {1, 2, 3};
    line.RemoveNearDuplicates(1e-07);
    EXPECT_EQ(1u, line.count);
    EXPECT_EQ(30u, line.capacity);
    EXPECT_TRUE(line.sorted);
    EXPECT_EQ(2.0, line.offset.y);
}

std::string Behind(const std::string& text, const std::string& segment, int joinMode) {
    PolyLine line = FromText(text);
    line.Append(Segment(segment), joinMode);
    return ToText(line);
}
std::string InFront(const std::string& text, const std::string& segment, int joinMode) {
    PolyLine line = FromText(text);
    line.AppendSegment(Segment(segment), joinMode);
    return ToText(line);
}

TEST(PolyLineAppendLine, ModeZeroAddsBothEnds) {
    EXPECT_EQ("0 0, 1 1, 1 1, 2 2", Behind("0 0, 1 1", "1 1, 2 2", 0));
    EXPECT_EQ("1 1, 2 2", Behind("", "1 1, 2 2", 2));
    PolyLine line;
    line.Append(Segment("1 1, 2 2"));
    EXPECT_EQ("1 1, 2 2", ToText(line));
}

TEST(PolyLineAppendLine, JoinsAtTheLastVertex) {
    for (const int mode : {1, 2}) EXPECT_EQ("0 0, 1 1, 2 2", Behind("0 0, 1 1", "1 1, 2 2", mode));
    EXPECT_EQ("0 0, 1 1, 2 2", Behind("0 0, 1 1", "2 2, 1 1", 2));
    EXPECT_EQ("0 0, 1 1, 1 1, 2 2", Behind("0 0, 1 1", "2 2, 1 1", 1));  // the nearer end first
    EXPECT_EQ("0 0, 1 1, 2 2", Behind("0 0, 1 1", "1.00009 1, 2 2", 1));
}

TEST(PolyLineAppendLine, AcrossAGapTheNearerEndComesFirst) {
    EXPECT_EQ("0 0, 3 0, 9 0", Behind("0 0", "9 0, 3 0", 1));
    EXPECT_EQ("0 0, 3 0, 9 0", Behind("0 0", "3 0, 9 0", 2));
    EXPECT_EQ("0 0, 0 3, 3 0", Behind("0 0", "3 0, 0 3", 1));        // of equally near ones the end
    EXPECT_EQ("0 0, 3 0, 2 0 9", Behind("0 0", "2 0 9, 3 0 0", 1));  // in 3D
}

TEST(PolyLineAppendSegment, ModeZeroPutsTheEndBeforeTheStart) {
    EXPECT_EQ("2 2, 1 1, 0 0, 5 5", InFront("0 0, 5 5", "1 1, 2 2", 0));
    EXPECT_EQ("2 2, 1 1", InFront("", "1 1, 2 2", 2));
}

TEST(PolyLineAppendSegment, JoinsAtVertexZero) {
    for (const int mode : {1, 2}) EXPECT_EQ("2 2, 0 0, 5 5", InFront("0 0, 5 5", "0 0, 2 2", mode));
    EXPECT_EQ("2 2, 0 0, 5 5", InFront("0 0, 5 5", "2 2, 0 0", 2));
    EXPECT_EQ("2 2, 0 0, 0 0, 5 5", InFront("0 0, 5 5", "2 2, 0 0", 1));
}

TEST(PolyLineAppendSegment, AcrossAGapTheNearerEndComesNext) {
    EXPECT_EQ("9 0, 3 0, 0 0", InFront("0 0", "9 0, 3 0", 1));
    EXPECT_EQ("9 0, 3 0, 0 0", InFront("0 0", "3 0, 9 0", 2));
    EXPECT_EQ("3 0, 0 3, 0 0", InFront("0 0", "3 0, 0 3", 1));
}

std::string Joined(const std::string& text, const std::string& other, int joinMode) {
    PolyLine line = FromText(text);
    line.Append(FromText(other), joinMode);
    return ToText(line);
}

TEST(PolyLineAppendPolyLine, ByMode) {
    EXPECT_EQ("0 0, 1 1, 1 1, 2 2", Joined("0 0, 1 1", "1 1, 2 2", 0));
    for (const int mode : {1, 2}) EXPECT_EQ("0 0, 1 1, 2 2", Joined("0 0, 1 1", "1 1, 2 2", mode));
    EXPECT_EQ("0 0, 1 1, 3 3, 2 2, 1 1", Joined("0 0, 1 1", "3 3, 2 2, 1 1", 1));
    EXPECT_EQ("0 0, 1 1, 2 2, 3 3", Joined("0 0, 1 1", "3 3, 2 2, 1 1", 2));
    EXPECT_EQ("0 0, 1 1, 5 5, 6 6", Joined("0 0, 1 1", "5 5, 6 6", 2));
    EXPECT_EQ("5 5, 6 6", Joined("", "5 5, 6 6", 2));
    EXPECT_EQ("0 0, 1 1", Joined("0 0, 1 1", "", 2));
}

TEST(PolyLineAppendPolyLine, TheVertexThatStaysIsTheOthers) {
    EXPECT_EQ("0 0, 1.00005 1, 2 2", Joined("0 0, 1 1", "1.00005 1, 2 2", 1));
    EXPECT_EQ("0 0, 1.00005 1, 2 2", Joined("0 0, 1 1", "2 2, 1.00005 1", 2));
}

TEST(PolyLineAppendPolyLine, ARingIsJoinedByItsFirstVertex) {
    EXPECT_EQ("9 9, 0 0, 1 0, 1 1, 0 0", Joined("9 9, 0 0", "(0 0, 1 0, 1 1)", 2));
}

TEST(PolyLineAppendPolyLine, ToItself) {
    PolyLine line = FromText("0 0, 1 1, 0 0");
    line.Append(line, 0);
    EXPECT_EQ("0 0, 1 1, 0 0, 0 0, 1 1, 0 0", ToText(line));
    line = FromText("0 0, 1 1, 0 0");
    line.Append(line, 1);
    EXPECT_EQ("0 0, 1 1, 0 0, 1 1, 0 0", ToText(line));
}

TEST(PolyLineAppendPolyLine, TakesBackSorted) {
    PolyLine line = FromText("0 0, 1 1");
    line.Sort();
    line.Append(FromText("0 5"));
    EXPECT_FALSE(line.sorted);
}

std::string Resampled(const std::string& text, double step, bool keepVertices) {
    PolyLine points;
    FromText(text).Resample(&points, step, keepVertices);
    return ToText(points);
}

TEST(PolyLineResample, StopsBelowTheLength) {
    EXPECT_EQ("0 0, 3 0, 6 0, 9 0", Resampled("0 0, 10 0", 3, false));
    EXPECT_EQ("0 0, 5 0", Resampled("0 0, 10 0", 5, false));  // the end is not part of it
    EXPECT_EQ("0 0", Resampled("0 0, 10 0", 50, false));
    EXPECT_EQ("0 0, 4 0, 5 3", Resampled("0 0, 5 0, 5 5", 4, false).substr(0, 13));
}

TEST(PolyLineResample, WithVerticesStepsAlongEachSegment) {
    EXPECT_EQ("0 0, 4 0, 5 0, 5 4, 5 5", Resampled("0 0, 5 0, 5 5", 4, true));
    EXPECT_EQ("0 0, 2 0, 4 0", Resampled("0 0, 4 0", 2, true));  // a vertex is there once
    EXPECT_EQ("7 7", Resampled("7 7", 2, true));
    EXPECT_EQ("0 0, 0 0, 1 0", Resampled("0 0, 0 0, 1 0", 2, true));
}

TEST(PolyLineResample, OfNoLengthIsNothing) {
    EXPECT_EQ("", Resampled("", 2, false));
    EXPECT_EQ("", Resampled("7 7", 2, false));
    EXPECT_EQ("", Resampled("7 7, 7 7", 2, false));
}

TEST(PolyLineResample, AStepNotAboveZeroGivesTheEnds) {
    for (const double step : {0.0, -1.0, std::numeric_limits<double>::quiet_NaN()}) {
        EXPECT_EQ("0 0, 9 0", Resampled("0 0, 5 5, 9 0", step, false));
        EXPECT_EQ("0 0, 5 5, 9 0", Resampled("0 0, 5 5, 9 0", step, true));
        EXPECT_EQ("7 7", Resampled("7 7", step, false));
    }
}

TEST(PolyLineResample, AlongInfinityOrNoNumberNoStepIsMade) {
    const double values[] = {std::numeric_limits<double>::infinity(),
                             std::numeric_limits<double>::quiet_NaN(), 1e200};
    for (const double value : values) {  // the length of the last one overflows
        PolyLine line = FromText("0 0, 3 0"), points;
        line.Append({3, value, 0});
        line.Resample(&points, 2, false);
        EXPECT_EQ(0u, points.count);
        line.Resample(&points, 2, true);
        ASSERT_EQ(4u, points.count);
        EXPECT_EQ(2.0, points[1].x);
    }
}

TEST(PolyLineResample, ReplacesTheResultWithGrowthTwenty) {
    PolyLine points = FromText("9 9, 9 9");
    FromText("0 0, 10 0").Resample(&points, 5, false);
    EXPECT_EQ("0 0, 5 0", ToText(points));
    EXPECT_EQ(20u, points.increment);
    points.Resample(&points, 1, false);  // the line itself
    EXPECT_EQ("0 0, 1 0, 2 0, 3 0, 4 0", ToText(points));
}

TEST(PolyLineResample, PointsAreThoseOfPointAtFractionToTheBit) {
    RandomLines random(61);
    for (int i = 0; i < 300; ++i) {
        const Point3d base = i % 3 == 0 ? Point3d(25e6, 7e6, 0) : Point3d();
        const double size = std::pow(10.0, random.Whole(-5, 3));
        const PolyLine line = random.Walk(random.Whole(2, 30), base, size, i % 2 == 0);
        const double step = line.Length() / random.Whole(1, 200) * random.Real(0.5, 1);
        PolyLine points;
        line.Resample(&points, step, false);
        if (!(step > 0)) continue;
        ASSERT_EQ("", Difference(ResamplePlainly(line, step), points)) << i;
    }
    PolyLine points;
    const PolyLine minus = FromText("-0.0 -0.0, 5 5");
    minus.Resample(&points, 1, false);
    ASSERT_EQ("", Difference(ResamplePlainly(minus, 1), points));
}

TEST(PolyLineSegments, AreAllButTheOneWithoutLength) {
    const LineArray lines = FromText("(0 0 1, 4 0 2, 4 4 3)").Segments();
    ASSERT_EQ(3u, lines.count);
    EXPECT_GE(lines.capacity, 4u);
    EXPECT_EQ(4, lines.data[2].x1);
    EXPECT_EQ(0, lines.data[2].x2);
    EXPECT_EQ(3, lines.data[2].z1);
    for (const Line& line : lines) EXPECT_EQ(1, line.valid);
    EXPECT_EQ(0u, FromText("4 4").Segments().count);
    EXPECT_EQ(0u, PolyLine().Segments().count);
}

std::string SubLine(int from, int to) {
    PolyLine part;
    FromText("0 0, 1 1, 2 2, 3 3").MakeSubLine(&part, from, to);
    return ToText(part);
}

TEST(PolyLineMakeSubLine, BothEndsIncluded) {
    EXPECT_EQ("1 1, 2 2", SubLine(1, 2));
    EXPECT_EQ("1 1", SubLine(1, 1));
    EXPECT_EQ("0 0, 1 1, 2 2, 3 3", SubLine(0, -1));
    EXPECT_EQ("2 2, 3 3", SubLine(-2, -1));
}

TEST(PolyLineMakeSubLine, WrapsRoundTheEnd) {
    EXPECT_EQ("3 3, 0 0, 1 1", SubLine(3, 1));
    EXPECT_EQ("2 2, 3 3, 0 0", SubLine(-2, 0));
}

TEST(PolyLineMakeSubLine, TakesSettingsNotBoxAndOffset) {
    PolyLine line = FromText("0 0, 1 1, 2 2");
    line.offset = {1, 1, 1};
    line.hasBounds = 1;
    line.compare = &Point3d::CompareFine;
    PolyLine part;
    line.MakeSubLine(&part, 1, 2);
    EXPECT_EQ(&Point3d::CompareFine, part.compare);
    EXPECT_TRUE(part.bitwise);
    EXPECT_EQ(0, part.hasBounds);
    EXPECT_EQ(0.0, part.offset.x);
    line.MakeSubLine(&line, 1, 2);
    EXPECT_EQ("1 1, 2 2", ToText(line));
    PolyLine().MakeSubLine(&line, 0, 3);
    EXPECT_EQ("", ToText(line));
}

}  // namespace
}  // namespace TamLib
