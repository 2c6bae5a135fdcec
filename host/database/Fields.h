// The fields of an object: what its record in the drawing says, as values.
//
// Each class of objects has one table of its fields in the order in which the format writes them:
// group code, kind and place in the structure. Reading and writing go by the same table. Writing
// compares with what stands in the drawing and gives an edit only for a field that differs; a field
// that the record lacks is inserted behind the nearest one that precedes it in the table.
#pragma once

#include <acadstrc.h>
#include <gepnt3d.h>
#include <gescl3d.h>
#include <gevec3d.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/database/Curve.h"
#include "host/database/Structure.h"
#include "host/dxf/Edit.h"

class AcDbImpObject;

namespace host::database {

struct Fields;
class RecordWriter;
struct Manner;

enum class FieldKind : std::uint8_t {
    real,
    angle,    // degrees in the drawing, radians here
    point,    // three reals at code, code + 10, code + 20
    factors,  // three reals at code, code + 1, code + 2
    integer,
    text
};

struct FieldSpec {
    int code;
    FieldKind kind;
    void* (*place)(Fields&);  // double, AcGePoint3d, AcGeScale3d, int or std::wstring by kind
};

using FieldTable = std::vector<FieldSpec>;

// A group of the record that holds no number although a number is due.
struct Unreadable {
    std::size_t group;
    int code;
};

struct Fields {
    virtual ~Fields() = default;
    virtual std::unique_ptr<Fields> clone() const = 0;
    // New fields of the same class, at their defaults.
    virtual std::unique_ptr<Fields> fresh() const = 0;
    virtual const FieldTable& table() const = 0;

    // A group that no entry of the table takes (vertices, knots). False when its value should be a
    // number and is none.
    virtual bool takeGroup(const dxf::Document& /*document*/, const dxf::Group& /*group*/) {
        return true;
    }

    // After all groups were read; `seen` tells whether the record had a group with this code.
    virtual void finish(const std::function<bool(int)>& /*seen*/) {}

    // These fields as the drawing is to hold them.
    virtual std::unique_ptr<Fields> stored() const { return clone(); }

    // The curve of the object, or null when it has none or its fields fit none.
    virtual std::shared_ptr<const Curve> makeCurve(const AcDbImpObject& /*object*/) const {
        return nullptr;
    }

    // Whether a new object with these fields can be written into a drawing of such a manner: eOk,
    // eInvalidDwgVersion when its release has no such entity, eNotImplementedYet for a class that
    // the host only keeps.
    virtual Acad::ErrorStatus mayBeWritten(const Manner& /*manner*/) const {
        return Acad::eNotImplementedYet;
    }
    // Writes it as a record, or several, without its sub-entities.
    virtual void write(RecordWriter& /*out*/) const {}
    // Whether all its numbers are finite.
    virtual bool isFinite() const;
    // The symbols it names.
    using Names = std::vector<std::pair<Table, const std::wstring*>>;
    virtual Names namesUsed() const { return {}; }

    virtual bool isClosed(const AcDbImpObject& /*object*/) const { return false; }
    virtual bool isPeriodic(const AcDbImpObject& object) const { return isClosed(object); }

    std::optional<Unreadable> unreadable;  // the first one
};

// Fields of a class whose table is `Self::fieldTable()`.
template <class Self, class Base = Fields>
struct FieldsOf : Base {
    std::unique_ptr<Fields> clone() const override {
        return std::make_unique<Self>(static_cast<const Self&>(*this));
    }
    std::unique_ptr<Fields> fresh() const override { return std::make_unique<Self>(); }
    const FieldTable& table() const override {
        static const FieldTable instance = Self::fieldTable();
        return instance;
    }
};

template <class T>
struct MemberParts;
template <class Class, class Value>
struct MemberParts<Value Class::*> {
    using Owner = Class;
    using Type = Value;
};

template <auto member>
void* placeOf(Fields& fields) {
    using Owner = typename MemberParts<decltype(member)>::Owner;
    return &(static_cast<Owner&>(fields).*member);
}

// An entry of a table: field<&TextFields::height>(40).
template <auto member>
FieldSpec field(int code) {
    using Type = typename MemberParts<decltype(member)>::Type;
    FieldKind kind = FieldKind::real;
    if constexpr (std::is_same_v<Type, int>) kind = FieldKind::integer;
    if constexpr (std::is_same_v<Type, std::wstring>) kind = FieldKind::text;
    if constexpr (std::is_same_v<Type, AcGePoint3d>) kind = FieldKind::point;
    if constexpr (std::is_same_v<Type, AcGeVector3d>) kind = FieldKind::point;
    if constexpr (std::is_same_v<Type, AcGeScale3d>) kind = FieldKind::factors;
    return {code, kind, &placeOf<member>};
}

template <auto member>
FieldSpec angle(int code) {
    return {code, FieldKind::angle, &placeOf<member>};
}

// Reads the record into `fields`. The application groups between braces (102), an embedded object
// (from 101 on) and extended data (1000 and above) are none of the object's own.
void readFields(const dxf::Document& document, dxf::RecordIndex record, Fields& fields);

// The group of the object's own with `code`, of several the last, as reading the fields takes it.
std::optional<dxf::Group> ownGroup(const dxf::Document& document, dxf::RecordIndex record,
                                   int code);

// Whether both, of one class, say the same, their entry for `code` left aside.
bool sameApartFrom(int code, const Fields& a, const Fields& b);

// The edits that bring the record from what it says to `fields`.
std::vector<dxf::GroupEdit> editsFor(const dxf::Document& document, dxf::RecordIndex record,
                                     const Fields& fields);

// "line 2310: group 10 holds \"NaN\", a number was expected".
std::wstring describe(const dxf::Document& document, dxf::RecordIndex record,
                      const Unreadable& unreadable);

double toRadians(double degrees);
double toDegrees(double radians);

}  // namespace host::database
