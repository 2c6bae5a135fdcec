// Polylines as short texts that do not depend on the last bits.
#pragma once

#include <cmath>
#include <string>

#include "GeomStructs/PolyArray.h"
#include "tests/GeomStructs/TextLines.h"

namespace TamLib {

// Rounded to a millionth; one polyline a row, a closed one in parentheses without its last vertex.
inline std::string Rows(const PolyArray& array) {
    std::string rows;
    for (const PolyLine* line : array) {
        PolyLine rounded;
        for (const Point3d& p : *line)
            rounded.Append(
                {std::round(p.x * 1e6) / 1e6 + 0.0, std::round(p.y * 1e6) / 1e6 + 0.0, p.z});
        const bool closed = line->IsClosed();
        if (closed) rounded.Remove(-1, 1);
        rows += closed ? "(" + ToText(rounded) + ")\n" : ToText(rounded) + "\n";
    }
    return rows;
}

}  // namespace TamLib
