// Turning texts and block references: what the drawing gets, and where.
#include <dbents.h>
#include <gtest/gtest.h>

#include <cmath>

#include "host/database/Drawing.h"
#include "tests/host/support/DrawingText.h"
#include "tests/host/support/LedgerListener.h"

using host::database::document;
using host::database::idFromHandle;
using host::test::DrawingText;
using host::test::groupsOf;
using host::test::savedBytes;

namespace {

constexpr double kPi = 3.14159265358979323846;

template <class T>
Acad::ErrorStatus turn(AcDbDatabase& database, const wchar_t* handle, double rotation) {
    T* entity = nullptr;
    Acad::ErrorStatus status =
        acdbOpenObject(entity, idFromHandle(database, handle), AcDb::kForWrite);
    if (status != Acad::eOk) return status;
    status = entity->setRotation(rotation);
    entity->close();
    return status;
}

// The groups of record 2F after turning it.
template <class T>
std::vector<std::string> turned(const std::string& record, double rotation) {
    const auto database = DrawingText().entity(record).database();
    EXPECT_EQ(turn<T>(*database, L"2F", rotation), Acad::eOk);
    const auto saved = host::dxf::Document::fromBytes(savedBytes(*database), "saved.dxf");
    return groupsOf(*saved, *saved->find(0x2F));
}

std::vector<std::string> split(const std::string& record) {
    std::vector<std::string> pieces;
    std::size_t at = 0;
    for (;;) {
        const std::size_t end = record.find('|', at);
        pieces.push_back((at == 0 ? "0 " : "") + record.substr(at, end - at));
        if (end == std::string::npos) return pieces;
        at = end + 1;
    }
}

double numberOf(const std::vector<std::string>& groups, const std::string& code) {
    for (const std::string& group : groups) {
        if (group.rfind(code + " ", 0) == 0) return std::stod(group.substr(code.size() + 1));
    }
    ADD_FAILURE() << "no group " << code;
    return NAN;
}

std::string around(const std::vector<std::string>& groups, const std::string& code) {
    std::string before;
    for (const std::string& group : groups) {
        if (group.rfind(code + " ", 0) == 0) return before;
        before = group.substr(0, group.find(' '));
    }
    return "none";
}

const std::string kText = "TEXT|5 2F|8 0|10 1.0|20 2.0|30 0.0|40 2.5|1 Name";

}  // namespace

TEST(Turning, TextGetsItsRotationDirectlyBehindItsText) {
    EXPECT_EQ(turned<AcDbText>(kText + "|41 0.8|51 10.0|7 ROMANS", kPi / 2),
              split(kText + "|50 90.0|41 0.8|51 10.0|7 ROMANS"));
}

TEST(Turning, TextWithSubclassMarkersGetsItBehindItsTextToo) {
    const std::string head =
        "TEXT|5 2F|330 1F|100 AcDbEntity|8 0|100 AcDbText|10 1.0|20 2.0|30 0.0|40 2.5|1 Name";
    EXPECT_EQ(turned<AcDbText>(head + "|100 AcDbText", kPi),
              split(head + "|50 180.0|100 AcDbText"));
}

TEST(Turning, ExtendedDataAndReactorsAreNotTakenForFields) {
    const std::string head =
        "TEXT|5 2F|102 {ACAD_REACTORS|330 40|102 }|8 0|10 1.0|20 2.0|30 0.0|40 2.5|1 Name";
    const std::string tail = "|1001 APP|1000 x|1040 50.0|1070 1";
    EXPECT_EQ(turned<AcDbText>(head + tail, kPi), split(head + "|50 180.0" + tail));
}

TEST(Turning, PresentRotationIsReplacedInItsPlace) {
    EXPECT_EQ(
        turned<AcDbText>("TEXT|5 2F|8 0|50 30.0|10 1.0|20 2.0|40 2.5|1 Name|41 1.0", -kPi / 4),
        split("TEXT|5 2F|8 0|50 -45.0|10 1.0|20 2.0|40 2.5|1 Name|41 1.0"));
}

TEST(Turning, TextWithoutItsTextGetsTheRotationBehindTheHeight) {
    EXPECT_EQ(turned<AcDbText>("TEXT|5 2F|8 0|10 1.0|20 2.0|40 2.5|41 1.0", kPi),
              split("TEXT|5 2F|8 0|10 1.0|20 2.0|40 2.5|50 180.0|41 1.0"));
    EXPECT_EQ(turned<AcDbText>("TEXT|5 2F|8 0|10 1.0|20 2.0|7 A", kPi),
              split("TEXT|5 2F|8 0|10 1.0|20 2.0|50 180.0|7 A"));
}

