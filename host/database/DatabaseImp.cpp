#include "host/database/DatabaseImp.h"

#include <dbapserv.h>
#include <dbmline.h>
#include <dbsymtb.h>

#include <algorithm>

#include "host/database/Fault.h"
#include "host/database/HostClasses.h"
#include "host/database/Ledger.h"
#include "host/database/ObjectFields.h"
#include "host/database/ObjectImp.h"

using host::database::classOfImplied;
using host::database::classOfRecord;
using host::database::Fields;
using host::database::ObjectClass;
using host::database::ObjectNumber;
using host::database::Structure;
using host::database::SymbolFields;

namespace {

// An id is the database's serial number above this many bits of the object's number plus 1.
constexpr int kNumberBits = 33;

// Closed, unchanged objects beyond so many are forgotten, the longest closed first.
constexpr std::size_t kMostClosed = 65536;

std::unordered_map<std::uint32_t, AcDbImpDatabase*>& living() {
    static auto* const databases = new std::unordered_map<std::uint32_t, AcDbImpDatabase*>;
    return *databases;
}

std::uint32_t nextSerial() {
    static std::uint32_t last = 0;
    return ++last;
}

std::uint32_t serialOf(AcDbObjectId id) {
    return static_cast<std::uint32_t>(static_cast<std::uint64_t>(id.asOldId()) >> kNumberBits);
}

}  // namespace

AcDbImpDatabase::AcDbImpDatabase(AcDbDatabase& self,
                                 std::shared_ptr<const host::dxf::Document> document)
    : self_(self),
      document_(std::move(document)),
      serial_(nextSerial()),
      structure_(*document_),
      undo_(*this) {
    living().emplace(serial_, this);
}

AcDbImpDatabase::~AcDbImpDatabase() {
    // What is left open stays in the ledger, by a text that holds without the object.
    for (const AcDbObject* object : openObjects()) {
        host::database::Ledger::instance().keepText(
            "object", static_cast<std::uint64_t>(object->objectId().asOldId()));
    }
    living().erase(serial_);
}

std::unique_ptr<AcDbDatabase> AcDbImpDatabase::make(
    std::shared_ptr<const host::dxf::Document> document) {
    auto database = std::make_unique<AcDbDatabase>(false, true);
    delete database->m_impl;
    database->m_impl = new AcDbImpDatabase(*database, std::move(document));
    return database;
}

AcDbImpDatabase* AcDbImpDatabase::of(AcDbObjectId id) {
    const auto found = living().find(serialOf(id));
    return found == living().end() ? nullptr : found->second;
}

AcDbObjectId AcDbImpDatabase::idOf(Number number) const {
    return AcDbObjectId(static_cast<Adesk::IntDbId>(
        (static_cast<std::uint64_t>(serial_) << kNumberBits) | (std::uint64_t{number} + 1)));
}

AcDbImpDatabase::Number AcDbImpDatabase::numberOf(AcDbObjectId id) {
    return static_cast<Number>((static_cast<std::uint64_t>(id.asOldId()) - 1));
}

std::optional<host::dxf::RecordIndex> AcDbImpDatabase::recordOf(Number number) const {
    return number < document_->size() ? std::optional(number) : std::nullopt;
}

AcRxClass* AcDbImpDatabase::classOf(Number number) const {
    if (const AcDbObject* made = madeObject(number)) return made->isA();
    if (number < document_->size()) {
        return classOfRecord(*document_, structure_, number).descriptor;
    }
    const Structure::Implied* implied = structure_.implied(number);
    return implied == nullptr ? nullptr : classOfImplied(*implied).descriptor;
}

bool AcDbImpDatabase::isObject(Number number) const {
    return classOf(number) != nullptr;
}

AcDbObject* AcDbImpDatabase::madeObject(Number number) const {
    const auto found = objects_.find(number);
    return found == objects_.end() ? nullptr : found->second.get();
}

AcDbObject* AcDbImpDatabase::object(Number number) {
    AcDbObject* made = madeObject(number);
    return made != nullptr ? made : make(number);
}

AcDbObject* AcDbImpDatabase::make(Number number) {
    const host::fault::Quiet quiet;
    const auto record = recordOf(number);
    const Structure::Implied* implied = record ? nullptr : structure_.implied(number);
    if (!record && implied == nullptr) return nullptr;
    const ObjectClass aClass =
        record ? classOfRecord(*document_, structure_, *record) : classOfImplied(*implied);
    if (aClass.make == nullptr) return nullptr;
    std::unique_ptr<AcDbObject> made = aClass.make(aClass.descriptor);
    if (made == nullptr) return nullptr;
    AcDbImpObject& imp = *made->impl();
    imp.putInto(*this, idOf(number));
    fillFields(number, imp.fields());
    AcDbObject* result = made.get();
    objects_.emplace(number, std::move(made));
    mayBeForgotten(*result);
    return result;
}

// Reads the record of an object into its fields. A block's lie in its BLOCK, its record has the
// name.
void AcDbImpDatabase::fillFields(Number number, Fields& fields) const {
    const auto record = recordOf(number);
    const Structure::Block* block = structure_.block(number);
    if (block != nullptr) {
        if (block->begin) host::database::readFields(*document_, *block->begin, fields);
        static_cast<SymbolFields&>(fields).name = block->name;
    } else if (record) {
        host::database::readFields(*document_, *record, fields);
    } else if (const Structure::Implied* implied = structure_.implied(number);
               implied != nullptr && !implied->isTable) {
        static_cast<SymbolFields&>(fields).name = implied->name;
    }
}

