// What the setters of entities have in common: the object must be open for write when it is in a
// database, and numbers must be finite; otherwise nothing is changed.
#pragma once

#include <gemat3d.h>

#include <cmath>

#include "host/database/Fields.h"
#include "host/database/ObjectImp.h"

namespace host::database {

inline bool isFinite(const AcGePoint3d& p) {
    return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}

inline AcGePoint3d inWorld(const AcGeVector3d& normal, const AcGePoint3d& point) {
    return AcGeMatrix3d::planeToWorld(normal) * point;
}

inline AcGePoint3d inPlane(const AcGeVector3d& normal, const AcGePoint3d& point) {
    return AcGeMatrix3d::worldToPlane(normal) * point;
}

// Applies `change` to the fields, of class F, of an object that may be changed.
template <class F, class Change>
Acad::ErrorStatus change(AcDbObject& object, Change change) {
    const Acad::ErrorStatus status = object.impl()->beginChange();
    if (status == Acad::eOk) change(fieldsOf<F>(object));
    return status;
}

template <auto member>
using FieldsWith = typename MemberParts<decltype(member)>::Owner;

template <auto member>
Acad::ErrorStatus setNumber(AcDbObject& object, double value) {
    if (!std::isfinite(value)) return Acad::eInvalidInput;
    using F = FieldsWith<member>;
    return change<F>(object, [&](F& fields) { fields.*member = value; });
}

template <auto member>
Acad::ErrorStatus setPoint(AcDbObject& object, const AcGePoint3d& point) {
    if (!isFinite(point)) return Acad::eInvalidInput;
    using F = FieldsWith<member>;
    return change<F>(object, [&](F& fields) { fields.*member = point; });
}

// A point in world coordinates, kept in those of the object's plane.
template <auto member>
Acad::ErrorStatus setPlanePoint(AcDbObject& object, const AcGePoint3d& point) {
    if (!isFinite(point)) return Acad::eInvalidInput;
    using F = FieldsWith<member>;
    return change<F>(object, [&](F& fields) { fields.*member = inPlane(fields.normal, point); });
}

inline bool isDirection(const AcGeVector3d& v) {
    return isFinite(AcGePoint3d(v.x, v.y, v.z)) && !v.isZeroLength();
}

// Gives the object another plane; its coordinates in the plane stay.
template <class F>
Acad::ErrorStatus turnPlane(AcDbObject& object, const AcGeVector3d& normal) {
    if (!isDirection(normal)) return Acad::eInvalidInput;
    return change<F>(object, [&](F& fields) { fields.normal = normal.normal(); });
}

// The same; the named points stay where they are in the world.
template <auto first, auto... others>
Acad::ErrorStatus turnPlane(AcDbObject& object, const AcGeVector3d& normal) {
    if (!isDirection(normal)) return Acad::eInvalidInput;
    using F = FieldsWith<first>;
    return change<F>(object, [&](F& fields) {
        const AcGeVector3d unit = normal.normal();
        const AcGeMatrix3d turn =
            AcGeMatrix3d::worldToPlane(unit) * AcGeMatrix3d::planeToWorld(fields.normal);
        fields.*first = turn * (fields.*first);
        ((fields.*others = turn * (fields.*others)), ...);
        fields.normal = unit;
    });
}

}  // namespace host::database
