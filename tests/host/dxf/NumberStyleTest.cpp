#include "host/dxf/NumberStyle.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>

#include "tests/host/dxf/Drawings.h"

namespace host::dxf {
namespace {

using test::entitiesOnly;
using test::parse;

NumberStyle styleOf(const std::vector<std::string>& reals) {
    std::string groups = "0\nLINE\n";
    for (const std::string& real : reals) groups += "10\n" + real + "\n";
    return measureStyle(*parse(entitiesOnly(groups)));
}

NumberStyle filled(std::size_t decimals) {
    NumberStyle style;
    style.decimals = decimals;
    return style;
}

NumberStyle bare() {
    NumberStyle style;
    style.whole = NumberStyle::Whole::bare;
    return style;
}

bool sameBits(double a, double b) {
    return std::memcmp(&a, &b, sizeof(double)) == 0;
}

TEST(NumberStyle, WholeNumbersAreWrittenAsTheFileDoes) {
    EXPECT_EQ(styleOf({"0.0", "90.0", "1.25", "7"}).whole, NumberStyle::Whole::pointZero);
    EXPECT_EQ(styleOf({"0", "90", "1.25", "7.0"}).whole, NumberStyle::Whole::bare);
    EXPECT_EQ(styleOf({"0", "0.0"}).whole, NumberStyle::Whole::pointZero);
    EXPECT_EQ(styleOf({}).whole, NumberStyle::Whole::pointZero);
    EXPECT_EQ(styleOf({"1.25"}).whole, NumberStyle::Whole::pointZero);
}

TEST(NumberStyle, FilledDecimalsAreTheCommonestThatEndInZero) {
    EXPECT_EQ(styleOf({"0.000000", "1.250000", "3.141593", "1.5000"}).decimals, 6U);
    EXPECT_EQ(styleOf({"0.000", "90.000", "25496100.125"}).decimals, 3U);
}

TEST(NumberStyle, AFewTrailingZerosAmongShortNumbersAreNoFilling) {
    EXPECT_EQ(styleOf({"0.0", "90.0", "1.250000"}).decimals, 0U);
    EXPECT_EQ(styleOf({"0", "1.50"}).decimals, 0U);
    EXPECT_EQ(styleOf({"25496100.125", "3.14159"}).decimals, 0U);
}

TEST(NumberStyle, ExponentsAndOddValuesDontCount) {
    const NumberStyle style = styleOf({"1.0E+02", "NaN", "1,500", "", "90"});
    EXPECT_EQ(style.whole, NumberStyle::Whole::bare);
    EXPECT_EQ(style.decimals, 0U);
}

TEST(NumberStyle, EntitiesCountMoreThanTheHeader) {
    const std::string header =
        "0\nSECTION\n2\nHEADER\n9\n$X\n40\n1.000\n40\n2.000\n40\n3.000\n0\nENDSEC\n";
    EXPECT_EQ(measureStyle(*parse(header + entitiesOnly("0\nLINE\n10\n1\n"))).whole,
              NumberStyle::Whole::bare);
    EXPECT_EQ(measureStyle(*parse(header + entitiesOnly("0\nLINE\n"))).decimals, 3U);
}

TEST(NumberStyle, TheStylesOfOurOwnDrawingsAreFound) {
    const auto style = [](const std::string& name) {
        return measureStyle(*Document::open(test::dataFolder() / "releases" / (name + ".dxf")));
    };
    EXPECT_EQ(style("r9").decimals, 6U);
    EXPECT_EQ(style("r10").whole, NumberStyle::Whole::bare);
    EXPECT_EQ(style("r12").whole, NumberStyle::Whole::pointZero);
    EXPECT_EQ(style("r12").decimals, 0U);
    EXPECT_EQ(style("r12").int16Width, 6U);
    EXPECT_EQ(style("r2000").int16Width, 0U);
    EXPECT_EQ(style("r2007").int32Width, 6U);
    EXPECT_EQ(style("r14").decimals, 10U);
    EXPECT_EQ(style("r2013").decimals, 16U);
}

TEST(NumberStyle, RealsAreSpelledInTheStyle) {
    EXPECT_EQ(formatReal(90.0, NumberStyle()), "90.0");
    EXPECT_EQ(formatReal(90.0, bare()), "90");
    EXPECT_EQ(formatReal(90.0, filled(6)), "90.000000");
    EXPECT_EQ(formatReal(97.5, NumberStyle()), "97.5");
    EXPECT_EQ(formatReal(97.5, bare()), "97.5");
    EXPECT_EQ(formatReal(97.5, filled(6)), "97.500000");
    EXPECT_EQ(formatReal(0.1 + 0.2, filled(3)), "0.30000000000000004");
    EXPECT_EQ(formatReal(-0.0, NumberStyle()), "-0.0");
    EXPECT_EQ(formatReal(-0.0, bare()), "-0");
    EXPECT_EQ(formatReal(0.0, filled(2)), "0.00");
    EXPECT_EQ(formatReal(25496100.125, NumberStyle()), "25496100.125");
}

TEST(NumberStyle, NeitherVeryLargeNorVerySmallNumbersHaveAnExponent) {
    EXPECT_EQ(formatReal(1e22, NumberStyle()), "10000000000000000000000.0");
    EXPECT_EQ(formatReal(1e-7, NumberStyle()), "0.0000001");
    const double edges[] = {std::numeric_limits<double>::max(), std::numeric_limits<double>::min(),
                            std::numeric_limits<double>::denorm_min(), 1e300, 1e-300};
    for (const double edge : edges) {
        for (const NumberStyle& style : {NumberStyle(), bare(), filled(8)}) {
            const std::string text = formatReal(edge, style);
            EXPECT_EQ(text.find_first_not_of("0123456789."), std::string::npos);
            ASSERT_TRUE(parseReal(text));
            EXPECT_TRUE(sameBits(*parseReal(text), edge));
        }
    }
}

TEST(NumberStyle, EveryDoubleReadsBackToTheBit) {
    std::mt19937_64 random(7);
    for (int round = 0; round < 20000; ++round) {
        const std::uint64_t bits = random();
        double value;
        std::memcpy(&value, &bits, sizeof(value));
        if (!std::isfinite(value)) continue;
        for (const NumberStyle& style : {NumberStyle(), bare(), filled(6), filled(16)}) {
            const auto back = parseReal(formatReal(value, style));
            ASSERT_TRUE(back);
            ASSERT_TRUE(sameBits(*back, value)) << formatReal(value, style);
        }
    }
}

TEST(NumberStyle, DegreesOfRoundRadiansReadBackToTheBit) {
    std::mt19937 random(11);
    for (int round = 0; round < 20000; ++round) {
        const double degrees =
            static_cast<double>(random()) / 5e6 * 180.0 / 3.141592653589793 - 400;
        const auto back = parseReal(formatReal(degrees, filled(6)));
        ASSERT_TRUE(back);
        ASSERT_TRUE(sameBits(*back, degrees));
    }
}

}  // namespace
}  // namespace host::dxf
