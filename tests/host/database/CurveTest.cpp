// Curves: lengths and points against closed forms and against fine sampling.
#include <dbelipse.h>
#include <dbents.h>
#include <dbpl.h>
#include <dbspline.h>
#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "host/database/Curve.h"
#include "host/database/Drawing.h"
#include "tests/host/support/DrawingText.h"
#include "tests/host/support/LedgerListener.h"

using namespace host::database;
using host::test::DrawingText;

namespace {

constexpr double kPi = 3.14159265358979323846;

// An open curve of a drawing, closed with the object.
class Opened {
  public:
    explicit Opened(const std::string& record, const std::vector<std::string>& more = {}) {
        DrawingText text;
        text.entity(record);
        for (const std::string& next : more) text.entity(next);
        database_ = text.database();
        AcDbEntity* entity = nullptr;
        EXPECT_EQ(acdbOpenAcDbEntity(entity, idFromHandle(*database_, L"2F"), AcDb::kForRead),
                  Acad::eOk);
        curve_ = AcDbCurve::cast(entity);
    }
    ~Opened() { curve_->close(); }
    const AcDbCurve& operator*() const { return *curve_; }
    const AcDbCurve* operator->() const { return curve_; }

    double length() const {
        double end = 0.0, distance = -1.0;
        EXPECT_EQ(curve_->getEndParam(end), Acad::eOk);
        EXPECT_EQ(curve_->getDistAtParam(end, distance), Acad::eOk);
        return distance;
    }
    AcGePoint3d at(double distance) const {
        AcGePoint3d point;
        EXPECT_EQ(curve_->getPointAtDist(distance, point), Acad::eOk) << distance;
        return point;
    }
    AcGePoint3d atParam(double parameter) const {
        AcGePoint3d point;
        EXPECT_EQ(curve_->getPointAtParam(parameter, point), Acad::eOk) << parameter;
        return point;
    }

  private:
    std::unique_ptr<AcDbDatabase> database_;
    AcDbCurve* curve_ = nullptr;
};

// The length of the curve by chords of many pieces, twice, extrapolated to none (Richardson).
double sampledLength(const Opened& curve, double from, double to) {
    const auto chords = [&](int pieces) {
        double sum = 0.0;
        AcGePoint3d last = curve.atParam(from);
        for (int i = 1; i <= pieces; ++i) {
            const AcGePoint3d next =
                curve.atParam(i == pieces ? to : from + (to - from) * i / pieces);
            sum += last.distanceTo(next);
            last = next;
        }
        return sum;
    };
    const double coarse = chords(20000);
    return (4.0 * chords(40000) - coarse) / 3.0;
}

// Distances, parameters and points agree with one another all along.
void checkConsistent(const Opened& curve, double tolerance) {
    double start = 0.0, end = 0.0;
    ASSERT_EQ(curve->getStartParam(start), Acad::eOk);
    ASSERT_EQ(curve->getEndParam(end), Acad::eOk);
    const double length = curve.length();
    double before = -1.0;
    for (int i = 0; i <= 100; ++i) {
        const double parameter = i == 100 ? end : start + (end - start) * i / 100;
        double distance = -1.0;
        ASSERT_EQ(curve->getDistAtParam(parameter, distance), Acad::eOk);
        EXPECT_GT(distance, before);
        before = distance;
        double back = -1.0;
        ASSERT_EQ(curve->getParamAtDist(std::min(distance, length), back), Acad::eOk);
        EXPECT_LE(curve.atParam(back).distanceTo(curve.atParam(parameter)), tolerance);
    }
    AcGePoint3d point;
    ASSERT_EQ(curve->getStartPoint(point), Acad::eOk);
    EXPECT_LE(point.distanceTo(curve.at(0.0)), tolerance);
    ASSERT_EQ(curve->getEndPoint(point), Acad::eOk);
    EXPECT_LE(point.distanceTo(curve.at(length)), tolerance);
}

void checkOutsideIsRefused(const Opened& curve) {
    const double length = curve.length();
    AcGePoint3d point(7, 8, 9);
    double number = 5.0;
    for (const double distance :
         {-1e-9, length * (1 + 1e-9) + 1e-9, length + 1.0, 1e300, -1e300, double{NAN}}) {
        EXPECT_EQ(curve->getPointAtDist(distance, point), Acad::eInvalidInput);
        EXPECT_EQ(curve->getParamAtDist(distance, number), Acad::eInvalidInput);
    }
    double start = 0.0, end = 0.0;
    curve->getStartParam(start);
    curve->getEndParam(end);
    AcGeVector3d slope(1, 2, 3);
    for (const double parameter : {start - 1e-6, end + 1e-6, double{NAN}}) {
        EXPECT_EQ(curve->getPointAtParam(parameter, point), Acad::eInvalidInput);
        EXPECT_EQ(curve->getDistAtParam(parameter, number), Acad::eInvalidInput);
        EXPECT_EQ(curve->getFirstDeriv(parameter, slope), Acad::eInvalidInput);
    }
    EXPECT_EQ(point, AcGePoint3d(7, 8, 9));
    EXPECT_EQ(number, 5.0);
    EXPECT_EQ(slope, AcGeVector3d(1, 2, 3));
}

std::string ellipse(double major, double ratio, double start, double end) {
    return "ELLIPSE|5 2F|8 0|10 3|20 4|30 5|11 " + std::to_string(major) +
           "|21 0|31 0|210 0|220 0|230 1|40 " + std::to_string(ratio) + "|41 " +
           std::to_string(start) + "|42 " + std::to_string(end);
}

const std::string kCubic =
    "SPLINE|5 2F|8 0|70 0|71 3|40 0|40 0|40 0|40 0|40 0.4|40 0.7|40 1|40 1|40 1|40 1|10 0|20 0|30 "
    "0|10 "
    "10|20 20|30 5|10 30|20 -10|30 0|10 40|20 15|30 -5|10 55|20 0|30 0|10 60|20 30|30 10";

}  // namespace

