// Figures of GEOS, for its Booleans and buffers beside ours. Natively only.
#pragma once

#include <cstddef>
#include <memory>
#include <utility>

#include "GeomStructs/PolyArray.h"
#include "tests/GeomStructs/Geos.h"

namespace TamLib {

class GeosShape {
  public:
    GeosShape(const Geos& geos, GEOSGeometry* owned)
        : context_(geos.Context()), geometry_(owned, Destroy{geos.Context()}) {
        if (owned == nullptr) throw std::runtime_error("GEOS makes no such figure");
    }

    static GeosShape Line(const Geos& geos, const PolyLine& line) {
        return {geos, GEOSGeom_createLineString_r(geos.Context(), Sequence(geos, line))};
    }
    // The last vertex is taken for the first one, which it equals within the tolerance.
    static GeosShape Polygon(const Geos& geos, PolyLine ring) {
        ring[-1] = ring[0];
        return {geos,
                GEOSGeom_createPolygon_r(
                    geos.Context(),
                    GEOSGeom_createLinearRing_r(geos.Context(), Sequence(geos, ring)), nullptr, 0)};
    }
    static GeosShape Nothing(const Geos& geos) {
        return {geos, GEOSGeom_createEmptyPolygon_r(geos.Context())};
    }
    // What lies in an odd number of the rings; open members count for nothing.
    static GeosShape OddlyInside(const Geos& geos, const PolyArray& rings) {
        GeosShape shape = Nothing(geos);
        for (const PolyLine* ring : rings)
            if (ring->IsClosed() && ring->count > 3)
                shape = shape.SymDifference(geos, Polygon(geos, *ring));
        return shape;
    }

    GeosShape Union(const Geos& geos, const GeosShape& other) const {
        return {geos, GEOSUnion_r(context_, Get(), other.Get())};
    }
    GeosShape Difference(const Geos& geos, const GeosShape& other) const {
        return {geos, GEOSDifference_r(context_, Get(), other.Get())};
    }
    GeosShape Intersection(const Geos& geos, const GeosShape& other) const {
        return {geos, GEOSIntersection_r(context_, Get(), other.Get())};
    }
    GeosShape SymDifference(const Geos& geos, const GeosShape& other) const {
        return {geos, GEOSSymDifference_r(context_, Get(), other.Get())};
    }
    // Mitred, with flat ends.
    GeosShape Buffer(const Geos& geos, double distance, double mitreLimit) const {
        return {geos, GEOSBufferWithStyle_r(context_, Get(), distance, 8, GEOSBUF_CAP_FLAT,
                                            GEOSBUF_JOIN_MITRE, mitreLimit)};
    }
    // To the left with a positive distance.
    GeosShape Parallel(const Geos& geos, double distance, double mitreLimit) const {
        return {geos,
                GEOSOffsetCurve_r(context_, Get(), distance, 8, GEOSBUF_JOIN_MITRE, mitreLimit)};
    }
    GeosShape Boundary(const Geos& geos) const { return {geos, GEOSBoundary_r(context_, Get())}; }

    double Area() const {
        double area = 0;
        GEOSArea_r(context_, Get(), &area);
        return area;
    }
    double Length() const {
        double length = 0;
        GEOSLength_r(context_, Get(), &length);
        return length;
    }
    double DistanceTo(const Point3d& p) const {
        GEOSGeometry* const point = GEOSGeom_createPointFromXY_r(context_, p.x, p.y);
        double distance = -1;
        GEOSDistance_r(context_, Get(), point, &distance);
        GEOSGeom_destroy_r(context_, point);
        return distance;
    }
    bool IsSimple() const { return GEOSisSimple_r(context_, Get()) == 1; }
    // Shells and holes.
    std::size_t Rings() const {
        std::size_t rings = 0;
        for (int i = 0; i < GEOSGetNumGeometries_r(context_, Get()); ++i) {
            const GEOSGeometry* const part = GEOSGetGeometryN_r(context_, Get(), i);
            if (GEOSGeomTypeId_r(context_, part) != GEOS_POLYGON ||
                GEOSisEmpty_r(context_, part) == 1)
                continue;
            rings += 1 + static_cast<std::size_t>(GEOSGetNumInteriorRings_r(context_, part));
        }
        return rings;
    }
    const GEOSGeometry* Get() const { return geometry_.get(); }

  private:
    struct Destroy {
        GEOSContextHandle_t context;
        void operator()(GEOSGeometry* geometry) const { GEOSGeom_destroy_r(context, geometry); }
    };

    static GEOSCoordSequence* Sequence(const Geos& geos, const PolyLine& line) {
        GEOSCoordSequence* const sequence = GEOSCoordSeq_create_r(geos.Context(), line.count, 2);
        for (unsigned int i = 0; i < line.count; ++i)
            GEOSCoordSeq_setXY_r(geos.Context(), sequence, i, line.data[i].x, line.data[i].y);
        return sequence;
    }

    GEOSContextHandle_t context_;
    std::unique_ptr<GEOSGeometry, Destroy> geometry_;
};

}  // namespace TamLib
