// Small operations on the texts of the command line. Case is ignored by the host's own table, the
// same in every build.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/database/Names.h"

namespace host::editor {

std::wstring upperCase(std::wstring_view text);
inline bool equalIgnoringCase(std::wstring_view a, std::wstring_view b) {
    return database::sameName(a, b);
}

// Without blanks and tabs at both ends.
std::wstring_view trimmed(std::wstring_view text);

// The parts between separators, empty ones included; an empty text has one empty part.
std::vector<std::wstring> split(std::wstring_view text, wchar_t separator);

// The whole text as a number: an optional sign, digits with at most one ".", an optional exponent.
// Nothing else is one, so that "nan", "inf", "0x1" and "1,5" are not. Beyond the range of a double:
// none.
std::optional<double> parseNumber(std::wstring_view text);

// The whole text as a whole number of 32 bits.
std::optional<int> parseInteger(std::wstring_view text);

// Hexadecimal digits, at most 16; empty or anything else: none.
std::optional<unsigned long long> parseHandle(std::wstring_view text);

// The shortest decimal form that reads back as the same value; whole numbers keep ".0".
std::wstring numberText(double value);

using database::fromUtf8;
using database::toUtf8;

}  // namespace host::editor
