// Window, crossing, fence and polygons against GEOS, on small grids where touching is frequent.
#include <geos_c.h>
#include <gtest/gtest.h>

#include <random>

#include "host/editor/PlanFigure.h"

using namespace host::editor;

namespace {

using Points = std::vector<PlanPoint>;

class Geos {
  public:
    Geos() : context_(GEOS_init_r()) {}
    ~Geos() { GEOS_finish_r(context_); }

    GEOSGeometry* line(const Points& points) const {
        return GEOSGeom_createLineString_r(context_, sequence(points));
    }
    GEOSGeometry* polygon(Points points) const {
        points.push_back(points.front());
        return GEOSGeom_createPolygon_r(
            context_, GEOSGeom_createLinearRing_r(context_, sequence(points)), nullptr, 0);
    }
    bool isValid(GEOSGeometry* g) const { return GEOSisValid_r(context_, g) == 1; }
    bool covers(GEOSGeometry* a, GEOSGeometry* b) const {
        return GEOSCovers_r(context_, a, b) == 1;
    }
    bool meets(GEOSGeometry* a, GEOSGeometry* b) const {
        return GEOSIntersects_r(context_, a, b) == 1;
    }
    double distance(const PlanPoint& point, GEOSGeometry* g) const {
        GEOSGeometry* const dot = GEOSGeom_createPointFromXY_r(context_, point.x, point.y);
        double value = -1.0;
        GEOSDistance_r(context_, dot, g, &value);
        free(dot);
        return value;
    }
    void free(GEOSGeometry* g) const { GEOSGeom_destroy_r(context_, g); }

  private:
    GEOSCoordSequence* sequence(const Points& points) const {
        GEOSCoordSequence* all =
            GEOSCoordSeq_create_r(context_, static_cast<unsigned>(points.size()), 2);
        for (unsigned i = 0; i < points.size(); ++i)
            GEOSCoordSeq_setXY_r(context_, all, i, points[i].x, points[i].y);
        return all;
    }
    GEOSContextHandle_t context_;
};

class Grid {
  public:
    PlanPoint point() {
        return {static_cast<double>(random_() % 9), static_cast<double>(random_() % 9)};
    }
    Points line(std::size_t count) {
        Points points{point()};
        while (points.size() < count) {
            const PlanPoint next = point();
            if (next.x != points.back().x || next.y != points.back().y) points.push_back(next);
        }
        return points;
    }
    // A polygon by the rules of the prompt; empty when the points don't make one.
    Points polygon(std::size_t count) {
        Points points;
        for (int tries = 0; points.size() < count && tries < 50; ++tries) {
            const PlanPoint next = point();
            if (staysSimple(points, next)) points.push_back(next);
        }
        return closesSimply(points) ? points : Points();
    }
    std::size_t upTo(std::size_t most) { return 2 + random_() % (most - 1); }

  private:
    std::mt19937 random_{20091117};
};

PlanFigure figure(const Points& points) {
    PlanFigure made;
    made.add({points, false});
    return made;
}

}  // namespace

TEST(PlanFigureLaws, RectanglesAgreeWithGeos) {
    const Geos geos;
    Grid grid;
    for (int i = 0; i < 20000; ++i) {
        const PlanBox box = PlanBox::around(grid.point(), grid.point());
        if (box.min.x == box.max.x || box.min.y == box.max.y) continue;
        const Points drawn = grid.line(grid.upTo(4));
        GEOSGeometry* window =
            geos.polygon({box.min, {box.max.x, box.min.y}, box.max, {box.min.x, box.max.y}});
        GEOSGeometry* line = geos.line(drawn);
        ASSERT_EQ(figure(drawn).inside(box), geos.covers(window, line)) << i;
        ASSERT_EQ(figure(drawn).crosses(box), geos.meets(window, line)) << i;
        geos.free(window);
        geos.free(line);
    }
}

TEST(PlanFigureLaws, PolygonsAgreeWithGeos) {
    const Geos geos;
    Grid grid;
    int compared = 0;
    for (int i = 0; i < 20000; ++i) {
        const Points corners = grid.polygon(3 + static_cast<std::size_t>(i % 5));
        if (corners.empty()) continue;
        const Points drawn = grid.line(grid.upTo(4));
        GEOSGeometry* polygon = geos.polygon(corners);
        GEOSGeometry* line = geos.line(drawn);
        ASSERT_TRUE(geos.isValid(polygon)) << "the prompt let a polygon pass that crosses itself";
        ASSERT_EQ(figure(drawn).inside(corners), geos.covers(polygon, line)) << i;
        ASSERT_EQ(figure(drawn).crosses(corners), geos.meets(polygon, line)) << i;
        geos.free(polygon);
        geos.free(line);
        ++compared;
    }
    EXPECT_GT(compared, 5000);
}

TEST(PlanFigureLaws, FencesAgreeWithGeos) {
    const Geos geos;
    Grid grid;
    for (int i = 0; i < 20000; ++i) {
        const Points fence = grid.line(grid.upTo(5));
        const Points drawn = grid.line(grid.upTo(4));
        GEOSGeometry* path = geos.line(fence);
        GEOSGeometry* line = geos.line(drawn);
        ASSERT_EQ(figure(drawn).touches(fence), geos.meets(path, line)) << i;
        geos.free(path);
        geos.free(line);
    }
}

TEST(PlanFigureLaws, APolygonThatIsRefusedIsNoneForGeosEither) {
    const Geos geos;
    Grid grid;
    int refused = 0;
    for (int i = 0; i < 20000; ++i) {
        const Points corners = grid.line(3 + static_cast<std::size_t>(i % 3));
        // Going back to the first point by oneself is refused as well, though it closes the same
        // ring.
        if (corners.front().x == corners.back().x && corners.front().y == corners.back().y)
            continue;
        Points taken;
        bool simple = true;
        for (const PlanPoint& corner : corners) {
            simple = simple && staysSimple(taken, corner);
            taken.push_back(corner);
        }
        simple = simple && closesSimply(corners);
        GEOSGeometry* polygon = geos.polygon(corners);
        if (!simple) ++refused;
        ASSERT_EQ(simple, geos.isValid(polygon)) << i;
        geos.free(polygon);
    }
    EXPECT_GT(refused, 1000);
}

TEST(PlanFigureLaws, DistancesAgreeWithGeos) {
    const Geos geos;
    Grid grid;
    for (int i = 0; i < 20000; ++i) {
        const Points drawn = grid.line(grid.upTo(5));
        const PlanPoint point = grid.point();
        GEOSGeometry* line = geos.line(drawn);
        ASSERT_NEAR(figure(drawn).distanceTo(point), geos.distance(point, line), 1e-14) << i;
        ASSERT_LE(figure(drawn).box().distanceTo(point), figure(drawn).distanceTo(point)) << i;
        geos.free(line);
    }
}
