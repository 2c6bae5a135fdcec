#include "host/editor/Words.h"

#include <gtest/gtest.h>

#include "host/editor/Keywords.h"

using namespace host::editor;

TEST(Words, CaseIsIgnoredForFinnishLettersToo) {
    EXPECT_TRUE(equalIgnoringCase(L"käännä", L"KÄÄNNÄ"));
    EXPECT_FALSE(equalIgnoringCase(L"a", L"ab"));
    EXPECT_EQ(upperCase(L"zeptå1"), L"ZEPTÅ1");
}

TEST(Words, NumbersAreDecimalAndNothingElse) {
    EXPECT_EQ(parseNumber(L"-12.5e3"), -12500.0);
    EXPECT_EQ(parseNumber(L"+.5"), 0.5);
    EXPECT_EQ(parseNumber(L"7."), 7.0);
    for (const wchar_t* text : {L"", L"-", L".", L"1,5", L"nan", L"inf", L"0x10", L"1e", L"1e+",
                                L"1 ", L" 1", L"1e999", L"--1", L"+-1", L"1.2.3", L"٣"}) {
        EXPECT_FALSE(parseNumber(text)) << toUtf8(text);
    }
}

TEST(Words, WholeNumbersStayWithinThirtyTwoBits) {
    EXPECT_EQ(parseInteger(L"2147483647"), 2147483647);
    EXPECT_EQ(parseInteger(L"-2147483648"), -2147483647 - 1);
    EXPECT_EQ(parseInteger(L"+7"), 7);
    for (const wchar_t* text : {L"", L"2147483648", L"1.0", L"x", L"+", L"-", L"+-5", L"--5",
                                L"-+5", L"++5", L"5-", L"5+"}) {
        EXPECT_FALSE(parseInteger(text)) << toUtf8(text);
    }
}

TEST(Words, HandlesAreUpToSixteenHexadecimalDigits) {
    EXPECT_EQ(parseHandle(L"2f"), 0x2FULL);
    EXPECT_EQ(parseHandle(L"FFFFFFFFFFFFFFFF"), 0xFFFFFFFFFFFFFFFFULL);
    for (const wchar_t* text : {L"", L"2G", L"-1", L"0x2F", L"10000000000000000", L"2 F"}) {
        EXPECT_FALSE(parseHandle(text)) << toUtf8(text);
    }
}

TEST(Words, NumbersAreShownShortestAndReadBackTheSame) {
    EXPECT_EQ(numberText(3.0), L"3.0");
    EXPECT_EQ(numberText(-0.1), L"-0.1");
    for (const double value : {1.0 / 3.0, 25496062.123456789, 1e-300, 6.283182653589793}) {
        EXPECT_EQ(parseNumber(numberText(value)), value);
    }
}

TEST(Words, SplittingKeepsEmptyParts) {
    EXPECT_EQ(split(L"1,,2,", L','), (std::vector<std::wstring>{L"1", L"", L"2", L""}));
    EXPECT_EQ(split(L"", L','), std::vector<std::wstring>{L""});
}

TEST(Keywords, TheCapitalsAreTheShortestForm) {
    const wchar_t* words = L"Window WPolygon ALL Add AUto SIngle";
    EXPECT_EQ(matchKeyword(L"w", words), L"Window");
    EXPECT_EQ(matchKeyword(L"wp", words), L"WPolygon");
    EXPECT_EQ(matchKeyword(L"a", words), L"Add");
    EXPECT_EQ(matchKeyword(L"_ALL", words), L"ALL");
    EXPECT_EQ(matchKeyword(L"aut", words), L"AUto");
    for (const wchar_t* reply : {L"al", L"s", L"windows", L"", L"x", L"_"}) {
        EXPECT_FALSE(matchKeyword(reply, words)) << toUtf8(reply);
    }
}

TEST(Keywords, LocalNamesAnswerWithTheGlobalOne) {
    const wchar_t* words = L"Kyllä Ei _Yes No";
    EXPECT_EQ(matchKeyword(L"k", words), L"Yes");
    EXPECT_EQ(matchKeyword(L"_n", words), L"No");
    EXPECT_EQ(matchKeyword(L"y", words), L"Yes");
    EXPECT_FALSE(matchKeyword(L"_k", words));
}
