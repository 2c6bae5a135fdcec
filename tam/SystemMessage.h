// The system's own words for an error.
#pragma once

#include <cstdint>

namespace TamLib {

// The text of an error code in the language of the process, on one line: line breaks are taken out.
// Empty when the system has none. It takes no memory of the library's.
class SystemMessage {
  public:
    explicit SystemMessage(std::uint32_t code);
    ~SystemMessage();
    SystemMessage(const SystemMessage&) = delete;
    SystemMessage& operator=(const SystemMessage&) = delete;

    const wchar_t* Text() const { return text_ != nullptr ? text_ : L""; }

  private:
    wchar_t* text_ = nullptr;  // the system's block
};

}  // namespace TamLib
