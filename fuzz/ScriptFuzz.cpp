// Scripts of any bytes, run to their end over a small drawing with commands that show every prompt:
// nothing hangs, and nothing stays open.
#include <aced.h>
#include <acedads.h>
#include <dbmain.h>

#include <cstdint>
#include <cstdlib>

#include "host/database/Drawing.h"
#include "host/database/Ledger.h"
#include "host/editor/Script.h"
#include "host/editor/Session.h"

using namespace host;
using namespace host::editor;

namespace {

const char* const drawingText =
    "0\nSECTION\n2\nENTITIES\n"
    "0\nLINE\n5\n10\n8\n0\n10\n0.0\n20\n0.0\n30\n0.0\n11\n100.0\n21\n0.0\n31\n0.0\n"
    "0\nCIRCLE\n5\n11\n8\n0\n10\n50.0\n20\n25.0\n30\n0.0\n40\n10.0\n"
    "0\nTEXT\n5\n12\n8\n0\n10\n10.0\n20\n2.0\n30\n0.0\n40\n2.0\n1\nKatu\n"
    "0\nENDSEC\n0\nEOF\n";

void pick() {
    ads_name name;
    ads_point point;
    acedEntSel(L"\nPick: ", name, point);
}

void select() {
    ads_name set;
    if (acedSSGet(nullptr, nullptr, nullptr, nullptr, set) == RTNORM) acedSSFree(set);
}

void ask() {
    ACHAR text[132];
    acedGetString(0, L"\nText: ", text);
    acedGetString(1, L"\nText: ", text);
}

void point() {
    ads_point result;
    acedInitGet(RSG_NONULL, L"Here There");
    acedGetPoint(nullptr, nullptr, result);
}

class Silence : public Output {
  public:
    void print(std::wstring_view) override {}
    void prompt(std::wstring_view) override {}
    void reply(const Reply&) override {}
    void error(std::wstring_view) override {}
};

void addCommands() {
    acedRegCmds->addCommand(L"FUZZ", L"P", L"P", ACRX_CMD_MODAL, pick);
    acedRegCmds->addCommand(L"FUZZ", L"S", L"S", ACRX_CMD_MODAL, select);
    acedRegCmds->addCommand(L"FUZZ", L"A", L"A", ACRX_CMD_MODAL, ask);
    acedRegCmds->addCommand(L"FUZZ", L"O", L"O", ACRX_CMD_MODAL, point);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const auto document = dxf::Document::fromBytes(drawingText, "fuzz.dxf");
    static const bool added = (addCommands(), true);
    static_cast<void>(added);
    ScriptInput input(decodeScript({reinterpret_cast<const char*>(data), size}), L"fuzz.scr");
    Silence silence;
    {
        Session session(input, silence);
        session.useDrawing(database::drawingOf(document));
        session.onCommandEnded([](CommandResult& result) {
            result.stopInput = false;
            if (!result.leaks.empty() || result.end == CommandResult::End::exceptionLeft)
                std::abort();
        });
        session.run();
    }
    if (database::Ledger::instance().count() != 0) std::abort();
    return 0;
}
