// Regions put together.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"  // within the geometry library
#endif

#include <dbregion.h>

#include <algorithm>
#include <boost/geometry.hpp>
#include <boost/geometry/geometries/point_xy.hpp>
#include <boost/geometry/geometries/polygon.hpp>
#include <cmath>

#include "host/database/Fault.h"
#include "host/database/ObjectFields.h"
#include "host/database/ObjectImp.h"

using namespace host::database;

namespace {

constexpr double kFlat = 1e-6;  // how far from a plane is in it

namespace bg = boost::geometry;
using PlanePoint = bg::model::d2::point_xy<double>;
using Polygon = bg::model::polygon<PlanePoint, /*clockwise=*/false, /*closed=*/false>;
using Polygons = bg::model::multi_polygon<Polygon>;

Polygon inPlane(const RegionLoop& loop, const AcGeMatrix3d& toPlane) {
    Polygon polygon;
    for (const AcGePoint3d& corner : loop.corners) {
        const AcGePoint3d p = toPlane * corner;
        polygon.outer().emplace_back(p.x, p.y);
    }
    bg::correct(polygon);
    return polygon;
}

}  // namespace

Acad::ErrorStatus AcDbRegion::booleanOper(AcDb::BoolOperType operation, AcDbRegion* other) {
    HOST_CALL("AcDbRegion::booleanOper");
    if (other == nullptr || other == this) return Acad::eInvalidInput;
    if (database() != nullptr || other->database() != nullptr) return Acad::eAlreadyInDb;
    auto& here = fieldsOf<RegionFields>(*this).loop;
    auto& there = fieldsOf<RegionFields>(*other).loop;
    if (!here || !there) return Acad::eInvalidInput;
    if (operation != AcDb::kBoolUnite || here->corners.empty() || there->corners.empty())
        return Acad::eNotImplementedYet;
    const AcGeMatrix3d toPlane = AcGeMatrix3d::worldToPlane(here->normal);
    const double height = (toPlane * here->corners[0]).z;
    for (const AcGePoint3d& corner : there->corners)
        if (std::fabs((toPlane * corner).z - height) > kFlat) return Acad::eNonCoplanarGeometry;
    Polygons united;
    bg::union_(inPlane(*here, toPlane), inPlane(*there, toPlane), united);
    if (united.size() != 1 || !united[0].inners().empty()) return Acad::eNotImplementedYet;
    const AcGeMatrix3d toWorld = AcGeMatrix3d::planeToWorld(here->normal);
    here->corners.clear();
    for (const PlanePoint& p : united[0].outer())
        here->corners.push_back(toWorld * AcGePoint3d(p.x(), p.y(), height));
    dropShortEdges(here->corners);
    there.reset();
    return Acad::eOk;
}
