// Files as the reading and writing of drawings need them: read whole, replaced as a whole.
#ifndef HOST_DXF_FILES_H
#define HOST_DXF_FILES_H

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include "host/dxf/Errors.h"

namespace host::dxf {

struct FileBytes {
    std::unique_ptr<char[]> bytes;
    std::size_t size = 0;
};

// All bytes of the file at `path`, followed by kPadding (Lines.h) bytes of 0. Raises ReadError,
// without a place, when it can't be had. The file is copied rather than mapped: a mapped one can't
// be replaced under Windows, and kills the program when somebody cuts it meanwhile.
FileBytes readFile(const std::filesystem::path& path);

// The file that ReplacingFile would write under the name `target`: symbolic links followed, also
// one to a file that is not there yet. Links that lead nowhere or in a circle end where they fail.
std::filesystem::path linkedFile(const std::filesystem::path& target);

// Raises the WriteError that ReplacingFile would raise before it makes a file.
void demandReplaceable(const std::filesystem::path& target);

// A file under way that takes the place of another only when it is complete.
//
//   ReplacingFile file(target);   // a new file beside the target, under a name of its own
//   file.write(bytes);            // as often as needed
//   file.commit();                // to the disk, then renamed over the target
//
// Without commit() nothing has happened: the new file is removed. A symbolic link is followed: the
// file it points to is replaced, the link stays. A target that exists keeps its permissions.
// Refused are targets that are no plain files, and those that are marked read-only, also for users
// who may write them nevertheless. All failures raise WriteError and leave the target as it was.
class ReplacingFile {
  public:
    explicit ReplacingFile(std::filesystem::path target);
    ReplacingFile(const ReplacingFile&) = delete;
    ReplacingFile& operator=(const ReplacingFile&) = delete;
    ~ReplacingFile();

    void write(std::string_view bytes);
    void commit();

  private:
    class Handle;

    [[noreturn]] void fail(const std::string& what, int error) const;
    void create();
    void discard() noexcept;

    std::filesystem::path target_;
    std::filesystem::path actual_;     // target_ with links followed
    std::filesystem::path temporary_;  // empty: none to remove
    std::unique_ptr<Handle> handle_;
    bool existed_ = false;
};

// For tests: makes steps of writing fail as the system would. Counts over all files; `none`
// disarms.
struct WriteFault {
    enum class Step { none, create, write, flush, rename };
    Step step = Step::none;
    std::uint64_t afterBytes = 0;  // write: how many bytes still fit
};
void armWriteFault(WriteFault fault);

}  // namespace host::dxf

#endif
