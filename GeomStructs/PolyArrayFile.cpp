// The file form of PolyArray.
#include <tchar.h>
#include <windows.h>

#include <algorithm>
#include <memory>

#include "GeomEnts/BinaryFile.h"
#include "GeomStructs/PolyArray.h"
#include "GeomStructs/PolyArrayParts.h"

namespace TamLib {
namespace {

constexpr std::uint32_t kFirstBlock = 4096;  // vertices that memory is taken for unseen

Box BoxOf(const PolyArray& lines) {
    Box box;
    for (const PolyLine* const line : lines)
        for (const Point3d& vertex : *line) box.Add(vertex);
    return box;
}

bool WriteLine(std::FILE* file, const PolyLine& line) {
    return WriteValue(file, static_cast<std::int32_t>(line.count)) &&
           (line.count == 0 ||
            std::fwrite(line.data, sizeof(Point3d), line.count, file) == line.count);
}

// Memory follows what was read, so that a count beyond the file takes none.
bool ReadVertices(std::FILE* file, std::uint32_t vertices, PolyLine& line) {
    while (line.count < vertices) {
        if (line.count == line.capacity)
            line.Resize(std::min(vertices, std::max(2 * line.count, kFirstBlock)));
        const std::uint32_t wanted = std::min(vertices, line.capacity) - line.count;
        const std::size_t read = std::fread(line.data + line.count, sizeof(Point3d), wanted, file);
        line.count += static_cast<std::uint32_t>(read);
        if (read != wanted) return false;
    }
    return true;
}

// Null when there is no whole polyline.
std::unique_ptr<PolyLine> ReadLine(std::FILE* file) {
    std::int32_t vertices = 0;
    if (!ReadValue(file, vertices) || vertices < 0) return nullptr;
    std::unique_ptr<PolyLine> line = detail::MakeNew<PolyLine>(detail::kReadLine, 10);
    if (!ReadVertices(file, static_cast<std::uint32_t>(vertices), *line)) return nullptr;
    return line;
}

}  // namespace

int PolyArray::Save(std::FILE* file) const {
    if (!WriteValue(file, static_cast<std::int32_t>(count))) return -1;
    if (!WriteBox(file, box != nullptr ? *box : BoxOf(*this))) return -1;
    int written = 0;
    for (const PolyLine* const line : *this) {
        if (!WriteLine(file, *line)) return written;
        ++written;
    }
    return written;
}

int PolyArray::Load(std::FILE* file) {
    std::int32_t stored = 0;
    Box fileBox;
    if (!ReadValue(file, stored) || !ReadBox(file, fileBox)) return -1;
    if (box == nullptr) box = detail::MakeNew<Box>(detail::kReadLine).release();
    *box = fileBox;
    int read = 0;
    while (std::unique_ptr<PolyLine> line = ReadLine(file)) {
        detail::Append(*this, std::move(line));
        ++read;
    }
    return read;
}

int PolyArray::SaveToFile(const wchar_t* path) const {
    std::FILE* const file = _wfopen(path, L"wb");
    if (file == nullptr) return -1;
    const int result = Save(file);
    return std::fclose(file) == 0 ? result : -1;
}

int PolyArray::LoadFromFile(const wchar_t* path) {
    const BinaryFile file(_wfopen(path, L"rb"));
    return file == nullptr ? -1 : Load(file.get());
}

}  // namespace TamLib
