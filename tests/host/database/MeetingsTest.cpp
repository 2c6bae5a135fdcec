// Stretch points of entities, and where two of them meet.
#include <dbents.h>
#include <dbregion.h>
#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <string>

#include "host/database/Fault.h"
#include "tests/host/support/DrawingText.h"
#include "tests/host/support/LedgerListener.h"

namespace {

using host::test::DrawingText;

std::string text(const AcGePoint3dArray& points) {
    std::ostringstream result;
    result.precision(9);
    for (int i = 0; i < points.length(); ++i) {
        const auto clean = [](double v) { return std::fabs(v) < 1e-9 ? 0.0 : v; };
        result << (i > 0 ? ", " : "") << clean(points[i].x) << ' ' << clean(points[i].y);
        if (clean(points[i].z) != 0.0) result << ' ' << points[i].z;
    }
    return result.str();
}

class Two {
  public:
    explicit Two(const std::string& a, const std::string& b = "POINT|5 30|8 0|10 999|20 999") {
        database_ = DrawingText()
                        .layer("0")
                        .block("MARK", {"LINE|5 60|8 0|10 -1|20 0|11 1|21 0"})
                        .entity(a)
                        .entity(b)
                        .database();
        first_ = open(0x2F);
        second_ = open(0x30);
    }
    ~Two() {
        first_->close();
        second_->close();
    }
    Two(const Two&) = delete;
    Two& operator=(const Two&) = delete;

    AcDbEntity& first() { return *first_; }
    AcDbEntity& second() { return *second_; }
    std::string stretchPoints() {
        AcGePoint3dArray points;
        EXPECT_EQ(Acad::eOk, first_->getStretchPoints(points));
        return text(points);
    }
    std::string meeting() {
        AcGePoint3dArray points;
        EXPECT_EQ(Acad::eOk, first_->intersectWith(second_, AcDb::kOnBothOperands, points));
        return text(points);
    }

  private:
    AcDbEntity* open(std::uint64_t handle) {
        AcDbObjectId id;
        AcDbEntity* entity = nullptr;
        EXPECT_EQ(Acad::eOk, database_->getAcDbObjectId(id, false, AcDbHandle(handle)));
        EXPECT_EQ(Acad::eOk, acdbOpenAcDbEntity(entity, id, AcDb::kForRead));
        return entity;
    }

