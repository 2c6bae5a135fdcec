// PolyLine written to the drawing as a multi-line.
#include <dbmline.h>

#include <memory>

#include "GeomEnts/DrawingOutput.h"
#include "GeomEnts/EntityReading.h"
#include "GeomStructs/WrittenPolyLine.h"

namespace TamLib {

int PolyLine::ToMline(int colour, double scale, int justification, const wchar_t* layer,
                      AcDbObjectId* id, AcDbDatabase* database, const AcGeVector3d& normal) const {
    if (count == 0) return 0;
    AcDbObjectId style;
    if (!ARXGetStandardMlineStyle(&style, database)) return Acad::eKeyNotFound;
    std::unique_ptr<AcDbMline> mline(new AcDbMline);
    if (mline == nullptr) throw TamExpNoMem(L"", __LINE__, L"GeomStructs/PolyLine");
    mline->setStyle(style);
    mline->setNormal(normal);
    mline->setScale(scale);
    const bool closed = IsClosed();
    PolyLine vertices = detail::Shifted(*this);
    if (closed) vertices.Remove(-1, 1);
    for (const Point3d& vertex : vertices) mline->appendSeg(ToAcGePoint3d(vertex));
    if (closed) mline->setClosedMline(true);
    mline->setJustification(static_cast<Mline::MlineJustification>(justification));
    SetColourAndLayer(*mline, colour, layer, database);
    return ARXAddToModelSpace(mline.release(), id, /*close=*/true, database);
}

}  // namespace TamLib
