#include "host/database/Geometry.h"

#include <dbents.h>
#include <dbmline.h>
#include <dbregion.h>
#include <dbsymtb.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <map>
#include <utility>

#include "host/database/Curve.h"
#include "host/database/DatabaseImp.h"
#include "host/database/ObjectFields.h"
#include "host/database/ObjectImp.h"

namespace host::database {
namespace {

// Estimated width of a letter, and the distance of lines, as parts of the height.
constexpr double kLetterWidth = 0.8;
constexpr double kLineSpacing = 1.6;

// Chains of one entity before its box stands for it.
constexpr std::size_t kMostChains = 20000;

// Entities looked at for one box before the boxes of whole blocks are taken.
constexpr std::size_t kMostForBox = 20000;

// Blocks passed through for the chains of one entity: blocks may hold nothing but each other.
constexpr std::size_t kMostBlocks = 200000;

// Blocks within blocks beyond this depth are left out.
constexpr std::size_t kDeepestBlock = 64;

class Transformed final : public Curve {
  public:
    Transformed(const Curve& curve, const AcGeMatrix3d& matrix)
        : Curve(curve.breaks()), curve_(curve), matrix_(matrix) {}

    AcGePoint3d pointAt(double t) const override { return matrix_ * curve_.pointAt(t); }
    AcGeVector3d derivativeAt(double t) const override { return matrix_ * curve_.derivativeAt(t); }
    bool isStraight(std::size_t span) const override { return curve_.isStraight(span); }

  protected:
    std::optional<double> constantSpeed(std::size_t /*span*/) const override {
        return std::nullopt;
    }

  private:
    const Curve& curve_;
    AcGeMatrix3d matrix_;
};

// Takes what is drawn, in world coordinates.
class Sink {
  public:
    virtual ~Sink() = default;
    virtual void curve(const Curve& curve) = 0;
    virtual void chain(Chain chain) = 0;
    virtual bool full() const = 0;
    // A block is passed through, be it empty.
    virtual void block() = 0;
    // Whether the box of a block is enough by now.
    virtual bool wantsBoxes() const { return false; }
};

class ChainSink final : public Sink {
  public:
    explicit ChainSink(double chordError) : error_(chordError) {}
    void curve(const Curve& curve) override { chain(flattened(curve, error_)); }
    void chain(Chain chain) override { chains_.push_back(std::move(chain)); }
    bool full() const override { return chains_.size() > kMostChains || blocks_ > kMostBlocks; }
    void block() override { ++blocks_; }
    std::vector<Chain>& chains() { return chains_; }

  private:
    double error_;
    std::vector<Chain> chains_;
    std::size_t blocks_ = 0;
};

class BoxSink final : public Sink {
  public:
    void curve(const Curve& curve) override {
        ++count_;
        for (const double t : curve.breaks()) add(curve.pointAt(t));
        for (const double t : turningParams(curve)) add(curve.pointAt(t));
    }
    void chain(Chain chain) override {
        ++count_;
        for (const AcGePoint3d& point : chain) add(point);
    }
    bool full() const override { return false; }
    void block() override { ++count_; }
    bool wantsBoxes() const override { return count_ > kMostForBox; }
    const std::optional<AcDbExtents>& box() const { return box_; }

  private:
    void add(const AcGePoint3d& point) {
        if (!box_) box_.emplace();
        box_->addPoint(point);
    }

