// Multi-lines: their styles, and the joints of their lines.
#include <dbmline.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "host/database/DatabaseImp.h"
#include "host/database/Fault.h"
#include "host/database/MlineElements.h"
#include "host/database/ObjectFields.h"
#include "host/database/ObjectImp.h"
#include "host/database/RecordWriter.h"
#include "host/database/Setting.h"
#include "host/database/SymbolNames.h"

using namespace host::database;

ACRX_DXF_DEFINE_MEMBERS(AcDbMlineStyle, AcDbObject, 0, 0, 0, MLINESTYLE, ObjectDBX)
ACRX_DXF_DEFINE_MEMBERS(AcDbMline, AcDbEntity, 0, 0, 0, MLINE, ObjectDBX)

namespace host::database {
namespace {

constexpr int kElementOffset = 49;
// At a vertex, for each line: how many values follow, and these values. The first is where the
// line passes, the others where it is drawn.
constexpr int kLineValues = 74;
constexpr int kLineValue = 41;

// Lines that end so flat have no end to speak of; they are cut across.
constexpr double kFlattest = 1e-10;

}  // namespace

FieldTable MlineStyleFields::fieldTable() {
    return {field<&MlineStyleFields::name>(2), field<&MlineStyleFields::flags>(70)};
}

bool MlineStyleFields::takeGroup(const dxf::Document& /*document*/, const dxf::Group& group) {
    constexpr int kStartAngle = 51;
    constexpr int kEndAngle = 52;
    const bool isElement = group.code() == kElementOffset;
    if (!isElement && group.code() != kStartAngle && group.code() != kEndAngle) return true;
    const auto value = group.real();
    if (!value) return false;
    if (isElement) {
        read_.push_back(*value);
    } else {
        (group.code() == kStartAngle ? elements.startAngle : elements.endAngle) = toRadians(*value);
    }
    return true;
}

void MlineStyleFields::finish(const std::function<bool(int)>& /*seen*/) {
    if (!read_.empty()) elements.offsets = read_;
}

void MlineStyleFields::write(RecordWriter& out) const {
    constexpr std::int64_t kByLayer = 256;
    out.beginObject("MLINESTYLE");
    out.marker(L"AcDbMlineStyle");
    out.text(2, name);
    out.integer(70, flags);
    out.text(3, {});
    out.integer(62, kByLayer);
    out.angle(51, elements.startAngle);
    out.angle(52, elements.endAngle);
    out.integer(71, static_cast<std::int64_t>(elements.offsets.size()));
    for (const double offset : elements.offsets) {
        out.real(kElementOffset, offset);
        out.integer(62, kByLayer);
        out.text(6, L"BYLAYER");
    }
}

FieldTable MlineFields::fieldTable() {
    return entityTable({field<&MlineFields::style>(2), field<&MlineFields::scale>(40),
                        field<&MlineFields::justification>(70), field<&MlineFields::flags>(71),
                        field<&MlineFields::normal>(210)});
}

bool MlineFields::takeGroup(const dxf::Document& /*document*/, const dxf::Group& group) {
    const int code = group.code();
    const bool beginsLine = code == kLineValues && !joints.empty();
    if (beginsLine) joints.back().crossings.push_back(0.0);
    if (beginsLine) crossingFollows_ = true;
    const bool isPoint = code == 11 || code == 21 || code == 31;
    const bool isMiter = code == 13 || code == 23 || code == 33;
    const bool isCrossing = code == kLineValue && crossingFollows_;
    if (!isPoint && !isMiter && !isCrossing) return true;
    const auto value = group.real();
    if (!value) return false;
    if (code == 11) {
        points.emplace_back();
        joints.emplace_back();
    }
    if (points.empty()) return true;
    const auto axis = static_cast<unsigned>(code / 10 - 1);
    if (isPoint) points.back()[axis] = *value;
    if (isMiter) joints.back().miter[axis] = *value;
    if (isCrossing) joints.back().crossings.back() = *value;
    crossingFollows_ = crossingFollows_ && !isCrossing;
    return true;
}

Acad::ErrorStatus MlineFields::mayBeWritten(const Manner& manner) const {
    if (!manner.atLeast(dxf::Release::R13)) return Acad::eInvalidDwgVersion;
    return points.size() < 2 ? Acad::eInvalidInput : Acad::eOk;
}

Fields::Names MlineFields::namesUsed() const {
    Names names = EntityFields::namesUsed();
    names.emplace_back(Table::mlineStyle, &style);
    return names;
}

bool MlineFields::isFinite() const {
    if (!FieldsOf::isFinite()) return false;
    const double left = *std::max_element(elements.offsets.begin(), elements.offsets.end());
    const double right = *std::min_element(elements.offsets.begin(), elements.offsets.end());
    const std::vector<Vertex> all = vertices();
    return std::all_of(all.begin(), all.end(), [&](const Vertex& v) {
        const AcGePoint3d sum = v.position + v.direction + v.miter;
        return database::isFinite(sum) && std::isfinite((left + shift()) * v.stretch) &&
               std::isfinite((right + shift()) * v.stretch);
    });
}

AcGePoint3d MlineFields::position(std::size_t index) const {
    const AcGeVector3d across = normal.normal();
    return points[index] - across * (points[index] - points.front()).dotProduct(across);
}

// A segment without length goes on as the one before it, at the beginning as the first one that has
// a direction.
std::vector<AcGeVector3d> MlineFields::directions() const {
    std::vector<AcGeVector3d> result;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const bool isLast = i + 1 == points.size();
        const std::size_t next = !isLast ? i + 1 : isClosedLine() ? 0 : i;
        const AcGeVector3d along = position(next) - position(i);
        if (!along.isZeroLength()) {
            result.resize(i, along.normal());
            result.push_back(along.normal());
        } else if (!result.empty()) {
            result.push_back(result.back());
        }
    }
    result.resize(points.size(), normal.perpVector());
    return result;
}

