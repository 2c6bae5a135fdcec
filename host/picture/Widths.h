// Polylines that are as wide as they say.
#pragma once

#include <vector>

#include "host/database/DatabaseImp.h"
#include "host/picture/Path.h"

namespace host::picture {

// How wide a segment of a polyline begins and ends.
struct SegmentWidth {
    double start = 0.0;
    double end = 0.0;
};

// One for each segment of a light polyline, or of an old one in a plane; empty for other entities
// and where none has a width. Widths that are no numbers or below 0 are 0.
std::vector<SegmentWidth> segmentWidths(AcDbImpDatabase& database, const AcDbEntity& polyline);

// Whether all segments are of one width.
bool isEven(const std::vector<SegmentWidth>& widths);

// The outlines of the segments, each closed, all the same way round; arcs in chords.
Path bandAlong(const database::Curve& curve, const AcGeVector3d& normal,
               const std::vector<SegmentWidth>& widths);

}  // namespace host::picture
