// Finding files. Comes with <afx.h>.
#pragma once

#include <windows.h>

#include "afxstr.h"

// A search for the files of a folder whose names match a pattern. FindFile begins it and
// FindNextFile makes the next find the present one, of which the other operations tell.
class CFileFind : public CObject {
  public:
    CFileFind() = default;
    // Closes the search.
    ~CFileFind() override;

    // Searches for a path whose last piece may hold "*" and "?"; null for "*.*". A search that is
    // under way is closed. FALSE when nothing is found.
    virtual BOOL FindFile(LPCWSTR name = nullptr, DWORD unused = 0);
    // Makes the next find the present one, the first at the first call. FALSE when it is the last:
    // it is valid nevertheless.
    virtual BOOL FindNextFile();
    virtual void Close();

    // The name of the present find.
    virtual CString GetFileName() const;
    // The whole path of the present find.
    virtual CString GetFilePath() const;
    // Whether the present find is a folder, or is "." or "..".
    BOOL IsDirectory() const;
    virtual BOOL IsDots() const;
    // When the present find was last changed.
    virtual BOOL GetLastWriteTime(FILETIME* time) const;

  private:
    HANDLE search_ = nullptr;
    bool started_ = false;  // FindNextFile was called
    WIN32_FIND_DATAW present_{};
    WIN32_FIND_DATAW next_{};
    CString folder_;  // whole, with a separator at its end
};
