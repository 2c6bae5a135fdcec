#include "datastruct/String.h"

#include <cmath>
#include <type_traits>

#include "tests/datastruct/StringTestSupport.h"

using namespace TamLib;

namespace {

// ---- Construction and the terminator ----

TEST(String, AddsNoFieldsToTheArray) {
    EXPECT_EQ(sizeof(Wide), sizeof(Array<wchar_t>));
    EXPECT_EQ(sizeof(Narrow), sizeof(Array<char>));
}

TEST(String, ADefaultOneIsEmptyWithoutABlock) {
    const Wide text;
    EXPECT_EQ(text.count, 0u);
    EXPECT_EQ(text.capacity, 0u);
    EXPECT_EQ(text.increment, 5u);
    EXPECT_EQ(text.data, nullptr);
    EXPECT_TRUE(text.bitwise);
    EXPECT_FALSE(text.sorted || text.unique);
}

TEST(String, ATextAsksForARoomOfOneMore) {
    const Wide text(L"katu");
    EXPECT_EQ(Std(text), L"katu");
    EXPECT_EQ(text.count, 4u);
    EXPECT_EQ(text.capacity, 5u);
    EXPECT_TRUE(text.bitwise);
    EXPECT_EQ(Wide(L"").capacity, 1u);
    EXPECT_EQ(Wide(L"0123456789").increment, 11u);
}

TEST(String, ANullTextIsEmptyWithoutABlock) {
    const Wide text(static_cast<const wchar_t*>(nullptr), 7);
    EXPECT_EQ(text.count, 0u);
    EXPECT_EQ(text.data, nullptr);
}

TEST(String, AMaximumCutsAndBelowOneMeansAll) {
    EXPECT_EQ(Std(Wide(L"abcdef", 2)), L"ab");
    EXPECT_EQ(Wide(L"abcdef", 2).capacity, 3u);
    EXPECT_EQ(Std(Wide(L"abcdef", 6)), L"abcdef");
    EXPECT_EQ(Std(Wide(L"abcdef", 100)), L"abcdef");
    EXPECT_EQ(Std(Wide(L"abcdef", 0)), L"abcdef");
    EXPECT_EQ(Std(Wide(L"abcdef", -1)), L"abcdef");
    const wchar_t open[] = {L'x', L'y'};  // no terminator to be read
    EXPECT_EQ(Std(Wide(open, 2)), L"xy");
}

TEST(String, ADoubleHasSixDecimalsAndIncrementTen) {
    const Wide text(-12.5);
    EXPECT_EQ(Std(text), L"-12.500000");
    EXPECT_EQ(text.increment, 10u);
    EXPECT_EQ(text.capacity, 13u);  // the first estimate of a format of two characters is 12
    EXPECT_EQ(Std(Narrow(0.25)), "0.250000");
    EXPECT_EQ(Wide(1e300).count, 308u);
}

TEST(String, ALongNumberHasTwentySlotsAndIncrementTwenty) {
    const Wide text(std::int32_t{-2147483647 - 1});
    EXPECT_EQ(Std(text), L"-2147483648");
    EXPECT_EQ(text.increment, 20u);
    EXPECT_EQ(text.capacity, 20u);
    EXPECT_EQ(Std(Narrow(std::int32_t{0})), "0");
}

TEST(String, ACharacterHasTwoSlots) {
    const Wide text(L'\u00E4');
    EXPECT_EQ(Std(text), L"\u00E4");
    EXPECT_EQ(text.capacity, 2u);
}

TEST(String, ComesFromAndGoesToTheMfcString) {
    const CStringW mfc(L"tie 5");
    const Wide text(mfc);
    EXPECT_EQ(Std(text), L"tie 5");
    EXPECT_TRUE(text.ToCString() == mfc);
    EXPECT_EQ(Std(Narrow(CStringA("tie"))), "tie");
    EXPECT_TRUE(Wide().ToCString().IsEmpty());
}

TEST(String, ACopyHasExactlyItsCharacters) {
    Wide source(L"abc");
    source.Resize(50);
    source.increment = 33;
    const Wide copy(source);
    EXPECT_EQ(Std(copy), L"abc");
    EXPECT_EQ(copy.capacity, 3u);
    EXPECT_EQ(copy.increment, 33u);
    EXPECT_TRUE(copy.bitwise);
    Narrow narrow("abcd");
    narrow.Resize(50);
    EXPECT_EQ(Narrow(narrow).capacity, 4u);
    Wide target(L"other");
    target = source;
    EXPECT_EQ(Std(target), L"abc");
    EXPECT_EQ(target.capacity, 3u);
}

TEST(String, ACopyOfASortedOneIsSorted) {
    Wide text(L"cab");
    text.Sort();
    EXPECT_EQ(Std(text), L"abc");
    EXPECT_TRUE(Wide(text).sorted);
}

TEST(String, DataOfAnEmptyStringIsOneSharedText) {
    Wide first;
    Wide second(L"");  // with a block
    const wchar_t* const block = second.data;
    EXPECT_EQ(first.Data(), second.Data());
    EXPECT_EQ(first.Data()[0], L'\0');
    EXPECT_EQ(first.data, nullptr);
    EXPECT_EQ(second.data, block);
    EXPECT_EQ(first.capacity, 0u);
}

TEST(String, DataWritesTheTerminatorInPlaceWhenThereIsRoom) {
    Wide text(L"abc");
    text.data[3] = L'#';
    wchar_t* const before = text.data;
    EXPECT_EQ(text.Data(), before);
    EXPECT_EQ(text.data[3], L'\0');
    EXPECT_EQ(text.capacity, 4u);
}

TEST(String, DataOfAFullStringGrowsByOneAlsoWhenItIsConst) {
    const Wide source(L"abc");
    const Wide full(source);
    ASSERT_EQ(full.capacity, 3u);
    EXPECT_EQ(std::wstring(full.Data()), L"abc");
    EXPECT_EQ(full.capacity, 4u);
    EXPECT_EQ(full.count, 3u);
}

TEST(String, DataIsTheArraysOwnOperation) {
    Wide text(L"abc");
    text.Resize(3);
    Array<wchar_t>& array = text;
    EXPECT_EQ(array.Data()[3], L'\0');
}

TEST(String, CharactersOrderByNumberNarrowOnesWithASign) {
    Wide wide(L"\u00E4b\u0101A");
    wide.Sort();
    EXPECT_EQ(Std(wide), L"Ab\u00E4\u0101");
    Narrow narrow("a\xE4Z");
    narrow.Sort();
    EXPECT_EQ(Std(narrow), "\xE4Za");
    const Wide text(L"ab");
    EXPECT_EQ(text.compare(text.data, text.data + 1), -1);
    EXPECT_EQ(text.compare(text.data + 1, text.data), 1);
    EXPECT_EQ(text.compare(text.data, text.data), 0);
}

TEST(String, ElementOperationsStandBesideTextOperations) {
    Wide text(L"abcabc");
    EXPECT_EQ(text.Find(L'c'), 2);
    EXPECT_EQ(text.Find(L"ca"), 2);
    EXPECT_TRUE(text.Contains(L'b'));
    EXPECT_EQ(text.Append(L'!'), 6);
    text.Append(L"?+");
    text.Insert(0, L'<');
    text.Remove(1, 2);
    EXPECT_EQ(Std(text), L"<cabc!?+");
    EXPECT_EQ(text.Count(L'c'), 2u);
    EXPECT_EQ(*text.At(-1), L'+');
    text.Reverse();
    EXPECT_EQ(Std(text), L"+?!cbac<");
}

// ---- Conversion ----

TEST(String, NarrowAndWideKeepTheCount) {
    EXPECT_EQ(Std(Wide(L"tie \u00E4").ToNarrow()), "tie \xE4");
    EXPECT_EQ(Std(Wide(L"\u20AC1").ToNarrow()).substr(1), "1");
    EXPECT_EQ(Wide(L"\u20AC1").ToNarrow().count, 2u);
    EXPECT_EQ(Std(Narrow("tie \xE4").ToWide()), L"tie \u00E4");
    EXPECT_EQ(Wide().ToNarrow().data, nullptr);
    EXPECT_EQ(Narrow().ToWide().data, nullptr);
    EXPECT_EQ(Std(Wide(L"ab").ToWide()), L"ab");
    EXPECT_EQ(Std(Narrow("ab").ToNarrow()), "ab");
}

TEST(String, NumbersAreReadFromItsStart) {
    EXPECT_EQ(Wide(L" 12.5 m").ToDouble(), 12.5);
    EXPECT_EQ(Wide(L"-1e3").ToDouble(), -1000.0);
    EXPECT_EQ(Wide(L"m").ToDouble(), 0.0);
    EXPECT_EQ(Wide().ToDouble(), 0.0);
    EXPECT_EQ(Wide(L"0x10").ToDouble(), 0.0);
    EXPECT_EQ(Wide(L"inf").ToDouble(), 0.0);
    EXPECT_EQ(Narrow("nan").ToDouble(), 0.0);
    EXPECT_EQ(Narrow("0.125").ToDouble(), 0.125);
    EXPECT_EQ(Wide(L" -42x").ToLong(), -42);
    EXPECT_EQ(Wide(L"0x10").ToLong(), 0);  // base 10
    EXPECT_EQ(Wide(L"010").ToLong(), 10);
    EXPECT_EQ(Wide(L"x").ToLong(), 0);
    EXPECT_EQ(Narrow("77").ToLong(), 77);
    EXPECT_EQ(Wide(L"4294967295").ToUnsignedLong(), 4294967295u);
    EXPECT_EQ(Wide(L"").ToUnsignedLong(), 0u);
}

TEST(String, IntegersSaturateAt32Bits) {
    EXPECT_EQ(Wide(L"2147483647").ToLong(), 2147483647);
    EXPECT_EQ(Wide(L"2147483648").ToLong(), 2147483647);
    EXPECT_EQ(Wide(L"-2147483649").ToLong(), -2147483647 - 1);
    EXPECT_EQ(Wide(L"99999999999999999999").ToLong(), 2147483647);
    EXPECT_EQ(Wide(L"-99999999999999999999").ToLong(), -2147483647 - 1);
    EXPECT_EQ(Wide(L"4294967296").ToUnsignedLong(), 4294967295u);
    EXPECT_EQ(Wide(L"99999999999999999999").ToUnsignedLong(), 4294967295u);
    EXPECT_EQ(Wide(L"-1").ToUnsignedLong(), 4294967295u);
    EXPECT_EQ(Wide(L" -5").ToUnsignedLong(), 4294967291u);
    EXPECT_EQ(Wide(L"-4294967296").ToUnsignedLong(), 4294967295u);
    EXPECT_EQ(Wide(L"-99999999999999999999").ToUnsignedLong(), 4294967295u);
}

TEST(String, CaseIsThatOfTheTable) {
    EXPECT_EQ(Std(Wide(L"\u00C4itee\u00D6! \u0160").ToLower()), L"\u00E4itee\u00F6! \u0161");
    EXPECT_EQ(Std(Wide(L"\u00E4itee\u00F6").ToUpper()), L"\u00C4ITEE\u00D6");
    EXPECT_EQ(Std(Narrow("\xE4\x9A\x9E\xF7\xFFz").ToUpper()), "\xC4\x8A\x9E\xF7\x9FZ");
    EXPECT_EQ(Std(Narrow("\xC4\x8A\x8E\xD7\x9FZ").ToLower()), "\xE4\x9A\x8E\xD7\xFFz");
    EXPECT_EQ(Wide().ToLower().count, 0u);
    const Wide text(L"AbC");
    text.ToLower();
    EXPECT_EQ(Std(text), L"AbC");
}

// ---- Comparison ----

TEST(String, ComparisonIsMinusOneZeroOrOne) {
    EXPECT_EQ(Wide().Compare(Wide()), 0);
    EXPECT_EQ(Wide().Compare(L"a"), -1);
    EXPECT_EQ(Wide(L"a").Compare(Wide()), 1);
    EXPECT_EQ(Wide(L"a").Compare(L"z"), -1);
    EXPECT_EQ(Wide(L"z").Compare(L"a"), 1);
    EXPECT_EQ(Wide(L"katu").Compare(L"katu"), 0);
    EXPECT_EQ(Wide(L"kat").Compare(L"katu"), -1);
    EXPECT_EQ(Wide(L"katu").Compare(L"kat"), 1);
    EXPECT_EQ(Wide(L"a").Compare(L"A"), 1);
    EXPECT_EQ(Narrow("a").Compare("\xE4"), -1);  // bytes without a sign
}

TEST(String, ComparisonIgnoringCaseComparesSmallLetters) {
    EXPECT_EQ(Wide(L"K\u00C4TU").CompareNoCase(L"k\u00E4tu"), 0);
    EXPECT_EQ(Wide(L"_").CompareNoCase(L"A"), -1);  // between Z and a
    EXPECT_EQ(Wide(L"B").CompareNoCase(L"a"), 1);
    EXPECT_EQ(Wide(L"KAT").CompareNoCase(L"katu"), -1);
    EXPECT_EQ(Wide().CompareNoCase(L"a"), -1);
    EXPECT_EQ(Wide(L"a").CompareNoCase(Wide()), 1);
    EXPECT_EQ(Wide().CompareNoCase(Wide()), 0);
    EXPECT_EQ(Narrow("\xC4").CompareNoCase("\xE4"), 0);
}

TEST(String, AZeroInBothEndsAComparison) {
    const Wide first = FromStd(std::wstring(L"a\0x", 3));
    const Wide second = FromStd(std::wstring(L"a\0b", 3));
    EXPECT_EQ(first.Compare(second), 0);
    EXPECT_EQ(first.CompareNoCase(FromStd(std::wstring(L"A\0bc", 4))), -1);
}

TEST(String, StartsWithIsTrueForABeginningOfThePrefixToo) {
    EXPECT_TRUE(Wide(L"software").StartsWith(L"so"));
    EXPECT_TRUE(Wide(L"so").StartsWith(L"software"));
    EXPECT_FALSE(Wide(L"sa").StartsWith(L"software"));
    EXPECT_TRUE(Wide(L"").StartsWith(L""));  // the empty prefix is looked at first
    EXPECT_TRUE(Wide(L"a").StartsWith(L""));
    EXPECT_FALSE(Wide(L"").StartsWith(L"a"));
    EXPECT_FALSE(Wide(L"SO").StartsWith(L"so"));
    EXPECT_TRUE(Wide(L"\u00C4IT").StartsWith(L"\u00E4i", false));
}

TEST(String, EqualsSkipsIgnoredCharactersInStringsOfOneLength) {
    EXPECT_TRUE(Wide(L"a-bc").Equals(L"ab-c", false, L"-"));
    EXPECT_FALSE(Wide(L"abc").Equals(L"ab-c", false, L"-"));  // the counts differ
    EXPECT_FALSE(Wide(L"a-bc").Equals(L"abcd", false, L"-"));
    EXPECT_TRUE(Wide(L"--").Equals(L" -", false, L"- "));
    EXPECT_FALSE(Wide(L"a-").Equals(L"ab", false, L"-"));  // one ends before the other
    EXPECT_TRUE(Wide(L"\u00C4B").Equals(L"\u00E4b", true));
    EXPECT_FALSE(Wide(L"AB").Equals(L"ab", false));
    EXPECT_TRUE(Wide().Equals(Wide()));
    EXPECT_TRUE(Wide(L"ab").Equals(L"ab"));
    EXPECT_FALSE(Wide(L"ab").Equals(L"ac"));
}

TEST(String, PositionwiseComparisonIsNoLexicographicOrder) {
    EXPECT_TRUE(Wide(L"bb").AllNotLess(L"ab"));
    EXPECT_FALSE(Wide(L"ba").AllNotLess(L"ab"));
    EXPECT_FALSE(Wide(L"ba").AllNotGreater(L"ab"));
    EXPECT_TRUE(Wide(L"ab").AllNotGreater(L"bb"));
    EXPECT_TRUE(Wide(L"ab").AllNotLess(L"ab"));
    EXPECT_TRUE(Wide(L"ab").AllNotGreater(L"ab"));
    EXPECT_TRUE(Wide(L"b").AllNotLess(L"az"));  // over the shorter length
    EXPECT_TRUE(Wide().AllNotLess(L"a"));
    EXPECT_TRUE(Wide().AllNotGreater(L"a"));
    EXPECT_FALSE(Narrow("\xE4").AllNotLess("a"));  // narrow characters have a sign
}

TEST(String, ArraysOfStringsCompareIgnoringCase) {
    Array<Wide> names;
    names.Append(L"Tie");
    names.Append(L"\u00C4la");
    names.Append(L"kuja");
    EXPECT_EQ(names.Find(L"TIE"), 0);
    EXPECT_EQ(names.Find(L"\u00E4LA"), 1);
    EXPECT_FALSE(names.Contains(L"Ti"));
    names.Sort();
    EXPECT_EQ(Std(names), (WideFields{L"kuja", L"Tie", L"\u00C4la"}));
    Array<Narrow> narrow;
    narrow.Append("a");
    EXPECT_TRUE(narrow.Contains("A"));
}

// ---- Pieces ----

TEST(String, SubIsCyclic) {
    EXPECT_EQ(Std(Wide(L"abcd").Sub(2, 1)), L"cdab");
    EXPECT_EQ(Std(Wide(L"abc").Sub(0, 5)), L"abcabc");
    EXPECT_EQ(Std(Wide(L"abcd").Sub(1, 2)), L"bc");
    EXPECT_EQ(Std(Wide(L"abcd").Sub(-2, -1)), L"cd");
    EXPECT_EQ(Std(Wide(L"abcd").Sub(0, -1)), L"abcd");
    EXPECT_EQ(Std(Wide(L"abcd").Sub(-1, 0)), L"da");
    EXPECT_EQ(Std(Wide(L"abcd").Sub(3, 3)), L"d");
    EXPECT_EQ(Std(Wide(L"abcd").Sub(6, 7)), L"cd");
    EXPECT_EQ(Std(Wide(L"abcd").Sub(-6, -5)), L"cd");
    EXPECT_EQ(Std(Wide(L"ab").Sub(1, 9)), L"babababab");
}

TEST(String, SubIsEmptyWhenTheRangeStaysReversedOrTheTextIsEmpty) {
    EXPECT_EQ(Wide(L"abcd").Sub(10, 2).count, 0u);
    EXPECT_EQ(Wide(L"abcd").Sub(7, 2).count, 0u);  // one character short of a range
    EXPECT_EQ(Std(Wide(L"abcd").Sub(6, 2)), L"c");
    EXPECT_EQ(Wide().Sub(0, 5).count, 0u);
    EXPECT_EQ(Wide().Sub(-1, -1).count, 0u);
}

TEST(String, APieceHasIncrementTenAndRoomForTenAndTheSettingsOfItsSource) {
    Wide text(L"abc");
    const Wide short_ = text.Sub(0, 1);
    EXPECT_EQ(short_.increment, 10u);
    EXPECT_EQ(short_.capacity, 10u);
    EXPECT_EQ(text.Sub(0, 9).capacity, 10u);
    EXPECT_EQ(text.Sub(0, 10).capacity, 11u);
    EXPECT_EQ(Wide().Sub(0, 4).capacity, 10u);
    EXPECT_EQ(Wide().Sub(0, 24).capacity, 25u);  // the range counts, also of an empty text
    EXPECT_EQ(Wide().Sub(5, 2).capacity, 10u);
    text.Sort();
    text.unique = true;
    text.compare = [](const wchar_t*, const wchar_t*) -> std::int32_t { return 0; };
    const Wide piece = text.Sub(0, 1);
    EXPECT_TRUE(piece.sorted && piece.unique && piece.bitwise);
    EXPECT_EQ(piece.compare, text.compare);
}

TEST(String, MidTakesOneMoreThanItsSpan) {
    EXPECT_EQ(Std(Wide(L"abcdef").Mid(1, 2)), L"bcd");
    EXPECT_EQ(Std(Wide(L"abcdef").Mid(1, 0)), L"b");
    EXPECT_EQ(Std(Wide(L"abcdef").Mid(-2, 1)), L"ef");
    EXPECT_EQ(Std(Wide(L"abcdef").Mid(4, 3)), L"efab");
}

TEST(String, LeftAndRight) {
    EXPECT_EQ(Std(Wide(L"abc").Left(2)), L"ab");
    EXPECT_EQ(Std(Wide(L"abc").Left(10)), L"abc");
    EXPECT_EQ(Wide(L"abc").Left(0).count, 0u);
    EXPECT_EQ(Wide().Left(3).count, 0u);
    EXPECT_EQ(Std(Wide(L"abc").Right(2)), L"bc");
    EXPECT_EQ(Std(Wide(L"abc").Right(10)), L"abc");
    EXPECT_EQ(Wide().Right(3).count, 0u);
}

TEST(String, RightOfNothingIsTheWholeTextByTheRing) {
    EXPECT_EQ(Std(Wide(L"abc").Right(0)), L"abc");
    EXPECT_EQ(Wide().Right(0).count, 0u);
}

// ---- Change ----

TEST(String, AppendInsertsAtThePosition) {
    Wide text(L"ad");
    text.Append(L"bc", 1);
    EXPECT_EQ(Std(text), L"abcd");
    text.Append(L"e");
    EXPECT_EQ(Std(text), L"abcde");
    text.Append(L"-", -2);
    EXPECT_EQ(Std(text), L"abcd-e");
    text.Append(L"<", 0);
    EXPECT_EQ(Std(text), L"<abcd-e");
    text.Append(L">", 100);
    text.Append(L"!", -100);
    EXPECT_EQ(Std(text), L"!<abcd-e>");
}

TEST(String, AppendOfNothingChangesNothing) {
    Wide text(L"abc");
    text.Append(L"", 1);
    text.Append(Wide());
    EXPECT_EQ(Std(text), L"abc");
    EXPECT_EQ(text.capacity, 4u);
    EXPECT_EQ(text.increment, 5u);
}

TEST(String, AppendGrowsToExactlyTheLengthAndMakesItTheIncrement) {
    Wide text(L"abc");
    text.Append(L"d");
    EXPECT_EQ(text.capacity, 4u);
    EXPECT_EQ(text.increment, 5u);  // it fitted
    text.Append(L"efg");
    EXPECT_EQ(text.capacity, 7u);
    EXPECT_EQ(text.increment, 7u);
    text.Append(L'h');  // by the new increment
    EXPECT_EQ(text.capacity, 14u);
}

TEST(String, AppendsItselfAnywhere) {
    Wide text(L"abc");
    text.Append(text);
    EXPECT_EQ(Std(text), L"abcabc");
    text.Append(text, 1);
    EXPECT_EQ(Std(text), L"aabcabcbcabc");
}

TEST(String, AppendToASortedOrUniqueStringGoesToTheEnd) {
    Wide text(L"bc");
    text.Sort();
    text.Append(L"xa", 0);
    EXPECT_EQ(Std(text), L"bcxa");
    EXPECT_FALSE(text.sorted);
    Wide unique(L"bc");
    unique.unique = true;
    unique.Append(L"cb", 0);
    EXPECT_EQ(Std(unique), L"bccb");
    unique.Append(unique, 1);
    EXPECT_EQ(Std(unique), L"bccbbccb");
}

TEST(String, ReplaceGivesTheNumberOfReplacements) {
    Wide text(L"a,b,c");
    EXPECT_EQ(text.Replace(L",", L"; "), 2);
    EXPECT_EQ(Std(text), L"a; b; c");
    EXPECT_EQ(text.Replace(L"; ", L""), 2);
    EXPECT_EQ(Std(text), L"abc");
    EXPECT_EQ(text.Replace(L"x", L"y"), 0);
    EXPECT_EQ(text.Replace(L"", L"y"), 0);
    EXPECT_EQ(Std(text), L"abc");
    EXPECT_EQ(Wide().Replace(L"a", L"b"), 0);
}

TEST(String, ReplaceSearchesOnBehindTheReplacement) {
    Wide text(L"aaa");
    EXPECT_EQ(text.Replace(L"a", L"aa"), 3);
    EXPECT_EQ(Std(text), L"aaaaaa");
    EXPECT_EQ(text.Replace(L"aa", L"a"), 3);
    EXPECT_EQ(Std(text), L"aaa");
    Wide overlapping(L"ababa");
    EXPECT_EQ(overlapping.Replace(L"aba", L"-"), 1);
    EXPECT_EQ(Std(overlapping), L"-ba");
}

TEST(String, ReplaceOfTheFirstAlone) {
    Wide text(L"x-x-x");
    EXPECT_EQ(text.Replace(L"x", L"yy", true, false), 1);
    EXPECT_EQ(Std(text), L"yy-x-x");
}

TEST(String, ReplaceIgnoringCase) {
    Wide text(L"Katu KATU \u00C4katu");
    EXPECT_EQ(text.Replace(L"kAtU", L"tie", false), 3);
    EXPECT_EQ(Std(text), L"tie tie \u00C4tie");
    EXPECT_EQ(text.Replace(L"\u00E4TIE", L"x", true), 0);
    EXPECT_EQ(text.Replace(L"\u00E4TIE", L"x", false), 1);
    EXPECT_EQ(Std(text), L"tie tie x");
}

TEST(String, ReplaceTakesItselfAsEitherText) {
    Wide text(L"ab");
    EXPECT_EQ(text.Replace(text, L"c"), 1);
    EXPECT_EQ(Std(text), L"c");
    EXPECT_EQ(text.Replace(L"c", text), 1);
    EXPECT_EQ(Std(text), L"c");
    text.Append(L"d");
    EXPECT_EQ(text.Replace(L"d", text), 1);
    EXPECT_EQ(Std(text), L"ccd");
}

TEST(String, ReplaceLeavesTheRoomThatRemovingAndAppendingLeave) {
    Wide text(L"a--b--c");
    Wide slow(text);
    text = slow;
    ASSERT_EQ(text.Replace(L"--", L"+++"), 2);
    for (int i = 0; i < 2; ++i) {
        const std::int32_t at = slow.Find(L"--");
        slow.Remove(at, 2);
        slow.Append(L"+++", at);
    }
    EXPECT_EQ(Std(text), Std(slow));
    EXPECT_EQ(text.capacity, slow.capacity);
    EXPECT_EQ(text.increment, slow.increment);
}

TEST(String, ReplaceInASortedOrUniqueStringPutsTheNewTextAtTheEnd) {
    Wide text(L"abc");
    text.unique = true;
    EXPECT_EQ(text.Replace(L"a", L"xy"), 1);
    EXPECT_EQ(Std(text), L"bcxy");
    Wide sorted(L"aab");
    sorted.Sort();
    EXPECT_EQ(sorted.Replace(L"a", L"x", true, false), 1);
    EXPECT_EQ(Std(sorted), L"abx");
}

TEST(String, RemoveCharsRemovesEveryMember) {
    Wide text(L"a1b2c3");
    text.RemoveChars(L"123");
    EXPECT_EQ(Std(text), L"abc");
    text.RemoveChars(L"");
    text.RemoveChars(nullptr);
    EXPECT_EQ(Std(text), L"abc");
    text.RemoveChars(L"cab");
    EXPECT_EQ(text.count, 0u);
    EXPECT_EQ(std::wstring(text.Data()), L"");
}

TEST(String, JoinPutsSeparatorsBetween) {
    Array<Wide> parts;
    Wide text(L"old");
    text.Join(parts, L", ");
    EXPECT_EQ(text.count, 0u);
    parts.Append(L"a");
    text.Join(parts, L", ");
    EXPECT_EQ(Std(text), L"a");
    parts.Append(L"");
    parts.Append(L"c");
    text.Join(parts, L", ");
    EXPECT_EQ(Std(text), L"a, , c");
    text.Join(parts, L"");
    EXPECT_EQ(Std(text), L"ac");
}

TEST(String, JoinTakesItselfAsMemberAndSeparator) {
    Array<Wide> parts;
    parts.Append(L"a");
    parts.Append(L"b");
    parts.data[0].Join(parts, parts.data[1]);
    EXPECT_EQ(Std(parts.data[0]), L"abb");
}

TEST(String, JoiningTheFieldsOfASplitGivesTheTextBack) {
    const Wide text(L",a,,b,");
    Array<Wide> fields;
    text.Split(fields, L",", true);
    Wide joined;
    joined.Join(fields, L",");
    EXPECT_EQ(Std(joined), Std(text));
}

TEST(String, ConcatenationIsANewString) {
    const Wide left(L"ab");
    const Wide right(L"cd");
    EXPECT_EQ(Std(left + right), L"abcd");
    EXPECT_EQ(Std(left + L"x"), L"abx");
    EXPECT_EQ(Std(L"x" + left), L"xab");
    EXPECT_EQ(Std(left + Wide()), L"ab");
    EXPECT_EQ(Std(Wide() + right), L"cd");
    EXPECT_EQ(Std(left), L"ab");
    EXPECT_EQ(Std(Narrow("a") + "b"), "ab");
}

}  // namespace
