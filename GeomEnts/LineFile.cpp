// The file form of Line.
#include <tchar.h>
#include <windows.h>

#include <initializer_list>

#include "GeomEnts/BinaryFile.h"
#include "GeomEnts/Line.h"

namespace TamLib {

int Line::Write(std::FILE* file) const {
    for (const double coordinate : {x1, y1, z1, x2, y2, z2})
        if (std::fwrite(&coordinate, sizeof coordinate, 1, file) != 1) return -1;
    return 1;
}

int Line::Read(std::FILE* file) {
    for (double* coordinate : {&x1, &y1, &z1, &x2, &y2, &z2}) {
        double value;
        if (std::fread(&value, sizeof value, 1, file) != 1) return -1;
        *coordinate = value;
    }
    valid = 1;
    return 1;
}

int Line::Write(const wchar_t* path) const {
    const BinaryFile file(_wfopen(path, L"wb"));
    return file == nullptr ? -1 : Write(file.get());
}

int Line::Read(const wchar_t* path) {
    const BinaryFile file(_wfopen(path, L"rb"));
    return file == nullptr ? -1 : Read(file.get());
}

}  // namespace TamLib
