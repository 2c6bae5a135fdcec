// What can't be read is refused with the file, the place, what was expected and what stands there.
#include <gtest/gtest.h>

#include <new>

#include "tests/host/dxf/Drawings.h"

namespace host::dxf {
namespace {

using test::dataFolder;
using test::entitiesOnly;
using test::parse;

std::string refusal(const std::string& bytes) {
    try {
        parse(bytes);
    } catch (const ReadError& error) {
        EXPECT_EQ(error.file(), "test.dxf");
        EXPECT_NE(std::string(error.what()).find(error.expected()), std::string::npos);
        EXPECT_NE(std::string(error.what()).find(error.found()), std::string::npos);
        return error.what();
    }
    return "read";
}

struct Broken {
    const char* name;
    const char* sentence;  // behind the file's name
};

constexpr Broken kBroken[] = {
    {"empty", ", line 1: expected a DXF drawing, found an empty file"},
    {"only_empty_lines",
     ", line 1: expected a DXF drawing, which begins with a group code (a whole number), found an "
     "empty line"},
    {"prose",
     ", line 1: expected a DXF drawing, which begins with a group code (a whole number), found "
     "'Dear reader,'"},
    {"numbers",
     ", line 1: expected group code 0, with which the first record begins (0 SECTION), found group "
     "code 10"},
    {"only_comments", ", line 3: expected a record (group code 0), found the end of the file"},
    {"drawing_of_the_other_kind",
     ", line 1: expected a DXF drawing, found a DWG drawing; save it as DXF in a CAD program"},
    {"release_mark_alone",
     ", line 1: expected a DXF drawing, which begins with a group code (a whole number), found "
     "'AC'"},
    {"release_mark_cut",
     ", line 1: expected a DXF drawing, which begins with a group code (a whole number), found "
     "'AC1015'"},
    {"utf16",
     ", line 1: expected a DXF drawing, which begins with a group code (a whole number), found "
     "'\\xFF\\xFE0\\x00'"},
    {"code_not_a_number",
     ", line 51: expected a group code (a whole number of at most 16 bits), found '4O'"},
    {"code_with_comma",
     ", line 51: expected a group code (a whole number of at most 16 bits), found '40,0'"},
    {"code_too_large",
     ", line 51: expected a group code (a whole number of at most 16 bits), found '64000'"},
    {"empty_line_for_a_code",
     ", line 51: expected a group code (a whole number of at most 16 bits), found an empty line"},
    {"text_over_two_lines",
     ", line 55: expected a group code (a whole number of at most 16 bits), found 'nimi'"},
    {"cut_after_a_code",
     ", line 52: expected the value of group code 40, found the end of the file"},
    {"cut_in_a_code", ", line 52: expected the value of group code 4, found the end of the file"},
    {"binary_cut_sentinel",
     ", byte 20: expected a return, a line feed, 1A and NUL after 'AutoCAD Binary DXF', found the "
     "end of the file"},
    {"binary_changed_sentinel",
     ", byte 18: expected a return, a line feed, 1A and NUL after 'AutoCAD Binary DXF', found "
     "'\\x0A\\x1A\\x00\\x00'"},
    {"binary_nothing_else", ", byte 22: expected a group, found the end of the file"},
    {"binary_cut_code",
     ", byte 284: expected a group code of 2 bytes, found the end of the file after 1 byte"},
    {"binary_cut_number",
     ", byte 180: expected a value of 8 bytes, found the end of the file after 3 bytes"},
    {"binary_cut_text",
     ", byte 270: expected a text that ends in a NUL, found the end of the file"},
    {"binary_unknown_code",
     ", byte 258: expected a group code of the format, found 64000, whose value could be of any "
     "length"},
    {"binary_code_of_no_group",
     ", byte 233: expected a group code of the format, found 200, whose value could be of any "
     "length"},
    {"binary_cut_chunk",
     ", byte 261: expected a chunk of 255 bytes, found the end of the file after 100 bytes"},
    {"binary_length_of_no_chunk",
     ", byte 260: expected the length of a chunk, found the end of the file"},
    {"binary_first_group_no_record",
     ", byte 22: expected group code 0, with which the first record begins (0 SECTION), found "
     "group code 2"},
};

TEST(ReadError, EachBrokenDrawingIsRefusedWithItsOwnSentence) {
    for (const Broken& broken : kBroken) {
        const auto path = dataFolder() / "broken" / (std::string(broken.name) + ".dxf");
        ASSERT_TRUE(std::filesystem::exists(path)) << path;
        try {
            Document::open(path);
            ADD_FAILURE() << broken.name << " was read";
        } catch (const ReadError& error) {
            EXPECT_EQ(error.what(), path.u8string() + broken.sentence);
        }
    }
}

TEST(ReadError, NoBrokenDrawingIsWithoutItsSentence) {
    EXPECT_EQ(test::drawingsOf(dataFolder() / "broken").size(), std::size(kBroken));
}

TEST(ReadError, NamesTheFileWhereItCannotBeHad) {
    const test::TemporaryFolder folder;
    try {
        Document::open(folder / "puuttuu.dxf");
        FAIL() << "opened";
    } catch (const ReadError& error) {
        EXPECT_FALSE(error.where());
        EXPECT_EQ(error.file(), (folder / "puuttuu.dxf").u8string());
        EXPECT_EQ(error.expected(), "a DXF drawing");
        EXPECT_FALSE(error.found().empty());
    }
    try {
        Document::open(folder.path());
        FAIL() << "opened";
    } catch (const ReadError& error) {
        EXPECT_EQ(error.found(), "a folder");
    }
}

TEST(ReadError, MemoryThatGivesOutWhileReadingIsTold) {
    const auto path = dataFolder() / "releases" / "r2000.dxf";
    try {
        Document::open(path, [](double) { throw std::bad_alloc(); });
        FAIL() << "opened";
    } catch (const ReadError& error) {
        EXPECT_EQ(error.expected(), "a drawing that fits into memory");
        EXPECT_EQ(error.file(), path.u8string());
    }
}

TEST(ReadError, LongAndUnprintableTextIsShortenedAndEscaped) {
    EXPECT_EQ(shown("a\tb\x7f"), "'a\\x09b\\x7F'");
    EXPECT_EQ(shown("\xE4"), "'\\xE4'");
    EXPECT_EQ(shown("\xC3\xA4"), "'\xC3\xA4'");
    EXPECT_EQ(shown(std::string(40, 'x')), "'" + std::string(40, 'x') + "'");
    EXPECT_EQ(shown(std::string(41, 'x')), "'" + std::string(40, 'x') + "'...");
}

TEST(ReadError, TheLineIsRightWhateverTheLineEnds) {
    for (const char* end : {"\n", "\r\n", "\r", "\r\r\n"}) {
        std::string bytes;
        for (const char c : entitiesOnly("0\nLINE\n8\n0\nbroken\n1\n")) {
            if (c == '\n') {
                bytes += end;
            } else {
                bytes += c;
            }
        }
        EXPECT_NE(refusal(bytes).find("line 9: "), std::string::npos) << refusal(bytes);
    }
}

TEST(ReadError, CodesBeyondSixteenBitsAreRefusedAndTheLastWithinAreNot) {
    for (const char* code : {"-32768", "32767", "+5", "00010", "010"}) {
        EXPECT_EQ(refusal(entitiesOnly("0\nLINE\n" + std::string(code) + "\n1\n")), "read") << code;
    }
    for (const char* code : {"-32769", "32768", "99999", "1.0", "1e1", "0x1", "1 0", "\x00\x31"}) {
        EXPECT_NE(refusal(entitiesOnly("0\nLINE\n" + std::string(code) + "\n1\n")), "read") << code;
    }
}

TEST(ReadError, ANulBeforeACodeIsNoBlank) {
    std::string bytes = entitiesOnly("0\nLINE\n@8\nKATU\n");
    bytes[bytes.find('@')] = '\0';
    EXPECT_NE(refusal(bytes).find("found '\\x008'"), std::string::npos) << refusal(bytes);
}

}  // namespace
}  // namespace host::dxf
