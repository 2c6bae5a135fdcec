// PolyArc read onto what it held before, from derived classes, and from arcs that all but close.
#include <dbents.h>
#include <dbpl.h>
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "GeomStructs/PolyArc.h"
#include "tests/GeomEnts/TestDrawing.h"
#include "tests/GeomStructs/TextLines.h"

namespace TamLib {
namespace {

class SurveyedLine : public AcDbLine {
  public:
    ACRX_DECLARE_MEMBERS(SurveyedLine);
};
class SurveyedPolyline : public AcDbPolyline {
  public:
    ACRX_DECLARE_MEMBERS(SurveyedPolyline);
};
class SurveyedArc : public AcDbArc {
  public:
    ACRX_DECLARE_MEMBERS(SurveyedArc);
};
class SurveyedCircle : public AcDbCircle {
  public:
    ACRX_DECLARE_MEMBERS(SurveyedCircle);
};

}  // namespace
}  // namespace TamLib

using TamLib::SurveyedArc;
using TamLib::SurveyedCircle;
using TamLib::SurveyedLine;
using TamLib::SurveyedPolyline;
ACRX_NO_CONS_DEFINE_MEMBERS(SurveyedLine, AcDbLine)
ACRX_NO_CONS_DEFINE_MEMBERS(SurveyedPolyline, AcDbPolyline)
ACRX_NO_CONS_DEFINE_MEMBERS(SurveyedArc, AcDbArc)
ACRX_NO_CONS_DEFINE_MEMBERS(SurveyedCircle, AcDbCircle)

