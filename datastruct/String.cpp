#include "datastruct/String.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cwchar>
#include <cwctype>

#include <tchar.h>

#include "datastruct/StringCharacters.h"

namespace TamLib {
namespace {

template <class T>
std::uint32_t LengthOf(const T* text, std::int32_t maximum) {
    if (text == nullptr) return 0;
    const std::uint32_t most = maximum < 1 ? UINT32_MAX : static_cast<std::uint32_t>(maximum);
    std::uint32_t length = 0;
    while (length < most && text[length] != 0) ++length;
    return length;
}

template <class To, class From>
To ToCharacter(From c) {
    const std::uint32_t number = detail::CharNumber(c);
    return sizeof(To) == 1 && number > 0xFFu ? static_cast<To>('?') : static_cast<To>(number);
}

template <class To, class From>
StringBase<To> Converted(const StringBase<From>& source) {
    StringBase<To> result;
    if (source.count == 0) return result;
    result.Resize(source.count);
    result.count = source.count;
    for (std::uint32_t i = 0; i < source.count; ++i) {
        result.data[i] = ToCharacter<To>(source.data[i]);
    }
    return result;
}

}  // namespace

// ---- Construction ----

template <class T>
StringBase<T>::StringBase() {
    this->bitwise = true;
    this->compare = &detail::CompareCharacters<T>;
}

template <class T>
StringBase<T>::StringBase(Room room) : StringBase() {
    if (room.slots > increment) increment = room.slots;
    if (room.slots != 0) this->Resize(room.slots);
}

template <class T>
StringBase<T>::StringBase(const T* text, std::int32_t maximum)
    : StringBase(Room{text == nullptr ? 0 : LengthOf(text, maximum) + 1}) {
    if (text == nullptr) return;
    count = capacity - 1;
    MoveElements(data, text, count);
}

template <class T>
StringBase<T>::StringBase(const MfcString& text) : StringBase(text.GetString()) {}

template <class T>
StringBase<T>::StringBase(T character) : StringBase(Room{2}) {
    data[0] = character;
    count = 1;
}

template <class T>
T* StringBase<T>::Data() {
    static T empty[1] = {0};
    if (count == 0) {
        empty[0] = 0;
        return empty;
    }
    if (count == capacity || data == nullptr) this->Resize(count + 1);
    data[count] = 0;
    return data;
}

// Becomes the characters, in a block of exactly their number. Settings stay.
template <class T>
void StringBase<T>::Take(const T* characters, std::uint32_t n) {
    this->Clear();
    if (n == 0) return;
    constexpr std::int32_t kAllocateLine = 804;  // as of Array::Allocate
    data = this->_Allocate(n, 0, kAllocateLine);
    capacity = n;
    MoveElements(data, characters, n);
    count = n;
}

// ---- Conversion ----

template <class T>
StringBase<char> StringBase<T>::ToNarrow() const {
    return Converted<char>(*this);
}

template <class T>
StringBase<wchar_t> StringBase<T>::ToWide() const {
    return Converted<wchar_t>(*this);
}

template <class T>
double StringBase<T>::ToDouble() const {
    const StringBase<wchar_t> wide = ToWide();
    return _wtof(wide.Data());
}

template <class T>
std::int32_t StringBase<T>::ToLong() const {
    const StringBase<wchar_t> wide = ToWide();
    const long long number = std::wcstoll(wide.Data(), nullptr, 10);
    return static_cast<std::int32_t>(
        std::clamp<long long>(number, std::int64_t{INT32_MIN}, std::int64_t{INT32_MAX}));
}

template <class T>
std::uint32_t StringBase<T>::ToUnsignedLong() const {
    const StringBase<wchar_t> wide = ToWide();
    const wchar_t* text = wide.Data();
    while (std::iswspace(static_cast<wint_t>(*text)) != 0) ++text;
    const bool negative = *text == L'-';
    errno = 0;
    const unsigned long long number = std::wcstoull(text, nullptr, 10);
    const unsigned long long magnitude = negative ? 0 - number : number;
    if (errno == ERANGE || magnitude > UINT32_MAX) return UINT32_MAX;
    const auto low = static_cast<std::uint32_t>(magnitude);
    return negative ? 0 - low : low;
}

template <class T>
typename StringBase<T>::MfcString StringBase<T>::ToCString() const {
    return MfcString(this->Data());
}

template <class T>
StringBase<T> StringBase<T>::ToUpper() const {
    StringBase result(*this);
    for (T& character : result) character = UpperChar(character);
    return result;
}

template <class T>
StringBase<T> StringBase<T>::ToLower() const {
    StringBase result(*this);
    for (T& character : result) character = LowerChar(character);
    return result;
}

// ---- Comparison ----

template <class T>
std::int32_t StringBase<T>::Compare(const StringBase& other) const {
    const std::int32_t order = detail::CompareRuns(data, other.data, std::min(count, other.count));
    return order != 0 ? order : (count > other.count) - (count < other.count);
}

template <class T>
std::int32_t StringBase<T>::CompareNoCase(const StringBase& other) const {
    const std::int32_t order =
        detail::CompareRunsNoCase(data, other.data, std::min(count, other.count));
    return order != 0 ? order : (count > other.count) - (count < other.count);
}

template <class T>
bool StringBase<T>::StartsWith(const StringBase& prefix, bool caseSensitive) const {
    if (prefix.count == 0) return true;
    if (count == 0) return false;
    const std::uint32_t shorter = std::min(count, prefix.count);
    const std::int32_t order = caseSensitive
                                   ? detail::CompareRuns(data, prefix.data, shorter)
                                   : detail::CompareRunsNoCase(data, prefix.data, shorter);
    return order == 0;
}

template <class T>
bool StringBase<T>::Equals(const StringBase& other, bool ignoreCase, const T* ignoredChars) const {
    if (count != other.count) return false;
    std::uint32_t i = 0;
    std::uint32_t j = 0;
    for (;; ++i, ++j) {
        while (i < count && detail::StandsIn(data[i], ignoredChars)) ++i;
        while (j < count && detail::StandsIn(other.data[j], ignoredChars)) ++j;
        if (i == count || j == count) return i == j;
        if (!detail::SameCharacter(data[i], other.data[j], !ignoreCase)) return false;
    }
}

template <class T>
bool StringBase<T>::AllNotLess(const StringBase& other) const {
    const std::uint32_t shorter = std::min(count, other.count);
    for (std::uint32_t i = 0; i < shorter; ++i) {
        if (detail::CompareCharacters(data + i, other.data + i) < 0) return false;
    }
    return true;
}

template <class T>
bool StringBase<T>::AllNotGreater(const StringBase& other) const {
    const std::uint32_t shorter = std::min(count, other.count);
    for (std::uint32_t i = 0; i < shorter; ++i) {
        if (detail::CompareCharacters(data + i, other.data + i) > 0) return false;
    }
    return true;
}

// ---- Pieces ----

// An empty string with the settings that pieces of this one have.
template <class T>
StringBase<T> StringBase<T>::EmptyPiece() const {
    StringBase piece;
    piece.increment = 10;
    piece.sorted = sorted;
    piece.unique = unique;
    piece.compare = this->compare;
    return piece;
}

template <class T>
StringBase<T> StringBase<T>::Sub(std::int32_t first, std::int32_t last) const {
    return Piece(first, last);
}

// Sub with indexes of any size.
template <class T>
StringBase<T> StringBase<T>::Piece(std::int64_t first, std::int64_t last) const {
    const std::int64_t size = count;
    std::int64_t from = first < 0 ? first + size : first;
    std::int64_t to = last < 0 ? last + size : last;
    if (to < from) to += size;
    StringBase piece = EmptyPiece();
    const std::int64_t length = to < from ? 0 : to - from + 1;
    piece.Resize(static_cast<std::uint32_t>(std::clamp<std::int64_t>(length, 10, UINT32_MAX)));
    if (size == 0 || length == 0) return piece;
    from = (from % size + size) % size;
    // Whole stretches up to the end of the text, as often as it takes.
    for (std::int64_t done = 0; done < length;) {
        const std::int64_t stretch = std::min(length - done, size - from);
        MoveElements(piece.data + done, data + from, static_cast<std::size_t>(stretch));
        done += stretch;
        from = 0;
    }
    piece.count = static_cast<std::uint32_t>(length);
    return piece;
}

template <class T>
StringBase<T> StringBase<T>::Mid(std::int32_t start, std::int32_t span) const {
    const std::int64_t from = start < 0 ? std::int64_t{start} + count : start;
    return Piece(from, from + span);
}

template <class T>
StringBase<T> StringBase<T>::Left(std::uint32_t n) const {
    if (n == 0) return StringBase();
    return Sub(0, static_cast<std::int32_t>(std::min(n, count)) - 1);
}

template <class T>
StringBase<T> StringBase<T>::Right(std::uint32_t n) const {
    const auto size = static_cast<std::int32_t>(count);
    return Sub(static_cast<std::int32_t>(count - std::min(n, count)), size - 1);
}

// ---- Change ----

template <class T>
void StringBase<T>::Append(const StringBase& other, std::int32_t position) {
    if (other.count == 0) return;
    if (&other == this) {
        Append(StringBase(other), position);
        return;
    }
    if (sorted || unique) {
        for (const T character : other) this->Append(character);
        return;
    }
    const std::int64_t wanted = position < 0 ? std::int64_t{position} + count + 1 : position;
    const auto at = static_cast<std::uint32_t>(std::clamp<std::int64_t>(wanted, 0, count));
    const std::uint32_t length = count + other.count;
    if (length > capacity) {
        this->Resize(length);
        increment = length;
    }
    MoveElements(data + at + other.count, data + at, count - at);
    MoveElements(data + at, other.data, other.count);
    count = length;
}

template <class T>
void StringBase<T>::RemoveChars(const T* set) {
    std::uint32_t kept = 0;
    for (std::uint32_t i = 0; i < count; ++i) {
        if (!detail::StandsIn(data[i], set)) data[kept++] = data[i];
    }
    count = kept;
}

template <class T>
void StringBase<T>::Join(const Array<StringBase>& strings, const StringBase& separator) {
    StringBase joined;
    std::uint64_t length = 0;
    for (const StringBase& member : strings)
        length += std::uint64_t{member.count} + separator.count;
    if (length > separator.count) {
        joined.Resize(static_cast<std::uint32_t>(
            std::min<std::uint64_t>(length - separator.count, UINT32_MAX)));
    }
    for (std::uint32_t i = 0; i < strings.count; ++i) {
        if (i > 0) joined.Append(separator);
        joined.Append(strings.data[i]);
    }
    this->Clear();
    if (sorted || unique) {
        Append(joined);
    } else if (joined.count != 0) {
        this->SwapBlocks(joined);
        increment = count;
    }
}

template class StringBase<char>;
template class StringBase<wchar_t>;

}  // namespace TamLib
