// Regions written to the drawing from the curves that bound them.
#include <dbcurve.h>
#include <dbregion.h>

#include <memory>
#include <vector>

#include "GeomEnts/DrawingOutput.h"
#include "GeomStructs/PolyLine.h"

namespace TamLib {
namespace {

// Curves opened for read, closed at the end.
class OpenCurves {
  public:
    explicit OpenCurves(const Array<AcDbObjectId>& ids) {
        for (const AcDbObjectId& id : ids) {
            AcDbEntity* entity = nullptr;
            if (acdbOpenAcDbEntity(entity, id, AcDb::kForRead) != Acad::eOk) continue;
            opened_.push_back(entity);
            if (AcDbCurve* const curve = AcDbCurve::cast(entity)) curves_.append(curve);
        }
    }
    ~OpenCurves() {
        for (AcDbEntity* const entity : opened_) entity->close();
    }
    OpenCurves(const OpenCurves&) = delete;
    OpenCurves& operator=(const OpenCurves&) = delete;
    const AcDbVoidPtrArray& Curves() const { return curves_; }

  private:
    std::vector<AcDbEntity*> opened_;
    AcDbVoidPtrArray curves_;
};

}  // namespace

int PolyLine::ToRegion(const Array<AcDbObjectId>& ids, int colour, const wchar_t* layer,
                       Array<AcDbObjectId>* regions, AcDbDatabase* database) {
    AcDbVoidPtrArray made;
    int result = AcDbRegion::createFromCurves(OpenCurves(ids).Curves(), made);
    std::vector<std::unique_ptr<AcDbRegion>> owned;
    owned.reserve(static_cast<std::size_t>(made.length()));
    for (int i = 0; i < made.length(); ++i) owned.emplace_back(static_cast<AcDbRegion*>(made[i]));
    for (std::unique_ptr<AcDbRegion>& region : owned) {
        SetColourAndLayer(*region, colour, layer, database);
        AcDbObjectId id;
        const int status = ARXAddToModelSpace(region.release(), &id, true, database);
        if (status == 0 && regions != nullptr) regions->Append(id);
        if (result == 0) result = status;
    }
    return result;
}

}  // namespace TamLib
