#include <afxwin.h>

#include "datastruct/StringPrint.h"
#include "tam/FrameWindow.h"
#include "tam/TamExceptions.h"

namespace TamLib {

int ShowException(std::int32_t line, const wchar_t* file, CWnd* parent, const wchar_t* message) {
    const CWnd* const owner = parent != nullptr ? parent : frameWindow;
    wchar_t text[2000];
    PrintWithin(text, L"\nException \"%s\" at line %i in file %s.\n",
                message != nullptr ? message : L"unknown error", line, file);
    return MessageBoxW(owner != nullptr ? owner->GetSafeHwnd() : nullptr, text, L"TamLib error", 0);
}

}  // namespace TamLib
