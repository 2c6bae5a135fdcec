// Regions and solids: the few bodies that the host can make.
#include <dbents.h>
#include <dbregion.h>
#include <dbsol3d.h>

#include <algorithm>
#include <cmath>
#include <initializer_list>

#include "host/database/Bodies.h"
#include "host/database/BodyData.h"
#include "host/database/Fault.h"
#include "host/database/ObjectFields.h"
#include "host/database/ObjectImp.h"
#include "host/database/RecordWriter.h"

using namespace host::database;

ACRX_DXF_DEFINE_MEMBERS(AcDbRegion, AcDbEntity, 0, 0, 0, REGION, ObjectDBX)
ACRX_DXF_DEFINE_MEMBERS(AcDb3dSolid, AcDbEntity, 0, 0, 0, 3DSOLID, ObjectDBX)

namespace host::database {

namespace {

Acad::ErrorStatus mayHoldBodies(const Manner& manner) {
    return manner.atLeast(dxf::Release::R13) ? Acad::eOk : Acad::eInvalidDwgVersion;
}

void writeLines(RecordWriter& out, const std::vector<std::string>& body) {
    constexpr std::size_t longest = 255;
    out.integer(70, 1);
    for (const std::string& line : body) {
        const std::string encoded = encodedBody(line);
        for (std::size_t at = 0; at < encoded.size(); at += longest) {
            const std::string piece = encoded.substr(at, longest);
            out.text(at == 0 ? 1 : 3, std::wstring(piece.begin(), piece.end()));
        }
    }
}

// The groups of an entity with a body. From R2013 on they hold only its name, and the body stands
// in a section of its own.
template <class Shape>
void writeGeometry(RecordWriter& out, const Shape& shape) {
    out.marker(L"AcDbModelerGeometry");
    if (!out.manner().atLeast(dxf::Release::R2013)) {
        writeLines(out, bodyText(shape));
        return;
    }
    BodyData body{out.handle(), bodyBytes(shape)};
    out.integer(290, 1);
    out.text(2, bodyName(body));
    out.body(std::move(body));
}

bool areFinite(std::initializer_list<double> numbers) {
    return std::all_of(numbers.begin(), numbers.end(), [](double v) { return std::isfinite(v); });
}
bool isFinite(const AcGePoint3d& p) {
    return areFinite({p.x, p.y, p.z});
}

}  // namespace

Acad::ErrorStatus RegionFields::mayBeWritten(const Manner& manner) const {
    return loop ? mayHoldBodies(manner) : Acad::eInvalidInput;
}

bool RegionFields::isFinite() const {
    const bool loopIsFinite =
        !loop || (database::isFinite(loop->center) &&
                  areFinite({loop->radius, loop->normal.x, loop->normal.y, loop->normal.z}) &&
                  std::all_of(loop->corners.begin(), loop->corners.end(),
                              [](const AcGePoint3d& p) { return database::isFinite(p); }));
    return loopIsFinite && FieldsOf::isFinite();
}

void RegionFields::write(RecordWriter& out) const {
    out.beginEntity("REGION", *this);
    writeGeometry(out, *loop);
}

Acad::ErrorStatus SolidFields::mayBeWritten(const Manner& manner) const {
    return hasBody ? mayHoldBodies(manner) : Acad::eInvalidInput;
}

bool SolidFields::isFinite() const {
    const bool own = database::isFinite(base) && areFinite({axis.x, axis.y, axis.z, radius});
    return own && FieldsOf::isFinite();
}

void SolidFields::write(RecordWriter& out) const {
    out.beginEntity("3DSOLID", *this);
    writeGeometry(out, Cylinder{base, axis, radius});
    if (!out.manner().atLeast(dxf::Release::R2007)) return;
    out.marker(L"AcDb3dSolid");
    out.text(350, L"0");  // without a history
}

}  // namespace host::database

AcDbRegion::AcDbRegion() {
    impl()->setFields(std::make_unique<RegionFields>());
}

Adesk::Boolean AcDbRegion::isNull() const {
    return !impl()->isFromDrawing() && !fieldsOf<RegionFields>(*this).loop;
}

Acad::ErrorStatus AcDbRegion::createFromCurves(const AcDbVoidPtrArray& curves,
                                               AcDbVoidPtrArray& regions) {
    HOST_CALL("AcDbRegion::createFromCurves");
    const int before = regions.length();
    std::vector<const AcDbCurve*> known;
    known.reserve(static_cast<std::size_t>(curves.length()));
    for (int i = 0; i < curves.length(); ++i) {
        if (curves[i] == nullptr) return Acad::eNullObjectPointer;
        known.push_back(static_cast<const AcDbCurve*>(curves[i]));
    }
    for (RegionLoop& loop : regionLoops(known)) {
        auto* const region = new AcDbRegion;
        if (region == nullptr) return Acad::eOutOfMemory;
        fieldsOf<RegionFields>(*region).loop = std::move(loop);
        regions.append(region);
    }
    return regions.length() > before ? Acad::eOk : Acad::eInvalidInput;
}

AcDb3dSolid::AcDb3dSolid() {
    impl()->setFields(std::make_unique<SolidFields>());
}

Adesk::Boolean AcDb3dSolid::isNull() const {
    return !impl()->isFromDrawing() && !fieldsOf<SolidFields>(*this).hasBody;
}

Acad::ErrorStatus AcDb3dSolid::extrudeAlongPath(const AcDbRegion* region, const AcDbCurve* path,
                                                double taperAngle) {
    HOST_CALL("AcDb3dSolid::extrudeAlongPath");
    if (region == nullptr || path == nullptr) return Acad::eNullObjectPointer;
    if (database() != nullptr) return Acad::eAlreadyInDb;
    const std::optional<RegionLoop>& loop = fieldsOf<RegionFields>(*region).loop;
    if (!loop || loop->radius == 0.0 || taperAngle != 0.0) return Acad::eInvalidInput;
    const RegionLoop& disc = *loop;
    const auto* const line = AcDbLine::cast(path);
    if (line == nullptr) return Acad::eNotImplementedYet;
    const AcGeVector3d along = line->endPoint() - line->startPoint();
    if (along.length() < kShortestEdge || !along.isParallelTo(disc.normal))
        return Acad::eInvalidInput;
    auto& fields = fieldsOf<SolidFields>(*this);
    fields.base = disc.center;
    fields.axis = along;
    fields.radius = disc.radius;
    fields.hasBody = true;
    return Acad::eOk;
}
