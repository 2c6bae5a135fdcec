#include "GeomEnts/Arc.h"

#include <algorithm>
#include <initializer_list>

#include "GeomEnts/Box.h"
#include "GeomEnts/Pi.h"
#include "tam/TamExceptions.h"

namespace TamLib {
namespace {

constexpr double kFlat = 0.0001;  // a height below it makes no arc
constexpr const wchar_t* kSource = L"GeomEnts/Arc";

// The cross product of a chord with the vector from its start to a point: above 0 to the left.
double Cross(const Line& chord, const Point3d& point) {
    return (chord.x2 - chord.x1) * (point.y - chord.y1) -
           (chord.y2 - chord.y1) * (point.x - chord.x1);
}

double DeadBand() {
    return std::sqrt(0.0001);
}

// The same angle in 0 to 2 pi.
double Positive(double angle) {
    return angle < 0.0 ? angle + kPi * 2.0 : angle;
}

bool SameInPlan(const Point3d& a, const Point3d& b) {
    return a.x == b.x && a.y == b.y;
}

bool AtCentre(const Point3d& point, const Point3d& centre) {
    return Equals(point, centre) || (SameInPlan(point, centre) && point.z == centre.z);
}

}  // namespace

Arc::Arc(double arcHeight, const Line& chord) : Line(chord), height(arcHeight) {}

Arc::Arc(const Point3d& centre, const Point3d& start, const Point3d& end, bool clockwise)
    : Arc(centre, Line(start, end), clockwise) {}

Arc::Arc(const Point3d& centre, const Line& chord, bool clockwise) : Line(chord), height(0.0) {
    if (SameInPlan(centre, Start()))
        throw TamExpDivZero(L"Distance from start point to center point was zero", __LINE__,
                            kSource);
    SetFromCentre(centre, clockwise);
}

void Arc::SetFromCentre(const Point3d& centre, bool clockwise) {
    const double r = TamLib::Distance2d(Start(), centre), half = Length2d() * 0.5;
    const double d = r > half ? std::sqrt(r * r - half * half) : 0.0;
    const double c = Cross(*this, centre);
    height = std::fabs(r - d);
    if (std::fabs(c) >= DeadBand() && c > 0.0) {
        height = clockwise ? d + r : -std::fabs(r - d);
    } else if (!clockwise) {
        height = std::fabs(c) >= DeadBand() ? -(d + r) : -height;
    }
}

Arc::Arc(const Line& chord, const Point3d& through) : Line(chord), height(0.0) {
    const Point3d a = Start() - through, b = End() - through;
    const double determinant = ((y2 - y1) * a.x - (x2 - x1) * a.y) * 2.0;
    if (determinant == 0.0) return;
    const double toA = a.x * a.x + a.y * a.y, toB = b.x * b.x + b.y * b.y;
    const Point3d centre(through.x + (b.y * toA - a.y * toB) / determinant,
                         through.y + (a.x * toB - b.x * toA) / determinant, 0.0);
    if (SameInPlan(centre, through)) throw TamExpDivZero(L"", __LINE__, kSource);
    const double r = TamLib::Distance2d(centre, through), half = Length2d() * 0.5;
    const double d = r > half ? std::sqrt(r * r - half * half) : 0.0;
    height = std::fabs(r - d);
    const double toCentre = Cross(*this, centre), toThrough = Cross(*this, through);
    if ((toCentre > 0.0 && toThrough > 0.0) || (toCentre < 0.0 && toThrough < 0.0))
        height = r * 2.0 - height;
    if (std::fabs(toThrough) >= DeadBand() && toThrough < 0.0) height = -height;
}

Arc::Arc(const Line& chord, double angle) : Line(chord) {
    const double a = Positive(std::fmod(angle, kPi * 2.0));
    const int quarters = static_cast<int>(a / (kPi * 0.5));
    const double half = Length2d() * 0.5;
    // Intended: the number of quarter turns is taken from an angle in radians.
    const double r = half / std::cos(kPi * 0.5 - (a - quarters));
    height = std::fabs(std::fabs(r) - std::sqrt(r * r - half * half));
}

Arc::Arc(const Line& chord, double angle, SineForm)
    : Line(chord), height(chord.Length2d() * 0.5 * std::sin(angle)) {}

void Arc::SetBulge(double bulge) {
    height = BulgeToHeight(bulge, Line::Length());
}

double Arc::Bulge() const {
    if (std::fabs(height) < 1e-9) return 0.0;
    const double bulge = std::fabs(height / (Length2d() * 0.5));
    return height > 0.0 ? -bulge : bulge;
}

double Arc::BulgeToHeight(double bulge, double chord) {
    if (std::fabs(bulge) < 0.0001) return 0.0;
    const double a = std::atan(bulge), s = std::sin(a * 4.0 * 0.5);
    const double t = 0.5 / std::tan(a * 4.0 * 0.5) * chord, r = std::fabs(chord * 0.5 / s);
    const double h = (r - std::fabs(t)) * (t < 0.0 ? 1.0 : -1.0);
    if (!(std::fabs(bulge) > 1.0)) return h;
    return (r * 2.0 - std::fabs(h)) * (h < 0.0 ? 1.0 : -1.0);
}

double Arc::SweepAngle() const {
    // Not shortened to 4 |atan|, whose last digits differ at small heights.
    return kPi * 2.0 - (kPi * 0.5 - std::fabs(std::atan(height / (Length2d() * 0.5)))) * 2.0 * 2.0;
}

double Arc::HalfAngle() const {
    return kPi * 0.5 - SweepAngle() * 0.5;
}

double Arc::Radius() const {
    if (height == 0.0) return 1.7976931348623157e308;
    double x = SweepAngle();
    if (x > kPi) x = kPi * 2.0 - x;
    return std::fabs(Length2d() * 0.5 / std::sin(x * 0.5));
}

double Arc::Length() const {
    return std::fabs(height) < kFlat ? Length2d() : std::fabs(Radius() * SweepAngle());
}

double Arc::SegmentArea() const {
    if (std::fabs(height) < kFlat) return 0.0;
    const double r = Radius(), sector = SweepAngle() * (r * r) * kPi / (kPi * 2.0);
    return std::fabs(sector - (r - std::fabs(height)) * Length2d() * 0.5);
}

void Arc::Centre(Point3d& point) const {
    if (std::fabs(height) < 1e-9) {
        point = MidPoint();
        return;
    }
    const double r = Radius(), a = std::acos(Length2d() * 0.5 / r);
    const bool plus = (std::fabs(height) > r) != (height < 0.0);
    point = PolarPoint(Start(), r, plus ? Azimuth() + a : Azimuth() - a, 0.0);
}

double Arc::StartAngle() const {
    Point3d centre;
    Centre(centre);
    return Positive(Angle(centre, height > 0.0 ? Start() : End()));
}

double Arc::EndAngle() const {
    Point3d centre;
    Centre(centre);
    return Positive(Angle(centre, height > 0.0 ? End() : Start()));
}

bool Arc::IsOnBulgeSide(const Point3d& point) const {
    const double c = Cross(*this, point);
    const int side = std::fabs(c) < DeadBand() ? 0 : (c > 0.0 ? -1 : 1);
    if (height == 0.0) return side == 0;
    return side == (height > 0.0 ? -1 : 1);
}

bool Arc::InSegment(const Point3d& point) const {
    if (std::fabs(height) < kFlat || !IsOnBulgeSide(point)) return false;
    Point3d centre;
    Centre(centre);
    return !(TamLib::Distance2d(point, centre) > Radius());
}

Box Arc::GetBox() const {
    Box box = Line::GetBox();
    if (std::fabs(height) < kFlat) return box;
    Point3d centre;
    Centre(centre);
    const double r = Radius();
    for (const Point3d& reach :
         {Point3d(r, 0, 0), Point3d(-r, 0, 0), Point3d(0, r, 0), Point3d(0, -r, 0)})
        if (IsOnBulgeSide(centre + reach)) box.Add(centre + reach);
    return box;
}

void Arc::PointAtDistance(double d, Point3d& point) const {
    if (!(d > 0.0)) {
        point = Start();
    } else if (!(d <= Length())) {
        point = End();
    } else if (std::fabs(height) < kFlat) {
        point = Direction();
        // Intended: without a direction, the vector between the ends is the result.
        if (std::fabs(point.x) < 1e-10 && std::fabs(point.y) < 1e-10 && std::fabs(point.z) < 1e-10)
            return;
        const Point3d unit = point / VectorLength(point);
        point = Start() + Point3d(unit.x * d, unit.y * d, unit.z * d);
    } else {
        Point3d centre;
        Centre(centre);
        const double angle = d / Radius();
        point = Start();
        point.RotateAbout(centre, height < 0.0 ? angle : -angle, 0.0);
    }
}

void Arc::PointAtFraction(double fraction, Point3d& point) const {
    PointAtDistance(Length() * fraction, point);
}

int Arc::Side(const Point3d& point, bool touch) const {
    const int side = Line::Side(point, touch);
    if (std::fabs(height) < kFlat) return side;
    Point3d centre;
    Centre(centre);
    const int s = height > 0.0 ? -1 : 1;
    const double distance = TamLib::Distance(point, centre), radius = Radius();
    if (std::fabs(distance - radius) < 0.0001) return 0;
    if (distance < radius) return -s;
    if (!IsOnBulgeSide(centre)) return side;
    const bool beyond =
        Line(Start(), centre).Side(point, true) == s || Line(centre, End()).Side(point, true) == s;
    return beyond ? s : -s;
}

bool Arc::InSweep(const Point3d& point) const {
    if (std::fabs(height) < kFlat) return false;
    const double radius = Radius();
    // Intended: only a half circle of positive height is decided by its side.
    if (std::fabs(height - radius) < 0.0001) return IsOnBulgeSide(point);
    Point3d centre;
    Centre(centre);
    if (AtCentre(point, centre)) return true;
    const Line ray = RayThrough(point, centre, radius);
    Point3d hit;
    const int code = Line::Intersect(ray, hit, false);
    return std::fabs(height) > radius ? code == 0 : code == 1;
}

Line Arc::RayThrough(const Point3d& point, const Point3d& centre, double radius) {
    Line ray(centre, point);
    if (!(ray.Length2d() < radius)) return ray;
    const Point3d unit = ray.Direction() / ray.Length();
    const double reach = radius * 2.0;
    ray.SetEnd(centre + Point3d(unit.x * reach, unit.y * reach, unit.z * reach));
    return ray;
}

double Arc::Distance(const Point3d& point, double* along) const {
    const double toStart = TamLib::Distance2d(point, Start());
    const double toEnd = TamLib::Distance2d(point, End());
    if (std::fabs(height) < kFlat) return ChordDistance(point, toStart, toEnd, along);
    if (along != nullptr) *along = 0.0;
    Point3d centre;
    Centre(centre);
    const double radius = Radius();
    if (AtCentre(point, centre)) return radius;
    if (InSweep(point)) {
        if (along != nullptr) AlongInSweep(point, centre, radius, *along);
        return std::fabs(TamLib::Distance2d(point, centre) - radius);
    }
    if (along != nullptr) *along = toEnd > toStart ? 0.0 : Length();
    return std::min(toStart, toEnd);
}

double Arc::ChordDistance(const Point3d& point, double toStart, double toEnd, double* along) const {
    double position = 0.0, distance = LineDistance2d(point, &position);
    if (position < 0.0) {
        position = 0.0;
        distance = toStart;
    } else if (position > Length()) {
        position = Length();
        distance = toEnd;
    }
    if (along != nullptr) *along = position;
    return distance;
}

}  // namespace TamLib
