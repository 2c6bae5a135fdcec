// Both widths of a text, and strings as the standard ones, for the tests of StringBase.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "datastruct/String.h"

using Wide = TamLib::StringBase<wchar_t>;
using Narrow = TamLib::StringBase<char>;

inline std::wstring Std(const Wide& text) {
    return std::wstring(text.begin(), text.end());
}
inline std::string Std(const Narrow& text) {
    return std::string(text.begin(), text.end());
}

inline Wide FromStd(const std::wstring& text) {
    Wide result;
    for (const wchar_t c : text) result.Append(c);
    return result;
}

template <class T>
std::vector<std::basic_string<T>> Std(const TamLib::Array<TamLib::StringBase<T>>& strings) {
    std::vector<std::basic_string<T>> result;
    for (const auto& text : strings) result.push_back(Std(text));
    return result;
}

using WideFields = std::vector<std::wstring>;
