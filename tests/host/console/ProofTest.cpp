#include "host/console/Proof.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>

#include "host/dxf/Document.h"
#include "host/dxf/Edit.h"
#include "tests/host/console/ChildProcess.h"

namespace {

using namespace host;
using console::prove;
using dxf::GroupEdit;

using Drawing = std::shared_ptr<const dxf::Document>;

Drawing drawingOf(std::string bytes) {
    return dxf::Document::fromBytes(std::move(bytes), "test.dxf");
}

// A text, a justified text, a fitted text, an insert and a line.
const std::string bytes =
    "  0\nSECTION\n  2\nENTITIES\n"
    "  0\nTEXT\n  5\nA1\n  8\n0\n 10\n1.0\n 20\n2.0\n 40\n2.5\n  1\nplain\n 50\n0.0\n"
    "  0\nTEXT\n  5\nA2\n  8\n0\n 10\n1.0\n 20\n2.0\n 40\n2.5\n  1\ncentred\n 50\n0.0\n 72\n1\n "
    "11\n3.0\n 21\n2.0\n"
    "  0\nTEXT\n  5\nA3\n  8\n0\n 10\n1.0\n 20\n2.0\n 40\n2.5\n  1\nfitted\n 50\n0.0\n 72\n5\n "
    "11\n3.0\n 21\n2.0\n"
    "  0\nINSERT\n  5\nA4\n  8\n0\n  2\nLAMP\n 10\n1.0\n 20\n2.0\n 50\n0.0\n"
    "  0\nLINE\n  5\nA5\n  8\n0\n 10\n0.0\n 20\n0.0\n 11\n9.0\n 21\n9.0\n"
    "  0\nENDSEC\n  0\nEOF\n";

class ProofOf : public testing::Test {
  protected:
    dxf::RecordIndex record(std::uint64_t handle) const { return before_->find(handle).value(); }

    // The edit that gives the first group `code` of the entity another value.
    void change(std::uint64_t handle, int code, double value, dxf::Changes& changes) const {
        std::size_t index = 0;
        for (const dxf::Group& group : before_->groups(record(handle))) {
            if (group.code() == code) {
                changes[record(handle)].push_back({GroupEdit::Kind::replace, index, code, value});
                return;
            }
            ++index;
        }
        FAIL() << "no group " << code;
    }

    // What is found when `done` was written and `told` is what the commands did.
    console::Proof proofOf(const dxf::Changes& done, const dxf::Changes& told) const {
        return prove(*before_, *drawingOf(dxf::apply(*before_, done)), told);
    }

    std::size_t strangersOf(std::uint64_t handle, int code) const {
        dxf::Changes changes;
        change(handle, code, 7.5, changes);
        return proofOf(changes, changes).strangers;
    }

