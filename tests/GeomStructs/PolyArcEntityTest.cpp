// PolyArc read from drawing entities: every class, bulges, closing, what becomes of the entity, and
// which entities hold arcs.
#include <dbents.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "GeomStructs/PolyArc.h"
#include "host/editor/Scripted.h"
#include "tam/TamExceptions.h"
#include "tests/GeomEnts/TestDrawing.h"
#include "tests/GeomStructs/TextLines.h"

namespace TamLib {
namespace {

const char* const kHalfCircle = "LWPOLYLINE|5 2F|8 0|90 2|70 0|38 7|10 0|20 0|42 1|10 10|20 0";
const char* const kCircle = "CIRCLE|5 2F|8 0|10 1|20 2|30 3|40 2.5";

PolyArc Read(const TestDrawing& drawing, std::uint64_t handle = 0x2F) {
    return PolyArc(drawing.Open(handle), 1);
}

// An old-style polyline of the handle 2F; the vertices' groups, one after the other.
std::string Old(const std::string& groups, const std::vector<std::string>& vertices) {
    std::string records = "POLYLINE|5 2F|8 0|66 1|" + groups;
    int handle = 0x30;
    for (const std::string& vertex : vertices)
        records += "\nVERTEX|5 " + std::to_string(handle++) + "|8 0|" + vertex;
    return records + "\nSEQEND|8 0";
}

void ExpectHeights(const std::vector<double>& expected, const PolyArc& line) {
    ASSERT_EQ(expected.size(), line.heights.count);
    for (std::size_t i = 0; i < expected.size(); ++i)
        EXPECT_NEAR(expected[i], line.heights.data[i], 1e-9) << i;
}

// --- By class.

TEST(PolyArcEntity, AHalfCircleOfTheHostsSenseHasTheNegativeRadiusAsHeight) {
    const TestDrawing drawing{kHalfCircle};
    const PolyArc line = Read(drawing);
    EXPECT_EQ("0 0 7, 10 0 7", ToText(line));
    ExpectHeights({-5}, line);
}

TEST(PolyArcEntity, AClosedLightPolylineHasItsClosingArc) {
    const TestDrawing drawing{
        "LWPOLYLINE|5 2F|8 0|90 3|70 1|10 0|20 0|42 0.5|10 10|20 0|10 10|20 10|42 -1"};
    const PolyArc line = Read(drawing);
    EXPECT_EQ("0 0, 10 0, 10 10, 0 0", ToText(line));
    ExpectHeights({-2.5, 0, std::sqrt(50.0)}, line);
}

TEST(PolyArcEntity, AnOpenLightPolylineTakesNoNoticeOfItsLastBulge) {
    const TestDrawing drawing{"LWPOLYLINE|5 2F|8 0|90 2|70 0|10 0|20 0|10 10|20 0|42 1"};
    ExpectHeights({0}, Read(drawing));
}

TEST(PolyArcEntity, TheClosingSegmentComesAlsoWhereTheFirstVertexIsRepeated) {
    const TestDrawing light{
        "LWPOLYLINE|5 2F|8 0|90 3|70 1|10 0|20 0|42 1|10 10|20 0|42 1|10 0|20 0|42 1"};
    EXPECT_EQ("0 0, 10 0, 0 0, 0 0", ToText(Read(light)));
    ExpectHeights({-5, -5, 0}, Read(light));
    const TestDrawing old{Old("70 1", {"10 0|20 0|42 1", "10 10|20 0|42 1", "10 0|20 0|42 1"})};
    EXPECT_EQ("0 0, 10 0, 0 0, 0 0", ToText(Read(old)));
    // In space it does not.
    const TestDrawing space{
        Old("70 9", {"10 0|20 0|70 32", "10 10|20 0|70 32", "10 0|20 0|70 32"})};
    EXPECT_EQ("0 0, 10 0, 0 0", ToText(Read(space)));
}

TEST(PolyArcEntity, BulgesBelow0p0001AreStraight) {
    const TestDrawing drawing{
        "LWPOLYLINE|5 2F|8 0|90 4|70 0|10 0|20 0|42 0.00009999|10 10|20 0|42 0.0001|10 20|20 0|"
        "42 -0.00009999|10 30|20 0"};
    const PolyArc line = Read(drawing);
    EXPECT_EQ(0.0, line.HeightAt(0));
    EXPECT_NEAR(-0.0005, line.HeightAt(1), 1e-9);
    EXPECT_EQ(0.0, line.HeightAt(2));
}

TEST(PolyArcEntity, ABulgeAboveOneIsTheLongWayRound) {
    const TestDrawing drawing{"LWPOLYLINE|5 2F|8 0|90 2|70 0|10 0|20 0|42 -3|10 10|20 0"};
    const PolyArc line = Read(drawing);
    EXPECT_NEAR(15.0, line.HeightAt(0), 1e-9);
    EXPECT_NEAR(-3.0, line.BulgeAt(0), 1e-9);
}

TEST(PolyArcEntity, PlanePolylineTakesElevationPlaneAndBulges) {
    // Normal (0, 1, 0): the plane's x axis is -x of the world, its y axis the world's z. The height
    // is that over the chord in space.
    const TestDrawing drawing{Old("70 0|10 0|20 0|30 5|210 0|220 1|230 0",
                                  {"10 1|20 2|42 1", "10 1|20 8|42 -1", "10 4|20 8"})};
    const PolyArc line = Read(drawing);
    EXPECT_EQ("-1 5 2, -1 5 8, -4 5 8", ToText(line));
    ExpectHeights({-3, 1.5}, line);
}

TEST(PolyArcEntity, ABulgeCountsAsSeenFromAboveAlsoOfAPolylineSeenFromBelow) {
    const TestDrawing light{std::string(kHalfCircle) + "|210 0|220 0|230 -1"};
    EXPECT_EQ("0 0 -7, -10 0 -7", ToText(Read(light)));
    ExpectHeights({-5}, Read(light));
    const TestDrawing old{
        Old("70 0|10 0|20 0|30 7|210 0|220 0|230 -1", {"10 0|20 0|42 1", "10 10|20 0"})};
    EXPECT_EQ("0 0 -7, -10 0 -7", ToText(Read(old)));
    ExpectHeights({-5}, Read(old));
}

TEST(PolyArcEntity, ClosedPlanePolylineHasItsClosingArcAndControlPointsAreLeftOut) {
    const TestDrawing drawing{
        Old("70 1", {"10 0|20 0|42 0.5", "10 5|20 9|42 0.7|70 16", "10 10|20 0|42 1"})};
    const PolyArc line = Read(drawing);
    EXPECT_EQ("0 0, 10 0, 0 0", ToText(line));
    ExpectHeights({-2.5, -5}, line);
}

TEST(PolyArcEntity, SpacePolylineIsStraight) {
    const TestDrawing open{Old("70 8", {"10 0|20 0|30 1|70 32", "10 3|20 4|30 2|70 32"})};
    EXPECT_EQ("0 0 1, 3 4 2", ToText(Read(open)));
    ExpectHeights({0}, Read(open));
    const TestDrawing closed{
        Old("70 9", {"10 0|20 0|30 1|70 32", "10 3|20 4|30 2|70 32", "10 6|20 0|30 2|70 32"})};
    EXPECT_EQ("0 0 1, 3 4 2, 6 0 2, 0 0 1", ToText(Read(closed)));
    ExpectHeights({0, 0, 0}, Read(closed));
    const TestDrawing splined{
        Old("70 12", {"10 9|20 9|30 9|70 48", "10 0|20 0|30 1|70 40", "10 3|20 4|30 2|70 40"})};
    EXPECT_EQ("0 0 1, 3 4 2", ToText(Read(splined)));
}

TEST(PolyArcEntity, LineIsOneStraightSegment) {
    const TestDrawing drawing{"LINE|5 2F|8 0|10 1|20 2|30 3|11 4|21 5|31 6"};
    EXPECT_EQ("1 2 3, 4 5 6", ToText(Read(drawing)));
    ExpectHeights({0}, Read(drawing));
}

TEST(PolyArcEntity, ArcRunsInTheHostsDirection) {
    const TestDrawing drawing{"ARC|5 2F|8 0|10 1|20 2|30 3|40 5|50 0|51 90",
                              "ARC|5 30|8 0|10 1|20 2|30 3|40 5|50 90|51 0",
                              "ARC|5 31|8 0|10 1|20 2|30 3|40 5|50 0|51 90|210 0|220 0|230 -1"};
    const PolyArc quarter = Read(drawing);
    ASSERT_EQ(2u, quarter.count);
    EXPECT_LT(Distance({6, 2, 3}, quarter.data[0]), 1e-9);
    EXPECT_LT(Distance({1, 7, 3}, quarter.data[1]), 1e-9);
    ExpectHeights({std::sqrt(12.5) - 5}, quarter);
    ExpectHeights({-5 - std::sqrt(12.5)}, Read(drawing, 0x30));
    // Seen from below: clockwise in plan.
    const PolyArc below = Read(drawing, 0x31);
    EXPECT_LT(Distance({-6, 2, -3}, below.data[0]), 1e-9);
    EXPECT_LT(Distance({-1, 7, -3}, below.data[1]), 1e-9);
    ExpectHeights({5 - std::sqrt(12.5)}, below);
}

TEST(PolyArcEntity, CircleIsTwoHalvesClockwiseFromAngleZero) {
    const TestDrawing drawing{kCircle, "CIRCLE|5 30|8 0|10 1|20 2|30 3|40 2.5|210 0|220 0|230 -1"};
    EXPECT_EQ("3.5 2 3, -1.5 2 3, 3.5 2 3", ToText(Read(drawing)));
    ExpectHeights({2.5, 2.5}, Read(drawing));
    EXPECT_EQ("1.5 2 -3, -3.5 2 -3, 1.5 2 -3", ToText(Read(drawing, 0x30)));
    ExpectHeights({2.5, 2.5}, Read(drawing, 0x30));
}

TEST(PolyArcEntity, OtherClassesGiveNothing) {
    for (const char* const record :
         {"REGION|5 2F|8 0|70 1", "POINT|5 2F|8 0|10 1|20 2", "TEXT|5 2F|8 0|10 1|20 2|40 2|1 A",
          "INSERT|5 2F|8 0|2 NONE|10 1|20 2", "ELLIPSE|5 2F|8 0|11 1|40 0.5|41 0|42 6.28",
          "SPLINE|5 2F|8 0|70 8|71 3"}) {
        const TestDrawing drawing{record};
        PolyArc line;
        line.FromEntity(drawing.Open(0x2F), 1);
        EXPECT_EQ(0u, line.count) << record;
        EXPECT_EQ(0u, line.heights.count) << record;
    }
}

TEST(PolyArcEntity, AppendsBehindAStraightSegmentAndClosesToTheVeryFirstVertex) {
    const TestDrawing drawing{"LWPOLYLINE|5 2F|8 0|90 2|70 1|10 0|20 0|42 1|10 10|20 0|42 1"};
    PolyArc line;
    line.AddVertex({-5, 0, 0}, 0);
    line.FromEntity(drawing.Open(0x2F), 1);
    EXPECT_EQ("-5 0, 0 0, 10 0, -5 0", ToText(line));
    ExpectHeights({0, -5, -7.5}, line);
    line.FromEntity(nullptr, 1);
    EXPECT_EQ(4u, line.count);
}

TEST(PolyArcEntity, FarFromTheOriginHeightsHold) {
    const TestDrawing drawing{
        "LWPOLYLINE|5 2F|8 0|90 2|70 0|10 25496000|20 6672000|42 0.3|10 25496010|20 6672000"};
    const PolyArc line = Read(drawing);
    EXPECT_NEAR(-1.5, line.HeightAt(0), 1e-9);
    for (const Point3d& p : line.ToPolyLine(0.05, true)) {
        EXPECT_GE(p.y, 6672000 - 1.5 - 1e-6);
        EXPECT_LE(p.y, 6672000 + 1e-6);
    }
}

// --- Opening, disposal, refused calls.

TEST(PolyArcEntity, ByIdOpensReadsAndCloses) {
    const TestDrawing drawing{kHalfCircle};
    host::fault::disarm();
    const PolyArc line(drawing.Id(0x2F));
    const std::vector<std::string> calls = host::fault::names();
    EXPECT_EQ(1, std::count(calls.begin(), calls.end(), "AcDbObject::close"));
    EXPECT_EQ(2u, line.count);
    EXPECT_EQ(0u, PolyArc(AcDbObjectId()).count);
    host::fault::arm("acdbOpenAcDbEntity", 1, Acad::eWasOpenForWrite);
    EXPECT_EQ(0u, PolyArc(drawing.Id(0x2F)).count);
}

TEST(PolyArcEntity, DisposalLeavesOpenClosesOrErases) {
    const TestDrawing drawing{kHalfCircle};
    AcDbEntity* const entity = drawing.Open(0x2F);
    PolyArc(entity, 0);
    EXPECT_TRUE(entity->isReadEnabled());
    PolyArc(entity, 1);
    EXPECT_FALSE(entity->isReadEnabled());
    EXPECT_FALSE(drawing.IsErased(0x2F));
    PolyArc(drawing.Open(0x2F, AcDb::kForWrite), 2);
    EXPECT_TRUE(drawing.IsErased(0x2F));
}

TEST(PolyArcEntity, DisposalErasesAlsoWhatNothingIsReadOf) {
    const TestDrawing drawing{"TEXT|5 2F|8 0|10 1|20 2|30 3|40 2.5|1 A"};
    PolyArc(drawing.Open(0x2F, AcDb::kForWrite), 2);
    EXPECT_TRUE(drawing.IsErased(0x2F));  // intended: a PolyLine only closes it
}

TEST(PolyArcEntity, ARefusedVertexRaisesWithTheVerticesReadAndTheEntityOpen) {
    const TestDrawing drawing{
        "LWPOLYLINE|5 2F|8 0|90 3|70 1|10 0|20 0|42 1|10 10|20 0|42 1|10 10|20 5"};
    AcDbEntity* const entity = drawing.Open(0x2F, AcDb::kForWrite);
    PolyArc line;
    host::fault::arm("AcDbPolyline::getPointAt", 3, Acad::eInvalidIndex);
    try {
        line.FromEntity(entity, 2);
        ADD_FAILURE() << "nothing was raised";
    } catch (const TamExpAcad& e) {
        EXPECT_STREQ(L"LightWeight PolyLine conversion to PolyLine failed!", e.message);
        EXPECT_STREQ(L"GeomStructs/PolyArc", e.file);
    }
    EXPECT_EQ("0 0, 10 0", ToText(line));
    ExpectHeights({-5}, line);
    EXPECT_TRUE(entity->isWriteEnabled());
    EXPECT_FALSE(drawing.IsErased(0x2F));
    entity->close();
}

TEST(PolyArcEntity, EachRefusedCallIsSurvivedWithAHeightPerSegment) {
    // With the calls that reading takes, some of them more than once. Circles and lines make none
    // that can fail.
    struct Reading {
        std::string record;
        std::vector<std::string> calls;
    };
    const Reading readings[] = {
        {kHalfCircle,
         {"AcDbPolyline::getPointAt", "AcDbPolyline::getBulgeAt", "AcDbPolyline::getPointAt",
          "AcDbPolyline::getBulgeAt", "AcDbObject::close"}},
        {kCircle, {"AcDbObject::close"}},
        {"ARC|5 2F|8 0|10 1|20 2|30 3|40 5|50 0|51 90",
         {"acdbGetAdsName", "AcDbCurve::getStartPoint", "AcDbCurve::getEndPoint",
          "AcDbObject::close"}},
        {"LINE|5 2F|8 0|10 1|20 2|11 4|21 5", {"AcDbObject::close"}},
        {Old("70 1", {"10 0|20 0|42 0.5", "10 10|20 0|42 1"}),
         {"AcDb2dPolyline::vertexIterator", "acdbOpenAcDbObject", "AcDbObject::close",
          "acdbOpenAcDbObject", "AcDbObject::close", "AcDbObject::close"}},
        {Old("70 9", {"10 0|20 0|70 32", "10 10|20 0|70 32"}),
         {"AcDb3dPolyline::vertexIterator", "acdbOpenAcDbObject", "AcDbObject::close",
          "acdbOpenAcDbObject", "AcDbObject::close", "AcDbObject::close"}}};
    for (const auto& [record, calls] : readings) {
        for (std::size_t n = 1; n <= calls.size(); ++n) {
            const TestDrawing drawing{record};
            AcDbEntity* const entity = drawing.Open(0x2F);
            PolyArc line;
            host::fault::arm(n, Acad::eInvalidInput);
            try {
                line.FromEntity(entity, 1);
            } catch (const TamExpAcad&) {
                EXPECT_EQ("AcDbPolyline::getPointAt", calls[n - 1]);
            }
            EXPECT_TRUE(host::fault::fired()) << calls[n - 1];
            const std::vector<std::string> made = host::fault::names();
            host::fault::disarm();
            ASSERT_GE(made.size(), n);
            EXPECT_TRUE(std::equal(calls.begin(), calls.begin() + n, made.begin())) << calls[n - 1];
            if (n == calls.size()) {
                EXPECT_EQ(calls, made);
            }
            EXPECT_EQ(line.count == 0 ? 0 : line.count - 1, line.heights.count) << calls[n - 1];
            for (const Point3d& p : line) EXPECT_LT(std::fabs(p.x) + std::fabs(p.y), 100.0);
            // What is open is what was refused to be closed, or its reading raised.
            if (made[n - 1] == "AcDbObject::close" || made[n - 1] == "AcDbPolyline::getPointAt")
                host::database::Ledger::instance().forget();
            EXPECT_EQ(0u, host::database::Ledger::instance().count()) << made[n - 1];
        }
    }
}

TEST(PolyArcEntity, WithoutItsEndsAnArcGivesNothing) {
    const TestDrawing drawing{"ARC|5 2F|8 0|10 1|20 2|30 3|40 5|50 0|51 90"};
    for (const char* const call : {"AcDbCurve::getStartPoint", "AcDbCurve::getEndPoint"}) {
        AcDbEntity* const entity = drawing.Open(0x2F);
        host::fault::arm(call, 1, Acad::eInvalidInput);
        EXPECT_EQ(0u, PolyArc(entity, 1).count);
        EXPECT_TRUE(host::fault::fired());
        AcDbEntity* const again = drawing.Open(0x2F);
        host::fault::arm(call, 1, Acad::eInvalidInput);
        EXPECT_FALSE(PolyArc::HasArcs(again));
        host::fault::disarm();
        again->close();
    }
}

TEST(PolyArcEntity, ABulgeThatIsRefusedIsStraight) {
    const TestDrawing drawing{kHalfCircle};
    AcDbEntity* const entity = drawing.Open(0x2F);
    host::fault::arm("AcDbPolyline::getBulgeAt", 1, Acad::eInvalidIndex);
    ExpectHeights({0}, PolyArc(entity, 1));
    EXPECT_TRUE(host::fault::fired());
}

// --- Acceptance.

struct Acceptance {
    std::string record;
    bool accepted, lineLike, hasArcs;
};

TEST(PolyArcEntity, AcceptanceAndArcsByExactClass) {
    const Acceptance table[] = {
        {"LINE|5 2F|8 0|11 1", false, true, false},
        {"ARC|5 2F|8 0|40 5|50 0|51 90", false, true, true},
        {kCircle, true, true, true},
        {"ELLIPSE|5 2F|8 0|11 1|40 0.5|41 0|42 6.28", true, true, true},
        {"SPLINE|5 2F|8 0|70 8|71 3", true, true, false},
        {"LWPOLYLINE|5 2F|8 0|90 2|70 0|10 0|20 0|10 9|20 0", true, true, false},
        {kHalfCircle, true, true, true},
        {Old("70 8", {"10 0|20 0|70 32"}), true, true, false},
        {Old("70 0", {"10 0|20 0", "10 9|20 0"}), true, true, false},
        {"POINT|5 2F|8 0|10 1", false, false, false},
        {"REGION|5 2F|8 0|70 1", false, false, false},
        {"TEXT|5 2F|8 0|10 1|20 2|40 2|1 A", false, false, false},
        {"INSERT|5 2F|8 0|2 NONE", false, false, false},
        {"SOLID|5 2F|8 0|10 1", false, false, false},
    };
    for (const Acceptance& row : table) {
        const TestDrawing drawing{row.record};
        AcDbEntity* const entity = drawing.Open(0x2F);
        EXPECT_EQ(row.accepted, PolyArc::IsArcEntity(entity, false)) << row.record;
        EXPECT_EQ(row.lineLike, PolyArc::IsArcEntity(entity, true)) << row.record;
        const PolyArc line;
        const PolyLine& base = line;
        EXPECT_EQ(row.lineLike, base.IsPolyEntity(entity)) << row.record;
        EXPECT_EQ(row.hasArcs, PolyArc::HasArcs(entity)) << row.record;
        EXPECT_TRUE(entity->isReadEnabled());
        entity->close();
    }
    EXPECT_FALSE(PolyArc::IsArcEntity(nullptr, true));
    EXPECT_FALSE(PolyArc::HasArcs(nullptr));
}

bool Holds(const std::string& record) {
    const TestDrawing drawing{record};
    AcDbEntity* const entity = drawing.Open(0x2F);
    const bool result = PolyArc::HasArcs(entity);
    entity->close();
    return result;
}

TEST(PolyArcEntity, ArcsOfAPlanePolylineCountByTheirHeight) {
    EXPECT_TRUE(Holds(Old("70 0", {"10 0|20 0|42 0.5", "10 9|20 0"})));
    EXPECT_FALSE(Holds(Old("70 0", {"10 0|20 0", "10 9|20 0|42 0.5"})));  // no segment of it
    EXPECT_TRUE(Holds(Old("70 1", {"10 0|20 0", "10 9|20 0|42 0.5"})));
    EXPECT_FALSE(Holds(Old("70 0", {"10 0|20 0|42 0.00009999", "10 9|20 0"})));
    // The height is bulge * chord / 2: on both sides of 0.0001.
    EXPECT_FALSE(Holds(Old("70 0", {"10 0|20 0|42 0.001", "10 0.199|20 0"})));
    EXPECT_TRUE(Holds(Old("70 0", {"10 0|20 0|42 0.001", "10 0.201|20 0"})));
}

TEST(PolyArcEntity, ArcsOfALightPolylineCountByAnyBulge) {
    EXPECT_TRUE(Holds("LWPOLYLINE|5 2F|8 0|90 2|70 0|10 0|20 0|42 0.00001|10 9|20 0"));
    EXPECT_TRUE(Holds("LWPOLYLINE|5 2F|8 0|90 2|70 0|10 0|20 0|10 9|20 0|42 1"));
}

TEST(PolyArcEntity, AnArcCountsByItsHeight) {
    // 5 (1 - cos(w / 2)) is 0.0001 at about 0.7248 degrees.
    EXPECT_FALSE(Holds("ARC|5 2F|8 0|40 5|50 0|51 0.724"));
    EXPECT_TRUE(Holds("ARC|5 2F|8 0|40 5|50 0|51 0.726"));
}

// --- On the screen.

TEST(PolyArcDraw, StraightSegmentsAreOneLineAndArcsAreChordsOf0p1) {
    host::editor::Scripted host;
    PolyArc line;
    line.AddVertex({0, 0, 0}, 0);
    line.Draw(4);
    EXPECT_TRUE(host.lines().empty());  // intended: no dot for one vertex
    line.AddVertex({5, 0, 1}, 0.000099);
    line.AddVertex({15, 0, 1}, 5);
    line.offset = {100, 200, 300};
    const PolyLine& base = line;
    base.Draw(4);
    ASSERT_GT(host.lines().size(), 30u);
    EXPECT_LT(host.lines().size(), 34u);
    EXPECT_EQ(105.0, host.lines()[0].to.x);
    EXPECT_EQ(301.0, host.lines()[0].to.z);
    for (std::size_t i = 0; i < host.lines().size(); ++i) {
        EXPECT_EQ(4, host.lines()[i].colour);
        EXPECT_EQ(0, host.lines()[i].highlight);
        if (i == 0) continue;
        EXPECT_NEAR(5.0, std::hypot(host.lines()[i].to.x - 110, host.lines()[i].to.y - 200), 1e-9);
        EXPECT_GE(host.lines()[i].to.y, 200 - 1e-9);
    }
}

}  // namespace
}  // namespace TamLib
