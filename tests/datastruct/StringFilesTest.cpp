#include <cstdio>
#include <sstream>

#include <tchar.h>

#include "tests/datastruct/StringTestSupport.h"

using namespace TamLib;

namespace {

// A file in the working folder that goes with the test.
class TestFile {
  public:
    explicit TestFile(const char* name) : name_(name), wide_(name_.begin(), name_.end()) {
        std::remove(name_.c_str());
    }
    ~TestFile() { std::remove(name_.c_str()); }
    TestFile(const TestFile&) = delete;
    TestFile& operator=(const TestFile&) = delete;

    const wchar_t* Path() const { return wide_.c_str(); }
    void Write(const std::string& bytes) const {
        std::FILE* const file = std::fopen(name_.c_str(), "wb");
        ASSERT_NE(file, nullptr);
        ASSERT_EQ(std::fwrite(bytes.data(), 1, bytes.size(), file), bytes.size());
        std::fclose(file);
    }
    std::string Bytes() const {
        std::FILE* const file = std::fopen(name_.c_str(), "rb");
        std::string bytes;
        if (file == nullptr) return "(none)";
        for (int c = 0; (c = std::fgetc(file)) != EOF;) bytes += static_cast<char>(c);
        std::fclose(file);
        return bytes;
    }
    std::FILE* Open(const char* mode) const { return std::fopen(name_.c_str(), mode); }

