// The boundary reader: what it walks over, what it answers before it is set and at its ends; and
// regions drawn by what they are made of.
#include <brbftrav.h>
#include <brbrep.h>
#include <bredge.h>
#include <brfltrav.h>
#include <brletrav.h>
#include <brvtx.h>
#include <dbregion.h>
#include <dbsol3d.h>
#include <rxdict.h>
#include <rxnames.h>

#include "host/database/Geometry.h"
#include "tests/host/database/NewEntities.h"
#include "tests/host/database/NewRegions.h"
#include "tests/host/support/LedgerListener.h"

namespace host::database {
namespace {

class BrepOfATriangle : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_EQ(Acad::eOk, test::append(*database, test::triangle().release(), &id));
        AcDbFullSubentPath path(id, AcDb::kNullSubentType, 0);
        ASSERT_EQ(AcBr::eOk, brep.setSubentPath(path));
        ASSERT_EQ(AcBr::eOk, faces.setBrep(brep));
        ASSERT_EQ(AcBr::eOk, loops.setFace(faces));
        ASSERT_EQ(AcBr::eOk, edges.setLoop(loops));
    }

    std::unique_ptr<AcDbDatabase> database = test::DrawingText().layer("0").database();
    AcDbObjectId id;
    AcBrBrep brep;
    AcBrBrepFaceTraverser faces;
    AcBrFaceLoopTraverser loops;
    AcBrLoopEdgeTraverser edges;
};

TEST_F(BrepOfATriangle, HasAFaceOfALoopOfThreeEdges) {
    std::vector<AcGePoint3d> starts, ends;
    std::vector<bool> directions;
    while (!edges.done()) {
        AcBrEdge edge;
        AcBrVertex first, second;
        AcGePoint3d start, end;
        Adesk::Boolean forward = Adesk::kFalse;
        EXPECT_EQ(AcBr::eOk, edges.getEdge(edge));
        EXPECT_EQ(AcBr::eOk, edges.getEdgeOrientToLoop(forward));
        directions.push_back(forward);
        EXPECT_EQ(AcBr::eOk, edge.getVertex1(first));
        EXPECT_EQ(AcBr::eOk, edge.getVertex2(second));
        EXPECT_EQ(AcBr::eOk, first.getPoint(start));
        EXPECT_EQ(AcBr::eOk, second.getPoint(end));
        starts.push_back(start);
        ends.push_back(end);
        ASSERT_EQ(AcBr::eOk, edges.next());
    }
    const AcGePoint3d corners[] = {{0, 0, 0}, {4, 0, 0}, {0, 3, 0}};
    ASSERT_EQ(3u, starts.size());
    for (std::size_t i = 0; i < 3; ++i) {
        const bool forward = directions[i];
        EXPECT_EQ(0.0, starts[i].distanceTo(corners[(forward ? i : i + 1) % 3]));
        EXPECT_EQ(0.0, ends[i].distanceTo(corners[(forward ? i + 1 : i) % 3]));
    }
    // An edge runs from its lesser corner.
    EXPECT_EQ((std::vector<bool>{true, false, false}), directions);
    EXPECT_EQ(AcBr::eOk, loops.next());
    EXPECT_TRUE(loops.done());
    EXPECT_EQ(AcBr::eOk, faces.next());
    EXPECT_TRUE(faces.done());
}

TEST_F(BrepOfATriangle, RefusesWhatLiesBehindTheEnd) {
    for (int i = 0; i < 3; ++i) EXPECT_EQ(AcBr::eOk, edges.next());
    AcBrEdge edge;
    Adesk::Boolean forward = Adesk::kFalse;
    EXPECT_EQ(AcBr::eNotApplicable, edges.next());
    EXPECT_EQ(AcBr::eNotApplicable, edges.getEdge(edge));
    EXPECT_EQ(AcBr::eNotApplicable, edges.getEdgeOrientToLoop(forward));
    EXPECT_FALSE(forward);
    EXPECT_EQ(AcBr::eOk, loops.next());
    EXPECT_EQ(AcBr::eNullObjectPointer, edges.setLoop(loops));
    EXPECT_EQ(AcBr::eOk, faces.next());
    EXPECT_EQ(AcBr::eNullObjectPointer, loops.setFace(faces));
}

