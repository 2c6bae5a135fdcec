// AlignPolyLine: texts and block references turned along a picked line.
//
// The user picks a line-like entity, which gives the direction, and a selection. Each AcDbText and
// AcDbBlockReference of the selection is turned to follow the segment of the picked line that is
// nearest to it in plan: texts so that they stay right-reading, block references against the
// direction of the line or, if the user asks for it, along it. Angles are radians. The object is
// the direction line itself and is made anew for each run of the command.
//
// Failures are silent: a cancelled pick, an empty selection, an entity that cannot be opened or
// changed. Every entity is open only while it is being turned. No undo mark is made here; the
// host's undo of the command covers the changes.
#pragma once

#include <dbidar.h>

#include "GeomStructs/PolyLine.h"

class AcDbBlockReference;
class AcDbText;

// Intended: short decimals and no library's pi. These exact doubles end up in drawings.
constexpr double ALIGN_HALF_TURN = 3.14159;
constexpr double ALIGN_UPRIGHT_LOW = 1.5708;
constexpr double ALIGN_UPRIGHT_HIGH = 4.7124;
constexpr double ALIGN_FULL_TURN = 6.2832;

class AlignPolyLine : public TamLib::PolyLine {
  public:
    // No vertices, no vertex buffer, growth by 5.
    AlignPolyLine();

    // The whole command: pick, selection, a first pass, the question about the symbols, and a
    // second pass unless the reply is empty. The first pass comes before the question, so that the
    // user sees the entities turned when asked. The second pass computes every rotation afresh and
    // is run whatever the reply was. False when the pick or the selection failed.
    bool Run();

    // Asks for the entities and fills `entityIds` in the order of the selection; members without an
    // id are left out. True when the selection had members, whether or not any was taken.
    bool SelectEntities();

    // One pass over `entityIds`. Only entities whose class is exactly AcDbText or exactly
    // AcDbBlockReference are turned: array inserts, attribute definitions and everything else stay.
    // Returns true.
    bool AlignEntities();

    // Turns a text that is open for write to the angle at its reference point: `position` for left,
    // aligned and fitted texts on the base line, `alignmentPoint` for all others. An angle below
    // zero gets ALIGN_FULL_TURN; one strictly between ALIGN_UPRIGHT_LOW and ALIGN_UPRIGHT_HIGH, at
    // which the text would stand on its head, gets ALIGN_HALF_TURN. Nothing is reduced afterwards:
    // up to about 7.854 reaches the host. `flipSymbols` plays no part. Returns true.
    bool AlignText(AcDbText* text);

    // Turns a block reference that is open for write to the angle at its position, plus
    // ALIGN_HALF_TURN with `flipSymbols` set. Negative angles stay negative. Returns true.
    bool AlignBlockReference(AcDbBlockReference* reference);

    // The angle from the direction of the nearest segment back to the origin, that is of the
    // segment reversed, as `atan2` gives it; 6.283185307179585 for a segment without length.
    // Returns true.
    //
    // The segment is found again from its distance along the line, in which the distance is divided
    // by the total length and multiplied by it. Where that loses one rounding step, the segment
    // before gives the direction.
    bool GetAngleAtPoint(const TamLib::Point3d& point, double& angle);

    AcDbObjectIdArray entityIds;  // in the order of the selection; duplicates stay
    bool flipSymbols = false;     // the user wants block references turned half a revolution
};
