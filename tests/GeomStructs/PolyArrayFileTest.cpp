// The file form of PolyArray: bytes, round trips, cut files, counts beyond the file, full devices.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <string>

#include "tests/GeomStructs/NewFaults.h"
#include "tests/GeomStructs/PolyArrayShapes.h"
#include "tests/datastruct/ArrayFaults.h"

namespace TamLib {
namespace {

class PolyArrayFile : public ::testing::Test {
  protected:
    void SetUp() override {
        folder_ = std::filesystem::temp_directory_path() /
                  ("poly_array_file_" + std::to_string(reinterpret_cast<std::uintptr_t>(this)));
        std::filesystem::create_directories(folder_);
        path_ = folder_ / "lines.bin";
    }
    void TearDown() override { std::filesystem::remove_all(folder_); }

    std::wstring Path() const { return path_.wstring(); }
    std::string Bytes() const {
        std::ifstream file(path_, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }
    void Store(const std::string& bytes) const { std::ofstream(path_, std::ios::binary) << bytes; }
    std::string Saved(const PolyArray& array) const {
        array.SaveToFile(Path().c_str());
        return Bytes();
    }
    int Load(PolyArray& array, const std::string& bytes) const {
        Store(bytes);
        return array.LoadFromFile(Path().c_str());
    }

    std::filesystem::path folder_, path_;
};

std::string Int(std::int32_t value) {
    std::string bytes(4, '\0');
    std::memcpy(bytes.data(), &value, 4);
    return bytes;
}
std::string Float(float value) {
    std::string bytes(4, '\0');
    std::memcpy(bytes.data(), &value, 4);
    return bytes;
}
std::string Doubles(std::initializer_list<double> values) {
    std::string bytes;
    for (const double value : values) {
        char piece[8];
        std::memcpy(piece, &value, 8);
        bytes.append(piece, 8);
    }
    return bytes;
}
const std::string kHead = Int(1) + std::string(24, '\0');

TEST_F(PolyArrayFile, HoldsTheCountTheBoxAndThePolylines) {
    const PolyArray array = MakeArray({{{1, 2, 3}, {4, -5, 6}}, {}, {{0.5, 7, -2}}});
    EXPECT_EQ(3, array.SaveToFile(Path().c_str()));
    const char golden[] =
        "\3\0\0\0"      // polylines
        "\0\0\x80\x40"  // xmax 4
        "\0\0\0\x3F"    // xmin 0.5
        "\0\0\xE0\x40"  // ymax 7
        "\0\0\xA0\xC0"  // ymin -5
        "\0\0\xC0\x40"  // zmax 6
        "\0\0\0\xC0"    // zmin -2
        "\2\0\0\0"      // vertices
        "\0\0\0\0\0\0\xF0\x3F\0\0\0\0\0\0\0\x40\0\0\0\0\0\0\x08\x40"
        "\0\0\0\0\0\0\x10\x40\0\0\0\0\0\0\x14\xC0\0\0\0\0\0\0\x18\x40"
        "\0\0\0\0"  // none
        "\1\0\0\0"  // one
        "\0\0\0\0\0\0\xE0\x3F\0\0\0\0\0\0\x1C\x40\0\0\0\0\0\0\0\xC0";
    EXPECT_EQ(std::string(golden, sizeof golden - 1), Bytes());
}

TEST_F(PolyArrayFile, AnEmptyArrayHasAnEmptyBox) {
    EXPECT_EQ(0, PolyArray().SaveToFile(Path().c_str()));
    const float most = std::numeric_limits<float>::max();
    std::string expected = Int(0);
    for (int axis = 0; axis < 3; ++axis) expected += Float(-most) + Float(most);
    EXPECT_EQ(expected, Bytes());
    PolyArray read;
    EXPECT_EQ(0, read.LoadFromFile(Path().c_str()));
    ASSERT_NE(nullptr, read.box);
    EXPECT_EQ(-most, read.box->xMax);
    EXPECT_EQ(most, read.box->xMin);
}

TEST_F(PolyArrayFile, ABoxThatIsThereIsWrittenAsItIs) {
    PolyArray array = MakeArray({{{1, 2, 3}}});
    array.box = new Box(1.0, 2.0, 3.0, 4.0, 5.0, 6.0);
    EXPECT_EQ(Int(1) + Float(2) + Float(1) + Float(4) + Float(3) + Float(6) + Float(5) + Int(1) +
                  Doubles({1, 2, 3}),
              Saved(array));
    const PolyArray without = MakeArray({{{1, 2, 3}}});
    Saved(without);
    EXPECT_EQ(nullptr, without.box);
}

TEST_F(PolyArrayFile, ReadsBackWhatItWrote) {
    Numbers numbers(3);
    for (int round = 0; round < 60; ++round) {
        std::vector<Points> all(static_cast<std::size_t>(numbers.Below(6)));
        for (Points& points : all)
            for (int i = numbers.Below(5); i > 0; --i)
                points.push_back({numbers.Between(-1e7, 1e7),
                                  numbers.One(std::vector<double>{-0.0, HUGE_VAL, 1e-310, 25e6}),
                                  numbers.Between(0, 1)});
        const PolyArray array = MakeArray(all);
        PolyArray read;
        EXPECT_EQ(static_cast<int>(all.size()), array.SaveToFile(Path().c_str()));
        EXPECT_EQ(static_cast<int>(all.size()), read.LoadFromFile(Path().c_str()));
        EXPECT_EQ(Text(array), Text(read));
        const std::string bytes = Bytes();
        EXPECT_EQ(bytes, Saved(read));  // its box too, which it has kept
        for (const PolyLine* line : read) {
            EXPECT_EQ(0, line->hasBounds);
            EXPECT_EQ(10u, line->increment);
        }
    }
}

TEST_F(PolyArrayFile, LargePolylinesAreReadInSteps) {
    for (const std::uint32_t n : {4095u, 4096u, 4097u, 20000u}) {
        PolyArray array;
        array.Add(new PolyLine(static_cast<int>(n)));
        for (std::uint32_t i = 0; i < n; ++i) array[0]->Append({1.0 * i, 2, 3});
        PolyArray read;
        Saved(array);
        ASSERT_EQ(1, read.LoadFromFile(Path().c_str()));
        EXPECT_EQ(n, read[0]->count);
        EXPECT_LE(read[0]->capacity, n);
        EXPECT_EQ(array.Hash(), read.Hash());
    }
}

TEST_F(PolyArrayFile, WhatIsHeldStaysAndTheFileIsAdded) {
    const std::string bytes = Saved(MakeArray({{{1, 2, 3}}}));
    PolyArray array = MakeArray({{{9, 9, 9}}});
    array.box = new Box(7.0, 7.0, 7.0, 7.0, 7.0, 7.0);
    EXPECT_EQ(1, Load(array, bytes));
    EXPECT_EQ("9,9,9\n1,2,3\n", Text(array));
    EXPECT_EQ(1.0f, array.box->xMin);
    EXPECT_EQ(3.0f, array.box->zMax);
}

TEST_F(PolyArrayFile, TheCountInTheFileStopsNothing) {
    const std::string body = Int(1) + Doubles({1, 2, 3}) + Int(0) + Int(1) + Doubles({4, 5, 6});
    for (const std::int32_t told : {0, 1, 3, 1000, -1}) {
        PolyArray array;
        EXPECT_EQ(3, Load(array, Int(told) + std::string(24, '\0') + body)) << told;
        EXPECT_EQ("1,2,3\n\n4,5,6\n", Text(array));
    }
}

TEST_F(PolyArrayFile, CutAnywhereItGivesThePolylinesThatAreWhole) {
    const std::string whole = Saved(MakeArray({{{1, 2, 3}, {4, 5, 6}}, {{7, 8, 9}}}));
    ASSERT_EQ(28u + 52u + 28u, whole.size());
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        PolyArray array = MakeArray({{{0, 0, 0}}});
        const int read = Load(array, whole.substr(0, length));
        if (length < 28) {
            EXPECT_EQ(-1, read) << length;
            EXPECT_EQ(nullptr, array.box);
        } else {
            EXPECT_EQ(length < 80 ? 0 : length < 108 ? 1 : 2, read) << length;
            EXPECT_NE(nullptr, array.box);
        }
        EXPECT_EQ(static_cast<std::uint32_t>(1 + std::max(read, 0)), array.count) << length;
    }
}

TEST_F(PolyArrayFile, CountsBeyondTheFileTakeLittleMemory) {
    for (const std::int32_t told : {0x7FFFFFFF, 100000000, 5000, 2}) {
        PolyArray array;
        test::MemoryFaults faults;
        EXPECT_EQ(0, Load(array, kHead + Int(told) + Doubles({1, 2, 3}))) << told;
        EXPECT_LE(test::MemoryFaults::LastSize(), 4096u * sizeof(Point3d));
        EXPECT_EQ(0u, array.count);
        EXPECT_EQ(0, test::MemoryFaults::Live());
    }
}

TEST_F(PolyArrayFile, ACountBelowNoneEndsTheReading) {
    for (const std::int32_t told : {-1, std::numeric_limits<std::int32_t>::min()}) {
        PolyArray array;
        EXPECT_EQ(1, Load(array, kHead + Int(1) + Doubles({1, 2, 3}) + Int(told) + Int(1) +
                                     Doubles({4, 5, 6})));
        EXPECT_EQ("1,2,3\n", Text(array));
    }
}

TEST_F(PolyArrayFile, AFileThatDoesNotOpenGivesMinusOne) {
    const std::filesystem::path nowhere = folder_ / "none" / "lines.bin";
    PolyArray array;
    EXPECT_EQ(-1, array.SaveToFile(nowhere.wstring().c_str()));
    EXPECT_EQ(-1, array.LoadFromFile(nowhere.wstring().c_str()));
    EXPECT_EQ(nullptr, array.box);
}

TEST_F(PolyArrayFile, AFileThatCantBeWrittenTellsHowManyWere) {
    Store("");
    std::FILE* const file = std::fopen(path_.string().c_str(), "rb");
    ASSERT_NE(nullptr, file);
    std::setvbuf(file, nullptr, _IONBF, 0);
    EXPECT_EQ(-1, MakeArray({{{1, 2, 3}}}).Save(file));
    EXPECT_EQ(-1, PolyArray().Save(file));
    std::fclose(file);
}

#ifdef __linux__
// A device without room, which there is on Linux alone. The head goes into the stream's buffer.
TEST_F(PolyArrayFile, ADeviceWithoutRoomTellsSo) {
    PolyArray array;
    EXPECT_EQ(-1, MakeArray({{{1, 2, 3}}}).SaveToFile(L"/dev/full"));
    std::FILE* const file = std::fopen("/dev/full", "wb");
    ASSERT_NE(nullptr, file);
    char buffer[128];
    std::setvbuf(file, buffer, _IOFBF, sizeof buffer);
    // The head and the first polyline, 28 and 28 bytes, fit; the second does not.
    EXPECT_EQ(1, MakeArray({{{1, 2, 3}}, Points(5)}).Save(file));
    std::fclose(file);
}
#endif

TEST_F(PolyArrayFile, MemoryRefusedWhileReadingKeepsWhatIsWhole) {
    const std::string whole = Saved(MakeArray({{{1, 2, 3}}, {{4, 5, 6}}, {{7, 8, 9}}}));
    Store(whole);
    for (int n = 1; n <= 4; ++n) {
        PolyArray array;
        const test::NewFaults faults;
        test::NewFaults::Fail(n);
        const test::Raised raised = test::Catch([&] { array.LoadFromFile(Path().c_str()); });
        test::ExpectNoMemory(raised, L"", 300, L"GeomStructs/PolyArray");
        EXPECT_EQ(static_cast<std::uint32_t>(std::max(n - 2, 0)), array.count);  // first the box
    }
    int n = 1;
    for (;; ++n) {
        PolyArray array;
        test::MemoryFaults faults;
        faults.Fail(test::Request::any, n);
        const test::Raised raised = test::Catch([&] { array.LoadFromFile(Path().c_str()); });
        if (raised.type == "nothing") break;
        EXPECT_EQ("TamExpNoMem", raised.type);
        for (const PolyLine* line : array) EXPECT_EQ(1u, line->count);
    }
    EXPECT_EQ(5, n);  // the block and three polylines
}

}  // namespace
}  // namespace TamLib
