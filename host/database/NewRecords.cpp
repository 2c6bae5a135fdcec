#include "host/database/NewRecords.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <memory>
#include <optional>
#include <utility>

#include "host/database/BodyData.h"
#include "host/database/Dictionaries.h"
#include "host/database/Names.h"
#include "host/database/ObjectFields.h"
#include "host/database/ObjectImp.h"
#include "host/database/RecordWriter.h"

namespace host::database {
namespace {

using dxf::GroupEdit;
using dxf::RecordIndex;
using dxf::Section;

constexpr std::array<const wchar_t*, kTables> kTableNames{L"BLOCK_RECORD", L"LAYER", L"LTYPE",
                                                          L"STYLE"};

class NewRecords {
  public:
    NewRecords(const AcDbImpDatabase& database, dxf::Changes& changes)
        : database_(database),
          document_(database.document()),
          structure_(database.structure()),
          manner_(database.manner()),
          changes_(changes) {}

    void add() {
        const bool told = std::any_of(
            database_.touched().begin(), database_.touched().end(),
            [this](ObjectNumber number) { return structure_.implied(number) != nullptr; });
        if (told || !database_.added().empty()) {
            if (manner_.handles) nextHandle_ = database_.firstFreshHandle();
            addSymbols();
            for (const auto& [owner, members] : database_.added()) {
                if (structure_.block(owner) != nullptr) addToBlock(owner, members);
            }
            addSpaces();
            addMlineStyle();
            addBodyData(document_, manner_, bodies_, changes_);
            for (const auto& [owner, members] : database_.added()) {
                if (owner < document_.size() && isSubEntityOwner(owner)) addParts(owner, members);
            }
        }
        updateHeader();
    }

  private:
    const Fields& fieldsOf(ObjectNumber number) const {
        return database_.madeObject(number)->impl()->fields();
    }

    bool isLive(ObjectNumber number) const { return !database_.isErased(number); }

    std::uint64_t freshHandle() {
        const std::uint64_t handle = database_.freeHandle(nextHandle_);
        highest_ = std::max(highest_, handle);
        nextHandle_ = handle + 1;
        return handle;
    }

    RecordWriter writer() {
        return RecordWriter(manner_, [this] { return freshHandle(); });
    }

    void put(RecordIndex before, std::vector<GroupEdit> groups) {
        auto& edits = changes_[before];
        edits.insert(edits.end(), std::make_move_iterator(groups.begin()),
                     std::make_move_iterator(groups.end()));
    }

    void identify(RecordWriter& out, ObjectNumber number, ObjectNumber owner) {
        const std::uint64_t handle = database_.handleOf(number);
        highest_ = std::max(highest_, handle);
        out.setIdentity(handle, database_.handleOf(owner));
    }

    // --- entities

    void writeEntity(RecordWriter& out, ObjectNumber number, ObjectNumber owner) {
        identify(out, number, owner);
        const Fields& fields = fieldsOf(number);
        const std::vector<ObjectNumber> parts = liveParts(number);
        if (const auto* reference = dynamic_cast<const InsertFields*>(&fields)) {
            reference->writeWith(out, !parts.empty());
        } else if (const auto* mline = dynamic_cast<const MlineFields*>(&fields)) {
            mline->writeWith(out, styleHandle(*mline));
        } else {
            fields.write(out);
        }
        const auto* polyline = dynamic_cast<const OldPolylineFields*>(&fields);
        if (polyline == nullptr && parts.empty()) return;
        for (const ObjectNumber part : parts) writePart(out, part, number, polyline);
        out.setIdentity(database_.handleOf(number), 0);
        out.beginPart("SEQEND", static_cast<const EntityFields&>(fields));
    }

    std::vector<ObjectNumber> liveParts(ObjectNumber owner) const {
        std::vector<ObjectNumber> parts;
        for (const ObjectNumber part : database_.subEntitiesOf(owner)) {
            if (isLive(part)) parts.push_back(part);
        }
        return parts;
    }

