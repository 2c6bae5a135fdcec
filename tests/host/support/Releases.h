// The drawings of tests/data/releases, one a release as text and one as binary.
#pragma once

#include <algorithm>
#include <iterator>
#include <string_view>
#include <vector>

namespace host::test {

// From the drawing `first` on, the oldest release first.
inline std::vector<const char*> releasesFrom(std::string_view first) {
    constexpr const char* kAll[] = {
        "r9.dxf",    "r9_binary.dxf",    "r10.dxf",   "r10_binary.dxf",
        "r12.dxf",   "r12_binary.dxf",   "r13.dxf",   "r13_binary.dxf",
        "r14.dxf",   "r14_binary.dxf",   "r2000.dxf", "r2000_binary.dxf",
        "r2004.dxf", "r2004_binary.dxf", "r2007.dxf", "r2007_binary.dxf",
        "r2010.dxf", "r2010_binary.dxf", "r2013.dxf", "r2013_binary.dxf",
        "r2018.dxf", "r2018_binary.dxf"};
    return {std::find(std::begin(kAll), std::end(kAll), first), std::end(kAll)};
}

}  // namespace host::test
