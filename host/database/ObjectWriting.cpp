// New objects as records: which releases have them, and their groups in the order of the format.
#include <cmath>

#include "host/database/Names.h"
#include "host/database/ObjectFields.h"
#include "host/database/RecordWriter.h"

namespace host::database {
namespace {

using dxf::Release;

Acad::ErrorStatus since(Release first, const Manner& manner) {
    return manner.atLeast(first) ? Acad::eOk : Acad::eInvalidDwgVersion;
}

// The light polyline came with R14.
bool hasLightPolylines(const Manner& manner) {
    return manner.atLeast(Release::R14);
}

}  // namespace

Fields::Names EntityFields::namesUsed() const {
    return {{Table::layer, &layer}, {Table::linetype, &linetype}};
}

Acad::ErrorStatus LineFields::mayBeWritten(const Manner& /*manner*/) const {
    return Acad::eOk;
}
void LineFields::write(RecordWriter& out) const {
    out.beginEntity("LINE", *this);
    out.marker(L"AcDbLine");
    out.real(39, thickness, 0.0);
    out.point(10, start);
    out.point(11, end);
    out.normal(normal);
}

Acad::ErrorStatus PointFields::mayBeWritten(const Manner& /*manner*/) const {
    return Acad::eOk;
}
void PointFields::write(RecordWriter& out) const {
    out.beginEntity("POINT", *this);
    out.marker(L"AcDbPoint");
    out.point(10, position);
    out.real(39, thickness, 0.0);
    out.normal(normal);
}

Acad::ErrorStatus CircleFields::mayBeWritten(const Manner& /*manner*/) const {
    return Acad::eOk;
}
void CircleFields::write(RecordWriter& out) const {
    out.beginEntity("CIRCLE", *this);
    out.marker(L"AcDbCircle");
    out.real(39, thickness, 0.0);
    out.point(10, center);
    out.real(40, radius);
    out.normal(normal);
}

Acad::ErrorStatus ArcFields::mayBeWritten(const Manner& /*manner*/) const {
    return Acad::eOk;
}
void ArcFields::write(RecordWriter& out) const {
    out.beginEntity("ARC", *this);
    out.marker(L"AcDbCircle");
    out.real(39, thickness, 0.0);
    out.point(10, center);
    out.real(40, radius);
    out.normal(normal);
    out.marker(L"AcDbArc");
    out.angle(50, startAngle);
    out.angle(51, endAngle);
}

Acad::ErrorStatus EllipseFields::mayBeWritten(const Manner& manner) const {
    return since(Release::R13, manner);
}
void EllipseFields::write(RecordWriter& out) const {
    out.beginEntity("ELLIPSE", *this);
    out.marker(L"AcDbEllipse");
    out.point(10, center);
    out.vector(11, major);
    out.normal(normal);
    out.real(40, ratio);
    out.real(41, start);
    out.real(42, end);
}

Acad::ErrorStatus PolylineFields::mayBeWritten(const Manner& /*manner*/) const {
    return Acad::eOk;
}
bool PolylineFields::isFinite() const {
    for (const Vertex& v : vertices) {
        for (const double number : {v.x, v.y, v.bulge, v.startWidth, v.endWidth}) {
            if (!std::isfinite(number)) return false;
        }
    }
    return FieldsOf::isFinite();
}
void PolylineFields::write(RecordWriter& out) const {
    if (!hasLightPolylines(out.manner())) {
        writeAsOld(out);
        return;
    }
    out.beginEntity("LWPOLYLINE", *this);
    out.marker(L"AcDbPolyline");
    out.integer(90, static_cast<std::int64_t>(vertices.size()));
    out.integer(70, flags);
    out.real(43, constantWidth, 0.0);
    out.real(38, elevation, 0.0);
    out.real(39, thickness, 0.0);
    for (const Vertex& vertex : vertices) {
        out.real(10, vertex.x);
        out.real(20, vertex.y);
        const bool hasWidth = vertex.startWidth != 0.0 || vertex.endWidth != 0.0;
        if (hasWidth) out.real(40, vertex.startWidth);
        if (hasWidth) out.real(41, vertex.endWidth);
        out.real(42, vertex.bulge, 0.0);
    }
    out.normal(normal);
}
void PolylineFields::writeAsOld(RecordWriter& out) const {
    OldPolylineFields polyline;
    static_cast<EntityFields&>(polyline) = *this;
    polyline.origin.z = elevation;
    polyline.thickness = thickness;
    polyline.flags = flags & kClosed;
    polyline.normal = normal;
    polyline.write(out);
    for (const Vertex& vertex : vertices) {
        VertexFields corner;
        static_cast<EntityFields&>(corner) = *this;
        corner.position.set(vertex.x, vertex.y, elevation);
        const bool hasWidth = vertex.startWidth != 0.0 || vertex.endWidth != 0.0;
        corner.startWidth = hasWidth ? vertex.startWidth : constantWidth;
        corner.endWidth = hasWidth ? vertex.endWidth : constantWidth;
        corner.bulge = vertex.bulge;
        out.beginPart("VERTEX", corner);
        corner.writeOwn(out);
    }
    out.beginPart("SEQEND", *this);
}

Acad::ErrorStatus OldPolylineFields::mayBeWritten(const Manner& /*manner*/) const {
    return (flags & kPolygonMesh) != 0 ? Acad::eNotImplementedYet : Acad::eOk;
}
void OldPolylineFields::write(RecordWriter& out) const {
    out.beginEntity("POLYLINE", *this);
    out.marker((flags & kPolyface) != 0 ? L"AcDbPolyFaceMesh"
               : (flags & kSpace) != 0  ? L"AcDb3dPolyline"
                                        : L"AcDb2dPolyline");
    out.integer(66, 1);
    out.point(10, {0.0, 0.0, origin.z});
    out.real(39, thickness, 0.0);
    out.integer(70, flags);
    out.integer(71, countM, 0);
    out.integer(72, countN, 0);
    out.integer(75, smoothType, 0);
    out.normal(normal);
}

Acad::ErrorStatus VertexFields::mayBeWritten(const Manner& /*manner*/) const {
    return Acad::eOk;
}
void VertexFields::write(RecordWriter& out) const {
    out.beginEntity("VERTEX", *this);
    writeOwn(out);
}
void VertexFields::writeOwn(RecordWriter& out) const {
    const bool isFace = (flags & kPolyface) != 0 && (flags & kMesh) == 0;
    if (!isFace) out.marker(L"AcDbVertex");
    out.marker(isFace                     ? L"AcDbFaceRecord"
               : (flags & kPolyface) != 0 ? L"AcDbPolyFaceMeshVertex"
               : (flags & kSpace) != 0    ? L"AcDb3dPolylineVertex"
                                          : L"AcDb2dVertex");
    out.point(10, position);
    out.real(40, startWidth, 0.0);
    out.real(41, endWidth, 0.0);
    out.real(42, bulge, 0.0);
    out.integer(70, flags, 0);
    out.integer(71, corner1, 0);
    out.integer(72, corner2, 0);
    out.integer(73, corner3, 0);
    out.integer(74, corner4, 0);
}

Acad::ErrorStatus TextFields::mayBeWritten(const Manner& /*manner*/) const {
    return Acad::eOk;
}
Fields::Names TextFields::namesUsed() const {
    Names names = EntityFields::namesUsed();
    names.emplace_back(Table::textStyle, &style);
    return names;
}
void TextFields::writeText(RecordWriter& out) const {
    out.marker(L"AcDbText");
    out.real(39, thickness, 0.0);
    out.point(10, turnedPosition());
    out.real(40, height);
    out.text(1, text);
    out.angle(50, rotation, 0.0);
    out.real(41, widthFactor, 1.0);
    out.angle(51, oblique, 0.0);
    if (!sameName(style, L"STANDARD")) out.text(7, style);
    out.integer(71, mirrored, 0);
    out.integer(72, horizontal, 0);
    if (horizontal != 0 || vertical != 0) out.point(11, alignment);
    out.normal(normal);
}
void TextFields::write(RecordWriter& out) const {
    out.beginEntity("TEXT", *this);
    writeText(out);
    out.marker(L"AcDbText");
    out.integer(73, vertical, 0);
}

void AttributeFields::write(RecordWriter& out) const {
    out.beginEntity(isDefinition ? "ATTDEF" : "ATTRIB", *this);
    writeText(out);
    out.marker(isDefinition ? L"AcDbAttributeDefinition" : L"AcDbAttribute");
    if (out.manner().atLeast(Release::R2010)) out.integer(280, 0);
    if (isDefinition) out.text(3, prompt);
    out.text(2, tag);
    out.integer(70, flags);
    out.integer(74, vertical, 0);
}

Acad::ErrorStatus MTextFields::mayBeWritten(const Manner& manner) const {
    return since(Release::R13, manner);
}
Fields::Names MTextFields::namesUsed() const {
    Names names = EntityFields::namesUsed();
    names.emplace_back(Table::textStyle, &style);
    return names;
}
void MTextFields::write(RecordWriter& out) const {
    // A value of the format holds 250 characters; longer contents come in pieces.
    constexpr std::size_t kPiece = 250;
    out.beginEntity("MTEXT", *this);
    out.marker(L"AcDbMText");
    out.point(10, location);
    out.real(40, height);
    out.real(41, width);
    out.integer(71, attachment);
    out.integer(72, 1);
    std::size_t at = 0;
    for (; contents.size() - at > kPiece; at += kPiece) out.text(3, contents.substr(at, kPiece));
    out.text(1, contents.substr(at));
    if (!sameName(style, L"STANDARD")) out.text(7, style);
    out.normal(normal);
    out.angle(50, rotation, 0.0);
}

Acad::ErrorStatus InsertFields::mayBeWritten(const Manner& /*manner*/) const {
    return Acad::eOk;
}
Fields::Names InsertFields::namesUsed() const {
    Names names = EntityFields::namesUsed();
    names.emplace_back(Table::block, &block);
    return names;
}
void InsertFields::write(RecordWriter& out) const {
    writeWith(out, false);
}
void InsertFields::writeWith(RecordWriter& out, bool attributes) const {
    out.beginEntity("INSERT", *this);
    out.marker(isArray() ? L"AcDbMInsertBlock" : L"AcDbBlockReference");
    if (attributes) out.integer(66, 1);
    out.text(2, block);
    out.point(10, position);
    const bool scaled = scale.sx != 1.0 || scale.sy != 1.0 || scale.sz != 1.0;
    if (scaled) out.real(41, scale.sx);
    if (scaled) out.real(42, scale.sy);
    if (scaled) out.real(43, scale.sz);
    out.angle(50, rotation, 0.0);
    out.integer(70, columns, 1);
    out.integer(71, rows, 1);
    out.real(44, columnSpacing, 0.0);
    out.real(45, rowSpacing, 0.0);
    out.normal(normal);
}

Acad::ErrorStatus CornerFields::mayBeWritten(const Manner& /*manner*/) const {
    return Acad::eOk;
}
void CornerFields::write(RecordWriter& out) const {
    const bool isFace = kind == Kind::face;
    out.beginEntity(isFace ? "3DFACE" : kind == Kind::solid ? "SOLID" : "TRACE", *this);
    out.marker(isFace ? L"AcDbFace" : L"AcDbTrace");
    out.point(10, corner1);
    out.point(11, corner2);
    out.point(12, corner3);
    out.point(13, corner4);
    if (isFace) {
        out.integer(70, hiddenEdges, 0);
        return;
    }
    out.real(39, thickness, 0.0);
    out.normal(normal);
}

Acad::ErrorStatus LayerFields::mayBeWritten(const Manner& /*manner*/) const {
    return Acad::eOk;
}
Fields::Names LayerFields::namesUsed() const {
    return {{Table::linetype, &linetype}};
}
void LayerFields::write(RecordWriter& out) const {
    out.beginSymbol("LAYER", L"AcDbLayerTableRecord", *this);
    out.integer(62, color);
    out.text(6, linetype);
    if (out.manner().atLeast(Release::R2000)) out.integer(290, plottable, 1);
    constexpr std::int64_t kDefaultWeight = -3;
    if (out.manner().atLeast(Release::R2000)) out.integer(370, kDefaultWeight);
}

Acad::ErrorStatus LinetypeFields::mayBeWritten(const Manner& /*manner*/) const {
    return dashes == 0 ? Acad::eOk : Acad::eNotImplementedYet;
}
void LinetypeFields::write(RecordWriter& out) const {
    constexpr std::int64_t kAligned = 65;  // the format's only value
    out.beginSymbol("LTYPE", L"AcDbLinetypeTableRecord", *this);
    out.text(3, comments);
    out.integer(72, kAligned);
    out.integer(73, dashes);
    out.real(40, patternLength);
}

Acad::ErrorStatus TextStyleFields::mayBeWritten(const Manner& /*manner*/) const {
    return Acad::eOk;
}
void TextStyleFields::write(RecordWriter& out) const {
    constexpr double kLastHeight = 2.5;
    out.beginSymbol("STYLE", L"AcDbTextStyleTableRecord", *this);
    out.real(40, textSize);
    out.real(41, xScale);
    out.angle(50, oblique);
    out.integer(71, 0);
    out.real(42, textSize == 0.0 ? kLastHeight : textSize);
    out.text(3, fileName);
    out.text(4, {});
}

}  // namespace host::database
