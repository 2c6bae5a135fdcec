// Multi-lines and their styles: what the drawing has, what new ones are written as.
#include <dbdict.h>
#include <dbmline.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "host/database/Fault.h"
#include "host/database/Geometry.h"
#include "host/database/Ledger.h"
#include "tests/host/database/NewEntities.h"
#include "tests/host/support/LedgerListener.h"

using namespace host;
using test::append;
using test::DrawingText;
using test::savedBytes;
using test::savedGroups;

namespace {

using Lines = std::vector<std::string>;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

const char* const kRoot = "DICTIONARY|5 A|330 0|100 AcDbDictionary|3 ACAD_MLINESTYLE|350 B";
const char* const kStyles = "DICTIONARY|5 B|330 A|100 AcDbDictionary|3 STANDARD|350 C|3 WALL|350 D";
const char* const kStandard =
    "MLINESTYLE|5 C|330 B|100 AcDbMlineStyle|2 STANDARD|70 0|3 |62 256|51 90|52 90|71 2|49 0.5|"
    "62 256|6 BYLAYER|49 -0.5|62 256|6 BYLAYER";
const char* const kWall =
    "MLINESTYLE|5 D|330 B|100 AcDbMlineStyle|2 WALL|70 0|3 |62 256|51 45|52 90|71 3|49 0.3|62 1|"
    "6 BYLAYER|49 0|62 2|6 BYLAYER|49 -0.1|62 3|6 BYLAYER";
const char* const kMline =
    "MLINE|5 20|8 0|100 AcDbMline|2 WALL|340 D|40 2.5|70 2|71 3|72 2|73 3|10 1|20 2|30 3|210 0|"
    "220 0|230 1|11 1|21 2|31 3|12 1|22 0|32 0|13 0|23 1|33 0|74 2|41 1|41 0|75 0|74 0|75 0|74 0|"
    "75 0|11 7|21 2|31 3|12 1|22 0|32 0|13 0|23 1|33 0|74 0|75 0|74 0|75 0|74 0|75 0";

DrawingText empty(const std::string& release = "AC1015") {
    DrawingText text(release);
    text.variable("$HANDSEED|5 A0").layer("0").layer("walls");
    text.block("*Model_Space", {}).entity("LINE|5 10|8 0|10 0.0|20 0.0|11 1.0|21 1.5");
    return text;
}
DrawingText withStyles() {
    return empty().object(kRoot).object(kStyles).object(kStandard).object(kWall);
}

AcDbObjectId styleNamed(AcDbDatabase& database, const ACHAR* name) {
    AcDbDictionary* styles = nullptr;
    EXPECT_EQ(database.getMLStyleDictionary(styles), Acad::eOk);
    AcDbObjectId id;
    styles->getAt(name, id);
    styles->close();
    return id;
}

// An open corner: along x, then along y.
AcDbMline* corner() {
    auto* mline = new AcDbMline;
    for (const AcGePoint3d& p : {AcGePoint3d(0, 0, 5), {4, 0, 5}, {4, 3, 5}}) mline->appendSeg(p);
    return mline;
}

class Mlines : public testing::Test {
  protected:
    void TearDown() override { working.reset(); }

    void use(const DrawingText& text) {
        working.reset();
        database = text.database();
        before = savedBytes(*database);
        working.emplace(*database);
    }
    AcDbObjectId put(AcDbMline* mline) {
        AcDbObjectId id;
        EXPECT_EQ(append(*database, mline, &id), Acad::eOk);
        return id;
    }
    // The groups of the first record of this type behind `from`, without those of the entity's own.
    Lines saved(std::string_view type, dxf::RecordIndex from = 0) {
        const auto document = dxf::Document::fromBytes(savedBytes(*database), "saved.dxf");
        for (dxf::RecordIndex record = from; record < document->size(); ++record) {
            if (document->type(record) == type) return test::groupsOf(*document, record);
        }
        return {};
    }
    // Types of the records of the OBJECTS section.
    Lines objects() {
        const auto document = dxf::Document::fromBytes(savedBytes(*database), "saved.dxf");
        Lines types;
        for (dxf::RecordIndex record = 0; record < document->size(); ++record) {
            if (document->section(record) == dxf::Section::objects) {
                types.emplace_back(document->type(record));
            }
        }
        return types;
    }

