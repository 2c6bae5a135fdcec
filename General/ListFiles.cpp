#include "General/ListFiles.h"

#include <afx.h>

namespace TamLib {
namespace {

using Text = StringBase<wchar_t>;

// Calls `take` on each find of folder\pattern but "." and "..".
template <class Function>
void ForEachFind(const Text& folder, const Text& pattern, Function take) {
    Text searched = folder + Text(L"\\") + pattern;
    CFileFind search;
    for (BOOL more = search.FindFile(searched.Data()); more != FALSE;) {
        more = search.FindNextFile();  // false at the last find, which counts
        if (!search.IsDots()) take(search);
    }
}

}  // namespace

Array<Text> ListFiles(const Text& directory, const Text& pattern, bool withDirectories,
                      bool recurse, FILETIME* newestTime) {
    Array<Text> files(10);
    Array<Text> queue;
    queue.Append(directory);
    bool any = false;
    while (queue.count != 0) {
        const Text folder = queue[0];
        queue.Remove(0, 1);
        ForEachFind(folder, pattern, [&](const CFileFind& find) {
            if (!withDirectories && find.IsDirectory()) return;
            files.Append(Text(find.GetFilePath()));
            FILETIME time{};
            if (newestTime == nullptr || !find.GetLastWriteTime(&time)) return;
            if (!any || CompareFileTime(&time, newestTime) > 0) *newestTime = time;
            any = true;
        });
        if (!recurse) continue;
        // The folders below are sought by themselves: the pattern may not match them.
        ForEachFind(folder, Text(L"*.*"), [&queue](const CFileFind& find) {
            if (find.IsDirectory()) queue.Append(Text(find.GetFilePath()));
        });
    }
    return files;
}

}  // namespace TamLib
