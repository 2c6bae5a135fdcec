#include "host/database/BodyData.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <limits>
#include <map>
#include <optional>
#include <set>
#include <string>

#include "host/database/Names.h"

namespace host::database {
namespace {

using dxf::GroupEdit;
using dxf::RecordIndex;

// Types of properties (group 280).
constexpr int kFlag = 1, kNumber = 7, kHandle = 10, kBytes = 15;

constexpr const wchar_t* kSchema = L"AcDb3DSolid_ASM_Data";

// A schema whose property describes properties of others, as their attribute.
struct Attribute {
    const wchar_t* schema;
    const wchar_t* property;
    int type;
    bool ofHandle;  // it describes the handle of the schema of bodies, and not the whole schema
};
constexpr Attribute kAttributes[] = {
    {L"AcDbDs::TreatedAsObjectDataSchema", L"AcDbDs::TreatedAsObjectData", kFlag, false},
    {L"AcDbDs::LegacySchema", L"AcDbDs::Legacy", kFlag, false},
    {L"AcDbDs::IndexedPropertySchema", L"AcDs:Indexable", kFlag, true},
    {L"AcDbDs::HandleAttributeSchema", L"AcDbDs::HandleAttribute", kNumber, true}};

// The section, from its SECTION to its ENDSEC or what stands in its place.
struct Range {
    RecordIndex begin, end;
};

bool isFrame(std::string_view type) {
    return type == "SECTION" || type == "ENDSEC" || type == "EOF";
}

std::optional<Range> findSection(const dxf::Document& document) {
    for (RecordIndex record = 0; record < document.size(); ++record) {
        if (document.section(record) != dxf::Section::other || document.type(record) != "SECTION")
            continue;
        const auto name = document.groups(record).find(2);
        if (!name || dxf::trimmed(name->bytes()) != "ACDSDATA") continue;
        RecordIndex end = record + 1;
        while (end < document.size() && !isFrame(document.type(end))) ++end;
        return Range{record, end};
    }
    return std::nullopt;
}

RecordIndex behindSections(const dxf::Document& document) {
    const RecordIndex size = document.size();
    return size > 0 && document.type(size - 1) == "EOF" ? size - 1 : size;
}

class BodySection {
  public:
    BodySection(const dxf::Document& document, const Manner& manner)
        : document_(document), section_(findSection(document)), manner_(manner) {
        if (section_) readSchemas();
    }

    void add(const std::vector<BodyData>& bodies, dxf::Changes& changes) {
        RecordWriter schemas = writer(), records = writer();
        addSchemas(schemas);
        for (const BodyData& body : bodies) addRecord(records, body);
        if (section_) {
            put(changes, behindSchemas_, schemas);
            put(changes, section_->end, records);
            return;
        }
        RecordWriter head = writer();
        head.beginRecord("SECTION");
        head.text(2, L"ACDSDATA");
        head.integer(70, 2);
        head.integer(71, 2);
        records.beginRecord("ENDSEC");
        for (RecordWriter* part : {&head, &schemas, &records})
            put(changes, behindSections(document_), *part);
    }

  private:
    using Limits = std::numeric_limits<std::int32_t>;

    RecordWriter writer() const {
        return RecordWriter(manner_, [] { return std::uint64_t{0}; });
    }

    static void put(dxf::Changes& changes, RecordIndex before, RecordWriter& out) {
        std::vector<GroupEdit> groups = out.take();
        if (groups.empty()) return;
        auto& edits = changes[before];
        edits.insert(edits.end(), std::make_move_iterator(groups.begin()),
                     std::make_move_iterator(groups.end()));
    }

    void readSchemas() {
        behindSchemas_ = section_->begin + 1;
        for (RecordIndex record = section_->begin; record < section_->end; ++record) {
            if (document_.type(record) != "ACDSSCHEMA") continue;
            behindSchemas_ = record + 1;
            const dxf::GroupRange groups = document_.groups(record);
            const auto number = groups.find(90), name = groups.find(1);
            const auto value = number ? number->integer() : std::nullopt;
            // Numbers that no group 90 takes are none.
            if (!value || *value < Limits::min() || *value > Limits::max() || !name) continue;
            numbers_.emplace(document_.decode(name->bytes()), *value);
            taken_.insert(*value);
        }
    }

