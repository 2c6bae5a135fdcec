// The drawing database: AcDbDatabase, the objects in it, and how they are opened and closed.
//
// An object of a database is opened by its id for read, write or notify and closed by whoever
// opened it. Many may read at once, or one writes. Opening answers
//   eNullObjectId         the null id
//   eNoDatabase           the id's database is gone
//   eInvalidObjectId      the database has no such object
//   eWasErased            an erased object, unless erased ones are asked for
//   eWasOpenForWrite      open for write already
//   eWasOpenForRead       asked for write, open for read
//   eAtMaxReaders         255 readers already
//   eWasOpenForNotify     open for notify already
//   eOnLockedLayer        an entity on a locked layer asked for write
//   eNotThatKindOfClass   the object is of another class
//   eInvalidInput         the record holds coordinates that are no numbers
// and leaves the pointer null unless the answer is eOk. Objects outlive close and erase, so that a
// second close() does no harm. An object that is in no database is always readable and writable.
#pragma once

#include <acdb.h>
#include <dbid.h>
#include <dbidar.h>
#include <dbptrar.h>
#include <gemat3d.h>
#include <gept3dar.h>
#include <rxboiler.h>
#include <rxobject.h>

class AcDbBlockTable;
class AcDbDictionary;
class AcDbImpDatabase;
class AcDbImpObject;
class AcDbLayerTable;
class AcDbLinetypeTable;
class AcDbObject;
class AcDbTextStyleTable;

// A box in space; empty until a point is added.
class AcDbExtents {
  public:
    AcDbExtents() = default;

    const AcGePoint3d& minPoint() const { return m_min; }
    const AcGePoint3d& maxPoint() const { return m_max; }
    // eInvalidExtents when a minimum lies above its maximum; nothing is changed then.
    Acad::ErrorStatus set(const AcGePoint3d& min, const AcGePoint3d& max);
    void addPoint(const AcGePoint3d& point);
    void addExt(const AcDbExtents& other);

  private:
    AcGePoint3d m_min{1e20, 1e20, 1e20};
    AcGePoint3d m_max{-1e20, -1e20, -1e20};
};

class AcDbDatabase : public AcRxObject {
  public:
    ACRX_DECLARE_MEMBERS(AcDbDatabase);

    // An empty drawing: model space, paper space, layer "0", linetype "CONTINUOUS", text style and
    // multi-line style "STANDARD".
    explicit AcDbDatabase(bool buildDefaultDrawing = true, bool noDocument = false);
    ~AcDbDatabase() override;

    // The symbol tables, opened in the given mode; the caller closes them.
    Acad::ErrorStatus getSymbolTable(AcDbBlockTable*& table, AcDb::OpenMode mode);
    Acad::ErrorStatus getSymbolTable(AcDbLayerTable*& table, AcDb::OpenMode mode);
    Acad::ErrorStatus getSymbolTable(AcDbLinetypeTable*& table, AcDb::OpenMode mode);
    Acad::ErrorStatus getSymbolTable(AcDbTextStyleTable*& table, AcDb::OpenMode mode);
    AcDbObjectId blockTableId() const;
    AcDbObjectId layerTableId() const;
    AcDbObjectId linetypeTableId() const;
    AcDbObjectId textStyleTableId() const;
    // The styles of multi-lines by name, opened in the given mode; the caller closes them.
    Acad::ErrorStatus getMLStyleDictionary(AcDbDictionary*& dictionary,
                                           AcDb::OpenMode mode = AcDb::kForRead);

    // Layer "0", and the layer that new entities take: the drawing's current one, or "0" when that
    // doesn't exist.
    AcDbObjectId layerZero() const;
    AcDbObjectId clayer() const;
    // eNullObjectId; eWrongDatabase for a layer of another database; eNotThatKindOfClass for what
    // is no layer, eWasErased. The saved drawing names it in $CLAYER when it has that variable.
    Acad::ErrorStatus setClayer(AcDbObjectId layer);

