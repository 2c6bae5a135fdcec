#include "host/database/Structure.h"

#include <algorithm>
#include <array>
#include <unordered_set>
#include <utility>

#include "host/database/Dictionaries.h"
#include "host/database/Names.h"

namespace host::database {
namespace {

constexpr std::array<std::string_view, kTables> kRecordTypes{"BLOCK_RECORD", "LAYER", "LTYPE",
                                                             "STYLE"};

constexpr std::wstring_view kModelSpace = L"*Model_Space";
constexpr std::wstring_view kPaperSpace = L"*Paper_Space";

std::size_t indexOf(Table table) {
    return static_cast<std::size_t>(table);
}

// R12 writes "$" where later releases have "*".
std::wstring spaceName(std::wstring name) {
    for (const std::wstring_view space : {kModelSpace, kPaperSpace}) {
        if (name.size() == space.size() && name.front() == L'$' &&
            sameName(std::wstring_view(name).substr(1), space.substr(1))) {
            return std::wstring(space);
        }
    }
    return name;
}

std::wstring nameOf(const dxf::Document& document, dxf::RecordIndex record) {
    const auto group = document.groups(record).find(2);
    return group ? document.decode(group->bytes()) : std::wstring();
}

bool isFrame(std::string_view type) {
    return type == "SECTION" || type == "ENDSEC";
}

// Whether an entity of the ENTITIES section stands on paper (67 = 1).
bool isOnPaper(const dxf::Document& document, dxf::RecordIndex record) {
    if (!document.binary() && document.raw(record).find("67") == std::string_view::npos) {
        return false;
    }
    const auto group = document.groups(record).find(67);
    return group && group->integer() == 1;
}

}  // namespace

class Structure::Builder {
  public:
    explicit Builder(const dxf::Document& document) : document_(document) {}

    std::unique_ptr<Tables> build() {
        for (dxf::RecordIndex record = 0; record < document_.size(); ++record) {
            const dxf::Section section = document_.section(record);
            if (section == dxf::Section::tables) takeTableRecord(record);
            if (section == dxf::Section::blocks) takeBlockRecord(record);
        }
        endBlock(document_.size());
        takeMlineStyles();
        addImplied();
        indexBlocks();
        return std::move(result_);
    }

  private:
    TableIndex& table(Table which) { return result_->tables[indexOf(which)]; }

    void takeTableRecord(dxf::RecordIndex record) {
        const std::string_view type = document_.type(record);
        if (type == "TABLE") {
            takeTable(record);
            return;
        }
        const auto found = std::find(kRecordTypes.begin(), kRecordTypes.end(), type);
        if (found == kRecordTypes.end()) return;
        const auto which = static_cast<Table>(found - kRecordTypes.begin());
        const std::wstring name = spaceName(nameOf(document_, record));
        list(which, record, name);
        if (which == Table::block) addBlock(record, name);
    }

    void takeTable(dxf::RecordIndex record) {
        const auto name = document_.groups(record).find(2);
        if (!name) return;
        const auto found =
            std::find(kRecordTypes.begin(), kRecordTypes.end(), dxf::trimmed(name->bytes()));
        if (found == kRecordTypes.end()) return;
        TableIndex& index = table(static_cast<Table>(found - kRecordTypes.begin()));
        if (!index.object) index.object = record;
    }

    void list(Table which, ObjectNumber object, const std::wstring& name) {
        table(which).records.push_back(object);
        table(which).byName.emplace(folded(name), object);
    }

    void takeBlockRecord(dxf::RecordIndex record) {
        const std::string_view type = document_.type(record);
        if (type == "BLOCK") {
            endBlock(record);
            openBlock_ = blockFor(record);
            result_->blocks[*openBlock_].begin = record;
        } else if (type == "ENDBLK" || isFrame(type)) {
            endBlock(record);
        }
    }

    // The block of a BLOCK record: that of its BLOCK_RECORD, or one of its own.
    std::size_t blockFor(dxf::RecordIndex record) {
        const std::wstring name = spaceName(nameOf(document_, record));
        const auto known = table(Table::block).byName.find(folded(name));
        if (known != table(Table::block).byName.end()) {
            const std::size_t index = result_->byObject.at(known->second);
            if (!result_->blocks[index].begin) return index;
        }
        list(Table::block, record, name);
        return addBlock(record, name);
    }

    std::size_t addBlock(ObjectNumber object, const std::wstring& name) {
        result_->blocks.push_back({object, name, std::nullopt, 0});
        result_->byObject.emplace(object, result_->blocks.size() - 1);
        return result_->blocks.size() - 1;
    }

