#include "host/dxf/Edit.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <stdexcept>

#include "tests/host/dxf/Drawings.h"

namespace host::dxf {
namespace {

using test::entitiesOnly;
using test::insertReal;
using test::parse;
using test::replaced;
using test::replaceReal;
using test::withHeader;

GroupEdit replaceInteger(std::size_t index, int code, std::int64_t value) {
    return {GroupEdit::Kind::replace, index, code, value};
}

GroupEdit insertInteger(std::size_t index, int code, std::int64_t value) {
    return {GroupEdit::Kind::insertAfter, index, code, value};
}

GroupEdit replaceText(std::size_t index, int code, std::wstring value) {
    return {GroupEdit::Kind::replace, index, code, std::move(value)};
}

GroupEdit insertText(std::size_t index, int code, std::wstring value) {
    return {GroupEdit::Kind::insertAfter, index, code, std::move(value)};
}

// The drawing with `edits` to its record `record`.
std::string edited(const std::string& bytes, RecordIndex record, std::vector<GroupEdit> edits) {
    return dxf::apply(*parse(bytes), {{record, std::move(edits)}});
}

constexpr char kText[] = "0\nTEXT\n8\nKATU\n10\n1.5\n20\n2.0\n1\nnimi\n72\n1\n";

TEST(Edit, WithoutChangesTheBytesAreTheSame) {
    for (const auto& path : test::drawingsOf(test::dataFolder() / "releases")) {
        EXPECT_EQ(dxf::apply(*Document::open(path), {}), test::readBytes(path)) << path;
    }
}

TEST(Edit, ReplacesAValueAndNothingElse) {
    EXPECT_EQ(edited(entitiesOnly(kText), 1, {replaceReal(2, 10, 25496100.125)}),
              replaced(entitiesOnly(kText), "1.5", "25496100.125"));
}

TEST(Edit, InsertsAGroupBehindAnother) {
    EXPECT_EQ(edited(entitiesOnly(kText), 1, {insertReal(4, 50, 97.5)}),
              replaced(entitiesOnly(kText), "nimi\n", "nimi\n50\n97.5\n"));
}

TEST(Edit, InsertsBehindTheLastGroupOfARecord) {
    EXPECT_EQ(edited(entitiesOnly(kText), 1, {insertReal(5, 50, 90.0)}),
              replaced(entitiesOnly(kText), "72\n1\n", "72\n1\n50\n90.0\n"));
}

TEST(Edit, InsertionsBehindOneGroupStandInTheirOrder) {
    EXPECT_EQ(edited(entitiesOnly(kText), 1, {insertReal(4, 50, 1.0), insertReal(4, 51, 2.5)}),
              replaced(entitiesOnly(kText), "nimi\n", "nimi\n50\n1.0\n51\n2.5\n"));
}

TEST(Edit, EditsOfARecordMayComeInAnyOrder) {
    const std::string expected = replaced(
        replaced(entitiesOnly(kText), "nimi\n", "nimi\n50\n3.0\n"), "1.5\n20\n2.0", "4.0\n20\n5.0");
    EXPECT_EQ(edited(entitiesOnly(kText), 1,
                     {insertReal(4, 50, 3.0), replaceReal(3, 20, 5.0), replaceReal(2, 10, 4.0)}),
              expected);
}

TEST(Edit, EditsOfSeveralRecordsStandEachInItsOwn) {
    const std::string bytes = entitiesOnly(std::string(kText) + kText + kText);
    const auto document = parse(bytes);
    const std::string result =
        dxf::apply(*document, {{3, {replaceReal(2, 10, 3.5)}}, {1, {replaceReal(2, 10, 2.5)}}});
    std::string expected = replaced(bytes, "1.5", "2.5");
    expected.replace(expected.rfind("1.5"), 3, "3.5");
    EXPECT_EQ(result, expected);
}

TEST(Edit, AReplacementThatChangesNothingKeepsTheSpelling) {
    const std::string bytes =
        entitiesOnly("0\nTEXT\n10\n 1.50E+00\n70\n   007\n1\n\\U+00E4\n5\n00a\n40\n-0\n");
    EXPECT_EQ(edited(bytes, 1,
                     {replaceReal(1, 10, 1.5), replaceInteger(2, 70, 7),
                      replaceText(3, 1, L"\u00E4"), replaceText(4, 5, L"00a")}),
              bytes);
    // A zero of the other sign is another value.
    EXPECT_EQ(edited(bytes, 1, {replaceReal(5, 40, 0.0)}), replaced(bytes, "40\n-0", "40\n0"));
}

TEST(Edit, LineEndsAreThoseOfTheNeighbour) {
    const std::string bytes =
        "0\r\nSECTION\r\n2\r\nENTITIES\r\n0\nTEXT\n1\nx\r\n40\n1.0\n0\r\nEOF\r\n";
    EXPECT_EQ(edited(bytes, 1, {insertReal(1, 50, 2.0)}),
              replaced(bytes, "1\nx\r\n", "1\nx\r\n50\n2.0\r\n"));
    EXPECT_EQ(edited(bytes, 1, {insertReal(2, 50, 2.0)}),
              replaced(bytes, "40\n1.0\n", "40\n1.0\n50\n2.0\n"));
    std::string returns = bytes;
    for (const char* feed : {"\r\n", "\n"}) {
        for (std::size_t at; (at = returns.find(feed)) != std::string::npos;) {
            returns.replace(at, std::string(feed).size(), "\r");
        }
    }
    EXPECT_EQ(edited(returns, 1, {insertReal(1, 50, 2.0)}),
              replaced(returns, "1\rx\r", "1\rx\r50\r2.0\r"));
}

TEST(Edit, BehindALastLineWithoutEndTheFileStillEndsWithoutOne) {
    const std::string bytes = "0\nSECTION\n2\nENTITIES\n0\nTEXT\n40\n1.0";
    EXPECT_EQ(edited(bytes, 1, {insertReal(1, 50, 2.0)}), bytes + "\n50\n2.0");
    EXPECT_EQ(edited(bytes, 1, {insertReal(1, 50, 2.0), replaceReal(1, 40, 3.0)}),
              replaced(bytes, "1.0", "3.0") + "\n50\n2.0");
    EXPECT_EQ(edited(bytes, 1, {insertReal(1, 50, 2.0), insertReal(1, 51, 3.0)}),
              bytes + "\n50\n2.0\n51\n3.0");
}

TEST(Edit, BehindALastLineThatEndsInAReturnTheNextLineStillBegins) {
    const std::string bytes = "0\r\nSECTION\r\n0\r\nTEXT\r\n40\r\n1.0\r";
    EXPECT_EQ(edited(bytes, 1, {insertReal(1, 50, 2.0)}), bytes + "\r\n50\r\n2.0\r");
}

TEST(Edit, AnEmptyTextIsNotPutBetweenAReturnAndALineFeed) {
    const std::string bytes = "0\rSECTION\n0\rTEXT\n1\rx\n";
    EXPECT_THROW(edited(bytes, 1, {replaceText(1, 1, L"")}), std::invalid_argument);
    EXPECT_THROW(edited(bytes, 1, {insertText(1, 1, L"")}), std::invalid_argument);
    EXPECT_EQ(edited(bytes, 1, {insertText(1, 1, L"y")}), bytes + "1\ry\n");
}

TEST(Edit, CodesArePaddedAsOthersOfAsManyDigits) {
    const std::string padded = entitiesOnly("  0\nTEXT\n 10\n1.0\n100\nAcDbText\n");
    EXPECT_EQ(edited(padded, 1, {insertReal(1, 50, 2.0)}),
              replaced(padded, "1.0\n", "1.0\n 50\n2.0\n"));
    EXPECT_EQ(edited(padded, 1, {insertText(1, 8, L"x")}),
              replaced(padded, "1.0\n", "1.0\n  8\nx\n"));
    EXPECT_EQ(edited(padded, 1, {insertReal(1, 210, 2.0)}),
              replaced(padded, "1.0\n", "1.0\n210\n2.0\n"));
    EXPECT_EQ(edited(padded, 1, {insertReal(1, 1010, 2.0)}),
              replaced(padded, "1.0\n", "1.0\n1010\n2.0\n"));
    const std::string odd = entitiesOnly(" 0\nTEXT\n 10 \n1.0\n");  // one blank before all codes
    EXPECT_EQ(edited(odd, 1, {insertReal(1, 50, 2.0)}), replaced(odd, "1.0\n", "1.0\n 50 \n2.0\n"));
}

TEST(Edit, WithoutACodeOfAsManyDigitsTheWidthOfGroupZeroCounts) {
    const std::string wide = entitiesOnly("     0\nTEXT\n     8\nx\n");
    EXPECT_EQ(edited(wide, 1, {insertReal(1, 50, 2.0)}), replaced(wide, "x\n", "x\n    50\n2.0\n"));
    const std::string bare = entitiesOnly("0\nTEXT\n8\nx\n");
    EXPECT_EQ(edited(bare, 1, {insertReal(1, 50, 2.0)}), replaced(bare, "x\n", "x\n50\n2.0\n"));
}

TEST(Edit, IntegersArePaddedAsTheOldValue) {
    const std::string bytes = entitiesOnly("0\nTEXT\n70\n     7\n90\n        1\n71\n7\n");
    EXPECT_EQ(edited(bytes, 1, {replaceInteger(1, 70, -12)}), replaced(bytes, "     7", "   -12"));
    EXPECT_EQ(edited(bytes, 1, {replaceInteger(2, 90, 123456789)}),
              replaced(bytes, "        1", "123456789"));
    EXPECT_EQ(edited(bytes, 1, {replaceInteger(3, 71, 12)}), replaced(bytes, "71\n7", "71\n12"));
}

TEST(Edit, InsertedIntegersArePaddedAsOthersOfTheirType) {
    const std::string record = entitiesOnly("0\nTEXT\n70\n     7\n0\nLINE\n8\n0\n");
    EXPECT_EQ(edited(record, 1, {insertInteger(1, 71, 2)}),
              replaced(record, "     7\n", "     7\n71\n     2\n"));
    EXPECT_EQ(edited(record, 2, {insertInteger(1, 71, 2)}),  // as the file's
              replaced(record, "8\n0\n", "8\n0\n71\n     2\n"));
    EXPECT_EQ(edited(record, 2, {insertInteger(1, 90, 2)}),  // the file has none of 32 bits
              replaced(record, "8\n0\n", "8\n0\n90\n2\n"));
    EXPECT_EQ(edited(record, 2, {insertInteger(1, 290, 1)}),
              replaced(record, "8\n0\n", "8\n0\n290\n1\n"));
}

TEST(Edit, TextsAreWrittenInTheEncodingOfTheFile) {
    const std::string old = withHeader("AC1015", "ANSI_1252", "0\nTEXT\n5\n1\n1\nnimi\n");
    EXPECT_EQ(edited(old, 3, {replaceText(2, 1, L"H\u00E4me \u0416")}),
              replaced(old, "nimi", "H\xE4me \\U+0416"));
    const std::string modern = withHeader("AC1027", "ANSI_1252", "0\nTEXT\n5\n1\n1\nnimi\n");
    EXPECT_EQ(edited(modern, 3, {replaceText(2, 1, L"H\u00E4me \u0416")}),
              replaced(modern, "nimi", "H\xC3\xA4me \xD0\x96"));
    EXPECT_EQ(edited(old, 3, {replaceText(2, 1, L"")}), replaced(old, "nimi", ""));
}

TEST(Edit, BinaryNumbersAreWrittenAsTheyAre) {
    const auto document = Document::open(test::dataFolder() / "releases" / "r2010_binary.dxf");
    for (RecordIndex record = 0; record < document->size(); ++record) {
        if (document->type(record) != "XRECORD") continue;
        std::vector<GroupEdit> edits;
        std::size_t index = 0;
        for (const Group& group : document->groups(record)) {
            if (group.code() == 40) edits.push_back(replaceReal(index, 40, -0.1));
            if (group.code() == 70) edits.push_back(replaceInteger(index, 70, -2));
            if (group.code() == 90) edits.push_back(replaceInteger(index, 90, 0x01020304));
            if (group.code() == 160) edits.push_back(replaceInteger(index, 160, -3));
            if (group.code() == 290) edits.push_back(replaceInteger(index, 290, 0));
            if (group.code() == 1) edits.push_back(replaceText(index, 1, L"y\u00F6"));
            if (group.code() == 1) edits.push_back(insertReal(index, 41, 1.0));
            ++index;
        }
        const auto result = parse(dxf::apply(*document, {{record, edits}}));
        const GroupRange groups = result->groups(record);
        EXPECT_EQ(groups.find(40)->real(), -0.1);
        EXPECT_EQ(groups.find(70)->integer(), -2);
        EXPECT_EQ(groups.find(90)->bytes(), "\x04\x03\x02\x01");
        EXPECT_EQ(groups.find(160)->integer(), -3);
        EXPECT_EQ(groups.find(290)->integer(), 0);
        EXPECT_EQ(groups.find(1)->bytes(), "y\xC3\xB6");
        EXPECT_EQ(groups.find(41)->raw(), std::string_view("\x29\0\0\0\0\0\0\0\xF0\x3F", 10));
        EXPECT_EQ(groups.raw().size(), document->raw(record).size() - 5 + 3 + 10 - 1 + 1 - 1 + 0);
        return;
    }
    FAIL() << "no XRECORD";
}

TEST(Edit, BinaryCodesHaveTheWidthOfTheFile) {
    const auto old = Document::open(test::dataFolder() / "releases" / "r12_binary.dxf");
    const auto last = static_cast<RecordIndex>(old->size() - 2);  // the ENDSEC of the entities
    const std::string inserted =
        dxf::apply(*old, {{last, {insertReal(0, 50, 1.0), insertReal(0, 1040, 1.0)}}});
    const std::string one("\0\0\0\0\0\0\xF0\x3F", 8);
    EXPECT_NE(inserted.find(std::string("\0ENDSEC\0\x32", 9) + one + "\xFF\x10\x04" + one),
              std::string::npos);
}

TEST(Edit, ARemovedRecordIsGoneWithAllItsBytesAndNothingElse) {
    const GroupEdit removal{GroupEdit::Kind::removeRecord, 0, 0, 0.0};
    EXPECT_EQ(edited(entitiesOnly(kText), 1, {removal}), entitiesOnly(""));
    const auto binary = Document::open(test::dataFolder() / "releases" / "r12_binary.dxf");
    std::string expected(binary->bytes());
    const std::string_view raw = binary->raw(20);
    expected.erase(static_cast<std::size_t>(raw.data() - binary->bytes().data()), raw.size());
    EXPECT_EQ(dxf::apply(*binary, {{20, {removal}}}), expected);
    EXPECT_THROW(edited(entitiesOnly(kText), 1, {removal, insertReal(4, 50, 1.0)}),
                 std::invalid_argument);
}

TEST(Edit, ChunksAreInsertedAsDigitsOrAsLengthAndBytes) {
    const std::vector<GroupEdit> edits{insertText(4, 310, L"00FF7E")};
    EXPECT_NE(edited(entitiesOnly(kText), 1, edits).find("\n310\n00FF7E\n"), std::string::npos);
    const std::string longest(255, '\x5A');
    std::wstring digits;
    for (int i = 0; i < 255; ++i) digits += L"5A";
    const auto binary = Document::open(test::dataFolder() / "releases" / "r2018_binary.dxf");
    const std::string bytes =
        dxf::apply(*binary, {{1, {insertText(0, 310, L"00FF7E"), insertText(0, 310, digits)}}});
    const std::string inserted = std::string("\x36\x01\x03\x00\xFF\x7E\x36\x01\xFF", 9) + longest;
    EXPECT_NE(bytes.find(inserted), std::string::npos);
    EXPECT_EQ(bytes.size(), binary->bytes().size() + inserted.size());
}

TEST(Edit, WhatCannotBeIsRefused) {
    const auto document = parse(entitiesOnly("0\nTEXT\n10\n1.0\n70\n1\n310\n00\n5\nA\n290\n1\n"));
    const auto refused = [&document](RecordIndex record, std::vector<GroupEdit> edits) {
        EXPECT_THROW(dxf::apply(*document, {{record, edits}}), std::invalid_argument);
    };
    refused(4, {replaceReal(1, 10, 2.0)});  // no such record
    refused(1, {replaceReal(6, 10, 2.0)});  // no such group
    refused(1, {insertReal(6, 10, 2.0)});
    refused(1, {replaceReal(1, 20, 2.0)});                           // another code
    refused(1, {replaceReal(1, 10, 2.0), replaceReal(1, 10, 3.0)});  // twice
    refused(1, {replaceInteger(1, 10, 2)});                          // another type
    refused(1, {replaceReal(2, 70, 2.0)});
    refused(1, {replaceText(2, 70, L"2")});
    refused(1, {replaceText(3, 310, L"01")});  // a chunk
    refused(1, {insertText(2, 310, L"")});
    refused(1, {insertText(2, 310, L"0")});
    refused(1, {insertText(2, 310, L"0G")});
    refused(1, {insertText(2, 310, std::wstring(512, L'0'))});
    refused(1, {insertInteger(2, 310, 0)});
    refused(1, {insertText(2, 0, L"LINE")});  // a record
    refused(3, {insertReal(0, 50, 1.0)});     // behind EOF
    refused(1, {replaceReal(1, 10, std::numeric_limits<double>::quiet_NaN())});
    refused(1, {replaceReal(1, 10, std::numeric_limits<double>::infinity())});
    refused(1, {replaceReal(1, 10, -std::numeric_limits<double>::infinity())});
    refused(1, {insertText(2, 1, L"two\nlines")});
    refused(1, {insertText(2, 1, L"two\rlines")});
    refused(1, {insertText(2, 1, std::wstring(L"a\0b", 3))});
    refused(1, {replaceText(4, 5, L"xyz")});
    refused(1, {replaceText(4, 5, L"")});
    refused(1, {replaceText(4, 5, L"12345678901234567")});
    refused(1, {replaceInteger(2, 70, 32768)});
    refused(1, {replaceInteger(2, 70, -32769)});
    refused(1, {insertInteger(2, 90, std::int64_t{1} << 31)});
    refused(1, {replaceInteger(5, 290, 2)});
    refused(1, {replaceInteger(5, 290, -1)});
    const auto binary = Document::open(test::dataFolder() / "releases" / "r2018_binary.dxf");
    EXPECT_THROW(dxf::apply(*binary, {{0, {insertText(0, 5000, L"x")}}}), std::invalid_argument);
}

TEST(Edit, ValuesAtTheEdgeOfTheirRangeAreTaken) {
    const std::string bytes = entitiesOnly("0\nTEXT\n8\n0\n");
    const std::int64_t most = std::numeric_limits<std::int64_t>::max();
    EXPECT_EQ(edited(bytes, 1,
                     {insertInteger(1, 70, 32767), insertInteger(1, 71, -32768),
                      insertInteger(1, 90, 2147483647), insertInteger(1, 160, most),
                      insertText(1, 5000, L"unknown")}),
              replaced(bytes, "8\n0\n",
                       "8\n0\n70\n32767\n71\n-32768\n90\n2147483647\n160\n9223372036854775807\n"
                       "5000\nunknown\n"));
}

}  // namespace
}  // namespace host::dxf
