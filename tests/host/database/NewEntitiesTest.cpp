// Putting new entities and layers into a database: who takes what over, what is refused, where it
// stands when it is saved.
#include <cmath>
#include <limits>

#include "host/database/Fault.h"
#include "host/database/Ledger.h"
#include "tests/host/database/NewEntities.h"
#include "tests/host/support/LedgerListener.h"

using namespace host;
using database::idFromHandle;
using database::modelSpaceIds;
using test::addLayer;
using test::append;
using test::DrawingText;
using test::savedBytes;
using test::savedGroups;

namespace {

using Lines = std::vector<std::string>;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kHuge = 25496000.125;

DrawingText plain(const std::string& release = "AC1015") {
    DrawingText text(release);
    text.variable("$HANDSEED|5 A0").variable("$CLAYER|8 roads");
    text.layer("0").layer("roads", 0, 3).layer("shut", 4);
    text.block("*Model_Space", {}).block("TREE", {"CIRCLE|5 20|8 0|10 0|20 0|40 1"});
    text.entity("LINE|5 10|8 roads|10 0.0|20 0.0|11 1.0|21 1.5");
    return text;
}

class NewEntities : public testing::Test {
  protected:
    void SetUp() override { use(plain()); }
    void TearDown() override { working.reset(); }

    void use(const DrawingText& text) {
        working.reset();
        database = text.database();
        before = savedBytes(*database);
        working.emplace(*database);
    }
    AcDbObjectId put(AcDbEntity* entity, const ACHAR* block = ACDB_MODEL_SPACE) {
        AcDbObjectId id;
        EXPECT_EQ(append(*database, entity, &id, block), Acad::eOk);
        return id;
    }
    AcDbObjectId putLine() { return put(new AcDbLine({1, 2, 3}, {4, 5, 6.5})); }

    std::unique_ptr<AcDbDatabase> database;
    std::optional<test::Working> working;
    std::string before;
};

}  // namespace

TEST_F(NewEntities, AreFreeObjectsUntilTheyAreAppended) {
    AcDbLine line({1, 2, 3}, {4, 5, 6});
    EXPECT_TRUE(line.objectId().isNull());
    EXPECT_TRUE(line.isWriteEnabled());
    EXPECT_EQ(line.setStartPoint({7, 8, 9}), Acad::eOk);
    EXPECT_TRUE(line.startPoint().isEqualTo({7, 8, 9}));
    EXPECT_EQ(line.close(), Acad::eNotInDatabase);
    EXPECT_EQ(line.erase(), Acad::eNotInDatabase);
    EXPECT_EQ(savedBytes(*database), before);
}

TEST_F(NewEntities, AppendingTakesOverAndLeavesOpenForWrite) {
    AcDbBlockTable* blocks = nullptr;
    ASSERT_EQ(database->getSymbolTable(blocks, AcDb::kForRead), Acad::eOk);
    AcDbBlockTableRecord* space = nullptr;
    ASSERT_EQ(blocks->getAt(ACDB_MODEL_SPACE, space, AcDb::kForWrite), Acad::eOk);
    blocks->close();
    auto* line = new AcDbLine({1, 2, 3}, {4, 5, 6});
    AcDbObjectId id;
    ASSERT_EQ(space->appendAcDbEntity(id, line), Acad::eOk);
    EXPECT_EQ(line->objectId(), id);
    EXPECT_EQ(line->database(), database.get());
    EXPECT_EQ(line->ownerId(), space->objectId());
    EXPECT_EQ(line->blockId(), space->objectId());
    EXPECT_TRUE(line->isWriteEnabled());
    EXPECT_EQ(space->appendAcDbEntity(id, line), Acad::eAlreadyInDb);
    EXPECT_EQ(space->appendAcDbEntity(nullptr), Acad::eNullObjectPointer);
    EXPECT_EQ(database::Ledger::instance().count("object"), 2U);
    EXPECT_EQ(line->close(), Acad::eOk);
    EXPECT_EQ(line->close(), Acad::eNotOpenForRead);
    EXPECT_EQ(space->close(), Acad::eOk);
}

TEST_F(NewEntities, AreWalkedFoundAndNamedLikeThoseOfTheDrawing) {
    const AcDbObjectId id = putLine();
    EXPECT_EQ(modelSpaceIds(*database).back(), id);
    EXPECT_EQ(database::handleText(id), L"A0");
    EXPECT_EQ(idFromHandle(*database, L"a0"), id);
    EXPECT_EQ(database::className(id), L"AcDbLine");
    EXPECT_EQ(database::recordName(id), L"LINE");
    EXPECT_TRUE(database::isNew(id));
    EXPECT_TRUE(database::isVisible(id));
    AcDbObjectId found;
    EXPECT_EQ(database->getAcDbObjectId(found, false, AcDbHandle(Adesk::UInt64{0xA0})), Acad::eOk);
    EXPECT_EQ(found, id);
    AcDbEntity* entity = nullptr;
    ASSERT_EQ(acdbOpenAcDbEntity(entity, id, AcDb::kForRead), Acad::eOk);
    EXPECT_EQ(acdbOpenAcDbEntity(entity, id, AcDb::kForWrite), Acad::eWasOpenForRead);
    ASSERT_EQ(acdbOpenAcDbEntity(entity, id, AcDb::kForRead), Acad::eOk);
    AcDbExtents box;
    EXPECT_EQ(entity->getGeomExtents(box), Acad::eOk);
    EXPECT_TRUE(box.maxPoint().isEqualTo({4, 5, 6.5}));
    entity->close();
    entity->close();
}

TEST_F(NewEntities, StandAtTheEndOfTheEntitiesAndTheSeedIsRaised) {
    putLine();
    std::string wanted = before;
    wanted.replace(wanted.find("\nA0\n"), 4, "\nA1\n");
    const std::string end = "  0\nENDSEC\n  0\nEOF\n";
    wanted.replace(wanted.rfind(end), end.size(),
                   "  0\nLINE\n  5\nA0\n100\nAcDbEntity\n  8\nroads\n100\nAcDbLine\n 10\n1.0\n 20\n"
                   "2.0\n 30\n3.0\n 11\n4.0\n 21\n5.0\n 31\n6.5\n" +
                       end);
    EXPECT_EQ(savedBytes(*database), wanted);
}

