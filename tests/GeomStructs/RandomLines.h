// Random lines and rings that look like those of drawings and those that break tests: stars, combs,
// spirals, walks on and off a grid, with repeated and collinear vertices.
#pragma once

#include <cmath>
#include <random>

#include "GeomStructs/PolyLine.h"

namespace TamLib {

class RandomLines {
  public:
    explicit RandomLines(unsigned seed) : random_(seed) {}

    double Real(double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(random_);
    }
    int Whole(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random_); }
    bool Chance(int oneIn) { return Whole(1, oneIn) == 1; }

    // Counter-clockwise about `centre`, radii between a fifth of `radius` and all of it.
    PolyLine Star(int corners, const Point3d& centre, double radius) {
        PolyLine ring(corners + 1);
        const double start = Real(0, 6);
        for (int i = 0; i < corners; ++i) {
            const double angle = start + i * 6.283185307179586 / corners;
            const double r = radius * Real(0.2, 1);
            ring.Append(centre + Point3d(r * std::cos(angle), r * std::sin(angle), 0));
        }
        ring.Close();
        return ring;
    }
    // A back along y = 0 with teeth that rise from it.
    PolyLine Comb(int teeth, const Point3d& corner, double pitch, double height) {
        PolyLine ring(4 * teeth + 3);
        ring.Append(corner);
        for (int i = 0; i < teeth; ++i) {
            const double x = i * pitch, top = height * (i % 3 == 0 ? 1.0 : 0.75);
            ring.Append(corner + Point3d(x, top, 0));
            ring.Append(corner + Point3d(x + pitch * 0.5, top, 0));
            ring.Append(corner + Point3d(x + pitch * 0.5, height * 0.25, 0));
            ring.Append(corner + Point3d(x + pitch, height * 0.25, 0));
        }
        ring.Append(corner + Point3d(teeth * pitch, 0, 0));
        ring.Close();
        return ring;
    }
    // A band of half the pitch that winds round `centre`.
    PolyLine Spiral(int corners, const Point3d& centre, double pitch) {
        PolyLine ring(2 * corners + 1);
        const auto at = [&](int i, double off) {
            const double angle = i * 0.2, r = pitch * (1 + angle / 6.283185307179586) + off;
            return centre + Point3d(r * std::cos(angle), r * std::sin(angle), 0);
        };
        for (int i = 0; i < corners; ++i) ring.Append(at(i, 0));
        for (int i = corners - 1; i >= 0; --i) ring.Append(at(i, pitch * 0.5));
        ring.Close();
        return ring;
    }
    // On a grid, equal vertices, vertical and collinear segments come up all the time.
    PolyLine Walk(int count, const Point3d& base, double step, bool grid) {
        PolyLine line(count + 1);
        Point3d at = base;
        for (int i = 0; i < count; ++i) {
            line.Append(at);
            at += grid ? Point3d(Whole(-2, 2) * step, Whole(-2, 2) * step, Whole(-1, 1) * step)
                       : Point3d(Real(-step, step), Real(-step, step), Real(-step, step));
        }
        if (!Chance(4)) line.Close();
        return line;
    }
    // A simple ring of any of these kinds.
    PolyLine Ring(const Point3d& base, double size) {
        switch (Whole(0, 2)) {
            case 0:
                return Star(Whole(3, 60), base, size);
            case 1:
                return Comb(Whole(1, 15), base, size * 0.1, size);
            default:
                return Spiral(Whole(4, 80), base, size * 0.2);
        }
    }
    // The same ring with vertices repeated and others put between, about one in three each.
    PolyLine Roughened(const PolyLine& line) {
        PolyLine rough(static_cast<int>(line.count) * 2);
        for (std::uint32_t i = 0; i < line.count; ++i) {
            rough.Append(line.data[i]);
            if (i + 1 == line.count) break;
            if (Chance(3)) rough.Append(line.data[i]);
            if (Chance(3)) rough.Append(Line(line.data[i], line.data[i + 1]).MidPoint());
        }
        return rough;
    }
    // A point about a line: on a vertex, in a segment, beside either by a bit, or anywhere near.
    Point3d PointAbout(const PolyLine& line, double size) {
        const int i = Whole(0, static_cast<int>(line.count) - 1);
        const Line segment(line.data[i], line.data[(i + 1) % static_cast<int>(line.count)]);
        const double off = size * std::pow(10.0, -Whole(1, 12));
        switch (Whole(0, 5)) {
            case 0:
                return segment.Start();
            case 1:
                return segment.PointAt(Chance(2) ? 0.5 : Real(0, 1));
            case 2:
                return segment.Start() + Point3d(Real(-off, off), Real(-off, off), 0);
            case 3:
                return segment.PointAt(Real(0, 1)) + Point3d(Real(-off, off), Real(-off, off), 0);
            case 4:
                return {segment.x1 + Real(-size, size), segment.y1, segment.z1};
            default:
                return segment.Start() + Point3d(Real(-size, size), Real(-size, size), 0);
        }
    }
    Line LineAbout(const PolyLine& line, double size) {
        const Point3d from = PointAbout(line, size), to = PointAbout(line, size);
        return Chance(6) ? Line(from, {from.x, to.y, to.z}) : Line(from, to);
    }

  private:
    std::mt19937 random_;
};

}  // namespace TamLib
