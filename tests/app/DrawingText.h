// Drawings for tests, written as they are needed: an ASCII DXF of release 2000 with the entities
// that a test names. Handles are texts in hexadecimal and chosen by the test.
#pragma once

#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace app_test {

struct Vertex {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
};

// How a text hangs: groups 72 and 73.
struct Justification {
    int horizontal = 0;
    int vertical = 0;
};

class DrawingText {
  public:
    // Groups of one entity behind those that the functions below write.
    using Groups = std::vector<std::pair<int, std::string>>;

    static std::string Number(double value) {
        std::ostringstream text;
        text.precision(17);
        text << value;
        const std::string digits = text.str();
        return digits.find_first_of(".e") == std::string::npos ? digits + ".0" : digits;
    }

    // Flags: 1 frozen, 4 locked. Layer "0" is always there.
    void Layer(const std::string& name, int flags) {
        layers_ +=
            Record("LAYER", {{2, name}, {70, std::to_string(flags)}, {62, "7"}, {6, "CONTINUOUS"}});
    }

    void Line(const std::string& handle, Vertex from, Vertex to, const Groups& more = {}) {
        Entity("LINE", handle, "AcDbLine", Join(Point(10, from), Point(11, to), more));
    }

    void PointEntity(const std::string& handle, Vertex at) {
        Entity("POINT", handle, "AcDbPoint", Point(10, at));
    }

    void Circle(const std::string& handle, Vertex centre, double radius, const Groups& more = {}) {
        Entity("CIRCLE", handle, "AcDbCircle",
               Join(Point(10, centre), {{40, Number(radius)}}, more));
    }

    // Counter-clockwise, angles in degrees.
    void Arc(const std::string& handle, Vertex centre, double radius, double start, double end,
             const Groups& more = {}) {
        Groups groups = Join(Point(10, centre), {{40, Number(radius)}}, more);
        groups.insert(groups.end(), {{100, "AcDbArc"}, {50, Number(start)}, {51, Number(end)}});
        Entity("ARC", handle, "AcDbCircle", groups);
    }

    void LightPolyline(const std::string& handle, const std::vector<Vertex>& vertices,
                       bool closed = false) {
        Groups groups{{90, std::to_string(vertices.size())}, {70, closed ? "1" : "0"}};
        for (const Vertex& vertex : vertices) {
            groups.push_back({10, Number(vertex.x)});
            groups.push_back({20, Number(vertex.y)});
        }
        Entity("LWPOLYLINE", handle, "AcDbPolyline", groups);
    }

    // The vertices take the handles `handle` + "1", "2", ...
    void Polyline3d(const std::string& handle, const std::vector<Vertex>& vertices) {
        Entity("POLYLINE", handle, "AcDb3dPolyline", Join({{66, "1"}}, Point(10, {}), {{70, "8"}}));
        int number = 0;
        for (const Vertex& vertex : vertices) {
            Entity("VERTEX", handle + std::to_string(++number), "AcDb3dPolylineVertex",
                   Join(Point(10, vertex), {{70, "32"}}));
        }
        Entity("SEQEND", handle + std::to_string(++number), "", {});
    }

    // A text at `at`; justified ones also hang from `alignment`.
    void Text(const std::string& handle, Vertex at, Justification how = {}, Vertex alignment = {},
              const Groups& more = {}, const std::string& layer = "0") {
        Groups groups = Join(Point(10, at), {{40, "2.5"}, {1, "teksti"}}, more);
        if (how.horizontal != 0) groups.push_back({72, std::to_string(how.horizontal)});
        if (how.horizontal != 0 || how.vertical != 0) groups = Join(groups, Point(11, alignment));
        groups.push_back({100, "AcDbText"});
        if (how.vertical != 0) groups.push_back({73, std::to_string(how.vertical)});
        Entity("TEXT", handle, "AcDbText", groups, layer);
    }

    void MText(const std::string& handle, Vertex at) {
        Entity("MTEXT", handle, "AcDbMText",
               Join(Point(10, at), {{40, "2.5"}, {71, "1"}, {1, "teksti"}}));
    }

    void AttributeDefinition(const std::string& handle, Vertex at) {
        Entity("ATTDEF", handle, "AcDbText",
               Join(Point(10, at), {{40, "2.5"},
                                    {1, "arvo"},
                                    {100, "AcDbAttributeDefinition"},
                                    {3, "?"},
                                    {2, "TAG"},
                                    {70, "0"}}));
    }

    // A reference to the block SYMBOL. Columns or rows above 1 (groups 70 and 71 of `more`) make an
    // array.
    void Insert(const std::string& handle, Vertex at, const Groups& more = {},
                const std::string& layer = "0") {
        Entity("INSERT", handle, "AcDbBlockReference", Join({{2, "SYMBOL"}}, Point(10, at), more),
               layer);
    }

    struct PlaneVertex {
        Vertex at;
        int flags = 0;
        double bulge = 0.0;
    };
    // A light polyline with bulges; the vertices' flags are left out.
    void BulgedPolyline(const std::string& handle, const std::vector<PlaneVertex>& vertices,
                        bool closed = false, const Groups& more = {}) {
        Groups groups{{90, std::to_string(vertices.size())}, {70, closed ? "1" : "0"}};
        for (const PlaneVertex& vertex : vertices) {
            groups.push_back({10, Number(vertex.at.x)});
            groups.push_back({20, Number(vertex.at.y)});
            groups.push_back({42, Number(vertex.bulge)});
        }
        Entity("LWPOLYLINE", handle, "AcDbPolyline", Join(groups, more));
    }

