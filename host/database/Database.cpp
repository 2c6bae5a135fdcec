// AcDbDatabase and the host's services around it.
#include <dbapserv.h>
#include <dbdict.h>
#include <dbmain.h>
#include <dbsymtb.h>

#include <utility>

#include "host/database/DatabaseImp.h"
#include "host/database/Fault.h"
#include "host/database/SymbolNames.h"

using host::database::Table;

ACRX_CONS_DEFINE_MEMBERS(AcDbDatabase, AcRxObject, 1)
ACRX_NO_CONS_DEFINE_MEMBERS(AcDbHostApplicationServices, AcRxObject)

namespace {

template <class T>
Acad::ErrorStatus openObjectOf(AcDbImpDatabase& database, Table which, T*& table,
                               AcDb::OpenMode mode) {
    AcDbObject* opened = nullptr;
    const Acad::ErrorStatus status =
        database.open(opened, database.structure().tableObject(which), mode, false);
    if (status == Acad::eOk) table = static_cast<T*>(opened);
    return status;
}

template <class T>
Acad::ErrorStatus openTable(AcDbImpDatabase& database, Table which, T*& table,
                            AcDb::OpenMode mode) {
    table = nullptr;
    HOST_CALL("AcDbDatabase::getSymbolTable");
    return openObjectOf(database, which, table, mode);
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

Acad::ErrorStatus AcDbDatabase::getMLStyleDictionary(AcDbDictionary*& dictionary,
                                                     AcDb::OpenMode mode) {
    dictionary = nullptr;
    HOST_CALL("AcDbDatabase::getMLStyleDictionary");
    return openObjectOf(*m_impl, Table::mlineStyle, dictionary, mode);
}

AcDbObjectId AcDbDatabase::layerZero() const {
    return m_impl->idOf(m_impl->find(Table::layer, L"0"));
}

AcDbObjectId AcDbDatabase::clayer() const {
    return m_impl->idOf(m_impl->find(Table::layer, m_impl->currentLayer()));
}

Acad::ErrorStatus AcDbDatabase::setClayer(AcDbObjectId layer) {
    HOST_CALL("AcDbDatabase::setClayer");
    std::wstring name;
    const Acad::ErrorStatus status =
        host::database::nameOfSymbol(layer, AcDbLayerTableRecord::desc(), name);
    if (status != Acad::eOk) return status;
    if (AcDbImpDatabase::of(layer) != m_impl) return Acad::eWrongDatabase;
    m_impl->setCurrentLayer(std::move(name));
    return Acad::eOk;
}

Acad::ErrorStatus AcDbDatabase::getAcDbObjectId(AcDbObjectId& id, bool /*createIfNotFound*/,
                                                const AcDbHandle& handle) {
    HOST_CALL("AcDbDatabase::getAcDbObjectId");
    if (handle.isNull()) return Acad::eNullHandle;
    const auto number = m_impl->findHandle(handle);
    if (!number || !m_impl->isObject(*number)) return Acad::eUnknownHandle;
    id = m_impl->idOf(number);
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
