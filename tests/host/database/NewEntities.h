// What the tests of new entities have in common.
#pragma once

#include <acutmem.h>
#include <dbapserv.h>
#include <dbelipse.h>
#include <dbents.h>
#include <dbpl.h>
#include <dbspline.h>
#include <dbsymtb.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "host/database/Drawing.h"
#include "host/database/Undo.h"
#include "host/dxf/Compare.h"
#include "tests/host/support/DrawingText.h"

namespace host::test {

// The working database for as long as it lives.
class Working {
  public:
    explicit Working(AcDbDatabase& database)
        : before_(acdbHostApplicationServices()->workingDatabase()) {
        acdbHostApplicationServices()->setWorkingDatabase(&database);
    }
    ~Working() { acdbHostApplicationServices()->setWorkingDatabase(before_); }

  private:
    AcDbDatabase* before_;
};

// Puts `entity` into the block and closes it; deleted when it is refused.
inline Acad::ErrorStatus append(AcDbDatabase& database, AcDbEntity* entity,
                                AcDbObjectId* made = nullptr,
                                const ACHAR* block = ACDB_MODEL_SPACE) {
    AcDbBlockTable* blocks = nullptr;
    EXPECT_EQ(database.getSymbolTable(blocks, AcDb::kForRead), Acad::eOk);
    AcDbBlockTableRecord* space = nullptr;
    EXPECT_EQ(blocks->getAt(block, space, AcDb::kForWrite), Acad::eOk);
    blocks->close();
    AcDbObjectId id;
    const Acad::ErrorStatus status = space->appendAcDbEntity(id, entity);
    space->close();
    if (status == Acad::eOk) {
        EXPECT_EQ(entity->close(), Acad::eOk);
    } else {
        delete entity;
    }
    if (made != nullptr) *made = id;
    return status;
}

inline Acad::ErrorStatus addLayer(AcDbDatabase& database, const ACHAR* name,
                                  AcDbObjectId* made = nullptr) {
    AcDbLayerTable* table = nullptr;
    EXPECT_EQ(database.getSymbolTable(table, AcDb::kForWrite), Acad::eOk);
    auto* layer = new AcDbLayerTableRecord;
    Acad::ErrorStatus status = layer->setName(name);
    AcDbObjectId id;
    if (status == Acad::eOk) status = table->add(id, layer);
    table->close();
    if (status == Acad::eOk) {
        layer->close();
    } else {
        delete layer;
    }
    if (made != nullptr) *made = id;
    return status;
}

// Lines "code value" of the record with this handle in what saving would write.
inline std::vector<std::string> savedGroups(const AcDbDatabase& database, std::uint64_t handle) {
    const auto saved = dxf::Document::fromBytes(savedBytes(database), "saved.dxf");
    const auto record = saved->find(handle);
    return record ? groupsOf(*saved, *record) : std::vector<std::string>();
}

// The same for an entity, from its layer on.
inline std::vector<std::string> savedGroups(AcDbObjectId id) {
    return savedGroups(*id.database(), static_cast<std::uint64_t>(id.handle()));
}

}  // namespace host::test
