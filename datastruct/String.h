// The library's string, over char and wchar_t: an Array of characters with text operations on top.
// It is a counted run of characters and carries no terminator of its own; all array operations work
// on it.
//
// Settings. `bitwise` is always set; `compare` orders characters by number (narrow ones with a
// sign). `increment` is 5 for an empty string, 10 for pieces. A text of n characters asks for
// n + 1 slots.
//
// Data() is the way to a terminated text. It writes the terminator behind the last character and
// may reallocate for it, also when the string is const to the caller: strings are not shared by
// threads. The terminator stays until the next change. Of an empty string it gives a shared static
// text that is not to be written to.
//
// Case is folded by tam/TextCase.h in every operation that ignores it. Indexes are signed;
// negative ones count from the end where the operation says so. Texts given as `const T*` end
// with a terminator.
//
// Errors: TamExpNoMem and TamExpRange as in Array; nothing else is raised. What cannot be opened or
// read is a false result, what cannot be parsed is 0.
#pragma once

#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <iosfwd>
#include <type_traits>

#include <afx.h>

#include "datastruct/Array.h"

namespace TamLib {

template <class T>
class StringBase;

// Arrays of strings start with the comparison that ignores case.
template <class T>
struct DefaultComparison<StringBase<T>> {
    static std::int32_t Compare(const StringBase<T>* first, const StringBase<T>* second) {
        return first->CompareNoCase(*second);
    }
};

template <class T>
class StringBase : public Array<T> {
  public:
    // The MFC string of the same characters.
    using MfcString = std::conditional_t<std::is_same_v<T, char>, CStringA, CStringW>;

    using Array<T>::count;
    using Array<T>::capacity;
    using Array<T>::data;
    using Array<T>::increment;
    using Array<T>::sorted;
    using Array<T>::unique;

    // The element operations of the array stand beside the text operations of the same name.
    using Array<T>::Append;
    using Array<T>::Data;
    using Array<T>::Find;

    StringBase();
    // At most `maximum` characters of the text, all with a `maximum` below 1. Null gives an empty
    // string without a block.
    StringBase(const T* text, std::int32_t maximum = 0);  // NOLINT(google-explicit-constructor)
    StringBase(const MfcString& text);                    // NOLINT(google-explicit-constructor)
    // One character, with 2 slots.
    explicit StringBase(T character);
    // The value as "%f" prints it; `increment` 10.
    explicit StringBase(double value);
    // The value as "%li" prints it; `increment` and capacity 20.
    explicit StringBase(std::int32_t value);

    // The text with a terminator; see above. It is valid until the next change.
    T* Data() override;

    // ---- Conversion ----

    // As many characters as this string has: narrow and wide ones turn into each other by their
    // number, and a wide one above 255 becomes "?".
    StringBase<char> ToNarrow() const;
    StringBase<wchar_t> ToWide() const;
    // The number at the start of the text behind blanks, 0 without one. The decimal point is ".".
    double ToDouble() const;
    // The decimal integer at the start of the text, 0 without one. What does not fit into 32 bits
    // becomes the nearest limit; without a sign "-1" is 4294967295.
    std::int32_t ToLong() const;
    std::uint32_t ToUnsignedLong() const;
    MfcString ToCString() const;
    StringBase ToUpper() const;
    StringBase ToLower() const;

    // ---- Comparison ----