    std::optional<AcDbExtents> box_;
    std::size_t count_ = 0;
};

Chain corners(const AcDbExtents& box) {
    const AcGePoint3d& a = box.minPoint();
    const AcGePoint3d& b = box.maxPoint();
    return {{a.x, a.y, a.z}, {b.x, a.y, a.z}, {b.x, b.y, a.z}, {a.x, b.y, a.z},
            {a.x, a.y, b.z}, {b.x, a.y, b.z}, {b.x, b.y, b.z}, {a.x, b.y, b.z}};
}

Chain closed(Chain chain) {
    if (!chain.empty()) chain.push_back(chain.front());
    return chain;
}

// A rectangle in a plane, `origin` the corner where its base begins, turned about it.
Chain rectangle(const AcGeVector3d& normal, const AcGePoint3d& origin, double angle, double left,
                double right, double bottom, double top) {
    const AcGeMatrix3d plane = AcGeMatrix3d::planeToWorld(normal);
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    Chain chain;
    for (const auto& [x, y] :
         {std::pair(left, bottom), {right, bottom}, {right, top}, {left, top}}) {
        chain.push_back(plane *
                        AcGePoint3d(origin.x + c * x - s * y, origin.y + s * x + c * y, origin.z));
    }
    return chain;
}

// How far a text of this width and height lies left of, and below, the point that it hangs on.
double leftOf(int horizontal, double width) {
    if (horizontal == AcDb::kTextCenter || horizontal == AcDb::kTextMid) return width / 2;
    return horizontal == AcDb::kTextRight ? width : 0.0;
}

double below(int horizontal, int vertical, double height) {
    if (horizontal == AcDb::kTextMid || vertical == AcDb::kTextVertMid) return height / 2;
    return vertical == AcDb::kTextTop ? height : 0.0;
}

Chain boxOfText(const TextFields& text) {
    double width = static_cast<double>(text.text.size()) * kLetterWidth * text.height *
                   std::fabs(text.widthFactor);
    double angle = text.rotation;
    AcGePoint3d origin = text.turnedPosition();
    double left = 0.0;
    double bottom = 0.0;
    const bool betweenPoints =
        text.horizontal == AcDb::kTextAlign || text.horizontal == AcDb::kTextFit;
    const bool onBaselineLeft = text.horizontal == 0 && text.vertical == 0;
    if (betweenPoints && text.hasAlignment) {
        const double dx = text.alignment.x - origin.x;
        const double dy = text.alignment.y - origin.y;
        width = std::sqrt(dx * dx + dy * dy);
        angle = width > 0.0 ? std::atan2(dy, dx) : angle;
    } else if (!onBaselineLeft && text.hasAlignment) {
        origin = text.alignment;
        left = leftOf(text.horizontal, width);
        bottom = below(text.horizontal, text.vertical, text.height);
    }
    constexpr int kBackwards = 2;
    constexpr int kUpsideDown = 4;
    const double across = (text.mirrored & kBackwards) != 0 ? -1.0 : 1.0;
    const double upwards = (text.mirrored & kUpsideDown) != 0 ? -1.0 : 1.0;
    return rectangle(text.normal, origin, angle, -left * across, (width - left) * across,
                     -bottom * upwards, (text.height - bottom) * upwards);
}

// Lines of an MTEXT, format codes counted as letters but for the paragraph's "\P".
std::vector<std::size_t> lineLengths(const std::wstring& contents) {
    std::vector<std::size_t> lengths{0};
    for (std::size_t i = 0; i < contents.size(); ++i) {
        if (contents.compare(i, 2, L"\\P") == 0) {
            lengths.push_back(0);
            ++i;
        } else {
            ++lengths.back();
        }
    }
    return lengths;
}

Chain boxOfMText(const AcDbMText& entity) {
    const auto& text = fieldsOf<MTextFields>(entity);
    double width = 0.0;
    double lines = 0.0;
    for (const std::size_t length : lineLengths(text.contents)) {
        const double line = static_cast<double>(length) * kLetterWidth * text.height;
        const bool broken = text.width > 0.0 && line > text.width;
        width = std::max(width, broken ? text.width : line);
        lines += broken ? std::ceil(line / text.width) : 1.0;
    }
    const double height = text.height * (1.0 + (lines - 1.0) * kLineSpacing);
    const int place = text.attachment >= 1 && text.attachment <= 9 ? text.attachment - 1 : 0;
    const int column = place % 3;
    const int rowFromBelow = 2 - place / 3;
    const double left = width * column / 2.0;
    const double bottom = height * rowFromBelow / 2.0;
    const AcGePoint3d origin = AcGeMatrix3d::worldToPlane(text.normal) * text.location;
    return rectangle(text.normal, origin, entity.rotation(), -left, width - left, -bottom,
                     height - bottom);
}

Chain outlineOfCorners(const AcDbEntity& entity) {
    const auto& fields = fieldsOf<CornerFields>(entity);
    const AcGeMatrix3d plane = AcGeMatrix3d::planeToWorld(planeNormal(entity));
    // A solid's corners come row by row, a face's go round.
    const bool face = entity.isKindOf(AcDbFace::desc());
    Chain chain;
    for (const int corner : {0, 1, face ? 2 : 3, face ? 3 : 2}) {
        chain.push_back(plane * fields.corner(corner));
    }
    return chain;
}

class Drawer {
  public:
    Drawer(AcDbImpDatabase& database, Sink& sink) : database_(database), sink_(sink) {}

