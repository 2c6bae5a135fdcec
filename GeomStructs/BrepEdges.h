// The outlines of regions and solids, by the host's boundary reader. Declared here, because the
// reading of lines stands below the host toolkit; defined there, in ARX/BrepEdges.cpp.
#pragma once

class AcDbEntity;

namespace TamLib {

class PolyArray;

// Sees to it that the host's boundary reader is there: where the class AcBrEntity is missing, the
// module "acbr19.dbx" is loaded. False when that fails.
bool ARXLoadBrepModule();

// Appends to `outlines` a polyline for each loop of an entity's faces, in the order of the faces
// and, within a face, of the loops; with `outerOnly` only for the first loop of each face, its
// outer one. A loop gives the vertices of its edges in its direction, arcs their chords: of each
// edge the first vertex unless it equals the last one appended, and the second one always. So a
// closed loop ends in its first vertex, and one of a single closed edge, such as a circle, is that
// vertex twice. The entity has to be in a database; it stays open as it is.
// 0; 1 when the boundary reader can't be loaded; otherwise the host's status of what failed: the
// loops read until then stay, and the one in which it failed is left out. Throws `TamExpNoMem`
// without memory.
int ARXGetBrepEdges(const AcDbEntity* entity, bool outerOnly, PolyArray& outlines);

}  // namespace TamLib
