// A folder of a test's own, and texts on its way to and from the library.
#pragma once

#include <atomic>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "datastruct/String.h"

namespace test {

using Text = TamLib::StringBase<wchar_t>;
namespace fs = std::filesystem;

inline std::wstring Std(const Text& text) {
    return std::wstring(text.data, text.data + text.count);
}

inline std::vector<std::wstring> Std(const TamLib::Array<Text>& texts) {
    std::vector<std::wstring> all;
    for (const Text& text : texts) all.push_back(Std(text));
    return all;
}

// The standard library converts wide paths by the locale natively, and 32-bit ones as they are.
inline fs::path FromWide(const std::wstring& text) {
#ifdef _WIN32
    return fs::path(text);
#else
    return fs::path(std::u32string(text.begin(), text.end()));
#endif
}

inline std::wstring ToWide(const fs::path& path) {
#ifdef _WIN32
    return path.wstring();
#else
    const std::u32string text = path.u32string();
    return std::wstring(text.begin(), text.end());
#endif
}

// A path as the standard library takes it; "\" separates in every build.
inline fs::path Path(std::wstring text) {
    for (wchar_t& c : text) {
        if (c == L'\\') c = L'/';
    }
    return FromWide(text);
}

inline std::string Bytes(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

inline void WriteBytes(const fs::path& file, const std::string& bytes) {
    std::ofstream(file, std::ios::binary) << bytes;
}

// A fresh empty folder, removed with everything in it at the end.
class Folder {
  public:
    Folder() {
        static std::mt19937_64 names(std::random_device{}());
        static std::atomic<unsigned> count{0};
        path_ = fs::canonical(fs::temp_directory_path()) /
                ("general " + std::to_string(names()) + "-" + std::to_string(count++));
        fs::create_directories(path_);
    }
    ~Folder() {
        std::error_code ignored;
        fs::remove_all(path_, ignored);
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    const fs::path& Disk() const { return path_; }
    fs::path operator/(const fs::path& name) const { return path_ / name; }
    std::wstring Wide() const { return ToWide(path_); }
    // The path of a name in it, with "\" between.
    std::wstring Wide(const std::wstring& name) const { return Wide() + L"\\" + name; }

  private:
    fs::path path_;
};

}  // namespace test
