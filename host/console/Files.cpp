#include "host/console/Files.h"

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <iterator>
#include <system_error>
#include <utility>

#include "host/console/Options.h"
#include "host/dxf/Files.h"
#include "host/dxf/Utf8.h"
#include "host/editor/Script.h"
#include "host/editor/Words.h"

namespace host::console {

namespace {

bool isUtf16(const std::string& bytes) {
    return bytes.compare(0, 2, "\xFF\xFE") == 0 || bytes.compare(0, 2, "\xFE\xFF") == 0;
}

bool isHex(char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F');
}

// A backslash, x and two digits, as what is no UTF-8 is told.
bool looksEscaped(std::string_view text) {
    return text.size() >= 4 && text[0] == '\\' && text[1] == 'x' && isHex(text[2]) &&
           isHex(text[3]);
}

std::string escapedByte(char c) {
    constexpr char digits[] = "0123456789ABCDEF";
    const auto byte = static_cast<unsigned char>(c);
    return std::string("\\x") + digits[byte >> 4U] + digits[byte & 15U];
}

bool isMakeable(const std::filesystem::path& folder,
                const std::vector<std::filesystem::path>& makeable) {
    return std::find(makeable.begin(), makeable.end(), folder) != makeable.end();
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
    const auto full = [&error](const std::filesystem::path& path) {
        return std::filesystem::weakly_canonical(
            std::filesystem::absolute(dxf::linkedFile(path), error), error);
    };
    return std::filesystem::equivalent(a, b, error) || full(a) == full(b);
}

bool hasEnding(const std::filesystem::path& file, std::string_view ending) {
    return editor::equalIgnoringCase(editor::fromUtf8(utf8(file.extension())),
                                     editor::fromUtf8(std::string(ending)));
}

std::filesystem::path drawingFile(const std::filesystem::path& file) {
    std::error_code ignored;
    const std::filesystem::file_status status = std::filesystem::status(file, ignored);
    const bool isDevice = std::filesystem::is_other(status);
    if (file.has_extension() || isDevice) return file;
    std::filesystem::path named = file;
    named += ".dxf";
    return named;
}

std::string otherFormat(const std::filesystem::path& file) {
    const bool other =
        hasEnding(file, ".dwg") || hasEnding(file, ".dwt") || hasEnding(file, ".dws");
    return other ? "only DXF can be written; give it a name that ends with .dxf" : "";
}

const char* claimant(const Options& options, const std::filesystem::path& file) {
    const std::pair<const char*, const std::filesystem::path*> claims[] = {
        {"--report", &options.report},   {"--picture", &options.picture},
        {"--summary", &options.summary}, {"--log", &options.log},
        {"--script", &options.script},   {"--module", &options.module}};
    for (const auto& [option, claimed] : claims)
        if (*claimed != "-" && isSameFile(*claimed, file)) return option;
    return nullptr;
}

std::string missingFolder(const std::filesystem::path& file) {
    std::error_code ignored;
    const std::filesystem::path folder = file.parent_path();
    if (folder.empty() || std::filesystem::exists(folder, ignored)) return {};
    return "there is no folder " + shownName(folder) + "; make it first";
}

void provideFolder(const std::filesystem::path& file,
                   const std::vector<std::filesystem::path>& makeable) {
    std::string missing = missingFolder(file);
    if (missing.empty()) return;
    const std::filesystem::path folder = file.parent_path();
    if (!isMakeable(folder, makeable)) throw dxf::WriteError(utf8(file), std::move(missing));
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    std::error_code ignored;
    if (!std::filesystem::is_directory(folder, ignored))
        throw dxf::WriteError(utf8(file), "its folder can't be made: " + error.message());
}

void demandTarget(const std::filesystem::path& file,
                  const std::vector<std::filesystem::path>& makeable) {
    std::string missing = missingFolder(file);
    if (missing.empty()) return dxf::demandReplaceable(file);
    if (!isMakeable(file.parent_path(), makeable))
        throw dxf::WriteError(utf8(file), std::move(missing));
}

std::string shownName(const std::filesystem::path& file) {
    return shownText(utf8(file));
}

std::string shownText(std::string_view name) {
    constexpr bool backslashSeparates = std::filesystem::path::preferred_separator == '\\';
    std::string shown;
    while (!name.empty()) {
        const std::size_t length = dxf::utf8::sequenceLength(name);
        if (length == 0 || (!backslashSeparates && looksEscaped(name)))
            shown += escapedByte(name.front());
        else
            shown += name.substr(0, length);
        name.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return shown;
}

}  // namespace host::console
