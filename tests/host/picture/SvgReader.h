// A small strict reader of XML for the tests of pictures, sharing nothing with the writer.
#pragma once

#include <array>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace picture_test {

// Column-wise like in SVG: x' = a x + c y + e, y' = b x + d y + f.
struct Map {
    double a = 1, b = 0, c = 0, d = 1, e = 0, f = 0;
    Map after(const Map& inner) const;
    std::pair<double, double> operator()(double x, double y) const;
};

struct Element {
    std::string name;
    std::map<std::string, std::string> attributes;
    std::string text;  // of this element alone, entities replaced
    std::vector<Element> children;

    std::string get(const std::string& attribute) const;  // empty when it has none
    bool has(const std::string& attribute) const { return attributes.count(attribute) != 0; }
    bool hasClass(const std::string& wanted) const;
    // The text of this element and all below.
    std::string allText() const;
    // All elements below, and this one, that meet a condition.
    template <class Condition>
    std::vector<const Element*> all(const Condition& condition) const {
        std::vector<const Element*> found;
        collect(condition, found);
        return found;
    }
    std::vector<const Element*> ofClass(const std::string& wanted) const;
    // The only element with this id, or an exception.
    const Element& byId(const std::string& id) const;
    const Element& onlyOfClass(const std::string& wanted) const;

    template <class Condition>
    void collect(const Condition& condition, std::vector<const Element*>& found) const {
        if (condition(*this)) found.push_back(this);
        for (const Element& child : children) child.collect(condition, found);
    }
};

// Throws std::runtime_error with the byte for anything that is not well-formed, an attribute that
// stands twice, characters that XML forbids, and bytes that are no UTF-8.
Element parseXml(const std::string& text);

// The attribute transform: matrix, translate, rotate, skewX and scale, one after another.
Map parseTransform(const std::string& text);

// The points of the attribute d: M and L with one each, C with three, Z with none.
struct PathPart {
    char letter;
    std::vector<std::pair<double, double>> points;
};
std::vector<PathPart> parsePath(const std::string& d);

}  // namespace picture_test
