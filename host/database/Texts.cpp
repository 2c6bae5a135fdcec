#include "host/database/Texts.h"

#include "host/database/Fault.h"

namespace host::database {

ACHAR* newText(const std::wstring& text, const char* function) {
    HOST_CALL(function);
    ACHAR* copy = nullptr;
    acutNewString(text.c_str(), copy);
    return copy;
}

}  // namespace host::database
