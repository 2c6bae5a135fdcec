// PolyLine sampled along a curve.
#include <dbelipse.h>
#include <dbents.h>
#include <dbspline.h>

#include <cmath>

#include "GeomEnts/EntityReading.h"
#include "GeomEnts/Pi.h"
#include "GeomStructs/PolyArc.h"

namespace TamLib {
namespace {

// Splines, ellipses and 2D polylines that are fitted or splined.
bool IsSampledCurve(AcDbEntity* entity) {
    const auto* const polyline = AcDb2dPolyline::cast(entity);
    if (polyline != nullptr) return polyline->polyType() != AcDb::k2dSimplePoly;
    return AcDbSpline::cast(entity) != nullptr || AcDbEllipse::cast(entity) != nullptr;
}

// Walks a curve by distance from its start and appends points to a polyline. What the host refuses
// keeps the value of before, 0 at first.
class Sampler {
  public:
    Sampler(PolyLine& line, const AcDbCurve& curve, double step, bool adaptive)
        : line_(line), curve_(curve), adaptive_(adaptive), segmentLength_(step), angleLimit_(step) {
        double endParam = 0.0;
        curve.getEndParam(endParam);
        curve.getDistAtParam(endParam - 1e-07, total_);
        if (adaptive) {
            angleLimit_ = 1.5707963267948966 - (kPi - step * 0.5) * 0.5;
            segmentLength_ = total_ / (6.283185307179586 / step);
        }
        firstLength_ = segmentLength_;
    }

    void Run() {
        double position = 0.0;
        for (;;) {
            if (adaptive_ && line_.count > 0) Tune(position);
            AcGePoint3d point;
            const Acad::ErrorStatus status = curve_.getPointAtDist(position, point);
            if (IsEnd(position, status)) return;
            line_.Append(ToPoint3d(point));
            const double next = position + segmentLength_;
            if (!(next > position)) return;  // a step that leads nowhere
            position = next;
        }
    }

  private:
    bool IsEnd(double distance, Acad::ErrorStatus status) const {
        return !(total_ > distance) || std::fabs(total_ - distance) < 0.0001 || status != Acad::eOk;
    }

    // Sets the length of the next segment so that the direction from the last point turns, from
    // the middle to the end of a segment behind `position`, by a third of the limit up to the
    // limit. Intended: the last point lies a segment before `position`, so that the look goes
    // one segment ahead.
    void Tune(double position) {
        for (int round = 0; round < 30; ++round) {
            const double endDistance = position + segmentLength_;
            const bool atEnd = IsEnd(endDistance, curve_.getPointAtDist(endDistance, endPoint_));
            curve_.getPointAtDist(position + segmentLength_ * 0.5, midPoint_);
            const double deviation = Deviation();
            if (deviation >= angleLimit_ / 3.0) {
                if (!atEnd && deviation < angleLimit_) return;
                if (!Halve()) return;
            } else if (atEnd) {
                if (!Halve()) return;
            } else if (segmentLength_ >= 2.0 * firstLength_) {
                return;  // long enough
            } else {
                segmentLength_ *= 1.5;
            }
        }
    }

    // The angle at the last point between the middle and the end of the segment looked at.
    double Deviation() const {
        const Point3d last = line_.data[line_.count - 1];
        const double turn =
            std::fabs(Angle(last, ToPoint3d(midPoint_)) - Angle(last, ToPoint3d(endPoint_)));
        return turn > kPi ? 6.283185307179586 - turn : turn;
    }

    bool Halve() {
        if (!(segmentLength_ > total_ / 10000.0)) return false;
        segmentLength_ *= 0.5;
        return true;
    }

    PolyLine& line_;
    const AcDbCurve& curve_;
    bool adaptive_;
    double segmentLength_;
    double angleLimit_;
    double firstLength_ = 0.0;
    double total_ = 0.0;
    AcGePoint3d midPoint_, endPoint_;
};

// Puts a flattened curve in place of what was there; of a PolyArc no arcs are left.
void Replace(PolyLine& line, const PolyLine& flat) {
    auto* const arcs = dynamic_cast<PolyArc*>(&line);
    if (arcs != nullptr) {
        *arcs = PolyArc(flat);
    } else {
        line = flat;
    }
}

}  // namespace

void PolyLine::FromCurve(AcDbEntity* entity, int disposal, double step, bool adaptive) {
    if (entity == nullptr) return;
    if (!IsSampledCurve(entity)) {
        if (PolyArc::HasArcs(entity)) {
            Replace(*this, PolyArc(entity, disposal).ToPolyLine(step, adaptive));
        } else {
            FromEntity(entity, disposal);
        }
        return;
    }
    const auto* const curve = AcDbCurve::cast(entity);
    Sampler(*this, *curve, step, adaptive).Run();
    AcGePoint3d end;
    if (curve->getEndPoint(end) == Acad::eOk) Append(ToPoint3d(end));
    if (curve->isClosed() && count > 0) Append(Point3d(data[0]));
    DisposeOf(entity, disposal);
}

}  // namespace TamLib
