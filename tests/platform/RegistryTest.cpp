// The registry's calls as both interfaces answer them. Natively in a file of the test's own.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include <windows.h>

namespace {

class Registry : public testing::Test {
  protected:
    Registry() : name_(L"Software\\PlatformTest" + std::to_wstring(GetCurrentProcessId())) {
#ifndef _WIN32
        folder_ = std::filesystem::temp_directory_path() /
                  ("registry test " + std::to_string(GetCurrentProcessId()));
        setenv("XDG_CONFIG_HOME", folder_.c_str(), 1);
#endif
        EXPECT_EQ(RegCreateKeyW(HKEY_CURRENT_USER, name_.c_str(), &key_), 0);
    }
    ~Registry() override {
        RegCloseKey(key_);
        RegDeleteTreeW(HKEY_CURRENT_USER, name_.c_str());
#ifndef _WIN32
        unsetenv("XDG_CONFIG_HOME");
        std::filesystem::remove_all(folder_);
#endif
    }
    HKEY Open(REGSAM access) const {
        HKEY key = nullptr;
        EXPECT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, name_.c_str(), 0, access, &key), 0);
        return key;
    }

    std::wstring name_;
    HKEY key_ = nullptr;
#ifndef _WIN32
    std::filesystem::path folder_;
#endif
};

const BYTE* Bytes(const void* data) {
    return static_cast<const BYTE*>(data);
}

TEST_F(Registry, ASmallBufferGetsTheSizeItNeeds) {
    EXPECT_EQ(RegSetValueExW(key_, L"n", 0, REG_SZ, Bytes(L"abcdefgh"), 16), 0);
    wchar_t buffer[20] = {};
    DWORD size = 10;
    DWORD type = 0;
    EXPECT_EQ(RegQueryValueExW(key_, L"n", nullptr, &type, reinterpret_cast<BYTE*>(buffer), &size),
              234);
    EXPECT_EQ(size, 18u);
    EXPECT_EQ(RegQueryValueExW(key_, L"N", nullptr, &type, reinterpret_cast<BYTE*>(buffer), &size),
              0);
    EXPECT_EQ(type, REG_SZ);
    EXPECT_EQ(std::wstring(buffer), L"abcdefgh");
    EXPECT_EQ(RegQueryValueExW(key_, L"n", nullptr, nullptr, nullptr, nullptr), 0);
}

TEST_F(Registry, AccessIsWhatTheKeyWasOpenedFor) {
    const HKEY reader = Open(0x20019);
    EXPECT_EQ(RegSetValueExW(reader, L"n", 0, REG_DWORD, Bytes("\1\0\0\0"), 4), 5);
    EXPECT_EQ(RegDeleteValueW(reader, L"n"), 5);
    RegCloseKey(reader);
    const HKEY setter = Open(2);
    EXPECT_EQ(RegSetValueExW(setter, L"n", 0, REG_DWORD, Bytes("\1\0\0\0"), 4), 0);
    DWORD size = 0;
    EXPECT_EQ(RegQueryValueExW(setter, L"n", nullptr, nullptr, nullptr, &size), 5);
    EXPECT_EQ(RegDeleteValueW(setter, L"n"), 0);
    EXPECT_EQ(RegDeleteValueW(setter, L"n"), 2);
    RegCloseKey(setter);
}

TEST_F(Registry, NamesAreEnumeratedWithTheirLengths) {
    HKEY below = nullptr;
    EXPECT_EQ(
        RegCreateKeyExW(key_, L"one\\two", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &below, nullptr),
        0);
    RegCloseKey(below);
    EXPECT_EQ(RegSetValueExW(key_, L"value", 0, REG_DWORD, Bytes("\1\0\0\0"), 4), 0);
    DWORD keys = 0;
    DWORD longestKey = 0;
    DWORD values = 0;
    DWORD longestValue = 0;
    DWORD largest = 0;
    EXPECT_EQ(RegQueryInfoKeyW(key_, nullptr, nullptr, nullptr, &keys, &longestKey, nullptr,
                               &values, &longestValue, &largest, nullptr, nullptr),
              0);
    EXPECT_EQ(keys, 1u);
    EXPECT_EQ(longestKey, 3u);
    EXPECT_EQ(values, 1u);
    EXPECT_EQ(longestValue, 5u);
    EXPECT_EQ(largest, 4u);
    wchar_t name[10] = {};
    DWORD size = 5;
    EXPECT_EQ(RegEnumValueW(key_, 0, name, &size, nullptr, nullptr, nullptr, nullptr), 234);
    size = 6;
    EXPECT_EQ(RegEnumValueW(key_, 0, name, &size, nullptr, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(size, 5u);
    EXPECT_EQ(std::wstring(name), L"value");
    size = 10;
    EXPECT_EQ(RegEnumKeyExW(key_, 0, name, &size, nullptr, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(std::wstring(name), L"one");
    EXPECT_EQ(RegEnumKeyExW(key_, 1, name, &size, nullptr, nullptr, nullptr, nullptr), 259);
    EXPECT_EQ(RegEnumValueW(key_, 1, name, &size, nullptr, nullptr, nullptr, nullptr), 259);
}

TEST_F(Registry, ADeletedKeyAnswersNoMore) {
    HKEY below = nullptr;
    EXPECT_EQ(RegCreateKeyW(key_, L"gone", &below), 0);
    EXPECT_EQ(RegDeleteTreeW(key_, L"gone"), 0);
    EXPECT_EQ(RegDeleteTreeW(key_, L"gone"), 2);
    EXPECT_EQ(RegSetValueExW(below, L"n", 0, REG_DWORD, Bytes("\1\0\0\0"), 4), 1018);
    RegCloseKey(below);
}

TEST_F(Registry, WhatIsNoKeyIsRefused) {
    HKEY result = nullptr;
    EXPECT_EQ(RegOpenKeyExW(reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(0x7654)), L"x", 0,
                            KEY_READ, &result),
              6);
    EXPECT_NE(RegOpenKeyExW(HKEY_DYN_DATA, L"x", 0, KEY_READ, &result), 0);
    EXPECT_EQ(RegOpenKeyExW(key_, L"none", 0, KEY_READ, &result), 2);
    EXPECT_EQ(RegOpenKeyExW(key_, nullptr, 0, KEY_READ, &result), 0);
    RegCloseKey(result);
}

}  // namespace
