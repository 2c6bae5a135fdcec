#include "host/editor/Nearest.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

using namespace host::editor;

namespace {

const std::vector<std::wstring> commands{
    L"HELP", L"QSAVE", L"QUIT", L"SAVE", L"SAVEAS", L"U", L"ZEPTAlignEntities"};

// The definition, step by step back from both ends.
std::size_t slipsByDefinition(std::wstring_view a, std::wstring_view b) {
    if (a.empty() || b.empty()) return a.size() + b.size();
    const auto without = [](std::wstring_view text, std::size_t count) {
        return text.substr(0, text.size() - count);
    };
    std::size_t best =
        std::min(slipsByDefinition(without(a, 1), b) + 1, slipsByDefinition(a, without(b, 1)) + 1);
    best = std::min(
        best, slipsByDefinition(without(a, 1), without(b, 1)) + (a.back() == b.back() ? 0 : 1));
    if (a.size() > 1 && b.size() > 1 && a.back() == b[b.size() - 2] && a[a.size() - 2] == b.back())
        best = std::min(best, slipsByDefinition(without(a, 2), without(b, 2)) + 1);
    return best;
}

}  // namespace

TEST(Nearest, OneSlipOfEachKindCountsOne) {
    EXPECT_EQ(slips(L"QSAVE", L"QSAVE"), 0U);
    EXPECT_EQ(slips(L"QSAV", L"QSAVE"), 1U);
    EXPECT_EQ(slips(L"QSAVEE", L"QSAVE"), 1U);
    EXPECT_EQ(slips(L"QSAFE", L"QSAVE"), 1U);
    EXPECT_EQ(slips(L"QSAEV", L"QSAVE"), 1U);
    EXPECT_EQ(slips(L"", L"QSAVE"), 5U);
    EXPECT_EQ(slips(L"CA", L"ABC"), 3U) << "an exchange that is touched again is none";
}

TEST(Nearest, SlipsAreThoseOfTheDefinition) {
    std::mt19937 random(5);
    const auto word = [&] {
        std::wstring text(random() % 6, L'a');
        for (wchar_t& c : text) c = static_cast<wchar_t>(L'a' + random() % 3);
        return text;
    };
    for (int round = 0; round < 300; ++round) {
        const std::wstring a = word();
        const std::wstring b = word();
        EXPECT_EQ(slips(a, b), slipsByDefinition(a, b)) << round;
    }
}

TEST(Nearest, TheOnlyNameThatBeginsSoIsMeant) {
    EXPECT_EQ(nearest(L"zeptal", commands), L"ZEPTAlignEntities");
    EXPECT_EQ(nearest(L"SAVEA", commands), L"SAVEAS") << "rather than SAVE, one slip away";
    EXPECT_EQ(nearest(L"SAV", commands), L"SAVE") << "two begin so, the nearer one is meant";
    EXPECT_EQ(nearest(L"QU", commands), L"") << "two characters begin too much";
}

TEST(Nearest, LongerNamesForgiveMoreSlips) {
    EXPECT_EQ(nearest(L"QUTI", commands), L"QUIT");
    EXPECT_EQ(nearest(L"QOTI", commands), L"") << "two slips of four characters";
    EXPECT_EQ(nearest(L"SVAEASS", commands), L"SAVEAS") << "two of seven";
    EXPECT_EQ(nearest(L"ZPTAlgnEntitis", commands), L"ZEPTAlignEntities") << "three of many";
    EXPECT_EQ(nearest(L"ZPTAlgnEntits", commands), L"") << "four";
    EXPECT_EQ(nearest(L"X", commands), L"") << "nothing of it is left in U";
}

TEST(Nearest, TheOnlyNameWithItInsideIsMeant) {
    EXPECT_EQ(nearest(L"align", commands), L"ZEPTAlignEntities");
    EXPECT_EQ(nearest(L"ave", commands), L"SAVE") << "that is one slip";
    EXPECT_EQ(nearest(L"ign", commands), L"");
}

TEST(Nearest, OtherWordsAndLongTextsAreNearToNothing) {
    EXPECT_EQ(nearest(L"", commands), L"");
    EXPECT_EQ(nearest(L"HATCHEDIT", commands), L"");
    EXPECT_EQ(nearest(std::wstring(65, L'Q'), {std::wstring(65, L'Q')}), L"");
    EXPECT_EQ(nearest(L"QUIT", {}), L"");
    EXPECT_EQ(didYouMean(L"QUTI", commands), L"; did you mean QUIT?");
    EXPECT_EQ(didYouMean(L"HATCHEDIT", commands), L"");
}
