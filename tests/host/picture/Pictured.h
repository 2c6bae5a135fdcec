// Pictures of drawings made from short texts, read back.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "host/database/Drawing.h"
#include "host/picture/Picture.h"
#include "tests/host/picture/SvgReader.h"
#include "tests/host/support/DrawingText.h"

namespace picture_test {

using host::test::DrawingText;
using Point = std::pair<double, double>;

inline AcDbObjectId idOf(const AcDbDatabase& database, const std::wstring& handle) {
    return host::database::idFromHandle(database, handle);
}

// A picture with its numbers turned back into drawing coordinates.
class Pictured {
  public:
    explicit Pictured(const DrawingText& drawing) : Pictured(*drawing.database(), {}) {}
    Pictured(const AcDbDatabase& database, const host::picture::Change& change,
             const host::picture::Caption& caption = {L"test.dxf", L"ZEPTALIGNENTITIES"})
        : bytes(host::picture::draw(database, change, caption)), svg(parseXml(bytes)) {
        const Element& model = svg.onlyOfClass("model");
        x = std::stod(model.get("data-origin-x"));
        y = std::stod(model.get("data-origin-y"));
        onPaper = parseTransform(model.get("transform"));
    }

    Point world(const Point& local) const { return {local.first + x, local.second + y}; }

    // Where a text hangs, and how its letters lie: a unit to the right and one upwards, each as
    // wide and as high as a capital letter's height.
    struct Letters {
        Point at, right, up;
        std::string anchor;
        double x = 0, y = 0;  // where it begins, in its own units of a font size
    };
    Letters letters(const Element& text) const {
        const Map map = parseTransform(text.get("transform"));
        const double capital = 10 * 0.729;
        Letters result;
        result.at = world(map(0, 0));
        result.right = {map.a * capital, map.b * capital};
        result.up = {-map.c * capital, -map.d * capital};
        result.anchor = text.get("text-anchor");
        if (text.has("x")) result.x = std::stod(text.get("x")) / 10;
        if (text.has("y")) result.y = std::stod(text.get("y")) / 10;
        return result;
    }
    Letters letters(const std::string& id) const { return letters(svg.byId(id)); }

    // The points of a path, handles of curves left out.
    std::vector<Point> points(const Element& path) const {
        std::vector<Point> all;
        for (const PathPart& part : parsePath(path.get("d")))
            if (!part.points.empty()) all.push_back(world(part.points.back()));
        return all;
    }
    std::vector<Point> points(const std::string& id) const { return points(svg.byId(id)); }

    std::string bytes;
    Element svg;
    double x = 0, y = 0;
    Map onPaper;
};

}  // namespace picture_test