    std::unique_ptr<AcDbDatabase> database_;
    AcDbEntity* first_ = nullptr;
    AcDbEntity* second_ = nullptr;
};

TEST(StretchPoints, OfCurvesAreEndsAndVertices) {
    EXPECT_EQ("1 2 3, 4 5 6", Two("LINE|5 2F|8 0|10 1|20 2|30 3|11 4|21 5|31 6").stretchPoints());
    const std::string vertices = "|10 0|20 0|10 4|20 0|10 4|20 3";
    EXPECT_EQ("0 0, 4 0, 4 3", Two("LWPOLYLINE|5 2F|8 0|90 3|70 0" + vertices).stretchPoints());
    EXPECT_EQ("0 0, 4 0, 4 3", Two("LWPOLYLINE|5 2F|8 0|90 3|70 1" + vertices).stretchPoints());
    EXPECT_EQ("5 0, 0 5", Two("ARC|5 2F|8 0|10 0|20 0|40 5|50 0|51 90").stretchPoints());
    EXPECT_EQ("5 0, 0 5, -5 0, 0 -5", Two("CIRCLE|5 2F|8 0|10 0|20 0|40 5").stretchPoints());
}

TEST(StretchPoints, OfOthersAreWhereTheyStandAndTheirCorners) {
    EXPECT_EQ("1 2 3", Two("POINT|5 2F|8 0|10 1|20 2|30 3").stretchPoints());
    EXPECT_EQ("1 2", Two("TEXT|5 2F|8 0|10 1|20 2|40 2.5|1 A").stretchPoints());
    EXPECT_EQ("1 2", Two("MTEXT|5 2F|8 0|10 1|20 2|40 2.5|1 A").stretchPoints());
    EXPECT_EQ("1 2", Two("INSERT|5 2F|8 0|2 MARK|10 1|20 2").stretchPoints());
    EXPECT_EQ("0 0, 4 0, 4 3, 0 3",
              Two("3DFACE|5 2F|8 0|10 0|20 0|11 4|21 0|12 4|22 3|13 0|23 3").stretchPoints());
    EXPECT_EQ("", Two("REGION|5 2F|8 0|70 1").stretchPoints());
}

TEST(StretchPoints, AreAppended) {
    Two two("POINT|5 2F|8 0|10 1|20 2");
    AcGePoint3dArray points;
    points.append(AcGePoint3d(7, 7, 0));
    EXPECT_EQ(Acad::eOk, two.first().getStretchPoints(points));
    EXPECT_EQ("7 7, 1 2", text(points));
}

const char* const kLevel = "LINE|5 2F|8 0|10 0|20 0|30 0|11 10|21 0|31 20";

TEST(Meeting, LinesAtCrossingsWithTheHeightOfTheFirst) {
    EXPECT_EQ("5 0 10", Two(kLevel, "LINE|5 30|8 0|10 5|20 -5|11 5|21 5").meeting());
    EXPECT_EQ("", Two(kLevel, "LINE|5 30|8 0|10 5|20 1|11 5|21 5").meeting());
    EXPECT_EQ("", Two(kLevel, "LINE|5 30|8 0|10 11|20 -5|11 11|21 5").meeting());
}

TEST(Meeting, EndsAndVerticesThatTouch) {
    EXPECT_EQ("5 0 10", Two(kLevel, "LINE|5 30|8 0|10 5|20 0|11 5|21 5").meeting());
    EXPECT_EQ("10 0 20", Two(kLevel, "LINE|5 30|8 0|10 10|20 0|11 15|21 5").meeting());
    EXPECT_EQ("5 0 10",
              Two(kLevel, "LWPOLYLINE|5 30|8 0|90 3|70 0|10 3|20 3|10 5|20 0|10 7|20 3").meeting());
    EXPECT_EQ("4 0 8", Two(kLevel, "POINT|5 30|8 0|10 4|20 0").meeting());
}

TEST(Meeting, AlongEachOtherBothEnds) {
    EXPECT_EQ("2 0 4, 8 0 16", Two(kLevel, "LINE|5 30|8 0|10 2|20 0|11 8|21 0").meeting());
    EXPECT_EQ("5 0 10, 10 0 20", Two(kLevel, "LINE|5 30|8 0|10 5|20 0|11 15|21 0").meeting());
    EXPECT_EQ("", Two(kLevel, "LINE|5 30|8 0|10 0|20 0.001|11 9|21 0.001").meeting());
}

TEST(Meeting, NothingForAnEntityWithinAnother) {
    EXPECT_EQ("", Two("LINE|5 2F|8 0|10 1|20 1|11 2|21 2",
                      "LWPOLYLINE|5 30|8 0|90 4|70 1|10 0|20 0|10 9|20 0|10 9|20 9|10 0|20 9")
                      .meeting());
}

TEST(Meeting, CurvesWithinAMillionthOfTheirSize) {
    Two two(kLevel, "CIRCLE|5 30|8 0|10 3|20 4|40 5");
    AcGePoint3dArray points;
    EXPECT_EQ(Acad::eOk, two.first().intersectWith(&two.second(), AcDb::kOnBothOperands, points));
    ASSERT_EQ(2, points.length());
    EXPECT_NEAR(0, std::min(points[0].x, points[1].x), 1e-4);
    EXPECT_NEAR(6, std::max(points[0].x, points[1].x), 1e-4);
}

TEST(Meeting, BlockReferencesByWhatTheyHold) {
    EXPECT_EQ("5 0 10", Two(kLevel, "INSERT|5 30|8 0|2 MARK|10 5|20 0|50 90").meeting());
}

TEST(Meeting, APolylineThatIsInNoDatabase) {
    Two two(kLevel);
    AcGePoint3dArray vertices;
    for (const double y : {-5.0, 5.0}) vertices.append(AcGePoint3d(3, y, 100));
    const AcDb3dPolyline polyline(AcDb::k3dSimplePoly, vertices, false);
    AcGePoint3dArray points;
    EXPECT_EQ(Acad::eOk, two.first().intersectWith(&polyline, AcDb::kOnBothOperands, points));
    EXPECT_EQ("3 0 6", text(points));
    EXPECT_EQ(Acad::eOk, polyline.intersectWith(&two.first(), AcDb::kOnBothOperands, points));
    EXPECT_EQ("3 0 6, 3 0 100", text(points));
}

TEST(Meeting, FarFromTheOrigin) {
    Two two("LINE|5 2F|8 0|10 25000000|20 7000000|11 25000010|21 7000003",
            "LINE|5 30|8 0|10 25000005|20 7000001.5|11 25000005|21 7000009");
    EXPECT_EQ("25000005 7000001.5", two.meeting());
}

TEST(Meeting, Statuses) {
    Two two(kLevel);
    AcGePoint3dArray points;
    EXPECT_EQ(Acad::eNullEntityPointer,
              two.first().intersectWith(nullptr, AcDb::kOnBothOperands, points));
    EXPECT_EQ(Acad::eNotImplementedYet,
              two.first().intersectWith(&two.second(), AcDb::kExtendThis, points));
    host::fault::arm("AcDbEntity::intersectWith", 1, Acad::eNotApplicable);
    EXPECT_EQ(Acad::eNotApplicable,
              two.first().intersectWith(&two.second(), AcDb::kOnBothOperands, points));
    host::fault::arm("AcDbEntity::getStretchPoints", 1, Acad::eNotApplicable);
    EXPECT_EQ(Acad::eNotApplicable, two.first().getStretchPoints(points));
    host::fault::disarm();
    EXPECT_EQ(0, points.length());
    two.second().close();
    EXPECT_EQ(Acad::eNotOpenForRead, two.second().getStretchPoints(points));
    EXPECT_EQ(Acad::eNotOpenForRead,
              two.first().intersectWith(&two.second(), AcDb::kOnBothOperands, points));
}

}  // namespace
