#include <afx.h>

#include <string>

namespace {

// The whole path of the folder that a pattern searches, with a separator at its end.
CString FolderOf(LPCWSTR name) {
    std::wstring path(MAX_PATH, L'\0');
    DWORD length = GetFullPathNameW(name, MAX_PATH, path.data(), nullptr);
    if (length >= MAX_PATH) {
        path.resize(length);
        length = GetFullPathNameW(name, length, path.data(), nullptr);
    }
    path.resize(length);
    const std::size_t last = path.find_last_of(L"\\/");
    path.resize(last == std::wstring::npos ? 0 : last + 1);
    return CString(path.c_str());
}

}  // namespace

CFileFind::~CFileFind() {
    CFileFind::Close();
}

BOOL CFileFind::FindFile(LPCWSTR name, DWORD /*unused*/) {
    Close();
    if (name == nullptr) name = L"*.*";
    const HANDLE search = FindFirstFileW(name, &next_);
    if (search == INVALID_HANDLE_VALUE) return FALSE;
    search_ = search;
    folder_ = FolderOf(name);
    return TRUE;
}

BOOL CFileFind::FindNextFile() {
    if (search_ == nullptr) return FALSE;
    started_ = true;
    present_ = next_;
    return ::FindNextFileW(search_, &next_);
}

void CFileFind::Close() {
    if (search_ != nullptr) FindClose(search_);
    search_ = nullptr;
    started_ = false;
}

CString CFileFind::GetFileName() const {
    return started_ ? CString(present_.cFileName) : CString();
}

CString CFileFind::GetFilePath() const {
    return started_ ? folder_ + present_.cFileName : CString();
}

BOOL CFileFind::IsDirectory() const {
    return started_ && (present_.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? TRUE : FALSE;
}

BOOL CFileFind::IsDots() const {
    const CString name = GetFileName();
    return IsDirectory() && (name == L"." || name == L"..") ? TRUE : FALSE;
}

BOOL CFileFind::GetLastWriteTime(FILETIME* time) const {
    if (!started_ || time == nullptr) return FALSE;
    *time = present_.ftLastWriteTime;
    return TRUE;
}
