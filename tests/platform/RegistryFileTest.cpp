// The registry that the native build keeps in a file of the user's.
#ifndef _WIN32
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#include "HeadlessSystem.h"

namespace {

namespace fs = std::filesystem;

// A configuration folder of a test's own.
class RegistryFile : public testing::Test {
  protected:
    RegistryFile()
        : folder_(fs::temp_directory_path() /
                  ("registry" + std::to_string(std::random_device{}()))) {
        if (const char* const before = std::getenv("XDG_CONFIG_HOME")) before_ = before;
        setenv("XDG_CONFIG_HOME", folder_.c_str(), 1);
    }
    ~RegistryFile() override {
        headless::FailNoCall();
        if (before_.empty()) {
            unsetenv("XDG_CONFIG_HOME");
        } else {
            setenv("XDG_CONFIG_HOME", before_.c_str(), 1);
        }
        fs::remove_all(folder_);
    }

    static LSTATUS Put(const wchar_t* key, const wchar_t* name, DWORD type, const void* data,
                       DWORD size) {
        HKEY handle = nullptr;
        const LSTATUS made = RegCreateKeyW(HKEY_CURRENT_USER, key, &handle);
        if (made != 0) return made;
        const LSTATUS code =
            RegSetValueExW(handle, name, 0, type, static_cast<const BYTE*>(data), size);
        RegCloseKey(handle);
        return code;
    }
    static LSTATUS Probe(const wchar_t* key) {
        HKEY handle = nullptr;
        const LSTATUS code = RegOpenKeyExW(HKEY_CURRENT_USER, key, 0, KEY_READ, &handle);
        if (code == 0) RegCloseKey(handle);
        return code;
    }
    static std::string Content() {
        std::ifstream stream(headless::RegistryFile(), std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
    void Write(const std::string& content) const {
        fs::create_directories(folder_ / "orlinth");
        std::ofstream(headless::RegistryFile(), std::ios::binary) << content;
    }

    fs::path folder_;
    std::string before_;
};

TEST_F(RegistryFile, LiesInTheUsersConfigurationFolder) {
    EXPECT_EQ(headless::RegistryFile(), (folder_ / "orlinth" / "registry").string());
    const std::string home = std::getenv("HOME") != nullptr ? std::getenv("HOME") : "";
    setenv("HOME", "/some/home", 1);
    setenv("XDG_CONFIG_HOME", "relative", 1);
    EXPECT_EQ(headless::RegistryFile(), "/some/home/.config/orlinth/registry");
    unsetenv("XDG_CONFIG_HOME");
    EXPECT_EQ(headless::RegistryFile(), "/some/home/.config/orlinth/registry");
    unsetenv("HOME");
    EXPECT_EQ(headless::RegistryFile(), "");
    EXPECT_EQ(Put(L"x", L"n", REG_SZ, L"", 0), 5);
    EXPECT_EQ(Probe(L"x"), 2);
    setenv("HOME", home.c_str(), 1);
}

TEST_F(RegistryFile, IsTextWithTheBytesAsTheyAre) {
    EXPECT_EQ(Put(L"Software\\My \u00C4pp", L"two words", REG_SZ, L"h\u00E4", 4), 0);
    EXPECT_EQ(Put(L"Software\\My \u00C4pp", L"", REG_DWORD, "\x01\x02\x03\x04", 4), 0);
    EXPECT_EQ(Put(L"Software\\My \u00C4pp", L"100%\n", REG_BINARY, "", 0), 0);
    EXPECT_EQ(Content(),
              "registry 1\n"
              "key HKEY_CURRENT_USER\n"
              "key HKEY_CURRENT_USER\\Software\n"
              "key HKEY_CURRENT_USER\\Software\\My \xC3\x84pp\n"
              "value 1 6800E4000000 two words\n"
              "value 4 01020304 \n"
              "value 3 - 100%000025%00000A\n"
              "key HKEY_LOCAL_MACHINE\n"
              "end\n");
    EXPECT_EQ(fs::status(headless::RegistryFile()).permissions() & fs::perms::all,
              fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(RegistryFile, WhatWasWrittenByAnotherIsReadAtOnce) {
    EXPECT_EQ(Put(L"k", L"n", REG_DWORD, "\x01\0\0\0", 4), 0);
    EXPECT_EQ(Probe(L"other"), 2);
    Write("registry 1\nkey HKEY_CURRENT_USER\\other\nvalue 4294967295 00FF n\nend\n");
    EXPECT_EQ(Probe(L"other"), 0);
    EXPECT_EQ(Probe(L"k"), 2);
    EXPECT_EQ(Put(L"other", L"m", REG_DWORD, "\x01\0\0\0", 4), 0);
    EXPECT_NE(Content().find("value 4294967295 00FF n\n"), std::string::npos);
}

TEST_F(RegistryFile, ADamagedFileIsToldAndNeverWrittenOver) {
    const char* const damaged[] = {
        "",
        "registry 2\nend\n",
        "registry 1\n",                                       // cut
        "registry 1\nkey HKEY_CURRENT_USER\\a\nvalue 1 68",   // cut
        "registry 1\nkey HKEY_CURRENT_USER\\a\nend\nmore\n",  // more behind the end
        "registry 1\nvalue 1 - n\nend\n",                     // a value without a key
        "registry 1\nkey \nend\n",
        "registry 1\nkey a\\\\b\nend\n",
        "registry 1\nkey a\nvalue x - n\nend\n",
        "registry 1\nkey a\nvalue 1 6 n\nend\n",
        "registry 1\nkey a\nvalue 1 6G n\nend\n",
        "registry 1\nkey a\nvalue 1  n\nend\n",
        "registry 1\nkey a\nvalue 1\nend\n",
        "registry 1\nkey a\nvalue 99999999999 - n\nend\n",
        "registry 1\nkey a\nvalue 1 - n\nvalue 1 - N\nend\n",  // one name twice
        "registry 1\nkey a%00\nend\n",
        "registry 1\nkey a%00G000\nend\n",
        "registry 1\nsomething\nend\n",
    };
    for (const char* content : damaged) {
        Write(content);
        EXPECT_EQ(Probe(L"a"), 1009) << content;
        EXPECT_EQ(Put(L"a", L"n", REG_DWORD, "\x01\0\0\0", 4), 1009) << content;
        EXPECT_EQ(Content(), content);
    }
    Write("registry 1\nend\n");
    EXPECT_EQ(Put(L"a", L"n", REG_DWORD, "\x01\0\0\0", 4), 0);
}

TEST_F(RegistryFile, AFailedSaveLeavesTheOldFileAndNothingBesideIt) {
    EXPECT_EQ(Put(L"k", L"n", REG_DWORD, "\x01\0\0\0", 4), 0);
    const std::string before = Content();
    headless::FailCall("registry file", 1, ERROR_DISK_FULL);
    EXPECT_EQ(Put(L"k", L"n", REG_DWORD, "\x02\0\0\0", 4), 112);
    EXPECT_EQ(Content(), before);
    headless::FailNoCall();
    // The place of the new file is taken by a folder.
    fs::create_directory(headless::RegistryFile() + "." + std::to_string(getpid()));
    EXPECT_EQ(Put(L"k", L"n", REG_DWORD, "\x03\0\0\0", 4), 5);
    EXPECT_EQ(Content(), before);
    fs::remove(headless::RegistryFile() + "." + std::to_string(getpid()));
    EXPECT_EQ(std::distance(fs::directory_iterator(folder_ / "orlinth"), {}), 1);
    EXPECT_EQ(Put(L"k", L"n", REG_DWORD, "\x03\0\0\0", 4), 0);
}

TEST_F(RegistryFile, AFolderThatCannotBeMadeRefusesWriting) {
    std::ofstream(folder_.string()) << "a file in its place";
    EXPECT_NE(Put(L"k", L"n", REG_DWORD, "\x01\0\0\0", 4), 0);
    EXPECT_EQ(Probe(L"k"), 2);
    fs::remove(folder_);
    EXPECT_EQ(Put(L"k", L"n", REG_DWORD, "\x01\0\0\0", 4), 0);
}

TEST_F(RegistryFile, CharactersBeyond16BitsAreTwoUnits) {
    const wchar_t text[] = {L'a', static_cast<wchar_t>(0x1F600), L'b', 0};
    EXPECT_EQ(Put(L"k", L"n", REG_SZ, text, 8), 0);
    EXPECT_NE(Content().find("value 1 61003DD800DE62000000 n\n"), std::string::npos);
    HKEY key = nullptr;
    ASSERT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, L"k", 0, KEY_READ, &key), 0);
    wchar_t read[5] = {9, 9, 9, 9, 9};
    DWORD size = 10;
    EXPECT_EQ(RegQueryValueExW(key, L"n", nullptr, nullptr, reinterpret_cast<BYTE*>(read), &size),
              0);
    EXPECT_EQ(size, 10u);
    EXPECT_EQ(std::wstring(read), text);
    RegCloseKey(key);
}

TEST_F(RegistryFile, WhatTheMachineTellsIsReadOnlyAndNotKept) {
    const wchar_t* const processor = L"hardware\\Description\\System\\CentralProcessor\\0";
    HKEY key = nullptr;
    EXPECT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, processor, 0, KEY_READ, &key), 0);
    RegCloseKey(key);
    EXPECT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, processor, 0, KEY_ALL_ACCESS, &key), 5);
    EXPECT_EQ(RegCreateKeyW(HKEY_LOCAL_MACHINE, L"HARDWARE\\new", &key), 5);
    EXPECT_EQ(Put(L"k", L"n", REG_DWORD, "\x01\0\0\0", 4), 0);
    EXPECT_EQ(Content().find("HARDWARE"), std::string::npos);
}

}  // namespace
#endif