TEST_F(NewEntities, TakeTheCurrentLayerUnlessTheyWereGivenOne) {
    EXPECT_EQ(savedGroups(putLine())[3], "8 roads");
    auto* line = new AcDbLine;
    EXPECT_EQ(line->setLayer(L"SHUT"), Acad::eOk);
    EXPECT_EQ(savedGroups(put(line))[3], "8 shut");
    EXPECT_EQ(AcDbLine().setLayer(L"nowhere"), Acad::eKeyNotFound);
    EXPECT_EQ(AcDbLine().setLayer(static_cast<const ACHAR*>(nullptr)), Acad::eInvalidInput);
    acdbHostApplicationServices()->setWorkingDatabase(nullptr);
    EXPECT_EQ(AcDbLine().setLayer(L"shut"), Acad::eNoDatabase);
}

TEST_F(NewEntities, OnALockedLayerAreAppendedAndThenRefuseWriting) {
    auto* line = new AcDbLine;
    ASSERT_EQ(line->setLayer(L"shut"), Acad::eOk);
    const AcDbObjectId id = put(line);
    AcDbEntity* entity = nullptr;
    EXPECT_EQ(acdbOpenAcDbEntity(entity, id, AcDb::kForWrite), Acad::eOnLockedLayer);
}

TEST_F(NewEntities, OfAnotherDatabasesLayersAreRefused) {
    const auto other = DrawingText().entity("POINT|5 1|8 0|10 0|20 0").database();
    auto* line = new AcDbLine;
    ASSERT_EQ(line->setLayer(L"shut"), Acad::eOk);
    EXPECT_EQ(append(*other, line), Acad::eWrongDatabase);
    EXPECT_EQ(append(*other, new AcDbLine), Acad::eOk);
}

TEST_F(NewEntities, PropertiesAreWrittenWhereTheyDifferFromTheDefaults) {
    auto* line = new AcDbLine({1, 2, 3}, {4, 5, 6});
    EXPECT_EQ(line->setColorIndex(257), Acad::eInvalidInput);
    EXPECT_EQ(line->setColorIndex(0), Acad::eOk);
    EXPECT_EQ(line->setLinetype(L"continuous"), Acad::eOk);
    EXPECT_EQ(line->setLinetype(L"dotted"), Acad::eKeyNotFound);
    EXPECT_EQ(line->setVisibility(AcDb::kInvisible), Acad::eOk);
    EXPECT_EQ(line->setThickness(2.0), Acad::eOk);
    EXPECT_EQ(line->setThickness(kNaN), Acad::eInvalidInput);
    EXPECT_EQ(line->setNormal({0, 0, -2}), Acad::eOk);
    EXPECT_EQ(line->setNormal({0, 0, 0}), Acad::eInvalidInput);
    EXPECT_EQ(savedGroups(put(line)),
              (Lines{"0 LINE", "5 A0", "100 AcDbEntity", "8 roads", "6 CONTINUOUS", "62 0", "60 1",
                     "100 AcDbLine", "39 2.0", "10 1.0", "20 2.0", "30 3.0", "11 4.0", "21 5.0",
                     "31 6.0", "210 0.0", "220 0.0", "230 -1.0"}));
}

TEST_F(NewEntities, CirclesAndArcsKeepTheirCentreWhenTheirPlaneIsTurned) {
    auto* circle = new AcDbCircle;
    EXPECT_EQ(circle->setCenter({kHuge, 2, 3}), Acad::eOk);
    EXPECT_EQ(circle->setRadius(4.5), Acad::eOk);
    EXPECT_EQ(circle->setRadius(-1.0), Acad::eInvalidInput);
    EXPECT_EQ(circle->setNormal({0, 0, -1}), Acad::eOk);
    EXPECT_TRUE(circle->center().isEqualTo({kHuge, 2, 3}));
    const Lines groups = savedGroups(put(circle));
    EXPECT_EQ(Lines(groups.begin() + 4, groups.end()),
              (Lines{"100 AcDbCircle", "10 -25496000.125", "20 2.0", "30 -3.0", "40 4.5", "210 0.0",
                     "220 0.0", "230 -1.0"}));
    AcDbArc arc({1, 2, 3}, {0, 0, -1}, 5.0, 0.0, 1.0);
    EXPECT_TRUE(arc.center().isEqualTo({1, 2, 3}));
    EXPECT_EQ(arc.setStartAngle(0.25), Acad::eOk);
    EXPECT_EQ(arc.setEndAngle(7.5), Acad::eOk);
    EXPECT_EQ(arc.setEndAngle(kNaN), Acad::eInvalidInput);
    EXPECT_EQ(arc.endAngle(), 7.5);
}

TEST_F(NewEntities, TextsAreMadeWithTheSizeOfTheirStyleWhenTheyHaveNone) {
    use(plain()
            .variable("$TEXTSIZE|40 1.75")
            .table("STYLE", {"STYLE|5 30|2 STANDARD|70 0|40 0.0|41 1.0|50 0.0|71 0|3 txt",
                             "STYLE|5 31|2 signs|70 0|40 3.25|41 1.0|50 0.0|71 0|3 txt"}));
    AcDbTextStyleTable* styles = nullptr;
    ASSERT_EQ(database->getSymbolTable(styles, AcDb::kForRead), Acad::eOk);
    AcDbObjectId signs;
    ASSERT_EQ(styles->getAt(L"SIGNS", signs), Acad::eOk);
    styles->close();
    const AcDbText styled({1, 2, 3}, L"a", signs);
    EXPECT_EQ(styled.height(), 3.25);
    EXPECT_EQ(styled.textStyle(), signs);
    auto* text = new AcDbText({1, 2, 3}, L"a");
    EXPECT_EQ(text->height(), 0.0);
    EXPECT_EQ(text->setHeight(0.0), Acad::eInvalidInput);
    EXPECT_EQ(text->setTextString(L"a\nb"), Acad::eInvalidInput);
    EXPECT_EQ(text->setTextString(nullptr), Acad::eInvalidInput);
    EXPECT_EQ(text->setTextString(L"Tie"), Acad::eOk);
    EXPECT_EQ(text->setRotation(8.0), Acad::eOk);
    EXPECT_EQ(text->setHorizontalMode(AcDb::kTextCenter), Acad::eOk);
    EXPECT_EQ(text->setVerticalMode(AcDb::kTextTop), Acad::eOk);
    EXPECT_EQ(text->setAlignmentPoint({4, 5, 6}), Acad::eOk);
    EXPECT_EQ(text->setWidthFactor(0.5), Acad::eOk);
    EXPECT_EQ(text->mirrorInY(true), Acad::eOk);
    EXPECT_EQ(text->setTextStyle(signs), Acad::eOk);
    EXPECT_EQ(text->setTextStyle(database->layerZero()), Acad::eNotThatKindOfClass);
    const Lines groups = savedGroups(put(text));
    ASSERT_EQ(groups.size(), 20U);
    EXPECT_EQ(groups[8], "40 1.75");
    EXPECT_EQ(groups[9], "1 Tie");
    EXPECT_EQ(groups[10].substr(0, 6), "50 458");
    EXPECT_EQ(Lines(groups.begin() + 11, groups.end()),
              (Lines{"41 0.5", "7 signs", "71 4", "72 1", "11 4.0", "21 5.0", "31 6.0",
                     "100 AcDbText", "73 3"}));
}