// Every combination of scale factors, height of the point, and what follows.
TEST(Turning, InsertGetsItsRotationBehindTheLastScaleFactorOrThePoint) {
    for (int present = 0; present < 8; ++present) {
        for (const char* z : {"|30 0.0", ""}) {
            for (const char* tail :
                 {"", "|70 1", "|71 1", "|44 5.0", "|45 5.0", "|210 0.0|220 0.0|230 1.0",
                  "|70 1|71 1|44 5.0|45 5.0|210 0.0|220 0.0|230 1.0"}) {
                std::string record = "INSERT|5 2F|8 0|66 1|2 TREE|10 1.0|20 2.0" + std::string(z);
                std::string last = *z == '\0' ? "20" : "30";
                for (int i = 0; i < 3; ++i) {
                    if ((present & (1 << i)) == 0) continue;
                    last = std::to_string(41 + i);
                    record += "|" + last + " 2.0";
                }
                const auto groups = turned<AcDbBlockReference>(record + tail, kPi);
                EXPECT_EQ(groups, split(record + "|50 180.0" + tail)) << record << tail;
                EXPECT_EQ(around(groups, "50"), last);
            }
        }
    }
}

TEST(Turning, InsertWithFactorsInAnotherOrderGetsItBehindTheLastOfThem) {
    EXPECT_EQ(
        turned<AcDbBlockReference>("INSERT|5 2F|8 0|2 T|10 1.0|20 2.0|43 1.0|41 1.0|70 1", kPi),
        split("INSERT|5 2F|8 0|2 T|10 1.0|20 2.0|43 1.0|41 1.0|50 180.0|70 1"));
}

TEST(Turning, RotationIsKeptAsGivenAndSavedInDegrees) {
    for (const double rotation : {7.853982653589793, -3.0, 6.283185307179585, 100.0, 1e-9}) {
        const auto database = DrawingText().entity(kText).database();
        ASSERT_EQ(turn<AcDbText>(*database, L"2F", rotation), Acad::eOk);
        AcDbText* text = nullptr;
        ASSERT_EQ(acdbOpenObject(text, idFromHandle(*database, L"2F")), Acad::eOk);
        EXPECT_EQ(text->rotation(), rotation);
        EXPECT_EQ(text->close(), Acad::eOk);
        const auto saved = host::dxf::Document::fromBytes(savedBytes(*database), "saved.dxf");
        EXPECT_EQ(numberOf(groupsOf(*saved, *saved->find(0x2F)), "50"), rotation * 180.0 / kPi);
    }
}

TEST(Turning, RotationThatIsNoNumberIsRefused) {
    const auto database = DrawingText().entity(kText).database();
    EXPECT_EQ(turn<AcDbText>(*database, L"2F", NAN), Acad::eInvalidInput);
    EXPECT_EQ(turn<AcDbText>(*database, L"2F", INFINITY), Acad::eInvalidInput);
    EXPECT_EQ(savedBytes(*database), document(*database).bytes());
}

TEST(Turning, SettingWhatWasReadChangesNothing) {
    for (const char* degrees : {"0", "30.", "90.000000000001", "45", "1.E+1", "359.99999"}) {
        const auto database = DrawingText()
                                  .entity(kText + "|50 " + degrees)
                                  .entity("INSERT|5 30|8 0|2 T|10 0|20 0")
                                  .database();
        AcDbText* text = nullptr;
        ASSERT_EQ(acdbOpenObject(text, idFromHandle(*database, L"2F"), AcDb::kForWrite), Acad::eOk);
        const double read = text->rotation();
        EXPECT_EQ(text->setRotation(2.0), Acad::eOk);
        EXPECT_EQ(text->setRotation(read), Acad::eOk);
        EXPECT_EQ(text->close(), Acad::eOk);
        EXPECT_EQ(turn<AcDbBlockReference>(*database, L"30", 0.0), Acad::eOk);
        EXPECT_TRUE(host::database::pendingChanges(*database).empty());
        EXPECT_EQ(savedBytes(*database), document(*database).bytes());
    }
}

TEST(Turning, OpeningForWriteAloneChangesNothing) {
    const auto database = DrawingText().entity(kText).database();
    AcDbText* text = nullptr;
    ASSERT_EQ(acdbOpenObject(text, idFromHandle(*database, L"2F"), AcDb::kForWrite), Acad::eOk);
    EXPECT_EQ(text->close(), Acad::eOk);
    EXPECT_TRUE(host::database::pendingChanges(*database).empty());
}

