#include "host/picture/Hatches.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

#include "host/database/Curve.h"

namespace host::picture {
namespace {

using database::Curve;
using Ring = std::vector<AcGePoint3d>;

constexpr double pi = 3.14159265358979323846;

// Chords of curves keep within this part of the curve's length.
constexpr double errorPerLength = 1e-4;

// Codes of groups.
constexpr int solidFill = 70;
constexpr int kindOfEdge = 72;
constexpr int afterBoundaries = 75;
constexpr int beginOfBoundary = 92;
constexpr int boundaryIsPolyline = 2;

struct Number {
    int code;
    double value;
};

// The numbers that follow one another and belong together.
class Numbers {
  public:
    void add(const Number& number) { numbers_.push_back(number); }
    void clear() { numbers_.clear(); }

    double value(int code, double otherwise = 0.0) const {
        for (const Number& number : numbers_)
            if (number.code == code) return number.value;
        return otherwise;
    }
    // 0 where it is no small whole number.
    int small(int code) const {
        const double number = value(code);
        return std::fabs(number) < 1000.0 ? static_cast<int>(number) : 0;
    }
    std::vector<double> values(int code) const {
        std::vector<double> result;
        for (const Number& number : numbers_)
            if (number.code == code) result.push_back(number.value);
        return result;
    }
    AcGePoint3d point(int xCode) const { return {value(xCode), value(xCode + 10), 0.0}; }
    Ring points(int xCode) const {
        Ring result;
        for (const Number& number : numbers_) {
            if (number.code == xCode) result.emplace_back(number.value, 0.0, 0.0);
            if (number.code == xCode + 10 && !result.empty()) result.back().y = number.value;
        }
        return result;
    }
    const std::vector<Number>& all() const { return numbers_; }

  private:
    std::vector<Number> numbers_;
};

Ring chordsOf(const std::shared_ptr<const Curve>& curve) {
    if (curve == nullptr) return {};
    const double length = curve->length();
    return length > 0.0 && std::isfinite(length) ? flattened(*curve, length * errorPerLength)
                                                 : Ring();
}

Ring polylineOf(const Numbers& numbers) {
    std::vector<database::PlaneVertex> vertices;
    for (const Number& number : numbers.all()) {
        if (number.code == 10) vertices.push_back({{number.value, 0.0, 0.0}, 0.0});
        if (vertices.empty()) continue;
        if (number.code == 20) vertices.back().point.y = number.value;
        if (number.code == 42) vertices.back().bulge = number.value;
    }
    return chordsOf(database::polylineCurve(AcGeMatrix3d::kIdentity, std::move(vertices), true));
}

// The parameter of an ellipse where it is seen at an angle from its major axis.
double parameterAt(double angle, double ratio) {
    const double parameter = std::atan2(std::sin(angle) / ratio, std::cos(angle));
    return parameter + 2.0 * pi * std::round((angle - parameter) / (2.0 * pi));
}

// Arcs and ellipses; those that run clockwise have their angles the other way round.
Ring arcOf(const Numbers& edge, const AcGeVector3d& major, double ratio, bool circular) {
    const AcGeVector3d minor = AcGeVector3d::kZAxis.crossProduct(major) * ratio;
    const bool clockwise = edge.value(73, 1.0) == 0.0;
    double from = edge.value(50) * pi / 180.0, to = edge.value(51, 360.0) * pi / 180.0;
    if (clockwise) {
        const double end = -from;
        from = -to;
        to = end;
    }
    if (!(ratio > 0.0) || !(std::fabs(from) < 1e6) || !(std::fabs(to) < 1e6)) return {};
    from = parameterAt(from, ratio);
    to = parameterAt(to, ratio);
    while (to <= from) to += 2.0 * pi;
    Ring ring = chordsOf(database::ellipseCurve(edge.point(10), major, minor, from,
                                                std::min(to, from + 2.0 * pi), circular));
    return clockwise ? Ring(ring.rbegin(), ring.rend()) : ring;
}

Ring splineOf(const Numbers& edge) {
    Ring points = edge.points(10);
    auto curve =
        database::nurbsCurve({edge.small(94), edge.values(40), points,
                              edge.value(73) != 0.0 ? edge.values(42) : std::vector<double>()});
    return curve == nullptr ? points : chordsOf(curve);
}

Ring edgeOf(const Numbers& edge) {
    constexpr int line = 1, arc = 2, ellipse = 3, spline = 4;
    switch (edge.small(kindOfEdge)) {
        case line:
            return {edge.point(10), edge.point(11)};
        case arc:
            return arcOf(edge, {edge.value(40), 0.0, 0.0}, 1.0, true);
        case ellipse:
            return arcOf(edge, {edge.value(11), edge.value(21), 0.0}, edge.value(40), false);
        case spline:
            return splineOf(edge);
        default:
            return {};
    }
}

// Appends an edge to those before it, turned round where that brings it nearer.
void join(Ring& ring, Ring edge, bool second) {
    if (edge.empty()) return;
    const auto apart = [&](const AcGePoint3d& end) {
        return std::min(end.distanceTo(edge.front()), end.distanceTo(edge.back()));
    };
    if (second && apart(ring.front()) < apart(ring.back())) ring.assign(ring.rbegin(), ring.rend());
    const bool backwards =
        !ring.empty() && ring.back().distanceTo(edge.back()) < ring.back().distanceTo(edge.front());
    if (backwards)
        ring.insert(ring.end(), edge.rbegin(), edge.rend());
    else
        ring.insert(ring.end(), edge.begin(), edge.end());
}

class Reader {
  public:
    HatchArea read(const dxf::GroupRange& groups) {
        for (const dxf::Group& group : groups) {
            if (group.code() == afterBoundaries && inBoundary_) break;
            if (group.code() >= 1000) break;
            take(group);
        }
        endBoundary();
        return finish();
    }

