// Several drawings in one call: the same command or script for each of them, one after another,
// each in a session of its own. What goes wrong with one leaves the others done.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "host/console/Options.h"
#include "host/console/Printer.h"

namespace host::console {

// What is asked for each drawing, in their order; `options` itself when it names one drawing or
// none. The files to be written get their names here:
//   -o FOLDER     the drawing's own file name in that folder, which is made when it is missing; for
//   a
//                 single drawing FOLDER ends in a slash
//   "{}"          in the name of any file stands for the drawing's file name without its extension
// Throws std::invalid_argument: a report or picture without "{}" for several drawings, two drawings
// that would be written to one file (whatever the case of its letters), and a file that is to be
// written for one drawing and is read for another.
std::vector<Options> tasksOf(const Options& options);

// How one drawing went.
struct TaskResult {
    Exit exit = Exit::done;
    std::optional<std::size_t> turned, left;  // none: there was no session
    std::string savedAs;                      // empty: not saved
    bool stopsAll = false;                    // it would go the same way with every other drawing
};

// Makes the folder that the task wants made. What fails is told where something is written there.
void makeFolder(const Options& task);

// Does the tasks in turn, with a heading before each one, the drawing's name before its errors, and
// a table of all behind the last one. Gives the exit code of the first drawing that did not go
// well.
Exit runInTurn(const std::vector<Options>& tasks, Printer& printer,
               const std::function<TaskResult(const Options&)>& perform);

}  // namespace host::console
