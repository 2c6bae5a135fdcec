// B-splines, and cubics through points.
#include <algorithm>
#include <array>
#include <cmath>

#include "host/database/Curve.h"

namespace host::database {
namespace {

constexpr int kHighestDegree = 30;

// A point times its weight, and the weight.
struct Weighted {
    AcGeVector3d point;
    double weight = 0.0;

    Weighted mixed(const Weighted& other, double part) const {
        return {point * (1.0 - part) + other.point * part,
                weight * (1.0 - part) + other.weight * part};
    }
};

bool isCurve(const Nurbs& data) {
    const auto points = data.points.size();
    if (data.degree < 1 || data.degree > kHighestDegree) return false;
    const auto degree = static_cast<std::size_t>(data.degree);
    if (points < degree + 1 || data.knots.size() != points + degree + 1) return false;
    if (!std::is_sorted(data.knots.begin(), data.knots.end())) return false;
    if (!(data.knots[degree] < data.knots[points])) return false;
    if (data.weights.empty()) return true;
    return data.weights.size() == points &&
           std::all_of(data.weights.begin(), data.weights.end(), [](double w) { return w > 0.0; });
}

// The different knots from the first to the last of the curve's own range.
std::vector<double> rangeOf(const Nurbs& data) {
    const auto begin = data.knots.begin() + data.degree;
    const auto end = data.knots.begin() + static_cast<std::ptrdiff_t>(data.points.size()) + 1;
    std::vector<double> breaks(begin, end);
    breaks.erase(std::unique(breaks.begin(), breaks.end()), breaks.end());
    return breaks;
}

// De Boor's algorithm on weighted points (Piegl and Tiller, "The NURBS Book", chapters 2 to 4).
class NurbsCurve final : public Curve {
  public:
    explicit NurbsCurve(Nurbs data) : Curve(rangeOf(data)), data_(std::move(data)) {}

    AcGePoint3d pointAt(double t) const override {
        const Weighted whole = evaluated(t, AcGePoint3d::kOrigin).first;
        return AcGePoint3d::kOrigin + whole.point / whole.weight;
    }

    AcGeVector3d derivativeAt(double t) const override {
        // Differences to a point of the curve's own keep their digits far from the origin.
        const auto [whole, slope] = evaluated(t, data_.points.front());
        return (slope.point - whole.point * (slope.weight / whole.weight)) / whole.weight;
    }

    bool isStraight(std::size_t /*span*/) const override { return data_.degree == 1; }

  protected:
    std::optional<double> constantSpeed(std::size_t span) const override {
        if (data_.degree > 1 || !data_.weights.empty()) return std::nullopt;
        return derivativeAt(breaks()[span]).length();
    }

  private:
    // The knot span of `t`: knots[k] <= t < knots[k + 1]; the end belongs to the last one.
    std::size_t spanOf(double t) const {
        const auto degree = static_cast<std::ptrdiff_t>(data_.degree);
        const auto begin = data_.knots.begin() + degree;
        const auto end = data_.knots.begin() + static_cast<std::ptrdiff_t>(data_.points.size());
        auto above = std::upper_bound(begin, end, t);
        if (above == end) above = std::lower_bound(begin, end, *end);
        return static_cast<std::size_t>(above - data_.knots.begin()) - 1;
    }

    Weighted control(std::size_t index, const AcGePoint3d& origin) const {
        const double weight = data_.weights.empty() ? 1.0 : data_.weights[index];
        return {(data_.points[index] - origin) * weight, weight};
    }

    // The weighted point at `t`, as seen from `origin`, and its derivative, which the last two
    // points of the scheme give.
    std::pair<Weighted, Weighted> evaluated(double t, const AcGePoint3d& origin) const {
        const auto degree = static_cast<std::size_t>(data_.degree);
        const std::size_t span = spanOf(t);
        std::array<Weighted, kHighestDegree + 1> row;
        for (std::size_t j = 0; j <= degree; ++j) row[j] = control(span - degree + j, origin);
        Weighted slope;
        for (std::size_t round = 1; round <= degree; ++round) {
            if (round == degree) {
                const double width = data_.knots[span + 1] - data_.knots[span];
                const double scale = static_cast<double>(degree) / width;
                slope = {(row[degree].point - row[degree - 1].point) * scale,
                         (row[degree].weight - row[degree - 1].weight) * scale};
            }
            for (std::size_t j = degree; j >= round; --j) {
                const double low = data_.knots[span - degree + j];
                const double high = data_.knots[span + 1 + j - round];
                row[j] = row[j - 1].mixed(row[j], (t - low) / (high - low));
            }
        }
        return {row[degree], slope};
    }

