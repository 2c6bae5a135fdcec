// The file form of LineArray.
#include <tchar.h>
#include <windows.h>

#include <algorithm>

#include "GeomEnts/BinaryFile.h"
#include "GeomStructs/LineArray.h"

namespace TamLib {
namespace {

constexpr char kWithBox = ',', kWithoutBox = '+';
constexpr std::int32_t kStep = 65536;  // lines that memory is taken for ahead of reading them

std::int32_t Capped(std::int32_t lines, int limit) {
    return limit >= 0 ? std::min(lines, static_cast<std::int32_t>(limit)) : lines;
}

}  // namespace

int LineArray::Save(std::FILE* file, int limit, bool withBox) const {
    const std::int32_t lines = Capped(static_cast<std::int32_t>(count), limit);
    if (!WriteValue(file, lines) || !WriteValue(file, withBox ? kWithBox : kWithoutBox)) return -1;
    if (withBox) {
        Box box;
        for (const Line& line : *this) box.Add(line.GetBox());
        if (!WriteBox(file, box)) return -1;
    }
    for (std::int32_t i = 0; i < lines; ++i)
        if (data[i].Write(file) != 1) return i;
    return lines;
}

int LineArray::Load(std::FILE* file, int limit, Box* box) {
    std::int32_t stored = 0;
    char marker = 0;
    Box fileBox;
    if (!ReadValue(file, stored) || !ReadValue(file, marker)) return -1;
    if (marker != kWithBox && marker != kWithoutBox) return -3;
    if (marker == kWithBox && !ReadBox(file, fileBox)) return -1;
    if (box != nullptr) *box = fileBox;
    const std::int32_t lines = std::max(Capped(stored, limit), 0);
    count = 0;
    sorted = unique = false;
    // Memory follows what was read, so that a count beyond the file takes none.
    while (static_cast<std::int32_t>(count) < lines) {
        if (count == capacity)
            Resize(count + static_cast<std::uint32_t>(
                               std::min(lines - static_cast<std::int32_t>(count), kStep)));
        if (data[count].Read(file) != 1) break;
        ++count;
    }
    return static_cast<int>(count);
}

int LineArray::SaveToFile(const wchar_t* path, int limit, bool withBox) const {
    std::FILE* const file = _wfopen(path, L"wb");
    if (file == nullptr) return -1;
    const int result = Save(file, limit, withBox);
    return std::fclose(file) == 0 ? result : -1;
}

int LineArray::LoadFromFile(const wchar_t* path, int limit, Box* box) {
    const BinaryFile file(_wfopen(path, L"rb"));
    return file == nullptr ? -1 : Load(file.get(), limit, box);
}

}  // namespace TamLib
