#include "AlignPolyLine.h"

#include <acdb.h>
#include <acdbads.h>
#include <acedads.h>
#include <acutads.h>
#include <adscodes.h>
#include <dbents.h>
#include <dbmain.h>

#include <cstdint>

using TamLib::Point3d;

namespace {

constexpr int kReplySize = 132;

Point3d ToPoint3d(const AcGePoint3d& point) {
    return {point.x, point.y, point.z};
}

// Intended: a lone "K" does not ask for the turn, while "k..." and "?K..." do.
bool AsksForFlip(const wchar_t* reply) {
    return reply[0] == L'k' || reply[1] == L'K';
}

// Whether the text hangs from its insertion point rather than from its alignment point.
bool StandsAtPosition(const AcDbText& text) {
    const AcDb::TextHorzMode horizontal = text.horizontalMode();
    return text.verticalMode() == AcDb::kTextBase &&
           (horizontal == AcDb::kTextLeft || horizontal == AcDb::kTextAlign ||
            horizontal == AcDb::kTextFit);
}

}  // namespace

AlignPolyLine::AlignPolyLine() : PolyLine(20) {
    PolyLine::operator=(PolyLine(0));
}

bool AlignPolyLine::Run() {
    if (Select(nullptr, nullptr, false, nullptr, nullptr, nullptr,
               L"\nValitse suunnan määräävä viiva : ", true) != 0) {
        return false;
    }
    if (!SelectEntities()) return false;
    AlignEntities();
    wchar_t reply[kReplySize] = {};  // an unanswered prompt counts as the empty reply
    acedGetString(0, L"\nKäännetäänkö symboleja 180 astetta k/<e> : ", reply);
    if (reply[0] == L'\0') return true;
    if (AsksForFlip(reply)) flipSymbols = true;
    return AlignEntities();
}

bool AlignPolyLine::SelectEntities() {
    acutPrintf(L"\nValitse suunnattavat kohteet : ");
    ads_name set;
    if (acedSSGet(nullptr, nullptr, nullptr, nullptr, set) != RTNORM) return false;
    Adesk::Int32 members = 0;
    if (acedSSLength(set, &members) != RTNORM) {
        acedSSFree(set);
        return false;
    }
    for (Adesk::Int32 index = 0; index < members; ++index) {
        ads_name name;
        AcDbObjectId id;
        if (acedSSName(set, index, name) == RTNORM && acdbGetObjectId(id, name) == Acad::eOk) {
            entityIds.append(id);
        }
    }
    acedSSFree(set);
    return members != 0;
}

bool AlignPolyLine::AlignEntities() {
    for (int index = 0; index < entityIds.length(); ++index) {
        AcDbEntity* entity = nullptr;
        if (acdbOpenAcDbEntity(entity, entityIds[index], AcDb::kForRead) != Acad::eOk) continue;
        // Exact classes, on purpose: what derives from them is left as it is.
        if (entity->isA() == AcDbText::desc()) {
            if (entity->upgradeOpen() != Acad::eOk) {
                entity->close();
                continue;
            }
            AlignText(static_cast<AcDbText*>(entity));
        }
        if (entity->isA() == AcDbBlockReference::desc() && entity->upgradeOpen() == Acad::eOk) {
            AlignBlockReference(static_cast<AcDbBlockReference*>(entity));
        }
        entity->close();
    }
    return true;
}

bool AlignPolyLine::AlignText(AcDbText* text) {
    const AcGePoint3d place = StandsAtPosition(*text) ? text->position() : text->alignmentPoint();
    double angle = 0.0;
    GetAngleAtPoint(ToPoint3d(place), angle);
    if (0.0 > angle) angle += ALIGN_FULL_TURN;
    if (angle > ALIGN_UPRIGHT_LOW && angle < ALIGN_UPRIGHT_HIGH) angle += ALIGN_HALF_TURN;
    text->setRotation(angle);
    return true;
}

bool AlignPolyLine::AlignBlockReference(AcDbBlockReference* reference) {
    double angle = 0.0;
    GetAngleAtPoint(ToPoint3d(reference->position()), angle);
    if (flipSymbols) angle += ALIGN_HALF_TURN;
    reference->setRotation(angle);
    return true;
}

bool AlignPolyLine::GetAngleAtPoint(const Point3d& point, double& angle) {
    const int index = NearestSegment(point, nullptr, nullptr);
    const double length = LengthToVertex(index);
    Point3d direction;
    DirectionAtLength(&direction, length);
    // Intended: from the direction to the origin. 0 - y keeps its sign where -y would not.
    angle = TamLib::Angle(direction, Point3d(0.0, 0.0, 0.0));
    return true;
}