    // The number of a schema; one that the section lacks gets a number.
    std::int64_t numberOf(const wchar_t* schema) {
        const auto known = numbers_.find(schema);
        if (known != numbers_.end()) return known->second;
        const std::int64_t number = freeNumber();
        taken_.insert(number);
        return numbers_[schema] = number;
    }
    // The one behind the highest, as long as there is one; then the lowest.
    std::int64_t freeNumber() const {
        const std::int64_t last = taken_.empty() ? -1 : *taken_.rbegin();
        if (last < Limits::max()) return std::max<std::int64_t>(last + 1, 0);
        std::int64_t lowest = 0;
        while (taken_.count(lowest) != 0) ++lowest;
        return lowest;
    }
    bool has(const wchar_t* schema) const { return numbers_.count(schema) != 0; }

    void addSchemas(RecordWriter& out) {
        if (has(kSchema)) return;
        RecordWriter lacking = writer();
        beginSchema(out, kSchema);
        property(out, L"AcDbDs::ID", kHandle, 8);
        property(out, L"ASM_Data", kBytes, 0);
        for (const Attribute& attribute : kAttributes) {
            const bool known = has(attribute.schema);
            describe(out, attribute);
            if (known) continue;
            beginSchema(lacking, attribute.schema);
            property(lacking, attribute.property, attribute.type, attribute.type == kFlag ? 0 : 1);
            if (attribute.type == kNumber) lacking.integer(284, 1);
        }
        out.append(lacking.take());
    }

    void beginSchema(RecordWriter& out, const wchar_t* name) {
        out.beginRecord("ACDSSCHEMA");
        out.integer(90, numberOf(name));
        out.text(1, name);
    }

    static void property(RecordWriter& out, const wchar_t* name, int type, int flags) {
        out.text(2, name);
        out.integer(280, type);
        out.integer(91, flags);
    }

    // Gives an attribute to the schema of bodies.
    void describe(RecordWriter& out, const Attribute& attribute) {
        out.text(101, L"ACDSRECORD");
        if (attribute.ofHandle) {
            out.text(1, L"AcDbDs::ID");
        } else {
            out.integer(95, numberOf(kSchema));
        }
        out.integer(90, numberOf(attribute.schema));
        out.text(2, attribute.property);
        out.integer(280, attribute.type);
        out.integer(attribute.type == kFlag ? 291 : 282, 1);
    }

    void addRecord(RecordWriter& out, const BodyData& body) {
        out.beginRecord("ACDSRECORD");
        out.integer(90, numberOf(kSchema));
        out.text(2, L"AcDbDs::ID");
        out.integer(280, kHandle);
        out.handleGroup(320, body.handle);
        out.text(2, L"ASM_Data");
        out.integer(280, kBytes);
        out.integer(94, static_cast<std::int64_t>(body.bytes.size()));
        out.chunks(310, body.bytes);
    }

    const dxf::Document& document_;
    std::optional<Range> section_;
    const Manner& manner_;
    RecordIndex behindSchemas_ = 0;
    std::map<std::wstring, std::int64_t> numbers_;
    std::set<std::int64_t> taken_;
};

}  // namespace

void addBodyData(const dxf::Document& document, const Manner& manner,
                 const std::vector<BodyData>& bodies, dxf::Changes& changes) {
    if (!bodies.empty()) BodySection(document, manner).add(bodies, changes);
}

// The bytes give 60 bits by FNV-1a, the handle its 62 lowest.
std::wstring bodyName(const BodyData& body) {
    std::uint64_t hash = 0xCBF29CE484222325U;
    for (const char c : body.bytes) {
        hash ^= static_cast<unsigned char>(c);
        hash *= 0x100000001B3U;
    }
    const std::uint64_t low = 0x8000000000000000U | (body.handle & 0x3FFFFFFFFFFFFFFFU);
    char text[40];
    std::snprintf(text, sizeof text, "{%08llX-%04llX-8%03llX-%04llX-%012llX}",
                  static_cast<unsigned long long>(hash >> 32U),
                  static_cast<unsigned long long>((hash >> 16U) & 0xFFFFU),
                  static_cast<unsigned long long>(hash & 0xFFFU),
                  static_cast<unsigned long long>(low >> 48U),
                  static_cast<unsigned long long>(low & 0xFFFFFFFFFFFFU));
    return std::wstring(text, text + 38);
}

}  // namespace host::database
