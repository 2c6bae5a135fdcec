// The examples of docs/using.md, run as they are printed there.
//
// A block that opens with ```scr NAME is the content of the file NAME. In a block that opens with
// ```console a line "$ orlinth ..." is run, "$ cat NAME" shows a file, "$ echo $?" the exit code of
// the run before; the lines behind are all that is printed, standard output first. An example
// without "$ echo $?" ends with 0.
#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/host/console/Transcript.h"

namespace {

using namespace console_test;

std::filesystem::path document(const char* name) {
    return exampleDrawing().parent_path().parent_path() / "docs" / name;
}

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
    Example(const Block& block, const Folder& folder) : block_(block), folder_(folder) {}

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
        place_ = "using.md:" + std::to_string(block_.line) + " " + command;
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

    const Block& block_;
    const Folder& folder_;
    std::optional<int> exit_;
    std::string place_;
};

TEST(Documentation, EveryExampleOfUsingPrintsWhatIsWritten) {
    const Folder folder;
    write(folder / "streets.dxf", read(exampleDrawing()));
    int runs = 0;
    for (const Block& block : blocksOf(read(document("using.md")))) {
        if (startsWith(block.heading, "scr ")) {
            std::string content;
            for (const std::string& line : block.lines) content += line + "\n";
            write(folder / std::filesystem::u8path(block.heading.substr(4)), content);
        } else if (block.heading == "console") {
            runs += Example(block, folder).play();
        }
    }
    EXPECT_GT(runs, 10);
}

}  // namespace
