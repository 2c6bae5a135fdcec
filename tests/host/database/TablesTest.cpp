// Symbol tables, blocks, and how records hang together.
#include <acutmem.h>
#include <dbapserv.h>
#include <dbents.h>
#include <dbsymtb.h>
#include <gtest/gtest.h>

#include "host/database/Drawing.h"
#include "host/database/Fault.h"
#include "host/database/Ledger.h"
#include "tests/host/support/DrawingText.h"
#include "tests/host/support/LedgerListener.h"

using namespace host::database;
using host::test::DrawingText;

namespace {

// The names of a table's records in the order of its iterator.
template <class T>
std::vector<std::wstring> namesOf(AcDbDatabase& database) {
    std::vector<std::wstring> names;
    T* table = nullptr;
    EXPECT_EQ(database.getSymbolTable(table, AcDb::kForRead), Acad::eOk);
    AcDbSymbolTableIterator* iterator = nullptr;
    EXPECT_EQ(table->newIterator(iterator), Acad::eOk);
    for (; !iterator->done(); iterator->step()) {
        AcDbSymbolTableRecord* record = nullptr;
        EXPECT_EQ(iterator->getRecord(record), Acad::eOk);
        ACHAR* name = nullptr;
        EXPECT_EQ(record->getName(name), Acad::eOk);
        names.emplace_back(name);
        acutDelString(name);
        EXPECT_EQ(record->close(), Acad::eOk);
    }
    delete iterator;
    EXPECT_EQ(table->close(), Acad::eOk);
    return names;
}

AcDbObjectId layerNamed(AcDbDatabase& database, const wchar_t* name) {
    AcDbLayerTable* table = nullptr;
    EXPECT_EQ(database.getSymbolTable(table, AcDb::kForRead), Acad::eOk);
    AcDbObjectId id;
    table->getAt(name, id);
    table->close();
    return id;
}

AcDbObjectId blockNamed(AcDbDatabase& database, const wchar_t* name) {
    AcDbBlockTable* table = nullptr;
    EXPECT_EQ(database.getSymbolTable(table, AcDb::kForRead), Acad::eOk);
    AcDbObjectId id;
    table->getAt(name, id);
    table->close();
    return id;
}

// The classes of a block's entities.
std::vector<std::wstring> contentsOf(AcDbObjectId block) {
    std::vector<std::wstring> classes;
    AcDbBlockTableRecord* record = nullptr;
    EXPECT_EQ(acdbOpenObject(record, block), Acad::eOk);
    AcDbBlockTableRecordIterator* iterator = nullptr;
    EXPECT_EQ(record->newIterator(iterator, true, true), Acad::eOk);
    for (; !iterator->done(); iterator->step()) {
        AcDbEntity* entity = nullptr;
        EXPECT_EQ(iterator->getEntity(entity, AcDb::kForRead, false), Acad::eOk);
        classes.emplace_back(entity->isA()->name());
        EXPECT_EQ(entity->blockId(), block);
        EXPECT_EQ(entity->ownerId(), block);
        EXPECT_EQ(entity->close(), Acad::eOk);
    }
    delete iterator;
    EXPECT_EQ(record->close(), Acad::eOk);
    return classes;
}

}  // namespace

TEST(LayerTable, RecordsComeInTheDrawingsOrder) {
    const auto database =
        DrawingText().layer("roads").layer("0").layer("T\\U+00C4htorni").database();
    EXPECT_EQ(namesOf<AcDbLayerTable>(*database),
              (std::vector<std::wstring>{L"roads", L"0", L"T\u00C4htorni"}));
}

