#include "host/database/ChainJoin.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <deque>
#include <limits>
#include <unordered_map>
#include <utility>

namespace host::database {
namespace {

constexpr double kInfinite = std::numeric_limits<double>::infinity();

class Box {
  public:
    void add(const AcGePoint3d& p) {
        low_ = {std::min(low_.x, p.x), std::min(low_.y, p.y), std::min(low_.z, p.z)};
        high_ = {std::max(high_.x, p.x), std::max(high_.y, p.y), std::max(high_.z, p.z)};
    }
    void add(const Box& other) {
        add(other.low_);
        add(other.high_);
    }
    const AcGePoint3d& low() const { return low_; }
    AcGeVector3d sides() const { return high_ - low_; }

  private:
    AcGePoint3d low_{kInfinite, kInfinite, kInfinite};
    AcGePoint3d high_{-kInfinite, -kInfinite, -kInfinite};
};

// A chain that is turned round without moving its corners. Its size is computed when it matters:
// the box has it between half its longest side and its diagonal.
class OpenChain {
  public:
    explicit OpenChain(Corners corners) : corners_(corners.begin(), corners.end()) {
        for (const AcGePoint3d& corner : corners) box_.add(corner);
    }

    const AcGePoint3d& front() const { return turned_ ? corners_.back() : corners_.front(); }
    const AcGePoint3d& back() const { return turned_ ? corners_.front() : corners_.back(); }
    const Box& box() const { return box_; }

    void turn() {
        turned_ = !turned_;
        size_ = kUnknown;
    }

    // What stands behind the front of another one.
    void append(const OpenChain& other) {
        const std::size_t count = other.corners_.size();
        for (std::size_t i = 1; i < count; ++i) {
            const AcGePoint3d& corner = other.corners_[other.turned_ ? count - 1 - i : i];
            if (turned_) {
                corners_.push_front(corner);
            } else {
                corners_.push_back(corner);
            }
        }
        box_.add(other.box_);
        size_ = kUnknown;
    }

    Corners corners() const {
        return turned_ ? Corners(corners_.rbegin(), corners_.rend())
                       : Corners(corners_.begin(), corners_.end());
    }

    double leastSize() const {
        const AcGeVector3d sides = box_.sides();
        return 0.49 * std::max({sides.x, sides.y, sides.z});
    }
    double mostSize() const { return 1.01 * box_.sides().length(); }
    double size() const {
        if (size_ == kUnknown)
            for (const AcGePoint3d& corner : corners_)
                size_ = std::max(size_, corner.distanceTo(front()));
        return size_;
    }

  private:
    static constexpr double kUnknown = -1.0;

    std::deque<AcGePoint3d> corners_;
    bool turned_ = false;
    Box box_;
    mutable double size_ = kUnknown;
};

// Whether points meet, of the larger of two chains.
bool meetAs(const AcGePoint3d& p, const AcGePoint3d& q, const OpenChain& a, const OpenChain& b) {
    if (meet(p, q, std::max(a.leastSize(), b.leastSize()))) return true;
    if (!meet(p, q, std::max(a.mostSize(), b.mostSize()))) return false;
    return meet(p, q, std::max(a.size(), b.size()));
}

bool isRing(const OpenChain& chain, const OpenChain& other) {
    return meetAs(chain.front(), chain.back(), chain, other);
}

// Whether a point of `a` meets an end of `b`.
bool meetsEnd(const AcGePoint3d& point, const OpenChain& a, const OpenChain& b) {
    return meetAs(point, b.front(), a, b) || meetAs(point, b.back(), a, b);
}

// Ends by place, in cells wider than any two that meet are apart.
class Ends {
  public:
    explicit Ends(const Box& all) : low_(all.low()), cell_(2 * kMeeting * all.sides().length()) {}

