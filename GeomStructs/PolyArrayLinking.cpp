// Loose lines linked into polylines.
#include <algorithm>
#include <cmath>
#include <memory>

#include "GeomStructs/LineArray.h"
#include "GeomStructs/PointGrid.h"
#include "GeomStructs/PolyArray.h"
#include "GeomStructs/PolyArrayParts.h"
#include "GeomStructs/VertexChain.h"

namespace TamLib {
namespace {

constexpr double kTight = 1e-7;       // ends that are the same but for rounding
constexpr double kTightUntil = 1e-6;  // a tolerance from here on has a tight pass ahead of it
constexpr std::uint32_t kGrowth = 20;

// Follows lines from end to end. The ends stand in one row, start and end of line i at 2i and
// 2i + 1, so that the order of ends is that of lines, and of a line's start before its end.
class Linker {
  public:
    // `lines` are tidied.
    Linker(PolyArray& result, const LineArray& lines, bool use3d, double tol)
        : result_(result),
          lines_(lines.count),
          use3d_(use3d),
          ends_(EndsOf(lines)),
          used_(lines.count),
          tight_{kTight, {ends_, kTight, use3d}},
          loose_{tol, {ends_, tol, use3d}},
          skipTight_(tol < kTightUntil),
          remaining_(lines.count) {
        for (std::uint32_t i = 0; i < lines_; ++i)
            if (!IsUsable(ends_.data[2 * i], ends_.data[2 * i + 1])) Use(i);
    }

    void Run() {
        for (std::uint32_t first = 0; first < lines_; ++first)
            if (!used_.data[first]) Follow(first);
    }

  private:
    struct Pass {
        double tolerance;
        detail::PointGrid grid;
    };
    enum class Side { tail, head };

    static Array<Point3d> EndsOf(const LineArray& lines) {
        Array<Point3d> ends(2 * lines.count);
        for (const Line& line : lines) {
            ends.data[ends.count++] = line.Start();
            ends.data[ends.count++] = line.End();
        }
        return ends;
    }

    bool IsUsable(const Point3d& start, const Point3d& end) const {
        if (!Equals2d(start, end)) return true;
        return use3d_ && std::fabs(end.z - start.z) >= 0.0001;
    }

    void Use(std::uint32_t line) {
        used_.data[line] = true;
        for (Pass* const pass : {&tight_, &loose_}) {
            pass->grid.Remove(2 * line);
            pass->grid.Remove(2 * line + 1);
        }
        --remaining_;
    }

    void Follow(std::uint32_t first) {
        chain_.Clear();
        chain_.PushBack(ends_.data[2 * first]);
        chain_.PushBack(ends_.data[2 * first + 1]);
        Use(first);
        if (skipTight_ || !ExtendBoth(first, tight_)) ExtendBoth(first, loose_);
        Store(chain_.IsClosed() ? detail::kLinkClosedLine
              : remaining_ == 0 ? detail::kLinkLastLine
                                : detail::kLinkOpenLine);
    }

    bool ExtendBoth(std::uint32_t first, Pass& pass) {
        return Extend(first, pass, Side::tail) || Extend(first, pass, Side::head);
    }

    // True when nothing can be added any more: the chain is closed, or no line is left.
    bool Extend(std::uint32_t first, Pass& pass, Side side) {
        for (std::uint32_t line = first; remaining_ > 0;) {
            const Point3d place = side == Side::tail ? chain_.Last() : chain_.First();
            const std::uint32_t found = pass.grid.FirstFrom(
                place, 2 * ((line + 1) % lines_),
                [&](std::uint32_t end) { return Meets(ends_.data[end], place, pass.tolerance); });
            if (found == detail::PointGrid::kNone) return false;
            line = found / 2;
            Use(line);
            const Point3d& other = ends_.data[found ^ 1u];
            if (side == Side::tail) {
                chain_.PushBack(other);
            } else {
                chain_.PushFront(other);
            }
            if (chain_.IsClosed()) return true;
        }
        return true;
    }

    bool Meets(const Point3d& end, const Point3d& place, double tolerance) const {
        return std::fabs(end.x - place.x) < tolerance && std::fabs(end.y - place.y) < tolerance &&
               (!use3d_ || std::fabs(end.z - place.z) < tolerance);
    }

    void Store(std::int32_t line) {
        std::unique_ptr<PolyLine> stored = detail::MakeNew<PolyLine>(line, 0);
        stored->increment = kGrowth;
        chain_.CopyTo(*stored);
        detail::Append(result_, std::move(stored));
    }

    PolyArray& result_;
    std::uint32_t lines_;
    bool use3d_;
    Array<Point3d> ends_;
    Array<bool> used_;
    Pass tight_, loose_;
    bool skipTight_;
    std::uint32_t remaining_;
    detail::VertexChain chain_;
};

}  // namespace

PolyArray::PolyArray(const LineArray& lines, bool use3d, double tol) : PolyArray() {
    LineArray tidied(lines);
    tidied.Tidy(false, true, false);
    if (tidied.count != 0) Linker(*this, tidied, use3d, tol).Run();
}

}  // namespace TamLib
