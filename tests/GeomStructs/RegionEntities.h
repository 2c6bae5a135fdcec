// Regions in a drawing for tests, made of polygons and circles.
#pragma once

#include <dbents.h>
#include <dbpl.h>
#include <dbregion.h>
#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "GeomEnts/DrawingOutput.h"
#include "tests/support/Points.h"

namespace TamLib {

inline std::unique_ptr<AcDbRegion> MakeRegion(AcDbCurve& curve) {
    AcDbVoidPtrArray curves, regions;
    curves.append(&curve);
    EXPECT_EQ(Acad::eOk, AcDbRegion::createFromCurves(curves, regions));
    return std::unique_ptr<AcDbRegion>(static_cast<AcDbRegion*>(regions[0]));
}

inline std::unique_ptr<AcDbRegion> MakePolygon(const std::vector<AcGePoint2d>& corners,
                                               double elevation = 0.0) {
    AcDbPolyline ring;
    for (const AcGePoint2d& corner : corners) ring.addVertexAt(ring.numVerts(), corner);
    ring.setElevation(elevation);
    ring.setClosed(true);
    return MakeRegion(ring);
}

inline std::unique_ptr<AcDbRegion> MakeDisc(const AcGePoint3d& center, double radius) {
    AcDbCircle circle(center, AcGeVector3d::kZAxis, radius);
    return MakeRegion(circle);
}

// In the model space of the working drawing, closed.
inline AcDbObjectId Draw(std::unique_ptr<AcDbEntity> entity) {
    AcDbObjectId id;
    EXPECT_EQ(Acad::eOk, ARXAddToModelSpace(entity.release(), &id, true));
    return id;
}

}  // namespace TamLib
