#include "GeomStructs/BrepEdges.h"

#include <brbftrav.h>
#include <brbrep.h>
#include <bredge.h>
#include <brfltrav.h>
#include <brletrav.h>
#include <brvtx.h>
#include <dbmain.h>
#include <rxdict.h>
#include <rxdlinkr.h>
#include <rxnames.h>

#include <memory>
#include <new>

#include "GeomEnts/EntityReading.h"
#include "GeomStructs/PolyArray.h"
#include "datastruct/String.h"
#include "tam/TamExceptions.h"

namespace TamLib {
namespace {

constexpr int kNotLoaded = 1;

AcBr::ErrorStatus PointOf(const AcBrEdge& edge, bool second, AcGePoint3d& point) {
    AcBrVertex vertex;
    const AcBr::ErrorStatus status = second ? edge.getVertex2(vertex) : edge.getVertex1(vertex);
    return status == AcBr::eOk ? vertex.getPoint(point) : status;
}

AcBr::ErrorStatus AppendEdge(const AcBrLoopEdgeTraverser& edges, PolyLine& outline) {
    AcBrEdge edge;
    Adesk::Boolean forward = Adesk::kTrue;
    AcGePoint3d from, to;
    AcBr::ErrorStatus status = edges.getEdge(edge);
    if (status == AcBr::eOk) status = edges.getEdgeOrientToLoop(forward);
    if (status == AcBr::eOk) status = PointOf(edge, !forward, from);
    if (status == AcBr::eOk) status = PointOf(edge, forward, to);
    if (status != AcBr::eOk) return status;
    if (!outline.DropLastIfEqual(ToPoint3d(from), /*remove=*/false))
        outline.Append(ToPoint3d(from));
    outline.Append(ToPoint3d(to));
    return AcBr::eOk;
}

AcBr::ErrorStatus AppendLoop(const AcBrFaceLoopTraverser& loops, PolyArray& outlines) {
    std::unique_ptr<PolyLine> outline(new (std::nothrow) PolyLine(5));
    if (outline == nullptr) throw TamExpNoMem(L"", __LINE__, L"ARX/BrepEdges");
    AcBrLoopEdgeTraverser edges;
    AcBr::ErrorStatus status = edges.setLoop(loops);
    while (status == AcBr::eOk && !edges.done()) {
        status = AppendEdge(edges, *outline);
        if (status == AcBr::eOk) status = edges.next();
    }
    if (status == AcBr::eOk) outlines.Add(outline.release());
    return status;
}

AcBr::ErrorStatus AppendFace(const AcBrBrepFaceTraverser& faces, bool outerOnly,
                             PolyArray& outlines) {
    AcBrFaceLoopTraverser loops;
    AcBr::ErrorStatus status = loops.setFace(faces);
    while (status == AcBr::eOk && !loops.done()) {
        status = AppendLoop(loops, outlines);
        if (outerOnly) return status;
        if (status == AcBr::eOk) status = loops.next();
    }
    return status;
}

AcBr::ErrorStatus FindBrep(const AcDbEntity& entity, AcBrBrep& brep) {
    AcDbFullSubentPath path(entity.objectId(), AcDb::kNullSubentType, 0);
    AcBrBrep whole;
    AcBr::ErrorStatus status = whole.setSubentPath(path);
    if (status == AcBr::eOk) status = whole.setValidationLevel(AcBr::kFullValidation);
    return status == AcBr::eOk ? whole.getBrep(brep) : status;
}

}  // namespace

bool ARXLoadBrepModule() {
    const auto* const classes = AcRxDictionary::cast(acrxSysRegistry()->at(ACRX_CLASS_DICTIONARY));
    if (classes != nullptr && classes->has(L"AcBrEntity")) return true;
    auto* const linker = AcRxDynamicLinker::cast(acrxSysRegistry()->at(ACRX_DYNAMIC_LINKER));
    if (linker == nullptr) return false;
    StringBase<wchar_t> module;
    module.Format(L"acbr%d.dbx", 19);  // the reader of the host's release 19
    return linker->loadModule(module.Data(), /*printit=*/false);
}

int ARXGetBrepEdges(const AcDbEntity* entity, bool outerOnly, PolyArray& outlines) {
    if (!ARXLoadBrepModule()) return kNotLoaded;
    AcBrBrep brep;
    AcBrBrepFaceTraverser faces;
    AcBr::ErrorStatus status = FindBrep(*entity, brep);
    if (status == AcBr::eOk) status = faces.setBrep(brep);
    while (status == AcBr::eOk && !faces.done()) {
        status = AppendFace(faces, outerOnly, outlines);
        if (status == AcBr::eOk) status = faces.next();
    }
    return status;
}

}  // namespace TamLib
