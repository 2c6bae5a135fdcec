// Polylines and meshes whose vertices are records of their own.
#include <dbents.h>
#include <gtest/gtest.h>

#include <cmath>

#include "host/database/Drawing.h"
#include "host/database/Fault.h"
#include "host/database/Ledger.h"
#include "tests/host/support/DrawingText.h"
#include "tests/host/support/LedgerListener.h"

using host::database::className;
using host::database::idFromHandle;
using host::database::modelSpaceIds;
using host::test::DrawingText;

namespace {

constexpr double kPi = 3.14159265358979323846;

std::string vertex(int handle, const std::string& groups) {
    return "VERTEX|5 " + std::to_string(handle) + "|8 0|" + groups;
}

// A drawing of one polyline with handle 2F and vertices 30, 31, ...
DrawingText polyline(const std::string& groups, const std::vector<std::string>& vertices) {
    DrawingText text("AC1009");
    text.entity("POLYLINE|5 2F|8 0|66 1|" + groups);
    int handle = 30;
    for (const std::string& one : vertices) text.entity(vertex(handle++, one));
    return text.entity("SEQEND|5 99|8 0");
}

std::vector<AcDbObjectId> vertexIds(AcDbObjectIterator* iterator, bool skipDeleted = false) {
    std::vector<AcDbObjectId> ids;
    for (iterator->start(true, skipDeleted); !iterator->done();
         iterator->step(false, skipDeleted)) {
        ids.push_back(iterator->objectId());
    }
    delete iterator;
    return ids;
}

template <class T>
T* opened(AcDbObjectId id, AcDb::OpenMode mode = AcDb::kForRead) {
    T* object = nullptr;
    EXPECT_EQ(acdbOpenObject(object, id, mode), Acad::eOk);
    return object;
}

}  // namespace

TEST(OldPolyline, FlagsTellTheClassOfThePolylineAndItsVertices) {
    const struct {
        const char* flags;
        const wchar_t* polyline;
        const wchar_t* vertex;
    } rows[] = {{"70 0", L"AcDb2dPolyline", L"AcDb2dVertex"},
                {"70 1", L"AcDb2dPolyline", L"AcDb2dVertex"},
                {"70 4", L"AcDb2dPolyline", L"AcDb2dVertex"},
                {"70 8", L"AcDb3dPolyline", L"AcDb3dPolylineVertex"},
                {"70 9", L"AcDb3dPolyline", L"AcDb3dPolylineVertex"},
                {"70 16", L"AcDbPolygonMesh", L"AcDbPolygonMeshVertex"},
                {"70 64", L"AcDbPolyFaceMesh", L"AcDbPolyFaceMeshVertex"}};
    for (const auto& row : rows) {
        const auto database = polyline(row.flags, {"10 1|20 2|30 3"}).database();
        EXPECT_EQ(className(idFromHandle(*database, L"2F")), row.polyline);
        EXPECT_EQ(className(idFromHandle(*database, L"30")), row.vertex);
        EXPECT_EQ(className(idFromHandle(*database, L"99")), L"AcDbSequenceEnd");
        EXPECT_EQ(modelSpaceIds(*database).size(), 1U);
    }
}

TEST(OldPolyline, VertexIsASubEntityOfItsPolyline) {
    const auto database = polyline("70 0", {"10 1|20 2|30 3|42 0.5|40 1|41 2"}).database();
    AcDb2dVertex* v = opened<AcDb2dVertex>(idFromHandle(*database, L"30"));
    EXPECT_EQ(v->ownerId(), idFromHandle(*database, L"2F"));
    EXPECT_FALSE(v->blockId().isNull());
    EXPECT_EQ(v->position(), AcGePoint3d(1, 2, 3));
    EXPECT_EQ(v->bulge(), 0.5);
    EXPECT_EQ(v->startWidth(), 1.0);
    EXPECT_EQ(v->endWidth(), 2.0);
    EXPECT_EQ(v->close(), Acad::eOk);
}

