#include "host/editor/Keywords.h"

#include <gtest/gtest.h>

using namespace host::editor;

namespace {

std::wstring match(const wchar_t* reply, const wchar_t* keywords) {
    return matchKeyword(reply, keywords).value_or(L"-");
}

}  // namespace

TEST(Keywords, TheFirstCapitalsAreTheShortestForm) {
    EXPECT_EQ(match(L"WP", L"Window WPolygon"), L"WPolygon");
    EXPECT_EQ(match(L"w", L"Window WPolygon"), L"Window");
    EXPECT_EQ(match(L"wpoly", L"Window WPolygon"), L"WPolygon");
    EXPECT_EQ(match(L"wpolygon", L"WPolygon"), L"WPolygon");
    EXPECT_EQ(match(L"wpolygons", L"WPolygon"), L"-");
    EXPECT_EQ(match(L"wi", L"WPolygon"), L"-");
    EXPECT_EQ(match(L"al", L"ALL"), L"-");
    EXPECT_EQ(match(L"2", L"2point 3point"), L"2point") << "digits count as capitals";
    EXPECT_EQ(match(L"", L"Left Right"), L"-");
    EXPECT_EQ(match(L"l", L""), L"-");
}

TEST(Keywords, CapitalsMayStandInside) {
    EXPECT_EQ(match(L"x", L"Edit eXit"), L"eXit");
    EXPECT_EQ(match(L"X", L"eXit"), L"eXit");
    EXPECT_EQ(match(L"e", L"Edit eXit"), L"Edit");
    EXPECT_EQ(match(L"e", L"eXit"), L"-") << "a beginning has to hold the capitals";
    EXPECT_EQ(match(L"ex", L"eXit"), L"eXit");
    EXPECT_EQ(match(L"EXIT", L"eXit"), L"eXit");
    EXPECT_EQ(match(L"xi", L"eXit"), L"-") << "the short form is not continued";
    EXPECT_EQ(match(L"lt", L"LType reLTe"), L"LType");
    EXPECT_EQ(match(L"lt", L"LOad reLTe"), L"reLTe");
}

TEST(Keywords, WithoutCapitalsAnyBeginningDoes) {
    EXPECT_EQ(match(L"y", L"yes no"), L"yes");
    EXPECT_EQ(match(L"ye", L"yes no"), L"yes");
}

TEST(Keywords, LocalNamesAnswerWithTheGlobalOnes) {
    EXPECT_EQ(match(L"k", L"Kylla Ei _Yes No"), L"Yes");
    EXPECT_EQ(match(L"ei", L"Kylla Ei _Yes No"), L"No");
    EXPECT_EQ(match(L"n", L"Kylla Ei _Yes No"), L"No");
    EXPECT_EQ(match(L"_yes", L"Kylla Ei _Yes No"), L"Yes");
    EXPECT_EQ(match(L"_k", L"Kylla Ei _Yes No"), L"-") << "the mark asks for the global name";
}

TEST(Keywords, OfListsOfUnequalLengthThePairsCount) {
    EXPECT_EQ(match(L"b", L"Aa Bb _One"), L"-") << "it has no global name";
    EXPECT_EQ(match(L"a", L"Aa Bb _One"), L"One");
    EXPECT_EQ(match(L"t", L"Aa _One Two"), L"Two") << "it has no local name";
    EXPECT_EQ(match(L"a", L"Aa _One Two"), L"One");
    EXPECT_EQ(match(L"a", L"Aa _"), L"-");
}