    void endBlock(dxf::RecordIndex record) {
        if (!openBlock_) return;
        result_->blocks[*openBlock_].end = record;
        openBlock_.reset();
    }

    void takeMlineStyles() {
        const auto dictionary = mlineStyleDictionary(document_);
        if (!dictionary) return;
        table(Table::mlineStyle).object = *dictionary;
        for (const DictionaryEntry& entry : dictionaryEntries(document_, *dictionary)) {
            const auto style = document_.find(entry.handle);
            if (style && document_.type(*style) == "MLINESTYLE") {
                list(Table::mlineStyle, *style, entry.name);
            }
        }
    }

    ObjectNumber imply(Table which, bool isTable, std::wstring_view name) {
        result_->implied.push_back({which, isTable, std::wstring(name)});
        return document_.size() + static_cast<ObjectNumber>(result_->implied.size()) - 1;
    }

    void addImplied() {
        for (int i = 0; i < kTables; ++i) {
            const auto which = static_cast<Table>(i);
            if (!table(which).object) table(which).object = imply(which, true, kRecordNames[i]);
        }
        implyRecord(Table::block, kPaperSpace);
        implyRecord(Table::block, kModelSpace);
        implyRecord(Table::layer, L"0");
        implyRecord(Table::linetype, L"CONTINUOUS");
        implyRecord(Table::textStyle, L"STANDARD");
        auto& styles = table(Table::mlineStyle).object;
        if (!styles) styles = imply(Table::mlineStyle, true, kMlineStyles);
        implyRecord(Table::mlineStyle, kStandardMline);
    }

    // Puts the record at the head of its table unless the drawing has it.
    void implyRecord(Table which, std::wstring_view name) {
        TableIndex& index = table(which);
        if (index.byName.count(folded(name)) != 0) return;
        const ObjectNumber object = imply(which, false, name);
        index.records.insert(index.records.begin(), object);
        index.byName.emplace(folded(name), object);
        if (which != Table::block) return;
        result_->blocks.insert(result_->blocks.begin(),
                               Block{object, std::wstring(name), std::nullopt, 0});
    }

    void indexBlocks() {
        result_->byObject.clear();
        for (std::size_t i = 0; i < result_->blocks.size(); ++i) {
            const Block& block = result_->blocks[i];
            result_->byObject.emplace(block.object, i);
            if (block.begin) result_->byBegin.emplace_back(*block.begin, i);
        }
        std::sort(result_->byBegin.begin(), result_->byBegin.end());
    }

    static constexpr std::array<std::wstring_view, kTables> kRecordNames{L"BLOCK_RECORD", L"LAYER",
                                                                         L"LTYPE", L"STYLE"};

