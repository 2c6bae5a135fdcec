#include "host/console/Files.h"

#include <cerrno>
#include <fstream>
#include <iterator>
#include <system_error>

#include "host/console/Options.h"
#include "host/editor/Script.h"

namespace host::console {

namespace {

bool isUtf16(const std::string& bytes) {
    return bytes.compare(0, 2, "\xFF\xFE") == 0 || bytes.compare(0, 2, "\xFE\xFF") == 0;
}

}  // namespace

std::wstring readScript(const std::filesystem::path& path) {
    const std::string name = "the script '" + utf8(path) + "'";
    std::error_code error;
    const std::filesystem::file_status kind = std::filesystem::status(path, error);
    if (kind.type() == std::filesystem::file_type::not_found)
        throw UnreadableFile(name + " does not exist");
    if (std::filesystem::is_directory(kind))
        throw UnreadableFile(name + " can't be read: it is a folder");
    // A device may go on for ever.
    if (std::filesystem::is_character_file(kind) || std::filesystem::is_block_file(kind))
        throw UnreadableFile(name + " can't be read: it is a device");
    errno = 0;
    std::ifstream stream(path, std::ios::binary);
    if (!stream)
        throw UnreadableFile(name + " can't be read: " + std::generic_category().message(errno));
    const std::string bytes{std::istreambuf_iterator<char>(stream), {}};
    if (stream.bad()) throw UnreadableFile(name + " can't be read to its end");
    if (const std::size_t at = bytes.find('\0'); at != std::string::npos && !isUtf16(bytes))
        throw UnreadableFile(name + " is no text: byte " + std::to_string(at) + " is zero");
    return editor::decodeScript(bytes);
}

bool isSameFile(const std::filesystem::path& a, const std::filesystem::path& b) {
    if (a.empty() || b.empty()) return false;
    std::error_code error;
    if (std::filesystem::equivalent(a, b, error)) return true;
    const auto full = [&error](const std::filesystem::path& path) {
        return std::filesystem::weakly_canonical(std::filesystem::absolute(path, error), error);
    };
    return full(a) == full(b);
}

std::string missingFolder(const std::filesystem::path& file) {
    std::error_code ignored;
    const std::filesystem::path folder = file.parent_path();
    if (folder.empty() || std::filesystem::exists(folder, ignored)) return {};
    return "there is no folder " + utf8(folder) + "; make it first";
}

}  // namespace host::console