    // The vertices of a plane polyline lie at its elevation.
    void writePart(RecordWriter& out, ObjectNumber part, ObjectNumber owner,
                   const OldPolylineFields* polyline) {
        identify(out, part, owner);
        constexpr int kInSpace = OldPolylineFields::kSpace | OldPolylineFields::kPolyface |
                                 OldPolylineFields::kPolygonMesh;
        if (polyline == nullptr || (polyline->flags & kInSpace) != 0) {
            fieldsOf(part).write(out);
            return;
        }
        auto vertex = static_cast<const VertexFields&>(fieldsOf(part));
        vertex.position.z = polyline->origin.z;
        vertex.write(out);
    }

    void addToBlock(ObjectNumber block, const std::vector<ObjectNumber>& members) {
        RecordWriter out = writer();
        for (const ObjectNumber member : members) {
            if (isLive(member)) writeEntity(out, member, block);
        }
        std::vector<GroupEdit> groups = out.take();
        if (groups.empty()) return;
        for (BodyData& body : out.takeBodies()) bodies_.push_back(std::move(body));
        const bool isSpace = block == structure_.modelSpace() || block == structure_.paperSpace();
        if (isSpace) {
            spaces_.insert(spaces_.end(), std::make_move_iterator(groups.begin()),
                           std::make_move_iterator(groups.end()));
        } else {
            put(structure_.block(block)->end, std::move(groups));
        }
    }

    // Both spaces stand in the section of entities.
    void addSpaces() {
        if (spaces_.empty()) return;
        if (const auto end = endOfSection(Section::entities)) {
            put(*end, std::move(spaces_));
            return;
        }
        RecordWriter out = writer();
        beginSection(out, L"ENTITIES");
        std::vector<GroupEdit> groups = out.take();
        groups.insert(groups.end(), std::make_move_iterator(spaces_.begin()),
                      std::make_move_iterator(spaces_.end()));
        out.beginRecord("ENDSEC");
        for (GroupEdit& group : out.take()) groups.push_back(std::move(group));
        put(behindEntities(), std::move(groups));
    }

    bool isSubEntityOwner(ObjectNumber owner) const {
        const std::string_view type = document_.type(owner);
        return type == "POLYLINE" || type == "INSERT";
    }

    // Of a polyline or block reference that the drawing has.
    void addParts(ObjectNumber owner, const std::vector<ObjectNumber>& members) {
        if (!isLive(owner)) return;
        RecordWriter out = writer();
        const RecordIndex behind = structure_.subEntities(owner).end;
        EntityFields const* last = nullptr;
        for (const ObjectNumber member : members) {
            if (!isLive(member)) continue;
            writePart(out, member, owner, nullptr);
            last = &static_cast<const EntityFields&>(fieldsOf(member));
        }
        if (last == nullptr) return;
        if (behind >= document_.size() || document_.type(behind) != "SEQEND") {
            out.setIdentity(database_.handleOf(owner), 0);
            out.beginPart("SEQEND", *last);
        }
        put(behind, out.take());
        if (document_.type(owner) == "INSERT") announceAttributes(owner);
    }

    // Group 66 tells that attributes follow.
    void announceAttributes(RecordIndex insert) {
        const auto index = indexOf(insert, 66);
        const GroupEdit::Kind kind =
            index ? GroupEdit::Kind::replace : GroupEdit::Kind::insertAfter;
        const auto behind = indexOf(insert, 2);
        if (!index && !behind) return;
        const std::size_t at = index ? *index : *behind - 1;
        changes_[insert].push_back({kind, at, 66, std::int64_t{1}});
    }

    std::optional<std::size_t> indexOf(RecordIndex record, int code) const {
        std::size_t index = 0;
        for (const dxf::Group& group : document_.groups(record)) {
            if (group.code() == code) return index;
            ++index;
        }
        return std::nullopt;
    }

    // --- symbols

