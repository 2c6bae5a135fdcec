#include <windows.h>

#include "datastruct/StringPrint.h"
#include "tam/SystemMessage.h"
#include "tam/TamExceptions.h"

namespace TamLib {
namespace {

std::int32_t Megabytes(SIZE_T bytes) {
    return static_cast<std::int32_t>(bytes >> 20);
}

// Prints a line behind the message: the format begins with %s, which takes the message so far. The
// print goes through a text of its own, since a message cannot be printed into itself.
template <class... Values>
void AppendLine(TamExpBase& exception, const wchar_t* format, Values... values) {
    wchar_t text[TamExpBase::kMessageSize];
    PrintWithin(text, format, static_cast<const wchar_t*>(exception.message), values...);
    CopyLimited(exception.message, text, TamExpBase::kMessageSize);
}

}  // namespace

void AppendMemoryReport(TamExpBase& exception) {
    MEMORYSTATUS status{};
    status.dwLength = sizeof status;
    GlobalMemoryStatus(&status);
    const SystemMessage lastError(GetLastError());

    const auto amount = [&exception](const wchar_t* format, SIZE_T bytes) {
        AppendLine(exception, format, 8, Megabytes(bytes), L"M");
    };
    AppendLine(exception, L"%s%ld percent of memory is in use.\n",
               static_cast<std::int32_t>(status.dwMemoryLoad));
    amount(L"%s%*d %sB total physical memory.\n", status.dwTotalPhys);
    amount(L"%s%*d %sB of physical memory free.\n", status.dwAvailPhys);
    amount(L"%s%*d %sB total paging file size.\n", status.dwTotalPageFile);
    amount(L"%s%*d %sB of paging file free.\n", status.dwAvailPageFile);
    amount(L"%s%*d %sB total virtual memory.\n", status.dwTotalVirtual);
    amount(L"%s%*d %sB of virtual memory free.\n\n", status.dwAvailVirtual);
    AppendLine(exception, L"%sWIN32 last error code was:\n   %s\n\n", lastError.Text());
    AppendLimited(exception.message, L"\n\n", TamExpBase::kMessageSize);
}

}  // namespace TamLib
