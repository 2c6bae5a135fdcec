// Root keys, whole strings, names.
#include <gtest/gtest.h>

#include <algorithm>

#include "General/WinUtil.h"
#include "tests/General/TestKey.h"
#include "tests/datastruct/ArrayFaults.h"

using namespace TamLib;
using test::Key;
using test::Std;
using test::Text;

namespace {

const wchar_t* const none = nullptr;

TEST(RegistryRoot, NamesAndHandles) {
    const struct {
        const wchar_t* name;
        const wchar_t* told;
        std::uint32_t handle;
    } cases[] = {
        {L"HKEY_LOCAL_MACHINE", L"HKEY_LOCAL_MACHINE", 0x80000002u},
        {L"HKLM", L"HKEY_LOCAL_MACHINE", 0x80000002u},
        {L"HKEY_CURRENT_USER", L"HKEY_CURRENT_USER", 0x80000001u},
        {L"HKCU", L"HKEY_CURRENT_USER", 0x80000001u},
        {L"HKEY_USERS", L"HKEY_USERS", 0x80000003u},
        {L"HKEY_CURRENT_CONFIG", L"HKEY_CURRENT_CONFIG", 0x80000005u},
        {L"HKCC", L"HKEY_CURRENT_CONFIG", 0x80000005u},
        {L"HKEY_DYN_DATA", L"HKEY_DYN_DATA", 0x80000006u},
        {L"HKEY_CLASSES_ROOT", L"HKEY_CLASSES_ROOT", 0x80000000u},
    };
    for (const auto& c : cases) {
        HKEY handle = nullptr;
        EXPECT_TRUE(RegistryRoot(c.name, handle));
        EXPECT_EQ(static_cast<std::uint32_t>(reinterpret_cast<ULONG_PTR>(handle)), c.handle);
        EXPECT_EQ(std::wstring(RegistryRootName(handle)), c.told);
    }
}

TEST(RegistryRoot, OtherNamesAreUnknown) {
    const HKEY before = reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(4));
    HKEY handle = before;
    for (const wchar_t* name :
         {L"hkey_current_user", L"hkcu", L"Hkcu", L"HKU", L"HKCR", L"HKDD", L"", L" HKCU", L"HKCU ",
          L"HKEY_CURRENT_USER\\Software", L"HKEY_PERFORMANCE_DATA", none}) {
        EXPECT_FALSE(RegistryRoot(name, handle));
    }
    EXPECT_EQ(handle, before);
    EXPECT_EQ(std::wstring(RegistryRootName(nullptr)), L"");
    EXPECT_EQ(std::wstring(RegistryRootName(before)), L"");
}

TEST(RegistryString, WholeTextsComeBack) {
    const Key key;
    for (const wchar_t* text : {L"hide", L"", L"a", L"two words", L"\u00E4\u00F6\u00E5 \u20AC",
                                L"\U0001F600 beyond 16 bits \U0001F601"}) {
        EXPECT_TRUE(RegistryWriteString(L"HKCU", key.Wide().c_str(), L"my name", text));
        EXPECT_EQ(Std(RegistryReadString(L"HKEY_CURRENT_USER", key.Wide().c_str(), L"my name")),
                  text);
        EXPECT_EQ(key.Stored(L"my name").first, 1);
    }
    const std::wstring longText(50000, L'x');
    EXPECT_TRUE(RegistryWriteString(L"HKCU", key.Wide().c_str(), L"n", longText.c_str()));
    EXPECT_EQ(Std(RegistryReadString(L"HKCU", key.Wide().c_str(), L"n")), longText);
}

TEST(RegistryString, TheSystemAddsTheTerminatorThatStandsBehindTheText) {
    const Key key;
    EXPECT_TRUE(RegistryWriteString(L"HKCU", key.Wide().c_str(), L"n", L"hide"));
    EXPECT_EQ(key.Stored(L"n"), std::pair(1, DWORD{10}));  // 8 were handed over
    key.Put(L"n", REG_SZ, L"abcd", 4);
    EXPECT_EQ(key.Stored(L"n"), std::pair(1, DWORD{4}));
}

