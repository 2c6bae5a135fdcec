// A second, plain reading of ASCII drawings and of what the command does to them, written for these
// tests and sharing nothing with the program: groups as pairs of lines, and the angles recomputed
// from the vertices of an LWPOLYLINE or LINE.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace console_test {

struct Record {
    std::string type;
    std::vector<std::pair<int, std::string>> groups;  // without the leading 0

    // The first value of a group, or `otherwise` when there is none.
    std::string text(int code, const std::string& otherwise = {}) const;
    double number(int code, double otherwise = 0) const;
    bool has(int code) const;
    std::string handle() const { return text(5); }
};

// All records of the file, in its order.
std::vector<Record> readRecords(const std::filesystem::path& file);

// The records of the section ENTITIES by handle.
std::map<std::string, Record> readEntities(const std::filesystem::path& file);

struct Plane {
    double x = 0, y = 0;
};

// The vertices of an LWPOLYLINE without bulges or of a LINE, in plan.
std::vector<Plane> verticesOf(const Record& line);

// True for what the command turns: TEXT and single INSERT on layers that are neither frozen nor
// locked.
bool isTurned(const Record& entity, const std::map<std::string, Record>& layers);
std::map<std::string, Record> readLayers(const std::filesystem::path& file);

// The rotation in degrees that the entity has to get: along the nearest segment, texts
// right-reading, symbols against the direction of the line and, with `flip`, along it.
double expectedRotation(const Record& entity, const std::vector<Plane>& line, bool flip);

}  // namespace console_test
