#include <afxwin.h>
#include <gtest/gtest.h>

namespace {

// A top-level window of a class that every system has.
class Window : public CWnd {
  public:
    Window() {
        EXPECT_TRUE(CreateEx(0, L"STATIC", L"window", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr));
    }
};

TEST(CWnd, FromHandleOfNullIsNull) {
    EXPECT_EQ(CWnd::FromHandle(nullptr), nullptr);
}

TEST(CWnd, FromHandleGivesTheAttachedObject) {
    Window window;
    EXPECT_EQ(CWnd::FromHandle(window.m_hWnd), &window);
    EXPECT_EQ(CWnd::FromHandlePermanent(window.m_hWnd), &window);
}

TEST(CWnd, FromHandleGivesAForeignWindowTheSameObjectEachTime) {
    const HWND handle = CreateWindowExW(0, L"STATIC", L"foreign", WS_POPUP, 0, 0, 10, 10, nullptr,
                                        nullptr, nullptr, nullptr);
    ASSERT_NE(handle, nullptr);
    CWnd* first = CWnd::FromHandle(handle);
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first->GetSafeHwnd(), handle);
    EXPECT_EQ(CWnd::FromHandle(handle), first);
    EXPECT_EQ(CWnd::FromHandlePermanent(handle), nullptr);
    EXPECT_TRUE(::DestroyWindow(handle));
}

TEST(CWnd, AttachRefusesNullAndASecondWindow) {
    Window window;
    EXPECT_FALSE(window.Attach(window.m_hWnd));
    CWnd empty;
    EXPECT_FALSE(empty.Attach(nullptr));
}

TEST(CWnd, DetachLeavesTheWindowAlive) {
    Window window;
    const HWND handle = window.Detach();
    EXPECT_EQ(window.m_hWnd, nullptr);
    EXPECT_EQ(CWnd::FromHandlePermanent(handle), nullptr);
    EXPECT_TRUE(IsWindow(handle));
    EXPECT_TRUE(::DestroyWindow(handle));
}

TEST(CWnd, DestructionDestroysTheAttachedWindow) {
    HWND handle = nullptr;
    {
        Window window;
        handle = window.m_hWnd;
        EXPECT_TRUE(IsWindow(handle));
    }
    EXPECT_FALSE(IsWindow(handle));
}

TEST(CWnd, DestroyWindowOfNoWindowFails) {
    CWnd empty;
    EXPECT_FALSE(empty.DestroyWindow());
}

TEST(CWnd, CreateOfAnUnknownClassFails) {
    CWnd window;
    EXPECT_FALSE(window.CreateEx(0, L"", L"", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr));
    EXPECT_EQ(window.m_hWnd, nullptr);
}

// Children of one window: giving the focus to another top-level window activates that one first,
// which moves the focus already.
TEST(CWnd, SetFocusGivesTheWindowThatHadIt) {
    Window frame;
    CWnd first;
    CWnd second;
    for (CWnd* child : {&first, &second}) {
        ASSERT_TRUE(child->CreateEx(0, L"STATIC", L"child", WS_CHILD | WS_VISIBLE, 0, 0, 5, 5,
                                    frame.m_hWnd, nullptr));
    }
    first.SetFocus();
    EXPECT_EQ(CWnd::GetFocus(), &first);
    EXPECT_EQ(second.SetFocus(), &first);
    EXPECT_EQ(CWnd::GetFocus(), &second);
}

TEST(CWnd, FocusGoesWithTheWindow) {
    {
        Window window;
        window.SetFocus();
        ASSERT_EQ(CWnd::GetFocus(), &window);
    }
    EXPECT_EQ(CWnd::GetFocus(), nullptr);
}

}  // namespace
