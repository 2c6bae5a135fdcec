#include "host/console/Bulk.h"

#include <filesystem>
#include <map>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "host/console/Files.h"
#include "host/console/Interruption.h"
#include "host/console/Summary.h"
#include "host/console/Table.h"
#include "host/dxf/Files.h"
#include "host/dxf/Utf8.h"
#include "host/editor/Words.h"

namespace host::console {

namespace {

using std::filesystem::path;

constexpr const char* placeholder = "{}";

bool hasPlaceholder(const path& file) {
    return utf8(file).find(placeholder) != std::string::npos;
}

path filledIn(const path& file, const path& drawing) {
    std::string name = utf8(file);
    const std::string stem = utf8(drawing.stem());
    for (std::size_t at = 0; (at = name.find(placeholder, at)) != std::string::npos;
         at += stem.size())
        name.replace(at, 2, stem);
    return pathFromUtf8(name);
}

// The result keeps the drawing's name, in a folder.
bool namesFolder(const path& output) {
    if (output.empty() || hasPlaceholder(output)) return false;
    std::error_code ignored;
    return !output.has_filename() || std::filesystem::is_directory(output, ignored);
}

// Where the drawing goes; the name itself was looked at before.
path outputOf(const path& output, const path& drawing) {
    if (output.empty()) return {};
    return namesFolder(output) ? output / drawing.filename()
                               : filledIn(drawingFile(output), drawing);
}

// "-" is standard output only as it was given.
path reportOf(const path& report, const path& drawing) {
    const path filled = filledIn(report, drawing);
    return filled == "-" && report != "-" ? path("./-") : filled;
}

Options taskOf(const Options& options, const path& drawing) {
    Options task = options;
    task.drawings.clear();
    task.drawing = drawing;
    task.output = outputOf(options.output, drawing);
    task.report = reportOf(options.report, drawing);
    task.picture = filledIn(options.picture, drawing);
    const auto makes = [&](const path& given, const path& file) {
        if (hasPlaceholder(given) || namesFolder(given)) task.folders.push_back(file.parent_path());
    };
    makes(options.output, task.output);
    if (hasPlaceholder(options.report)) makes(options.report, task.report);
    if (hasPlaceholder(options.picture)) makes(options.picture, task.picture);
    return task;
}

std::string quoted(const path& file) {
    return "'" + shownName(file) + "'";
}

void refuseFormat(const Options& options) {
    if (namesFolder(options.output)) return;
    if (const std::string why = otherFormat(options.output); !why.empty())
        throw std::invalid_argument("-o " + shownName(options.output) + ": " + why);
}

// What takes one name is refused for several drawings.
void refuseOneForAll(const Options& options) {
    const std::string count = std::to_string(options.drawings.size());
    if (!options.output.empty() && !namesFolder(options.output) && !hasPlaceholder(options.output))
        throw std::invalid_argument("-o " + shownName(options.output) + " is one file for " +
                                    count +
                                    " drawings; give a folder with a slash behind it, as "
                                    "in turned/, or a name with {} for that of each, as in "
                                    "{}-turned.dxf");
    if (!options.report.empty() && options.report != "-" && !hasPlaceholder(options.report))
        throw std::invalid_argument(
            "--report of several drawings needs {} in its name, which stands for the name of each "
            "one, as in {}.json");
    if (!options.picture.empty() && !hasPlaceholder(options.picture))
        throw std::invalid_argument(
            "--picture of several drawings needs {} in its name, which stands for the name of each "
            "one, as in {}.svg");
    if (hasPlaceholder(options.log) || hasPlaceholder(options.summary))
        throw std::invalid_argument(
            "--log and --summary are files of all drawings together; {} has no place in their "
            "names");
}

// A folder that would have to be made where a file stands.
void refuseFolderInFile(const Options& task) {
    std::error_code ignored;
    for (path folder : task.folders) {
        while (!folder.empty() && !std::filesystem::exists(folder, ignored) &&
               folder.has_relative_path())
            folder = folder.parent_path();
        if (!folder.empty() && std::filesystem::exists(folder, ignored) &&
            !std::filesystem::is_directory(folder, ignored))
            throw std::invalid_argument(quoted(folder) + " is a file; no folder can be made there");
    }
}

path fullPath(const path& file) {
    std::error_code error;
    return std::filesystem::weakly_canonical(
        std::filesystem::absolute(dxf::linkedFile(file), error), error);
}

// One text for each file, however it is named: names that differ only by the case of their letters
// are one file on many systems.
std::string fileKey(const path& file) {
    const std::string name = utf8(fullPath(file));
    return dxf::utf8::isValid(name) ? editor::toUtf8(editor::upperCase(editor::fromUtf8(name)))
                                    : name;
}

void refuseTwins(const std::vector<path>& drawings) {
    std::map<path, const path*> known;
    for (const path& drawing : drawings) {
        const auto [twin, fresh] = known.emplace(fullPath(drawing), &drawing);
        if (!fresh)
            throw std::invalid_argument(quoted(*twin->second) + " and " + quoted(drawing) +
                                        " are one drawing; name it once");
    }
}

// The files of all tasks, each written once and not read by another one.
class Clashes {
  public:
    explicit Clashes(const std::vector<Options>& tasks) {
        for (const Options& task : tasks) reads_.emplace(fileKey(task.drawing), &task);
    }

