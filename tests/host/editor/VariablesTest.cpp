#include "host/editor/Variables.h"

#include <acedads.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "host/database/Fault.h"
#include "host/editor/SessionState.h"
#include "host/editor/Words.h"
#include "tests/host/editor/Harness.h"

using namespace host;
using namespace host::editor;
using host::test::DrawingText;
using host::test::Harness;
using host::test::smallTown;

namespace {

resbuf variable(const wchar_t* name) {
    resbuf value{};
    EXPECT_EQ(acedGetVar(name, &value), RTNORM) << toUtf8(name);
    return value;
}

std::wstring text(const wchar_t* name) {
    const resbuf value = variable(name);
    EXPECT_EQ(value.restype, RTSTR);
    const std::wstring copy = value.resval.rstring;
    std::free(value.resval.rstring);
    return copy;
}

int set(const wchar_t* name, short number) {
    resbuf value{};
    value.restype = RTSHORT;
    value.resval.rint = number;
    return acedSetVar(name, &value);
}

double viewHeight(const DrawingText& drawing) {
    Harness harness(drawing, {});
    return variable(L"VIEWSIZE").resval.rreal;
}

}  // namespace

TEST(Variables, NamesIgnoreCaseAndTypesAreTold) {
    Harness harness(smallTown(), {});
    EXPECT_EQ(variable(L"PickAdd").restype, RTSHORT);
    EXPECT_EQ(variable(L"PICKADD").resval.rint, 1);
    EXPECT_EQ(variable(L"PICKAUTO").resval.rint, 0);
    EXPECT_EQ(variable(L"VIEWTWIST").restype, RTREAL);
    EXPECT_EQ(variable(L"VIEWDIR").restype, RT3DPOINT);
    EXPECT_EQ(text(L"PRODUCT"), L"orlinth");
}

TEST(Variables, UnknownOnesAreRefused) {
    Harness harness(smallTown(), {});
    resbuf value{};
    EXPECT_EQ(acedGetVar(L"NOSUCH", &value), RTERROR);
    EXPECT_EQ(acedGetVar(nullptr, &value), RTERROR);
    EXPECT_EQ(acedGetVar(L"PICKADD", nullptr), RTERROR);
    EXPECT_EQ(set(L"NOSUCH", 1), RTERROR);
    EXPECT_EQ(acedSetVar(L"PICKADD", nullptr), RTERROR);
}

TEST(Variables, WithoutASessionThereAreNone) {
    resbuf value{};
    EXPECT_EQ(acedGetVar(L"PICKADD", &value), RTERROR);
    EXPECT_EQ(set(L"PICKADD", 1), RTERROR);
}

TEST(Variables, SettingChecksTypeRangeAndRight) {
    Harness harness(smallTown(), {});
    EXPECT_EQ(set(L"EXPERT", 5), RTNORM);
    EXPECT_EQ(variable(L"EXPERT").resval.rint, 5);
    EXPECT_EQ(set(L"EXPERT", 6), RTERROR);
    EXPECT_EQ(set(L"EXPERT", -1), RTERROR);
    EXPECT_EQ(set(L"VIEWSIZE", 1), RTERROR) << "can only be read";
    EXPECT_EQ(set(L"USERR1", 2), RTNORM) << "whole numbers are taken for reals";
    EXPECT_EQ(variable(L"USERR1").resval.rreal, 2.0);
    EXPECT_EQ(set(L"USERS1", 2), RTERROR);
    resbuf real{};
    real.restype = RTREAL;
    real.resval.rreal = 2.5;
    EXPECT_EQ(acedSetVar(L"EXPERT", &real), RTERROR);
    EXPECT_EQ(acedSetVar(L"USERR2", &real), RTNORM);
    resbuf other{};
    other.restype = RTENAME;
    EXPECT_EQ(acedSetVar(L"EXPERT", &other), RTERROR);
}

TEST(Variables, WhatCanOnlyBeReadIsNotSetToAValueOfItsOwnType) {
    Harness harness(smallTown(), {});
    EXPECT_EQ(set(L"CVPORT", 3), RTERROR);
    EXPECT_EQ(variable(L"CVPORT").resval.rint, 2);
    EXPECT_EQ(set(L"TILEMODE", 0), RTERROR);
    EXPECT_EQ(variable(L"TILEMODE").resval.rint, 1);
    resbuf twist{};
    twist.restype = RTREAL;
    twist.resval.rreal = 1.5;
    EXPECT_EQ(acedSetVar(L"VIEWTWIST", &twist), RTERROR);
    EXPECT_EQ(variable(L"VIEWTWIST").resval.rreal, 0.0);
    EXPECT_FALSE(harness.session().implementation().variables.set(L"CVPORT", short{3}));
    EXPECT_FALSE(harness.session().implementation().variables.set(L"SCREENSIZE", PlanePoint{1, 1}));
}