    void draw(const AcDbEntity& entity, const AcGeMatrix3d& matrix) {
        if (sink_.full() || entity.impl()->fields().unreadable) return;
        if (const Curve* curve = entity.impl()->curve()) {
            sink_.curve(Transformed(*curve, matrix));
        } else if (entity.isKindOf(AcDbBlockReference::desc())) {
            drawReference(entity, matrix);
        } else if (const auto* dimension =
                       dynamic_cast<const DimensionFields*>(&entity.impl()->fields())) {
            drawBlock(database_.find(Table::block, dimension->block), matrix);
        } else if (entity.isKindOf(AcDbPolygonMesh::desc()) ||
                   entity.isKindOf(AcDbPolyFaceMesh::desc())) {
            drawMesh(entity, matrix);
        } else {
            drawSimple(entity, matrix);
        }
    }

  private:
    void put(Chain chain, const AcGeMatrix3d& matrix) {
        for (AcGePoint3d& point : chain) point.transformBy(matrix);
        if (!chain.empty()) sink_.chain(std::move(chain));
    }

    void drawSimple(const AcDbEntity& entity, const AcGeMatrix3d& matrix) {
        if (entity.isKindOf(AcDbText::desc())) {
            put(closed(boxOfText(fieldsOf<TextFields>(entity))), matrix);
        } else if (entity.isKindOf(AcDbMText::desc())) {
            put(closed(boxOfMText(static_cast<const AcDbMText&>(entity))), matrix);
        } else if (entity.isKindOf(AcDbPoint::desc())) {
            put({fieldsOf<PointFields>(entity).position}, matrix);
        } else if (entity.isKindOf(AcDbFace::desc()) || entity.isKindOf(AcDbSolid::desc()) ||
                   entity.isKindOf(AcDbTrace::desc())) {
            put(closed(outlineOfCorners(entity)), matrix);
        } else if (entity.isKindOf(AcDbVertex::desc())) {
            put({fieldsOf<VertexFields>(entity).position}, matrix);
        } else if (entity.isKindOf(AcDbMline::desc())) {
            for (Chain& line : fieldsOf<MlineFields>(entity).lines()) put(std::move(line), matrix);
        } else if (entity.isKindOf(AcDbRegion::desc())) {
            drawRegion(fieldsOf<RegionFields>(entity), matrix);
        }
    }

    // Of a region that was made of curves; that of a drawing keeps its body to itself.
    void drawRegion(const RegionFields& region, const AcGeMatrix3d& matrix) {
        if (!region.loop) return;
        const RegionLoop& loop = *region.loop;
        if (!loop.corners.empty()) {
            put(closed(loop.corners), matrix);
            return;
        }
        const AcDbCircle circle(loop.center, loop.normal, loop.radius);
        sink_.curve(Transformed(*circle.impl()->curve(), matrix));
    }

    void drawReference(const AcDbEntity& entity, const AcGeMatrix3d& matrix) {
        // Copies: the entity may be forgotten while what it holds is drawn.
        const InsertFields fields = fieldsOf<InsertFields>(entity);
        const AcDbObjectId id = entity.objectId();
        const AcGeMatrix3d transform =
            matrix * static_cast<const AcDbBlockReference&>(entity).blockTransform();
        const auto block = database_.find(Table::block, fields.block);
        if (block) drawCells(fields, *block, transform, matrix);
        drawAttributes(id, matrix);
    }

    void drawCells(const InsertFields& fields, ObjectNumber block, const AcGeMatrix3d& transform,
                   const AcGeMatrix3d& matrix) {
        // Columns and rows run along the axes of the turned reference, unscaled.
        const AcGeMatrix3d turned = matrix * AcGeMatrix3d::planeToWorld(fields.normal) *
                                    AcGeMatrix3d::rotation(fields.rotation, AcGeVector3d::kZAxis);
        const std::int64_t columns = std::max(fields.columns, 1);
        const std::int64_t rows = std::max(fields.rows, 1);
        for (std::int64_t row = 0; row < rows; row += stride(rows)) {
            for (std::int64_t column = 0; column < columns; column += stride(columns)) {
                if (sink_.full()) return;
                const AcGeVector3d shift =
                    turned * AcGeVector3d(static_cast<double>(column) * fields.columnSpacing,
                                          static_cast<double>(row) * fields.rowSpacing, 0);
                drawBlock(block, AcGeMatrix3d::translation(shift) * transform);
            }
        }
    }

