// Values in binary files: little-endian, packed, as they stand in memory. Each function reports
// whether the value was transferred whole. `BinaryFile` owns a stream and closes it, also when
// memory is refused while it is read.
#pragma once

#include <cstdio>
#include <memory>

#include "GeomEnts/Box.h"

namespace TamLib {

struct CloseBinaryFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using BinaryFile = std::unique_ptr<std::FILE, CloseBinaryFile>;

template <class T>
bool WriteValue(std::FILE* file, const T& value) {
    return std::fwrite(&value, sizeof value, 1, file) == 1;
}

template <class T>
bool ReadValue(std::FILE* file, T& value) {
    return std::fread(&value, sizeof value, 1, file) == 1;
}

// Boxes at the head of arrays: six f32, the maximum of each axis before its minimum.
inline bool WriteBox(std::FILE* file, const Box& box) {
    return WriteValue(file, box.xMax) && WriteValue(file, box.xMin) && WriteValue(file, box.yMax) &&
           WriteValue(file, box.yMin) && WriteValue(file, box.zMax) && WriteValue(file, box.zMin);
}

inline bool ReadBox(std::FILE* file, Box& box) {
    return ReadValue(file, box.xMax) && ReadValue(file, box.xMin) && ReadValue(file, box.yMax) &&
           ReadValue(file, box.yMin) && ReadValue(file, box.zMax) && ReadValue(file, box.zMin);
}

}  // namespace TamLib