TEST(LayerTable, NamesAreFoundIgnoringCase) {
    const auto database = DrawingText().layer("Roads").layer("T\\U+00C4htorni").database();
    AcDbLayerTable* table = nullptr;
    ASSERT_EQ(database->getSymbolTable(table, AcDb::kForRead), Acad::eOk);
    AcDbObjectId id;
    EXPECT_EQ(table->getAt(L"rOADS", id), Acad::eOk);
    EXPECT_TRUE(table->has(id));
    EXPECT_EQ(table->getAt(L"t\u00E4hTORNI", id), Acad::eOk);
    EXPECT_TRUE(table->has(L"ROADS"));
    EXPECT_FALSE(table->has(L"rivers"));
    EXPECT_FALSE(table->has(AcDbObjectId()));
    EXPECT_FALSE(table->has(database->blockTableId()));
    AcDbObjectId untouched = id;
    EXPECT_EQ(table->getAt(L"rivers", untouched), Acad::eKeyNotFound);
    EXPECT_EQ(static_cast<int>(Acad::eKeyNotFound), 22);
    EXPECT_EQ(untouched, id);
    EXPECT_EQ(table->getAt(nullptr, untouched), Acad::eInvalidInput);
    AcDbLayerTableRecord* record = nullptr;
    EXPECT_EQ(table->getAt(L"ROADS", record, AcDb::kForRead), Acad::eOk);
    const ACHAR* name = nullptr;
    EXPECT_EQ(record->getName(name), Acad::eOk);
    EXPECT_STREQ(name, L"Roads");
    EXPECT_EQ(record->ownerId(), database->layerTableId());
    EXPECT_EQ(record->close(), Acad::eOk);
    EXPECT_EQ(record->getName(name), Acad::eNotOpenForRead);
    EXPECT_EQ(name, nullptr);
    EXPECT_EQ(table->getAt(L"rivers", record, AcDb::kForRead), Acad::eKeyNotFound);
    EXPECT_EQ(record, nullptr);
    EXPECT_EQ(table->close(), Acad::eOk);
    EXPECT_EQ(table->getAt(L"roads", id), Acad::eNotOpenForRead);
}

TEST(LayerTable, FlagsAndColourTellHowALayerStands) {
    const auto database = DrawingText()
                              .layer("plain", 0, 3)
                              .layer("frozen", 1)
                              .layer("locked", 4)
                              .layer("off", 0, -5)
                              .layer("all", 1 | 4 | 16, -1)
                              .database();
    const struct {
        const wchar_t* name;
        bool frozen, locked, off, dependent;
        int color;
    } rows[] = {{L"plain", false, false, false, false, 3},
                {L"frozen", true, false, false, false, 7},
                {L"locked", false, true, false, false, 7},
                {L"off", false, false, true, false, 5},
                {L"all", true, true, true, true, 1}};
    for (const auto& row : rows) {
        AcDbLayerTableRecord* layer = nullptr;
        ASSERT_EQ(acdbOpenObject(layer, layerNamed(*database, row.name)), Acad::eOk);
        EXPECT_EQ(layer->isFrozen(), row.frozen) << row.name;
        EXPECT_EQ(layer->isLocked(), row.locked) << row.name;
        EXPECT_EQ(layer->isOff(), row.off) << row.name;
        EXPECT_EQ(layer->isDependent(), row.dependent) << row.name;
        EXPECT_EQ(layer->colorIndex(), row.color) << row.name;
        EXPECT_TRUE(layer->isPlottable());
        EXPECT_FALSE(layer->linetypeObjectId().isNull());
        EXPECT_EQ(layer->close(), Acad::eOk);
    }
}

TEST(LayerTable, LayersThatOnlyEntitiesNameAreThereToo) {
    const auto database = DrawingText("")
                              .entity("LINE|5 1|8 roads")
                              .entity("LINE|5 2|8 ROADS")
                              .entity("LINE|5 3|8 0")
                              .entity("LINE|5 4|8 rivers")
                              .database();
    EXPECT_EQ(namesOf<AcDbLayerTable>(*database),
              (std::vector<std::wstring>{L"0", L"roads", L"rivers"}));
    AcDbEntity* line = nullptr;
    ASSERT_EQ(acdbOpenAcDbEntity(line, idFromHandle(*database, L"2"), AcDb::kForWrite), Acad::eOk);
    EXPECT_EQ(line->layerId(), layerNamed(*database, L"roads"));
    EXPECT_FALSE(line->layerId().isNull());
    EXPECT_EQ(line->close(), Acad::eOk);
    EXPECT_TRUE(pendingChanges(*database).empty());
}

