#include "GeomStructs/LineArray.h"
#include "GeomStructs/PolyLine.h"

namespace TamLib {

LineArray PolyLine::Segments() const {
    const int vertices = static_cast<int>(count);
    LineArray lines(vertices);
    for (int i = 0; i + 1 < vertices; ++i) lines.Append(Line(data[i], data[i + 1]));
    return lines;
}

}  // namespace TamLib
