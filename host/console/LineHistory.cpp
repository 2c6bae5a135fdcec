#include "host/console/LineHistory.h"

#include <cstdlib>
#include <fstream>
#include <system_error>
#include <utility>

#include "host/editor/Words.h"

namespace host::console {

namespace {

namespace fs = std::filesystem;

fs::path folderOf(const char* variable) {
    const char* const value = std::getenv(variable);
    const fs::path folder = value == nullptr ? fs::path() : fs::path(value);
    return folder.is_absolute() ? folder : fs::path();
}

}  // namespace

LineHistory::LineHistory(fs::path file) : file_(std::move(file)) {
    std::error_code error;
    if (fs::exists(file_, error) && !fs::is_regular_file(file_, error)) file_.clear();
    if (file_.empty()) return;
    std::ifstream stream(file_, std::ios::binary);
    std::size_t count = 0;
    for (std::string line; std::getline(stream, line); ++count)
        if (!line.empty()) lines_.push_back(editor::fromUtf8(line));
    if (lines_.size() > most)
        lines_.erase(lines_.begin(), lines_.end() - static_cast<std::ptrdiff_t>(most));
    if (count > 2 * most) write(true, lines_);
}

bool LineHistory::add(const std::wstring& line) {
    if (line.empty() || (!lines_.empty() && lines_.back() == line)) return false;
    lines_.push_back(line);
    if (!file_.empty()) write(false, {line});
    return true;
}

void LineHistory::write(bool anew, const std::vector<std::wstring>& lines) const {
    std::error_code error;
    fs::create_directories(file_.parent_path(), error);
    const bool isNew = !fs::exists(file_, error);
    std::ofstream stream(file_, std::ios::binary | (anew ? std::ios::trunc : std::ios::app));
    if (isNew)
        fs::permissions(file_, fs::perms::owner_read | fs::perms::owner_write,
                        fs::perm_options::replace, error);
    for (const std::wstring& line : lines) stream << editor::toUtf8(line) << '\n';
}

fs::path historyFile() {
    fs::path folder = folderOf("XDG_STATE_HOME");
    if (folder.empty()) {
        folder = folderOf("HOME");
        if (folder.empty()) return {};
        folder = folder / ".local" / "state";
    }
    return folder / "orlinth" / "history";
}

}  // namespace host::console
