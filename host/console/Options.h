// The command line of orlinth: what was asked, or the answer that ends the program at once.
//
// Texts are UTF-8 in every build; paths are made from them by the rules of the system.
#pragma once

#include <array>
#include <filesystem>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace host::console {

// What the caller of the program learns from its exit code.
enum class Exit : int {
    done = 0,
    cancelled = 1,    // a command was cancelled or found nothing to do, or an exception left it
    usage = 2,        // the command line itself
    unreadable = 3,   // drawing, script or module
    unwritable = 4,   // the result; target and source are as they were
    scriptEnded = 5,  // the answers ended inside a prompt, or named a command that does not exist
    unproved = 6,     // --verify found a difference that the command did not make
};

// One --select: which entities stay in the selection.
struct Filter {
    enum class Kind { all, layer, type, handle, window, crossing };
    Kind kind = Kind::all;
    std::string text;                  // as it was given: "layer=KATU*"
    std::string pattern;               // layer and type: wild cards and commas included
    std::vector<std::string> handles;  // handle: hexadecimal digits, at least one handle
    std::array<double, 4> corners{};   // window and crossing: x1, y1, x2, y2
};

// What `orlinth align` was asked. Two of the three first are empty.
struct AlignRequest {
    std::string lineHandle;       // hexadecimal digits
    std::string linePoint;        // "x,y", two numbers
    std::string lineLayer;        // the name of the layer whose only line is meant
    std::vector<Filter> filters;  // none means all
    bool flip = false;
};

struct Options {
    std::filesystem::path drawing;                // empty: none was named, or several
    std::vector<std::filesystem::path> drawings;  // when several were named; see Bulk.h
    std::filesystem::path script;                 // empty: answers come from standard input
    std::filesystem::path output;   // empty: nothing is written but by QSAVE and SAVEAS
    std::filesystem::path report;   // "-": standard output
    std::filesystem::path picture;  // empty: none
    std::vector<std::filesystem::path> folders;  // made when something is written there; see Bulk.h
    std::filesystem::path summary;               // of all drawings; empty: none
    std::filesystem::path log;
    std::filesystem::path module;  // empty: the one beside the program
    bool verify = false;
    bool dryRun = false;
    bool readOnly = false;
    bool quiet = false;
    std::optional<AlignRequest> align;
};

// An answer that ends the program before anything was opened: help, version, or what is wrong.
struct Farewell {
    Exit code = Exit::done;
    std::string output;  // for standard output
    std::string error;   // for standard error, without the program's name and the last line end
};

// "orlinth 0.1.0".
std::string programVersion();

// Reads the arguments behind the program's name.
// An unknown option, a missing or malformed value (Arguments.h), a drawing named twice, a script
// beside `align`, an unknown word before the drawings,
// several drawings without a script or `align`, a picture whose name ends with none of .svg, .png
// and .pdf, a summary whose name ends with neither .json nor .csv, a report, picture, summary or
// log named as a drawing, a value of a switch, and a file that is to be both written and read other
// than as the drawing give a Farewell with Exit::usage. Names of files to be written are those of
// the command line; tasksOf (Bulk.h) makes them each drawing's own and has been tried.
std::variant<Options, Farewell> parseOptions(const std::vector<std::string>& arguments);

// The answer to a call without arguments that finds standard input empty: what can be asked.
Farewell nothingAsked();

// Reads the FILTER of --select. Throws std::invalid_argument with the whole sentence.
Filter parseFilter(const std::string& text);

// A path of this system from UTF-8, and back.
std::filesystem::path pathFromUtf8(const std::string& text);
std::string utf8(const std::filesystem::path& path);

}  // namespace host::console