// A quarter turn about the alignment point takes the start (8, 19) of a text that hangs on (10, 20)
// from 2 left and 1 below to 1 right and 2 below.
TEST(Turning, JustifiedTextMovesItsStartAboutTheAlignmentPoint) {
    for (const int horizontal : {0, 1, 2, 4}) {
        for (const int vertical : {0, 1, 2, 3}) {
            if (horizontal == 0 && vertical == 0) continue;
            const auto groups =
                turned<AcDbText>("TEXT|5 2F|8 0|10 8.0|20 19.0|30 3.0|40 2.5|1 Name|72 " +
                                     std::to_string(horizontal) + "|11 10.0|21 20.0|31 3.0|73 " +
                                     std::to_string(vertical),
                                 kPi / 2);
            EXPECT_NEAR(numberOf(groups, "10"), 11.0, 1e-12);
            EXPECT_NEAR(numberOf(groups, "20"), 18.0, 1e-12);
            EXPECT_EQ(numberOf(groups, "30"), 3.0);
            EXPECT_EQ(numberOf(groups, "11"), 10.0);
            EXPECT_EQ(numberOf(groups, "21"), 20.0);
            EXPECT_EQ(groups.size(), 14U);
        }
    }
}

TEST(Turning, JustifiedTextTurnsByTheDifferenceToWhatItHad) {
    const auto groups = turned<AcDbText>(
        "TEXT|5 2F|8 0|10 10.0|20 18.0|30 0.0|40 2.5|1 Name|50 90.0|72 1|11 10.0|21 20.0|31 0.0",
        kPi);
    EXPECT_NEAR(numberOf(groups, "10"), 12.0, 1e-12);
    EXPECT_NEAR(numberOf(groups, "20"), 20.0, 1e-12);
}

TEST(Turning, StartOfAJustifiedTextDependsOnTheLastRotationAlone) {
    const auto database =
        DrawingText()
            .entity("TEXT|5 2F|8 0|10 8.0|20 19.0|40 2.5|1 Name|72 2|11 10.0|21 20.0")
            .database();
    for (const double rotation : {0.3, 2.0, 5.0, kPi / 2}) {
        ASSERT_EQ(turn<AcDbText>(*database, L"2F", rotation), Acad::eOk);
    }
    AcDbText* text = nullptr;
    ASSERT_EQ(acdbOpenObject(text, idFromHandle(*database, L"2F")), Acad::eOk);
    EXPECT_TRUE(text->position().isEqualTo(AcGePoint3d(11, 18, 0)));
    EXPECT_EQ(text->alignmentPoint(), AcGePoint3d(10, 20, 0));
    EXPECT_EQ(text->close(), Acad::eOk);
    ASSERT_EQ(turn<AcDbText>(*database, L"2F", 0.0), Acad::eOk);
    EXPECT_EQ(savedBytes(*database), document(*database).bytes());
}

TEST(Turning, AlignedAndFittedTextsKeepTheirPoints) {
    for (const char* mode : {"3", "5"}) {
        const std::string head = "TEXT|5 2F|8 0|10 8.0|20 19.0|30 0.0|40 2.5|1 Name";
        const std::string tail = "|72 " + std::string(mode) + "|11 10.0|21 20.0|31 0.0";
        EXPECT_EQ(turned<AcDbText>(head + tail, kPi), split(head + "|50 180.0" + tail));
    }
}

TEST(Turning, BaselineLeftTextKeepsBothPointsThoughItCarriesASecond) {
    const std::string tail = "|72 0|11 10.0|21 20.0|31 0.0|73 0";
    EXPECT_EQ(turned<AcDbText>(kText + tail, kPi), split(kText + "|50 180.0" + tail));
}

TEST(Turning, JustifiedTextWithoutASecondPointKeepsItsStart) {
    EXPECT_EQ(turned<AcDbText>(kText + "|72 1", kPi), split(kText + "|50 180.0|72 1"));
}

TEST(Turning, MirroredAndObliqueTextsKeepWhatElseTheySay) {
    const std::string tail = "|41 0.7|51 15.0|7 ROMANS|71 2|72 0|210 0.0|220 0.0|230 -1.0";
    EXPECT_EQ(turned<AcDbText>(kText + tail, kPi), split(kText + "|50 180.0" + tail));
}