TEST_F(NewEntities, LightPolylinesKeepBulgesAndWidths) {
    auto* polyline = new AcDbPolyline(3);
    EXPECT_EQ(polyline->numVerts(), 0U);
    EXPECT_EQ(polyline->addVertexAt(0, {3, 4}, 0.5, 1.0, 2.0), Acad::eOk);
    EXPECT_EQ(polyline->addVertexAt(0, {1, 2}, 0, -1.0, -1.0, 0), Acad::eOk);
    EXPECT_EQ(polyline->addVertexAt(3, {1, 2}), Acad::eInvalidIndex);
    EXPECT_EQ(polyline->addVertexAt(2, {kNaN, 2}), Acad::eInvalidInput);
    EXPECT_EQ(polyline->removeVertexAt(0), Acad::eDegenerateGeometry);
    EXPECT_EQ(polyline->setBulgeAt(0, -0.25), Acad::eOk);
    EXPECT_EQ(polyline->setPointAt(2, {0, 0}), Acad::eInvalidIndex);
    EXPECT_EQ(polyline->setConstantWidth(-1), Acad::eInvalidInput);
    double start = 0.0;
    double end = 0.0;
    EXPECT_EQ(polyline->getWidthsAt(1, start, end), Acad::eOk);
    EXPECT_EQ(start, 1.0);
    EXPECT_EQ(end, 2.0);
    polyline->setClosed(true);
    EXPECT_TRUE(polyline->isClosed());
    double length = 0.0;
    double last = 0.0;
    EXPECT_EQ(polyline->getEndParam(last), Acad::eOk);
    EXPECT_EQ(polyline->getDistAtParam(last, length), Acad::eOk);
    EXPECT_GT(length, 0.0);
    const Lines groups = savedGroups(put(polyline));
    EXPECT_EQ(Lines(groups.begin() + 4, groups.end()),
              (Lines{"100 AcDbPolyline", "90 2", "70 1", "10 1.0", "20 2.0", "42 -0.25", "10 3.0",
                     "20 4.0", "40 1.0", "41 2.0", "42 0.5"}));
}

TEST_F(NewEntities, OldPolylinesAreCurvesBeforeTheyAreInADatabase) {
    AcGePoint3dArray points;
    points.append({0, 0, 9});
    points.append({3, 4, 9});
    AcDb2dPolyline plane(points, AcDb::k2dSimplePoly, 2.0);
    AcGePoint3d end;
    EXPECT_EQ(plane.getEndPoint(end), Acad::eOk);
    EXPECT_TRUE(end.isEqualTo({3, 4, 2}));
    const AcDb3dPolyline space(AcDb::k3dSimplePoly, points);
    EXPECT_EQ(space.getEndPoint(end), Acad::eOk);
    EXPECT_TRUE(end.isEqualTo({3, 4, 9}));
    EXPECT_EQ(space.vertexIterator(), nullptr);
    EXPECT_EQ(plane.makeClosed(), Acad::eOk);
    EXPECT_TRUE(plane.isClosed());
    EXPECT_EQ(plane.makeOpen(), Acad::eOk);
    EXPECT_FALSE(plane.isClosed());
}

TEST_F(NewEntities, VerticesAreAppendedBeforeAndAfterTheirPolyline) {
    auto* polyline = new AcDb2dPolyline;
    auto* early = new AcDb2dVertex({1, 2, 0}, 0.5);
    EXPECT_EQ(polyline->appendVertex(early), Acad::eOk);
    EXPECT_EQ(polyline->setColorIndex(4), Acad::eOk);
    const AcDbObjectId id = put(polyline);
    ASSERT_EQ(acdbOpenObject(polyline, id, AcDb::kForWrite), Acad::eOk);
    auto* late = new AcDb2dVertex({3, 4, 0});
    AcDbObjectId vertex;
    EXPECT_EQ(polyline->appendVertex(vertex, late), Acad::eOk);
    EXPECT_EQ(polyline->appendVertex(vertex, late), Acad::eAlreadyInDb);
    EXPECT_EQ(polyline->appendVertex(nullptr), Acad::eNullObjectPointer);
    EXPECT_EQ(late->ownerId(), id);
    EXPECT_EQ(late->colorIndex(), 4);
    late->close();
    EXPECT_EQ(polyline->setLayer(L"0"), Acad::eOk);
    std::unique_ptr<AcDbObjectIterator> walk(polyline->vertexIterator());
    ASSERT_NE(walk, nullptr);
    int count = 0;
    for (; !walk->done(); walk->step()) {
        AcDb2dVertex* seen = nullptr;
        ASSERT_EQ(acdbOpenObject(seen, walk->objectId(), AcDb::kForRead), Acad::eOk);
        EXPECT_EQ(seen->position().x, ++count == 1 ? 1.0 : 3.0);
        ACHAR* layer = seen->layer();
        EXPECT_STREQ(layer, L"0");
        acutDelString(layer);
        seen->close();
    }
    EXPECT_EQ(count, 2);
    polyline->close();
    const std::string saved = savedBytes(*database);
    EXPECT_NE(saved.find("VERTEX\n  5\nA1\n330\nA0\n100\nAcDbEntity\n  8\n0\n"), std::string::npos);
    EXPECT_NE(saved.find("SEQEND\n  5\nA3\n330\nA0\n100\nAcDbEntity\n  8\n0\n"), std::string::npos);
    EXPECT_NE(saved.find("$HANDSEED\n  5\nA4\n"), std::string::npos);
}

