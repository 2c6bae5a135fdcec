// Texts in the drawing window. What the window gets is recorded where it is headless; on Windows it
// is a real one, of which the tests can only tell that everything was given back.
#include <aced.h>
#include <afxwin.h>
#include <gtest/gtest.h>

#include "ARX/ARXUtils.h"
#include "host/database/Fault.h"
#include "host/editor/Scripted.h"
#include "tests/host/support/LedgerListener.h"

#if !defined(_WIN32)
#include <Headless.h>
#endif

namespace TamLib {
namespace {

using host::editor::Scripted;

class TextInTheWindow : public ::testing::Test {
  protected:
    void SetUp() override {
        host_.variable(L"VIEWSIZE", 540.0);
        host_.variable(L"VIEWCTR", AcGePoint3d(100, 50, 0));
        host_.variable(L"SCREENSIZE", host::editor::PlanePoint{1920, 1080});
        acedGetCurrentColors(&colours_);
#if !defined(_WIN32)
        headless::ForgetTexts();
#endif
    }

    Scripted host_;
    AcColorSettings colours_{};
};

#if !defined(_WIN32)

TEST_F(TextInTheWindow, WritesTheFormattedTextAtThePixel) {
    ARXDrawText({110, 60, 5}, 0x112233, 0x445566, true, 20.9, nullptr, L"%s %i %.2f", L"piste", 7,
                2.5);
    ASSERT_EQ(1u, headless::Texts().size());
    const headless::TextCall text = headless::Texts()[0];
    EXPECT_EQ(acedGetAcadDwgView()->GetSafeHwnd(), text.window);
    EXPECT_EQ(L"piste 7 2.50", text.text);
    EXPECT_EQ(980, text.x);
    EXPECT_EQ(520, text.y);
    EXPECT_EQ(0x112233u, text.foreground);
    EXPECT_EQ(0x445566u, text.background);
    EXPECT_EQ(TRANSPARENT, text.mode);
    EXPECT_EQ(L"Lucida Console", text.face);
    EXPECT_EQ(20, text.fontHeight);  // cut
    EXPECT_EQ(14, text.fontWidth);   // 0.7 * 20.9 = 14.63, cut
    EXPECT_EQ(0u, headless::OpenDrawingObjects());
}

TEST_F(TextInTheWindow, MinusOneIsTheInvertedBackgroundMaskedForTheForegroundAloneIntended) {
    ARXDrawText({100, 50, 0}, 0xFFFFFFFFu, 0xFFFFFFFFu, false, 10, nullptr, L"x");
    ASSERT_EQ(1u, headless::Texts().size());
    const headless::TextCall text = headless::Texts()[0];
    EXPECT_EQ(~colours_.dwGfxModelBkColor & 0xFFFFFFu, text.foreground);
    EXPECT_EQ(~colours_.dwGfxModelBkColor, text.background);
    EXPECT_EQ(OPAQUE, text.mode);
}

TEST_F(TextInTheWindow, GivenFontIsUsedAndStaysTheCallers) {
    const HFONT font = CreateFontW(31, 9, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, L"Courier");
    ARXDrawText({100, 50, 0}, 1, 2, false, 10, font, L"x");
    ASSERT_EQ(1u, headless::Texts().size());
    EXPECT_EQ(L"Courier", headless::Texts()[0].face);
    EXPECT_EQ(31, headless::Texts()[0].fontHeight);
    EXPECT_TRUE(DeleteObject(font));
    EXPECT_EQ(0u, headless::OpenDrawingObjects());
}

TEST_F(TextInTheWindow, NothingIsWrittenWhereThePlaceHasNoPixel) {
    ARXDrawText({1e300, 50, 0}, 1, 2, false, 10, nullptr, L"x");
    host::fault::arm("acedCoordFromWorldToPixel", 1, 0);
    ARXDrawText({100, 50, 0}, 1, 2, false, 10, nullptr, L"x");
    EXPECT_TRUE(headless::Texts().empty());
    EXPECT_EQ(0u, headless::OpenDrawingObjects());
}

TEST_F(TextInTheWindow, LeavesTheDrawingAndTheCommandLineAlone) {
    ARXDrawText({100, 50, 0}, 1, 2, false, 10, nullptr, L"x");
    EXPECT_EQ(L"", host_.printed());
    EXPECT_TRUE(host_.lines().empty());
}

#else

TEST_F(TextInTheWindow, WritesIntoARealWindowAndGivesBackWhatItTook) {
    const DWORD before = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
    for (int i = 0; i < 100; ++i)
        ARXDrawText({110, 60, 5}, 0xFFFFFFFFu, 0xFFFFFFFFu, false, 20.9, nullptr, L"piste %i", i);
    EXPECT_LE(GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS), before + 50);
}

#endif

}  // namespace
}  // namespace TamLib
