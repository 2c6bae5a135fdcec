// Chaining and taking apart written down step by step on plain vectors: what the library's forms
// are compared with, bit for bit.
#pragma once

#include <algorithm>
#include <cmath>
#include <vector>

#include "tests/GeomStructs/PolyArrayShapes.h"

namespace TamLib {

// The chain of pieces with vertices, before near duplicates go and the ring is closed.
inline Points ChainPlainly(std::vector<Points> pieces) {
    pieces.erase(std::remove_if(pieces.begin(), pieces.end(),
                                [](const Points& piece) { return piece.empty(); }),
                 pieces.end());
    if (pieces.empty()) return {};
    Points chain = pieces.back();
    pieces.pop_back();
    while (!pieces.empty()) {
        std::size_t best = 0;
        int how = -1;
        double nearest = 1.7976931348623157e308;
        for (std::size_t i = pieces.size(); i-- > 0;) {
            const double d[] = {SquaredDistance(chain.back(), pieces[i].front()),
                                SquaredDistance(chain.back(), pieces[i].back()),
                                SquaredDistance(chain.front(), pieces[i].front()),
                                SquaredDistance(chain.front(), pieces[i].back())};
            for (int k = 0; k < 4; ++k)
                if (d[k] < nearest) {
                    nearest = d[k];
                    best = i;
                    how = k;
                }
        }
        Points piece = pieces[best];
        pieces.erase(pieces.begin() + static_cast<std::ptrdiff_t>(best));
        if (how == 1 || how == 2) std::reverse(piece.begin(), piece.end());
        if (how < 2) {
            if (Equals(chain.back(), piece.front())) chain.pop_back();
            chain.insert(chain.end(), piece.begin(), piece.end());
        } else {
            chain.insert(chain.begin(), piece.begin(), piece.end());
        }
    }
    return chain;
}

// The same with lines, which may be turned and leave their gaps open; before the ring is closed.
inline Points ChainLinesPlainly(std::vector<Line> lines) {
    if (lines.empty()) return {};
    Points chain{lines.back().Start(), lines.back().End()};
    lines.pop_back();
    for (;;) {
        std::size_t best = 0;
        int how = -1;
        double nearest = 1.7976931348623157e308;
        for (std::size_t i = lines.size(); i-- > 0;) {
            if (lines[i].valid == 0) continue;
            const double d[] = {SquaredDistance(chain.back(), lines[i].Start()),
                                SquaredDistance(chain.back(), lines[i].End()),
                                SquaredDistance(chain.front(), lines[i].Start()),
                                SquaredDistance(chain.front(), lines[i].End())};
            for (int k = 0; k < 4; ++k)
                if (d[k] < nearest) {
                    nearest = d[k];
                    best = i;
                    how = k;
                }
        }
        if (how < 0) return chain;
        Line& line = lines[best];
        line.valid = 0;
        if (how == 1 || how == 3) line.Reverse();
        const auto add = [&](const Point3d& p) {
            chain.insert(how < 2 ? chain.end() : chain.begin(), p);
        };
        if (nearest >= 9.999999999999998e-15) add(line.Start());
        add(line.End());
    }
}

// Takes `line` apart and leaves the remainder in it.
inline void SplitLoopsPlainly(Points& line, std::vector<Points>& loops) {
    for (std::size_t i = 0; i < line.size(); ++i)
        for (std::size_t j = i + 1; j + 2 <= line.size();) {
            if (!(std::fabs(line[i].x - line[j].x) < 0.0001 &&
                  std::fabs(line[i].y - line[j].y) < 0.0001)) {
                ++j;
                continue;
            }
            const auto at = [&](std::size_t k) {
                return line.begin() + static_cast<std::ptrdiff_t>(k);
            };
            Points loop(at(i), at(j + 1));
            SplitLoopsPlainly(loop, loops);
            line.erase(at(i), at(j));
            j = i + 1;
        }
    loops.push_back(line);
}

// Thinned vertices; at least three after near duplicates have gone.
inline Points SimplifyPlainly(const Points& v, double deviation, double maxLength) {
    Points kept{v[0]};
    std::size_t anchor = 0;
    for (std::size_t j = 2; j < v.size(); ++j) {
        const std::size_t mid = anchor + 1, last = j - 1;
        const double a0 = Angle(v[anchor], v[mid]), a1 = Angle(v[mid], v[j]);
        const double a2 = Angle(v[last], v[j]);
        const double turn = std::fabs(a2 - a0);
        const double side = std::fabs(std::sin(a1 - a0) * Distance2d(v[mid], v[j]));
        const Line profile({0, 0, 0}, {v[mid].z - v[anchor].z, Distance2d(v[mid], v[anchor]), 0});
        const double rise =
            profile.LineDistance2d({v[last].z - v[mid].z, Distance2d(v[last], v[mid]), 0}, nullptr);
        const bool goes = !(side > deviation) && !(rise > deviation) &&
                          !(turn > 3.141592653589793 * 0.5) &&
                          (!(maxLength > 0.0) || !(Distance(v[anchor], v[mid]) > maxLength));
        if (goes) continue;
        kept.push_back(v[j - 1]);
        anchor = j - 1;
    }
    kept.push_back(v.back());
    return kept;
}

}  // namespace TamLib
