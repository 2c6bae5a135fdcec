// Outlines as a city plan has them, in map coordinates rounded to millimetres, from fixed seeds.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "GeomStructs/PolyLine.h"

namespace planshapes {

using TamLib::Point3d;
using TamLib::PolyLine;

const Point3d kPlace(25496000, 6672000, 0);
constexpr double kPi = 3.141592653589793;

// splitmix64
class Random {
  public:
    explicit Random(std::uint64_t seed) : state_(seed) {}
    double Real() {
        std::uint64_t z = (state_ += 0x9E3779B97F4A7C15u);
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9u;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBu;
        return static_cast<double>((z ^ (z >> 31)) >> 11) / 9007199254740992.0;
    }
    double Real(double low, double high) { return low + (high - low) * Real(); }
    // About 0, with the deviation 0.577.
    double Bell() {
        double sum = Real();
        for (int i = 0; i < 3; ++i) sum += Real();
        return sum - 2.0;
    }

  private:
    std::uint64_t state_;
};

inline Point3d Millimetres(double x, double y) {
    return {std::round(x * 1000.0) / 1000.0, std::round(y * 1000.0) / 1000.0, 0};
}

inline double StarDepth(int vertices, double radius) {
    return std::min(0.35 * radius, 9.0 * radius / vertices);
}

// The radius goes in and out at every vertex, by about as much as they are apart, so that two stars
// about one centre cross at about every other vertex.
inline PolyLine Star(int vertices, const Point3d& centre, double radius, std::uint64_t seed) {
    Random random(seed);
    const double depth = StarDepth(vertices, radius);
    PolyLine ring(vertices + 1);
    for (int i = 0; i < vertices; ++i) {
        const double angle = 2 * kPi * (i + 0.4 * random.Real()) / vertices;
        const double r =
            radius - depth * (i % 2 == 1 ? random.Real(0.6, 1.0) : random.Real(0.0, 0.4));
        ring.Append(Millimetres(centre.x + r * std::cos(angle), centre.y + r * std::sin(angle)));
    }
    ring.Close();
    return ring;
}

// A block turned by `turn`, whose four facades have recesses of random depth.
inline PolyLine Block(int vertices, const Point3d& centre, double side, double turn,
                      std::uint64_t seed) {
    Random random(seed);
    const int recesses = std::max(1, (vertices - 4) / 16);  // of a facade, four vertices each
    const double half = side / 2, cell = 0.84 * side / recesses;
    PolyLine ring(vertices + 1);
    const auto put = [&](int facade, double along, double in) {
        double x = along - half, y = in - half;
        for (int k = 0; k < facade; ++k) {
            const double before = x;
            x = -y;
            y = before;
        }
        ring.Append(Millimetres(centre.x + std::cos(turn) * x - std::sin(turn) * y,
                                centre.y + std::sin(turn) * x + std::cos(turn) * y));
    };
    for (int facade = 0; facade < 4; ++facade) {
        put(facade, 0, 0);
        for (int k = 0; k < recesses; ++k) {
            const double at = 0.08 * side + cell * (k + 0.4 * random.Real());
            const double width = cell * random.Real(0.2, 0.5);
            const double depth = std::min(0.06 * side, cell * random.Real(0.15, 1.0));
            put(facade, at, 0);
            put(facade, at, depth);
            put(facade, at + width, depth);
            put(facade, at + width, 0);
        }
    }
    ring.Close();
    return ring;
}

// A winding street eastward, which does not cross itself.
inline PolyLine Street(int vertices, std::uint64_t seed) {
    Random random(seed);
    PolyLine line(vertices);
    double x = kPlace.x, y = kPlace.y, heading = 0;
    for (int i = 0; i < vertices; ++i) {
        line.Append(Millimetres(x, y));
        heading = 0.7 * heading + 0.6 * random.Bell();
        const double step = random.Real(2, 25);
        x += step * std::cos(heading);
        y += step * std::sin(heading);
    }
    return line;
}

}  // namespace planshapes
