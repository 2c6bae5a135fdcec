// The file form of LineArray: bytes, round trips, cut files, foreign markers, wrong counts.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "GeomEnts/Box.h"
#include "GeomStructs/LineArray.h"

namespace TamLib {
namespace {

class LineArrayFile : public ::testing::Test {
  protected:
    void SetUp() override {
        folder_ = std::filesystem::temp_directory_path() /
                  ("line_array_file_" + std::to_string(reinterpret_cast<std::uintptr_t>(this)));
        std::filesystem::create_directories(folder_);
        path_ = folder_ / L"lines.bin";
    }
    void TearDown() override { std::filesystem::remove_all(folder_); }

    std::string Bytes() const {
        std::ifstream file(path_, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }
    void Store(const std::string& bytes) const { std::ofstream(path_, std::ios::binary) << bytes; }
    int Save(const LineArray& lines, int limit, bool withBox) const {
        return lines.SaveToFile(path_.wstring().c_str(), limit, withBox);
    }
    int Load(LineArray& lines, int limit = -1, Box* box = nullptr) const {
        return lines.LoadFromFile(path_.wstring().c_str(), limit, box);
    }
    // What is there before a load that must leave it.
    static LineArray Held() {
        LineArray lines;
        lines.Append(Line({7, 7, 7}, {8, 8, 8}));
        return lines;
    }
    static void ExpectHeld(const LineArray& lines) {
        ASSERT_EQ(1u, lines.count);
        EXPECT_EQ(7.0, lines[0].x1);
        EXPECT_EQ(8.0, lines[0].z2);
    }

    std::filesystem::path folder_, path_;
};

LineArray TwoLines() {
    LineArray lines;
    lines.Append(Line({1, 2, 3}, {4, 5, 6}));
    lines.Append(Line({-1, 0, 0.5}, {2, 2, 2}));
    return lines;
}

std::string Number(std::int32_t value) {
    return {reinterpret_cast<const char*>(&value), 4};
}

const std::string kFirst(
    "\0\0\0\0\0\0\xF0\x3F\0\0\0\0\0\0\0\x40\0\0\0\0\0\0\x08\x40"
    "\0\0\0\0\0\0\x10\x40\0\0\0\0\0\0\x14\x40\0\0\0\0\0\0\x18\x40",
    48);
const std::string kSecond(
    "\0\0\0\0\0\0\xF0\xBF\0\0\0\0\0\0\0\0\0\0\0\0\0\0\xE0\x3F"
    "\0\0\0\0\0\0\0\x40\0\0\0\0\0\0\0\x40\0\0\0\0\0\0\0\x40",
    48);
// xmax 4, xmin -1, ymax 5, ymin 0, zmax 6, zmin 0.5.
const std::string kBox("\0\0\x80\x40\0\0\x80\xBF\0\0\xA0\x40\0\0\0\0\0\0\xC0\x40\0\0\0\x3F", 24);

TEST_F(LineArrayFile, HoldsCountMarkerAndLines) {
    EXPECT_EQ(2, Save(TwoLines(), -1, false));
    EXPECT_EQ(std::string("\2\0\0\0+", 5) + kFirst + kSecond, Bytes());
}

TEST_F(LineArrayFile, HoldsTheBoxWithTheMaximumOfEachAxisFirst) {
    EXPECT_EQ(2, Save(TwoLines(), -1, true));
    EXPECT_EQ(std::string("\2\0\0\0,", 5) + kBox + kFirst + kSecond, Bytes());
}

TEST_F(LineArrayFile, AnEmptyArrayIsItsHeader) {
    LineArray none;
    EXPECT_EQ(0, Save(none, -1, false));
    EXPECT_EQ(std::string("\0\0\0\0+", 5), Bytes());
    EXPECT_EQ(0, Save(none, -1, true));
    ASSERT_EQ(29u, Bytes().size());
    // An empty box: the maximum is the smallest float.
    EXPECT_EQ(std::string("\xFF\xFF\x7F\xFF\xFF\xFF\x7F\x7F", 8), Bytes().substr(5, 8));
}

TEST_F(LineArrayFile, ALimitCapsTheLinesAndNotTheBox) {
    EXPECT_EQ(1, Save(TwoLines(), 1, true));
    EXPECT_EQ(std::string("\1\0\0\0,", 5) + kBox + kFirst, Bytes());
    EXPECT_EQ(0, Save(TwoLines(), 0, false));
    EXPECT_EQ(std::string("\0\0\0\0+", 5), Bytes());
    EXPECT_EQ(2, Save(TwoLines(), 99, false));
}

TEST_F(LineArrayFile, ReadsBackWhatItWrote) {
    LineArray lines;
    for (int i = 0; i < 1000; ++i)
        lines.Append(Line({25e6 + i / 7.0, 7e6, -0.0}, {i * 1e-310, 1e300, i * 1.0}));
    ASSERT_EQ(1000, Save(lines, -1, true));
    LineArray read = Held();
    Box box;
    ASSERT_EQ(1000, Load(read, -1, &box));
    ASSERT_EQ(1000u, read.count);
    for (std::uint32_t i = 0; i < 1000; ++i) {
        EXPECT_EQ(0, std::memcmp(&lines.data[i].x1, &read.data[i].x1, 48));
        EXPECT_EQ(1, read.data[i].valid);
        EXPECT_GE(read.data[i].Length(), 0.0);  // has its table
    }
    EXPECT_EQ(static_cast<float>(25e6 + 999 / 7.0), box.xMax);
    EXPECT_EQ(0.0f, box.xMin);
    EXPECT_EQ(999.0f, box.zMax);
}

TEST_F(LineArrayFile, ALimitCapsWhatIsRead) {
    Save(TwoLines(), -1, false);
    LineArray lines;
    EXPECT_EQ(1, Load(lines, 1));
    ASSERT_EQ(1u, lines.count);
    EXPECT_EQ(6.0, lines[0].z2);
    EXPECT_EQ(0, Load(lines, 0));
    EXPECT_EQ(0u, lines.count);
    EXPECT_EQ(2, Load(lines, 99));
}

TEST_F(LineArrayFile, WithoutABoxTheBoxAskedForIsEmpty) {
    Save(TwoLines(), -1, false);
    LineArray lines;
    Box box(1., 2., 3., 4., 5., 6.);
    EXPECT_EQ(2, Load(lines, -1, &box));
    const Box empty;
    EXPECT_EQ(0, std::memcmp(&empty, &box, sizeof box));
    // And one that is stored need not be asked for.
    Save(TwoLines(), -1, true);
    EXPECT_EQ(2, Load(lines));
    EXPECT_EQ(2.0, lines[1].z2);
}

TEST_F(LineArrayFile, ACountOfZeroEmptiesTheArray) {
    Store(std::string("\0\0\0\0+", 5));
    LineArray lines = Held();
    EXPECT_EQ(0, Load(lines));
    EXPECT_EQ(0u, lines.count);
}

TEST_F(LineArrayFile, AForeignMarkerGivesMinusThreeAndLeavesTheArray) {
    for (const char marker : {'-', '.', '*', '\0', '\xFF', 'a'}) {
        Store(Number(1) + marker + kFirst);
        LineArray lines = Held();
        Box box(1., 2., 3., 4., 5., 6.);
        EXPECT_EQ(-3, Load(lines, -1, &box));
        ExpectHeld(lines);
        EXPECT_EQ(1.0f, box.xMin);
    }
}

TEST_F(LineArrayFile, CutAtEveryByteItGivesWhatIsWhole) {
    const std::string whole = Number(2) + "," + kBox + kFirst + kSecond;
    for (std::size_t size = 0; size < whole.size(); ++size) {
        Store(whole.substr(0, size));
        LineArray lines = Held();
        const int result = Load(lines);
        if (size < 29) {
            EXPECT_EQ(-1, result) << size;
            ExpectHeld(lines);
        } else {
            const int expected = size < 77 ? 0 : 1;
            EXPECT_EQ(expected, result) << size;
            EXPECT_EQ(static_cast<std::uint32_t>(expected), lines.count) << size;
        }
    }
}

TEST_F(LineArrayFile, ACountBeyondTheFileGivesTheLinesThatAreThere) {
    for (const std::int32_t count : {3, 1000000, 2147483647}) {
        Store(Number(count) + "+" + kFirst + kSecond);
        LineArray lines;
        EXPECT_EQ(2, Load(lines));
        EXPECT_EQ(2u, lines.count);
        EXPECT_LE(lines.capacity, 100000u);  // and takes no memory for the others
    }
}

TEST_F(LineArrayFile, ANegativeCountIsNone) {
    for (const std::int32_t count : {-1, -2147483647 - 1}) {
        Store(Number(count) + "+" + kFirst);
        LineArray lines = Held();
        EXPECT_EQ(0, Load(lines));
        EXPECT_EQ(0u, lines.count);
    }
}

TEST_F(LineArrayFile, MoreLinesThanAreReadAheadAtOnce) {
    LineArray lines(70000);
    for (int i = 0; i < 70000; ++i) lines.Append(Line({1.0 * i, 0, 0}, {0, 1, 0}));
    ASSERT_EQ(70000, Save(lines, -1, false));
    LineArray read;
    ASSERT_EQ(70000, Load(read));
    EXPECT_EQ(69999.0, read[-1].x1);
    EXPECT_EQ(70000u, read.capacity);
}

TEST_F(LineArrayFile, StreamsFollowOneAnother) {
    std::FILE* const file = std::fopen(path_.string().c_str(), "w+b");
    ASSERT_NE(nullptr, file);
    EXPECT_EQ(2, TwoLines().Save(file, -1, true));
    EXPECT_EQ(1, Held().Save(file, -1, false));
    std::rewind(file);
    LineArray lines;
    EXPECT_EQ(2, lines.Load(file, -1, nullptr));
    EXPECT_EQ(1, lines.Load(file, -1, nullptr));
    ExpectHeld(lines);
    EXPECT_EQ(-1, lines.Load(file, -1, nullptr));
    ExpectHeld(lines);
    std::fclose(file);
}

TEST_F(LineArrayFile, PathsThatCannotBeOpenedGiveMinusOne) {
    LineArray lines = Held();
    EXPECT_EQ(-1, lines.SaveToFile(folder_.wstring().c_str(), -1, false));
    EXPECT_EQ(-1, lines.LoadFromFile((folder_ / L"none.bin").wstring().c_str(), -1, nullptr));
    ExpectHeld(lines);
}

TEST_F(LineArrayFile, AStreamThatTakesNothingGivesTheFirstThingThatFailed) {
    Store("");
    std::FILE* const file = std::fopen(path_.string().c_str(), "rb");
    ASSERT_NE(nullptr, file);
    EXPECT_EQ(-1, TwoLines().Save(file, -1, false));
    std::fclose(file);
}

#ifdef __linux__
TEST_F(LineArrayFile, AFullDiskIsSeen) {
    std::FILE* const file = std::fopen("/dev/full", "wb");
    ASSERT_NE(nullptr, file);
    std::setvbuf(file, nullptr, _IONBF, 0);
    EXPECT_EQ(-1, TwoLines().Save(file, -1, false));
    std::fclose(file);
    // With a buffer the header and a part of the lines fit before it is written out.
    LineArray many(500);
    for (int i = 0; i < 500; ++i) many.Append(Line({1, 2, 3}, {4, 5, 6}));
    std::FILE* const buffered = std::fopen("/dev/full", "wb");
    std::setvbuf(buffered, nullptr, _IOFBF, 4096);
    EXPECT_EQ(85, many.Save(buffered, -1, false));  // 5 + 85 * 48 = 4085
    std::fclose(buffered);
    EXPECT_EQ(-1, TwoLines().SaveToFile(L"/dev/full", -1, false));
}
#endif

}  // namespace
}  // namespace TamLib
