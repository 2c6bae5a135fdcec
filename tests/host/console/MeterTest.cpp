#include "host/console/Meter.h"

#include <gtest/gtest.h>

#include "host/console/Printer.h"
#include "host/editor/Words.h"

namespace {

using host::console::columnsOf;
using host::console::fitted;
using host::console::visible;

TEST(Meter, ALabelIsFittedByLeavingOutItsMiddle) {
    EXPECT_EQ(fitted("Reading streets.dxf", 19), "Reading streets.dxf");
    EXPECT_EQ(fitted("Reading streets.dxf", 18), "Reading...eets.dxf");
    EXPECT_EQ(fitted("Reading streets.dxf", 4), "...f");
    EXPECT_EQ(fitted("Reading streets.dxf", 3), "...");
    EXPECT_EQ(fitted("Reading streets.dxf", 0), "");
}

TEST(Meter, LettersCountAsColumnsAndNotAsBytes) {
    EXPECT_EQ(fitted("ääääääääää", 10), "ääääääääää");
    EXPECT_EQ(columnsOf(L"ä街"), 3u);
    for (std::size_t columns = 0; columns < 12; ++columns) {
        EXPECT_LE(columnsOf(host::editor::fromUtf8(fitted("街道地图街道", columns))), columns);
    }
}

TEST(Printer, WhatWouldSteerATerminalIsWrittenOut) {
    EXPECT_EQ(visible("plain ä\n\ttext"), "plain ä\n\ttext");
    EXPECT_EQ(visible("a\x1B]0;owned\x07"
                      "b\x7F\r"),
              "a^[]0;owned^Gb^?^M");
    EXPECT_EQ(visible("\xC2\x9B"
                      "31m\xC2\xA0"),
              "\\x9B31m\xC2\xA0");
    EXPECT_EQ(visible(std::string("\0", 1)), "^@");
}

}  // namespace