TEST_F(NewEntities, VerticesOfAPolylineOfTheDrawingStandBeforeItsEnd) {
    use(plain()
            .entity("POLYLINE|5 40|8 0|66 1|70 0")
            .entity("VERTEX|5 41|8 0|10 0.0|20 0.0")
            .entity("SEQEND|5 42|8 0"));
    AcDb2dPolyline* polyline = nullptr;
    ASSERT_EQ(acdbOpenObject(polyline, idFromHandle(*database, L"40"), AcDb::kForWrite), Acad::eOk);
    auto* vertex = new AcDb2dVertex({3, 4, 0});
    ASSERT_EQ(polyline->appendVertex(vertex), Acad::eOk);
    vertex->close();
    AcGePoint3d end;
    EXPECT_EQ(polyline->getEndPoint(end), Acad::eOk);
    EXPECT_TRUE(end.isEqualTo({3, 4, 0}));
    polyline->close();
    std::string wanted = before;
    wanted.replace(wanted.find("\nA0\n"), 4, "\nA1\n");
    wanted.insert(wanted.find("  0\nSEQEND"),
                  "  0\nVERTEX\n  5\nA0\n330\n40\n100\nAcDbEntity\n  8\n0\n100\nAcDbVertex\n100\n"
                  "AcDb2dVertex\n 10\n3.0\n 20\n4.0\n 30\n0.0\n");
    EXPECT_EQ(savedBytes(*database), wanted);
}

TEST_F(NewEntities, MeshesCountTheirVerticesAndFaces) {
    auto* mesh = new AcDbPolyFaceMesh;
    for (const double x : {0.0, 1.0, 2.0}) {
        EXPECT_EQ(mesh->appendVertex(new AcDbPolyFaceMeshVertex({x, x * x, 1})), Acad::eOk);
    }
    EXPECT_EQ(mesh->appendFaceRecord(new AcDbFaceRecord(1, 2, -3)), Acad::eOk);
    EXPECT_EQ(mesh->numVertices(), 3);
    EXPECT_EQ(mesh->numFaces(), 1);
    const AcDbObjectId id = put(mesh);
    const Lines groups = savedGroups(id);
    EXPECT_EQ(Lines(groups.begin() + 4, groups.end()),
              (Lines{"100 AcDbPolyFaceMesh", "66 1", "10 0.0", "20 0.0", "30 0.0", "70 64", "71 3",
                     "72 1"}));
    const Lines face = savedGroups(*database, 0xA4);
    EXPECT_EQ(Lines(face.begin() + 5, face.end()),
              (Lines{"100 AcDbFaceRecord", "10 0.0", "20 0.0", "30 0.0", "70 128", "71 1", "72 2",
                     "73 -3"}));
    AcDbExtents box;
    ASSERT_EQ(acdbOpenObject(mesh, id, AcDb::kForRead), Acad::eOk);
    EXPECT_EQ(mesh->getGeomExtents(box), Acad::eOk);
    EXPECT_TRUE(box.maxPoint().isEqualTo({2, 4, 1}));
    mesh->close();
}

TEST_F(NewEntities, FacesAndSolidsHaveTheirCorners) {
    auto* face = new AcDbFace({0, 0, 1}, {1, 0, 2}, {1, 1, 3}, true, false, true, true);
    EXPECT_EQ(face->makeEdgeInvisibleAt(3), Acad::eOk);
    EXPECT_EQ(face->makeEdgeInvisibleAt(4), Acad::eInvalidIndex);
    EXPECT_EQ(face->setVertexAt(3, {0, 1, 4}), Acad::eOk);
    EXPECT_EQ(face->setVertexAt(4, {0, 1, 4}), Acad::eInvalidIndex);
    const Lines groups = savedGroups(put(face));
    EXPECT_EQ(Lines(groups.begin() + 4, groups.end()),
              (Lines{"100 AcDbFace", "10 0.0", "20 0.0", "30 1.0", "11 1.0", "21 0.0", "31 2.0",
                     "12 1.0", "22 1.0", "32 3.0", "13 0.0", "23 1.0", "33 4.0", "70 10"}));
    const Lines solid = savedGroups(put(new AcDbSolid({0, 0, 0}, {1, 0, 0}, {0, 1, 0})));
    EXPECT_EQ(solid[0], "0 SOLID");
    EXPECT_EQ(solid[4], "100 AcDbTrace");
    EXPECT_EQ(solid[14], "13 0.0");
    EXPECT_EQ(solid[15], "23 1.0");
}

TEST_F(NewEntities, TextsOfSeveralLinesComeInPieces) {
    auto* text = new AcDbMText;
    EXPECT_EQ(text->setTextHeight(0.0), Acad::eInvalidInput);
    EXPECT_EQ(text->setTextHeight(2.0), Acad::eOk);
    EXPECT_EQ(text->setLocation({1, 2, 3}), Acad::eOk);
    EXPECT_EQ(text->setRotation(0.0), Acad::eOk);
    EXPECT_EQ(text->setContents((L"a\r\nb\n" + std::wstring(250, L'c')).c_str()), Acad::eOk);
    const Lines groups = savedGroups(put(text));
    EXPECT_EQ(groups[4], "100 AcDbMText");
    EXPECT_EQ(groups[12], "3 a\\Pb\\P" + std::string(244, 'c'));
    EXPECT_EQ(groups[13], "1 " + std::string(6, 'c'));
}

TEST_F(NewEntities, ReferencesCarryAttributes) {
    AcDbBlockTable* blocks = nullptr;
    ASSERT_EQ(database->getSymbolTable(blocks, AcDb::kForRead), Acad::eOk);
    AcDbObjectId tree;
    ASSERT_EQ(blocks->getAt(L"tree", tree), Acad::eOk);
    blocks->close();
    auto* reference = new AcDbBlockReference({1, 2, 3}, tree);
    EXPECT_EQ(reference->setScaleFactors(AcGeScale3d(2.0, 2.0, 0.0)), Acad::eInvalidInput);
    EXPECT_EQ(reference->setScaleFactors(AcGeScale3d(2.0)), Acad::eOk);
    EXPECT_EQ(reference->setBlockTableRecord(database->layerZero()), Acad::eNotThatKindOfClass);
    EXPECT_EQ(reference->blockTableRecord(), tree);
    AcDbAttributeDefinition definition;
    definition.setTag(L"NO");
    definition.setHeight(0.5);
    definition.setPosition({1, 0, 0});
    auto* attribute = new AcDbAttribute;
    EXPECT_EQ(reference->appendAttribute(attribute), Acad::eNotInDatabase);
    const AcDbObjectId id = put(reference);
    ASSERT_EQ(acdbOpenObject(reference, id, AcDb::kForWrite), Acad::eOk);
    EXPECT_EQ(attribute->setAttributeFromBlock(&definition, reference->blockTransform()),
              Acad::eOk);
    attribute->setTextString(L"17");
    EXPECT_EQ(reference->appendAttribute(attribute), Acad::eOk);
    attribute->close();
    reference->close();
    EXPECT_EQ(savedGroups(id)[5], "66 1");
    const Lines groups = savedGroups(*database, 0xA1);
    EXPECT_EQ(groups[0], "0 ATTRIB");
    EXPECT_EQ(Lines(groups.begin() + 5, groups.begin() + 12),
              (Lines{"100 AcDbText", "10 3.0", "20 2.0", "30 3.0", "40 1.0", "1 17",
                     "100 AcDbAttribute"}));
    EXPECT_EQ(groups[12], "2 NO");
}