    // -1, 0 or 1 by the first characters that differ, taken as unsigned numbers; a string comes
    // after its own beginnings. A zero character at the same place in both ends the comparison as
    // equal so far.
    std::int32_t Compare(const StringBase& other) const;
    // Compare of the small letters.
    std::int32_t CompareNoCase(const StringBase& other) const;
    // Whether the strings agree over the shorter length. Intended: a string that is
    // itself a beginning of the prefix answers true. An empty prefix: true; otherwise an
    // empty string: false.
    bool StartsWith(const StringBase& prefix, bool caseSensitive = true) const;
    // Whether the strings agree when the characters of `ignoredChars` (null for none) are skipped
    // in both. Intended: false whenever the counts differ, skipped characters included.
    bool Equals(const StringBase& other, bool ignoreCase = false,
                const T* ignoredChars = nullptr) const;
    // Whether no character over the shorter length is less (greater) than the other string's at the
    // same place. No lexicographic order: both may hold, or neither.
    bool AllNotLess(const StringBase& other) const;
    bool AllNotGreater(const StringBase& other) const;
    // Whether the text matches a pattern of `*` (a run), `?` (any character), `#` (a digit), `@`
    // (a letter) and literal characters. Characters of `ignoredChars` (null for none) are
    // skipped in both. With `compareLiterals` literal characters match whatever their case;
    // without it any character stands for a literal one, so that only length and classes count.
    // An empty pattern matches.
    //
    // Intended: `*` demands a character behind the run that its next literal ends (`*b` matches
    // "abc" and not "ab") and matches no empty rest; the character next to `*` is literal even if
    // it is `?`, `#` or `@`; behind a `*` literals are compared and nothing is ignored; a pattern
    // that is used up behind a `*` matches any rest.
    bool WildMatch(const StringBase& pattern, bool compareLiterals = true,
                   const T* ignoredChars = nullptr) const;
    // Whether the text matches a pattern in the host's alphabet; an empty pattern matches.
    bool WcMatch(const StringBase& pattern, bool ignoreCase) const;

    // ---- Search and count ----

    // The index of the first occurrence at or after `start`, -1 if there is none. A negative
    // `start` is 0; an empty needle never occurs. With `quote` (-1 for none) the text is inside
    // quotes from each quote character to the next, beginning outside at `start`, and occurrences
    // lie outside. Intended: a character whose low byte is `quote` is a quote character.
    std::int32_t Find(const StringBase& needle, std::int32_t quote = -1, std::int32_t start = 0,
                      bool caseSensitive = true) const;
    // Occurrences that do not overlap. Intended: after a mismatch the needle starts again at the
    // mismatching character, without going back ("aab" does not occur in "aaab").
    std::int32_t CountOf(const StringBase& needle) const;
    std::int32_t CountChar(T character) const;
    // How many characters the predicate accepts.
    template <class Predicate>
    std::int32_t CountIf(Predicate accepts) const {
        std::int32_t accepted = 0;
        for (const T character : *this) accepted += accepts(character) ? 1 : 0;
        return accepted;
    }

    // ---- Pieces ----

    // The characters from `first` to `last`, both included, of the text as a ring: negative ones
    // count from the end, a `last` below `first` wraps round the end, a longer range repeats the
    // text. Empty when the text is, or when `last` stays below `first`. The capacity is the length
    // of the range and at least 10, also of an empty text; `sorted`, `unique` and `compare` are
    // those of this string.
    StringBase Sub(std::int32_t first, std::int32_t last) const;
    // Sub(start, start + span). Intended: `span` + 1 characters. A negative start counts
    // from the end.
    StringBase Mid(std::int32_t start, std::int32_t span) const;
    // The first `n` characters, all if there are fewer.
    StringBase Left(std::uint32_t n) const;
    // The last `n` characters, all if there are fewer. Intended: with `n` 0 the whole text, by the
    // ring of Sub.
    StringBase Right(std::uint32_t n) const;

    // ---- Change ----