TEST(LineCurve, ParameterIsTheLength) {
    const Opened line("LINE|5 2F|8 0|10 1|20 1|30 1|11 4|21 5|31 1");
    EXPECT_EQ(line.length(), 5.0);
    EXPECT_TRUE(line.at(2.5).isEqualTo({2.5, 3, 1}));
    EXPECT_FALSE(line->isClosed());
    checkConsistent(line, 1e-12);
    checkOutsideIsRefused(line);
}

TEST(LineCurve, WithoutLengthIsOnePoint) {
    const Opened line("LINE|5 2F|8 0|10 1|20 1|11 1|21 1");
    EXPECT_EQ(line.length(), 0.0);
    EXPECT_EQ(line.at(0.0), AcGePoint3d(1, 1, 0));
}

TEST(CircleCurve, LengthIsTheCircumference) {
    const Opened circle("CIRCLE|5 2F|8 0|10 25496000|20 6672000|30 0|40 12.5");
    EXPECT_DOUBLE_EQ(circle.length(), 25.0 * kPi);
    EXPECT_NEAR(circle.at(25.0 * kPi / 4).distanceTo({25496000, 6672012.5, 0}), 0.0, 1e-8);
    checkOutsideIsRefused(circle);
}

TEST(CircleCurve, WithoutRadiusIsDegenerate) {
    for (const char* radius : {"0", "-3"}) {
        const Opened circle("CIRCLE|5 2F|8 0|10 0|20 0|40 " + std::string(radius));
        double number = 5.0;
        EXPECT_EQ(circle->getEndParam(number), Acad::eDegenerateGeometry);
        EXPECT_EQ(number, 5.0);
    }
}

TEST(ArcCurve, RunsCounterClockwiseInItsPlane) {
    const Opened arc("ARC|5 2F|8 0|10 0|20 0|40 2|50 270|51 90");
    EXPECT_NEAR(arc.length(), 2 * kPi, 1e-12);
    EXPECT_TRUE(arc.at(0).isEqualTo({0, -2, 0}));
    EXPECT_TRUE(arc.at(kPi).isEqualTo({2, 0, 0}));
    EXPECT_TRUE(arc.at(2 * kPi).isEqualTo({0, 2, 0}));
    const Opened mirrored("ARC|5 2F|8 0|10 5|20 0|40 2|50 270|51 90|210 0|220 0|230 -1");
    EXPECT_TRUE(mirrored.at(kPi).isEqualTo({-7, 0, 0}));
    checkConsistent(arc, 1e-12);
    checkOutsideIsRefused(arc);
}

