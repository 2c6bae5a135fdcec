// The double-byte code pages 932, 936, 949, 950 and 1361, decoded by the system's converter.
#ifndef HOST_DXF_DOUBLEBYTE_H
#define HOST_DXF_DOUBLEBYTE_H

#include <cstdint>
#include <string>
#include <string_view>

namespace host::dxf {

class DoubleByteDecoder {
  public:
    explicit DoubleByteDecoder(int page);
    DoubleByteDecoder(const DoubleByteDecoder&) = delete;
    DoubleByteDecoder& operator=(const DoubleByteDecoder&) = delete;
    ~DoubleByteDecoder();

    // The characters of `bytes`, at least one if there are any; U+FFFD for a byte that is neither a
    // character nor the head of one. Bytes below 80 stand for themselves.
    std::u32string decode(std::string_view bytes) const;

  private:
    bool isLead(unsigned char byte) const;
    char32_t convert(std::string_view one) const;  // 0 when it is no character

    int page_;
    std::intptr_t converter_;
};

}  // namespace host::dxf

#endif