namespace TamLib {
namespace {

const char* const kLine = "LINE|5 2F|8 0|10 20|20 0|11 30|21 0";
const char* const kHalfCircle = "LWPOLYLINE|5 2F|8 0|90 2|70 0|10 20|20 0|42 1|10 30|20 0";
const char* const kCircle = "CIRCLE|5 2F|8 0|10 1|20 2|30 3|40 2.5";

void Add(PolyArc& line, const char* record) {
    const TestDrawing drawing{record};
    line.FromEntity(drawing.Open(0x2F), 1);
}

std::vector<double> Heights(const PolyArc& line) {
    std::vector<double> heights;
    for (const double height : line.heights)
        heights.push_back(std::round(height * 1e9) / 1e9 + 0.0);
    return heights;
}

// --- Onto what is there.

TEST(PolyArcReading, ArcsFindTheirSegmentsBehindTheHeightThatCloseLeaves) {
    for (const char* const record :
         {kHalfCircle,
          "POLYLINE|5 2F|8 0|66 1|70 0\nVERTEX|5 30|8 0|10 20|20 0|42 1\n"
          "VERTEX|5 31|8 0|10 30|20 0\nSEQEND|8 0",
          "ARC|5 2F|8 0|10 25|20 0|40 5|50 180|51 0"}) {
        PolyArc line(FromText("0 0, 10 0"));
        line.Close();
        Add(line, record);
        ASSERT_EQ(5u, line.count);
        EXPECT_EQ((std::vector<double>{0, 0, 0, -5, 0}), Heights(line)) << record;
    }
    PolyArc line(FromText("0 0, 10 0"));
    line.Close();
    Add(line, kCircle);
    EXPECT_EQ((std::vector<double>{0, 0, 0, 2.5, 2.5, 0}), Heights(line));
}

TEST(PolyArcReading, StraightEntitiesAreStraightOverTheHeightsThatClearLeaves) {
    const char* const records[] = {kLine, "LWPOLYLINE|5 2F|8 0|90 2|70 0|10 20|20 0|10 30|20 0",
                                   "POLYLINE|5 2F|8 0|66 1|70 9\nVERTEX|5 30|8 0|10 20|20 0|70 32\n"
                                   "VERTEX|5 31|8 0|10 30|20 0|70 32\nSEQEND|8 0"};
    for (const char* const record : records) {
        PolyArc line;
        Add(line, kCircle);
        line.Clear();
        ASSERT_EQ((std::vector<double>{2.5, 2.5}), Heights(line));
        Add(line, record);
        ASSERT_GE(line.count, 2u);
        for (std::uint32_t i = 0; i + 1 < line.count; ++i)
            EXPECT_EQ(0.0, line.GetArc(static_cast<int>(i)).height) << record;
    }
}

TEST(PolyArcReading, ArcsFindTheirSegmentsBehindVerticesWithoutHeights) {
    PolyArc line;
    for (const double x : {0.0, 5.0, 10.0}) line.Append({x, 0, 0});
    ASSERT_EQ(0u, line.heights.count);
    Add(line, kHalfCircle);
    EXPECT_EQ((std::vector<double>{0, 0, 0, -5}), Heights(line));
}

TEST(PolyArcReading, AFlattenedCurveLeavesNoArcs) {
    const TestDrawing drawing{kCircle};
    PolyArc line(drawing.Open(0x2F), 1);
    ASSERT_TRUE(line.HasArcs());
    line.FromCurve(drawing.Open(0x2F), 1, 0.05, true);
    EXPECT_EQ(125u, line.count);
    EXPECT_EQ(124u, line.heights.count);
    EXPECT_FALSE(line.HasArcs());
    const PolyLine& chords = line;
    EXPECT_EQ(chords.Length(), line.Length());
}

// --- By kind.

TEST(PolyArcReading, LinesAndPolylinesMayBeOfADerivedClassArcsAndCirclesLoseWhatTheyAre) {
    SurveyedLine::rxInit();
    SurveyedPolyline::rxInit();
    SurveyedArc::rxInit();
    SurveyedCircle::rxInit();
    acrxBuildClassHierarchy();
    {
        SurveyedLine straight;
        straight.setStartPoint({1, 2, 3});
        straight.setEndPoint({4, 5, 6});
        SurveyedPolyline bulged;
        bulged.addVertexAt(0, {0, 0}, 1.0);
        bulged.addVertexAt(1, {10, 0});
        SurveyedArc quarter;
        quarter.setRadius(2.5);
        quarter.setEndAngle(1.5);
        SurveyedCircle round;
        round.setCenter({1, 2, 3});
        round.setRadius(2.5);
        EXPECT_EQ("1 2 3, 4 5 6", ToText(PolyArc(&straight, 0)));
        EXPECT_EQ((std::vector<double>{-5}), Heights(PolyArc(&bulged, 0)));
        // Intended: these are read by exact class.
        EXPECT_EQ("0 0, 0 0, 0 0", ToText(PolyArc(&round, 0)));
        EXPECT_EQ((std::vector<double>{0, 0}), Heights(PolyArc(&round, 0)));
        EXPECT_EQ(0u, PolyArc(&quarter, 0).count);
        // Accepted, and asked for arcs, are the classes themselves only.
        for (AcDbEntity* const entity :
             {static_cast<AcDbEntity*>(&straight), static_cast<AcDbEntity*>(&bulged),
              static_cast<AcDbEntity*>(&round)}) {
            EXPECT_FALSE(PolyArc::IsArcEntity(entity, true));
            EXPECT_FALSE(PolyArc::HasArcs(entity));
        }
    }
    deleteAcRxClass(SurveyedLine::desc());
    deleteAcRxClass(SurveyedPolyline::desc());
    deleteAcRxClass(SurveyedArc::desc());
    deleteAcRxClass(SurveyedCircle::desc());
}

// --- Arcs that all but close. Their chord has no direction below 0.0001.

std::string ArcTo(const char* angles) {
    return std::string("ARC|5 2F|8 0|10 1|20 2|30 3|40 5|") + angles;
}

TEST(PolyArcReading, AFullTurnIsItsTwoEndsWithTheDiameterAsHeight) {
    for (const char* const angles : {"50 0|51 360", "50 0|51 359.9999", "50 0|51 359.999"}) {
        PolyArc line;
        Add(line, ArcTo(angles).c_str());
        ASSERT_EQ(2u, line.count) << angles;
        EXPECT_LT(Distance({6, 2, 3}, line.data[0]), 1e-12);
        EXPECT_LT(Distance({6, 2, 3}, line.data[1]), 0.0001);
        EXPECT_NEAR(-10.0, line.HeightAt(0), 1e-9);
        EXPECT_TRUE(line.HasArcs());
        for (const bool byAngle : {true, false}) {
            const PolyLine flat = line.ToPolyLine(0.05, byAngle);
            ASSERT_EQ(2u, flat.count) << angles;
            for (const Point3d& p : flat) EXPECT_LT(Distance({6, 2, 3}, p), 0.0001) << angles;
        }
    }
    // It lacks more: all the way round.
    PolyArc line;
    Add(line, ArcTo("50 0|51 359.99").c_str());
    EXPECT_GT(line.ToPolyLine(0.05, true).count, 100u);
}

TEST(PolyArcReading, AnArcFromAnAngleToTheSameIsStraight) {
    PolyArc line;
    Add(line, ArcTo("50 30|51 30").c_str());
    ASSERT_EQ(2u, line.count);
    EXPECT_EQ(0.0, line.HeightAt(0));
    EXPECT_FALSE(line.HasArcs());
}

TEST(PolyArcReading, AnArcOfOneAngleAndAnotherEndFlattensToNumbers) {
    // Both ends at one angle from the centre that the height makes.
    for (const double z : {0.0, 1.0}) {
        for (const double height : {-0.00016, 0.00016}) {
            PolyArc line;
            line.AddVertex({0, 0, 0}, 0.0);
            line.AddVertex({1.37e-9, 0, z}, height);
            const PolyLine flat = line.ToPolyLine(0.05, true);
            ASSERT_GE(flat.count, 2u);
            for (const Point3d& p : flat) EXPECT_TRUE(std::isfinite(p.x + p.y + p.z));
        }
    }
}

}  // namespace
}  // namespace TamLib
