// Objects that are put into a database beside those of the drawing.
#include <dbents.h>
#include <dbsymtb.h>

#include <algorithm>

#include "host/database/DatabaseImp.h"
#include "host/database/Fault.h"
#include "host/database/MlineElements.h"
#include "host/database/Names.h"
#include "host/database/NewRecords.h"
#include "host/database/ObjectFields.h"
#include "host/database/ObjectImp.h"
#include "host/database/RecordWriter.h"

using namespace host::database;

namespace {

// What the header says and the host changes.
class HeaderObject final : public AcDbObject {
  public:
    HeaderObject() { impl()->setFields(std::make_unique<HeaderFields>()); }
};

}  // namespace

const std::vector<ObjectNumber>& AcDbImpDatabase::addedTo(Number owner) const {
    static const std::vector<ObjectNumber> none;
    const auto found = addedTo_.find(owner);
    return found == addedTo_.end() ? none : found->second;
}

const Manner& AcDbImpDatabase::manner() const {
    if (!manner_) manner_ = mannerOf(*document_);
    return *manner_;
}

Members AcDbImpDatabase::entitiesOf(Number block) const {
    return {structure_.entities(block), addedTo(block)};
}

Members AcDbImpDatabase::subEntitiesOf(Number owner) const {
    const auto record = recordOf(owner);
    const Structure::Range none{0, 0};
    return {record ? structure_.subEntities(*record) : none, addedTo(owner)};
}

Members AcDbImpDatabase::records(Table table) const {
    return {structure_.tableRecords(table), addedTo(structure_.tableObject(table))};
}

std::optional<ObjectNumber> AcDbImpDatabase::find(Table table, std::wstring_view name) const {
    const auto added = addedSymbols_.find({structure_.tableObject(table), folded(name)});
    if (added != addedSymbols_.end() && !isErased(added->second)) return added->second;
    const auto found = structure_.find(table, name);
    if (found || added == addedSymbols_.end()) return found;
    return added->second;
}

std::wstring AcDbImpDatabase::symbolName(Number record) const {
    if (const AcDbObject* made = madeObject(record)) return fieldsOf<SymbolFields>(*made).name;
    OtherSymbolFields read;
    fillFields(record, read);
    return read.name;
}

std::uint64_t AcDbImpDatabase::handleOf(Number number) const {
    if (isNew(number)) return added_[number - kFirstNew].handle;
    const auto record = recordOf(number);
    return record ? document_->handle(*record).value_or(0) : 0;
}

std::optional<ObjectNumber> AcDbImpDatabase::findHandle(std::uint64_t handle) const {
    if (handle == 0) return std::nullopt;
    if (const auto record = document_->find(handle)) return record;
    const auto found = addedHandles_.find(handle);
    return found == addedHandles_.end() ? std::nullopt : std::optional(found->second);
}

// The largest handle, or the one below the seed, which is the next free one and often too low.
std::uint64_t AcDbImpDatabase::highestOfDrawing() const {
    if (highestHandle_) return *highestHandle_;
    std::uint64_t highest = 0;
    for (host::dxf::RecordIndex record = 0; record < document_->size(); ++record) {
        highest = std::max(highest, document_->handle(record).value_or(0));
    }
    const auto seed = document_->headerVariable("$HANDSEED").find(5);
    const std::uint64_t next = seed ? seed->handle().value_or(0) : 0;
    highestHandle_ = std::max(highest, next == 0 ? 0 : next - 1);
    return *highestHandle_;
}

std::uint64_t AcDbImpDatabase::nextHandle() const {
    if (!manner().handles) return 0;
    std::uint64_t handle = std::max(highestOfDrawing(), lastHandle_) + 1;
    // Behind the largest possible one free ones are looked for from the beginning.
    while (handle == 0 || document_->find(handle) || addedHandles_.count(handle) != 0) ++handle;
    return handle;
}

std::uint64_t AcDbImpDatabase::firstFreshHandle() const {
    std::uint64_t highest = highestOfDrawing();
    for (const auto& [handle, number] : addedHandles_) {
        if (!isErased(number)) highest = std::max(highest, handle);
    }
    return freeHandle(highest + 1);
}

std::uint64_t AcDbImpDatabase::freeHandle(std::uint64_t handle) const {
    const auto isTaken = [this](std::uint64_t wanted) {
        if (document_->find(wanted)) return true;
        const auto added = addedHandles_.find(wanted);
        return added != addedHandles_.end() && !isErased(added->second);
    };
    while (handle == 0 || isTaken(handle)) ++handle;
    return handle;
}