TEST(Tables, EmptyDrawingHasWhatEveryDrawingHas) {
    AcDbDatabase database;
    EXPECT_EQ(namesOf<AcDbLayerTable>(database), (std::vector<std::wstring>{L"0"}));
    EXPECT_EQ(namesOf<AcDbLinetypeTable>(database), (std::vector<std::wstring>{L"CONTINUOUS"}));
    EXPECT_EQ(namesOf<AcDbTextStyleTable>(database), (std::vector<std::wstring>{L"STANDARD"}));
    EXPECT_EQ(namesOf<AcDbBlockTable>(database),
              (std::vector<std::wstring>{L"*Model_Space", L"*Paper_Space"}));
    EXPECT_TRUE(modelSpaceIds(database).empty());
    EXPECT_EQ(database.clayer(), database.layerZero());
    EXPECT_STREQ(database.originalFileName(), L"");
}

TEST(Tables, IdsAreThoseOfTheOpenedTables) {
    const auto database = DrawingText().layer("0").database();
    AcDbObject* table = nullptr;
    for (const AcDbObjectId id : {database->blockTableId(), database->layerTableId(),
                                  database->linetypeTableId(), database->textStyleTableId()}) {
        ASSERT_EQ(acdbOpenObject(table, id), Acad::eOk);
        EXPECT_TRUE(table->isKindOf(AcDbSymbolTable::desc()));
        EXPECT_EQ(table->objectId(), id);
        EXPECT_EQ(table->close(), Acad::eOk);
    }
}

TEST(Tables, OpenForWriteTheyRefuseASecondReader) {
    AcDbDatabase database;
    AcDbLayerTable* table = nullptr;
    ASSERT_EQ(database.getSymbolTable(table, AcDb::kForWrite), Acad::eOk);
    AcDbLayerTable* second = nullptr;
    EXPECT_EQ(database.getSymbolTable(second, AcDb::kForRead), Acad::eWasOpenForWrite);
    EXPECT_EQ(second, nullptr);
    EXPECT_EQ(table->close(), Acad::eOk);
}

TEST(Tables, LinetypesAndStylesAreRead) {
    const auto database =
        DrawingText()
            .table("LTYPE", {"LTYPE|2 DASHED|70 0|3 __ __|72 65|73 2|40 0.75|49 0.5|49 -0.25"})
            .table("STYLE", {"STYLE|2 ROMANS|70 0|40 2.5|41 0.8|50 15|3 romans.shx|4 "})
            .database();
    EXPECT_EQ(namesOf<AcDbLinetypeTable>(*database),
              (std::vector<std::wstring>{L"CONTINUOUS", L"DASHED"}));
    AcDbLinetypeTable* lines = nullptr;
    ASSERT_EQ(database->getSymbolTable(lines, AcDb::kForRead), Acad::eOk);
    AcDbLinetypeTableRecord* dashed = nullptr;
    ASSERT_EQ(lines->getAt(L"dashed", dashed, AcDb::kForRead), Acad::eOk);
    ACHAR* text = nullptr;
    EXPECT_EQ(dashed->comments(text), Acad::eOk);
    EXPECT_STREQ(text, L"__ __");
    acutDelString(text);
    EXPECT_EQ(dashed->patternLength(), 0.75);
    EXPECT_EQ(dashed->numDashes(), 2);
    EXPECT_EQ(dashed->close(), Acad::eOk);
    EXPECT_EQ(lines->close(), Acad::eOk);
    AcDbTextStyleTable* styles = nullptr;
    ASSERT_EQ(database->getSymbolTable(styles, AcDb::kForRead), Acad::eOk);
    AcDbTextStyleTableRecord* style = nullptr;
    ASSERT_EQ(styles->getAt(L"romans", style, AcDb::kForRead), Acad::eOk);
    EXPECT_EQ(style->textSize(), 2.5);
    EXPECT_EQ(style->xScale(), 0.8);
    EXPECT_NEAR(style->obliquingAngle(), 0.2617993877991494, 1e-15);
    EXPECT_EQ(style->fileName(text), Acad::eOk);
    EXPECT_STREQ(text, L"romans.shx");
    acutDelString(text);
    EXPECT_EQ(style->close(), Acad::eOk);
    EXPECT_EQ(style->fileName(text), Acad::eNotOpenForRead);
    EXPECT_EQ(styles->close(), Acad::eOk);
}