    void addSymbols() {
        RecordWriter tables = writer();
        for (const Table table : {Table::linetype, Table::layer, Table::textStyle}) {
            addSymbolsTo(table, tables);
        }
        std::vector<GroupEdit> made = tables.take();
        if (made.empty()) return;
        if (const auto end = endOfSection(Section::tables)) {
            put(*end, std::move(made));
            return;
        }
        RecordWriter out = writer();
        beginSection(out, L"TABLES");
        std::vector<GroupEdit> groups = out.take();
        for (GroupEdit& group : made) groups.push_back(std::move(group));
        out.beginRecord("ENDSEC");
        for (GroupEdit& group : out.take()) groups.push_back(std::move(group));
        put(behindTables(), std::move(groups));
    }

    void addSymbolsTo(Table table, RecordWriter& tables) {
        const ObjectNumber owner = structure_.tableObject(table);
        std::vector<ObjectNumber> live = changedImplied(table);
        const auto found = database_.added().find(owner);
        if (found != database_.added().end()) {
            std::copy_if(found->second.begin(), found->second.end(), std::back_inserter(live),
                         [this](ObjectNumber number) { return isLive(number); });
        }
        if (live.empty()) return;
        if (owner < document_.size()) {
            RecordWriter out = writer();
            for (const ObjectNumber symbol : live) writeSymbol(out, symbol, owner);
            put(endOfTable(owner), out.take());
            raiseCount(table, owner, live.size());
            return;
        }
        const std::uint64_t handle = manner_.markers ? freshHandle() : 0;
        tables.setIdentity(handle, 0);
        tables.beginTable(kTableNames[static_cast<std::size_t>(table)], live.size());
        for (const ObjectNumber symbol : live) {
            identifySymbol(tables, symbol, handle);
            fieldsOf(symbol).write(tables);
        }
        tables.beginRecord("ENDTAB");
    }

    // Symbols that the drawing doesn't list and that were changed: they have to be listed now.
    std::vector<ObjectNumber> changedImplied(Table table) const {
        std::vector<ObjectNumber> changed;
        for (const ObjectNumber number : database_.touched()) {
            const Structure::Implied* implied = structure_.implied(number);
            if (implied == nullptr || implied->isTable || implied->table != table) continue;
            if (groupsOf(fieldsOf(number)) != groupsOf(*asImplied(number))) {
                changed.push_back(number);
            }
        }
        return changed;
    }

    std::unique_ptr<Fields> asImplied(ObjectNumber number) const {
        std::unique_ptr<Fields> fields = fieldsOf(number).fresh();
        static_cast<SymbolFields&>(*fields).name = structure_.implied(number)->name;
        return fields;
    }

    std::vector<std::pair<int, GroupEdit::Value>> groupsOf(const Fields& fields) const {
        RecordWriter out(manner_, [] { return std::uint64_t{0}; });
        fields.write(out);
        std::vector<std::pair<int, GroupEdit::Value>> groups;
        for (GroupEdit& group : out.take()) groups.emplace_back(group.code, std::move(group.value));
        return groups;
    }

    void writeSymbol(RecordWriter& out, ObjectNumber symbol, ObjectNumber table) {
        identifySymbol(out, symbol, database_.handleOf(table));
        fieldsOf(symbol).write(out);
        if (table == structure_.tableObject(Table::layer)) copyStyles(out);
    }

    // What the drawing didn't list has no handle yet.
    void identifySymbol(RecordWriter& out, ObjectNumber symbol, std::uint64_t table) {
        std::uint64_t handle = database_.handleOf(symbol);
        if (handle == 0 && manner_.markers) handle = freshHandle();
        highest_ = std::max(highest_, handle);
        out.setIdentity(handle, table);
    }

    // The plot style and the material of layer "0", which new layers share.
    void copyStyles(RecordWriter& out) {
        const auto zero = structure_.findListed(Table::layer, L"0");
        if (!zero || *zero >= document_.size()) return;
        constexpr int kPlotStyle = 390;
        constexpr int kMaterial = 347;
        for (const int code : {kPlotStyle, kMaterial}) {
            const auto group = document_.groups(*zero).find(code);
            const auto handle = group ? group->handle() : std::nullopt;
            if (handle) out.handleGroup(code, *handle);
        }
    }

    RecordIndex endOfTable(RecordIndex table) const {
        RecordIndex end = table + 1;
        while (end < document_.size()) {
            const std::string_view type = document_.type(end);
            if (type == "ENDTAB" || type == "TABLE" || type == "ENDSEC" || type == "SECTION") break;
            ++end;
        }
        return end;
    }

