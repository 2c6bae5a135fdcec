// Point arrays handed to the host.
#include <acadstrc.h>
#include <gtest/gtest.h>

#include <memory>

#include "GeomStructs/Point3dArrayARX.h"
#include "GeomStructs/PointData.h"
#include "GeomStructs/PolyLine.h"
#include "host/database/Fault.h"

namespace TamLib {
namespace {

TEST(PointsForTheHost, AreCopiesInTheSameOrder) {
    PolyLine points;
    for (int i = 0; i < 1000; ++i) points.Append(Point3d(i, 2.0 * i, 25e6 + i));
    points.offset = Point3d(5, 5, 5);  // output of vectors adds it, this doesn't
    const std::unique_ptr<AcGePoint3dArray> copies(points.ToAcGePoint3dArray());
    ASSERT_EQ(1000, copies->length());
    for (int i = 0; i < 1000; ++i) {
        EXPECT_EQ(i, (*copies)[i].x);
        EXPECT_EQ(2.0 * i, (*copies)[i].y);
        EXPECT_EQ(25e6 + i, (*copies)[i].z);
    }
    (*copies)[0].x = 7;
    EXPECT_EQ(0.0, points[0].x);
}

TEST(PointsForTheHost, NoneIsAnEmptyArray) {
    const std::unique_ptr<AcGePoint3dArray> copies(PointData().ToAcGePoint3dArray());
    EXPECT_EQ(0, copies->length());
}

TEST(PointsForTheHost, RefusedMemoryIsRaised) {
    PointData points;
    points.Append(Point3d(1, 2, 3));
    host::fault::arm(1, Acad::eOutOfMemory);
    try {
        delete points.ToAcGePoint3dArray();
        ADD_FAILURE() << "nothing raised";
    } catch (const TamExpAcad& exception) {
        EXPECT_STREQ(L"Allocation of AcGePoint3dArray failed", exception.message);
        EXPECT_STREQ(L"geomstructs/Point3dArray", exception.file);
    }
    EXPECT_TRUE(host::fault::fired());
}

}  // namespace
}  // namespace TamLib
