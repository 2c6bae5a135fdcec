// The symbol tables: blocks, layers, linetypes and text styles by name. Names are kept as the
// drawing has them and found ignoring case. An absent name gives eKeyNotFound, an erased one
// eWasErased.
#pragma once

#include <dbmain.h>

#include <string>

class AcDbSymbolTableRecord : public AcDbObject {
  public:
    ACRX_DECLARE_MEMBERS(AcDbSymbolTableRecord);

    // A new text that the caller frees (acutDelString).
    Acad::ErrorStatus getName(ACHAR*& name) const;
    // Belongs to the record.
    Acad::ErrorStatus getName(const ACHAR*& name) const;
    // For a record that is in no table yet; eNotImplementedYet for others, since all that is on it
    // would have to be renamed. eInvalidSymbolTableName for a name that is null, empty, longer than
    // 255 characters or holds a control character or one of <>/\":;?*|,=`, or begins or ends with a
    // blank.
    Acad::ErrorStatus setName(const ACHAR* name);
    // From an external reference.
    bool isDependent() const;

  protected:
    AcDbSymbolTableRecord();
};

// Walks a table in the drawing's order. Owned by the caller, who deletes it.
class AcDbSymbolTableIterator : public AcRxObject {
  public:
    ACRX_DECLARE_MEMBERS(AcDbSymbolTableIterator);
    ~AcDbSymbolTableIterator() override;

    // To the first (or last) record; with `skipDeleted` erased ones are passed over.
    void start(bool atBeginning = true, bool skipDeleted = true);
    bool done() const;
    void step(bool forward = true, bool skipDeleted = true);
    // eIteratorDone when there is no record; `id` is untouched then.
    Acad::ErrorStatus getRecordId(AcDbObjectId& id) const;
    // Opens the record; answers as opening does. `record` is null unless the answer is eOk.
    Acad::ErrorStatus getRecord(AcDbSymbolTableRecord*& record,
                                AcDb::OpenMode mode = AcDb::kForRead,
                                bool openErasedRecord = false) const;
    // To this record; eRecordNotInTable when it isn't one of the table's, which moves nothing.
    Acad::ErrorStatus seek(AcDbObjectId id);

  protected:
    friend class AcDbSymbolTable;
    explicit AcDbSymbolTableIterator(const AcDbObjectIdArray& ids);

  private:
    void skipErased(bool forward);

    AcDbObjectIdArray m_ids;
    int m_at = 0;
};

class AcDbSymbolTable : public AcDbObject {
  public:
    ACRX_DECLARE_MEMBERS(AcDbSymbolTable);

    // eNotOpenForRead, eInvalidInput for a null name, eKeyNotFound, eWasErased.
    Acad::ErrorStatus getAt(const ACHAR* name, AcDbObjectId& id,
                            bool getErasedRecord = false) const;
    Acad::ErrorStatus getAt(const ACHAR* name, AcDbSymbolTableRecord*& record, AcDb::OpenMode mode,
                            bool openErasedRecord = false) const;
    bool has(const ACHAR* name) const;
    bool has(AcDbObjectId id) const;
    // eNotOpenForRead; eOutOfMemory when memory is refused; the pointer is null then.
    Acad::ErrorStatus newIterator(AcDbSymbolTableIterator*& iterator, bool atBeginning = true,
                                  bool skipDeleted = true) const;

    // Takes the record over, which is open for write then; the caller closes it. eNotOpenForWrite;
    // eNullObjectPointer; eAlreadyInDb; eInvalidSymbolTableName for a record without a name;
    // eNotThatKindOfClass for a record of another table, eNotImplementedYet for one of blocks;
    // eDuplicateRecordName. The record remains the caller's then.
    Acad::ErrorStatus add(AcDbSymbolTableRecord* record);
    Acad::ErrorStatus add(AcDbObjectId& id, AcDbSymbolTableRecord* record);

  protected:
    AcDbSymbolTable();

    template <class Record>
    Acad::ErrorStatus getRecordAt(const ACHAR* name, Record*& record, AcDb::OpenMode mode,
                                  bool openErasedRecord) const {
        record = nullptr;
        AcDbSymbolTableRecord* opened = nullptr;
        const Acad::ErrorStatus status =
            AcDbSymbolTable::getAt(name, opened, mode, openErasedRecord);
        if (status == Acad::eOk) record = static_cast<Record*>(opened);
        return status;
    }
};

class AcDbLayerTableRecord : public AcDbSymbolTableRecord {
  public:
    ACRX_DECLARE_MEMBERS(AcDbLayerTableRecord);
    AcDbLayerTableRecord();

    bool isFrozen() const;
    bool isLocked() const;
    bool isOff() const;
    bool isPlottable() const;
    // Setters answer eNotOpenForWrite, or do nothing where they have no answer.
    Acad::ErrorStatus setIsFrozen(bool frozen);
    void setIsLocked(bool locked);
    void setIsOff(bool off);
    Acad::ErrorStatus setIsPlottable(bool plottable);
    // 1 to 255.
    Adesk::UInt16 colorIndex() const;
    // eInvalidInput outside of 1 to 255.
    Acad::ErrorStatus setColorIndex(Adesk::UInt16 color);
    AcDbObjectId linetypeObjectId() const;
    // eNotThatKindOfClass when the id names no linetype.
    Acad::ErrorStatus setLinetypeObjectId(AcDbObjectId linetype);
};

class AcDbLayerTable : public AcDbSymbolTable {
  public:
    ACRX_DECLARE_MEMBERS(AcDbLayerTable);
    AcDbLayerTable();

