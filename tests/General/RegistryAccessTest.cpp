// The accessor with its format: what is taken for names, what is stored, and every reason it gives.
#include <gtest/gtest.h>

#include <cstdint>

#include "General/SystemInfo.h"
#include "General/WinUtil.h"
#include "tests/General/TestKey.h"
#include "tests/datastruct/ArrayFaults.h"

using namespace TamLib;
using test::Key;
using test::Std;

namespace {

constexpr bool reading = false;
constexpr bool writing = true;
const HKEY user = HKEY_CURRENT_USER;

std::wstring Reason(DWORD code) {
    return Std(SystemErrorText(code));
}

TEST(RegistryAccess, OneCallWritesTwoValuesAndReadsThem) {
    const Key key;
    CString error(L"none");
    EXPECT_TRUE(RegistryAccess(writing, &error, user, key.Narrow(), "a=%d b=%s", 7, L"text"));
    EXPECT_EQ(key.Stored(L"a"), std::pair(4, DWORD{4}));
    EXPECT_EQ(key.Stored(L"b"), std::pair(1, DWORD{4}));
    std::int32_t number = 0;
    CString text;
    EXPECT_TRUE(RegistryAccess(reading, &error, user, key.Narrow(), "a=%d b=%s", &number, &text));
    EXPECT_EQ(number, 7);
    EXPECT_EQ(text, L"te");
    EXPECT_EQ(error, L"none");
}

TEST(RegistryAccess, WritesTheFirstHalfOfATextAndNoTerminator) {
    const Key key;
    const struct {
        const wchar_t* text;
        DWORD bytes;
        const wchar_t* read;
    } cases[] = {{L"", 0, L""},
                 {L"ab", 2, L"a"},
                 {L"abc", 3, L"a"},
                 {L"abcd", 4, L"ab"},
                 {L"abcdefg", 7, L"abc"},
                 {L"\u00E4\u00F6\u20AC\u00E5", 4, L"\u00E4\u00F6"},
                 // beyond 16 bits a character counts as two
                 {L"\U0001F600\U0001F601", 4, L"\U0001F600"}};
    for (const auto& c : cases) {
        EXPECT_TRUE(RegistryAccess(writing, nullptr, user, key.Narrow(), "t=%s", c.text));
        EXPECT_EQ(key.Stored(L"t"), std::pair(1, c.bytes));
        CString text(L"before");
        EXPECT_TRUE(RegistryAccess(reading, nullptr, user, key.Narrow(), "t=%s", &text));
        EXPECT_EQ(text, c.read);
    }
}

TEST(RegistryAccess, ReadsAWholeTextWithOrWithoutItsTerminatorUpToTheFirstZero) {
    const Key key;
    CString text;
    EXPECT_TRUE(RegistryWriteString(L"HKCU", key.Wide().c_str(), L"t", L"whole text"));
    EXPECT_TRUE(RegistryAccess(reading, nullptr, user, key.Narrow(), "t=%s", &text));
    EXPECT_EQ(text, L"whole text");
    key.Put(L"t", REG_SZ, L"with\0its", 2 * 8);
    EXPECT_TRUE(RegistryAccess(reading, nullptr, user, key.Narrow(), "t=%s", &text));
    EXPECT_EQ(text, L"with");
}

TEST(RegistryAccess, NamesEndAtPercentAndBlanksInsideBelongToThem) {
    const Key key;
    EXPECT_TRUE(RegistryAccess(writing, nullptr, user, key.Narrow(),
                               "   Last Path=%s   x%d===y=%d a =b %d%d", L"1234", 1, 2, 3, 4));
    EXPECT_EQ(key.Stored(L"Last Path"), std::pair(1, DWORD{4}));
    EXPECT_EQ(key.Stored(L"x"), std::pair(4, DWORD{4}));
    EXPECT_EQ(key.Stored(L"y"), std::pair(4, DWORD{4}));
    EXPECT_EQ(key.Stored(L"a b "), std::pair(4, DWORD{4}));  // "=" goes wherever it stands
    EXPECT_EQ(key.Stored(L""), std::pair(4, DWORD{4}));      // the key's own value has no name
    Array<StringBase<wchar_t>> names;
    EXPECT_TRUE(RegistryValueNames(L"HKCU", key.Wide().c_str(), names));
    EXPECT_EQ(names.count, 5u);
}

TEST(RegistryAccess, NamesAreOfTheCodePage) {
    const Key key;
    EXPECT_TRUE(RegistryAccess(writing, nullptr, user, key.Narrow(), "m\xE4\xE4r\xE4 \x80=%d", 5));
    EXPECT_EQ(key.Stored(L"m\u00E4\u00E4r\u00E4 \u20AC"), std::pair(4, DWORD{4}));
    const std::string below = std::string(key.Narrow()) + "\\\xD6ljy";
    EXPECT_TRUE(RegistryAccess(writing, nullptr, user, below.c_str(), "x=%d", 5));
    Array<StringBase<wchar_t>> names;
    EXPECT_TRUE(RegistryKeyNames(L"HKCU", key.Wide().c_str(), names));
    EXPECT_EQ(Std(names), std::vector<std::wstring>{L"\u00D6ljy"});
}

TEST(RegistryAccess, NumbersOfAllSignsComeBack) {
    const Key key;
    for (const std::int32_t number : {0, 1, -1, INT32_MAX, INT32_MIN}) {
        std::int32_t read = 99;
        EXPECT_TRUE(RegistryAccess(writing, nullptr, user, key.Narrow(), "n=%d", number));
        EXPECT_TRUE(RegistryAccess(reading, nullptr, user, key.Narrow(), "n=%d", &read));
        EXPECT_EQ(read, number);
    }
}

TEST(RegistryAccess, ANumberStoredWithFewerBytesIsFilledWithZeros) {
    const Key key;
    key.Put(L"n", REG_DWORD, "\x05\x01", 2);
    std::int32_t read = -1;
    EXPECT_TRUE(RegistryAccess(reading, nullptr, user, key.Narrow(), "n=%d", &read));
    EXPECT_EQ(read, 0x105);
}

TEST(RegistryAccess, TextsLongerThanTheFirstBufferAreReadWhole) {
    const Key key;
    for (const std::size_t length : {4u, 5u, 6u, 1000u, 40000u}) {
        std::wstring text;
        for (std::size_t i = 0; i < length; ++i) text += static_cast<wchar_t>(L'a' + i % 26);
        key.PutText(L"t", REG_SZ, text);
        CString read;
        EXPECT_TRUE(RegistryAccess(reading, nullptr, user, key.Narrow(), "t=%s", &read));
        EXPECT_EQ(read, text.c_str());
    }
}

TEST(RegistryAccess, TheFirstBufferHasTenBytesAndTheNextWhatTheValueNeeds) {
    const Key key;
    key.PutText(L"", REG_SZ, L"a text longer than ten bytes");  // 28 characters
    CString read;
    test::MemoryFaults memory;
    for (const auto& [request, bytes] : {std::pair(1, 10u), std::pair(2, 2 * (28u + 1))}) {
        memory.Fail(test::Request::allocate, request);
        EXPECT_FALSE(RegistryAccess(reading, nullptr, user, key.Narrow(), "%s", &read));
        EXPECT_EQ(test::MemoryFaults::LastSize(), bytes / 2 * sizeof(wchar_t));
    }
}

TEST(RegistryAccess, TheBufferGrowsForAsLongAsThereIsMore) {
    const Key key;
    key.PutText(L"t", REG_SZ, L"a value that is longer than ten bytes");
    const settled::FailingCall more("RegQueryValueExW", 1, ERROR_MORE_DATA, 1);
    CString read;
    EXPECT_TRUE(RegistryAccess(reading, nullptr, user, key.Narrow(), "t=%s", &read));
    EXPECT_EQ(read, L"a value that is longer than ten bytes");
}

TEST(RegistryAccess, AnEmptyFormatOpensOrMakesTheKey) {
    const Key key;
    CString error;
    EXPECT_FALSE(RegistryAccess(reading, &error, user, key.Narrow(), ""));
    EXPECT_FALSE(key.Exists());
    EXPECT_TRUE(RegistryAccess(writing, nullptr, user, key.Narrow(), ""));
    EXPECT_TRUE(key.Exists());
    EXPECT_TRUE(RegistryAccess(reading, nullptr, user, key.Narrow(), ""));
    EXPECT_TRUE(RegistryAccess(reading, nullptr, user, key.Narrow(), nullptr));
    EXPECT_TRUE(RegistryAccess(reading, nullptr, user, key.Narrow(), " name without a specifier"));
    EXPECT_TRUE(RegistryAccess(reading, nullptr, user, "", ""));
    EXPECT_TRUE(RegistryAccess(reading, nullptr, user, nullptr, ""));
}

TEST(RegistryAccess, AKeyThatIsNotThereIsToldWhenReading) {
    const Key key;
    CString error;
    std::int32_t number = 5;
    EXPECT_FALSE(RegistryAccess(reading, &error, user, key.Narrow(), "a=%d", &number));
    EXPECT_EQ(error.GetString(), L"Failed to open registry key 'HKEY_CURRENT_USER\\" + key.Wide() +
                                     L"': " + Reason(2) + L" (Error code 2)");
    EXPECT_EQ(number, 5);
    EXPECT_FALSE(RegistryAccess(reading, nullptr, user, key.Narrow(), "a=%d", &number));
}

TEST(RegistryAccess, AKeyThatCannotBeMadeIsToldWithTheCodeOfMaking) {
    const Key key;
    const settled::FailingCall failing("RegCreateKeyW", 1, ERROR_ACCESS_DENIED);
    CString error;
    EXPECT_FALSE(RegistryAccess(writing, &error, user, key.Narrow(), "a=%d", 1));
    EXPECT_EQ(error.GetString(), L"Failed to open registry key 'HKEY_CURRENT_USER\\" + key.Wide() +
                                     L"': " + Reason(5) + L" (Error code 5)");
    EXPECT_FALSE(key.Exists());
}

TEST(RegistryAccess, AKeyThatCannotBeOpenedForWritingIsMade) {
    const Key key;
    const settled::FailingCall failing("RegOpenKeyExW", 1, ERROR_ACCESS_DENIED);
    EXPECT_TRUE(RegistryAccess(writing, nullptr, user, key.Narrow(), "a=%d", 1));
    EXPECT_EQ(key.Stored(L"a"), std::pair(4, DWORD{4}));
}

TEST(RegistryAccess, NoHandleAtAllHasNoRootName) {
    CString error;
    const HKEY none = reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(0x7654));
    for (const bool write : {false, true}) {
        EXPECT_FALSE(RegistryAccess(write, &error, none, nullptr, "a=%d", 1));
        EXPECT_EQ(error.GetString(),
                  L"Failed to open registry key '\\': " + Reason(6) + L" (Error code 6)");
    }
}

