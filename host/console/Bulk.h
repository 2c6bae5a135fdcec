// Several drawings in one call: the same command or script for each of them, one after another,
// each in a session of its own. What goes wrong with one leaves the others done.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "host/console/Account.h"
#include "host/console/Options.h"
#include "host/console/Printer.h"
#include "host/database/Turning.h"

namespace host::console {

// What is asked for each drawing, in their order; `options` itself when it names one drawing or
// none. The files to be written get their names here:
//   -o FOLDER/    the drawing's own file name in that folder; FOLDER without the slash, too, when
//                 there is one
//   "{}"          in the name of any file stands for the drawing's file name without its extension
//   -o NAME       gets ".dxf" when it has no extension
// Folders of -o FOLDER/ and of names with "{}" are made when something is written there, at any
// depth.
// Throws std::invalid_argument: a drawing that is named twice; for several drawings an -o that
// names one file, a report or picture without "{}", and a log with it; two drawings that would be
// written to one file (whatever the case of its letters); a file that is to be written for one
// drawing and is read for another; an -o that ends with .dwg or its kin; a folder that can't be
// one, because a file stands there.
std::vector<Options> tasksOf(const Options& options);

// What a session came to.
struct SessionResult {
    database::TurnCounts counts;
    ReasonCounts left{};
    std::string text;   // Outcome::textWithReasons
    Findings findings;  // of the drawing
};

// How one drawing went.
struct TaskResult {
    Exit exit = Exit::done;
    std::optional<SessionResult> session;  // none: there was no session, or no drawing in it
    std::string savedAs;                   // as it is shown; empty: not saved
    bool changedSince = false;             // after it was last saved
    std::string trouble;                   // "the report can't be written"; empty: what `exit` says
    std::vector<std::string> errors;       // what standard error was told of it
    bool stopsAll = false;                 // it would go the same way with every other drawing
};

// The first error of a drawing, or what its session came to.
std::string sentenceOf(const TaskResult& result);

// Does the tasks in turn, with a heading before each one of several, the drawing's name before its
// errors, and a table of all behind the last one. Writes the summary that --summary asks for. Gives
// the exit code of the first drawing that did not go well.
Exit runInTurn(const std::vector<Options>& tasks, Printer& printer,
               const std::function<TaskResult(const Options&)>& perform);

}  // namespace host::console
