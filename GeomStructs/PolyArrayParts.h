// What the sources of PolyArray share: making objects for it, and its order.
#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <new>
#include <utility>

#include "GeomStructs/PolyArray.h"
#include "tam/TamExceptions.h"

namespace TamLib::detail {

// The source lines that TamExpNoMem reports.
constexpr std::int32_t kCopyLine = 120;
constexpr std::int32_t kSelectionLine = 200;
constexpr std::int32_t kReadLine = 300;
constexpr std::int32_t kLinkClosedLine = 470;
constexpr std::int32_t kLinkOpenLine = 510;
constexpr std::int32_t kLinkLastLine = 543;
constexpr std::int32_t kCloseGapsLine = 615;

// A new object from the arguments of a constructor. TamExpNoMem, with an empty message, from
// L"GeomStructs/PolyArray" and `line`, without memory for it; that for its elements is Array's.
template <class T, class... Arguments>
std::unique_ptr<T> MakeNew(std::int32_t line, Arguments&&... arguments) {
    std::unique_ptr<T> made(new (std::nothrow) T(std::forward<Arguments>(arguments)...));
    if (made == nullptr) throw TamExpNoMem(L"", line, L"GeomStructs/PolyArray");
    return made;
}

// Moves the polylines of `from` behind those of `to`.
inline void MoveAll(Array<PolyLine*>& from, Array<PolyLine*>& to) {
    if (to.capacity - to.count < from.count) to.Resize(to.count + from.count);
    for (PolyLine* const line : from) to.Append(line);
    Array<PolyLine*> none;
    from.SwapBlocks(none);
}

// Gives the polylines of `from` to `array`, in place of its own. Nothing is promised
// of their order.
inline void Replace(PolyArray& array, PolyArray& from) {
    array.Clear();
    array.SwapBlocks(from);
    array.sorted = array.unique = false;
}

// An array of a copy of `line`.
inline PolyArray ArrayOf(const PolyLine& line) {
    PolyArray array;
    array.Add(MakeNew<PolyLine>(kCopyLine, line).release());
    return array;
}

// Deletes the polylines of which `drop(line)` is true; the others keep their order. Without a loss
// when `drop` raises.
template <class Drop>
void DropIf(Array<PolyLine*>& lines, const Drop& drop) {
    std::uint32_t kept = 0;
    for (std::uint32_t i = 0; i < lines.count; ++i)
        if (!drop(*lines.data[i])) std::swap(lines.data[kept++], lines.data[i]);
    while (lines.count > kept) delete lines.data[--lines.count];
}

// Adds a polyline behind the last one. An array that is full doubles: steps of `increment` would
// copy the pointers of a long one over and over.
inline void Append(PolyArray& array, std::unique_ptr<PolyLine> line) {
    if (array.count == array.capacity) array.Resize(std::max(2 * array.count, array.increment));
    array.Append(line.release());
}

// Orders polylines as PolyArray::Sort does.
void SortPolyLines(Array<PolyLine*>& lines);

}  // namespace TamLib::detail