    void add(const AcGePoint3d& end, std::size_t chain) {
        cells_[keyOf(end, 0, 0, 0)].push_back(chain);
    }
    void remove(const AcGePoint3d& end, std::size_t chain) {
        std::vector<std::size_t>& there = cells_[keyOf(end, 0, 0, 0)];
        there.erase(std::find(there.begin(), there.end(), chain));
    }
    template <class Take>
    void forEachNear(const AcGePoint3d& point, const Take& take) const {
        for (int dx = -1; dx <= 1; ++dx)
            for (int dy = -1; dy <= 1; ++dy)
                for (int dz = -1; dz <= 1; ++dz) {
                    const auto found = cells_.find(keyOf(point, dx, dy, dz));
                    if (found == cells_.end()) continue;
                    for (const std::size_t chain : found->second) take(chain);
                }
    }

  private:
    // There are half a million cells along an axis; numbers too large to be told apart share one.
    std::uint64_t at(double offset, int step) const {
        const double cells = std::floor(offset / cell_);
        return static_cast<std::uint64_t>((std::isfinite(cells) ? cells : 0.0) + 1.0 + step);
    }
    std::uint64_t keyOf(const AcGePoint3d& p, int dx, int dy, int dz) const {
        const AcGeVector3d from = p - low_;
        return (at(from.x, dx) << 42U) | (at(from.y, dy) << 21U) | at(from.z, dz);
    }

    AcGePoint3d low_;
    double cell_;
    std::unordered_map<std::uint64_t, std::vector<std::size_t>> cells_;
};

class Joining {
  public:
    Joining(std::vector<OpenChain>& chains, const Box& all)
        : chains_(chains), gone_(chains.size()), ends_(all) {
        for (std::size_t i = 0; i < chains.size(); ++i)
            if (!isRing(chains[i], chains[i])) enter(i);
    }

    void run() {
        for (std::size_t i = 0; i < chains_.size(); ++i) {
            if (gone_[i]) continue;
            while (!isRing(chains_[i], chains_[i])) {
                const std::size_t partner = firstPartner(i);
                if (partner == kNone) break;
                take(i, partner);
            }
        }
    }
    bool isGone(std::size_t chain) const { return gone_[chain]; }

  private:
    static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

    void enter(std::size_t i) {
        ends_.add(chains_[i].front(), i);
        ends_.add(chains_[i].back(), i);
    }
    void leave(std::size_t i) {
        ends_.remove(chains_[i].front(), i);
        ends_.remove(chains_[i].back(), i);
    }

    std::size_t firstPartner(std::size_t i) const {
        const OpenChain& a = chains_[i];
        std::size_t first = kNone;
        const auto consider = [&](std::size_t j) {
            if (j == i || j >= first) return;
            const OpenChain& b = chains_[j];
            if (isRing(a, b) || isRing(b, a)) return;
            if (meetsEnd(a.back(), a, b) || meetsEnd(a.front(), a, b)) first = j;
        };
        ends_.forEachNear(a.back(), consider);
        ends_.forEachNear(a.front(), consider);
        return first;
    }

    void take(std::size_t i, std::size_t partner) {
        OpenChain &a = chains_[i], &b = chains_[partner];
        leave(i);
        leave(partner);
        // Decided before either is turned, which changes its size.
        const bool atBack = meetsEnd(a.back(), a, b);
        const bool asItRuns = meetAs(atBack ? a.back() : a.front(), b.front(), a, b);
        if (!atBack) a.turn();
        if (!asItRuns) b.turn();
        a.append(b);
        gone_[partner] = true;
        if (!isRing(a, a)) enter(i);
    }

    std::vector<OpenChain>& chains_;
    std::vector<bool> gone_;
    Ends ends_;
};

}  // namespace

double sizeOf(const Corners& corners) {
    double size = 0.0;
    for (const AcGePoint3d& corner : corners)
        size = std::max(size, corner.distanceTo(corners.front()));
    return size;
}

bool meet(const AcGePoint3d& a, const AcGePoint3d& b, double size) {
    return a.distanceTo(b) <= kMeeting * size;
}

void joinChains(std::vector<Corners>& chains) {
    std::vector<OpenChain> all;
    all.reserve(chains.size());
    Box box;
    for (Corners& corners : chains) {
        all.emplace_back(std::move(corners));
        box.add(all.back().box());
    }
    Joining joining(all, box);
    joining.run();
    chains.clear();
    for (std::size_t i = 0; i < all.size(); ++i)
        if (!joining.isGone(i)) chains.push_back(all[i].corners());
}

}  // namespace host::database