    std::unique_ptr<AcDbDatabase> database;
    std::optional<test::Working> working;
    std::string before;
};

}  // namespace

TEST_F(Mlines, StylesAreFoundByNameIgnoringCase) {
    use(withStyles());
    AcDbDictionary* styles = nullptr;
    ASSERT_EQ(database->getMLStyleDictionary(styles, AcDb::kForRead), Acad::eOk);
    AcDbObjectId id;
    EXPECT_EQ(styles->getAt(L"wall", id), Acad::eOk);
    EXPECT_EQ(database::handleText(id), L"D");
    EXPECT_TRUE(styles->has(L"Standard"));
    EXPECT_FALSE(styles->has(L"fence"));
    const AcDbObjectId found = id;
    EXPECT_EQ(styles->getAt(L"fence", id), Acad::eKeyNotFound);
    EXPECT_EQ(styles->getAt(nullptr, id), Acad::eInvalidInput);
    EXPECT_EQ(id, found);
    AcDbMlineStyle* style = nullptr;
    ASSERT_EQ(acdbOpenObject(style, id), Acad::eOk);
    EXPECT_STREQ(style->name(), L"WALL");
    EXPECT_EQ(style->numElements(), 3);
    style->close();
    styles->close();
    EXPECT_EQ(styles->getAt(L"wall", id), Acad::eNotOpenForRead);
    EXPECT_EQ(AcDbDictionary().getAt(L"wall", id), Acad::eKeyNotFound);
}

TEST_F(Mlines, EveryDrawingHasTheStandardStyle) {
    const char* const lost = "DICTIONARY|5 A|330 0|100 AcDbDictionary|3 ACAD_MLINESTYLE|350 FF";
    const char* const other = "DICTIONARY|5 B|330 A|100 AcDbDictionary|3 WALL|350 D";
    for (const DrawingText& text :
         {empty(), empty("AC1009"), DrawingText(""), empty().object(lost),
          empty().object(kRoot).object(other).object(kWall), withStyles()}) {
        use(text);
        const AcDbObjectId id = styleNamed(*database, L"Standard");
        AcDbMlineStyle* style = nullptr;
        ASSERT_EQ(acdbOpenObject(style, id), Acad::eOk);
        EXPECT_STREQ(style->name(), L"STANDARD");
        EXPECT_EQ(style->numElements(), 2);
        style->close();
        EXPECT_TRUE(styleNamed(*database, L"fence").isNull());
        EXPECT_EQ(savedBytes(*database), before);
    }
}

TEST_F(Mlines, NeitherStylesNorTheirDictionaryAreErased) {
    for (const DrawingText& text : {empty(), withStyles()}) {
        use(text);
        AcDbDictionary* styles = nullptr;
        ASSERT_EQ(database->getMLStyleDictionary(styles, AcDb::kForWrite), Acad::eOk);
        EXPECT_EQ(styles->erase(), Acad::eCannotBeErasedByCaller);
        styles->close();
        AcDbObject* style = nullptr;
        ASSERT_EQ(acdbOpenObject(style, styleNamed(*database, L"STANDARD"), AcDb::kForWrite),
                  Acad::eOk);
        EXPECT_EQ(style->erase(), Acad::eCannotBeErasedByCaller);
        style->close();
    }
}