// In the text's own plane the start turns the same way whatever the normal.
TEST(Turning, StartOfAMirroredPlaneTurnsInThatPlane) {
    const auto groups = turned<AcDbText>(
        "TEXT|5 2F|8 0|10 8.0|20 19.0|30 0.0|40 2.5|1 Name|72 1|11 10.0|21 20.0|31 0.0|210 0.0|220 "
        "0.0|230 -1.0",
        kPi / 2);
    EXPECT_NEAR(numberOf(groups, "10"), 11.0, 1e-12);
    EXPECT_NEAR(numberOf(groups, "20"), 18.0, 1e-12);
}

TEST(Turning, AttributesStayWhenTheirReferenceTurns) {
    const std::string attribute = "ATTRIB|5 30|8 0|10 1.0|20 2.0|40 2.5|1 12|2 NUMBER|70 0";
    const auto database = DrawingText()
                              .entity("INSERT|5 2F|8 0|66 1|2 T|10 1.0|20 2.0|30 0.0")
                              .entity(attribute)
                              .entity("SEQEND|5 31|8 0")
                              .database();
    ASSERT_EQ(turn<AcDbBlockReference>(*database, L"2F", kPi), Acad::eOk);
    const auto saved = host::dxf::Document::fromBytes(savedBytes(*database), "saved.dxf");
    EXPECT_EQ(groupsOf(*saved, *saved->find(0x30)), split(attribute));
    EXPECT_EQ(host::database::pendingChanges(*database).size(), 1U);
}

TEST(Turning, AttributeHasItsVerticalModeInGroup74) {
    const auto groups = turned<AcDbAttribute>(
        "ATTRIB|5 2F|8 0|10 8.0|20 19.0|30 0.0|40 2.5|1 12|2 NUMBER|70 0|73 0|72 0|11 10.0|21 "
        "20.0|31 0.0|74 2",
        kPi / 2);
    EXPECT_NEAR(numberOf(groups, "10"), 11.0, 1e-12);
    EXPECT_EQ(around(groups, "50"), "1");
}

TEST(Turning, EmbeddedObjectIsNotTheAttributesOwn) {
    const std::string head = "ATTRIB|5 2F|8 0|10 8.0|20 19.0|40 2.5|1 12|2 N|70 0";
    const std::string tail = "|101 Embedded Object|70 1|10 5.0|20 6.0|40 9.0|50 1.0";
    EXPECT_EQ(turned<AcDbAttribute>(head + tail, kPi),
              split("ATTRIB|5 2F|8 0|10 8.0|20 19.0|40 2.5|1 12|50 180.0|2 N|70 0" + tail));
}

TEST(Turning, NothingElseOfTheDrawingChanges) {
    const auto database = DrawingText("AC1032")
                              .layer("0")
                              .entity("HATCH|5 A0|8 0|50 1.0")
                              .entity(kText)
                              .entity("MTEXT|5 A1|8 0|10 0.0|20 0.0|1 x|50 0.0")
                              .database();
    ASSERT_EQ(turn<AcDbText>(*database, L"2F", kPi), Acad::eOk);
    std::string expected(document(*database).bytes());
    expected.insert(expected.find("  1\nName\n") + 9, " 50\n180.0\n");
    EXPECT_EQ(savedBytes(*database), expected);
}

TEST(Turning, BinaryDrawingsGetTheRotationToo) {
    for (const bool wide : {true, false}) {
        const auto database =
            DrawingText(wide ? "AC1015" : "AC1009").entity(kText).binaryDatabase(wide);
        ASSERT_EQ(turn<AcDbText>(*database, L"2F", 1.25), Acad::eOk);
        const auto saved = host::dxf::Document::fromBytes(savedBytes(*database), "saved.dxf");
        const auto again = host::database::drawingOf(saved);
        AcDbText* text = nullptr;
        ASSERT_EQ(acdbOpenObject(text, idFromHandle(*again, L"2F")), Acad::eOk);
        EXPECT_NEAR(text->rotation(), 1.25, 1e-15);
        EXPECT_EQ(text->close(), Acad::eOk);
        EXPECT_EQ(savedBytes(*database).size(),
                  document(*database).bytes().size() + (wide ? 10 : 9));
    }
}

TEST(Turning, AnEntityInNoDatabaseTurnsToo) {
    AcDbText text;
    EXPECT_EQ(text.setRotation(7.5), Acad::eOk);
    EXPECT_EQ(text.rotation(), 7.5);
    AcDbBlockReference reference;
    EXPECT_EQ(reference.setRotation(-1.0), Acad::eOk);
    EXPECT_EQ(reference.rotation(), -1.0);
}
