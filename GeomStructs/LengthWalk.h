// Walking along a run of segments by their lengths, as lines of straight segments and of arcs do.
#pragma once

#include <cmath>

namespace TamLib::detail {

struct LengthStop {
    int vertex;  // where the walk stopped, at least 1
    double sum;  // the length to it
};

// Walks from vertex 0 of `vertices` vertices and stops at the first whose sum is above `target`, or
// at the last. `lengthOf(i)` is the length of the segment from vertex i on.
template <class LengthOf>
LengthStop WalkTo(int vertices, double target, const LengthOf& lengthOf) {
    double sum = 0.0;
    int j = 0;
    while (j < vertices - 1 && !(target < sum)) {
        sum += lengthOf(j);
        ++j;
    }
    return {j == 0 ? 1 : j, sum};
}

// A length as a fraction of the total; of a total below 0.0001 the length itself.
inline double RelativeLength(double length, double total) {
    return std::fabs(total) >= 0.0001 ? length / total : length;
}

}  // namespace TamLib::detail
