// Which drawing entities hold arcs, and which of those that may be picked as a line can't be read
// as one yet.
#pragma once

class AcDbEntity;

namespace TamLib {

// Whether an entity is made of circular arcs in part or whole: a circle or ellipse, an arc, an
// AcDbPolyline with bulges, an AcDb2dPolyline with a segment whose bulge is at least 0.0001 and
// whose arc rises at least 0.0001 over its chord. False for every other class.
bool HasArcs(AcDbEntity* entity);

// Whether an entity that may be picked as a line can't be read as one yet: arcs (where curves are
// to be sampled: reading without sampling takes their chords) and regions.
bool IsUnread(AcDbEntity* entity, bool sampleCurves);

// Whether `FromCurve` samples an entity along its length: a spline, an ellipse, or an
// AcDb2dPolyline that is fitted or splined.
bool IsSampledCurve(AcDbEntity* entity);

}  // namespace TamLib
