#include <acutads.h>
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "host/editor/Words.h"

namespace {

struct Case {
    const wchar_t* text;
    const wchar_t* pattern;
    bool matches;
    bool ignoreCase = false;
};

void check(const Case& c) {
    EXPECT_EQ(acutWcMatchEx(c.text, c.pattern, c.ignoreCase), c.matches)
        << host::editor::toUtf8(c.text) << " against " << host::editor::toUtf8(c.pattern);
}

}  // namespace

TEST(WildCards, EachElement) {
    const Case cases[] = {
        {L"7", L"#", true},      {L"a", L"#", false},      {L"77", L"#", false},
        {L"x", L"@", true},      {L"ä", L"@", true},       {L"7", L"@", false},
        {L"-", L".", true},      {L" ", L".", true},       {L"7", L".", false},
        {L"x", L".", false},     {L"", L"*", true},        {L"abc", L"*", true},
        {L"abc", L"a*c", true},  {L"abd", L"a*c", false},  {L"aXbXc", L"a*b*c", true},
        {L"a", L"?", true},      {L"", L"?", false},       {L"abc", L"~abc", false},
        {L"abd", L"~abc", true}, {L"b", L"[abc]", true},   {L"d", L"[abc]", false},
        {L"d", L"[~abc]", true}, {L"b", L"[~abc]", false}, {L"m", L"[a-z]", true},
        {L"M", L"[a-z]", false}, {L"-", L"[a-]", true},    {L"-", L"[-a]", true},
        {L"b", L"[a-]", false},  {L"", L"[~a]", false},
    };
    for (const Case& c : cases) check(c);
}

TEST(WildCards, CommasSeparatePatterns) {
    const Case cases[] = {
        {L"TEXT", L"INSERT,TEXT", true},
        {L"LINE", L"INSERT,TEXT", false},
        {L",", L"`,", true},
        {L",", L"[,]", true},
        {L"b", L"a,,b", true},
        {L"", L"a,", true},
        {L"m1", L"~*m*,m1", true},
        {L"m2", L"~*m*,m1", false},
    };
    for (const Case& c : cases) check(c);
}

TEST(WildCards, TheBackquoteTakesTheNextCharacterAsItIs) {
    const Case cases[] = {
        {L"*", L"`*", true},   {L"a", L"`*", false},  {L"`", L"``", true}, {L"~a", L"`~a", true},
        {L"]", L"[`]]", true}, {L"#1", L"`##", true}, {L"`", L"`", true},  {L"[a]", L"`[a]", true},
    };
    for (const Case& c : cases) check(c);
}

TEST(WildCards, CaseCountsUnlessItIsIgnored) {
    check({L"Roads", L"roads", false});
    check({L"Roads", L"roads", true, true});
    check({L"KÄYTÄVÄ", L"käyt*", true, true});
    check({L"M", L"[a-z]", true, true});
    check({L"m", L"[A-Z]", true, true});
    check({L"5", L"[a-z]", false, true});
}

TEST(WildCards, AnUnclosedBracketStandsForItself) {
    check({L"[a", L"[a", true});
    check({L"a", L"[a", false});
}

TEST(WildCards, BlanksAtTheEndsCount) {
    check({L"a ", L"a", false});
    check({L"a ", L"a ", true});
}

TEST(WildCards, NullMatchesNothing) {
    EXPECT_FALSE(acutWcMatchEx(nullptr, L"*", true));
    EXPECT_FALSE(acutWcMatchEx(L"a", nullptr, true));
}

TEST(WildCards, TheAnswerAsACode) {
    EXPECT_EQ(acutWcMatch(L"abc", L"a*"), RTNORM);
    EXPECT_EQ(acutWcMatch(L"Abc", L"a*"), RTERROR);
}

namespace {

// Stars, question marks and letters by the book, exponential and plain.
bool matchByTrying(const wchar_t* text, const wchar_t* pattern) {
    if (*pattern == L'\0') return *text == L'\0';
    if (*pattern == L'*')
        return matchByTrying(text, pattern + 1) ||
               (*text != L'\0' && matchByTrying(text + 1, pattern));
    if (*text == L'\0') return false;
    return (*pattern == L'?' || *pattern == *text) && matchByTrying(text + 1, pattern + 1);
}

}  // namespace

TEST(WildCards, StarsAgreeWithTryingEverything) {
    std::mt19937 random(20091117);
    for (int i = 0; i < 20000; ++i) {
        std::wstring text;
        std::wstring pattern;
        for (unsigned n = random() % 8; n > 0; --n) text += L"ab"[random() % 2];
        for (unsigned n = random() % 8; n > 0; --n) pattern += L"ab*?"[random() % 4];
        ASSERT_EQ(acutWcMatchEx(text.c_str(), pattern.c_str(), false),
                  matchByTrying(text.c_str(), pattern.c_str()))
            << host::editor::toUtf8(text) << " against " << host::editor::toUtf8(pattern);
    }
}

TEST(WildCards, ManyStarsAreNoTrap) {
    const std::wstring text(5000, L'a');
    EXPECT_FALSE(acutWcMatchEx(text.c_str(), L"*a*a*a*a*a*a*a*a*a*a*b", false));
}
