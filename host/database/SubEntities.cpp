#include "host/database/SubEntities.h"

#include <cstdint>
#include <optional>

#include "host/database/DatabaseImp.h"
#include "host/database/Fault.h"
#include "host/database/Ledger.h"
#include "host/database/ObjectImp.h"

namespace host::database {
namespace {

// Ids are numbers in a row, so that a walk keeps only its limits.
class SubEntityIterator final : public AcDbObjectIterator {
  public:
    SubEntityIterator(AcDbObjectId owner, Structure::Range range)
        : owner_(owner), begin_(range.begin), end_(range.end) {
        Ledger::instance().opened("iterator", key(), [](std::uint64_t) {
            return std::string("of sub-entities, not deleted");
        });
        start(true, true);
    }
    ~SubEntityIterator() override { Ledger::instance().closed("iterator", key()); }

    void start(bool atBeginning, bool skipDeleted) override {
        at_ = atBeginning ? begin_ : end_ - 1;
        if (skipDeleted) skipErased(atBeginning ? 1 : -1);
    }
    bool done() const override { return at_ < begin_ || at_ >= end_; }
    AcDbObjectId objectId() const override {
        const AcDbImpDatabase* database = AcDbImpDatabase::of(owner_);
        if (done() || database == nullptr) return {};
        return database->idOf(static_cast<ObjectNumber>(at_));
    }
    void step(bool backwards, bool skipDeleted) override {
        if (done()) return;
        at_ += backwards ? -1 : 1;
        if (skipDeleted) skipErased(backwards ? -1 : 1);
    }

  private:
    std::uint64_t key() const { return reinterpret_cast<std::uintptr_t>(this); }

    void skipErased(int direction) {
        while (!done() && objectId().isErased()) at_ += direction;
    }

    AcDbObjectId owner_;
    std::int64_t begin_;
    std::int64_t end_;
    std::int64_t at_ = 0;
};

}  // namespace

AcDbObjectIterator* newSubEntityIterator(const AcDbEntity& owner, const char* function) {
    HOST_CALL(function);
    const AcDbImpDatabase* database = owner.impl()->database();
    if (!owner.impl()->mayRead() || database == nullptr) return nullptr;
    const auto record = database->recordOf(AcDbImpDatabase::numberOf(owner.objectId()));
    if (!record) return nullptr;
    return new SubEntityIterator(owner.objectId(), database->structure().subEntities(*record));
}

}  // namespace host::database