    const dxf::Document& document_;
    std::unique_ptr<Tables> result_ = std::make_unique<Tables>();
    std::optional<std::size_t> openBlock_;
};

Structure::Tables& Structure::tables() const {
    if (tables_ == nullptr) tables_ = Builder(document_).build();
    return *tables_;
}

const Structure::Implied* Structure::implied(ObjectNumber number) const {
    if (number < document_.size()) return nullptr;
    const std::size_t index = number - document_.size();
    return index < tables().implied.size() ? &tables().implied[index] : nullptr;
}

ObjectNumber Structure::tableObject(Table table) const {
    return *tables().tables[indexOf(table)].object;
}

const std::vector<ObjectNumber>& Structure::tableRecords(Table table) const {
    if (table == Table::layer) addUsedLayers();
    return tables().tables[indexOf(table)].records;
}

std::optional<ObjectNumber> Structure::findListed(Table table, std::wstring_view name) const {
    const auto& byName = tables().tables[indexOf(table)].byName;
    const auto found = byName.find(folded(spaceName(std::wstring(name))));
    return found == byName.end() ? std::nullopt : std::optional(found->second);
}

std::optional<ObjectNumber> Structure::find(Table table, std::wstring_view name) const {
    auto found = findListed(table, name);
    if (found || table != Table::layer) return found;
    addUsedLayers();
    return findListed(table, name);
}

// Drawings without tables, and careless ones with, put entities on layers that they don't list.
void Structure::addUsedLayers() const {
    if (usedLayersAdded_) return;
    usedLayersAdded_ = true;
    TableIndex& layers = tables().tables[indexOf(Table::layer)];
    std::unordered_set<std::string_view> looked;
    for (dxf::RecordIndex record = 0; record < document_.size(); ++record) {
        const dxf::Section section = document_.section(record);
        if (section != dxf::Section::entities && section != dxf::Section::blocks) continue;
        const auto group = document_.groups(record).find(8);
        if (!group || group->bytes().empty() || !looked.insert(group->bytes()).second) continue;
        const std::wstring name = document_.decode(group->bytes());
        if (layers.byName.count(folded(name)) != 0) continue;
        tables().implied.push_back({Table::layer, false, name});
        const ObjectNumber object =
            document_.size() + static_cast<ObjectNumber>(tables().implied.size()) - 1;
        layers.records.push_back(object);
        layers.byName.emplace(folded(name), object);
    }
}

ObjectNumber Structure::modelSpace() const {
    return *findListed(Table::block, kModelSpace);
}

ObjectNumber Structure::paperSpace() const {
    return *findListed(Table::block, kPaperSpace);
}

const Structure::Block* Structure::block(ObjectNumber number) const {
    const auto found = tables().byObject.find(number);
    return found == tables().byObject.end() ? nullptr : &tables().blocks[found->second];
}

const std::vector<ObjectNumber>& Structure::entities(ObjectNumber number) const {
    static const std::vector<ObjectNumber> none;
    const auto known = entities_.find(number);
    if (known != entities_.end()) return known->second;
    const Block* found = block(number);
    if (found == nullptr) return none;
    return entities_.emplace(number, collectEntities(*found)).first->second;
}

std::vector<ObjectNumber> Structure::collectEntities(const Block& block) const {
    std::vector<ObjectNumber> result;
    const auto take = [&](dxf::RecordIndex record) {
        const std::string_view type = document_.type(record);
        if (!isSubEntity(type) && !isFrame(type)) result.push_back(record);
    };
    if (block.begin) {
        for (dxf::RecordIndex record = *block.begin + 1; record < block.end; ++record) take(record);
    }
    const bool paper = block.object == paperSpace();
    if (!paper && block.object != modelSpace()) return result;
    for (dxf::RecordIndex record = 0; record < document_.size(); ++record) {
        if (document_.section(record) != dxf::Section::entities) continue;
        if (isOnPaper(document_, record) == paper) take(record);
    }
    result.shrink_to_fit();
    return result;
}

std::optional<ObjectNumber> Structure::enclosingBlock(dxf::RecordIndex record) const {
    const auto& begins = tables().byBegin;
    auto above = std::upper_bound(begins.begin(), begins.end(), record,
                                  [](dxf::RecordIndex r, const auto& b) { return r < b.first; });
    if (above == begins.begin()) return std::nullopt;
    const Block& block = tables().blocks[std::prev(above)->second];
    return record <= block.end ? std::optional(block.object) : std::nullopt;
}

bool Structure::isSubEntity(std::string_view type) {
    return type == "VERTEX" || type == "ATTRIB" || type == "SEQEND";
}

Structure::Range Structure::subEntities(dxf::RecordIndex owner) const {
    const std::string_view type = document_.type(owner);
    const std::string_view member = type == "POLYLINE" ? "VERTEX"
                                    : type == "INSERT" ? "ATTRIB"
                                                       : "";
    Range range{owner + 1, owner + 1};
    while (range.end < document_.size() && document_.type(range.end) == member) ++range.end;
    return range;
}

std::optional<dxf::RecordIndex> Structure::ownerOfSubEntity(dxf::RecordIndex record) const {
    // Of many vertices in turn the owner is looked for once.
    const bool known = lastOwner_ && record >= lastRange_.begin && record < lastRange_.end;
    if (known) return lastOwner_;
    const std::string_view type = document_.type(record);
    dxf::RecordIndex owner = record;
    while (owner > 0 && isSubEntity(document_.type(owner))) --owner;
    const std::string_view ownerType = document_.type(owner);
    const bool fits = (ownerType == "POLYLINE" && type != "ATTRIB") ||
                      (ownerType == "INSERT" && type != "VERTEX");
    if (!fits) return std::nullopt;
    const Range range = subEntities(owner);
    const bool isEnd = type == "SEQEND" && record == range.end;
    if (!isEnd && (record < range.begin || record >= range.end)) return std::nullopt;
    lastOwner_ = owner;
    lastRange_ = range;
    return owner;
}

std::wstring Structure::declaredClass(std::string_view type) const {
    if (!declaredClasses_) {
        declaredClasses_.emplace();
        for (dxf::RecordIndex record = 0; record < document_.size(); ++record) {
            if (document_.section(record) != dxf::Section::classes) continue;
            const auto name = document_.groups(record).find(1);
            const auto aClass = document_.groups(record).find(2);
            if (!name || !aClass || document_.type(record) != "CLASS") continue;
            declaredClasses_->emplace(dxf::trimmed(name->bytes()),
                                      document_.decode(dxf::trimmed(aClass->bytes())));
        }
    }
    const auto found = declaredClasses_->find(type);
    return found == declaredClasses_->end() ? std::wstring() : found->second;
}

}  // namespace host::database