std::vector<MlineFields::Vertex> MlineFields::vertices() const {
    const std::vector<AcGeVector3d> along = directions();
    std::vector<Vertex> result;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const bool isFirst = i == 0;
        const bool isLast = i + 1 == points.size();
        const bool isEnd = !isClosedLine() && (isFirst || isLast);
        Vertex vertex{position(i), along[i], normal.crossProduct(along[i]), scale};
        const double angle = isFirst ? elements.startAngle : elements.endAngle;
        const AcGeVector3d both = along[isFirst ? points.size() - 1 : i - 1] + along[i];
        if (isEnd && std::fabs(std::sin(angle)) > kFlattest) {
            vertex.miter = AcGeVector3d(along[i]).rotateBy(angle, normal);
            vertex.stretch = scale / std::sin(angle);
        } else if (!isEnd && both.length() > kFlattest) {
            const AcGeVector3d middle = both.normal();
            vertex.miter = normal.crossProduct(middle);
            vertex.stretch = scale / middle.dotProduct(along[i]);
        }
        result.push_back(vertex);
    }
    return result;
}

double MlineFields::shift() const {
    const auto [right, left] =
        std::minmax_element(elements.offsets.begin(), elements.offsets.end());
    return justification == Mline::kTop ? -*left : justification == Mline::kBottom ? -*right : 0.0;
}

std::vector<MlineFields::Joint> MlineFields::ownJoints() const {
    std::vector<Joint> result;
    for (const Vertex& vertex : vertices()) {
        result.push_back({vertex.miter, {}});
        for (const double offset : elements.offsets) {
            result.back().crossings.push_back((offset + shift()) * vertex.stretch);
        }
    }
    return result;
}

std::vector<std::vector<AcGePoint3d>> MlineFields::lines() const {
    const std::vector<Joint> all = joints.empty() ? ownJoints() : joints;
    if (all.empty()) return {};
    std::size_t count = all.front().crossings.size();
    for (const Joint& joint : all) count = std::min(count, joint.crossings.size());
    std::vector<std::vector<AcGePoint3d>> result(std::max<std::size_t>(count, 1));
    for (std::size_t line = 0; line < result.size(); ++line) {
        for (std::size_t i = 0; i < all.size(); ++i) {
            const double crossing = count == 0 ? 0.0 : all[i].crossings[line];
            const AcGePoint3d vertex = joints.empty() ? position(i) : points[i];
            result[line].push_back(vertex + all[i].miter * crossing);
        }
        if (isClosedLine()) result[line].push_back(result[line].front());
    }
    return result;
}

void takeElements(MlineFields& mline, const AcDbImpDatabase& database) {
    const auto style = database.find(Table::mlineStyle, mline.style);
    if (!style) return;
    MlineStyleFields read;
    mline.elements = static_cast<const MlineStyleFields&>(database.fieldsAt(*style, read)).elements;
}

void MlineFields::writeWith(RecordWriter& out, std::uint64_t styleHandle) const {
    out.beginEntity("MLINE", *this);
    out.marker(L"AcDbMline");
    out.text(2, style);
    out.handleGroup(340, styleHandle);
    out.real(40, scale);
    out.integer(70, justification);
    out.integer(71, flags | kHasVertices);
    out.integer(72, static_cast<std::int64_t>(points.size()));
    out.integer(73, static_cast<std::int64_t>(elements.offsets.size()));
    out.point(10, points.front());
    out.vector(210, normal);
    for (const Vertex& vertex : vertices()) {
        out.point(11, vertex.position);
        out.vector(12, vertex.direction);
        out.vector(13, vertex.miter);
        for (const double offset : elements.offsets) {
            // The place on the miter, and the start of the line from there.
            out.integer(kLineValues, 2);
            out.real(kLineValue, (offset + shift()) * vertex.stretch);
            out.real(kLineValue, 0.0);
            out.integer(75, 0);
        }
    }
}

}  // namespace host::database

