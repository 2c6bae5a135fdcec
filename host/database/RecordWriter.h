// How a drawing's release writes objects as records, and the writing of one.
#pragma once

#include <gepnt3d.h>
#include <gescl3d.h>
#include <gevec3d.h>

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "host/dxf/Edit.h"

namespace host::database {

struct EntityFields;
struct SymbolFields;

// What the records of a drawing have. A drawing whose release is not known counts as R12, or as
// R2000 when its entities have subclass markers.
struct Manner {
    dxf::Release release = dxf::Release::R12;
    bool handles = false;  // always from R13 on; before when any of its entities has one
    bool markers = false;  // groups 100 (R13)
    bool owners = false;  // groups 330: from R2000 on, before when the drawing's entities have them

    bool atLeast(dxf::Release wanted) const { return release >= wanted; }
};
Manner mannerOf(const dxf::Document& document);

// A body that stands elsewhere in the drawing than its entity.
struct BodyData {
    std::uint64_t handle;  // of its entity
    std::string bytes;
};

// Collects the groups of new records. Values that are the format's default are left out where the
// format leaves them out.
class RecordWriter {
  public:
    using FreshHandle = std::function<std::uint64_t()>;

    // `freshHandle` gives handles for records that stand for no object.
    RecordWriter(const Manner& manner, FreshHandle freshHandle)
        : manner_(manner), freshHandle_(std::move(freshHandle)) {}

    const Manner& manner() const { return manner_; }
    std::vector<dxf::GroupEdit> take() { return std::move(groups_); }
    void append(std::vector<dxf::GroupEdit> groups);
    std::vector<BodyData> takeBodies() { return std::move(bodies_); }

    // Of the next object.
    void setIdentity(std::uint64_t handle, std::uint64_t owner);
    std::uint64_t handle() const { return handle_; }

    // The object's record, and what all entities or symbols begin with.
    void beginEntity(std::string_view type, const EntityFields& fields);
    void beginSymbol(std::string_view type, const wchar_t* marker, const SymbolFields& fields);
    // A record with a handle of its own that belongs to the object.
    void beginPart(std::string_view type, const EntityFields& fields);
    // An object that is neither, which names its owner in every release.
    void beginObject(std::string_view type);
    void beginRecord(std::string_view type) { text(0, std::wstring(type.begin(), type.end())); }
    // A record with a handle, without an owner.
    void beginTable(const wchar_t* name, std::size_t count);

    void marker(const wchar_t* name);
    void text(int code, std::wstring value);
    void real(int code, double value);
    void real(int code, double value, double unless);
    void angle(int code, double radians);
    void angle(int code, double radians, double unless);
    void integer(int code, std::int64_t value);
    void integer(int code, std::int64_t value, std::int64_t unless);
    void point(int code, const AcGePoint3d& point);
    void vector(int code, const AcGeVector3d& vector);
    // Group 210 unless it is the z axis.
    void normal(const AcGeVector3d& normal);
    void handleGroup(int code, std::uint64_t handle);
    // As many groups as the bytes take, 127 bytes in each.
    void chunks(int code, std::string_view bytes);
    // The body of the object, which takeBodies() gives: it is no part of the object's record.
    void body(BodyData body) { bodies_.push_back(std::move(body)); }

  private:
    void begin(std::string_view type, std::uint64_t handle, std::uint64_t owner,
               const EntityFields& fields);
    void put(int code, dxf::GroupEdit::Value value);

    Manner manner_;
    FreshHandle freshHandle_;
    std::vector<dxf::GroupEdit> groups_;
    std::vector<BodyData> bodies_;
    std::uint64_t handle_ = 0;
    std::uint64_t owner_ = 0;
};

}  // namespace host::database
