#include "host/picture/PlainText.h"

#include <gtest/gtest.h>

#include <cmath>

#include "host/picture/Colors.h"
#include "host/picture/FontWidths.h"
#include "host/picture/Svg.h"

namespace {

using namespace host::picture;

std::wstring letters(const wchar_t* text) {
    return lettersOf(runsOf(text));
}

TEST(PlainText, PercentCodesBecomeTheirSigns) {
    EXPECT_EQ(letters(L"45%%d %%P0.5 %%c10 100%%%"), L"45\u00B0 \u00B10.5 \u230010 100%");
    EXPECT_EQ(letters(L"%%065%%228"), L"A\u00E4");
    EXPECT_EQ(letters(L"%%128%%150"), L"\u20AC\u2013");  // Windows' Western code page
    EXPECT_EQ(letters(L"a%%009b%%010%%013%%127c"), L"a bc");
    EXPECT_EQ(letters(L"%%000 %%256 %%12 %%z %% %"), L"%%000 %%256 %%12 %%z %% %");
}

TEST(PlainText, SwitchesBeginAndEndLines) {
    const auto runs = runsOf(L"a%%ub%%oc%%ud%%k");
    ASSERT_EQ(runs.size(), 4U);
    EXPECT_FALSE(runs[0].underlined);
    EXPECT_TRUE(runs[1].underlined && !runs[1].overlined);
    EXPECT_TRUE(runs[2].underlined && runs[2].overlined);
    EXPECT_TRUE(!runs[3].underlined && runs[3].overlined && !runs[3].struck);
    EXPECT_TRUE(runsOf(L"%%u%%u").empty());
    EXPECT_TRUE(runsOf(L"").empty());
}

TEST(PlainText, CaretsStandForControlCharacters) {
    EXPECT_EQ(letters(L"a^Ib^Mc^ d^e^"), L"a bc^d^e^");
}

TEST(PlainText, MTextIsReducedToItsLines) {
    using Lines = std::vector<std::wstring>;
    EXPECT_EQ(linesOf(L"one\\Ptwo^Jthree\\Nfour", 0), (Lines{L"one", L"two", L"three", L"four"}));
    EXPECT_EQ(linesOf(L"{\\fArial|b1|i0;\\H2.5x;\\C1;bold} \\Lline\\l \\A1;\\pi1,2;x", 0),
              Lines{L"bold line x"});
    EXPECT_EQ(linesOf(L"a\\~b \\\\ \\{c\\} 5%%d", 0), Lines{L"a\u00A0b \\ {c} 5\u00B0"});
    EXPECT_EQ(linesOf(L"\\S1/2; \\S+0.1^-0.2; \\S3#4; \\S^2; \\S5\\/6;", 0),
              Lines{L"1/2 +0.1/-0.2 3/4 2 5/6"});
    EXPECT_EQ(linesOf(L"", 0), Lines{L""});
    EXPECT_EQ(linesOf(L"end\\", 0), Lines{L"end\\"});
    EXPECT_EQ(linesOf(L"\\fArial no end", 0), Lines{L"Arial no end"});
    EXPECT_EQ(linesOf(L"\\Sno end", 0), Lines{L"no end"});
}

TEST(PlainText, LinesBreakAtBlanksWhereTheyAreTooWide) {
    const double width = widthOf(L"aaa bbb");
    EXPECT_EQ(linesOf(L"aaa bbb ccc", width), (std::vector<std::wstring>{L"aaa bbb", L"ccc"}));
    EXPECT_EQ(linesOf(L"aaa bbb aaa", width * 0.99).size(), 3U);
    EXPECT_EQ(linesOf(L"unbreakable", 0.1), std::vector<std::wstring>{L"unbreakable"});
    EXPECT_EQ(linesOf(L"aaa bbb", -1), std::vector<std::wstring>{L"aaa bbb"});
}

TEST(PlainText, LongOnesAreCutOff) {
    EXPECT_EQ(letters(std::wstring(longestText, L'x').c_str()).size(), longestText);
    EXPECT_EQ(letters(std::wstring(longestText + 1, L'x').c_str()).size(), longestText + 1);
    EXPECT_EQ(letters(std::wstring(longestText + 9, L'x').c_str()).back(), L'\u2026');
    std::wstring paragraphs;
    for (std::size_t i = 0; i < mostLines + 5; ++i) paragraphs += L"\\P";
    EXPECT_EQ(linesOf(paragraphs, 0).size(), mostLines);
}

TEST(FontWidths, AreThoseOfTheFontAndEstimatedBeyondLatin) {
    EXPECT_DOUBLE_EQ(widthOf(L"A"), 0.684);
    EXPECT_DOUBLE_EQ(widthOf(L"~"), 0.838);
    EXPECT_DOUBLE_EQ(widthOf(L"\u00E4"), 0.613);
    EXPECT_DOUBLE_EQ(widthOf(L"\u0416"), 0.62);
    EXPECT_DOUBLE_EQ(widthOf(L"\u4E00"), 1);
    EXPECT_DOUBLE_EQ(widthOf(L"\t\u0085"), 0);
}

Rgb onPaper(const Rgb& color) {
    return legible(color, Background::paper);
}

// As the rules for accessible content on the web reckon it.
double luminance(const Rgb& color) {
    const auto linear = [](std::uint8_t part) {
        const double value = part / 255.0;
        return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.red) + 0.7152 * linear(color.green) + 0.0722 * linear(color.blue);
}

double contrast(const Rgb& dark, const Rgb& light) {
    return (luminance(light) + 0.05) / (luminance(dark) + 0.05);
}

TEST(Colors, AllOfTheIndexContrastWithWhiteAndWithTheGroundOfWhatWasTurned) {
    const Rgb paper{255, 255, 255}, ground{0xfd, 0xe6, 0x8a};
    for (int index = 1; index <= 255; ++index) {
        SCOPED_TRACE(index);
        const Rgb color = indexedColor(index);
        EXPECT_GE(contrast(legible(color, Background::paper), paper), 2.5);
        EXPECT_GE(contrast(legible(color, Background::ground), ground), 3.0);
    }
    const Rgb nearlyWhite = legible(Rgb{255, 255, 254}, Background::paper);
    EXPECT_GE(contrast(nearlyWhite, paper), 2.5);
}

TEST(Colors, KeepTheirHueWhenTheyAreDarkened) {
    const Rgb dark = legible(Rgb{255, 200, 100}, Background::paper);
    EXPECT_LT(dark.red, 255);
    EXPECT_NEAR(dark.green / static_cast<double>(dark.red), 200 / 255.0, 0.01);
    EXPECT_NEAR(dark.blue / static_cast<double>(dark.red), 100 / 255.0, 0.01);
    const Rgb blue{0, 0, 255};
    EXPECT_EQ(legible(blue, Background::ground), blue);
}

TEST(Colors, AreThoseOfTheIndexBlackForWhite) {
    EXPECT_EQ(hexText(indexedColor(1)), "#ff0000");
    EXPECT_EQ(hexText(indexedColor(5)), "#0000ff");
    EXPECT_EQ(hexText(indexedColor(8)), "#808080");
    EXPECT_EQ(hexText(indexedColor(30)), "#ff7f00");
    EXPECT_EQ(hexText(indexedColor(253)), "#999999");
    EXPECT_EQ(hexText(onPaper(indexedColor(7))), "#000000");
    EXPECT_EQ(hexText(onPaper(indexedColor(255))), "#000000");
    EXPECT_EQ(hexText(onPaper(indexedColor(1))), "#ff0000");
    EXPECT_EQ(hexText(onPaper(indexedColor(2))), "#a1a100");
}

TEST(SvgNumbers, HaveNoZerosAtTheEndAndNoMinusZero) {
    EXPECT_EQ(fixedText(12.5, 3), "12.5");
    EXPECT_EQ(fixedText(100, 3), "100");
    EXPECT_EQ(fixedText(100, 0), "100");
    EXPECT_EQ(fixedText(-0.0004, 3), "0");
    EXPECT_EQ(fixedText(-2.0004, 3), "-2");
    EXPECT_EQ(shortText(1.0 / 3), "0.333333");
    EXPECT_EQ(shortText(-0.0), "0");
    EXPECT_EQ(shortText(1e-9), "1e-09");
}

}  // namespace
