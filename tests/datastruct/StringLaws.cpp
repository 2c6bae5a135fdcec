// Strings against the standard ones over random input.
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cwctype>
#include <string>
#include <vector>

#include "tests/datastruct/StringTestSupport.h"

using namespace TamLib;

namespace {

// Few characters, so that occurrences and cases meet often; some beyond ASCII.
std::wstring AnyText() {
    const auto character = rc::gen::element(L'a', L'b', L'A', L'B', L',', L'"', L' ', L'\u00E4',
                                            L'\u00C4', L'\u0122', L'7');
    return *rc::gen::container<std::wstring>(character);
}

RC_GTEST_PROP(StringLaws, ATextComesBackAsItWent, ()) {
    const std::wstring text = AnyText();
    RC_ASSERT(Std(Wide(text.c_str())) == text);
    RC_ASSERT(std::wstring(FromStd(text).Data()) == text);
    RC_ASSERT(Std(FromStd(text).ToNarrow().ToWide()).size() == text.size());
}

RC_GTEST_PROP(StringLaws, FindIsThatOfTheStandardString, ()) {
    const std::wstring text = AnyText();
    const std::wstring needle = AnyText().substr(0, 3);
    const auto start = *rc::gen::inRange<std::int32_t>(-2, 12);
    const std::size_t found = text.find(needle, static_cast<std::size_t>(std::max(start, 0)));
    const std::int32_t expected =
        needle.empty() || found == std::wstring::npos ? -1 : static_cast<std::int32_t>(found);
    RC_ASSERT(FromStd(text).Find(FromStd(needle), -1, start) == expected);
}

RC_GTEST_PROP(StringLaws, IgnoringCaseIsComparingSmallLetters, ()) {
    const Wide a = FromStd(AnyText());
    const Wide b = FromStd(AnyText());
    RC_ASSERT(a.CompareNoCase(b) == a.ToLower().Compare(b.ToLower()));
    RC_ASSERT(a.Find(b, -1, 0, false) == a.ToLower().Find(b.ToLower()));
    RC_ASSERT(a.StartsWith(b, false) == a.ToLower().StartsWith(b.ToLower()));
    RC_ASSERT(a.Equals(b, true) == a.ToLower().Equals(b.ToLower()));
    RC_ASSERT(a.CompareNoCase(a.ToUpper()) == 0);
    RC_ASSERT(Std(a.ToUpper().ToLower()) == Std(a.ToLower()));
}

RC_GTEST_PROP(StringLaws, ComparisonIsThatOfTheStandardString, ()) {
    const std::wstring a = AnyText();
    const std::wstring b = AnyText();
    const int order = a.compare(b);
    RC_ASSERT(FromStd(a).Compare(FromStd(b)) == (order > 0) - (order < 0));
    RC_ASSERT(FromStd(a).Compare(FromStd(b)) == -FromStd(b).Compare(FromStd(a)));
    RC_ASSERT(FromStd(a).Equals(FromStd(b)) == (a == b));
}

RC_GTEST_PROP(StringLaws, ComparisonIgnoringCaseIsAnOrder, ()) {
    std::vector<Wide> three = {FromStd(AnyText()), FromStd(AnyText()), FromStd(AnyText())};
    std::sort(three.begin(), three.end(),
              [](const Wide& x, const Wide& y) { return x.CompareNoCase(y) < 0; });
    RC_ASSERT(three[0].CompareNoCase(three[2]) <= 0);
    RC_ASSERT(three[0].CompareNoCase(three[1]) == -three[1].CompareNoCase(three[0]));
}

RC_GTEST_PROP(StringLaws, SubIsARing, ()) {
    const std::wstring text = AnyText();
    const auto first = *rc::gen::inRange<std::int32_t>(-15, 15);
    const auto last = *rc::gen::inRange<std::int32_t>(-15, 25);
    const auto size = static_cast<std::int32_t>(text.size());
    std::int32_t from = first < 0 ? first + size : first;
    std::int32_t to = last < 0 ? last + size : last;
    if (to < from) to += size;
    std::wstring expected;
    for (std::int32_t i = from; size != 0 && i <= to; ++i) {
        expected += text[static_cast<std::size_t>(((i % size) + size) % size)];
    }
    const Wide piece = FromStd(text).Sub(first, last);
    RC_ASSERT(Std(piece) == expected);
    RC_ASSERT(piece.capacity == static_cast<std::uint32_t>(std::max(10, to - from + 1)));
}

std::wstring Replaced(const std::wstring& text, const std::wstring& old, const std::wstring& fresh,
                      int& made) {
    std::wstring result = text;
    for (std::size_t at = 0; !old.empty() && (at = result.find(old, at)) != std::wstring::npos;) {
        result.replace(at, old.size(), fresh);
        at += fresh.size();
        ++made;
    }
    return result;
}

RC_GTEST_PROP(StringLaws, ReplaceIsThatOfTheStandardString, ()) {
    const std::wstring text = AnyText();
    const std::wstring old = AnyText().substr(0, 2);
    const std::wstring fresh = AnyText().substr(0, 3);
    int made = 0;
    const std::wstring expected = Replaced(text, old, fresh, made);
    Wide replaced = FromStd(text);
    RC_ASSERT(replaced.Replace(FromStd(old), FromStd(fresh)) == made);
    RC_ASSERT(Std(replaced) == expected);
    RC_ASSERT(replaced.count <= replaced.capacity);
}

RC_GTEST_PROP(StringLaws, ReplaceLeavesTheRoomOfRemovingAndAppending, ()) {
    const Wide old = FromStd(AnyText().substr(0, 2));
    const Wide fresh = FromStd(AnyText().substr(0, 3));
    Wide quick = FromStd(AnyText());
    quick.increment = *rc::gen::inRange<std::uint32_t>(1, 9);
    quick.Resize(quick.count + *rc::gen::inRange<std::uint32_t>(0, 12));
    Wide slow;
    slow.Resize(quick.capacity);
    for (const wchar_t c : quick) slow.Append(c);
    slow.increment = quick.increment;
    std::int32_t at = slow.Find(old);
    while (at >= 0) {
        slow.Remove(at, old.count);
        slow.Append(fresh, at);
        at = slow.Find(old, -1, at + static_cast<std::int32_t>(fresh.count));
    }
    quick.Replace(old, fresh);
    RC_ASSERT(Std(quick) == Std(slow));
    RC_ASSERT(quick.capacity == slow.capacity);
    RC_ASSERT(quick.increment == slow.increment);
}

RC_GTEST_PROP(StringLaws, JoiningTheKeptFieldsGivesTheTextBack, ()) {
    const std::wstring text = AnyText();
    const std::wstring separator =
        *rc::gen::element<std::wstring>(L",", L"a", L"ab", L",,", L"aba");
    Array<Wide> fields;
    FromStd(text).Split(fields, separator.c_str(), true);
    Wide joined;
    joined.Join(fields, FromStd(separator));
    RC_ASSERT(Std(joined) == text);
    for (const Wide& field : fields) RC_ASSERT(field.Find(FromStd(separator)) == -1);
}

RC_GTEST_PROP(StringLaws, DroppingEmptyFieldsOnlyDropsThem, ()) {
    const Wide text = FromStd(AnyText());
    Array<Wide> kept;
    Array<Wide> dropped;
    text.Split(kept, L",", true);
    text.Split(dropped, L",", false);
    auto expected = Std(kept);
    expected.erase(std::remove(expected.begin(), expected.end(), L""), expected.end());
    RC_ASSERT(Std(dropped) == expected);
}

RC_GTEST_PROP(StringLaws, FixedFieldsInsideTheTextJoinToItsBeginning, ()) {
    const std::wstring text = AnyText();
    const auto first = *rc::gen::inRange<std::int32_t>(1, 5);
    const auto second = *rc::gen::inRange<std::int32_t>(1, 5);
    RC_PRE(text.size() >= static_cast<std::size_t>(first + second));
    Array<Wide> fields;
    FromStd(text).SplitFixed(fields, 2, first, second);
    RC_ASSERT(Std(fields.data[0] + fields.data[1]) ==
              text.substr(0, static_cast<std::size_t>(first + second)));
}

RC_GTEST_PROP(StringLaws, APatternOfTheTextItselfMatches, ()) {
    const Wide text = FromStd(AnyText());
    RC_ASSERT(text.WildMatch(text));
    RC_ASSERT(text.WildMatch(text.ToUpper()));
    Wide any(text);
    for (wchar_t& c : any) c = L'?';
    RC_ASSERT(text.WildMatch(any));
    RC_ASSERT(text.count == 0 || text.WildMatch(L"*"));
}

RC_GTEST_PROP(StringLaws, FormatPrintsTextsOfEveryLength, ()) {
    const std::wstring a = AnyText();
    const std::wstring b = AnyText();
    const auto number = *rc::gen::arbitrary<std::int32_t>();
    const std::wstring expected = a + L"|" + std::to_wstring(number) + b;
    Wide text;
    RC_ASSERT(text.Format(L"%s|%i%s", a.c_str(), number, b.c_str()) ==
              static_cast<std::int32_t>(expected.size()));
    RC_ASSERT(Std(text) == expected);
    RC_ASSERT(text.count < text.capacity);
}

RC_GTEST_PROP(StringLaws, NumbersGoToTextAndBack, (std::int32_t number)) {
    RC_ASSERT(Wide(number).ToLong() == number);
    RC_ASSERT(Narrow(number).ToLong() == number);
    const auto bits = static_cast<std::uint32_t>(number);
    Wide text;
    text.Format(L"%u", bits);
    RC_ASSERT(text.ToUnsignedLong() == bits);
}

// A string and its model under a sequence of changes.
struct Pair {
    Wide text;
    std::wstring model;

