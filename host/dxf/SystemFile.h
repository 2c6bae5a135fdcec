// The few file operations of the system that the standard library lacks or hides the errors of.
//
// Results are error numbers of the system (errno, or GetLastError under Windows), 0 for success.
#ifndef HOST_DXF_SYSTEMFILE_H
#define HOST_DXF_SYSTEMFILE_H

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace host::dxf {

class SystemFile {
  public:
    static const int kNoSpace;
    static const int kExists;
    static const int kDenied;

    SystemFile() = default;
    SystemFile(const SystemFile&) = delete;
    SystemFile& operator=(const SystemFile&) = delete;
    ~SystemFile();

    // Does not wait for the writer of a pipe; somebodyWrites() comes before reading.
    int openToRead(const std::filesystem::path& path);
    // False for a pipe that nobody has opened to write within two seconds. True for anything else.
    bool somebodyWrites();
    int createNew(const std::filesystem::path& path);  // kExists when something stands there
    std::uint64_t size() const;                        // 0 where there is none to tell
    int read(char* buffer, std::size_t size, std::size_t& got);  // got = 0: the end
    int write(const char* bytes, std::size_t size);              // all of them
    void copyPermissions(const std::filesystem::path& from);     // as far as the system lets us
    int flush();                                                 // to the disk
    int close();                                                 // nothing when it is closed

    static int tryWriting(const std::filesystem::path& path);  // opens it and closes it again
    static int replace(const std::filesystem::path& from, const std::filesystem::path& to);
    static unsigned long processId();
    static std::string message(int error);  // UTF-8, without a full stop

  private:
    static constexpr std::intptr_t kClosed = -1;
    std::intptr_t handle_ = kClosed;
    std::optional<char> ahead_;  // read already
};

}  // namespace host::dxf

#endif
