#include "tests/host/console/PlainDrawing.h"

#include <cmath>
#include <cstdlib>
#include <fstream>
#include <stdexcept>

namespace console_test {

namespace {

std::string trimmed(const std::string& line) {
    const std::size_t begin = line.find_first_not_of(" \t\r");
    if (begin == std::string::npos) return {};
    return line.substr(begin, line.find_last_not_of(" \t\r") - begin + 1);
}

// The point by which the entity is turned, in world coordinates; extrusions here are (0,0,1) or
// (0,0,-1).
Plane referencePoint(const Record& entity) {
    bool own = true;
    if (entity.type == "TEXT") {
        const double horizontal = entity.number(72);
        own = entity.number(73) == 0 && (horizontal == 0 || horizontal == 3 || horizontal == 5);
    }
    const double mirror = entity.number(230, 1) < 0 ? -1 : 1;
    return {mirror * entity.number(own ? 10 : 11), entity.number(own ? 20 : 21)};
}

double distanceToSegment(Plane p, Plane a, Plane b) {
    const double dx = b.x - a.x;
    const double dy = b.y - a.y;
    const double t = ((p.x - a.x) * dx + (p.y - a.y) * dy) / (dx * dx + dy * dy);
    const double clamped = t < 0 ? 0 : t > 1 ? 1 : t;
    return std::hypot(p.x - (a.x + clamped * dx), p.y - (a.y + clamped * dy));
}

std::size_t nearestSegment(Plane p, const std::vector<Plane>& line) {
    std::size_t best = 0;
    for (std::size_t i = 1; i + 1 < line.size(); ++i)
        if (distanceToSegment(p, line[i], line[i + 1]) <
            distanceToSegment(p, line[best], line[best + 1]))
            best = i;
    return best;
}

// The segment that the command takes when it goes by way of lengths: intended: rounding of the
// division may lead to the segment before the nearest one.
std::size_t segmentByLength(std::size_t nearest, const std::vector<Plane>& line) {
    std::vector<double> sums{0};
    for (std::size_t i = 0; i + 1 < line.size(); ++i) {
        const double dx = line[i + 1].x - line[i].x;
        const double dy = line[i + 1].y - line[i].y;
        sums.push_back(sums.back() + std::sqrt(dx * dx + dy * dy));
    }
    const double target = sums.back() * (sums[nearest] / sums.back());
    std::size_t vertex = 0;
    while (vertex + 1 < line.size() && !(target < sums[vertex])) ++vertex;
    return (vertex == 0 ? 1 : vertex) - 1;
}

}  // namespace

std::string Record::text(int code, const std::string& otherwise) const {
    for (const auto& [found, value] : groups)
        if (found == code) return value;
    return otherwise;
}

double Record::number(int code, double otherwise) const {
    return has(code) ? std::strtod(text(code).c_str(), nullptr) : otherwise;
}

bool Record::has(int code) const {
    for (const auto& group : groups)
        if (group.first == code) return true;
    return false;
}

std::vector<Record> readRecords(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream) throw std::runtime_error("no drawing " + file.u8string());
    std::vector<Record> records;
    std::string code;
    std::string value;
    while (std::getline(stream, code) && std::getline(stream, value)) {
        if (std::stoi(code) == 0)
            records.push_back({trimmed(value), {}});
        else if (!records.empty())
            records.back().groups.emplace_back(std::stoi(code), trimmed(value));
    }
    return records;
}

std::map<std::string, Record> readEntities(const std::filesystem::path& file) {
    std::map<std::string, Record> entities;
    bool inside = false;
    for (const Record& record : readRecords(file)) {
        if (record.type == "SECTION") inside = record.text(2) == "ENTITIES";
        if (inside && record.has(5)) entities.emplace(record.handle(), record);
    }
    return entities;
}

std::map<std::string, Record> readLayers(const std::filesystem::path& file) {
    std::map<std::string, Record> layers;
    for (const Record& record : readRecords(file))
        if (record.type == "LAYER") layers.emplace(record.text(2), record);
    return layers;
}

std::vector<Plane> verticesOf(const Record& line) {
    if (line.type == "LINE")
        return {{line.number(10), line.number(20)}, {line.number(11), line.number(21)}};
    std::vector<Plane> vertices;
    for (const auto& [code, value] : line.groups) {
        if (code == 10) vertices.push_back({std::strtod(value.c_str(), nullptr), 0});
        if (code == 20) vertices.back().y = std::strtod(value.c_str(), nullptr);
    }
    return vertices;
}

bool isTurned(const Record& entity, const std::map<std::string, Record>& layers) {
    if (entity.type != "TEXT" && entity.type != "INSERT") return false;
    const bool isArray =
        entity.type == "INSERT" && (entity.number(70, 1) > 1 || entity.number(71, 1) > 1);
    if (isArray) return false;
    constexpr int frozenOrLocked = 1 | 4;
    return (static_cast<int>(layers.at(entity.text(8)).number(70)) & frozenOrLocked) == 0;
}

double expectedRotation(const Record& entity, const std::vector<Plane>& line, bool flip) {
    const std::size_t i = segmentByLength(nearestSegment(referencePoint(entity), line), line);
    const double dx = line[i + 1].x - line[i].x;
    const double dy = line[i + 1].y - line[i].y;
    const double length = std::sqrt(dx * dx + dy * dy);
    double angle = std::atan2(0 - dy / length, 0 - dx / length);
    if (entity.type == "TEXT") {
        if (angle < 0) angle += 6.2832;
        if (angle > 1.5708 && angle < 4.7124) angle += 3.14159;
    } else if (flip) {
        angle += 3.14159;
    }
    return angle * 180 / 3.141592653589793;
}

}  // namespace console_test