TEST(RegistryAccess, KeyNamesBeyondTheLimitAreRefused) {
    const Key key;
    CString error;
    const std::string name = std::string(key.Narrow()) + "\\" + std::string(300, 'k');
    EXPECT_FALSE(RegistryAccess(writing, &error, user, name.c_str(), "a=%d", 1));
    EXPECT_EQ(std::wstring(error).substr(0, 29), L"Failed to open registry key '");
    EXPECT_FALSE(RegistryAccess(reading, nullptr, user, name.c_str(), "a=%d", nullptr));
}

TEST(RegistryAccess, AValueThatIsNotThereIsToldAndWhatCameBeforeStays) {
    const Key key;
    key.Put(L"a", REG_DWORD, "\x03\0\0\0", 4);
    CString error;
    std::int32_t a = 0;
    std::int32_t b = 8;
    std::int32_t c = 9;
    EXPECT_FALSE(
        RegistryAccess(reading, &error, user, key.Narrow(), "a=%d my b=%d a=%d", &a, &b, &c));
    EXPECT_EQ(a, 3);
    EXPECT_EQ(b, 8);
    EXPECT_EQ(c, 9);
    EXPECT_EQ(error.GetString(), L"Registry path 'HKEY_CURRENT_USER\\" + key.Wide() +
                                     L"' , key 'my b' reading failed - " + Reason(2) + L" (2)");
    EXPECT_FALSE(RegistryAccess(reading, nullptr, user, key.Narrow(), "none=%d", &b));
}

