#include "host/console/Picturing.h"

#include <algorithm>
#include <string>
#include <unordered_set>

#include "host/console/Files.h"
#include "host/console/ProgramFile.h"
#include "host/console/Table.h"
#include "host/dxf/Errors.h"
#include "host/editor/Words.h"
#include "host/picture/Picture.h"
#include "host/picture/PictureFile.h"

namespace host::console {

namespace {

constexpr double radiansPerDegree = 3.14159265358979323846 / 180.0;

picture::Rendering rendering() {
    return picture::Rendering(besideProgram(picture::renderingModule));
}

std::wstring reasonOf(const LeftEntity& left) {
    std::wstring reason = editor::fromUtf8(described(left.reason));
    if (!left.detail.empty()) reason += L" (" + editor::fromUtf8(left.detail) + L")";
    return reason;
}

std::wstring lastCommand(const Record& record) {
    return record.runs.empty() ? std::wstring() : editor::fromUtf8(record.runs.back().command);
}

// Leaves each id once, and `other` not at all.
void removeRepeated(std::vector<AcDbObjectId>& ids, AcDbObjectId other) {
    std::unordered_set<AcDbObjectId> known{other};
    ids.erase(std::remove_if(ids.begin(), ids.end(),
                             [&](AcDbObjectId id) { return !known.insert(id).second; }),
              ids.end());
}

// As --picture's format wants it.
std::string bytesOf(const std::string& svg, const std::filesystem::path& file) {
    const auto format = picture::formatOf(file);
    return format == picture::Format::svg ? svg : rendering().render(svg, *format);
}

}  // namespace

picture::Change changeOf(const Record& record) {
    picture::Change change;
    for (const CommandRun& run : record.runs) {
        if (run.takenBack || !run.line) continue;
        if (!change.line.isNull()) change.earlierLines.push_back(change.line);
        change.line = run.line->id;
    }
    removeRepeated(change.earlierLines, change.line);
    const Outcome outcome = record.outcome();
    for (const Outcome::Turned& turned : outcome.turned)
        change.turned.push_back(
            {turned.first->id, turned.first->before.degrees * radiansPerDegree, turned.stoodSo(),
             turned.first->before.insertion.distanceTo(turned.last->after.insertion)});
    for (const LeftEntity* left : outcome.left) change.left.push_back({left->id, reasonOf(*left)});
    return change;
}

void demandPicture(const Options& options) {
    if (options.picture.empty() || picture::formatOf(options.picture) == picture::Format::svg)
        return;
    try {
        rendering();
    } catch (const picture::NotRendered& error) {
        throw NotPictured(Exit::usage, "--picture " + utf8(options.picture) +
                                           ": PNG and PDF can't be written here: " + error.what() +
                                           "; a name that ends with .svg works everywhere");
    }
}

void writePicture(const AcDbDatabase& drawing, const std::filesystem::path& name,
                  const Record& record, const Options& options, Printer& printer) {
    const picture::Change change = changeOf(record);
    const std::string svg =
        picture::draw(drawing, change, {editor::fromUtf8(shownName(name)), lastCommand(record)});
    try {
        provideFolder(options.picture, options.folders);
        picture::writeFile(options.picture, bytesOf(svg, options.picture));
    } catch (const dxf::WriteError& error) {
        throw NotPictured(Exit::unwritable, error.what());
    } catch (const picture::NotRendered& error) {
        throw NotPictured(Exit::unwritable,
                          utf8(options.picture) + " was not written: " + error.what());
    }
    printer.print(tame(shownName(options.picture)) + " drawn: " + record.outcome().text() + ".\n");
}

}  // namespace host::console