TEST(ArcCurve, AnglesOfManyTurnsAreTakenModuloATurn) {
    const Opened arc("ARC|5 2F|8 0|10 0|20 0|40 1|50 0|51 3690");
    EXPECT_NEAR(arc.length(), kPi / 2, 1e-9);
    const Opened huge("ARC|5 2F|8 0|10 0|20 0|40 1|50 0|51 1e300");
    EXPECT_LE(huge.length(), 2 * kPi + 1e-9);
    const Opened full("ARC|5 2F|8 0|10 0|20 0|40 1|50 30|51 30");
    EXPECT_NEAR(full.length(), 2 * kPi, 1e-12);
}

TEST(EllipseCurve, PerimeterIsTheCompleteEllipticIntegral) {
    for (const double ratio : {1.0, 0.5, 0.1, 0.001, 2.0}) {
        const Opened curve(ellipse(10.0, ratio, 0.0, 6.283185));
        // From 0 to the end parameter as written; the rest of a turn is short.
        const double big = 10.0 * std::max(1.0, ratio), small = 10.0 * std::min(1.0, ratio);
        const double k = std::sqrt(1.0 - small * small / (big * big));
        const Opened whole(ellipse(10.0, ratio, 0.0, 0.0));
        EXPECT_NEAR(whole.length(), 4.0 * big * std::comp_ellint_2(k), 1e-9) << ratio;
        EXPECT_LT(curve.length(), whole.length());
    }
}

TEST(EllipseCurve, LengthOfAnArcIsTheIncompleteEllipticIntegral) {
    const Opened curve(ellipse(8.0, 0.25, kPi / 2, kPi / 2 + 1.25));
    // From the end of the smaller axis the speed is a sqrt(1 - k^2 sin^2).
    const double k = std::sqrt(1.0 - 0.0625);
    double end = 0.0;
    ASSERT_EQ(curve->getEndParam(end), Acad::eOk);
    double start = 0.0;
    ASSERT_EQ(curve->getStartParam(start), Acad::eOk);
    const auto fromTop = [&](double t) { return 8.0 * std::ellint_2(k, t - kPi / 2); };
    EXPECT_NEAR(curve.length(), fromTop(end) - fromTop(start), 1e-9);
    checkConsistent(curve, 1e-9);
    checkOutsideIsRefused(curve);
}

TEST(EllipseCurve, ThinEllipseStaysTrue) {
    const Opened curve(ellipse(1000.0, 0.000001, 0.0, 0.0));
    EXPECT_NEAR(curve.length(), 4000.0 * std::comp_ellint_2(std::sqrt(1.0 - 1e-12)), 1e-9);
}

// Far out coordinates hold few digits of a slope; differences of them hold all.
TEST(SplineCurve, LengthIsTheSameFarFromTheOrigin) {
    std::string far = kCubic;
    for (const auto& [near, shifted] :
         std::vector<std::pair<std::string, std::string>>{{"|10 0|", "|10 25496000|"},
                                                          {"|10 10|", "|10 25496010|"},
                                                          {"|10 30|", "|10 25496030|"},
                                                          {"|10 40|", "|10 25496040|"},
                                                          {"|10 55|", "|10 25496055|"},
                                                          {"|10 60|", "|10 25496060|"},
                                                          {"|20 0|", "|20 6672000|"},
                                                          {"|20 20|", "|20 6672020|"},
                                                          {"|20 -10|", "|20 6671990|"},
                                                          {"|20 15|", "|20 6672015|"},
                                                          {"|20 30|", "|20 6672030|"}}) {
        for (std::size_t at = far.find(near); at != std::string::npos; at = far.find(near)) {
            far.replace(at, near.size(), shifted);
        }
    }
    const Opened here(kCubic);
    const Opened there(far);
    EXPECT_NEAR(there.length(), here.length(), 1e-9);
    EXPECT_NEAR(there.at(40.0).x - 25496000, here.at(40.0).x, 1e-8);
}

TEST(PolylineCurve, ArcIsTheSameFarFromTheOrigin) {
    const Opened here("LWPOLYLINE|5 2F|8 0|70 0|10 0|20 0|42 0.3|10 4|20 3");
    const Opened there(
        "LWPOLYLINE|5 2F|8 0|70 0|10 25496000|20 6672000|42 0.3|10 25496004|20 6672003");
    EXPECT_EQ(there.length(), here.length());
}

