// AcDbImpDatabase: what stands behind an AcDbDatabase.
//
// Objects are numbered: a record of the drawing that holds an object has the record's number,
// objects that the drawing lacks (tables, layer "0", ...) come after. An id is that number and the
// database's. An object is made when it is first opened; of those that are closed and were never
// changed, the longest closed are forgotten again when there are very many. Objects that are put
// into the database are numbered from kFirstNew on and never forgotten; undoing marks them as
// erased.
#pragma once

#include <dbmain.h>

#include <cstdint>
#include <deque>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "host/database/Members.h"
#include "host/database/RecordWriter.h"
#include "host/database/Structure.h"
#include "host/database/Undo.h"
#include "host/dxf/Document.h"

class AcDbImpDatabase {
  public:
    using Number = host::database::ObjectNumber;
    using Table = host::database::Table;
    using Members = host::database::Members;

    static constexpr Number kHeader = 0x7FFFFFFF;  // the object of what the header says
    static constexpr Number kFirstNew = 0x80000000;

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
    std::uint64_t handleOf(Number number) const;  // 0: none
    // The first object with the handle that a drawing's object or a new one has.
    std::optional<Number> findHandle(std::uint64_t handle) const;

    // Symbols, new ones among them. Of several of one name, one that isn't erased.
    std::optional<Number> find(Table table, std::wstring_view name) const;
    Members records(Table table) const;
    std::wstring symbolName(Number record) const;

    // What a block, or a polyline or block reference, holds: first what the drawing has, then what
    // was added, erased ones among both.
    Members entitiesOf(Number block) const;
    Members subEntitiesOf(Number owner) const;

    // Takes over an object that is in no database, with its parts: open for write, as the last one
    // of `owner`. eInvalidOwnerObject, eWrongDatabase, eInvalidDwgVersion, eNotImplementedYet,
    // eInvalidInput, eOutOfMemory; nothing has happened then.
    Acad::ErrorStatus adopt(AcDbObject& object, Number owner, AcDbObjectId& id);
    const std::map<Number, std::vector<Number>>& added() const { return addedTo_; }
    // How the drawing writes its records.
    const host::database::Manner& manner() const;
    // The next handle for an object, those of undone ones left out; 0 where the drawing has none.
    std::uint64_t nextHandle() const;
    // Where the handles begin that records without an object get while saving, as if what was
    // undone or erased had never been; and the first one from `handle` on that nothing living has.
    std::uint64_t firstFreshHandle() const;
    std::uint64_t freeHandle(std::uint64_t handle) const;

    // The current layer's name, as it is to be saved.
    std::wstring currentLayer() const;
    void setCurrentLayer(std::wstring name);

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
    struct Added {
        Number owner;
        std::uint64_t handle;
    };

    Acad::ErrorStatus mayAdopt(const AcDbObject& object, Number owner) const;
    void complete(AcDbObject& object, Number owner) const;
    void enter(std::unique_ptr<AcDbObject> object, Number owner);
    const std::vector<Number>& addedTo(Number owner) const;
    bool isNew(Number number) const { return number >= kFirstNew; }
    AcDbObject& header();
    std::uint64_t highestOfDrawing() const;
    std::wstring storedCurrentLayer() const;

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

    std::vector<Added> added_;  // object kFirstNew is the first
    std::map<Number, std::vector<Number>> addedTo_;
    std::unordered_map<std::uint64_t, Number> addedHandles_;
    // By table and folded name; of several, the last, since the others were undone.
    std::map<std::pair<Number, std::wstring>, Number> addedSymbols_;
    std::uint64_t lastHandle_ = 0;  // the highest one given
    mutable std::optional<host::database::Manner> manner_;
    mutable std::optional<std::uint64_t> highestHandle_;  // of the drawing, its seed considered
};