TEST(OldPolyline, IteratorGivesAllVerticesInTheirOrder) {
    const auto database =
        polyline("70 0", {"10 1|20 1", "10 2|20 2|70 16", "10 3|20 3"}).database();
    AcDb2dPolyline* line = opened<AcDb2dPolyline>(idFromHandle(*database, L"2F"));
    const auto ids = vertexIds(line->vertexIterator());
    ASSERT_EQ(ids.size(), 3U);
    EXPECT_EQ(ids[0], idFromHandle(*database, L"30"));
    EXPECT_EQ(ids[2], idFromHandle(*database, L"32"));
    AcDbObjectIterator* backwards = line->vertexIterator();
    backwards->start(false);
    EXPECT_EQ(backwards->objectId(), ids[2]);
    backwards->step(true);
    EXPECT_EQ(backwards->objectId(), ids[1]);
    backwards->step(true);
    backwards->step(true);
    EXPECT_TRUE(backwards->done());
    EXPECT_TRUE(backwards->objectId().isNull());
    backwards->step(false);
    EXPECT_TRUE(backwards->done()) << "an iterator that is done stays so";
    delete backwards;
    EXPECT_EQ(line->close(), Acad::eOk);
    EXPECT_EQ(line->vertexIterator(), nullptr);
}

TEST(OldPolyline, ErasedVerticesArePassedOverOnlyWhenAsked) {
    const auto database = polyline("70 0", {"10 1|20 1", "10 2|20 2", "10 3|20 3"}).database();
    AcDb2dVertex* v = opened<AcDb2dVertex>(idFromHandle(*database, L"31"), AcDb::kForWrite);
    EXPECT_EQ(v->erase(), Acad::eOk);
    EXPECT_EQ(v->close(), Acad::eOk);
    AcDb2dPolyline* line = opened<AcDb2dPolyline>(idFromHandle(*database, L"2F"));
    EXPECT_EQ(vertexIds(line->vertexIterator(), true).size(), 2U);
    EXPECT_EQ(vertexIds(line->vertexIterator(), false).size(), 3U);
    double end = 0.0;
    EXPECT_EQ(line->getEndParam(end), Acad::eOk);
    EXPECT_EQ(end, 1.0);
    EXPECT_EQ(line->close(), Acad::eOk);
}

TEST(OldPolyline, IteratorThatIsNotDeletedIsInTheLedger) {
    const auto database = polyline("70 0", {"10 1|20 1"}).database();
    AcDb2dPolyline* line = opened<AcDb2dPolyline>(idFromHandle(*database, L"2F"));
    AcDbObjectIterator* iterator = line->vertexIterator();
    EXPECT_EQ(host::database::Ledger::instance().count("iterator"), 1U);
    delete iterator;
    EXPECT_EQ(host::database::Ledger::instance().count("iterator"), 0U);
    host::fault::arm("AcDb2dPolyline::vertexIterator", 1, 0);
    EXPECT_EQ(line->vertexIterator(), nullptr);
    EXPECT_EQ(line->close(), Acad::eOk);
}

TEST(OldPolyline, VertexTypesFollowTheVertexFlags) {
    const auto database = polyline("70 4|75 6", {"10 1|20 1|70 0", "10 1|20 1|70 16",
                                                 "10 1|20 1|70 8", "10 1|20 1|70 1"})
                              .database();
    const AcDb::Vertex2dType expected[] = {AcDb::k2dVertex, AcDb::k2dSplineCtlVertex,
                                           AcDb::k2dSplineFitVertex, AcDb::k2dCurveFitVertex};
    for (int i = 0; i < 4; ++i) {
        AcDb2dVertex* v = opened<AcDb2dVertex>(idFromHandle(*database, L"3" + std::to_wstring(i)));
        EXPECT_EQ(v->vertexType(), expected[i]);
        EXPECT_EQ(v->close(), Acad::eOk);
    }
    const auto space =
        polyline("70 12|75 5", {"10 1|20 1|70 32", "10 1|20 1|70 48", "10 1|20 1|70 40"})
            .database();
    const AcDb::Vertex3dType inSpace[] = {AcDb::k3dSimpleVertex, AcDb::k3dControlVertex,
                                          AcDb::k3dFitVertex};
    for (int i = 0; i < 3; ++i) {
        AcDb3dPolylineVertex* v =
            opened<AcDb3dPolylineVertex>(idFromHandle(*space, L"3" + std::to_wstring(i)));
        EXPECT_EQ(v->vertexType(), inSpace[i]);
        EXPECT_EQ(v->position(), AcGePoint3d(1, 1, 0));
        EXPECT_EQ(v->close(), Acad::eOk);
    }
}

