#include <random>

#include "tests/datastruct/StringTestSupport.h"

using namespace TamLib;

namespace {

// ---- Find ----

TEST(StringFind, GivesTheFirstOccurrenceAtOrAfterTheStart) {
    const Wide text(L"abcabc");
    EXPECT_EQ(text.Find(L"bc"), 1);
    EXPECT_EQ(text.Find(L"bc", -1, 1), 1);
    EXPECT_EQ(text.Find(L"bc", -1, 2), 4);
    EXPECT_EQ(text.Find(L"bc", -1, 5), -1);
    EXPECT_EQ(text.Find(L"bc", -1, 6), -1);
    EXPECT_EQ(text.Find(L"bc", -1, 100), -1);
    EXPECT_EQ(text.Find(L"bc", -1, -3), 1);  // a negative start is the start
    EXPECT_EQ(text.Find(L"x"), -1);
    EXPECT_EQ(text.Find(L"abcabc"), 0);
    EXPECT_EQ(text.Find(L"abcabcd"), -1);
    EXPECT_EQ(Wide().Find(L"a"), -1);
}

TEST(StringFind, AnEmptyNeedleNeverOccurs) {
    EXPECT_EQ(Wide(L"abc").Find(L""), -1);
    EXPECT_EQ(Wide().Find(L""), -1);
    EXPECT_EQ(Wide(L"abc").Find(Wide(), 34, 0, false), -1);
}

TEST(StringFind, FindsOverlappingBeginnings) {
    EXPECT_EQ(Wide(L"aaab").Find(L"aab"), 1);
    EXPECT_EQ(Wide(L"ababac").Find(L"abac"), 2);
    EXPECT_EQ(Wide(L"AAAB").Find(L"aab", -1, 0, false), 1);
}

TEST(StringFind, QuotesHideOccurrences) {
    EXPECT_EQ(Wide(L"a\"b\"b").Find(L"b", 34), 4);
    EXPECT_EQ(Wide(L"a\"b\"b").Find(L"b", -1), 2);
    EXPECT_EQ(Wide(L"\"b").Find(L"b", 34), -1);
    EXPECT_EQ(Wide(L"b\"b\"").Find(L"b", 34, 1), -1);
    EXPECT_EQ(Wide(L"\"B\"b").Find(L"B", 34, 0, false), 3);
    EXPECT_EQ(Wide(L"\"b\"b").Find(L"b", 34, 1), 1);  // outside quotes at the start
}

TEST(StringFind, AQuoteBreaksAnOccurrence) {
    EXPECT_EQ(Wide(L"a\"\"b").Find(L"ab", 34), -1);
    EXPECT_EQ(Wide(L"ab\"c\"").Find(L"ab\"", 34), -1);
    EXPECT_EQ(Wide(L"x\"y\"z").Find(L"\"z", 34), 3);  // the closing quote is outside already
    EXPECT_EQ(Wide(L"x\"y\"z").Find(L"\"y", 34), -1);
}

TEST(StringFind, TheLowByteMakesAQuote) {
    EXPECT_EQ(Wide(L"\u0122b\u0122b").Find(L"b", 34), 3);  // U+0122 ends in 0x22
    EXPECT_EQ(Wide(L"\u2722b").Find(L"b", 34), -1);
    EXPECT_EQ(Wide(L"\"b").Find(L"b", 0x122), 1);  // no low byte is above 255
    EXPECT_EQ(Narrow("\xE4"
                     "b")
                  .Find("b", 0xE4),
              -1);
    EXPECT_EQ(Narrow("\xE4"
                     "b\xE4"
                     "b")
                  .Find("b", 0xE4),
              3);
}

TEST(StringFind, IgnoringCaseFoldsByTheTable) {
    EXPECT_EQ(Wide(L"Pitk\u00C4 Tie").Find(L"k\u00E4 tie", -1, 0, false), 3);
    EXPECT_EQ(Wide(L"Tie").Find(L"tie"), -1);
    EXPECT_EQ(Narrow("\xC4").Find("\xE4", -1, 0, false), 0);
}

// The search character by character with its indexes, as an oracle.
std::int32_t SlowFind(const std::wstring& text, const std::wstring& needle, std::int32_t quote,
                      std::int32_t start, bool caseSensitive) {
    std::int32_t i = start;
    const auto count = static_cast<std::int32_t>(text.size());
    const auto length = static_cast<std::int32_t>(needle.size());
    if (i >= count || length == 0) return -1;
    std::int32_t j = 0;
    bool inQuote = false;
    for (; i < count; ++i) {
        const wchar_t c = text[static_cast<std::size_t>(i)];
        if (static_cast<std::int32_t>(static_cast<std::uint32_t>(c) & 0xFF) == quote) {
            inQuote = !inQuote;
            j = 0;
        }
        const wchar_t wanted = needle[static_cast<std::size_t>(j)];
        const auto lower = [](wchar_t x) {
            return x >= L'A' && x <= L'Z' ? static_cast<wchar_t>(x + 32) : x;
        };
        const bool same = c == wanted || (!caseSensitive && lower(c) == lower(wanted));
        if (same && !inQuote) {
            ++j;
        } else {
            i -= j;
            j = 0;
        }
        if (j == length) return i - j + 1;
    }
    return -1;
}

TEST(StringFind, AgreesWithTheStepsOneByOne) {
    std::mt19937 random(7);
    const std::wstring alphabet = L"aAb\"\u0122";
    int found = 0;
    for (int round = 0; round < 60000; ++round) {
        std::wstring text;
        std::wstring needle;
        for (auto i = random() % 10; i > 0; --i) text += alphabet[random() % alphabet.size()];
        for (auto i = random() % 4; i > 0; --i) needle += alphabet[random() % alphabet.size()];
        const std::int32_t quote = random() % 2 == 0 ? -1 : 34;
        const auto start = static_cast<std::int32_t>(random() % 5);
        const bool caseSensitive = random() % 2 == 0;
        const std::int32_t expected = SlowFind(text, needle, quote, start, caseSensitive);
        found += expected >= 0;
        ASSERT_EQ(FromStd(text).Find(FromStd(needle), quote, start, caseSensitive), expected)
            << std::string(text.begin(), text.end()) << " / "
            << std::string(needle.begin(), needle.end()) << " quote " << quote << " start " << start
            << " case " << caseSensitive;
    }
    EXPECT_GT(found, 5000);
}

// ---- Counting ----

TEST(StringCount, OccurrencesDoNotOverlap) {
    EXPECT_EQ(Wide(L"aaaa").CountOf(L"aa"), 2);
    EXPECT_EQ(Wide(L"aaaaa").CountOf(L"aa"), 2);
    EXPECT_EQ(Wide(L"abcabc").CountOf(L"bc"), 2);
    EXPECT_EQ(Wide(L"abc").CountOf(L""), 0);
    EXPECT_EQ(Wide().CountOf(L"a"), 0);
}

TEST(StringCount, AMismatchDoesNotGoBack) {
    EXPECT_EQ(Wide(L"aaab").CountOf(L"aab"), 0);
    EXPECT_EQ(Wide(L"abaab").CountOf(L"ab"), 2);  // the mismatching character begins anew
}

TEST(StringCount, CharactersAndPredicates) {
    EXPECT_EQ(Wide(L"abcab").CountChar(L'a'), 2);
    EXPECT_EQ(Wide(L"abc").CountChar(L'x'), 0);
    EXPECT_EQ(Wide(L"a1b22").CountIf([](wchar_t c) { return c >= L'0' && c <= L'9'; }), 3);
    EXPECT_EQ(Wide().CountIf([](wchar_t) { return true; }), 0);
}

// ---- WildMatch ----

TEST(StringWildMatch, LiteralsClassesAndSingleCharacters) {
    EXPECT_TRUE(Wide(L"abc").WildMatch(L"abc"));
    EXPECT_TRUE(Wide(L"ABC").WildMatch(L"abc"));
    EXPECT_TRUE(Wide(L"\u00C4").WildMatch(L"\u00E4"));
    EXPECT_FALSE(Wide(L"abd").WildMatch(L"abc"));
    EXPECT_TRUE(Wide(L"a1\u00E4").WildMatch(L"?#@"));
    EXPECT_FALSE(Wide(L"a").WildMatch(L"#"));
    EXPECT_FALSE(Wide(L"1").WildMatch(L"@"));
    EXPECT_FALSE(Wide(L"\u00B2").WildMatch(L"#"));  // a superscript is no digit
    EXPECT_TRUE(Wide(L"#@").WildMatch(L"#@"));      // as themselves
    EXPECT_FALSE(Wide(L"ab").WildMatch(L"abc"));
    EXPECT_FALSE(Wide(L"abc").WildMatch(L"ab"));
}

TEST(StringWildMatch, AnEmptyPatternMatchesAnything) {
    EXPECT_TRUE(Wide(L"abc").WildMatch(L""));
    EXPECT_TRUE(Wide().WildMatch(Wide()));
    EXPECT_FALSE(Wide().WildMatch(L"a"));
}

TEST(StringWildMatch, WithoutLiteralsOnlyLengthAndClassesCount) {
    EXPECT_TRUE(Wide(L"abc").WildMatch(L"x?z", false));
    EXPECT_FALSE(Wide(L"abc").WildMatch(L"x?z", true));
    EXPECT_FALSE(Wide(L"abcd").WildMatch(L"x?z", false));
    EXPECT_TRUE(Wide(L"a1").WildMatch(L"x#", false));
    EXPECT_TRUE(Wide(L"1a").WildMatch(L"x@", false));
    EXPECT_FALSE(Wide(L"ab").WildMatch(L"x#", false));
    EXPECT_FALSE(Wide(L"a1").WildMatch(L"x@", false));
    EXPECT_TRUE(Wide(L"a#").WildMatch(L"x#", false));
}

TEST(StringWildMatch, AStarMatchesARunBeforeItsLiteralAndSomethingBehindIt) {
    EXPECT_TRUE(Wide(L"a.dwg").WildMatch(L"*.dwg"));
    EXPECT_TRUE(Wide(L"abc").WildMatch(L"*b"));  // the pattern is used up: any rest matches
    EXPECT_FALSE(Wide(L"ab").WildMatch(L"*b"));  // nothing behind the literal
    EXPECT_FALSE(Wide(L"abc").WildMatch(L"*c"));
    EXPECT_FALSE(Wide(L"ab").WildMatch(L"a*b"));
    EXPECT_TRUE(Wide(L"abx").WildMatch(L"a*b"));
    EXPECT_TRUE(Wide(L"a--bc").WildMatch(L"a*bc"));
    EXPECT_FALSE(Wide(L"a--bd").WildMatch(L"a*bc"));
    EXPECT_TRUE(
        Wide(L"abdabc").WildMatch(L"a*bc"));  // the first occurrence fails, the second does not
}

TEST(StringWildMatch, ATrailingStarDemandsOneCharacter) {
    EXPECT_TRUE(Wide(L"abcd").WildMatch(L"abc*"));
    EXPECT_FALSE(Wide(L"abc").WildMatch(L"abc*"));
    EXPECT_TRUE(Wide(L"x").WildMatch(L"*"));
    EXPECT_TRUE(Wide(L"x").WildMatch(L"***"));
    EXPECT_FALSE(Wide().WildMatch(L"*"));
}

TEST(StringWildMatch, TheCharacterBehindAStarIsLiteral) {
    EXPECT_FALSE(Wide(L"abc").WildMatch(L"*?"));
    EXPECT_TRUE(Wide(L"a?c").WildMatch(L"*?"));
    EXPECT_FALSE(Wide(L"a1b").WildMatch(L"*#b"));
    EXPECT_TRUE(Wide(L"a#b").WildMatch(L"*#b"));
    EXPECT_TRUE(Wide(L"a#1").WildMatch(L"*##"));
}

TEST(StringWildMatch, BehindAStarCaseIsIgnoredAndLiteralsCount) {
    EXPECT_TRUE(Wide(L"xxA1b").WildMatch(L"x*a#B", true));
    EXPECT_FALSE(Wide(L"q-ab").WildMatch(L"x*ac", false));  // literals count behind the star
    EXPECT_TRUE(Wide(L"q-ac").WildMatch(L"x*ac", false));
}

TEST(StringWildMatch, LettersNeedNoSecondCase) {
    EXPECT_TRUE(Wide(L"\u00DF").WildMatch(L"@"));
    EXPECT_TRUE(Wide(L"\u00E4\u00D6\u03C2\u05D0\u4E2D").WildMatch(L"@@@@@"));
    EXPECT_FALSE(Wide(L"\u00D7").WildMatch(L"@"));
    EXPECT_FALSE(Wide(L"\u0660").WildMatch(L"#"));  // only 0 to 9 are digits
}

TEST(StringWildMatch, NarrowTextsMatchTheSame) {
    EXPECT_TRUE(Narrow("a1B").WildMatch("@#b"));
    EXPECT_FALSE(Narrow("a1B").WildMatch("##b"));
    EXPECT_TRUE(Narrow("abc").WildMatch("x?z", false));
    EXPECT_FALSE(Narrow("abc").WildMatch("x?z", true));
    EXPECT_TRUE(Narrow("\xC4\xF6").WildMatch("@\xD6"));
    EXPECT_FALSE(Narrow("\xDF").WildMatch("@"));  // sharp s is no letter of the narrow map
    EXPECT_TRUE(Narrow("a.dwg").WildMatch("*.DWG"));
    EXPECT_FALSE(Narrow("ab").WildMatch("*b"));
    EXPECT_TRUE(Narrow("a-b").WildMatch("ab", true, "-"));
    EXPECT_TRUE(Narrow("abc").WildMatch(""));
}

TEST(StringWildMatch, IgnoredCharactersAreSkippedOnBothSidesBeforeAStar) {
    EXPECT_TRUE(Wide(L"a-b").WildMatch(L"ab", true, L"-"));
    EXPECT_TRUE(Wide(L"ab").WildMatch(L"a-b", true, L"-"));
    EXPECT_TRUE(Wide(L"ab--").WildMatch(L"ab", true, L"-"));
    EXPECT_FALSE(Wide(L"a-b").WildMatch(L"ab", true));
    EXPECT_FALSE(Wide(L"xa-b").WildMatch(L"*ab", true, L"-"));  // nothing is ignored behind it
    EXPECT_TRUE(Wide(L"--").WildMatch(L"-", true, L"-"));
}

// The match character by character with its recursion, as an oracle.
bool SlowWildMatch(const std::wstring& text, const std::wstring& pattern, bool compareLiterals,
                   const std::wstring& ignored) {
    if (pattern.empty()) return true;
    const auto lower = [](wchar_t x) {
        return x >= L'A' && x <= L'Z' ? static_cast<wchar_t>(x + 32) : x;
    };
    std::size_t s = 0;
    std::size_t p = 0;
    for (;;) {
        while (s < text.size() && ignored.find(text[s]) != std::wstring::npos) ++s;
        while (p < pattern.size() && ignored.find(pattern[p]) != std::wstring::npos) ++p;
        if (s == text.size() && p == pattern.size()) return true;
        if (p == pattern.size()) return false;
        if (s == text.size()) return false;
        if (pattern[p] == L'*') {
            while (p < pattern.size() && pattern[p] == L'*') ++p;
            if (p == pattern.size()) return true;
            const wchar_t next = pattern[p];
            for (;;) {
                while (s < text.size() && lower(text[s]) != lower(next)) ++s;
                ++s;
                if (s >= text.size()) return false;
                if (SlowWildMatch(text.substr(s), pattern.substr(p + 1), true, L"")) return true;
            }
        }
        const wchar_t c = text[s];
        const wchar_t wanted = pattern[p];
        bool accepted = c == wanted || wanted == L'?';
        if (wanted == L'#') {
            accepted = accepted || (c >= L'0' && c <= L'9');
        } else if (wanted == L'@') {
            accepted = accepted || (lower(c) >= L'a' && lower(c) <= L'z');
        } else {
            accepted = accepted || !compareLiterals || lower(c) == lower(wanted);
        }
        if (!accepted) return false;
        ++s;
        ++p;
    }
}

TEST(StringWildMatch, AgreesWithTheStepsOneByOne) {
    std::mt19937 random(11);
    const std::wstring texts = L"aAb1#-";
    const std::wstring patterns = L"ab*?#@-*";
    int matched = 0;
    for (int round = 0; round < 100000; ++round) {
        std::wstring text;
        std::wstring pattern;
        for (auto i = random() % 9; i > 0; --i) text += texts[random() % texts.size()];
        for (auto i = random() % 6; i > 0; --i) pattern += patterns[random() % patterns.size()];
        const bool compareLiterals = random() % 2 == 0;
        const std::wstring ignored = random() % 3 == 0 ? L"-" : L"";
        const bool expected = SlowWildMatch(text, pattern, compareLiterals, ignored);
        matched += expected;
        ASSERT_EQ(FromStd(text).WildMatch(FromStd(pattern), compareLiterals,
                                          ignored.empty() ? nullptr : ignored.c_str()),
                  expected)
            << std::string(text.begin(), text.end()) << " / "
            << std::string(pattern.begin(), pattern.end()) << " literals " << compareLiterals
            << " ignored " << ignored.size();
    }
    EXPECT_GT(matched, 10000);
}

TEST(StringWildMatch, ManyStarsTakeNoLongerThanTheirProduct) {
    Wide text;
    Wide pattern;
    for (int i = 0; i < 3000; ++i) text.Append(L'a');
    for (int i = 0; i < 300; ++i) pattern.Append(L"*a");
    pattern.Append(L"b");
    EXPECT_FALSE(text.WildMatch(pattern));
}

}  // namespace