TEST(EllipseCurve, DegenerateFieldsAreRefused) {
    for (const char* record : {"ELLIPSE|5 2F|8 0|10 0|20 0|11 0|21 0|40 0.5",
                               "ELLIPSE|5 2F|8 0|10 0|20 0|11 1|21 0|40 0",
                               "ELLIPSE|5 2F|8 0|10 0|20 0|11 1|21 0|40 0.5|210 0|220 0|230 0"}) {
        const Opened curve(record);
        AcGePoint3d point(1, 2, 3);
        EXPECT_EQ(curve->getEndPoint(point), Acad::eDegenerateGeometry);
        EXPECT_EQ(point, AcGePoint3d(1, 2, 3));
    }
}

TEST(PolylineCurve, BulgeOfOneIsAHalfCircleToTheRight) {
    const Opened curve("LWPOLYLINE|5 2F|8 0|90 3|70 0|10 0|20 0|42 1|10 4|20 0|10 4|20 3");
    EXPECT_NEAR(curve.length(), 2 * kPi + 3.0, 1e-12);
    EXPECT_NEAR(curve.at(kPi).distanceTo({2, -2, 0}), 0.0, 1e-12);
    EXPECT_EQ(curve.atParam(1.0), AcGePoint3d(4, 0, 0));
    EXPECT_TRUE(curve.at(2 * kPi + 1.5).isEqualTo({4, 1.5, 0}));
    checkConsistent(curve, 1e-12);
    checkOutsideIsRefused(curve);
}

TEST(PolylineCurve, ClosedOneReturnsToItsStart) {
    const Opened curve(
        "LWPOLYLINE|5 2F|8 0|90 4|70 1|38 2|10 0|20 0|10 4|20 0|10 4|20 4|10 0|20 4|42 -0.5");
    double end = 0.0;
    ASSERT_EQ(curve->getEndParam(end), Acad::eOk);
    EXPECT_EQ(end, 4.0);
    EXPECT_EQ(curve.at(curve.length()), AcGePoint3d(0, 0, 2));
    // The last side is an arc of angle 4 atan 0.5 over a chord of 4.
    const double angle = 4 * std::atan(0.5);
    EXPECT_NEAR(curve.length(), 12.0 + angle * (2.0 / std::sin(angle / 2)), 1e-12);
    EXPECT_NEAR(sampledLength(curve, 3.0, 4.0), angle * (2.0 / std::sin(angle / 2)), 1e-9);
    checkConsistent(curve, 1e-12);
}

TEST(PolylineCurve, RepeatedVerticesDoNoHarm) {
    const Opened curve(
        "LWPOLYLINE|5 2F|8 0|90 4|70 0|10 0|20 0|10 0|20 0|42 1|10 0|20 0|10 3|20 4");
    EXPECT_EQ(curve.length(), 5.0);
    EXPECT_EQ(curve.at(5.0), AcGePoint3d(3, 4, 0));
    EXPECT_TRUE(curve.at(2.5).isEqualTo({1.5, 2, 0}));
}

TEST(PolylineCurve, OneVertexIsAPointAndNoneIsDegenerate) {
    const Opened point("LWPOLYLINE|5 2F|8 0|90 1|70 0|10 3|20 4");
    EXPECT_EQ(point.length(), 0.0);
    EXPECT_EQ(point.at(0.0), AcGePoint3d(3, 4, 0));
    const Opened none("LWPOLYLINE|5 2F|8 0|90 0|70 0");
    double number = 5.0;
    EXPECT_EQ(none->getEndParam(number), Acad::eDegenerateGeometry);
}

TEST(SplineCurve, CubicAgreesWithFineSampling) {
    const Opened curve(kCubic);
    EXPECT_NEAR(curve.length(),
                sampledLength(curve, 0.0, 0.4) + sampledLength(curve, 0.4, 0.7) +
                    sampledLength(curve, 0.7, 1.0),
                1e-9);
    double distance = 0.0;
    ASSERT_EQ(curve->getDistAtParam(0.55, distance), Acad::eOk);
    EXPECT_NEAR(distance, sampledLength(curve, 0.0, 0.4) + sampledLength(curve, 0.4, 0.55), 1e-9);
    EXPECT_EQ(curve.atParam(0.0), AcGePoint3d(0, 0, 0));
    EXPECT_EQ(curve.atParam(1.0), AcGePoint3d(60, 30, 10));
    checkConsistent(curve, 1e-9);
    checkOutsideIsRefused(curve);
}

