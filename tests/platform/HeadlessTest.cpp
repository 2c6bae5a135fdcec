// Natively nothing is shown: boxes and debug texts are recorded instead.
#ifndef _WIN32
#include "Headless.h"

#include <gtest/gtest.h>

namespace {

TEST(Headless, ABoxIsRecordedAndAnsweredWithoutWaiting) {
    headless::ForgetCalls();
    EXPECT_EQ(MessageBoxW(nullptr, L"text", L"title", MB_YESNO), IDOK);
    headless::AnswerMessageBoxes(IDNO);
    EXPECT_EQ(MessageBoxW(nullptr, nullptr, nullptr, MB_OK), IDNO);
    const auto boxes = headless::MessageBoxes();
    ASSERT_EQ(boxes.size(), 2u);
    EXPECT_EQ(boxes[0].owner, nullptr);
    EXPECT_EQ(boxes[0].text, L"text");
    EXPECT_EQ(boxes[0].title, L"title");
    EXPECT_EQ(boxes[0].type, 4u);
    EXPECT_EQ(boxes[1].text, L"");
    headless::ForgetCalls();
    EXPECT_TRUE(headless::MessageBoxes().empty());
    EXPECT_EQ(MessageBoxW(nullptr, L"", L"", MB_OK), IDOK);
    headless::ForgetCalls();
}

TEST(Headless, DebugTextsAreJoined) {
    headless::ForgetCalls();
    OutputDebugStringW(L"a\n");
    OutputDebugStringW(nullptr);
    OutputDebugStringW(L"b");
    EXPECT_EQ(headless::DebugOutput(), L"a\nb");
    headless::ForgetCalls();
    EXPECT_EQ(headless::DebugOutput(), L"");
}

TEST(Headless, TheMemoryStatusCanBeSettled) {
    MEMORYSTATUS settled{};
    settled.dwMemoryLoad = 33;
    settled.dwAvailPhys = 77;
    headless::SetMemoryStatus(settled);
    MEMORYSTATUS status{};
    GlobalMemoryStatus(&status);
    EXPECT_EQ(status.dwLength, sizeof status);
    EXPECT_EQ(status.dwMemoryLoad, 33u);
    EXPECT_EQ(status.dwAvailPhys, 77u);
    headless::SetMemoryStatus(std::nullopt);
    GlobalMemoryStatus(&status);
    EXPECT_NE(status.dwTotalPhys, 0u);
}

}  // namespace
#endif
