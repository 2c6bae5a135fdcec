#include "host/picture/Blocks.h"

#include <algorithm>
#include <cmath>

#include "host/database/Drawing.h"
#include "host/picture/Lettering.h"

namespace host::picture {
namespace {

using database::ObjectNumber;
using editor::PlanBox;

// Boxes of this size and beyond are none.
constexpr double largest = 1e99;

void add(PlanBox& box, const std::vector<AcGePoint3d>& points, const AcGeMatrix3d& map) {
    for (const AcGePoint3d& point : points) {
        const AcGePoint3d p = map * point;
        if (std::fabs(p.x) < largest && std::fabs(p.y) < largest) box.add({p.x, p.y});
    }
}

std::vector<AcGePoint3d> cornersOf(const PlanBox& box) {
    if (box.empty()) return {};
    return {{box.min.x, box.min.y, 0.0},
            {box.max.x, box.min.y, 0.0},
            {box.max.x, box.max.y, 0.0},
            {box.min.x, box.max.y, 0.0}};
}

// The box of all cells, in the coordinates of the first one's block.
PlanBox boxOfCells(const PlanBox& cell, const Reference& reference) {
    PlanBox box = cell;
    if (reference.columns <= 1 && reference.rows <= 1) return box;
    const AcGeMatrix3d back = reference.place.inverse();
    const AcGeVector3d columns = back * (reference.columnStep * (reference.columns - 1));
    const AcGeVector3d rows = back * (reference.rowStep * (reference.rows - 1));
    for (const AcGeVector3d& shift : {columns, rows, columns + rows})
        add(box, cornersOf(cell), AcGeMatrix3d::translation(shift));
    return box;
}

}  // namespace

const std::vector<Piece>& Blocks::contentOf(ObjectNumber block) {
    const auto known = contents_.find(block);
    if (known != contents_.end()) return known->second;
    std::vector<Piece> content = picture::contentOf(database_, block);
    std::stable_partition(content.begin(), content.end(),
                          [](const Piece& piece) { return piece.beneath; });
    for (const Piece& piece : content)
        if (*piece.kind == '\0') ++unknown_[database::recordName(database_.idOf(piece.number))];
    return contents_.emplace(block, std::move(content)).first->second;
}

double Blocks::stepsOf(const Piece& piece) {
    if (const auto* path = std::get_if<Path>(&piece.look))
        return 1.0 + static_cast<double>(path->steps().size());
    if (const auto* lettering = std::get_if<Lettering>(&piece.look)) {
        std::size_t runs = 0;
        for (const Lettering::Line& line : lettering->lines) runs += line.runs.size();
        return 1.0 + static_cast<double>(runs * stepsOfRun);
    }
    const auto* reference = std::get_if<Reference>(&piece.look);
    if (reference == nullptr) return 1.0;
    double steps = 1.0;
    for (const Piece& attribute : reference->attributes) steps += stepsOf(attribute);
    const double cells = static_cast<double>(reference->columns) * reference->rows;
    return reference->hasBlock ? steps + cells * (1.0 + summaryOf(reference->block).steps) : steps;
}

std::vector<AcGePoint3d> Blocks::cornersOf(const Reference& reference) {
    if (!reference.hasBlock) return {};
    std::vector<AcGePoint3d> corners =
        picture::cornersOf(boxOfCells(summaryOf(reference.block).box, reference));
    for (AcGePoint3d& corner : corners) corner.transformBy(reference.place);
    return corners;
}

// A block inside of itself adds nothing.
const Blocks::Summary& Blocks::summaryOf(ObjectNumber block) {
    const auto known = summaries_.find(block);
    if (known != summaries_.end()) return known->second;
    static const Summary nothing;
    if (depth_ >= deepest) return nothing;
    ++depth_;
    Summary& summary = summaries_.emplace(block, Summary()).first->second;
    Summary sum;
    for (const Piece& piece : contentOf(block)) add(sum, piece);
    --depth_;
    return summary = sum;
}

void Blocks::add(Summary& summary, const Piece& piece) {
    if (piece.invisible) return;
    summary.steps += stepsOf(piece);
    if (const auto* path = std::get_if<Path>(&piece.look)) {
        picture::add(summary.box, path->points(), AcGeMatrix3d::kIdentity);
    } else if (const auto* lettering = std::get_if<Lettering>(&piece.look)) {
        picture::add(summary.box, outlineOf(*lettering), AcGeMatrix3d::kIdentity);
    } else if (const auto* reference = std::get_if<Reference>(&piece.look)) {
        picture::add(summary.box, cornersOf(*reference), AcGeMatrix3d::kIdentity);
        for (const Piece& attribute : reference->attributes) add(summary, attribute);
    }
}

}  // namespace host::picture
