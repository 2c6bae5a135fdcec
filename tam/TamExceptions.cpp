#include "tam/TamExceptions.h"

#include <cstring>
#include <cwchar>

#include <windows.h>

#include "datastruct/StringPrint.h"

namespace TamLib {
namespace {

constexpr const wchar_t* kSource = L"tam/TamExceptions";
constexpr std::int32_t kDivZeroLine = 445;
constexpr std::int32_t kInvalidArgsLine = 486;

void RemoveCarriageReturns(wchar_t* text) {
    wchar_t* kept = text;
    for (const wchar_t* c = text; *c != 0; ++c) {
        if (*c != L'\r') *kept++ = *c;
    }
    *kept = 0;
}

}  // namespace

ReportFunction reportFunction = nullptr;

TamExpBase::TamExpBase(const wchar_t* text, std::int32_t sourceLine, const wchar_t* sourceName)
    : line(sourceLine), file(sourceName) {
    CopyLimited(message, text != nullptr ? text : L"", kMessageSize);
}

TamExpBase::TamExpBase(const TamExpBase& other) : line(other.line), file(other.file) {
    std::memcpy(message, other.message, sizeof message);
}

void TamExpBase::Hook() {}

void TamExpBase::Report() {
    wchar_t text[2000];
    PrintWithin(text, L"\n%s %s at line %i in file %s.\n", message, L"Error", line, file);
    RemoveCarriageReturns(text);
    if (reportFunction != nullptr) {
        reportFunction(text, L"TamLib error");
    } else {
        OutputDebugStringW(text);
    }
}

TamExpInternal::TamExpInternal(const wchar_t* text, std::int32_t sourceLine,
                               const wchar_t* sourceName)
    : TamExpBase(text, sourceLine, sourceName) {}

void TamExpInternal::Hook() {
    InternalHook();
}

void TamExpInternal::InternalHook() {}

TamExpNoMem::TamExpNoMem(const wchar_t* text, std::int32_t sourceLine, const wchar_t* sourceName)
    : TamExpInternal(text, sourceLine, sourceName) {
    AppendMemoryReport(*this);
}

const wchar_t* TamExpNoMem::Title() const {
    return L"Out of memory";
}

TamExpDivZero::TamExpDivZero() : TamExpInternal(L"", kDivZeroLine, kSource) {}

TamExpUser::TamExpUser(const wchar_t* text, std::int32_t sourceLine, const wchar_t* sourceName)
    : TamExpBase(text, sourceLine, sourceName) {}

void TamExpUser::UserHook() {}

TamExpInvalidArgs::TamExpInvalidArgs() : TamExpUser(L"", kInvalidArgsLine, kSource) {}

TamExpActionCancelled::TamExpActionCancelled(const wchar_t* text, std::int32_t sourceLine,
                                             const wchar_t* sourceName)
    : TamExpUser(text, sourceLine, sourceName) {}

const wchar_t* TamExpActionCancelled::Title() const {
    return L"Cancelled";
}

}  // namespace TamLib
