// Every *.txt beside this file becomes a test of its name.
#include "tests/host/console/Transcript.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace console_test;

std::filesystem::path transcriptFolder() {
    return std::filesystem::path(ORLINTH_TEST_DATA).parent_path() / "host" / "console";
}

std::vector<std::string> transcriptNames() {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(transcriptFolder()))
        if (entry.path().extension() == ".txt") names.push_back(entry.path().stem().string());
    std::sort(names.begin(), names.end());
    // Without transcripts every session would be "tested" by nothing at all.
    if (names.empty()) throw std::runtime_error("no transcripts in " + transcriptFolder().string());
    return names;
}

class Session : public testing::TestWithParam<std::string> {};

TEST_P(Session, RunsAsWrittenDown) {
    const std::string file = GetParam() + ".txt";
    play(parseTranscript(read(transcriptFolder() / file)), file);
}

INSTANTIATE_TEST_SUITE_P(Transcripts, Session, testing::ValuesIn(transcriptNames()),
                         [](const auto& session) { return session.param; });

TEST(Transcript, TellsWhatWasPrintedApartFromWhatWasExpected) {
    EXPECT_TRUE(matches({"a", "b"}, {"a", "b"}));
    EXPECT_FALSE(matches({"a", "b"}, {"a"}));
    EXPECT_FALSE(matches({"a"}, {"a", "b"}));
    EXPECT_FALSE(matches({"a"}, {"A"}));
    EXPECT_TRUE(matches({}, {}));
    EXPECT_FALSE(matches({}, {""}));
}

TEST(Transcript, WildCardsMatchTextInALineAndAnyNumberOfLines) {
    EXPECT_TRUE(matches({"line {*} of {*}"}, {"line 3 of 12"}));
    EXPECT_FALSE(matches({"line {*} of 3"}, {"line 3 of 12"}));
    EXPECT_TRUE(matches({"{...}", "end"}, {"end"}));
    EXPECT_TRUE(matches({"{...}", "end"}, {"a", "b", "end"}));
    EXPECT_FALSE(matches({"{...}", "end"}, {"a", "end", "b"}));
}

TEST(Transcript, SplitsCommandLinesAtBlanksOutsideQuotes) {
    EXPECT_EQ(splitCommandLine("$ orlinth  \"a b.dxf\" --select \"layer=VANHA NIMISTÖ\" \"\""),
              (std::vector<std::string>{"$", "orlinth", "a b.dxf", "--select",
                                        "layer=VANHA NIMISTÖ", ""}));
    EXPECT_EQ(splitCommandLine("{bin}/x"),
              (std::vector<std::string>{std::string(ORLINTH_BIN_DIR) + "/x"}));
}

TEST(Transcript, RefusesWhatItCannotRead) {
    EXPECT_THROW(parseTranscript(""), std::runtime_error);
    EXPECT_THROW(parseTranscript("# only prose\n"), std::runtime_error);
    EXPECT_THROW(parseTranscript("$ rm -r /\n"), std::runtime_error);
    EXPECT_THROW(parseTranscript("> before any run\n"), std::runtime_error);
    EXPECT_THROW(parseTranscript("$ orlinth\n| content without a file\n"), std::runtime_error);
    EXPECT_THROW(parseTranscript("$ orlinth\nunknown step\n"), std::runtime_error);
    EXPECT_THROW(parseTranscript("$ orlinth\nsame onlyone\n"), std::runtime_error);
}

}  // namespace