    // A 2D polyline: `flags` is group 70 of the whole, the vertices take the handles `handle` +
    // "1", "2", ... and their own group 70 and bulge.
    void Polyline2d(const std::string& handle, int flags, const std::vector<PlaneVertex>& vertices,
                    const Groups& more = {}) {
        Entity("POLYLINE", handle, "AcDb2dPolyline",
               Join({{66, "1"}}, Join(Point(10, {}), {{70, std::to_string(flags)}}), more));
        int number = 0;
        for (const PlaneVertex& vertex : vertices) {
            Entity("VERTEX", handle + std::to_string(++number), "AcDb2dVertex",
                   Join(Point(10, vertex.at),
                        {{42, Number(vertex.bulge)}, {70, std::to_string(vertex.flags)}}));
        }
        Entity("SEQEND", handle + std::to_string(++number), "", {});
    }

    // `major` is the end of the major axis as seen from the centre.
    void Ellipse(const std::string& handle, Vertex centre, Vertex major, double ratio, double start,
                 double end, const Groups& more = {}) {
        Entity("ELLIPSE", handle, "AcDbEllipse",
               Join(Join(Point(10, centre), Point(11, major), more),
                    {{40, Number(ratio)}, {41, Number(start)}, {42, Number(end)}}));
    }

    // Without the lines of its body.
    void Region(const std::string& handle) {
        Entity("REGION", handle, "AcDbModelerGeometry", {{70, "1"}});
    }

    struct Spline {
        int flags = 8;
        int degree = 3;
        std::vector<double> knots;
        std::vector<double> weights;  // one for each control point, or none
        std::vector<Vertex> controls;
        std::vector<Vertex> fits;
    };
    void SplineEntity(const std::string& handle, const Spline& spline) {
        Groups groups{{70, std::to_string(spline.flags)},
                      {71, std::to_string(spline.degree)},
                      {72, std::to_string(spline.knots.size())},
                      {73, std::to_string(spline.controls.size())},
                      {74, std::to_string(spline.fits.size())}};
        for (const double knot : spline.knots) groups.push_back({40, Number(knot)});
        for (const double weight : spline.weights) groups.push_back({41, Number(weight)});
        for (const Vertex& vertex : spline.controls) groups = Join(groups, Point(10, vertex));
        for (const Vertex& vertex : spline.fits) groups = Join(groups, Point(11, vertex));
        Entity("SPLINE", handle, "AcDbSpline", groups);
    }

    std::string Bytes() const {
        std::string text;
        text += Section("HEADER", "  9\n$ACADVER\n  1\nAC1015\n  9\n$HANDSEED\n  5\nFFFF\n");
        text += Section("TABLES",
                        "  0\nTABLE\n  2\nLAYER\n 70\n9\n" +
                            Record("LAYER", {{2, "0"}, {70, "0"}, {62, "7"}, {6, "CONTINUOUS"}}) +
                            layers_ + "  0\nENDTAB\n");
        text += Section(
            "BLOCKS",
            Block("*Model_Space", "") + Block("*Paper_Space", "") +
                Block("SYMBOL",
                      Record("CIRCLE",
                             {{8, "0"}, {10, "0.0"}, {20, "0.0"}, {30, "0.0"}, {40, "1.0"}})));
        text += Section("ENTITIES", entities_);
        return text + "  0\nEOF\n";
    }

  private:
    static Groups Point(int code, Vertex vertex) {
        return {
            {code, Number(vertex.x)}, {code + 10, Number(vertex.y)}, {code + 20, Number(vertex.z)}};
    }

    static Groups Join(Groups first, const Groups& second) {
        first.insert(first.end(), second.begin(), second.end());
        return first;
    }
    static Groups Join(Groups first, const Groups& second, const Groups& third) {
        return Join(Join(std::move(first), second), third);
    }

    static std::string Record(const std::string& type, const Groups& groups) {
        std::string text = "  0\n" + type + "\n";
        for (const auto& [code, value] : groups) {
            const std::string number = std::to_string(code);
            text += std::string(number.size() < 3 ? 3 - number.size() : 0, ' ') + number + "\n" +
                    value + "\n";
        }
        return text;
    }

    static std::string Section(const std::string& name, const std::string& content) {
        return "  0\nSECTION\n  2\n" + name + "\n" + content + "  0\nENDSEC\n";
    }

    static std::string Block(const std::string& name, const std::string& content) {
        return Record("BLOCK", {{8, "0"},
                                {2, name},
                                {70, "0"},
                                {10, "0.0"},
                                {20, "0.0"},
                                {30, "0.0"},
                                {3, name},
                                {1, ""}}) +
               content + Record("ENDBLK", {{8, "0"}});
    }

    void Entity(const std::string& type, const std::string& handle, const std::string& subclass,
                const Groups& groups, const std::string& layer = "0") {
        Groups all{{5, handle}, {100, "AcDbEntity"}, {8, layer}};
        if (!subclass.empty()) all.push_back({100, subclass});
        entities_ += Record(type, Join(all, groups));
    }

    std::string layers_;
    std::string entities_;
};

}  // namespace app_test
