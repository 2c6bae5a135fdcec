// Drawings as databases: reading, saving, erasing, layers, the corpus.
#include <dbents.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "host/database/Drawing.h"
#include "host/database/Geometry.h"
#include "host/database/Names.h"
#include "host/database/Undo.h"
#include "tests/host/support/DrawingText.h"
#include "tests/host/support/LedgerListener.h"

using namespace host::database;
using host::test::DrawingText;
using host::test::savedBytes;

namespace {

void eraseEntity(AcDbObjectId id) {
    AcDbEntity* entity = nullptr;
    ASSERT_EQ(acdbOpenAcDbEntity(entity, id, AcDb::kForWrite), Acad::eOk);
    EXPECT_EQ(entity->erase(), Acad::eOk);
    EXPECT_EQ(entity->close(), Acad::eOk);
}

std::filesystem::path scratch(const char* name) {
    return std::filesystem::temp_directory_path() / name;
}

std::string bytesOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace

TEST(Drawing, IsReadFromAFileAndSavedToOne) {
    const auto path = scratch("orlinth-drawing-test.dxf");
    const auto target = scratch("orlinth-drawing-test-saved.dxf");
    const std::string original =
        DrawingText().entity("TEXT|5 2F|8 0|10 1|20 2|40 1|1 a|50 30").ascii();
    std::ofstream(path, std::ios::binary) << original;
    const auto database = readDrawing(path);
    EXPECT_EQ(database->originalFileName(), wideText(path));
    saveDrawing(*database, target);
    EXPECT_EQ(bytesOf(target), original);
    AcDbText* text = nullptr;
    ASSERT_EQ(acdbOpenObject(text, idFromHandle(*database, L"2F"), AcDb::kForWrite), Acad::eOk);
    EXPECT_EQ(text->setRotation(0.0), Acad::eOk);
    EXPECT_EQ(text->close(), Acad::eOk);
    saveDrawing(*database, target);
    EXPECT_EQ(bytesOf(target), savedBytes(*database));
    EXPECT_NE(bytesOf(target), original);
    saveDrawing(*database, path);
    EXPECT_EQ(bytesOf(path), bytesOf(target));
    saveDrawing(*database, path);
    EXPECT_EQ(bytesOf(path), bytesOf(target)) << "saving twice changes nothing more";
    std::filesystem::remove(path);
    std::filesystem::remove(target);
}

TEST(Drawing, ThatIsNotThereRaises) {
    EXPECT_THROW(readDrawing(scratch("orlinth-no-such.dxf")), host::dxf::ReadError);
}

TEST(Drawing, TargetThatCannotBeWrittenRaises) {
    const auto database = DrawingText().entity("LINE|5 1|8 0").database();
    EXPECT_THROW(saveDrawing(*database, scratch("orlinth-no-such-folder") / "x.dxf"),
                 host::dxf::WriteError);
}

TEST(Drawing, ErasedEntityIsTakenOutOfTheFile) {
    const DrawingText kept = DrawingText().entity("LINE|5 1|8 0").entity("LINE|5 3|8 0");
    const auto database = DrawingText()
                              .entity("LINE|5 1|8 0")
                              .entity("TEXT|5 2|8 0|10 0|20 0|1 a")
                              .entity("LINE|5 3|8 0")
                              .database();
    eraseEntity(idFromHandle(*database, L"2"));
    EXPECT_EQ(savedBytes(*database), kept.ascii());
}

TEST(Drawing, ErasedPolylineGoesWithItsVerticesAndEndMarker) {
    const DrawingText kept = DrawingText().entity("LINE|5 1|8 0").entity("LINE|5 9|8 0");
    const auto database = DrawingText()
                              .entity("LINE|5 1|8 0")
                              .entity("POLYLINE|5 2|8 0|70 0")
                              .entity("VERTEX|5 3|8 0|10 0|20 0")
                              .entity("VERTEX|5 4|8 0|10 1|20 0")
                              .entity("SEQEND|5 5|8 0")
                              .entity("LINE|5 9|8 0")
                              .database();
    eraseEntity(idFromHandle(*database, L"3"));
    eraseEntity(idFromHandle(*database, L"2"));
    EXPECT_EQ(savedBytes(*database), kept.ascii());
}

TEST(Drawing, ErasedReferenceGoesWithItsAttributes) {
    const auto database = DrawingText()
                              .entity("INSERT|5 2|8 0|66 1|2 T|10 0|20 0")
                              .entity("ATTRIB|5 3|8 0|10 0|20 0|40 1|1 a|2 A")
                              .entity("SEQEND|5 5|8 0")
                              .entity("LINE|5 9|8 0")
                              .database();
    eraseEntity(idFromHandle(*database, L"2"));
    EXPECT_EQ(savedBytes(*database), DrawingText().entity("LINE|5 9|8 0").ascii());
}

TEST(Drawing, ErasingInABinaryDrawingTakesTheRecordOutToo) {
    const auto database =
        DrawingText().entity("LINE|5 1|8 0").entity("LINE|5 2|8 0").binaryDatabase();
    eraseEntity(idFromHandle(*database, L"1"));
    EXPECT_EQ(savedBytes(*database), DrawingText().entity("LINE|5 2|8 0").binary());
}

TEST(Drawing, LayersTellWhatIsVisibleAndSelectable) {
    const auto database = DrawingText()
                              .layer("0", 0, 4)
                              .layer("frozen", 1)
                              .layer("locked", 4)
                              .layer("off", 0, -2)
                              .entity("LINE|5 1|8 0")
                              .entity("LINE|5 2|8 FROZEN")
                              .entity("LINE|5 3|8 locked")
                              .entity("LINE|5 4|8 off")
                              .entity("LINE|5 5|8 0|60 1")
                              .entity("LINE|5 6|8 unknown")
                              .database();
    const bool visible[] = {true, false, true, false, false, true};
    for (int i = 0; i < 6; ++i) {
        EXPECT_EQ(isVisible(idFromHandle(*database, std::to_wstring(i + 1))), visible[i]) << i + 1;
    }
    EXPECT_EQ(layerState(idFromHandle(*database, L"1")).color, 4);
    EXPECT_TRUE(layerState(idFromHandle(*database, L"2")).frozen);
    EXPECT_EQ(layerState(idFromHandle(*database, L"2")).name, L"FROZEN");
    EXPECT_TRUE(layerState(idFromHandle(*database, L"3")).locked);
    EXPECT_TRUE(layerState(idFromHandle(*database, L"4")).off);
    EXPECT_EQ(layerState(idFromHandle(*database, L"4")).color, 2);
    EXPECT_FALSE(layerState(AcDbObjectId()).locked);
    EXPECT_FALSE(isVisible(AcDbObjectId()));
    eraseEntity(idFromHandle(*database, L"1"));
    EXPECT_FALSE(isVisible(idFromHandle(*database, L"1")));
}

TEST(Drawing, LayerIsTheSameBeforeTheEntityIsMadeAndAfter) {
    // Groups 8 of applications, of an embedded object and of extended data are not the entity's;
    // of several that are, the last counts; without one it is on layer 0.
    const auto database = DrawingText()
                              .layer("0", 0, 3)
                              .layer("locked", 4)
                              .layer("frozen", 1)
                              .entity("LINE|5 1|102 {APP|8 frozen|102 }|8 locked")
                              .entity("LINE|5 2|8 frozen|8 locked")
                              .entity("LINE|5 3|10 1")
                              .entity("LINE|5 4|8 locked|101 Embedded Object|8 frozen")
                              .entity("LINE|5 5|8 locked|1001 APP|1003 frozen")
                              .entity("LINE|5 6|8 \\U+004Cocked")
                              .entity("LINE|5 7|8 ")
                              .database();
    const wchar_t* const names[] = {L"locked", L"locked", L"0", L"locked",
                                    L"locked", L"Locked", L""};
    LayerStates states;
    for (int i = 0; i < 7; ++i) {
        const AcDbObjectId id = idFromHandle(*database, std::to_wstring(i + 1));
        const LayerState before = layerState(id);
        AcDbEntity* entity = nullptr;
        ASSERT_EQ(acdbOpenObject(entity, id, AcDb::kForRead), Acad::eOk);
        entity->close();
        for (const LayerState& state : {before, layerState(id), states.of(id)}) {
            EXPECT_EQ(state.name, names[i]) << i + 1;
            EXPECT_EQ(state.locked, i != 2 && i != 6) << i + 1;
            EXPECT_FALSE(state.frozen) << i + 1;
        }
    }
    EXPECT_EQ(states.of(AcDbObjectId()).name, L"");
    EXPECT_EQ(states.of(idFromHandle(*database, L"3")).color, 3);
}

TEST(Drawing, LayerOfAChangedEntityIsTheNewOne) {
    const auto database =
        DrawingText().layer("0").layer("locked", 4).entity("LINE|5 1|8 0").database();
    const AcDbObjectId id = idFromHandle(*database, L"1");
    AcDbEntity* entity = nullptr;
    ASSERT_EQ(acdbOpenObject(entity, id, AcDb::kForWrite), Acad::eOk);
    ASSERT_EQ(entity->setLayer(L"locked"), Acad::eOk);
    entity->close();
    EXPECT_TRUE(layerState(id).locked);
    EXPECT_TRUE(LayerStates().of(id).locked);
}

TEST(Drawing, NamesOfObjectsAreTold) {
    const auto database = DrawingText().layer("0").entity("LINE|5 2f|8 0").database();
    const AcDbObjectId id = idFromHandle(*database, L"2F");
    EXPECT_EQ(handleText(id), L"2F");
    EXPECT_EQ(className(id), L"AcDbLine");
    EXPECT_EQ(recordName(id), L"LINE");
    EXPECT_EQ(recordOf(id), document(*database).find(0x2F));
    EXPECT_EQ(idOf(*database, *recordOf(id)), id);
    EXPECT_EQ(className(database->blockTableId()), L"AcDbBlockTable");
    EXPECT_EQ(recordName(database->blockTableId()), L"");
    EXPECT_EQ(className(AcDbObjectId()), L"");
    EXPECT_EQ(recordName(AcDbObjectId()), L"");
    EXPECT_FALSE(recordOf(AcDbObjectId()).has_value());
}

TEST(Drawing, OrderedFailuresDoNotReachTheHostsOwnQuestions) {
    const auto database =
        DrawingText().layer("0").entity("TEXT|5 2F|8 0|10 0|20 0|40 1|1 a").database();
    host::fault::arm(1, 3);
    EXPECT_FALSE(idFromHandle(*database, L"2F").isNull());
    EXPECT_TRUE(isVisible(idFromHandle(*database, L"2F")));
    EXPECT_EQ(modelSpaceIds(*database).size(), 1U);
    EXPECT_TRUE(extentsOf(idFromHandle(*database, L"2F")).has_value());
    EXPECT_FALSE(drawnChains(idFromHandle(*database, L"2F"), 0.1).empty());
    EXPECT_TRUE(pendingChanges(*database).empty());
    EXPECT_EQ(host::fault::calls(), 0U);
    EXPECT_FALSE(host::fault::fired());
}

TEST(Names, FoldingTakesTheCaseOut) {
    EXPECT_TRUE(sameName(L"ABCxyz0_-", L"abcXYZ0_-"));
    EXPECT_TRUE(sameName(L"\u00C4\u00D6\u00C5\u00DE", L"\u00E4\u00F6\u00E5\u00FE"));
    EXPECT_FALSE(sameName(L"\u00D7", L"\u00F7")) << "multiplied and divided are no letters";
    EXPECT_TRUE(sameName(L"\u0100\u0139\u0178\u017D", L"\u0101\u013A\u00FF\u017E"));
    EXPECT_TRUE(sameName(L"\u0391\u0386\u0388\u03A3", L"\u03B1\u03AC\u03AD\u03C2"));
    EXPECT_TRUE(sameName(L"\u0416\u0401", L"\u0436\u0451"));
    EXPECT_FALSE(sameName(L"a", L"ab"));
    EXPECT_FALSE(sameName(L"\u00DF", L"ss"));
    for (unsigned c = 1; c < 0x600; ++c) {
        const std::wstring one(1, static_cast<wchar_t>(c));
        EXPECT_EQ(folded(folded(one)), folded(one)) << c;
    }
}

TEST(Names, Utf8GoesBothWays) {
    const std::wstring text = L"\u00C4yr\u00E4s \u20AC \U0001F600";
    EXPECT_EQ(fromUtf8(toUtf8(text)), text);
    EXPECT_EQ(toUtf8(L"\u00C4"), "\xC3\x84");
    EXPECT_EQ(fromUtf8("a\xFFz"), L"a\uFFFDz");
    EXPECT_EQ(handleText(std::uint64_t{0}), L"");
    EXPECT_EQ(handleText(0xFFFFFFFFFFFFFFFFULL), L"FFFFFFFFFFFFFFFF");
}

namespace {

std::vector<std::filesystem::path> corpus() {
    std::vector<std::filesystem::path> drawings;
    const char* folder = std::getenv("ORLINTH_CORPUS");
    if (folder == nullptr || *folder == '\0') return drawings;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        if (entry.path().extension() == ".dxf") drawings.push_back(entry.path());
    }
    return drawings;
}

// Opens every object, looks at every entity, turns what turns, and undoes it.
void goThrough(const std::filesystem::path& path) {
    std::unique_ptr<AcDbDatabase> database;
    try {
        database = readDrawing(path);
    } catch (const host::dxf::ReadError&) {
        return;  // its own tests tell what can't be read
    }
    const std::string original(document(*database).bytes());
    beginGroup(*database, L"ALL");
    std::size_t turned = 0;
    for (host::dxf::RecordIndex record = 0; record < document(*database).size(); ++record) {
        const AcDbObjectId id = idOf(*database, record);
        AcDbObject* object = nullptr;
        const Acad::ErrorStatus status = acdbOpenObject(object, id, AcDb::kForRead);
        EXPECT_EQ(status == Acad::eOk, !id.isNull() && unreadableReason(id).empty());
        if (object == nullptr) continue;
        EXPECT_EQ(object->isA(), id.objectClass());
        static_cast<void>(object->ownerId());
        if (AcDbCurve* curve = AcDbCurve::cast(object)) {
            double end = 0.0, length = 0.0;
            if (curve->getEndParam(end) == Acad::eOk) {
                EXPECT_EQ(curve->getDistAtParam(end, length), Acad::eOk);
                EXPECT_GE(length, 0.0);
            }
        }
        if (AcDbEntity* entity = AcDbEntity::cast(object)) {
            AcDbExtents box;
            entity->getGeomExtents(box);
            static_cast<void>(drawnChains(id, 1.0));
        }
        if (object->upgradeOpen() == Acad::eOk) {
            if (AcDbText* text = AcDbText::cast(object)) {
                turned += text->setRotation(text->rotation() + 1.0) == Acad::eOk ? 1 : 0;
            }
            if (AcDbBlockReference* reference = AcDbBlockReference::cast(object)) {
                turned += reference->setRotation(reference->rotation() - 1.0) == Acad::eOk ? 1 : 0;
            }
        }
        EXPECT_EQ(object->close(), Acad::eOk);
    }
    endGroup(*database);
    EXPECT_EQ(pendingChanges(*database).size(), turned);
    const auto saved = host::dxf::Document::fromBytes(savedBytes(*database), "saved.dxf");
    EXPECT_EQ(saved->size(), document(*database).size());
    EXPECT_EQ(undo(*database), turned > 0);
    EXPECT_EQ(savedBytes(*database), original);
}

}  // namespace

// Without a folder of drawings only the project's own examples are gone through.
TEST(Corpus, EveryObjectOpensTurnsAndTurnsBack) {
    std::vector<std::filesystem::path> drawings = corpus();
    const std::filesystem::path own = std::filesystem::path(ORLINTH_TEST_DATA) / "../../examples";
    for (const auto& entry : std::filesystem::directory_iterator(own)) {
        if (entry.path().extension() == ".dxf") drawings.push_back(entry.path());
    }
    EXPECT_FALSE(drawings.empty());
    for (const auto& path : drawings) {
        SCOPED_TRACE(path.u8string());
        goThrough(path);
    }
}
