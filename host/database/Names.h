// Texts of the database: names that are found ignoring case, handles, and UTF-8.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace host::database {

// `text` with the case of letters taken out, for comparing names: Latin with its first extension,
// Greek and Cyrillic. The same in every build and locale.
std::wstring folded(std::wstring_view text);

// Whether two names are the same but for the case of their letters.
bool sameName(std::wstring_view a, std::wstring_view b);

// Upper-case hexadecimal digits without leading zeros; empty for 0, the handle of an object without
// one.
std::wstring handleText(std::uint64_t handle);

std::string toUtf8(std::wstring_view text);
// Bytes that are no UTF-8 become U+FFFD.
std::wstring fromUtf8(std::string_view bytes);
std::wstring wideText(const std::filesystem::path& path);

}  // namespace host::database