// A quadratic with weights 1, cos 45, 1 is a quarter of a circle.
TEST(SplineCurve, RationalQuadraticIsACircle) {
    const Opened curve(
        "SPLINE|5 2F|8 0|70 4|71 2|40 0|40 0|40 0|40 1|40 1|40 1|41 1|41 0.7071067811865476|41 "
        "1|10 "
        "5|20 0|10 5|20 5|10 0|20 5");
    EXPECT_NEAR(curve.length(), 2.5 * kPi, 1e-10);
    EXPECT_NEAR(curve.at(1.25 * kPi).distanceTo({5 * std::cos(kPi / 4), 5 * std::sin(kPi / 4), 0}),
                0.0, 1e-9);
    for (double t = 0.0; t <= 1.0; t += 0.125) {
        EXPECT_NEAR(curve.atParam(t).asVector().length(), 5.0, 1e-12);
    }
    checkConsistent(curve, 1e-9);
}

// A whole circle as four of them: knots in pairs, closed by its ends.
TEST(SplineCurve, ClosedRationalQuadraticIsAWholeCircle) {
    const std::string w = "|41 0.7071067811865476";
    const Opened curve(
        "SPLINE|5 2F|8 0|70 5|71 2|40 0|40 0|40 0|40 1|40 1|40 2|40 2|40 3|40 3|40 4|40 4|40 4|41 "
        "1" +
        w + "|41 1" + w + "|41 1" + w + "|41 1" + w +
        "|41 1|10 1|20 0|10 1|20 1|10 0|20 1|10 -1|20 1|10 -1|20 0|10 -1|20 -1|10 0|20 -1|10 1|20 "
        "-1|10 1|20 0");
    EXPECT_TRUE(curve->isClosed());
    EXPECT_NEAR(curve.length(), 2 * kPi, 1e-10);
    EXPECT_NEAR(curve.at(1.5 * kPi).distanceTo({0, -1, 0}), 0.0, 1e-9);
}

// Uniform knots not repeated at the ends: only the inner range counts.
TEST(SplineCurve, PeriodicSplineRunsOverItsInnerKnots) {
    std::string record = "SPLINE|5 2F|8 0|70 3|71 3";
    for (int i = -3; i <= 9; ++i) record += "|40 " + std::to_string(i);
    for (int i = 0; i < 9; ++i) {
        const double angle = kPi / 3 * i;
        record += "|10 " + std::to_string(10 * std::cos(angle)) + "|20 " +
                  std::to_string(10 * std::sin(angle));
    }
    const Opened curve(record);
    double start = -1.0, end = -1.0;
    ASSERT_EQ(curve->getStartParam(start), Acad::eOk);
    ASSERT_EQ(curve->getEndParam(end), Acad::eOk);
    EXPECT_EQ(start, 0.0);
    EXPECT_EQ(end, 6.0);
    EXPECT_TRUE(curve->isClosed());
    EXPECT_TRUE(curve->isPeriodic());
    EXPECT_LE(curve.atParam(start).distanceTo(curve.atParam(end)), 1e-5);
    double sum = 0.0;
    for (int i = 0; i < 6; ++i) sum += sampledLength(curve, i, i + 1);
    EXPECT_NEAR(curve.length(), sum, 1e-9);
}

TEST(SplineCurve, EndsThatMeetCloseIt) {
    const std::string head =
        "SPLINE|5 2F|8 0|70 0|71 2|40 0|40 0|40 0|40 0.5|40 1|40 1|40 1|10 0|20 0|10 5|20 0|10 "
        "5|20 5";
    EXPECT_TRUE(Opened(head + "|10 0|20 0")->isClosed());
    EXPECT_FALSE(Opened(head + "|10 0|20 0.001")->isClosed());
    EXPECT_FALSE(Opened(head + "|10 0|20 0")->isPeriodic());
}

TEST(SplineCurve, DegreeOneIsItsPolygon) {
    const Opened curve(
        "SPLINE|5 2F|8 0|70 0|71 1|40 0|40 0|40 1|40 5|40 5|10 0|20 0|10 3|20 4|10 3|20 10");
    EXPECT_DOUBLE_EQ(curve.length(), 11.0);
    EXPECT_TRUE(curve.at(5.0).isEqualTo({3, 4, 0}));
    EXPECT_TRUE(curve.at(8.0).isEqualTo({3, 7, 0}));
}

