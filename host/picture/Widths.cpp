#include "host/picture/Widths.h"

#include <algorithm>
#include <cmath>

#include "host/database/ObjectFields.h"
#include "host/database/ObjectImp.h"

namespace host::picture {
namespace {

using database::ObjectNumber;

constexpr int startWidth = 40;
constexpr int endWidth = 41;

// An arc is cut into so many pieces; the widest, a full turn, bends by 11 degrees at each.
constexpr int piecesOfArc = 32;

double width(double value) {
    return value > 0.0 && std::isfinite(value) ? value : 0.0;
}

std::vector<SegmentWidth> widthsOf(const database::PolylineFields& polyline) {
    std::vector<SegmentWidth> widths;
    const auto isGiven = [](const auto& v) { return v.startWidth != 0.0 || v.endWidth != 0.0; };
    const auto& vertices = polyline.vertices;
    const bool given = std::any_of(vertices.begin(), vertices.end(), isGiven);
    widths.reserve(vertices.size());
    for (const auto& v : vertices)
        widths.push_back(given ? SegmentWidth{width(v.startWidth), width(v.endWidth)}
                               : SegmentWidth{width(polyline.constantWidth),  //
                                              width(polyline.constantWidth)});
    return widths;
}

// The polyline's own widths are those of all vertices that have none.
class OldWidths {
  public:
    OldWidths(AcDbImpDatabase& database, ObjectNumber polyline)
        : database_(database), usual_(given(polyline, {})) {
        for (const ObjectNumber number : database.subEntitiesOf(polyline))
            if (!database.isErased(number)) add(number);
    }
    std::vector<SegmentWidth> take() { return std::move(widths_); }

  private:
    SegmentWidth given(ObjectNumber number, SegmentWidth otherwise) const {
        const auto record = database_.recordOf(number);
        if (!record) return otherwise;
        const dxf::GroupRange groups = database_.document().groups(*record);
        const auto value = [&](int code, double without) {
            const auto group = groups.find(code);
            return group ? width(group->real().value_or(0.0)) : without;
        };
        return {value(startWidth, otherwise.start), value(endWidth, otherwise.end)};
    }

    void add(ObjectNumber number) {
        database::VertexFields read;
        const auto& vertex =
            static_cast<const database::VertexFields&>(database_.fieldsAt(number, read));
        const bool drawn = (vertex.flags & database::VertexFields::kSplineControl) == 0;
        if (!drawn || vertex.unreadable) return;
        const bool isOfDrawing = database_.recordOf(number).has_value();
        widths_.push_back(isOfDrawing
                              ? given(number, usual_)
                              : SegmentWidth{width(vertex.startWidth), width(vertex.endWidth)});
    }

    AcDbImpDatabase& database_;
    const SegmentWidth usual_;
    std::vector<SegmentWidth> widths_;
};

// Adds the points beside a segment, `side` half widths to the left.
void addSide(std::vector<AcGePoint3d>& outline, const database::Curve& curve,
             const AcGeVector3d& normal, std::size_t segment, const SegmentWidth& width,
             double side) {
    const double from = curve.breaks()[segment], to = curve.breaks()[segment + 1];
    const int pieces = curve.isStraight(segment) ? 1 : piecesOfArc;
    for (int i = 0; i <= pieces; ++i) {
        const double part = static_cast<double>(side > 0.0 ? i : pieces - i) / pieces;
        // Inside of the segment, so that the direction is that of this one.
        const double at = from + (to - from) * std::clamp(part, 1e-9, 1.0 - 1e-9);
        const AcGeVector3d along = curve.derivativeAt(at);
        if (along.isZeroLength()) return;
        const double half = (width.start + (width.end - width.start) * part) / 2.0;
        outline.push_back(curve.pointAt(from + (to - from) * part) +
                          normal.crossProduct(along).normal() * (half * side));
    }
}

}  // namespace

std::vector<SegmentWidth> segmentWidths(AcDbImpDatabase& database, const AcDbEntity& polyline) {
    std::vector<SegmentWidth> widths;
    const auto& fields = database::fieldsOf<database::EntityFields>(polyline);
    if (const auto* light = dynamic_cast<const database::PolylineFields*>(&fields)) {
        widths = widthsOf(*light);
    } else if (const auto* old = dynamic_cast<const database::OldPolylineFields*>(&fields)) {
        if ((old->flags & database::OldPolylineFields::kSpace) != 0) return {};
        widths = OldWidths(database, AcDbImpDatabase::numberOf(polyline.objectId())).take();
    }
    const database::Curve* curve = polyline.impl()->curve();
    const std::size_t segments = curve == nullptr ? 0 : curve->breaks().size() - 1;
    if (widths.size() < segments) return {};
    widths.resize(segments);
    const bool hasAny = std::any_of(widths.begin(), widths.end(), [](const SegmentWidth& w) {
        return w.start > 0.0 || w.end > 0.0;
    });
    return hasAny ? widths : std::vector<SegmentWidth>();
}

bool isEven(const std::vector<SegmentWidth>& widths) {
    return std::all_of(widths.begin(), widths.end(), [&](const SegmentWidth& w) {
        return w.start == widths.front().start && w.end == widths.front().start;
    });
}

Path bandAlong(const database::Curve& curve, const AcGeVector3d& normal,
               const std::vector<SegmentWidth>& widths) {
    Path band;
    for (std::size_t i = 0; i < widths.size(); ++i) {
        std::vector<AcGePoint3d> outline;
        addSide(outline, curve, normal, i, widths[i], 1.0);
        addSide(outline, curve, normal, i, widths[i], -1.0);
        if (outline.size() >= 4) band.addRing(outline);
    }
    return band;
}

}  // namespace host::picture
