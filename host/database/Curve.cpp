#include "host/database/Curve.h"

#include <algorithm>
#include <boost/math/quadrature/gauss.hpp>
#include <boost/math/quadrature/gauss_kronrod.hpp>
#include <boost/math/special_functions/ellint_2.hpp>
#include <boost/math/tools/roots.hpp>
#include <cmath>
#include <cstdint>
#include <utility>

namespace host::database {
namespace {

// How closely the two rules must agree over a panel, as a part of the curve's length ...
constexpr double kPartOfWhole = 1e-13;

// ... or of the panel's own: for a smooth speed the better rule is far closer still.
constexpr double kPartOfPanel = 1e-12;

// Newton's method ends with a step of this part of the panel.
constexpr double kParamStep = 1e-15;

// Panels of one span at most: at a cusp the rules never quite agree.
constexpr std::size_t kMostPanels = 2000;

}  // namespace

double Curve::integral(double from, double to) const {
    if (const auto closed = closedLength(from, to)) return *closed;
    const auto speed = [this](double t) { return derivativeAt(t).length(); };
    return boost::math::quadrature::gauss<double, 15>::integrate(speed, from, to);
}

double Curve::roughLength() const {
    double sum = 0.0;
    for (std::size_t i = 0; i + 1 < breaks_.size(); ++i)
        sum += integral(breaks_[i], breaks_[i + 1]);
    return sum;
}

void Curve::addPanel(double begin, double end, double length, bool even) const {
    const double before =
        panels_.empty() ? 0.0 : panels_.back().lengthBefore + panels_.back().length;
    panels_.push_back({begin, end, before, length, even});
}

// `most` is the count of panels that may stand when this one is done.
void Curve::addPanels(double begin, double end, double tolerance, std::size_t most) const {
    const auto speed = [this](double t) { return derivativeAt(t).length(); };
    double error = 0.0;
    const double length = boost::math::quadrature::gauss_kronrod<double, 15>::integrate(
        speed, begin, end, 0, 0.0, &error);
    const double middle = 0.5 * (begin + end);
    const bool agree = error <= tolerance || error <= kPartOfPanel * length;
    if (agree || panels_.size() + 1 >= most || !(begin < middle && middle < end)) {
        addPanel(begin, end, length, false);
        return;
    }
    addPanels(begin, middle, tolerance, most - 1);
    addPanels(middle, end, tolerance, most);
}

const std::vector<Curve::Panel>& Curve::panels() const {
    if (!panels_.empty()) return panels_;
    std::optional<double> tolerance;
    for (std::size_t i = 0; i + 1 < breaks_.size(); ++i) {
        const double begin = breaks_[i];
        const double end = breaks_[i + 1];
        if (const auto speed = constantSpeed(i)) {
            addPanel(begin, end, *speed * (end - begin), true);
        } else if (const auto closed = closedLength(begin, end)) {
            addPanel(begin, end, *closed, false);
        } else {
            if (!tolerance) tolerance = kPartOfWhole * roughLength();
            addPanels(begin, end, *tolerance, panels_.size() + kMostPanels);
        }
    }
    return panels_;
}

double Curve::length() const {
    return panels().back().lengthBefore + panels().back().length;
}

double Curve::lengthTo(double parameter) const {
    const auto& all = panels();
    if (parameter >= endParam()) return length();
    auto panel = std::upper_bound(all.begin(), all.end(), parameter,
                                  [](double t, const Panel& p) { return t < p.begin; });
    if (panel == all.begin()) return 0.0;
    --panel;
    if (!panel->even) return panel->lengthBefore + integral(panel->begin, parameter);
    const double part = (parameter - panel->begin) / (panel->end - panel->begin);
    return panel->lengthBefore + panel->length * part;
}

double Curve::paramAtLength(double length) const {
    const auto& all = panels();
    if (length >= this->length()) return endParam();
    auto panel = std::upper_bound(all.begin(), all.end(), length,
                                  [](double s, const Panel& p) { return s < p.lengthBefore; });
    if (panel == all.begin()) return startParam();
    --panel;
    const double wanted = length - panel->lengthBefore;
    if (!(wanted > 0.0)) return panel->begin;
    const double guess = panel->begin + (panel->end - panel->begin) * (wanted / panel->length);
    if (panel->even) return guess;
    return paramInside(*panel, wanted, guess);
}

// Newton's method, with bisection where it leaves the panel.
double Curve::paramInside(const Panel& panel, double wanted, double guess) const {
    constexpr int kMostRounds = 100;
    double low = panel.begin;
    double high = panel.end;
    double t = guess;
    for (int round = 0; round < kMostRounds; ++round) {
        const double excess = integral(panel.begin, t) - wanted;
        (excess > 0.0 ? high : low) = t;
        double next = t - excess / derivativeAt(t).length();
        if (!(next >= low && next <= high)) next = 0.5 * (low + high);
        const double step = std::fabs(next - t);
        t = next;
        if (step <= kParamStep * (panel.end - panel.begin)) break;
    }
    return t;
}

namespace {

class LineCurve final : public Curve {
  public:
    LineCurve(const AcGePoint3d& from, const AcGePoint3d& to)
        : Curve({0.0, from.distanceTo(to)}), from_(from), to_(to) {}

