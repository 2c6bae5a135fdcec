// What is odd in a drawing is kept as it stands, and told.
#include <gtest/gtest.h>

#include <cstdint>

#include "tests/host/dxf/Drawings.h"

namespace host::dxf {
namespace {

using test::dataFolder;
using test::entitiesOnly;
using test::parse;
using test::withHeader;

struct Odd {
    const char* name;
    std::vector<std::string> findings;  // "where: message"
};

// The drawings of tests/data/odd, what is found in each.
const Odd kOdd[] = {
    {"mixed_ends", {}},
    {"lone_returns", {}},
    {"doubled_returns", {}},
    {"no_end_of_line_at_the_end", {}},
    {"control_z_after_eof", {}},
    {"comments", {}},
    {"exponents", {}},
    {"blanks_around", {}},
    {"wide_codes", {}},
    {"unknown_codes", {}},
    {"no_eof", {"line 57: the drawing has no EOF"}},
    {"no_eof_nor_endsec", {"line 55: the drawing ends within a section, without EOF"}},
    {"empty_lines_at_the_end", {}},
    {"empty_lines_for_eof", {"line 57: the drawing has no EOF"}},
    {"text_after_eof", {"line 59: 'converted by a friend\\x0Aof ours' stands after EOF"}},
    {"no_header", {"line 45: the drawing has no HEADER section"}},
    {"no_release", {"line 55: the drawing does not say its release ($ACADVER)"}},
    {"unknown_release", {"line 1: $ACADVER of this header says 'AC9999', an unknown release"}},
    {"not_a_number",
     {"line 34: group 11 holds 'NaN' where a number belongs",
      "line 36: group 21 holds 'nan(ind)' where a number belongs"}},
    {"infinite",
     {"line 34: group 11 holds '1.#INF' where a number belongs",
      "line 36: group 21 holds '1e999' where a number belongs"}},
    {"decimal_comma", {"line 34: group 11 holds '100,5' where a number belongs"}},
    {"missing_handles", {"line 19: the record has no handle", "line 35: the record has no handle"}},
    {"duplicate_handles", {"line 37: the record has the handle of the one at line 19"}},
    {"bad_handles",
     {"line 22: group 5 holds '' where a handle belongs",
      "line 40: group 5 holds 'xyz' where a handle belongs"}},
    {"bad_references", {"line 26: group 330 holds 'Standard' where a handle belongs"}},
    {"empty_values", {"line 52: group 40 holds '' where a number belongs"}},
    {"code_page_unknown",
     {"line 1: $DWGCODEPAGE of this header says 'KOI-8', which is not known; texts are shown by "
      "ANSI_1252"}},
    {"code_page_wrong",
     {"line 54: 'Hämeentie' looks like UTF-8, where texts of this release are ANSI_1252"}},
    {"utf8_wrong", {"line 54: 'H\\xE4meentie' is no UTF-8"}},
    {"byte_order_mark", {"line 1: the file begins with a byte order mark"}},
    {"announced_2gb",
     {"line 54: the group before announces 2147483647 bytes of data, the whole file has 281"}},
    {"outside_of_sections", {"line 15: 'LINE' stands outside of the sections"}},
    {"section_without_end", {"line 13: SECTION begins before the section above has ended"}},
    {"section_without_name", {"line 17: the section above has no name (group 2)"}},
    {"only_eof", {"line 3: the drawing has no HEADER section"}},
    {"binary_text_after_eof", {"byte 290: 'tail\\x00' stands after EOF"}},
    {"binary_no_eof", {"byte 284: the drawing has no EOF"}},
    {"binary_nan", {"byte 180: group 11 holds a value that is no finite number"}},
    {"binary_bad_handle", {"byte 116: group 5 holds 'oho' where a handle belongs"}},
    {"binary_announced_2gb",
     {"byte 266: the group before announces 2147483647 bytes of data, the whole file has 291"}},
};

std::vector<std::string> findingsOf(const Document& document) {
    std::vector<std::string> all;
    for (const Finding& finding : document.findings()) {
        all.push_back(finding.where.text() + ": " + finding.message);
    }
    return all;
}

TEST(Findings, EachOddDrawingIsKeptAndItsOddityTold) {
    for (const Odd& odd : kOdd) {
        const auto path = dataFolder() / "odd" / (std::string(odd.name) + ".dxf");
        ASSERT_TRUE(std::filesystem::exists(path)) << path;
        try {
            const auto document = Document::open(path);
            EXPECT_EQ(findingsOf(*document), odd.findings) << odd.name;
            EXPECT_EQ(dxf::apply(*document, {}), test::readBytes(path)) << odd.name;
        } catch (const ReadError& error) {
            ADD_FAILURE() << error.what();
        }
    }
}

TEST(Findings, NoOddDrawingIsWithoutItsRow) {
    EXPECT_EQ(test::drawingsOf(dataFolder() / "odd").size(), std::size(kOdd));
}

TEST(Findings, OddLineEndsGiveTheSameRecordsAsPlainOnes) {
    const auto plain =
        parse(test::readBytes(dataFolder() / "odd" / "no_end_of_line_at_the_end.dxf"));
    for (const char* name : {"mixed_ends", "lone_returns", "doubled_returns"}) {
        const auto odd = Document::open(dataFolder() / "odd" / (std::string(name) + ".dxf"));
        ASSERT_EQ(odd->size(), plain->size()) << name;
        for (RecordIndex record = 0; record < odd->size(); ++record) {
            EXPECT_EQ(odd->type(record), plain->type(record));
            EXPECT_EQ(odd->handle(record), plain->handle(record));
            EXPECT_EQ(odd->section(record), plain->section(record));
            EXPECT_EQ(odd->position(record).number, plain->position(record).number);
        }
        EXPECT_EQ(odd->release(), Release::R2000);
    }
}

TEST(Findings, AReturnWithinALineIsPartOfAValueInFilesOfLineFeeds) {
    const auto document = parse(entitiesOnly("0\nTEXT\n1\nup\rdown\n"));
    EXPECT_EQ(document->groups(1).find(1)->bytes(), "up\rdown");
}

TEST(Findings, HandlesAreDueFromR13OnOnly) {
    const std::string groups = "0\nLINE\n8\n0\n";
    EXPECT_TRUE(parse(withHeader("AC1009", "ANSI_1252", groups))->findings().empty());
    EXPECT_EQ(parse(withHeader("AC1012", "ANSI_1252", groups))->findings().size(), 1U);
    const std::string classes = "0\nSECTION\n2\nCLASSES\n0\nCLASS\n1\nX\n0\nENDSEC\n";
    EXPECT_TRUE(parse(test::replaced(withHeader("AC1015", "ANSI_1252", ""), "0\nSECTION\n2\nENT",
                                     classes + "0\nSECTION\n2\nENT"))
                    ->findings()
                    .empty());
}

TEST(Findings, AHandleOfZeroIsNone) {
    const auto document = parse(withHeader("AC1015", "ANSI_1252", "0\nLINE\n5\n0\n"));
    EXPECT_EQ(findingsOf(*document),
              (std::vector<std::string>{"line 22: group 5 holds '0' where a handle belongs"}));
    EXPECT_FALSE(document->handle(3));
}

TEST(Findings, TheFirstThousandAreKeptAndTheOthersCounted) {
    std::string groups = "0\nLINE\n5\n1\n";
    for (int at = 0; at < 1234; ++at) groups += "10\nNaN\n";
    const auto document = parse(withHeader("AC1015", "ANSI_1252", groups));
    EXPECT_EQ(document->findings().size(), Document::kMaxFindings);
    EXPECT_EQ(document->omittedFindings(), 1234 - Document::kMaxFindings);
}

TEST(Findings, Utf8InTheHeaderOfAModernDrawingIsAllRight) {
    const std::string drawing =
        "0\nSECTION\n2\nHEADER\n9\n$X\n1\n\u00E4\n9\n$ACADVER\n1\nAC1021\n"
        "0\nENDSEC\n" +
        entitiesOnly("");
    EXPECT_TRUE(parse(drawing)->findings().empty());
    EXPECT_EQ(findingsOf(*parse(test::replaced(drawing, "AC1021", "AC1018"))),
              (std::vector<std::string>{
                  "line 8: '\u00E4' looks like UTF-8, where texts of this release are ANSI_1252"}));
}

TEST(Findings, AnAnnouncedLengthThatTheFileCouldHoldIsNotTold) {
    EXPECT_TRUE(parse(withHeader("AC1015", "ANSI_1252", "0\nX\n5\n1\n92\n2\n310\n0A1B\n"))
                    ->findings()
                    .empty());
    EXPECT_EQ(parse(withHeader("AC1015", "ANSI_1252", "0\nX\n5\n1\n92\n-1\n310\n0A1B\n"))
                  ->findings()
                  .size(),
              1U);
}

}  // namespace
}  // namespace host::dxf
