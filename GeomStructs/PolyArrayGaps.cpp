// Gaps between the ends of polylines closed.
#include <algorithm>
#include <cmath>
#include <functional>
#include <memory>

#include "GeomEnts/Pi.h"
#include "GeomStructs/PointGrid.h"
#include "GeomStructs/PolyArray.h"
#include "GeomStructs/PolyArrayParts.h"
#include "GeomStructs/VertexChain.h"

namespace TamLib {
namespace {

enum class Side { tail, head };

// An end of a polyline, and the vertex that it comes from.
struct LooseEnd {
    Point3d place;
    Point3d inward;
};

LooseEnd EndOf(const Point3d* vertices, std::uint32_t count, Side side) {
    return side == Side::tail ? LooseEnd{vertices[count - 1], vertices[count - 2]}
                              : LooseEnd{vertices[0], vertices[1]};
}

// Ends that are exactly the same count too, which those with infinite coordinates are not
// within a tolerance.
bool IsRing(const PolyLine& line) {
    const Point3d &first = line.data[0], &last = line.data[line.count - 1];
    return line.IsClosed() || (first.x == last.x && first.y == last.y && first.z == last.z);
}

// When an end may be joined to another one.
class JoinRule {
  public:
    JoinRule(double angle, double length, double width, double zTol, const PolyLine* region)
        : angle_(angle * kPi / 180.0),
          wedgeLength_(length / std::cos(angle_)),
          width_(width),
          zTol_(zTol),
          reach_(std::max(width, wedgeLength_) + 0.03),
          region_(region) {}

    // What lies this far off, or farther, is never joined. It is a little more than what is
    // compared with, whose differences are rounded.
    double Reach() const { return std::max(reach_ * 1.000001, 0.0001); }

    // The figures around an end that are the same for all that come near it.
    struct Surroundings {
        LooseEnd end;
        PolyLine square, wedge;
    };
    Surroundings Around(const LooseEnd& end) const {
        return {end, Closed(PolyArray::MakeSquare(end.place, width_)), WedgeOf(end)};
    }

    bool Accepts(const Surroundings& around, const LooseEnd& other) const {
        const Point3d& place = around.end.place;
        const Point3d& q = other.place;
        if (std::fabs(q.x - place.x) > reach_ || std::fabs(q.y - place.y) > reach_) return false;
        if (!(std::fabs(q.z - place.z) < zTol_)) return false;
        if (region_ != nullptr && !Holds(*region_, q)) return false;
        return Holds(around.square, q) || Holds(around.wedge, q) || Holds(WedgeOf(other), place);
    }

  private:
    static PolyLine Closed(PolyLine line) {
        line.Close();
        return line;
    }
    static bool Holds(const PolyLine& ring, const Point3d& point) {
        return ring.Inside(point, false, false) != 0;
    }
    PolyLine WedgeOf(const LooseEnd& end) const {
        return Closed(PolyArray::MakeWedge(end.place, end.inward, angle_, wedgeLength_));
    }

    double angle_;
    double wedgeLength_;
    double width_;
    double zTol_;
    double reach_;
    const PolyLine* region_;
};

// Joins open polylines, given in order. It changes none of them until `Commit`, which can't fail.
class GapCloser {
  public:
    GapCloser(const Array<PolyLine*>& open, const JoinRule& rule, bool closeOpen, bool fromBothEnds)
        : open_(open),
          rule_(rule),
          closeOpen_(closeOpen),
          fromBothEnds_(fromBothEnds),
          taken_(open.count),
          replaced_(open.count),
          ends_(EndsOf(open)),
          grid_(ends_, rule.Reach(), false),
          made_(static_cast<int>(open.count)) {}

    // Appends to `result` what becomes of the polylines, from the last to the first.
    void Run(Array<PolyLine*>& result) {
        for (std::uint32_t i = open_.count; i-- > 0;) {
            if (taken_.data[i]) continue;
            Take(i);
            result.Append(IsJoined(i) ? Joined(i) : open_.data[i]);
        }
    }

    // Deletes the polylines that others have taken the place of.
    void Commit() {
        for (std::uint32_t i = 0; i < open_.count; ++i)
            if (replaced_.data[i]) delete open_.data[i];
        Array<PolyLine*> none;
        made_.SwapBlocks(none);
    }

  private:
    static constexpr int kOwnEnd = -1;

    static Array<Point3d> EndsOf(const Array<PolyLine*>& lines) {
        Array<Point3d> ends(2 * lines.count);
        for (const PolyLine* const line : lines) {
            ends.data[ends.count++] = line->data[0];
            ends.data[ends.count++] = line->data[line->count - 1];
        }
        return ends;
    }

    void Take(std::uint32_t index) {
        taken_.data[index] = true;
        grid_.Remove(2 * index);
        grid_.Remove(2 * index + 1);
    }

    // Follows polyline `index` as far as it goes. Whether it has changed; the chain holds it then.
    bool IsJoined(std::uint32_t index) {
        chain_.Clear();
        chain_.Append(*open_.data[index], false);
        while (JoinAt(Side::tail) || JoinAt(Side::head)) replaced_.data[index] = true;
        if (isClosing_ && !chain_.IsClosed()) {
            chain_.PushBack(Point3d(chain_.First()));
            replaced_.data[index] = true;
        }
        isClosing_ = false;
        return replaced_.data[index];
    }

