// The examples of README.md, docs/using.md, docs/report.md and --help, run as they are printed
// there, the table of angles in docs/command.md computed again, and the files that the documents
// name.
//
// A block that opens with ```scr NAME or ```csv NAME is the content of the file NAME. In a block
// that opens with
// ```console a line "$ orlinth ..." is run, "$ cat NAME" shows a file, "$ echo $?" the exit code of
// the run before; the lines behind are all that is printed, standard output first. An example
// without "$ echo $?" ends with 0.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <optional>
#include <regex>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/host/console/PlainDrawing.h"
#include "tests/host/console/Transcript.h"

namespace {

using namespace console_test;

// `name` as seen from the root of the sources.
std::filesystem::path document(const std::string& name) {
    return exampleDrawing().parent_path().parent_path() / name;
}

const std::vector<std::string> documents{
    "README.md",   "CONTRIBUTING.md",      "docs/using.md",  "docs/command.md",
    "docs/dxf.md", "docs/architecture.md", "docs/report.md", "docs/picture.md"};

bool startsWith(const std::string& text, const std::string& start) {
    return text.rfind(start, 0) == 0;
}

struct Block {
    int line = 0;
    std::string heading;  // what stands behind the three backticks
    std::vector<std::string> lines;
};

std::vector<Block> blocksOf(const std::string& text) {
    std::vector<Block> blocks;
    bool inside = false;
    int number = 0;
    for (const std::string& line : lines(text)) {
        ++number;
        if (startsWith(line, "```")) {
            inside = !inside;
            if (inside) blocks.push_back({number, line.substr(3), {}});
        } else if (inside) {
            blocks.back().lines.push_back(line);
        }
    }
    return blocks;
}

// Runs the commands of a console block; gives how many there were.
class Example {
  public:
    Example(const std::string& document, const Block& block, const Folder& folder)
        : document_(document), block_(block), folder_(folder) {}

    int play() {
        int runs = 0;
        for (std::size_t i = 0; i < block_.lines.size();) {
            const std::string command = block_.lines[i++];
            demand(startsWith(command, "$ "), command);
            std::vector<std::string> printed;
            while (i < block_.lines.size() && !startsWith(block_.lines[i], "$ "))
                printed.push_back(block_.lines[i++]);
            runs += perform(command, printed) ? 1 : 0;
        }
        expectExit(0);
        return runs;
    }

  private:
    static void demand(bool fact, const std::string& line) {
        if (!fact) throw std::runtime_error("no command: " + line);
    }

    void expectExit(int code) {
        EXPECT_EQ(exit_.value_or(code), code) << place_;
        exit_.reset();
    }

    bool perform(const std::string& command, const std::vector<std::string>& printed) {
        if (command == "$ echo $?") {
            expectExit(std::stoi(printed.at(0)));
            return false;
        }
        expectExit(0);
        place_ = document_ + ":" + std::to_string(block_.line) + " " + command;
        const std::vector<std::string> words = splitCommandLine(command);
        std::string output;
        if (words.at(1) == "cat") {
            output = read(folder_ / std::filesystem::u8path(words.at(2)));
        } else {
            demand(words.at(1) == "orlinth", command);
            const Outcome outcome =
                run({orlinth(), {words.begin() + 2, words.end()}, folder_.path(), {}});
            output = outcome.output + outcome.error;
            exit_ = outcome.exit;
        }
        EXPECT_TRUE(matches(printed, lines(output))) << place_ << " prints\n" << output;
        return true;
    }

