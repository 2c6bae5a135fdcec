// Outlines by the host's boundary reader: of regions and solids, of what has none, of a reader that
// isn't there, and each call of the host refused.
#include "GeomStructs/BrepEdges.h"

#include <dbsol3d.h>
#include <rxdict.h>
#include <rxdlinkr.h>
#include <rxnames.h>

#include <string>
#include <vector>

#include "GeomEnts/Line.h"
#include "GeomStructs/PolyArray.h"
#include "host/database/Fault.h"
#include "tests/GeomEnts/TestDrawing.h"
#include "tests/GeomStructs/RegionEntities.h"
#include "tests/host/support/LedgerListener.h"

namespace TamLib {
namespace {

using Corners = std::vector<std::vector<Point3d>>;

Corners CornersOf(const PolyArray& outlines) {
    Corners corners;
    for (const PolyLine* const outline : outlines)
        corners.emplace_back(outline->data, outline->data + outline->count);
    return corners;
}

struct Edges {
    int status = -1;
    Corners corners;
};
Edges Read(AcDbObjectId id, bool outerOnly = false) {
    AcDbEntity* entity = nullptr;
    EXPECT_EQ(Acad::eOk, acdbOpenAcDbEntity(entity, id, AcDb::kForRead));
    PolyArray outlines;
    Edges edges;
    edges.status = ARXGetBrepEdges(entity, outerOnly, outlines);
    edges.corners = CornersOf(outlines);
    entity->close();
    return edges;
}

void ExpectCorners(const Corners& expected, const Corners& corners) {
    ASSERT_EQ(expected.size(), corners.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        ASSERT_EQ(expected[i].size(), corners[i].size());
        for (std::size_t j = 0; j < expected[i].size(); ++j)
            ExpectPoint(expected[i][j], corners[i][j]);
    }
}

TEST(BrepEdges, OfAPolygonEndInItsFirstCorner) {
    const TestDrawing drawing{};
    const AcDbObjectId id = Draw(MakePolygon({{0, 0}, {4, 0}, {0, 3}}, 5));
    const Edges edges = Read(id);
    EXPECT_EQ(0, edges.status);
    ExpectCorners({{{0, 0, 5}, {4, 0, 5}, {0, 3, 5}, {0, 0, 5}}}, edges.corners);
}

TEST(BrepEdges, KeepEveryDigitOnAMapGrid) {
    const TestDrawing drawing{};
    const double x = 25496000.1, y = 6672000.3;
    const AcDbObjectId id = Draw(MakePolygon({{x, y}, {x + 40.7, y}, {x, y + 30.9}}));
    ExpectCorners({{{x, y, 0}, {x + 40.7, y, 0}, {x, y + 30.9, 0}, {x, y, 0}}}, Read(id).corners);
}

TEST(BrepEdges, FollowTheRingInItsOwnOrder) {
    const TestDrawing drawing{};
    const Edges edges = Read(Draw(MakePolygon({{0, 0}, {0, 3}, {4, 0}})));
    ExpectCorners({{{0, 0, 0}, {0, 3, 0}, {4, 0, 0}, {0, 0, 0}}}, edges.corners);
}

TEST(BrepEdges, OfADiscAreItsOneVertexTwice) {
    const TestDrawing drawing{};
    const Edges edges = Read(Draw(MakeDisc({1, 2, 3}, 5)));
    EXPECT_EQ(0, edges.status);
    ASSERT_EQ(1u, edges.corners.size());
    ASSERT_EQ(2u, edges.corners[0].size());
    const Point3d& vertex = edges.corners[0][0];
    ExpectPoint(vertex, edges.corners[0][1]);
    EXPECT_NEAR(5.0, Distance(vertex, Point3d(1, 2, 3)), 1e-12);
    EXPECT_EQ(3.0, vertex.z);
}

TEST(BrepEdges, OfAPipeAreTwoLoopsOfItsSideAndOneOfEachEnd) {
    const TestDrawing drawing{};
    AcDbObjectId id;
    ASSERT_EQ(0, Line({0, 0, 0}, {0, 0, 9}).ToPipe(2, 3, nullptr, &id, nullptr));
    const auto heights = [&id](bool outerOnly) {
        std::vector<double> found;
        for (const auto& loop : Read(id, outerOnly).corners) {
            EXPECT_EQ(2u, loop.size());
            found.push_back(loop[0].z);
        }
        return found;
    };
    EXPECT_EQ((std::vector<double>{0, 9, 0, 9}), heights(false));
    EXPECT_EQ((std::vector<double>{0, 0, 9}), heights(true));  // the first loop of each face
}

TEST(BrepEdges, AreAppendedToWhatIsThere) {
    const TestDrawing drawing{};
    const AcDbObjectId id = Draw(MakePolygon({{0, 0}, {4, 0}, {0, 3}}));
    PolyArray outlines;
    AcDbEntity* entity = nullptr;
    ASSERT_EQ(Acad::eOk, acdbOpenAcDbEntity(entity, id, AcDb::kForWrite));
    EXPECT_EQ(0, ARXGetBrepEdges(entity, false, outlines));
    EXPECT_EQ(0, ARXGetBrepEdges(entity, true, outlines));
    EXPECT_EQ(2, static_cast<int>(outlines.count));
    EXPECT_TRUE(entity->isWriteEnabled());
    entity->close();
}

TEST(BrepEdges, OfWhatHasNoneAreAStatusOfTheHost) {
    const TestDrawing drawing{"REGION|5 2F|8 0|70 1", "LINE|5 30|8 0|10 0|20 0|11 1|21 1",
                              "3DSOLID|5 31|8 0|70 1"};
    EXPECT_EQ(Acad::eNotImplementedYet, Read(drawing.Id(0x2F)).status);
    EXPECT_EQ(Acad::eWrongObjectType, Read(drawing.Id(0x30)).status);
    EXPECT_EQ(Acad::eNotImplementedYet, Read(drawing.Id(0x31)).status);
    PolyArray outlines;
    EXPECT_EQ(Acad::eNullObjectId,
              ARXGetBrepEdges(MakePolygon({{0, 0}, {4, 0}, {0, 3}}).get(), false, outlines));
    EXPECT_EQ(0, static_cast<int>(outlines.count));
}

TEST(BrepEdges, EachCallRefusedTellsItsStatusAndLeavesOutTheLoop) {
    const TestDrawing drawing{};
    AcDbObjectId pipe;
    ASSERT_EQ(0, Line({0, 0, 0}, {0, 0, 9}).ToPipe(2, 3, nullptr, &pipe, nullptr));
    const Corners all = Read(pipe).corners;
    AcDbEntity* entity = nullptr;
    ASSERT_EQ(Acad::eOk, acdbOpenAcDbEntity(entity, pipe, AcDb::kForRead));
    std::size_t n = 1;
    std::size_t most = 0;
    for (;; ++n) {
        PolyArray outlines;
        host::fault::arm(n, Acad::eOutOfDisk);
        const int status = ARXGetBrepEdges(entity, false, outlines);
        const bool fired = host::fault::fired();
        const std::string name = fired ? host::fault::names().at(n - 1) : "";
        host::fault::disarm();
        if (!fired) break;
        // A path that can't take the id leads to no entity.
        EXPECT_EQ(name == "AcArray" ? Acad::eNullObjectId : Acad::eOutOfDisk, status) << name;
        Corners expected = all;
        const Corners corners = CornersOf(outlines);
        ASSERT_LE(corners.size(), all.size()) << name;
        EXPECT_LE(most, corners.size()) << name;  // a later failure leaves no less
        most = corners.size();
        expected.resize(corners.size());
        ExpectCorners(expected, corners);
    }
    EXPECT_EQ(4u, most);
    // Path, level, body, faces; each face and the next one; each loop, its edge of 7 calls, the
    // next one.
    EXPECT_EQ(1 + 1 + 4u + 3 * 2 + 4 * (1 + 7 + 1), n);
    entity->close();
}

// --- The reader's module.

class Linker : public AcRxDynamicLinker {
  public:
    bool loadModule(const ACHAR* fileName, bool printit, bool) override {
        asked.emplace_back(fileName);
        EXPECT_FALSE(printit);
        return answer;
    }
    bool unloadModule(const ACHAR*, bool) override { return false; }
    bool unlockApplication(void*) const override { return false; }
    bool lockApplication(void*) const override { return false; }
    bool isApplicationLocked(const ACHAR*) const override { return false; }
    bool registerAppMDIAware(void*) const override { return false; }
    bool registerAppNotMDIAware(void*) const override { return false; }
    bool isAppMDIAware(const ACHAR*) const override { return false; }