  private:
    std::string name_;
    std::wstring wide_;
};

TEST(StringFiles, SavesItsCharactersWithoutATerminator) {
    const TestFile file("string_save.txt");
    EXPECT_TRUE(Narrow("abc").SaveToFile(file.Path(), true));
    EXPECT_EQ(file.Bytes(), "abc");
    EXPECT_TRUE(Wide(L"ab").SaveToFile(file.Path(), true));
    EXPECT_EQ(file.Bytes().size(), 2 * sizeof(wchar_t));
}

TEST(StringFiles, OverwritesOrAppends) {
    const TestFile file("string_append.txt");
    EXPECT_TRUE(Narrow("abc").SaveToFile(file.Path(), false));  // makes it
    EXPECT_TRUE(Narrow("def").SaveToFile(file.Path(), false));
    EXPECT_EQ(file.Bytes(), "abcdef");
    EXPECT_TRUE(Narrow("x").SaveToFile(file.Path(), true));
    EXPECT_EQ(file.Bytes(), "x");
    EXPECT_TRUE(Narrow().SaveToFile(file.Path(), true));
    EXPECT_EQ(file.Bytes(), "");
}

TEST(StringFiles, WhatIsSavedIsLoaded) {
    const TestFile file("string_round.txt");
    const std::wstring text = L"tie 5, \u00E4itee\u00F6";
    EXPECT_TRUE(FromStd(text).SaveToFile(file.Path(), true));
    Wide loaded(L"old text that goes");
    EXPECT_TRUE(loaded.LoadFromFile(file.Path()));
    EXPECT_EQ(Std(loaded), text);
    EXPECT_TRUE(Narrow("a\nb\n").SaveToFile(file.Path(), true));
    Narrow narrow;
    EXPECT_TRUE(narrow.LoadFromFile(file.Path()));
    EXPECT_EQ(Std(narrow), "a\nb\n");  // text modes agree with each other
}

TEST(StringFiles, LoadingMakesRoomForTheFilesBytes) {
    const TestFile file("string_room.txt");
    EXPECT_TRUE(Wide(L"abcde").SaveToFile(file.Path(), true));
    Wide loaded;
    EXPECT_TRUE(loaded.LoadFromFile(file.Path()));
    EXPECT_EQ(loaded.capacity, 5 * sizeof(wchar_t));
    EXPECT_EQ(loaded.count, 5u);
}

TEST(StringFiles, AnEmptyFileGivesAnEmptyStringAndFalse) {
    const TestFile file("string_empty.txt");
    file.Write("");
    Wide text(L"old");
    EXPECT_FALSE(text.LoadFromFile(file.Path()));
    EXPECT_EQ(text.count, 0u);
}

TEST(StringFiles, AMissingFileGivesFalseAndLeavesTheString) {
    Wide text(L"old");
    EXPECT_FALSE(text.LoadFromFile(L"no_such_folder/none.txt"));
    EXPECT_EQ(Std(text), L"old");
    EXPECT_FALSE(text.SaveToFile(L"no_such_folder/none.txt", true));
    EXPECT_FALSE(text.SaveToFile(L"no_such_folder/none.txt", false));
}

TEST(StringFiles, AFolderIsNoFile) {
    Narrow text("old");
    EXPECT_FALSE(text.LoadFromFile(L"."));
    EXPECT_FALSE(text.SaveToFile(L".", true));
}

TEST(StringFiles, APartOfACharacterAtTheEndIsNotRead) {
    const TestFile file("string_part.txt");
    file.Write(std::string(sizeof(wchar_t) + 1, 'a'));
    Wide text;
    EXPECT_TRUE(text.LoadFromFile(file.Path()));
    EXPECT_EQ(text.count, 1u);
    file.Write("a");
    EXPECT_FALSE(text.LoadFromFile(file.Path()));
    EXPECT_EQ(text.count, 0u);
}

#ifndef _WIN32
TEST(StringFiles, AFullDiskIsAFailure) {
    EXPECT_FALSE(Narrow("abc").SaveToFile(L"/dev/full", true));
    Narrow large;
    large.Resize(100000);
    large.count = 100000;
    EXPECT_FALSE(large.SaveToFile(L"/dev/full", true));
}
#endif

TEST(StringFiles, ReadsLinesWithoutTheirEnds) {
    const TestFile file("string_lines.txt");
    file.Write("one\r\ntwo\n\nl\rast");
    std::FILE* const stream = file.Open("rb");
    Narrow line("old");
    std::vector<std::string> lines;
    while (line.ReadLine(stream)) lines.push_back(Std(line));
    EXPECT_EQ(lines, (std::vector<std::string>{"one", "two", "", "last"}));
    EXPECT_EQ(line.count, 0u);
    std::fclose(stream);
}

TEST(StringFiles, AStreamThatEndsWithALineFeedGivesOneEmptyLineMore) {
    const TestFile file("string_last.txt");
    file.Write("one\n");
    std::FILE* const stream = file.Open("rb");
    Narrow line;
    EXPECT_TRUE(line.ReadLine(stream));
    EXPECT_EQ(Std(line), "one");
    EXPECT_TRUE(line.ReadLine(stream));  // the end is seen by reading
    EXPECT_EQ(line.count, 0u);
    EXPECT_FALSE(line.ReadLine(stream));
    std::fclose(stream);
}

TEST(StringFiles, ALineHasRoomAndIncrementOfAtLeastTen) {
    const TestFile file("string_ten.txt");
    file.Write("ab\n");
    std::FILE* const stream = file.Open("rb");
    Narrow line;
    EXPECT_TRUE(line.ReadLine(stream));
    EXPECT_EQ(line.increment, 10u);
    EXPECT_EQ(line.capacity, 10u);
    std::rewind(stream);
    line.increment = 50;
    EXPECT_TRUE(line.ReadLine(stream));
    EXPECT_EQ(line.increment, 50u);
    std::fclose(stream);
}

TEST(StringFiles, AFailingReadIsFalse) {
    const TestFile file("string_fail.txt");
    std::FILE* const stream = file.Open("wb");  // not open for reading
    Narrow line("old");
    EXPECT_FALSE(line.ReadLine(stream));
    EXPECT_FALSE(line.ReadLine(stream));  // failed at the start now
    EXPECT_EQ(line.count, 0u);
    std::fclose(stream);
}

TEST(StringFiles, WideLinesAreReadCharacterByCharacter) {
    const TestFile file("string_wide.txt");
    std::string bytes;
    for (const wchar_t c : std::wstring(L"\u00E4\r\nb")) {
        bytes.append(reinterpret_cast<const char*>(&c), sizeof c);
    }
    file.Write(bytes);
    std::FILE* const stream = file.Open("rb");
    Wide line;
    EXPECT_TRUE(line.ReadLine(stream));
    EXPECT_EQ(Std(line), L"\u00E4");
    EXPECT_TRUE(line.ReadLine(stream));
    EXPECT_EQ(Std(line), L"b");
    EXPECT_FALSE(line.ReadLine(stream));
    std::fclose(stream);
}

TEST(StringStreams, InsertionHonoursWidthAndFill) {
    std::wostringstream stream;
    stream.width(6);
    stream.fill(L'.');
    stream << Wide(L"abc") << Wide(L"de") << Wide();
    EXPECT_EQ(stream.str(), L"...abcde");
    std::ostringstream narrow;
    narrow << std::left;
    narrow.width(4);
    narrow << Narrow("ab") << '|';
    EXPECT_EQ(narrow.str(), "ab  |");
}

TEST(StringStreams, ExtractionSkipsBlanksAndHonoursWidth) {
    std::wistringstream stream(L"  one\ttwo three");
    Wide first;
    Wide second;
    Wide third;
    stream >> first >> second;
    stream.width(3);
    stream >> third;
    EXPECT_EQ(Std(first), L"one");
    EXPECT_EQ(Std(second), L"two");
    EXPECT_EQ(Std(third), L"thr");
    std::istringstream kept(" a");
    kept >> std::noskipws;
    Narrow word("old");
    kept >> word;
    EXPECT_TRUE(kept.fail());
    EXPECT_EQ(word.count, 0u);
}

TEST(StringStreams, AStreamThatHasFailedLeavesTheString) {
    std::istringstream stream("");
    int number = 0;
    stream >> number;
    Narrow word("old");
    stream >> word;
    EXPECT_EQ(Std(word), "old");
}

}  // namespace