TEST(OldPolyline, PolyTypeFollowsTheFlagsAndTheSmoothing) {
    const struct {
        const char* groups;
        AcDb::Poly2dType type;
    } rows[] = {{"70 0", AcDb::k2dSimplePoly},           {"70 1", AcDb::k2dSimplePoly},
                {"70 2", AcDb::k2dFitCurvePoly},         {"70 4|75 5", AcDb::k2dQuadSplinePoly},
                {"70 4|75 6", AcDb::k2dCubicSplinePoly}, {"70 4", AcDb::k2dCubicSplinePoly}};
    for (const auto& row : rows) {
        const auto database = polyline(row.groups, {"10 1|20 1"}).database();
        AcDb2dPolyline* line = opened<AcDb2dPolyline>(idFromHandle(*database, L"2F"));
        EXPECT_EQ(line->polyType(), row.type) << row.groups;
        EXPECT_EQ(line->close(), Acad::eOk);
    }
    const auto database = polyline("70 12|75 5", {"10 1|20 1"}).database();
    AcDb3dPolyline* line = opened<AcDb3dPolyline>(idFromHandle(*database, L"2F"));
    EXPECT_EQ(line->polyType(), AcDb::k3dQuadSplinePoly);
    EXPECT_EQ(line->close(), Acad::eOk);
}

TEST(OldPolyline, ElevationIsTheZOfTheDummyPointOrGroup38) {
    for (const char* groups : {"70 0|10 0|20 0|30 7.5", "70 0|38 7.5"}) {
        const auto database = polyline(groups, {"10 1|20 2|30 99"}).database();
        AcDb2dPolyline* line = opened<AcDb2dPolyline>(idFromHandle(*database, L"2F"));
        EXPECT_EQ(line->elevation(), 7.5);
        AcGePoint3d point;
        EXPECT_EQ(line->getStartPoint(point), Acad::eOk);
        EXPECT_EQ(point, AcGePoint3d(1, 2, 7.5));
        EXPECT_EQ(line->close(), Acad::eOk);
    }
}

TEST(OldPolyline, MatrixTurnsThePlaneAndAddsNoElevation) {
    const auto database =
        polyline("70 0|10 0|20 0|30 7|210 0|220 0|230 -1", {"10 1|20 2|30 7"}).database();
    AcDb2dPolyline* line = opened<AcDb2dPolyline>(idFromHandle(*database, L"2F"));
    AcGeMatrix3d matrix;
    line->getEcs(matrix);
    EXPECT_EQ(matrix * AcGePoint3d(1, 2, 7), AcGePoint3d(-1, 2, -7));
    EXPECT_EQ(line->close(), Acad::eOk);
    const auto space = polyline("70 8|210 0|220 0|230 -1", {"10 1|20 2|30 7"}).database();
    AcDb3dPolyline* inSpace = opened<AcDb3dPolyline>(idFromHandle(*space, L"2F"));
    inSpace->getEcs(matrix);
    EXPECT_TRUE(matrix == AcGeMatrix3d::kIdentity);
    EXPECT_EQ(inSpace->close(), Acad::eOk);
}

TEST(OldPolyline, CurveRunsThroughTheDrawnVerticesAlone) {
    const auto database =
        polyline("70 4|75 6", {"10 0|20 0|70 16", "10 0|20 0|70 8", "10 50|20 50|70 16",
                               "10 3|20 4|70 8", "10 3|20 10|70 8", "10 9|20 9|70 16"})
            .database();
    AcDb2dPolyline* line = opened<AcDb2dPolyline>(idFromHandle(*database, L"2F"));
    double end = 0.0, length = 0.0;
    EXPECT_EQ(line->getEndParam(end), Acad::eOk);
    EXPECT_EQ(end, 2.0);
    EXPECT_EQ(line->getDistAtParam(end, length), Acad::eOk);
    EXPECT_EQ(length, 11.0);
    AcGePoint3d point;
    EXPECT_EQ(line->getPointAtDist(5.0, point), Acad::eOk);
    EXPECT_TRUE(point.isEqualTo({3, 4, 0}));
    EXPECT_EQ(line->getEndPoint(point), Acad::eOk);
    EXPECT_EQ(point, AcGePoint3d(3, 10, 0));
    EXPECT_EQ(line->close(), Acad::eOk);
}

