// Sessions as text: every file of transcripts/ is a test of its own. A file holds
//   # ...                 a remark
//   drawing town          the drawing of Harness.h; or records of its own, one a line:
//   layer NAME [FLAGS]    FLAGS as group 70 has them: 1 frozen, 4 locked
//   record TYPE|...       as DrawingText.h reads it
//   view X,Y HEIGHT
//   by person             replies are typed (otherwise they are a script)
//   < REPLY               a line of the input
//   > TEXT                a line that is shown, as it stands; {*} stands for any text
// in this order, replies first. What is shown has to agree line for line.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "host/editor/Words.h"
#include "tests/host/editor/Harness.h"

namespace {

namespace fs = std::filesystem;
using host::editor::fromUtf8;
using host::editor::toUtf8;

struct Transcript {
    host::test::DrawingText drawing{"AC1009"};
    host::test::Harness::By by = host::test::Harness::By::script;
    std::vector<std::wstring> replies;
    std::string expected;
};

fs::path folder() {
    return fs::path(ORLINTH_TEST_DATA).parent_path() / "host" / "editor" / "transcripts";
}

std::vector<fs::path> files() {
    std::vector<fs::path> found;
    for (const auto& entry : fs::directory_iterator(folder())) {
        if (entry.path().extension() == ".txt") found.push_back(entry.path());
    }
    std::sort(found.begin(), found.end());
    return found;
}

// The rest of a line behind `word` and a blank; false when the line is another.
bool takes(const std::string& line, const std::string& word, std::string& rest) {
    if (line != word && line.compare(0, word.size() + 1, word + " ") != 0) return false;
    rest = line.size() > word.size() ? line.substr(word.size() + 1) : "";
    return true;
}

void setView(Transcript& transcript, const std::string& words) {
    std::istringstream input(words);
    std::string x, y, height;
    std::getline(input, x, ',');
    input >> y >> height;
    transcript.drawing.variable("$VIEWCTR|10 " + x + "|20 " + y).variable("$VIEWSIZE|40 " + height);
}

void takeLine(Transcript& transcript, const std::string& line) {
    std::string rest;
    if (line.empty() || takes(line, "#", rest)) return;
    if (takes(line, "drawing", rest) && rest == "town") {
        transcript.drawing = host::test::smallTown();
    } else if (takes(line, "layer", rest)) {
        const std::size_t blank = rest.find(' ');
        transcript.drawing.layer(rest.substr(0, blank),
                                 blank == std::string::npos ? 0 : std::stoi(rest.substr(blank)));
    } else if (takes(line, "record", rest)) {
        transcript.drawing.entity(rest);
    } else if (takes(line, "view", rest)) {
        setView(transcript, rest);
    } else if (takes(line, "by", rest) && rest == "person") {
        transcript.by = host::test::Harness::By::person;
    } else if (takes(line, "<", rest)) {
        transcript.replies.push_back(fromUtf8(rest));
    } else if (takes(line, ">", rest)) {
        transcript.expected += rest + "\n";
    } else {
        throw std::runtime_error("what does '" + line + "' mean?");
    }
}

Transcript read(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    Transcript transcript;
    for (std::string line; std::getline(file, line);) takeLine(transcript, line);
    return transcript;
}

// Blanks at the end of lines can't be seen in a file.
std::string withoutTrailingBlanks(const std::string& text) {
    std::istringstream input(text);
    std::string all;
    for (std::string line; std::getline(input, line);) {
        const std::size_t last = line.find_last_not_of(' ');
        all += (last == std::string::npos ? "" : line.substr(0, last + 1)) + "\n";
    }
    return all;
}

// The shown lines with "{*}" put where the expected lines have it, so that differences are shown as
// texts.
std::string blurred(const std::string& shown, const std::string& expected) {
    std::istringstream shownLines(shown);
    std::istringstream expectedLines(expected);
    std::string all;
    for (std::string line, wanted; std::getline(shownLines, line);) {
        if (!std::getline(expectedLines, wanted)) wanted.clear();
        const std::size_t star = wanted.find("{*}");
        const std::string head = wanted.substr(0, star);
        const std::string tail = star == std::string::npos ? "" : wanted.substr(star + 3);
        const bool fits = star != std::string::npos && line.size() >= head.size() + tail.size() &&
                          line.compare(0, head.size(), head) == 0 &&
                          line.compare(line.size() - tail.size(), tail.size(), tail) == 0;
        all += (fits ? wanted : line) + "\n";
    }
    return all;
}

class TranscriptTest : public testing::TestWithParam<fs::path> {};

std::string testName(const testing::TestParamInfo<fs::path>& info) {
    std::string name = info.param.stem().string();
    std::replace_if(
        name.begin(), name.end(), [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
    return name;
}

}  // namespace

TEST(Transcripts, ThereAreSome) {
    EXPECT_GE(files().size(), 10u);
}

TEST_P(TranscriptTest, ShowsWhatIsWritten) {
    const Transcript transcript = read(GetParam());
    host::test::Harness harness(transcript.drawing, transcript.replies, transcript.by);
    const std::string expected = withoutTrailingBlanks(transcript.expected);
    EXPECT_EQ(blurred(withoutTrailingBlanks(toUtf8(harness.run())), expected), expected);
}

INSTANTIATE_TEST_SUITE_P(Files, TranscriptTest, testing::ValuesIn(files()), testName);
