// Lines and polygons from short texts: "0 0, 10 0, 10 10" is an open line, in parentheses a ring,
// whose first vertex is repeated. A vertex may have a third number, its height.
#pragma once

#include <sstream>
#include <string>

#include "GeomStructs/PolyLine.h"

namespace TamLib {

inline PolyLine FromText(std::string text) {
    const auto opening = text.find('(');
    const bool ring = opening != std::string::npos;
    for (const char bracket : {'(', ')'})
        if (const auto at = text.find(bracket); at != std::string::npos) text[at] = ' ';
    PolyLine line;
    std::istringstream vertices(text);
    for (std::string vertex; std::getline(vertices, vertex, ',');) {
        std::istringstream numbers(vertex);
        Point3d p;
        if (numbers >> p.x >> p.y) line.Append(p);
        if (numbers >> p.z) line.data[line.count - 1].z = p.z;
    }
    if (ring) line.Close();
    return line;
}

inline std::string ToText(const Array<Point3d>& points) {
    std::ostringstream text;
    text.precision(15);
    for (std::uint32_t i = 0; i < points.count; ++i) {
        const Point3d& p = points.data[i];
        text << (i > 0 ? ", " : "") << p.x << ' ' << p.y;
        if (p.z != 0) text << ' ' << p.z;
    }
    return text.str();
}

}  // namespace TamLib
