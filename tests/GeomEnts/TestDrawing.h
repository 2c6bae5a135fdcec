// A small drawing for tests of what reads entities. Opened in the embedded host and the working
// database while it lives; including this header also fails tests that leave something open.
#pragma once

#include <dbapserv.h>
#include <dbmain.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <sstream>
#include <string>

#include "host/database/Fault.h"
#include "host/database/Ledger.h"
#include "tests/host/support/DrawingText.h"
#include "tests/host/support/LedgerListener.h"

namespace TamLib {

class TestDrawing {
  public:
    // Records as DrawingText takes them, one a line: "LINE|5 2F|8 0|10 1|20 2|30 3|11 4|21 5|31 6".
    // There are the layers "0" and, locked, "LOCKED".
    TestDrawing(std::initializer_list<std::string> records) {
        host::test::DrawingText text;
        text.layer("0").layer("LOCKED", 4);
        for (const std::string& lines : records) {
            std::istringstream stream(lines);
            for (std::string record; std::getline(stream, record);) text.entity(record);
        }
        database_ = text.database();
        before_ = acdbHostApplicationServices()->workingDatabase();
        acdbHostApplicationServices()->setWorkingDatabase(database_.get());
    }
    ~TestDrawing() { acdbHostApplicationServices()->setWorkingDatabase(before_); }
    TestDrawing(const TestDrawing&) = delete;
    TestDrawing& operator=(const TestDrawing&) = delete;

    AcDbObjectId Id(std::uint64_t handle) const {
        AcDbObjectId id;
        EXPECT_EQ(Acad::eOk, database_->getAcDbObjectId(id, false, AcDbHandle(handle)));
        return id;
    }
    AcDbEntity* Open(std::uint64_t handle, AcDb::OpenMode mode = AcDb::kForRead) const {
        AcDbEntity* entity = nullptr;
        EXPECT_EQ(Acad::eOk, acdbOpenAcDbEntity(entity, Id(handle), mode));
        return entity;
    }
    AcDbDatabase& Database() const { return *database_; }
    bool IsErased(std::uint64_t handle) const { return Id(handle).isErased(); }

  private:
    std::unique_ptr<AcDbDatabase> database_;
    AcDbDatabase* before_ = nullptr;
};

}  // namespace TamLib
