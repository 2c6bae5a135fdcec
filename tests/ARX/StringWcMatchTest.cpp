// The match by the host's wildcards; the alphabet itself is tested with the host.
#include <gtest/gtest.h>

#include "datastruct/String.h"

using Wide = TamLib::StringBase<wchar_t>;
using Narrow = TamLib::StringBase<char>;

namespace {

TEST(StringWcMatch, AnEmptyPatternMatchesAnything) {
    EXPECT_TRUE(Wide(L"abc").WcMatch(L"", false));
    EXPECT_TRUE(Wide().WcMatch(Wide(), true));
}

TEST(StringWcMatch, AsksTheHost) {
    EXPECT_TRUE(Wide(L"STREET-1").WcMatch(L"STREET*", false));
    EXPECT_TRUE(Wide(L"HOUSES").WcMatch(L"STREET*,HOUSE?", false));
    EXPECT_FALSE(Wide(L"HOUSES").WcMatch(L"~HOUSE*", false));
    EXPECT_TRUE(Wide(L"").WcMatch(L"*", false));
    EXPECT_FALSE(Wide(L"").WcMatch(L"?", false));
}

TEST(StringWcMatch, CaseCountsUnlessIgnored) {
    EXPECT_FALSE(Wide(L"\u00C4iti").WcMatch(L"\u00E4iti", false));
    EXPECT_TRUE(Wide(L"\u00C4iti").WcMatch(L"\u00E4ITI", true));
}

TEST(StringWcMatch, NarrowTextsMatchTheSame) {
    EXPECT_TRUE(Narrow("\xC4iti").WcMatch("\xE4*", true));
    EXPECT_FALSE(Narrow("\xC4iti").WcMatch("\xE4*", false));
}

TEST(StringWcMatch, LeavesBothTextsAlone) {
    const Wide text(L"abc");
    const Wide full(text);
    EXPECT_TRUE(full.WcMatch(L"a*", false));
    EXPECT_EQ(full.capacity, 3u);
}

}  // namespace