TEST(Variables, EveryTypeOfResultBufferIsToldApart) {
    Harness harness(smallTown(), {});
    resbuf value{};
    value.restype = RTLONG;
    value.resval.rlong = 1;
    EXPECT_EQ(acedSetVar(L"EXPERT", &value), RTERROR);
    EXPECT_EQ(acedSetVar(L"USERR1", &value), RTERROR);
    value.restype = RTANG;
    value.resval.rreal = 2.5;
    EXPECT_EQ(acedSetVar(L"USERR1", &value), RTNORM) << "an angle is a real";
    EXPECT_EQ(variable(L"USERR1").resval.rreal, 2.5);
    for (const int type : {RTPOINT, RT3DPOINT}) {
        value.restype = static_cast<short>(type);
        EXPECT_EQ(acedSetVar(L"USERR1", &value), RTERROR);
        EXPECT_EQ(acedSetVar(L"LASTPOINT", &value), RTERROR);
        EXPECT_EQ(acedSetVar(L"SCREENSIZE", &value), RTERROR);
    }
    value.restype = RTSTR;
    value.resval.rstring = nullptr;
    EXPECT_EQ(acedSetVar(L"USERS1", &value), RTERROR);
    EXPECT_EQ(text(L"USERS1"), L"");
    EXPECT_EQ(acedSetVar(nullptr, &value), RTERROR);
}

TEST(Variables, ThoseThatModulesAskForHaveTheTypesThatTheyExpect) {
    Harness harness(smallTown(), {});
    const struct {
        const wchar_t* name;
        int type;
    } expected[] = {{L"SORTENTS", RTSHORT}, {L"VIEWCTR", RT3DPOINT}, {L"VIEWDIR", RT3DPOINT},
                    {L"VIEWSIZE", RTREAL},  {L"VIEWTWIST", RTREAL},  {L"SCREENSIZE", RTPOINT},
                    {L"EXTMIN", RT3DPOINT}, {L"EXTMAX", RT3DPOINT},  {L"CVPORT", RTSHORT},
                    {L"TILEMODE", RTSHORT}, {L"CMDACTIVE", RTSHORT}, {L"_VERNUM", RTSTR},
                    {L"CLAYER", RTSTR}};
    for (const auto& each : expected) {
        resbuf value = variable(each.name);
        EXPECT_EQ(value.restype, each.type) << toUtf8(each.name);
        if (value.restype == RTSTR) std::free(value.resval.rstring);
    }
    EXPECT_EQ(variable(L"SCREENSIZE").resval.rpoint[0], 1920.0);
    EXPECT_EQ(variable(L"SCREENSIZE").resval.rpoint[1], 1080.0);
    EXPECT_EQ(variable(L"CVPORT").resval.rint, 2) << "the one viewport of the model";
    EXPECT_EQ(variable(L"TILEMODE").resval.rint, 1);
    EXPECT_EQ(variable(L"SORTENTS").resval.rint, 127);
    EXPECT_EQ(set(L"SORTENTS", 0), RTNORM);
    EXPECT_EQ(set(L"SORTENTS", 128), RTERROR);
    EXPECT_EQ(variable(L"SORTENTS").resval.rint, 0);
}

TEST(Variables, TheLastPointIsTheOneTypedLast) {
    Harness harness(smallTown(), {L"POINT", L"@1,2,3"});
    EXPECT_EQ(variable(L"LASTPOINT").resval.rpoint[0], 0.0);
    harness.run();
    EXPECT_EQ(variable(L"LASTPOINT").resval.rpoint[0], 11.0) << "from the base 10,20";
    EXPECT_EQ(variable(L"LASTPOINT").resval.rpoint[1], 22.0);
    EXPECT_EQ(variable(L"LASTPOINT").resval.rpoint[2], 3.0);
    harness.session().closeDrawing();
    EXPECT_EQ(variable(L"LASTPOINT").resval.rpoint[0], 0.0);
}

