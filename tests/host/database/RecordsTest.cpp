// Arrays, handles, points, vectors and matrices of the interface.
#include <acutmem.h>
#include <dbhandle.h>
#include <dbidar.h>
#include <gemat3d.h>
#include <gept3dar.h>
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

#include "host/database/Fault.h"
#include "tests/host/support/LedgerListener.h"

namespace {

constexpr double kPi = 3.14159265358979323846;

template <class T>
std::vector<int> capacities(int appends) {
    AcArray<T> array;
    std::vector<int> seen;
    for (int i = 0; i < appends; ++i) {
        array.append(T());
        if (seen.empty() || seen.back() != array.physicalLength()) {
            seen.push_back(array.physicalLength());
        }
    }
    return seen;
}

}  // namespace

TEST(AcArray, StartsEmptyWithGrowLengthEight) {
    const AcDbObjectIdArray ids;
    EXPECT_EQ(ids.length(), 0);
    EXPECT_EQ(ids.physicalLength(), 0);
    EXPECT_EQ(ids.growLength(), 8);
    EXPECT_TRUE(ids.isEmpty());
}

// 8 bytes each: the length doubles while it takes less than 65536 bytes, then 8192 are added.
TEST(AcArray, IdsGrowByTheirLengthAndFrom8192OnBy8192) {
    EXPECT_EQ(capacities<AcDbObjectId>(40000),
              (std::vector<int>{8, 16, 32, 64, 128, 256, 512, 1024, 2048, 4096, 8192, 16384, 24576,
                                32768, 40960}));
}

TEST(AcArray, PointsGrowByTheirLengthAndFrom4096OnBy2730) {
    EXPECT_EQ(capacities<AcGePoint3d>(8000),
              (std::vector<int>{8, 16, 32, 64, 128, 256, 512, 1024, 2048, 4096, 6826, 9556}));
}

TEST(AcArray, BehavesAsAVector) {
    std::mt19937 random(20091117);
    AcArray<int> array;
    std::vector<int> model;
    for (int step = 0; step < 20000; ++step) {
        const int value = static_cast<int>(random() % 50);
        const int place = model.empty() ? 0 : static_cast<int>(random() % model.size());
        switch (random() % 6) {
            case 0:
            case 1:
                EXPECT_EQ(array.append(value), static_cast<int>(model.size()));
                model.push_back(value);
                break;
            case 2:
                array.insertAt(place, value);
                model.insert(model.begin() + place, value);
                break;
            case 3:
                if (!model.empty()) {
                    array.removeAt(place);
                    model.erase(model.begin() + place);
                }
                break;
            case 4: {
                const auto found = std::find(model.begin(), model.end(), value);
                EXPECT_EQ(array.find(value),
                          found == model.end() ? -1 : static_cast<int>(found - model.begin()));
                EXPECT_EQ(array.remove(value), found != model.end());
                if (found != model.end()) model.erase(found);
                break;
            }
            default:
                if (random() % 200 == 0) {
                    array.removeAll();
                    model.clear();
                }
        }
        ASSERT_EQ(array.length(), static_cast<int>(model.size()));
    }
    for (std::size_t i = 0; i < model.size(); ++i) EXPECT_EQ(array[static_cast<int>(i)], model[i]);
}

TEST(AcArray, CopiesAndMoves) {
    AcArray<int> array;
    for (int i = 0; i < 20; ++i) array.append(i);
    const AcArray<int> copy = array;
    EXPECT_TRUE(copy == array);
    AcArray<int> moved = std::move(array);
    EXPECT_TRUE(moved == copy);
    moved.append(copy);
    EXPECT_EQ(moved.length(), 40);
    moved.append(moved);
    EXPECT_EQ(moved.length(), 80);
    EXPECT_EQ(moved.last(), 19);
    EXPECT_EQ(moved.first(), 0);
    moved.setPhysicalLength(3);
    EXPECT_EQ(moved.length(), 3);
    moved.setLogicalLength(2);
    EXPECT_FALSE(moved.contains(2));
    EXPECT_TRUE(moved.contains(1));
}

TEST(AcArray, AppendingAnElementOfItselfAcrossGrowthKeepsItsValue) {
    AcArray<int> array;
    for (int i = 0; i < 8; ++i) array.append(100 + i);
    array.append(array[3]);
    EXPECT_EQ(array[8], 103);
}

TEST(AcArray, RefusedMemoryLeavesTheArrayAsItIs) {
    AcArray<int> array;
    for (int i = 0; i < 8; ++i) array.append(i);
    host::fault::arm("AcArray", 1, 0);
    EXPECT_EQ(array.append(8), -1);
    EXPECT_EQ(array.length(), 8);
    EXPECT_EQ(array[7], 7);
    EXPECT_EQ(array.append(8), 8);
    host::fault::arm("AcArray", 1, 0);
    const AcArray<int> copy = array;
    EXPECT_TRUE(copy.isEmpty());
}

