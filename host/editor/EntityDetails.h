// What LIST tells of an entity: what makes its geometry, in world coordinates, and what it says.
#pragma once

#include <dbid.h>

#include <string>

#include "host/editor/Details.h"
#include "host/editor/EntityGroups.h"

class AcDbCurve;
class AcDbEntity;

namespace host::editor {

// Of any entity, which is open for read. One that the host only keeps gets its class, its owner and
// a line that says so.
void describe(const AcDbEntity& entity, Details& details);

// The parts of it, by the kind of entity; false for an entity of another kind.
bool describeCurve(const AcDbEntity& entity, Details& details);
bool describePolyline(const AcDbEntity& entity, Details& details);
bool describeSurface(const AcDbEntity& entity, Details& details);
bool describeText(const AcDbEntity& entity, Details& details);
bool describeNote(const AcDbEntity& entity, Details& details);

// The length of a curve, and its area when it encloses one.
void describeExtent(const AcDbCurve& curve, Details& details);
// The same behind whether it is closed.
void describeRun(const AcDbCurve& curve, Details& details);

// The name of a layer, block, style ... by its record; "?" when there is none.
std::wstring nameOf(AcDbObjectId symbol);

// The groups of an entity, for what the interface has no class for. Angles are radians.
class GroupReader {
  public:
    explicit GroupReader(const AcDbEntity& entity);

    // The first group of the code; what `otherwise` says without one.
    double real(int code, double otherwise = 0.0) const;
    long long whole(int code, long long otherwise = 0) const;
    std::wstring text(int code) const;
    AcGePoint3d point(int code) const;
    bool has(int code) const { return find(code) != nullptr; }

    std::vector<double> reals(int code) const;
    std::vector<AcGePoint3d> points(int code) const;

  private:
    const GroupValue* find(int code) const;

    std::vector<std::pair<int, GroupValue>> groups_;
};

}  // namespace host::editor
