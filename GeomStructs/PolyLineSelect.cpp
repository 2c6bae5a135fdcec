// PolyLine picked by the user.
#include <acdbads.h>
#include <acedads.h>
#include <afxwin.h>
#include <dbregion.h>

#include "GeomEnts/EntityReading.h"
#include "GeomStructs/PolyLine.h"
#include "datastruct/String.h"
#include "tam/FrameWindow.h"

namespace TamLib {
namespace {

// What the caller of a pick wants to know, and how the entity is to be read.
struct Wanted {
    int* segment;
    bool consume;
    const wchar_t** layer;
    int* colour;
    bool sampleCurves;
    double step;
};

bool IsRegion(const AcDbEntity& entity) {
    return entity.isA() == AcDbRegion::desc();
}

// Of what is accepted, a region counts only when it gives vertices. There is no telling without
// reading it, so these are in `line` then.
bool IsRead(PolyLine& line, AcDbEntity* entity) {
    if (!PolyLine::IsAcceptedEntity(entity, true, true, false)) return false;
    if (!IsRegion(*entity)) return true;
    line.FromEntity(entity, 0);
    return line.count != 0;
}

// The entity with that id, open, when it can be read as a line; otherwise null and closed. The
// vertices of a region are in `line`, which is empty before.
AcDbEntity* OpenLine(PolyLine& line, AcDbObjectId id, AcDb::OpenMode mode) {
    AcDbObject* object = nullptr;
    if (acdbOpenAcDbObject(object, id, mode, false) != Acad::eOk) return nullptr;
    AcDbEntity* const entity = AcDbEntity::cast(object);
    if (IsRead(line, entity)) return entity;
    object->close();
    return nullptr;
}

// Reads an entity from `OpenLine` into `line`, disposes of it and shows the line.
void Read(PolyLine& line, AcDbEntity* entity, const Point3d& pick, const Wanted& wanted) {
    if (wanted.layer != nullptr) *wanted.layer = entity->layer();
    const int colour = entity->colorIndex();
    if (wanted.colour != nullptr) *wanted.colour = colour;
    const int disposal = wanted.consume ? 2 : 1;
    if (IsRegion(*entity)) {
        DisposeOf(entity, disposal);
    } else if (wanted.sampleCurves) {
        line.FromCurve(entity, disposal, wanted.step, true);
    } else {
        line.FromEntity(entity, disposal);
    }
    line.Draw(colour == 6 ? 2 : 6);
    if (wanted.segment != nullptr) *wanted.segment = line.NearestSegment(pick);
}

// The id of a member of a selection set; null when there is none to be had.
AcDbObjectId MemberOf(const ads_name set, Adesk::Int32 index) {
    ads_name name = {};
    AcDbObjectId id;
    if (acedSSName(set, index, name) != RTNORM) return {};
    if (acdbGetObjectId(id, name) != Acad::eOk) return {};
    return id;
}

// The first member of a selection set that can be read as a line, open for write, with its id in
// `id`; null when there is none. As `OpenLine`.
AcDbEntity* OpenFirstLine(PolyLine& line, const ads_name set, AcDbObjectId& id) {
    Adesk::Int32 length = 0;
    if (acedSSLength(set, &length) != RTNORM) return nullptr;
    for (Adesk::Int32 i = 0; i < length; ++i) {
        id = MemberOf(set, i);
        if (id.isNull()) continue;
        AcDbEntity* const entity = OpenLine(line, id, AcDb::kForWrite);
        if (entity != nullptr) return entity;
    }
    return nullptr;
}

}  // namespace

int PolyLine::Select(Point3d* pickPoint, int* segment, bool consume, const wchar_t** layer,
                     int* colour, AcDbObjectId* id, const wchar_t* prompt, bool sampleCurves) {
    Clear();
    if (frameWindow != nullptr) frameWindow->SetFocus();
    StringBase<wchar_t> text;
    text.Format(prompt != nullptr ? prompt : L"Select polyline: ", L"");
    ads_name name = {};
    Point3d pick;
    const int result = acedEntSel(text.Data(), name, &pick.x);
    if (pickPoint != nullptr) *pickPoint = pick;
    if (result == RTCAN) return -1;
    if (result != RTNORM) return -2;
    AcDbObjectId picked;
    if (acdbGetObjectId(picked, name) != Acad::eOk || picked.isNull()) return -3;
    if (id != nullptr) *id = picked;
    AcDbEntity* const entity = OpenLine(*this, picked, consume ? AcDb::kForWrite : AcDb::kForRead);
    if (entity == nullptr) return -3;
    Read(*this, entity, pick, {segment, consume, layer, colour, sampleCurves, 0.05});
    return 0;
}

int PolyLine::SelectAtPoint(const Point3d& point, int* segment, bool consume, const wchar_t** layer,
                            int* colour, AcDbObjectId* id, bool sampleCurves) {
    Clear();
    ads_name set = {};
    if (acedSSGet(nullptr, &point.x, nullptr, nullptr, set) != RTNORM) return -1;
    AcDbObjectId found;
    AcDbEntity* const entity = OpenFirstLine(*this, set, found);
    acedSSFree(set);
    if (entity == nullptr) return -3;
    Read(*this, entity, point, {segment, consume, layer, colour, sampleCurves, 0.1});
    if (id != nullptr) *id = found;
    return 0;
}

}  // namespace TamLib
