// The file form of Line: bytes, round trips, cut files, files that can't be opened.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <string>

#include "GeomEnts/Line.h"

namespace TamLib {
namespace {

class LineFile : public ::testing::Test {
  protected:
    void SetUp() override {
        folder_ = std::filesystem::temp_directory_path() /
                  ("line_file_" + std::to_string(reinterpret_cast<std::uintptr_t>(this)));
        std::filesystem::create_directories(folder_);
        path_ = folder_ / "line.bin";
    }
    void TearDown() override { std::filesystem::remove_all(folder_); }

    std::string Bytes() const {
        std::ifstream file(path_, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }
    void Store(const std::string& bytes) const { std::ofstream(path_, std::ios::binary) << bytes; }

    std::filesystem::path folder_, path_;
};

const Line kLine({1, 2, 3}, {4, 5, 6});

TEST_F(LineFile, HoldsTheEndsOneAfterTheOtherInFortyEightBytes) {
    EXPECT_EQ(1, kLine.Write(path_.wstring().c_str()));
    const char golden[] =
        "\0\0\0\0\0\0\xF0\x3F"
        "\0\0\0\0\0\0\0\x40"
        "\0\0\0\0\0\0\x08\x40"
        "\0\0\0\0\0\0\x10\x40"
        "\0\0\0\0\0\0\x14\x40"
        "\0\0\0\0\0\0\x18\x40";
    EXPECT_EQ(std::string(golden, 48), Bytes());
}

TEST_F(LineFile, ReadsBackWhatItWroteAndIsValid) {
    const Line odd({-0.0, 1e-310, 25496123.456},
                   {std::numeric_limits<double>::infinity(), -7e300, 3});
    ASSERT_EQ(1, odd.Write(path_.wstring().c_str()));
    Line read(false);
    ASSERT_EQ(1, read.Read(path_.wstring().c_str()));
    EXPECT_EQ(1, read.valid);
    EXPECT_EQ(0, std::memcmp(&odd.x1, &read.x1, 48));
}

TEST_F(LineFile, LinesFollowOneAnotherInAStream) {
    std::FILE* file = std::fopen(path_.string().c_str(), "w+b");
    ASSERT_NE(nullptr, file);
    Line second = kLine;
    second.Reverse();
    EXPECT_EQ(1, kLine.Write(file));
    EXPECT_EQ(1, second.Write(file));
    std::rewind(file);
    Line read(false);
    EXPECT_EQ(1, read.Read(file));
    EXPECT_EQ(1.0, read.x1);
    EXPECT_EQ(1, read.Read(file));
    EXPECT_EQ(4.0, read.x1);
    EXPECT_EQ(-1, read.Read(file));
    std::fclose(file);
}

TEST_F(LineFile, CutFilesGiveMinusOneAndStoreWhatStandsBeforeTheCut) {
    ASSERT_EQ(1, kLine.Write(path_.wstring().c_str()));
    const std::string whole = Bytes();
    for (std::size_t length = 0; length < 48; ++length) {
        Store(whole.substr(0, length));
        Line read({9, 9, 9}, {9, 9, 9});
        read.valid = 0;
        EXPECT_EQ(-1, read.Read(path_.wstring().c_str())) << length;
        EXPECT_EQ(length < 8 ? 9.0 : 1.0, read.x1) << length;
        EXPECT_EQ(length < 24 ? 9.0 : 3.0, read.z1) << length;
        EXPECT_EQ(9.0, read.z2) << length;
        EXPECT_EQ(0, read.valid) << length;
    }
}

TEST_F(LineFile, WhatStandsBehindTheLineIsNotRead) {
    ASSERT_EQ(1, kLine.Write(path_.wstring().c_str()));
    Store(Bytes() + "more");
    Line read(false);
    EXPECT_EQ(1, read.Read(path_.wstring().c_str()));
}

TEST_F(LineFile, PathsThatCannotBeOpenedGiveMinusOne) {
    Line line = kLine;
    const std::wstring missing = (folder_ / "none" / "line.bin").wstring();
    EXPECT_EQ(-1, line.Read(missing.c_str()));
    EXPECT_EQ(-1, line.Write(missing.c_str()));
    EXPECT_EQ(-1, line.Write(folder_.wstring().c_str()));
    EXPECT_EQ(1.0, line.x1);
}

TEST_F(LineFile, AStreamThatIsNotOpenForWritingGivesMinusOne) {
    Store("");
    std::FILE* file = std::fopen(path_.string().c_str(), "rb");
    ASSERT_NE(nullptr, file);
    EXPECT_EQ(-1, kLine.Write(file));
    std::fclose(file);
}

}  // namespace
}  // namespace TamLib
