// AcGeContext: the tolerances that comparisons take when none is given: 1e-10 each.
#pragma once

#include <getol.h>

struct AcGeContext {
    static AcGeTol gTol;
};
