#include "host/database/RecordWriter.h"

#include <algorithm>
#include <iterator>
#include <optional>

#include "host/database/Names.h"
#include "host/database/ObjectFields.h"

namespace host::database {
namespace {

bool holdsEntities(dxf::Section section) {
    return section == dxf::Section::blocks || section == dxf::Section::entities;
}

bool isFrame(std::string_view type) {
    return type == "SECTION" || type == "ENDSEC";
}

bool anyEntityHasHandle(const dxf::Document& document) {
    for (dxf::RecordIndex record = 0; record < document.size(); ++record) {
        if (holdsEntities(document.section(record)) && document.handle(record)) return true;
    }
    return false;
}

// The first record of the sections with entities that is one of them; none in an empty drawing.
std::optional<dxf::RecordIndex> anEntity(const dxf::Document& document) {
    for (dxf::RecordIndex record = 0; record < document.size(); ++record) {
        if (holdsEntities(document.section(record)) && !isFrame(document.type(record))) {
            return record;
        }
    }
    return std::nullopt;
}

bool entitiesHaveMarkers(const dxf::Document& document) {
    const auto entity = anEntity(document);
    return entity && document.groups(*entity).find(100).has_value();
}

// The owner stands before the first marker; those between braces (102) are reactors.
bool entitiesHaveOwners(const dxf::Document& document) {
    const auto entity = anEntity(document);
    if (!entity) return false;
    bool inBraces = false;
    for (const dxf::Group& group : document.groups(*entity)) {
        if (group.code() == 100) return false;
        if (group.code() == 102) inBraces = !inBraces;
        if (group.code() == 330 && !inBraces) return true;
    }
    return false;
}

}  // namespace

Manner mannerOf(const dxf::Document& document) {
    Manner manner;
    manner.release = document.release();
    if (manner.release == dxf::Release::unknown) {
        manner.release = entitiesHaveMarkers(document) ? dxf::Release::R2000 : dxf::Release::R12;
    }
    manner.markers = manner.atLeast(dxf::Release::R13);
    manner.handles = manner.markers || anyEntityHasHandle(document);
    manner.owners =
        manner.atLeast(dxf::Release::R2000) || (manner.markers && entitiesHaveOwners(document));
    return manner;
}

void RecordWriter::setIdentity(std::uint64_t handle, std::uint64_t owner) {
    handle_ = handle;
    owner_ = owner;
}

void RecordWriter::begin(std::string_view type, std::uint64_t handle, std::uint64_t owner,
                         const EntityFields& fields) {
    beginRecord(type);
    if (manner_.handles) handleGroup(5, handle);
    if (manner_.owners) handleGroup(330, owner);
    marker(L"AcDbEntity");
    integer(67, fields.paperSpace, 0);
    text(8, fields.layer);
    if (!sameName(fields.linetype, L"BYLAYER")) text(6, fields.linetype);
    integer(62, fields.color, 256);
    integer(60, fields.invisible, 0);
}

void RecordWriter::beginEntity(std::string_view type, const EntityFields& fields) {
    begin(type, handle_, owner_, fields);
}

void RecordWriter::beginPart(std::string_view type, const EntityFields& fields) {
    begin(type, manner_.handles ? freshHandle_() : 0, handle_, fields);
}

void RecordWriter::beginSymbol(std::string_view type, const wchar_t* classMarker,
                               const SymbolFields& fields) {
    beginRecord(type);
    if (manner_.markers) handleGroup(5, handle_);
    if (manner_.owners) handleGroup(330, owner_);
    marker(L"AcDbSymbolTableRecord");
    marker(classMarker);
    text(2, fields.name);
    integer(70, fields.flags);
}

void RecordWriter::beginTable(const wchar_t* name, std::size_t count) {
    beginRecord("TABLE");
    text(2, name);
    if (manner_.markers) handleGroup(5, handle_);
    if (manner_.owners) text(330, L"0");
    marker(L"AcDbSymbolTable");
    integer(70, static_cast<std::int64_t>(count));
}

void RecordWriter::beginObject(std::string_view type) {
    beginRecord(type);
    handleGroup(5, handle_);
    text(330, owner_ == 0 ? L"0" : handleText(owner_));
}

void RecordWriter::marker(const wchar_t* name) {
    if (manner_.markers) text(100, name);
}

void RecordWriter::text(int code, std::wstring value) {
    put(code, std::move(value));
}

void RecordWriter::real(int code, double value) {
    put(code, value);
}

void RecordWriter::real(int code, double value, double unless) {
    if (value != unless) put(code, value);
}

void RecordWriter::angle(int code, double radians) {
    put(code, toDegrees(radians));
}

void RecordWriter::angle(int code, double radians, double unless) {
    if (radians != unless) angle(code, radians);
}

void RecordWriter::integer(int code, std::int64_t value) {
    put(code, value);
}

void RecordWriter::integer(int code, std::int64_t value, std::int64_t unless) {
    if (value != unless) put(code, value);
}

void RecordWriter::point(int code, const AcGePoint3d& point) {
    put(code, point.x);
    put(code + 10, point.y);
    put(code + 20, point.z);
}

void RecordWriter::vector(int code, const AcGeVector3d& vector) {
    point(code, {vector.x, vector.y, vector.z});
}

void RecordWriter::normal(const AcGeVector3d& normal) {
    const AcGeVector3d& z = AcGeVector3d::kZAxis;
    if (normal.x != z.x || normal.y != z.y || normal.z != z.z) vector(210, normal);
}

void RecordWriter::handleGroup(int code, std::uint64_t handle) {
    if (handle != 0) text(code, handleText(handle));
}

void RecordWriter::chunks(int code, std::string_view bytes) {
    constexpr std::size_t size = 127;
    constexpr wchar_t digits[] = L"0123456789ABCDEF";
    for (; !bytes.empty(); bytes.remove_prefix(std::min(size, bytes.size()))) {
        std::wstring chunk;
        for (const char c : bytes.substr(0, size)) {
            const auto byte = static_cast<unsigned char>(c);
            chunk += digits[byte >> 4U];
            chunk += digits[byte & 0xFU];
        }
        text(code, std::move(chunk));
    }
}

void RecordWriter::append(std::vector<dxf::GroupEdit> groups) {
    groups_.insert(groups_.end(), std::make_move_iterator(groups.begin()),
                   std::make_move_iterator(groups.end()));
}

void RecordWriter::put(int code, dxf::GroupEdit::Value value) {
    groups_.push_back({dxf::GroupEdit::Kind::insertBefore, 0, code, std::move(value)});
}

}  // namespace host::database
