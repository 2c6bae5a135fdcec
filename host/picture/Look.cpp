#include "host/picture/Look.h"

#include <dbents.h>

#include <algorithm>
#include <cstdlib>

#include "host/database/Drawing.h"
#include "host/database/Geometry.h"
#include "host/database/ObjectFields.h"
#include "host/database/ObjectImp.h"
#include "host/picture/Hatches.h"
#include "host/picture/Lettering.h"
#include "host/picture/Widths.h"

namespace host::picture {
namespace {

using database::ObjectNumber;

constexpr int colorByBlock = 0;
constexpr int colorByLayer = 256;
constexpr int invisibleAttribute = 1;
constexpr int constantAttribute = 2;

// What stands among the groups of all entities, which the second subclass marker ends, and is no
// field of the database.
struct CommonGroups {
    std::optional<Rgb> color;
    double linetypeScale = 1.0;
    int weight = Pen::byLayer;
};

CommonGroups commonGroups(const AcDbImpDatabase& database, ObjectNumber number) {
    CommonGroups result;
    const auto record = database.recordOf(number);
    if (!record) return result;
    int markers = 0;
    for (const dxf::Group& group : database.document().groups(*record)) {
        if ((group.code() == 100 && ++markers > 1) || group.code() >= 1000) break;
        if (group.code() == 420) {
            if (const auto value = group.integer()) result.color = trueColor(*value);
        } else if (group.code() == 370) {
            result.weight = static_cast<int>(group.integer().value_or(Pen::byLayer));
        } else if (group.code() == 48) {
            const auto value = group.real();
            if (value && *value > 0.0) result.linetypeScale = *value;
        }
    }
    return result;
}

Ink inkOf(const CommonGroups& common, int color) {
    if (common.color) return {Ink::Rule::own, *common.color};
    if (color == colorByBlock) return {Ink::Rule::block, {}};
    if (color == colorByLayer) return {Ink::Rule::layer, {}};
    return {Ink::Rule::own, indexedColor(std::abs(color))};
}

template <class T>
Look orNothing(std::optional<T> look) {
    return look ? Look(std::move(*look)) : Look();
}

Look lookOfText(const database::TextFields& fields, std::optional<double> rotation) {
    database::TextFields text = fields;
    text.rotation = rotation.value_or(text.rotation);
    const auto* attribute = dynamic_cast<const database::AttributeFields*>(&fields);
    // A definition shows its tag, a fixed one what every reference shows.
    const bool showsTag = attribute != nullptr && attribute->isDefinition &&
                          (attribute->flags & constantAttribute) == 0;
    return orNothing(letteringOf(text, showsTag ? attribute->tag : text.text));
}

// A face's hidden edges are left out; solids are filled and come row by row.
Path outlineOf(const database::CornerFields& fields, bool isFace) {
    const int order[] = {0, 1, isFace ? 2 : 3, isFace ? 3 : 2};
    const AcGeMatrix3d plane = isFace ? AcGeMatrix3d() : AcGeMatrix3d::planeToWorld(fields.normal);
    Path path;
    bool drawing = false;
    for (int i = 0; i < 4; ++i) {
        const bool hidden = isFace && (fields.hiddenEdges >> i & 1) != 0;
        const AcGePoint3d from = plane * fields.corner(order[i]);
        const AcGePoint3d to = plane * fields.corner(order[(i + 1) % 4]);
        if (!hidden && !drawing) path.moveTo(from);
        if (!hidden) path.lineTo(to);
        drawing = !hidden;
    }
    return path;
}

class Observer {
  public:
    Observer(AcDbImpDatabase& database, ObjectNumber number, double largestError,
             std::optional<double> rotation)
        : database_(database), largestError_(largestError), rotation_(rotation) {
        piece_.number = number;
    }

