// GEOS as an independent judge of areas, centroids and sides. Natively only.
#pragma once

#include <geos_c.h>

#include <memory>
#include <stdexcept>

#include "GeomStructs/PolyLine.h"

namespace TamLib {

class Geos {
  public:
    Geos() : context_(GEOS_init_r()) {}
    ~Geos() { GEOS_finish_r(context_); }
    Geos(const Geos&) = delete;
    Geos& operator=(const Geos&) = delete;
    GEOSContextHandle_t Context() const { return context_; }

  private:
    GEOSContextHandle_t context_;
};

// A closed polyline as a polygon of GEOS, prepared for many questions.
class GeosPolygon {
  public:
    GeosPolygon(const Geos& geos, const PolyLine& ring) : context_(geos.Context()) {
        boundary_ = GEOSGeom_createLinearRing_r(context_, Sequence(ring));
        polygon_ = GEOSGeom_createPolygon_r(
            context_, GEOSGeom_createLinearRing_r(context_, Sequence(ring)), nullptr, 0);
        prepared_ = GEOSPrepare_r(context_, polygon_);
        if (prepared_ == nullptr) throw std::runtime_error("GEOS takes no such ring");
    }
    ~GeosPolygon() {
        GEOSPreparedGeom_destroy_r(context_, prepared_);
        GEOSGeom_destroy_r(context_, polygon_);
        GEOSGeom_destroy_r(context_, boundary_);
    }
    GeosPolygon(const GeosPolygon&) = delete;
    GeosPolygon& operator=(const GeosPolygon&) = delete;

    double Area() const {
        double area = 0;
        GEOSArea_r(context_, polygon_, &area);
        return area;
    }
    Point3d Centroid() const {
        GEOSGeometry* const point = GEOSGetCentroid_r(context_, polygon_);
        Point3d centroid;
        GEOSGeomGetX_r(context_, point, &centroid.x);
        GEOSGeomGetY_r(context_, point, &centroid.y);
        GEOSGeom_destroy_r(context_, point);
        return centroid;
    }
    bool IsCounterClockwise() const {
        char ccw = 0;
        GEOSCoordSeq_isCCW_r(context_, GEOSGeom_getCoordSeq_r(context_, boundary_), &ccw);
        return ccw == 1;
    }
    // Strictly inside, prepared or not.
    bool Contains(const Point3d& p) const {
        GEOSGeometry* const point = GEOSGeom_createPointFromXY_r(context_, p.x, p.y);
        const bool contains = GEOSPreparedContains_r(context_, prepared_, point) == 1;
        GEOSGeom_destroy_r(context_, point);
        return contains;
    }
    bool ContainsUnprepared(const Point3d& p) const {
        GEOSGeometry* const point = GEOSGeom_createPointFromXY_r(context_, p.x, p.y);
        const bool contains = GEOSContains_r(context_, polygon_, point) == 1;
        GEOSGeom_destroy_r(context_, point);
        return contains;
    }
    bool IsSimple() const { return GEOSisValid_r(context_, polygon_) == 1; }
    // What `PolyLine::CrossesPolygon` tells: the boundary is connected, so that one which comes
    // both inside and outside of the other polygon goes through its boundary.
    int Crosses(const GeosPolygon& other) const {
        char* const matrix = GEOSRelate_r(context_, polygon_, other.polygon_);
        constexpr int kBoundary = 3;  // the row; columns: interior, boundary, exterior
        const bool inside = matrix[kBoundary] != 'F', outside = matrix[kBoundary + 2] != 'F';
        const bool touches = matrix[kBoundary + 1] != 'F';
        GEOSFree_r(context_, matrix);
        return inside && outside ? 1 : touches ? 2 : 0;
    }
    double DistanceToBoundary(const Point3d& p) const {
        GEOSGeometry* const point = GEOSGeom_createPointFromXY_r(context_, p.x, p.y);
        double distance = -1;
        GEOSDistance_r(context_, boundary_, point, &distance);
        GEOSGeom_destroy_r(context_, point);
        return distance;
    }

  private:
    GEOSCoordSequence* Sequence(const PolyLine& ring) const {
        GEOSCoordSequence* const sequence = GEOSCoordSeq_create_r(context_, ring.count, 2);
        for (unsigned int i = 0; i < ring.count; ++i)
            GEOSCoordSeq_setXY_r(context_, sequence, i, ring.data[i].x, ring.data[i].y);
        return sequence;
    }

    GEOSContextHandle_t context_;
    GEOSGeometry* boundary_ = nullptr;
    GEOSGeometry* polygon_ = nullptr;
    const GEOSPreparedGeometry* prepared_ = nullptr;
};

}  // namespace TamLib
