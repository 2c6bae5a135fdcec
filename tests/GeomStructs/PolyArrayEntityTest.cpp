// Polylines from a selection of entities: what is read, and what becomes of the entities.
#include <gtest/gtest.h>

#include <acutmem.h>
#include <dbents.h>
#include <dbpl.h>

#include "tests/GeomEnts/TestDrawing.h"
#include "tests/GeomStructs/NewFaults.h"
#include "tests/GeomStructs/PolyArrayShapes.h"
#include "tests/datastruct/ArrayFaults.h"

namespace TamLib {
namespace {

const char* const kLine = "LINE|5 2F|8 0|10 1|20 2|30 3|11 4|21 5|31 6";
const char* const kPolyline = "LWPOLYLINE|5 30|8 0|90 3|70 1|38 7|10 0|20 0|10 4|20 0|10 4|20 3";
const char* const kText = "TEXT|5 31|8 0|10 0|20 0|30 0|40 2.5|1 Name";
const char* const kSpline =
    "SPLINE|5 32|8 0|70 8|71 1|72 4|73 2|40 0|40 0|40 1|40 1|10 0|20 0|30 0|10 10|20 0|30 0";

Array<AcDbObjectId> Ids(const TestDrawing& drawing, std::initializer_list<std::uint64_t> handles) {
    Array<AcDbObjectId> ids;
    for (const std::uint64_t handle : handles) ids.Append(drawing.Id(handle));
    return ids;
}

TEST(PolyArraySelection, EachAcceptedEntityGivesAPolyline) {
    const TestDrawing drawing({kLine, kPolyline, kText});
    const PolyArray array(Ids(drawing, {0x30, 0x31, 0x2F}), 1, 0.0, false);
    EXPECT_EQ("0,0,7 4,0,7 4,3,7 0,0,7\n1,2,3 4,5,6\n", Text(array));
    EXPECT_FALSE(drawing.IsErased(0x2F));
}

TEST(PolyArraySelection, NoEntitiesGiveAnEmptyArray) {
    EXPECT_EQ(0u, PolyArray(Array<AcDbObjectId>(), 1, 0.0, false).count);
}

TEST(PolyArraySelection, CurvesAreSampledOnRequestByTheStep) {
    const TestDrawing drawing({kSpline});
    EXPECT_EQ(0u, PolyArray(Ids(drawing, {0x32}), 1, 2.5, false).count);
    const PolyArray sampled(Ids(drawing, {0x32}), 1, 2.5, true);
    ASSERT_EQ(1u, sampled.count);
    EXPECT_EQ(5u, sampled[0]->count);
    EXPECT_NEAR(2.5, sampled[0]->data[1].x, 1e-6);
    // A step below 0.0001 samples nothing: the spline is no polyline.
    const PolyArray plain(Ids(drawing, {0x32}), 1, 0.00009, true);
    ASSERT_EQ(1u, plain.count);
    EXPECT_EQ(0u, plain[0]->count);
}

TEST(PolyArraySelection, ModeTwoErasesAndOneClosesAndNoneLeavesOpen) {
    const TestDrawing drawing({kLine, kPolyline, kText});
    const PolyArray kept(Ids(drawing, {0x2F}), 1, 0.0, false);
    EXPECT_FALSE(drawing.IsErased(0x2F));
    const PolyArray taken(Ids(drawing, {0x30, 0x31}), 2, 0.0, false);
    EXPECT_EQ(1u, taken.count);
    EXPECT_TRUE(drawing.IsErased(0x30));
    EXPECT_TRUE(drawing.IsErased(0x31));  // intended: also what gives no polyline
    const PolyArray open(Ids(drawing, {0x2F}), 0, 0.0, false);
    AcDbEntity* entity = nullptr;
    EXPECT_EQ(Acad::eWasOpenForRead, acdbOpenAcDbEntity(entity, drawing.Id(0x2F), AcDb::kForWrite));
    // It is open once, for read; opened again it is the same object, to be closed twice.
    entity = drawing.Open(0x2F);
    EXPECT_EQ(Acad::eOk, entity->close());
    EXPECT_EQ(Acad::eOk, entity->close());
}

TEST(PolyArraySelection, WhatCantBeOpenedIsPassedOver) {
    const TestDrawing drawing({"LINE|5 2F|8 LOCKED|10 1|20 2|30 3|11 4|21 5|31 6", kPolyline});
    Array<AcDbObjectId> ids = Ids(drawing, {0x2F, 0x30});
    ids.Append(AcDbObjectId());
    // Not for write on a locked layer.
    EXPECT_EQ(1u, PolyArray(ids, 2, 0.0, false).count);
    EXPECT_FALSE(drawing.IsErased(0x2F));
    EXPECT_EQ(1u, PolyArray(ids, 1, 0.0, false).count);  // the other one is erased now
}

TEST(PolyArraySelection, AnyCallRefusedLeavesNothingOpen) {
    std::vector<std::string> calls;
    {
        const TestDrawing drawing({kLine, kPolyline, kText});
        const Array<AcDbObjectId> ids = Ids(drawing, {0x2F, 0x30, 0x31});
        host::fault::arm(0, Acad::eOk);
        const PolyArray array(ids, 2, 0.0, false);
        calls = host::fault::names();
    }
    EXPECT_GT(calls.size(), 8u);
    for (std::size_t n = 0; n < calls.size(); ++n) {
        if (calls[n] == "AcDbObject::close") continue;  // what the host does not close stays open
        const TestDrawing drawing({kLine, kPolyline, kText});
        const Array<AcDbObjectId> ids = Ids(drawing, {0x2F, 0x30, 0x31});
        host::fault::arm(n + 1, Acad::eOutOfMemory);
        try {
            EXPECT_LE(PolyArray(ids, 2, 0.0, false).count, 2u);
        } catch (const TamExpAcad& raised) {
            EXPECT_STREQ(L"LightWeight PolyLine conversion to PolyLine failed!", raised.message);
            EXPECT_FALSE(drawing.IsErased(0x30));
        }
        EXPECT_TRUE(host::fault::fired()) << calls[n];
        host::fault::disarm();
    }
}

TEST(PolyArraySelection, WithoutMemoryForAPolylineTheEntityIsClosedAndStays) {
    const TestDrawing drawing({kLine});
    const Array<AcDbObjectId> ids = Ids(drawing, {0x2F});
    drawing.Open(0x2F)->close();  // the host has made its object now
    const test::NewFaults faults;
    test::NewFaults::Fail(1);
    test::ExpectNoMemory(test::Catch([&] { PolyArray(ids, 2, 0.0, false); }), L"", 200,
                         L"GeomStructs/PolyArray");
    EXPECT_FALSE(drawing.IsErased(0x2F));
}

// --- Block references.

class BlockDrawing {
  public:
    explicit BlockDrawing(const std::string& reference) {
        host::test::DrawingText text;
        text.layer("0").layer("walls", 0, 3);
        text.block("HOUSE",
                   {"LINE|5 41|8 walls|62 5|10 10|20 0|30 0|11 14|21 0|31 2",
                    "LWPOLYLINE|5 42|8 0|90 2|70 0|38 1|10 10|20 0|42 1|10 12|20 0",
                    "TEXT|5 43|8 0|10 0|20 0|30 0|40 2.5|1 Name", "POINT|5 44|8 0|10 10|20 1|30 5"},
                   "70 0|10 10.0|20 0.0|30 0.0");
        text.block("STREET", {"INSERT|5 45|8 0|2 HOUSE|10 100|20 0|30 0",
                              "INSERT|5 46|8 0|2 HOUSE|10 200|20 0|30 0"});
        text.entity(reference);
        database_ = text.database();
        before_ = acdbHostApplicationServices()->workingDatabase();
        acdbHostApplicationServices()->setWorkingDatabase(database_.get());
    }
    ~BlockDrawing() { acdbHostApplicationServices()->setWorkingDatabase(before_); }
    BlockDrawing(const BlockDrawing&) = delete;
    BlockDrawing& operator=(const BlockDrawing&) = delete;

