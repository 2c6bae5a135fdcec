// Block references taken apart into entities of their own.
#include <dbents.h>
#include <dbpl.h>
#include <dbptrar.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <map>
#include <memory>
#include <unordered_map>
#include <utility>
#include <vector>

#include "host/database/Drawing.h"
#include "host/database/Fault.h"
#include "host/database/ObjectFields.h"
#include "host/database/ObjectImp.h"

using namespace host::database;

namespace {

constexpr int kDeepestBlock = 64;
constexpr std::uint64_t kMostParts = 2000000;

using Part = std::unique_ptr<AcDbEntity>;

// A plane with its axes, which aren't of unit length.
struct Plane {
    AcGeVector3d x, y, normal;

    Plane(const AcGeMatrix3d& move, const AcGeVector3d& before) {
        const AcGeMatrix3d matrix = move * AcGeMatrix3d::planeToWorld(before);
        x = matrix * AcGeVector3d::kXAxis;
        y = matrix * AcGeVector3d::kYAxis;
        normal = x.crossProduct(y);
    }
    bool isFlat() const { return normal.isZeroLength(); }
    // Whether what is round in the plane stays so.
    bool keepsCircles() const {
        const double size = x.length();
        return std::fabs(size - y.length()) <= 1e-9 * size &&
               std::fabs(x.dotProduct(y)) <= 1e-9 * size * size;
    }
};

// The entities that moved ones become; null without memory.
Part movedCircle(const AcDbCircle& circle, const AcGeMatrix3d& move, const Plane& plane) {
    return Part(
        new AcDbCircle(move * circle.center(), plane.normal, circle.radius() * plane.x.length()));
}

Part movedArc(const AcDbArc& arc, const AcGeMatrix3d& move, const Plane& plane) {
    const AcGeVector3d x = AcGeMatrix3d::worldToPlane(plane.normal) * plane.x;
    const double turn = std::atan2(x.y, x.x);
    return Part(new AcDbArc(move * arc.center(), plane.normal, arc.radius() * x.length(),
                            arc.startAngle() + turn, arc.endAngle() + turn));
}

Part movedPolyline(const AcDbPolyline& polyline, const AcGeMatrix3d& move, const Plane& plane) {
    const AcGeMatrix3d toPlane = AcGeMatrix3d::worldToPlane(plane.normal) * move;
    std::unique_ptr<AcDbPolyline> moved(new AcDbPolyline(polyline.numVerts()));
    if (moved == nullptr) return nullptr;
    moved->setNormal(plane.normal.normal());
    for (unsigned i = 0; i < polyline.numVerts(); ++i) {
        AcGePoint3d vertex;
        double bulge = 0.0;
        polyline.getPointAt(i, vertex);
        polyline.getBulgeAt(i, bulge);
        vertex = toPlane * vertex;
        if (i == 0) moved->setElevation(vertex.z);
        moved->addVertexAt(i, AcGePoint2d(vertex.x, vertex.y), bulge);
    }
    moved->setClosed(polyline.isClosed());
    return moved;
}

bool isKnown(const AcDbEntity& entity) {
    for (const AcRxClass* known : {AcDbLine::desc(), AcDbPoint::desc(), AcDbCircle::desc(),
                                   AcDbArc::desc(), AcDbPolyline::desc()})
        if (entity.isKindOf(known)) return true;
    return false;
}

// Of an entity that is known. False when it becomes nothing that is.
bool moveTo(const AcDbEntity& entity, const AcGeMatrix3d& move, Part& part) {
    if (const auto* line = AcDbLine::cast(&entity)) {
        part.reset(new AcDbLine(move * line->startPoint(), move * line->endPoint()));
    } else if (const auto* point = AcDbPoint::cast(&entity)) {
        part.reset(new AcDbPoint(move * point->position()));
    } else if (const auto* polyline = AcDbPolyline::cast(&entity)) {
        const Plane plane(move, polyline->normal());
        if ((polyline->hasBulges() && !plane.keepsCircles()) || plane.isFlat()) return false;
        part = movedPolyline(*polyline, move, plane);
    } else {
        const auto* const circle = AcDbCircle::cast(&entity);
        const auto* const arc = AcDbArc::cast(&entity);
        const Plane plane(move, circle != nullptr ? circle->normal() : arc->normal());
        if (!plane.keepsCircles() || plane.isFlat()) return false;
        part = circle != nullptr ? movedCircle(*circle, move, plane) : movedArc(*arc, move, plane);
    }
    return true;
}

std::uint64_t cellsOf(const InsertFields& reference) {
    return static_cast<std::uint64_t>(std::max(reference.columns, 1)) *
           static_cast<std::uint64_t>(std::max(reference.rows, 1));
}

// Takes references apart. How much there is to come is known before any of it is made, so that
// only what gives something is entered: blocks may hold nothing but each other, over and over.
class Explosion {
  public:
    Acad::ErrorStatus run(const AcDbBlockReference& reference, AcDbVoidPtrArray& entities) {
        const Content& content = contentOf(reference.blockTableRecord(), kDeepestBlock);
        const std::uint64_t cells = cellsOf(fieldsOf<InsertFields>(reference));
        if (times(cells, content.count) > kMostParts) return Acad::eOutOfMemory;
        if (!take(reference, content, AcGeMatrix3d::kIdentity)) return Acad::eOutOfMemory;
        entities.setPhysicalLength(entities.length() + static_cast<int>(parts_.size()));
        for (Part& part : parts_) entities.append(part.release());
        return Acad::eOk;
    }

