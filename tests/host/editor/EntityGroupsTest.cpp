// The groups that filters ask for, of entities that commands have drawn or changed.
#include <dbents.h>
#include <dbsymtb.h>
#include <gtest/gtest.h>

#include "host/database/Drawing.h"
#include "host/editor/EntityGroups.h"
#include "tests/host/support/DrawingText.h"
#include "tests/host/support/LedgerListener.h"

using namespace host;
using editor::EntityGroups;
using editor::GroupValue;

namespace {

template <class T>
T only(const std::vector<GroupValue>& values) {
    EXPECT_EQ(values.size(), 1U);
    return values.size() == 1 ? std::get<T>(values.front()) : T();
}

class EntityGroupsOf : public testing::Test {
  protected:
    AcDbObjectId draw(AcDbEntity* entity) {
        AcDbBlockTable* blocks = nullptr;
        EXPECT_EQ(database->getSymbolTable(blocks, AcDb::kForRead), Acad::eOk);
        AcDbBlockTableRecord* space = nullptr;
        EXPECT_EQ(blocks->getAt(ACDB_MODEL_SPACE, space, AcDb::kForWrite), Acad::eOk);
        blocks->close();
        AcDbObjectId id;
        EXPECT_EQ(space->appendAcDbEntity(id, entity), Acad::eOk);
        space->close();
        entity->close();
        return id;
    }

    std::unique_ptr<AcDbDatabase> database =
        test::DrawingText()
            .layer("0")
            .layer("roads")
            .entity("LINE|5 10|8 roads|10 1.0|20 2.0|11 3|21 4")
            .database();
};

}  // namespace

TEST_F(EntityGroupsOf, ANewEntityAreThoseThatItsRecordWillHave) {
    auto* text = new AcDbText({1, 2, 3}, L"tie", AcDbObjectId::kNull, 2.5, 1.5);
    text->setColorIndex(4);
    const EntityGroups groups(draw(text));
    EXPECT_EQ(only<std::wstring>(groups.values(0)), L"TEXT");
    EXPECT_EQ(only<std::wstring>(groups.values(8)), L"0");
    EXPECT_EQ(only<std::wstring>(groups.values(1)), L"tie");
    EXPECT_EQ(only<long long>(groups.values(62)), 4);
    EXPECT_EQ(only<double>(groups.values(40)), 2.5);
    EXPECT_EQ(only<double>(groups.values(50)), 1.5);
    EXPECT_TRUE(only<AcGePoint3d>(groups.values(10)).isEqualTo({1, 2, 3}));
    EXPECT_EQ(only<std::wstring>(groups.values(6)), L"BYLAYER");
}

TEST_F(EntityGroupsOf, AChangedEntityAreThoseOfTheDrawingWithTheChanges) {
    const AcDbObjectId id = database::idFromHandle(*database, L"10");
    AcDbLine* line = nullptr;
    ASSERT_EQ(acdbOpenObject(line, id, AcDb::kForWrite), Acad::eOk);
    EXPECT_EQ(line->setLayer(database->layerZero()), Acad::eOk);
    EXPECT_EQ(line->setEndPoint({3, 7, 0}), Acad::eOk);
    line->close();
    const EntityGroups groups(id);
    EXPECT_EQ(only<std::wstring>(groups.values(0)), L"LINE");
    EXPECT_EQ(only<std::wstring>(groups.values(8)), L"0");
    EXPECT_TRUE(only<AcGePoint3d>(groups.values(10)).isEqualTo({1, 2, 0}));
    EXPECT_TRUE(only<AcGePoint3d>(groups.values(11)).isEqualTo({3, 7, 0}));
}