    using AcDbSymbolTable::getAt;
    Acad::ErrorStatus getAt(const ACHAR* name, AcDbLayerTableRecord*& record, AcDb::OpenMode mode,
                            bool openErasedRecord = false) const {
        return getRecordAt(name, record, mode, openErasedRecord);
    }
};

class AcDbLinetypeTableRecord : public AcDbSymbolTableRecord {
  public:
    ACRX_DECLARE_MEMBERS(AcDbLinetypeTableRecord);
    AcDbLinetypeTableRecord();

    Acad::ErrorStatus comments(ACHAR*& text) const;
    double patternLength() const;
    int numDashes() const;
};

class AcDbLinetypeTable : public AcDbSymbolTable {
  public:
    ACRX_DECLARE_MEMBERS(AcDbLinetypeTable);
    AcDbLinetypeTable();

    using AcDbSymbolTable::getAt;
    Acad::ErrorStatus getAt(const ACHAR* name, AcDbLinetypeTableRecord*& record,
                            AcDb::OpenMode mode, bool openErasedRecord = false) const {
        return getRecordAt(name, record, mode, openErasedRecord);
    }
};

class AcDbTextStyleTableRecord : public AcDbSymbolTableRecord {
  public:
    ACRX_DECLARE_MEMBERS(AcDbTextStyleTableRecord);
    AcDbTextStyleTableRecord();

    // The fixed height; 0 when each text has its own.
    double textSize() const;
    double xScale() const;
    double obliquingAngle() const;
    // A new text that the caller frees.
    Acad::ErrorStatus fileName(ACHAR*& name) const;
    Acad::ErrorStatus setTextSize(double size);
    Acad::ErrorStatus setXScale(double scale);
    Acad::ErrorStatus setObliquingAngle(double angle);
    // eInvalidInput for null.
    Acad::ErrorStatus setFileName(const ACHAR* name);
};

class AcDbTextStyleTable : public AcDbSymbolTable {
  public:
    ACRX_DECLARE_MEMBERS(AcDbTextStyleTable);
    AcDbTextStyleTable();

    using AcDbSymbolTable::getAt;
    Acad::ErrorStatus getAt(const ACHAR* name, AcDbTextStyleTableRecord*& record,
                            AcDb::OpenMode mode, bool openErasedRecord = false) const {
        return getRecordAt(name, record, mode, openErasedRecord);
    }
};

// Walks the entities of a block in the drawing's order, without sub-entities. Owned by the caller.
class AcDbBlockTableRecordIterator : public AcRxObject {
  public:
    ACRX_DECLARE_MEMBERS(AcDbBlockTableRecordIterator);
    ~AcDbBlockTableRecordIterator() override;

    void start(bool atBeginning = true, bool skipDeleted = true);
    bool done() const;
    void step(bool forward = true, bool skipDeleted = true);
    // eIteratorDone when there is no entity.
    Acad::ErrorStatus getEntityId(AcDbObjectId& id) const;
    // Opens the entity; answers as opening does.
    Acad::ErrorStatus getEntity(AcDbEntity*& entity, AcDb::OpenMode mode = AcDb::kForRead,
                                bool openErasedEntity = false) const;
    // To this entity; eKeyNotFound when it isn't one of the block's, which moves nothing.
    Acad::ErrorStatus seek(AcDbObjectId id);

  private:
    friend class AcDbBlockTableRecord;
    explicit AcDbBlockTableRecordIterator(AcDbObjectId block);
    void skipErased(bool forward);
    AcDbObjectId idAt(std::size_t position) const;
    std::size_t size() const;

    AcDbObjectId m_block;
    std::size_t m_at = 0;
};

class AcDbBlockTableRecord : public AcDbSymbolTableRecord {
  public:
    ACRX_DECLARE_MEMBERS(AcDbBlockTableRecord);
    AcDbBlockTableRecord();

    // eNotOpenForRead; eOutOfMemory when memory is refused; the pointer is null then.
    Acad::ErrorStatus newIterator(AcDbBlockTableRecordIterator*& iterator, bool atBeginning = true,
                                  bool skipDeleted = true) const;
    // Puts an entity behind the last one and takes it over, its vertices with it. It gets an id
    // and, where the drawing has handles, the next free one; it is open for write then, and the
    // caller closes it.
    //   eNotOpenForWrite, eNullObjectPointer, eAlreadyInDb
    //   eInvalidOwnerObject  the drawing names the block, but doesn't define it
    //   eWrongDatabase       its layer, linetype, style or block isn't in this database
    //   eInvalidDwgVersion   the drawing's release has no such entity (docs/dxf.md)
    //   eNotImplementedYet   an entity of a class that the host only keeps
    //   eInvalidInput        coordinates that are no finite numbers
    // The entity remains the caller's then.
    Acad::ErrorStatus appendAcDbEntity(AcDbEntity* entity);
    Acad::ErrorStatus appendAcDbEntity(AcDbObjectId& id, AcDbEntity* entity);
    bool isAnonymous() const;
    // Only the drawing's own flags tell: a path alone makes no reference.
    bool isFromExternalReference() const;
    bool isFromOverlayReference() const;
    bool isLayout() const;
    bool hasAttributeDefinitions() const;
    AcGePoint3d origin() const;
    // A new text that the caller frees; empty when the block has no path.
    Acad::ErrorStatus pathName(ACHAR*& path) const;
};

class AcDbBlockTable : public AcDbSymbolTable {
  public:
    ACRX_DECLARE_MEMBERS(AcDbBlockTable);
    AcDbBlockTable();

    using AcDbSymbolTable::getAt;
    Acad::ErrorStatus getAt(const ACHAR* name, AcDbBlockTableRecord*& record, AcDb::OpenMode mode,
                            bool openErasedRecord = false) const {
        return getRecordAt(name, record, mode, openErasedRecord);
    }
};
