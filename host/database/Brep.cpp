// The boundary reader: faces, loops, edges and vertices of the bodies that the host makes.
#include <brbftrav.h>
#include <brbrep.h>
#include <bredge.h>
#include <brfltrav.h>
#include <brletrav.h>
#include <brvtx.h>

#include <array>
#include <tuple>
#include <utility>
#include <vector>

#include "host/database/Bodies.h"
#include "host/database/DatabaseImp.h"
#include "host/database/Fault.h"
#include "host/database/ObjectFields.h"
#include "host/database/ObjectImp.h"

using namespace host::database;

ACRX_NO_CONS_DEFINE_MEMBERS(AcBrEntity, AcRxObject)
ACRX_NO_CONS_DEFINE_MEMBERS(AcBrBrep, AcBrEntity)
ACRX_NO_CONS_DEFINE_MEMBERS(AcBrEdge, AcBrEntity)
ACRX_NO_CONS_DEFINE_MEMBERS(AcBrVertex, AcBrEntity)
ACRX_NO_CONS_DEFINE_MEMBERS(AcBrTraverser, AcRxObject)
ACRX_NO_CONS_DEFINE_MEMBERS(AcBrBrepFaceTraverser, AcBrTraverser)
ACRX_NO_CONS_DEFINE_MEMBERS(AcBrFaceLoopTraverser, AcBrTraverser)
ACRX_NO_CONS_DEFINE_MEMBERS(AcBrLoopEdgeTraverser, AcBrTraverser)

struct AcBrImpEdge {
    std::array<AcGePoint3d, 2> ends;
    bool forward = true;  // it runs as its loop does
};

// Faces with their loops with their edges.
struct AcBrImpBody {
    using Loop = std::vector<AcBrImpEdge>;
    using Face = std::vector<Loop>;
    std::vector<Face> faces;
};

namespace {

using Body = std::shared_ptr<const AcBrImpBody>;

// By this class modules see that the reader is there.
const AcRxClass& registered = *AcBrEntity::desc();

AcBrImpBody::Loop circle(const AcGePoint3d& center, const AcGeVector3d& normal, double radius,
                         bool forward) {
    const AcGePoint3d end = vertexOfCircle(center, normal, radius);
    return {{{end, end}, forward}};
}

bool isBefore(const AcGePoint3d& a, const AcGePoint3d& b) {
    return std::tie(a.x, a.y, a.z) < std::tie(b.x, b.y, b.z);
}

// An edge belongs to no loop more than to another: it runs from the lesser of its corners.
AcBrImpBody bodyOf(const RegionLoop& loop) {
    if (loop.corners.empty()) return {{{circle(loop.center, loop.normal, loop.radius, true)}}};
    AcBrImpBody::Loop edges;
    for (std::size_t i = 0; i < loop.corners.size(); ++i) {
        const AcGePoint3d& from = loop.corners[i];
        const AcGePoint3d& to = loop.corners[(i + 1) % loop.corners.size()];
        const bool forward = isBefore(from, to);
        edges.push_back({{forward ? from : to, forward ? to : from}, forward});
    }
    return {{{edges}}};
}

// Both ends are seen from outside, the side's loops run against theirs.
AcBrImpBody bodyOf(const SolidFields& solid) {
    const auto base = [&](bool forward) {
        return circle(solid.base, solid.axis, solid.radius, forward);
    };
    const auto top = [&](bool forward) {
        return circle(solid.base + solid.axis, solid.axis, solid.radius, forward);
    };
    return {{{base(true), top(false)}, {base(false)}, {top(true)}}};
}

AcBr::ErrorStatus read(const AcDbObject& object, Body& body) {
    const Fields& fields = object.impl()->fields();
    const auto* const region = dynamic_cast<const RegionFields*>(&fields);
    const auto* const solid = dynamic_cast<const SolidFields*>(&fields);
    if (region == nullptr && solid == nullptr) return AcBr::eWrongObjectType;
    if (region != nullptr && region->loop) {
        body = std::make_shared<AcBrImpBody>(bodyOf(*region->loop));
    } else if (solid != nullptr && solid->hasBody) {
        body = std::make_shared<AcBrImpBody>(bodyOf(*solid));
    } else {
        return AcBr::eNotImplementedYet;
    }
    return AcBr::eOk;
}

}  // namespace

// What the reader's objects know of each other.
struct AcBrImpAccess {
    static const Body& bodyOf(const AcBrEntity& entity) { return entity.m_body; }
    static void setBody(AcBrEntity& entity, Body body) {
        entity.m_body = std::move(body);
        entity.m_edge = nullptr;
    }

    static AcBr::ErrorStatus vertexOf(const AcBrEdge& edge, std::size_t end, AcBrEntity& vertex) {
        if (edge.m_edge == nullptr) return AcBr::eNullObjectPointer;
        vertex.m_body = edge.m_body;
        vertex.m_edge = edge.m_edge;
        vertex.m_end = end;
        return AcBr::eOk;
    }
    static const AcBrImpEdge& edgeAt(const AcBrTraverser& edges) {
        return edges.m_body->faces[edges.m_face][edges.m_loop][edges.m_at];
    }
    static void setEdge(const AcBrTraverser& edges, AcBrEntity& edge) {
        edge.m_body = edges.m_body;
        edge.m_edge = &edgeAt(edges);
    }
    static std::size_t faceAt(const AcBrTraverser& faces) { return faces.m_at; }
    static std::pair<std::size_t, std::size_t> loopAt(const AcBrTraverser& loops) {
        return {loops.m_face, loops.m_at};
    }
    static const Body& bodyOf(const AcBrTraverser& traverser) { return traverser.m_body; }
};

