// Searching strings, replacing in them, matching them with patterns.
#include <algorithm>

#include "datastruct/String.h"
#include "datastruct/StringCharacters.h"

namespace TamLib {
namespace {

template <class T>
detail::Run<T> RunOf(const StringBase<T>& text) {
    return {text.data, text.count};
}

// What Remove and Append make of a string's room, without moving a character.
struct RoomAfter {
    std::uint32_t count;
    std::uint32_t capacity;
    std::uint32_t increment;

    void Remove(std::uint32_t n) {
        count -= n;
        if (capacity - count > increment) capacity = count + 5;
    }
    void Append(std::uint32_t n) {
        count += n;
        if (n != 0 && count > capacity) capacity = increment = count;
    }
};

// One walk of a pattern over a text. Each `*` looks for the next occurrence of the literal behind
// it; since later choices only leave less of the text, only the last `*` has to look again.
template <class T>
class WildWalk {
  public:
    WildWalk(const detail::Run<T>& text, const detail::Run<T>& pattern, bool compareLiterals,
             const T* ignored)
        : text_(text), pattern_(pattern), compareLiterals_(compareLiterals), ignored_(ignored) {}

    bool Matches() {
        if (pattern_.count == 0) return true;
        for (;;) {
            switch (Step()) {
                case Outcome::goOn:
                    break;
                case Outcome::match:
                    return true;
                case Outcome::mismatch:
                    if (!afterStar_ || !NextOccurrence()) return false;
                    if (p_ == pattern_.count) return true;
                    break;
                case Outcome::exhausted:
                    return false;
            }
        }
    }

  private:
    enum class Outcome { goOn, match, mismatch, exhausted };

    Outcome Step() {
        while (s_ < text_.count && detail::StandsIn(text_.characters[s_], ignored_)) ++s_;
        while (p_ < pattern_.count && detail::StandsIn(pattern_.characters[p_], ignored_)) ++p_;
        const bool textEnded = s_ == text_.count;
        const bool patternEnded = p_ == pattern_.count;
        if (textEnded && patternEnded) return Outcome::match;
        if (textEnded || patternEnded) return Outcome::mismatch;
        if (pattern_.characters[p_] == T('*')) return StepStar();
        if (!Accepts(text_.characters[s_], pattern_.characters[p_])) return Outcome::mismatch;
        ++s_;
        ++p_;
        return Outcome::goOn;
    }

    Outcome StepStar() {
        while (p_ < pattern_.count && pattern_.characters[p_] == T('*')) ++p_;
        if (p_ == pattern_.count) return Outcome::match;
        // Intended: behind a star literals count and nothing is ignored.
        afterStar_ = true;
        compareLiterals_ = true;
        ignored_ = nullptr;
        starNext_ = p_;
        starText_ = s_;
        if (!NextOccurrence()) return Outcome::exhausted;
        return p_ == pattern_.count ? Outcome::match : Outcome::goOn;
    }

    // Sets both behind the next occurrence of the literal at `starNext_`; false if there is none or
    // it ends the text.
    bool NextOccurrence() {
        const T next = LowerChar(pattern_.characters[starNext_]);
        while (starText_ < text_.count && LowerChar(text_.characters[starText_]) != next)
            ++starText_;
        if (starText_ < text_.count) ++starText_;
        s_ = starText_;
        p_ = starNext_ + 1;
        return s_ < text_.count;
    }

    bool Accepts(T character, T wanted) const {
        if (character == wanted || wanted == T('?')) return true;
        if (wanted == T('#')) return detail::IsDigit(character);
        if (wanted == T('@')) return IsAlpha(character);
        return !compareLiterals_ || LowerChar(character) == LowerChar(wanted);
    }