TEST(OldPolyline, CurveFittedOneRunsAlongItsArcs) {
    const auto database = polyline("70 3", {"10 0|20 0|42 1", "10 2|20 0|70 1|42 1"}).database();
    AcDb2dPolyline* line = opened<AcDb2dPolyline>(idFromHandle(*database, L"2F"));
    EXPECT_TRUE(line->isClosed());
    double end = 0.0, length = 0.0;
    EXPECT_EQ(line->getEndParam(end), Acad::eOk);
    EXPECT_EQ(end, 2.0);
    EXPECT_EQ(line->getDistAtParam(end, length), Acad::eOk);
    EXPECT_NEAR(length, 2 * kPi, 1e-12);
    EXPECT_EQ(line->close(), Acad::eOk);
}

TEST(OldPolyline, SpacePolylineIgnoresBulges) {
    const auto database = polyline("70 8", {"10 0|20 0|30 0|42 1", "10 2|20 3|30 6"}).database();
    AcDb3dPolyline* line = opened<AcDb3dPolyline>(idFromHandle(*database, L"2F"));
    double end = 0.0, length = 0.0;
    EXPECT_EQ(line->getEndParam(end), Acad::eOk);
    EXPECT_EQ(line->getDistAtParam(end, length), Acad::eOk);
    EXPECT_DOUBLE_EQ(length, 7.0);
    EXPECT_EQ(vertexIds(line->vertexIterator()).size(), 2U);
    EXPECT_EQ(line->close(), Acad::eOk);
}

TEST(OldPolyline, WithoutVerticesIsDegenerate) {
    const auto database = polyline("70 0", {}).database();
    AcDb2dPolyline* line = opened<AcDb2dPolyline>(idFromHandle(*database, L"2F"));
    double end = 5.0;
    EXPECT_EQ(line->getEndParam(end), Acad::eDegenerateGeometry);
    EXPECT_TRUE(vertexIds(line->vertexIterator()).empty());
    EXPECT_EQ(line->close(), Acad::eOk);
}

TEST(OldPolyline, WithoutHandlesAndEndMarkerWorksToo) {
    const auto database = DrawingText("AC1009")
                              .entity("POLYLINE|8 0|66 1|70 0")
                              .entity("VERTEX|8 0|10 0|20 0")
                              .entity("VERTEX|8 0|10 3|20 4")
                              .entity("LINE|8 0|10 0|20 0|11 1|21 1")
                              .database();
    const auto ids = modelSpaceIds(*database);
    ASSERT_EQ(ids.size(), 2U);
    AcDb2dPolyline* line = opened<AcDb2dPolyline>(ids[0]);
    const auto vertices = vertexIds(line->vertexIterator());
    ASSERT_EQ(vertices.size(), 2U);
    AcDb2dVertex* v = opened<AcDb2dVertex>(vertices[1]);
    EXPECT_EQ(v->position(), AcGePoint3d(3, 4, 0));
    EXPECT_EQ(v->ownerId(), ids[0]);
    EXPECT_EQ(v->close(), Acad::eOk);
    EXPECT_EQ(line->close(), Acad::eOk);
}

TEST(OldPolyline, VertexThatStandsAloneHasNoOwner) {
    const auto database =
        DrawingText().entity("LINE|5 2F|8 0").entity("VERTEX|5 30|8 0|10 1|20 2").database();
    AcDb2dVertex* v = opened<AcDb2dVertex>(idFromHandle(*database, L"30"));
    EXPECT_TRUE(v->ownerId().isNull());
    EXPECT_EQ(v->close(), Acad::eOk);
    EXPECT_EQ(modelSpaceIds(*database).size(), 1U);
}

