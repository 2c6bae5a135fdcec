// PolyArray read from drawing entities.
#include <dbents.h>
#include <dbptrar.h>

#include <memory>
#include <vector>

#include "GeomEnts/EntityReading.h"
#include "GeomStructs/PolyArray.h"
#include "GeomStructs/PolyArrayParts.h"

namespace TamLib {
namespace {

constexpr int kDeepestBlock = 64;  // a drawing that is broken may hold a block within itself

struct Reading {
    double step;
    bool curves;
};

using Exploded = std::vector<std::unique_ptr<AcDbEntity>>;

Exploded Explode(const AcDbEntity& entity) {
    AcDbVoidPtrArray parts;
    entity.explode(parts);
    Exploded exploded;
    for (int i = 0; i < parts.length(); ++i)
        exploded.emplace_back(static_cast<AcDbEntity*>(parts[i]));
    return exploded;
}

void AddEntity(PolyArray& array, AcDbEntity* entity, const Reading& reading, int depth) {
    if (AcDbBlockReference::cast(entity) != nullptr) {
        if (depth == kDeepestBlock) return;
        for (const auto& part : Explode(*entity)) AddEntity(array, part.get(), reading, depth + 1);
    } else if (PolyLine::IsAcceptedEntity(entity, true, reading.curves, false)) {
        const double step = reading.curves ? reading.step : 0.0;
        detail::Append(array,
                       detail::MakeNew<PolyLine>(detail::kSelectionLine, entity, 0, step, false));
    }
}

// Disposes of an entity in the end; when an exception leaves, it is closed and never erased.
class Opened {
  public:
    Opened(AcDbEntity* entity, int mode) : entity_(entity), mode_(mode) {}
    ~Opened() { DisposeOf(entity_, isRead_ || mode_ == 0 ? mode_ : 1); }
    Opened(const Opened&) = delete;
    Opened& operator=(const Opened&) = delete;
    void SetRead() { isRead_ = true; }

  private:
    AcDbEntity* entity_;
    int mode_;
    bool isRead_ = false;
};

}  // namespace

PolyArray::PolyArray(const Array<AcDbObjectId>& selection, int mode, double tol, bool curves)
    : PolyArray() {
    for (const AcDbObjectId id : selection) {
        AcDbEntity* entity = nullptr;
        const AcDb::OpenMode openMode = mode == 2 ? AcDb::kForWrite : AcDb::kForRead;
        if (acdbOpenAcDbEntity(entity, id, openMode) != Acad::eOk) continue;
        Opened opened(entity, mode);
        AddEntity(*this, entity, {tol, curves}, 0);
        opened.SetRead();
    }
}

}  // namespace TamLib
