// The Booleans of polygons: edges classified by where they lie in the other polygon.
#include "GeomStructs/LineArray.h"
#include "GeomStructs/PolyArray.h"
#include "GeomStructs/PolyArrayParts.h"
#include "GeomStructs/SegmentIndex.h"

namespace TamLib {
namespace {

// Where pieces lie in the other polygon, as bits by the codes of `PolyLine::Inside`.
enum : unsigned { outside = 1u << 0, inside = 1u << 1, on = 1u << 2 };

// Adds the pieces of a noded ring that lie where `kept` says in the other one.
void AddPieces(const PolyLine& noded, const PolyLine& other, unsigned kept, LineArray& pieces) {
    const SegmentIndex polygon(other);
    for (std::uint32_t i = 0; i + 1 < noded.count; ++i) {
        const Point3d &start = noded.data[i], &end = noded.data[i + 1];
        const int where = polygon.MidPointInside(start, end);
        if ((kept >> where & 1u) != 0) pieces.Append(Line(start, end, /*order=*/true));
    }
}

PolyArray Combine(const PolyLine& here, const PolyLine& there, unsigned keptHere,
                  unsigned keptThere) {
    const PolyLine hereNodes = here.WithIntersections(there, nullptr, false, 0);
    const PolyLine thereNodes = there.WithIntersections(here, nullptr, false, 0);
    LineArray pieces(static_cast<int>(hereNodes.count + thereNodes.count));
    AddPieces(hereNodes, there, keptHere, pieces);
    AddPieces(thereNodes, here, keptThere, pieces);
    pieces.Tidy(false, true, false);
    return {pieces, false, 0.001};
}

PolyArray CopyOf(const PolyLine& line) {
    return line.count > 0 ? detail::ArrayOf(line) : PolyArray();
}

}  // namespace

PolyArray PolyLine::Union(const PolyLine& other) const {
    if (!other.IsClosed()) return CopyOf(*this);
    if (!IsClosed()) return CopyOf(other);
    return Combine(*this, other, outside | on, outside | on);
}

PolyArray PolyLine::Difference(const PolyLine& other) const {
    if (!other.IsClosed() || !IsClosed()) return CopyOf(*this);
    return Combine(*this, other, outside | on, inside);
}

PolyArray PolyLine::Intersection(const PolyLine& other) const {
    if (!other.IsClosed() || !IsClosed()) return PolyArray();
    return Combine(*this, other, inside | on, inside | on);
}

}  // namespace TamLib
