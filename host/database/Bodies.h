// Bodies of regions and solids as drawings hold them: encoded lines of text up to R2010, bytes
// from R2013 on.
#pragma once

#include <gepnt3d.h>
#include <gevec3d.h>

#include <string>
#include <vector>

#include "host/database/BodyWriter.h"
#include "host/database/RegionLoops.h"

namespace host::database {

// Where a circle's one vertex stands.
AcGePoint3d vertexOfCircle(const AcGePoint3d& center, const AcGeVector3d& normal, double radius);

// A cylinder from its base to base + axis.
struct Cylinder {
    AcGePoint3d base;
    AcGeVector3d axis;
    double radius = 0.0;
};
void writeBody(const Cylinder& cylinder, BodyWriter& out);

// The plane figure within a loop.
void writeBody(const RegionLoop& loop, BodyWriter& out);

template <class Shape>
std::vector<std::string> bodyText(const Shape& shape) {
    TextBody out;
    writeBody(shape, out);
    return out.take();
}
template <class Shape>
std::string bodyBytes(const Shape& shape) {
    BinaryBody out;
    writeBody(shape, out);
    return out.take();
}

// A line as it stands in a drawing: the sum of a character's and its image's codes is 159, blanks
// stay. An A becomes a caret, which a drawing writes with a blank behind it.
std::string encodedBody(const std::string& line);

}  // namespace host::database
