// Every drawing of a folder is opened and saved unchanged: ORLINTH_CORPUS names it; without it the
// drawings of tests/data are taken.
#include <gtest/gtest.h>

#include <cstdlib>

#include "host/dxf/Compare.h"
#include "tests/host/dxf/Drawings.h"

namespace host::dxf {
namespace {

namespace fs = std::filesystem;

fs::path corpusFolder() {
    const char* named = std::getenv("ORLINTH_CORPUS");
    return named == nullptr || *named == '\0' ? test::dataFolder() : fs::u8path(named);
}

// The drawings; at least one row, so that an empty folder fails rather than vanishes.
std::vector<fs::path> corpus() {
    std::error_code status;
    std::vector<fs::path> all;
    if (fs::is_directory(corpusFolder(), status)) all = test::drawingsOf(corpusFolder());
    if (all.empty()) all.push_back(corpusFolder() / "no drawing in this folder");
    return all;
}

// Of the drawings of tests/data those in "broken" are refused, and no other; what a folder of
// someone else's holds is nobody's promise.
bool isPromised(const fs::path& drawing, bool refused) {
    return corpusFolder() != test::dataFolder() ||
           refused == (drawing.parent_path() == test::dataFolder() / "broken");
}

// Those of the drawings that are not refused.
std::vector<fs::path> readable() {
    std::vector<fs::path> all;
    for (const fs::path& path : corpus()) {
        try {
            if (Document::open(path)->size() > 0) all.push_back(path);
        } catch (const ReadError&) {
            continue;
        }
    }
    return all;
}

class Corpus : public testing::TestWithParam<fs::path> {};
class ReadableCorpus : public testing::TestWithParam<fs::path> {};

// Broken files are reported as such, with a place.
TEST_P(Corpus, IsSavedAsItWasReadOrRefusedWithAPlace) {
    ASSERT_TRUE(fs::exists(GetParam())) << GetParam();
    const std::string bytes = test::readBytes(GetParam());
    std::shared_ptr<const Document> document;
    try {
        document = Document::open(GetParam());
    } catch (const ReadError& error) {
        EXPECT_TRUE(error.where()) << error.what();
        EXPECT_TRUE(isPromised(GetParam(), true)) << error.what();
        RecordProperty("refused", error.what());
        return;
    }
    EXPECT_TRUE(isPromised(GetParam(), false)) << "was read";
    const test::TemporaryFolder folder;
    save(*document, {}, folder / "saved.dxf");
    EXPECT_EQ(test::readBytes(folder / "saved.dxf"), bytes);
    const auto saved = Document::open(folder / "saved.dxf");
    EXPECT_TRUE(compare(*document, *saved).empty());
}

// A rotation put into each text and block reference is the only difference, group by group.
TEST_P(ReadableCorpus, TurnsTextsAndBlockReferencesAndNothingElse) {
    const auto document = Document::open(GetParam());
    Changes changes;
    std::size_t edits = 0;
    for (RecordIndex record = 0; record < document->size(); ++record) {
        const std::string_view type = document->type(record);
        if (type != "TEXT" && type != "INSERT") continue;
        const double degrees = 0.1 + 0.37 * static_cast<double>(record);
        std::size_t behind = 0;
        std::size_t index = 0;
        bool found = false;
        for (const Group& group : document->groups(record)) {
            if (group.code() == 50) {
                changes[record] = {test::replaceReal(index, 50, degrees)};
                found = true;
                break;
            }
            if (group.code() == 1 || group.code() == 30) behind = index;
            ++index;
        }
        if (!found) changes[record] = {test::insertReal(behind, 50, degrees)};
        ++edits;
    }
    const auto after = Document::fromBytes(dxf::apply(*document, changes), "turned.dxf");
    std::size_t differences = 0;
    compare(*document, *after, [&](const Difference& difference) {
        EXPECT_TRUE(isExpected(difference, *document, *after, changes)) << difference.text();
        ++differences;
        return true;
    });
    EXPECT_EQ(differences, edits);
    for (const auto& change : changes) {
        EXPECT_EQ(after->groups(change.first).find(50)->real(),
                  std::get<double>(change.second.front().value));
    }
}

std::string caseName(const testing::TestParamInfo<fs::path>& info) {
    std::string name = std::to_string(info.index) + "_";
    for (const char c : info.param.stem().u8string()) {
        const bool plain =
            (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
        name += plain ? c : '_';
    }
    return name;
}

INSTANTIATE_TEST_SUITE_P(Drawings, Corpus, testing::ValuesIn(corpus()), caseName);
INSTANTIATE_TEST_SUITE_P(Drawings, ReadableCorpus, testing::ValuesIn(readable()), caseName);

TEST(CorpusFolder, HoldsDrawingsThatCanBeRead) {
    EXPECT_FALSE(readable().empty()) << corpusFolder();
}

}  // namespace
}  // namespace host::dxf
