// How a drawing entity stands to a closed polyline, the region: whether it touches it, crosses its
// boundary, or lies inside. For any entity by the host's stretch points and intersections, for a
// face by its corners alone.
//
// Regions are looked at in plan, as `PolyLine` looks at them. Only a point for which
// `PolyLine::Inside` gives 1 counts as inside; what the boundary passes through does not. Entities
// are open for read and stay so.
//
// The general tests throw `TamExpInternal` from L"ARX/Contains": "Getting StretchPoints failed" for
// an entity that has no stretch points, or whose host refuses them; "IntersectWith failed" when the
// host can't intersect it; `TamExpNoMem` without memory for the region as an entity.
//
// The tests of faces look at the region's rectangle first, the stored box when it has one and
// otherwise that of its vertices: a face all of whose corners lie beyond one side of it is apart.
// Edges are those of the first three corners; the edge back from the fourth takes no part.
#pragma once

#include "GeomStructs/PolyLine.h"

class AcDbFace;

namespace TamLib {

// Whether a stretch point lies inside, or else the entity meets the boundary.
bool EntityTouchesRegion(const PolyLine& region, const AcDbEntity* entity);
// Whether a corner lies inside, boundary sides as `Inside` without touch has them and the stored
// box asked, or else the edges cross (see FaceCrossesRegion). The rectangle is looked at only for a
// region with an area.
bool FaceTouchesRegion(const PolyLine& region, const AcDbFace* face);

// Whether the entity meets the boundary.
bool EntityCrossesRegion(const PolyLine& region, const AcDbEntity* entity);
// Whether one of the first three edges crosses the boundary; or all three touch it and the middle
// between two of their corners lies inside, as of a face that spans the region.
bool FaceCrossesRegion(const PolyLine& region, const AcDbFace* face);

// Whether every stretch point lies inside and the entity does not meet the boundary; a point
// (AcDbPoint) is asked for its position and nothing else.
bool EntityInsideRegion(const PolyLine& region, const AcDbEntity* entity);
// Whether all four corners lie inside and the edges don't cross.
bool FaceInsideRegion(const PolyLine& region, const AcDbFace* face);

}  // namespace TamLib