// The speed vanishes where three control points coincide.
TEST(SplineCurve, CuspIsPassed) {
    const Opened curve(
        "SPLINE|5 2F|8 0|70 0|71 3|40 0|40 0|40 0|40 0|40 1|40 2|40 3|40 3|40 3|40 3|10 0|20 0|10 "
        "10|20 0|10 "
        "10|20 0|10 10|20 0|10 10|20 10|10 20|20 10");
    double sum = 0.0;
    for (int i = 0; i < 3; ++i) sum += sampledLength(curve, i, i + 1);
    EXPECT_NEAR(curve.length(), sum, 1e-8);
    for (int i = 0; i <= 50; ++i) {
        double distance = 0.0;
        double parameter = 0.0;
        const double wanted = std::min(curve.length() * i / 50, curve.length());
        ASSERT_EQ(curve->getParamAtDist(wanted, parameter), Acad::eOk);
        ASSERT_EQ(curve->getDistAtParam(parameter, distance), Acad::eOk);
        EXPECT_NEAR(distance, wanted, 1e-9);
    }
}

TEST(SplineCurve, FieldsThatFitNoCurveAreDegenerate) {
    const std::string knots = "|40 0|40 0|40 0|40 1|40 1|40 1";
    const std::string points = "|10 0|20 0|10 1|20 1|10 2|20 0";
    const std::string head = "SPLINE|5 2F|8 0|70 0|71 2";
    EXPECT_GT(Opened(head + knots + points).length(), 0.0);
    for (const std::string& bad :
         {head, head + points, head + knots + "|40 2" + points,
          head + "|40 0|40 0|40 1|40 0|40 1|40 1" + points,
          head + "|40 0|40 0|40 0|40 0|40 0|40 0" + points, head + knots + points + "|41 1",
          head + knots + points + "|41 1|41 0|41 1", head + knots + points + "|41 1|41 -1|41 1",
          "SPLINE|5 2F|8 0|70 0|71 0" + knots + points,
          "SPLINE|5 2F|8 0|70 0|71 -3" + knots + points,
          "SPLINE|5 2F|8 0|70 0|71 31" + knots + points, head + "|11 1|21 1"}) {
        const Opened curve(bad);
        double number = 5.0;
        EXPECT_EQ(curve->getEndParam(number), Acad::eDegenerateGeometry) << bad;
        EXPECT_FALSE(curve->isClosed());
    }
}

TEST(FitPoints, CurvePassesThroughAllOfThem) {
    const Opened curve(
        "SPLINE|5 2F|8 0|70 8|71 3|11 0|21 0|11 10|21 5|11 20|21 -5|11 20|21 -5|11 35|21 0");
    const double chord = std::sqrt(125.0);
    EXPECT_TRUE(curve.atParam(0).isEqualTo({0, 0, 0}));
    EXPECT_TRUE(curve.atParam(chord).isEqualTo({10, 5, 0}));
    double end = 0.0;
    ASSERT_EQ(curve->getEndParam(end), Acad::eOk);
    EXPECT_NEAR(end, chord + std::sqrt(200.0) + std::sqrt(250.0), 1e-12);
    EXPECT_TRUE(curve.atParam(end).isEqualTo({35, 0, 0}));
    checkConsistent(curve, 1e-9);
}

TEST(FitPoints, TwoPointsAreAStraightLine) {
    const Opened curve("SPLINE|5 2F|8 0|70 8|71 3|11 0|21 0|31 0|11 3|21 4|31 0");
    EXPECT_NEAR(curve.length(), 5.0, 1e-12);
    EXPECT_TRUE(curve.at(2.5).isEqualTo({1.5, 2, 0}));
}

TEST(FitPoints, TangentsAreFollowedAtTheEnds) {
    const Opened curve(
        "SPLINE|5 2F|8 0|70 8|71 3|12 0|22 5|32 0|13 0|23 -2|33 0|11 0|21 0|11 10|21 0|11 20|21 0");
    AcGeVector3d slope;
    ASSERT_EQ(curve->getFirstDeriv(0.0, slope), Acad::eOk);
    EXPECT_TRUE(slope.isEqualTo({0, 1, 0}));
    ASSERT_EQ(curve->getFirstDeriv(20.0, slope), Acad::eOk);
    EXPECT_TRUE(slope.isEqualTo({0, -1, 0}));
}