    Nurbs data_;
};

// Hermite pieces between points whose tangents are known.
class CubicCurve final : public Curve {
  public:
    CubicCurve(std::vector<double> params, std::vector<AcGePoint3d> points,
               std::vector<AcGeVector3d> tangents)
        : Curve(std::move(params)), points_(std::move(points)), tangents_(std::move(tangents)) {}

    AcGePoint3d pointAt(double t) const override {
        const Piece p = pieceAt(t);
        if (p.part == 0.0) return points_[p.index];
        if (p.part == 1.0) return points_[p.index + 1];
        const double u = p.part;
        const double v = 1.0 - u;
        const AcGeVector3d way = points_[p.index + 1] - points_[p.index];
        return points_[p.index] + way * (u * u * (3.0 - 2.0 * u)) +
               tangents_[p.index] * (p.width * u * v * v) -
               tangents_[p.index + 1] * (p.width * u * u * v);
    }

    AcGeVector3d derivativeAt(double t) const override {
        const Piece p = pieceAt(t);
        const double u = p.part;
        const AcGeVector3d way = points_[p.index + 1] - points_[p.index];
        return way * (6.0 * u * (1.0 - u) / p.width) +
               tangents_[p.index] * ((1.0 - u) * (1.0 - 3.0 * u)) +
               tangents_[p.index + 1] * (u * (3.0 * u - 2.0));
    }

    bool isStraight(std::size_t /*span*/) const override { return false; }

  protected:
    std::optional<double> constantSpeed(std::size_t /*span*/) const override {
        return std::nullopt;
    }

  private:
    struct Piece {
        std::size_t index;
        double width;
        double part;
    };

    Piece pieceAt(double t) const {
        const auto& params = breaks();
        const auto above = std::upper_bound(params.begin(), params.end() - 1, t);
        const auto index =
            static_cast<std::size_t>(std::max<std::ptrdiff_t>(above - params.begin() - 1, 0));
        const std::size_t piece = std::min(index, params.size() - 2);
        const double width = params[piece + 1] - params[piece];
        return {piece, width, (t - params[piece]) / width};
    }

    std::vector<AcGePoint3d> points_;
    std::vector<AcGeVector3d> tangents_;
};

// Solves the equations of continuous curvature for the tangents: row i says
// low[i] * T[i-1] + main[i] * T[i] + high[i] * T[i+1] = right[i].
struct Tangents {
    explicit Tangents(std::size_t count) : low(count), main(count), high(count), right(count) {}

    // Thomas' algorithm; the corners low[0] and high[last] are taken as 0.
    std::vector<AcGeVector3d> solved() const {
        std::vector<double> ratio(main.size());
        std::vector<AcGeVector3d> result(main.size());
        double pivot = main[0];
        result[0] = right[0] / pivot;
        for (std::size_t i = 1; i < main.size(); ++i) {
            ratio[i] = high[i - 1] / pivot;
            pivot = main[i] - low[i] * ratio[i];
            result[i] = (right[i] - result[i - 1] * low[i]) / pivot;
        }
        for (std::size_t i = main.size() - 1; i-- > 0;) result[i] -= result[i + 1] * ratio[i + 1];
        return result;
    }

