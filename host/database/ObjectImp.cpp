#include "host/database/ObjectImp.h"

#include "host/database/DatabaseImp.h"
#include "host/database/Ledger.h"
#include "host/database/Names.h"
#include "host/database/ObjectFields.h"

using host::database::EntityFields;
using host::database::Fields;
using host::database::LayerFields;
using host::database::Ledger;
using host::database::Table;

namespace {

constexpr std::uint8_t kMostReaders = 255;
constexpr const char* kLedgerKind = "object";

// "AcDbText 2F open for read".
std::string describeOpen(std::uint64_t key) {
    const AcDbObjectId id(static_cast<Adesk::IntDbId>(key));
    AcDbImpDatabase* database = AcDbImpDatabase::of(id);
    const AcDbObject* object =
        database == nullptr ? nullptr : database->madeObject(AcDbImpDatabase::numberOf(id));
    if (object == nullptr) return "object that is gone";
    std::wstring text = object->isA()->name();
    const std::wstring handle = host::database::handleText(id.handle());
    if (!handle.empty()) text += L" " + handle;
    return host::database::toUtf8(text) + " open for " + object->impl()->modeText();
}

}  // namespace

void AcDbImpObject::putInto(AcDbImpDatabase& database, AcDbObjectId id) {
    database_ = &database;
    id_ = id;
}

void AcDbImpObject::setFields(std::unique_ptr<Fields> fields) {
    fields_ = std::move(fields);
    curve_.reset();
    curveStamp_ = 0;
}

std::unique_ptr<Fields> AcDbImpObject::exchangeFields(std::unique_ptr<Fields> fields) {
    std::unique_ptr<Fields> old = std::move(fields_);
    setFields(std::move(fields));
    return old;
}

const char* AcDbImpObject::modeText() const {
    return notifying_ ? "notify" : writing_ ? "write" : "read";
}

Acad::ErrorStatus AcDbImpObject::refusedByLayer() const {
    if (!self_.isKindOf(AcDbEntity::desc())) return Acad::eOk;
    const auto& layer = static_cast<const EntityFields&>(*fields_).layer;
    const auto number = database_->find(Table::layer, layer);
    if (!number) return Acad::eOk;
    LayerFields read;
    const auto& fields = static_cast<const LayerFields&>(database_->fieldsAt(*number, read));
    return (fields.flags & LayerFields::kLocked) != 0 ? Acad::eOnLockedLayer : Acad::eOk;
}

Acad::ErrorStatus AcDbImpObject::open(AcDb::OpenMode mode) {
    if (notifying_) return Acad::eWasOpenForNotify;
    if (mode == AcDb::kForNotify) {
        notifying_ = true;
    } else {
        if (writing_) return Acad::eWasOpenForWrite;
        if (mode == AcDb::kForWrite) {
            if (readers_ > 0) return Acad::eWasOpenForRead;
            const Acad::ErrorStatus refused = refusedByLayer();
            if (refused != Acad::eOk) return refused;
            writing_ = true;
        } else if (mode == AcDb::kForRead) {
            if (readers_ == kMostReaders) return Acad::eAtMaxReaders;
            ++readers_;
        } else {
            return Acad::eInvalidInput;
        }
    }
    Ledger::instance().opened(kLedgerKind, static_cast<std::uint64_t>(id_.asOldId()),
                              &describeOpen);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbImpObject::close() {
    if (database_ == nullptr) return Acad::eNotInDatabase;
    if (!isOpen()) return Acad::eNotOpenForRead;
    // An opening for notify lies over the others and goes first.
    if (notifying_) {
        notifying_ = false;
    } else if (writing_) {
        writing_ = false;
    } else {
        --readers_;
    }
    Ledger::instance().closed(kLedgerKind, static_cast<std::uint64_t>(id_.asOldId()));
    if (!isOpen()) database_->mayBeForgotten(self_);
    return Acad::eOk;
}

void AcDbImpObject::closeAll() {
    while (close() == Acad::eOk) {
    }
}

Acad::ErrorStatus AcDbImpObject::upgrade() {
    if (database_ == nullptr) return Acad::eNotInDatabase;
    if (notifying_) return Acad::eWasOpenForNotify;
    if (writing_) return Acad::eWasOpenForWrite;
    if (readers_ == 0) return Acad::eNotOpenForRead;
    if (readers_ > 1) return Acad::eHadMultipleReaders;
    const Acad::ErrorStatus refused = refusedByLayer();
    if (refused != Acad::eOk) return refused;
    readers_ = 0;
    writing_ = true;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbImpObject::downgrade() {
    if (database_ == nullptr) return Acad::eNotInDatabase;
    if (notifying_) return Acad::eWasOpenForNotify;
    if (!writing_) return Acad::eWasNotOpenForWrite;
    writing_ = false;
    readers_ = 1;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbImpObject::beginChange() {
    if (!mayWrite()) return Acad::eNotOpenForWrite;
    curveStamp_ = 0;
    if (database_ == nullptr) return Acad::eOk;
    database_->undoLog().aboutToChange(self_);
    database_->noteChange(self_);
    return Acad::eOk;
}

bool AcDbImpObject::isFromDrawing() const {
    return database_ != nullptr && database_->recordOf(AcDbImpDatabase::numberOf(id_)).has_value();
}

void AcDbImpObject::enter(AcDbImpDatabase& database, AcDbObjectId id) {
    putInto(database, id);
    writing_ = true;
    Ledger::instance().opened(kLedgerKind, static_cast<std::uint64_t>(id_.asOldId()),
                              &describeOpen);
    // Undoing brings back what was before: nothing to be seen.
    erased_ = true;
    beginChange();
    erased_ = false;
}

Acad::ErrorStatus AcDbImpObject::erase(bool erasing) {
    if (database_ == nullptr) return Acad::eNotInDatabase;
    if (!writing_) return Acad::eNotOpenForWrite;
    if (erasing == erased_) return erasing ? Acad::eWasErased : Acad::eWasNotErased;
    if (!database_->mayErase(self_)) return Acad::eCannotBeErasedByCaller;
    beginChange();
    erased_ = erasing;
    return Acad::eOk;
}

const host::database::Curve* AcDbImpObject::curve() const {
    const std::uint64_t stamp = database_ == nullptr ? 0 : database_->changeCount();
    if (curveStamp_ == 0 || curveStamp_ != stamp) {
        curve_ = fields_->makeCurve(*this);
        curveStamp_ = stamp;
    }
    return curve_.get();
}
