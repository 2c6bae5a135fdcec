#include "tam/TamExceptions.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <type_traits>

#include <tchar.h>
#include <windows.h>
#ifndef _WIN32
#include <Headless.h>
#endif

using namespace TamLib;

namespace {

const wchar_t* const source = L"datastruct/Array";

template <class E>
class EveryClass : public ::testing::Test {};
using Classes =
    ::testing::Types<TamExpBase, TamExpInternal, TamExpRange, TamExpAcad, TamExpDivZero,
                     TamExpWinSeException, TamExpUser, TamExpInvalidArgs, TamExpActionCancelled>;
struct ByNumber {
    template <class E>
    static std::string GetName(int i) {
        return std::to_string(i);
    }
};
TYPED_TEST_SUITE(EveryClass, Classes, ByNumber);

TYPED_TEST(EveryClass, KeepsMessageLineAndSourceName) {
    const TypeParam exception(L"Invalid rb.", 447, source);
    EXPECT_EQ(std::wstring(exception.message), L"Invalid rb.");
    EXPECT_EQ(exception.line, 447);
    EXPECT_EQ(exception.file, source);  // the pointer itself: not copied
}

TYPED_TEST(EveryClass, HasNoVirtualDestructor) {
    EXPECT_TRUE(std::is_polymorphic<TypeParam>::value);
    EXPECT_FALSE(std::has_virtual_destructor<TypeParam>::value);
}

TYPED_TEST(EveryClass, IsCaughtAsTheRootByReference) {
    try {
        throw TypeParam(L"x", 1, source);
    } catch (const TamExpBase& caught) {
        EXPECT_EQ(std::wstring(caught.message), L"x");
        return;
    }
}

TYPED_TEST(EveryClass, ANullMessageIsEmpty) {
    const TypeParam exception(nullptr, 1, source);
    EXPECT_EQ(std::wstring(exception.message), L"");
}

TYPED_TEST(EveryClass, AMessageTooLongIsCutAtTheRoom) {
    const std::wstring fits(2047, L'a');
    const std::wstring tooLong(5000, L'a');
    EXPECT_EQ(std::wstring(TypeParam(fits.c_str(), 1, source).message), fits);
    EXPECT_EQ(std::wstring(TypeParam(tooLong.c_str(), 1, source).message), fits);
}

TEST(TamExceptions, FailuresOfTheLibraryAndOfTheUserAreTwoBranches) {
    EXPECT_TRUE((std::is_base_of<TamExpBase, TamExpInternal>::value));
    EXPECT_TRUE((std::is_base_of<TamExpInternal, TamExpNoMem>::value));
    EXPECT_TRUE((std::is_base_of<TamExpInternal, TamExpRange>::value));
    EXPECT_TRUE((std::is_base_of<TamExpInternal, TamExpAcad>::value));
    EXPECT_TRUE((std::is_base_of<TamExpInternal, TamExpDivZero>::value));
    EXPECT_TRUE((std::is_base_of<TamExpInternal, TamExpWinSeException>::value));
    EXPECT_TRUE((std::is_base_of<TamExpBase, TamExpUser>::value));
    EXPECT_TRUE((std::is_base_of<TamExpUser, TamExpInvalidArgs>::value));
    EXPECT_TRUE((std::is_base_of<TamExpUser, TamExpActionCancelled>::value));
    EXPECT_FALSE((std::is_base_of<TamExpUser, TamExpInternal>::value));
    EXPECT_FALSE((std::is_base_of<TamExpInternal, TamExpUser>::value));
}

template <class From, class To>
std::ptrdiff_t Between(const From& from, const To& to) {
    return reinterpret_cast<const char*>(&to) - reinterpret_cast<const char*>(&from);
}

TEST(TamExceptions, FieldsStandInTheOrderMessageLineFile) {
    const TamExpBase base(L"", 1, source);
    EXPECT_EQ(sizeof base.message, 2048 * sizeof(wchar_t));
    EXPECT_EQ(Between(base, base.message), static_cast<std::ptrdiff_t>(sizeof(void*)));
    EXPECT_EQ(Between(base.message, base.line), static_cast<std::ptrdiff_t>(sizeof base.message));
    EXPECT_EQ(Between(base.line, base.file), 8);
    const TamExpWinSeException translated;
    EXPECT_EQ(Between(translated.file, translated.code),
              static_cast<std::ptrdiff_t>(sizeof(void*)));
    EXPECT_EQ(Between(translated.code, translated.pointers), 8);
}

TEST(TamExceptions, DefaultFormsHaveTheirOwnLines) {
    const TamExpDivZero divZero;
    EXPECT_EQ(std::wstring(divZero.message), L"");
    EXPECT_EQ(divZero.line, 445);
    EXPECT_EQ(std::wstring(divZero.file), L"tam/TamExceptions");
    const TamExpInvalidArgs invalid;
    EXPECT_EQ(std::wstring(invalid.message), L"");
    EXPECT_EQ(invalid.line, 486);
    EXPECT_EQ(std::wstring(invalid.file), L"tam/TamExceptions");
    const TamExpWinSeException translated;
    EXPECT_EQ(std::wstring(translated.message), L"");
    EXPECT_EQ(translated.line, 398);
    EXPECT_EQ(std::wstring(translated.file), L"tam/TamExceptions");
    EXPECT_EQ(translated.GetCode(), 0u);
    EXPECT_EQ(translated.GetPointers(), nullptr);
    EXPECT_EQ(translated.GetAddress(), nullptr);
}

TEST(TamExceptions, ACopyTakesTheWholeBlockOfTheMessage) {
    TamExpAcad original(L"ads_newrb failed", 12, source);
    original.message[2047] = L'#';    // behind the terminator
    const TamExpAcad copy(original);  // NOLINT(performance-unnecessary-copy-initialization)
    EXPECT_EQ(std::wstring(copy.message), L"ads_newrb failed");
    EXPECT_EQ(copy.message[2047], L'#');
    EXPECT_EQ(copy.line, 12);
    EXPECT_EQ(copy.file, source);
}

TEST(TamExceptions, HookOfAnInternalOneCallsItsOwnHook) {
    struct Counting : TamExpRange {
        using TamExpRange::TamExpRange;
        void InternalHook() override { ++calls; }
        int calls = 0;
    };
    Counting counting(L"", 1, source);
    TamExpBase& base = counting;
    base.Hook();
    base.Hook();
    EXPECT_EQ(counting.calls, 2);
}

TEST(TamExceptions, HookOfAUsersOneDoesNothing) {
    struct Counting : TamExpInvalidArgs {
        void UserHook() override { ++calls; }
        int calls = 0;
    };
    Counting counting;
    TamExpBase& base = counting;
    base.Hook();
    EXPECT_EQ(counting.calls, 0);
}

TEST(TamExceptions, HooksOfTheLibrarysOwnClassesDoNothing) {
    TamExpBase base(L"b", 1, source);
    base.Hook();
    TamExpInternal internal(L"i", 2, source);
    internal.Hook();
    TamExpUser user(L"u", 3, source);
    user.Hook();
    user.UserHook();
    EXPECT_EQ(std::wstring(base.message) + internal.message + user.message, L"biu");
}

template <class E, class = void>
struct HasTitle : std::false_type {};
template <class E>
struct HasTitle<E, std::void_t<decltype(&E::Title)>> : std::true_type {};

TEST(TamExceptions, OnlyTwoClassesHaveATitle) {
    EXPECT_TRUE(HasTitle<TamExpNoMem>::value);
    EXPECT_TRUE(HasTitle<TamExpActionCancelled>::value);
    EXPECT_FALSE(HasTitle<TamExpBase>::value || HasTitle<TamExpInternal>::value ||
                 HasTitle<TamExpRange>::value || HasTitle<TamExpAcad>::value ||
                 HasTitle<TamExpDivZero>::value || HasTitle<TamExpWinSeException>::value ||
                 HasTitle<TamExpUser>::value || HasTitle<TamExpInvalidArgs>::value);
    EXPECT_EQ(std::wstring(TamExpNoMem(L"", 1, source).Title()), L"Out of memory");
    EXPECT_EQ(std::wstring(TamExpActionCancelled(L"", 1, source).Title()), L"Cancelled");
}

// What the last report showed.
struct Shown {
    std::wstring text;
    std::wstring title;
    int times = 0;
};
Shown shown;

class Report : public ::testing::Test {
  protected:
    void SetUp() override {
        shown = Shown();
        reportFunction = [](const wchar_t* text, const wchar_t* title) {
            shown.text = text;
            shown.title = title;
            ++shown.times;
        };
    }
    void TearDown() override { reportFunction = nullptr; }
};

TEST_F(Report, ShowsMessageLineAndSource) {
    TamExpInternal exception(L"IntersectWith failed", 2304, L"GeomStructs/PolyLine");
    exception.Report();
    EXPECT_EQ(shown.text,
              L"\nIntersectWith failed Error at line 2304 in file GeomStructs/PolyLine.\n");
    EXPECT_EQ(shown.title, L"TamLib error");
    EXPECT_EQ(shown.times, 1);
}

TEST_F(Report, AnEmptyMessageGivesAFirstLineThatBeginsWithABlank) {
    TamExpRange(L"", 997, source).Report();
    EXPECT_EQ(shown.text, L"\n Error at line 997 in file datastruct/Array.\n");
}

TEST_F(Report, CarriageReturnsAreRemovedAndLineFeedsStay) {
    TamExpAcad(L"\ra\r\nb\r", -1, L"x").Report();
    EXPECT_EQ(shown.text, L"\na\nb Error at line -1 in file x.\n");
}

TEST_F(Report, IsCutAt1999Characters) {
    // "\n" + message + " Error at line 1 in file f.\n" is exactly 1999 characters, then one more.
    const std::wstring tail = L" Error at line 1 in file f.\n";
    const std::wstring fits(1999 - 1 - tail.size(), L'm');
    TamExpBase(fits.c_str(), 1, L"f").Report();
    EXPECT_EQ(shown.text, L"\n" + fits + tail);
    TamExpBase((fits + L"m").c_str(), 1, L"f").Report();
    EXPECT_EQ(shown.text, L"\n" + fits + L"m" + tail.substr(0, tail.size() - 1));
    const std::wstring longest(2047, L'z');
    TamExpBase(longest.c_str(), 1, L"f").Report();
    EXPECT_EQ(shown.text, L"\n" + longest.substr(0, 1998));
}

#ifndef _WIN32
TEST_F(Report, WithoutAProgramsFunctionItGoesToTheDebugger) {
    reportFunction = nullptr;
    headless::ForgetCalls();
    TamExpUser(L"m", 1, L"f").Report();
    EXPECT_EQ(headless::DebugOutput(), L"\nm Error at line 1 in file f.\n");
    headless::ForgetCalls();
}
#endif

}  // namespace
