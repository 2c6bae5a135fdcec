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
    EXPECT_EQ(shown("abcd\x1B[2G\x1B[@x", 4), Lines{"axbc"});
    EXPECT_EQ(shown("abc\r\x1B[Cx"), Lines{"axc"});
    EXPECT_EQ(shown("a\r\nb\r\nc\x1B[2A\r\x1B[J"), Lines{""});
}

Lines resized(const std::string& bytes, std::size_t from, std::size_t to, Screen::OnResize how,
              const std::string& then = {}) {
    Screen screen(from, how);
    screen.write(bytes);
    screen.resize(to);
    screen.write(then);
    return screen.lines();
}

TEST(Screen, BreaksLinesAnewWhenItsWidthChanges) {
    const auto anew = Screen::OnResize::breakAnew;
    EXPECT_EQ(resized("above\r\nabcdefgh", 8, 4, anew, "X"),
              (Lines{"abov", "e", "abcd", "efgh", "X"}));
    EXPECT_EQ(resized("abcdefgh", 4, 20, anew, "X"), Lines{"abcdefghX"});
    EXPECT_EQ(resized("abcdef\r\x1B[A", 4, 3, anew, "X"), (Lines{"Xbc", "def"}));
    EXPECT_EQ(resized("abcdef\r\x1B[K", 4, 20, anew), Lines{"abcd"});
    EXPECT_EQ(resized("abcdef\x1B[A\r\x1B[J", 4, 20, anew, "X"), Lines{"X"});
}

TEST(Screen, OrLeavesThemAsTheyAre) {
    EXPECT_EQ(resized("abcdef", 4, 20, Screen::OnResize::leave, "X"), (Lines{"abcd", "efX"}));
}

TEST(Screen, KeepsWhatItDoesNotKnow) {
    Screen screen(20);
    screen.write("a\x1B[2zb\x1B(");
    EXPECT_EQ(screen.strange(), "CSI z ESC ( ");
    EXPECT_EQ(screen.beforeCursor(), "ab");
    EXPECT_EQ(screen.behindCursor(), "");
}

}  // namespace