    PolyLine* Joined(std::uint32_t index) {
        std::unique_ptr<PolyLine> joined =
            detail::MakeNew<PolyLine>(detail::kCloseGapsLine, *open_.data[index]);
        chain_.CopyTo(*joined);
        PolyLine* const line = joined.get();
        made_.Add(joined.release());
        return line;
    }

    // Joins what is nearest to that end of the chain. False when nothing is, or when it is the
    // chain's own other end.
    bool JoinAt(Side side) {
        if (isClosing_) return false;
        FindCandidates(side);
        const int nearest = places_.FindPoint(End(side).place, true);
        if (nearest < 0) return false;
        const int chosen = candidates_[nearest];
        isClosing_ = chosen == kOwnEnd;
        if (isClosing_) return false;
        Join(static_cast<std::uint32_t>(chosen));
        return true;
    }

    LooseEnd End(Side side) const { return EndOf(chain_.Data(), chain_.Count(), side); }

    void FindCandidates(Side side) {
        const JoinRule::Surroundings around = rule_.Around(End(side));
        places_.count = candidates_.count = near_.count = 0;
        grid_.ForEach(around.end.place, [this](std::uint32_t end) { near_.Append(end / 2); });
        std::sort(near_.begin(), near_.end(), std::greater<>());
        const std::uint32_t* const end = std::unique(near_.begin(), near_.end());
        for (const std::uint32_t* index = near_.begin(); index != end; ++index)
            Consider(around, *open_.data[*index], static_cast<int>(*index));
        if (closeOpen_)
            ConsiderEnd(around, End(side == Side::tail ? Side::head : Side::tail), kOwnEnd);
    }

    void Consider(const JoinRule::Surroundings& around, const PolyLine& line, int index) {
        const LooseEnd first = EndOf(line.data, line.count, Side::head);
        const LooseEnd last = EndOf(line.data, line.count, Side::tail);
        if (Equals2d(last.place, around.end.place)) {
            AddCandidate(last.place, index);
        } else if (Equals2d(first.place, around.end.place)) {
            AddCandidate(first.place, index);
        } else {
            for (const LooseEnd& end : {first, last}) {
                if (!rule_.Accepts(around, end)) continue;
                AddCandidate(end.place, index);
                if (!fromBothEnds_) break;
            }
        }
    }

    void ConsiderEnd(const JoinRule::Surroundings& around, const LooseEnd& end, int index) {
        if (Equals2d(end.place, around.end.place) || rule_.Accepts(around, end))
            AddCandidate(end.place, index);
    }

    void AddCandidate(const Point3d& place, int index) {
        places_.Append(place);
        candidates_.Append(index);
    }

    // Joins a polyline by the nearest pair of ends, which need not be the ends that were found to
    // be near.
    void Join(std::uint32_t index) {
        const PolyLine& line = *open_.data[index];
        const Point3d& first = line.data[0];
        const Point3d& last = line.data[line.count - 1];
        const double distances[] = {Distance(chain_.Last(), first), Distance(chain_.Last(), last),
                                    Distance(chain_.First(), last),
                                    Distance(chain_.First(), first)};
        const auto nearest = std::min_element(std::begin(distances), std::end(distances));
        const bool atTail = nearest - distances < 2;
        const bool reversed = (nearest - distances) % 2 != 0;
        const Point3d& joint = atTail == reversed ? last : first;
        if (atTail) {
            if (Equals(chain_.Last(), joint)) chain_.PopBack();
            chain_.Append(line, reversed);
        } else {
            chain_.Prepend(line, reversed, Equals(chain_.First(), joint));
        }
        Take(index);
        replaced_.data[index] = true;
    }

    const Array<PolyLine*>& open_;
    const JoinRule& rule_;
    bool closeOpen_;
    bool fromBothEnds_;
    Array<bool> taken_;     // no longer to be found
    Array<bool> replaced_;  // part of a polyline in `made_`
    Array<Point3d> ends_;   // first and last vertex of polyline i at 2i and 2i + 1
    detail::PointGrid grid_;
    detail::VertexChain chain_;
    bool isClosing_ = false;
    PolyArray made_;
    Array<std::uint32_t> near_;
    Point3dArrayBase<Point3d> places_;  // of the candidates
    Array<int> candidates_;             // their polylines
};

}  // namespace

void PolyArray::CloseGaps(double angle, double length, double width, double zTol,
                          const PolyLine* region, bool closeOpen, bool fromBothEnds) {
    Array<PolyLine*> result(count), open(count);
    for (PolyLine* const line : *this)
        (line->count < 2 || IsRing(*line) ? result : open).Append(line);
    detail::SortPolyLines(open);
    const JoinRule rule(angle, length, width, zTol, region);
    GapCloser closer(open, rule, closeOpen, fromBothEnds);
    closer.Run(result);
    closer.Commit();
    SwapBlocks(result);
    compare = &PolyArray::Compare;
    sorted = false;
}

}  // namespace TamLib