AcBr::ErrorStatus AcBrEntity::setSubentPath(AcDbFullSubentPath& path) {
    HOST_CALL("AcBrEntity::setSubentPath");
    const AcDbObjectIdArray& ids = path.objectIds();
    if (ids.isEmpty() || ids.last().isNull()) return AcBr::eNullObjectId;
    const AcDbObjectId id = ids.last();
    AcDbImpDatabase* const database = AcDbImpDatabase::of(id);
    if (database == nullptr) return AcBr::eInvalidObjectId;
    const AcDbObject* const object = database->object(AcDbImpDatabase::numberOf(id));
    if (object == nullptr || object->isErased()) return AcBr::eInvalidObjectId;
    Body body;
    const AcBr::ErrorStatus status = read(*object, body);
    if (status == AcBr::eOk) AcBrImpAccess::setBody(*this, std::move(body));
    return status;
}

AcBr::ErrorStatus AcBrEntity::setValidationLevel(const AcBr::ValidationLevel& /*level*/) {
    HOST_CALL("AcBrEntity::setValidationLevel");
    return AcBr::eOk;
}

AcBr::ErrorStatus AcBrEntity::getBrep(AcBrBrep& owner) const {
    HOST_CALL("AcBrEntity::getBrep");
    if (m_body == nullptr) return AcBr::eNullObjectPointer;
    AcBrImpAccess::setBody(owner, m_body);
    return AcBr::eOk;
}

AcBr::ErrorStatus AcBrEdge::getVertex1(AcBrVertex& vertex) const {
    HOST_CALL("AcBrEdge::getVertex1");
    return AcBrImpAccess::vertexOf(*this, 0, vertex);
}

AcBr::ErrorStatus AcBrEdge::getVertex2(AcBrVertex& vertex) const {
    HOST_CALL("AcBrEdge::getVertex2");
    return AcBrImpAccess::vertexOf(*this, 1, vertex);
}

AcBr::ErrorStatus AcBrVertex::getPoint(AcGePoint3d& point) const {
    HOST_CALL("AcBrVertex::getPoint");
    if (m_edge == nullptr) return AcBr::eNullObjectPointer;
    point = m_edge->ends[m_end];
    return AcBr::eOk;
}

AcBr::ErrorStatus AcBrTraverser::next() {
    HOST_CALL("AcBrTraverser::next");
    if (done()) return AcBr::eNotApplicable;
    ++m_at;
    return AcBr::eOk;
}

AcBr::ErrorStatus AcBrBrepFaceTraverser::setBrep(const AcBrBrep& brep) {
    HOST_CALL("AcBrBrepFaceTraverser::setBrep");
    const Body& body = AcBrImpAccess::bodyOf(brep);
    if (body == nullptr) return AcBr::eNullObjectPointer;
    m_body = body;
    m_at = 0;
    m_count = body->faces.size();
    return AcBr::eOk;
}

AcBr::ErrorStatus AcBrFaceLoopTraverser::setFace(const AcBrBrepFaceTraverser& face) {
    HOST_CALL("AcBrFaceLoopTraverser::setFace");
    if (face.done()) return AcBr::eNullObjectPointer;
    m_body = AcBrImpAccess::bodyOf(face);
    m_face = AcBrImpAccess::faceAt(face);
    m_at = 0;
    m_count = m_body->faces[m_face].size();
    return AcBr::eOk;
}

AcBr::ErrorStatus AcBrLoopEdgeTraverser::setLoop(const AcBrFaceLoopTraverser& loop) {
    HOST_CALL("AcBrLoopEdgeTraverser::setLoop");
    if (loop.done()) return AcBr::eNullObjectPointer;
    m_body = AcBrImpAccess::bodyOf(loop);
    std::tie(m_face, m_loop) = AcBrImpAccess::loopAt(loop);
    m_at = 0;
    m_count = m_body->faces[m_face][m_loop].size();
    return AcBr::eOk;
}

AcBr::ErrorStatus AcBrLoopEdgeTraverser::getEdge(AcBrEdge& edge) const {
    HOST_CALL("AcBrLoopEdgeTraverser::getEdge");
    if (done()) return AcBr::eNotApplicable;
    AcBrImpAccess::setEdge(*this, edge);
    return AcBr::eOk;
}

AcBr::ErrorStatus AcBrLoopEdgeTraverser::getEdgeOrientToLoop(Adesk::Boolean& isForward) const {
    HOST_CALL("AcBrLoopEdgeTraverser::getEdgeOrientToLoop");
    if (done()) return AcBr::eNotApplicable;
    isForward = AcBrImpAccess::edgeAt(*this).forward;
    return AcBr::eOk;
}
