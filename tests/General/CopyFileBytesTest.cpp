// Every stage at which a copy can end, with the code it gives and what is left behind.
#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <random>

#include "General/Files.h"
#include "tests/General/RunTimeScript.h"
#include "tests/General/Settled.h"
#include "tests/General/TestFolder.h"

using namespace TamLib;
using test::Bytes;
using test::Folder;
using test::WriteBytes;

namespace {

// Two names in a folder.
struct Pair : Folder {
    std::wstring source = Wide(L"source \u00E4");
    std::wstring target = Wide(L"target \u00F6");

    std::int32_t Copy() { return CopyFileBytes(source.c_str(), target.c_str(), &copied); }
    void Fill(const std::string& bytes) const { WriteBytes(test::Path(source), bytes); }
    std::string Arrived() const { return Bytes(test::Path(target)); }
    bool HasTarget() const { return test::fs::exists(test::Path(target)); }

    std::int64_t copied = -1;
};

std::string RandomBytes(std::size_t size) {
    std::mt19937 random(static_cast<unsigned>(size));
    std::string bytes(size, '\0');
    for (char& c : bytes) c = static_cast<char>(random());
    return bytes;
}

TEST(CopyFileBytes, BytesArriveAsTheyAreAroundTheSizeOfABlock) {
    for (const std::size_t size : {0u, 1u, 1023u, 1024u, 1025u, 2048u, 5000u, 300000u}) {
        Pair files;
        const std::string bytes = RandomBytes(size);
        files.Fill(bytes);
        EXPECT_EQ(files.Copy(), 0);
        EXPECT_EQ(files.copied, static_cast<std::int64_t>(size));
        EXPECT_TRUE(files.HasTarget());
        EXPECT_EQ(files.Arrived(), bytes);
    }
}

TEST(CopyFileBytes, LineEndsAndControlCharactersAreBytes) {
    Pair files;
    const std::string bytes = std::string(
        "a\nb\r\nc\x1A"
        "d\0e",
        10);
    files.Fill(bytes);
    EXPECT_EQ(files.Copy(), 0);
    EXPECT_EQ(files.Arrived(), bytes);
}

TEST(CopyFileBytes, AnExistingTargetIsReplacedWhole) {
    Pair files;
    files.Fill("new");
    WriteBytes(test::Path(files.target), "older and longer");
    EXPECT_EQ(files.Copy(), 0);
    EXPECT_EQ(files.Arrived(), "new");
    EXPECT_EQ(CopyFileBytes(files.source.c_str(), files.target.c_str()), 0);  // without a count
}

TEST(CopyFileBytes, OntoItselfIsRefusedBeforeAnythingIsOpened) {
    Pair files;
    files.Fill("precious");
    files.target = files.source;
    EXPECT_EQ(files.Copy(), 0x4000);
    EXPECT_EQ(files.copied, 0);
    EXPECT_EQ(files.Arrived(), "precious");
    test::fs::create_hard_link(test::Path(files.source), files / "link");
    files.target = files.Wide(L"link");
    EXPECT_EQ(files.Copy(), 0x4000);
    EXPECT_EQ(files.Arrived(), "precious");
}

TEST(CopyFileBytes, WhenItCannotBeToldWhetherItIsTheSameTheCopyGoesOn) {
    Pair files;
    files.Fill("new");
    WriteBytes(test::Path(files.target), "old");
    const settled::FailingCall failing("GetFileInformationByHandle");
    EXPECT_EQ(files.Copy(), 0);
    EXPECT_EQ(files.Arrived(), "new");
}

TEST(CopyFileBytes, AMissingSourceIsStage0x400WithTheErrorOfTheRunTime) {
    Pair files;
    EXPECT_EQ(files.Copy(), ENOENT | 0x400);
    EXPECT_EQ(files.copied, 0);
    EXPECT_FALSE(files.HasTarget());
    WriteBytes(test::Path(files.target), "kept");
    EXPECT_EQ(files.Copy(), ENOENT | 0x400);
    EXPECT_EQ(files.Arrived(), "kept");
    EXPECT_EQ(CopyFileBytes(nullptr, files.target.c_str()), ENOENT | 0x400);
    EXPECT_EQ(CopyFileBytes(L"", files.target.c_str()), ENOENT | 0x400);
    EXPECT_EQ(files.Arrived(), "kept");
}

TEST(CopyFileBytes, ATargetThatCannotBeMadeIsStage0x800) {
    Pair files;
    files.Fill("x");
    files.target = files.Wide(L"no folder\\target");
    EXPECT_EQ(files.Copy(), ENOENT | 0x800);
    EXPECT_EQ(files.copied, 0);
    EXPECT_EQ(CopyFileBytes(files.source.c_str(), nullptr), ENOENT | 0x800);
    EXPECT_EQ(CopyFileBytes(files.source.c_str(), L""), ENOENT | 0x800);
    files.target = files.Wide();  // a folder
    const std::int32_t code = files.Copy();
    EXPECT_EQ(code & ~0xFF, 0x800);
    EXPECT_NE(code & 0xFF, 0);
}

TEST(CopyFileBytes, ATargetThatAnotherReadsWithoutSharingWritesIsStage0x800) {
    Pair files;
    files.Fill("x");
    WriteBytes(test::Path(files.target), "kept");
    const HANDLE reader = CreateFileW(files.target.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                      OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(reader, INVALID_HANDLE_VALUE);
    EXPECT_EQ(files.Copy(), EACCES | 0x800);
    CloseHandle(reader);
    EXPECT_EQ(files.Arrived(), "kept");
    EXPECT_EQ(files.Copy(), 0);
}

TEST(CopyFileBytes, AReadThatFailsAtOnceIsStage0x1000) {
    Pair files;
    files.Fill("abc");
    run_time::Script script;
    script.read = [](void*, std::size_t, std::FILE*) { return std::size_t{0}; };
    script.error = [](std::FILE*) { return 0x21; };
    const run_time::Following following(script);
    EXPECT_EQ(files.Copy(), 0x1021);
    EXPECT_EQ(files.copied, 0);
    EXPECT_TRUE(files.HasTarget());
}

TEST(CopyFileBytes, AReadThatFailsLaterLeavesWhatCameBefore) {
    Pair files;
    files.Fill(RandomBytes(5000));
    int reads = 0;
    run_time::Script script;
    script.read = [&reads](void* block, std::size_t bytes, std::FILE* stream) {
        return ++reads <= 2 ? run_time::Read(block, bytes, stream) : 0;
    };
    script.error = [](std::FILE*) { return 1; };
    {
        const run_time::Following following(script);
        EXPECT_EQ(files.Copy(), 0x1001);
    }
    EXPECT_EQ(files.copied, 2048);
    EXPECT_EQ(files.Arrived(), RandomBytes(5000).substr(0, 2048));
}

TEST(CopyFileBytes, AWriteThatFailsWhileTheSourceHasFailedIsStage0x2000) {
    Pair files;
    files.Fill("abc");
    run_time::Script script;
    script.write = [](const void*, std::size_t, std::FILE*) { return std::size_t{0}; };
    script.error = [](std::FILE*) { return 4; };
    {
        const run_time::Following following(script);
        EXPECT_EQ(files.Copy(), 0x2004);
    }
    EXPECT_EQ(files.copied, 0);
    EXPECT_EQ(files.Arrived(), "");
}

TEST(CopyFileBytes, TheErrorAskedForIsAlwaysThatOfTheSource) {
    Pair files;
    files.Fill("abc");
    std::FILE* source = nullptr;
    run_time::Script script;
    script.read = [&source](void* block, std::size_t bytes, std::FILE* stream) {
        source = stream;
        return run_time::Read(block, bytes, stream);
    };
    script.write = [](const void*, std::size_t, std::FILE*) { return std::size_t{0}; };
    int asked = 0;
    script.error = [&](std::FILE* stream) {
        EXPECT_EQ(stream, source);
        return ++asked < 50 ? 0 : 2;  // until then the target refuses and is tried again
    };
    const run_time::Following following(script);
    EXPECT_EQ(files.Copy(), 0x2002);
    EXPECT_EQ(asked, 50);
}

TEST(CopyFileBytes, WritesThatTakePartOfABlockAreRepeatedUntilAllIsOut) {
    Pair files;
    const std::string bytes = RandomBytes(3000);
    files.Fill(bytes);
    int writes = 0;
    run_time::Script script;
    script.write = [&writes](const void* block, std::size_t size, std::FILE* stream) {
        if (++writes % 3 == 0) return std::size_t{0};
        return run_time::Write(block, std::min<std::size_t>(size, 100), stream);
    };
    {
        const run_time::Following following(script);
        EXPECT_EQ(files.Copy(), 0);
    }
    EXPECT_EQ(files.copied, 3000);
    EXPECT_EQ(files.Arrived(), bytes);
    EXPECT_GT(writes, 30);
}

TEST(CopyFileBytes, BlocksHave1024Bytes) {
    Pair files;
    files.Fill(RandomBytes(2500));
    std::vector<std::size_t> asked;
    std::vector<std::size_t> written;
    run_time::Script script;
    script.read = [&asked](void* block, std::size_t bytes, std::FILE* stream) {
        asked.push_back(bytes);
        return run_time::Read(block, bytes, stream);
    };
    script.write = [&written](const void* block, std::size_t bytes, std::FILE* stream) {
        written.push_back(bytes);
        return run_time::Write(block, bytes, stream);
    };
    const run_time::Following following(script);
    EXPECT_EQ(files.Copy(), 0);
    EXPECT_EQ(asked, (std::vector<std::size_t>{1024, 1024, 1024, 1024}));  // the last finds the end
    EXPECT_EQ(written, (std::vector<std::size_t>{1024, 1024, 452}));
}

#ifndef _WIN32
TEST(CopyFileBytes, NativelyAFolderOpensAndItsReadFails) {
    Pair files;
    files.source = files.Wide();
    const std::int32_t code = files.Copy();
    EXPECT_EQ(code & ~0xFF, 0x1000);
    EXPECT_NE(code & 0xFF, 0);
}
#endif

}  // namespace
