// What entities look like, in world coordinates: for boxes, picking and selecting.
#pragma once

#include <dbmain.h>

#include <cstddef>
#include <optional>
#include <vector>

namespace host::database {

// The normal of the plane that the entity's own coordinates lie in; +z for entities in the world's.
AcGeVector3d planeNormal(const AcDbEntity& entity);

// The box of what is drawn; empty for classes whose look the host doesn't know. Curves are boxed
// exactly, texts by their estimated width (textBox), block references with all that they hold,
// attributes included.
std::optional<AcDbExtents> extentsOf(const AcDbEntity& entity);
std::optional<AcDbExtents> extentsOf(AcDbObjectId id);

// The drawn lines of an entity as chains of points: curves flattened to within `chordError`, texts
// as the outline of their box, faces and solids as their outline, points as chains of one point,
// meshes as their edges, multi-lines as their lines, dimensions and block references as all that
// they hold. An entity of more than 20000 chains is given by the plan outline of its box. Empty for
// what has no known look.
using Chain = std::vector<AcGePoint3d>;
std::vector<Chain> drawnChains(AcDbObjectId id, double chordError);

// The corners of the box around a text, counter-clockwise from where its first letter begins: as
// high as its letters, as wide as its characters times 0.8 of the height and the width factor. An
// aligned or fitted text spans its two points.
Chain textBox(const AcDbEntity& text);

}  // namespace host::database
