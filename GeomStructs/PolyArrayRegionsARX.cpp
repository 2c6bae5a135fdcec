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

// Entities that stand in the drawing for a while: opened for write, erased in the end.
class TemporaryCurves {
  public:
    TemporaryCurves() = default;
    ~TemporaryCurves() { Remove(); }
    TemporaryCurves(const TemporaryCurves&) = delete;
    TemporaryCurves& operator=(const TemporaryCurves&) = delete;

    // Those that were drawn.
    Array<AcDbObjectId>& Ids() { return ids_; }

    // The ones that can be opened.
    const AcDbVoidPtrArray& Open() {
        for (const AcDbObjectId id : ids_) {
            AcDbEntity* const entity = OpenForWrite(id);
            entities_.push_back(entity);
            if (entity != nullptr) curves_.append(AcDbCurve::cast(entity));
        }
        return curves_;
    }

    // Those that could not be opened are given another chance. The first status of opening or
    // erasing that is not 0.
    Acad::ErrorStatus Remove() {
        entities_.resize(ids_.count);
        for (std::uint32_t i = 0; i < ids_.count; ++i) {
            AcDbEntity* const entity =
                entities_[i] != nullptr ? entities_[i] : OpenForWrite(ids_[i]);
            if (entity == nullptr) continue;
            Note(entity->erase());
            entity->close();
        }
        ids_.Clear();
        return status_;
    }

  private:
    AcDbEntity* OpenForWrite(AcDbObjectId id) {
        AcDbEntity* entity = nullptr;
        Note(acdbOpenAcDbEntity(entity, id, AcDb::kForWrite));
        return entity;
    }
    void Note(Acad::ErrorStatus status) {
        if (status_ == Acad::eOk) status_ = status;
    }

    Array<AcDbObjectId> ids_;
    std::vector<AcDbEntity*> entities_;  // as the ids; null when not open
    AcDbVoidPtrArray curves_;
    Acad::ErrorStatus status_ = Acad::eOk;
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
    TemporaryCurves curves;
    Draw(colour, layer, &curves.Ids(), database, kAs3dPolyline);
    AcDbVoidPtrArray made;
    const int status = AcDbRegion::createFromCurves(curves.Open(), made);
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
    const int removed = curves.Remove();
    return result != Acad::eOk ? result : removed;
}

}  // namespace TamLib
