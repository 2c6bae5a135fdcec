// Regions made of the polylines of a PolyArray.
#include <dbents.h>
#include <dbptrar.h>
#include <dbregion.h>

#include <memory>
#include <vector>

#include "GeomEnts/DrawingOutput.h"
#include "GeomStructs/PolyArray.h"

namespace TamLib {
namespace {

constexpr int kAs3dPolyline = 3;  // regions keep the height of their polyline

// Entities that stand in the drawing for a while: open for write, erased in the end.
class TemporaryCurves {
  public:
    explicit TemporaryCurves(const Array<AcDbObjectId>& ids) {
        for (const AcDbObjectId id : ids) {
            AcDbEntity* entity = nullptr;
            if (acdbOpenAcDbEntity(entity, id, AcDb::kForWrite) != Acad::eOk) continue;
            entities_.push_back(entity);
            curves_.append(AcDbCurve::cast(entity));
        }
    }
    ~TemporaryCurves() {
        for (AcDbEntity* const entity : entities_) {
            entity->erase();
            entity->close();
        }
    }
    TemporaryCurves(const TemporaryCurves&) = delete;
    TemporaryCurves& operator=(const TemporaryCurves&) = delete;
    const AcDbVoidPtrArray& Curves() const { return curves_; }

  private:
    std::vector<AcDbEntity*> entities_;
    AcDbVoidPtrArray curves_;
};

using Regions = std::vector<std::unique_ptr<AcDbEntity>>;

// Puts each region together with those behind it, the last one first.
void Unite(Regions& regions) {
    for (std::size_t i = 0; i < regions.size(); ++i)
        for (std::size_t j = regions.size() - 1; j > i; --j) {
            AcDbRegion* const into = AcDbRegion::cast(regions[i].get());
            AcDbRegion* const taken = AcDbRegion::cast(regions[j].get());
            if (into == nullptr || taken == nullptr) continue;
            into->booleanOper(AcDb::kBoolUnite, taken);
            if (taken->isNull()) regions.erase(regions.begin() + static_cast<std::ptrdiff_t>(j));
        }
}

}  // namespace

int PolyArray::MakeRegions(int colour, const wchar_t* layer, bool merge, Array<AcDbObjectId>* ids,
                           AcDbDatabase* database) const {
    Array<AcDbObjectId> drawn;
    Draw(colour, layer, &drawn, database, kAs3dPolyline);
    const TemporaryCurves curves(drawn);
    AcDbVoidPtrArray made;
    const int status = AcDbRegion::createFromCurves(curves.Curves(), made);
    Regions regions;
    for (int i = 0; i < made.length(); ++i) regions.emplace_back(static_cast<AcDbEntity*>(made[i]));
    if (status != Acad::eOk) return status;
    if (merge) Unite(regions);
    int result = Acad::eOk;
    for (std::unique_ptr<AcDbEntity>& region : regions) {
        SetColourAndLayer(*region, colour, layer, database);
        AcDbObjectId id;
        const int added = ARXAddToModelSpace(region.release(), &id, true, database);
        if (result == Acad::eOk) result = added;
        if (ids != nullptr && added == Acad::eOk) ids->Append(id);
    }
    return result;
}

}  // namespace TamLib