TEST(Tables, IteratorGoesBothWaysSeeksAndEnds) {
    const auto database = DrawingText().layer("0").layer("a").layer("b").database();
    AcDbLayerTable* table = nullptr;
    ASSERT_EQ(database->getSymbolTable(table, AcDb::kForRead), Acad::eOk);
    AcDbSymbolTableIterator* iterator = nullptr;
    ASSERT_EQ(table->newIterator(iterator, false), Acad::eOk);
    EXPECT_EQ(Ledger::instance().count("iterator"), 1U);
    AcDbObjectId id;
    EXPECT_EQ(iterator->getRecordId(id), Acad::eOk);
    EXPECT_EQ(id, layerNamed(*database, L"b"));
    iterator->step(false);
    EXPECT_EQ(iterator->getRecordId(id), Acad::eOk);
    EXPECT_EQ(id, layerNamed(*database, L"a"));
    EXPECT_EQ(iterator->seek(layerNamed(*database, L"b")), Acad::eOk);
    EXPECT_EQ(iterator->seek(database->blockTableId()), Acad::eRecordNotInTable);
    EXPECT_EQ(iterator->getRecordId(id), Acad::eOk);
    EXPECT_EQ(id, layerNamed(*database, L"b"));
    iterator->step();
    EXPECT_TRUE(iterator->done());
    EXPECT_EQ(iterator->getRecordId(id), Acad::eIteratorDone);
    AcDbSymbolTableRecord* record = nullptr;
    EXPECT_EQ(iterator->getRecord(record), Acad::eIteratorDone);
    EXPECT_EQ(record, nullptr);
    iterator->step(false);
    EXPECT_TRUE(iterator->done());
    delete iterator;
    EXPECT_EQ(table->close(), Acad::eOk);
    EXPECT_EQ(table->newIterator(iterator), Acad::eNotOpenForRead);
    EXPECT_EQ(iterator, nullptr);
}

TEST(Blocks, R12BlocksAreTheirOwnRecords) {
    const auto database = DrawingText("AC1009")
                              .block("$MODEL_SPACE", {})
                              .block("$PAPER_SPACE", {})
                              .block("TREE", {"CIRCLE|8 0|10 0|20 0|40 1", "POINT|8 0|10 0|20 0"},
                                     "70 64|10 1|20 2|30 3")
                              .entity("INSERT|5 2F|8 0|2 tree|10 0|20 0")
                              .database();
    EXPECT_EQ(namesOf<AcDbBlockTable>(*database),
              (std::vector<std::wstring>{L"*Model_Space", L"*Paper_Space", L"TREE"}));
    const AcDbObjectId tree = blockNamed(*database, L"Tree");
    EXPECT_EQ(contentsOf(tree), (std::vector<std::wstring>{L"AcDbCircle", L"AcDbPoint"}));
    EXPECT_EQ(contentsOf(blockNamed(*database, L"*MODEL_SPACE")),
              (std::vector<std::wstring>{L"AcDbBlockReference"}));
    AcDbBlockTableRecord* record = nullptr;
    ASSERT_EQ(acdbOpenObject(record, tree), Acad::eOk);
    EXPECT_EQ(record->origin(), AcGePoint3d(1, 2, 3));
    EXPECT_FALSE(record->isFromExternalReference());
    EXPECT_FALSE(record->isLayout());
    EXPECT_FALSE(record->hasAttributeDefinitions());
    EXPECT_EQ(record->ownerId(), database->blockTableId());
    EXPECT_EQ(record->close(), Acad::eOk);
    AcDbBlockReference* reference = nullptr;
    ASSERT_EQ(acdbOpenObject(reference, idFromHandle(*database, L"2F")), Acad::eOk);
    EXPECT_EQ(reference->blockTableRecord(), tree);
    EXPECT_EQ(reference->close(), Acad::eOk);
}