TEST(RegistryAccess, AWriteThatFailsIsToldAndWhatCameBeforeStays) {
    const Key key;
    const settled::FailingCall failing("RegSetValueExW", 2, ERROR_ACCESS_DENIED);
    CString error;
    EXPECT_FALSE(
        RegistryAccess(writing, &error, user, key.Narrow(), "a=%d b=%s c=%d", 1, L"xx", 2));
    EXPECT_EQ(error.GetString(), L"Registry path 'HKEY_CURRENT_USER\\" + key.Wide() +
                                     L"' , key 'b' writing failed - " + Reason(5) + L" (5)");
    EXPECT_EQ(key.Stored(L"a"), std::pair(4, DWORD{4}));
    EXPECT_EQ(key.Stored(L"b").first, -1);
    EXPECT_EQ(key.Stored(L"c").first, -1);
}

TEST(RegistryAccess, AnotherTypeStopsAtThatValueAndEarlierArgumentsKeepWhatWasRead) {
    const Key key;
    key.Put(L"n", REG_DWORD, "\x04\0\0\0", 4);
    key.PutText(L"t", REG_SZ, L"text");
    key.PutText(L"e", REG_EXPAND_SZ, L"text");  // not the same as a text
    key.Put(L"q", REG_QWORD, "\x04\0\0\0\0\0\0\0", 8);
    const auto refused = [&key](const char* name, auto* target) {
        std::int32_t before = 0;
        CString error;
        const std::string wide = name;
        const bool isText = std::is_same_v<decltype(target), CString*>;
        const std::string format = "n=%d " + wide + (isText ? "=%s" : "=%d");
        EXPECT_FALSE(
            RegistryAccess(reading, &error, user, key.Narrow(), format.c_str(), &before, target));
        EXPECT_EQ(before, 4);
        EXPECT_EQ(error.GetString(), L"Registry path 'HKEY_CURRENT_USER\\" + key.Wide() +
                                         L"' , key '" + std::wstring(wide.begin(), wide.end()) +
                                         L"' has different type than expected");
        EXPECT_FALSE(
            RegistryAccess(reading, nullptr, user, key.Narrow(), format.c_str(), &before, target));
    };
    CString text(L"kept");
    std::int32_t number = 77;
    refused("n", &text);
    refused("e", &text);
    refused("q", &text);
    refused("t", &number);
    refused("q", &number);
    EXPECT_EQ(text, L"kept");
    EXPECT_EQ(number, 77);
}

