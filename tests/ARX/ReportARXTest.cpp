#include "ARX/ReportARX.h"

#include <gtest/gtest.h>

#include "host/editor/Scripted.h"
#include "tam/TamExceptions.h"

namespace {

TEST(ReportARX, AReportIsPrintedOnTheCommandLineAsItIs) {
    host::editor::Scripted scripted;
    TamLib::ReportToMessageArea();
    TamLib::TamExpAcad(L"100 % \u00E4\r", 5, L"ARX/Selector").Report();
    TamLib::reportFunction = nullptr;
    EXPECT_EQ(scripted.printed(), L"\n100 % \u00E4 Error at line 5 in file ARX/Selector.\n");
}

}  // namespace