TEST_F(Mlines, OfTheDrawingAreReadAndKept) {
    use(withStyles().entity(kMline));
    AcDbMline* mline = nullptr;
    ASSERT_EQ(acdbOpenObject(mline, database::idFromHandle(*database, L"20"), AcDb::kForWrite),
              Acad::eOk);
    EXPECT_EQ(mline->style(), styleNamed(*database, L"WALL"));
    EXPECT_EQ(mline->scale(), 2.5);
    EXPECT_EQ(mline->justification(), Mline::kBottom);
    EXPECT_TRUE(mline->closedMline());
    ASSERT_EQ(mline->numVertices(), 2);
    EXPECT_TRUE(mline->vertexAt(1).isEqualTo({7, 2, 3}));
    EXPECT_TRUE(mline->vertexAt(2).isEqualTo(AcGePoint3d::kOrigin));
    EXPECT_EQ(mline->normal().z, 1.0);
    EXPECT_EQ(mline->appendSeg({1, 2, 3}), Acad::eNotImplementedYet);
    EXPECT_EQ(mline->setScale(3.0), Acad::eNotImplementedYet);
    EXPECT_EQ(mline->setNormal({0, 1, 0}), Acad::eNotImplementedYet);
    EXPECT_EQ(mline->setClosedMline(false), Acad::eNotImplementedYet);
    EXPECT_EQ(mline->setJustification(Mline::kTop), Acad::eNotImplementedYet);
    EXPECT_EQ(mline->setStyle(styleNamed(*database, L"STANDARD")), Acad::eNotImplementedYet);
    EXPECT_EQ(mline->setColorIndex(3), Acad::eOk);
    mline->close();
    EXPECT_NE(savedBytes(*database), before);
    EXPECT_TRUE(database::undo(*database));
    EXPECT_EQ(savedBytes(*database), before);
}

TEST_F(Mlines, OfBinaryDrawingsAreReadToo) {
    for (const char* const release : {"AC1012", "AC1015"}) {
        DrawingText text(release);
        text.layer("0").object(kRoot).object(kStyles).object(kStandard).object(kWall);
        database = text.entity(kMline).binaryDatabase();
        AcDbMline* mline = nullptr;
        ASSERT_EQ(acdbOpenObject(mline, database::idFromHandle(*database, L"20"), AcDb::kForRead),
                  Acad::eOk);
        EXPECT_EQ(mline->style(), styleNamed(*database, L"WALL"));
        EXPECT_EQ(mline->justification(), Mline::kBottom);
        ASSERT_EQ(mline->numVertices(), 2);
        EXPECT_TRUE(mline->vertexAt(1).isEqualTo({7, 2, 3}));
        mline->close();
        AcDbMlineStyle* style = nullptr;
        ASSERT_EQ(acdbOpenObject(style, styleNamed(*database, L"WALL")), Acad::eOk);
        EXPECT_EQ(style->numElements(), 3);
        style->close();
    }
}

TEST_F(Mlines, WithAPlaceThatIsNoNumberAreRefused) {
    use(withStyles().entity("MLINE|5 20|8 0|2 WALL|40 1|11 NaN|21 2|31 3"));
    AcDbMline* mline = nullptr;
    EXPECT_EQ(acdbOpenObject(mline, database::idFromHandle(*database, L"20"), AcDb::kForRead),
              Acad::eInvalidInput);
}

std::vector<database::Chain> drawnLines(const AcDbDatabase& database, const wchar_t* handle) {
    return database::drawnChains(database::idFromHandle(database, handle), 0.01);
}

TEST_F(Mlines, OfTheDrawingAreDrawnWhereTheirJointsSay) {
    use(withStyles().entity(
        "MLINE|5 20|8 0|2 STANDARD|40 1|71 3|10 0|20 0|11 0|21 0|31 5|13 0|23 1|33 0|74 2|41 0.5"
        "|41 0|75 0|74 3|41 -2|41 7|41 8|75 0|11 9|21 0|31 5|13 1|23 1|33 0|74 1|41 1|75 0|74 1"
        "|41 -1|75 0"));
    const auto lines = drawnLines(*database, L"20");
    ASSERT_EQ(lines.size(), 2U);
    ASSERT_EQ(lines[0].size(), 3U);  // closed
    EXPECT_TRUE(lines[0][0].isEqualTo({0, 0.5, 5}));
    EXPECT_TRUE(lines[0][1].isEqualTo({10, 1, 5}));
    EXPECT_TRUE(lines[1][0].isEqualTo({0, -2, 5}));
    EXPECT_TRUE(lines[1][1].isEqualTo({8, -1, 5}));
    EXPECT_TRUE(lines[1][2].isEqualTo(lines[1][0]));
    const auto box = database::extentsOf(database::idFromHandle(*database, L"20"));
    ASSERT_TRUE(box);
    EXPECT_TRUE(box->minPoint().isEqualTo({0, -2, 5}));
    EXPECT_TRUE(box->maxPoint().isEqualTo({10, 1, 5}));
}