    std::vector<double> low, main, high;
    std::vector<AcGeVector3d> right;
};

// The curvature is the same on both sides of point `i`, `before` and `after` being the chords'
// lengths.
void setInner(Tangents& rows, std::size_t i, double before, double after, const AcGeVector3d& in,
              const AcGeVector3d& out) {
    rows.low[i] = 1.0 / before;
    rows.main[i] = 2.0 / before + 2.0 / after;
    rows.high[i] = 1.0 / after;
    rows.right[i] = (in / (before * before) + out / (after * after)) * 3.0;
}

std::vector<AcGeVector3d> openTangents(const std::vector<AcGePoint3d>& points,
                                       const std::vector<double>& params,
                                       const std::optional<AcGeVector3d>& start,
                                       const std::optional<AcGeVector3d>& end) {
    const std::size_t last = points.size() - 1;
    Tangents rows(points.size());
    const auto width = [&](std::size_t i) { return params[i + 1] - params[i]; };
    for (std::size_t i = 1; i < last; ++i) {
        setInner(rows, i, width(i - 1), width(i), points[i] - points[i - 1],
                 points[i + 1] - points[i]);
    }
    // Without a tangent the end has no curvature: 2 T0 + T1 = 3 (P1 - P0) / h.
    rows.main[0] = start ? 1.0 : 2.0;
    rows.high[0] = start ? 0.0 : 1.0;
    rows.right[0] = start ? start->normal() : (points[1] - points[0]) * (3.0 / width(0));
    rows.main[last] = end ? 1.0 : 2.0;
    rows.low[last] = end ? 0.0 : 1.0;
    rows.right[last] =
        end ? end->normal() : (points[last] - points[last - 1]) * (3.0 / width(last - 1));
    return rows.solved();
}

// The last point repeats the first. The cyclic equations are solved by Sherman and Morrison's
// formula.
std::vector<AcGeVector3d> closedTangents(const std::vector<AcGePoint3d>& points,
                                         const std::vector<double>& params) {
    const std::size_t count = points.size() - 1;
    const auto width = [&](std::size_t i) { return params[i + 1] - params[i]; };
    Tangents rows(count);
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t before = (i + count - 1) % count;
        setInner(rows, i, width(before), width(i), points[before + 1] - points[before],
                 points[i + 1] - points[i]);
    }
    std::vector<AcGeVector3d> tangents;
    if (count == 2) {
        // Both neighbours of a point are the other one.
        const double a = rows.main[0];
        const double b = rows.low[0] + rows.high[0];
        const double d = a * rows.main[1] - b * (rows.low[1] + rows.high[1]);
        tangents = {(rows.right[0] * rows.main[1] - rows.right[1] * b) / d,
                    (rows.right[1] * a - rows.right[0] * (rows.low[1] + rows.high[1])) / d};
    } else {
        const double alpha = rows.high[count - 1];
        const double beta = rows.low[0];
        const double gamma = -rows.main[0];
        Tangents bare = rows;
        bare.main[0] -= gamma;
        bare.main[count - 1] -= alpha * beta / gamma;
        Tangents unit = bare;
        unit.right.assign(count, AcGeVector3d());
        unit.right[0].x = gamma;
        unit.right[count - 1].x = alpha;
        tangents = bare.solved();
        const std::vector<AcGeVector3d> z = unit.solved();
        const double below = 1.0 + z[0].x + beta * z[count - 1].x / gamma;
        const AcGeVector3d part = (tangents[0] + tangents[count - 1] * (beta / gamma)) / below;
        for (std::size_t i = 0; i < count; ++i) tangents[i] -= part * z[i].x;
    }
    tangents.push_back(tangents.front());
    return tangents;
}

}  // namespace

std::shared_ptr<const Curve> nurbsCurve(Nurbs data) {
    if (!isCurve(data)) return nullptr;
    return std::make_shared<NurbsCurve>(std::move(data));
}

std::shared_ptr<const Curve> interpolatedCurve(const std::vector<AcGePoint3d>& points, bool closed,
                                               const std::optional<AcGeVector3d>& startTangent,
                                               const std::optional<AcGeVector3d>& endTangent) {
    std::vector<AcGePoint3d> kept;
    std::vector<double> params;
    const auto keep = [&](const AcGePoint3d& point) {
        const double chord = kept.empty() ? 0.0 : point.distanceTo(kept.back());
        if (!kept.empty() && !(chord > 0.0)) return;
        params.push_back(params.empty() ? 0.0 : params.back() + chord);
        kept.push_back(point);
    };
    for (const AcGePoint3d& point : points) keep(point);
    if (closed && !kept.empty()) keep(kept.front());
    if (kept.size() < 2) return nullptr;
    std::vector<AcGeVector3d> tangents = closed && kept.size() > 2
                                             ? closedTangents(kept, params)
                                             : openTangents(kept, params, startTangent, endTangent);
    return std::make_shared<CubicCurve>(std::move(params), std::move(kept), std::move(tangents));
}

}  // namespace host::database
