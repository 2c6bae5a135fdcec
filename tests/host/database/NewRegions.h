// Regions made of a single closed curve, for tests.
#pragma once

#include <dbents.h>
#include <dbpl.h>
#include <dbptrar.h>
#include <dbregion.h>
#include <dbsol3d.h>
#include <gtest/gtest.h>

#include <memory>

namespace host::test {

inline std::unique_ptr<AcDbRegion> regionOf(AcDbCurve& curve) {
    AcDbVoidPtrArray curves, regions;
    curves.append(&curve);
    EXPECT_EQ(Acad::eOk, AcDbRegion::createFromCurves(curves, regions));
    EXPECT_EQ(1, regions.length());
    return std::unique_ptr<AcDbRegion>(static_cast<AcDbRegion*>(regions[0]));
}

inline std::unique_ptr<AcDbRegion> triangle() {
    AcDbPolyline ring;
    ring.addVertexAt(0, {0, 0});
    ring.addVertexAt(1, {4, 0});
    ring.addVertexAt(2, {0, 3});
    ring.setClosed(true);
    return regionOf(ring);
}

// Of radius 2, from (1,2,3) upwards by 5.
inline std::unique_ptr<AcDb3dSolid> cylinder() {
    AcDbCircle circle({1, 2, 3}, AcGeVector3d::kZAxis, 2);
    const AcDbLine path({1, 2, 3}, {1, 2, 8});
    auto solid = std::make_unique<AcDb3dSolid>();
    EXPECT_EQ(Acad::eOk, solid->extrudeAlongPath(regionOf(circle).get(), &path));
    return solid;
}

}  // namespace host::test
