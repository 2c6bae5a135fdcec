// Lines that were typed, the earliest first: those of earlier sessions come from a file of the
// user.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace host::console {

class LineHistory {
  public:
    // So many lines of earlier sessions are remembered.
    static constexpr std::size_t most = 1000;

    // Reads what earlier sessions have left in `file`, which need not be there; an empty name keeps
    // the lines for this session alone. A file of more than twice `most` lines is cut to the last
    // ones. What can't be read or written is passed over in silence: no work depends on it.
    explicit LineHistory(std::filesystem::path file);

    const std::vector<std::wstring>& lines() const { return lines_; }

    // Adds a line, to the file as well, which is the user's alone. Empty lines and the same line
    // again are not kept; gives whether it was.
    bool add(const std::wstring& line);

  private:
    void write(bool anew, const std::vector<std::wstring>& lines) const;

    std::filesystem::path file_;
    std::vector<std::wstring> lines_;
};

// orlinth/history in $XDG_STATE_HOME, or in .local/state of the home folder; empty without both.
std::filesystem::path historyFile();

}  // namespace host::console
