// How an ASCII drawing writes its numbers, measured from the drawing itself.
#ifndef HOST_DXF_NUMBERSTYLE_H
#define HOST_DXF_NUMBERSTYLE_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "host/dxf/Document.h"

namespace host::dxf {

struct NumberStyle {
    enum class Whole : std::uint8_t {
        pointZero,  // 90.0
        bare        // 90
    };
    Whole whole = Whole::pointZero;  // how reals without a fraction are written, unless padded
    std::size_t decimals = 0;  // at least so many decimals, filled up with zeros; 0: no filling

    // Columns of integers that are padded with blanks on the left; 0: not padded.
    std::size_t int16Width = 0;
    std::size_t int32Width = 0;
};

// The style of `document`: by up to 10000 reals of its entities and blocks, or where there are
// none, of the whole file. Filling up is taken for its style when more values end in a zero that a
// shortest spelling would not have than are written short (90.0, 90); `decimals` is then the
// commonest number of them. Without any real: pointZero.
NumberStyle measureStyle(const Document& document);

// `value`, which is finite, in `style`: plain decimals that read back as the identical double, the
// sign of a negative zero included.
std::string formatReal(double value, const NumberStyle& style);

}  // namespace host::dxf

#endif