    // Inserts the characters before the index; -1 is the end, -2 before the last character; an
    // index outside the text is its nearer end. Grows to exactly what is needed and sets
    // `increment` to that. Intended: on a string with `sorted` or `unique` they go to the end
    // whatever the position.
    void Append(const StringBase& other, std::int32_t position = -1);
    // Replaces the occurrences of `old`, or the first alone, searching on behind each replacement.
    // How many were replaced. Intended: on a string with `sorted` or `unique` the new text goes to
    // the end.
    std::int32_t Replace(const StringBase& old, const StringBase& replacement,
                         bool caseSensitive = true, bool all = true);
    // Removes every character that stands in `set`.
    void RemoveChars(const T* set);
    // Becomes the members with the separator between them.
    void Join(const Array<StringBase>& strings, const StringBase& separator);
    // Fills the places of a template with a number: a place is the marker followed by `terminator`
    // ("$$": printed with "%8.8f") or by a format and `terminator` ("$%10.3f$"). How many were
    // filled; each gets the same value, cut at 999 characters. Intended: a marker before "%"
    // without a terminator is filled with "%8.8f" and what follows stays; a marker at the very end
    // is none; with "%" as `terminator` every place is filled with "%8.8f" and a format behind it
    // stays as text, since its "%" ends the place. A format other than one conversion of a double
    // is taken for "%8.8f".
    std::int32_t Substitute(const StringBase& marker, T terminator, double value);
    // Becomes the printed text and gives its length. No argument may point into this string. A text
    // that cannot be printed leaves its beginning. When memory is refused the count is as before,
    // but the characters may be the beginning of the new text.
    std::int32_t Format(const T* format, ...);
    std::int32_t FormatV(const T* format, va_list arguments);

    // ---- Files and streams ----

    // Writes the characters to a new file, or to the end of an existing one without `overwrite`, as
    // text and without a terminator. True when all stand in the file.
    bool SaveToFile(const wchar_t* path, bool overwrite) const;
    // Becomes what the file holds. True when anything was read; an empty file gives an empty string
    // and false, a file that cannot be opened leaves the string as it is.
    bool LoadFromFile(const wchar_t* path);
    // Becomes the next line of the stream, without its carriage returns and line feed. True at the
    // end of the line or of the stream; false when the stream was at its end or failed before, or a
    // read fails. So a stream that ends with a line feed gives one empty line at its end.
    bool ReadLine(std::FILE* stream);

    // ---- Fields ----

    // Clears `result` and fills it with the fields of the text between the separators. The
    // separator that comes first ends a field, of two at one place the one that stands first in
    // `separators`; null means " " and "\t". Empty fields are dropped unless `keepEmpty`. With
    // `quote` (-1 for none) separators inside quotes do not count and the quote characters are
    // removed; a field of nothing else counts as not empty.
    void Tokenize(Array<StringBase>& result, const Array<StringBase>* separators,
                  bool keepEmpty = false, std::int32_t quote = -1) const;
    // Tokenize with one separator; null means " ".
    void Split(Array<StringBase>& result, const T* separator, bool keepEmpty = false,
               std::int32_t quote = -1) const;
    // Clears `result` and fills it with fields of fixed widths, which follow as so many 32-bit
    // integers as `widths` says. Fields are pieces by Sub: intended, those beyond the end wrap
    // round, and a width of 0 goes once round the whole text. An empty text gives no fields.
    void SplitFixed(Array<StringBase>& result, std::int32_t widths, ...) const;

    // A copy of the left, and the right appended.
    friend StringBase operator+(const StringBase& left, const StringBase& right) {
        StringBase joined(left);
        joined.Append(right);
        return joined;
    }
    // Insertion and extraction as of the standard string: width, fill, blanks before a word.
    friend std::basic_ostream<T>& operator<<(std::basic_ostream<T>& stream,
                                             const StringBase& text) {
        return text.WriteTo(stream);
    }
    friend std::basic_istream<T>& operator>>(std::basic_istream<T>& stream, StringBase& text) {
        return text.ReadFrom(stream);
    }

  private:
    struct Room {
        std::uint32_t slots;
    };
    explicit StringBase(Room room);
    StringBase EmptyPiece() const;
    StringBase Piece(std::int64_t first, std::int64_t last) const;
    void Take(const T* characters, std::uint32_t n);
    std::int32_t ReplaceAtEnd(const StringBase& old, const StringBase& replacement,
                              bool caseSensitive, bool all);
    void AppendField(Array<StringBase>& result, const StringBase& empty, std::uint32_t from,
                     std::uint32_t to, std::int32_t quote) const;
    std::basic_ostream<T>& WriteTo(std::basic_ostream<T>& stream) const;
    std::basic_istream<T>& ReadFrom(std::basic_istream<T>& stream);
};

extern template class StringBase<char>;
extern template class StringBase<wchar_t>;

}  // namespace TamLib
