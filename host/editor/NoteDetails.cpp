// What LIST tells of dimensions, hatches, viewports, images and other entities that the host has no
// class for: what their groups say.
#include <dbmain.h>
#include <gemat3d.h>

#include <algorithm>
#include <cmath>
#include <iterator>

#include "host/database/Drawing.h"
#include "host/editor/EntityDetails.h"

namespace host::editor {

namespace {

AcGeVector3d normalOf(const GroupReader& groups) {
    if (!groups.has(210)) return AcGeVector3d::kZAxis;
    return groups.point(210) - AcGePoint3d::kOrigin;
}

// --- dimensions --------------------------------------------------------------------------------

struct DefiningPoint {
    int code;
    const wchar_t* what;
};

struct DimensionKind {
    const wchar_t* name;
    std::vector<DefiningPoint> points;
};

constexpr const wchar_t* firstOrigin = L"first extension line origin";
constexpr const wchar_t* secondOrigin = L"second extension line origin";

// By the low bits of group 70.
const DimensionKind& dimensionKind(long long type) {
    static const auto* const kinds = new std::vector<DimensionKind>{
        {L"linear", {{13, firstOrigin}, {14, secondOrigin}, {10, L"dimension line point"}}},
        {L"aligned", {{13, firstOrigin}, {14, secondOrigin}, {10, L"dimension line point"}}},
        {L"angular",
         {{13, L"first line from"},
          {14, L"first line to"},
          {15, L"second line from"},
          {10, L"second line to"},
          {16, L"arc point"}}},
        {L"diameter", {{10, L"far chord point"}, {15, L"chord point"}}},
        {L"radius", {{10, L"center point"}, {15, L"chord point"}}},
        {L"angular by three points",
         {{15, L"angle vertex"}, {13, firstOrigin}, {14, secondOrigin}, {10, L"arc point"}}},
        {L"ordinate", {{10, L"origin"}, {13, L"feature location"}, {14, L"leader endpoint"}}},
        {L"other", {{10, L"definition point"}}}};
    return (*kinds)[static_cast<std::size_t>(type & 7)];
}

// Points in the dimension's own coordinates; the others are in the world's.
bool isOwn(int code) {
    return code == 11 || code == 12 || code == 16;
}

void describeDimension(const AcDbEntity& entity, Details& details) {
    constexpr long long alongX = 64;
    constexpr int linear = 0;
    constexpr int ordinate = 6;
    const GroupReader groups(entity);
    const long long type = groups.whole(70);
    const DimensionKind& kind = dimensionKind(type);
    const AcGeMatrix3d toWorld = AcGeMatrix3d::planeToWorld(normalOf(groups));
    std::wstring name = kind.name;
    if ((type & 7) == ordinate) name += (type & alongX) != 0 ? L" X" : L" Y";
    details.line(name + L" dimension");
    const auto point = [&](int code, const wchar_t* what) {
        if (!groups.has(code)) return;
        const AcGePoint3d at = groups.point(code);
        details.point(what, isOwn(code) ? toWorld * at : at);
    };
    for (const DefiningPoint& defining : kind.points) point(defining.code, defining.what);
    if ((type & 7) == linear) details.angle(L"dimension line angle", groups.real(50));
    point(11, L"text position");
    if (!groups.text(1).empty()) details.quoted(L"text", groups.text(1));
    if (groups.has(42)) {
        const bool angular = (type & 7) == 2 || (type & 7) == 5;
        if (angular)
            details.angle(L"measurement", groups.real(42));
        else
            details.value(L"measurement", groups.real(42));
    }
    details.quoted(L"dimension style", groups.has(3) ? groups.text(3) : L"STANDARD");
    if (groups.has(2)) details.quoted(L"drawn by block", groups.text(2));
}

// --- others ------------------------------------------------------------------------------------

void describeHatch(const AcDbEntity& entity, Details& details) {
    const wchar_t* const styles[] = {L"normal", L"outer", L"ignore"};
    const GroupReader groups(entity);
    details.quoted(L"pattern", groups.text(2));
    const bool solid = groups.whole(70) != 0;
    if (solid) details.line(L"solid fill");
    details.line(groups.whole(71) != 0 ? L"associative" : L"not associative");
    const long long style = groups.whole(75);
    if (style >= 0 && style <= 2) details.line(std::wstring(L"style ") + styles[style]);
    if (!solid) {
        details.value(L"scale", groups.real(41, 1.0));
        details.angle(L"angle", groups.real(52));
        if (groups.whole(77) != 0) details.line(L"double");
    }
    details.count(L"boundaries", groups.whole(91));
    details.value(L"elevation", groups.point(10).z);
    details.normal(normalOf(groups));
}

void describeViewport(const AcDbEntity& entity, Details& details) {
    const GroupReader groups(entity);
    details.point(L"center point", groups.point(10));
    details.value(L"width", groups.real(40));
    details.value(L"height", groups.real(41));
    details.count(L"number", groups.whole(69));
    details.line(groups.whole(68) == 0 ? L"off" : L"on");
    if (groups.has(12)) details.point(L"view center", groups.point(12));
    if (!(groups.real(45) > 0.0)) return;
    details.value(L"view height", groups.real(45));
    details.value(L"scale relative to paper space", groups.real(41) / groups.real(45));
}

void describeTolerance(const AcDbEntity& entity, Details& details) {
    const GroupReader groups(entity);
    details.quoted(L"text", groups.text(1));
    details.point(L"at point", groups.point(10));
    if (groups.has(11)) details.vector(L"direction", groups.point(11) - AcGePoint3d::kOrigin);
    if (groups.has(3)) details.quoted(L"dimension style", groups.text(3));
}

void describeShape(const AcDbEntity& entity, Details& details) {
    const GroupReader groups(entity);
    details.quoted(L"shape", groups.text(2));
    details.point(L"at point", AcGeMatrix3d::planeToWorld(normalOf(groups)) * groups.point(10));
    details.value(L"size", groups.real(40));
    details.angle(L"rotation angle", groups.real(50));
    details.value(L"width factor", groups.real(41, 1.0));
    details.angle(L"obliquing angle", groups.real(51));
}

// Of IMAGE and WIPEOUT: the vectors are those of one of its points.
void describeImage(const AcDbEntity& entity, Details& details) {
    const GroupReader groups(entity);
    const AcGePoint3d size = groups.point(13);
    const AcGeVector3d across = groups.point(11) - AcGePoint3d::kOrigin;
    const AcGeVector3d up = groups.point(12) - AcGePoint3d::kOrigin;
    details.point(L"insertion point", groups.point(10));
    details.value(L"width", across.length() * size.x);
    details.value(L"height", up.length() * size.y);
    details.angle(L"rotation angle", std::atan2(across.y, across.x));
}

void describeUnderlay(const AcDbEntity& entity, Details& details) {
    const GroupReader groups(entity);
    details.point(L"insertion point", groups.point(10));
    details.value(L"X scale factor", groups.real(41, 1.0));
    details.value(L"Y scale factor", groups.real(42, 1.0));
    details.value(L"Z scale factor", groups.real(43, 1.0));
    details.angle(L"rotation angle", groups.real(50));
}

struct Note {
    const wchar_t* record;
    void (*describe)(const AcDbEntity& entity, Details& details);
};

constexpr Note notes[] = {{L"DIMENSION", describeDimension},  {L"HATCH", describeHatch},
                          {L"VIEWPORT", describeViewport},    {L"TOLERANCE", describeTolerance},
                          {L"SHAPE", describeShape},          {L"IMAGE", describeImage},
                          {L"WIPEOUT", describeImage},        {L"DGNUNDERLAY", describeUnderlay},
                          {L"DWFUNDERLAY", describeUnderlay}, {L"PDFUNDERLAY", describeUnderlay}};

}  // namespace

bool describeNote(const AcDbEntity& entity, Details& details) {
    const std::wstring record = database::recordName(entity.objectId());
    const auto* const found = std::find_if(std::begin(notes), std::end(notes),
                                           [&](const Note& note) { return note.record == record; });
    if (found == std::end(notes)) return false;
    found->describe(entity, details);
    return true;
}

}  // namespace host::editor