    // The id of the object with this handle. eNullHandle for handle 0, eUnknownHandle when no
    // object has it. Of several objects with the same handle, the first of the drawing.
    Acad::ErrorStatus getAcDbObjectId(AcDbObjectId& id, bool createIfNotFound,
                                      const AcDbHandle& handle);

    // The file that the drawing came from; empty for a new one. The text belongs to the database.
    Acad::ErrorStatus getFilename(const ACHAR*& name) const;
    const ACHAR* originalFileName() const;

    AcDbImpDatabase* impl() const { return m_impl; }

  private:
    friend class AcDbImpDatabase;

    AcDbImpDatabase* m_impl;
};

class AcDbObject : public AcRxObject {
  public:
    ACRX_DECLARE_MEMBERS(AcDbObject);
    ~AcDbObject() override;

    // Null for an object that is in no database.
    AcDbObjectId objectId() const;
    AcDbObjectId ownerId() const;
    void getAcDbHandle(AcDbHandle& handle) const;
    AcDbDatabase* database() const;

    // Gives back one opening. eNotOpenForRead when the object isn't open, eNotInDatabase for an
    // object that is in no database; nothing happens then.
    Acad::ErrorStatus close();
    // Marks the object, which must be open for write, as erased (or brings it back).
    // eNotOpenForWrite; eWasErased when it is erased already; eWasNotErased when there is nothing
    // to bring back; eCannotBeErasedByCaller for tables, model space, layer "0" and the like.
    Acad::ErrorStatus erase(bool erasing = true);

    // From read to write. eNotOpenForRead; eWasOpenForWrite when it is already; eHadMultipleReaders
    // with another reader; eWasOpenForNotify; eOnLockedLayer. The object stays open as it was then.
    Acad::ErrorStatus upgradeOpen();
    // From write to read. eWasOpenForNotify, eWasNotOpenForWrite.
    Acad::ErrorStatus downgradeOpen();

    bool isReadEnabled() const;
    bool isWriteEnabled() const;
    bool isNotifyEnabled() const;
    bool isErased() const;
    bool isModified() const;

    AcDbImpObject* impl() const { return m_impl; }

    // Null, without raising, when memory is refused.
    static void* operator new(std::size_t size) noexcept;
    static void operator delete(void* memory) noexcept;

  protected:
    AcDbObject();

  private:
    AcDbImpObject* m_impl;
};

class AcDbEntity : public AcDbObject {
  public:
    ACRX_DECLARE_MEMBERS(AcDbEntity);

    // The layer's name, a new text that the caller frees (acutDelString).
    ACHAR* layer() const;
    AcDbObjectId layerId() const;
    // With `doSubents` these setters give vertices and attributes the same.
    // The layer of this name or id. An entity in no database looks in the working one, and goes to
    // the current layer when it is put into a database without having been given any. eKeyNotFound,
    // eNoDatabase, eWasErased; eNotThatKindOfClass for an id of something else; eNotOpenForWrite.
    Acad::ErrorStatus setLayer(const ACHAR* name, bool doSubents = true);
    Acad::ErrorStatus setLayer(AcDbObjectId layer, bool doSubents = true);
    // 0 by block, 256 by layer, otherwise 1 to 255. A colour index that is negative in the drawing
    // counts by its absolute value.
    Adesk::UInt16 colorIndex() const;
    // eInvalidInput above 256; eNotOpenForWrite.
    Acad::ErrorStatus setColorIndex(Adesk::UInt16 color, bool doSubents = true);
    // The linetype's name ("BYLAYER" when the drawing names none), a new text that the caller
    // frees.
    ACHAR* linetype() const;
    // "BYLAYER", "BYBLOCK" or one of the table; answers as setLayer does.
    Acad::ErrorStatus setLinetype(const ACHAR* name, bool doSubents = true);
    AcDb::Visibility visibility() const;
    Acad::ErrorStatus setVisibility(AcDb::Visibility visibility, bool doSubents = true);
    // The block table record that holds the entity; for a sub-entity, that of its owner.
    AcDbObjectId blockId() const;

