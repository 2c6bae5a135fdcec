// PointData::ConvexHull against CGAL's, whose predicates are exact.
#define CGAL_DISABLE_GMP 1
#include <CGAL/Exact_predicates_inexact_constructions_kernel.h>
#include <CGAL/convex_hull_2.h>
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

#include "GeomStructs/PointData.h"
#include "GeomStructs/PolyLine.h"

namespace TamLib {
namespace {

using Kernel = CGAL::Exact_predicates_inexact_constructions_kernel;
using Vertex = Kernel::Point_2;

// Counter-clockwise from the vertex that is the smallest by x, then y.
std::vector<Vertex> ExactHull(const PointData& set) {
    std::vector<Vertex> points, hull;
    for (const Point3d& p : set) points.emplace_back(p.x, p.y);
    CGAL::convex_hull_2(points.begin(), points.end(), std::back_inserter(hull));
    std::rotate(hull.begin(), std::min_element(hull.begin(), hull.end()), hull.end());
    return hull;
}

std::vector<Vertex> OurHull(const PointData& set) {
    PolyLine ring;
    set.ConvexHull(&ring, -1.0);
    std::vector<Vertex> hull;
    for (std::uint32_t i = 0; i + 1 < ring.count; ++i)
        hull.emplace_back(ring.data[i].x, ring.data[i].y);
    return hull;
}

RC_GTEST_PROP(ConvexHullLaws, OnAGridItIsTheExactHull, (bool onMap)) {
    // Whole coordinates: every cross product is exact, and many points lie on one line.
    const int extent = *rc::gen::element(2, 5, 20, 1000);
    const int n = *rc::gen::inRange(2, 60);
    PointData set;
    for (int i = 0; i < n; ++i) {
        Point3d p(*rc::gen::inRange(-extent, extent), *rc::gen::inRange(-extent, extent),
                  *rc::gen::inRange(0, 3));
        if (onMap) p += Point3d(25e6, 7e6, 0);
        set.Append(p);
    }
    const std::vector<Vertex> hull = ExactHull(set);
    RC_PRE(hull.size() > 1);
    RC_ASSERT(hull == OurHull(set));
}

TEST(ConvexHullLaws, OfScatteredPointsItIsTheExactHull) {
    std::mt19937 random(2026);
    std::uniform_real_distribution<double> place(0, 1000);
    std::normal_distribution<double> heap(0, 200);
    for (const Point3d& base : {Point3d(), Point3d(25e6, 7e6, 0)}) {
        for (int round = 0; round < 200; ++round) {
            PointData set;
            for (int i = 0; i < 20 + round * 10; ++i) {
                const Point3d p = round % 2 == 0 ? Point3d(place(random), place(random), 0)
                                                 : Point3d(heap(random), heap(random), 0);
                set.Append(base + p);
            }
            EXPECT_EQ(ExactHull(set), OurHull(set)) << round;
        }
    }
}

TEST(ConvexHullLaws, OfPointsOnACircleAllAreVertices) {
    for (const Point3d& base : {Point3d(), Point3d(25e6, 7e6, 0)}) {
        PointData set;
        for (int i = 0; i < 3000; ++i) {
            const double a = i * 2 * 3.141592653589793 / 3000;
            set.Append(base + Point3d(1000 * std::cos(a), 1000 * std::sin(a), 0));
        }
        const std::vector<Vertex> hull = OurHull(set);
        EXPECT_EQ(3000u, hull.size());
        EXPECT_EQ(ExactHull(set), hull);
    }
}

}  // namespace
}  // namespace TamLib
