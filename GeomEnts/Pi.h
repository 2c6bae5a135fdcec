// Half a turn in radians, in every source of the library the same double.
#pragma once

namespace TamLib {

constexpr double kPi = 3.141592653589793;

}  // namespace TamLib
