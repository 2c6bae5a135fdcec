#include "General/Paths.h"

#include <windows.h>

#include "tam/TextCase.h"

namespace TamLib {
namespace {

using Text = StringBase<wchar_t>;

// The file of a module within N characters, its terminator included; null is the program. What the
// system had to cut is no path.
template <DWORD N>
Text ModuleFile(HMODULE module) {
    wchar_t path[N];
    const DWORD length = GetModuleFileNameW(module, path, N);
    return length == 0 || length >= N ? Text() : Text(path, static_cast<std::int32_t>(length));
}

// The characters from `from` up to `to`, which may be none.
Text Piece(const Text& path, std::uint32_t from, std::uint32_t to) {
    return from < to ? path.Sub(static_cast<std::int32_t>(from), static_cast<std::int32_t>(to) - 1)
                     : Text();
}

// The index behind the last character that `ends` accepts, `first` if there is none from there on.
template <class Predicate>
std::uint32_t BehindLast(const Text& path, std::uint32_t first, Predicate ends) {
    for (std::uint32_t i = path.count; i > first; --i) {
        if (ends(path.data[i - 1])) return i;
    }
    return first;
}

void RemoveEnd(Text& path, std::uint32_t n) {
    if (n != 0) path.Remove(static_cast<std::int32_t>(path.count - n), n);
}

Array<Text> Pieces(const Text& path) {
    Array<Text> separators;
    separators.Append(Text(L"\\"));
    separators.Append(Text(L"/"));
    Array<Text> pieces;
    path.Tokenize(pieces, &separators, /*keepEmpty=*/false);
    return pieces;
}

}  // namespace

Text ProgramPath() {
    return ModuleFile<512>(nullptr);
}

Text ModulePath() {
    MEMORY_BASIC_INFORMATION information{};
    const auto self = reinterpret_cast<LPCVOID>(&ModulePath);
    if (VirtualQuery(self, &information, sizeof information) == 0) return Text();
    // The allocation begins with the module; the base address is only that of the page.
    return ModuleFile<260>(static_cast<HMODULE>(information.AllocationBase));
}

PathPieces SplitPath(const Text& path) {
    const std::uint32_t driveEnd = path.count >= 2 && path[1] == L':' ? 2 : 0;
    const std::uint32_t nameAt = BehindLast(path, driveEnd, IsPathSeparator);
    const std::uint32_t extensionAt =
        BehindLast(path, nameAt, [](wchar_t character) { return character == L'.'; });
    const std::uint32_t nameEnd = extensionAt == nameAt ? path.count : extensionAt;
    return {Piece(path, 0, driveEnd), Piece(path, driveEnd, nameAt), Piece(path, nameAt, nameEnd),
            Piece(path, nameEnd, path.count)};
}

Text RemoveExtension(const Text& path) {
    Text shorter(path);
    RemoveEnd(shorter, SplitPath(path).extension.count);
    if (shorter.count != 0 && shorter[-1] == L'.') RemoveEnd(shorter, 1);
    return shorter;
}

Text MakeRelativePath(const Text& path, const Text& base, std::int32_t maxLevels) {
    const Text slash(L"/");
    const Text backslash(L"\\");
    Text turned(path);
    turned.Replace(slash, backslash);
    Text folder(base);
    folder.Replace(slash, backslash);
    while (folder.count != 0 && folder[-1] == L'\\') RemoveEnd(folder, 1);
    // A last piece that is no folder's name: the folder itself is never taken for a
    // common piece's end.
    folder.Append(Text(L"\\."));

    Array<Text> to = Pieces(turned);
    Array<Text> from = Pieces(folder);
    bool anyCommon = false;
    while (to.count != 0 && from.count != 0 && to[0].CompareNoCase(from[0]) == 0) {
        to.Remove(0, 1);
        from.Remove(0, 1);
        anyCommon = true;
    }
    if (!anyCommon) return turned;
    for (; from.count >= 2; --maxLevels) {
        if (maxLevels <= 0) return turned;
        from.Remove(0, 1);
        to.Insert(0, Text(L".."));
    }
    Text relative;
    relative.Join(to, backslash);
    return relative;
}

}  // namespace TamLib