  private:
    // A known entity or a reference of a block.
    struct Item {
        AcDbObjectId id;
        std::uint64_t cells;  // of a reference, otherwise 0
        AcDbObjectId block;
    };
    // What a block gives, through so many blocks: the items that give something, and how many known
    // entities that is, or some number above `kMostParts`.
    struct Content {
        struct Part {
            AcDbObjectId id;
            const Content* block;  // of a reference, otherwise null
        };
        std::vector<Part> parts;
        std::uint64_t count = 0;
    };

    static std::uint64_t times(std::uint64_t cells, std::uint64_t count) {
        return count > kMostParts ? count : std::min(cells, kMostParts + 1) * count;
    }

    const std::vector<Item>& itemsOf(AcDbObjectId block) {
        const auto [found, made] = items_.try_emplace(block);
        std::vector<Item>& items = found->second;
        if (!made) return items;
        for (const AcDbObjectId id : blockIds(block)) {
            AcDbEntity* entity = nullptr;
            if (acdbOpenAcDbEntity(entity, id, AcDb::kForRead) != Acad::eOk) continue;
            if (const auto* nested = AcDbBlockReference::cast(entity)) {
                const std::uint64_t cells = cellsOf(fieldsOf<InsertFields>(*nested));
                items.push_back({id, cells, nested->blockTableRecord()});
            } else if (isKnown(*entity)) {
                items.push_back({id, 0, {}});
            }
            entity->close();
        }
        return items;
    }

    const Content& contentOf(AcDbObjectId block, int levels) {
        const auto [found, made] = contents_.try_emplace({block.asOldId(), levels});
        Content& content = found->second;
        if (!made || levels == 0) return content;
        for (const Item& item : itemsOf(block)) {
            const Content* const inside =
                item.cells == 0 ? nullptr : &contentOf(item.block, levels - 1);
            const std::uint64_t count = inside == nullptr ? 1 : times(item.cells, inside->count);
            if (count != 0) content.parts.push_back({item.id, inside});
            content.count += count;
            if (content.count > kMostParts) break;
        }
        return content;
    }

    // These are false without memory.
    bool take(const AcDbBlockReference& reference, const Content& content,
              const AcGeMatrix3d& move) {
        const InsertFields& fields = fieldsOf<InsertFields>(reference);
        const AcGeMatrix3d first = move * reference.blockTransform();
        // Columns and rows run along the axes of the turned reference, unscaled.
        const AcGeMatrix3d turned = move * AcGeMatrix3d::planeToWorld(fields.normal) *
                                    AcGeMatrix3d::rotation(fields.rotation, AcGeVector3d::kZAxis);
        for (std::uint64_t cell = 0; content.count != 0 && cell < cellsOf(fields); ++cell) {
            const auto columns = static_cast<std::uint64_t>(std::max(fields.columns, 1));
            const std::uint64_t row = cell / columns, column = cell % columns;
            const AcGeVector3d shift =
                turned * AcGeVector3d(static_cast<double>(column) * fields.columnSpacing,
                                      static_cast<double>(row) * fields.rowSpacing, 0);
            const AcGeMatrix3d inside =
                cell == 0 ? first : AcGeMatrix3d::translation(shift) * first;
            if (!takeContent(content, inside)) return false;
        }
        return true;
    }

    bool takeContent(const Content& content, const AcGeMatrix3d& inside) {
        for (const Content::Part& part : content.parts) {
            AcDbEntity* entity = nullptr;
            if (acdbOpenAcDbEntity(entity, part.id, AcDb::kForRead) != Acad::eOk) continue;
            const auto* const nested = AcDbBlockReference::cast(entity);
            const bool taken = nested != nullptr ? take(*nested, *part.block, inside)
                                                 : takeEntity(*entity, inside);
            entity->close();
            if (!taken) return false;
        }
        return true;
    }

    bool takeEntity(const AcDbEntity& entity, const AcGeMatrix3d& inside) {
        Part part;
        if (!moveTo(entity, inside, part)) return true;
        if (part == nullptr) return false;
        part->setLayer(entity.layerId());
        part->setColorIndex(entity.colorIndex());
        parts_.push_back(std::move(part));
        return true;
    }

    std::unordered_map<AcDbObjectId, std::vector<Item>> items_;
    std::map<std::pair<Adesk::IntDbId, int>, Content> contents_;
    std::vector<Part> parts_;
};

}  // namespace

Acad::ErrorStatus AcDbEntity::explode(AcDbVoidPtrArray& entities) const {
    HOST_CALL("AcDbEntity::explode");
    static_cast<void>(entities);
    return Acad::eNotApplicable;
}

Acad::ErrorStatus AcDbBlockReference::explode(AcDbVoidPtrArray& entities) const {
    HOST_CALL("AcDbBlockReference::explode");
    return Explosion().run(*this, entities);
}
