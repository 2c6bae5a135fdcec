// Arcs shown on the screen.
#include "GeomEnts/Arc.h"
#include "GeomStructs/PolyLine.h"

namespace TamLib {

void Arc::Draw(int colour) const {
    ToPolyLine(0.1, /*stepIsAngle=*/true).Draw(colour);
}

}  // namespace TamLib