    AcGePoint3d pointAt(double t) const override {
        if (t >= endParam()) return to_;
        return from_ + (to_ - from_) * (t / endParam());
    }
    AcGeVector3d derivativeAt(double /*t*/) const override {
        return endParam() > 0.0 ? (to_ - from_) / endParam() : AcGeVector3d();
    }
    bool isStraight(std::size_t /*span*/) const override { return true; }

  protected:
    std::optional<double> constantSpeed(std::size_t /*span*/) const override { return 1.0; }

  private:
    AcGePoint3d from_;
    AcGePoint3d to_;
};

class EllipseCurve final : public Curve {
  public:
    EllipseCurve(const AcGePoint3d& center, const AcGeVector3d& major, const AcGeVector3d& minor,
                 double start, double end, bool circular)
        : Curve({start, end}), center_(center), major_(major), minor_(minor), circular_(circular) {}

    AcGePoint3d pointAt(double t) const override {
        return center_ + (major_ * std::cos(t) + minor_ * std::sin(t));
    }
    AcGeVector3d derivativeAt(double t) const override {
        return minor_ * std::cos(t) - major_ * std::sin(t);
    }
    bool isStraight(std::size_t /*span*/) const override { return false; }

  protected:
    std::optional<double> constantSpeed(std::size_t /*span*/) const override {
        if (!circular_) return std::nullopt;
        return major_.length();
    }

    // Legendre's incomplete integral of the second kind, measured from an end of the smaller axis.
    std::optional<double> closedLength(double from, double to) const override {
        const double a = major_.length();
        const double b = minor_.length();
        const double big = std::max(a, b);
        const double small = std::min(a, b);
        const double k = std::min(std::sqrt((big - small) * (big + small)) / big, 1.0);
        const double shift = a >= b ? kQuarterTurn : 0.0;
        return big *
               (boost::math::ellint_2(k, to - shift) - boost::math::ellint_2(k, from - shift));
    }

  private:
    static constexpr double kQuarterTurn = 1.5707963267948966;

    AcGePoint3d center_;
    AcGeVector3d major_;
    AcGeVector3d minor_;
    bool circular_;
};

class PolylineCurve final : public Curve {
  public:
    PolylineCurve(const AcGeMatrix3d& toWorld, std::vector<PlaneVertex> vertices, bool closed)
        : Curve(countedBreaks(vertices.size(), closed)),
          toWorld_(toWorld),
          vertices_(std::move(vertices)) {}

