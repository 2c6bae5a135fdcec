// Cut and damaged drawings: refused, or kept to the byte, and whatever was read can be walked
// through.
#include <gtest/gtest.h>

#include <random>

#include "host/dxf/Compare.h"
#include "tests/host/dxf/Drawings.h"

namespace host::dxf {
namespace {

using test::dataFolder;

// Whether `bytes` are read; if so, everything of them is looked at, and saving gives them back.
bool survives(const std::string& bytes) {
    std::shared_ptr<const Document> document;
    try {
        document = Document::fromBytes(bytes, "damaged.dxf");
    } catch (const ReadError& error) {
        EXPECT_TRUE(error.where());
        EXPECT_FALSE(error.found().empty());
        return false;
    }
    EXPECT_EQ(dxf::apply(*document, {}), bytes);
    std::size_t size =
        static_cast<std::size_t>(document->preamble().raw().data() - document->bytes().data());
    size += document->preamble().raw().size();
    for (RecordIndex record = 0; record < document->size(); ++record) {
        for (const Group& group : document->groups(record)) {
            size += group.raw().size();
            EXPECT_LE(group.bytes().size(), group.raw().size());
            EXPECT_FALSE(group.real() && group.integer());
            document->decode(group.bytes());
        }
        EXPECT_LE(document->position(record).number, 2 * bytes.size() + 1);
    }
    EXPECT_EQ(size + document->trailer().size(), bytes.size());
    document->headerVariable("$ACADVER");
    return true;
}

const std::string kSmall = test::readBytes(dataFolder() / "odd" / "comments.dxf");

void cutEverywhere(const std::string& bytes, std::size_t leastRead) {
    std::size_t read = 0;
    for (std::size_t size = 0; size < bytes.size(); ++size) {
        read += survives(bytes.substr(0, size)) ? 1 : 0;
    }
    EXPECT_GE(read, leastRead);
    EXPECT_LT(read, bytes.size());  // the shortest are no drawings
}

TEST(Damage, CutsOfATextDrawingAreRefusedOrKept) {
    cutEverywhere(kSmall, kSmall.size() / 4);
    cutEverywhere(test::readBytes(dataFolder() / "releases" / "r10.dxf"), 1000);
}

TEST(Damage, CutsOfADrawingOfLoneReturnsAreRefusedOrKept) {
    cutEverywhere(test::readBytes(dataFolder() / "odd" / "lone_returns.dxf"), 50);
}

TEST(Damage, CutsOfABinaryDrawingOfOneByteCodesAreRefusedOrKept) {
    cutEverywhere(test::readBytes(dataFolder() / "releases" / "r12_binary.dxf"), 200);
}

TEST(Damage, CutsOfABinaryDrawingOfTwoByteCodesAreRefusedOrKept) {
    cutEverywhere(test::readBytes(dataFolder() / "releases" / "r2010_binary.dxf"), 400);
}

// A cut at the end of a group is a drawing without EOF: all whole groups before the cut are read.
TEST(Damage, ACutBehindAGroupKeepsAllGroupsBeforeIt) {
    const auto whole = Document::open(dataFolder() / "releases" / "r2010_binary.dxf");
    for (RecordIndex record = 1; record < whole->size(); ++record) {
        const auto end =
            static_cast<std::size_t>(whole->raw(record).data() - whole->bytes().data());
        const auto cut = test::parse(std::string(whole->bytes().substr(0, end)));
        ASSERT_EQ(cut->size(), record);
        EXPECT_EQ(cut->raw(record - 1), whole->raw(record - 1));
    }
}

class Mutation : public testing::TestWithParam<const char*> {};

TEST_P(Mutation, OfBytesNeverDoesHarm) {
    const std::string original = test::readBytes(dataFolder() / GetParam());
    std::mt19937 random(20091117);
    const auto below = [&random](std::size_t bound) { return random() % bound; };
    std::size_t read = 0;
    for (int round = 0; round < 1500; ++round) {
        std::string bytes = original;
        for (std::size_t edits = 1 + below(4); edits > 0; --edits) {
            const std::size_t at = below(bytes.size());
            const std::size_t length = std::min<std::size_t>(below(30), bytes.size() - at);
            switch (below(5)) {
                case 0:
                    bytes[at] = static_cast<char>(below(256));
                    break;
                case 1:
                    bytes.erase(at, length);
                    break;
                case 2:
                    bytes.insert(at, bytes.substr(below(bytes.size()), below(30)));
                    break;
                case 3:
                    bytes.insert(at, 1, "\n\r\0 0\xFF"[below(6)]);
                    break;
                default:
                    bytes[at] = static_cast<char>(bytes[at] ^ (1 << below(8)));
                    break;
            }
            if (bytes.empty()) bytes = "0";
        }
        read += survives(bytes) ? 1 : 0;
    }
    EXPECT_GT(read, 10U);
    EXPECT_LT(read, 1500U);
}

INSTANTIATE_TEST_SUITE_P(Drawings, Mutation,
                         testing::Values("odd/comments.dxf", "odd/lone_returns.dxf",
                                         "releases/r9.dxf", "releases/r12_binary.dxf",
                                         "releases/r2007_binary.dxf"));

// Comparing follows any pair of drawings to its end.
TEST(Damage, AnyTwoDrawingsCanBeCompared) {
    const auto files = test::drawingsOf(dataFolder() / "odd");
    for (const auto& a : files) {
        for (const auto& b : files) {
            const auto before = Document::open(a);
            const auto after = Document::open(b);
            EXPECT_EQ(compare(*before, *after).empty(), before->bytes() == after->bytes())
                << a << " " << b;
        }
    }
}

}  // namespace
}  // namespace host::dxf