// A joint of fewer lines than the others has those that all have.
TEST_F(Mlines, WithoutJointsAreDrawnAsTheLineThroughTheirVertices) {
    use(withStyles()
            .entity("MLINE|5 20|8 0|2 WALL|40 1|71 1|11 1|21 2|31 3|11 4|21 5|31 6")
            .entity("MLINE|5 21|8 0|2 WALL|40 1|71 1|11 1|21 2|31 3|13 0|23 1|74 1|41 3|74 1|41 4"
                    "|11 4|21 5|31 6|13 0|23 1|74 1|41 3"));
    const auto plain = drawnLines(*database, L"20");
    ASSERT_EQ(plain.size(), 1U);
    EXPECT_TRUE(plain[0][0].isEqualTo({1, 2, 3}));
    EXPECT_TRUE(plain[0][1].isEqualTo({4, 5, 6}));
    const auto uneven = drawnLines(*database, L"21");
    ASSERT_EQ(uneven.size(), 1U);
    EXPECT_TRUE(uneven[0][1].isEqualTo({4, 8, 6}));
}

TEST_F(Mlines, NewOnesAreDrawnAsTheyWouldBeRead) {
    use(withStyles());
    AcDbMline* mline = corner();
    mline->setScale(2.0);
    mline->setJustification(Mline::kBottom);
    const AcDbObjectId id = put(mline);
    const auto lines = database::drawnChains(id, 0.01);
    const auto read =
        database::drawingOf(dxf::Document::fromBytes(savedBytes(*database), "saved.dxf"));
    const auto again = drawnLines(*read, L"A0");
    ASSERT_EQ(lines.size(), 2U);
    ASSERT_EQ(again.size(), 2U);
    for (std::size_t line = 0; line < 2; ++line)
        for (std::size_t i = 0; i < 3; ++i)
            EXPECT_TRUE(lines[line][i].isEqualTo(again[line][i])) << line << ' ' << i;
    EXPECT_TRUE(lines[0][1].isEqualTo({2, 2, 5}));
    EXPECT_TRUE(lines[1][1].isEqualTo({4, 0, 5}));
}

TEST_F(Mlines, WithACrossingThatIsNoNumberAreRefused) {
    use(withStyles().entity("MLINE|5 20|8 0|2 WALL|40 1|11 0|21 2|31 3|74 1|41 NaN"));
    EXPECT_TRUE(drawnLines(*database, L"20").empty());
}

TEST_F(Mlines, NewOnesTakeWhatTheyAreGiven) {
    use(withStyles());
    AcDbMline mline;
    EXPECT_EQ(mline.style(), styleNamed(*database, L"STANDARD"));
    EXPECT_EQ(mline.justification(), Mline::kTop);
    EXPECT_EQ(mline.scale(), 1.0);
    EXPECT_FALSE(mline.closedMline());
    EXPECT_EQ(mline.setStyle(styleNamed(*database, L"WALL")), Acad::eOk);
    EXPECT_EQ(mline.setStyle(AcDbObjectId()), Acad::eNullObjectId);
    EXPECT_EQ(mline.setStyle(database->layerZero()), Acad::eNotThatKindOfClass);
    EXPECT_EQ(mline.style(), styleNamed(*database, L"WALL"));
    EXPECT_EQ(mline.setScale(-2.0), Acad::eOk);
    EXPECT_EQ(mline.setScale(kNaN), Acad::eInvalidInput);
    EXPECT_EQ(mline.scale(), -2.0);
    EXPECT_EQ(mline.setNormal({0, 0, 9}), Acad::eOk);
    EXPECT_EQ(mline.setNormal({0, 0, 0}), Acad::eInvalidInput);
    EXPECT_EQ(mline.normal().z, 1.0);
    EXPECT_EQ(mline.setJustification(Mline::kZero), Acad::eOk);
    EXPECT_EQ(mline.setJustification(static_cast<Mline::MlineJustification>(3)),
              Acad::eInvalidInput);
    EXPECT_EQ(mline.justification(), Mline::kZero);
    EXPECT_EQ(mline.appendSeg({1, 2, 3}), Acad::eOk);
    EXPECT_EQ(mline.appendSeg({1, kNaN, 3}), Acad::eInvalidInput);
    EXPECT_EQ(mline.appendSeg({4, 5, 9}), Acad::eOk);
    ASSERT_EQ(mline.numVertices(), 2);
    EXPECT_TRUE(mline.vertexAt(1).isEqualTo({4, 5, 3}));  // in the plane of the first one
    EXPECT_EQ(mline.setClosedMline(true), Acad::eOk);
    EXPECT_EQ(mline.setClosedMline(false), Acad::eOk);
    EXPECT_FALSE(mline.closedMline());
}

