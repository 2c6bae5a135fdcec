// Loose pieces and lines chained into one polyline, and two polylines joined.
#include <algorithm>
#include <limits>

#include "GeomStructs/LineArray.h"
#include "GeomStructs/PolyArray.h"
#include "GeomStructs/PolyLine.h"
#include "GeomStructs/VertexChain.h"

namespace TamLib {
namespace {

// The square of 1e-7, rounded so. From here on there is a gap between a line and the chain.
constexpr double kGap = 9.999999999999998e-15;

// In the order in which they are tried.
enum class Joint { endToFirst, endToLast, startToFirst, startToLast };

bool IsAtEnd(Joint joint) {
    return joint == Joint::endToFirst || joint == Joint::endToLast;
}

// A piece that is not part of the chain yet.
struct FreePiece {
    Point3d first;
    Point3d last;
    std::uint32_t index;  // in the array it comes from
};

struct Nearest {
    std::uint32_t place = 0;  // among the free pieces
    Joint joint = Joint::endToFirst;
    double squared = std::numeric_limits<double>::max();
};

// The free pieces, in their order.
class FreePieces {
  public:
    explicit FreePieces(std::uint32_t capacity) : pieces_(capacity) {
        pieces_.increment = std::max(capacity, 5u);  // removing gives no memory back
    }
    void Add(const FreePiece& piece) { pieces_.Append(piece); }
    bool IsEmpty() const { return pieces_.count == 0; }
    std::uint32_t Count() const { return pieces_.count; }
    const FreePiece& operator[](std::uint32_t place) const { return pieces_.data[place]; }
    void Remove(std::uint32_t place) { pieces_.Remove(static_cast<std::int32_t>(place), 1); }

    // The nearest piece to a chain, the first of equally near ones. Where no distance is a number
    // below the largest, the last piece by its first vertex.
    Nearest NearestTo(const detail::VertexChain& chain) const {
        Nearest best;
        best.place = pieces_.count - 1;
        const Point3d first = chain.First(), last = chain.Last();
        for (std::uint32_t place = pieces_.count; place-- > 0 && best.squared > 0.0;) {
            const FreePiece& piece = pieces_.data[place];
            const auto offer = [&](Joint joint, const Point3d& a, const Point3d& b) {
                const double squared = SquaredDistance(a, b);
                if (squared < best.squared) best = {place, joint, squared};
            };
            offer(Joint::endToFirst, last, piece.first);
            offer(Joint::endToLast, last, piece.last);
            offer(Joint::startToFirst, first, piece.first);
            offer(Joint::startToLast, first, piece.last);
        }
        return best;
    }

  private:
    struct Pieces : Array<FreePiece> {
        explicit Pieces(std::uint32_t n) {
            bitwise = true;
            Resize(n);
        }
    };
    Pieces pieces_;
};

int ChainCapacity(std::uint32_t pieces) {
    return static_cast<int>(static_cast<std::uint32_t>(pieces * 1.3));
}

void AppendFirstAgain(PolyLine& ring) {
    if (ring.count > 0 && Distance(ring.data[ring.count - 1], ring.data[0]) < 1e-07)
        ring.Append(Point3d(ring.data[0]));
}

constexpr double kFree = 1.0, kUsed = -1.0;

// Marks all pieces that have vertices as free, the others as used, and gives the free ones.
FreePieces MarkFree(PolyArray& pieces) {
    FreePieces free(pieces.count);
    for (std::uint32_t i = 0; i < pieces.count; ++i) {
        PolyLine& piece = *pieces.data[i];
        piece.maxPoint.x = piece.count > 0 ? kFree : kUsed;
        if (piece.count > 0) free.Add({piece.data[0], piece.data[piece.count - 1], i});
    }
    return free;
}

void JoinPiece(detail::VertexChain& chain, PolyLine& piece, Joint joint) {
    if (joint == Joint::endToLast || joint == Joint::startToFirst) piece.Reverse();
    if (IsAtEnd(joint)) {
        if (chain.Count() > 0 && Equals(chain.Last(), piece.data[0])) chain.PopBack();
        chain.Append(piece, false);
    } else {
        chain.Prepend(piece, false, false);
    }
    piece.maxPoint.x = kUsed;
}

void JoinLine(detail::VertexChain& chain, const FreePiece& line, const Nearest& nearest) {
    const bool byFirst = nearest.joint == Joint::endToFirst || nearest.joint == Joint::startToFirst;
    const Point3d& nearer = byFirst ? line.first : line.last;
    const Point3d& farther = byFirst ? line.last : line.first;
    const bool isGap = !(nearest.squared < kGap);
    if (IsAtEnd(nearest.joint)) {
        if (isGap) chain.PushBack(nearer);
        chain.PushBack(farther);
    } else {
        if (isGap) chain.PushFront(nearer);
        chain.PushFront(farther);
    }
}

}  // namespace

PolyLine::PolyLine(PolyArray& pieces) : PolyLine(ChainCapacity(pieces.count)) {
    FreePieces free = MarkFree(pieces);
    detail::VertexChain chain;
    const auto take = [&](std::uint32_t place, Joint joint) {
        JoinPiece(chain, *pieces.data[free[place].index], joint);
        free.Remove(place);
    };
    while (!free.IsEmpty()) {
        if (chain.Count() == 0) {
            take(free.Count() - 1, Joint::endToFirst);
        } else {
            const Nearest nearest = free.NearestTo(chain);
            take(nearest.place, nearest.joint);
        }
    }
    chain.CopyTo(*this);
    RemoveNearDuplicates(1e-07);
    AppendFirstAgain(*this);
}

PolyLine::PolyLine(LineArray& lines) : PolyLine(ChainCapacity(lines.count)) {
    if (lines.count == 0) return;
    detail::VertexChain chain;
    chain.PushBack(lines[-1].Start());
    chain.PushBack(lines[-1].End());
    lines.Remove(-1, 1);
    FreePieces free(lines.count);
    for (std::uint32_t i = 0; i < lines.count; ++i) {
        const Line& line = lines.data[i];
        if (line.valid != 0) free.Add({line.Start(), line.End(), i});
    }
    while (!free.IsEmpty()) {
        const Nearest nearest = free.NearestTo(chain);
        JoinLine(chain, free[nearest.place], nearest);
        lines.data[free[nearest.place].index].valid = 0;
        free.Remove(nearest.place);
    }
    chain.CopyTo(*this);
    AppendFirstAgain(*this);
}

PolyLine PolyLine::Join(const PolyLine& other) const {
    if (other.count == 0) return *this;
    if (count == 0) return other;
    const Point3d &first = data[0], &last = data[count - 1];
    const Point3d &otherFirst = other.data[0], &otherLast = other.data[other.count - 1];
    const auto follow = [](PolyLine line, const PolyLine& next, bool dropFirst) {
        const std::uint32_t added = next.count - (dropFirst ? 1 : 0);
        if (added == 0) return line;
        line.Resize(line.count + added);
        MoveElements(line.data + line.count, next.data + (dropFirst ? 1 : 0), added);
        line.count += added;
        line.sorted = false;
        return line;
    };
    const auto reversed = [](PolyLine line) {
        line.Reverse();
        return line;
    };
    if (Equals(first, otherFirst)) return follow(reversed(*this), other, true);
    if (Equals(last, otherFirst)) return follow(*this, other, true);
    if (Equals(last, otherLast)) return follow(*this, reversed(other), true);
    if (Equals(first, otherLast)) return follow(other, *this, true);
    return follow(*this, other, false);
}

}  // namespace TamLib
