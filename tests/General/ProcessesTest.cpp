// What a second process writes and reads, and what a second module finds.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#ifndef _WIN32
#include <dlfcn.h>
#endif

#include "General/Paths.h"
#include "General/WinUtil.h"
#include "tests/General/TestKey.h"

using namespace TamLib;
using test::Key;
using test::Path;
using test::Std;

namespace {

const std::string binaries = ORLINTH_BIN_DIR;

// Runs the child with quoted words and gives its exit code. Words hold no quotes.
int Child(const std::vector<std::string>& words) {
#ifdef _WIN32
    std::string line = "\"" + binaries + "/GeneralChild.exe\"";
    std::replace(line.begin(), line.end(), '/', '\\');
    for (const std::string& word : words) line += " \"" + word + "\"";
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    if (CreateProcessA(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                       &process) == FALSE)
        return -1;
    DWORD code = 0;
    WaitForSingleObject(process.hProcess, INFINITE);
    GetExitCodeProcess(process.hProcess, &code);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return static_cast<int>(code);
#else
    std::string line = "'" + binaries + "/GeneralChild'";
    for (const std::string& word : words) line += " '" + word + "'";
    const int status = std::system(line.c_str());
    return status == -1 ? -1 : status >> 8;
#endif
}

TEST(Processes, ReadWhatAnotherHasWritten) {
    const Key key;
    EXPECT_EQ(Child({"expect", key.Narrow(), "my name", "from the child"}), 1);
    EXPECT_EQ(Child({"write", key.Narrow(), "my name", "from the child"}), 0);
    EXPECT_EQ(Std(RegistryReadString(L"HKCU", key.Wide().c_str(), L"my name")), L"from the child");
    EXPECT_TRUE(RegistryWriteString(L"HKCU", key.Wide().c_str(), L"my name", L"from the parent"));
    EXPECT_EQ(Child({"expect", key.Narrow(), "my name", "from the parent"}), 0);
    EXPECT_EQ(Child({"write", key.Narrow(), "my name", "again"}), 0);
    EXPECT_EQ(Std(RegistryReadString(L"HKCU", key.Wide().c_str(), L"my name")), L"again");
}

TEST(Processes, WritingAtOnceLoseNothing) {
    const Key key;
    constexpr int count = 60;
    std::vector<std::thread> children;
    std::vector<int> codes(3, -1);
    for (std::size_t i = 0; i < codes.size(); ++i) {
        children.emplace_back([&codes, &key, i] {
            codes[i] = Child({"many", key.Narrow(), std::string(1, static_cast<char>('a' + i)),
                              std::to_string(count)});
        });
    }
    bool own = true;
    for (int i = 0; i < count; ++i) {
        const std::string format = "parent " + std::to_string(i) + "=%d";
        own = RegistryAccess(true, nullptr, HKEY_CURRENT_USER, key.Narrow(), format.c_str(), i) &&
              own;
    }
    for (std::thread& child : children) child.join();
    EXPECT_TRUE(own);
    EXPECT_EQ(codes, std::vector<int>(3, 0));
    Array<StringBase<wchar_t>> names;
    EXPECT_TRUE(RegistryValueNames(L"HKCU", key.Wide().c_str(), names));
    EXPECT_EQ(names.count, 4u * count);
    for (const char* prefix : {"a", "b", "c", "parent "}) {
        for (int i = 0; i < count; ++i) {
            std::int32_t number = -1;
            const std::string format = prefix + std::to_string(i) + "=%d";
            EXPECT_TRUE(RegistryAccess(false, nullptr, HKEY_CURRENT_USER, key.Narrow(),
                                       format.c_str(), &number));
            EXPECT_EQ(number, i);
        }
    }
}

TEST(Modules, AModuleFindsItselfAndTheProgram) {
    using Function = void (*)(wchar_t*, wchar_t*);
    wchar_t module[600] = {};
    wchar_t program[600] = {};
    const std::string file = binaries + "/GeneralModule.module";
#ifdef _WIN32
    const HMODULE loaded =
        LoadLibraryW(Path(std::wstring(file.begin(), file.end())).make_preferred().c_str());
    ASSERT_NE(loaded, nullptr);
    const auto tell =
        reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(loaded, "TellPaths")));
#else
    void* const loaded = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(loaded, nullptr) << dlerror();
    const auto tell = reinterpret_cast<Function>(dlsym(loaded, "TellPaths"));
#endif
    ASSERT_NE(tell, nullptr);
    tell(module, program);
    EXPECT_EQ(Path(module).filename(), "GeneralModule.module");
    EXPECT_TRUE(test::fs::equivalent(Path(module), file));
    EXPECT_EQ(Path(program), Path(Std(ProgramPath())));
    EXPECT_NE(Path(module), Path(Std(ModulePath())));
}

}  // namespace
