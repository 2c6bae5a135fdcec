// Drawings and folders for the tests of host/dxf.
#ifndef TESTS_HOST_DXF_DRAWINGS_H
#define TESTS_HOST_DXF_DRAWINGS_H

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/dxf/Document.h"
#include "host/dxf/Edit.h"

namespace host::dxf::test {

inline std::filesystem::path dataFolder() {
    return std::filesystem::u8path(ORLINTH_TEST_DATA);
}

inline std::string readBytes(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

inline void writeBytes(const std::filesystem::path& path, std::string_view bytes) {
    std::ofstream file(path, std::ios::binary);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

// The drawings of a folder and those below it, in the order of their names.
inline std::vector<std::filesystem::path> drawingsOf(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> found;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        std::string ending = entry.path().extension().u8string();
        for (char& c : ending) c = static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
        if (entry.is_regular_file() && ending == ".dxf") found.push_back(entry.path());
    }
    std::sort(found.begin(), found.end());
    return found;
}

// A new empty folder, removed at the end with what is in it.
class TemporaryFolder {
  public:
    TemporaryFolder() {
        static std::atomic<int> counter{0};
        std::random_device chance;
        path_ = std::filesystem::temp_directory_path() /
                ("orlinth-dxf-" + std::to_string(chance()) + "-" + std::to_string(++counter));
        std::filesystem::create_directories(path_);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }

    const std::filesystem::path& path() const { return path_; }
    std::filesystem::path operator/(const std::string& name) const {
        return path_ / std::filesystem::u8path(name);
    }

    // How many entries stand in it.
    std::ptrdiff_t count() const {
        return std::distance(std::filesystem::directory_iterator(path_),
                             std::filesystem::directory_iterator());
    }

  private:
    std::filesystem::path path_;
};

inline std::shared_ptr<const Document> parse(std::string bytes) {
    return Document::fromBytes(std::move(bytes), "test.dxf");
}

// A drawing of entities alone: lines of codes and values between a SECTION and an ENDSEC.
inline std::string entitiesOnly(const std::string& groups) {
    return "0\nSECTION\n2\nENTITIES\n" + groups + "0\nENDSEC\n0\nEOF\n";
}

// One with a header of `release` ($ACADVER) and `codePage`.
inline std::string withHeader(const std::string& release, const std::string& codePage,
                              const std::string& groups) {
    return "0\nSECTION\n2\nHEADER\n9\n$ACADVER\n1\n" + release + "\n9\n$DWGCODEPAGE\n3\n" +
           codePage + "\n0\nENDSEC\n" + entitiesOnly(groups);
}

// `text` with the first `from` replaced by `to`.
inline std::string replaced(std::string text, const std::string& from, const std::string& to) {
    const std::size_t at = text.find(from);
    return at == std::string::npos ? text : text.replace(at, from.size(), to);
}

inline GroupEdit replaceReal(std::size_t index, int code, double value) {
    return {GroupEdit::Kind::replace, index, code, value};
}

inline GroupEdit insertReal(std::size_t index, int code, double value) {
    return {GroupEdit::Kind::insertAfter, index, code, value};
}

}  // namespace host::dxf::test

#endif