    std::vector<std::wstring> asked;
    bool answer = false;
};

// An entry of one of the host's dictionaries replaced, or taken away, for a while.
class Replaced {
  public:
    Replaced(AcRxObject* dictionary, const ACHAR* key, AcRxObject* object)
        : dictionary_(*AcRxDictionary::cast(dictionary)), key_(key) {
        before_ = object != nullptr ? dictionary_.atPut(key, object) : dictionary_.remove(key);
    }
    ~Replaced() {
        if (before_ != nullptr) {
            dictionary_.atPut(key_, before_);
        } else {
            dictionary_.remove(key_);
        }
    }
    Replaced(const Replaced&) = delete;
    Replaced& operator=(const Replaced&) = delete;

  private:
    AcRxDictionary& dictionary_;
    const ACHAR* key_;
    AcRxObject* before_;
};

TEST(BrepModule, IsLoadedOnlyWhereItsClassIsMissing) {
    Linker linker;
    const Replaced linked(acrxSysRegistry(), ACRX_DYNAMIC_LINKER, &linker);
    EXPECT_TRUE(ARXLoadBrepModule());
    EXPECT_TRUE(linker.asked.empty());
    const Replaced gone(acrxSysRegistry()->at(ACRX_CLASS_DICTIONARY), L"AcBrEntity", nullptr);
    linker.answer = true;
    EXPECT_TRUE(ARXLoadBrepModule());
    EXPECT_EQ(std::vector<std::wstring>{L"acbr19.dbx"}, linker.asked);
}

TEST(BrepModule, ThatIsNotToBeHadGivesOne) {
    const TestDrawing drawing{};
    const AcDbObjectId id = Draw(MakePolygon({{0, 0}, {4, 0}, {0, 3}}));
    const Replaced gone(acrxSysRegistry()->at(ACRX_CLASS_DICTIONARY), L"AcBrEntity", nullptr);
    {
        Linker linker;
        const Replaced linked(acrxSysRegistry(), ACRX_DYNAMIC_LINKER, &linker);
        EXPECT_EQ(1, Read(id).status);
        EXPECT_EQ(1u, linker.asked.size());
    }
    const Replaced unlinked(acrxSysRegistry(), ACRX_DYNAMIC_LINKER, nullptr);
    const Edges edges = Read(id);
    EXPECT_EQ(1, edges.status);
    EXPECT_TRUE(edges.corners.empty());
}

}  // namespace
}  // namespace TamLib
