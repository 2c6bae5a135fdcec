// Regions and solids: the bodies that the host makes, and how they stand in the file.
#include <dbents.h>
#include <dbregion.h>
#include <dbsol3d.h>
#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "host/database/Bodies.h"
#include "host/database/Drawing.h"
#include "host/database/ObjectFields.h"
#include "host/database/ObjectImp.h"
#include "tests/host/database/NewEntities.h"
#include "tests/host/database/NewRegions.h"
#include "tests/host/support/LedgerListener.h"

namespace host::database {
namespace {

std::unique_ptr<AcDbRegion> discOf(const AcGeVector3d& normal, double radius) {
    AcDbCircle circle(AcGePoint3d(1, 2, 3), normal, radius);
    return test::regionOf(circle);
}

TEST(Regions, AreMadeOfCirclesAndOtherCurvesPassedOver) {
    AcDbCircle circle(AcGePoint3d(1, 2, 3), AcGeVector3d(0, 0, 1), 2);
    AcDbCircle none(AcGePoint3d(1, 2, 3), AcGeVector3d(0, 0, 1), 0);
    AcDbLine line(AcGePoint3d(1, 2, 3), AcGePoint3d(4, 5, 6));
    AcDbVoidPtrArray curves, regions;
    for (AcDbCurve* curve : std::vector<AcDbCurve*>{&line, &circle, &none, &circle})
        curves.append(curve);
    EXPECT_EQ(Acad::eOk, AcDbRegion::createFromCurves(curves, regions));
    ASSERT_EQ(2, regions.length());
    for (int i = 0; i < 2; ++i) {
        const std::unique_ptr<AcDbRegion> region(static_cast<AcDbRegion*>(regions[i]));
        EXPECT_FALSE(region->isNull());
    }
    EXPECT_TRUE(AcDbRegion().isNull());
    AcDbVoidPtrArray lines, empty;
    lines.append(&line);
    lines.append(&none);
    EXPECT_EQ(Acad::eInvalidInput, AcDbRegion::createFromCurves(lines, empty));
    EXPECT_EQ(0, empty.length());
}

TEST(Solids, TakeADiscAlongALineAcrossIt) {
    AcDb3dSolid solid;
    EXPECT_TRUE(solid.isNull());
    const auto disc = discOf({0, 0, 1}, 2);
    const AcDbLine across(AcGePoint3d(1, 2, 3), AcGePoint3d(1, 2, 8));
    const AcDbLine slanted(AcGePoint3d(1, 2, 3), AcGePoint3d(2, 2, 8));
    const AcDbLine nowhere(AcGePoint3d(1, 2, 3), AcGePoint3d(1, 2, 3));
    const AcDbCircle circle(AcGePoint3d(1, 2, 3), AcGeVector3d(1, 0, 0), 2);
    const AcDbRegion empty;
    EXPECT_EQ(Acad::eNullObjectPointer, solid.extrudeAlongPath(nullptr, &across));
    EXPECT_EQ(Acad::eNullObjectPointer, solid.extrudeAlongPath(disc.get(), nullptr));
    EXPECT_EQ(Acad::eInvalidInput, solid.extrudeAlongPath(disc.get(), &slanted));
    EXPECT_EQ(Acad::eInvalidInput, solid.extrudeAlongPath(disc.get(), &nowhere));
    EXPECT_EQ(Acad::eInvalidInput, solid.extrudeAlongPath(&empty, &across));
    EXPECT_EQ(Acad::eInvalidInput, solid.extrudeAlongPath(disc.get(), &across, 0.1));
    EXPECT_EQ(Acad::eNotImplementedYet, solid.extrudeAlongPath(disc.get(), &circle));
    EXPECT_TRUE(solid.isNull());
    EXPECT_EQ(Acad::eOk, solid.extrudeAlongPath(disc.get(), &across));
    EXPECT_FALSE(solid.isNull());
}

TEST(Regions, OfCirclesHaveARadiusThatTheModellerKnows) {
    for (const double radius : {0.99e-6, 1e-6}) {
        AcDbCircle circle({1, 2, 3}, AcGeVector3d::kZAxis, radius);
        AcDbVoidPtrArray curves, regions;
        curves.append(&circle);
        const Acad::ErrorStatus status = AcDbRegion::createFromCurves(curves, regions);
        EXPECT_EQ(radius < 1e-6 ? Acad::eInvalidInput : Acad::eOk, status);
        for (int i = 0; i < regions.length(); ++i) delete static_cast<AcDbRegion*>(regions[i]);
    }
}

TEST(Regions, ANullAmongTheCurvesIsRefused) {
    AcDbCircle circle({1, 2, 3}, AcGeVector3d::kZAxis, 2);
    AcDbVoidPtrArray curves, regions;
    curves.append(&circle);
    curves.append(static_cast<AcDbCurve*>(nullptr));
    EXPECT_EQ(Acad::eNullObjectPointer, AcDbRegion::createFromCurves(curves, regions));
    EXPECT_EQ(0, regions.length());
}

TEST(Solids, HaveAHeightThatTheModellerKnowsAndStandOnTheDiscWhereverThePathIs) {
    const auto disc = discOf({0, 0, 1}, 2);
    AcDb3dSolid solid;
    const AcDbLine low({1, 2, 3}, {1, 2, 3 + 0.99e-6}), high({1, 2, 0}, {1, 2, 1.01e-6});
    EXPECT_EQ(Acad::eInvalidInput, solid.extrudeAlongPath(disc.get(), &low));
    EXPECT_EQ(Acad::eOk, solid.extrudeAlongPath(disc.get(), &high));
    EXPECT_EQ(Acad::eInvalidInput, solid.extrudeAlongPath(test::triangle().get(), &high));
    const AcDbLine away({100, 200, 300}, {100, 200, 305});
    EXPECT_EQ(Acad::eOk, solid.extrudeAlongPath(disc.get(), &away));
    const SolidFields& fields = fieldsOf<SolidFields>(solid);
    EXPECT_EQ(0.0, fields.base.distanceTo({1, 2, 3}));
    EXPECT_EQ(5.0, fields.axis.z);
}

TEST(Solids, AreRefusedInReleasesThatHaveNone) {
    for (const auto& [release, fits] :
         std::vector<std::pair<const char*, bool>>{{"AC1004", false},
                                                   {"AC1006", false},
                                                   {"AC1009", false},
                                                   {"AC1012", true},
                                                   {"AC1014", true},
                                                   {"AC1015", true},
                                                   {"AC1018", true},
                                                   {"AC1021", true},
                                                   {"AC1024", true},
                                                   {"AC1027", true},
                                                   {"AC1032", true}}) {
        const auto database = test::DrawingText(release).layer("0").database();
        EXPECT_EQ(fits ? Acad::eOk : Acad::eInvalidDwgVersion,
                  test::append(*database, test::cylinder().release()))
            << release;
        EXPECT_EQ(fits ? 1u : 0u, modelSpaceIds(*database).size()) << release;
    }
    const auto database = test::DrawingText("AC1015").layer("0").database();
    EXPECT_EQ(Acad::eInvalidInput, test::append(*database, new AcDb3dSolid));
}

TEST(Solids, StandInTheFileAsEncodedLines) {
    for (const char* const release : {"AC1012", "AC1014", "AC1015", "AC1021"}) {
        const auto database = test::DrawingText(release).layer("0").database();
        ASSERT_EQ(Acad::eOk, test::append(*database, test::cylinder().release()));
        const auto document = dxf::Document::fromBytes(test::savedBytes(*database), "saved");
        std::vector<std::string> solid;
        for (dxf::RecordIndex record = 0; record < document->size(); ++record) {
            if (document->type(record) == "3DSOLID") solid = test::groupsOf(*document, record);
        }
        std::vector<std::string> markers, lines;
        for (const std::string& group : solid) {
            if (group.rfind("100 ", 0) == 0) markers.push_back(group.substr(4));
            if (group.rfind("1 ", 0) == 0) lines.push_back(group.substr(2));
        }
        std::vector<std::string> expected{"AcDbEntity", "AcDbModelerGeometry"};
        if (release == std::string("AC1021")) expected.emplace_back("AcDb3dSolid");
        EXPECT_EQ(expected, markers);
        const auto body = bodyText(Cylinder{{1, 2, 3}, {0, 0, 5}, 2});
        ASSERT_EQ(body.size(), lines.size());
        for (std::size_t i = 0; i < body.size(); ++i) EXPECT_EQ(encodedBody(body[i]), lines[i]);
    }
}

TEST(Bodies, CodesOfACharacterAndItsImageSumTo159) {
    EXPECT_EQ("=0;& {rn |", encodedBody("body $-1 #"));
    EXPECT_EQ("^ ", encodedBody("A"));
    EXPECT_EQ("  ", encodedBody("  "));
}

// The records of a body: type and the indexes that it refers to, in their order.
struct Record {
    std::string type;
    std::vector<int> refers;
    std::vector<std::string> rest;
};
std::vector<Record> recordsOf(const std::vector<std::string>& lines) {
    std::vector<Record> records;
    for (std::size_t i = 3; i + 1 < lines.size(); ++i) {
        std::istringstream words(lines[i]);
        Record record;
        words >> record.type;
        for (std::string word; words >> word;) {
            if (word[0] == '$') {
                record.refers.push_back(std::stoi(word.substr(1)));
            } else {
                record.rest.push_back(word);
            }
        }
        records.push_back(record);
    }
    return records;
}

TEST(Bodies, EveryReferenceLeadsToTheTypeItIsFor) {
    // attribute first, then what each type refers to; an empty text: nothing.
    const std::map<std::string, std::vector<std::string>> wanted{
        {"body", {"", "lump", "", ""}},
        {"lump", {"", "lump", "shell", "body"}},
        {"shell", {"", "shell", "", "face", "", "lump"}},
        {"face", {"", "face", "loop", "shell", "", "surface"}},
        {"loop", {"", "loop", "coedge", "face"}},
        {"coedge", {"", "coedge", "coedge", "coedge", "edge", "loop", ""}},
        {"edge", {"", "vertex", "vertex", "coedge", "curve"}},
        {"vertex", {"", "edge", "point"}}};
    const auto records = recordsOf(bodyText(Cylinder{{1, 2, 3}, {3, 4, 0}, 2}));
    ASSERT_EQ(25u, records.size());
    for (const Record& record : records) {
        EXPECT_EQ("#", record.rest.back());
        const auto found = wanted.find(record.type);
        const auto types = found != wanted.end() ? found->second : std::vector<std::string>{""};
        ASSERT_EQ(types.size(), record.refers.size()) << record.type;
        for (std::size_t i = 0; i < types.size(); ++i) {
            if (record.refers[i] < 0) continue;
            ASSERT_LT(static_cast<std::size_t>(record.refers[i]), records.size());
            const std::string& type = records[static_cast<std::size_t>(record.refers[i])].type;
            EXPECT_FALSE(types[i].empty()) << record.type;
            EXPECT_NE(std::string::npos, type.find(types[i])) << record.type << " " << type;
        }
    }
    // Partners share an edge and run against each other.
    for (std::size_t i = 0; i < records.size(); ++i) {
        if (records[i].type != "coedge") continue;
        const Record& partner = records[static_cast<std::size_t>(records[i].refers[3])];
        EXPECT_EQ(static_cast<int>(i), partner.refers[3]);
        EXPECT_EQ(records[i].refers[4], partner.refers[4]);
        EXPECT_NE(records[i].rest[0], partner.rest[0]);
    }
}

TEST(Bodies, PlacesItsCirclesAtBothEnds) {
    const auto records = recordsOf(bodyText(Cylinder{{1, 2, 3}, {3, 4, 0}, 2}));
    std::vector<std::vector<double>> circles, points;
    for (const Record& record : records) {
        std::vector<double> numbers;
        for (const std::string& word : record.rest)
            if (word != "#" && word != "I") numbers.push_back(std::strtod(word.c_str(), nullptr));
        if (record.type == "ellipse-curve") circles.push_back(numbers);
        if (record.type == "point") points.push_back(numbers);
    }
    ASSERT_EQ(2u, circles.size());
    ASSERT_EQ(2u, points.size());
    for (std::size_t i = 0; i < 2; ++i) {
        const auto& c = circles[i];
        EXPECT_EQ((std::vector<double>{1.0 + 3.0 * static_cast<double>(i),
                                       2.0 + 4.0 * static_cast<double>(i), 3.0}),
                  (std::vector<double>{c[0], c[1], c[2]}));
        EXPECT_NEAR(0.6, c[3], 1e-15);
        EXPECT_NEAR(0.8, c[4], 1e-15);
        EXPECT_NEAR(2.0, std::sqrt(c[6] * c[6] + c[7] * c[7] + c[8] * c[8]), 1e-14);
        EXPECT_NEAR(0.0, c[3] * c[6] + c[4] * c[7] + c[5] * c[8], 1e-15);
        for (std::size_t axis = 0; axis < 3; ++axis)
            EXPECT_NEAR(c[axis] + c[6 + axis], points[i][axis], 1e-14);
    }
}

}  // namespace
}  // namespace host::database
