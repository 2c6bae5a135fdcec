// AcDbDatabase and the host's services around it.
#include <dbapserv.h>
#include <dbmain.h>
#include <dbsymtb.h>

#include "host/database/DatabaseImp.h"
#include "host/database/Fault.h"

using host::database::Table;

ACRX_CONS_DEFINE_MEMBERS(AcDbDatabase, AcRxObject, 1)
ACRX_NO_CONS_DEFINE_MEMBERS(AcDbHostApplicationServices, AcRxObject)

namespace {

template <class T>
Acad::ErrorStatus openTable(AcDbImpDatabase& database, Table which, T*& table,
                            AcDb::OpenMode mode) {
    table = nullptr;
    HOST_CALL("AcDbDatabase::getSymbolTable");
    AcDbObject* opened = nullptr;
    const Acad::ErrorStatus status =
        database.open(opened, database.structure().tableObject(which), mode, false);
    if (status == Acad::eOk) table = static_cast<T*>(opened);
    return status;
}

AcDbObjectId tableId(const AcDbImpDatabase& database, Table which) {
    return database.idOf(database.structure().tableObject(which));
}

}  // namespace

AcDbDatabase::AcDbDatabase(bool /*buildDefaultDrawing*/, bool /*noDocument*/)
    : m_impl(new AcDbImpDatabase(*this, host::dxf::Document::fromBytes("  0\nEOF\n", ""))) {}

AcDbDatabase::~AcDbDatabase() {
    AcDbHostApplicationServices* services = acdbHostApplicationServices();
    if (services->workingDatabase() == this) services->setWorkingDatabase(nullptr);
    delete m_impl;
}

Acad::ErrorStatus AcDbDatabase::getSymbolTable(AcDbBlockTable*& table, AcDb::OpenMode mode) {
    return openTable(*m_impl, Table::block, table, mode);
}
Acad::ErrorStatus AcDbDatabase::getSymbolTable(AcDbLayerTable*& table, AcDb::OpenMode mode) {
    return openTable(*m_impl, Table::layer, table, mode);
}
Acad::ErrorStatus AcDbDatabase::getSymbolTable(AcDbLinetypeTable*& table, AcDb::OpenMode mode) {
    return openTable(*m_impl, Table::linetype, table, mode);
}
Acad::ErrorStatus AcDbDatabase::getSymbolTable(AcDbTextStyleTable*& table, AcDb::OpenMode mode) {
    return openTable(*m_impl, Table::textStyle, table, mode);
}

AcDbObjectId AcDbDatabase::blockTableId() const {
    return tableId(*m_impl, Table::block);
}
AcDbObjectId AcDbDatabase::layerTableId() const {
    return tableId(*m_impl, Table::layer);
}
AcDbObjectId AcDbDatabase::linetypeTableId() const {
    return tableId(*m_impl, Table::linetype);
}
AcDbObjectId AcDbDatabase::textStyleTableId() const {
    return tableId(*m_impl, Table::textStyle);
}

AcDbObjectId AcDbDatabase::layerZero() const {
    return m_impl->idOf(m_impl->structure().find(Table::layer, L"0"));
}

AcDbObjectId AcDbDatabase::clayer() const {
    const auto current = m_impl->document().headerVariable("$CLAYER").find(8);
    if (!current) return layerZero();
    const std::wstring name = m_impl->document().decode(current->bytes());
    const auto found = m_impl->structure().find(Table::layer, name);
    return found ? m_impl->idOf(found) : layerZero();
}

Acad::ErrorStatus AcDbDatabase::getAcDbObjectId(AcDbObjectId& id, bool /*createIfNotFound*/,
                                                const AcDbHandle& handle) {
    HOST_CALL("AcDbDatabase::getAcDbObjectId");
    if (handle.isNull()) return Acad::eNullHandle;
    const auto record = m_impl->document().find(handle);
    if (!record || !m_impl->isObject(*record)) return Acad::eUnknownHandle;
    id = m_impl->idOf(record);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbDatabase::getFilename(const ACHAR*& name) const {
    HOST_CALL("AcDbDatabase::getFilename");
    name = m_impl->fileName.c_str();
    return Acad::eOk;
}

const ACHAR* AcDbDatabase::originalFileName() const {
    return m_impl->fileName.c_str();
}

AcDbHostApplicationServices* acdbHostApplicationServices() {
    static AcDbHostApplicationServices services;
    return &services;
}