TEST_F(Mlines, AreWrittenWithTheJointsOfTheirLines) {
    use(withStyles());
    AcDbMline* mline = corner();
    mline->setScale(2.0);
    mline->setJustification(Mline::kZero);
    mline->setLayer(L"walls");
    put(mline);
    const Lines wanted{"0 MLINE",       "5 A0",       "330 0",   "100 AcDbEntity", "8 walls",
                       "100 AcDbMline", "2 STANDARD", "340 C",   "40 2.0",         "70 1",
                       "71 1",          "72 3",       "73 2",    "10 0.0",         "20 0.0",
                       "30 5.0",        "210 0.0",    "220 0.0", "230 1.0",        "11 0.0",
                       "21 0.0",        "31 5.0",     "12 1.0",  "22 0.0",         "32 0.0"};
    Lines groups = saved("MLINE");
    ASSERT_GT(groups.size(), wanted.size());
    // Whatever owns the model space.
    groups.erase(std::remove_if(groups.begin(), groups.end(),
                                [](const std::string& g) { return g.rfind("330 ", 0) == 0; }),
                 groups.end());
    Lines known = wanted;
    known.erase(known.begin() + 2);
    const auto size = static_cast<std::ptrdiff_t>(known.size());
    EXPECT_EQ(Lines(groups.begin(), groups.begin() + size), known);
    Lines numbers;
    std::copy_if(
        groups.begin(), groups.end(), std::back_inserter(numbers), [](const std::string& g) {
            return g.rfind("41 ", 0) == 0 || g.rfind("74 ", 0) == 0 || g.rfind("75 ", 0) == 0;
        });
    ASSERT_EQ(numbers.size(), 3U * 8U);  // vertices by lines by count, place, start and no fill
    for (std::size_t i = 0; i < numbers.size(); i += 4) {
        EXPECT_EQ(numbers[i], "74 2");
        const double place = std::stod(numbers[i + 1].substr(3));
        const double atCorner = i / 8 == 1 ? std::sqrt(2.0) : 1.0;
        EXPECT_NEAR(place, (i % 8 == 0 ? 1.0 : -1.0) * atCorner, 1e-12);
        EXPECT_EQ(numbers[i + 2], "41 0.0");
        EXPECT_EQ(numbers[i + 3], "75 0");
    }
    EXPECT_EQ(objects(),
              (Lines{"SECTION", "DICTIONARY", "DICTIONARY", "MLINESTYLE", "MLINESTYLE", "ENDSEC"}));
}

TEST_F(Mlines, ReadBackAreTheSame) {
    use(withStyles());
    AcDbMline* mline = corner();
    mline->setStyle(styleNamed(*database, L"WALL"));
    mline->setScale(2.0);
    mline->setJustification(Mline::kBottom);
    mline->setClosedMline(true);
    put(mline);
    const auto again = database::drawingOf(dxf::Document::fromBytes(savedBytes(*database), "s"));
    AcDbMline* read = nullptr;
    ASSERT_EQ(acdbOpenObject(read, database::modelSpaceIds(*again).back(), AcDb::kForRead),
              Acad::eOk);
    EXPECT_EQ(read->style(), styleNamed(*again, L"WALL"));
    EXPECT_EQ(read->scale(), 2.0);
    EXPECT_EQ(read->justification(), Mline::kBottom);
    EXPECT_TRUE(read->closedMline());
    ASSERT_EQ(read->numVertices(), 3);
    EXPECT_TRUE(read->vertexAt(2).isEqualTo({4, 3, 5}));
    read->close();
}

