// What tests of geometry share: points compared coordinate by coordinate, and half a turn in
// radians as a decimal of its own.
#pragma once

#include <gtest/gtest.h>

#include "GeomEnts/Point3d.h"

namespace TamLib {

constexpr double kPi = 3.141592653589793;

// `actual` is a point of the library or of the host.
template <class Point>
void ExpectPoint(const Point3d& expected, const Point& actual) {
    EXPECT_EQ(expected.x, actual.x);
    EXPECT_EQ(expected.y, actual.y);
    EXPECT_EQ(expected.z, actual.z);
}

inline void ExpectNear(const Point3d& expected, const Point3d& actual, double tolerance = 1e-12) {
    EXPECT_NEAR(expected.x, actual.x, tolerance);
    EXPECT_NEAR(expected.y, actual.y, tolerance);
    EXPECT_NEAR(expected.z, actual.z, tolerance);
}

}  // namespace TamLib