TEST_F(NewEntities, InABlockStandBeforeItsEnd) {
    put(new AcDbPoint({1, 2, 3}), L"TREE");
    std::string wanted = before;
    wanted.replace(wanted.find("\nA0\n"), 4, "\nA1\n");
    wanted.insert(
        wanted.rfind("  0\nENDBLK"),
        "  0\nPOINT\n  5\nA0\n100\nAcDbEntity\n  8\nroads\n100\nAcDbPoint\n 10\n1.0\n 20\n"
        "2.0\n 30\n3.0\n");
    EXPECT_EQ(savedBytes(*database), wanted);
    EXPECT_EQ(modelSpaceIds(*database).size(), 1U);
}

TEST_F(NewEntities, OnPaperAreMarkedSo) {
    EXPECT_EQ(savedGroups(put(new AcDbPoint, ACDB_PAPER_SPACE))[3], "67 1");
    EXPECT_EQ(modelSpaceIds(*database).size(), 1U);
}

TEST_F(NewEntities, AreRefusedByABlockThatIsOnlyNamed) {
    use(plain().table("BLOCK_RECORD", {"BLOCK_RECORD|5 50|2 NONE"}));
    AcDbObjectId id;
    EXPECT_EQ(append(*database, new AcDbPoint, &id, L"NONE"), Acad::eInvalidOwnerObject);
    EXPECT_EQ(savedBytes(*database), before);
}

TEST_F(NewEntities, WithCoordinatesThatAreNoNumbersAreRefused) {
    EXPECT_EQ(append(*database, new AcDbLine({kNaN, 0, 0}, {1, 1, 1})), Acad::eInvalidInput);
    EXPECT_EQ(append(*database, new AcDbCircle({0, 0, 0}, {0, 0, 1}, kNaN)), Acad::eInvalidInput);
    AcGePoint3dArray points;
    points.append({0, 0, std::numeric_limits<double>::infinity()});
    EXPECT_EQ(append(*database, new AcDb3dPolyline(AcDb::k3dSimplePoly, points)),
              Acad::eInvalidInput);
    EXPECT_EQ(savedBytes(*database), before);
    EXPECT_EQ(modelSpaceIds(*database).size(), 1U);
}

TEST_F(NewEntities, OfKeptClassesAreRefused) {
    EXPECT_EQ(append(*database, new AcDbSpline), Acad::eNotImplementedYet);
    EXPECT_EQ(append(*database, new AcDbPolygonMesh), Acad::eNotImplementedYet);
}

TEST_F(NewEntities, ErasedOnesAreNotWritten) {
    const AcDbObjectId first = putLine();
    const AcDbObjectId second = putLine();
    AcDbEntity* entity = nullptr;
    ASSERT_EQ(acdbOpenAcDbEntity(entity, first, AcDb::kForWrite), Acad::eOk);
    EXPECT_EQ(entity->erase(), Acad::eOk);
    entity->close();
    EXPECT_EQ(modelSpaceIds(*database).size(), 2U);
    EXPECT_TRUE(savedGroups(first).empty());
    EXPECT_EQ(savedGroups(second)[1], "5 A1");
    ASSERT_EQ(acdbOpenAcDbEntity(entity, second, AcDb::kForWrite), Acad::eOk);
    EXPECT_EQ(entity->erase(), Acad::eOk);
    entity->close();
    EXPECT_EQ(savedBytes(*database), before);
}

TEST_F(NewEntities, RollingBackTakesThemAwayAndTheirHandlesStayTaken) {
    database::beginGroup(*database, L"DRAW");
    const AcDbObjectId gone = putLine();
    database::rollback(*database);
    EXPECT_TRUE(gone.isErased());
    EXPECT_EQ(savedBytes(*database), before);
    const AcDbObjectId id = putLine();
    EXPECT_EQ(database::handleText(id), L"A1");
    AcDbEntity* entity = nullptr;
    EXPECT_EQ(acdbOpenAcDbEntity(entity, gone, AcDb::kForRead), Acad::eWasErased);
}

TEST_F(NewEntities, WhatWasUndoneLeavesNoTraceInHandlesOfVertices) {
    use(DrawingText("AC1009").layer("0").entity("POINT|5 7|8 0|10 0.0|20 0.0"));
    auto* polyline = new AcDbPolyline;
    polyline->addVertexAt(0, {1, 2});
    put(polyline);
    const std::string drawn = savedBytes(*database);
    database::beginGroup(*database, L"DRAW");
    putLine();
    database::endGroup(*database);
    EXPECT_NE(savedBytes(*database), drawn);
    EXPECT_TRUE(database::undo(*database));
    EXPECT_EQ(savedBytes(*database), drawn);
}

TEST_F(NewEntities, ChangesOfANewOneAreUndoneByThemselves) {
    database::beginGroup(*database, L"DRAW");
    const AcDbObjectId id = putLine();
    database::endGroup(*database);
    const std::string drawn = savedBytes(*database);
    database::beginGroup(*database, L"MOVE");
    AcDbLine* line = nullptr;
    ASSERT_EQ(acdbOpenObject(line, id, AcDb::kForWrite), Acad::eOk);
    EXPECT_EQ(line->setEndPoint({9, 9, 9}), Acad::eOk);
    line->close();
    database::endGroup(*database);
    EXPECT_NE(savedBytes(*database), drawn);
    EXPECT_TRUE(database::undo(*database));
    EXPECT_EQ(savedBytes(*database), drawn);
    EXPECT_TRUE(database::undo(*database));
    EXPECT_EQ(savedBytes(*database), before);
}