    Piece observe() {
        const AcDbObject* object = database_.object(piece_.number);
        const auto* entity = object == nullptr ? nullptr : AcDbEntity::cast(object);
        if (entity == nullptr || object->isErased()) return std::move(piece_);
        const auto& fields = database::fieldsOf<database::EntityFields>(*entity);
        piece_.layer = fields.layer;
        const CommonGroups common = commonGroups(database_, piece_.number);
        piece_.ink = inkOf(common, fields.color);
        piece_.pen = {fields.linetype, common.linetypeScale, common.weight, 0.0};
        piece_.invisible = fields.invisible != 0;
        if (!fields.unreadable) look(*entity, fields);
        return std::move(piece_);
    }

  private:
    void be(const char* kind, Look look) {
        piece_.kind = kind;
        piece_.look = std::move(look);
    }

    void look(const AcDbEntity& entity, const database::EntityFields& fields) {
        if (const database::Curve* curve = entity.impl()->curve()) {
            lookAtCurve(entity, *curve, kindOfCurve(fields));
        } else if (const auto* text = dynamic_cast<const database::TextFields*>(&fields)) {
            lookAtText(*text);
        } else if (const auto* paragraph = dynamic_cast<const database::MTextFields*>(&fields)) {
            const double rotation = static_cast<const AcDbMText&>(entity).rotation();
            be("mtext", orNothing(letteringOf(*paragraph, rotation)));
        } else if (const auto* corners = dynamic_cast<const database::CornerFields*>(&fields)) {
            lookAtCorners(*corners, entity.isKindOf(AcDbFace::desc()));
        } else if (const auto* point = dynamic_cast<const database::PointFields*>(&fields)) {
            be("point", dot(point->position));
        } else if (dynamic_cast<const database::InsertFields*>(&fields) != nullptr) {
            lookAtReference(static_cast<const AcDbBlockReference&>(entity));
        } else if (const auto* dimension =
                       dynamic_cast<const database::DimensionFields*>(&fields)) {
            lookAtDimension(*dimension);
        } else if (const auto* mline = dynamic_cast<const database::MlineFields*>(&fields)) {
            Path path;
            for (const database::Chain& line : mline->lines()) path.add(line);
            be("mline", path.empty() ? Look() : Look(std::move(path)));
        } else if (const auto record = database_.recordOf(piece_.number);
                   record && database_.document().type(*record) == "HATCH") {
            lookAtHatch(*record);
        } else if (dynamic_cast<const database::OldPolylineFields*>(&fields) != nullptr) {
            lookAtMesh(entity.objectId());
        }
    }

    static const char* kindOfCurve(const database::EntityFields& fields) {
        if (dynamic_cast<const database::LineFields*>(&fields) != nullptr) return "line";
        if (dynamic_cast<const database::PolylineFields*>(&fields) != nullptr) return "lwpolyline";
        if (dynamic_cast<const database::OldPolylineFields*>(&fields) != nullptr) return "polyline";
        if (dynamic_cast<const database::CircleFields*>(&fields) != nullptr) return "circle";
        if (dynamic_cast<const database::ArcFields*>(&fields) != nullptr) return "arc";
        if (dynamic_cast<const database::EllipseFields*>(&fields) != nullptr) return "ellipse";
        if (dynamic_cast<const database::SplineFields*>(&fields) != nullptr) return "spline";
        if (dynamic_cast<const database::LeaderFields*>(&fields) != nullptr) return "leader";
        return "curve";
    }

    // A polyline of one width is a line of it, any other wide one an area.
    void lookAtCurve(const AcDbEntity& entity, const database::Curve& curve, const char* kind) {
        const std::vector<SegmentWidth> widths = segmentWidths(database_, entity);
        Path path;
        if (widths.empty() || isEven(widths)) {
            path.add(curve, largestError_);
            piece_.pen.width = widths.empty() ? 0.0 : widths.front().start;
        } else {
            path = bandAlong(curve, database::planeNormal(entity), widths);
            piece_.filled = true;
        }
        be(kind, std::move(path));
    }

    void lookAtHatch(dxf::RecordIndex record) {
        auto area = areaOfHatch(database_.document(), record);
        if (!area) return;
        be(area->isSolid ? "hatch" : "hatch pattern", std::move(area->boundary));
        piece_.filled = true;
        piece_.beneath = true;
    }

    static Path dot(const AcGePoint3d& point) {
        Path path;
        path.moveTo(point);
        path.lineTo(point);
        return path;
    }

