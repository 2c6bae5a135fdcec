// Failing on order, and the ledger of what is handed out.
#include <acutmem.h>
#include <dbents.h>
#include <dbpl.h>
#include <dbsymtb.h>
#include <gtest/gtest.h>

#include <functional>

#include "host/database/Drawing.h"
#include "host/database/Fault.h"
#include "host/database/Ledger.h"
#include "tests/host/support/DrawingText.h"
#include "tests/host/support/LedgerListener.h"

using namespace host;
using host::database::idFromHandle;
using host::database::Ledger;
using host::test::DrawingText;

namespace {

class Fault : public testing::Test {
  protected:
    void SetUp() override {
        database = DrawingText()
                       .layer("0")
                       .entity("TEXT|5 1|8 0|10 1|20 2|40 1|1 a")
                       .entity("LINE|5 2|8 0|10 0|20 0|11 3|21 4")
                       .entity("LWPOLYLINE|5 3|8 0|70 0|10 0|20 0|10 1|20 1|10 2|20 0")
                       .database();
        id = idFromHandle(*database, L"1");
    }
    Acad::ErrorStatus turnOnce() {
        AcDbEntity* entity = nullptr;
        Acad::ErrorStatus status = acdbOpenAcDbEntity(entity, id, AcDb::kForRead);
        if (status != Acad::eOk) return status;
        status = entity->upgradeOpen();
        if (status == Acad::eOk) status = AcDbText::cast(entity)->setRotation(1.0);
        while (entity->close() != Acad::eOk && entity->isReadEnabled()) {
        }
        return status;
    }

    std::unique_ptr<AcDbDatabase> database;
    AcDbObjectId id;
};

}  // namespace

TEST_F(Fault, CallsAreCountedAndNamedInTheirOrder) {
    fault::disarm();
    EXPECT_EQ(turnOnce(), Acad::eOk);
    EXPECT_EQ(fault::calls(), 4U);
    EXPECT_EQ(fault::names(),
              (std::vector<std::string>{"acdbOpenAcDbEntity", "AcDbObject::upgradeOpen",
                                        "AcDbText::setRotation", "AcDbObject::close"}));
    EXPECT_FALSE(fault::fired());
}

TEST_F(Fault, NthCallFailsWithTheOrderedStatusAndDoesNothing) {
    for (std::size_t n = 1; n <= 3; ++n) {
        fault::arm(n, Acad::eOutOfMemory);
        EXPECT_EQ(turnOnce(), Acad::eOutOfMemory) << n;
        EXPECT_TRUE(fault::fired());
        EXPECT_EQ(Ledger::instance().count("object"), 0U);
        EXPECT_TRUE(database::pendingChanges(*database).empty());
    }
}

TEST_F(Fault, RefusedCloseLeavesTheObjectOpen) {
    AcDbEntity* entity = nullptr;
    ASSERT_EQ(acdbOpenAcDbEntity(entity, id, AcDb::kForRead), Acad::eOk);
    fault::arm("AcDbObject::close", 1, Acad::eInvalidOpenState);
    EXPECT_EQ(entity->close(), Acad::eInvalidOpenState);
    EXPECT_TRUE(entity->isReadEnabled());
    EXPECT_EQ(entity->close(), Acad::eOk);
}

TEST_F(Fault, NamedOrderCountsThatFunctionAlone) {
    fault::arm("acdbOpenAcDbEntity", 2, Acad::eNoDatabase);
    EXPECT_EQ(turnOnce(), Acad::eOk);
    EXPECT_EQ(turnOnce(), Acad::eNoDatabase);
    EXPECT_EQ(turnOnce(), Acad::eOk) << "an order is carried out once";
}

TEST_F(Fault, RefusedOpenLeavesThePointerNull) {
    AcDbEntity* entity = reinterpret_cast<AcDbEntity*>(1);
    fault::arm(1, Acad::eOutOfMemory);
    EXPECT_EQ(acdbOpenAcDbEntity(entity, id, AcDb::kForRead), Acad::eOutOfMemory);
    EXPECT_EQ(entity, nullptr);
}

TEST_F(Fault, NothingFailsWhenNothingIsOrdered) {
    fault::arm(0, Acad::eOutOfMemory);
    EXPECT_EQ(turnOnce(), Acad::eOk);
    EXPECT_EQ(fault::calls(), 4U);
    fault::arm(2, Acad::eOutOfMemory);
    fault::disarm();
    EXPECT_EQ(turnOnce(), Acad::eOk);
}

TEST_F(Fault, CallsTheHostMakesItselfDoNotCount) {
    AcDbLayerTable* table = nullptr;
    fault::disarm();
    ASSERT_EQ(database->getSymbolTable(table, AcDb::kForRead), Acad::eOk);
    AcDbLayerTableRecord* layer = nullptr;
    // Finds the id and opens it: one call of the module's.
    ASSERT_EQ(table->getAt(L"0", layer, AcDb::kForRead), Acad::eOk);
    EXPECT_EQ(fault::calls(), 2U);
    EXPECT_EQ(layer->close(), Acad::eOk);
    EXPECT_EQ(table->close(), Acad::eOk);
    {
        const fault::Quiet quiet;
        EXPECT_EQ(turnOnce(), Acad::eOk);
        EXPECT_EQ(fault::calls(), 4U);
        const fault::Outside outside;
        EXPECT_EQ(turnOnce(), Acad::eOk);
        EXPECT_EQ(fault::calls(), 8U);
    }
    EXPECT_EQ(turnOnce(), Acad::eOk);
    EXPECT_EQ(fault::calls(), 12U);
}