TEST_F(NewEntities, HandlesGoOnBehindTheLargestEvenIfTheSeedIsTooLow) {
    use(DrawingText().variable("$HANDSEED|5 5").entity("POINT|5 FF|8 0|10 0|20 0"));
    EXPECT_EQ(database::handleText(putLine()), L"100");
    EXPECT_NE(savedBytes(*database).find("$HANDSEED\n  5\n101\n"), std::string::npos);
}

TEST_F(NewEntities, BehindTheLargestPossibleHandleAFreeOneIsTaken) {
    use(DrawingText()
            .entity("POINT|5 FFFFFFFFFFFFFFFF|8 0|10 0|20 0")
            .entity("POINT|5 1|8 0|10 0|20 0"));
    EXPECT_EQ(database::handleText(putLine()), L"2");
    EXPECT_EQ(database::handleText(putLine()), L"3");
}

TEST_F(NewEntities, ASeedThatIsHighEnoughStays) {
    use(DrawingText().variable("$HANDSEED|5 A000").entity("POINT|5 FF|8 0|10 0|20 0"));
    const AcDbObjectId id = putLine();
    EXPECT_EQ(database::handleText(id), L"A000");
    AcDbEntity* entity = nullptr;
    ASSERT_EQ(acdbOpenAcDbEntity(entity, id, AcDb::kForWrite), Acad::eOk);
    entity->erase();
    entity->close();
    EXPECT_NE(savedBytes(*database).find("$HANDSEED\n  5\nA000\n"), std::string::npos);
}

TEST_F(NewEntities, OldDrawingsWithoutHandlesGiveNone) {
    use(DrawingText("AC1009").layer("0").entity("POINT|8 0|10 0.0|20 0.0"));
    const AcDbObjectId id = putLine();
    EXPECT_EQ(database::handleText(id), L"");
    EXPECT_NE(savedBytes(*database).find("  0\nLINE\n  8\n0\n 10\n1.0\n"), std::string::npos);
    use(DrawingText("AC1009").layer("0").entity("POINT|5 7|8 0|10 0.0|20 0.0"));
    EXPECT_EQ(database::handleText(putLine()), L"8");
}

TEST_F(NewEntities, ADrawingWithoutReleaseGetsTheFormOfItsEntities) {
    use(DrawingText("").entity("POINT|8 0|10 0.0|20 0.0"));
    putLine();
    EXPECT_NE(savedBytes(*database).find("  0\nLINE\n  8\n0\n 10\n"), std::string::npos);
    use(DrawingText("").entity("POINT|5 7|100 AcDbEntity|8 0|100 AcDbPoint|10 0.0|20 0.0"));
    putLine();
    EXPECT_NE(savedBytes(*database).find("  0\nLINE\n  5\n8\n100\nAcDbEntity\n  8\n0\n"),
              std::string::npos);
}

TEST_F(NewEntities, OwnersAreNamedWhereTheDrawingKnowsThem) {
    use(plain().table("BLOCK_RECORD", {"BLOCK_RECORD|5 1F|2 *Model_Space"}));
    EXPECT_EQ(savedGroups(putLine())[2], "330 1F");
}

TEST_F(NewEntities, WhatTheDrawingLacksForThemIsMade) {
    const auto saved = [&](const std::string& bytes) {
        working.reset();
        database = database::drawingOf(dxf::Document::fromBytes(bytes, "test.dxf"));
        working.emplace(*database);
        addLayer(*database, L"uusi");
        putLine();
        return savedBytes(*database);
    };
    const std::string layer = "0\nLAYER\n2\nuusi\n70\n0\n62\n7\n6\nCONTINUOUS\n";
    const std::string table = "0\nTABLE\n2\nLAYER\n70\n1\n" + layer + "0\nENDTAB\n";
    const std::string tables = "0\nSECTION\n2\nTABLES\n" + table + "0\nENDSEC\n";
    const std::string line =
        "0\nLINE\n8\n0\n10\n1.0\n20\n2.0\n30\n3.0\n11\n4.0\n21\n5.0\n31\n6.5\n";
    const std::string entities = "0\nSECTION\n2\nENTITIES\n" + line + "0\nENDSEC\n";
    EXPECT_EQ(saved("0\nEOF\n"), tables + entities + "0\nEOF\n");
    EXPECT_EQ(saved("0\nSECTION\n2\nENTITIES\n0\nENDSEC\n"), tables + entities);
    EXPECT_EQ(saved("0\nSECTION\n2\nENTITIES\n0\nEOF\n"),
              tables + "0\nSECTION\n2\nENTITIES\n" + line + "0\nEOF\n");
    const std::string empty = "0\nSECTION\n2\nTABLES\n0\nENDSEC\n";
    EXPECT_EQ(saved(empty + "0\nEOF\n"), tables + entities + "0\nEOF\n");
    const std::string blocks = "0\nSECTION\n2\nBLOCKS\n0\nENDSEC\n";
    EXPECT_EQ(saved(blocks + "0\nEOF\n"), tables + blocks + entities + "0\nEOF\n");
    const std::string objects = "0\nSECTION\n2\nOBJECTS\n0\nENDSEC\n";
    EXPECT_EQ(saved(objects + "0\nEOF\n"), tables + entities + objects + "0\nEOF\n");
}

TEST_F(NewEntities, ADatabaseOfOnesOwnIsSavedAsADrawing) {
    AcDbDatabase own;
    EXPECT_EQ(append(own, new AcDbLine({1, 2, 3}, {4, 5, 6})), Acad::eOk);
    const auto again = database::drawingOf(dxf::Document::fromBytes(savedBytes(own), "own.dxf"));
    EXPECT_EQ(modelSpaceIds(*again).size(), 1U);
}

