#include <new>

#include <windows.h>

#include "tam/TamExceptions.h"

namespace TamLib {
namespace {

constexpr const wchar_t* kSource = L"tam/TamExceptions";
constexpr std::int32_t kWinSeLine = 398;
constexpr std::uint32_t kFilterCode = 1000;

bool TellsOfStackOverflow(const _EXCEPTION_POINTERS* pointers) {
    return pointers != nullptr && pointers->ExceptionRecord != nullptr &&
           pointers->ExceptionRecord->ExceptionCode == 0xC00000FDu;
}

}  // namespace

bool translatingSeException = false;

TamExpWinSeException::TamExpWinSeException() : TamExpInternal(L"", kWinSeLine, kSource) {}

TamExpWinSeException::TamExpWinSeException(std::uint32_t seCode, _EXCEPTION_POINTERS* record)
    : TamExpInternal(L"", kWinSeLine, kSource), code(seCode), pointers(record) {
    // Intended: the record's code is looked at, since `code` may be that of the filter.
    if (TellsOfStackOverflow(record)) {
        OutputDebugStringW(L"!!!!!!!!!!!!!!!!!!!!!!!!!!!!!!!!!\n");
        OutputDebugStringW(L"EXCEPTION_STACK_OVERFLOW occurred\n");
        OutputDebugStringW(L"!!!!!!!!!!!!!!!!!!!!!!!!!!!!!!!!!\n");
    }
    translatingSeException = false;
}

TamExpWinSeException::TamExpWinSeException(const TamExpWinSeException& other)
    : TamExpInternal(L"", kWinSeLine, kSource), code(other.code), pointers(other.pointers) {}

void* TamExpWinSeException::GetAddress() const {
    if (pointers == nullptr || pointers->ExceptionRecord == nullptr) return nullptr;
    return pointers->ExceptionRecord->ExceptionAddress;
}

void TranslateSeException(unsigned code, _EXCEPTION_POINTERS* pointers) {
    if (translatingSeException) return;
    translatingSeException = true;
    throw new (std::nothrow) TamExpWinSeException(code, pointers);
}

long SeExceptionFilter(_EXCEPTION_POINTERS* pointers) {
    if (translatingSeException) return 0;
    TranslateSeException(kFilterCode, pointers);
    return 0;
}

}  // namespace TamLib
