#include "host/editor/Variables.h"

#include <acedads.h>
#include <gtest/gtest.h>

#include <cstdlib>

#include "host/database/Fault.h"
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
                                         L"EXPERT can't be 'x'; it stays 0",
                                         L"VIEWSIZE = 100.0 can only be read"}));
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
    EXPECT_EQ(set(L"PICKADD", 0), RTERROR);
    fault::disarm();
    EXPECT_EQ(variable(L"PICKADD").resval.rint, 1);
}
