// Contour lines of drawings, cut at random and closed again. ORLINTH_CORPUS names a folder of real
// drawings; one of our own is always taken.
#include <gtest/gtest.h>

#include <cstdlib>
#include <set>

#include <dbents.h>
#include <dbpl.h>

#include "host/database/Drawing.h"
#include "tests/GeomStructs/PolyArrayShapes.h"
#include "tests/host/dxf/Drawings.h"
#include "tests/host/support/LedgerListener.h"

namespace TamLib {
namespace {

namespace fs = std::filesystem;

const fs::path kOwn = fs::u8path(ORLINTH_TEST_DATA) / "contours" / "contours.dxf";

std::vector<fs::path> Drawings() {
    std::vector<fs::path> all{kOwn};
    const char* const corpus = std::getenv("ORLINTH_CORPUS");
    std::error_code status;
    if (corpus == nullptr || !fs::is_directory(fs::u8path(corpus), status)) return all;
    for (const fs::path& path : host::dxf::test::drawingsOf(fs::u8path(corpus)))
        all.push_back(path);
    return all;
}

// The polylines of a drawing's model space that have a length; none of a drawing that is refused.
std::vector<Points> PolylinesOf(const fs::path& path) {
    std::unique_ptr<AcDbDatabase> database;
    try {
        database = host::database::readDrawing(path);
    } catch (const host::dxf::ReadError&) {
        return {};
    }
    std::vector<Points> all;
    for (const AcDbObjectId id : host::database::modelSpaceIds(*database)) {
        AcDbEntity* entity = nullptr;
        if (acdbOpenAcDbEntity(entity, id, AcDb::kForRead) != Acad::eOk) continue;
        const bool isPolyline = entity->isA() == AcDbPolyline::desc() ||
                                entity->isA() == AcDb2dPolyline::desc() ||
                                entity->isA() == AcDb3dPolyline::desc();
        const PolyLine line(entity, isPolyline ? 1 : 0);
        if (!isPolyline) {
            entity->close();
        } else if (line.count >= 2 && line.Length2d() > 0 && std::isfinite(line.Length2d())) {
            all.push_back(PointsOf(line));
            // Ends that are equal but for rounding are not told apart when put together again.
            if (line.IsClosed()) all.back().back() = all.back().front();
        }
    }
    return all;
}

bool IsRing(const Points& line) {
    return Equals(line.front(), line.back());
}

double MedianSegment(const std::vector<Points>& lines) {
    std::vector<double> lengths;
    for (const Points& line : lines)
        for (std::size_t i = 1; i < line.size(); ++i)
            lengths.push_back(Distance2d(line[i - 1], line[i]));
    std::nth_element(lengths.begin(),
                     lengths.begin() + static_cast<std::ptrdiff_t>(lengths.size() / 2),
                     lengths.end());
    return lengths[lengths.size() / 2];
}

// Cuts lines where no other end is near, so that there is but one way to close them.
class Cutter {
  public:
    Cutter(const std::vector<Points>& lines, double gap, double clearance)
        : gap_(gap), clearance_(clearance) {
        // Left out are lines with an end near another one: these would be joined as well.
        for (const Points& line : lines)
            if (!IsRing(line)) ends_.insert(ends_.end(), {line.front(), line.back()});
        for (const Points& line : lines) {
            const bool isAlone = IsRing(line) ? IsClear(line.front(), 0)
                                              : IsClear(line.front(), 1) && IsClear(line.back(), 1);
            if (!isAlone) continue;
            whole.push_back(line);
            if (IsRing(line)) ends_.push_back(line.front());
        }
        for (const Points& line : whole) Cut(line);
        numbers_.Shuffle(pieces);
    }

    std::vector<Points> whole;
    std::vector<Points> pieces;
    std::set<std::string> added;  // the vertices at the cuts
    int cuts = 0;

  private:
    // Whether no more than `own` ends lie near a place.
    bool IsClear(const Point3d& p, int own) const {
        for (const Point3d& end : ends_)
            if (std::fabs(end.x - p.x) < clearance_ && std::fabs(end.y - p.y) < clearance_ &&
                own-- == 0)
                return false;
        return true;
    }

    void Add(Points piece) {
        if (numbers_.OneIn(2)) std::reverse(piece.begin(), piece.end());
        pieces.push_back(piece);
    }