    void write(const Options& task, const path& file) {
        if (file.empty() || file == "-") return;
        const std::string key = fileKey(file);
        const auto [known, fresh] = writes_.emplace(key, &task);
        if (!fresh)
            throw std::invalid_argument(quoted(known->second->drawing) + " and " +
                                        quoted(task.drawing) + " would both be written to " +
                                        quoted(file));
        const auto read = reads_.find(key);
        if (read != reads_.end() && read->second != &task)
            throw std::invalid_argument("what becomes of " + quoted(task.drawing) +
                                        " would overwrite the drawing " +
                                        quoted(read->second->drawing));
    }

  private:
    std::map<std::string, const Options*> reads_, writes_;
};

// What went wrong, for the table.
std::string troubleOf(const TaskResult& result) {
    if (!result.trouble.empty()) return result.trouble;
    switch (result.exit) {
        case Exit::done:
            return {};
        case Exit::unproved:
            return "the proof failed";
        case Exit::unreadable:
            return "can't be read";
        case Exit::unwritable:
            return "can't be written";
        case Exit::scriptEnded:
            return "the script went wrong";
        default:
            break;
    }
    const bool turned = result.session && result.session->counts.turned != 0;
    return turned ? "did not finish" : "nothing was done";
}

std::string outcomeOf(const TaskResult& result, bool dryRun) {
    std::string text = troubleOf(result);
    const auto add = [&](const std::string& what, const char* separator) {
        text += (text.empty() ? "" : separator) + what;
    };
    if (!result.savedAs.empty())
        add((dryRun ? "would be saved as " : "saved as ") + result.savedAs +
                (result.changedSince ? ", changed since" : ""),
            ", ");
    else if (text.empty())
        add("not saved", "");
    if (result.session && result.session->findings.count() != 0)
        add(result.session->findings.text(), "; ");
    return text;
}

std::string table(const std::vector<Options>& tasks, const std::vector<TaskResult>& results) {
    constexpr auto l = Table::Side::left;
    constexpr auto r = Table::Side::right;
    Table rows({"drawing", "turned", "stood so", "left", "exit", ""}, {l, r, r, r, r, l});
    std::size_t done = 0;
    for (std::size_t i = 0; i < tasks.size(); ++i) {
        const std::string drawing = tame(shownName(tasks[i].drawing));
        if (i >= results.size()) {
            rows.add({drawing, "-", "-", "-", "-", "not tried"});
            continue;
        }
        const TaskResult& result = results[i];
        if (result.exit == Exit::done) ++done;
        const auto shown = [&](std::size_t database::TurnCounts::*count) {
            return result.session ? std::to_string(result.session->counts.*count) : "-";
        };
        rows.add({drawing, shown(&database::TurnCounts::turned),
                  shown(&database::TurnCounts::unchanged), shown(&database::TurnCounts::left),
                  std::to_string(static_cast<int>(result.exit)),
                  tame(outcomeOf(result, tasks[i].dryRun))});
    }
    return rows.text() + std::to_string(done) + " of " + std::to_string(tasks.size()) +
           " drawings done.\n";
}

}  // namespace

std::vector<Options> tasksOf(const Options& options) {
    refuseFormat(options);
    std::vector<Options> tasks;
    if (options.drawings.empty()) {
        tasks.push_back(options.drawing.empty() ? options : taskOf(options, options.drawing));
        if (options.drawing.empty() && !options.output.empty())
            tasks.front().output = drawingFile(options.output);
    } else {
        refuseOneForAll(options);
        refuseTwins(options.drawings);
        for (const path& drawing : options.drawings) tasks.push_back(taskOf(options, drawing));
    }
    Clashes clashes(tasks);
    for (const Options& task : tasks) {
        refuseFolderInFile(task);
        if (tasks.size() == 1) break;  // refuseOverwriting tells it better
        for (const path* file : {&task.output, &task.report, &task.picture})
            clashes.write(task, *file);
    }
    return tasks;
}

std::string sentenceOf(const TaskResult& result) {
    if (!result.errors.empty()) return result.errors.front();
    return result.session ? result.session->text : std::string();
}

Exit runInTurn(const std::vector<Options>& tasks, Printer& printer,
               const std::function<TaskResult(const Options&)>& perform) {
    std::vector<TaskResult> results;
    Exit exit = Exit::done;
    const bool several = tasks.size() > 1;
    std::optional<Interruption> interruption;
    if (several) interruption.emplace(Interruption::Second::endsTheProgram);
    for (const Options& task : tasks) {
        const std::string name = utf8(task.drawing);
        if (several) {
            printer.print((results.empty() ? "[" : "\n[") + std::to_string(results.size() + 1) +
                          "/" + std::to_string(tasks.size()) + "] " + tame(shownText(name)) + "\n");
            printer.setSubject(name);
        }
        printer.takeErrors();
        results.push_back(perform(task));
        results.back().errors = printer.takeErrors();
        printer.setSubject({});
        if (exit == Exit::done) exit = results.back().exit;
        if (results.back().stopsAll || (several && interruption->happened())) break;
    }
    if (several && interruption->happened() && results.size() < tasks.size()) {
        printer.error(
            "interrupted; the drawings that the table tells as not tried are as they were");
        if (exit == Exit::done) exit = Exit::cancelled;
    }
    if (several || tasks.front().quiet) {
        printer.print("\n");
        printer.result(table(tasks, results));
    }
    if (tasks.front().summary.empty()) return exit;
    try {
        writeSummary(tasks.front().summary, {tasks, results, exit});
    } catch (const dxf::WriteError& error) {
        printer.error(error.what());
        if (exit == Exit::done) exit = Exit::unwritable;
    }
    return exit;
}

}  // namespace host::console
