// Plain records that the editor's functions exchange: names, points and result buffers.
#pragma once

#include <adesk.h>

using ads_real = double;
using ads_point = ads_real[3];

// An entity (its id in the first number) or a selection set.
using ads_name = Adesk::Int64[2];

struct ads_binary {
    short clen;
    char* buf;
};

union ads_u_val {
    ads_real rreal;
    ads_real rpoint[3];
    short rint;
    ACHAR* rstring;
    Adesk::Int64 rlname[2];
    Adesk::Int32 rlong;
    Adesk::Int64 mnInt64;
    ads_binary rbinary;
};

// One value of a chain; `restype` says which member of `resval` holds it.
struct resbuf {
    resbuf* rbnext;
    short restype;
    ads_u_val resval;
};