TEST(Blocks, BlockRecordsGiveTheIdsWhereThereAreAny) {
    const auto database =
        DrawingText()
            .table("BLOCK_RECORD", {"BLOCK_RECORD|5 1F|2 *MODEL_SPACE",
                                    "BLOCK_RECORD|5 1B|2 *Paper_Space", "BLOCK_RECORD|5 40|2 Tree"})
            .block("*Model_Space", {})
            .block("*Paper_Space", {})
            .block("TREE", {"CIRCLE|5 41|8 0|10 0|20 0|40 1", "ATTDEF|5 42|8 0|10 0|20 0|40 1|2 N"},
                   "70 2|10 5|20 6")
            .entity("LINE|5 50|8 0")
            .entity("LINE|5 51|67 1|8 0")
            .database();
    EXPECT_EQ(blockNamed(*database, L"tree"), idFromHandle(*database, L"40"));
    EXPECT_EQ(contentsOf(idFromHandle(*database, L"40")),
              (std::vector<std::wstring>{L"AcDbCircle", L"AcDbAttributeDefinition"}));
    EXPECT_EQ(contentsOf(idFromHandle(*database, L"1F")), (std::vector<std::wstring>{L"AcDbLine"}));
    EXPECT_EQ(contentsOf(idFromHandle(*database, L"1B")), (std::vector<std::wstring>{L"AcDbLine"}));
    EXPECT_EQ(modelSpaceIds(*database),
              (std::vector<AcDbObjectId>{idFromHandle(*database, L"50")}));
    AcDbBlockTableRecord* record = nullptr;
    ASSERT_EQ(acdbOpenObject(record, idFromHandle(*database, L"40")), Acad::eOk);
    EXPECT_EQ(record->origin(), AcGePoint3d(5, 6, 0));
    EXPECT_TRUE(record->hasAttributeDefinitions());
    const ACHAR* name = nullptr;
    EXPECT_EQ(record->getName(name), Acad::eOk);
    EXPECT_STREQ(name, L"Tree");
    EXPECT_EQ(record->close(), Acad::eOk);
    ASSERT_EQ(acdbOpenObject(record, idFromHandle(*database, L"1F")), Acad::eOk);
    EXPECT_TRUE(record->isLayout());
    EXPECT_EQ(record->close(), Acad::eOk);
}

TEST(Blocks, OnlyTheFlagsSayExternalReference) {
    const auto database = DrawingText()
                              .block("plain", {}, "70 0|10 0|20 0|1 C:\\old\\plain.dwg")
                              .block("attached", {}, "70 4|10 0|20 0|1 site.dwg")
                              .block("overlaid", {}, "70 12|10 0|20 0|1 site2.dwg")
                              .block("*U1", {}, "70 1|10 0|20 0")
                              .database();
    const struct {
        const wchar_t* name;
        bool external, overlay, anonymous;
        const wchar_t* path;
    } rows[] = {{L"plain", false, false, false, L"C:\\old\\plain.dwg"},
                {L"attached", true, false, false, L"site.dwg"},
                {L"overlaid", true, true, false, L"site2.dwg"},
                {L"*U1", false, false, true, L""}};
    for (const auto& row : rows) {
        AcDbBlockTableRecord* record = nullptr;
        ASSERT_EQ(acdbOpenObject(record, blockNamed(*database, row.name)), Acad::eOk);
        EXPECT_EQ(record->isFromExternalReference(), row.external) << row.name;
        EXPECT_EQ(record->isFromOverlayReference(), row.overlay) << row.name;
        EXPECT_EQ(record->isAnonymous(), row.anonymous) << row.name;
        ACHAR* path = nullptr;
        EXPECT_EQ(record->pathName(path), Acad::eOk);
        EXPECT_STREQ(path, row.path);
        acutDelString(path);
        EXPECT_EQ(record->close(), Acad::eOk);
    }
}