    // For a box the cells at the ends are enough.
    std::int64_t stride(std::int64_t count) const {
        const bool isBox = dynamic_cast<const BoxSink*>(&sink_) != nullptr;
        return isBox ? std::max<std::int64_t>(count - 1, 1) : 1;
    }

    void drawAttributes(AcDbObjectId reference, const AcGeMatrix3d& matrix) {
        const auto attributes = database_.subEntitiesOf(AcDbImpDatabase::numberOf(reference));
        for (const ObjectNumber attribute : attributes) {
            drawNumber(attribute, matrix, false);
        }
    }

    void drawBlock(std::optional<ObjectNumber> block, const AcGeMatrix3d& matrix) {
        if (!block || inside_.size() >= kDeepestBlock ||
            std::count(inside_.begin(), inside_.end(), *block) != 0)
            return;
        sink_.block();
        if (sink_.wantsBoxes()) {
            if (const auto box = boxOfBlock(*block)) put(corners(*box), matrix);
            return;
        }
        inside_.push_back(*block);
        for (const ObjectNumber number : database_.entitiesOf(*block)) {
            drawNumber(number, matrix, true);
        }
        inside_.pop_back();
    }

    // Attribute definitions show in their block only, not where it is inserted, but for those whose
    // value is fixed.
    void drawNumber(ObjectNumber number, const AcGeMatrix3d& matrix, bool inBlock) {
        if (sink_.full()) return;
        const AcDbObject* object = database_.object(number);
        if (object == nullptr || object->isErased()) return;
        constexpr int kConstant = 2;
        if (inBlock && object->isKindOf(AcDbAttributeDefinition::desc()) &&
            (fieldsOf<AttributeFields>(*object).flags & kConstant) == 0)
            return;
        const auto* entity = AcDbEntity::cast(object);
        if (entity != nullptr) draw(*entity, matrix);
    }

    std::optional<AcDbExtents> boxOfBlock(ObjectNumber block) {
        const auto known = boxes_.find(block);
        if (known != boxes_.end()) return known->second;
        boxes_.emplace(block, std::nullopt);  // a block inside of itself adds nothing
        BoxSink sink;
        Drawer drawer(database_, sink);
        drawer.inside_ = inside_;
        drawer.boxes_ = boxes_;
        drawer.inside_.push_back(block);
        for (const ObjectNumber number : database_.entitiesOf(block)) {
            drawer.drawNumber(number, AcGeMatrix3d::kIdentity, true);
        }
        boxes_ = std::move(drawer.boxes_);
        return boxes_[block] = sink.box();
    }

    std::vector<VertexFields> meshVertices(const AcDbEntity& mesh) const {
        std::vector<VertexFields> vertices;
        const auto parts = database_.subEntitiesOf(AcDbImpDatabase::numberOf(mesh.objectId()));
        for (const ObjectNumber number : parts) {
            if (database_.isErased(number)) continue;
            VertexFields read;
            vertices.push_back(static_cast<const VertexFields&>(database_.fieldsAt(number, read)));
        }
        return vertices;
    }

    void drawMesh(const AcDbEntity& mesh, const AcGeMatrix3d& matrix) {
        const std::vector<VertexFields> vertices = meshVertices(mesh);
        if (mesh.isKindOf(AcDbPolyFaceMesh::desc())) {
            drawFaces(vertices, matrix);
        } else {
            drawGrid(fieldsOf<OldPolylineFields>(mesh), vertices, matrix);
        }
    }

    static bool isFace(const VertexFields& vertex) {
        const bool corner = (vertex.flags & OldPolylineFields::kPolyface) != 0;
        return (vertex.flags & VertexFields::kPolyface) != 0 && !corner;
    }