  private:
    void take(const dxf::Group& group) {
        const auto whole = group.integer();
        const auto value = whole ? std::optional(static_cast<double>(*whole)) : group.real();
        if (!value) return;
        const Number number{group.code(), *value};
        if (number.code == beginOfBoundary) {
            endBoundary();
            inBoundary_ = true;
            isPolyline_ = (whole.value_or(0) & boundaryIsPolyline) != 0;
        } else if (number.code == kindOfEdge && !isPolyline_) {
            endEdge();
        }
        (inBoundary_ ? part_ : head_).add(number);
    }

    void endEdge() {
        const bool second = edges_ == 1 && !ring_.empty();
        const std::size_t before = ring_.size();
        join(ring_, edgeOf(part_), second);
        if (ring_.size() > before) ++edges_;
        part_.clear();
    }

    void endBoundary() {
        if (!inBoundary_) return;
        if (isPolyline_)
            ring_ = polylineOf(part_);
        else
            endEdge();
        if (ring_.size() > 2) rings_.push_back(std::move(ring_));
        ring_.clear();
        part_.clear();
        edges_ = 0;
    }

    HatchArea finish() const {
        const AcGeVector3d normal(head_.value(210), head_.value(220), head_.value(230, 1.0));
        const AcGeMatrix3d plane = AcGeMatrix3d::planeToWorld(normal);
        HatchArea area;
        area.isSolid = head_.value(solidFill) != 0.0;
        for (Ring ring : rings_) {
            for (AcGePoint3d& point : ring) {
                point.z = head_.value(30);
                point.transformBy(plane);
            }
            area.boundary.addRing(ring);
        }
        return area;
    }

    Numbers head_;  // in front of the boundaries
    Numbers part_;  // the edge, or the polyline, under way
    std::vector<Ring> rings_;
    Ring ring_;
    std::size_t edges_ = 0;
    bool inBoundary_ = false;
    bool isPolyline_ = false;
};

}  // namespace

std::optional<HatchArea> areaOfHatch(const dxf::Document& document, dxf::RecordIndex record) {
    HatchArea area = Reader().read(document.groups(record));
    if (area.boundary.empty()) return std::nullopt;
    return area;
}

}  // namespace host::picture