TEST(RegistryString, WritesTheDefaultValueForAnEmptyOrNullName) {
    const Key key;
    EXPECT_TRUE(RegistryWriteString(L"HKCU", key.Wide().c_str(), none, L"one"));
    EXPECT_EQ(Std(RegistryReadString(L"HKCU", key.Wide().c_str(), L"")), L"one");
    EXPECT_TRUE(RegistryWriteString(L"HKCU", key.Wide().c_str(), L"", none));
    EXPECT_EQ(RegistryReadString(L"HKCU", key.Wide().c_str(), none).count, 0u);
    EXPECT_EQ(key.Stored(L"").first, 1);
}

TEST(RegistryString, NamesIgnoreCase) {
    const Key key;
    EXPECT_TRUE(RegistryWriteString(L"HKCU", key.Wide().c_str(), L"\u00C4\u00E4 Name", L"one"));
    EXPECT_TRUE(RegistryWriteString(L"HKCU", key.Wide().c_str(), L"\u00E4\u00C4 nAME", L"two"));
    Array<Text> names;
    EXPECT_TRUE(RegistryValueNames(L"HKCU", key.Wide().c_str(), names));
    EXPECT_EQ(Std(names), std::vector<std::wstring>{L"\u00C4\u00E4 Name"});
    EXPECT_EQ(Std(RegistryReadString(L"HKCU", key.Wide().c_str(), L"\u00E4\u00E4 NAME")), L"two");
}

TEST(RegistryString, ReadsNumbersAsText) {
    const Key key;
    const auto read = [&key] { return Std(RegistryReadString(L"HKCU", key.Wide().c_str(), L"n")); };
    key.Put(L"n", REG_DWORD, "\xFF\xFF\xFF\xFF", 4);
    EXPECT_EQ(read(), L"-1");
    key.Put(L"n", REG_DWORD, "\x15\xCD\x5B\x07", 4);
    EXPECT_EQ(read(), L"123456789");
    key.Put(L"n", REG_QWORD, "\0\0\0\0\x01\0\0\0", 8);
    EXPECT_EQ(read(), L"4294967296");
    key.Put(L"n", REG_QWORD, "\0\0\0\0\0\0\0\x80", 8);
    EXPECT_EQ(read(), L"-9223372036854775808");
    key.Put(L"n", REG_DWORD, "\x07", 1);  // shorter than a number
    EXPECT_EQ(read(), L"7");
    key.Put(L"n", REG_DWORD, "", 0);
    EXPECT_EQ(read(), L"0");
}

TEST(RegistryString, ReadsOtherTypesAsTheTextOfTheirBytes) {
    const Key key;
    const auto read = [&key] { return Std(RegistryReadString(L"HKCU", key.Wide().c_str(), L"n")); };
    key.PutText(L"n", REG_EXPAND_SZ, L"%TEMP%\\x");
    EXPECT_EQ(read(), L"%TEMP%\\x");  // not expanded
    key.Put(L"n", REG_MULTI_SZ, L"first\0second\0", 2 * 14);
    EXPECT_EQ(read(), L"first");
    key.Put(L"n", REG_SZ, L"abcd", 4);  // as the accessor leaves it
    EXPECT_EQ(read(), L"ab");
    key.Put(L"n", REG_SZ, L"abcd", 3);  // an odd number of bytes: the rest of a character
    EXPECT_EQ(read(), L"ab");
}

#ifdef _WIN32
TEST(RegistryString, UnderWindowsWhereCharactersHaveTwoBytesBinaryDataIsTheTextOfThem) {
    const Key key;
    key.Put(L"n", REG_BINARY, "b\0i\0n\0", 6);
    EXPECT_EQ(Std(RegistryReadString(L"HKCU", key.Wide().c_str(), L"n")), L"bin");
}
#endif

TEST(RegistryString, ReadsNothingOnAnyFailure) {
    const Key key;
    const auto read = [&key](const wchar_t* root, const wchar_t* name) {
        return RegistryReadString(root, key.Wide().c_str(), name).count;
    };
    EXPECT_EQ(read(L"HKCU", L"n"), 0u);  // no key
    EXPECT_TRUE(RegistryWriteString(L"HKCU", key.Wide().c_str(), L"n", L"text"));
    EXPECT_EQ(read(L"HKCU", L"other"), 0u);
    EXPECT_EQ(read(L"hkcu", L"n"), 0u);
    EXPECT_EQ(read(none, L"n"), 0u);
    for (const int call : {1, 2}) {
        const settled::FailingCall failing("RegQueryValueExW", call);
        EXPECT_EQ(read(L"HKCU", L"n"), 0u);
    }
    {
        const settled::FailingCall failing("RegOpenKeyExW");
        EXPECT_EQ(read(L"HKCU", L"n"), 0u);
    }
    EXPECT_EQ(read(L"HKCU", L"n"), 4u);
}