// First and second derivatives agree where the pieces meet, the seam of a closed one included.
TEST(FitPoints, CurvatureIsContinuous) {
    for (const bool closed : {false, true}) {
        for (const int count : {2, 3, 4, 7}) {
            std::mt19937 random(static_cast<unsigned>(count));
            std::uniform_real_distribution<double> number(-50, 50);
            std::vector<AcGePoint3d> points;
            for (int i = 0; i < count; ++i)
                points.emplace_back(number(random), number(random), number(random));
            const auto curve = interpolatedCurve(points, closed, std::nullopt, std::nullopt);
            ASSERT_NE(curve, nullptr);
            const auto& breaks = curve->breaks();
            EXPECT_EQ(breaks.size(), points.size() + (closed ? 1 : 0));
            const double h = 1e-4;
            const auto second = [&](double t, double side) {
                return (curve->derivativeAt(t + side * 2 * h) - curve->derivativeAt(t + side * h)) *
                       (side / h);
            };
            for (std::size_t i = closed ? 0 : 1; i + 1 < breaks.size(); ++i) {
                const double before = i == 0 ? breaks.back() : breaks[i];
                EXPECT_LE(
                    (curve->derivativeAt(before - 1e-9) - curve->derivativeAt(breaks[i] + 1e-9))
                        .length(),
                    1e-6);
                EXPECT_LE((second(before, -1) - second(breaks[i], 1)).length(), 1e-3)
                    << count << closed;
            }
            if (!closed) {
                EXPECT_LE(second(breaks.front(), 1).length(), 1e-2);
                EXPECT_LE(second(breaks.back(), -1).length(), 1e-2);
            }
        }
    }
}

TEST(FitPoints, ClosedOneReturnsToItsStart) {
    const Opened curve("SPLINE|5 2F|8 0|70 9|71 3|11 0|21 0|11 10|21 0|11 10|21 10|11 0|21 10");
    EXPECT_TRUE(curve->isClosed());
    EXPECT_LE(curve.at(0).distanceTo(curve.at(curve.length())), 1e-12);
    // By its symmetry the curve's quarters are of one length.
    EXPECT_NEAR(curve.at(curve.length() / 4).distanceTo({10, 0, 0}), 0.0, 1e-9);
}

TEST(Flattening, ChordsKeepWithinTheError) {
    const Opened spline(kCubic);
    const auto cubic =
        nurbsCurve({3,
                    {0, 0, 0, 0, 0.4, 0.7, 1, 1, 1, 1},
                    {{0, 0, 0}, {10, 20, 5}, {30, -10, 0}, {40, 15, -5}, {55, 0, 0}, {60, 30, 10}},
                    {}});
    const auto circle = ellipseCurve({0, 0, 0}, {100, 0, 0}, {0, 100, 0}, 0, 2 * kPi, true);
    for (const auto& curve : {cubic, circle}) {
        for (const double error : {1.0, 0.1, 0.001}) {
            const auto points = flattened(*curve, error);
            EXPECT_EQ(points.front(), curve->pointAt(curve->startParam()));
            EXPECT_EQ(points.back(), curve->pointAt(curve->endParam()));
            for (int i = 0; i <= 2000; ++i) {
                const double t =
                    curve->startParam() + (curve->endParam() - curve->startParam()) * i / 2000;
                const AcGePoint3d p = curve->pointAt(t);
                double nearest = 1e300;
                for (std::size_t k = 0; k + 1 < points.size(); ++k) {
                    const AcGeVector3d chord = points[k + 1] - points[k];
                    const double part = std::min(
                        1.0, std::max(0.0, chord.dotProduct(p - points[k]) / chord.lengthSqrd()));
                    nearest = std::min(nearest, p.distanceTo(points[k] + chord * part));
                }
                ASSERT_LE(nearest, error * 1.3);
            }
        }
    }
}

TEST(Flattening, StraightSpansGiveTheirEndsAlone) {
    const auto square =
        polylineCurve(AcGeMatrix3d::kIdentity, {{{0, 0, 0}}, {{1, 0, 0}}, {{1, 1, 0}}}, true);
    EXPECT_EQ(flattened(*square, 0.001).size(), 4U);
}
