#include "host/dxf/Document.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

#include "tests/host/dxf/Drawings.h"

namespace host::dxf {
namespace {

using test::dataFolder;
using test::entitiesOnly;
using test::parse;
using test::withHeader;

std::vector<std::string> typesOf(const Document& document) {
    std::vector<std::string> types;
    for (RecordIndex record = 0; record < document.size(); ++record) {
        types.emplace_back(document.type(record));
    }
    return types;
}

RecordIndex firstOf(const Document& document, std::string_view type) {
    for (RecordIndex record = 0; record < document.size(); ++record) {
        if (document.type(record) == type) return record;
    }
    ADD_FAILURE() << "no " << type;
    return 0;
}

TEST(Document, RecordsAreGroupsZeroAndWhatFollows) {
    const auto document = parse(entitiesOnly("0\nLINE\n8\nKATU\n10\n1.0\n0\nPOINT\n8\n0\n"));
    EXPECT_EQ(typesOf(*document),
              (std::vector<std::string>{"SECTION", "LINE", "POINT", "ENDSEC", "EOF"}));
    EXPECT_EQ(document->raw(1), "0\nLINE\n8\nKATU\n10\n1.0\n");
    std::vector<int> codes;
    for (const Group& group : document->groups(1)) codes.push_back(group.code());
    EXPECT_EQ(codes, (std::vector<int>{0, 8, 10}));
}

// The numbers that stand on lines of group codes, as the format has it: blanks around them, a sign,
// leading zeros, any line end.
TEST(Document, CodesAreReadFromLinesOfEveryShape) {
    std::string groups;
    std::vector<int> expected;
    for (const int code : {1, 8, 9, 10, 62, 99, 100, 210, 999, 1000, 1040, 1071}) {
        for (const char* before : {"", " ", "  ", "   ", "\t", "0", "00", "+", " +0", "      "}) {
            for (const char* after : {"\n", "\r\n", "\r\r\n", " \n", "\t\r\n", "      \n"}) {
                groups += before + std::to_string(code) + after + "1\n";
                expected.push_back(code);
            }
        }
    }
    groups += "-3\nx\n -12\r\ny\n";
    expected.insert(expected.end(), {-3, -12});
    const auto document = parse(entitiesOnly("0\nLINE\n" + groups));
    std::vector<int> codes;
    for (const Group& group : document->groups(1)) codes.push_back(group.code());
    codes.erase(codes.begin());
    EXPECT_EQ(codes, expected);
}

TEST(Document, RawRecordsAndWhatSurroundsThemMakeUpTheFile) {
    for (const auto& path : test::drawingsOf(dataFolder() / "releases")) {
        const auto document = Document::open(path);
        std::string all(
            document->bytes().substr(0, static_cast<std::size_t>(document->preamble().raw().data() -
                                                                 document->bytes().data())));
        all += document->preamble().raw();
        for (RecordIndex record = 0; record < document->size(); ++record) {
            const std::string_view raw = document->raw(record);
            std::string groups;
            for (const Group& group : document->groups(record)) groups += group.raw();
            EXPECT_EQ(groups, raw);
            all += raw;
        }
        all += document->trailer();
        EXPECT_EQ(all, document->bytes()) << path;
    }
}

TEST(Document, SectionsOwnTheirFrameAndTheirRecords) {
    const auto document = Document::open(dataFolder() / "releases" / "r2007.dxf");
    Section expected = Section::none;
    std::vector<Section> seen;
    for (RecordIndex record = 0; record < document->size(); ++record) {
        if (document->type(record) == "SECTION") {
            expected = document->section(record);
            seen.push_back(expected);
        }
        EXPECT_EQ(document->section(record), expected) << record;
        if (document->type(record) == "ENDSEC") expected = Section::none;
    }
    EXPECT_EQ(seen, (std::vector<Section>{Section::header, Section::classes, Section::tables,
                                          Section::blocks, Section::entities, Section::objects,
                                          Section::thumbnail}));
    EXPECT_EQ(document->section(document->size() - 1), Section::none);
}

TEST(Document, AnUnknownSectionIsOther) {
    const auto document = parse("0\nSECTION\n2\nACDSDATA\n0\nX\n0\nENDSEC\n0\nEOF\n");
    EXPECT_EQ(document->section(1), Section::other);
}

TEST(Document, BlanksAroundTypesAndSectionNamesDontCount) {
    const auto document = parse("0\n SECTION \n2\n ENTITIES\t\n0\n LINE  \n0\nENDSEC \n0\n EOF\n");
    EXPECT_EQ(document->type(1), "LINE");
    EXPECT_EQ(document->section(1), Section::entities);
    EXPECT_EQ(document->trailer(), "");
}

TEST(Document, RecordsAreFoundByTheirHandle) {
    const auto document =
        parse(entitiesOnly("0\nLINE\n5\n2F\n0\nPOINT\n8\n0\n5\nffffffffffffffff\n"));
    EXPECT_EQ(document->find(0x2F), RecordIndex{1});
    EXPECT_EQ(document->find(0xFFFFFFFFFFFFFFFFULL), RecordIndex{2});
    EXPECT_EQ(document->handle(1), 0x2FULL);
    EXPECT_FALSE(document->find(0x30));
    EXPECT_FALSE(document->find(0));
    EXPECT_FALSE(document->handle(0));
}

TEST(Document, EveryHandleOfALargeDrawingIsFound) {
    std::string groups;
    constexpr int kRecords = 5000;
    for (int at = 1; at <= kRecords; ++at) {
        char line[64];
        // Handles far apart and in bunches, so that places in the table collide.
        std::snprintf(line, sizeof(line), "0\nPOINT\n5\n%llX\n",
                      static_cast<unsigned long long>(at) << ((at % 5) * 12));
        groups += line;
    }
    const auto document = parse(entitiesOnly(groups));
    for (RecordIndex record = 1; record <= kRecords; ++record) {
        const auto found = document->find(document->handle(record).value());
        ASSERT_TRUE(found);
        EXPECT_EQ(document->handle(*found), document->handle(record));
        EXPECT_LE(*found, record);
    }
}

TEST(Document, OfEqualHandlesTheFirstIsFound) {
    const auto document = parse(entitiesOnly("0\nLINE\n5\nA\n0\nPOINT\n5\nA\n"));
    EXPECT_EQ(document->find(0xA), RecordIndex{1});
    EXPECT_EQ(document->handle(2), 0xAULL);
}

TEST(Document, GroupFiveOfADimensionStyleIsNoHandleButOneHundredFiveIs) {
    const std::string tables =
        "0\nSECTION\n2\nTABLES\n0\nTABLE\n5\n1\n0\nDIMSTYLE\n5\nB0\n105\n27\n0\nDIMSTYLE\n5\nB1\n"
        "0\nENDTAB\n0\nENDSEC\n0\nEOF\n";
    const auto document = parse(tables);
    EXPECT_EQ(document->handle(1), 1ULL);
    EXPECT_EQ(document->handle(2), 0x27ULL);
    EXPECT_FALSE(document->handle(3));
    EXPECT_FALSE(document->find(0xB0));
}

TEST(Document, GroupFiveOfTheHeaderIsNoHandle) {
    const auto document = Document::open(dataFolder() / "releases" / "r2000.dxf");
    EXPECT_FALSE(document->find(0xFFF));  // $HANDSEED
    EXPECT_FALSE(document->handle(0));
}

TEST(Document, GroupFiveInExtendedDataOrAnEmbeddedObjectIsNoHandle) {
    const auto document =
        parse(entitiesOnly("0\nLINE\n1001\nA\n5\n2F\n0\nMTEXT\n101\nEmbedded Object\n5\n30\n"));
    EXPECT_FALSE(document->handle(1));
    EXPECT_FALSE(document->handle(2));
}

TEST(Document, OnlyTheFirstGroupFiveCounts) {
    const auto document = parse(entitiesOnly("0\nLINE\n5\n2F\n5\n30\n"));
    EXPECT_EQ(document->handle(1), 0x2FULL);
    EXPECT_FALSE(document->find(0x30));
}

TEST(Document, ReleaseIsThatOfAcadver) {
    const std::pair<const char*, Release> kNames[] = {
        {"r9", Release::R9},       {"r10", Release::R10},     {"r12", Release::R12},
        {"r13", Release::R13},     {"r14", Release::R14},     {"r2000", Release::R2000},
        {"r2004", Release::R2004}, {"r2007", Release::R2007}, {"r2010", Release::R2010},
        {"r2013", Release::R2013}, {"r2018", Release::R2018}};
    for (const auto& [name, release] : kNames) {
        const std::string file(name);
        const auto text = Document::open(dataFolder() / "releases" / (file + ".dxf"));
        const auto binary = Document::open(dataFolder() / "releases" / (file + "_binary.dxf"));
        EXPECT_EQ(text->release(), release) << name;
        EXPECT_EQ(binary->release(), release) << name;
        EXPECT_FALSE(text->binary());
        EXPECT_TRUE(binary->binary());
        EXPECT_EQ(binary->form().wideCodes, release >= Release::R13) << name;
        EXPECT_TRUE(text->findings().empty()) << text->findings().front().message;
        EXPECT_TRUE(binary->findings().empty()) << binary->findings().front().message;
    }
}

TEST(Document, BothFormsOfADrawingHoldTheSameGroups) {
    for (const char* name : {"r10", "r12", "r13", "r2018"}) {
        const std::string file(name);
        const auto text = Document::open(dataFolder() / "releases" / (file + ".dxf"));
        const auto binary = Document::open(dataFolder() / "releases" / (file + "_binary.dxf"));
        ASSERT_EQ(text->size(), binary->size());
        for (RecordIndex record = 0; record < text->size(); ++record) {
            const GroupRange a = text->groups(record);
            const GroupRange b = binary->groups(record);
            auto other = b.begin();
            for (const Group& group : a) {
                ASSERT_NE(other, b.end());
                ASSERT_EQ(group.code(), other->code());
                ASSERT_EQ(group.integer(), other->integer());
                ASSERT_EQ(group.handle(), other->handle());
                if (group.type() == ValueType::real) {
                    ASSERT_TRUE(group.real() && other->real());
                    ASSERT_NEAR(*group.real(), *other->real(), 1e-9) << record;
                } else if (group.type() == ValueType::text) {
                    ASSERT_EQ(group.bytes(), other->bytes());
                }
                ++other;
            }
            EXPECT_EQ(other, b.end());
        }
    }
}

TEST(Document, HeaderVariablesAreTheGroupsUpToTheNext) {
    const auto document = Document::open(dataFolder() / "releases" / "r2010.dxf");
    const GroupRange extent = document->headerVariable("$EXTMAX");
    std::vector<double> values;
    for (const Group& group : extent) values.push_back(group.real().value());
    EXPECT_EQ(values, (std::vector<double>{25496500.0, 6672300.0, 12.5}));
    EXPECT_EQ(document->headerVariable("$CLAYER").begin()->bytes(), "KATU");  // the last one
    EXPECT_TRUE(document->headerVariable("$NOSUCH").empty());
    EXPECT_TRUE(document->headerVariable("HEADER").empty());
    EXPECT_TRUE(parse(entitiesOnly(""))->headerVariable("$ACADVER").empty());
}

TEST(Document, PositionsAreLinesOfTextAndBytesOfBinary) {
    const auto text = parse(entitiesOnly("0\nLINE\n8\n0\n"));
    EXPECT_EQ(text->position(1).text(), "line 5");
    EXPECT_EQ(text->position(1, 1).text(), "line 7");
    const auto binary = Document::open(dataFolder() / "releases" / "r12_binary.dxf");
    const RecordIndex line = firstOf(*binary, "LINE");
    const std::uint64_t offset = binary->position(line).number;
    EXPECT_EQ(binary->bytes().substr(offset, 6), std::string_view("\0LINE\0", 6));
    EXPECT_EQ(binary->position(line, 1).number, offset + 6);
    EXPECT_EQ(binary->position(line).text(), "byte " + std::to_string(offset));
}

TEST(Document, LinesAreCountedThroughComments) {
    const auto document = parse("999\nfirst\n999\nsecond\n" + entitiesOnly("0\nLINE\n"));
    EXPECT_EQ(document->position(0).number, 5U);
    EXPECT_EQ(document->position(1).number, 9U);
    std::vector<std::string> comments;
    for (const Group& group : document->preamble()) comments.emplace_back(group.bytes());
    EXPECT_EQ(comments, (std::vector<std::string>{"first", "second"}));
}

TEST(Document, TheTrailerIsWhatStandsBehindEof) {
    EXPECT_EQ(parse(entitiesOnly("") + "more\n0\nLINE\n")->trailer(), "more\n0\nLINE\n");
    EXPECT_EQ(parse(entitiesOnly(""))->trailer(), "");
}

TEST(Document, GroupsGiveNumbersOnlyOfTheirType) {
    const auto document = parse(entitiesOnly("0\nLINE\n10\n 7 \n70\n 7 \n5\n 7 \n1\n7\n290\n1\n"));
    const std::vector<Group> groups(document->groups(1).begin(), document->groups(1).end());
    EXPECT_EQ(groups[1].real(), 7.0);
    EXPECT_FALSE(groups[1].integer());
    EXPECT_FALSE(groups[1].handle());
    EXPECT_EQ(groups[2].integer(), 7);
    EXPECT_FALSE(groups[2].real());
    EXPECT_EQ(groups[3].handle(), 7ULL);
    EXPECT_FALSE(groups[4].real() || groups[4].integer() || groups[4].handle());
    EXPECT_EQ(groups[5].integer(), 1);
    EXPECT_EQ(document->groups(1).find(70)->bytes(), " 7 ");
    EXPECT_FALSE(document->groups(1).find(71));
}

TEST(Document, RealsAreReadAsTheNearestDouble) {
    EXPECT_EQ(parseReal("25496100.1250000000000000"), 25496100.125);
    EXPECT_EQ(parseReal("0.1"), 0.1);
    EXPECT_EQ(parseReal("-1.5e-3"), -0.0015);
    EXPECT_EQ(parseReal("1.5E+02"), 150.0);
    EXPECT_EQ(parseReal("+.5"), 0.5);
    EXPECT_EQ(parseReal("5."), 5.0);
    EXPECT_EQ(parseReal("\t 5 "), 5.0);
    EXPECT_EQ(parseReal("1.7976931348623157e308"), std::numeric_limits<double>::max());
    EXPECT_EQ(parseReal("4.9e-324"), std::numeric_limits<double>::denorm_min());
    EXPECT_EQ(parseReal("1e-999"), 0.0);
    const auto negative = parseReal("-1e-999");
    ASSERT_TRUE(negative);
    EXPECT_TRUE(std::signbit(*negative));
    EXPECT_EQ(parseReal("0." + std::string(400, '0') + "1"), 0.0);
}

TEST(Document, WhatIsNoFiniteNumberHasNoReal) {
    for (const char* text :
         {"",       " ",     "NaN",    "nan",  "-nan(ind)", "inf", "-inf", "infinity",
          "1.#INF", "1e999", "-1e999", "1,5",  "1.5.2",     "1e",  "e5",   "-",
          "+",      "+-1",   ".",      "0x10", "1 2",       "1_0"}) {
        EXPECT_FALSE(parseReal(text)) << text;
    }
    EXPECT_FALSE(parseReal(std::string(400, '9')));
}

TEST(Document, WholeNumbersAreReadUpTo64Bits) {
    EXPECT_EQ(parseInteger("     7"), 7);
    EXPECT_EQ(parseInteger("-32768"), -32768);
    EXPECT_EQ(parseInteger("+12"), 12);
    EXPECT_EQ(parseInteger("9223372036854775807"), std::numeric_limits<std::int64_t>::max());
    for (const char* text : {"", "7.0", "7a", "9223372036854775808", "0x7", "+-1", "--1", "1 2"}) {
        EXPECT_FALSE(parseInteger(text)) << text;
    }
}

TEST(Document, HandlesAreUpToSixteenHexadecimalDigits) {
    EXPECT_EQ(parseHandle("2f"), 0x2FULL);
    EXPECT_EQ(parseHandle(" 0000000000000A "), 10ULL);
    EXPECT_EQ(parseHandle("FFFFFFFFFFFFFFFF"), 0xFFFFFFFFFFFFFFFFULL);
    for (const char* text : {"", "G", "0x2F", "-1", "10000000000000000", "2 F"}) {
        EXPECT_FALSE(parseHandle(text)) << text;
    }
}

TEST(Document, BinaryNumbersOfAllWidthsAreRead) {
    const auto document = Document::open(dataFolder() / "releases" / "r2018_binary.dxf");
    const RecordIndex record = firstOf(*document, "XRECORD");
    const GroupRange groups = document->groups(record);
    EXPECT_EQ(groups.find(40)->real(), 1.0 / 3.0);
    EXPECT_EQ(groups.find(90)->integer(), -70000);
    EXPECT_EQ(groups.find(70)->integer(), 12);
    EXPECT_EQ(groups.find(290)->integer(), 1);
    EXPECT_EQ(groups.find(160)->integer(), 4294967297);
    EXPECT_EQ(groups.find(310)->bytes(), std::string_view("\x00\x0a\x0d\xff", 4));
    const GroupRange line = document->groups(firstOf(*document, "LINE"));
    EXPECT_EQ(line.find(1070)->integer(), -7);
    EXPECT_EQ(line.find(1071)->integer(), 70000);
    EXPECT_EQ(line.find(1040)->real(), 0.125);
    EXPECT_EQ(line.find(1004)->bytes(), std::string_view("\x01\x00\xfe", 3));
}

TEST(Document, ProgressGrowsFromZeroToOne) {
    std::string groups;
    while (groups.size() < 20U << 20) groups += "0\nPOINT\n8\nKATU\n10\n1.0\n20\n2.0\n30\n0.0\n";
    test::TemporaryFolder folder;
    test::writeBytes(folder / "large.dxf", entitiesOnly(groups));
    std::vector<double> told;
    const auto document = Document::open(folder / "large.dxf",
                                         [&told](double fraction) { told.push_back(fraction); });
    ASSERT_GE(told.size(), 5U);
    EXPECT_TRUE(std::is_sorted(told.begin(), told.end()));
    EXPECT_GE(told.front(), 0.0);
    EXPECT_LT(told.front(), 0.1);
    EXPECT_EQ(told.back(), 1.0);
}

TEST(Document, AProgressThatThrowsEndsReading) {
    struct Cancelled {};
    EXPECT_THROW(
        Document::open(dataFolder() / "releases" / "r12.dxf", [](double) { throw Cancelled(); }),
        Cancelled);
}

TEST(Document, FilesWithFinnishNamesAndBlanksAreOpened) {
    const test::TemporaryFolder folder;
    const auto path = folder / "Hämeentie ja Åbo.dxf";
    test::writeBytes(path, entitiesOnly(""));
    const auto document = Document::open(path);
    EXPECT_EQ(document->name(), path.u8string());
    EXPECT_NE(document->name().find("Hämeentie ja Åbo.dxf"), std::string::npos);
}

TEST(Document, TextsAreDecodedByReleaseAndCodePage) {
    const auto old = parse(withHeader("AC1015", "ANSI_1252", "0\nTEXT\n5\n1\n1\nH\xE4me\n"));
    EXPECT_EQ(old->decode("H\xE4me \\U+0416"), L"H\u00E4me \u0416");
    EXPECT_FALSE(old->utf8());
    const auto modern = parse(withHeader("AC1021", "ANSI_1251", "0\nTEXT\n5\n1\n1\nH\u00E4me\n"));
    EXPECT_EQ(modern->decode("H\xC3\xA4me \\U+0416"), L"H\u00E4me \u0416");
    EXPECT_TRUE(modern->utf8());
    EXPECT_EQ(modern->codePage(), "ANSI_1251");
    EXPECT_EQ(parse(entitiesOnly(""))->decode("\xE4"), L"\u00E4");
}

}  // namespace
}  // namespace host::dxf