    // The count is the largest number of records that the table may hold.
    void raiseCount(Table table, RecordIndex record, std::size_t added) {
        const auto index = indexOf(record, 70);
        if (!index) return;
        const auto stored = document_.groups(record).find(70)->integer();
        std::size_t count = added;
        for (const ObjectNumber listed : structure_.tableRecords(table)) {
            if (listed < document_.size()) ++count;
        }
        const auto wanted = static_cast<std::int64_t>(count);
        if (stored && *stored >= wanted) return;
        changes_[record].push_back({GroupEdit::Kind::replace, *index, 70, wanted});
    }

    // --- styles of multi-lines

    // What the drawing doesn't list gets a handle here.
    std::uint64_t styleHandle(const MlineFields& mline) {
        const auto style = structure_.find(Table::mlineStyle, mline.style);
        if (style && *style < document_.size()) return database_.handleOf(*style);
        if (newStyle_ == 0) newStyle_ = freshHandle();
        return newStyle_;
    }

    void addMlineStyle() {
        if (newStyle_ == 0) return;
        RecordWriter out = writer();
        const ObjectNumber styles = structure_.tableObject(Table::mlineStyle);
        std::uint64_t dictionary = database_.handleOf(styles);
        if (styles < document_.size()) {
            addEntry(styles, kStandardMline, newStyle_);
        } else {
            dictionary = freshHandle();
            const std::uint64_t root = enterIntoRoot(out, dictionary);
            writeDictionary(out, dictionary, root, kStandardMline, newStyle_);
        }
        out.setIdentity(newStyle_, dictionary);
        MlineStyleFields style;
        style.name = kStandardMline;
        style.write(out);
        addObjects(out.take());
    }

    // The handle of the drawing's first dictionary, which is made when there is none.
    std::uint64_t enterIntoRoot(RecordWriter& out, std::uint64_t styles) {
        if (const auto root = rootDictionary(document_)) {
            addEntry(*root, kMlineStyles, styles);
            return database_.handleOf(*root);
        }
        const std::uint64_t root = freshHandle();
        writeDictionary(out, root, 0, kMlineStyles, styles);
        return root;
    }

    static void writeDictionary(RecordWriter& out, std::uint64_t handle, std::uint64_t owner,
                                const wchar_t* name, std::uint64_t entry) {
        out.setIdentity(handle, owner);
        out.beginObject("DICTIONARY");
        out.marker(L"AcDbDictionary");
        if (out.manner().atLeast(dxf::Release::R2000)) out.integer(281, 1);
        out.text(3, name);
        out.handleGroup(350, entry);
    }

    // At the end of the dictionary's own groups.
    void addEntry(RecordIndex dictionary, const wchar_t* name, std::uint64_t entry) {
        constexpr int kExtendedData = 1000;
        std::size_t last = 0;
        std::size_t index = 0;
        for (const dxf::Group& group : document_.groups(dictionary)) {
            if (group.code() >= kExtendedData) break;
            last = index++;
        }
        auto& edits = changes_[dictionary];
        edits.push_back({GroupEdit::Kind::insertAfter, last, 3, std::wstring(name)});
        edits.push_back({GroupEdit::Kind::insertAfter, last, 350, handleText(entry)});
    }

    // The first dictionary has to be the first object.
    void addObjects(std::vector<GroupEdit> objects) {
        const auto section = firstSection({Section::objects});
        if (section && rootDictionary(document_)) {
            put(*endOfSection(Section::objects), std::move(objects));
            return;
        }
        if (section) {
            put(*section + 1, std::move(objects));
            return;
        }
        RecordWriter out = writer();
        beginSection(out, L"OBJECTS");
        put(behindEntities(), out.take());
        put(behindEntities(), std::move(objects));
        out.beginRecord("ENDSEC");
        put(behindEntities(), out.take());
    }

    // --- sections

    static void beginSection(RecordWriter& out, const wchar_t* name) {
        out.beginRecord("SECTION");
        out.text(2, name);
    }

