// VertexChain: a run of vertices that grows at both ends, in constant time for a vertex, while a
// polyline grows at its end alone.
#pragma once

#include <algorithm>
#include <cstdint>

#include "GeomStructs/PolyLine.h"

namespace TamLib::detail {

class VertexChain {
  public:
    std::uint32_t Count() const { return end_ - begin_; }
    const Point3d* Data() const { return block_.data + begin_; }
    const Point3d& operator[](std::uint32_t index) const { return block_.data[begin_ + index]; }
    const Point3d& First() const { return block_.data[begin_]; }
    const Point3d& Last() const { return block_.data[end_ - 1]; }
    // As PolyLine::IsClosed.
    bool IsClosed() const { return Count() >= 2 && Equals(Last(), First()); }

    void Clear() { begin_ = end_ = block_.capacity / 2; }
    // The vertex is no part of the chain.
    void PushBack(const Point3d& vertex) {
        if (end_ == block_.capacity) Grow();
        block_.data[end_++] = vertex;
    }
    void PushFront(const Point3d& vertex) {
        if (begin_ == 0) Grow();
        block_.data[--begin_] = vertex;
    }
    void PopBack() { --end_; }

    // Adds the vertices of `line`, in order or in `reversed` order, behind the last one.
    void Append(const PolyLine& line, bool reversed) {
        for (std::uint32_t i = 0; i < line.count; ++i)
            PushBack(line.data[reversed ? line.count - 1 - i : i]);
    }
    // The same ahead of the first one, to which the vertex at the joint is not added when it is to
    // be dropped.
    void Prepend(const PolyLine& line, bool reversed, bool dropJoint) {
        for (std::uint32_t i = dropJoint ? 1 : 0; i < line.count; ++i)
            PushFront(line.data[reversed ? i : line.count - 1 - i]);
    }

    // Gives `line` these vertices in place of its own; its settings stay.
    void CopyTo(PolyLine& line) const {
        line.Allocate(Count());
        std::copy(Data(), Data() + Count(), line.data);
        line.count = Count();
    }

  private:
    // At least as much room as there are vertices, half of it on each side.
    void Grow() {
        const std::uint32_t count = Count(), spare = std::max(count / 2, 16u);
        Array<Point3d> grown;
        grown.bitwise = true;
        grown.Resize(count + 2 * spare);
        std::copy(Data(), Data() + count, grown.data + spare);
        block_.SwapBlocks(grown);
        begin_ = spare;
        end_ = spare + count;
    }

    struct PlainPoints : Array<Point3d> {
        PlainPoints() { bitwise = true; }
    };
    PlainPoints block_;  // `count` stays 0
    std::uint32_t begin_ = 0;
    std::uint32_t end_ = 0;
};

}  // namespace TamLib::detail
