#include "host/dxf/Compare.h"

#include <gtest/gtest.h>

#include "tests/host/dxf/Drawings.h"

namespace host::dxf {
namespace {

using test::entitiesOnly;
using test::insertReal;
using test::parse;
using test::replaced;
using test::replaceReal;

std::vector<std::string> linesOf(const std::string& before, const std::string& after) {
    std::vector<std::string> lines;
    for (const Difference& difference : compare(*parse(before), *parse(after))) {
        lines.push_back(difference.text());
    }
    return lines;
}

using Lines = std::vector<std::string>;

constexpr char kLine[] = "0\nLINE\n5\n2F\n8\nKATU\n10\n1.0\n20\n2.0\n";
constexpr char kText[] = "0\nTEXT\n5\n30\n10\n1.5\n40\n2.5\n1\nnimi\n";
constexpr char kPoint[] = "0\nPOINT\n5\n31\n10\n7.0\n";

const std::string kDrawing = entitiesOnly(std::string(kLine) + kText + kPoint);

TEST(Compare, ADrawingEqualsItself) {
    for (const auto& path : test::drawingsOf(test::dataFolder() / "releases")) {
        EXPECT_TRUE(compare(*Document::open(path), *Document::open(path)).empty());
    }
}

TEST(Compare, AChangedValueIsTold) {
    EXPECT_EQ(linesOf(kDrawing, replaced(kDrawing, "1.5", "2.75")),
              Lines{"line 19: TEXT 30, group 10: '1.5' became '2.75'"});
}

TEST(Compare, AnotherSpellingOfANumberIsAChange) {
    EXPECT_EQ(linesOf(kDrawing, replaced(kDrawing, "1.5", "1.50")),
              Lines{"line 19: TEXT 30, group 10: '1.5' became '1.50'"});
}

TEST(Compare, AnInsertedGroupIsTold) {
    EXPECT_EQ(linesOf(kDrawing, replaced(kDrawing, "nimi\n", "nimi\n50\n97.5\n")),
              Lines{"line 25: TEXT 30, group 50 inserted: '97.5'"});
}

TEST(Compare, ARemovedGroupIsToldWhereItStood) {
    EXPECT_EQ(linesOf(kDrawing, replaced(kDrawing, "40\n2.5\n", "")),
              Lines{"line 21: TEXT 30, group 40 removed: '2.5'"});
}

TEST(Compare, BlanksAroundACodeAndLineEndsAreTold) {
    EXPECT_EQ(linesOf(kDrawing, replaced(kDrawing, "40\n2.5", " 40\n2.5")),
              Lines{"line 21: TEXT 30, group 40: other blanks or line end around '2.5'"});
    EXPECT_EQ(linesOf(kDrawing, replaced(kDrawing, "40\n2.5\n", "40\n2.5\r\n")),
              Lines{"line 21: TEXT 30, group 40: other blanks or line end around '2.5'"});
}

TEST(Compare, AnotherHandleIsAChangeOfTheRecord) {
    EXPECT_EQ(linesOf(kDrawing, replaced(kDrawing, "5\n30", "5\n3A")),
              Lines{"line 17: TEXT 30, group 5: '30' became '3A'"});
}

TEST(Compare, AnotherTypeIsARecordForAnother) {
    EXPECT_EQ(linesOf(kDrawing, replaced(kDrawing, "0\nTEXT", "0\nMTEXT")),
              (Lines{"line 15: TEXT 30 removed", "line 15: MTEXT 30 inserted"}));
}

TEST(Compare, InsertedAndRemovedRecordsAreTold) {
    const std::string added = replaced(kDrawing, kText, std::string("0\nARC\n5\n40\n") + kText);
    EXPECT_EQ(linesOf(kDrawing, added), Lines{"line 15: ARC 40 inserted"});
    EXPECT_EQ(linesOf(added, kDrawing), Lines{"line 15: ARC 40 removed"});
    EXPECT_EQ(linesOf(kDrawing, replaced(kDrawing, kLine, "")), Lines{"line 5: LINE 2F removed"});
    EXPECT_EQ(linesOf(kDrawing, replaced(kDrawing, kPoint, "")),
              Lines{"line 25: POINT 31 removed"});
}

TEST(Compare, AnInsertedRecordHidesNoChangeBehindIt) {
    std::string after = replaced(kDrawing, kText, std::string("0\nARC\n5\n40\n") + kText);
    after = replaced(after, "7.0", "8.0");
    EXPECT_EQ(linesOf(kDrawing, after), (Lines{"line 15: ARC 40 inserted",
                                               "line 33: POINT 31, group 10: '7.0' became '8.0'"}));
}

TEST(Compare, MovedRecordsAreRemovedHereAndInsertedThere) {
    const std::string swapped = entitiesOnly(std::string(kText) + kLine + kPoint);
    const auto lines = linesOf(kDrawing, swapped);
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_NE(lines[0].find("TEXT 30 inserted"), std::string::npos);
    EXPECT_NE(lines[1].find("TEXT 30 removed"), std::string::npos);
}

TEST(Compare, RecordsWithoutHandlesAreMatchedByTheirNeighbours) {
    std::string groups;
    for (int at = 0; at < 20; ++at) groups += "0\nPOINT\n10\n" + std::to_string(at) + ".0\n";
    const std::string before = entitiesOnly(groups);
    EXPECT_EQ(linesOf(before, replaced(before, "10\n7.0", "10\n7.5")),
              Lines{"line 35: POINT, group 10: '7.0' became '7.5'"});
    EXPECT_EQ(linesOf(before, replaced(before, "0\nPOINT\n10\n7.0\n", "")),
              Lines{"line 33: POINT removed"});
    EXPECT_EQ(linesOf(before, replaced(before, "0\nPOINT\n10\n7.0\n",
                                       "0\nPOINT\n10\n6.5\n0\nPOINT\n10\n7.0\n")),
              Lines{"line 33: POINT inserted"});
}

TEST(Compare, CommentsAheadAndTextBehindAreComparedToo) {
    const std::string commented = "999\nfirst\n" + kDrawing;
    EXPECT_EQ(linesOf(commented, replaced(commented, "first", "second")),
              Lines{"line 1: comment, group 999: 'first' became 'second'"});
    EXPECT_EQ(linesOf(kDrawing, commented), Lines{"line 1: comment, group 999 inserted: 'first'"});
    EXPECT_EQ(linesOf(kDrawing, kDrawing + "tail"),
              Lines{"line 33: bytes outside of groups: '' became 'tail'"});
    EXPECT_EQ(linesOf(kDrawing, "\xEF\xBB\xBF" + kDrawing).size(), 1U);
}

TEST(Compare, ManyChangesInOneLongRecordAreEachTold) {
    std::string groups = "0\nLWPOLYLINE\n5\n1\n";
    for (int at = 0; at < 4000; ++at) groups += "10\n" + std::to_string(at) + ".0\n20\n0.0\n";
    const std::string before = entitiesOnly(groups);
    std::string after = replaced(before, "10\n10.0\n", "10\n10.5\n");
    after = replaced(after, "10\n3990.0\n", "10\n3990.5\n");
    EXPECT_EQ(linesOf(before, after).size(), 2U);
    // And with a group inserted between them, so that the lists differ in length.
    EXPECT_EQ(linesOf(before, replaced(after, "10\n2000.0\n", "42\n0.5\n10\n2000.0\n")).size(), 3U);
}

TEST(Compare, BinaryValuesAreToldInWords) {
    const auto before = Document::open(test::dataFolder() / "releases" / "r2018_binary.dxf");
    for (RecordIndex record = 0; record < before->size(); ++record) {
        if (before->type(record) != "XRECORD") continue;
        std::size_t index = 0;
        Changes changes;
        for (const Group& group : before->groups(record)) {
            if (group.code() == 90) {
                changes[record].push_back({GroupEdit::Kind::replace, index, 90, std::int64_t{12}});
            }
            if (group.code() == 40) changes[record].push_back(replaceReal(index, 40, 0.5));
            ++index;
        }
        const auto after = parse(dxf::apply(*before, changes));
        const auto differences = compare(*before, *after);
        ASSERT_EQ(differences.size(), 2U);
        EXPECT_EQ(differences[0].oldValue, "0.3333333333333333");
        EXPECT_EQ(differences[0].newValue, "0.5");
        EXPECT_EQ(differences[1].oldValue, "-70000");
        EXPECT_EQ(differences[1].newValue, "12");
        EXPECT_EQ(differences[1].where.unit, Position::Unit::byte);
        return;
    }
    FAIL() << "no XRECORD";
}

TEST(Compare, EndsWhenTheReportHasEnough) {
    std::string after = kDrawing;
    for (const char* number : {"1.0", "2.0", "7.0"}) after = replaced(after, number, "9.0");
    int told = 0;
    compare(*parse(kDrawing), *parse(after), [&told](const Difference&) { return ++told < 2; });
    EXPECT_EQ(told, 2);
}

TEST(Compare, DifferencesAreExpectedWhereAnEditMadeThem) {
    const auto before = parse(kDrawing);
    const Changes changes = {{2, {replaceReal(2, 10, 2.5), insertReal(4, 50, 97.5)}}};
    const auto after = parse(dxf::apply(*before, changes));
    const auto differences = compare(*before, *after);
    ASSERT_EQ(differences.size(), 2U);
    for (const Difference& difference : differences) {
        EXPECT_TRUE(isExpected(difference, *before, *after, changes)) << difference.text();
        EXPECT_FALSE(isExpected(difference, *before, *after, {}));
        EXPECT_FALSE(isExpected(difference, *before, *after, {{1, changes.at(2)}}));
    }
    const auto unexpected = [&](const std::string& from, const std::string& to) {
        const auto other = parse(replaced(dxf::apply(*before, changes), from, to));
        std::size_t count = 0;
        for (const Difference& difference : compare(*before, *other)) {
            count += isExpected(difference, *before, *other, changes) ? 0 : 1;
        }
        return count;
    };
    EXPECT_EQ(unexpected("97.5", "97.6"), 1U);        // another value than the edit's
    EXPECT_EQ(unexpected("40\n2.5", "40\n2.6"), 1U);  // another group of the same record
    EXPECT_EQ(unexpected("7.0", "7.1"), 1U);          // another record
    EXPECT_EQ(unexpected("50\n97.5\n", " 50\n97.5\n"), 0U);
    EXPECT_EQ(unexpected("40\n", " 40\n"), 1U);  // another spelling
    EXPECT_EQ(unexpected(kPoint, ""), 1U);       // a record gone
}

TEST(Compare, ARecordThatAnEditRemovedIsExpectedToBeGone) {
    const auto before = parse(kDrawing);
    const Changes changes = {{2, {{GroupEdit::Kind::removeRecord, 0, 0, 0.0}}}};
    const auto after = parse(dxf::apply(*before, changes));
    const auto differences = compare(*before, *after);
    ASSERT_EQ(differences.size(), 1U);
    EXPECT_EQ(differences[0].text(), "line 15: TEXT 30 removed");
    EXPECT_TRUE(isExpected(differences[0], *before, *after, changes));
    EXPECT_FALSE(isExpected(differences[0], *before, *after, {{1, changes.at(2)}}));
    EXPECT_FALSE(isExpected(differences[0], *before, *after, {{2, {replaceReal(2, 10, 2.5)}}}));
}

}  // namespace
}  // namespace host::dxf
