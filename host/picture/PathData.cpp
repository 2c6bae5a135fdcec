#include "host/picture/PathData.h"

#include "host/picture/Cut.h"

namespace host::picture {

Path visiblePart(const Sheet& sheet, const Path& path, bool filled) {
    if (isWithin(path, sheet.reach())) return path;
    return filled ? polygonCutTo(sheet.reach(), path) : cutTo(sheet.reach(), path);
}

std::string pathData(const Sheet& sheet, const Path& path) {
    std::string data;
    std::size_t next = 0;
    const auto point = [&] {
        const AcGePoint3d& p = path.points()[next++];
        return sheet.x(p.x) + " " + sheet.y(p.y);
    };
    for (const Path::Step step : path.steps()) {
        switch (step) {
            case Path::Step::move:
                data += "M" + point();
                break;
            case Path::Step::line:
                data += "L" + point();
                break;
            case Path::Step::curve:
                data += "C" + point();
                data += " " + point();
                data += " " + point();
                break;
            case Path::Step::close:
                data += "Z";
                break;
        }
    }
    return data;
}

}  // namespace host::picture