    // The map from the entity's own coordinate system to the world's: the arbitrary axis rule for
    // planar entities, without any elevation; the identity for entities that live in the world's.
    virtual void getEcs(AcGeMatrix3d& matrix) const;
    // The box of what is drawn, in world coordinates. eNotOpenForRead; eNullExtents when the class
    // has no geometry that the host knows, or nothing is drawn.
    virtual Acad::ErrorStatus getGeomExtents(AcDbExtents& extents) const;
    // Appends the points by which a stretching moves the entity, in world coordinates: of lines,
    // arcs, polylines and splines the ends and the vertices or knots between, the first not again
    // at the end of a closed one; the quarters of circles and ellipses; corners of faces and
    // solids; where points, texts and block references stand. Any other class has none.
    // eNotOpenForRead.
    virtual Acad::ErrorStatus getStretchPoints(AcGePoint3dArray& points) const;
    // Appends the points in which this entity and another meet, as seen from above, with the
    // height that this one has there: crossings, and ends and vertices that lie on the other. Of
    // stretches that run along each other, both ends. Nothing for an entity inside a closed one.
    // Curves are met by chords, within a millionth of their size. Entities in no database are
    // taken when they are curves. eNotOpenForRead, eNullEntityPointer; eNotImplementedYet for
    // other than kOnBothOperands.
    virtual Acad::ErrorStatus intersectWith(const AcDbEntity* other, AcDb::Intersect kind,
                                            AcGePoint3dArray& points,
                                            Adesk::GsMarker thisMarker = 0,
                                            Adesk::GsMarker otherMarker = 0) const;
    // New entities, the caller's and in no database, that make up what this one draws, appended to
    // `entities`. eNotApplicable for what can't be taken apart.
    virtual Acad::ErrorStatus explode(AcDbVoidPtrArray& entities) const;

  protected:
    AcDbEntity();
};

// Walks the sub-entities of a polyline, mesh or block reference. Owned by the caller, who deletes
// it.
class AcDbObjectIterator : public AcRxObject {
  public:
    ACRX_DECLARE_MEMBERS(AcDbObjectIterator);

    // To the first (or last) one; with `skipDeleted` erased ones are passed over.
    virtual void start(bool atBeginning = true, bool skipDeleted = true) = 0;
    virtual bool done() const = 0;
    // The null id when done.
    virtual AcDbObjectId objectId() const = 0;
    virtual void step(bool backwards = false, bool skipDeleted = true) = 0;

  protected:
    AcDbObjectIterator() = default;
};

Acad::ErrorStatus acdbOpenAcDbObject(AcDbObject*& object, AcDbObjectId id, AcDb::OpenMode mode,
                                     bool openErasedObject = false);
Acad::ErrorStatus acdbOpenAcDbEntity(AcDbEntity*& entity, AcDbObjectId id, AcDb::OpenMode mode,
                                     bool openErasedEntity = false);
Acad::ErrorStatus acdbOpenObject(AcDbObject*& object, AcDbObjectId id,
                                 AcDb::OpenMode mode = AcDb::kForRead,
                                 bool openErasedObject = false);

// As class T: an object of another class is not opened and gives eNotThatKindOfClass.
template <class T>
Acad::ErrorStatus acdbOpenObject(T*& object, AcDbObjectId id, AcDb::OpenMode mode = AcDb::kForRead,
                                 bool openErasedObject = false) {
    object = nullptr;
    AcDbObject* opened = nullptr;
    const Acad::ErrorStatus status = acdbOpenObject(opened, id, mode, openErasedObject);
    if (status != Acad::eOk) return status;
    object = T::cast(opened);
    if (object != nullptr) return Acad::eOk;
    opened->close();
    return Acad::eNotThatKindOfClass;
}
