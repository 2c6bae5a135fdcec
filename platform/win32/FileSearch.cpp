// Searching a folder, and whole paths.
#include <dirent.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <memory>
#include <string>
#include <vector>

#include "Faults.h"
#include "FileHandles.h"
#include "PathNames.h"
#include "winbase.h"

namespace {

struct Found {
    std::wstring name;
    std::wstring folded;
    std::string onDisk;
};

struct Search {
    std::string folder;
    std::vector<Found> finds;
    std::size_t next = 0;
};

// Whether the rest of a pattern takes nothing: "name.*" finds "name".
bool TakesNothing(const wchar_t* pattern) {
    for (; *pattern != 0; ++pattern) {
        if (*pattern != L'*' && *pattern != L'?' && *pattern != L'.') return false;
    }
    return true;
}

// Both folded. On a mismatch the last star takes one character more.
bool Matches(const wchar_t* name, const wchar_t* pattern) {
    const wchar_t* behindStar = nullptr;
    const wchar_t* starEnd = nullptr;
    for (;;) {
        if (*pattern == L'*') {
            behindStar = ++pattern;
            starEnd = name;
        } else if (*name == 0) {
            return TakesNothing(pattern);
        } else if (*pattern != 0 && (*pattern == L'?' || *pattern == *name)) {
            ++pattern;
            ++name;
        } else if (behindStar != nullptr) {
            pattern = behindStar;
            name = ++starEnd;
        } else {
            return false;
        }
    }
}

// "." and ".." first, then by name ignoring case.
bool ComesBefore(const Found& first, const Found& second) {
    const auto rank = [](const Found& found) {
        return found.name == L"." ? 0 : found.name == L".." ? 1 : 2;
    };
    const int a = rank(first);
    const int b = rank(second);
    if (a != b) return a < b;
    return first.folded != second.folded ? first.folded < second.folded : first.name < second.name;
}

// The code of a failure, or success with the names in order.
DWORD ReadFolder(const std::string& folder, const std::wstring& pattern, Search& search) {
    DIR* const stream = opendir(folder.empty() ? "." : folder.c_str());
    if (stream == nullptr)
        return errno == ENOENT ? ERROR_PATH_NOT_FOUND : posix::SystemError(errno);
    search.folder = folder;
    while (const dirent* const entry = readdir(stream)) {
        Found found{posix::WideName(entry->d_name), {}, entry->d_name};
        found.folded = posix::FoldName(found.name);
        if (Matches(found.folded.c_str(), pattern.c_str())) search.finds.push_back(found);
    }
    closedir(stream);
    std::sort(search.finds.begin(), search.finds.end(), ComesBefore);
    return ERROR_SUCCESS;
}

// Fills in the next find that is still there.
bool TakeNext(Search& search, WIN32_FIND_DATAW& data) {
    while (search.next < search.finds.size()) {
        const Found& found = search.finds[search.next++];
        const std::string path = search.folder + found.onDisk;
        struct stat status {};
        struct stat link {};
        if (lstat(path.c_str(), &link) != 0) continue;
        const bool isLink = S_ISLNK(link.st_mode);
        if (!isLink || stat(path.c_str(), &status) != 0) status = link;
        data = {};
        posix::FillFileData(status, data);
        if (isLink) data.dwFileAttributes |= FILE_ATTRIBUTE_REPARSE_POINT;
        found.name.copy(data.cFileName, MAX_PATH - 1);
        return true;
    }
    return false;
}

HANDLE FailSearch(DWORD code) {
    SetLastError(code);
    return INVALID_HANDLE_VALUE;
}

std::string WorkingFolder() {
    char folder[PATH_MAX];
    return getcwd(folder, sizeof folder) != nullptr ? folder : "";
}

// The path without "." and "..".
std::string Plain(const std::string& path) {
    std::vector<std::string> pieces;
    for (std::size_t at = 0; at < path.size();) {
        const std::size_t end = std::min(path.find('/', at), path.size());
        const std::string piece = path.substr(at, end - at);
        at = end + 1;
        if (piece == "..") {
            if (!pieces.empty()) pieces.pop_back();
        } else if (!piece.empty() && piece != ".") {
            pieces.push_back(piece);
        }
    }
    std::string plain;
    for (const std::string& piece : pieces) plain += '/' + piece;
    const bool folder = plain.empty() || (!path.empty() && path.back() == '/');
    return folder ? plain + '/' : plain;
}

}  // namespace

HANDLE FindFirstFileW(LPCWSTR path, WIN32_FIND_DATAW* data) {
    if (posix::Refused("FindFirstFileW")) return INVALID_HANDLE_VALUE;
    std::string name;
    if (!posix::NativePath(path, name)) return FailSearch(ERROR_INVALID_NAME);
    const std::size_t slash = name.rfind('/');
    const std::size_t patternAt = slash == std::string::npos ? 0 : slash + 1;
    const std::wstring pattern = posix::FoldName(posix::WideName(name.substr(patternAt)));
    auto search = std::make_unique<Search>();
    const DWORD code = ReadFolder(name.substr(0, patternAt), pattern, *search);
    if (code != ERROR_SUCCESS) return FailSearch(code);
    if (!TakeNext(*search, *data)) return FailSearch(ERROR_FILE_NOT_FOUND);
    return search.release();
}

BOOL FindNextFileW(HANDLE search, WIN32_FIND_DATAW* data) {
    if (posix::Refused("FindNextFileW")) return FALSE;
    if (TakeNext(*static_cast<Search*>(search), *data)) return TRUE;
    SetLastError(ERROR_NO_MORE_FILES);
    return FALSE;
}

BOOL FindClose(HANDLE search) {
    const std::unique_ptr<Search> ended(static_cast<Search*>(search));
    return TRUE;
}

DWORD GetFullPathNameW(LPCWSTR name, DWORD size, LPWSTR buffer, LPWSTR* namePart) {
    if (namePart != nullptr) *namePart = nullptr;
    std::string path;
    if (!posix::NativePath(name, path) || path.empty()) {
        SetLastError(ERROR_INVALID_NAME);
        return 0;
    }
    if (path.front() != '/') path = WorkingFolder() + '/' + path;
    const std::wstring whole = posix::WindowsPath(Plain(path));
    if (whole.size() + 1 > size) return static_cast<DWORD>(whole.size() + 1);
    whole.copy(buffer, whole.size());
    buffer[whole.size()] = 0;
    const std::size_t last = whole.rfind(L'\\') + 1;
    if (namePart != nullptr && last < whole.size()) *namePart = buffer + last;
    return static_cast<DWORD>(whole.size());
}