TEST(Handle, TextGoesBothWays) {
    ACHAR buffer[AcDbHandle::kStrSiz];
    for (const wchar_t* text : {L"1", L"2F", L"ABCDEF", L"FFFFFFFFFFFFFFFF", L"123456789ABCDEF0"}) {
        ASSERT_TRUE(AcDbHandle(text).getIntoAsciiBuffer(buffer));
        EXPECT_STREQ(buffer, text);
    }
    EXPECT_EQ(AcDbHandle(L"2f"), AcDbHandle(0x2F, 0));
    EXPECT_EQ(AcDbHandle(L"002F").low(), 0x2FU);
    EXPECT_EQ(AcDbHandle(L"100000002").high(), 1U);
    EXPECT_TRUE(AcDbHandle(L"xyz").isNull());
    EXPECT_TRUE(AcDbHandle(L"").isNull());
    EXPECT_TRUE(AcDbHandle(static_cast<const ACHAR*>(nullptr)).isNull());
    EXPECT_FALSE(AcDbHandle(L"2F").getIntoAsciiBuffer(nullptr));
    ASSERT_TRUE(AcDbHandle().getIntoAsciiBuffer(buffer));
    EXPECT_STREQ(buffer, L"0");
}

TEST(HandedText, IsCopiedAndFreed) {
    ACHAR* text = nullptr;
    ASSERT_EQ(acutNewString(L"\u00C4yr\u00E4s", text), Acad::eOk);
    EXPECT_STREQ(text, L"\u00C4yr\u00E4s");
    acutDelString(text);
    EXPECT_EQ(text, nullptr);
    acutDelString(text);
    EXPECT_EQ(acutNewString(nullptr, text), Acad::eOk);
    EXPECT_EQ(text, nullptr);
}

TEST(Matrix, StartsAsTheIdentity) {
    const AcGeMatrix3d matrix;
    EXPECT_EQ(matrix * AcGePoint3d(1, 2, 3), AcGePoint3d(1, 2, 3));
    EXPECT_TRUE(matrix == AcGeMatrix3d::kIdentity);
    EXPECT_EQ(matrix.det(), 1.0);
}

TEST(Matrix, ProductAppliesTheRightOneFirst) {
    const AcGeMatrix3d move = AcGeMatrix3d::translation({10, 0, 0});
    const AcGeMatrix3d turn = AcGeMatrix3d::rotation(kPi / 2, AcGeVector3d::kZAxis);
    EXPECT_TRUE((move * turn * AcGePoint3d(1, 0, 0)).isEqualTo({10, 1, 0}));
    EXPECT_TRUE((turn * move * AcGePoint3d(1, 0, 0)).isEqualTo({0, 11, 0}));
    AcGePoint3d point(1, 0, 0);
    EXPECT_TRUE(point.rotateBy(kPi / 2, AcGeVector3d::kZAxis, {1, 1, 0}).isEqualTo({2, 1, 0}));
    EXPECT_EQ(move * AcGeVector3d(1, 0, 0), AcGeVector3d(1, 0, 0)) << "vectors are not moved";
}

TEST(Matrix, InverseUndoesAnyRegularMap) {
    std::mt19937 random(4);
    std::uniform_real_distribution<double> number(-10, 10);
    const auto vector = [&] {
        return AcGeVector3d(number(random), number(random), number(random));
    };
    for (int i = 0; i < 500; ++i) {
        const AcGeMatrix3d matrix = AcGeMatrix3d::translation(vector() * 1e5) *
                                    AcGeMatrix3d::rotation(number(random), vector()) *
                                    AcGeMatrix3d::scaling(AcGeScale3d(2, -3, 0.001));
        const AcGePoint3d point = AcGePoint3d::kOrigin + vector();
        EXPECT_NEAR((matrix.inverse() * (matrix * point)).distanceTo(point), 0.0, 1e-6);
    }
}

TEST(Matrix, SingularMatrixStaysAsItIs) {
    const AcGeMatrix3d flat = AcGeMatrix3d::scaling(AcGeScale3d(1, 1, 0));
    EXPECT_TRUE(flat.isSingular());
    EXPECT_TRUE(flat.inverse() == flat);
    EXPECT_FALSE(AcGeMatrix3d::scaling(1e-9).isSingular());
}

TEST(Matrix, CoordinateSystemGoesInAndOut) {
    const AcGeMatrix3d matrix =
        AcGeMatrix3d().setCoordSystem({1, 2, 3}, {0, 1, 0}, {-1, 0, 0}, {0, 0, 1});
    EXPECT_EQ(matrix * AcGePoint3d(1, 0, 0), AcGePoint3d(1, 3, 3));
    AcGePoint3d origin;
    AcGeVector3d x, y, z;
    matrix.getCoordSystem(origin, x, y, z);
    EXPECT_EQ(origin, AcGePoint3d(1, 2, 3));
    EXPECT_EQ(x, AcGeVector3d(0, 1, 0));
    EXPECT_EQ(y, AcGeVector3d(-1, 0, 0));
    EXPECT_EQ(z, AcGeVector3d(0, 0, 1));
}