    AcGePoint3d pointAt(double t) const override {
        const auto [segment, part] = segmentAt(t);
        const AcGePoint3d from = vertex(segment).point;
        if (part == 0.0) return toWorld_ * from;
        const AcGePoint3d to = vertex(segment + 1).point;
        if (part == 1.0) return toWorld_ * to;
        const AcGePoint3d chord = from + (to - from) * part;
        const double bulge = vertex(segment).bulge;
        if (bulge == 0.0 || !hasChord(from, to)) return toWorld_ * chord;
        const Arc arc(from, to, bulge);
        const double turn = arc.start + arc.sweep * part;
        return toWorld_ * AcGePoint3d(from.x + (arc.x + arc.radius * std::cos(turn)),
                                      from.y + (arc.y + arc.radius * std::sin(turn)), chord.z);
    }

    AcGeVector3d derivativeAt(double t) const override {
        const auto [segment, part] = segmentAt(t);
        const AcGePoint3d from = vertex(segment).point;
        const AcGePoint3d to = vertex(segment + 1).point;
        const double bulge = vertex(segment).bulge;
        if (bulge == 0.0 || !hasChord(from, to)) return toWorld_ * (to - from);
        const Arc arc(from, to, bulge);
        const double turn = arc.start + arc.sweep * part;
        const double speed = arc.radius * arc.sweep;
        return toWorld_ *
               AcGeVector3d(-speed * std::sin(turn), speed * std::cos(turn), to.z - from.z);
    }

    bool isStraight(std::size_t span) const override {
        return vertex(span).bulge == 0.0 || !hasChord(vertex(span).point, vertex(span + 1).point);
    }

  protected:
    std::optional<double> constantSpeed(std::size_t span) const override {
        return derivativeAt(static_cast<double>(span)).length();
    }

  private:
    // The circle of a segment, relative to the segment's start. With b the bulge and c the chord,
    // the angle is 4 atan b and the centre lies on the chord's bisector, c (1/b - b) / 4 to its
    // left.
    struct Arc {
        Arc(const AcGePoint3d& from, const AcGePoint3d& to, double bulge) {
            const double dx = to.x - from.x;
            const double dy = to.y - from.y;
            const double shift = (1.0 / bulge - bulge) / 4.0;
            x = 0.5 * dx - dy * shift;
            y = 0.5 * dy + dx * shift;
            radius = std::sqrt(x * x + y * y);
            start = std::atan2(-y, -x);
            sweep = 4.0 * std::atan(bulge);
        }
        double x, y, radius, start, sweep;
    };

    static std::vector<double> countedBreaks(std::size_t vertices, bool closed) {
        const std::size_t segments = closed ? vertices : vertices - 1;
        std::vector<double> breaks;
        for (std::size_t i = 0; i <= segments; ++i) breaks.push_back(static_cast<double>(i));
        if (breaks.size() == 1) breaks.push_back(0.0);
        return breaks;
    }

    static bool hasChord(const AcGePoint3d& from, const AcGePoint3d& to) {
        return from.x != to.x || from.y != to.y;
    }

    const PlaneVertex& vertex(std::size_t index) const {
        return vertices_[index % vertices_.size()];
    }

    // The segment that a parameter lies in, and the part of it passed; the end belongs to the last
    // one.
    std::pair<std::size_t, double> segmentAt(double t) const {
        const std::size_t last = breaks().size() - 2;
        const auto segment = std::min(static_cast<std::size_t>(t), last);
        return {segment, endParam() > 0.0 ? t - static_cast<double>(segment) : 0.0};
    }

    AcGeMatrix3d toWorld_;
    std::vector<PlaneVertex> vertices_;
};

// Halves a piece of a curve until its chord lies within the error at the quarters.
class Flattener {
  public:
    Flattener(const Curve& curve, double chordError)
        : curve_(curve), error_(chordError), points_{curve.pointAt(curve.startParam())} {}

