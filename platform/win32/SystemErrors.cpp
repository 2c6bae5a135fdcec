// The last error and the texts of errors.
#include <cstdlib>
#include <cwchar>

#include "windows.h"

namespace {

thread_local DWORD lastError = ERROR_SUCCESS;

struct ErrorText {
    DWORD code;
    const wchar_t* text;
};

constexpr ErrorText kErrorTexts[] = {
    {ERROR_SUCCESS, L"The operation completed successfully.\r\n"},
    {ERROR_FILE_NOT_FOUND, L"The system cannot find the file specified.\r\n"},
    {ERROR_PATH_NOT_FOUND, L"The system cannot find the path specified.\r\n"},
    {ERROR_TOO_MANY_OPEN_FILES, L"The system cannot open the file.\r\n"},
    {ERROR_ACCESS_DENIED, L"Access is denied.\r\n"},
    {ERROR_INVALID_HANDLE, L"The handle is invalid.\r\n"},
    {ERROR_NOT_ENOUGH_MEMORY,
     L"Not enough memory resources are available to process this command.\r\n"},
    {ERROR_INVALID_DATA, L"The data is invalid.\r\n"},
    {ERROR_OUTOFMEMORY,
     L"Not enough memory resources are available to complete this operation.\r\n"},
    {ERROR_NO_MORE_FILES, L"There are no more files.\r\n"},
    {ERROR_GEN_FAILURE, L"A device attached to the system is not functioning.\r\n"},
    {ERROR_SHARING_VIOLATION,
     L"The process cannot access the file because it is being used by another process.\r\n"},
    {ERROR_FILE_EXISTS, L"The file exists.\r\n"},
    {ERROR_INVALID_PARAMETER, L"The parameter is incorrect.\r\n"},
    {ERROR_DISK_FULL, L"There is not enough space on the disk.\r\n"},
    {ERROR_INSUFFICIENT_BUFFER, L"The data area passed to a system call is too small.\r\n"},
    {ERROR_INVALID_NAME, L"The filename, directory name, or volume label syntax is incorrect.\r\n"},
    {ERROR_MOD_NOT_FOUND, L"The specified module could not be found.\r\n"},
    {ERROR_PROC_NOT_FOUND, L"The specified procedure could not be found.\r\n"},
    {ERROR_DIR_NOT_EMPTY, L"The directory is not empty.\r\n"},
    {ERROR_ALREADY_EXISTS, L"Cannot create a file when that file already exists.\r\n"},
    {ERROR_FILENAME_EXCED_RANGE, L"The filename or extension is too long.\r\n"},
    {ERROR_MORE_DATA, L"More data is available.\r\n"},
    {ERROR_NO_MORE_ITEMS, L"No more data is available.\r\n"},
    {ERROR_MR_MID_NOT_FOUND,
     L"The system cannot find message text for message number 0x%1 in the message file for "
     L"%2.\r\n"},
    {ERROR_BADDB, L"The configuration registry database is corrupt.\r\n"},
    {ERROR_KEY_DELETED,
     L"Illegal operation attempted on a registry key that has been marked for deletion.\r\n"},
    {ERROR_CLIPBOARD_NOT_OPEN, L"Thread does not have a clipboard open.\r\n"},
    {ERROR_RESOURCE_TYPE_NOT_FOUND,
     L"The specified resource type cannot be found in the image file.\r\n"},
};

const wchar_t* TextOfError(DWORD code) {
    for (const ErrorText& entry : kErrorTexts) {
        if (entry.code == code) return entry.text;
    }
    return nullptr;
}

DWORD Refuse(DWORD code) {
    SetLastError(code);
    return 0;
}

}  // namespace

DWORD GetLastError() {
    return lastError;
}

void SetLastError(DWORD code) {
    lastError = code;
}

DWORD FormatMessageW(DWORD flags, LPCVOID /*source*/, DWORD code, DWORD /*language*/, LPWSTR buffer,
                     DWORD size, void* /*arguments*/) {
    const bool allocate = (flags & FORMAT_MESSAGE_ALLOCATE_BUFFER) != 0;
    LPWSTR* const pointer = allocate ? reinterpret_cast<LPWSTR*>(buffer) : nullptr;
    if (allocate) *pointer = nullptr;
    if ((flags & FORMAT_MESSAGE_FROM_SYSTEM) == 0) return Refuse(ERROR_INVALID_PARAMETER);
    const wchar_t* const text = TextOfError(code);
    if (text == nullptr) return Refuse(ERROR_MR_MID_NOT_FOUND);

    const std::size_t length = std::wcslen(text);
    if (allocate) {
        const std::size_t room = length + 1 > size ? length + 1 : size;
        buffer = static_cast<LPWSTR>(LocalAlloc(LMEM_FIXED, room * sizeof(wchar_t)));
        if (buffer == nullptr) return Refuse(ERROR_NOT_ENOUGH_MEMORY);
        *pointer = buffer;
    } else if (length + 1 > size) {
        return Refuse(ERROR_INSUFFICIENT_BUFFER);
    }
    std::wmemcpy(buffer, text, length + 1);
    return static_cast<DWORD>(length);
}

HLOCAL LocalAlloc(UINT flags, SIZE_T bytes) {
    const SIZE_T room = bytes == 0 ? 1 : bytes;
    return (flags & LMEM_ZEROINIT) != 0 ? std::calloc(room, 1) : std::malloc(room);
}

HLOCAL LocalFree(HLOCAL block) {
    std::free(block);
    return nullptr;
}

LPVOID LocalLock(HLOCAL block) {
    return block;
}

BOOL LocalUnlock(HLOCAL /*block*/) {
    SetLastError(ERROR_SUCCESS);
    return FALSE;
}
