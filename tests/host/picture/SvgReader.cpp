#include "tests/host/picture/SvgReader.h"

#include <cmath>
#include <sstream>
#include <stdexcept>

#include "host/dxf/Utf8.h"

namespace picture_test {
namespace {

class Parser {
  public:
    explicit Parser(const std::string& text) : text_(text) {}

    Element document() {
        if (!host::dxf::utf8::isValid(text_)) fail("UTF-8");
        for (const char c : text_)
            if (static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\n' && c != '\r')
                fail("no control character");
        if (take("<?xml")) at_ = text_.find("?>", at_) + 2;
        blanks();
        Element root = element();
        blanks();
        if (at_ != text_.size()) fail("the end");
        return root;
    }

  private:
    [[noreturn]] void fail(const std::string& expected) const {
        throw std::runtime_error("byte " + std::to_string(at_) + ": expected " + expected + " in " +
                                 text_.substr(at_ < 40 ? 0 : at_ - 40, 80));
    }
    bool take(const std::string& token) {
        if (text_.compare(at_, token.size(), token) != 0) return false;
        at_ += token.size();
        return true;
    }
    void demand(const std::string& token) {
        if (!take(token)) fail(token);
    }
    char peek() const {
        if (at_ >= text_.size()) fail("more");
        return text_[at_];
    }
    void blanks() {
        while (at_ < text_.size() && std::string(" \t\r\n").find(text_[at_]) != std::string::npos)
            ++at_;
    }
    std::string name() {
        const std::size_t begin = at_;
        while (std::isalnum(static_cast<unsigned char>(peek())) != 0 || peek() == '-' ||
               peek() == ':' || peek() == '_')
            ++at_;
        if (at_ == begin || std::isdigit(static_cast<unsigned char>(text_[begin])) != 0)
            fail("a name");
        return text_.substr(begin, at_ - begin);
    }
    std::string characters(const std::string& end) {
        std::string result;
        while (end.find(peek()) == std::string::npos) {
            if (peek() == '<') fail("no <");
            if (take("&amp;"))
                result += '&';
            else if (take("&lt;"))
                result += '<';
            else if (take("&gt;"))
                result += '>';
            else if (take("&quot;"))
                result += '"';
            else if (peek() == '&')
                fail("an entity");
            else
                result += text_[at_++];
        }
        return result;
    }
    Element element() {
        Element result;
        demand("<");
        result.name = name();
        for (blanks(); peek() != '/' && peek() != '>'; blanks()) {
            const std::string attribute = name();
            demand("=\"");
            if (!result.attributes.emplace(attribute, characters("\"")).second)
                fail(attribute + " only once");
            demand("\"");
            if (peek() != ' ' && peek() != '/' && peek() != '>') fail("a blank");
        }
        if (take("/>")) return result;
        demand(">");
        while (!take("</")) {
            if (peek() == '<')
                result.children.push_back(element());
            else
                result.text += characters("<");
        }
        demand(result.name);
        demand(">");
        return result;
    }

    const std::string& text_;
    std::size_t at_ = 0;
};

std::vector<double> numbers(const std::string& text) {
    std::istringstream in(text);
    in.imbue(std::locale::classic());
    std::vector<double> values;
    for (double value = 0; in >> value;) values.push_back(value);
    if (!in.eof()) throw std::runtime_error("no numbers: " + text);
    return values;
}

Map mapOf(const std::string& name, const std::vector<double>& v) {
    constexpr double degree = 3.14159265358979323846 / 180.0;
    if (name == "matrix") return {v.at(0), v.at(1), v.at(2), v.at(3), v.at(4), v.at(5)};
    if (name == "translate") return {1, 0, 0, 1, v.at(0), v.at(1)};
    if (name == "scale") return {v.at(0), 0, 0, v.at(1), 0, 0};
    if (name == "skewX") return {1, 0, std::tan(v.at(0) * degree), 1, 0, 0};
    const double c = std::cos(v.at(0) * degree), s = std::sin(v.at(0) * degree);
    if (name == "rotate") return {c, s, -s, c, 0, 0};
    throw std::runtime_error("no transformation: " + name);
}

}  // namespace

Map Map::after(const Map& i) const {
    return {a * i.a + c * i.b, b * i.a + d * i.b,     a * i.c + c * i.d,
            b * i.c + d * i.d, a * i.e + c * i.f + e, b * i.e + d * i.f + f};
}

std::pair<double, double> Map::operator()(double x, double y) const {
    return {a * x + c * y + e, b * x + d * y + f};
}

std::string Element::get(const std::string& attribute) const {
    const auto found = attributes.find(attribute);
    return found == attributes.end() ? std::string() : found->second;
}

bool Element::hasClass(const std::string& wanted) const {
    return (" " + get("class") + " ").find(" " + wanted + " ") != std::string::npos;
}

std::string Element::allText() const {
    std::string all = name == "title" ? std::string() : text;
    for (const Element& child : children) all += child.allText();
    return all;
}

std::vector<const Element*> Element::ofClass(const std::string& wanted) const {
    return all([&](const Element& element) { return element.hasClass(wanted); });
}

const Element& Element::byId(const std::string& id) const {
    const auto found = all([&](const Element& element) { return element.get("id") == id; });
    if (found.size() != 1)
        throw std::runtime_error(std::to_string(found.size()) + " elements with the id " + id);
    return *found.front();
}

const Element& Element::onlyOfClass(const std::string& wanted) const {
    const auto found = ofClass(wanted);
    if (found.size() != 1)
        throw std::runtime_error(std::to_string(found.size()) + " elements of class " + wanted);
    return *found.front();
}

Element parseXml(const std::string& text) {
    return Parser(text).document();
}

Map parseTransform(const std::string& text) {
    Map map;
    for (std::size_t at = 0; at < text.size();) {
        if (text[at] == ' ') {
            ++at;
            continue;
        }
        const std::size_t open = text.find('(', at), close = text.find(')', at);
        if (open == std::string::npos || close == std::string::npos)
            throw std::runtime_error("no transformation: " + text);
        map = map.after(
            mapOf(text.substr(at, open - at), numbers(text.substr(open + 1, close - open - 1))));
        at = close + 1;
    }
    return map;
}

std::vector<PathPart> parsePath(const std::string& d) {
    std::vector<PathPart> parts;
    for (std::size_t at = 0; at < d.size();) {
        const std::size_t end = d.find_first_of("MLCZ", at + 1);
        const std::vector<double> values = numbers(d.substr(at + 1, end - at - 1));
        PathPart part{d[at], {}};
        for (std::size_t i = 0; i + 1 < values.size(); i += 2)
            part.points.emplace_back(values[i], values[i + 1]);
        const std::size_t due = d[at] == 'C' ? 3 : d[at] == 'Z' ? 0 : 1;
        if (values.size() != 2 * due) throw std::runtime_error("no path: " + d);
        parts.push_back(part);
        at = end == std::string::npos ? d.size() : end;
    }
    return parts;
}

}  // namespace picture_test