TEST_F(Mlines, TheStyleIsWrittenWithTheFirstOneThatHasIt) {
    const char* const other =
        "DICTIONARY|5 B|330 A|100 AcDbDictionary|3 WALL|350 D|1001 APP|1071 1";
    use(empty().object(kRoot).object(other).object(kWall));
    put(corner());
    put(corner());
    EXPECT_EQ(objects(),
              (Lines{"SECTION", "DICTIONARY", "DICTIONARY", "MLINESTYLE", "MLINESTYLE", "ENDSEC"}));
    EXPECT_EQ(savedGroups(*database, 0xB),
              (Lines{"0 DICTIONARY", "5 B", "330 A", "100 AcDbDictionary", "3 WALL", "350 D",
                     "3 STANDARD", "350 A2", "1001 APP", "1071 1"}));
    EXPECT_EQ(savedGroups(*database, 0xA2),
              (Lines{"0 MLINESTYLE", "5 A2", "330 B", "100 AcDbMlineStyle", "2 STANDARD", "70 0",
                     "3 ", "62 256", "51 90.0", "52 90.0", "71 2", "49 0.5", "62 256", "6 BYLAYER",
                     "49 -0.5", "62 256", "6 BYLAYER"}));
    EXPECT_NE(savedBytes(*database).find("\nA3\n"), std::string::npos);  // the seed
}

TEST_F(Mlines, OneWithAStyleOfTheDrawingBringsNoOther) {
    use(empty()
            .object(kRoot)
            .object("DICTIONARY|5 B|330 A|100 AcDbDictionary|3 WALL|350 D")
            .object(kWall));
    AcDbMline* mline = corner();
    mline->setStyle(styleNamed(*database, L"WALL"));
    put(mline);
    EXPECT_EQ(objects(), (Lines{"SECTION", "DICTIONARY", "DICTIONARY", "MLINESTYLE", "ENDSEC"}));
    const Lines groups = saved("MLINE");
    EXPECT_EQ(std::count(groups.begin(), groups.end(), "340 D"), 1);
    EXPECT_EQ(std::count(groups.begin(), groups.end(), "73 3"), 1);
}

TEST_F(Mlines, DictionariesThatAreMissingAreMade) {
    use(empty()
            .object("DICTIONARY|5 A|330 0|100 AcDbDictionary|3 ACAD_GROUP|350 B")
            .object("DICTIONARY|5 B|330 A|100 AcDbDictionary"));
    put(corner());
    EXPECT_EQ(objects(),
              (Lines{"SECTION", "DICTIONARY", "DICTIONARY", "DICTIONARY", "MLINESTYLE", "ENDSEC"}));
    EXPECT_EQ(savedGroups(*database, 0xA),
              (Lines{"0 DICTIONARY", "5 A", "330 0", "100 AcDbDictionary", "3 ACAD_GROUP", "350 B",
                     "3 ACAD_MLINESTYLE", "350 A2"}));
    EXPECT_EQ(savedGroups(*database, 0xA2),
              (Lines{"0 DICTIONARY", "5 A2", "330 A", "100 AcDbDictionary", "281 1", "3 STANDARD",
                     "350 A1"}));
}

TEST_F(Mlines, ASectionOfObjectsThatIsMissingIsMade) {
    use(empty());
    put(corner());
    EXPECT_EQ(objects(), (Lines{"SECTION", "DICTIONARY", "DICTIONARY", "MLINESTYLE", "ENDSEC"}));
    const Lines root = saved("DICTIONARY");
    EXPECT_EQ(root, (Lines{"0 DICTIONARY", "5 A3", "330 0", "100 AcDbDictionary", "281 1",
                           "3 ACAD_MLINESTYLE", "350 A2"}));
    const std::string bytes = savedBytes(*database);
    EXPECT_LT(bytes.find("ENTITIES"), bytes.find("OBJECTS"));
    const auto again = database::drawingOf(dxf::Document::fromBytes(bytes, "saved.dxf"));
    EXPECT_EQ(database::handleText(styleNamed(*again, L"STANDARD")), L"A1");
}