    std::int32_t AnyIndex() const {
        return *rc::gen::inRange<std::int32_t>(0, static_cast<std::int32_t>(model.size()) + 1);
    }
    void AppendSomewhere() {
        const std::wstring other = AnyText();
        const std::int32_t at = AnyIndex();
        text.Append(FromStd(other), at);
        model.insert(static_cast<std::size_t>(at), other);
    }
    void InsertOne() {
        const std::int32_t at = AnyIndex();
        text.Insert(at, L'x');
        model.insert(static_cast<std::size_t>(at), 1, L'x');
    }
    void RemoveSome() {
        if (model.empty()) return;
        const std::int32_t at = AnyIndex() % static_cast<std::int32_t>(model.size());
        const auto most = static_cast<std::uint32_t>(model.size()) - static_cast<std::uint32_t>(at);
        const std::uint32_t n = *rc::gen::inRange<std::uint32_t>(1, most + 1);
        text.Remove(at, n);
        model.erase(static_cast<std::size_t>(at), n);
    }
    void RemoveMembers() {
        text.RemoveChars(L"ax");
        model.erase(std::remove_if(model.begin(), model.end(),
                                   [](wchar_t c) { return c == L'a' || c == L'x'; }),
                    model.end());
    }
    void Copy() { text = Wide(text); }
    void Terminate() const { RC_ASSERT(std::wstring(text.Data()) == model); }
};

RC_GTEST_PROP(StringLaws, EverySequenceOfChangesAgreesWithTheModel, ()) {
    Pair pair;
    const int steps = *rc::gen::inRange(0, 30);
    for (int i = 0; i < steps; ++i) {
        switch (*rc::gen::inRange(0, 6)) {
            case 0:
                pair.AppendSomewhere();
                break;
            case 1:
                pair.InsertOne();
                break;
            case 2:
                pair.RemoveSome();
                break;
            case 3:
                pair.RemoveMembers();
                break;
            case 4:
                pair.Copy();
                break;
            default:
                pair.Terminate();
                break;
        }
        RC_ASSERT(Std(pair.text) == pair.model);
        RC_ASSERT(pair.text.count <= pair.text.capacity);
    }
}

}  // namespace
