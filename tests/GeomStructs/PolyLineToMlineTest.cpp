// PolyLine written to the drawing as a multi-line.
#include <dbmline.h>
#include <gtest/gtest.h>

#include <string>

#include "GeomStructs/PolyLine.h"
#include "tam/TamExceptions.h"
#include "tests/GeomEnts/DrawnEntities.h"
#include "tests/GeomStructs/TextLines.h"

namespace TamLib {
namespace {

const char* const kOpen = "0 0 1, 4 0 1, 4 3 1";
const char* const kRing = "(0 0 1, 4 0 1, 4 3 1)";
const AcGeVector3d kUp(0, 0, 1);

AcDbObjectId Written(const PolyLine& line, int justification = 1, double scale = 2.5,
                     const AcGeVector3d& normal = kUp) {
    AcDbObjectId id;
    EXPECT_EQ(0, line.ToMline(5, scale, justification, L"walls", &id, nullptr, normal));
    return id;
}

std::string Vertices(AcDbObjectId id) {
    const ReadAs<AcDbMline> mline(id);
    PolyLine vertices;
    for (int i = 0; i < mline->numVertices(); ++i) vertices.Append(ToPoint3d(mline->vertexAt(i)));
    return ToText(vertices);
}

TEST(PolyLineToMline, IsOfTheStandardStyleInItsPlane) {
    const TestDrawing drawing{};
    const AcDbObjectId id = Written(FromText(kOpen));
    EXPECT_EQ(std::vector<AcDbObjectId>{id}, Entities(drawing));
    EXPECT_EQ((Look{L"AcDbMline", L"walls", 5}), LookOf(id));
    EXPECT_EQ(kOpen, Vertices(id));
    const ReadAs<AcDbMline> mline(id);
    EXPECT_EQ(2.5, mline->scale());
    EXPECT_EQ(1.0, mline->normal().z);
    EXPECT_FALSE(mline->closedMline());
    const ReadAs<AcDbMlineStyle> style(mline->style());
    EXPECT_EQ(std::wstring(L"STANDARD"), style->name());
}

TEST(PolyLineToMline, AClosedOneIsClosedWithoutItsRepeatedVertex) {
    const TestDrawing drawing{};
    const AcDbObjectId id = Written(FromText(kRing));
    EXPECT_EQ(kOpen, Vertices(id));
    EXPECT_TRUE(ReadAs<AcDbMline>(id)->closedMline());
    // Ends that differ by a ten-thousandth in one axis are two.
    for (const double off : {0.99e-4, 1e-4}) {
        for (const Point3d& by : {Point3d(off, 0, 0), Point3d(0, off, 0), Point3d(0, 0, off)}) {
            PolyLine line = FromText("0 0, 4 0, 4 3, 0 0");
            line[3] += by;
            const ReadAs<AcDbMline> mline(Written(line));
            EXPECT_EQ(off < 1e-4, mline->closedMline());
            EXPECT_EQ(off < 1e-4 ? 3 : 4, mline->numVertices());
        }
    }
}

TEST(PolyLineToMline, JustificationSaysWhichLineGoesThroughTheVertices) {
    const TestDrawing drawing{};
    for (const int justification : {0, 1, 2}) {
        EXPECT_EQ(justification,
                  ReadAs<AcDbMline>(Written(FromText(kOpen), justification))->justification());
    }
    // What is none of them leaves the host's own, the first.
    EXPECT_EQ(0, ReadAs<AcDbMline>(Written(FromText(kOpen), 3))->justification());
}

TEST(PolyLineToMline, TheNormalSaysThePlaneAndVerticesAreMovedIntoIt) {
    const TestDrawing drawing{};
    const AcDbObjectId id = Written(FromText("0 0 1, 4 7 1, 4 7 5"), 1, 1.0, AcGeVector3d(0, 2, 0));
    EXPECT_EQ("0 0 1, 4 0 1, 4 0 5", Vertices(id));
    EXPECT_EQ(1.0, ReadAs<AcDbMline>(id)->normal().y);
}

TEST(PolyLineToMline, OffsetIsAddedUnlessItIsBelowItsLimit) {
    const TestDrawing drawing{};
    PolyLine line = FromText(kRing);
    line.offset = {10, 20, 30};
    EXPECT_EQ("10 20 31, 14 20 31, 14 23 31", Vertices(Written(line)));
    EXPECT_EQ(kRing, "(" + ToText(FromText(kOpen)) + ")");
    for (const double off : {0.99e-10, 1e-10}) {
        line.offset = {0, 0, off};
        const ReadAs<AcDbMline> mline(Written(line));
        EXPECT_EQ(off < 1e-10 ? 1.0 : 1.0 + 1e-10, mline->vertexAt(0).z);
    }
}

TEST(PolyLineToMline, WithoutVerticesNothingIsWrittenAndOneIsRefused) {
    const TestDrawing drawing{};
    AcDbObjectId id;
    EXPECT_EQ(0, PolyLine().ToMline(5, 1.0, 0, L"walls", &id, nullptr, kUp));
    EXPECT_EQ(2u, Layers(drawing.Database()).size());
    for (const char* const text : {"1 2", "1 2, 1 2"})  // the second is closed
        EXPECT_EQ(Acad::eInvalidInput,
                  FromText(text).ToMline(5, 1.0, 0, nullptr, &id, nullptr, kUp));
    EXPECT_TRUE(id.isNull());
    EXPECT_TRUE(Entities(drawing).empty());
}

TEST(PolyLineToMline, GoesIntoTheDatabaseGiven) {
    const TestDrawing drawing{};
    const auto other = host::test::DrawingText().layer("0").database();
    AcDbObjectId id;
    EXPECT_EQ(0, FromText(kOpen).ToMline(5, 1.0, 0, L"walls", &id, other.get(), kUp));
    EXPECT_EQ(other.get(), id.database());
    EXPECT_TRUE(Entities(drawing).empty());
    EXPECT_EQ(std::vector<AcDbObjectId>{id}, host::database::modelSpaceIds(*other));
}

TEST(PolyLineToMline, IsRefusedByReleasesThatHaveNone) {
    const auto old = host::test::DrawingText("AC1009").layer("0").database();
    EXPECT_EQ(Acad::eInvalidDwgVersion,
              FromText(kOpen).ToMline(5, 1.0, 0, nullptr, nullptr, old.get(), kUp));
    EXPECT_TRUE(host::database::modelSpaceIds(*old).empty());
}

TEST(PolyLineToMline, WithoutTheStyleTheHostTellsSo) {
    const TestDrawing drawing{};
    for (const char* const call : {"AcDbDatabase::getMLStyleDictionary", "AcDbDictionary::getAt"}) {
        host::fault::arm(call, 1, Acad::eOutOfDisk);
        EXPECT_EQ(Acad::eKeyNotFound,
                  FromText(kOpen).ToMline(5, 1.0, 0, L"walls", nullptr, nullptr, kUp));
        host::fault::disarm();
    }
    EXPECT_TRUE(Entities(drawing).empty());
    EXPECT_EQ(2u, Layers(drawing.Database()).size());
}

TEST(PolyLineToMline, SettersAreCalledInOrderTheJustificationLast) {
    const TestDrawing drawing{};
    host::fault::arm(0, Acad::eOk);
    Written(FromText(kRing));
    const std::vector<std::string> expected{
        "AcDbMline::setStyle",       "AcDbMline::setNormal",       "AcDbMline::setScale",
        "AcDbMline::appendSeg",      "AcDbMline::appendSeg",       "AcDbMline::appendSeg",
        "AcDbMline::setClosedMline", "AcDbMline::setJustification"};
    std::vector<std::string> called;
    for (const std::string& name : host::fault::names())
        if (name.rfind("AcDbMline::", 0) == 0) called.push_back(name);
    host::fault::disarm();
    EXPECT_EQ(expected, called);
}

TEST(PolyLineToMline, WithEachCallFailingItIsWrittenOrNot) {
    for (const char* const text : {kOpen, kRing}) {
        const auto outcomes = WriteWithEachCallFailing([&](const TestDrawing&) {
            try {
                return FromText(text).ToMline(5, 2.0, 2, L"walls", nullptr, nullptr, kUp);
            } catch (const TamExpAcad&) {
                return static_cast<int>(Acad::eOutOfDisk);
            } catch (const TamExpNoMem& raised) {
                EXPECT_STREQ(L"GeomStructs/PolyLine", raised.file);
                return static_cast<int>(Acad::eOutOfDisk);
            }
        });
        EXPECT_GT(outcomes.size(), 15u);
        for (const FailedWrite& outcome : outcomes) {
            EXPECT_TRUE(outcome.leaks.empty()) << outcome.call << ": " << outcome.leaks.front();
            EXPECT_EQ(outcome.status == Acad::eOk ? 1u : 0u, outcome.entities) << outcome.call;
        }
    }
}

}  // namespace
}  // namespace TamLib
