// AcDbImpDatabase: what stands behind an AcDbDatabase.
//
// Objects are numbered: a record of the drawing that holds an object has the record's number,
// objects that the drawing lacks (tables, layer "0", ...) come after. An id is that number and the
// database's. An object is made when it is first opened; of those that are closed and were never
// changed, the longest closed are forgotten again when there are very many.
#pragma once

#include <dbmain.h>

#include <cstdint>
#include <deque>
#include <filesystem>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

#include "host/database/Structure.h"
#include "host/database/Undo.h"
#include "host/dxf/Document.h"

class AcDbImpDatabase {
  public:
    using Number = host::database::ObjectNumber;

    AcDbImpDatabase(AcDbDatabase& self, std::shared_ptr<const host::dxf::Document> document);
    ~AcDbImpDatabase();

    // A database over a drawing.
    static std::unique_ptr<AcDbDatabase> make(std::shared_ptr<const host::dxf::Document> document);

    // The database of an id, or null when it is gone.
    static AcDbImpDatabase* of(AcDbObjectId id);

    AcDbDatabase& self() const { return self_; }
    const host::dxf::Document& document() const { return *document_; }
    const host::database::Structure& structure() const { return structure_; }
    host::database::UndoLog& undoLog() { return undo_; }

    AcDbObjectId idOf(Number number) const;
    AcDbObjectId idOf(std::optional<Number> number) const {
        return number ? idOf(*number) : AcDbObjectId();
    }
    static Number numberOf(AcDbObjectId id);  // of an id that isn't null
    // The record that holds the object; none for objects that the drawing lacks.
    std::optional<host::dxf::RecordIndex> recordOf(Number number) const;
    bool isObject(Number number) const;
    AcRxClass* classOf(Number number) const;

    // The object, made if need be; null when there is none with that number. The pointer holds
    // while the object is open or few others are made.
    AcDbObject* object(Number number);
    // The object if it has been made.
    AcDbObject* madeObject(Number number) const;
    bool isErased(Number number) const;

    // Fields of an object that need not be made for it: read into `fields` unless it has been.
    const host::database::Fields& fieldsAt(Number number, host::database::Fields& fields) const;

    Acad::ErrorStatus open(AcDbObject*& object, Number number, AcDb::OpenMode mode, bool erasedToo);
    // Puts an unchanged object at the end of those that may be forgotten, unless it stands there.
    void mayBeForgotten(AcDbObject& object);
    // Objects with at least one opening.
    std::vector<AcDbObject*> openObjects() const;

    // An object's fields or its erased mark change.
    void noteChange(AcDbObject& object);
    std::uint64_t changeCount() const { return changes_; }
    const std::set<Number>& touched() const { return touched_; }

    // The block table record that holds an entity, none for what isn't one; `entity` may be a
    // sub-entity.
    std::optional<Number> blockOf(Number entity) const;
    std::optional<Number> ownerOf(Number number) const;

    // Whether erase() is granted: not for symbol tables and their records.
    bool mayErase(const AcDbObject& object) const;

    std::wstring fileName;

  private:
    AcDbObject* make(Number number);
    void fillFields(Number number, host::database::Fields& fields) const;
    void forgetOldest();
    std::optional<Number> tableOf(host::dxf::RecordIndex record) const;
    std::optional<Number> ownerByHandle(host::dxf::RecordIndex record) const;

    AcDbDatabase& self_;
    std::shared_ptr<const host::dxf::Document> document_;
    std::uint32_t serial_;
    host::database::Structure structure_;
    host::database::UndoLog undo_;
    std::unordered_map<Number, std::unique_ptr<AcDbObject>> objects_;
    std::deque<Number> closed_;
    std::set<Number> touched_;
    std::uint64_t changes_ = 1;
};
