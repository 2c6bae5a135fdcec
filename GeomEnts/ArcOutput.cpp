// Arcs written into a drawing.
#include <dbents.h>

#include <memory>

#include "GeomEnts/Arc.h"
#include "GeomEnts/DrawingOutput.h"
#include "GeomEnts/EntityReading.h"
#include "tam/TamExceptions.h"

namespace TamLib {

int Arc::ToDb(int colour, const wchar_t* layer, AcDbObjectId* id, AcDbDatabase* database) const {
    Point3d centre;
    Centre(centre);
    // The host's arcs run counter-clockwise, the angles here clockwise.
    std::unique_ptr<AcDbArc> arc(
        new AcDbArc(ToAcGePoint3d(centre), Radius(), EndAngle(), StartAngle()));
    if (arc == nullptr)
        throw TamExpAcad(L"Allocation of AcDbArc failed", __LINE__, L"GeomEnts/Arc");
    SetColourAndLayer(*arc, colour, layer, database);
    return ARXAddToModelSpace(arc.release(), id, /*close=*/true, database);
}

}  // namespace TamLib
