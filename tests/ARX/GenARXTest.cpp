// Layers, entities and texts made in the drawing, and the height of the view.
#include <dbents.h>
#include <dbmline.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "ARX/GenARX.h"
#include "tam/TamExceptions.h"
#include "tests/GeomEnts/DrawnEntities.h"

namespace TamLib {
namespace {

using host::editor::Scripted;

// --- ARXAddLayer.

std::wstring NameOfNewLayer(const std::wstring& name) {
    const TestDrawing drawing{};
    EXPECT_TRUE(ARXAddLayer(name.c_str()));
    const std::vector<std::wstring> layers = Layers(drawing.Database());
    EXPECT_EQ(3u, layers.size());
    return layers.back();
}

TEST(AddLayer, MakesALayerWithAContinuousLinetype) {
    const TestDrawing drawing{};
    EXPECT_TRUE(ARXAddLayer(L"new"));
    AcDbLayerTable* table = nullptr;
    ASSERT_EQ(Acad::eOk, drawing.Database().getSymbolTable(table, AcDb::kForRead));
    AcDbLayerTableRecord* layer = nullptr;
    ASSERT_EQ(Acad::eOk, table->getAt(L"new", layer, AcDb::kForRead));
    table->close();
    const AcDbObjectId linetype = layer->linetypeObjectId();
    EXPECT_EQ(7, layer->colorIndex());
    EXPECT_FALSE(layer->isOff() || layer->isFrozen() || layer->isLocked());
    layer->close();
    const ReadAs<AcDbLinetypeTableRecord> record(linetype);
    const ACHAR* name = nullptr;
    ASSERT_EQ(Acad::eOk, record->getName(name));
    EXPECT_EQ(std::wstring(L"CONTINUOUS"), name);
}

TEST(AddLayer, IsFalseForALayerThatExistsIntended) {
    const TestDrawing drawing{};
    EXPECT_FALSE(ARXAddLayer(L"0"));
    EXPECT_FALSE(ARXAddLayer(L"locked"));  // names ignore case
    EXPECT_TRUE(ARXAddLayer(L"new"));
    EXPECT_FALSE(ARXAddLayer(L"NEW"));
    EXPECT_EQ((std::vector<std::wstring>{L"0", L"LOCKED", L"new"}), Layers(drawing.Database()));
}

TEST(AddLayer, CodesOfALetterAndFiveDigitsGetACapital) {
    EXPECT_EQ(L"A12345", NameOfNewLayer(L"a12345"));
    EXPECT_EQ(L"A123456", NameOfNewLayer(L"a123456"));
    EXPECT_EQ(L"A12345x", NameOfNewLayer(L"a12345x"));  // whatever follows
    EXPECT_EQ(L"\u00C412345", NameOfNewLayer(L"\u00E412345"));
    EXPECT_EQ(L"B12345", NameOfNewLayer(L"B12345"));
}

TEST(AddLayer, OtherNamesStayAsTheyAre) {
    for (const wchar_t* const name :
         {L"ab1234", L"a1234", L"a1234b", L"ab12345", L"a", L"112345", L"a 12345", L"_12345"})
        EXPECT_EQ(name, NameOfNewLayer(name));
}

TEST(AddLayer, IsFalseWhereThereIsNoDatabaseNoNameOrABadOne) {
    EXPECT_FALSE(ARXAddLayer(L"new"));
    const TestDrawing drawing{};
    EXPECT_FALSE(ARXAddLayer(nullptr));
    EXPECT_FALSE(ARXAddLayer(L""));
    EXPECT_FALSE(ARXAddLayer(L"a|b"));
    EXPECT_FALSE(ARXAddLayer(std::wstring(600, L'x').c_str()));  // 511 are too many for the host
    EXPECT_EQ(2u, Layers(drawing.Database()).size());
}

TEST(AddLayer, GoesIntoTheDatabaseGiven) {
    const TestDrawing drawing{};
    AcDbDatabase other;
    EXPECT_TRUE(ARXAddLayer(L"new", &other));
    EXPECT_EQ(2u, Layers(drawing.Database()).size());
    EXPECT_EQ((std::vector<std::wstring>{L"0", L"new"}), Layers(other));
}

TEST(AddLayer, TakesTheLinetypeOfItsOwnDatabase) {
    AcDbDatabase other;  // and no working one
    host::fault::disarm();
    EXPECT_TRUE(ARXAddLayer(L"new", &other));
    const std::vector<std::string> calls = host::fault::names();
    EXPECT_EQ(1,
              std::count(calls.begin(), calls.end(), "AcDbLayerTableRecord::setLinetypeObjectId"));
}

TEST(AddLayer, IsFalseWhileTheTableIsInUse) {
    const TestDrawing drawing{};
    AcDbLayerTable* table = nullptr;
    ASSERT_EQ(Acad::eOk, drawing.Database().getSymbolTable(table, AcDb::kForRead));
    EXPECT_FALSE(ARXAddLayer(L"new"));
    table->close();
    EXPECT_TRUE(ARXAddLayer(L"new"));
}

TEST(AddLayer, EachCallFailingMakesOneOrNoneAndLeavesNothingOpen) {
    std::vector<std::string> deadly;
    for (std::size_t n = 1;; ++n) {
        const TestDrawing drawing{};
        host::fault::arm(n, Acad::eOutOfMemory);
        bool made = false;
        bool raised = false;
        try {
            made = ARXAddLayer(L"new");
        } catch (const TamExpAcad& exception) {
            raised = true;
            EXPECT_STREQ(L"Allocation of layerTableRecord failed", exception.message);
            EXPECT_EQ(797, exception.line);
            EXPECT_STREQ(L"ARX/GenARX", exception.file);
        }
        const bool fired = host::fault::fired();
        const std::string call = fired ? host::fault::names().at(n - 1) : "";
        host::fault::disarm();
        if (!fired) break;
        EXPECT_EQ(call == "AcDbObject::operator new", raised) << call;
        if (call == "AcDbObject::close") {
            host::database::closeLeftOpen(drawing.Database());
        }
        EXPECT_EQ(0u, host::database::Ledger::instance().count()) << call;
        EXPECT_EQ(made ? 3u : 2u, Layers(drawing.Database()).size()) << call;
        if (!made) deadly.push_back(call);
    }
    EXPECT_EQ((std::vector<std::string>{"AcDbDatabase::getSymbolTable", "AcDbObject::operator new",
                                        "AcDbSymbolTableRecord::setName", "AcDbSymbolTable::add"}),
              deadly);
}

// --- ARXAddToModelSpace.

TEST(AddToModelSpace, ClosesOrLeavesOpenForWrite) {
    const TestDrawing drawing{};
    AcDbObjectId id;
    auto* const closed = new AcDbPoint(AcGePoint3d(1, 2, 3));
    EXPECT_EQ(Acad::eOk, ARXAddToModelSpace(closed, &id, true));
    EXPECT_EQ(id, closed->objectId());
    EXPECT_FALSE(closed->isReadEnabled());
    auto* const open = new AcDbPoint(AcGePoint3d(4, 5, 6));
    EXPECT_EQ(Acad::eOk, ARXAddToModelSpace(open, nullptr, false));
    EXPECT_TRUE(open->isWriteEnabled());
    EXPECT_EQ(2u, Entities(drawing).size());
    open->close();
}

TEST(AddToModelSpace, EntityThatCannotBeAddedIsDeletedAndTheIdStays) {
    AcDbObjectId id;
    EXPECT_EQ(Acad::eNoDatabase,
              ARXAddToModelSpace(new AcDbPoint(AcGePoint3d(1, 2, 3)), &id, true));
    const TestDrawing drawing{};
    for (const char* const call : {"AcDbDatabase::getSymbolTable", "AcDbSymbolTable::getAt",
                                   "AcDbBlockTableRecord::appendAcDbEntity"}) {
        host::fault::arm(call, 1, Acad::eOutOfDisk);
        EXPECT_EQ(Acad::eOutOfDisk,
                  ARXAddToModelSpace(new AcDbPoint(AcGePoint3d(1, 2, 3)), &id, false))
            << call;
        EXPECT_TRUE(host::fault::fired()) << call;
        EXPECT_EQ(0u, host::database::Ledger::instance().count()) << call;
    }
    EXPECT_TRUE(id.isNull());
    EXPECT_TRUE(Entities(drawing).empty());
    host::fault::disarm();
    EXPECT_NE(Acad::eOk, ARXAddToModelSpace(nullptr, &id, true));
}

// --- ARXMakeText.

TEST(MakeText, HasWhatItWasGiven) {
    const TestDrawing drawing{};
    AcDbObjectId id;
    const AcGeVector3d down(0, 0, -1);
    EXPECT_EQ(Acad::eOk,
              ARXMakeText({1, 2, 3}, L"teksti \u00E4", L"t12345", 2.5, 0.75, 4, &down, &id));
    EXPECT_EQ((Look{L"AcDbText", L"T12345", 4}), LookOf(id));
    const ReadAs<AcDbText> text(id);
    EXPECT_STREQ(L"teksti \u00E4", text->textStringConst());
    ExpectPoint({1, 2, 3}, text->position());
    EXPECT_EQ(2.5, text->height());
    EXPECT_EQ(0.75, text->rotation());
    EXPECT_EQ(-1.0, text->normal().z);
}

TEST(MakeText, HeightBelowTheToleranceKeepsTheStylesSize) {
    host::test::DrawingText source;
    source.layer("0").table("STYLE", {"STYLE|2 STANDARD|70 0|40 3.5|41 1|50 0|3 txt"});
    const auto database = source.database();
    for (const auto& [height, expected] : std::vector<std::pair<double, double>>{
             {0.0, 3.5}, {0.00009999, 3.5}, {-0.00009999, 3.5}, {0.0001, 0.0001}, {0.5, 0.5}}) {
        AcDbObjectId id;
        auto* const before = acdbHostApplicationServices()->workingDatabase();
        acdbHostApplicationServices()->setWorkingDatabase(database.get());
        EXPECT_EQ(Acad::eOk, ARXMakeText({}, L"x", nullptr, height, 0, 256, nullptr, &id));
        acdbHostApplicationServices()->setWorkingDatabase(before);
        EXPECT_EQ(expected, ReadAs<AcDbText>(id)->height()) << height;
    }
}

TEST(MakeText, NoTextIsTheEmptyOne) {
    const TestDrawing drawing{};
    AcDbObjectId id;
    EXPECT_EQ(Acad::eOk, ARXMakeText({}, nullptr, nullptr, 1, 0, 256, nullptr, &id));
    EXPECT_STREQ(L"", ReadAs<AcDbText>(id)->textStringConst());
}

TEST(MakeText, EachCallFailingMakesOneOrNone) {
    ExpectAllOrNothing(WriteWithEachCallFailing([](const TestDrawing&) {
        try {
            return ARXMakeText({1, 2, 3}, L"x", L"new", 1, 0, 3, nullptr, nullptr);
        } catch (const TamExpAcad&) {
            return static_cast<int>(Acad::eOutOfDisk);
        }
    }));
}

// --- ARXViewSize.

// --- ARXGetStandardMlineStyle.

TEST(StandardMlineStyle, IsTheEntryOfThatNameInTheDatabaseGiven) {
    AcDbObjectId id;
    EXPECT_FALSE(ARXGetStandardMlineStyle(&id));  // no database
    const TestDrawing drawing{};
    EXPECT_TRUE(ARXGetStandardMlineStyle(&id));
    EXPECT_EQ(&drawing.Database(), id.database());
    EXPECT_STREQ(L"STANDARD", ReadAs<AcDbMlineStyle>(id)->name());
    host::test::DrawingText text;
    text.object("DICTIONARY|5 A|330 0|100 AcDbDictionary|3 ACAD_MLINESTYLE|350 B");
    text.object("DICTIONARY|5 B|330 A|100 AcDbDictionary|3 Standard|350 C");
    text.object("MLINESTYLE|5 C|330 B|100 AcDbMlineStyle|2 Standard|70 0|71 1|49 0.0");
    const auto other = text.database();
    EXPECT_TRUE(ARXGetStandardMlineStyle(&id, other.get()));
    EXPECT_EQ(other.get(), id.database());
    EXPECT_EQ(1, ReadAs<AcDbMlineStyle>(id)->numElements());
}

TEST(StandardMlineStyle, IsFalseAndLeavesTheIdWhenTheHostGivesNone) {
    const TestDrawing drawing{};
    for (const char* const call : {"AcDbDatabase::getMLStyleDictionary", "AcDbDictionary::getAt"}) {
        host::fault::arm(call, 1, Acad::eOutOfDisk);
        AcDbObjectId id;
        EXPECT_FALSE(ARXGetStandardMlineStyle(&id)) << call;
        EXPECT_TRUE(host::fault::fired()) << call;
        EXPECT_TRUE(id.isNull()) << call;
        EXPECT_EQ(0u, host::database::Ledger::instance().count()) << call;
        host::fault::disarm();
    }
}

TEST(ViewSize, IsTheVariablesRealNumber) {
    Scripted host;
    host.variable(L"VIEWSIZE", 123.5);
    EXPECT_EQ(0.0, ARXViewSize());  // no database
    const TestDrawing drawing{};
    EXPECT_EQ(123.5, ARXViewSize());
}

TEST(ViewSize, AnyOtherTypeIsRaised) {
    const TestDrawing drawing{};
    Scripted host;
    EXPECT_THROW(ARXViewSize(), TamExpInvalidArgs);  // no such variable
    for (const host::editor::VariableValue& value :
         {host::editor::VariableValue(short{5}), host::editor::VariableValue(std::int32_t{5}),
          host::editor::VariableValue(AcGePoint3d(1, 2, 3)),
          host::editor::VariableValue(std::wstring(L"5"))}) {
        host.variable(L"VIEWSIZE", value);
        try {
            ARXViewSize();
            ADD_FAILURE() << "nothing raised";
        } catch (const TamExpInvalidArgs& exception) {
            EXPECT_STREQ(L"Invalid rb return value", exception.message);
            EXPECT_STREQ(L"ARX/GenARX", exception.file);
        }
    }
    host.variable(L"VIEWSIZE", 1.0);
    host::fault::arm("acedGetVar", 1, RTERROR);
    EXPECT_THROW(ARXViewSize(), TamExpInvalidArgs);
}

}  // namespace
}  // namespace TamLib