TEST(ArbitraryAxis, StandardNormalIsTheIdentityToTheBit) {
    const AcGeMatrix3d matrix = AcGeMatrix3d::planeToWorld(AcGeVector3d::kZAxis);
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column) {
            EXPECT_EQ(matrix.entry[row][column], row == column ? 1.0 : 0.0);
        }
    }
}

TEST(ArbitraryAxis, DownwardNormalMirrorsX) {
    EXPECT_EQ(AcGeVector3d(0, 0, -1).perpVector(), AcGeVector3d(-1, 0, 0));
    const AcGeMatrix3d matrix = AcGeMatrix3d::planeToWorld({0, 0, -1});
    EXPECT_EQ(matrix * AcGePoint3d(1, 2, 3), AcGePoint3d(-1, 2, -3));
}

TEST(ArbitraryAxis, LimitOfASixtyFourthIsStrict) {
    const double limit = 1.0 / 64.0;
    const auto normal = [](double x, double y) {
        return AcGeVector3d(x, y, std::sqrt(1.0 - x * x - y * y));
    };
    const double below = std::nextafter(limit, 0.0) * (1 - 1e-15);
    // Close to z: the x axis has no y component (Y x N); else none along z (Z x N).
    EXPECT_NEAR(normal(below, 0).perpVector().y, 0.0, 1e-15);
    EXPECT_LT(normal(below, 0).perpVector().z, 0.0);
    EXPECT_EQ(normal(limit * (1 + 1e-12), 0).perpVector().z, 0.0);
    EXPECT_EQ(normal(0, limit * (1 + 1e-12)).perpVector().z, 0.0);
    EXPECT_NEAR(normal(below, below).perpVector().y, 0.0, 1e-15);
}

TEST(ArbitraryAxis, AxesAreSquareAndOfUnitLengthForAnyNormal) {
    std::mt19937 random(5);
    std::normal_distribution<double> number;
    for (int i = 0; i < 1000; ++i) {
        const AcGeVector3d normal(number(random), number(random), number(random));
        const AcGeMatrix3d matrix = AcGeMatrix3d::planeToWorld(normal);
        EXPECT_NEAR(matrix.det(), 1.0, 1e-12);
        EXPECT_TRUE((matrix * AcGeVector3d::kZAxis).isEqualTo(normal.normal()));
        EXPECT_TRUE(AcGeMatrix3d::worldToPlane(normal) * matrix == AcGeMatrix3d::kIdentity);
    }
    EXPECT_TRUE(AcGeMatrix3d::planeToWorld({0, 0, 0}) == AcGeMatrix3d::kIdentity);
}

TEST(Vector, UnitLengthAnglesAndParallels) {
    EXPECT_EQ(AcGeVector3d(3, 4, 0).length(), 5.0);
    EXPECT_EQ(AcGeVector3d(3, 4, 0).normal(), AcGeVector3d(0.6, 0.8, 0));
    EXPECT_EQ(AcGeVector3d(1e-11, 0, 0).normal().x, 1e-11) << "too short to be made a unit";
    EXPECT_DOUBLE_EQ(AcGeVector3d(1, 0, 0).angleTo({0, 2, 0}), kPi / 2);
    EXPECT_DOUBLE_EQ(AcGeVector3d(1, 0, 0).angleTo({-3, 0, 0}), kPi);
    EXPECT_EQ(AcGeVector3d(1, 0, 0).angleTo({0, 0, 0}), 0.0);
    EXPECT_TRUE(AcGeVector3d(1, 1, 0).isParallelTo({-2, -2, 0}));
    EXPECT_FALSE(AcGeVector3d(1, 1, 0).isParallelTo({1, 0, 0}));
    EXPECT_EQ(AcGeVector3d(1, 0, 0).crossProduct({0, 1, 0}), AcGeVector3d(0, 0, 1));
    AcGeVector3d turned(1, 0, 0);
    EXPECT_TRUE(turned.rotateBy(kPi / 2, AcGeVector3d::kZAxis).isEqualTo({0, 1, 0}));
}

TEST(Tolerance, IsTenToTheMinusTen) {
    EXPECT_EQ(AcGeContext::gTol.equalPoint(), 1e-10);
    EXPECT_EQ(AcGeContext::gTol.equalVector(), 1e-10);
    EXPECT_TRUE(AcGePoint3d(1, 0, 0).isEqualTo({1 + 0.9e-10, 0, 0}));
    EXPECT_FALSE(AcGePoint3d(1, 0, 0).isEqualTo({1 + 1.1e-10, 0, 0}));
}
