#include "host/editor/Zoom.h"

#include <gtest/gtest.h>

#include "host/editor/SessionState.h"
#include "host/editor/Words.h"
#include "tests/host/editor/Harness.h"

using namespace host;
using namespace host::editor;
using host::test::DrawingText;
using host::test::Harness;
using host::test::smallTown;

namespace {

// A session that has ZOOM, over lines that a person types.
class Zooming {
  public:
    Zooming(const DrawingText& drawing, std::vector<std::wstring> lines)
        : harness(drawing, std::move(lines), Harness::By::person) {
        Session::HostCommand command;
        command.name = L"ZOOM";
        command.run = zoom;
        command.transparent = true;
        harness.session().addHostCommand(command);
        shown = harness.run();
    }

    const Session::Implementation::View& view() {
        return harness.session().implementation().view();
    }

    Harness harness;
    std::wstring shown;
};

DrawingText points(const std::vector<std::string>& entities) {
    DrawingText drawing("AC1009");
    drawing.variable("$VIEWCTR|10 1.0|20 2.0").variable("$VIEWSIZE|40 30.0");
    for (const std::string& entity : entities) drawing.entity(entity);
    return drawing;
}

}  // namespace

TEST(Zoom, ExtentsFitTheHeight) {
    Zooming high(points({"LINE|5 1|8 0|10 0.0|20 0.0|30 0.0|11 10.0|21 90.0|31 0.0"}), {L"ZOOM E"});
    EXPECT_EQ(high.view().height, 90.0);
    EXPECT_EQ(high.view().center, AcGePoint3d(5.0, 45.0, 0.0));
}

TEST(Zoom, ExtentsFitTheWidth) {
    Zooming wide(points({"LINE|5 1|8 0|10 0.0|20 0.0|30 0.0|11 192.0|21 9.0|31 0.0"}), {L"ZOOM E"});
    EXPECT_EQ(wide.view().height, 108.0) << "the screen is 16 to 9";
}

TEST(Zoom, AroundASinglePointTheHeightStays) {
    Zooming zooming(points({"POINT|5 1|8 0|10 7.0|20 8.0|30 0.0"}), {L"ZOOM E"});
    EXPECT_EQ(zooming.view().height, 30.0);
    EXPECT_EQ(zooming.view().center, AcGePoint3d(7.0, 8.0, 0.0));
}

TEST(Zoom, AWindowWithoutSizeMovesTheView) {
    Zooming window(smallTown(), {L"ZOOM W 3,4 3,4"});
    EXPECT_EQ(window.view().height, 100.0);
    EXPECT_EQ(window.view().center, AcGePoint3d(3.0, 4.0, 0.0));
}

TEST(Zoom, FarFromTheOriginTheCentreIsExact) {
    Zooming zooming(points({"LINE|5 1|8 0|10 25496000.0|20 6672000.0|30 0.0|11 25496001.0|21 "
                            "6672001.0|31 0.0"}),
                    {L"ZOOM E"});
    EXPECT_EQ(zooming.view().center, AcGePoint3d(25496000.5, 6672000.5, 0.0));
}

TEST(Zoom, NothingDrawnLeavesTheView) {
    Zooming zooming(points({}), {L"ZOOM E", L"ZOOM A"});
    EXPECT_EQ(zooming.view().height, 30.0);
    EXPECT_EQ(zooming.harness.output().errors,
              std::vector<std::wstring>(2, L"nothing is drawn that could be shown"));
}

TEST(Zoom, AllTakesTheLimitsIn) {
    DrawingText drawing = points({"POINT|5 1|8 0|10 7.0|20 8.0|30 0.0"});
    drawing.variable("$LIMMIN|10 0.0|20 0.0").variable("$LIMMAX|10 20.0|20 40.0");
    Zooming zooming(drawing, {L"ZOOM A"});
    EXPECT_EQ(zooming.view().height, 40.0);
    EXPECT_EQ(zooming.view().center, AcGePoint3d(10.0, 20.0, 0.0));
}

TEST(Zoom, TenViewsBeforeAreKept) {
    std::vector<std::wstring> lines(11, L"ZOOM 2x");
    lines.insert(lines.end(), 11, L"ZOOM P");
    Zooming zooming(smallTown(), lines);
    EXPECT_EQ(zooming.view().height, 50.0) << "the first of eleven is forgotten";
    EXPECT_EQ(zooming.harness.output().errors,
              std::vector<std::wstring>{L"there is no view before this one"});
}

TEST(Zoom, CancellingLeavesTheView) {
    for (const auto& lines : std::vector<std::vector<std::wstring>>{{L"ZOOM", L"^C"},
                                                                    {L"ZOOM W", L"^C"},
                                                                    {L"ZOOM W 1,1", L"^C"},
                                                                    {L"ZOOM C", L"^C"},
                                                                    {L"ZOOM C 1,1", L"^C"},
                                                                    {L"ZOOM S", L"^C"},
                                                                    {L"ZOOM", L""}}) {
        Zooming zooming(smallTown(), lines);
        EXPECT_EQ(zooming.view().height, 100.0);
        const bool gaveUp = lines.back() == L"^C";
        EXPECT_EQ(zooming.harness.result().end,
                  gaveUp ? CommandResult::End::cancelled : CommandResult::End::done);
        EXPECT_EQ(zooming.harness.session().implementation().earlierViews.size(), 0u);
    }
}

TEST(Zoom, AViewWithoutANumberForItsSizeIsRefused) {
    Zooming zooming(
        points({"POINT|5 1|8 0|10 0.0|20 0.0|30 0.0"}),
        {L"ZOOM 1e-308x", L"", L"ZOOM 1e300x", L"ZOOM 1e300x", L"", L"ZOOM C 0,0 1e-309", L""});
    EXPECT_EQ(zooming.view().height, 30.0 / 1e300);
    std::size_t refused = 0;
    std::size_t at = 0;
    while ((at = zooming.shown.find(L"There is no view of that size.", at)) != std::wstring::npos) {
        ++refused;
        ++at;
    }
    EXPECT_EQ(refused, 3u) << toUtf8(zooming.shown);
}

TEST(Zoom, WithoutADrawingItRefuses) {
    Harness harness(smallTown(), {});
    harness.session().closeDrawing();
    EXPECT_THROW(zoom(harness.session()), CommandFailure);
}

TEST(Zoom, InsideOfAPromptItLeavesThePromptStanding) {
    Zooming zooming(smallTown(),
                    {L"SELECT", L"'ZOOM", L"^C", L"'zoom .5x", L"'nosuch", L"ALL", L""});
    EXPECT_EQ(zooming.view().height, 200.0);
    EXPECT_EQ(test::handles(zooming.harness.results().back().prompts.at(0).entities).empty(),
              false);
    EXPECT_NE(zooming.shown.find(L">>Specify corner of window"), std::wstring::npos);
    EXPECT_NE(zooming.shown.find(L"Resuming SELECT command."), std::wstring::npos);
    EXPECT_NE(zooming.shown.find(L"*Invalid selection*"), std::wstring::npos);
}
