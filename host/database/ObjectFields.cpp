#include "host/database/ObjectFields.h"

#include <cmath>

namespace host::database {
namespace {

bool takeReal(const dxf::Group& group, double& target) {
    const auto value = group.real();
    if (value) target = *value;
    return value.has_value();
}

// One coordinate of a list of points: x begins a new one.
bool takePoint(const dxf::Group& group, int xCode, std::vector<AcGePoint3d>& points) {
    if (group.code() == xCode) points.emplace_back();
    // A y or z before any x belongs to no point.
    if (points.empty()) return true;
    return takeReal(group, points.back()[static_cast<unsigned>((group.code() - xCode) / 10)]);
}

bool isPointGroup(const dxf::Group& group, int xCode) {
    return group.code() == xCode || group.code() == xCode + 10 || group.code() == xCode + 20;
}

}  // namespace

FieldTable EntityFields::entityTable(std::initializer_list<FieldSpec> own) {
    FieldTable table = {field<&EntityFields::layer>(kLayerCode), field<&EntityFields::linetype>(6),
                        field<&EntityFields::color>(62), field<&EntityFields::invisible>(60),
                        field<&EntityFields::paperSpace>(67)};
    table.insert(table.end(), own);
    return table;
}

void EntityFields::useOldElevation(const std::function<bool(int)>& seen, int zCode,
                                   double& z) const {
    if (seen(38) && !seen(zCode)) z = oldElevation;
}

FieldTable DimensionFields::fieldTable() {
    return entityTable({field<&DimensionFields::block>(2), field<&DimensionFields::type>(70)});
}

bool LeaderFields::takeGroup(const dxf::Document& /*document*/, const dxf::Group& group) {
    return !isPointGroup(group, 10) || takePoint(group, 10, vertices);
}

FieldTable LineFields::fieldTable() {
    return entityTable({field<&LineFields::oldElevation>(38), field<&LineFields::thickness>(39),
                        field<&LineFields::start>(10), field<&LineFields::end>(11),
                        field<&LineFields::normal>(210)});
}

void LineFields::finish(const std::function<bool(int)>& seen) {
    useOldElevation(seen, 30, start.z);
    useOldElevation(seen, 31, end.z);
}

FieldTable PointFields::fieldTable() {
    return entityTable({field<&PointFields::oldElevation>(38), field<&PointFields::position>(10),
                        field<&PointFields::thickness>(39), field<&PointFields::normal>(210)});
}

void PointFields::finish(const std::function<bool(int)>& seen) {
    useOldElevation(seen, 30, position.z);
}

FieldTable CircleFields::fieldTable() {
    return entityTable({field<&CircleFields::oldElevation>(38), field<&CircleFields::thickness>(39),
                        field<&CircleFields::center>(10), field<&CircleFields::radius>(40),
                        field<&CircleFields::normal>(210)});
}

void CircleFields::finish(const std::function<bool(int)>& seen) {
    useOldElevation(seen, 30, center.z);
}

FieldTable ArcFields::fieldTable() {
    return entityTable({field<&ArcFields::oldElevation>(38), field<&ArcFields::thickness>(39),
                        field<&ArcFields::center>(10), field<&ArcFields::radius>(40),
                        field<&ArcFields::normal>(210), angle<&ArcFields::startAngle>(50),
                        angle<&ArcFields::endAngle>(51)});
}

void ArcFields::finish(const std::function<bool(int)>& seen) {
    useOldElevation(seen, 30, center.z);
}

FieldTable EllipseFields::fieldTable() {
    return entityTable({field<&EllipseFields::center>(10), field<&EllipseFields::major>(11),
                        field<&EllipseFields::normal>(210), field<&EllipseFields::ratio>(40),
                        field<&EllipseFields::start>(41), field<&EllipseFields::end>(42)});
}

FieldTable SplineFields::fieldTable() {
    return entityTable({field<&SplineFields::flags>(70), field<&SplineFields::degree>(71),
                        field<&SplineFields::startTangent>(12),
                        field<&SplineFields::endTangent>(13)});
}

bool SplineFields::takeGroup(const dxf::Document& /*document*/, const dxf::Group& group) {
    if (group.code() == 40) return takeReal(group, knots.emplace_back());
    if (group.code() == 41) return takeReal(group, weights.emplace_back());
    if (isPointGroup(group, 10)) return takePoint(group, 10, controlPoints);
    if (isPointGroup(group, 11)) return takePoint(group, 11, fitPoints);
    return true;
}

void SplineFields::finish(const std::function<bool(int)>& seen) {
    hasStartTangent = seen(12);
    hasEndTangent = seen(13);
}

FieldTable PolylineFields::fieldTable() {
    return entityTable(
        {field<&PolylineFields::flags>(70), field<&PolylineFields::constantWidth>(43),
         field<&PolylineFields::elevation>(38), field<&PolylineFields::thickness>(39),
         field<&PolylineFields::normal>(210)});
}

bool PolylineFields::takeGroup(const dxf::Document& /*document*/, const dxf::Group& group) {
    if (group.code() == 10) return takeReal(group, vertices.emplace_back().x);
    if (vertices.empty()) return true;
    if (group.code() == 20) return takeReal(group, vertices.back().y);
    if (group.code() == 40) return takeReal(group, vertices.back().startWidth);
    if (group.code() == 41) return takeReal(group, vertices.back().endWidth);
    if (group.code() == 42) return takeReal(group, vertices.back().bulge);
    return true;
}

FieldTable OldPolylineFields::fieldTable() {
    return entityTable(
        {field<&OldPolylineFields::oldElevation>(38), field<&OldPolylineFields::origin>(10),
         field<&OldPolylineFields::thickness>(39), field<&OldPolylineFields::flags>(70),
         field<&OldPolylineFields::countM>(71), field<&OldPolylineFields::countN>(72),
         field<&OldPolylineFields::smoothType>(75), field<&OldPolylineFields::normal>(210)});
}

void OldPolylineFields::finish(const std::function<bool(int)>& seen) {
    useOldElevation(seen, 30, origin.z);
}

FieldTable VertexFields::fieldTable() {
    return entityTable({field<&VertexFields::position>(10), field<&VertexFields::startWidth>(40),
                        field<&VertexFields::endWidth>(41), field<&VertexFields::bulge>(42),
                        field<&VertexFields::flags>(70), field<&VertexFields::corner1>(71),
                        field<&VertexFields::corner2>(72), field<&VertexFields::corner3>(73),
                        field<&VertexFields::corner4>(74)});
}

FieldTable TextFields::textTable(std::initializer_list<FieldSpec> own, int verticalCode) {
    FieldTable table =
        entityTable({field<&TextFields::oldElevation>(38), field<&TextFields::thickness>(39),
                     field<&TextFields::position>(10), field<&TextFields::height>(40),
                     field<&TextFields::text>(1), angle<&TextFields::rotation>(50),
                     field<&TextFields::widthFactor>(41), angle<&TextFields::oblique>(51),
                     field<&TextFields::style>(7), field<&TextFields::mirrored>(71),
                     field<&TextFields::horizontal>(72), field<&TextFields::alignment>(11),
                     field<&TextFields::normal>(210)});
    table.insert(table.end(), own);
    table.push_back(field<&TextFields::vertical>(verticalCode));
    return table;
}

FieldTable TextFields::fieldTable() {
    return textTable({}, 73);
}

void TextFields::finish(const std::function<bool(int)>& seen) {
    useOldElevation(seen, 30, position.z);
    useOldElevation(seen, 31, alignment.z);
    hasAlignment = seen(11);
    if (!hasAlignment) alignment = position;
    rotationOfPosition = rotation;
}

AcGePoint3d TextFields::turnedPosition() const {
    const bool onBaselineLeft = horizontal == 0 && vertical == 0;
    const bool betweenPoints = horizontal == 3 || horizontal == 5;
    // A rotation that is written and read back as that of the position is that of the position.
    const bool standsSo =
        rotation == rotationOfPosition || toRadians(toDegrees(rotation)) == rotationOfPosition;
    if (onBaselineLeft || betweenPoints || !hasAlignment || standsSo) return position;
    const double turn = rotation - rotationOfPosition;
    const double c = std::cos(turn);
    const double s = std::sin(turn);
    const double dx = position.x - alignment.x;
    const double dy = position.y - alignment.y;
    return {alignment.x + (c * dx - s * dy), alignment.y + (s * dx + c * dy), position.z};
}

std::unique_ptr<Fields> TextFields::stored() const {
    std::unique_ptr<Fields> copy = clone();
    static_cast<TextFields&>(*copy).position = turnedPosition();
    return copy;
}

const FieldTable& AttributeFields::table() const {
    static const FieldTable instance =
        textTable({field<&AttributeFields::prompt>(3), field<&AttributeFields::tag>(2),
                   field<&AttributeFields::flags>(70)},
                  74);
    return instance;
}

FieldTable MTextFields::fieldTable() {
    return entityTable({field<&MTextFields::location>(10), field<&MTextFields::height>(40),
                        field<&MTextFields::width>(41), field<&MTextFields::attachment>(71),
                        field<&MTextFields::style>(7), field<&MTextFields::normal>(210),
                        field<&MTextFields::direction>(11), angle<&MTextFields::rotation>(50)});
}

bool MTextFields::takeGroup(const dxf::Document& document, const dxf::Group& group) {
    // Long contents come in pieces: 3 as often as needed, 1 the last.
    if (group.code() == 3 || group.code() == 1) contents += document.decode(group.bytes());
    return true;
}

void MTextFields::finish(const std::function<bool(int)>& seen) {
    hasDirection = seen(11) && !direction.isZeroLength();
}

FieldTable InsertFields::fieldTable() {
    return entityTable({field<&InsertFields::oldElevation>(38), field<&InsertFields::block>(2),
                        field<&InsertFields::position>(10), field<&InsertFields::scale>(41),
                        angle<&InsertFields::rotation>(50), field<&InsertFields::columns>(70),
                        field<&InsertFields::rows>(71), field<&InsertFields::columnSpacing>(44),
                        field<&InsertFields::rowSpacing>(45), field<&InsertFields::normal>(210)});
}

void InsertFields::finish(const std::function<bool(int)>& seen) {
    useOldElevation(seen, 30, position.z);
}

FieldTable CornerFields::fieldTable() {
    return entityTable({field<&CornerFields::oldElevation>(38), field<&CornerFields::corner1>(10),
                        field<&CornerFields::corner2>(11), field<&CornerFields::corner3>(12),
                        field<&CornerFields::corner4>(13), field<&CornerFields::hiddenEdges>(70),
                        field<&CornerFields::thickness>(39), field<&CornerFields::normal>(210)});
}

void CornerFields::finish(const std::function<bool(int)>& seen) {
    useOldElevation(seen, 30, corner1.z);
    useOldElevation(seen, 31, corner2.z);
    useOldElevation(seen, 32, corner3.z);
    useOldElevation(seen, 33, corner4.z);
    if (!seen(13)) corner4 = corner3;
}

const AcGePoint3d& CornerFields::corner(int index) const {
    const AcGePoint3d* const corners[] = {&corner1, &corner2, &corner3, &corner4};
    return *corners[index];
}

FieldTable OtherSymbolFields::fieldTable() {
    return {field<&OtherSymbolFields::name>(2), field<&OtherSymbolFields::flags>(70)};
}

FieldTable LayerFields::fieldTable() {
    return {field<&LayerFields::name>(2), field<&LayerFields::flags>(70),
            field<&LayerFields::color>(62), field<&LayerFields::linetype>(6),
            field<&LayerFields::plottable>(290)};
}

FieldTable LinetypeFields::fieldTable() {
    return {field<&LinetypeFields::name>(2), field<&LinetypeFields::flags>(70),
            field<&LinetypeFields::comments>(3), field<&LinetypeFields::dashes>(73),
            field<&LinetypeFields::patternLength>(40)};
}

FieldTable TextStyleFields::fieldTable() {
    return {field<&TextStyleFields::name>(2),      field<&TextStyleFields::flags>(70),
            field<&TextStyleFields::textSize>(40), field<&TextStyleFields::xScale>(41),
            angle<&TextStyleFields::oblique>(50),  field<&TextStyleFields::fileName>(3)};
}

FieldTable BlockFields::fieldTable() {
    return {field<&BlockFields::name>(2), field<&BlockFields::flags>(70),
            field<&BlockFields::origin>(10), field<&BlockFields::path>(1)};
}

}  // namespace host::database