    detail::Run<T> text_;
    detail::Run<T> pattern_;
    bool compareLiterals_;
    const T* ignored_;
    std::size_t s_ = 0;
    std::size_t p_ = 0;
    bool afterStar_ = false;
    std::size_t starNext_ = 0;  // the literal behind the last star
    std::size_t starText_ = 0;  // where it is looked for next
};

}  // namespace

template <class T>
std::int32_t StringBase<T>::Find(const StringBase& needle, std::int32_t quote, std::int32_t start,
                                 bool caseSensitive) const {
    const std::size_t from = start < 0 ? 0 : static_cast<std::size_t>(start);
    const std::size_t found =
        detail::FindRun(RunOf(*this), RunOf(needle), from, quote, caseSensitive);
    return found == detail::kNotFound ? -1 : static_cast<std::int32_t>(found);
}

template <class T>
std::int32_t StringBase<T>::CountOf(const StringBase& needle) const {
    std::int32_t occurrences = 0;
    if (needle.count == 0) return occurrences;
    std::uint32_t matched = 0;
    for (const T character : *this) {
        if (character != needle.data[matched]) matched = 0;
        if (character == needle.data[matched]) ++matched;
        if (matched == needle.count) {
            ++occurrences;
            matched = 0;
        }
    }
    return occurrences;
}

template <class T>
std::int32_t StringBase<T>::CountChar(T character) const {
    return CountIf([character](T other) { return other == character; });
}

template <class T>
std::int32_t StringBase<T>::Replace(const StringBase& old, const StringBase& replacement,
                                    bool caseSensitive, bool all) {
    if (sorted || unique) return ReplaceAtEnd(old, replacement, caseSensitive, all);
    const detail::Run<T> text = RunOf(*this);
    std::size_t found = detail::FindRun(text, RunOf(old), 0, -1, caseSensitive);
    if (found == detail::kNotFound) return 0;

    RoomAfter room{count, capacity, increment};
    std::uint32_t end = 0;  // of what has been copied of the text
    std::int32_t made = 0;
    StringBase rebuilt;
    rebuilt.increment = count;
    const auto copy = [&rebuilt](const T* characters, std::size_t n) {
        const std::size_t length = rebuilt.count + n;
        if (length > rebuilt.capacity) {
            rebuilt.Resize(
                static_cast<std::uint32_t>(std::min<std::size_t>(length + length / 2, UINT32_MAX)));
        }
        MoveElements(rebuilt.data + rebuilt.count, characters, n);
        rebuilt.count = static_cast<std::uint32_t>(length);
    };
    do {
        copy(data + end, found - end);
        copy(replacement.data, replacement.count);
        end = static_cast<std::uint32_t>(found) + old.count;
        room.Remove(old.count);
        room.Append(replacement.count);
        ++made;
        found = all ? detail::FindRun(text, RunOf(old), end, -1, caseSensitive) : detail::kNotFound;
    } while (found != detail::kNotFound);
    copy(data + end, count - end);
    rebuilt.Resize(room.capacity);
    this->SwapBlocks(rebuilt);
    increment = room.increment;
    return made;
}

// Replacing in a string that keeps an order or is free of duplicates: what is new goes to the end.
template <class T>
std::int32_t StringBase<T>::ReplaceAtEnd(const StringBase& old, const StringBase& replacement,
                                         bool caseSensitive, bool all) {
    const StringBase ownOld(old);
    const StringBase ownReplacement(replacement);
    std::int32_t made = 0;
    std::int32_t found = Find(ownOld, -1, 0, caseSensitive);
    while (found >= 0) {
        this->Remove(found, ownOld.count);
        Append(ownReplacement, found);
        ++made;
        if (!all) return made;
        const auto next = static_cast<std::uint32_t>(found) + ownReplacement.count;
        found = Find(ownOld, -1, static_cast<std::int32_t>(next), caseSensitive);
    }
    return made;
}

template <class T>
bool StringBase<T>::WildMatch(const StringBase& pattern, bool compareLiterals,
                              const T* ignoredChars) const {
    return WildWalk<T>(RunOf(*this), RunOf(pattern), compareLiterals, ignoredChars).Matches();
}

#define INSTANTIATE(T)                                                                             \
    template std::int32_t StringBase<T>::Find(const StringBase<T>&, std::int32_t, std::int32_t,    \
                                              bool) const;                                         \
    template std::int32_t StringBase<T>::CountOf(const StringBase<T>&) const;                      \
    template std::int32_t StringBase<T>::CountChar(T) const;                                       \
    template std::int32_t StringBase<T>::Replace(const StringBase<T>&, const StringBase<T>&, bool, \
                                                 bool);                                            \
    template std::int32_t StringBase<T>::ReplaceAtEnd(const StringBase<T>&, const StringBase<T>&,  \
                                                      bool, bool);                                 \
    template bool StringBase<T>::WildMatch(const StringBase<T>&, bool, const T*) const
INSTANTIATE(char);
INSTANTIATE(wchar_t);
#undef INSTANTIATE

}  // namespace TamLib