    const std::string& document_;
    const Block& block_;
    const Folder& folder_;
    std::optional<int> exit_;
    std::string place_;
};

// Plays the examples of a document; gives how many calls of the program there were.
int playExamples(const std::string& name) {
    const Folder folder;
    write(folder / "streets.dxf", read(exampleDrawing()));
    int runs = 0;
    for (const Block& block : blocksOf(read(document(name)))) {
        if (startsWith(block.heading, "scr ") || startsWith(block.heading, "csv ")) {
            std::string content;
            for (const std::string& line : block.lines) content += line + "\n";
            write(folder / std::filesystem::u8path(block.heading.substr(4)), content);
        } else if (block.heading == "console") {
            runs += Example(name, block, folder).play();
        }
    }
    return runs;
}

TEST(Documentation, EveryExampleOfUsingPrintsWhatIsWritten) {
    EXPECT_GT(playExamples("docs/using.md"), 10);
}

#ifndef _WIN32
// Natively only: the shell.
TEST(Documentation, TheLoopOverAListOfLinesRuns) {
    const Folder folder;
    for (const char* name : {"streets.dxf", "numbers.dxf"})
        write(folder / name, read(exampleDrawing()));
    std::string loop = "PATH='" + orlinth().parent_path().string() + "':$PATH\n";
    for (const Block& block : blocksOf(read(document("docs/using.md")))) {
        std::string content;
        for (const std::string& line : block.lines) content += line + "\n";
        if (block.heading == "csv lines.csv") write(folder / "lines.csv", content);
        if (block.heading == "sh") loop += content;
    }
    const Outcome outcome = run({"/bin/sh", {"-c", loop}, folder.path(), {}});
    EXPECT_EQ(outcome.exit, 0) << outcome.error;
    EXPECT_EQ(outcome.error, "");
    EXPECT_FALSE(std::filesystem::exists(folder / "failed.txt"));
    EXPECT_EQ(read(folder / "turned/streets.dxf"), read(folder / "turned/numbers.dxf"));
    EXPECT_NE(read(folder / "turned/streets.dxf"), "");
}
#endif

// The script of the help: its lines stand indented below the example that takes it.
std::string scriptOfTheHelp(const std::vector<std::string>& help) {
    const std::string indent(10, ' ');
    auto at = std::find_if(help.begin(), help.end(), [&](const std::string& line) {
        return line == indent + "ZEPTAlignEntities";
    });
    std::string script;
    for (; at != help.end() && (at->empty() || startsWith(*at, indent)); ++at)
        script += (at->empty() ? "" : at->substr(indent.size())) + "\n";
    return script;
}

TEST(Documentation, EveryExampleOfTheHelpRunsAsItStands) {
    int runs = 0;
    for (const std::vector<std::string>& words :
         std::vector<std::vector<std::string>>{{"--help"}, {"align", "--help"}}) {
        const std::vector<std::string> help =
            lines(run({orlinth(), words, Folder().path(), {}}).output);
        auto line = std::find(help.begin(), help.end(), "Examples:");
        ASSERT_NE(line, help.end());
        for (; line != help.end(); ++line) {
            if (!startsWith(*line, "  orlinth ")) continue;
            const Folder folder;
            for (const char* name : {"streets.dxf", "north.dxf", "south.dxf"})
                write(folder / name, read(exampleDrawing()));
            write(folder / "run.scr", scriptOfTheHelp(help));
            const std::vector<std::string> call = splitCommandLine("$ " + line->substr(2));
            const Outcome outcome =
                run({orlinth(), {call.begin() + 2, call.end()}, folder.path(), "LIST L\n\nQUIT\n"});
            EXPECT_EQ(outcome.exit, 0) << *line << "\n" << outcome.error;
            EXPECT_EQ(outcome.error, "") << *line;
            const bool turns = line->find(" -o turned") != std::string::npos;
            EXPECT_EQ(std::filesystem::exists(folder / "turned.dxf") ||
                          std::filesystem::exists(folder / "turned" / "south.dxf"),
                      turns)
                << *line;
            ++runs;
        }
    }
    EXPECT_GE(runs, 9);
}

TEST(Documentation, EveryExampleOfTheReportPrintsWhatIsWritten) {
    EXPECT_GE(playExamples("docs/report.md"), 2);
}

TEST(Documentation, EveryExampleOfTheReadmePrintsWhatIsWritten) {
    EXPECT_GE(playExamples("README.md"), 2);
}

// Made by the command that README.md and docs/picture.md tell.
TEST(Documentation, PictureIsWhatTheProgramDraws) {
    const Folder folder;
    write(folder / "streets.dxf", read(exampleDrawing()));
    const Outcome outcome = run({orlinth(),
                                 {"align", "streets.dxf", "--line", "handle=2F", "--flip",
                                  "--dry-run", "--picture", "align.svg"},
                                 folder.path(),
                                 {}});
    EXPECT_EQ(outcome.exit, 0) << outcome.error;
    EXPECT_EQ(read(folder / "align.svg"), read(document("docs/images/align.svg")))
        << "draw it anew by this command, look at it, and put it there";
}

// The targets of links, and names in backticks that are paths by their looks: a slash or an
// extension of ours in them, no blank, no wild card and no place holder.
std::vector<std::string> namedFiles(const std::string& text) {
    static const std::regex link(R"(\]\(([^)#:]+)\))");
    static const std::regex name(
        R"(`([A-Za-z0-9_.]+(?:/[A-Za-z0-9_.]+)*(?:/|\.(?:h|cpp|md|py|sh|dxf)))`)");
    std::vector<std::string> names;
    for (const std::regex& pattern : {link, name}) {
        for (std::sregex_iterator i(text.begin(), text.end(), pattern), none; i != none; ++i)
            names.push_back((*i)[1]);
    }
    return names;
}

TEST(Documentation, FilesThatAreNamedExist) {
    // Made by the reader or the build.
    const std::vector<std::string> made{"run.scr", "town.dxf"};
    int checked = 0;
    for (const std::string& name : documents) {
        const std::filesystem::path folder = document(name).parent_path();
        for (const std::string& file : namedFiles(read(document(name)))) {
            if (std::find(made.begin(), made.end(), file) != made.end()) continue;
            ++checked;
            EXPECT_TRUE(std::filesystem::exists(folder / file) ||
                        std::filesystem::exists(document(file)) ||
                        std::filesystem::exists(document("examples") / file))
                << name << " names " << file;
        }
    }
    EXPECT_GT(checked, 20);
}

// The columns: where the segment runs, the text, the symbol, the symbol with "k", in degrees.
TEST(Documentation, TheTableOfAnglesIsThatOfAPlainCalculation) {
    static const std::regex row(
        R"(\| (\d+)(?: \([a-z]+\))? \| (-?[\d.]+) \| (-?[\d.]+) \| (-?[\d.]+) \|)");
    int rows = 0;
    for (const std::string& line : lines(read(document("docs/command.md")))) {
        std::smatch cells;
        if (!std::regex_match(line, cells, row)) continue;
        ++rows;
        const double direction = std::stod(cells[1]) * 3.141592653589793 / 180.0;
        // Directions along an axis have a zero in them.
        const auto exact = [](double part) { return std::round(part * 1e12) / 1e12; };
        const std::vector<Plane> segment{{0, 0},
                                         {exact(std::cos(direction)), exact(std::sin(direction))}};
        const Record text{"TEXT", {}};
        const Record symbol{"INSERT", {}};
        EXPECT_NEAR(std::stod(cells[2]), expectedRotation(text, segment, false), 1e-5) << line;
        EXPECT_NEAR(std::stod(cells[3]), expectedRotation(symbol, segment, false), 1e-5) << line;
        EXPECT_NEAR(std::stod(cells[4]), expectedRotation(symbol, segment, true), 1e-5) << line;
    }
    EXPECT_EQ(rows, 8);
}

}  // namespace