TEST(Variables, TheFolderOfTheDrawingEndsWithItsSeparator) {
    Harness harness(smallTown(), {});
    EXPECT_EQ(text(L"DWGPREFIX"), L"") << "it comes from no folder";
    const auto folder = std::filesystem::path(ORLINTH_TEST_DATA) / "releases";
    harness.session().openDrawing(folder / "r12.dxf");
    EXPECT_EQ(text(L"DWGNAME"), L"r12.dxf");
    EXPECT_EQ(text(L"DWGPREFIX"), (folder / "").wstring());
    harness.session().closeDrawing();
    EXPECT_EQ(text(L"DWGPREFIX"), L"");
}

TEST(Variables, TheExtentsHaveHeights) {
    DrawingText lines("AC1015");
    lines.entity("LINE|5 1|8 0|10 1.0|20 2.0|30 -7.5|11 40.0|21 30.0|31 2.0");
    lines.entity("POINT|5 2|8 0|10 5.0|20 5.0|30 12.25");
    Harness harness(lines, {});
    const resbuf least = variable(L"EXTMIN");
    const resbuf most = variable(L"EXTMAX");
    EXPECT_EQ(least.resval.rpoint[0], 1.0);
    EXPECT_EQ(least.resval.rpoint[1], 2.0);
    EXPECT_EQ(least.resval.rpoint[2], -7.5);
    EXPECT_EQ(most.resval.rpoint[0], 40.0);
    EXPECT_EQ(most.resval.rpoint[1], 30.0);
    EXPECT_EQ(most.resval.rpoint[2], 12.25);
}

TEST(Variables, ALayerIsMadeTheCurrentOne) {
    Harness harness(
        smallTown(),
        {L"CLAYER", L"STREET", L"CLAYER", L"nosuch", L"CLAYER", L"frozen", L"CLAYER", L"",
         L"CLAYER", L"off", L"(setvar \"CLAYER\" \"locked\")", L"(setvar \"CLAYER\" 7)"},
        Harness::By::person);
    harness.run();
    EXPECT_EQ(text(L"CLAYER"), L"locked");
    EXPECT_EQ(harness.output().errors,
              (std::vector<std::wstring>{L"CLAYER can't be 'nosuch'; it stays street",
                                         L"CLAYER can't be 'frozen'; it stays street",
                                         L"LISP: CLAYER can't be set to 7 (line 1, column 1)"}));
    EXPECT_NE(harness.output().shown.find(L"CLAYER <street>: \n"), std::wstring::npos);
    harness.session().closeDrawing();
    resbuf value{};
    ACHAR name[] = L"0";
    value.restype = RTSTR;
    value.resval.rstring = name;
    EXPECT_EQ(acedSetVar(L"CLAYER", &value), RTERROR) << "no drawing is open";
}

TEST(Variables, ScriptsThatSetOrShowThemGoOn) {
    Harness harness(smallTown(), {L"PICKADD", L"0", L"VIEWSIZE", L"CLAYER", L"street", L"NOTHING"});
    harness.run();
    ASSERT_EQ(harness.results().size(), 4u);
    for (const CommandResult& result : harness.results())
        EXPECT_EQ(result.end, CommandResult::End::done) << toUtf8(result.name);
    EXPECT_NE(harness.output().shown.find(L"\nVIEWSIZE = 100.0 (read only)"), std::wstring::npos);
    EXPECT_EQ(variable(L"PICKADD").resval.rint, 0);
    EXPECT_EQ(set(L"PICKADD", 3), RTERROR);
    EXPECT_EQ(set(L"PICKADD", -1), RTERROR);
}

TEST(Variables, EverySingleOneCanBeRead) {
    Harness harness(smallTown(), {});
    Variables variables;
    const std::vector<std::wstring> names = variables.names();
    EXPECT_GT(names.size(), 40u);
    for (const std::wstring& name : names) {
        resbuf value{};
        EXPECT_EQ(acedGetVar(name.c_str(), &value), RTNORM) << toUtf8(name);
        if (value.restype == RTSTR) std::free(value.resval.rstring);
    }
}