TEST(OldPolyline, VerticesOfManyPolylinesFindTheirOwners) {
    DrawingText text;
    for (int i = 0; i < 20; ++i) {
        text.entity("POLYLINE|5 " + std::to_string(1000 + i) + "|8 0|70 " +
                    std::to_string(i % 2 * 8));
        for (int k = 0; k < 5; ++k) {
            text.entity("VERTEX|5 " + std::to_string(2000 + i * 10 + k) + "|8 0|10 " +
                        std::to_string(k) + "|20 0");
        }
        text.entity("SEQEND|8 0");
    }
    const auto database = text.database();
    for (int k = 0; k < 5; ++k) {
        for (int i = 19; i >= 0; --i) {
            const AcDbObjectId id = idFromHandle(*database, std::to_wstring(2000 + i * 10 + k));
            AcDbEntity* v = nullptr;
            ASSERT_EQ(acdbOpenAcDbEntity(v, id, AcDb::kForRead), Acad::eOk);
            EXPECT_EQ(v->ownerId(), idFromHandle(*database, std::to_wstring(1000 + i)));
            EXPECT_STREQ(v->isA()->name(), i % 2 == 1 ? L"AcDb3dPolylineVertex" : L"AcDb2dVertex");
            EXPECT_EQ(v->close(), Acad::eOk);
        }
    }
}

TEST(Mesh, PolygonMeshTellsItsCounts) {
    const auto database = polyline("70 49|71 2|72 3|75 5", {"10 1|20 1|30 1|70 64"}).database();
    AcDbPolygonMesh* mesh = opened<AcDbPolygonMesh>(idFromHandle(*database, L"2F"));
    EXPECT_EQ(mesh->mSize(), 2);
    EXPECT_EQ(mesh->nSize(), 3);
    EXPECT_TRUE(mesh->isMClosed());
    EXPECT_TRUE(mesh->isNClosed());
    EXPECT_EQ(mesh->polyMeshType(), AcDb::kQuadSurfaceMesh);
    EXPECT_EQ(vertexIds(mesh->vertexIterator()).size(), 1U);
    AcDbPolygonMeshVertex* v = opened<AcDbPolygonMeshVertex>(idFromHandle(*database, L"30"));
    EXPECT_EQ(v->position(), AcGePoint3d(1, 1, 1));
    EXPECT_EQ(v->close(), Acad::eOk);
    EXPECT_EQ(mesh->close(), Acad::eOk);
}

TEST(Mesh, PolyfaceMeshHasVerticesAndFaceRecords) {
    const auto database =
        polyline("70 64|71 3|72 1",
                 {"10 0|20 0|30 0|70 192", "10 1|20 0|30 0|70 192", "10 0|20 1|30 5|70 192",
                  "10 0|20 0|30 0|70 128|71 1|72 -2|73 3"})
            .database();
    AcDbPolyFaceMesh* mesh = opened<AcDbPolyFaceMesh>(idFromHandle(*database, L"2F"));
    EXPECT_EQ(mesh->numVertices(), 3);
    EXPECT_EQ(mesh->numFaces(), 1);
    const auto ids = vertexIds(mesh->vertexIterator());
    ASSERT_EQ(ids.size(), 4U);
    AcDbPolyFaceMeshVertex* corner = opened<AcDbPolyFaceMeshVertex>(ids[2]);
    EXPECT_EQ(corner->position(), AcGePoint3d(0, 1, 5));
    EXPECT_EQ(corner->close(), Acad::eOk);
    AcDbFaceRecord* face = opened<AcDbFaceRecord>(ids[3]);
    Adesk::Int16 number = 9;
    EXPECT_EQ(face->getVertexAt(1, number), Acad::eOk);
    EXPECT_EQ(number, -2);
    EXPECT_EQ(face->getVertexAt(3, number), Acad::eOk);
    EXPECT_EQ(number, 0);
    EXPECT_EQ(face->getVertexAt(4, number), Acad::eInvalidIndex);
    EXPECT_EQ(face->close(), Acad::eOk);
    EXPECT_EQ(face->getVertexAt(0, number), Acad::eNotOpenForRead);
    EXPECT_EQ(mesh->close(), Acad::eOk);
}
