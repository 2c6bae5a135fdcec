// The text forms of Box.
#include "GeomEnts/Box.h"
#include "datastruct/String.h"

namespace TamLib {

StringBase<wchar_t> Box::ToString(const wchar_t* format) const {
    StringBase<wchar_t> text;
    // Intended: the last number is zMin, not zMax.
    text.Format(format != nullptr ? format : L"(%f,%f,%f)-(%f,%f,%f)", static_cast<double>(xMin),
                static_cast<double>(yMin), static_cast<double>(zMin), static_cast<double>(xMax),
                static_cast<double>(yMax), static_cast<double>(zMin));
    return text;
}

StringBase<wchar_t> Box::ToString2d(const wchar_t* format) const {
    StringBase<wchar_t> text;
    text.Format(format != nullptr ? format : L"(%f,%f)-(%f,%f)", static_cast<double>(xMin),
                static_cast<double>(yMin), static_cast<double>(xMax), static_cast<double>(yMax));
    return text;
}

}  // namespace TamLib