    void Cut(const Points& line) {
        Points piece;
        for (std::size_t i = 0; i < line.size(); ++i) {
            piece.push_back(line[i]);
            if (i + 1 == line.size() || !numbers_.OneIn(4)) continue;
            const Line segment(line[i], line[i + 1]);
            const double length = segment.Length2d();
            if (!(length > 2 * gap_)) continue;
            const Point3d from = segment.PointAt(0.5 - gap_ / 2 / length);
            const Point3d to = segment.PointAt(0.5 + gap_ / 2 / length);
            if (!IsClear(from, 0) || !IsClear(to, 0)) continue;
            ends_.insert(ends_.end(), {from, to});
            added.insert({Text({from}), Text({to})});
            piece.push_back(from);
            Add(piece);
            piece = {to};
            ++cuts;
        }
        Add(piece);
    }

    double gap_, clearance_;
    Numbers numbers_{17};
    std::vector<Point3d> ends_;
};

// A line so that it does not matter from which end, or for a ring from which vertex, it is told,
// and without the vertices of cuts.
std::string Canonical(const Points& line, const std::set<std::string>& added) {
    Points told;
    for (const Point3d& p : line)
        if (added.count(Text({p})) == 0) told.push_back(p);
    const auto comesFirst = [](const Point3d& a, const Point3d& b) {
        return Point3d::CompareExact(&a, &b) < 0;
    };
    const bool isRing = IsRing(line);
    if (isRing && told.size() > 1 && Equals(told.front(), told.back())) told.pop_back();
    std::string best;
    for (int direction = 0; direction < 2; ++direction) {
        std::reverse(told.begin(), told.end());
        if (isRing)
            std::rotate(told.begin(), std::min_element(told.begin(), told.end(), comesFirst),
                        told.end());
        const std::string text = (isRing ? "ring " : "line ") + Text(told);
        if (best.empty() || text < best) best = text;
    }
    return best;
}

std::vector<std::string> Canonical(const std::vector<Points>& lines,
                                   const std::set<std::string>& added) {
    std::vector<std::string> all;
    for (const Points& line : lines) all.push_back(Canonical(line, added));
    std::sort(all.begin(), all.end());
    return all;
}

class CloseGapsDrawings : public ::testing::TestWithParam<fs::path> {};

TEST_P(CloseGapsDrawings, PolylinesCutAtRandomAreClosedAgain) {
    const std::vector<Points> lines = PolylinesOf(GetParam());
    ASSERT_GT(lines.size(), GetParam() == kOwn ? 20u : 0u);
    const double gap = MedianSegment(lines) / 8;
    const double reach = 2 * gap / std::cos(10 * 3.141592653589793 / 180) + 0.03;
    const Cutter cutter(lines, gap, 2.1 * reach);
    PolyArray array = MakeArray(cutter.pieces);
    array.CloseGaps(10, 2 * gap, 1.5 * gap, 1e9, nullptr, true, false);
    EXPECT_EQ(Canonical(cutter.whole, cutter.added), Canonical(PointsOf(array), cutter.added));
    RecordProperty("cuts", cutter.cuts);
    if (GetParam() == kOwn) {
        EXPECT_GT(cutter.cuts, 100);
        EXPECT_GT(cutter.whole.size(), 20u);
    }
}

TEST_P(CloseGapsDrawings, TheirSegmentsInNoOrderAreAllLinked) {
    const std::vector<Points> lines = PolylinesOf(GetParam());
    ASSERT_GT(lines.size(), GetParam() == kOwn ? 20u : 0u);
    std::vector<Line> segments;
    for (const Points& line : lines)
        for (std::size_t i = 1; i < line.size(); ++i) segments.emplace_back(line[i - 1], line[i]);
    Numbers numbers(18);
    numbers.Shuffle(segments);
    const PolyArray linked(MakeLines(segments), false, 0.001);
    LineArray tidied = MakeLines(segments);
    tidied.Tidy(false, true, false);
    std::uint32_t used = 0;
    for (const Line& line : tidied) used += Equals2d(line.Start(), line.End()) ? 0 : 1;
    EXPECT_EQ(used, linked.ToLines().count);
    EXPECT_LE(linked.count, used);
}

// Only these have anything to cut; the drawing of our own is always among them.
std::vector<fs::path> DrawingsWithPolylines() {
    std::vector<fs::path> all = Drawings();
    all.erase(std::remove_if(all.begin(), all.end(),
                             [](const fs::path& drawing) {
                                 return drawing != kOwn && PolylinesOf(drawing).empty();
                             }),
              all.end());
    return all;
}

INSTANTIATE_TEST_SUITE_P(Drawings, CloseGapsDrawings, ::testing::ValuesIn(DrawingsWithPolylines()),
                         [](const ::testing::TestParamInfo<fs::path>& drawing) {
                             std::string name = drawing.param.stem().u8string();
                             for (char& c : name)
                                 if (std::isalnum(static_cast<unsigned char>(c)) == 0) c = '_';
                             return std::to_string(drawing.index) + "_" + name;
                         });

}  // namespace
}  // namespace TamLib