TEST_F(Fault, EveryStatusOfReadingACurveCanFail) {
    AcDbPolyline* line = nullptr;
    ASSERT_EQ(acdbOpenObject(line, idFromHandle(*database, L"3")), Acad::eOk);
    const std::vector<std::function<Acad::ErrorStatus()>> calls = {
        [&] {
            double x;
            return line->getStartParam(x);
        },
        [&] {
            double x;
            return line->getEndParam(x);
        },
        [&] {
            double x;
            return line->getDistAtParam(1.0, x);
        },
        [&] {
            double x;
            return line->getParamAtDist(1.0, x);
        },
        [&] {
            double x;
            return line->getBulgeAt(0, x);
        },
        [&] {
            AcGePoint3d p;
            return line->getStartPoint(p);
        },
        [&] {
            AcGePoint3d p;
            return line->getEndPoint(p);
        },
        [&] {
            AcGePoint3d p;
            return line->getPointAtDist(1.0, p);
        },
        [&] {
            AcGePoint3d p;
            return line->getPointAtParam(1.0, p);
        },
        [&] {
            AcGePoint3d p;
            return line->getPointAt(1, p);
        },
        [&] {
            AcGePoint2d p;
            return line->getPointAt(1, p);
        },
        [&] {
            AcGeVector3d v;
            return line->getFirstDeriv(1.0, v);
        },
        [&] {
            AcDbExtents box;
            return line->getGeomExtents(box);
        },
    };
    for (const auto& call : calls) {
        EXPECT_EQ(call(), Acad::eOk);
        fault::arm(1, Acad::eOutOfDisk);
        EXPECT_EQ(call(), Acad::eOutOfDisk);
        EXPECT_EQ(fault::calls(), 1U);
    }
    fault::arm("AcDbPolyline::getPointAt", 3, Acad::eOutOfDisk);
    AcGePoint3d point(9, 9, 9);
    EXPECT_EQ(line->getPointAt(0, point), Acad::eOk);
    EXPECT_EQ(line->getPointAt(1, point), Acad::eOk);
    EXPECT_EQ(line->getPointAt(2, point), Acad::eOutOfDisk);
    EXPECT_EQ(point, AcGePoint3d(1, 1, 0));
    EXPECT_EQ(line->close(), Acad::eOk);
}

TEST_F(Fault, FactoriesGiveNull) {
    AcDbEntity* entity = nullptr;
    ASSERT_EQ(acdbOpenAcDbEntity(entity, id, AcDb::kForRead), Acad::eOk);
    fault::arm(1, 0);
    EXPECT_EQ(entity->layer(), nullptr);
    fault::arm(1, 0);
    EXPECT_EQ(AcDbText::cast(entity)->textString(), nullptr);
    fault::arm("AcRxClass::create", 1, 0);
    EXPECT_EQ(AcDbText::desc()->create(), nullptr);
    EXPECT_EQ(entity->close(), Acad::eOk);
}

TEST_F(Fault, RefusedIteratorIsNull) {
    AcDbLayerTable* table = nullptr;
    ASSERT_EQ(database->getSymbolTable(table, AcDb::kForRead), Acad::eOk);
    AcDbSymbolTableIterator* iterator = reinterpret_cast<AcDbSymbolTableIterator*>(1);
    fault::arm(1, Acad::eOutOfMemory);
    EXPECT_EQ(table->newIterator(iterator), Acad::eOutOfMemory);
    EXPECT_EQ(iterator, nullptr);
    EXPECT_EQ(table->close(), Acad::eOk);
}

TEST(LedgerOfTheHost, CountsKindsApart) {
    Ledger ledger;
    ledger.opened("selection set", 7);
    ledger.opened("selection set", 7);
    ledger.opened("result buffer", 7,
                  [](std::uint64_t key) { return "number " + std::to_string(key); });
    EXPECT_EQ(ledger.count(), 3U);
    EXPECT_EQ(ledger.count("selection set"), 2U);
    EXPECT_EQ(ledger.count("object"), 0U);
    EXPECT_EQ(ledger.leaks(),
              (std::vector<std::string>{"result buffer: number 7", "selection set: 7, 2 times"}));
    ledger.closed("selection set", 7);
    ledger.closed("selection set", 8);
    ledger.closed("nothing of the kind", 7);
    EXPECT_EQ(ledger.count(), 2U);
    ledger.closed("selection set", 7);
    ledger.closed("selection set", 7);
    EXPECT_EQ(ledger.count("selection set"), 0U);
    ledger.forget();
    EXPECT_TRUE(ledger.leaks().empty());
}

TEST(LedgerOfTheHost, TextIsKeptWhenItsSubjectGoes) {
    Ledger ledger;
    static bool gone;
    gone = false;
    ledger.opened("object", 1, [](std::uint64_t) { return std::string(gone ? "gone" : "here"); });
    ledger.keepText("object", 1);
    ledger.keepText("object", 2);
    ledger.keepText("other", 1);
    gone = true;
    EXPECT_EQ(ledger.leaks(), (std::vector<std::string>{"object: here"}));
}
