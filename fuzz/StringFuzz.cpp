// Strings from any bytes: splitting, searching, matching, substituting and formatting. The first
// byte chooses the operation and its settings; the rest is text, needle or pattern, parted by zero
// bytes.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "datastruct/String.h"

namespace {

using TamLib::Array;
using TamLib::StringBase;

void Check(bool holds) {
    if (!holds) std::abort();
}

template <class T>
std::basic_string<T> Text(const std::string& bytes) {
    std::basic_string<T> text;
    for (const char c : bytes) {
        // The upper half stands for characters whose low byte is an ASCII one.
        const auto byte = static_cast<unsigned char>(c);
        const bool beyond = sizeof(T) > 1 && byte >= 0xC0;
        text += beyond ? static_cast<T>(0x100 + byte - 0xC0 + 0x20) : static_cast<T>(c);
    }
    return text;
}

template <class T>
StringBase<T> Make(const std::string& bytes) {
    StringBase<T> made;
    for (const T c : Text<T>(bytes)) made.Append(c);
    return made;
}

template <class T>
void CheckRoom(const StringBase<T>& text) {
    Check(text.count <= text.capacity);
    Check(text.Data()[text.count] == 0);
}

template <class T>
void SplitText(const std::vector<std::string>& parts, bool keepEmpty, bool quoted) {
    const StringBase<T> text = Make<T>(parts[0]);
    Array<StringBase<T>> separators;
    for (std::size_t i = 1; i < parts.size(); ++i) separators.Append(Make<T>(parts[i]));
    Array<StringBase<T>> fields;
    text.Tokenize(fields, separators.count == 0 ? nullptr : &separators, keepEmpty,
                  quoted ? '"' : -1);
    std::uint64_t length = 0;
    for (const StringBase<T>& field : fields) {
        CheckRoom(field);
        length += field.count;
    }
    Check(length <= text.count);
    if (quoted || separators.count != 1 || !keepEmpty) return;
    StringBase<T> joined;
    joined.Join(fields, separators.data[0]);
    Check(joined.Compare(text) == 0);
}

template <class T>
void SearchText(const std::vector<std::string>& parts, bool caseSensitive, bool quoted) {
    const StringBase<T> text = Make<T>(parts[0]);
    const StringBase<T> needle = Make<T>(parts.size() > 1 ? parts[1] : "");
    const std::int32_t found = text.Find(needle, quoted ? '"' : -1, 0, caseSensitive);
    Check(found >= -1 && found < static_cast<std::int32_t>(text.count));
    if (caseSensitive && !quoted) {
        const auto at = Text<T>(parts[0]).find(Text<T>(parts.size() > 1 ? parts[1] : ""));
        const bool none = needle.count == 0 || at == std::basic_string<T>::npos;
        Check(found == (none ? -1 : static_cast<std::int32_t>(at)));
    }
    StringBase<T> replaced(text);
    const StringBase<T> fresh = Make<T>(parts.size() > 2 ? parts[2] : "");
    const std::int32_t made = replaced.Replace(needle, fresh, caseSensitive);
    Check((made == 0) == (text.Find(needle, -1, 0, caseSensitive) < 0));
    const std::int64_t grown = std::int64_t{made} * (std::int64_t{fresh.count} - needle.count);
    Check(replaced.count == text.count + grown);
    CheckRoom(replaced);
    Check(text.CountOf(needle) >= 0);
}

template <class T>
void MatchText(const std::vector<std::string>& parts, bool literals, bool ignoring) {
    const StringBase<T> text = Make<T>(parts[0]);
    const StringBase<T> pattern = Make<T>(parts.size() > 1 ? parts[1] : "");
    const StringBase<T> ignored = Make<T>(parts.size() > 2 ? parts[2] : "");
    const bool matches = text.WildMatch(pattern, literals, ignoring ? ignored.Data() : nullptr);
    // What matches by letters also matches by length and classes, as long as no star compares
    // anyway.
    if (matches && literals)
        Check(text.WildMatch(pattern, false, ignoring ? ignored.Data() : nullptr));
    Check(text.Equals(text, ignoring, ignored.Data()));
    Check(text.StartsWith(text));
}

template <class T>
void SubstituteText(const std::vector<std::string>& parts, std::uint8_t setting) {
    StringBase<T> text = Make<T>(parts[0]);
    const StringBase<T> marker = Make<T>(parts.size() > 1 ? parts[1] : "$");
    const T terminator = setting % 2 == 0 ? T('$') : T('%');
    const double values[] = {0.0, -1.5, 25496000.125, 1e300};
    const std::int32_t most = static_cast<std::int32_t>(text.count);
    const std::int32_t filled = text.Substitute(marker, terminator, values[setting / 2 % 4]);
    Check(filled >= 0 && filled <= most);
    CheckRoom(text);
}

template <class T>
void FormatText(const std::vector<std::string>& parts) {
    const StringBase<T> first = Make<T>(parts[0]);
    const StringBase<T> second = Make<T>(parts.size() > 1 ? parts[1] : "");
    StringBase<T> text;
    const T format[] = {'<', '%', 's', '|', '%', '1', '2', 's', '>', 0};
    const std::int32_t length = text.Format(format, first.Data(), second.Data());
    Check(length == static_cast<std::int32_t>(text.count));
    Check(text.count >= 3 + 12);
    CheckRoom(text);
    Check(StringBase<T>(first.ToDouble()).count > 0);
    Check(first.ToLong() <= INT32_MAX && first.ToUnsignedLong() <= UINT32_MAX);
}

template <class T>
void Run(std::uint8_t choice, const std::vector<std::string>& parts) {
    const bool first = (choice & 0x20) != 0;
    const bool second = (choice & 0x40) != 0;
    switch (choice % 5) {
        case 0:
            SplitText<T>(parts, first, second);
            break;
        case 1:
            SearchText<T>(parts, first, second);
            break;
        case 2:
            MatchText<T>(parts, first, second);
            break;
        case 3:
            SubstituteText<T>(parts, choice >> 5);
            break;
        default:
            FormatText<T>(parts);
            break;
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    if (size == 0) return 0;
    std::vector<std::string> parts(1);
    for (std::size_t i = 1; i < size; ++i) {
        if (bytes[i] == 0 && parts.size() < 5) {
            parts.emplace_back();
        } else if (bytes[i] != 0) {
            parts.back() += static_cast<char>(bytes[i]);
        }
    }
    if ((bytes[0] & 0x80) != 0) {
        Run<char>(bytes[0], parts);
    } else {
        Run<wchar_t>(bytes[0], parts);
    }
    return 0;
}