TEST(Blocks, SubEntitiesAreNotTheBlocksOwnEntities) {
    const auto database = DrawingText()
                              .entity("INSERT|5 1|8 0|66 1|2 T|10 0|20 0")
                              .entity("ATTRIB|5 2|8 0|10 0|20 0|40 1|1 a|2 A")
                              .entity("ATTRIB|5 3|8 0|10 0|20 0|40 1|1 b|2 B")
                              .entity("SEQEND|5 4|8 0")
                              .entity("LINE|5 5|8 0")
                              .database();
    EXPECT_EQ(modelSpaceIds(*database).size(), 2U);
    AcDbBlockReference* reference = nullptr;
    ASSERT_EQ(acdbOpenObject(reference, idFromHandle(*database, L"1")), Acad::eOk);
    AcDbObjectIterator* iterator = reference->attributeIterator();
    std::vector<AcDbObjectId> ids;
    for (; !iterator->done(); iterator->step()) ids.push_back(iterator->objectId());
    delete iterator;
    EXPECT_EQ(ids, (std::vector<AcDbObjectId>{idFromHandle(*database, L"2"),
                                              idFromHandle(*database, L"3")}));
    EXPECT_EQ(reference->close(), Acad::eOk);
    AcDbEntity* attribute = nullptr;
    ASSERT_EQ(acdbOpenAcDbEntity(attribute, ids[1], AcDb::kForRead), Acad::eOk);
    EXPECT_EQ(attribute->ownerId(), idFromHandle(*database, L"1"));
    EXPECT_EQ(attribute->blockId(), blockNamed(*database, L"*Model_Space"));
    EXPECT_EQ(attribute->close(), Acad::eOk);
}

TEST(Blocks, AnnouncedAttributesThatAreMissingAreNone) {
    const auto database =
        DrawingText().entity("INSERT|5 1|8 0|66 1|2 T|10 0|20 0").entity("LINE|5 5|8 0").database();
    EXPECT_EQ(modelSpaceIds(*database).size(), 2U);
    AcDbBlockReference* reference = nullptr;
    ASSERT_EQ(acdbOpenObject(reference, idFromHandle(*database, L"1")), Acad::eOk);
    AcDbObjectIterator* iterator = reference->attributeIterator();
    EXPECT_TRUE(iterator->done());
    delete iterator;
    EXPECT_EQ(reference->close(), Acad::eOk);
}

TEST(Blocks, IteratorTellsErasedAndUnreadableEntities) {
    const auto database = DrawingText()
                              .entity("LINE|5 1|8 0|10 0|20 0|11 1|21 1")
                              .entity("LINE|5 2|8 0|10 NaN|20 0|11 1|21 1")
                              .entity("LINE|5 3|8 0|10 0|20 0|11 1|21 1")
                              .database();
    AcDbEntity* line = nullptr;
    ASSERT_EQ(acdbOpenAcDbEntity(line, idFromHandle(*database, L"1"), AcDb::kForWrite), Acad::eOk);
    EXPECT_EQ(line->erase(), Acad::eOk);
    EXPECT_EQ(line->close(), Acad::eOk);
    AcDbBlockTableRecord* space = nullptr;
    ASSERT_EQ(acdbOpenObject(space, blockNamed(*database, L"*Model_Space")), Acad::eOk);
    AcDbBlockTableRecordIterator* iterator = nullptr;
    ASSERT_EQ(space->newIterator(iterator, true, false), Acad::eOk);
    const Acad::ErrorStatus expected[] = {Acad::eWasErased, Acad::eInvalidInput, Acad::eOk};
    for (const Acad::ErrorStatus status : expected) {
        ASSERT_FALSE(iterator->done());
        EXPECT_EQ(iterator->getEntity(line, AcDb::kForRead, false), status);
        EXPECT_EQ(line != nullptr, status == Acad::eOk);
        if (line != nullptr) line->close();
        iterator->step(true, false);
    }
    EXPECT_TRUE(iterator->done());
    EXPECT_EQ(iterator->getEntity(line), Acad::eIteratorDone);
    iterator->start(true, true);
    AcDbObjectId id;
    EXPECT_EQ(iterator->getEntityId(id), Acad::eOk);
    EXPECT_EQ(id, idFromHandle(*database, L"2"));
    iterator->start(false);
    EXPECT_EQ(iterator->getEntityId(id), Acad::eOk);
    EXPECT_EQ(id, idFromHandle(*database, L"3"));
    EXPECT_EQ(iterator->seek(idFromHandle(*database, L"2")), Acad::eOk);
    iterator->step(false, true);
    EXPECT_TRUE(iterator->done()) << "before it only an erased one stands";
    EXPECT_EQ(iterator->getEntityId(id), Acad::eIteratorDone);
    EXPECT_EQ(iterator->seek(database->blockTableId()), Acad::eKeyNotFound);
    EXPECT_EQ(iterator->seek(AcDbObjectId()), Acad::eKeyNotFound);
    delete iterator;
    EXPECT_EQ(space->close(), Acad::eOk);
    EXPECT_EQ(space->newIterator(iterator), Acad::eNotOpenForRead);
    EXPECT_EQ(iterator, nullptr);
}