namespace {

template <class Change>
Acad::ErrorStatus changeMline(AcDbMline& mline, Change change) {
    if (mline.impl()->isFromDrawing()) return Acad::eNotImplementedYet;
    const AcDbImpDatabase* const database = AcDbImpDatabase::of(mline.objectId());
    if (database == nullptr) return host::database::change<MlineFields>(mline, change);
    // In a database it is complete and can be written.
    MlineFields changed = fieldsOf<MlineFields>(mline);
    change(changed);
    takeElements(changed, *database);
    if (!changed.isFinite()) return Acad::eInvalidInput;
    return host::database::change<MlineFields>(
        mline, [&changed](MlineFields& fields) { fields = std::move(changed); });
}

}  // namespace

AcDbMlineStyle::AcDbMlineStyle() {
    impl()->setFields(std::make_unique<MlineStyleFields>());
}
const ACHAR* AcDbMlineStyle::name() const {
    return fieldsOf<MlineStyleFields>(*this).name.c_str();
}
int AcDbMlineStyle::numElements() const {
    return static_cast<int>(fieldsOf<MlineStyleFields>(*this).elements.offsets.size());
}

AcDbMline::AcDbMline() {
    impl()->setFields(std::make_unique<MlineFields>());
}
Acad::ErrorStatus AcDbMline::setStyle(const AcDbObjectId& style) {
    HOST_CALL("AcDbMline::setStyle");
    std::wstring name;
    const Acad::ErrorStatus status = nameOfSymbol(style, AcDbMlineStyle::desc(), name);
    if (status != Acad::eOk) return status;
    return changeMline(*this, [&](MlineFields& fields) { fields.style = name; });
}
AcDbObjectId AcDbMline::style() const {
    const AcDbImpDatabase* const database = databaseFor(*this);
    if (database == nullptr) return {};
    return database->idOf(database->find(Table::mlineStyle, fieldsOf<MlineFields>(*this).style));
}
Acad::ErrorStatus AcDbMline::setJustification(Mline::MlineJustification justification) {
    HOST_CALL("AcDbMline::setJustification");
    const int value = justification;
    if (value < Mline::kTop || value > Mline::kBottom) return Acad::eInvalidInput;
    return changeMline(*this, [&](MlineFields& fields) { fields.justification = value; });
}
Mline::MlineJustification AcDbMline::justification() const {
    const int value = fieldsOf<MlineFields>(*this).justification;
    return value == Mline::kZero     ? Mline::kZero
           : value == Mline::kBottom ? Mline::kBottom
                                     : Mline::kTop;
}
Acad::ErrorStatus AcDbMline::setScale(double scale) {
    HOST_CALL("AcDbMline::setScale");
    if (!std::isfinite(scale)) return Acad::eInvalidInput;
    return changeMline(*this, [&](MlineFields& fields) { fields.scale = scale; });
}
double AcDbMline::scale() const {
    return fieldsOf<MlineFields>(*this).scale;
}
Acad::ErrorStatus AcDbMline::setNormal(const AcGeVector3d& normal) {
    HOST_CALL("AcDbMline::setNormal");
    if (!isDirection(normal)) return Acad::eInvalidInput;
    return changeMline(*this, [&](MlineFields& fields) { fields.normal = normal.normal(); });
}
AcGeVector3d AcDbMline::normal() const {
    return fieldsOf<MlineFields>(*this).normal;
}
Acad::ErrorStatus AcDbMline::appendSeg(const AcGePoint3d& vertex) {
    HOST_CALL("AcDbMline::appendSeg");
    if (!isFinite(vertex)) return Acad::eInvalidInput;
    return changeMline(*this, [&](MlineFields& fields) { fields.points.push_back(vertex); });
}
int AcDbMline::numVertices() const {
    return static_cast<int>(fieldsOf<MlineFields>(*this).points.size());
}
AcGePoint3d AcDbMline::vertexAt(int index) const {
    if (index < 0 || index >= numVertices()) return {};
    const auto& fields = fieldsOf<MlineFields>(*this);
    const auto vertex = static_cast<std::size_t>(index);
    return impl()->isFromDrawing() ? fields.points[vertex] : fields.position(vertex);
}
Acad::ErrorStatus AcDbMline::setClosedMline(bool closed) {
    HOST_CALL("AcDbMline::setClosedMline");
    return changeMline(*this, [&](MlineFields& fields) {
        fields.flags =
            closed ? fields.flags | MlineFields::kClosed : fields.flags & ~MlineFields::kClosed;
    });
}
bool AcDbMline::closedMline() const {
    return fieldsOf<MlineFields>(*this).isClosedLine();
}