const Fields& AcDbImpDatabase::fieldsAt(Number number, Fields& fields) const {
    if (const AcDbObject* made = madeObject(number)) return made->impl()->fields();
    fillFields(number, fields);
    return fields;
}

bool AcDbImpDatabase::isErased(Number number) const {
    const AcDbObject* made = madeObject(number);
    return made != nullptr && made->impl()->isErased();
}

Acad::ErrorStatus AcDbImpDatabase::open(AcDbObject*& object, Number number, AcDb::OpenMode mode,
                                        bool erasedToo) {
    object = nullptr;
    AcDbObject* found = this->object(number);
    if (found == nullptr) return isObject(number) ? Acad::eOutOfMemory : Acad::eInvalidObjectId;
    AcDbImpObject& imp = *found->impl();
    const bool refused = (imp.isErased() && !erasedToo) ||
                         (imp.fields().unreadable && found->isKindOf(AcDbEntity::desc()));
    const Acad::ErrorStatus status = !refused         ? imp.open(mode)
                                     : imp.isErased() ? Acad::eWasErased
                                                      : Acad::eInvalidInput;
    if (status == Acad::eOk) object = found;
    return status;
}

void AcDbImpDatabase::mayBeForgotten(AcDbObject& object) {
    AcDbImpObject& imp = *object.impl();
    if (imp.isTouched() || imp.isQueued()) return;
    imp.setQueued(true);
    closed_.push_back(numberOf(imp.id()));
    if (closed_.size() > kMostClosed) forgetOldest();
}

void AcDbImpDatabase::forgetOldest() {
    const Number number = closed_.front();
    closed_.pop_front();
    AcDbObject* oldest = madeObject(number);
    if (oldest == nullptr) return;
    oldest->impl()->setQueued(false);
    if (!oldest->impl()->isOpen() && !oldest->impl()->isTouched()) objects_.erase(number);
}

std::vector<AcDbObject*> AcDbImpDatabase::openObjects() const {
    std::vector<AcDbObject*> result;
    for (const auto& [number, object] : objects_) {
        if (object->impl()->isOpen()) result.push_back(object.get());
    }
    std::sort(result.begin(), result.end(), [](const AcDbObject* a, const AcDbObject* b) {
        return a->objectId() < b->objectId();
    });
    return result;
}

void AcDbImpDatabase::noteChange(AcDbObject& object) {
    ++changes_;
    object.impl()->setTouched();
    touched_.insert(numberOf(object.objectId()));
}

std::optional<AcDbImpDatabase::Number> AcDbImpDatabase::ownerOf(Number number) const {
    if (isNew(number)) return added_[number - kFirstNew].owner;
    const auto record = recordOf(number);
    if (!record) {
        const Structure::Implied* implied = structure_.implied(number);
        if (implied == nullptr || implied->isTable) return std::nullopt;
        return structure_.tableObject(implied->table);
    }
    if (structure_.block(number) != nullptr) return structure_.tableObject(Table::block);
    const std::string_view type = document_->type(*record);
    if (Structure::isSubEntity(type)) return structure_.ownerOfSubEntity(*record);
    switch (document_->section(*record)) {
        case host::dxf::Section::blocks:
        case host::dxf::Section::entities:
            return blockOf(number);
        case host::dxf::Section::tables:
            return tableOf(*record);
        default:
            return ownerByHandle(*record);
    }
}

// The TABLE that a symbol table record stands in.
std::optional<AcDbImpDatabase::Number> AcDbImpDatabase::tableOf(
    host::dxf::RecordIndex record) const {
    if (document_->type(record) == "TABLE") return std::nullopt;
    for (host::dxf::RecordIndex at = record; at-- > 0;) {
        const std::string_view type = document_->type(at);
        if (type == "TABLE") return at;
        if (type == "SECTION" || type == "ENDTAB") return std::nullopt;
    }
    return std::nullopt;
}

std::optional<AcDbImpDatabase::Number> AcDbImpDatabase::ownerByHandle(
    host::dxf::RecordIndex record) const {
    const auto owner = document_->groups(record).find(330);
    const auto handle = owner ? owner->handle() : std::nullopt;
    return handle ? document_->find(*handle) : std::nullopt;
}

std::optional<AcDbImpDatabase::Number> AcDbImpDatabase::blockOf(Number entity) const {
    if (isNew(entity)) {
        const Number owner = added_[entity - kFirstNew].owner;
        return structure_.block(owner) != nullptr ? std::optional(owner) : blockOf(owner);
    }
    const auto record = recordOf(entity);
    if (!record) return std::nullopt;
    if (document_->section(*record) == host::dxf::Section::blocks) {
        return structure_.enclosingBlock(*record);
    }
    if (document_->section(*record) != host::dxf::Section::entities) return std::nullopt;
    const auto owner = structure_.ownerOfSubEntity(*record);
    const auto group = document_->groups(owner.value_or(*record)).find(67);
    return group && group->integer() == 1 ? structure_.paperSpace() : structure_.modelSpace();
}

bool AcDbImpDatabase::mayErase(const AcDbObject& object) const {
    const Number number = numberOf(object.objectId());
    if (object.isKindOf(AcDbSymbolTable::desc())) return false;
    if (number == structure_.modelSpace() || number == structure_.paperSpace()) return false;
    if (number == structure_.tableObject(Table::mlineStyle)) return false;
    // Symbols are named by others, and records that the drawing lacks can't be taken out of it.
    return !object.isKindOf(AcDbSymbolTableRecord::desc()) &&
           !object.isKindOf(AcDbMlineStyle::desc());
}
