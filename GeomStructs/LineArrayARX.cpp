// LineArray read from drawing entities.
#include <dbents.h>

#include <memory>

#include "GeomStructs/LineArray.h"
#include "GeomStructs/PolyLine.h"

namespace TamLib {
namespace {

struct Closing {
    void operator()(AcDbEntity* entity) const { entity->close(); }
};

void AppendLinesOf(AcDbEntity* entity, LineArray& lines) {
    if (entity->isA() == AcDbLine::desc()) {
        lines.Append(Line(entity, 0));
        return;
    }
    const PolyLine polyline(entity, 0);
    for (int i = 0; i + 1 < static_cast<int>(polyline.count); ++i)
        lines.Append(polyline.GetSegment(i));
}

}  // namespace

LineArray::LineArray(const Array<AcDbObjectId>& selection)
    : LineArray(static_cast<int>(selection.count * 3 / 2)) {
    for (const AcDbObjectId id : selection) {
        AcDbEntity* entity = nullptr;
        if (acdbOpenAcDbEntity(entity, id, AcDb::kForRead) != Acad::eOk) continue;
        const std::unique_ptr<AcDbEntity, Closing> opened(entity);
        AppendLinesOf(entity, *this);
    }
}

}  // namespace TamLib
