// Sessions written down: command lines of orlinth with what they print, run in a fresh folder that
// holds the example drawing as streets.dxf.
//
// A transcript (*.txt) is read line by line, by the first characters:
//     # ...            prose
//     file NAME        the lines "| ..." that follow are the content of NAME, each ended by a line
//     end copy FROM TO     FROM of the folder is copied to TO folder NAME      is made $ orlinth
//     ...    the program is run; blanks separate arguments, double quotes hold blanks together,
//                      {bin} stands for the folder of the programs
//     < ...            a line of its standard input
//     > ...            a line of its standard output     these three always say all that there is:
//     ! ...            a line of its standard error      what is not written down must not be
//     printed = N              its exit code same A B         the files are equal, byte for byte
//     differ A B       they are not
//     absent NAME      there is no such file; present NAME: there is
// In expected lines {*} matches any text, and a line that is only {...} any number of lines.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "tests/host/console/ChildProcess.h"

namespace console_test {

struct Step {
    enum class Kind { file, copy, folder, run, same, differ, absent, present };
    Kind kind = Kind::run;
    int line = 0;                    // of the transcript
    std::vector<std::string> words;  // names, or the arguments of the program without its own name
    std::string content;             // of a file, or of standard input
    std::vector<std::string> output, error;
    int exit = 0;
};

// Throws std::runtime_error with the line for what it can't read, and for a transcript without a
// run.
std::vector<Step> parseTranscript(std::string_view text);

// Runs all steps in a fresh folder; what differs becomes a failure of the running test.
void play(const std::vector<Step>& steps, const std::string& name);

// Runs one step in `folder`.
void play(const Step& step, const Folder& folder, const std::string& name);

// The words of a command line: blanks separate, double quotes hold together, {bin} is replaced.
std::vector<std::string> splitCommandLine(std::string_view line);

// True when the lines printed are the lines expected, wild cards included.
bool matches(const std::vector<std::string>& expected, const std::vector<std::string>& printed);

// The lines of a text; a last line without its end counts.
std::vector<std::string> lines(std::string_view text);

}  // namespace console_test
