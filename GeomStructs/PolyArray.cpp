#include "GeomStructs/PolyArray.h"

#include <algorithm>
#include <memory>
#include <new>
#include <utility>

#include "GeomStructs/LineArray.h"
#include "GeomStructs/PolyArrayParts.h"

namespace TamLib {
namespace {

// Merges the sorted halves of `n` pointers, the left one first where both are equal.
void Merge(PolyLine** pointers, std::uint32_t half, std::uint32_t n, PolyLine** scratch) {
    std::copy(pointers, pointers + half, scratch);
    std::uint32_t left = 0, right = half, out = 0;
    while (left < half) {
        const bool takeRight =
            right < n && PolyArray::Compare(pointers + right, scratch + left) < 0;
        pointers[out++] = takeRight ? pointers[right++] : scratch[left++];
    }
}

// A merge sort that keeps the order of equal polylines. The standard one may not be asked:
// equality within a tolerance is not transitive.
void StableSort(PolyLine** pointers, std::uint32_t n, PolyLine** scratch) {
    if (n < 2) return;
    const std::uint32_t half = n / 2;
    StableSort(pointers, half, scratch);
    StableSort(pointers + half, n - half, scratch);
    Merge(pointers, half, n, scratch);
}

}  // namespace

PolyArray::PolyArray(int initialCapacity)
    : Array<PolyLine*>(static_cast<std::uint32_t>(std::max(initialCapacity, 0))) {}

PolyArray::PolyArray(const PolyArray& other) : PolyArray() {
    *this = other;
}

PolyArray::PolyArray(PolyArray&& other) noexcept
    : Array<PolyLine*>(std::move(other)), box(std::exchange(other.box, nullptr)) {}

PolyArray& PolyArray::operator=(const PolyArray& other) {
    if (this == &other) return *this;
    PolyArray copy(static_cast<int>(other.count));
    for (const PolyLine* const line : other)
        copy.Add(detail::MakeNew<PolyLine>(detail::kCopyLine, *line).release());
    Clear();
    bitwise = other.bitwise;
    compare = other.compare;
    sorted = other.sorted;
    unique = other.unique;
    increment = other.increment;
    SwapBlocks(copy);
    return *this;
}

PolyArray::~PolyArray() {
    PolyArray::Clear();
}

std::int32_t PolyArray::Clear() {
    for (std::uint32_t i = 0; i < count; ++i) delete data[i];
    delete box;
    box = nullptr;
    return Array<PolyLine*>::Clear();
}

std::int32_t PolyArray::Add(PolyLine* const& item) {
    std::unique_ptr<PolyLine> owned(item);
    const std::uint32_t before = count;
    const std::int32_t index = Array<PolyLine*>::Add(item);
    // A duplicate is declined; what stands here already must not be deleted with it.
    if (count > before || std::find(begin(), end(), owned.get()) != end())
        static_cast<void>(owned.release());
    return index;
}

void detail::SortPolyLines(Array<PolyLine*>& lines) {
    const Array<PolyLine*> scratch(lines.count);
    StableSort(lines.data, lines.count, scratch.data);
}

void PolyArray::Sort() {
    detail::SortPolyLines(*this);
    compare = &PolyArray::Compare;
    sorted = true;
}

std::int32_t PolyArray::Compare(PolyLine* const* a, PolyLine* const* b) {
    const PolyLine& first = **a;
    const PolyLine& second = **b;
    if (first.count == 0 || second.count == 0) return (first.count != 0) - (second.count != 0);
    return Point3d::CompareArray(first.data, second.data);
}

std::uint32_t PolyArray::Hash() const {
    std::uint32_t sum = 0;
    for (std::uint32_t i = 0; i < count; ++i) sum += (i + 1) * 17u * data[i]->Checksum(nullptr);
    return sum;
}

LineArray PolyArray::ToLines() const {
    std::uint32_t segments = 0;
    for (const PolyLine* const line : *this) segments += line->count < 2 ? 0 : line->count - 1;
    LineArray lines(static_cast<int>(segments));
    for (const PolyLine* const line : *this)
        for (std::uint32_t i = 1; i < line->count; ++i)
            lines.Append(Line(line->data[i - 1], line->data[i]));
    return lines;
}

PolyLine PolyArray::MakeSquare(const Point3d& point, double size) {
    PolyLine square(4);
    square.Append({point.x - size, point.y + size, point.z});
    square.Append({point.x + size, point.y + size, point.z});
    square.Append({point.x + size, point.y - size, point.z});
    square.Append({point.x - size, point.y - size, point.z});
    return square;
}

PolyLine PolyArray::MakeWedge(const Point3d& apex, const Point3d& from, double halfAngle,
                              double length) {
    const double t = Equals(apex, from) ? 0.0 : std::atan2(apex.x - from.x, apex.y - from.y);
    const auto corner = [&](double bearing) {
        return Point3d(apex.x + length * std::sin(bearing), apex.y + length * std::cos(bearing),
                       apex.z);
    };
    PolyLine wedge(3);
    wedge.Append(apex);
    wedge.Append(corner(t - halfAngle));
    wedge.Append(corner(t + halfAngle));
    return wedge;
}

}  // namespace TamLib
