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
    std::size_t lines = 0;                        // that were picked
    std::wstring line;                            // the last of them: "LWPOLYLINE 2F"
    bool hasMarks = false;
    std::size_t outlined = 0;  // turned, with an outline: they stand as they stood
    std::size_t nearlySo = 0;  // of these, those that were turned by less than can be seen

    // What the picture does not show as it is.
    std::size_t elsewhere = 0;      // lines and turned entities outside of model space
    std::size_t turnedOutside = 0;  // turned, beside the part that is shown
    std::size_t groundsOnly = 0;    // turned, with their ground alone
    double labelHeight = 0.0;       // of the turned texts, in mm; 0: they can be read
    std::size_t ringed = 0;         // turned, too small for more than a ring
    std::size_t turnedOmitted = 0;  // turned, when the picture was full
    std::size_t unmarked = 0;       // left, without a cross
    std::size_t omitted = 0;        // because the picture was full
    double detail = 0.0;            // less than this is left out, in mm; 0: as usual
    std::size_t abridged = 0;       // shown as boxes
    std::size_t outside = 0;        // of the drawing, beside the part that is shown
    std::size_t cropped = 0;        // partly
    std::size_t empty = 0;          // references that have nothing to show
    std::map<std::wstring, std::size_t> unknown;  // without a known look, by class
};

// The group with the class "legend".
std::string legend(const Sheet& sheet, const Caption& caption, const Tally& tally);

}  // namespace host::picture
