// AcDbImpObject: what stands behind an AcDbObject: its id, its fields, and how it is open.
#pragma once

#include <dbmain.h>

#include <cstdint>
#include <memory>
#include <vector>

#include "host/database/Curve.h"
#include "host/database/Fields.h"

class AcDbImpObject {
  public:
    explicit AcDbImpObject(AcDbObject& self) : self_(self) {}

    // Null and without a database until the object is put into one.
    AcDbObjectId id() const { return id_; }
    AcDbImpDatabase* database() const { return database_; }
    void putInto(AcDbImpDatabase& database, AcDbObjectId id);

    host::database::Fields& fields() { return *fields_; }
    const host::database::Fields& fields() const { return *fields_; }
    void setFields(std::unique_ptr<host::database::Fields> fields);
    std::unique_ptr<host::database::Fields> exchangeFields(
        std::unique_ptr<host::database::Fields> fields);

    // The open protocol, as dbmain.h tells it. Opening for write asks the entity's layer.
    Acad::ErrorStatus open(AcDb::OpenMode mode);
    Acad::ErrorStatus close();
    Acad::ErrorStatus upgrade();
    Acad::ErrorStatus downgrade();
    // Gives back all openings.
    void closeAll();
    bool isOpen() const { return readers_ > 0 || writing_ || notifying_; }
    bool mayRead() const { return database_ == nullptr || isOpen(); }
    bool mayWrite() const { return database_ == nullptr || writing_; }
    bool isNotifying() const { return notifying_; }
    const char* modeText() const;

    // eOk when fields may be changed, which is noted for undo first; otherwise eNotOpenForWrite.
    Acad::ErrorStatus beginChange();

    Acad::ErrorStatus erase(bool erasing);
    bool isErased() const { return erased_; }
    void setErased(bool erased) { erased_ = erased; }
    // Changed since it was read, now or at any time before an undo.
    bool isTouched() const { return touched_; }
    void setTouched() { touched_ = true; }

    // Whether its record stands in the drawing that was read.
    bool isFromDrawing() const;

    // Sub-entities of an object that is in no database yet; they follow it into one.
    void takePart(AcDbObject& part) { parts_.emplace_back(&part); }
    std::vector<std::unique_ptr<AcDbObject>>& parts() { return parts_; }
    const std::vector<std::unique_ptr<AcDbObject>>& parts() const { return parts_; }

    // Into a database, as a change that can be undone: open for write, not erased.
    void enter(AcDbImpDatabase& database, AcDbObjectId id);

    // The undo group that last noted the object.
    std::uint64_t notedBy() const { return notedBy_; }
    void setNotedBy(std::uint64_t group) { notedBy_ = group; }

    // In the queue of objects that may be forgotten (AcDbImpDatabase).
    bool isQueued() const { return queued_; }
    void setQueued(bool queued) { queued_ = queued; }

    // The curve as it now is; null when the object is none or its fields fit none.
    const host::database::Curve* curve() const;

  private:
    Acad::ErrorStatus refusedByLayer() const;

    AcDbObject& self_;
    AcDbObjectId id_;
    AcDbImpDatabase* database_ = nullptr;
    std::unique_ptr<host::database::Fields> fields_;
    mutable std::shared_ptr<const host::database::Curve> curve_;
    mutable std::uint64_t curveStamp_ = 0;  // the database's count of changes that `curve_` is of
    std::vector<std::unique_ptr<AcDbObject>> parts_;
    std::uint64_t notedBy_ = 0;
    std::uint8_t readers_ = 0;
    bool writing_ = false;
    bool notifying_ = false;
    bool erased_ = false;
    bool touched_ = false;
    bool queued_ = false;
};

namespace host::database {

// The fields of an object of a class whose fields are known to be F.
template <class F>
const F& fieldsOf(const AcDbObject& object) {
    return static_cast<const F&>(object.impl()->fields());
}
template <class F>
F& fieldsOf(AcDbObject& object) {
    return static_cast<F&>(object.impl()->fields());
}

}  // namespace host::database