TEST(RegistryAccess, AnUnknownSpecifierIsFoundAtOnceWhenWriting) {
    const Key key;
    CString error;
    EXPECT_FALSE(RegistryAccess(writing, &error, user, key.Narrow(), "a=%d b=%x", 1, 2));
    EXPECT_EQ(error, L"Unknown format specifier 'x'");
    EXPECT_EQ(key.Stored(L"a"), std::pair(4, DWORD{4}));
    EXPECT_EQ(key.Stored(L"b").first, -1);
    EXPECT_FALSE(RegistryAccess(writing, &error, user, key.Narrow(), "b=%D", 2));
    EXPECT_EQ(error, L"Unknown format specifier 'D'");
    EXPECT_FALSE(RegistryAccess(writing, &error, user, key.Narrow(), "b=%%", 2));
    EXPECT_EQ(error, L"Unknown format specifier '%'");
    EXPECT_FALSE(RegistryAccess(writing, nullptr, user, key.Narrow(), "b=%x", 2));
}

TEST(RegistryAccess, AnUnknownSpecifierIsFoundWhenReadingOnlyAfterTheValueWas) {
    const Key key;
    CString error;
    EXPECT_TRUE(RegistryAccess(writing, nullptr, user, key.Narrow(), "a=%d", 1));
    EXPECT_FALSE(RegistryAccess(reading, &error, user, key.Narrow(), "b=%x", nullptr));
    EXPECT_EQ(error.GetString(), L"Registry path 'HKEY_CURRENT_USER\\" + key.Wide() +
                                     L"' , key 'b' reading failed - " + Reason(2) + L" (2)");
    EXPECT_FALSE(RegistryAccess(reading, &error, user, key.Narrow(), "a=%x", nullptr));
    EXPECT_EQ(error, L"Unknown format specifier 'x'");
}