TEST(RegistryString, WithoutMemoryTheReadRaisesWithItsLine) {
    const Key key;
    EXPECT_TRUE(RegistryWriteString(L"HKCU", key.Wide().c_str(), L"n", L"text"));
    test::MemoryFaults memory;
    memory.Fail(test::Request::allocate, 1);
    const auto raised =
        test::Catch([&key] { RegistryReadString(L"HKCU", key.Wide().c_str(), L"n"); });
    test::ExpectNoMemory(raised, L"", 482, L"General/WinUtil");
    EXPECT_EQ(test::MemoryFaults::Live(), 0);
}

TEST(RegistryString, TheBlockHoldsOneCharacterForEachByteAndATerminator) {
    const Key key;
    EXPECT_TRUE(RegistryWriteString(L"HKCU", key.Wide().c_str(), L"n", L"hide"));
    test::MemoryFaults memory;
    memory.Fail(test::Request::allocate, 1);
    test::Catch([&key] { RegistryReadString(L"HKCU", key.Wide().c_str(), L"n"); });
    EXPECT_EQ(test::MemoryFaults::LastSize(), (10 + 1) * sizeof(wchar_t));
}

TEST(RegistryString, WritesNothingOnAnyFailure) {
    const Key key;
    const auto write = [&key](const wchar_t* root) {
        return RegistryWriteString(root, key.Wide().c_str(), L"n", L"text");
    };
    EXPECT_FALSE(write(L"hkcu"));
    EXPECT_FALSE(write(none));
    {
        const settled::FailingCall failing("RegCreateKeyExW");
        EXPECT_FALSE(write(L"HKCU"));
        EXPECT_FALSE(key.Exists());
    }
    {
        const settled::FailingCall failing("RegSetValueExW");
        EXPECT_FALSE(write(L"HKCU"));
        EXPECT_EQ(key.Stored(L"n").first, -1);
    }
    EXPECT_TRUE(write(L"HKCU"));
    {
        const settled::FailingCall failing("RegOpenKeyExW");  // made anew: it is there already
        EXPECT_TRUE(write(L"HKCU"));
    }
}

TEST(RegistryDelete, OnlyWhatIsThereCanBeDeleted) {
    const Key key;
    const auto erase = [&key](const wchar_t* root, const wchar_t* name) {
        return RegistryDeleteValue(root, key.Wide().c_str(), name);
    };
    EXPECT_FALSE(erase(L"HKCU", L"n"));
    EXPECT_FALSE(key.Exists());  // deleting makes no key
    EXPECT_TRUE(RegistryWriteString(L"HKCU", key.Wide().c_str(), L"n", L"text"));
    EXPECT_FALSE(erase(L"HKCU", L"m"));
    EXPECT_FALSE(erase(L"hkcu", L"n"));
    EXPECT_FALSE(erase(none, L"n"));
    {
        const settled::FailingCall failing("RegDeleteValueW");
        EXPECT_FALSE(erase(L"HKCU", L"n"));
    }
    EXPECT_TRUE(erase(L"HKCU", L"n"));
    EXPECT_FALSE(erase(L"HKCU", L"n"));
}

std::vector<std::wstring> Sorted(const Array<Text>& names) {
    std::vector<std::wstring> all = Std(names);
    std::sort(all.begin(), all.end());
    return all;
}

