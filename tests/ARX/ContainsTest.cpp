// Entities and faces against a region: inside, touching, crossing, what throws and with which line.
#include "ARX/Contains.h"

#include <dbents.h>
#include <gtest/gtest.h>

#include <functional>
#include <sstream>
#include <string>

#include "tam/TamExceptions.h"
#include "tests/GeomEnts/TestDrawing.h"
#include "tests/GeomStructs/TextLines.h"

namespace TamLib {
namespace {

PolyLine Square() {
    return FromText("(0 0, 10 0, 10 10, 0 10)");
}
PolyLine Notched() {
    return FromText("(0 0, 30 0, 30 30, 20 30, 20 10, 10 10, 10 30, 0 30)");
}

// "touches crosses inside" as digits.
std::string Stands(const PolyLine& region, const std::string& record) {
    const TestDrawing drawing{record};
    AcDbEntity* const entity = drawing.Open(0x2F);
    std::string stands;
    stands += EntityTouchesRegion(region, entity) ? '1' : '0';
    stands += EntityCrossesRegion(region, entity) ? '1' : '0';
    stands += EntityInsideRegion(region, entity) ? '1' : '0';
    entity->close();
    return stands;
}

std::string LineRecord(double x1, double y1, double x2, double y2) {
    std::ostringstream record;
    record << "LINE|5 2F|8 0|10 " << x1 << "|20 " << y1 << "|11 " << x2 << "|21 " << y2;
    return record.str();
}

TEST(Contains, LinesAgainstASquare) {
    EXPECT_EQ("101", Stands(Square(), LineRecord(2, 5, 8, 5)));      // wholly inside
    EXPECT_EQ("110", Stands(Square(), LineRecord(5, 5, 15, 5)));     // across the boundary
    EXPECT_EQ("110", Stands(Square(), LineRecord(-5, 5, 15, 5)));    // through, both ends outside
    EXPECT_EQ("000", Stands(Square(), LineRecord(20, 5, 30, 5)));    // outside
    EXPECT_EQ("110", Stands(Square(), LineRecord(10, 5, 15, 5)));    // an end on it from outside
    EXPECT_EQ("110", Stands(Square(), LineRecord(5, 5, 5, 10)));     // an end on it from inside
    EXPECT_EQ("110", Stands(Square(), LineRecord(2, 10, 8, 10)));    // along a side
    EXPECT_EQ("110", Stands(Square(), LineRecord(10, 10, 15, 15)));  // at a corner
}

TEST(Contains, EndsInsideAreNotEnoughInANotch) {
    EXPECT_EQ("110", Stands(Notched(), LineRecord(5, 20, 25, 20)));
    EXPECT_EQ("000", Stands(Notched(), LineRecord(12, 15, 18, 25)));
}

TEST(Contains, CirclesAndPolylines) {
    EXPECT_EQ("101", Stands(Square(), "CIRCLE|5 2F|8 0|10 5|20 5|40 3"));
    EXPECT_EQ("110", Stands(Square(), "CIRCLE|5 2F|8 0|10 5|20 5|40 6"));
    EXPECT_EQ("000", Stands(Square(), "CIRCLE|5 2F|8 0|10 5|20 5|40 20"));  // around it
    EXPECT_EQ("101",
              Stands(Square(), "LWPOLYLINE|5 2F|8 0|90 3|70 1|10 2|20 2|10 8|20 2|10 5|20 8"));
    EXPECT_EQ("110",
              Stands(Square(), "LWPOLYLINE|5 2F|8 0|90 3|70 1|10 2|20 2|10 18|20 2|10 5|20 8"));
}

TEST(Contains, AnOpenRegionHasNoInsideButABoundary) {
    const PolyLine open = FromText("0 0, 10 0, 10 10, 0 10");
    EXPECT_EQ("000", Stands(open, LineRecord(2, 5, 8, 5)));
    EXPECT_EQ("000", Stands(open, LineRecord(-5, 5, 5, 5)));  // no segment from (0, 10) to (0, 0)
    EXPECT_EQ("110", Stands(open, LineRecord(5, 5, 15, 5)));
}

TEST(Contains, PointsNeedNoStretchPointsToLieInside) {
    const TestDrawing drawing{"POINT|5 2F|8 0|10 5|20 5", "POINT|5 30|8 0|10 10|20 5",
                              "POINT|5 31|8 0|10 15|20 5"};
    for (const auto& [handle, inside] : {std::pair{0x2F, true}, {0x30, false}, {0x31, false}}) {
        AcDbEntity* const point = drawing.Open(static_cast<std::uint64_t>(handle));
        EXPECT_EQ(handle != 0x31, EntityTouchesRegion(Square(), point));
        host::fault::arm("AcDbEntity::getStretchPoints", 1, Acad::eNotApplicable);
        EXPECT_EQ(inside, EntityInsideRegion(Square(), point));
        EXPECT_FALSE(host::fault::fired());
        EXPECT_THROW(EntityTouchesRegion(Square(), point), TamExpInternal);
        EXPECT_TRUE(host::fault::fired());
        host::fault::disarm();
        point->close();
    }
}

void ExpectRaise(const std::function<void()>& test, const wchar_t* text, std::int32_t line) {
    try {
        test();
        ADD_FAILURE() << "nothing raised, line " << line;
    } catch (const TamExpInternal& raised) {
        // Missing memory is told by the machine's own figures.
        if (*text != L'\0') {
            EXPECT_STREQ(text, raised.message);
        }
        EXPECT_EQ(line, raised.line);
        EXPECT_STREQ(L"ARX/Contains", raised.file);
    }
}

TEST(Contains, AnEntityWithoutStretchPointsRaises) {
    const TestDrawing drawing{"REGION|5 2F|8 0|70 1"};
    AcDbEntity* const region = drawing.Open(0x2F);
    const PolyLine square = Square();
    ExpectRaise([&] { EntityTouchesRegion(square, region); }, L"Getting StretchPoints failed", 185);
    ExpectRaise([&] { EntityInsideRegion(square, region); }, L"Getting StretchPoints failed", 288);
    EXPECT_FALSE(EntityCrossesRegion(square, region));  // asks for none
    region->close();
}

TEST(Contains, WhatTheHostRefusesRaises) {
    const TestDrawing drawing{LineRecord(20, 5, 30, 5), "LINE|5 30|8 0|10 2|20 5|11 8|21 5"};
    AcDbEntity *const outside = drawing.Open(0x2F), *const inside = drawing.Open(0x30);
    const PolyLine square = Square();
    const auto refused = [](const char* call, const wchar_t* text, std::int32_t line,
                            const std::function<void()>& test) {
        host::fault::arm(call, 1, Acad::eNotApplicable);
        ExpectRaise(test, text, line);
        host::fault::disarm();
    };
    const char* const points = "AcDbEntity::getStretchPoints";
    const char* const meeting = "AcDbEntity::intersectWith";
    const char* const memory = "AcDbObject::operator new";
    const auto touches = [&] { EntityTouchesRegion(square, outside); };
    const auto crosses = [&] { EntityCrossesRegion(square, outside); };
    const auto isInside = [&] { EntityInsideRegion(square, inside); };
    refused(points, L"Getting StretchPoints failed", 185, touches);
    refused(points, L"Getting StretchPoints failed", 288, isInside);
    refused(meeting, L"IntersectWith failed", 198, touches);
    refused(meeting, L"IntersectWith failed", 238, crosses);
    refused(meeting, L"IntersectWith failed", 301, isInside);
    refused(memory, L"", 194, touches);
    refused(memory, L"", 234, crosses);
    refused(memory, L"", 297, isInside);
    outside->close();
    inside->close();
}

// --- Faces.

std::string Face(const PolyLine& region, const PolyLine& corners) {
    std::ostringstream record;
    record << "3DFACE|5 2F|8 0";
    for (int i = 0; i < 4; ++i) {
        const Point3d& p = corners[i];
        record << '|' << 10 + i << ' ' << p.x << '|' << 20 + i << ' ' << p.y << '|' << 30 + i << ' '
               << p.z;
    }
    const TestDrawing drawing{record.str()};
    AcDbFace* const face = AcDbFace::cast(drawing.Open(0x2F));
    std::string stands;
    stands += FaceTouchesRegion(region, face) ? '1' : '0';
    stands += FaceCrossesRegion(region, face) ? '1' : '0';
    stands += FaceInsideRegion(region, face) ? '1' : '0';
    face->close();
    return stands;
}
std::string Face(const PolyLine& region, const std::string& corners) {
    return Face(region, FromText(corners));
}

TEST(Contains, FacesAgainstASquare) {
    EXPECT_EQ("101", Face(Square(), "2 2, 8 2, 8 8, 2 8"));
    EXPECT_EQ("101", Face(Square(), "2 2 50, 8 2 60, 8 8 70, 8 8 70"));  // a triangle, in plan
    EXPECT_EQ("110", Face(Square(), "5 5, 15 5, 15 8, 5 8"));
    EXPECT_EQ("110", Face(Square(), "-5 4, 15 4, 15 6, -5 6"));  // no corner inside
    EXPECT_EQ("000", Face(Square(), "20 0, 30 0, 30 10, 20 10"));
    EXPECT_EQ("000", Face(Square(), "9 12, 12 9, 15 15, 12 15"));  // within the rectangle's reach
    EXPECT_EQ("000", Face(Square(), "-20 -20, 30 -20, 30 30, -20 30"));  // around it
}

TEST(Contains, TheFourthEdgeTakesNoPart) {
    EXPECT_EQ("000", Face(Square(), "-5 5, -5 20, 15 20, 15 5"));
    EXPECT_EQ("110", Face(Square(), "15 5, -5 5, -5 20, 15 20"));
}

TEST(Contains, ACornerOnTheBoundaryTouchesAndIsNotInside) {
    // Intended: an edge that ends on an upright side crosses it.
    EXPECT_EQ("110", Face(Square(), "10 5, 15 2, 15 8, 12 8"));
    EXPECT_EQ("100", Face(Square(), "5 0, 2 -5, 8 -5, 8 -4"));
    // Inside but for a corner on the lower side.
    EXPECT_EQ("100", Face(Square(), "5 0, 8 5, 5 8, 2 5"));
    // Intended: on the upper side it is not inside, and edges that only touch don't cross.
    EXPECT_EQ("000", Face(Square(), "5 10, 8 15, 2 15, 2 14"));
}

TEST(Contains, EdgesThatAllTouchCrossWhenTheMiddleBetweenTheirCornersIsInside) {
    EXPECT_EQ("110", Face(Square(), "0 0, 10 0, 10 10, 0 10"));
    EXPECT_EQ("0", Face(Notched(), "10 30, 10 10, 20 10, 20 30").substr(1, 1));  // the notch
    // Intended: the fourth corner is none of theirs, though the middle between it and (10, 10) is
    // inside.
    EXPECT_EQ("0", Face(Notched(), "10 30, 10 10, 20 10, 20 0").substr(1, 1));
}

TEST(Contains, TheStoredRectangleRejectsAsItStands) {
    PolyLine region = Square();
    region.hasBounds = 1;
    region.minPoint = {100, 100, 0};
    region.maxPoint = {110, 110, 0};
    EXPECT_EQ("000", Face(region, "2 2, 8 2, 8 8, 2 8"));
    EXPECT_EQ("000", Face(region, "5 5, 15 5, 15 8, 5 8"));
}

TEST(Contains, AllCornersHaveToLieBeyondTheSameSideStrictly) {
    PolyLine region = Square();
    region.hasBounds = 1;
    const auto stands = [&region](const Point3d& low, const Point3d& high) {
        region.minPoint = low;
        region.maxPoint = high;
        return Face(region, "2 2, 8 2, 8 8, 2 8");
    };
    EXPECT_EQ("101", stands({8, -5, 0}, {20, 20, 0}));
    EXPECT_EQ("000", stands({8.001, -5, 0}, {20, 20, 0}));
    EXPECT_EQ("101", stands({-5, 8, 0}, {20, 20, 0}));
    EXPECT_EQ("000", stands({-5, 8.001, 0}, {20, 20, 0}));
    EXPECT_EQ("101", stands({-5, -5, 0}, {2, 20, 0}));
    EXPECT_EQ("000", stands({-5, -5, 0}, {1.999, 20, 0}));
    EXPECT_EQ("101", stands({-5, -5, 0}, {20, 2, 0}));
    EXPECT_EQ("000", stands({-5, -5, 0}, {20, 1.999, 0}));
}

TEST(Contains, TheStoredRectangleIsAskedForTouchingCornersButNotForThoseInside) {
    PolyLine region = Square();
    region.hasBounds = 1;
    region.minPoint = {3, 3, 0};
    region.maxPoint = {4, 4, 0};
    EXPECT_EQ("001", Face(region, "2 2, 8 2, 8 8, 2 8"));
}

TEST(Contains, WithoutAStoredRectangleThatOfTheVerticesRejects) {
    PolyLine region = Square();
    region.minPoint = {100, 100, 0};  // not in use
    region.maxPoint = {110, 110, 0};
    EXPECT_EQ("101", Face(region, "2 2, 8 2, 8 8, 2 8"));
    EXPECT_EQ("000", Face(PolyLine(), "2 2, 8 2, 8 8, 2 8"));
}

}  // namespace
}  // namespace TamLib
