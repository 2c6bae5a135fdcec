// The version of the system and of files. A test can set both in `HeadlessSystem.h`.
#pragma once

#include "windef.h"

struct OSVERSIONINFOW {
    DWORD dwOSVersionInfoSize;
    DWORD dwMajorVersion;
    DWORD dwMinorVersion;
    DWORD dwBuildNumber;
    DWORD dwPlatformId;
    WCHAR szCSDVersion[128];  // the service pack
};
// FALSE (last error 122) when the record's size is not set.
BOOL GetVersionExW(OSVERSIONINFOW* version);

#define PROCESSOR_ARCHITECTURE_INTEL 0
#define PROCESSOR_ARCHITECTURE_IA64 6
#define PROCESSOR_ARCHITECTURE_AMD64 9
#define PROCESSOR_ARCHITECTURE_ARM64 12

struct SYSTEM_INFO {
    WORD wProcessorArchitecture;
};
// The architecture of the system, not of the program. Nothing else is told.
void GetNativeSystemInfo(SYSTEM_INFO* information);

struct VS_FIXEDFILEINFO {
    DWORD dwSignature;
    DWORD dwStrucVersion;
    DWORD dwFileVersionMS;
    DWORD dwFileVersionLS;
    DWORD dwProductVersionMS;
    DWORD dwProductVersionLS;
    DWORD dwFileFlagsMask;
    DWORD dwFileFlags;
    DWORD dwFileOS;
    DWORD dwFileType;
    DWORD dwFileSubtype;
    DWORD dwFileDateMS;
    DWORD dwFileDateLS;
};
// The size of a file's version resource; 0 (last error 1813, or 2 for no file) when it has none.
DWORD GetFileVersionInfoSizeW(LPCWSTR path, LPDWORD ignored);
BOOL GetFileVersionInfoW(LPCWSTR path, DWORD ignored, DWORD size, LPVOID block);
// The fixed part ("\") of a resource; FALSE for any other.
BOOL VerQueryValueW(LPCVOID block, LPCWSTR part, LPVOID* value, UINT* size);
