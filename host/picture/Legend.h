// What a picture says about itself below the drawing.
#pragma once

#include <cstddef>
#include <map>
#include <string>

#include "host/database/Turning.h"
#include "host/picture/Picture.h"
#include "host/picture/Sheet.h"

namespace host::picture {

struct Tally {
    database::TurnCounts counts;
    std::map<std::wstring, std::size_t> reasons;  // of those left
    bool hasLine = false;
    bool hasMarks = false;
    std::wstring line;                            // "LWPOLYLINE 2F"
    std::size_t outside = 0;                      // of the drawing, beside the part that is shown
    std::size_t omitted = 0;                      // because the picture was full
    std::size_t abridged = 0;                     // shown as boxes
    std::map<std::wstring, std::size_t> unknown;  // without a known look, by class
};

// The group with the class "legend".
std::string legend(const Sheet& sheet, const Caption& caption, const Tally& tally);

}  // namespace host::picture
