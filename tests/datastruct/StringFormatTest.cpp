#include <string>

#include "tests/datastruct/StringTestSupport.h"

using namespace TamLib;

namespace {

// ---- Format ----

TEST(StringFormat, GivesTheLengthAndTheText) {
    Wide text(L"old");
    EXPECT_EQ(text.Format(L"%s %i/%.2f", L"tie", 12, 0.5), 11);
    EXPECT_EQ(Std(text), L"tie 12/0.50");
    EXPECT_EQ(text.Format(L"%s", L""), 0);
    EXPECT_EQ(text.count, 0u);
    Narrow narrow;
    EXPECT_EQ(narrow.Format("%s-%i", "a", 1), 3);
    EXPECT_EQ(Std(narrow), "a-1");
}

TEST(StringFormat, TheFirstRoomFollowsTheFormatsLength) {
    // 3 * length * 4 / 10 + 10, and one more.
    Wide text;
    text.Format(L"%s", L"abc");
    EXPECT_EQ(text.capacity, 13u);
    Wide longer;
    longer.Format(L"0123456789%i", 1);
    EXPECT_EQ(longer.capacity, 3u * 12 * 4 / 10 + 11);
    Wide empty;
    empty.Format(L"");
    EXPECT_EQ(empty.capacity, 11u);
}

TEST(StringFormat, RoomThatSufficesIsKept) {
    Wide text;
    text.Resize(100);
    text.Format(L"%s", L"abc");
    EXPECT_EQ(text.capacity, 100u);
    EXPECT_EQ(Std(text), L"abc");
}

TEST(StringFormat, ATextOfExactlyTheCapacityGrowsOnceMore) {
    Wide text;
    EXPECT_EQ(text.Format(L"%s", L"0123456789ab"), 12);  // below the capacity of 13
    EXPECT_EQ(text.capacity, 13u);
    Wide exact;
    EXPECT_EQ(exact.Format(L"%s", L"0123456789abc"), 13);
    EXPECT_EQ(exact.capacity, 14u);
    EXPECT_EQ(Std(exact), L"0123456789abc");
}

TEST(StringFormat, AUsedStringGrowsFromTheRoomItHas) {
    const std::wstring hundred(100, L'x');
    Wide exact;
    exact.Resize(100);
    EXPECT_EQ(exact.Format(L"%s", hundred.c_str()), 100);  // the estimate is 100, so 101 slots
    EXPECT_EQ(exact.capacity, 101u);
    EXPECT_EQ(Std(exact), hundred);
    Wide longer;
    longer.Resize(100);
    longer.Append(L"old");
    // The estimate is 100 * 13 / 10 + 3 = 133, so 134 slots.
    EXPECT_EQ(longer.Format(L"%sy", hundred.c_str()), 101);
    EXPECT_EQ(longer.capacity, 134u);
    EXPECT_EQ(Std(longer), hundred + L"y");
    Narrow narrow;
    narrow.Resize(100);
    EXPECT_EQ(narrow.Format("%101i", 1), 101);
    EXPECT_EQ(narrow.capacity, 134u);
}

TEST(StringFormat, OverflowGrowsByTheEstimate) {
    // 13 slots: the estimate is 13 * 13 / 10 + 3 = 19, so 20 slots.
    Wide text;
    EXPECT_EQ(text.Format(L"%s", L"0123456789abcd"), 14);
    EXPECT_EQ(text.capacity, 20u);
    // 15 slots, 22 + 1, 32 + 1, 45 + 1.
    Wide longer;
    EXPECT_EQ(longer.Format(L"%40i", 1), 40);
    EXPECT_EQ(longer.capacity, 46u);
    EXPECT_EQ(Std(longer), std::wstring(39, L' ') + L"1");
}

TEST(StringFormat, LongTextsArePrintedWhole) {
    const std::wstring expected(100000, L'x');
    Wide text;
    EXPECT_EQ(text.Format(L"<%s>", expected.c_str()), 100002);
    EXPECT_EQ(Std(text), L"<" + expected + L">");
    EXPECT_EQ(std::wstring(text.Data()), L"<" + expected + L">");
}

TEST(StringFormat, EveryLengthAroundEveryCapacityIsPrintedWhole) {
    for (std::size_t length = 0; length < 300; ++length) {
        const std::wstring expected(length, L'x');
        Wide text;
        ASSERT_EQ(text.Format(L"%s", expected.c_str()), static_cast<int>(length));
        ASSERT_EQ(Std(text), expected);
        ASSERT_LT(text.count, text.capacity);
    }
}

#ifndef _WIN32  // what the run-time there does with these differs between its versions
TEST(StringFormat, ATextThatCannotBePrintedEnds) {
    int written = 0;
    Wide text;
    EXPECT_LE(text.Format(L"abc%n", &written), 17);
    EXPECT_EQ(written, 0);
    EXPECT_EQ(text.capacity, 17u);  // it did not grow for it
}
#endif

// ---- Substitute ----

std::wstring Substituted(const wchar_t* text, double value, std::int32_t filled,
                         const wchar_t* marker = L"$", wchar_t terminator = L'$') {
    Wide result(text);
    EXPECT_EQ(result.Substitute(marker, terminator, value), filled);
    return Std(result);
}

TEST(StringSubstitute, FillsByTheDefaultFormatOrByItsOwn) {
    EXPECT_EQ(Substituted(L"x=$$;", 1.5, 1), L"x=1.50000000;");
    EXPECT_EQ(Substituted(L"x=$%10.3f$;", 1.5, 1), L"x=     1.500;");
    EXPECT_EQ(Substituted(L"$%.1f m$", 2.26, 1), L"2.3 m");
}

TEST(StringSubstitute, EveryPlaceGetsTheSameValue) {
    EXPECT_EQ(Substituted(L"$%.0f$ and $%.1f$", 7.0, 2), L"7 and 7.0");
    EXPECT_EQ(Substituted(L"$$$$", 1.0, 2), L"1.000000001.00000000");
}

TEST(StringSubstitute, OtherMarkersAreLeft) {
    EXPECT_EQ(Substituted(L"5$ and $x $$", 1.0, 1), L"5$ and $x 1.00000000");
    EXPECT_EQ(Substituted(L"nothing", 1.0, 0), L"nothing");
    EXPECT_EQ(Substituted(L"", 1.0, 0), L"");
}

TEST(StringSubstitute, AMarkerAtTheVeryEndIsNoPlace) {
    EXPECT_EQ(Substituted(L"abc$", 1.0, 0), L"abc$");
    EXPECT_EQ(Substituted(L"$", 1.0, 0), L"$");
}

TEST(StringSubstitute, WithoutATerminatorNothingIsConsumed) {
    EXPECT_EQ(Substituted(L"a#%.1f", 1.5, 1, L"#", L'$'), L"a1.50000000%.1f");
}

TEST(StringSubstitute, TheMarkerMayBeLongAndDifferFromTheTerminator) {
    EXPECT_EQ(Substituted(L"<<%.2f> <<>", 0.5, 2, L"<<", L'>'), L"0.50 0.50000000");
}

TEST(StringSubstitute, ATerminatorOfPercentTakesTheDefaultFormat) {
    EXPECT_EQ(Substituted(L"$%.1f", 1.5, 1, L"$", L'%'), L"1.50000000.1f");
}

TEST(StringSubstitute, AFormatThatIsNoSingleDoubleBecomesTheDefault) {
    for (const wchar_t* text :
         {L"$%i$", L"$%s$", L"$%f%f$", L"$%*f$", L"$%n$", L"$%$", L"$%%$", L"$%5$", L"$%f%s$"}) {
        EXPECT_EQ(Substituted(text, 1.5, 1), L"1.50000000") << text;
    }
    EXPECT_EQ(Substituted(L"$%f%%$", 1.5, 1), L"1.500000%");
    EXPECT_EQ(Substituted(L"$%-9.2lf|$", 1.5, 1), L"1.50     |");
}

TEST(StringSubstitute, ThePrintedTextIsCutAt999Characters) {
    EXPECT_EQ(Substituted(L"[$%999f$]", 1.0, 1), L"[" + std::wstring(991, L' ') + L"1.000000]");
    EXPECT_EQ(Substituted(L"[$%1000f$]", 1.0, 1), L"[" + std::wstring(992, L' ') + L"1.00000]");
    EXPECT_EQ(Substituted(L"[$%2000f$]", 1.0, 1), L"[" + std::wstring(999, L' ') + L"]");
}

TEST(StringSubstitute, WhatWasPrintedIsNotFilledAgain) {
    EXPECT_EQ(Substituted(L"1%.0f1x", 11.0, 1, L"1", L'1'), L"11x");
}

TEST(StringSubstitute, NarrowHasTheSameDefault) {
    Narrow text("a $$ b $%.1f$");
    EXPECT_EQ(text.Substitute("$", '$', 2.5), 2);
    EXPECT_EQ(Std(text), "a 2.50000000 b 2.5");
}

TEST(StringSubstitute, AnEmptyMarkerFillsNothing) {
    EXPECT_EQ(Substituted(L"$$", 1.0, 0, L""), L"$$");
}

}  // namespace
