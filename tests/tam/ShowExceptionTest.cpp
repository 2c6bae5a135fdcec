#include <afxwin.h>
#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>

#include "tam/FrameWindow.h"
#include "tam/TamExceptions.h"
#ifndef _WIN32
#include <Headless.h>
#endif

using namespace TamLib;

namespace {

struct Box {
    int answer = 0;
    HWND owner = nullptr;
    std::wstring text;
    std::wstring title;
};

#ifdef _WIN32

// The real box blocks: a helper thread reads it and presses its button.
class Presser {
  public:
    Presser() : thread_([this] { Run(); }) {}
    ~Presser() { Stop(); }
    Presser(const Presser&) = delete;
    Presser& operator=(const Presser&) = delete;

    // Waits for the press; a box that never came is given up.
    void Stop() {
        over_ = true;
        if (thread_.joinable()) thread_.join();
    }

    Box box;

  private:
    static BOOL CALLBACK ReadText(HWND child, LPARAM parameter) {
        wchar_t text[2100];
        GetWindowTextW(child, text, 2100);
        wchar_t kind[40];
        GetClassNameW(child, kind, 40);
        if (std::wstring(kind) == L"Static" && text[0] != 0)
            *reinterpret_cast<std::wstring*>(parameter) = text;
        return TRUE;
    }

    void Run() {
        HWND window = nullptr;
        while (window == nullptr || !IsWindowVisible(window)) {
            if (over_) return;
            SwitchToThread();
            window = FindWindowW(L"#32770", L"TamLib error");
        }
        EnumChildWindows(window, ReadText, reinterpret_cast<LPARAM>(&box.text));
        wchar_t title[100];
        GetWindowTextW(window, title, 100);
        box.title = title;
        box.owner = GetWindow(window, GW_OWNER);
        PostMessageW(window, WM_COMMAND, IDOK, 0);
    }

    std::atomic<bool> over_{false};
    std::thread thread_;  // last: it uses the rest
};

template <class Call>
Box Show(Call call) {
    Presser presser;
    const int answer = call();
    presser.Stop();
    presser.box.answer = answer;
    return presser.box;
}

#else

template <class Call>
Box Show(Call call) {
    headless::ForgetCalls();
    headless::AnswerMessageBoxes(IDOK);
    const int answer = call();
    const auto boxes = headless::MessageBoxes();
    EXPECT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes.at(0).type, 0u);
    return {answer, boxes.at(0).owner, boxes.at(0).text, boxes.at(0).title};
}

#endif

// A window of the desktop's own class, so that a box can be owned by it.
class Window {
  public:
    Window() { window.CreateEx(0, L"Static", L"", 0, 0, 0, 10, 10, nullptr, nullptr); }
    CWnd window;
};

TEST(ShowException, TellsMessageLineAndSource) {
    const Box box =
        Show([] { return ShowException(12, L"ARX/Selector", nullptr, L"ads_newrb failed"); });
    EXPECT_EQ(box.text, L"\nException \"ads_newrb failed\" at line 12 in file ARX/Selector.\n");
    EXPECT_EQ(box.title, L"TamLib error");
    EXPECT_EQ(box.answer, IDOK);
    EXPECT_EQ(box.owner, nullptr);
}

TEST(ShowException, ANullMessageReadsUnknownError) {
    const Box box = Show([] { return ShowException(1, L"f", nullptr, nullptr); });
    EXPECT_EQ(box.text, L"\nException \"unknown error\" at line 1 in file f.\n");
}

TEST(ShowException, TheParentComesBeforeTheFrameWindow) {
    Window parent;
    Window frame;
    ASSERT_NE(parent.window.m_hWnd, nullptr);
    frameWindow = &frame.window;
    const Box given = Show([&] { return ShowException(1, L"f", &parent.window, L"m"); });
    const Box kept = Show([&] { return ShowException(1, L"f", nullptr, L"m"); });
    frameWindow = nullptr;
    EXPECT_EQ(given.owner, parent.window.m_hWnd);
    EXPECT_EQ(kept.owner, frame.window.m_hWnd);
}

#ifndef _WIN32
TEST(ShowException, GivesTheAnswerOfTheBox) {
    headless::ForgetCalls();
    headless::AnswerMessageBoxes(IDCANCEL);
    EXPECT_EQ(ShowException(1, L"f", nullptr, L"m"), IDCANCEL);
    headless::ForgetCalls();
}

TEST(ShowException, IsCutAt1999Characters) {
    const std::wstring message(3000, L'm');
    const Box box = Show([&] { return ShowException(1, L"f", nullptr, message.c_str()); });
    EXPECT_EQ(box.text, (L"\nException \"" + message).substr(0, 1999));
}
#endif

}  // namespace
