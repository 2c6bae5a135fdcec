// Plain types of the C part of the interface: points, names, and the chains of typed values called
// result buffers.
//
// A name (ads_name) stands for an entity (its id in the first number) or a selection set and is
// only ever copied and compared as a whole. It is valid as long as the drawing, or until the set is
// freed.
#pragma once

#include <adesk.h>

#include <cstddef>
#include <cstdint>

using ads_real = double;
using ads_point = ads_real[3];
using ads_name = std::int64_t[2];

struct ads_binary {
    short clen;
    char* buf;
};

union ads_u_val {
    ads_real rreal;
    ads_real rpoint[3];
    short rint;
    ACHAR* rstring;
    std::int64_t rlname[2];
    std::int32_t rlong;
    std::int64_t mnInt64;
    ads_binary rbinary;
};

// One element of a chain: `restype` (an RT code of adscodes.h, or the group code of a drawing)
// tells which member of `resval` counts. Real and point begin at the same address. Chains are made
// by acutNewRb and acutBuildList and freed as a whole by acutRelRb, texts included.
struct resbuf {
    resbuf* rbnext;
    short restype;
    ads_u_val resval;
};

// The members under the names that callers know.
inline void ads_name_set(const ads_name from, ads_name to) {
    to[0] = from[0];
    to[1] = from[1];
}
inline void ads_name_clear(ads_name name) {
    name[0] = 0;
    name[1] = 0;
}
inline bool ads_name_nil(const ads_name name) {
    return name[0] == 0 && name[1] == 0;
}
inline bool ads_name_equal(const ads_name a, const ads_name b) {
    return a[0] == b[0] && a[1] == b[1];
}
inline void ads_point_set(const ads_point from, ads_point to) {
    to[0] = from[0];
    to[1] = from[1];
    to[2] = from[2];
}
