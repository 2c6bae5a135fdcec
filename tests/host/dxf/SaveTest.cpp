#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <system_error>

#include "host/dxf/Edit.h"
#include "host/dxf/Files.h"
#include "tests/host/dxf/Drawings.h"

#ifndef _WIN32
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace host::dxf {
namespace {

namespace fs = std::filesystem;
using test::entitiesOnly;
using test::insertReal;
using test::readBytes;
using test::writeBytes;

const std::string kDrawing = entitiesOnly("0\nTEXT\n8\nKATU\n10\n1.5\n1\nnimi\n");
const Changes kTurned = {{1, {insertReal(3, 50, 97.5)}}};
const std::string kTurnedBytes = test::replaced(kDrawing, "nimi\n", "nimi\n50\n97.5\n");

// Disarms what it armed.
class Fault {
  public:
    explicit Fault(WriteFault::Step step, std::uint64_t afterBytes = 0) {
        armWriteFault({step, afterBytes});
    }
    Fault(const Fault&) = delete;
    Fault& operator=(const Fault&) = delete;
    ~Fault() { armWriteFault({}); }
};

std::string reasonOfRefusal(const Document& document, const fs::path& target) {
    try {
        save(document, kTurned, target);
    } catch (const WriteError& error) {
        EXPECT_EQ(error.file(), target.u8string());
        EXPECT_EQ(std::string(error.what()),
                  target.u8string() + " was not written: " + error.reason());
        return error.reason();
    }
    return "written";
}

TEST(Save, WritesANewFile) {
    const test::TemporaryFolder folder;
    save(*test::parse(kDrawing), kTurned, folder / "out.dxf");
    EXPECT_EQ(readBytes(folder / "out.dxf"), kTurnedBytes);
    EXPECT_EQ(folder.count(), 1);
}

TEST(Save, UnchangedDrawingsAreSavedByteForByte) {
    const test::TemporaryFolder folder;
    for (const auto& path : test::drawingsOf(test::dataFolder() / "releases")) {
        save(*Document::open(path), {}, folder / "out.dxf");
        EXPECT_EQ(readBytes(folder / "out.dxf"), readBytes(path)) << path;
    }
}

TEST(Save, TakesThePlaceOfAnExistingFile) {
    const test::TemporaryFolder folder;
    writeBytes(folder / "out.dxf", "longer than what follows it: " + kDrawing);
    save(*test::parse(kDrawing), {}, folder / "out.dxf");
    EXPECT_EQ(readBytes(folder / "out.dxf"), kDrawing);
    EXPECT_EQ(folder.count(), 1);
}

TEST(Save, ADrawingMayBeSavedOverItself) {
    const test::TemporaryFolder folder;
    writeBytes(folder / "same.dxf", kDrawing);
    const auto document = Document::open(folder / "same.dxf");
    save(*document, kTurned, folder / "same.dxf");
    EXPECT_EQ(readBytes(folder / "same.dxf"), kTurnedBytes);
    EXPECT_EQ(document->bytes(), kDrawing);  // what was read stays
    save(*document, {}, folder / "same.dxf");
    EXPECT_EQ(readBytes(folder / "same.dxf"), kDrawing);
}

TEST(Save, NamesWithFinnishLettersAndBlanksAreWritten) {
    const test::TemporaryFolder folder;
    fs::create_directories(folder / "Työt ja kartat");
    const auto path = folder / "Työt ja kartat/Hämeentie Åbo.dxf";
    save(*test::parse(kDrawing), {}, path);
    EXPECT_EQ(readBytes(path), kDrawing);
    bool seen = false;
    for (const auto& entry : fs::directory_iterator(folder / "Työt ja kartat")) {
        seen = seen || entry.path().filename().u8string() == "Hämeentie Åbo.dxf";
    }
    EXPECT_TRUE(seen);
}

// The new file beside the target has a short name of its own, so that it fits where the target's
// fits.
TEST(Save, ALongNameIsWritten) {
#ifdef _WIN32
    const std::size_t length = 120;  // a whole path has room for 260
#else
    const std::size_t length = 251;
#endif
    const test::TemporaryFolder folder;
    const auto path = folder / (std::string(length, 'x') + ".dxf");
    save(*test::parse(kDrawing), {}, path);
    EXPECT_EQ(readBytes(path), kDrawing);
}

TEST(Save, LargeDrawingsAreWrittenInPiecesThatJoin) {
    std::string groups;
    for (int at = 0; groups.size() < 3U << 20; ++at) {
        groups += "0\nPOINT\n8\nKATU\n10\n" + std::to_string(at) + ".5\n20\n2.0\n30\n0.0\n";
    }
    const auto document = test::parse(entitiesOnly(groups));
    Changes changes;
    for (RecordIndex record = 1; record + 2 < document->size(); record += 3) {
        changes[record] = {test::replaceReal(3, 20, record + 0.25), insertReal(4, 39, 1.0)};
    }
    const test::TemporaryFolder folder;
    std::vector<double> told;
    save(*document, changes, folder / "out.dxf", [&told](double done) { told.push_back(done); });
    EXPECT_EQ(readBytes(folder / "out.dxf"), dxf::apply(*document, changes));
    ASSERT_GE(told.size(), 4U);
    EXPECT_TRUE(std::is_sorted(told.begin(), told.end()));
    EXPECT_EQ(told.front(), 0.0);
    EXPECT_EQ(told.back(), 1.0);
}

TEST(Save, AProgressThatThrowsLeavesEverythingAsItWas) {
    struct Cancelled {};
    const test::TemporaryFolder folder;
    writeBytes(folder / "out.dxf", "old");
    EXPECT_THROW(
        save(*test::parse(kDrawing), {}, folder / "out.dxf", [](double) { throw Cancelled(); }),
        Cancelled);
    EXPECT_EQ(readBytes(folder / "out.dxf"), "old");
    EXPECT_EQ(folder.count(), 1);
}

TEST(Save, EditsThatCannotBeLeaveEverythingAsItWas) {
    const test::TemporaryFolder folder;
    EXPECT_THROW(save(*test::parse(kDrawing), {{99, {}}}, folder / "out.dxf"),
                 std::invalid_argument);
    EXPECT_EQ(folder.count(), 0);
}

TEST(Save, AFailureOfAnyStepLeavesTheTargetAsItWas) {
    const auto document = test::parse(kDrawing);
    for (const auto step : {WriteFault::Step::create, WriteFault::Step::write,
                            WriteFault::Step::flush, WriteFault::Step::rename}) {
        for (const std::uint64_t after : {0, 1, 50}) {
            const test::TemporaryFolder folder;
            writeBytes(folder / "out.dxf", "old");
            {
                const Fault fault(step, after);
                EXPECT_NE(reasonOfRefusal(*document, folder / "out.dxf"), "written");
            }
            EXPECT_EQ(readBytes(folder / "out.dxf"), "old");
            EXPECT_EQ(folder.count(), 1);
        }
    }
}

TEST(Save, AFailureLeavesNoFileWhereNoneWas) {
    const test::TemporaryFolder folder;
    {
        const Fault fault(WriteFault::Step::write, 10);
        EXPECT_NE(
            reasonOfRefusal(*test::parse(kDrawing), folder / "out.dxf").find("writing failed"),
            std::string::npos);
    }
    EXPECT_EQ(folder.count(), 0);
    EXPECT_EQ(reasonOfRefusal(*test::parse(kDrawing), folder / "out.dxf"), "written");
}

TEST(Save, AFolderIsNoTarget) {
    const test::TemporaryFolder folder;
    EXPECT_EQ(reasonOfRefusal(*test::parse(kDrawing), folder.path()), "it is a folder");
    EXPECT_EQ(folder.count(), 0);
}

TEST(Save, APathWithoutANameIsNoTarget) {
    const test::TemporaryFolder folder;
    EXPECT_EQ(reasonOfRefusal(*test::parse(kDrawing), folder.path() / "no" / ""),
              "it names no file");
    EXPECT_EQ(reasonOfRefusal(*test::parse(kDrawing), fs::path()), "it names no file");
}

TEST(Save, AMissingFolderIsNotMade) {
    const test::TemporaryFolder folder;
    EXPECT_NE(reasonOfRefusal(*test::parse(kDrawing), folder / "missing/out.dxf")
                  .find("no new file can be made beside it"),
              std::string::npos);
    EXPECT_EQ(folder.count(), 0);
}

TEST(Save, AFileForAFolderIsNoFolder) {
    const test::TemporaryFolder folder;
    writeBytes(folder / "file", "x");
    EXPECT_NE(reasonOfRefusal(*test::parse(kDrawing), folder / "file/out.dxf"), "written");
    EXPECT_EQ(readBytes(folder / "file"), "x");
}

TEST(Save, AReadOnlyTargetIsLeftAlone) {
    const test::TemporaryFolder folder;
    const auto path = folder / "out.dxf";
    writeBytes(path, "old");
    const auto write = fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
    fs::permissions(path, write, fs::perm_options::remove);
    EXPECT_EQ(reasonOfRefusal(*test::parse(kDrawing), path), "it is read-only");
    EXPECT_EQ(readBytes(path), "old");
    EXPECT_EQ(folder.count(), 1);
    fs::permissions(path, fs::perms::owner_write, fs::perm_options::add);
}

#ifndef _WIN32  // links, modes, limits and devices as POSIX has them

TEST(Save, ThePermissionsOfTheTargetAreKept) {
    const test::TemporaryFolder folder;
    writeBytes(folder / "out.dxf", "old");
    ::chmod((folder / "out.dxf").c_str(), 0640);
    save(*test::parse(kDrawing), {}, folder / "out.dxf");
    struct stat status;
    ASSERT_EQ(::stat((folder / "out.dxf").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0640U);
}

TEST(Save, ANewFileHasThePermissionsOfNewFiles) {
    const test::TemporaryFolder folder;
    const mode_t old = ::umask(0027);
    save(*test::parse(kDrawing), {}, folder / "out.dxf");
    ::umask(old);
    struct stat status;
    ASSERT_EQ(::stat((folder / "out.dxf").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0640U);
}

TEST(Save, ASymbolicLinkStaysAndTheFileBehindItIsReplaced) {
    const test::TemporaryFolder folder;
    fs::create_directories(folder / "elsewhere");
    writeBytes(folder / "elsewhere/real.dxf", "old");
    fs::create_symlink("elsewhere/real.dxf", folder / "link.dxf");
    fs::create_symlink("link.dxf", folder / "link of link.dxf");
    save(*test::parse(kDrawing), {}, folder / "link of link.dxf");
    EXPECT_TRUE(fs::is_symlink(folder / "link of link.dxf"));
    EXPECT_TRUE(fs::is_symlink(folder / "link.dxf"));
    EXPECT_EQ(readBytes(folder / "elsewhere/real.dxf"), kDrawing);
    EXPECT_EQ(folder.count(), 3);
}

TEST(Save, ALinkToNothingMakesTheFileItNames) {
    const test::TemporaryFolder folder;
    fs::create_symlink("real.dxf", folder / "link.dxf");
    save(*test::parse(kDrawing), {}, folder / "link.dxf");
    EXPECT_TRUE(fs::is_symlink(folder / "link.dxf"));
    EXPECT_EQ(readBytes(folder / "real.dxf"), kDrawing);
}

TEST(Save, LinksInACircleAreRefused) {
    const test::TemporaryFolder folder;
    fs::create_symlink("b.dxf", folder / "a.dxf");
    fs::create_symlink("a.dxf", folder / "b.dxf");
    EXPECT_EQ(reasonOfRefusal(*test::parse(kDrawing), folder / "a.dxf"),
              "its symbolic links lead in a circle");
    EXPECT_EQ(folder.count(), 2);
}

TEST(Save, DevicesAndPipesAreNoTargets) {
    EXPECT_EQ(reasonOfRefusal(*test::parse(kDrawing), "/dev/full"), "it is no plain file");
    const test::TemporaryFolder folder;
    ASSERT_EQ(::mkfifo((folder / "pipe.dxf").c_str(), 0600), 0);
    EXPECT_EQ(reasonOfRefusal(*test::parse(kDrawing), folder / "pipe.dxf"), "it is no plain file");
}

// The system itself refuses to write on: what a full disk does, without needing one.
TEST(Save, WritingThatTheSystemStopsLeavesTheTargetAsItWas) {
    const test::TemporaryFolder folder;
    writeBytes(folder / "out.dxf", "old");
    std::string groups;
    while (groups.size() < 2U << 20) groups += "0\nPOINT\n8\nKATU\n";
    const auto document = test::parse(entitiesOnly(groups));
    struct rlimit old;
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &old), 0);
    struct rlimit small = old;
    small.rlim_cur = 1U << 20;
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
    std::string reason;
    try {
        save(*document, {}, folder / "out.dxf");
    } catch (const WriteError& error) {
        reason = error.reason();
    }
    ::setrlimit(RLIMIT_FSIZE, &old);
    std::signal(SIGXFSZ, handler);
    EXPECT_EQ(reason, "writing failed: File too large");
    EXPECT_EQ(readBytes(folder / "out.dxf"), "old");
    EXPECT_EQ(folder.count(), 1);
}

TEST(Save, AFolderThatTakesNoFilesIsNoPlaceForATarget) {
    // A folder of the kernel, into which even the administrator can't write.
    EXPECT_NE(reasonOfRefusal(*test::parse(kDrawing), "/proc/out.dxf"), "written");
}

TEST(Save, APipeCanBeReadFrom) {
    const test::TemporaryFolder folder;
    const auto pipe = folder / "pipe.dxf";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    std::string groups;
    while (groups.size() < 300000) groups += "0\nPOINT\n8\nKATU\n";
    const std::string bytes = entitiesOnly(groups);
    const pid_t child = ::fork();
    if (child == 0) {
        writeBytes(pipe, bytes);
        ::_exit(0);
    }
    EXPECT_EQ(Document::open(pipe)->bytes(), bytes);
}

#endif

}  // namespace
}  // namespace host::dxf