TEST(Database, HandlesAreFound) {
    const auto database = DrawingText().entity("LINE|5 2F|8 0").database();
    AcDbObjectId id;
    EXPECT_EQ(database->getAcDbObjectId(id, false, AcDbHandle(L"2F")), Acad::eOk);
    EXPECT_EQ(id, idFromHandle(*database, L"2f"));
    EXPECT_EQ(database->getAcDbObjectId(id, false, AcDbHandle()), Acad::eNullHandle);
    EXPECT_EQ(database->getAcDbObjectId(id, false, AcDbHandle(L"30")), Acad::eUnknownHandle);
    EXPECT_EQ(id, idFromHandle(*database, L"2F"));
    EXPECT_TRUE(idFromHandle(*database, L"30").isNull());
    EXPECT_TRUE(idFromHandle(*database, L"").isNull());
    EXPECT_TRUE(idFromHandle(*database, L"XYZ").isNull());
}

TEST(Database, CurrentLayerIsTheDrawings) {
    const auto database =
        DrawingText().variable("$CLAYER|8 ROADS").layer("0").layer("roads").database();
    EXPECT_EQ(database->clayer(), layerNamed(*database, L"roads"));
    const auto lost = DrawingText().variable("$CLAYER|8 nowhere").layer("0").database();
    EXPECT_EQ(lost->clayer(), lost->layerZero());
}

TEST(Database, WorkingOneIsForgottenWhenItGoes) {
    AcDbHostApplicationServices* services = acdbHostApplicationServices();
    EXPECT_EQ(services->workingDatabase(), nullptr);
    {
        AcDbDatabase database;
        services->setWorkingDatabase(&database);
        EXPECT_EQ(services->workingDatabase(), &database);
        const AcDbDatabase other;
    }
    EXPECT_EQ(services->workingDatabase(), nullptr);
}

TEST(Database, ObjectsOfTheObjectSectionHaveOwners) {
    const auto database = DrawingText()
                              .object("DICTIONARY|5 C")
                              .object("XRECORD|5 D|330 C")
                              .object("MYTHING|5 E|330 FF")
                              .database();
    AcDbObject* object = nullptr;
    ASSERT_EQ(acdbOpenObject(object, idFromHandle(*database, L"D")), Acad::eOk);
    EXPECT_EQ(object->ownerId(), idFromHandle(*database, L"C"));
    EXPECT_EQ(object->close(), Acad::eOk);
    ASSERT_EQ(acdbOpenObject(object, idFromHandle(*database, L"E")), Acad::eOk);
    EXPECT_TRUE(object->ownerId().isNull());
    EXPECT_STREQ(object->isA()->name(), L"AcDbProxyObject");
    EXPECT_EQ(object->close(), Acad::eOk);
}
