#include "tests/host/console/Screen.h"

#include <gtest/gtest.h>

namespace {

using console_test::Screen;
using Lines = std::vector<std::string>;

Lines shown(const std::string& bytes, std::size_t width = 20) {
    Screen screen(width);
    for (const char byte : bytes) screen.write({&byte, 1});
    EXPECT_EQ(screen.strange(), "");
    return screen.lines();
}

TEST(Screen, ShowsLinesAndWhatIsWrittenOverThem) {
    EXPECT_EQ(shown("one\r\ntwo\rT"), (Lines{"one", "Two"}));
    EXPECT_EQ(shown("abc\b\bX"), Lines{"aXc"});
    EXPECT_EQ(shown("ä\xE2\x82\xAC!\rx"), Lines{"x\xE2\x82\xAC!"});
}

TEST(Screen, BreaksLinesAtItsWidth) {
    EXPECT_EQ(shown("abcdef", 4), (Lines{"abcd", "ef"}));
}

TEST(Screen, FollowsTheSequencesOfEditing) {
    EXPECT_EQ(shown("abcdef\x1B[3D\x1B[K"), Lines{"abc"});
    EXPECT_EQ(shown("abcdef\x1B[2G\x1B[2P"), Lines{"adef"});
    EXPECT_EQ(shown("abc\x1B[2G\x1B[@x"), Lines{"axbc"});
    EXPECT_EQ(shown("abc\r\x1B[Cx"), Lines{"axc"});
    EXPECT_EQ(shown("a\r\nb\r\nc\x1B[2A\r\x1B[J"), Lines{""});
}

TEST(Screen, KeepsWhatItDoesNotKnow) {
    Screen screen(20);
    screen.write("a\x1B[2zb\x1B(");
    EXPECT_EQ(screen.strange(), "CSI z ESC ( ");
    EXPECT_EQ(screen.beforeCursor(), "ab");
    EXPECT_EQ(screen.behindCursor(), "");
}

}  // namespace
