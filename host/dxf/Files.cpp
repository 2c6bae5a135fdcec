#include "host/dxf/Files.h"

#include <algorithm>
#include <atomic>
#include <optional>
#include <system_error>
#include <utility>

#include "host/dxf/Lines.h"
#include "host/dxf/SystemFile.h"

namespace host::dxf {
namespace fs = std::filesystem;
namespace {

WriteFault armed;

bool faultAt(WriteFault::Step step) {
    return armed.step == step;
}

// Names of new files: short, so that they fit where a target's name just fits.
fs::path temporaryBeside(const fs::path& target) {
    static std::atomic<unsigned> counter{0};
    const std::string name = "orlinth-" + std::to_string(SystemFile::processId()) + "-" +
                             std::to_string(++counter) + ".tmp";
    return target.parent_path() / name;
}

// Follows the symbolic links of `file` as far as they lead; the reason when they lead nowhere.
const char* followLinks(fs::path& file) {
    constexpr int kLongestChain = 40;
    std::error_code status;
    for (int step = 0; fs::is_symlink(fs::symlink_status(file, status)); ++step) {
        if (step == kLongestChain) return "its symbolic links lead in a circle";
        const fs::path next = fs::read_symlink(file, status);
        if (status) return "its symbolic link can't be followed";
        file = next.is_absolute() ? next : file.parent_path() / next;
    }
    return nullptr;
}

// Where a target is written.
struct Place {
    fs::path file;
    bool exists = false;
};

Place placeOf(const fs::path& target) {
    const auto refuse = [&](const std::string& reason) {
        throw WriteError(target.u8string(), reason);
    };
    Place place{target};
    if (const char* reason = followLinks(place.file)) refuse(reason);
    if (!place.file.has_filename()) refuse("it names no file");
    std::error_code error;
    const fs::file_status status = fs::status(place.file, error);
    place.exists = fs::exists(status);
    if (!place.exists) return place;
    if (fs::is_directory(status)) refuse("it is a folder");
    if (!fs::is_regular_file(status)) refuse("it is no plain file");
    constexpr fs::perms kWrite =
        fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
    if ((status.permissions() & kWrite) == fs::perms::none) refuse("it is read-only");
    if (const int failed = SystemFile::tryWriting(place.file); failed != 0)
        refuse("it can't be opened for writing: " + SystemFile::message(failed));
    return place;
}

}  // namespace

fs::path linkedFile(const fs::path& target) {
    fs::path file = target;
    followLinks(file);
    return file;
}

void demandReplaceable(const fs::path& target) {
    placeOf(target);
}

void armWriteFault(WriteFault fault) {
    armed = fault;
}

FileBytes readFile(const fs::path& path) {
    const std::string name = path.u8string();
    std::error_code status;
    const auto refuse = [&](const char* found) {
        throw ReadError(name, std::nullopt, "a DXF drawing", found);
    };
    const fs::file_status kind = fs::status(path, status);
    if (kind.type() == fs::file_type::not_found) refuse("no file of that name");
    if (fs::is_directory(kind)) refuse("a folder");
    // A device may go on for ever.
    if (fs::is_character_file(kind) || fs::is_block_file(kind)) refuse("a device");
    SystemFile file;
    if (const int error = file.openToRead(path); error != 0) {
        throw ReadError(name, "opened: " + SystemFile::message(error));
    }
    if (!file.somebodyWrites()) refuse("a pipe that nobody writes into");
    FileBytes result;
    std::size_t capacity = static_cast<std::size_t>(file.size()) + 1;
    result.bytes.reset(new char[capacity + kPadding]);
    for (;;) {
        if (result.size == capacity) {  // grows while it is read, or is no plain file
            std::unique_ptr<char[]> larger(new char[capacity * 2 + kPadding]);
            std::copy_n(result.bytes.get(), result.size, larger.get());
            result.bytes = std::move(larger);
            capacity *= 2;
        }
        std::size_t got = 0;
        const int error = file.read(result.bytes.get() + result.size, capacity - result.size, got);
        if (error != 0) {
            throw ReadError(name, "read: " + SystemFile::message(error));
        }
        if (got == 0) {
            std::fill_n(result.bytes.get() + result.size, kPadding, '\0');
            return result;
        }
        result.size += got;
    }
}

class ReplacingFile::Handle : public SystemFile {};

ReplacingFile::ReplacingFile(fs::path target)
    : target_(std::move(target)), handle_(std::make_unique<Handle>()) {
    const Place place = placeOf(target_);
    actual_ = place.file;
    existed_ = place.exists;
    create();
}

ReplacingFile::~ReplacingFile() {
    discard();
}

void ReplacingFile::fail(const std::string& what, int error) const {
    throw WriteError(target_.u8string(), what + ": " + SystemFile::message(error));
}

void ReplacingFile::create() {
    constexpr int kAttempts = 100;
    int error = faultAt(WriteFault::Step::create) ? SystemFile::kNoSpace : SystemFile::kExists;
    for (int attempt = 0; error == SystemFile::kExists && attempt < kAttempts; ++attempt) {
        const fs::path candidate = temporaryBeside(actual_);
        error = handle_->createNew(candidate);
        if (error == 0) temporary_ = candidate;
    }
    if (error != 0) fail("no new file can be made beside it", error);
}

void ReplacingFile::write(std::string_view bytes) {
    if (faultAt(WriteFault::Step::write)) {
        if (bytes.size() > armed.afterBytes) {
            handle_->write(bytes.data(), static_cast<std::size_t>(armed.afterBytes));
            fail("writing failed", SystemFile::kNoSpace);
        }
        armed.afterBytes -= bytes.size();
    }
    if (const int error = handle_->write(bytes.data(), bytes.size()); error != 0) {
        fail("writing failed", error);
    }
}

void ReplacingFile::commit() {
    if (existed_) handle_->copyPermissions(actual_);
    int error = faultAt(WriteFault::Step::flush) ? SystemFile::kNoSpace : handle_->flush();
    if (error != 0) fail("writing failed", error);
    error = handle_->close();
    if (error != 0) fail("writing failed", error);
    error = faultAt(WriteFault::Step::rename) ? SystemFile::kDenied
                                              : SystemFile::replace(temporary_, actual_);
    if (error != 0) fail("the new file can't take its place", error);
    temporary_.clear();
}

void ReplacingFile::discard() noexcept {
    handle_->close();
    if (temporary_.empty()) return;
    std::error_code ignored;
    fs::remove(temporary_, ignored);
}

}  // namespace host::dxf
