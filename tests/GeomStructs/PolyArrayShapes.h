// Polylines, lines and arrays of them for tests: made from points, from random numbers, and told
// as texts to the last bit.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <initializer_list>
#include <random>
#include <string>
#include <vector>

#include "GeomStructs/LineArray.h"
#include "GeomStructs/PolyArray.h"

namespace TamLib {

using Points = std::vector<Point3d>;

inline PolyLine MakeLine(const Points& points) {
    PolyLine line;
    for (const Point3d& p : points) line.Append(p);
    return line;
}

inline Points PointsOf(const PolyLine& line) {
    return {line.begin(), line.end()};
}

inline PolyArray MakeArray(const std::vector<Points>& all) {
    PolyArray array;
    for (const Points& points : all) array.Add(new PolyLine(MakeLine(points)));
    return array;
}

inline std::vector<Points> PointsOf(const PolyArray& array) {
    std::vector<Points> all;
    for (const PolyLine* line : array) all.push_back(PointsOf(*line));
    return all;
}

inline LineArray MakeLines(const std::vector<Line>& all) {
    LineArray lines(static_cast<int>(all.size()));
    for (const Line& line : all) lines.Append(line);
    return lines;
}

// The coordinates so that different bits are different texts: "1,2,3 4,5,6".
inline std::string Text(const Points& points) {
    std::string text;
    for (const Point3d& p : points) {
        char piece[100];
        std::snprintf(piece, sizeof piece, "%s%.17g,%.17g,%.17g", text.empty() ? "" : " ", p.x, p.y,
                      p.z);
        text += piece;
    }
    return text;
}
inline std::string Text(const PolyLine& line) {
    return Text(PointsOf(line));
}
// One polyline a row.
inline std::string Text(const std::vector<Points>& all) {
    std::string text;
    for (const Points& points : all) text += Text(points) + "\n";
    return text;
}
inline std::string Text(const PolyArray& array) {
    return Text(PointsOf(array));
}

// Edges without their direction, in order: the multiset that taking apart and joining keep.
inline std::vector<std::string> Edges(const std::vector<Points>& all) {
    std::vector<std::string> edges;
    for (const Points& points : all)
        for (std::size_t i = 1; i < points.size(); ++i) {
            std::string a = Text({points[i - 1]}), b = Text({points[i]});
            edges.push_back(std::min(a, b) + " - " + std::max(a, b));
        }
    std::sort(edges.begin(), edges.end());
    return edges;
}

// Numbers for made-up input, the same in every run-time.
class Numbers {
  public:
    explicit Numbers(unsigned seed) : engine_(seed) {}
    int Below(int n) { return static_cast<int>(engine_() % static_cast<unsigned>(n)); }
    bool OneIn(int n) { return Below(n) == 0; }
    double Between(double low, double high) {
        return low + (high - low) * (static_cast<double>(engine_()) / 4294967295.0);
    }
    template <class T>
    const T& One(const std::vector<T>& of) {
        return of[static_cast<std::size_t>(Below(static_cast<int>(of.size())))];
    }
    template <class T>
    void Shuffle(std::vector<T>& all) {
        for (std::size_t i = all.size(); i > 1; --i)
            std::swap(all[i - 1], all[static_cast<std::size_t>(Below(static_cast<int>(i)))]);
    }

  private:
    std::mt19937 engine_;
};

}  // namespace TamLib
