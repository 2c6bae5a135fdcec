// PolyLine picked by the user: codes, prompts, what is stored when, each refused call of the host.
#include <acutmem.h>
#include <afxwin.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "GeomStructs/PolyLine.h"
#include "host/editor/Scripted.h"
#include "tam/FrameWindow.h"
#include "tam/TamExceptions.h"
#include "tests/GeomEnts/TestDrawing.h"

namespace TamLib {
namespace {

using host::editor::Scripted;

// The host's answers to one pick, and everything it stores.
struct Pick {
    PolyLine line;
    Point3d point{-1, -1, -1};
    int segment = -7;
    const wchar_t* layer = nullptr;
    int colour = -7;
    AcDbObjectId id;
    int result = -99;

    ~Pick() { FreeLayer(); }
    Pick() = default;
    Pick(const Pick&) = delete;
    Pick& operator=(const Pick&) = delete;

    void FreeLayer() {
        auto* text = const_cast<wchar_t*>(layer);
        acutDelString(text);
        layer = nullptr;
    }
    int Select(bool consume, bool sampleCurves = true, const wchar_t* prompt = L"\nPick : ") {
        FreeLayer();
        return result = line.Select(&point, &segment, consume, &layer, &colour, &id, prompt,
                                    sampleCurves);
    }
    int SelectAtPoint(bool consume, bool sampleCurves = true) {
        FreeLayer();
        return result = line.SelectAtPoint({9, 4, 0}, &segment, consume, &layer, &colour, &id,
                                           sampleCurves);
    }
    void ExpectNothingStored() const {
        EXPECT_EQ(-7, segment);
        EXPECT_EQ(nullptr, layer);
        EXPECT_EQ(-7, colour);
        EXPECT_EQ(0u, line.count);
    }
};

class PolyLineSelect : public ::testing::Test {
  protected:
    TestDrawing drawing_{"LINE|5 2F|8 LOCKED|62 3|10 0|20 0|11 10|21 0",
                         "LINE|5 30|8 0|62 6|10 0|20 0|11 10|21 0",
                         "TEXT|5 31|8 0|10 0|20 0|40 2.5|1 A",
                         "CIRCLE|5 32|8 0|10 0|20 0|40 2.5",
                         "LWPOLYLINE|5 33|8 0|62 5|90 3|70 0|10 0|20 0|10 10|20 0|10 10|20 5",
                         "REGION|5 34|8 0|70 1",
                         "LWPOLYLINE|5 35|8 0|90 2|70 0|10 0|20 0|42 0.5|10 10|20 0"};
    Scripted host_;
    Pick pick_;
};

TEST_F(PolyLineSelect, ReadsThePickedLineAndStoresWhatIsAsked) {
    host_.pick(drawing_.Id(0x33), {9, 4, 0});
    EXPECT_EQ(0, pick_.Select(false));
    EXPECT_EQ(3u, pick_.line.count);
    EXPECT_EQ(9.0, pick_.point.x);
    EXPECT_EQ(1, pick_.segment);
    EXPECT_EQ(std::wstring(L"0"), pick_.layer);
    EXPECT_EQ(5, pick_.colour);
    EXPECT_EQ(drawing_.Id(0x33), pick_.id);
    EXPECT_FALSE(drawing_.IsErased(0x33));
}

TEST_F(PolyLineSelect, EmptiesWhatWasThereBefore) {
    pick_.line.Append({9, 9, 9});
    pick_.line.offset = {1, 1, 1};
    pick_.line.hasBounds = 1;
    host_.failPick(RTCAN);
    EXPECT_EQ(-1, pick_.Select(false));
    EXPECT_EQ(0u, pick_.line.count);
    EXPECT_EQ(0.0, pick_.line.offset.x);
    EXPECT_EQ(0, pick_.line.hasBounds);
}

TEST_F(PolyLineSelect, EverythingAskedForMayBeNull) {
    host_.pick(drawing_.Id(0x33));
    PolyLine line;
    EXPECT_EQ(0, line.Select(nullptr, nullptr, false, nullptr, nullptr, nullptr, nullptr, true));
    EXPECT_EQ(3u, line.count);
}

TEST_F(PolyLineSelect, PromptGoesThroughTheFormatWithOneEmptyText) {
    host_.pick(drawing_.Id(0x33));
    host_.pick(drawing_.Id(0x33));
    host_.pick(drawing_.Id(0x33));
    pick_.Select(false, true, L"\nValitse 100%% [%s] : ");
    pick_.Select(false, true, nullptr);
    pick_.Select(false, true, L"\nValitse suunnan määräävä viiva : ");
    ASSERT_EQ(3u, host_.prompts().size());
    EXPECT_EQ("acedEntSel", host_.prompts()[0].function);
    EXPECT_EQ(L"\nValitse 100% [] : ", host_.prompts()[0].text);
    EXPECT_EQ(L"Select polyline: ", host_.prompts()[1].text);
    EXPECT_EQ(L"\nValitse suunnan määräävä viiva : ", host_.prompts()[2].text);
}

TEST_F(PolyLineSelect, CancellingIsMinusOneAndOtherAnswersMinusTwo) {
    host_.failPick(RTCAN, {1, 2, 3});
    EXPECT_EQ(-1, pick_.Select(false));
    EXPECT_EQ(2.0, pick_.point.y);  // the point is stored before the answer is looked at
    for (const int code : {RTERROR, RTNONE, RTKWORD, 0}) {
        host_.failPick(code, {4, 5, 6});
        EXPECT_EQ(-2, pick_.Select(false)) << code;
        EXPECT_EQ(5.0, pick_.point.y);
    }
    pick_.ExpectNothingStored();
    EXPECT_TRUE(pick_.id.isNull());
    EXPECT_TRUE(host_.lines().empty());
}

TEST_F(PolyLineSelect, AStaleNameIsMinusThree) {
    host_.pickStaleName();
    EXPECT_EQ(-3, pick_.Select(false));
    pick_.ExpectNothingStored();
    EXPECT_TRUE(pick_.id.isNull());
}

TEST_F(PolyLineSelect, WhatCannotBeOpenedIsMinusThreeWithItsIdStored) {
    AcDbEntity* const writer = drawing_.Open(0x33, AcDb::kForWrite);
    host_.pick(drawing_.Id(0x33));
    EXPECT_EQ(-3, pick_.Select(false));
    EXPECT_EQ(drawing_.Id(0x33), pick_.id);
    pick_.ExpectNothingStored();
    writer->close();
    // A locked layer refuses write, not read.
    host_.pick(drawing_.Id(0x2F));
    EXPECT_EQ(-3, pick_.Select(true));
    host_.pick(drawing_.Id(0x2F));
    EXPECT_EQ(0, pick_.Select(false));
    EXPECT_EQ(std::wstring(L"LOCKED"), pick_.layer);
}

TEST_F(PolyLineSelect, AClassThatIsNotAcceptedIsMinusThreeAndNothingFlashes) {
    host_.pick(drawing_.Id(0x31));
    EXPECT_EQ(-3, pick_.Select(true));
    pick_.ExpectNothingStored();
    EXPECT_FALSE(drawing_.IsErased(0x31));
    EXPECT_TRUE(host_.lines().empty());
}

TEST_F(PolyLineSelect, RegionsOfUnknownBodyAreMinusThree) {
    host_.pick(drawing_.Id(0x34));
    EXPECT_EQ(-3, pick_.Select(true));
    pick_.ExpectNothingStored();
    EXPECT_FALSE(drawing_.IsErased(0x34));
    EXPECT_TRUE(host_.lines().empty());
}

TEST_F(PolyLineSelect, ArcsAreChordsOf0p05RadiansAndOf0p1AtAPoint) {
    // Two half circles.
    host_.pick(drawing_.Id(0x32), {0, 2.5, 0});
    EXPECT_EQ(0, pick_.Select(false));
    EXPECT_EQ(2u * 62 + 1, pick_.line.count);
    EXPECT_EQ(2u * 62, host_.lines().size());
    EXPECT_EQ(93, pick_.segment);
    host_.select({drawing_.Id(0x32)});
    EXPECT_EQ(0, pick_.SelectAtPoint(false));
    EXPECT_EQ(2u * 31 + 1, pick_.line.count);
}

TEST_F(PolyLineSelect, WithoutSamplingBulgesAreChordsAndACircleGivesNothing) {
    host_.pick(drawing_.Id(0x35));
    EXPECT_EQ(0, pick_.Select(false, false));
    EXPECT_EQ(2u, pick_.line.count);
    host_.pick(drawing_.Id(0x32));
    EXPECT_EQ(0, pick_.Select(true, false));
    EXPECT_EQ(0u, pick_.line.count);
    EXPECT_FALSE(drawing_.IsErased(0x32));
}

TEST_F(PolyLineSelect, ConsumingErasesAfterReading) {
    host_.pick(drawing_.Id(0x33));
    EXPECT_EQ(0, pick_.Select(true));
    EXPECT_EQ(3u, pick_.line.count);
    EXPECT_TRUE(drawing_.IsErased(0x33));
    host_.pick(drawing_.Id(0x33));
    EXPECT_EQ(-3, pick_.Select(false));  // erased now
}

TEST_F(PolyLineSelect, FlashesInSixOrInTwoWhenThatIsItsOwnColour) {
    host_.pick(drawing_.Id(0x33));
    pick_.Select(false);
    ASSERT_EQ(2u, host_.lines().size());
    EXPECT_EQ(6, host_.lines()[0].colour);
    EXPECT_EQ(0, host_.lines()[0].highlight);
    EXPECT_EQ(10.0, host_.lines()[0].to.x);
    host_.forget();
    host_.pick(drawing_.Id(0x30));
    pick_.Select(false);
    ASSERT_EQ(1u, host_.lines().size());
    EXPECT_EQ(2, host_.lines()[0].colour);
}

TEST_F(PolyLineSelect, GivesTheFocusToTheFrameWindowFirst) {
    CWnd window;
    ASSERT_TRUE(window.CreateEx(0, L"STATIC", L"frame", WS_POPUP | WS_VISIBLE, 0, 0, 10, 10,
                                nullptr, nullptr));
    frameWindow = &window;
    host_.failPick(RTCAN);
    pick_.Select(false);
    frameWindow = nullptr;
    ASSERT_EQ(1u, host_.prompts().size());
    EXPECT_EQ(window.m_hWnd, host_.prompts()[0].focus);
    window.DestroyWindow();
}

TEST_F(PolyLineSelect, EachRefusedCallIsMinusThreeOrSurvived) {
    host_.pick(drawing_.Id(0x33), {9, 4, 0});
    host::fault::disarm();
    pick_.Select(false);
    const std::vector<std::string> calls = host::fault::names();
    ASSERT_GE(calls.size(), 4u);
    for (std::size_t n = 1; n <= calls.size(); ++n) {
        const std::string& name = calls[n - 1];
        Pick pick;
        host_.pick(drawing_.Id(0x33), {9, 4, 0});
        host::fault::arm(n, Acad::eInvalidInput);
        bool raised = false;
        try {
            pick.Select(false);
        } catch (const TamExpAcad&) {
            raised = true;
        }
        host::fault::disarm();
        EXPECT_EQ(name == "AcDbPolyline::getPointAt", raised) << name;
        if (name == "acdbGetObjectId" || name == "acdbOpenAcDbObject") {
            EXPECT_EQ(-3, pick.result) << name;
            pick.ExpectNothingStored();
        }
        // A refused vertex leaves the entity open as told; a refused close leaves it open by
        // itself.
        if (raised || name == "AcDbObject::close") {
            EXPECT_EQ(1u, host::database::Ledger::instance().count("object")) << name;
            AcDbObject* object = nullptr;
            acdbOpenAcDbObject(object, drawing_.Id(0x33), AcDb::kForRead);
            object->close();
            object->close();
        }
        EXPECT_EQ(0u, host::database::Ledger::instance().count()) << name;
    }
}

// --- At a point.

TEST_F(PolyLineSelect, AtAPointTakesTheFirstThatCanBeRead) {
    host_.select({drawing_.Id(0x31), drawing_.Id(0x2F), drawing_.Id(0x34), drawing_.Id(0x33),
                  drawing_.Id(0x30)});
    EXPECT_EQ(0, pick_.SelectAtPoint(false));
    // The text is not accepted, the line is locked, the region not read.
    EXPECT_EQ(drawing_.Id(0x33), pick_.id);
    EXPECT_EQ(3u, pick_.line.count);
    EXPECT_EQ(1, pick_.segment);
    EXPECT_EQ(5, pick_.colour);
    EXPECT_EQ(std::wstring(L"0"), pick_.layer);
    ASSERT_EQ(1u, host_.prompts().size());
    EXPECT_EQ("acedSSGet", host_.prompts()[0].function);
    EXPECT_EQ(L"", host_.prompts()[0].mode);
    EXPECT_TRUE(host_.prompts()[0].hasPoint);
    EXPECT_EQ(9.0, host_.prompts()[0].point.x);
    EXPECT_FALSE(host_.prompts()[0].hasFilter);
    EXPECT_EQ(6, host_.lines()[0].colour);
}

TEST_F(PolyLineSelect, AtAPointWithNothingIsMinusOneWhateverTheCode) {
    for (const int code : {RTCAN, RTERROR, RTNONE}) {
        host_.failSelect(code);
        EXPECT_EQ(-1, pick_.SelectAtPoint(false)) << code;
    }
    pick_.ExpectNothingStored();
}

TEST_F(PolyLineSelect, AtAPointWithNothingReadableIsMinusThreeAndFreesTheSet) {
    host_.select({drawing_.Id(0x31), drawing_.Id(0x34)});
    EXPECT_EQ(-3, pick_.SelectAtPoint(true));
    pick_.ExpectNothingStored();
    EXPECT_TRUE(pick_.id.isNull());
    EXPECT_FALSE(drawing_.IsErased(0x31));
    host_.refuseLength();
    host_.select({drawing_.Id(0x33)});
    EXPECT_EQ(-3, pick_.SelectAtPoint(true));
    host_.refuseMember(0);
    host_.select({drawing_.Id(0x33), drawing_.Id(0x30)});
    EXPECT_EQ(0, pick_.SelectAtPoint(false));
    EXPECT_EQ(drawing_.Id(0x30), pick_.id);
}

TEST_F(PolyLineSelect, AtAPointConsumingErases) {
    host_.select({drawing_.Id(0x33)});
    EXPECT_EQ(0, pick_.SelectAtPoint(true));
    EXPECT_TRUE(drawing_.IsErased(0x33));
}

TEST_F(PolyLineSelect, AtAPointOpensForWriteAlways) {
    AcDbEntity* const reader = drawing_.Open(0x33);
    host_.select({drawing_.Id(0x33)});
    EXPECT_EQ(-3, pick_.SelectAtPoint(false));
    reader->close();
}

// --- Draw.

TEST_F(PolyLineSelect, DrawShiftsByTheOffsetAndCyclesThroughNineColours) {
    PolyLine line;
    line.Draw(1);
    EXPECT_TRUE(host_.lines().empty());
    line.offset = {100, 200, 300};
    line.Append({1, 2, 3});
    line.Draw(4);
    ASSERT_EQ(1u, host_.lines().size());
    EXPECT_EQ(101.0, host_.lines()[0].from.x);
    EXPECT_EQ(303.0, host_.lines()[0].to.z);
    EXPECT_EQ(4, host_.lines()[0].colour);
    host_.forget();
    for (int i = 0; i < 11; ++i) line.Append({i + 2.0, 2, 3});
    line.Draw(-1);
    ASSERT_EQ(11u, host_.lines().size());
    for (int i = 0; i < 11; ++i) {
        EXPECT_EQ(i % 9 + 1, host_.lines()[static_cast<std::size_t>(i)].colour);
        EXPECT_EQ(0, host_.lines()[static_cast<std::size_t>(i)].highlight);
    }
    EXPECT_EQ(202.0, host_.lines()[3].from.y);
}

}  // namespace
}  // namespace TamLib
