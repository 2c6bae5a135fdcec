// Laws that hold for every curve.
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cmath>

#include "host/database/Curve.h"
#include "tests/host/support/LedgerListener.h"

using namespace host::database;

namespace {

// A coordinate in tenths, now and then far from the origin.
double coordinate() {
    return 0.1 * *rc::gen::inRange(-1000, 1000);
}

AcGePoint3d point(double shift) {
    const double x = coordinate();
    const double y = coordinate();
    return {x + shift, y + shift, coordinate()};
}

std::shared_ptr<const Curve> anyCurve() {
    const double shift = *rc::gen::element(0.0, 0.0, 25496000.0);
    const int count = *rc::gen::inRange(2, 9);
    switch (*rc::gen::inRange(0, 4)) {
        case 0: {
            std::vector<PlaneVertex> vertices;
            for (int i = 0; i < count; ++i) {
                AcGePoint3d at = point(shift);
                at.z = 5.0;
                vertices.push_back({at, 0.25 * *rc::gen::inRange(-6, 7)});
            }
            return polylineCurve(AcGeMatrix3d::planeToWorld({0.3, -0.4, 0.8}), vertices,
                                 *rc::gen::arbitrary<bool>());
        }
        case 1: {
            const AcGeVector3d major(1.0 + std::fabs(coordinate()), coordinate(), 0);
            const AcGeVector3d minor =
                AcGeVector3d::kZAxis.crossProduct(major) * (0.05 * *rc::gen::inRange(1, 30));
            const double start = 0.1 * *rc::gen::inRange(-30, 30);
            return ellipseCurve(point(shift), major, minor, start,
                                start + 0.1 * *rc::gen::inRange(1, 62), false);
        }
        case 2: {
            std::vector<AcGePoint3d> points;
            for (int i = 0; i < count; ++i) points.push_back(point(shift));
            return interpolatedCurve(points, *rc::gen::arbitrary<bool>(), std::nullopt,
                                     std::nullopt);
        }
        default: {
            Nurbs data;
            data.degree = *rc::gen::inRange(1, 5);
            const int points = data.degree + 1 + *rc::gen::inRange(0, 6);
            const bool rational = *rc::gen::arbitrary<bool>();
            for (int i = 0; i < points; ++i) {
                data.points.push_back(point(shift));
                if (rational) data.weights.push_back(0.2 * *rc::gen::inRange(1, 20));
            }
            double knot = 0.0;
            for (int i = 0; i < points + data.degree + 1; ++i) {
                if (i > data.degree && i <= points) knot += 0.5 * *rc::gen::inRange(1, 4);
                data.knots.push_back(knot);
            }
            return nurbsCurve(data);
        }
    }
}

}  // namespace

RC_GTEST_PROP(AnyCurve, DistancesComeBackAsTheyWere, ()) {
    const auto curve = anyCurve();
    RC_PRE(curve != nullptr);
    const double length = curve->length();
    RC_PRE(length > 0.0);
    for (int i = 0; i <= 20; ++i) {
        const double wanted = length * i / 20;
        const double parameter = curve->paramAtLength(wanted);
        RC_ASSERT(parameter >= curve->startParam() && parameter <= curve->endParam());
        RC_ASSERT(std::fabs(curve->lengthTo(parameter) - wanted) <= 1e-9 * std::max(1.0, length));
    }
}

RC_GTEST_PROP(AnyCurve, LengthIsNoShorterThanItsChordsAndCloseToThem, ()) {
    const auto curve = anyCurve();
    RC_PRE(curve != nullptr);
    double chords = 0.0;
    for (std::size_t span = 0; span + 1 < curve->breaks().size(); ++span) {
        const double begin = curve->breaks()[span];
        const double width = curve->breaks()[span + 1] - begin;
        AcGePoint3d last = curve->pointAt(begin);
        for (int i = 1; i <= 500; ++i) {
            const AcGePoint3d next = curve->pointAt(begin + width * i / 500);
            chords += last.distanceTo(next);
            last = next;
        }
    }
    RC_ASSERT(curve->length() >= chords - 1e-5);
    RC_ASSERT(curve->length() <= chords * (1.0 + 1e-3) + 1e-5);
}

RC_GTEST_PROP(AnyCurve, BoxOfBreaksAndTurningParametersHoldsEveryPoint, ()) {
    const auto curve = anyCurve();
    RC_PRE(curve != nullptr);
    AcGePoint3d low(1e300, 1e300, 1e300);
    AcGePoint3d high(-1e300, -1e300, -1e300);
    const auto add = [&](double t) {
        const AcGePoint3d p = curve->pointAt(t);
        for (unsigned axis = 0; axis < 3; ++axis) {
            low[axis] = std::min(low[axis], p[axis]);
            high[axis] = std::max(high[axis], p[axis]);
        }
    };
    for (const double t : curve->breaks()) add(t);
    for (const double t : turningParams(*curve)) add(t);
    for (int i = 0; i <= 300; ++i) {
        const AcGePoint3d p = curve->pointAt(curve->startParam() +
                                             (curve->endParam() - curve->startParam()) * i / 300);
        for (unsigned axis = 0; axis < 3; ++axis) {
            RC_ASSERT(p[axis] >= low[axis] - 1e-3);
            RC_ASSERT(p[axis] <= high[axis] + 1e-3);
        }
    }
}
