#include "host/database/Bodies.h"

#include <initializer_list>

namespace host::database {

namespace {

constexpr int kNone = BodyWriter::kNone;
constexpr double kTurn = 6.283185307179586;

void refer(BodyWriter& out, std::initializer_list<int> records) {
    for (const int record : records) out.refer(record);
}

// The records that every body of one lump and one shell begins with; the first face is number 3.
constexpr int kBody = 0, kLump = 1, kShell = 2;
void writeHead(BodyWriter& out) {
    out.begin("body");
    refer(out, {kLump, kNone, kNone});
    out.end();
    out.begin("lump");
    refer(out, {kNone, kShell, kBody});
    out.end();
    out.begin("shell");
    refer(out, {kNone, kNone, kShell + 1, kNone, kLump});
    out.end();
}

struct Face {
    int next, loop, surface;
    bool reversed;  // it looks against its surface
};
void writeFace(BodyWriter& out, const Face& face, bool doubleSided) {
    out.begin("face");
    refer(out, {face.next, face.loop, kShell, kNone, face.surface});
    out.choice("forward", "reversed", face.reversed);
    out.choice("single", "double", doubleSided);
    if (doubleSided) out.choice("out", "in", false);
    out.end();
}

void writeLoop(BodyWriter& out, int next, int coedge, int face) {
    out.begin("loop");
    refer(out, {next, coedge, face});
    out.end();
}

struct Coedge {
    int next, previous, partner, edge;
    bool reversed;  // it runs against its edge
    int loop;
};
void writeCoedge(BodyWriter& out, const Coedge& coedge) {
    out.begin("coedge");
    refer(out, {coedge.next, coedge.previous, coedge.partner, coedge.edge});
    out.choice("forward", "reversed", coedge.reversed);
    out.refer(coedge.loop);
    out.zero();
    out.refer(kNone);
    out.end();
}

struct Edge {
    int start, end;
    double length;  // its parameter at the end; 0 at the start
    int coedge, curve;
};
void writeEdge(BodyWriter& out, const Edge& edge) {
    out.begin("edge");
    out.refer(edge.start);
    out.parameter(0.0);
    out.refer(edge.end);
    out.parameter(edge.length);
    refer(out, {edge.coedge, edge.curve});
    out.choice("forward", "reversed", false);
    out.unknownConvexity();
    out.end();
}

void writeVertex(BodyWriter& out, int edge, BodyWriter::Place place, int point) {
    out.begin("vertex");
    out.refer(edge);
    out.place(place);
    out.refer(point);
    out.end();
}

void writePoint(BodyWriter& out, const AcGePoint3d& point) {
    out.begin("point");
    out.point(point);
    out.end();
}

void writePlane(BodyWriter& out, const AcGePoint3d& origin, const AcGeVector3d& normal,
                const AcGeVector3d& across) {
    out.begin("plane-surface");
    out.point(origin);
    out.vector(normal);
    out.vector(across);
    out.choice("forward_v", "reverse_v", false);
    out.unbounded(4);
    out.end();
}

// A circle whose parameter runs from the end of `major`, counter-clockwise about the normal.
struct Circle {
    AcGePoint3d center;
    AcGeVector3d normal, major;
};
void put(BodyWriter& out, const Circle& circle) {
    out.point(circle.center);
    out.vector(circle.normal);
    out.vector(circle.major);
    out.real(1.0);  // it is as wide as long
    out.unbounded(2);
}
void writeCircle(BodyWriter& out, const Circle& circle) {
    out.begin("ellipse-curve");
    put(out, circle);
    out.end();
}

void writeSide(BodyWriter& out, const Circle& circle, double radius) {
    out.begin("cone-surface");
    put(out, circle);
    out.real(0.0);  // sine and cosine of the opening angle: it doesn't open
    out.real(1.0);
    out.real(radius);  // what its first parameter is measured in
    out.choice("forward", "reversed", false);
    out.unbounded(4);
    out.end();
}

}  // namespace

AcGePoint3d vertexOfCircle(const AcGePoint3d& center, const AcGeVector3d& normal, double radius) {
    return center + normal.normal().perpVector() * radius;
}

// The side runs between two circles; each is shared with a plane. Edges run counter-clockwise about
// the axis, and each face has its part of them so that the body lies on the left, seen from
// outside.
void writeBody(const Cylinder& cylinder, BodyWriter& out) {
    const AcGePoint3d top = cylinder.base + cylinder.axis;
    const AcGeVector3d up = cylinder.axis.normal();
    const AcGeVector3d across = up.perpVector();
    const AcGeVector3d major = across * cylinder.radius;
    const Circle baseCircle{cylinder.base, up, major}, topCircle{top, up, major};
    writeHead(out);
    /* 3, the side */ writeFace(out, {4, 6, 7, false}, false);
    /* 4, the base */ writeFace(out, {5, 8, 9, true}, false);
    /* 5, the top */ writeFace(out, {kNone, 10, 11, false}, false);
    /* 6 */ writeLoop(out, 12, 13, 3);
    /* 7 */ writeSide(out, baseCircle, cylinder.radius);
    /* 8 */ writeLoop(out, kNone, 14, 4);
    /* 9 */ writePlane(out, cylinder.base, up, across);
    /* 10 */ writeLoop(out, kNone, 15, 5);
    /* 11 */ writePlane(out, top, up, across);
    /* 12 */ writeLoop(out, kNone, 16, 3);
    /* 13 */ writeCoedge(out, {13, 13, 14, 17, false, 6});
    /* 14 */ writeCoedge(out, {14, 14, 13, 17, true, 8});
    /* 15 */ writeCoedge(out, {15, 15, 16, 18, false, 10});
    /* 16 */ writeCoedge(out, {16, 16, 15, 18, true, 12});
    /* 17 */ writeEdge(out, {19, 19, kTurn, 13, 20});
    /* 18 */ writeEdge(out, {21, 21, kTurn, 15, 22});
    /* 19 */ writeVertex(out, 17, BodyWriter::kBoth, 23);
    /* 20 */ writeCircle(out, baseCircle);
    /* 21 */ writeVertex(out, 18, BodyWriter::kBoth, 24);
    /* 22 */ writeCircle(out, topCircle);
    /* 23 */ writePoint(out, vertexOfCircle(cylinder.base, cylinder.axis, cylinder.radius));
    /* 24 */ writePoint(out, vertexOfCircle(top, cylinder.axis, cylinder.radius));
}

// The region's one face has both sides outside. Its edges run counter-clockwise about the normal.
void writeBody(const RegionLoop& loop, BodyWriter& out) {
    const bool disc = loop.corners.empty();
    const int edges = disc ? 1 : static_cast<int>(loop.corners.size());
    constexpr int face = 3, ring = 4, plane = 5, coedge = 6;  // where each kind of record begins
    const int edge = coedge + edges, vertex = edge + edges, curve = vertex + edges;
    const int point = curve + edges;
    const AcGeVector3d up = loop.normal.normal();
    const AcGeVector3d major = up.perpVector() * loop.radius;
    const auto corner = [&](int i) {
        return disc ? vertexOfCircle(loop.center, loop.normal, loop.radius)
                    : loop.corners[static_cast<std::size_t>(i % edges)];
    };
    const auto along = [&](int i) { return corner(i + 1) - corner(i); };
    writeHead(out);
    writeFace(out, {kNone, ring, plane, false}, true);
    writeLoop(out, kNone, coedge, face);
    writePlane(out, corner(0), up, disc ? up.perpVector() : along(0).normal());
    for (int i = 0; i < edges; ++i)
        writeCoedge(out, {coedge + (i + 1) % edges, coedge + (i + edges - 1) % edges, kNone,
                          edge + i, false, ring});
    for (int i = 0; i < edges; ++i)
        writeEdge(out, {vertex + i, vertex + (i + 1) % edges, disc ? kTurn : along(i).length(),
                        coedge + i, curve + i});
    for (int i = 0; i < edges; ++i)
        writeVertex(out, edge + i, disc ? BodyWriter::kBoth : BodyWriter::kStart, point + i);
    for (int i = 0; i < edges; ++i) {
        if (disc) {
            writeCircle(out, {loop.center, up, major});
            continue;
        }
        out.begin("straight-curve");
        out.point(corner(i));
        out.vector(along(i).normal());
        out.unbounded(2);
        out.end();
    }
    for (int i = 0; i < edges; ++i) writePoint(out, corner(i));
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