    Array<AcDbObjectId> Ids() const {
        AcDbObjectId id;
        EXPECT_EQ(Acad::eOk, database_->getAcDbObjectId(id, false, AcDbHandle(0x50)));
        Array<AcDbObjectId> ids;
        ids.Append(id);
        return ids;
    }

  private:
    std::unique_ptr<AcDbDatabase> database_;
    AcDbDatabase* before_ = nullptr;
};

TEST(PolyArraySelection, OfABlockReferenceTheContentIsAdded) {
    const BlockDrawing drawing("INSERT|5 50|8 0|2 HOUSE|10 1000|20 500|30 0|41 2|42 2|43 2");
    // Twice as large, about the base point (10,0,0).
    EXPECT_EQ("1000,500,0 1008,500,4\n1000,500,2 1004,500,2\n1000,502,10 1000,502,10\n",
              Text(PolyArray(drawing.Ids(), 1, 0.0, false)));
}

TEST(PolyArraySelection, OfAMirroredReferenceToo) {
    const BlockDrawing drawing("INSERT|5 50|8 0|2 HOUSE|10 0|20 0|30 0|41 -1|42 1|43 1");
    // The bulged polyline lies in a plane seen from below; read without sampling it is its chord.
    EXPECT_EQ("0,0,0 -4,0,2\n0,0,1 -2,0,1\n0,1,5 0,1,5\n",
              Text(PolyArray(drawing.Ids(), 1, 0.0, false)));
}

TEST(PolyArraySelection, ReferencesWithinABlockAreTakenApartToo) {
    const BlockDrawing drawing("INSERT|5 50|8 0|2 STREET|10 0|20 1|30 0");
    EXPECT_EQ(
        "100,1,0 104,1,2\n100,1,1 102,1,1\n100,2,5 100,2,5\n"
        "200,1,0 204,1,2\n200,1,1 202,1,1\n200,2,5 200,2,5\n",
        Text(PolyArray(drawing.Ids(), 1, 0.0, false)));
}

TEST(PolyArraySelection, AReferenceToNothingGivesNothing) {
    const BlockDrawing drawing("INSERT|5 50|8 0|2 MISSING|10 0|20 1|30 0");
    EXPECT_EQ(0u, PolyArray(drawing.Ids(), 2, 0.0, false).count);
    EXPECT_TRUE(drawing.Ids()[0].isErased());
}

TEST(PolyArraySelection, ExplodedPartsHaveLayerAndColourAndAnEntityAloneCantBeExploded) {
    const BlockDrawing drawing("INSERT|5 50|8 0|2 HOUSE|10 0|20 0|30 0");
    AcDbEntity* entity = nullptr;
    ASSERT_EQ(Acad::eOk, acdbOpenAcDbEntity(entity, drawing.Ids()[0], AcDb::kForRead));
    AcDbVoidPtrArray parts;
    EXPECT_EQ(Acad::eOk, entity->explode(parts));
    entity->close();
    ASSERT_EQ(3, parts.length());
    const std::unique_ptr<AcDbEntity> line(static_cast<AcDbEntity*>(parts[0]));
    const std::unique_ptr<AcDbEntity> polyline(static_cast<AcDbEntity*>(parts[1]));
    const std::unique_ptr<AcDbEntity> point(static_cast<AcDbEntity*>(parts[2]));
    EXPECT_EQ(5, line->colorIndex());
    ACHAR* layer = line->layer();
    EXPECT_STREQ(L"walls", layer);
    acutDelString(layer);
    double bulge = 0;
    EXPECT_EQ(Acad::eOk, AcDbPolyline::cast(polyline.get())->getBulgeAt(0, bulge));
    EXPECT_EQ(1.0, bulge);
    EXPECT_EQ(Acad::eNotApplicable, line->explode(parts));
}

#ifndef _WIN32  // there the host has an operator new of its own

TEST(PolyArraySelection, WithoutMemoryForAnyPartNothingIsExploded) {
    const BlockDrawing drawing("INSERT|5 50|8 0|2 HOUSE|10 0|20 0|30 0");
    EXPECT_EQ(3u, PolyArray(drawing.Ids(), 1, 0.0, false).count);  // the host has its objects now
    for (int n = 1; n <= 4; ++n) {
        AcDbEntity* entity = nullptr;
        ASSERT_EQ(Acad::eOk, acdbOpenAcDbEntity(entity, drawing.Ids()[0], AcDb::kForRead));
        AcDbVoidPtrArray parts;
        const test::NewFaults faults;
        test::NewFaults::Fail(n);
        EXPECT_EQ(n <= 3 ? Acad::eOutOfMemory : Acad::eOk, entity->explode(parts));
        test::NewFaults::Fail(0);
        EXPECT_EQ(n <= 3 ? 0 : 3, parts.length());
        for (int i = 0; i < parts.length(); ++i) delete static_cast<AcDbEntity*>(parts[i]);
        entity->close();
    }
}

#endif

TEST(PolyArraySelection, ARefusedExplosionLeavesTheReferenceClosed) {
    const BlockDrawing drawing("INSERT|5 50|8 0|2 HOUSE|10 0|20 0|30 0");
    host::fault::arm("AcDbBlockReference::explode", 1, Acad::eOutOfMemory);
    EXPECT_EQ(0u, PolyArray(drawing.Ids(), 1, 0.0, false).count);
    host::fault::disarm();
}

}  // namespace
}  // namespace TamLib
