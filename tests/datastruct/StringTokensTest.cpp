#include <limits>

#include "tam/TamExceptions.h"
#include "tests/datastruct/StringTestSupport.h"

using namespace TamLib;

namespace {

WideFields SplitOf(const wchar_t* text, const wchar_t* separator, bool keepEmpty = false,
                   std::int32_t quote = -1) {
    Array<Wide> fields;
    fields.Append(L"to be cleared");
    Wide(text).Split(fields, separator, keepEmpty, quote);
    return Std(fields);
}

WideFields TokensOf(const wchar_t* text, const std::vector<const wchar_t*>& separators,
                    bool keepEmpty = false, std::int32_t quote = -1) {
    Array<Wide> list;
    for (const wchar_t* separator : separators) list.Append(separator);
    Array<Wide> fields;
    Wide(text).Tokenize(fields, &list, keepEmpty, quote);
    return Std(fields);
}

TEST(StringTokens, EmptyFieldsAreDroppedUnlessKept) {
    EXPECT_EQ(SplitOf(L"a,,b", L","), (WideFields{L"a", L"b"}));
    EXPECT_EQ(SplitOf(L"a,,b", L",", true), (WideFields{L"a", L"", L"b"}));
    EXPECT_EQ(SplitOf(L",a,", L","), (WideFields{L"a"}));
    EXPECT_EQ(SplitOf(L",a,", L",", true), (WideFields{L"", L"a", L""}));
    EXPECT_EQ(SplitOf(L",", L","), WideFields{});
    EXPECT_EQ(SplitOf(L",", L",", true), (WideFields{L"", L""}));
}

TEST(StringTokens, AnEmptyTextHasOneEmptyFieldOnlyWhenKept) {
    EXPECT_EQ(SplitOf(L"", L","), WideFields{});
    EXPECT_EQ(SplitOf(L"", L",", true), (WideFields{L""}));
}

TEST(StringTokens, ATextWithoutASeparatorIsOneField) {
    EXPECT_EQ(SplitOf(L"abc", L","), (WideFields{L"abc"}));
    EXPECT_EQ(SplitOf(L"abc", L""), (WideFields{L"abc"}));  // an empty separator is never found
    EXPECT_EQ(TokensOf(L"a b", {}), (WideFields{L"a b"}));
}

TEST(StringTokens, ANullSeparatorMeansABlankAndANullListBlankAndTabulator) {
    EXPECT_EQ(SplitOf(L"a b\tc", nullptr), (WideFields{L"a", L"b\tc"}));
    Array<Wide> fields;
    Wide(L"a b").Tokenize(fields, nullptr);
    EXPECT_EQ(Std(fields), (WideFields{L"a", L"b"}));
    Wide(L" a\t b \t").Tokenize(fields, nullptr);
    EXPECT_EQ(Std(fields), (WideFields{L"a", L"b"}));
    Wide(L" a\t b ").Tokenize(fields, nullptr, true);
    EXPECT_EQ(Std(fields), (WideFields{L"", L"a", L"", L"b", L""}));
}

TEST(StringTokens, SeparatorsMayBeLongAndTheEarliestWins) {
    EXPECT_EQ(SplitOf(L"a::b:c::", L"::"), (WideFields{L"a", L"b:c"}));
    EXPECT_EQ(TokensOf(L"a;b,c;d", {L",", L";"}), (WideFields{L"a", L"b", L"c", L"d"}));
    EXPECT_EQ(SplitOf(L"a:::b", L"::", true), (WideFields{L"a", L":b"}));
}

TEST(StringTokens, ATieGoesToTheEarlierSeparator) {
    EXPECT_EQ(TokensOf(L"a<>b", {L"<", L"<>"}), (WideFields{L"a", L">b"}));
    EXPECT_EQ(TokensOf(L"a<>b", {L"<>", L"<"}), (WideFields{L"a", L"b"}));
}

TEST(StringTokens, ASeparatorLeftBehindIsLookedForAgain) {
    // "bc" is found at 1 at first, but the field is cut at "ab" before it.
    EXPECT_EQ(TokensOf(L"abcxbcy", {L"ab", L"bc"}), (WideFields{L"cx", L"y"}));
}

TEST(StringTokens, SeparatorsInsideQuotesDoNotCountAndQuotesAreRemoved) {
    EXPECT_EQ(SplitOf(L"a,\"b,c\",d", L",", false, L'"'), (WideFields{L"a", L"b,c", L"d"}));
    EXPECT_EQ(SplitOf(L"a\"b\"c,d", L",", false, L'"'), (WideFields{L"abc", L"d"}));
    EXPECT_EQ(SplitOf(L"a,\"b,c", L",", false, L'"'), (WideFields{L"a", L"b,c"}));
    EXPECT_EQ(SplitOf(L"'a b' c", nullptr, false, L'\''), (WideFields{L"a b", L"c"}));
}

TEST(StringTokens, AFieldOfTwoQuotesIsKeptEmpty) {
    EXPECT_EQ(SplitOf(L"a,\"\",b", L",", false, L'"'), (WideFields{L"a", L"", L"b"}));
    EXPECT_EQ(SplitOf(L"a,\"\"", L",", false, L'"'), (WideFields{L"a", L""}));
}

TEST(StringTokens, ACharacterWhoseLowByteIsTheQuoteQuotesButIsNotRemoved) {
    EXPECT_EQ(SplitOf(L"\u0122a,b\u0122,c", L",", false, 34),
              (WideFields{L"\u0122a,b\u0122", L"c"}));
}

TEST(StringTokens, NarrowTextsHaveTheSameForms) {
    Array<Narrow> fields;
    Narrow("a,\"b,c\",,").Split(fields, ",", true, '"');
    EXPECT_EQ(Std(fields), (std::vector<std::string>{"a", "b,c", "", ""}));
    Narrow("x\xE4y").Split(fields, "\xE4");
    EXPECT_EQ(Std(fields), (std::vector<std::string>{"x", "y"}));
    Narrow("a b").Tokenize(fields, nullptr);
    EXPECT_EQ(Std(fields), (std::vector<std::string>{"a", "b"}));
}

TEST(StringTokens, FieldsAreStringsWithTheSettingsOfPieces) {
    Array<Wide> fields;
    const Wide text(L"a,b");
    text.Split(fields, L",");
    EXPECT_EQ(fields.data[0].increment, 10u);
    EXPECT_TRUE(fields.data[0].bitwise);
    EXPECT_EQ(std::wstring(fields.data[0].Data()), L"a");
}

TEST(StringTokens, TheTextMayBeAMemberOfTheResult) {
    Array<Wide> fields;
    fields.Append(L"x");
    fields.Append(L"a,b,c");
    fields.data[1].Split(fields, L",");
    EXPECT_EQ(Std(fields), (WideFields{L"a", L"b", L"c"}));
    fields.data[0].SplitFixed(fields, 1, 1);
    EXPECT_EQ(Std(fields), (WideFields{L"a"}));
}

TEST(StringTokens, TheSeparatorsMayBeTheResult) {
    Array<Wide> fields;
    fields.Append(L",");
    Wide(L"a,b").Tokenize(fields, &fields);
    EXPECT_EQ(Std(fields), (WideFields{L"a", L"b"}));
}

TEST(StringTokens, FixedWidths) {
    Array<Wide> fields;
    fields.Append(L"old");
    Wide(L"aabbbc").SplitFixed(fields, 3, 2, 3, 1);
    EXPECT_EQ(Std(fields), (WideFields{L"aa", L"bbb", L"c"}));
    EXPECT_EQ(fields.increment, 10u);
    Wide(L"abc").SplitFixed(fields, 0);
    EXPECT_EQ(fields.count, 0u);
}

TEST(StringTokens, FixedFieldsBeyondTheEndWrap) {
    Array<Wide> fields;
    Wide(L"abc").SplitFixed(fields, 2, 2, 3);
    EXPECT_EQ(Std(fields), (WideFields{L"ab", L"cab"}));
    Wide(L"abc").SplitFixed(fields, 2, 3, 2);
    EXPECT_EQ(Std(fields), (WideFields{L"abc", L"ab"}));
}

TEST(StringTokens, AFixedWidthOfZeroGivesTheWholeText) {
    Array<Wide> fields;
    Wide(L"abc").SplitFixed(fields, 2, 0, 1);
    EXPECT_EQ(Std(fields), (WideFields{L"abc", L"a"}));
    Wide(L"abc").SplitFixed(fields, 2, 1, 0);
    EXPECT_EQ(Std(fields), (WideFields{L"a", L"bca"}));
}

TEST(StringTokens, FixedWidthsMayAddUpBeyond32Bits) {
    // A field of 2^31 characters would be refused; backwards the widths add up without any.
    constexpr std::int32_t most = std::numeric_limits<std::int32_t>::max();
    Array<Wide> fields;
    Wide(L"abc").SplitFixed(fields, 3, -most, -most, 1);
    ASSERT_EQ(fields.count, 3u);
    EXPECT_EQ(fields[0].count, 0u);
    EXPECT_EQ(fields[1].count, 0u);
    EXPECT_EQ(Std(fields[2]), L"b");  // at 3 - 2 * most, which is 1 round the ring of three
}

TEST(StringTokens, AFixedWidthThatNoMemoryHoldsIsRefused) {
    constexpr std::int32_t most = std::numeric_limits<std::int32_t>::max();
    Array<Wide> fields;
    EXPECT_THROW(Wide(L"abc").SplitFixed(fields, 2, 1, most), TamExpNoMem);
    EXPECT_EQ(fields.count, 1u);
}

TEST(StringTokens, AnEmptyTextHasNoFixedFields) {
    Array<Wide> fields;
    fields.Append(L"old");
    Wide().SplitFixed(fields, 2, 1, 1);
    EXPECT_EQ(fields.count, 0u);
}

// The splitting step by step: the first occurrence of every separator in what is left of the text.
WideFields SlowTokens(std::wstring rest, const std::vector<std::wstring>& separators,
                      bool keepEmpty, std::int32_t quote) {
    WideFields fields;
    const auto append = [&](std::wstring field) {
        std::wstring kept;
        for (const wchar_t c : field) {
            if (static_cast<std::int32_t>(c) != quote) kept += c;
        }
        fields.push_back(kept);
    };
    while (!rest.empty()) {
        std::int32_t best = -1;
        std::size_t length = 0;
        for (const std::wstring& separator : separators) {
            const std::int32_t at = FromStd(rest).Find(FromStd(separator), quote);
            if (at >= 0 && (best < 0 || at < best)) {
                best = at;
                length = separator.size();
            }
        }
        if (best < 0) break;
        if (best != 0 || keepEmpty) append(rest.substr(0, static_cast<std::size_t>(best)));
        rest = rest.substr(static_cast<std::size_t>(best) + length);
    }
    if (!rest.empty() || keepEmpty) append(rest);
    return fields;
}

TEST(StringTokens, AgreeWithTheStepsOneByOne) {
    // All texts of seven characters over an alphabet that makes separators overlap and quotes pair
    // up.
    const std::wstring alphabet = L"ab\"";
    const std::vector<std::vector<std::wstring>> lists = {
        {L"a"},        {L"ab"},          {L"ab", L"b"}, {L"aa", L"aab"},
        {L"\"", L"a"}, {L"b\"", L"\"b"}, {L"ba", L"ab"}};
    for (int code = 0; code < 2187; ++code) {
        std::wstring text;
        for (int i = 0, left = code; i < 7; ++i, left /= 3) {
            text += alphabet[static_cast<std::size_t>(left % 3)];
        }
        for (const auto& list : lists) {
            Array<Wide> separators;
            for (const auto& separator : list) separators.Append(FromStd(separator));
            for (const std::int32_t quote : {-1, 34}) {
                for (const bool keepEmpty : {false, true}) {
                    Array<Wide> fields;
                    FromStd(text).Tokenize(fields, &separators, keepEmpty, quote);
                    ASSERT_EQ(Std(fields), SlowTokens(text, list, keepEmpty, quote))
                        << std::string(text.begin(), text.end());
                }
            }
        }
    }
}

}  // namespace