    // The ENDSEC of the last such section, or what stands in its place.
    std::optional<RecordIndex> endOfSection(Section section) const {
        for (RecordIndex record = document_.size(); record-- > 0;) {
            if (document_.section(record) != section) continue;
            return document_.type(record) == "ENDSEC" ? record : record + 1;
        }
        return std::nullopt;
    }

    std::optional<RecordIndex> firstSection(std::initializer_list<Section> wanted) const {
        for (RecordIndex record = 0; record < document_.size(); ++record) {
            const Section section = document_.section(record);
            if (std::find(wanted.begin(), wanted.end(), section) != wanted.end()) return record;
        }
        return std::nullopt;
    }

    RecordIndex behindEntities() const {
        if (const auto next = firstSection({Section::objects, Section::thumbnail})) return *next;
        for (RecordIndex record = document_.size(); record-- > 0;) {
            if (document_.type(record) == "EOF") return record;
        }
        return document_.size();
    }

    RecordIndex behindTables() const {
        const auto next = firstSection({Section::blocks, Section::entities});
        return next ? *next : behindEntities();
    }

    // --- header

    struct Variable {
        RecordIndex record;
        std::size_t index;  // of its value
    };

    std::optional<Variable> variable(std::string_view name) const {
        for (RecordIndex record = 0; record < document_.size(); ++record) {
            if (document_.section(record) != Section::header) continue;
            std::size_t index = 0;
            bool found = false;
            for (const dxf::Group& group : document_.groups(record)) {
                if (found) return Variable{record, index};
                found = group.code() == 9 && dxf::trimmed(group.bytes()) == name;
                ++index;
            }
        }
        return std::nullopt;
    }

    void replaceVariable(std::string_view name, int code, GroupEdit::Value value) {
        const auto place = variable(name);
        if (!place || !document_.headerVariable(name).find(code)) return;
        changes_[place->record].push_back(
            {GroupEdit::Kind::replace, place->index, code, std::move(value)});
    }

    void updateHeader() {
        const auto seed = document_.headerVariable("$HANDSEED").find(5);
        const std::uint64_t stored = seed ? seed->handle().value_or(0) : 0;
        if (seed && highest_ != 0 && highest_ >= stored && highest_ + 1 != 0) {
            replaceVariable("$HANDSEED", 5, handleText(highest_ + 1));
        }
        const AcDbObject* header = database_.madeObject(AcDbImpDatabase::kHeader);
        if (header == nullptr) return;
        const std::wstring layer = database_.currentLayer();
        const auto current = document_.headerVariable("$CLAYER").find(8);
        if (current && document_.decode(current->bytes()) != layer) {
            replaceVariable("$CLAYER", 8, layer);
        }
    }

    const AcDbImpDatabase& database_;
    const dxf::Document& document_;
    const Structure& structure_;
    const Manner& manner_;
    dxf::Changes& changes_;
    std::vector<GroupEdit> spaces_;
    std::vector<BodyData> bodies_;
    std::uint64_t nextHandle_ = 0;
    std::uint64_t highest_ = 0;  // of the handles written
    std::uint64_t newStyle_ = 0;
};

}  // namespace

void addNewRecords(const AcDbImpDatabase& database, dxf::Changes& changes) {
    NewRecords(database, changes).add();
}

std::vector<GroupEdit> groupsOfNew(const AcDbImpDatabase& database, ObjectNumber number) {
    const AcDbObject* object = database.madeObject(number);
    if (object == nullptr) return {};
    RecordWriter out(database.manner(), [] { return std::uint64_t{0}; });
    const auto owner = database.ownerOf(number);
    out.setIdentity(database.handleOf(number), owner ? database.handleOf(*owner) : 0);
    object->impl()->fields().write(out);
    std::vector<GroupEdit> groups = out.take();
    const auto next = std::find_if(groups.begin() + (groups.empty() ? 0 : 1), groups.end(),
                                   [](const GroupEdit& group) { return group.code == 0; });
    groups.erase(next, groups.end());
    return groups;
}

}  // namespace host::database
