// Chains joined by the index of their ends against the plain form, which asks each for each: the
// same chains in the same order with the same corners, for lines on a grid, for ends on both sides
// of what meets, and for chains of very different sizes.
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>
#include <vector>

#include "host/database/ChainJoin.h"

namespace host::database {
namespace {

void plainJoin(std::vector<Corners>& chains) {
    for (std::size_t i = 0; i < chains.size(); ++i) {
        for (std::size_t j = 0; j < chains.size(); ++j) {
            Corners &a = chains[i], &b = chains[j];
            const double size = std::max(sizeOf(a), sizeOf(b));
            if (i == j || meet(a.front(), a.back(), size) || meet(b.front(), b.back(), size))
                continue;  // rings are whole
            const auto meets = [&](const AcGePoint3d& end) {
                return meet(end, b.front(), size) || meet(end, b.back(), size);
            };
            if (!meets(a.back()) && meets(a.front())) std::reverse(a.begin(), a.end());
            if (!meets(a.back())) continue;
            if (!meet(a.back(), b.front(), size)) std::reverse(b.begin(), b.end());
            a.insert(a.end(), b.begin() + 1, b.end());
            chains.erase(chains.begin() + static_cast<std::ptrdiff_t>(j));
            if (j < i) --i;
            j = static_cast<std::size_t>(-1);  // from the first one again
        }
    }
}

bool areSame(const std::vector<Corners>& a, const std::vector<Corners>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const Corners& p, const Corners& q) {
                          return std::equal(p.begin(), p.end(), q.begin(), q.end(),
                                            [](const AcGePoint3d& u, const AcGePoint3d& v) {
                                                return u.x == v.x && u.y == v.y && u.z == v.z;
                                            });
                      });
}

// Points of a small grid, moved by parts of what may lie between ends that meet.
AcGePoint3d gridPoint(double spacing, double origin) {
    const auto at = [&](int most) {
        const double jitter = *rc::gen::element(0.0, 0.0, 0.0, 0.4, 0.7, 1.1, 3.0);
        return origin + spacing * (*rc::gen::inRange(0, most) + 1e-6 * jitter);
    };
    const double x = at(6), y = at(6);
    return {x, y, at(2)};
}

RC_GTEST_PROP(ChainJoin, GivesWhatThePlainFormGives, ()) {
    const double origin = *rc::gen::element(0.0, 6672000.0);
    std::vector<Corners> chains(*rc::gen::inRange<std::size_t>(0, 40));
    for (Corners& chain : chains) {
        // Some chains are a thousandth or a millionth of the others.
        const double spacing = *rc::gen::element(1.0, 1.0, 1.0, 1e-3, 1e-6);
        const int count = *rc::gen::inRange(2, 6);
        for (int i = 0; i < count; ++i) {
            const AcGePoint3d point = gridPoint(spacing, origin);
            if (chain.empty() || point.distanceTo(chain.back()) > 0.0) chain.push_back(point);
        }
        while (chain.size() < 2) chain.push_back(chain.back() + AcGeVector3d(spacing, 0, 0));
    }
    std::vector<Corners> expected = chains;
    plainJoin(expected);
    joinChains(chains);
    RC_ASSERT(areSame(expected, chains));
}

RC_GTEST_PROP(ChainJoin, PutsShuffledRingsTogether, ()) {
    std::vector<Corners> lines;
    const int rings = *rc::gen::inRange(1, 4);
    for (int ring = 0; ring < rings; ++ring) {
        const int count = *rc::gen::inRange(3, 60);
        const auto corner = [&](int i) {
            const double angle = 6.283185307179586 * (i % count) / count;
            return AcGePoint3d(25496000 + 100 * ring + 40 * std::cos(angle),
                               6672000 + 40 * std::sin(angle), 12);
        };
        for (int i = 0; i < count; ++i) {
            lines.push_back({corner(i), corner(i + 1)});
            if (*rc::gen::arbitrary<bool>()) std::swap(lines.back()[0], lines.back()[1]);
        }
    }
    for (std::size_t i = lines.size(); i > 1; --i)
        std::swap(lines[i - 1], lines[*rc::gen::inRange<std::size_t>(0, i)]);
    std::vector<Corners> expected = lines;
    plainJoin(expected);
    joinChains(lines);
    RC_ASSERT(areSame(expected, lines));
    RC_ASSERT(lines.size() == static_cast<std::size_t>(rings));
}

}  // namespace
}  // namespace host::database
