#include "ARX/GenARX.h"

#include <acedads.h>
#include <acutmem.h>
#include <dbapserv.h>
#include <dbdict.h>
#include <dbents.h>
#include <dbsymtb.h>

#include <cmath>
#include <cwchar>
#include <memory>
#include <new>

#include "ARX/Opened.h"
#include "GeomEnts/EntityReading.h"
#include "datastruct/StringPrint.h"
#include "tam/TamExceptions.h"
#include "tam/TextCase.h"

namespace TamLib {
namespace {

constexpr const wchar_t* kSource = L"ARX/GenARX";

// The line that a failed allocation of a layer reports.
constexpr int kAddLayerLine = 797;

AcDbDatabase* OrWorking(AcDbDatabase* database) {
    return database != nullptr ? database : acdbHostApplicationServices()->workingDatabase();
}

template <class Table>
Opened<Table> OpenTable(AcDbDatabase* database, AcDb::OpenMode mode) {
    Table* table = nullptr;
    if (database == nullptr || database->getSymbolTable(table, mode) != Acad::eOk) return nullptr;
    return Opened<Table>(table);
}

bool IsDigit(wchar_t c) {
    return c >= L'0' && c <= L'9';
}

// Names of a letter and five digits are codes, which the drawing is to show in capitals.
void RaiseCode(wchar_t* name) {
    if (!IsAlpha(name[0])) return;
    for (int i = 1; i <= 5; ++i)
        if (!IsDigit(name[i])) return;
    name[0] = UpperChar(name[0]);
}

// The linetype of the database that the layer is made in: records refer to their own alone.
void SetContinuous(AcDbLayerTableRecord& layer, AcDbDatabase* database) {
    const auto linetypes = OpenTable<AcDbLinetypeTable>(database, AcDb::kForRead);
    AcDbObjectId linetype;
    if (linetypes != nullptr && linetypes->getAt(L"CONTINUOUS", linetype) == Acad::eOk)
        layer.setLinetypeObjectId(linetype);
}

// `*Model_Space`, open for write. The status of the call that failed, 0 when it is open.
Acad::ErrorStatus OpenModelSpace(AcDbDatabase* database, Opened<AcDbBlockTableRecord>& space) {
    if (database == nullptr) return Acad::eNoDatabase;
    AcDbBlockTable* blocks = nullptr;
    Acad::ErrorStatus status = database->getSymbolTable(blocks, AcDb::kForRead);
    if (status != Acad::eOk) return status;
    const Opened<AcDbBlockTable> closing(blocks);
    AcDbBlockTableRecord* record = nullptr;
    status = blocks->getAt(ACDB_MODEL_SPACE, record, AcDb::kForWrite);
    if (status == Acad::eOk) space.reset(record);
    return status;
}

std::unique_ptr<wchar_t[]> CopyOf(const wchar_t* text) {
    const std::size_t size = std::wcslen(text) + 1;
    std::unique_ptr<wchar_t[]> copy(new (std::nothrow) wchar_t[size]);
    if (copy != nullptr) CopyLimited(copy.get(), text, size);
    return copy;
}

}  // namespace

bool ARXAddLayer(const wchar_t* name, AcDbDatabase* database) {
    database = OrWorking(database);
    const auto table = OpenTable<AcDbLayerTable>(database, AcDb::kForWrite);
    if (name == nullptr || table == nullptr || table->has(name)) return false;
    std::unique_ptr<AcDbLayerTableRecord> layer(new AcDbLayerTableRecord);
    if (layer == nullptr)
        throw TamExpAcad(L"Allocation of layerTableRecord failed", kAddLayerLine, kSource);
    wchar_t wanted[512];
    CopyLimited(wanted, name, 512);
    RaiseCode(wanted);
    if (layer->setName(wanted) != Acad::eOk) return false;
    SetContinuous(*layer, database);
    if (table->add(layer.get()) != Acad::eOk) return false;
    layer.release()->close();
    return true;
}

int ARXAddToModelSpace(AcDbEntity* entity, AcDbObjectId* id, bool close, AcDbDatabase* database) {
    std::unique_ptr<AcDbEntity> added(entity);
    Opened<AcDbBlockTableRecord> space;
    Acad::ErrorStatus status = OpenModelSpace(OrWorking(database), space);
    if (status != Acad::eOk) return status;
    AcDbObjectId made;
    status = space->appendAcDbEntity(made, entity);
    if (status != Acad::eOk) return status;
    static_cast<void>(added.release());
    space.reset();
    if (id != nullptr) *id = made;
    if (close) entity->close();
    return status;
}

int ARXMakeText(const Point3d& position, const wchar_t* text, const wchar_t* layer, double height,
                double rotation, int colour, const AcGeVector3d* normal, AcDbObjectId* id,
                AcDbDatabase* database) {
    const auto copy = CopyOf(text != nullptr ? text : L"");
    const bool hasHeight = std::fabs(height) >= 0.0001;
    std::unique_ptr<AcDbText> entity;
    if (copy != nullptr)
        entity.reset(new AcDbText(ToAcGePoint3d(position), copy.get(), AcDbObjectId(),
                                  hasHeight ? height : 0.0, rotation));
    if (entity == nullptr) throw TamExpAcad(L"Allocation of AcDbText failed", __LINE__, kSource);
    entity->setRotation(rotation);
    entity->setColorIndex(static_cast<Adesk::UInt16>(colour));
    if (hasHeight) entity->setHeight(height);
    if (normal != nullptr) entity->setNormal(*normal);
    SetLayer(*entity, layer, database);
    return ARXAddToModelSpace(entity.release(), id, /*close=*/true, database);
}

bool ARXGetStandardMlineStyle(AcDbObjectId* id, AcDbDatabase* database) {
    database = OrWorking(database);
    AcDbDictionary* styles = nullptr;
    if (database == nullptr || database->getMLStyleDictionary(styles, AcDb::kForRead) != Acad::eOk)
        return false;
    const Opened<AcDbDictionary> closing(styles);
    return styles->getAt(L"STANDARD", *id) == Acad::eOk;
}

double ARXViewSize() {
    if (acdbHostApplicationServices()->workingDatabase() == nullptr) return 0.0;
    resbuf value{};
    acedGetVar(L"VIEWSIZE", &value);
    if (value.restype == RTREAL) return value.resval.rreal;
    if (value.restype == RTSTR) acutDelString(value.resval.rstring);
    throw TamExpInvalidArgs(L"Invalid rb return value", __LINE__, kSource);
}

}  // namespace TamLib