    void lookAtText(const database::TextFields& text) {
        const auto* attribute = dynamic_cast<const database::AttributeFields*>(&text);
        be(attribute == nullptr      ? "text"
           : attribute->isDefinition ? "attdef"
                                     : "attrib",
           lookOfText(text, rotation_));
        if (attribute != nullptr && (attribute->flags & invisibleAttribute) != 0)
            piece_.invisible = true;
    }

    void lookAtCorners(const database::CornerFields& corners, bool isFace) {
        be(isFace ? "face" : "solid", outlineOf(corners, isFace));
        piece_.filled = !isFace;
    }

    void lookAtReference(const AcDbBlockReference& entity) {
        // A copy: the entity may be forgotten while its attributes are looked at.
        const auto fields = database::fieldsOf<database::InsertFields>(entity);
        Reference reference;
        reference.place = entity.blockTransform();
        const AcGeMatrix3d plane = AcGeMatrix3d::planeToWorld(fields.normal);
        double angle = fields.rotation;
        if (rotation_) {
            const AcGePoint3d center = plane * fields.position;
            reference.place =
                AcGeMatrix3d::rotation(*rotation_ - angle, plane * AcGeVector3d::kZAxis, center) *
                reference.place;
            angle = *rotation_;
        }
        // Columns and rows run along the axes of the turned reference, unscaled.
        const AcGeMatrix3d turned = plane * AcGeMatrix3d::rotation(angle, AcGeVector3d::kZAxis);
        reference.columnStep = turned * AcGeVector3d(fields.columnSpacing, 0.0, 0.0);
        reference.rowStep = turned * AcGeVector3d(0.0, fields.rowSpacing, 0.0);
        reference.columns = std::max(fields.columns, 1);
        reference.rows = std::max(fields.rows, 1);
        if (!rotation_) addAttributes(reference);
        const auto block = database_.find(database::Table::block, fields.block);
        reference.hasBlock = block.has_value();
        reference.block = block.value_or(0);
        be("insert", std::move(reference));
    }

    void addAttributes(Reference& reference) {
        for (const ObjectNumber number : database_.subEntitiesOf(piece_.number))
            reference.attributes.push_back(pieceOf(database_, number, largestError_));
    }

    void lookAtDimension(const database::DimensionFields& dimension) {
        const auto block = database_.find(database::Table::block, dimension.block);
        Reference reference;
        reference.block = block.value_or(0);
        be("dimension", block ? Look(std::move(reference)) : Look());
    }

    void lookAtMesh(AcDbObjectId id) {
        Path path;
        for (const database::Chain& chain : database::drawnChains(id, largestError_))
            path.add(chain);
        be("mesh", path.empty() ? Look() : Look(std::move(path)));
    }

    AcDbImpDatabase& database_;
    const double largestError_;
    const std::optional<double> rotation_;
    Piece piece_;
};

// Attribute definitions show in their block only, but for those whose value is fixed.
bool isDrawnInReferences(const AcDbImpDatabase& database, ObjectNumber number) {
    const AcRxClass* type = database.classOf(number);
    if (type == nullptr || !type->isDerivedFrom(AcDbAttributeDefinition::desc())) return true;
    database::AttributeFields read;
    const auto& fields =
        static_cast<const database::AttributeFields&>(database.fieldsAt(number, read));
    return (fields.flags & constantAttribute) != 0;
}

}  // namespace

Piece pieceOf(AcDbImpDatabase& database, ObjectNumber number, double largestError,
              std::optional<double> rotation) {
    return Observer(database, number, largestError, rotation).observe();
}

std::vector<Piece> contentOf(AcDbImpDatabase& database, ObjectNumber block) {
    // Blocks are drawn in any size, so that no error can be told here.
    constexpr double anyError = 1e300;
    std::vector<Piece> content;
    for (const ObjectNumber number : database.entitiesOf(block)) {
        if (database.isErased(number) || !isDrawnInReferences(database, number)) continue;
        content.push_back(pieceOf(database, number, anyError));
    }
    return content;
}

}  // namespace host::picture