    Drawing before_ = drawingOf(bytes);
};

TEST_F(ProofOf, IdenticalDrawingsAreToldSo) {
    const console::Proof proof = proofOf({}, {});
    EXPECT_EQ(proof.strangers, 0U);
    EXPECT_EQ(proof.text, "Verified: the files are identical.\n");
}

TEST_F(ProofOf, GroupFiftyOfTextsAndInsertsIsTurning) {
    EXPECT_EQ(strangersOf(0xA1, 50), 0U);
    EXPECT_EQ(strangersOf(0xA2, 50), 0U);
    EXPECT_EQ(strangersOf(0xA3, 50), 0U);
    EXPECT_EQ(strangersOf(0xA4, 50), 0U);
}

TEST_F(ProofOf, GroupsTenAndTwentyBelongToJustifiedTextsAlone) {
    for (const int code : {10, 20}) {
        EXPECT_EQ(strangersOf(0xA1, code), 1U) << code;
        EXPECT_EQ(strangersOf(0xA2, code), 0U) << code;
        EXPECT_EQ(strangersOf(0xA3, code), 1U) << code;
        EXPECT_EQ(strangersOf(0xA4, code), 1U) << code;
        EXPECT_EQ(strangersOf(0xA5, code), 1U) << code;
    }
}

TEST_F(ProofOf, NothingElseIsTurningEvenWhenACommandDidIt) {
    EXPECT_EQ(strangersOf(0xA1, 40), 1U);
    EXPECT_EQ(strangersOf(0xA2, 11), 1U);
    EXPECT_EQ(strangersOf(0xA5, 21), 1U);
}

TEST_F(ProofOf, ATurnThatNoCommandMadeIsAStranger) {
    dxf::Changes done;
    change(0xA1, 50, 45.0, done);
    EXPECT_EQ(proofOf(done, {}).strangers, 1U);
}

TEST_F(ProofOf, AnotherAngleThanTheCommandsIsAStranger) {
    dxf::Changes done;
    dxf::Changes told;
    change(0xA1, 50, 45.0, done);
    change(0xA1, 50, 45.000000000000007, told);
    EXPECT_EQ(proofOf(done, told).strangers, 1U);
}

TEST_F(ProofOf, AnInsertedGroupFiftyIsTurning) {
    dxf::Changes changes;
    std::string without = bytes;
    without.erase(without.find(" 50\n0.0\n"), 8);
    before_ = drawingOf(without);
    changes[record(0xA1)].push_back({GroupEdit::Kind::insertAfter, 6, 50, 30.0});
    const console::Proof proof = proofOf(changes, changes);
    EXPECT_EQ(proof.strangers, 0U) << proof.text;
    EXPECT_NE(proof.text.find(
                  "Verified: 1 group differs in 1 entity, all as the commands turned them.\n"),
              std::string::npos);
}

TEST_F(ProofOf, EveryDifferenceIsListedAndStrangersAreMarked) {
    dxf::Changes done;
    dxf::Changes told;
    change(0xA1, 50, 45.0, done);
    told = done;
    change(0xA5, 11, 8.0, done);
    const console::Proof proof = proofOf(done, told);
    EXPECT_EQ(proof.strangers, 1U);
    EXPECT_NE(proof.text.find("  line "), std::string::npos) << proof.text;
    EXPECT_NE(proof.text.find("! line "), std::string::npos) << proof.text;
    EXPECT_NE(proof.text.find("Verified: 2 groups differ in 2 entities, 1 not by the commands.\n"),
              std::string::npos)
        << proof.text;
}

TEST_F(ProofOf, ABlankMoreOrLessIsAStranger) {
    std::string other = bytes;
    other.replace(other.find("  8\n0\n"), 6, "  8\n0 \n");
    EXPECT_EQ(prove(*before_, *drawingOf(other), {}).strangers, 1U);
}

TEST_F(ProofOf, ARecordThatACommandMadeIsItsOwn) {
    using Kind = GroupEdit::Kind;
    dxf::Changes changes;
    change(0xA1, 50, 45.0, changes);
    changes[record(0xA5) + 1] = {{Kind::insertBefore, 0, 0, std::wstring(L"POINT")},
                                 {Kind::insertBefore, 0, 5, std::wstring(L"B1")},
                                 {Kind::insertBefore, 0, 8, std::wstring(L"0")},
                                 {Kind::insertBefore, 0, 10, 4.5},
                                 {Kind::insertBefore, 0, 20, 1.0}};
    const console::Proof proof = proofOf(changes, changes);
    EXPECT_EQ(proof.strangers, 0U) << proof.text;
    EXPECT_NE(proof.text.find("Verified: 1 group differs in 1 record, 1 record is new, all as the "
                              "commands turned and made them.\n"),
              std::string::npos)
        << proof.text;
    // Another value of one group: neither what was made nor what was there.
    dxf::Changes told = changes;
    told[record(0xA5) + 1][3].value = 4.25;
    EXPECT_EQ(proofOf(changes, told).strangers, 1U);
    // Nothing made: a record out of nowhere.
    told.erase(record(0xA5) + 1);
    EXPECT_EQ(proofOf(changes, told).strangers, 1U);
}

TEST_F(ProofOf, MakingRecordsExcusesNoOtherChange) {
    dxf::Changes changes;
    change(0xA5, 21, 45.0, changes);
    changes[record(0xA5) + 1] = {{GroupEdit::Kind::insertBefore, 0, 0, std::wstring(L"POINT")},
                                 {GroupEdit::Kind::insertBefore, 0, 5, std::wstring(L"B1")}};
    EXPECT_EQ(proofOf(changes, changes).strangers, 1U);
}

TEST_F(ProofOf, RecordsThatAppearOrVanishAreStrangers) {
    std::string other = bytes;
    const std::size_t begin = other.find("  0\nLINE");
    other.erase(begin, other.find("  0\nENDSEC") - begin);
    EXPECT_GE(prove(*before_, *drawingOf(other), {}).strangers, 1U);
    EXPECT_GE(prove(*drawingOf(other), *before_, {}).strangers, 1U);
}

}  // namespace
