#include "host/database/SolidText.h"

#include <charconv>

namespace host::database {

namespace {

std::string text(double value) {
    char digits[32];
    const auto end = std::to_chars(digits, digits + sizeof digits, value == 0.0 ? 0.0 : value);
    return std::string(digits, end.ptr);
}
std::string text(double x, double y, double z) {
    return text(x) + " " + text(y) + " " + text(z);
}
std::string text(const AcGePoint3d& p) {
    return text(p.x, p.y, p.z);
}
std::string text(const AcGeVector3d& v) {
    return text(v.x, v.y, v.z);
}

}  // namespace

// The side runs between two circles; each is shared with a plane. Edges run counter-clockwise about
// the axis, and each face has its part of them so that the body lies on the left, seen from
// outside.
std::vector<std::string> cylinderText(const AcGePoint3d& base, const AcGeVector3d& axis,
                                      double radius) {
    const AcGePoint3d top = base + axis;
    const AcGeVector3d up = axis.normal();
    const AcGeVector3d across = up.perpVector();
    const AcGeVector3d major = across * radius;
    const std::string directions = " " + text(up) + " " + text(across) + " forward_v I I I I #";
    const std::string circle = " " + text(up) + " " + text(major) + " 1 I I";
    return {
        "400 0 1 0 ",
        "7 orlinth 4 4.00 24 Sat Jan  1 00:00:00 2000 ",
        "1 9.9999999999999995e-007 1e-010 ",
        /* 0 */ "body $-1 $1 $-1 $-1 #",
        /* 1 */ "lump $-1 $-1 $2 $0 #",
        /* 2 */ "shell $-1 $-1 $-1 $3 $-1 $1 #",
        /* 3, the side */ "face $-1 $4 $6 $2 $-1 $7 forward single #",
        /* 4, the base */ "face $-1 $5 $8 $2 $-1 $9 reversed single #",
        /* 5, the top */ "face $-1 $-1 $10 $2 $-1 $11 forward single #",
        /* 6 */ "loop $-1 $12 $13 $3 #",
        /* 7 */ "cone-surface $-1 " + text(base) + circle + " 0 1 " + text(radius) +
            " forward I I I I #",
        /* 8 */ "loop $-1 $-1 $14 $4 #",
        /* 9 */ "plane-surface $-1 " + text(base) + directions,
        /* 10 */ "loop $-1 $-1 $15 $5 #",
        /* 11 */ "plane-surface $-1 " + text(top) + directions,
        /* 12 */ "loop $-1 $-1 $16 $3 #",
        /* 13 */ "coedge $-1 $13 $13 $14 $17 forward $6 $-1 #",
        /* 14 */ "coedge $-1 $14 $14 $13 $17 reversed $8 $-1 #",
        /* 15 */ "coedge $-1 $15 $15 $16 $18 forward $10 $-1 #",
        /* 16 */ "coedge $-1 $16 $16 $15 $18 reversed $12 $-1 #",
        /* 17 */ "edge $-1 $19 $19 $13 $20 forward #",
        /* 18 */ "edge $-1 $21 $21 $15 $22 forward #",
        /* 19 */ "vertex $-1 $17 $23 #",
        /* 20 */ "ellipse-curve $-1 " + text(base) + circle + " #",
        /* 21 */ "vertex $-1 $18 $24 #",
        /* 22 */ "ellipse-curve $-1 " + text(top) + circle + " #",
        /* 23 */ "point $-1 " + text(base + major) + " #",
        /* 24 */ "point $-1 " + text(top + major) + " #",
        "End-of-ACIS-data ",
    };
}

// The region's one face has both sides outside. Its edges run counter-clockwise about the normal.
std::vector<std::string> regionText(const RegionLoop& loop) {
    const bool disc = loop.corners.empty();
    const std::size_t edges = disc ? 1 : loop.corners.size();
    constexpr std::size_t coedge = 6;  // where each kind of record begins
    const std::size_t edge = coedge + edges, vertex = edge + edges, curve = vertex + edges;
    const std::size_t point = curve + edges;
    const AcGeVector3d up = loop.normal.normal();
    const AcGeVector3d major = up.perpVector() * loop.radius;
    const AcGeVector3d across =
        disc ? up.perpVector() : (loop.corners[1] - loop.corners[0]).normal();
    const auto record = [](std::size_t number) { return " $" + std::to_string(number); };
    const auto corner = [&](std::size_t i) {
        return disc ? loop.center + major : loop.corners[i % edges];
    };
    std::vector<std::string> lines{
        "400 0 1 0 ",
        "7 orlinth 4 4.00 24 Sat Jan  1 00:00:00 2000 ",
        "1 9.9999999999999995e-007 1e-010 ",
        "body $-1 $1 $-1 $-1 #",
        "lump $-1 $-1 $2 $0 #",
        "shell $-1 $-1 $-1 $3 $-1 $1 #",
        "face $-1 $-1 $4 $2 $-1 $5 forward double out #",
        "loop $-1 $-1 $6 $3 #",
        "plane-surface $-1 " + text(corner(0)) + " " + text(up) + " " + text(across) +
            " forward_v I I I I #",
    };
    for (std::size_t i = 0; i < edges; ++i)
        lines.push_back("coedge $-1" + record(coedge + (i + 1) % edges) +
                        record(coedge + (i + edges - 1) % edges) + " $-1" + record(edge + i) +
                        " forward $4 $-1 #");
    for (std::size_t i = 0; i < edges; ++i)
        lines.push_back("edge $-1" + record(vertex + i) + record(vertex + (i + 1) % edges) +
                        record(coedge + i) + record(curve + i) + " forward #");
    for (std::size_t i = 0; i < edges; ++i)
        lines.push_back("vertex $-1" + record(edge + i) + record(point + i) + " #");
    for (std::size_t i = 0; i < edges; ++i)
        lines.push_back(disc ? "ellipse-curve $-1 " + text(loop.center) + " " + text(up) + " " +
                                   text(major) + " 1 I I #"
                             : "straight-curve $-1 " + text(corner(i)) + " " +
                                   text((corner(i + 1) - corner(i)).normal()) + " I I #");
    for (std::size_t i = 0; i < edges; ++i) lines.push_back("point $-1 " + text(corner(i)) + " #");
    lines.push_back("End-of-ACIS-data ");
    return lines;
}

std::string encodedBody(const std::string& line) {
    std::string encoded;
    for (const char c : line) {
        const char image = c == ' ' ? c : static_cast<char>(159 - c);
        encoded += image;
        if (image == '^') encoded += ' ';
    }
    return encoded;
}

}  // namespace host::database
