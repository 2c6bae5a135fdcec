// What a command did to a drawing, as a picture shows it.
#pragma once

#include <dbid.h>

#include <string>
#include <vector>

namespace host::picture {

struct Turned {
    AcDbObjectId entity;
    double formerRotation = 0.0;  // radians, in the entity's own plane
    bool stoodSo = false;         // turned to where it stood, as the account counts it
    double moved = 0.0;           // how far its insertion point is from where it was
};

struct Left {
    AcDbObjectId entity;
    std::wstring reason;
};

struct Change {
    AcDbObjectId line;                       // the line that was picked; null for none
    std::vector<AcDbObjectId> earlierLines;  // of several runs those of the others
    std::vector<Turned> turned;
    std::vector<Left> left;  // selected, but not turned
};

}  // namespace host::picture
