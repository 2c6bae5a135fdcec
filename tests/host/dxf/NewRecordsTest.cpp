// New records in a drawing: spelt as their neighbours, everything else kept.
#include <gtest/gtest.h>

#include "host/dxf/Compare.h"
#include "host/dxf/Edit.h"
#include "tests/host/dxf/Drawings.h"

namespace host::dxf {
namespace {

using test::entitiesOnly;
using test::parse;
using test::replaced;

GroupEdit group(int code, GroupEdit::Value value) {
    return {GroupEdit::Kind::insertBefore, 0, code, std::move(value)};
}

std::vector<GroupEdit> point(double x) {
    return {group(0, L"POINT"), group(8, L"a"), group(70, std::int64_t{7}), group(10, x)};
}

constexpr char kCircle[] = "0\nCIRCLE\n8\nroads\n10\n1.5\n40\n2.0\n";

// The record that ENDSEC is in entitiesOnly(kCircle).
constexpr RecordIndex kEndSec = 2;

std::string withPoint(const std::string& before, RecordIndex where, double x = 3.0) {
    return dxf::apply(*parse(before), {{where, point(x)}});
}

TEST(NewRecords, StandBeforeTheRecordTheyAreGivenFor) {
    const std::string before = entitiesOnly(kCircle);
    EXPECT_EQ(withPoint(before, kEndSec),
              replaced(before, "0\nENDSEC", "0\nPOINT\n8\na\n70\n7\n10\n3.0\n0\nENDSEC"));
    EXPECT_EQ(withPoint(before, 1),
              replaced(before, "0\nCIRCLE", "0\nPOINT\n8\na\n70\n7\n10\n3.0\n0\nCIRCLE"));
}

TEST(NewRecords, SeveralStandInTheirOrder) {
    const std::string before = entitiesOnly(kCircle);
    std::vector<GroupEdit> both = point(3.0);
    for (GroupEdit& edit : point(4.0)) both.push_back(edit);
    EXPECT_EQ(
        dxf::apply(*parse(before), {{kEndSec, both}}),
        replaced(before, "0\nENDSEC",
                 "0\nPOINT\n8\na\n70\n7\n10\n3.0\n0\nPOINT\n8\na\n70\n7\n10\n4.0\n0\nENDSEC"));
}

TEST(NewRecords, AreSpeltAsTheRecordBeforeThem) {
    const std::string before =
        "  0\r\nSECTION\r\n  2\r\nENTITIES\r\n  0\r\nPOINT\r\n  8\r\na\r\n 70\r\n     1\r\n 10\r\n"
        "2.500000\r\n 20\r\n1.000000\r\n  0\r\nENDSEC\r\n  0\r\nEOF\r\n";
    EXPECT_EQ(withPoint(before, kEndSec),
              replaced(before, "  0\r\nENDSEC",
                       "  0\r\nPOINT\r\n  8\r\na\r\n 70\r\n     7\r\n 10\r\n3.000000\r\n"
                       "  0\r\nENDSEC"));
}

TEST(NewRecords, GroupsOfThreeDigitsTakeTheWidthOfTheOthers) {
    const std::string before = replaced(entitiesOnly(kCircle), "0\nENDSEC", "  0\nENDSEC");
    EXPECT_EQ(dxf::apply(*parse(before), {{1, {group(0, L"X"), group(100, L"AcDbX")}}}),
              replaced(before, "0\nCIRCLE", "0\nX\n100\nAcDbX\n0\nCIRCLE"));
}

TEST(NewRecords, ComeBehindTheLastOneOfADrawingWithoutEof) {
    const std::string before = "0\nSECTION\n2\nENTITIES\n0\nPOINT\n10\n1.5\n";
    EXPECT_EQ(withPoint(before, 2), before + "0\nPOINT\n8\na\n70\n7\n10\n3.0\n");
}

TEST(NewRecords, AFileWithoutALastLineEndGoesOnSo) {
    const std::string before = "0\r\nSECTION\r\n2\r\nENTITIES\r\n0\r\nPOINT\r\n10\r\n1.5";
    EXPECT_EQ(withPoint(before, 2), before + "\r\n0\r\nPOINT\r\n8\r\na\r\n70\r\n7\r\n10\r\n3.0");
}

TEST(NewRecords, ComeBeforeTheFirstRecordAndBehindCommentsThere) {
    EXPECT_EQ(withPoint("0\r\nEOF", 0), "0\r\nPOINT\r\n8\r\na\r\n70\r\n7\r\n10\r\n3.0\r\n0\r\nEOF");
    EXPECT_EQ(withPoint("999\nhello\n0\nEOF\n", 0),
              "999\nhello\n0\nPOINT\n8\na\n70\n7\n10\n3.0\n0\nEOF\n");
}

TEST(NewRecords, WhatStandsBehindEofStaysThere) {
    const std::string before = entitiesOnly(kCircle) + "signature";
    EXPECT_EQ(withPoint(before, kEndSec),
              replaced(before, "0\nENDSEC", "0\nPOINT\n8\na\n70\n7\n10\n3.0\n0\nENDSEC"));
}

TEST(NewRecords, StandBetweenEditsOfTheirNeighbours) {
    const std::string before = entitiesOnly(kCircle);
    std::vector<GroupEdit> edits = point(3.0);
    edits.insert(edits.begin(), {GroupEdit::Kind::removeRecord, 0, 0, {}});
    EXPECT_EQ(dxf::apply(*parse(before), {{1, edits}}),
              replaced(before, kCircle, "0\nPOINT\n8\na\n70\n7\n10\n3.0\n"));
    const Changes around = {{1, {test::insertReal(3, 39, 1.0)}}, {kEndSec, point(3.0)}};
    EXPECT_EQ(dxf::apply(*parse(before), around),
              replaced(before, "0\nENDSEC", "39\n1.0\n0\nPOINT\n8\na\n70\n7\n10\n3.0\n0\nENDSEC"));
}

TEST(NewRecords, BinaryGroupsHaveTheWidthOfTheFile) {
    const std::string sentinel("AutoCAD Binary DXF\r\n\x1a\0", 22);
    const auto text = [](const char* value) { return value + std::string(1, '\0'); };
    const std::string x("\0\0\0\0\0\0\x08\x40", 8);  // 3.0
    const std::string narrow = sentinel + std::string(1, '\0') + text("SECTION") + "\2" +
                               text("ENTITIES") + std::string(1, '\0');
    const std::string narrowEnd = text("ENDSEC") + std::string(1, '\0') + text("EOF");
    EXPECT_EQ(dxf::apply(*parse(narrow + narrowEnd), {{1, point(3.0)}}),
              narrow + text("POINT") + "\x08" + text("a") + std::string("\x46\7\0", 3) + "\x0a" +
                  x + std::string(1, '\0') + narrowEnd);
    const std::string zero(2, '\0');
    const std::string wide =
        sentinel + zero + text("SECTION") + std::string("\2\0", 2) + text("ENTITIES") + zero;
    const std::string wideEnd = text("ENDSEC") + zero + text("EOF");
    EXPECT_EQ(dxf::apply(*parse(wide + wideEnd), {{1, point(3.0)}}),
              wide + text("POINT") + std::string("\x08\0", 2) + text("a") +
                  std::string("\x46\0\7\0", 4) + std::string("\x0a\0", 2) + x + zero + wideEnd);
}

TEST(NewRecords, WhatCannotBeIsRefused) {
    const auto drawing = parse(entitiesOnly(kCircle));
    const auto refused = [&](RecordIndex where, std::vector<GroupEdit> edits) {
        EXPECT_THROW(dxf::apply(*drawing, {{where, std::move(edits)}}), std::invalid_argument);
    };
    refused(kEndSec, {group(8, L"a"), group(0, L"POINT")});  // no group 0 at the head
    refused(drawing->size(), point(1.0));                    // behind EOF
    refused(drawing->size() + 1, point(1.0));
    refused(kEndSec, {group(0, L"TE\nXT")});
    refused(kEndSec, {group(0, L"POINT"), group(10, L"1.0")});
    refused(kEndSec, {group(0, L"POINT"), group(310, L"0")});
    refused(kEndSec, {group(0, L"POINT"), group(10, std::numeric_limits<double>::infinity())});
}

TEST(NewRecords, AreToldByComparingAndKnownAsExpected) {
    const auto before = parse(entitiesOnly(kCircle));
    const Changes changes = {{kEndSec, point(3.0)}};
    const auto after = parse(dxf::apply(*before, changes));
    const auto differences = compare(*before, *after);
    ASSERT_EQ(differences.size(), 1U);
    EXPECT_EQ(differences[0].text(), "line 13: POINT inserted");
    EXPECT_TRUE(isExpected(differences[0], *before, *after, changes));
    EXPECT_FALSE(isExpected(differences[0], *before, *after, {}));
    EXPECT_FALSE(isExpected(differences[0], *before, *after, {{kEndSec, point(4.0)}}));
    std::vector<GroupEdit> longer = point(3.0);
    longer.push_back(group(20, 1.0));
    EXPECT_FALSE(isExpected(differences[0], *before, *after, {{kEndSec, longer}}));
}

}  // namespace
}  // namespace host::dxf
