// Strings split into fields.
#include <algorithm>
#include <cstdarg>
#include <functional>
#include <limits>
#include <string>

#include "datastruct/String.h"
#include "datastruct/StringCharacters.h"

namespace TamLib {
namespace {

// Finds the next separator of a text, of several the earliest. What was found for a separator stays
// good until the walk has passed it: a field ends outside quotes, so that the quotes ahead are the
// same whether they are counted from the field before or from this one.
template <class T>
class SeparatorSearch {
  public:
    SeparatorSearch(const StringBase<T>& text, const StringBase<T>* separators, std::uint32_t count,
                    std::int32_t quote)
        : text_{text.data, text.count}, separators_(separators), count_(count), quote_(quote) {
        next_.Resize(count);
        for (std::uint32_t i = 0; i < count_; ++i) Look(i, 0);
    }

    // The index of the separator that comes first at or after `from`; -1 if none does. A tie goes
    // to the earlier one. `at` is its place.
    std::int32_t First(std::uint32_t from, std::uint32_t& at) {
        std::int32_t first = -1;
        std::int64_t earliest = kNone;
        for (std::uint32_t i = 0; i < count_; ++i) {
            if (next_.data[i] < from) Look(i, from);
            if (next_.data[i] < earliest) {
                earliest = next_.data[i];
                first = static_cast<std::int32_t>(i);
            }
        }
        at = static_cast<std::uint32_t>(earliest);
        return first;
    }

  private:
    static constexpr std::int64_t kNone = std::numeric_limits<std::int64_t>::max();

    void Look(std::uint32_t i, std::uint32_t from) {
        const std::size_t found =
            detail::FindRun(text_, {separators_[i].data, separators_[i].count}, from, quote_,
                            /*caseSensitive=*/true);
        next_.data[i] = found == detail::kNotFound ? kNone : static_cast<std::int64_t>(found);
    }

    detail::Run<T> text_;
    const StringBase<T>* separators_;
    std::uint32_t count_;
    std::int32_t quote_;
    Array<std::int64_t> next_;
};

template <class T>
bool LiesIn(const StringBase<T>& text, const Array<StringBase<T>>& strings) {
    const std::less<const StringBase<T>*> before;
    return !before(&text, strings.data) && before(&text, strings.data + strings.capacity);
}

// What separates when nothing else is given: a blank and a tabulator.
template <class T>
const Array<StringBase<T>>& Blanks() {
    static const Array<StringBase<T>> blanks = [] {
        Array<StringBase<T>> list;
        list.Append(StringBase<T>(T(' ')));
        list.Append(StringBase<T>(T('\t')));
        return list;
    }();
    return blanks;
}

// A field behind the others: an append of `empty`, for which a spare slot needs no assignment.
template <class T>
StringBase<T>& NewField(Array<StringBase<T>>& result, const StringBase<T>& empty) {
    if (result.count == result.capacity) {
        const std::int32_t index = result.Append(empty);
        return result.data[index];
    }
    result.sorted = false;
    StringBase<T>& field = result.data[result.count++];
    field.increment = empty.increment;
    field.sorted = empty.sorted;
    field.unique = empty.unique;
    field.compare = empty.compare;
    return field;
}

}  // namespace

template <class T>
void StringBase<T>::Tokenize(Array<StringBase>& result, const Array<StringBase>* separators,
                             bool keepEmpty, std::int32_t quote) const {
    if (LiesIn(*this, result)) {
        StringBase(*this).Tokenize(result, separators, keepEmpty, quote);
        return;
    }
    if (separators == &result) {
        const Array<StringBase> own(result);
        Tokenize(result, &own, keepEmpty, quote);
        return;
    }
    result.Clear();
    const Array<StringBase>& list = separators != nullptr ? *separators : Blanks<T>();
    SeparatorSearch<T> search(*this, list.data, list.count, quote);
    const StringBase empty = EmptyPiece();
    std::uint32_t rest = 0;
    while (rest < count) {
        std::uint32_t end = 0;
        const std::int32_t separator = search.First(rest, end);
        if (separator < 0) break;
        if (end != rest || keepEmpty) AppendField(result, empty, rest, end, quote);
        rest = end + list.data[separator].count;
    }
    // Intended: a field of quote characters alone is not empty before they are removed.
    if (rest < count || keepEmpty) AppendField(result, empty, rest, count, quote);
}

// Appends the characters from `from` up to `to`, quote characters removed. `empty`
// has the settings.
template <class T>
void StringBase<T>::AppendField(Array<StringBase>& result, const StringBase& empty,
                                std::uint32_t from, std::uint32_t to, std::int32_t quote) const {
    StringBase& field = NewField(result, empty);
    field.Take(data + from, to - from);
    const T mark = static_cast<T>(quote);
    if (quote < 0 || detail::CharNumber(mark) != static_cast<std::uint32_t>(quote)) return;
    const T* const found = std::char_traits<T>::find(field.data, field.count, mark);
    if (found == nullptr) return;
    T* const kept = std::remove(field.data + (found - field.data), field.end(), mark);
    field.count = static_cast<std::uint32_t>(kept - field.begin());
}

template <class T>
void StringBase<T>::Split(Array<StringBase>& result, const T* separator, bool keepEmpty,
                          std::int32_t quote) const {
    Array<StringBase> separators(1);
    separators.Append(separator != nullptr ? StringBase(separator) : StringBase(T(' ')));
    Tokenize(result, &separators, keepEmpty, quote);
}

template <class T>
void StringBase<T>::SplitFixed(Array<StringBase>& result, std::int32_t widths, ...) const {
    const StringBase text(*this);  // `result` may hold this string
    result.Clear();
    result.increment = 10;
    if (text.count == 0) return;
    va_list arguments;
    va_start(arguments, widths);
    std::int64_t position = 0;
    for (std::int32_t i = 0; i < widths; ++i) {
        const std::int64_t behind = position + va_arg(arguments, std::int32_t);
        result.Append(text.Piece(position, behind - 1));
        position = behind;
    }
    va_end(arguments);
}

// NOLINTBEGIN(bugprone-macro-parentheses): the argument is a type
#define INSTANTIATE(T)                                                                             \
    template void StringBase<T>::Tokenize(Array<StringBase<T>>&, const Array<StringBase<T>>*,      \
                                          bool, std::int32_t) const;                               \
    template void StringBase<T>::AppendField(Array<StringBase<T>>&, const StringBase<T>&,          \
                                             std::uint32_t, std::uint32_t, std::int32_t) const;    \
    template void StringBase<T>::Split(Array<StringBase<T>>&, const T*, bool, std::int32_t) const; \
    template void StringBase<T>::SplitFixed(Array<StringBase<T>>&, std::int32_t, ...) const
// NOLINTEND(bugprone-macro-parentheses)
INSTANTIATE(char);
INSTANTIATE(wchar_t);
#undef INSTANTIATE

}  // namespace TamLib
