// Arrowheads on a line, which show where it leads.
#pragma once

#include <vector>

#include "host/editor/PlanFigure.h"
#include "host/picture/Path.h"

namespace host::picture {

// Lengths in plan, in the path's units.
struct ArrowRule {
    double least = 0.0;   // shorter stretches have none
    double length = 0.0;  // of an arrowhead
    double step = 0.0;    // from one to the next
};

struct Arrowhead {
    editor::PlanPoint tip, back;  // it points from `back` to `tip`, and is as long as the rule says
};

// One at the end of each stretch of the path (from where it is moved to), and one every step before
// that, as long as half a step is left before it. Further apart where there would be more than
// mostArrowheads, which ends the list.
constexpr std::size_t mostArrowheads = 500;
std::vector<Arrowhead> arrowheadsOn(const Path& path, const ArrowRule& rule);

}  // namespace host::picture