TEST_F(NewEntities, EveryNewCallFailsOnOrderAndNothingIsLeftOpen) {
    const auto drawOne = [&]() -> Acad::ErrorStatus {
        AcDbBlockTable* blocks = nullptr;
        Acad::ErrorStatus status = database->getSymbolTable(blocks, AcDb::kForRead);
        if (status != Acad::eOk) return status;
        AcDbBlockTableRecord* space = nullptr;
        status = blocks->getAt(ACDB_MODEL_SPACE, space, AcDb::kForWrite);
        while (blocks->close() != Acad::eOk && blocks->isReadEnabled()) {
        }
        if (status != Acad::eOk) return status;
        auto* line = new AcDbLine({1, 2, 3}, {4, 5, 6});
        if (line == nullptr) {
            status = Acad::eOutOfMemory;
        } else {
            status = line->setColorIndex(3);
            if (status == Acad::eOk) status = line->setLayer(L"roads");
            if (status == Acad::eOk) status = space->appendAcDbEntity(line);
            if (status != Acad::eOk) delete line;
        }
        while (space->close() != Acad::eOk && space->isWriteEnabled()) {
        }
        if (status != Acad::eOk) return status;
        status = line->close();
        if (status != Acad::eOk) line->close();
        return status;
    };
    fault::disarm();
    EXPECT_EQ(drawOne(), Acad::eOk);
    const std::vector<std::string> names = fault::names();
    EXPECT_NE(std::find(names.begin(), names.end(), "AcDbObject::operator new"), names.end());
    const std::size_t calls = fault::calls();
    for (std::size_t n = 1; n <= calls; ++n) {
        fault::arm(n, Acad::eOutOfMemory);
        drawOne();
        EXPECT_TRUE(fault::fired()) << n;
        EXPECT_EQ(database::Ledger::instance().count(), 0U) << n;
    }
    fault::disarm();
}

TEST_F(NewEntities, LayersAreFoundByNameAtOnceAndRefusedTwice) {
    AcDbObjectId id;
    EXPECT_EQ(addLayer(*database, L"Uusi", &id), Acad::eOk);
    EXPECT_EQ(addLayer(*database, L"UUSI"), Acad::eDuplicateRecordName);
    EXPECT_EQ(addLayer(*database, L"ROADS"), Acad::eDuplicateRecordName);
    for (const ACHAR* name : {L"", L"a|b", L"a/b", L" a", L"a ", L"a\tb", L"a*"}) {
        EXPECT_EQ(addLayer(*database, name), Acad::eInvalidSymbolTableName) << name;
    }
    AcDbLayerTable* table = nullptr;
    ASSERT_EQ(database->getSymbolTable(table, AcDb::kForRead), Acad::eOk);
    EXPECT_TRUE(table->has(L"uusi"));
    EXPECT_TRUE(table->has(id));
    EXPECT_EQ(table->add(nullptr), Acad::eNullObjectPointer);
    AcDbLayerTableRecord other;
    other.setName(L"other");
    EXPECT_EQ(table->add(&other), Acad::eNotOpenForWrite);
    AcDbSymbolTableIterator* walk = nullptr;
    ASSERT_EQ(table->newIterator(walk), Acad::eOk);
    AcDbObjectId last;
    for (; !walk->done(); walk->step()) walk->getRecordId(last);
    delete walk;
    EXPECT_EQ(last, id);
    table->close();
}

TEST_F(NewEntities, ALayerThatWasUndoneIsAbsentAndCanBeMadeAgain) {
    database::beginGroup(*database, L"LAYER");
    addLayer(*database, L"uusi");
    database::endGroup(*database);
    EXPECT_TRUE(database::undo(*database));
    AcDbLayerTable* table = nullptr;
    ASSERT_EQ(database->getSymbolTable(table, AcDb::kForRead), Acad::eOk);
    EXPECT_FALSE(table->has(L"uusi"));
    table->close();
    EXPECT_EQ(AcDbLine().setLayer(L"uusi"), Acad::eWasErased);
    EXPECT_EQ(savedBytes(*database), before);
    EXPECT_EQ(addLayer(*database, L"uusi"), Acad::eOk);
    EXPECT_EQ(AcDbLine().setLayer(L"uusi"), Acad::eOk);
}

TEST_F(NewEntities, LayersHaveTheirStateAndColour) {
    AcDbObjectId id;
    ASSERT_EQ(addLayer(*database, L"uusi", &id), Acad::eOk);
    AcDbLayerTableRecord* layer = nullptr;
    ASSERT_EQ(acdbOpenObject(layer, id, AcDb::kForWrite), Acad::eOk);
    EXPECT_EQ(layer->setColorIndex(0), Acad::eInvalidInput);
    EXPECT_EQ(layer->setColorIndex(256), Acad::eInvalidInput);
    layer->setIsOff(true);
    EXPECT_EQ(layer->setColorIndex(5), Acad::eOk);
    layer->setIsLocked(true);
    EXPECT_EQ(layer->setIsFrozen(true), Acad::eOk);
    EXPECT_EQ(layer->setIsPlottable(false), Acad::eOk);
    EXPECT_EQ(layer->setName(L"other"), Acad::eNotImplementedYet);
    EXPECT_EQ(layer->setLinetypeObjectId(id), Acad::eNotThatKindOfClass);
    EXPECT_TRUE(layer->isOff() && layer->isLocked() && layer->isFrozen());
    layer->close();
    EXPECT_EQ(savedGroups(id),
              (Lines{"0 LAYER", "5 A0", "100 AcDbSymbolTableRecord", "100 AcDbLayerTableRecord",
                     "2 uusi", "70 5", "62 -5", "6 CONTINUOUS", "290 0", "370 -3"}));
}

TEST_F(NewEntities, LayersShareThePlotStyleOfLayerZero) {
    use(DrawingText()
            .table("LAYER", {"LAYER|5 10|2 0|70 0|62 7|6 CONTINUOUS|370 -3|390 F|347 98"})
            .entity("POINT|5 2|8 0|10 0|20 0"));
    AcDbObjectId id;
    ASSERT_EQ(addLayer(*database, L"uusi", &id), Acad::eOk);
    const Lines groups = savedGroups(id);
    EXPECT_EQ(Lines(groups.end() - 2, groups.end()), (Lines{"390 F", "347 98"}));
}

TEST_F(NewEntities, ACountThatLeavesRoomStays) {
    use(DrawingText()
            .table("LAYER", {"LAYER|5 10|2 0|70 0|62 7|6 CONTINUOUS"})
            .entity("POINT|5 2|8 0|10 0|20 0"));
    std::string roomy = before;
    roomy.replace(roomy.find("LAYER\n 70\n1\n"), 12, "LAYER\n 70\n9\n");
    working.reset();
    database = database::drawingOf(dxf::Document::fromBytes(roomy, "test.dxf"));
    working.emplace(*database);
    addLayer(*database, L"uusi");
    EXPECT_NE(savedBytes(*database).find("LAYER\n 70\n9\n"), std::string::npos);
}

