// Curves as functions of a parameter, with their lengths.
//
// A curve consists of smooth spans between its breaks. Lengths are integrated span by span (Gauss
// and Kronrod, 7 and 15 points) over panels that are halved until both agree to 1e-13 of the whole
// length, and are found back by Newton's method inside a panel; lengths of panels are kept, so that
// asking for many distances along one curve is cheap. Points are in world coordinates.
#pragma once

#include <gemat3d.h>
#include <gepnt3d.h>
#include <gevec3d.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

namespace host::database {

class Curve {
  public:
    virtual ~Curve() = default;
    Curve(const Curve&) = delete;
    Curve& operator=(const Curve&) = delete;

    double startParam() const { return breaks_.front(); }
    double endParam() const { return breaks_.back(); }
    // Two at least, rising; both the same for a curve that is one point.
    const std::vector<double>& breaks() const { return breaks_; }

    // `parameter` lies within the breaks.
    virtual AcGePoint3d pointAt(double parameter) const = 0;
    virtual AcGeVector3d derivativeAt(double parameter) const = 0;

    // Whether the span between breaks `span` and `span` + 1 is a straight line.
    virtual bool isStraight(std::size_t span) const = 0;

    double length() const;
    double lengthTo(double parameter) const;
    // The parameter at a length from 0 to length().
    double paramAtLength(double length) const;

  protected:
    explicit Curve(std::vector<double> breaks) : breaks_(std::move(breaks)) {}

    // The speed along a span where it is constant.
    virtual std::optional<double> constantSpeed(std::size_t span) const = 0;
    // The length between two parameters of one span where there is a closed form for it.
    virtual std::optional<double> closedLength(double /*from*/, double /*to*/) const {
        return std::nullopt;
    }

  private:
    struct Panel {
        double begin;
        double end;
        double lengthBefore;
        double length;
        bool even;  // run through at constant speed
    };

    const std::vector<Panel>& panels() const;
    double integral(double from, double to) const;
    double paramInside(const Panel& panel, double wanted, double guess) const;
    double roughLength() const;
    void addPanels(double begin, double end, double tolerance, std::size_t most) const;
    void addPanel(double begin, double end, double length, bool even) const;

    std::vector<double> breaks_;
    mutable std::vector<Panel> panels_;  // filled when a length is first asked for
};

// From `from` to `to`, its parameter the length.
std::shared_ptr<const Curve> lineCurve(const AcGePoint3d& from, const AcGePoint3d& to);

// center + cos t * major + sin t * minor for t from `start` to `end`; a circle's axes are of one
// length and square to each other.
std::shared_ptr<const Curve> ellipseCurve(const AcGePoint3d& center, const AcGeVector3d& major,
                                          const AcGeVector3d& minor, double start, double end,
                                          bool circular);

struct PlaneVertex {
    AcGePoint3d point;   // in the plane's coordinates
    double bulge = 0.0;  // of the segment that follows
};

// Straight segments and arcs through `vertices`, the parameter counting segments; a closed one
// returns to its first vertex. Null without vertices.
std::shared_ptr<const Curve> polylineCurve(const AcGeMatrix3d& toWorld,
                                           std::vector<PlaneVertex> vertices, bool closed);

struct Nurbs {
    int degree = 3;
    std::vector<double> knots;
    std::vector<AcGePoint3d> points;
    std::vector<double> weights;  // one for each point, or none
};

// Null for data that are no curve: degree outside 1 to 30, too few points, a count of knots other
// than points + degree + 1, falling knots, no extent, a count of weights other than that of points,
// weights not above 0.
std::shared_ptr<const Curve> nurbsCurve(Nurbs data);

// The cubic through `points` with continuous curvature, its parameter the length of the chords
// passed. Ends take the direction of the tangents given, and no curvature without; a closed one
// runs on smoothly over its start. Points that repeat their predecessor are passed over. Null below
// two.
std::shared_ptr<const Curve> interpolatedCurve(const std::vector<AcGePoint3d>& points, bool closed,
                                               const std::optional<AcGeVector3d>& startTangent,
                                               const std::optional<AcGeVector3d>& endTangent);

// Points along the curve, its ends and breaks among them, so close that chords keep within
// `chordError` of the curve (at most 4096 to a span).
std::vector<AcGePoint3d> flattened(const Curve& curve, double chordError);

// Parameters inside the spans where the curve turns back along the x, y or z axis; with the breaks
// they hold the corners of the curve's box.
std::vector<double> turningParams(const Curve& curve);

}  // namespace host::database