Acad::ErrorStatus AcDbImpDatabase::mayAdopt(const AcDbObject& object, Number owner) const {
    if (document_->size() >= kHeader || added_.size() >= kFirstNew - 1) return Acad::eOutOfMemory;
    const Structure::Block* block = structure_.block(owner);
    const bool isSpace = owner == structure_.modelSpace() || owner == structure_.paperSpace();
    if (block != nullptr && !block->begin && !isSpace) return Acad::eInvalidOwnerObject;
    const Fields& fields = object.impl()->fields();
    const Acad::ErrorStatus written = fields.mayBeWritten(manner());
    if (written != Acad::eOk) return written;
    if (!fields.isFinite()) return Acad::eInvalidInput;
    for (const auto& [table, name] : fields.namesUsed()) {
        const bool borrowed = table == Table::linetype &&
                              (sameName(*name, L"BYLAYER") || sameName(*name, L"BYBLOCK"));
        const auto named = borrowed ? std::nullopt : find(table, *name);
        if (!borrowed && (!named || isErased(*named))) return Acad::eWrongDatabase;
    }
    for (const auto& part : object.impl()->parts()) {
        if (!part->impl()->fields().isFinite()) return Acad::eInvalidInput;
    }
    return Acad::eOk;
}

// Gives a new entity what it takes from the drawing it comes into.
void AcDbImpDatabase::complete(AcDbObject& object, Number owner) const {
    if (!object.isKindOf(AcDbEntity::desc())) return;
    auto& fields = fieldsOf<EntityFields>(object);
    if (!fields.layerChosen) fields.layer = currentLayer();
    if (structure_.block(owner) != nullptr) {
        fields.paperSpace = owner == structure_.paperSpace() ? 1 : 0;
    }
    if (auto* mline = dynamic_cast<MlineFields*>(&fields)) takeElements(*mline, *this);
    if (auto* text = dynamic_cast<TextFields*>(&fields); text != nullptr && text->height == 0.0) {
        const auto size = document_->headerVariable("$TEXTSIZE").find(40);
        const double height = size ? size->real().value_or(0.0) : 0.0;
        constexpr double kUsualHeight = 2.5;
        text->height = height > 0.0 ? height : kUsualHeight;
    }
}

void AcDbImpDatabase::enter(std::unique_ptr<AcDbObject> object, Number owner) {
    // Symbols have handles from R13 on.
    const bool hasHandle = manner().markers || object->isKindOf(AcDbEntity::desc());
    const std::uint64_t handle = hasHandle ? nextHandle() : 0;
    const auto number = kFirstNew + static_cast<Number>(added_.size());
    added_.push_back({owner, handle});
    addedTo_[owner].push_back(number);
    if (handle != 0) {
        addedHandles_.emplace(handle, number);
        lastHandle_ = std::max(lastHandle_, handle);
    }
    AcDbObject& entered = *object;
    if (entered.isKindOf(AcDbSymbolTableRecord::desc())) {
        addedSymbols_[{owner, folded(fieldsOf<SymbolFields>(entered).name)}] = number;
    }
    objects_.emplace(number, std::move(object));
    entered.impl()->enter(*this, idOf(number));
}

Acad::ErrorStatus AcDbImpDatabase::adopt(AcDbObject& object, Number owner, AcDbObjectId& id) {
    const host::fault::Quiet quiet;
    complete(object, owner);
    const Acad::ErrorStatus status = mayAdopt(object, owner);
    if (status != Acad::eOk) return status;
    enter(std::unique_ptr<AcDbObject>(&object), owner);
    id = object.objectId();
    if (object.impl()->parts().empty()) return Acad::eOk;
    const auto& fields = fieldsOf<EntityFields>(object);  // only entities have parts
    for (auto& part : object.impl()->parts()) {
        auto& own = fieldsOf<EntityFields>(*part);
        own.layer = fields.layer;
        own.linetype = fields.linetype;
        own.color = fields.color;
        own.paperSpace = fields.paperSpace;
        AcDbObject& entered = *part;
        enter(std::move(part), numberOf(id));
        entered.impl()->close();
    }
    object.impl()->parts().clear();
    return Acad::eOk;
}

AcDbObject& AcDbImpDatabase::header() {
    if (AcDbObject* made = madeObject(kHeader)) return *made;
    const host::fault::Quiet quiet;
    auto made = std::make_unique<HeaderObject>();
    made->impl()->putInto(*this, idOf(kHeader));
    fieldsOf<HeaderFields>(*made).currentLayer = storedCurrentLayer();
    return *objects_.emplace(kHeader, std::move(made)).first->second;
}

std::wstring AcDbImpDatabase::storedCurrentLayer() const {
    const auto stored = document_->headerVariable("$CLAYER").find(8);
    return stored ? document_->decode(stored->bytes()) : L"0";
}

std::wstring AcDbImpDatabase::currentLayer() const {
    const AcDbObject* made = madeObject(kHeader);
    std::wstring name =
        made == nullptr ? storedCurrentLayer() : fieldsOf<HeaderFields>(*made).currentLayer;
    const auto found = find(Table::layer, name);
    return found && !isErased(*found) ? symbolName(*found) : L"0";
}

void AcDbImpDatabase::setCurrentLayer(std::wstring name) {
    AcDbObject& object = header();
    undo_.aboutToChange(object);
    noteChange(object);
    fieldsOf<HeaderFields>(object).currentLayer = std::move(name);
}