TEST_F(NewEntities, TextStylesAreAdded) {
    AcDbTextStyleTable* table = nullptr;
    ASSERT_EQ(database->getSymbolTable(table, AcDb::kForWrite), Acad::eOk);
    auto* style = new AcDbTextStyleTableRecord;
    EXPECT_EQ(table->add(style), Acad::eInvalidSymbolTableName);
    EXPECT_EQ(style->setName(L"signs"), Acad::eOk);
    EXPECT_EQ(style->setFileName(L"romans.shx"), Acad::eOk);
    EXPECT_EQ(style->setTextSize(-1.0), Acad::eInvalidInput);
    EXPECT_EQ(style->setTextSize(2.0), Acad::eOk);
    EXPECT_EQ(table->add(style), Acad::eOk);
    const AcDbObjectId id = style->objectId();
    style->close();
    table->close();
    const Lines groups = savedGroups(id);
    EXPECT_EQ(Lines(groups.begin() + 5, groups.end()),
              (Lines{"2 signs", "70 0", "40 2.0", "41 1.0", "50 0.0", "71 0", "42 2.0",
                     "3 romans.shx", "4 "}));
}

TEST_F(NewEntities, TheCurrentLayerIsChangedUndoneAndSaved) {
    AcDbObjectId zero = database->layerZero();
    database::beginGroup(*database, L"LAYER");
    EXPECT_EQ(database->setClayer(zero), Acad::eOk);
    database::endGroup(*database);
    EXPECT_EQ(database->clayer(), zero);
    EXPECT_NE(savedBytes(*database).find("$CLAYER\n  8\n0\n"), std::string::npos);
    EXPECT_EQ(savedGroups(putLine())[3], "8 0");
    EXPECT_EQ(database->setClayer(AcDbObjectId()), Acad::eNullObjectId);
    EXPECT_EQ(database->setClayer(database->blockTableId()), Acad::eNotThatKindOfClass);
    AcDbDatabase other;
    EXPECT_EQ(database->setClayer(other.layerZero()), Acad::eWrongDatabase);
}

TEST_F(NewEntities, SettingTheCurrentLayerBackLeavesTheDrawingAsItWas) {
    const AcDbObjectId roads = database->clayer();
    database->setClayer(database->layerZero());
    database->setClayer(roads);
    EXPECT_EQ(savedBytes(*database), before);
}

TEST_F(NewEntities, EntitiesOfTheDrawingAreChangedInPlace) {
    AcDbLine* line = nullptr;
    ASSERT_EQ(acdbOpenObject(line, idFromHandle(*database, L"10"), AcDb::kForWrite), Acad::eOk);
    EXPECT_EQ(line->setLayer(L"0"), Acad::eOk);
    EXPECT_EQ(line->setColorIndex(2), Acad::eOk);
    EXPECT_EQ(line->setEndPoint({1.0, 7.25, 0}), Acad::eOk);
    line->close();
    EXPECT_EQ(savedGroups(*database, 0x10),
              (Lines{"0 LINE", "5 10", "8 0", "62 2", "10 0.0", "20 0.0", "11 1.0", "21 7.25"}));
    const auto groups = database::changedGroups(idFromHandle(*database, L"10"));
    ASSERT_EQ(groups.size(), 8U);
    EXPECT_EQ(std::get<std::wstring>(groups[2].value), L"0");
    EXPECT_TRUE(database::changedGroups(idFromHandle(*database, L"20")).empty());
}

TEST_F(NewEntities, ALayerThatOnlyEntitiesNameIsListedOnceItIsChanged) {
    use(DrawingText().layer("0").entity("POINT|5 2|8 hidden|10 0|20 0"));
    AcDbLayerTable* table = nullptr;
    ASSERT_EQ(database->getSymbolTable(table, AcDb::kForRead), Acad::eOk);
    AcDbLayerTableRecord* layer = nullptr;
    ASSERT_EQ(table->getAt(L"hidden", layer, AcDb::kForWrite), Acad::eOk);
    table->close();
    database::beginGroup(*database, L"COLOUR");
    EXPECT_EQ(layer->setColorIndex(7), Acad::eOk);
    EXPECT_EQ(savedBytes(*database), before);
    EXPECT_EQ(layer->setColorIndex(4), Acad::eOk);
    layer->close();
    database::endGroup(*database);
    EXPECT_EQ(savedGroups(*database, 3),
              (Lines{"0 LAYER", "5 3", "100 AcDbSymbolTableRecord", "100 AcDbLayerTableRecord",
                     "2 hidden", "70 0", "62 4", "6 CONTINUOUS", "370 -3"}));
    EXPECT_TRUE(database::undo(*database));
    EXPECT_EQ(savedBytes(*database), before);
}

TEST_F(NewEntities, ErasingAPolylineOfTheDrawingTakesNewVerticesAndALonelyEndAlong) {
    use(DrawingText()
            .entity("POLYLINE|5 40|8 0|66 1|70 0")
            .entity("SEQEND|5 42|8 0")
            .entity("POINT|5 43|8 0|10 0.0|20 0.0"));
    AcDb2dPolyline* polyline = nullptr;
    ASSERT_EQ(acdbOpenObject(polyline, idFromHandle(*database, L"40"), AcDb::kForWrite), Acad::eOk);
    auto* vertex = new AcDb2dVertex({3, 4, 0});
    ASSERT_EQ(polyline->appendVertex(vertex), Acad::eOk);
    vertex->close();
    EXPECT_EQ(polyline->erase(), Acad::eOk);
    polyline->close();
    const std::string saved = savedBytes(*database);
    EXPECT_EQ(saved.find("POLYLINE"), std::string::npos);
    EXPECT_EQ(saved.find("SEQEND"), std::string::npos);
    EXPECT_EQ(saved.find("VERTEX"), std::string::npos);
    EXPECT_NE(saved.find("POINT"), std::string::npos);
}

TEST_F(NewEntities, OwnersOfR14AreWrittenWhereItsEntitiesHaveThem) {
    const auto wanted = [&](const char* entity) {
        use(DrawingText("AC1014")
                .table("BLOCK_RECORD", {"BLOCK_RECORD|5 1F|2 *MODEL_SPACE"})
                .entity(entity));
        return savedGroups(putLine())[2];
    };
    EXPECT_EQ(wanted("POINT|5 20|330 1F|100 AcDbEntity|8 0|100 AcDbPoint|10 0|20 0"), "330 1F");
    EXPECT_EQ(wanted("POINT|5 20|100 AcDbEntity|8 0|100 AcDbPoint|10 0|20 0"), "100 AcDbEntity");
    EXPECT_EQ(wanted("POINT|5 20|102 {ACAD_REACTORS|330 A|102 }|100 AcDbEntity|8 0|10 0|20 0"),
              "100 AcDbEntity");
}