TEST(RegistryAccess, APercentAtTheEndIsAnUnknownSpecifier) {
    const Key key;
    CString error;
    EXPECT_FALSE(RegistryAccess(writing, &error, user, key.Narrow(), "a=%d b=%", 1));
    EXPECT_EQ(std::wstring(error.GetString()).substr(0, 26), L"Unknown format specifier '");
    EXPECT_EQ(key.Stored(L"a"), std::pair(4, DWORD{4}));
    EXPECT_FALSE(RegistryAccess(reading, &error, user, key.Narrow(), "a=%"));
    EXPECT_EQ(std::wstring(error.GetString()).substr(0, 26), L"Unknown format specifier '");
}

TEST(RegistryAccess, NullTextsAreEmptyAndNullTargetsAreLeftOut) {
    const Key key;
    const wchar_t* const none = nullptr;
    EXPECT_TRUE(RegistryAccess(writing, nullptr, user, key.Narrow(), "t=%s n=%d", none, 5));
    EXPECT_EQ(key.Stored(L"t"), std::pair(1, DWORD{0}));
    std::int32_t* const noNumber = nullptr;
    CString* const noText = nullptr;
    EXPECT_TRUE(
        RegistryAccess(reading, nullptr, user, key.Narrow(), "t=%s n=%d", noText, noNumber));
}

TEST(RegistryAccess, WithoutMemoryForTheBufferTheValueIsNotRead) {
    const Key key;
    EXPECT_TRUE(RegistryAccess(writing, nullptr, user, key.Narrow(), "%d", 5));
    key.PutText(L"", REG_SZ, L"a text longer than ten bytes");
    for (const int request : {1, 2}) {
        CString read(L"kept");
        CString error;
        test::MemoryFaults memory;
        memory.Fail(test::Request::allocate, request);
        EXPECT_FALSE(RegistryAccess(reading, &error, user, key.Narrow(), "%s", &read));
        EXPECT_EQ(test::MemoryFaults::Live(), 0);
        EXPECT_EQ(read, L"kept");
        EXPECT_EQ(error.GetString(), L"Registry path 'HKEY_CURRENT_USER\\" + key.Wide() +
                                         L"' , key '' reading failed - " + Reason(8) + L" (8)");
    }
}

TEST(RegistryAccess, KeysAreClosedOnEveryWay) {
    // Handles of keys that are left open would keep the tree from going; natively they count up.
    const Key key;
    CString error;
    std::int32_t number = 0;
    for (int i = 0; i < 300; ++i) {
        RegistryAccess(writing, &error, user, key.Narrow(), "a=%d b=%x", 1, 2);
        RegistryAccess(reading, &error, user, key.Narrow(), "a=%s", &error);
        RegistryAccess(reading, &error, user, key.Narrow(), "none=%d", &number);
    }
    EXPECT_EQ(RegDeleteTreeW(user, key.Wide().c_str()), 0);
    EXPECT_FALSE(key.Exists());
}

}  // namespace