    void drawFaces(const std::vector<VertexFields>& vertices, const AcGeMatrix3d& matrix) {
        for (const VertexFields& face : vertices) {
            if (!isFace(face)) continue;
            Chain chain;
            for (const int corner : {face.corner1, face.corner2, face.corner3, face.corner4}) {
                const auto index = static_cast<std::size_t>(std::abs(corner));
                if (index >= 1 && index <= vertices.size()) {
                    chain.push_back(vertices[index - 1].position);
                }
            }
            put(closed(std::move(chain)), matrix);
        }
    }

    // The lines of a mesh of M by N vertices both ways.
    void drawGrid(const OldPolylineFields& mesh, const std::vector<VertexFields>& all,
                  const AcGeMatrix3d& matrix) {
        Chain points;
        for (const VertexFields& vertex : all) {
            if ((vertex.flags & VertexFields::kSplineControl) == 0) {
                points.push_back(vertex.position);
            }
        }
        const auto m = static_cast<std::size_t>(std::max(mesh.countM, 0));
        const auto n = static_cast<std::size_t>(std::max(mesh.countN, 0));
        if (m == 0 || n == 0 || points.size() != m * n) {
            // Smoothed meshes have counts of their own; the vertices still tell where they lie.
            put(std::move(points), matrix);
            return;
        }
        const bool aroundM = (mesh.flags & OldPolylineFields::kClosed) != 0;
        const bool aroundN = (mesh.flags & OldPolylineFields::kClosedInN) != 0;
        for (std::size_t i = 0; i < m; ++i) {
            Chain line(points.begin() + static_cast<std::ptrdiff_t>(i * n),
                       points.begin() + static_cast<std::ptrdiff_t>((i + 1) * n));
            put(aroundN ? closed(std::move(line)) : std::move(line), matrix);
        }
        for (std::size_t j = 0; j < n; ++j) {
            Chain line;
            for (std::size_t i = 0; i < m; ++i) line.push_back(points[i * n + j]);
            put(aroundM ? closed(std::move(line)) : std::move(line), matrix);
        }
    }

    AcDbImpDatabase& database_;
    Sink& sink_;
    std::vector<ObjectNumber> inside_;  // blocks under way, against blocks that hold themselves
    std::map<ObjectNumber, std::optional<AcDbExtents>> boxes_;
};

const AcDbEntity* entityOf(AcDbObjectId id) {
    AcDbImpDatabase* database = id.isNull() ? nullptr : AcDbImpDatabase::of(id);
    if (database == nullptr) return nullptr;
    const AcDbObject* object = database->object(AcDbImpDatabase::numberOf(id));
    if (object == nullptr || object->isErased()) return nullptr;
    return AcDbEntity::cast(object);
}

}  // namespace

AcGeVector3d planeNormal(const AcDbEntity& entity) {
    // A face has its corners in the world, whatever normal its record carries.
    if (entity.isKindOf(AcDbFace::desc())) return AcGeVector3d::kZAxis;
    return fieldsOf<EntityFields>(entity).plane();
}

std::optional<AcDbExtents> extentsOf(const AcDbEntity& entity) {
    BoxSink sink;
    if (AcDbImpDatabase* database = entity.impl()->database()) {
        Drawer(*database, sink).draw(entity, AcGeMatrix3d::kIdentity);
    } else if (const Curve* curve = entity.impl()->curve()) {
        sink.curve(*curve);
    }
    return sink.box();
}

std::optional<AcDbExtents> extentsOf(AcDbObjectId id) {
    const AcDbEntity* entity = entityOf(id);
    return entity == nullptr ? std::nullopt : extentsOf(*entity);
}

std::vector<Chain> drawnChains(AcDbObjectId id, double chordError) {
    const AcDbEntity* entity = entityOf(id);
    if (entity == nullptr) return {};
    ChainSink sink(chordError);
    Drawer(*AcDbImpDatabase::of(id), sink).draw(*entity, AcGeMatrix3d::kIdentity);
    if (!sink.full()) return std::move(sink.chains());
    const auto box = extentsOf(id);
    if (!box) return {};
    Chain outline = corners(*box);
    outline.resize(4);
    return {closed(std::move(outline))};
}

Chain textBox(const AcDbEntity& text) {
    if (text.isKindOf(AcDbText::desc())) return boxOfText(fieldsOf<TextFields>(text));
    if (text.isKindOf(AcDbMText::desc())) return boxOfMText(static_cast<const AcDbMText&>(text));
    return {};
}

}  // namespace host::database
