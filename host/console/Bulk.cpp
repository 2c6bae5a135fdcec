#include "host/console/Bulk.h"

#include <filesystem>
#include <map>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "host/console/Files.h"
#include "host/console/Table.h"
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
bool namesFolder(const Options& options) {
    const path& output = options.output;
    if (output.empty() || hasPlaceholder(output)) return false;
    return !options.drawings.empty() || !output.has_filename();
}

Options taskOf(const Options& options, const path& drawing) {
    Options task = options;
    task.drawings.clear();
    task.drawing = drawing;
    task.makesFolder = namesFolder(options);
    task.output =
        task.makesFolder ? options.output / drawing.filename() : filledIn(options.output, drawing);
    task.report = filledIn(options.report, drawing);
    task.picture = filledIn(options.picture, drawing);
    return task;
}

// One text for each file, however it is named: names that differ only by the case of their letters
// are one file on many systems.
std::wstring fileKey(const path& file) {
    std::error_code error;
    const path full =
        std::filesystem::weakly_canonical(std::filesystem::absolute(file, error), error);
    return editor::upperCase(editor::fromUtf8(utf8(full)));
}

// The files of all tasks, each written once and not read by another one.
class Clashes {
  public:
    explicit Clashes(const std::vector<Options>& tasks) {
        for (const Options& task : tasks) reads_.emplace(fileKey(task.drawing), &task);
    }

    void write(const Options& task, const path& file) {
        if (file.empty() || file == "-") return;
        const std::wstring key = fileKey(file);
        const auto [known, fresh] = writes_.emplace(key, &task);
        if (!fresh)
            throw std::invalid_argument("'" + utf8(known->second->drawing) + "' and '" +
                                        utf8(task.drawing) + "' would both be written to '" +
                                        utf8(file) + "'");
        const auto read = reads_.find(key);
        if (read != reads_.end() && read->second != &task)
            throw std::invalid_argument("what becomes of '" + utf8(task.drawing) +
                                        "' would overwrite the drawing '" +
                                        utf8(read->second->drawing) + "'");
    }

  private:
    std::map<std::wstring, const Options*> reads_, writes_;
};

std::string outcomeOf(const TaskResult& result, bool dryRun) {
    switch (result.exit) {
        case Exit::done:
        case Exit::unproved:
            break;
        case Exit::unreadable:
            return "can't be read";
        case Exit::unwritable:
            return "can't be written";
        case Exit::scriptEnded:
            return "the script went wrong";
        default:
            return "nothing was done";
    }
    const std::string saved = result.savedAs.empty() ? "not saved"
                              : dryRun               ? "would be saved as " + result.savedAs
                                                     : "saved as " + result.savedAs;
    return result.exit == Exit::done ? saved : saved + ", the proof failed";
}

std::string shown(const std::optional<std::size_t>& count) {
    return count ? std::to_string(*count) : "-";
}

std::string summary(const std::vector<Options>& tasks, const std::vector<TaskResult>& results) {
    constexpr auto l = Table::Side::left;
    constexpr auto r = Table::Side::right;
    Table table({"drawing", "turned", "left", "exit", ""}, {l, r, r, r, l});
    std::size_t done = 0;
    for (std::size_t i = 0; i < tasks.size(); ++i) {
        const std::string drawing = tame(utf8(tasks[i].drawing));
        if (i >= results.size()) {
            table.add({drawing, "-", "-", "-", "not tried"});
            continue;
        }
        const TaskResult& result = results[i];
        if (result.exit == Exit::done) ++done;
        table.add({drawing, shown(result.turned), shown(result.left),
                   std::to_string(static_cast<int>(result.exit)),
                   tame(outcomeOf(result, tasks[i].dryRun))});
    }
    return "\n" + table.text() + std::to_string(done) + " of " + std::to_string(tasks.size()) +
           " drawings done.\n";
}

}  // namespace

std::vector<Options> tasksOf(const Options& options) {
    if (options.drawings.empty())
        return {options.drawing.empty() ? options : taskOf(options, options.drawing)};
    if (!options.report.empty() && options.report != "-" && !hasPlaceholder(options.report))
        throw std::invalid_argument(
            "--report of several drawings needs {} in its name, which stands for the name of each "
            "one, as in {}.json");
    if (!options.picture.empty() && !hasPlaceholder(options.picture))
        throw std::invalid_argument(
            "--picture of several drawings needs {} in its name, which stands for the name of each "
            "one, as in {}.svg");
    std::vector<Options> tasks;
    for (const path& drawing : options.drawings) tasks.push_back(taskOf(options, drawing));
    Clashes clashes(tasks);
    for (const Options& task : tasks)
        for (const path* file : {&task.output, &task.report, &task.picture})
            clashes.write(task, *file);
    return tasks;
}

void makeFolder(const Options& task) {
    std::error_code ignored;
    if (task.makesFolder && !task.dryRun)
        std::filesystem::create_directory(task.output.parent_path(), ignored);
}

Exit runInTurn(const std::vector<Options>& tasks, Printer& printer,
               const std::function<TaskResult(const Options&)>& perform) {
    std::vector<TaskResult> results;
    Exit exit = Exit::done;
    for (const Options& task : tasks) {
        const std::string name = utf8(task.drawing);
        printer.print((results.empty() ? "[" : "\n[") + std::to_string(results.size() + 1) + "/" +
                      std::to_string(tasks.size()) + "] " + tame(name) + "\n");
        printer.setSubject(name);
        results.push_back(perform(task));
        printer.setSubject({});
        if (exit == Exit::done) exit = results.back().exit;
        if (results.back().stopsAll) break;
    }
    printer.print(summary(tasks, results));
    return exit;
}

}  // namespace host::console
