// The single-byte code pages that $DWGCODEPAGE may name.
#ifndef HOST_DXF_CODEPAGETABLES_H
#define HOST_DXF_CODEPAGETABLES_H

#include <cstddef>

namespace host::dxf {

struct SingleBytePage {
    int number;           // as Windows numbers it
    char16_t upper[128];  // the characters of bytes 80 to FF
};

extern const SingleBytePage kSingleBytePages[];
extern const std::size_t kSingleBytePageCount;

}  // namespace host::dxf

#endif
