// PolyArray written to the drawing: as polylines, closed, as points, as regions.
#include <gtest/gtest.h>

#include <dbpl.h>
#include <dbregion.h>

#include <cmath>
#include <set>
#include <string>

#include "tam/TamExceptions.h"
#include "tests/GeomEnts/DrawnEntities.h"
#include "tests/GeomStructs/PolyArrayShapes.h"
#include "tests/GeomStructs/RegionEntities.h"

namespace TamLib {
namespace {

const Points kSquare = {{0, 0, 5}, {4, 0, 5}, {4, 4, 5}, {0, 4, 5}, {0, 0, 5}};
const Points kOverlapping = {{2, 2, 5}, {6, 2, 5}, {6, 6, 5}, {2, 6, 5}, {2, 2, 5}};
const Points kApart = {{10, 0, 5}, {12, 0, 5}, {12, 3, 5}, {10, 0, 5}};
const Points kHigher = {{0, 0, 9}, {4, 0, 9}, {4, 4, 9}, {0, 0, 9}};
const Points kOpen = {{0, 0, 5}, {4, 0, 5}, {4, 4, 5}};

std::vector<std::uint64_t> Handles(const std::vector<AcDbObjectId>& ids) {
    std::vector<std::uint64_t> handles;
    for (const AcDbObjectId id : ids) handles.push_back(id.asOldId());
    return handles;
}
std::vector<std::uint64_t> Handles(const Array<AcDbObjectId>& ids) {
    return Handles(std::vector<AcDbObjectId>(ids.begin(), ids.end()));
}

TEST(PolyArrayOutput, EachPolylineIsDrawnAndItsIdKept) {
    const TestDrawing drawing{};
    PolyArray array = MakeArray({kSquare, {}, kOpen});
    array[2]->offset = {100, 0, 0};
    Array<AcDbObjectId> ids;
    EXPECT_EQ(0, array.Draw(3, L"rings", &ids, nullptr, 3));
    ASSERT_EQ(2u, ids.count);  // an empty one has none
    EXPECT_EQ(Handles(Entities(drawing)), Handles(ids));
    EXPECT_EQ((Look{L"AcDb3dPolyline", L"rings", 3}), LookOf(ids[0]));
    EXPECT_TRUE(ReadAs<AcDb3dPolyline>(ids[0])->isClosed());
    EXPECT_EQ("100,0,5 104,0,5 104,4,5", Text(PolyLine(ids[1])));
}

TEST(PolyArrayOutput, TheKindChoosesTheClass) {
    const TestDrawing drawing{};
    const PolyArray array = MakeArray({kOpen});
    Array<AcDbObjectId> ids;
    EXPECT_EQ(0, array.Draw(1, nullptr, &ids, nullptr, 1));
    EXPECT_EQ(0, array.Draw(1, nullptr, &ids, nullptr, 2));
    EXPECT_EQ(0, array.Draw(1, nullptr, nullptr, nullptr, 1));
    EXPECT_EQ(L"AcDbPolyline", LookOf(ids[0]).className);
    EXPECT_EQ(L"AcDb2dPolyline", LookOf(ids[1]).className);
    EXPECT_EQ(3u, Entities(drawing).size());
}

TEST(PolyArrayOutput, ClosedCopiesAreDrawnOfOpenOnes) {
    const TestDrawing drawing{};
    const PolyArray array = MakeArray({kOpen});
    Array<AcDbObjectId> ids;
    EXPECT_EQ(0, array.DrawClosed(1, nullptr, &ids, nullptr, 3));
    ASSERT_EQ(1u, ids.count);
    EXPECT_TRUE(ReadAs<AcDb3dPolyline>(ids[0])->isClosed());
    EXPECT_EQ("0,0,5 4,0,5 4,4,5 0,0,5", Text(PolyLine(ids[0])));
    EXPECT_EQ(Text(kOpen), Text(*array[0]));
}

TEST(PolyArrayOutput, VerticesAreDrawnAsPoints) {
    const TestDrawing drawing{};
    PolyArray array = MakeArray({kOpen, {{7, 8, 9}}});
    array[1]->offset = {1, 1, 1};
    Array<AcDbObjectId> ids;
    EXPECT_EQ(0, array.DrawAsPoints(2, L"points", &ids, nullptr));
    ASSERT_EQ(4u, ids.count);
    EXPECT_EQ((Look{L"AcDbPoint", L"points", 2}), LookOf(ids[3]));
    ExpectPoint({8, 9, 10}, ReadAs<AcDbPoint>(ids[3])->position());
    ExpectPoint({4, 0, 5}, ReadAs<AcDbPoint>(ids[1])->position());
}

TEST(PolyArrayOutput, PointsAreShiftedByTheRuleOfAllOutput) {
    const TestDrawing drawing{};
    for (const double off : {0.99e-10, 1e-10}) {
        PolyArray array = MakeArray({{{0, 0, 1e-11}}});
        for (const Point3d& by : {Point3d(off, 0, 0), Point3d(0, off, 0), Point3d(0, 0, off)}) {
            array[0]->offset = by;
            Array<AcDbObjectId> ids;
            EXPECT_EQ(0, array.DrawAsPoints(2, nullptr, &ids, nullptr));
            EXPECT_EQ(0, array.Draw(2, nullptr, &ids, nullptr, 3));
            const bool isShifted = off >= 1e-10;
            const Point3d expected = Point3d(0, 0, 1e-11) + (isShifted ? by : Point3d());
            ExpectPoint(expected, ReadAs<AcDbPoint>(ids[0])->position());
            EXPECT_EQ(Text({expected}), Text(PolyLine(ids[1])));
        }
    }
}

TEST(PolyArrayOutput, ARefusedPolylineIsToldAndTheOthersAreDrawn) {
    const TestDrawing drawing{};
    Array<AcDbObjectId> ids;
    host::fault::arm("AcDbBlockTableRecord::appendAcDbEntity", 1, Acad::eOutOfDisk);
    EXPECT_EQ(Acad::eOutOfDisk, MakeArray({kOpen, kSquare}).Draw(1, nullptr, &ids, nullptr, 3));
    host::fault::disarm();
    EXPECT_EQ(1u, ids.count);
    EXPECT_EQ(1u, Entities(drawing).size());
}

// --- Regions.

TEST(PolyArrayRegions, EachClosedPolylineGivesARegionAndNoPolylineStays) {
    const TestDrawing drawing{};
    Array<AcDbObjectId> ids;
    const PolyArray array = MakeArray({kSquare, kOverlapping, kOpen, kApart});
    EXPECT_EQ(0, array.MakeRegions(4, L"areas", false, &ids, nullptr));
    ASSERT_EQ(3u, ids.count);
    EXPECT_EQ(Handles(Entities(drawing)), Handles(ids));
    for (const AcDbObjectId id : ids) EXPECT_EQ((Look{L"AcDbRegion", L"areas", 4}), LookOf(id));
}

TEST(PolyArrayRegions, MergedTheOnesThatOverlapInAPlaneBecomeOne) {
    const TestDrawing drawing{};
    Array<AcDbObjectId> ids;
    const PolyArray array = MakeArray({kSquare, kHigher, kOverlapping, kApart});
    EXPECT_EQ(0, array.MakeRegions(4, nullptr, true, &ids, nullptr));
    ASSERT_EQ(3u, ids.count);  // the host keeps apart what lies apart
    EXPECT_EQ(3u, Entities(drawing).size());
}

// The host unites what overlaps alone. The second square joins the first and the third, which lie
// apart: whether all become one depends on who is asked first.
TEST(PolyArrayRegions, MergingTakesTheLastRegionFirst) {
    const Points kFirst = {{0, 0, 5}, {4, 0, 5}, {4, 4, 5}, {0, 4, 5}, {0, 0, 5}};
    const Points kSecond = {{3, 3, 5}, {7, 3, 5}, {7, 7, 5}, {3, 7, 5}, {3, 3, 5}};
    const Points kThird = {{6, 6, 5}, {9, 6, 5}, {9, 9, 5}, {6, 9, 5}, {6, 6, 5}};
    const TestDrawing drawing{};
    const auto merged = [](const std::vector<Points>& rings) {
        Array<AcDbObjectId> ids;
        EXPECT_EQ(0, MakeArray(rings).MakeRegions(4, nullptr, true, &ids, nullptr));
        return ids.count;
    };
    EXPECT_EQ(2u, merged({kFirst, kSecond, kThird}));
    EXPECT_EQ(1u, merged({kFirst, kThird, kSecond}));
    EXPECT_EQ(2u, merged({kThird, kSecond, kFirst}));
}

TEST(PolyArrayRegions, WithoutACurveTheStatusIsToldAndNothingStays) {
    const TestDrawing drawing{};
    Array<AcDbObjectId> ids;
    EXPECT_EQ(Acad::eInvalidInput, MakeArray({kOpen}).MakeRegions(4, nullptr, true, &ids, nullptr));
    EXPECT_EQ(Acad::eInvalidInput, PolyArray().MakeRegions(4, nullptr, true, nullptr, nullptr));
    EXPECT_EQ(0u, ids.count);
    EXPECT_TRUE(Entities(drawing).empty());
}

// The regions in model space, while no call is refused.
std::size_t RegionsIn(const TestDrawing& drawing) {
    const host::fault::Quiet quiet;
    std::size_t regions = 0;
    for (const AcDbObjectId id : Entities(drawing))
        regions += host::database::className(id) == L"AcDbRegion" ? 1 : 0;
    return regions;
}

TEST(PolyArrayRegions, AnyCallRefusedLeavesNoPolylineUnlessItIsClosingOrErasingOne) {
    std::vector<std::size_t> regions;
    const std::vector<FailedWrite> outcomes = WriteWithEachCallFailing([&regions](const TestDrawing&
                                                                                      drawing) {
        int status = Acad::eOutOfDisk;
        try {
            status = MakeArray({kSquare, kApart}).MakeRegions(4, L"areas", true, nullptr, nullptr);
        } catch (const TamExpAcad&) {
        } catch (const TamExpNoMem&) {
        }
        regions.push_back(RegionsIn(drawing));
        return status;
    });
    std::set<std::string> leaving;
    for (std::size_t i = 0; i < outcomes.size(); ++i) {
        const FailedWrite& outcome = outcomes[i];
        EXPECT_TRUE(outcome.leaks.empty()) << outcome.call << ": " << outcome.leaks.front();
        if (outcome.entities == regions[i]) continue;
        leaving.insert(outcome.call);
        EXPECT_EQ(regions[i] + 1, outcome.entities) << outcome.call;
        EXPECT_NE(Acad::eOk, outcome.status) << outcome.call;
    }
    EXPECT_EQ((std::set<std::string>{"AcDbObject::close", "AcDbObject::erase"}), leaving);
    EXPECT_GT(outcomes.size(), 20u);
}

TEST(PolyArrayRegions, APolylineThatOpensLateIsRemovedAndItsStatusTold) {
    for (const Points& other : {Points{}, kApart}) {
        const TestDrawing drawing{};
        Array<AcDbObjectId> ids;
        host::fault::arm("acdbOpenAcDbEntity", 1, Acad::eOutOfDisk);
        const int status =
            MakeArray({kSquare, other}).MakeRegions(4, L"areas", true, &ids, nullptr);
        host::fault::disarm();
        // Without any other curve the host finds nothing to make.
        EXPECT_EQ(other.empty() ? Acad::eInvalidInput : Acad::eOutOfDisk, status);
        EXPECT_EQ(other.empty() ? 0u : 1u, ids.count);
        EXPECT_EQ(Handles(Entities(drawing)), Handles(ids));
    }
}

// --- What the host makes of curves.

std::unique_ptr<AcDbRegion> RegionOf(const Points& points) {
    AcDbPolyline polyline;
    for (const Point3d& p : points)
        polyline.addVertexAt(polyline.numVerts(), AcGePoint2d(p.x, p.y));
    AcDbVoidPtrArray curves, regions;
    curves.append(static_cast<AcDbCurve*>(&polyline));
    if (AcDbRegion::createFromCurves(curves, regions) != Acad::eOk) return nullptr;
    return std::unique_ptr<AcDbRegion>(static_cast<AcDbRegion*>(regions[0]));
}

TEST(HostRegions, OnlyClosedFiguresBoundOne) {
    EXPECT_NE(nullptr, RegionOf(kSquare));
    EXPECT_EQ(nullptr, RegionOf(kOpen));
    EXPECT_EQ(nullptr, RegionOf({{0, 0, 0}, {4, 0, 0}, {0, 0, 0}}));
    EXPECT_EQ(nullptr, RegionOf({}));
}

TEST(HostRegions, AreUnitedWithinAMillionthOfAPlane) {
    for (const double height : {0.99e-6, 1.01e-6, -0.99e-6, -1.01e-6}) {
        const auto at = [](double x, double z) {
            const AcGePoint3d corners[] = {
                {x, x, z}, {x + 4, x, z}, {x + 4, x + 4, z}, {x, x + 4, z}};
            AcGePoint3dArray vertices;
            for (const AcGePoint3d& corner : corners) vertices.append(corner);
            AcDb3dPolyline ring(AcDb::k3dSimplePoly, vertices, true);
            return MakeRegion(ring);
        };
        const auto into = at(0, 0), taken = at(2, height);
        EXPECT_EQ(std::fabs(height) < 1e-6 ? Acad::eOk : Acad::eNonCoplanarGeometry,
                  into->booleanOper(AcDb::kBoolUnite, taken.get()))
            << height;
    }
}

// Of two squares side by side, one of them wider by next to nothing.
TEST(HostRegions, UnitedHaveNoEdgeTooShortForTheModeller) {
    auto a = RegionOf({{0, 0, 0}, {4, 0, 0}, {4, 4, 0}, {0, 4, 0}, {0, 0, 0}});
    const auto b = RegionOf({{2, 0, 0}, {8, 0, 0}, {8, 4 + 4e-7, 0}, {2, 4 + 4e-7, 0}, {2, 0, 0}});
    ASSERT_EQ(Acad::eOk, a->booleanOper(AcDb::kBoolUnite, b.get()));
    const TestDrawing drawing{};
    AcDbObjectId id;
    ASSERT_EQ(Acad::eOk, ARXAddToModelSpace(a.release(), &id, true));
    const PolyLine outline(id);
    ASSERT_LT(3u, outline.count);
    for (std::uint32_t i = 0; i + 1 < outline.count; ++i)
        EXPECT_LE(1e-6, Distance(outline.data[i], outline.data[i + 1])) << i;
}

TEST(HostRegions, UnitingLeavesTheOtherOneEmpty) {
    const auto a = RegionOf(kSquare), b = RegionOf(kOverlapping);
    EXPECT_EQ(Acad::eOk, a->booleanOper(AcDb::kBoolUnite, b.get()));
    EXPECT_FALSE(a->isNull());
    EXPECT_TRUE(b->isNull());
    EXPECT_EQ(Acad::eInvalidInput, a->booleanOper(AcDb::kBoolUnite, b.get()));
    EXPECT_EQ(Acad::eInvalidInput, a->booleanOper(AcDb::kBoolUnite, a.get()));
    EXPECT_EQ(Acad::eInvalidInput, a->booleanOper(AcDb::kBoolUnite, nullptr));
    const auto c = RegionOf(kApart);
    EXPECT_EQ(Acad::eNotImplementedYet, a->booleanOper(AcDb::kBoolSubtract, c.get()));
    EXPECT_EQ(Acad::eNotImplementedYet, a->booleanOper(AcDb::kBoolUnite, c.get()));
    EXPECT_FALSE(c->isNull());
}

}  // namespace
}  // namespace TamLib