TEST_F(Mlines, TheDictionaryOfAllStandsFirst) {
    use(empty().object("XRECORD|5 C|330 0|100 AcDbXrecord|1 kept"));
    put(corner());
    EXPECT_EQ(objects(),
              (Lines{"SECTION", "DICTIONARY", "DICTIONARY", "MLINESTYLE", "XRECORD", "ENDSEC"}));
}

TEST_F(Mlines, AreNotInR12AndBefore) {
    for (const char* const release : {"AC1004", "AC1006", "AC1009", ""}) {
        use(empty(release));
        EXPECT_EQ(append(*database, corner()), Acad::eInvalidDwgVersion) << release;
        EXPECT_EQ(savedBytes(*database), before);
    }
}

TEST_F(Mlines, OfOneVertexOrNoNumberAreRefused) {
    use(withStyles());
    EXPECT_EQ(append(*database, new AcDbMline), Acad::eInvalidInput);
    auto* point = new AcDbMline;
    point->appendSeg({1, 2, 3});
    EXPECT_EQ(append(*database, point), Acad::eInvalidInput);
    AcDbMline* huge = corner();
    huge->setScale(1.7e308);
    EXPECT_EQ(append(*database, huge), Acad::eInvalidInput);
    AcDbMline* far = new AcDbMline;
    far->appendSeg({-1.7e308, 0, 0});
    far->appendSeg({1.7e308, 0, 0});
    EXPECT_EQ(append(*database, far), Acad::eInvalidInput);
    EXPECT_EQ(savedBytes(*database), before);
}

TEST_F(Mlines, OfAnotherDatabasesStyleAreRefused) {
    use(withStyles());
    AcDbMline* mline = corner();
    mline->setStyle(styleNamed(*database, L"WALL"));
    const auto other = empty().database();
    EXPECT_EQ(append(*other, mline), Acad::eWrongDatabase);
}

TEST_F(Mlines, WithoutDirectionAreCutAcross) {
    use(withStyles());
    // Equal vertices at both ends, one that turns back, and nothing but one place.
    for (const bool onePlace : {false, true}) {
        auto* mline = new AcDbMline;
        for (const double x : {0.0, 0.0, 4.0, 1.0, 1.0}) {
            mline->appendSeg({onePlace ? 0.0 : x, 0.0, 0.0});
        }
        mline->setJustification(Mline::kZero);
        put(mline);
        const Lines groups = savedGroups(database::modelSpaceIds(*database).back());
        EXPECT_EQ(std::count(groups.begin(), groups.end(), "41 0.5"), 5);
        EXPECT_EQ(std::count(groups.begin(), groups.end(), "41 -0.5"), 5);
    }
}

TEST_F(Mlines, UndoingGivesTheBytesOfBefore) {
    for (const DrawingText& text : {empty(), withStyles()}) {
        use(text);
        database::beginGroup(*database, L"MLINE");
        put(corner());
        database::endGroup(*database);
        const std::string drawn = savedBytes(*database);
        ASSERT_NE(drawn, before);
        EXPECT_TRUE(database::undo(*database));
        EXPECT_EQ(savedBytes(*database), before);
        EXPECT_TRUE(database::redo(*database));
        EXPECT_EQ(savedBytes(*database), drawn);
    }
}

TEST_F(Mlines, ChangedInTheDrawingHaveTheLinesOfTheirStyle) {
    use(withStyles());
    const AcDbObjectId id = put(corner());
    AcDbMline* mline = nullptr;
    ASSERT_EQ(acdbOpenObject(mline, id, AcDb::kForWrite), Acad::eOk);
    EXPECT_EQ(mline->setStyle(styleNamed(*database, L"WALL")), Acad::eOk);
    mline->close();
    const Lines groups = saved("MLINE");
    EXPECT_EQ(std::count(groups.begin(), groups.end(), "73 3"), 1);
    EXPECT_EQ(std::count(groups.begin(), groups.end(), "74 2"), 3 * 3);
    // The first line runs through the vertices. They begin at 45 degrees, so that what is 0.3 and
    // 0.4 across is longer by the root of 2.
    const auto valuesOf = [&groups](const std::string& code) {
        std::vector<double> values;
        for (const std::string& group : groups)
            if (group.rfind(code, 0) == 0) values.push_back(std::stod(group.substr(code.size())));
        return values;
    };
    const double half = std::sqrt(0.5);
    EXPECT_NEAR(valuesOf("13 ").at(0), half, 1e-15);
    EXPECT_NEAR(valuesOf("23 ").at(0), half, 1e-15);
    const std::vector<double> places = valuesOf("41 ");
    ASSERT_EQ(places.size(), 2u * 3 * 3);
    EXPECT_NEAR(places[0], 0.0, 1e-15);
    EXPECT_NEAR(places[2], -0.3 / half, 1e-15);
    EXPECT_NEAR(places[4], -0.4 / half, 1e-15);
}