TEST(Variables, ThoseThatFollowFromTheDrawing) {
    Harness harness(smallTown(), {});
    EXPECT_EQ(variable(L"VIEWSIZE").resval.rreal, 100.0);
    EXPECT_EQ(variable(L"VIEWCTR").resval.rpoint[1], 25.0);
    EXPECT_EQ(variable(L"EXTMIN").resval.rpoint[0], 0.0);
    EXPECT_EQ(variable(L"EXTMAX").resval.rpoint[0], 100.0);
    EXPECT_EQ(text(L"CLAYER"), L"0");
    EXPECT_EQ(text(L"DWGNAME"), L"test.dxf");
    EXPECT_EQ(variable(L"CMDACTIVE").resval.rint, 0);
    harness.session().closeDrawing();
    EXPECT_EQ(variable(L"EXTMIN").resval.rpoint[0], 1e20);
    EXPECT_EQ(variable(L"EXTMAX").resval.rpoint[0], -1e20);
    EXPECT_EQ(text(L"CLAYER"), L"0");
}

TEST(Variables, TheRunningCommandIsNamed) {
    Harness harness(smallTown(), {L"LOOK"});
    Session::HostCommand command;
    command.name = L"LOOK";
    command.run = [](Session&) {
        EXPECT_EQ(variable(L"CMDACTIVE").resval.rint, 1);
        EXPECT_EQ(text(L"CMDNAMES"), L"LOOK");
    };
    harness.session().addHostCommand(command);
    harness.run();
    EXPECT_EQ(text(L"CMDNAMES"), L"");
}

TEST(Variables, TheViewComesFromTheViewportThenTheHeaderThenWhatIsDrawn) {
    DrawingText viewport("AC1015");
    viewport.variable("$VIEWSIZE|40 7.0");
    viewport.table("VPORT",
                   {"VPORT|2 other|12 0.0|22 0.0|40 3.0", "VPORT|2 *Active|12 1.0|22 2.0|40 55.0"});
    EXPECT_EQ(viewHeight(viewport), 55.0);
    DrawingText header("AC1009");
    header.variable("$VIEWSIZE|40 7.0");
    EXPECT_EQ(viewHeight(header), 7.0);
    DrawingText lines("AC1015");
    lines.entity("LINE|5 1|8 0|10 0.0|20 0.0|30 0.0|11 40.0|21 30.0|31 0.0");
    EXPECT_EQ(viewHeight(lines), 40.0);
    DrawingText broken("AC1009");
    broken.variable("$VIEWSIZE|40 0.0");
    EXPECT_EQ(viewHeight(broken), 1.0);
}

TEST(Variables, TheirNamesAreCommandsThatSetThem) {
    Harness harness(smallTown(),
                    {L"_.FILEDIA", L"1", L"EXPERT", L"", L"USERR1", L"2.5", L"USERS1", L"two words",
                     L"USERS2", L".", L"FILEDIA", L"7", L"EXPERT", L"x", L"VIEWSIZE"},
                    Harness::By::person);
    harness.run();
    EXPECT_EQ(variable(L"FILEDIA").resval.rint, 1);
    EXPECT_EQ(variable(L"EXPERT").resval.rint, 0);
    EXPECT_EQ(variable(L"USERR1").resval.rreal, 2.5);
    EXPECT_EQ(text(L"USERS1"), L"two words");
    EXPECT_EQ(harness.output().errors,
              (std::vector<std::wstring>{L"FILEDIA can't be '7'; it stays 1",
                                         L"EXPERT can't be 'x'; it stays 0"}));
    EXPECT_EQ(harness.session().undo(), 0) << "setting one is no change of the drawing";
}

TEST(Variables, PickautoLetsAMissOpenAWindow) {
    Harness harness(smallTown(), {L"PICKAUTO", L"1", L"SELECT", L"35,10", L"65,40", L""});
    harness.run();
    EXPECT_EQ(test::handles(harness.results().back().prompts.at(0).entities), L"12");
}

TEST(Variables, FailOnOrder) {
    Harness harness(smallTown(), {});
    resbuf value{};
    fault::arm("acedGetVar", 1, RTERROR);
    EXPECT_EQ(acedGetVar(L"PICKADD", &value), RTERROR);
    fault::arm("acedSetVar", 1, RTERROR);
    EXPECT_EQ(set(L"PICKADD", 2), RTERROR);
    fault::disarm();
    EXPECT_EQ(variable(L"PICKADD").resval.rint, 1);
    EXPECT_EQ(set(L"PICKADD", 2), RTNORM) << "nothing but the order was in the way";
}
