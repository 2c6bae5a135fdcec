#include "tests/host/console/Transcript.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace console_test {

namespace {

[[noreturn]] void refuse(int line, const std::string& why) {
    throw std::runtime_error("line " + std::to_string(line) + ": " + why);
}

bool startsWith(std::string_view text, std::string_view start) {
    return text.substr(0, start.size()) == start;
}

// What stands behind a mark of one character and a blank; the blank may be missing on an empty
// line.
std::string behindMark(std::string_view line) {
    return std::string(line.substr(std::min<std::size_t>(2, line.size())));
}

Step::Kind kindOf(std::string_view word, int line) {
    if (word == "file") return Step::Kind::file;
    if (word == "copy") return Step::Kind::copy;
    if (word == "folder") return Step::Kind::folder;
    if (word == "same") return Step::Kind::same;
    if (word == "differ") return Step::Kind::differ;
    if (word == "absent") return Step::Kind::absent;
    if (word == "present") return Step::Kind::present;
    refuse(line, "'" + std::string(word) + "' begins no step");
}

std::size_t namesOf(Step::Kind kind) {
    return kind == Step::Kind::copy || kind == Step::Kind::same || kind == Step::Kind::differ ? 2
                                                                                              : 1;
}

Step stepFrom(std::string_view text, int line) {
    Step step;
    step.line = line;
    step.words = splitCommandLine(text);
    if (startsWith(text, "$ ")) {
        if (step.words.size() < 2 || step.words[1] != "orlinth")
            refuse(line, "only orlinth can be run");
        step.words.erase(step.words.begin(), step.words.begin() + 2);
        return step;
    }
    step.kind = kindOf(step.words.front(), line);
    step.words.erase(step.words.begin());
    if (step.words.size() != namesOf(step.kind)) refuse(line, "the wrong number of names");
    return step;
}

bool matchesLine(std::string_view pattern, std::string_view text) {
    constexpr std::string_view any = "{*}";
    const std::size_t wild = pattern.find(any);
    if (wild == std::string_view::npos) return pattern == text;
    if (!startsWith(text, pattern.substr(0, wild))) return false;
    const std::string_view rest = pattern.substr(wild + any.size());
    for (std::size_t i = wild; i <= text.size(); ++i)
        if (matchesLine(rest, text.substr(i))) return true;
    return false;
}

bool matchesFrom(const std::vector<std::string>& expected, std::size_t i,
                 const std::vector<std::string>& printed, std::size_t k) {
    if (i == expected.size()) return k == printed.size();
    if (expected[i] == "{...}") {
        for (std::size_t next = k; next <= printed.size(); ++next)
            if (matchesFrom(expected, i + 1, printed, next)) return true;
        return false;
    }
    return k < printed.size() && matchesLine(expected[i], printed[k]) &&
           matchesFrom(expected, i + 1, printed, k + 1);
}

std::string joined(const std::vector<std::string>& all) {
    std::string text;
    for (const std::string& line : all) text += "    " + line + "\n";
    return text;
}

void expectLines(const std::vector<std::string>& expected, const std::string& printed,
                 const char* stream, const std::string& place) {
    const std::vector<std::string> found = lines(printed);
    EXPECT_TRUE(matches(expected, found)) << place << ": " << stream << " is\n"
                                          << joined(found) << "  and should be\n"
                                          << joined(expected);
}

void playRun(const Step& step, const Folder& folder, const std::string& place) {
    const Outcome outcome = run({orlinth(), step.words, folder.path(), step.content});
    expectLines(step.output, outcome.output, "standard output", place);
    expectLines(step.error, outcome.error, "standard error", place);
    EXPECT_EQ(outcome.exit, step.exit) << place << ": exit code";
}

}  // namespace

std::vector<std::string> lines(std::string_view text) {
    std::vector<std::string> result;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        result.emplace_back(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    return result;
}

std::vector<std::string> splitCommandLine(std::string_view line) {
    std::vector<std::string> words;
    bool quoted = false;
    bool inWord = false;
    for (const char c : line) {
        if (c == '"') {
            quoted = !quoted;
            if (!inWord) words.emplace_back();
            inWord = true;
        } else if (c == ' ' && !quoted) {
            inWord = false;
        } else {
            if (!inWord) words.emplace_back();
            words.back() += c;
            inWord = true;
        }
    }
    constexpr std::string_view bin = "{bin}";
    for (std::string& word : words)
        if (const std::size_t at = word.find(bin); at != std::string::npos)
            word.replace(at, bin.size(), ORLINTH_BIN_DIR);
    return words;
}

bool matches(const std::vector<std::string>& expected, const std::vector<std::string>& printed) {
    return matchesFrom(expected, 0, printed, 0);
}

std::vector<Step> parseTranscript(std::string_view text) {
    std::vector<Step> steps;
    bool runs = false;
    int number = 0;
    for (const std::string& line : lines(text)) {
        ++number;
        if (line.empty() || line[0] == '#') continue;
        if (std::string_view("|<>!=").find(line[0]) == std::string_view::npos) {
            steps.push_back(stepFrom(line, number));
            runs = runs || steps.back().kind == Step::Kind::run;
            continue;
        }
        if (steps.empty() || (steps.back().kind == Step::Kind::file) != (line[0] == '|'))
            refuse(number, "the step above takes no such line");
        Step& step = steps.back();
        switch (line[0]) {
            case '|':
            case '<':
                step.content += behindMark(line) + "\n";
                break;
            case '>':
                step.output.push_back(behindMark(line));
                break;
            case '!':
                step.error.push_back(behindMark(line));
                break;
            default:
                step.exit = std::stoi(behindMark(line));
                break;
        }
    }
    if (!runs) throw std::runtime_error("the transcript runs nothing");
    return steps;
}

void play(const Step& step, const Folder& folder, const std::string& name) {
    const std::string place = name + ":" + std::to_string(step.line);
    const auto file = [&](std::size_t i) {
        return folder / std::filesystem::u8path(step.words[i]);
    };
    switch (step.kind) {
        case Step::Kind::file:
            write(file(0), step.content);
            break;
        case Step::Kind::copy:
            std::filesystem::copy(file(0), file(1));
            break;
        case Step::Kind::folder:
            std::filesystem::create_directory(file(0));
            break;
        case Step::Kind::run:
            playRun(step, folder, place);
            break;
        case Step::Kind::same:
            EXPECT_TRUE(std::filesystem::exists(file(0))) << place;
            EXPECT_TRUE(read(file(0)) == read(file(1))) << place << ": the files differ";
            break;
        case Step::Kind::differ:
            EXPECT_FALSE(read(file(0)) == read(file(1))) << place << ": the files are equal";
            break;
        case Step::Kind::absent:
            EXPECT_FALSE(std::filesystem::exists(file(0))) << place;
            break;
        case Step::Kind::present:
            EXPECT_TRUE(std::filesystem::exists(file(0))) << place;
            break;
    }
}

void play(const std::vector<Step>& steps, const std::string& name) {
    const Folder folder;
    write(folder / "streets.dxf", read(exampleDrawing()));
    for (const Step& step : steps) play(step, folder, name);
}

}  // namespace console_test