TEST_F(Mlines, ChangesInTheDrawingThatCannotBeWrittenAreRefused) {
    use(withStyles());
    const AcDbObjectId id = put(corner());
    const std::string drawn = savedBytes(*database);
    AcDbMline* mline = nullptr;
    ASSERT_EQ(acdbOpenObject(mline, id, AcDb::kForWrite), Acad::eOk);
    EXPECT_EQ(mline->setScale(1.7e308), Acad::eInvalidInput);
    EXPECT_EQ(mline->appendSeg({1.7e308, -1.7e308, 0}), Acad::eInvalidInput);
    EXPECT_EQ(mline->scale(), 1.0);
    EXPECT_EQ(mline->numVertices(), 3);
    mline->close();
    EXPECT_EQ(savedBytes(*database), drawn);
}

TEST_F(Mlines, OfADrawingKeepTheirVerticesOffThePlane) {
    use(
        withStyles().entity("MLINE|5 20|8 0|2 WALL|40 1|71 1|210 0|220 0|230 1|11 1|21 2|31 3|"
                            "11 4|21 5|31 3.5"));
    AcDbObjectId id;
    ASSERT_EQ(database->getAcDbObjectId(id, false, AcDbHandle(0x20)), Acad::eOk);
    AcDbMline* mline = nullptr;
    ASSERT_EQ(acdbOpenObject(mline, id, AcDb::kForRead), Acad::eOk);
    EXPECT_EQ(mline->vertexAt(1).z, 3.5);
    mline->close();
}

TEST_F(Mlines, EachCallCanBeRefused) {
    use(withStyles());
    AcDbDictionary* styles = nullptr;
    fault::arm("AcDbDatabase::getMLStyleDictionary", 1, Acad::eOutOfMemory);
    EXPECT_EQ(database->getMLStyleDictionary(styles), Acad::eOutOfMemory);
    EXPECT_EQ(styles, nullptr);
    const AcDbObjectId standard = styleNamed(*database, L"STANDARD");
    ASSERT_EQ(database->getMLStyleDictionary(styles), Acad::eOk);
    fault::arm("AcDbDictionary::getAt", 1, Acad::eOutOfMemory);
    AcDbObjectId id;
    EXPECT_EQ(styles->getAt(L"WALL", id), Acad::eOutOfMemory);
    EXPECT_TRUE(id.isNull());
    styles->close();
    AcDbMline mline;
    const auto refused = [](const char* call, const std::function<Acad::ErrorStatus()>& make) {
        fault::arm(call, 1, Acad::eOutOfMemory);
        EXPECT_EQ(make(), Acad::eOutOfMemory) << call;
        EXPECT_TRUE(fault::fired()) << call;
        fault::disarm();
    };
    refused("AcDbMline::setStyle", [&] { return mline.setStyle(standard); });
    refused("AcDbMline::setScale", [&] { return mline.setScale(2.0); });
    refused("AcDbMline::setNormal", [&] { return mline.setNormal({0, 1, 0}); });
    refused("AcDbMline::setJustification", [&] { return mline.setJustification(Mline::kZero); });
    refused("AcDbMline::appendSeg", [&] { return mline.appendSeg({1, 2, 3}); });
    refused("AcDbMline::setClosedMline", [&] { return mline.setClosedMline(true); });
    EXPECT_EQ(mline.numVertices(), 0);
    EXPECT_EQ(mline.scale(), 1.0);
}
