#include "host/database/SubEntities.h"

#include <cstdint>

#include "host/database/DatabaseImp.h"
#include "host/database/Fault.h"
#include "host/database/Ledger.h"
#include "host/database/ObjectFields.h"
#include "host/database/ObjectImp.h"

namespace host::database {
namespace {

class SubEntityIterator final : public AcDbObjectIterator {
  public:
    explicit SubEntityIterator(AcDbObjectId owner) : owner_(owner) {
        Ledger::instance().opened("iterator", key(), [](std::uint64_t) {
            return std::string("of sub-entities, not deleted");
        });
        start(true, true);
    }
    ~SubEntityIterator() override { Ledger::instance().closed("iterator", key()); }

    void start(bool atBeginning, bool skipDeleted) override {
        at_ = atBeginning ? 0 : members().size() - 1;
        if (skipDeleted) skipErased(!atBeginning);
    }
    // Before the first one the position wraps to the largest number, which is done too.
    bool done() const override { return at_ >= members().size(); }
    AcDbObjectId objectId() const override {
        const Members all = members();
        return at_ < all.size() ? AcDbImpDatabase::of(owner_)->idOf(all[at_]) : AcDbObjectId();
    }
    void step(bool backwards, bool skipDeleted) override {
        if (done()) return;
        move(backwards);
        if (skipDeleted) skipErased(backwards);
    }

  private:
    std::uint64_t key() const { return reinterpret_cast<std::uintptr_t>(this); }

    // None when the database is gone.
    Members members() const {
        const AcDbImpDatabase* database = AcDbImpDatabase::of(owner_);
        if (database == nullptr) return {};
        return database->subEntitiesOf(AcDbImpDatabase::numberOf(owner_));
    }
    void move(bool backwards) { at_ += backwards ? static_cast<std::size_t>(-1) : 1; }
    void skipErased(bool backwards) {
        while (!done() && objectId().isErased()) move(backwards);
    }

    AcDbObjectId owner_;
    std::size_t at_ = 0;
};

}  // namespace

AcDbObjectIterator* newSubEntityIterator(const AcDbEntity& owner, const char* function) {
    HOST_CALL(function);
    const AcDbImpDatabase* database = owner.impl()->database();
    if (!owner.impl()->mayRead() || database == nullptr) return nullptr;
    return new SubEntityIterator(owner.objectId());
}

Acad::ErrorStatus appendSubEntity(AcDbEntity& owner, AcDbObjectId& id, AcDbEntity* part) {
    if (part == nullptr) return Acad::eNullObjectPointer;
    if (!owner.impl()->mayWrite()) return Acad::eNotOpenForWrite;
    if (part->impl()->database() != nullptr) return Acad::eAlreadyInDb;
    const auto& from = fieldsOf<EntityFields>(owner);
    auto& to = fieldsOf<EntityFields>(*part);
    to.layer = from.layer;
    to.linetype = from.linetype;
    to.color = from.color;
    to.paperSpace = from.paperSpace;
    to.layerChosen = true;
    AcDbImpDatabase* database = owner.impl()->database();
    if (database == nullptr) {
        owner.impl()->takePart(*part);
        return Acad::eOk;
    }
    return database->adopt(*part, AcDbImpDatabase::numberOf(owner.objectId()), id);
}

}  // namespace host::database