    std::vector<AcGePoint3d> run() {
        for (std::size_t i = 0; i + 1 < curve_.breaks().size(); ++i) {
            const double begin = curve_.breaks()[i];
            const double end = curve_.breaks()[i + 1];
            if (curve_.isStraight(i)) {
                points_.push_back(curve_.pointAt(end));
            } else {
                // Four pieces at least: a full turn's halves would look straight.
                for (int k = 0; k < 4; ++k) {
                    piece(begin + (end - begin) * k / 4.0, begin + (end - begin) * (k + 1) / 4.0,
                          0);
                }
            }
        }
        return std::move(points_);
    }

  private:
    static constexpr int kDeepest = 10;

    static double distance(const AcGePoint3d& p, const AcGePoint3d& a, const AcGePoint3d& b) {
        const AcGeVector3d chord = b - a;
        const double square = chord.lengthSqrd();
        if (square == 0.0) return p.distanceTo(a);
        const double part = std::clamp(chord.dotProduct(p - a) / square, 0.0, 1.0);
        return p.distanceTo(a + chord * part);
    }

    void piece(double begin, double end, int depth) {
        const AcGePoint3d a = curve_.pointAt(begin);
        const AcGePoint3d b = curve_.pointAt(end);
        double worst = 0.0;
        for (const double part : {0.25, 0.5, 0.75}) {
            worst = std::max(worst, distance(curve_.pointAt(begin + (end - begin) * part), a, b));
        }
        if (worst > error_ && depth < kDeepest) {
            const double middle = 0.5 * (begin + end);
            piece(begin, middle, depth + 1);
            piece(middle, end, depth + 1);
            return;
        }
        points_.push_back(b);
    }

    const Curve& curve_;
    double error_;
    std::vector<AcGePoint3d> points_;
};

void addTurning(const Curve& curve, unsigned axis, double begin, double end,
                std::vector<double>& turning) {
    const auto slope = [&](double t) { return curve.derivativeAt(t)[axis]; };
    const double atBegin = slope(begin);
    const double atEnd = slope(end);
    if (!((atBegin < 0.0 && atEnd > 0.0) || (atBegin > 0.0 && atEnd < 0.0))) {
        if (atBegin == 0.0) turning.push_back(begin);
        return;
    }
    std::uintmax_t rounds = 100;
    const auto bracket = boost::math::tools::toms748_solve(
        slope, begin, end, atBegin, atEnd, boost::math::tools::eps_tolerance<double>(50), rounds);
    turning.push_back(0.5 * (bracket.first + bracket.second));
}

}  // namespace

std::shared_ptr<const Curve> lineCurve(const AcGePoint3d& from, const AcGePoint3d& to) {
    return std::make_shared<LineCurve>(from, to);
}

std::shared_ptr<const Curve> ellipseCurve(const AcGePoint3d& center, const AcGeVector3d& major,
                                          const AcGeVector3d& minor, double start, double end,
                                          bool circular) {
    return std::make_shared<EllipseCurve>(center, major, minor, start, end, circular);
}

std::shared_ptr<const Curve> polylineCurve(const AcGeMatrix3d& toWorld,
                                           std::vector<PlaneVertex> vertices, bool closed) {
    if (vertices.empty()) return nullptr;
    return std::make_shared<PolylineCurve>(toWorld, std::move(vertices), closed);
}

std::vector<AcGePoint3d> flattened(const Curve& curve, double chordError) {
    return Flattener(curve, chordError).run();
}

std::vector<double> turningParams(const Curve& curve) {
    // Pieces of a span that are looked at for a change of direction.
    constexpr int kPieces = 32;
    std::vector<double> turning;
    for (std::size_t i = 0; i + 1 < curve.breaks().size(); ++i) {
        if (curve.isStraight(i)) continue;
        const double begin = curve.breaks()[i];
        const double width = curve.breaks()[i + 1] - begin;
        for (int k = 0; k < kPieces; ++k) {
            for (unsigned axis = 0; axis < 3; ++axis) {
                addTurning(curve, axis, begin + width * k / kPieces,
                           begin + width * (k + 1) / kPieces, turning);
            }
        }
    }
    return turning;
}

}  // namespace host::database