TEST_F(BrepOfATriangle, HasNoEdgeOrVertexByPath) {
    AcDbCircle circle({1, 2, 0}, AcGeVector3d::kZAxis, 5);
    AcDbObjectId disc;
    ASSERT_EQ(Acad::eOk, test::append(*database, test::regionOf(circle).release(), &disc));
    for (int i = 0; i < 2; ++i) EXPECT_EQ(AcBr::eOk, edges.next());
    AcBrEdge edge;
    AcBrVertex vertex;
    AcGePoint3d point(7, 8, 9);
    for (const AcDbObjectId body : {disc, id}) {
        AcDbFullSubentPath path(body, AcDb::kNullSubentType, 0);
        EXPECT_EQ(AcBr::eOk, edges.getEdge(edge));
        EXPECT_EQ(AcBr::eOk, edge.getVertex2(vertex));
        EXPECT_EQ(AcBr::eOk, vertex.getPoint(point));
        EXPECT_EQ(AcBr::eOk, vertex.setSubentPath(path));
        EXPECT_EQ(AcBr::eNullObjectPointer, vertex.getPoint(point));
        EXPECT_EQ(AcBr::eOk, edge.setSubentPath(path));
        EXPECT_EQ(AcBr::eNullObjectPointer, edge.getVertex1(vertex));
        EXPECT_EQ(AcBr::eNullObjectPointer, edge.getVertex2(vertex));
    }
    // A refused path leaves the edge what it was.
    AcDbFullSubentPath nowhere;
    EXPECT_EQ(AcBr::eOk, edges.getEdge(edge));
    EXPECT_EQ(AcBr::eNullObjectId, edge.setSubentPath(nowhere));
    EXPECT_EQ(AcBr::eOk, edge.getVertex2(vertex));
    EXPECT_EQ(AcBr::eOk, vertex.getPoint(point));
    EXPECT_EQ(0.0, point.distanceTo({0, 3, 0}));
}

TEST_F(BrepOfATriangle, KnowsItsBodyWhenTheRegionIsGone) {
    AcDbEntity* entity = nullptr;
    ASSERT_EQ(Acad::eOk, acdbOpenObject(entity, id, AcDb::kForWrite));
    entity->erase();
    entity->close();
    AcBrBrep again;
    EXPECT_EQ(AcBr::eOk, brep.getBrep(again));
    AcDbFullSubentPath path(id, AcDb::kNullSubentType, 0);
    EXPECT_EQ(AcBr::eInvalidObjectId, again.setSubentPath(path));
    EXPECT_EQ(AcBr::eOk, faces.setBrep(again));  // as it was before that
    EXPECT_FALSE(faces.done());
}

TEST(Brep, AnswersNothingBeforeItIsSet) {
    AcBrBrep brep, other;
    AcBrBrepFaceTraverser faces;
    AcBrFaceLoopTraverser loops;
    AcBrLoopEdgeTraverser edges;
    AcBrEdge edge;
    AcBrVertex vertex;
    AcGePoint3d point;
    AcDbFullSubentPath nowhere;
    EXPECT_EQ(AcBr::eNullObjectId, brep.setSubentPath(nowhere));
    EXPECT_EQ(AcBr::eOk, brep.setValidationLevel(AcBr::kNoValidation));
    EXPECT_EQ(AcBr::eNullObjectPointer, brep.getBrep(other));
    EXPECT_EQ(AcBr::eNullObjectPointer, faces.setBrep(brep));
    EXPECT_EQ(AcBr::eNullObjectPointer, loops.setFace(faces));
    EXPECT_EQ(AcBr::eNullObjectPointer, edges.setLoop(loops));
    EXPECT_EQ(AcBr::eNullObjectPointer, edge.getVertex1(vertex));
    EXPECT_EQ(AcBr::eNullObjectPointer, edge.getVertex2(vertex));
    EXPECT_EQ(AcBr::eNullObjectPointer, vertex.getPoint(point));
    EXPECT_TRUE(faces.done() && loops.done() && edges.done());
    EXPECT_EQ(AcBr::eNotApplicable, faces.next());
}

TEST(Brep, ClassIsThereFromTheBeginning) {
    auto* const classes = AcRxDictionary::cast(acrxSysRegistry()->at(ACRX_CLASS_DICTIONARY));
    ASSERT_NE(nullptr, classes);
    EXPECT_EQ(AcBrEntity::desc(), classes->at(L"AcBrEntity"));
}

TEST(Regions, OfTheSessionAreDrawnAsTheirOutlines) {
    const auto database = test::DrawingText().layer("0").database();
    AcDbObjectId polygon, disc;
    ASSERT_EQ(Acad::eOk, test::append(*database, test::triangle().release(), &polygon));
    AcDbCircle circle({1, 2, 0}, AcGeVector3d::kZAxis, 5);
    ASSERT_EQ(Acad::eOk, test::append(*database, test::regionOf(circle).release(), &disc));
    const std::vector<Chain> chains = drawnChains(polygon, 0.01);
    ASSERT_EQ(1u, chains.size());
    ASSERT_EQ(4u, chains[0].size());
    EXPECT_EQ(0.0, chains[0].front().distanceTo(chains[0].back()));
    const auto box = extentsOf(disc);
    ASSERT_TRUE(box);
    EXPECT_NEAR(-4.0, box->minPoint().x, 1e-12);
    EXPECT_NEAR(7.0, box->maxPoint().y, 1e-12);
    const std::vector<Chain> round = drawnChains(disc, 0.01);
    ASSERT_EQ(1u, round.size());
    for (const AcGePoint3d& point : round[0]) EXPECT_NEAR(5.0, point.distanceTo({1, 2, 0}), 0.011);
}

}  // namespace
}  // namespace host::database
