// PolyLine taken apart: into simple loops, and where another one cuts it.
#include <algorithm>
#include <memory>
#include <new>
#include <utility>

#include "GeomStructs/PointGrid.h"
#include "GeomStructs/PolyArrayParts.h"
#include "GeomStructs/PolyLine.h"
#include "tam/TamExceptions.h"

namespace TamLib {
namespace {

std::unique_ptr<PolyLine> NewPolyLine() {
    std::unique_ptr<PolyLine> line(new (std::nothrow) PolyLine(0));
    if (line == nullptr) throw TamExpNoMem(L"", __LINE__, L"GeomStructs/PolyLine");
    return line;
}

// For each vertex the next one that equals it in plan, `count` when there is none.
Array<std::uint32_t> Returns(const PolyLine& line) {
    Array<std::uint32_t> returns(line.count);
    detail::PointGrid grid(line, 0.0001, false);
    for (std::uint32_t i = 0; i < line.count; ++i) {
        grid.Remove(i);  // what is left stands behind
        const Point3d& vertex = line.data[i];
        const std::uint32_t found = grid.FirstFrom(
            vertex, i, [&](std::uint32_t k) { return Equals2d(vertex, line.data[k]); });
        returns.data[returns.count++] = std::min(found, line.count);
    }
    return returns;
}

// Takes a line apart into loops. A stretch is walked from vertex to vertex; where it returns to a
// vertex further on, the stretch up to there is walked first, and the walk goes on there. So every
// vertex is looked at once in each stretch that it ends or begins, and nothing is moved.
class LoopSplitter {
  public:
    LoopSplitter(const PolyLine& line, PolyArray& loops)
        : line_(line), loops_(loops), returns_(Returns(line)), kept_(line.count) {
        stretches_.increment = 1024;
    }

    // The vertices that remain; the array belongs to this object.
    const Array<std::uint32_t>& Run() {
        stretches_.Append({0, line_.count - 1, 0});
        for (;;) {
            Stretch& stretch = stretches_.data[stretches_.count - 1];
            const std::uint32_t at = stretch.current;
            if (at > stretch.last) {
                if (stretches_.count == 1) return kept_;
                AddLoop(stretch.kept);
                --stretches_.count;
            } else if (returns_.data[at] < stretch.last) {
                stretch.current = returns_.data[at];
                stretches_.Append({at, returns_.data[at], kept_.count});
            } else {
                kept_.Append(at);
                ++stretch.current;
            }
        }
    }

  private:
    struct Stretch {
        std::uint32_t current;  // vertex
        std::uint32_t last;     // vertex, itself not a place to return to
        std::uint32_t kept;     // where its own begin among those kept
    };

    void AddLoop(std::uint32_t from) {
        std::unique_ptr<PolyLine> loop = NewPolyLine();
        loop->increment = 10;
        loop->Allocate(kept_.count - from);
        for (; loop->count < loop->capacity; ++loop->count)
            loop->data[loop->count] = line_.data[kept_.data[from + loop->count]];
        kept_.count = from;
        detail::Append(loops_, std::move(loop));
    }

    const PolyLine& line_;
    PolyArray& loops_;
    Array<std::uint32_t> returns_;
    Array<std::uint32_t> kept_;
    Array<Stretch> stretches_;
};

}  // namespace

PolyArray PolyLine::SplitLoops() {
    PolyArray loops;
    std::unique_ptr<PolyLine> remainder = NewPolyLine();
    if (count == 0) {
        *remainder = *this;
        loops.Add(remainder.release());
        return loops;
    }
    LoopSplitter splitter(*this, loops);
    const Array<std::uint32_t>& kept = splitter.Run();
    PolyLine rest(*this);
    for (std::uint32_t i = 0; i < kept.count; ++i) rest.data[i] = data[kept.data[i]];
    rest.count = kept.count;
    *remainder = rest;
    detail::Append(loops, std::move(remainder));
    SwapBlocks(rest);
    return loops;
}

void PolyLine::SplitSelfCrossings(PolyArray& result) const {
    PolyArray loops = WithIntersections(*this, nullptr, false, 0).SplitLoops();
    detail::MoveAll(loops, result);
}

void PolyLine::RemoveLoops() {
    PolyArray loops;
    SplitSelfCrossings(loops);
    SwapBlocks(*loops[0]);
}

void PolyLine::SplitAt(PolyArray& result, const PolyLine& cutter) const {
    Array<int> hits;
    const PolyLine noded = WithIntersections(cutter, &hits, true, 0);
    PolyArray parts(static_cast<int>(hits.count) + 1);
    int from = 0;
    const auto addUpTo = [&](int to) {
        std::unique_ptr<PolyLine> part = NewPolyLine();
        noded.MakeSubLine(part.get(), from, to);
        parts.Add(part.release());
        from = to;
    };
    for (const int hit : hits) addUpTo(hit);
    if (hits.count == 0) {
        std::unique_ptr<PolyLine> whole = NewPolyLine();
        *whole = *this;
        parts.Add(whole.release());
    } else {
        addUpTo(static_cast<int>(noded.count) - 1);
        if (IsClosed()) {
            *parts[-1] = parts[-1]->Join(*parts[0]);
            delete parts[0];
            parts.Remove(0, 1);
        }
    }
    detail::MoveAll(parts, result);
}

}  // namespace TamLib