TEST(RegistryNames, AreThoseDirectlyUnderTheKey) {
    const Key key;
    for (const wchar_t* name : {L"a", L"with blank", L"\u00E4\u00F6", L""})
        EXPECT_TRUE(RegistryWriteString(L"HKCU", key.Wide().c_str(), name, L"x"));
    for (const wchar_t* name : {L"\\k1", L"\\k2 \u00C5", L"\\k1\\below"})
        EXPECT_TRUE(RegistryWriteString(L"HKCU", (key.Wide() + name).c_str(), L"v", L"x"));
    Array<Text> values;
    values.Append(Text(L"before"));
    EXPECT_TRUE(RegistryValueNames(L"HKCU", key.Wide().c_str(), values));
    EXPECT_EQ(Sorted(values),
              (std::vector<std::wstring>{L"", L"a", L"before", L"with blank", L"\u00E4\u00F6"}));
    EXPECT_EQ(Std(values[0]), L"before");  // names are appended
    Array<Text> keys;
    EXPECT_TRUE(RegistryKeyNames(L"HKCU", key.Wide().c_str(), keys));
    EXPECT_EQ(Sorted(keys), (std::vector<std::wstring>{L"k1", L"k2 \u00C5"}));
}

TEST(RegistryNames, ManyAndLong) {
    const Key key;
    std::vector<std::wstring> expected;
    for (int i = 0; i < 120; ++i) {
        expected.push_back(std::wstring(static_cast<std::size_t>(1 + i * 2), L'n') +
                           std::to_wstring(i));
        EXPECT_TRUE(RegistryAccess(
            true, nullptr, HKEY_CURRENT_USER, key.Narrow(),
            (std::string(expected.back().begin(), expected.back().end()) + "=%d").c_str(), i));
    }
    std::sort(expected.begin(), expected.end());
    Array<Text> names;
    EXPECT_TRUE(RegistryValueNames(L"HKCU", key.Wide().c_str(), names));
    EXPECT_EQ(Sorted(names), expected);
}

TEST(RegistryNames, AKeyWithoutAnyGivesNone) {
    const Key key;
    EXPECT_TRUE(RegistryAccess(true, nullptr, HKEY_CURRENT_USER, key.Narrow(), ""));
    Array<Text> names;
    EXPECT_TRUE(RegistryValueNames(L"HKCU", key.Wide().c_str(), names));
    EXPECT_TRUE(RegistryKeyNames(L"HKCU", key.Wide().c_str(), names));
    EXPECT_EQ(names.count, 0u);
}

TEST(RegistryNames, AreRefusedOnAnyFailureAndOneThatCannotBeReadIsPassedOver) {
    const Key key;
    Array<Text> names;
    const auto values = [&](const wchar_t* root) {
        return RegistryValueNames(root, key.Wide().c_str(), names);
    };
    const auto keys = [&](const wchar_t* root) {
        return RegistryKeyNames(root, key.Wide().c_str(), names);
    };
    EXPECT_FALSE(values(L"HKCU"));  // no key
    EXPECT_FALSE(keys(L"HKCU"));
    for (const wchar_t* name : {L"\\1", L"\\2", L"\\3"})
        EXPECT_TRUE(RegistryWriteString(L"HKCU", (key.Wide() + name).c_str(), L"v", L"x"));
    for (const wchar_t* name : {L"1", L"2", L"3"})
        EXPECT_TRUE(RegistryWriteString(L"HKCU", key.Wide().c_str(), name, L"x"));
    EXPECT_FALSE(values(L"hkcu"));
    EXPECT_FALSE(keys(none));
    for (const char* call : {"RegOpenKeyExW", "RegQueryInfoKeyW"}) {
        {
            const settled::FailingCall failing(call);
            EXPECT_FALSE(values(L"HKCU"));
        }
        const settled::FailingCall failing(call);
        EXPECT_FALSE(keys(L"HKCU"));
    }
    {
        test::MemoryFaults memory;
        memory.Fail(test::Request::allocate, 1);
        EXPECT_FALSE(values(L"HKCU"));
        memory.Fail(test::Request::allocate, 1);
        EXPECT_FALSE(keys(L"HKCU"));
        EXPECT_EQ(test::MemoryFaults::Live(), 0);
    }
    EXPECT_EQ(names.count, 0u);
    {
        const settled::FailingCall failing("RegEnumValueW", 2);
        EXPECT_TRUE(values(L"HKCU"));
    }
    EXPECT_EQ(names.count, 2u);
    const settled::FailingCall failing("RegEnumKeyExW", 1);
    EXPECT_TRUE(keys(L"HKCU"));
    EXPECT_EQ(names.count, 4u);
}

}  // namespace
