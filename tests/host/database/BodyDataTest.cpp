// The section that holds the bodies of solids and regions from R2013 on: made, extended, saved in
// both forms, named, undone.
#include "host/database/BodyData.h"

#include <dbents.h>
#include <dbregion.h>
#include <dbsol3d.h>

#include <memory>
#include <string>
#include <vector>

#include "host/database/Bodies.h"
#include "tests/host/database/NewEntities.h"
#include "tests/host/database/NewRegions.h"
#include "tests/host/support/LedgerListener.h"

namespace host::database {
namespace {

// "0 SECTION|2 ACDSDATA" as lines.
std::string lines(const std::string& groups) {
    std::string text;
    for (std::size_t at = 0; at < groups.size();) {
        const std::size_t end = std::min(groups.find('|', at), groups.size());
        const std::size_t blank = groups.find(' ', at);
        text += groups.substr(at, blank - at) + "\n" + groups.substr(blank + 1, end - blank - 1);
        text += '\n';
        at = end + 1;
    }
    return text;
}

const std::string kEntities =
    lines("0 SECTION|2 ENTITIES|0 LINE|5 A|10 1.0|20 2.0|11 3.0|21 4.0|0 ENDSEC");
const std::string kEof = lines("0 EOF");

std::string withBodies(const std::string& text, const std::vector<BodyData>& bodies) {
    const auto document = dxf::Document::fromBytes(text, "drawing");
    dxf::Changes changes;
    Manner manner;
    manner.release = dxf::Release::R2013;
    manner.markers = manner.handles = manner.owners = true;
    addBodyData(*document, manner, bodies, changes);
    return dxf::apply(*document, changes);
}

// The schema of bodies with number `own`, whose attributes' schemas have the four others.
std::string bodySchema(const std::string& own, const std::vector<std::string>& others) {
    return lines("0 ACDSSCHEMA|90 " + own +
                 "|1 AcDb3DSolid_ASM_Data|2 AcDbDs::ID|280 10|91 8|2 ASM_Data|280 15|91 0|"
                 "101 ACDSRECORD|95 " +
                 own + "|90 " + others[0] + "|2 AcDbDs::TreatedAsObjectData|280 1|291 1|" +
                 "101 ACDSRECORD|95 " + own + "|90 " + others[1] +
                 "|2 AcDbDs::Legacy|280 1|291 1|101 ACDSRECORD|1 AcDbDs::ID|90 " + others[2] +
                 "|2 AcDs:Indexable|280 1|291 1|101 ACDSRECORD|1 AcDbDs::ID|90 " + others[3] +
                 "|2 AcDbDs::HandleAttribute|280 7|282 1");
}
std::string attributeSchema(int which, const std::string& number) {
    const char* const rest[] = {
        "|1 AcDbDs::TreatedAsObjectDataSchema|2 AcDbDs::TreatedAsObjectData|280 1|91 0",
        "|1 AcDbDs::LegacySchema|2 AcDbDs::Legacy|280 1|91 0",
        "|1 AcDbDs::IndexedPropertySchema|2 AcDs:Indexable|280 1|91 0",
        "|1 AcDbDs::HandleAttributeSchema|2 AcDbDs::HandleAttribute|280 7|91 1|284 1"};
    return lines("0 ACDSSCHEMA|90 " + number + rest[which]);
}
std::string attributeSchemas(const std::vector<std::string>& numbers) {
    std::string text;
    for (int i = 0; i < 4; ++i) text += attributeSchema(i, numbers[static_cast<std::size_t>(i)]);
    return text;
}
std::string record(const std::string& schema, const std::string& handle, const std::string& data) {
    return lines("0 ACDSRECORD|90 " + schema + "|2 AcDbDs::ID|280 10|320 " + handle +
                 "|2 ASM_Data|280 15|" + data);
}

const std::string kHead = lines("0 SECTION|2 ACDSDATA|70 2|71 8");
const std::string kThumbnails =
    lines("0 ACDSSCHEMA|90 0|1 AcDb_Thumbnail_Schema|2 AcDbDs::ID|280 10|91 8");
const std::string kThumbnail = lines("0 ACDSRECORD|90 0|2 AcDbDs::ID|280 10|320 A|94 1|310 00");
const std::string kEnd = lines("0 ENDSEC");

TEST(BodyData, SectionThatIsMissingIsMadeBeforeEof) {
    const std::string wanted = kEntities + lines("0 SECTION|2 ACDSDATA|70 2|71 2") +
                               bodySchema("0", {"1", "2", "3", "4"}) +
                               attributeSchemas({"1", "2", "3", "4"}) +
                               record("0", "2F", "94 3|310 00417F") + kEnd;
    const std::vector<BodyData> bodies{{0x2F, std::string("\0A\x7F", 3)}};
    EXPECT_EQ(wanted + kEof, withBodies(kEntities + kEof, bodies));
    EXPECT_EQ(wanted, withBodies(kEntities, bodies));  // a drawing without EOF goes on so
    const std::string preview = lines("0 SECTION|2 THUMBNAILIMAGE|90 0|0 ENDSEC");
    EXPECT_EQ(kEntities + preview + wanted.substr(kEntities.size()) + kEof,
              withBodies(kEntities + preview + kEof, bodies));
}

TEST(BodyData, NothingChangesWithoutBodies) {
    EXPECT_EQ(kEntities + kEof, withBodies(kEntities + kEof, {}));
}

TEST(BodyData, SectionOfOthersGetsTheSchemaBehindTheirsAndTheNextNumber) {
    const std::string others = kHead + kThumbnails + attributeSchemas({"1", "2", "3", "4"});
    const std::vector<BodyData> bodies{{0x2F, "A"}, {0x30, "B"}};
    const std::string added = record("5", "2F", "94 1|310 41") + record("5", "30", "94 1|310 42");
    EXPECT_EQ(kEntities + others + bodySchema("5", {"1", "2", "3", "4"}) + kThumbnail + added +
                  kEnd + kEof,
              withBodies(kEntities + others + kThumbnail + kEnd + kEof, bodies));
}

TEST(BodyData, SchemasThatLackAreNumberedOnFromTheHighest) {
    const std::string others =
        kHead + kThumbnails + attributeSchema(2, "7") + attributeSchema(0, "3");
    EXPECT_EQ(others + bodySchema("8", {"3", "9", "7", "10"}) + attributeSchema(1, "9") +
                  attributeSchema(3, "10") + record("8", "2F", "94 1|310 41") + kEnd,
              withBodies(others + kEnd, {{0x2F, "A"}}));
}

TEST(BodyData, SchemaThatIsThereIsUsed) {
    const std::string section =
        kHead + bodySchema("6", {"1", "2", "3", "4"}) + record("6", "1E", "94 1|310 00");
    EXPECT_EQ(section + record("6", "2F", "94 1|310 41") + kEnd + kEof,
              withBodies(section + kEnd + kEof, {{0x2F, "A"}}));
}

TEST(BodyData, SectionWithoutSchemasOrEndIsExtendedAllTheSame) {
    const std::string added =
        bodySchema("0", {"1", "2", "3", "4"}) + attributeSchemas({"1", "2", "3", "4"});
    const std::string body = record("0", "2F", "94 1|310 41");
    EXPECT_EQ(kHead + added + body + kEnd, withBodies(kHead + kEnd, {{0x2F, "A"}}));
    EXPECT_EQ(kHead + added + body + kEof, withBodies(kHead + kEof, {{0x2F, "A"}}));
    EXPECT_EQ(kHead + added + body + kEntities, withBodies(kHead + kEntities, {{0x2F, "A"}}));
    EXPECT_EQ(kHead + added + body, withBodies(kHead, {{0x2F, "A"}}));
}

TEST(BodyData, OtherSectionsAreNotTakenForIt) {
    const std::string other = lines("0 SECTION|2 ACDSDATA2|0 ENDSEC|0 SECTION|0 ENDSEC");
    const std::string saved = withBodies(other + kEof, {{0x2F, "A"}});
    EXPECT_EQ(0u, saved.rfind(other + lines("0 SECTION|2 ACDSDATA|70 2|71 2"), 0));
}

TEST(BodyData, SchemaWithoutNumberOrNameIsPassedOver) {
    const std::string odd =
        kHead + lines("0 ACDSSCHEMA|90 x|1 AcDb3DSolid_ASM_Data") + lines("0 ACDSSCHEMA|90 4");
    EXPECT_EQ(0u, withBodies(odd + kEnd, {{0x2F, "A"}})
                      .rfind(odd + bodySchema("0", {"1", "2", "3", "4"}), 0));
}

TEST(BodyData, BehindTheHighestNumberThereIsTheLowestFreeOnes) {
    const auto other = [](const std::string& number) {
        return lines("0 ACDSSCHEMA|90 " + number + "|1 Other" + number);
    };
    const auto added = [](const std::string& own, const std::vector<std::string>& others) {
        return bodySchema(own, others) + attributeSchemas(others) +
               record(own, "2F", "94 1|310 41") + kEnd;
    };
    const auto saved = [](const std::string& section) {
        return withBodies(section + kEnd, {{0x2F, "A"}});
    };
    const std::string last = kHead + other("2147483646");
    EXPECT_EQ(last + added("2147483647", {"0", "1", "2", "3"}), saved(last));
    const std::string highest = kHead + other("1") + other("2147483647");
    EXPECT_EQ(highest + added("0", {"2", "3", "4", "5"}), saved(highest));
    // What no number of a schema can be counts for nothing, a negative one is one.
    const std::string none = kHead + other("9223372036854775807") + other("2147483648");
    EXPECT_EQ(none + added("0", {"1", "2", "3", "4"}), saved(none));
    const std::string negative = kHead + other("-5");
    EXPECT_EQ(negative + added("0", {"1", "2", "3", "4"}), saved(negative));
    const std::string own = kHead + bodySchema("-5", {"1", "2", "3", "4"});
    EXPECT_EQ(own + record("-5", "2F", "94 1|310 41") + kEnd, saved(own));
}

TEST(BodyData, AChunkHolds127Bytes) {
    const auto chunks = [](std::size_t size) {
        std::vector<std::size_t> sizes;
        const auto text = withBodies(kEof, {{1, std::string(size, 'A')}});
        for (std::size_t at = 0; (at = text.find("310\n", at)) != std::string::npos;) {
            at += 4;
            sizes.push_back(text.find('\n', at) - at);
        }
        return sizes;
    };
    EXPECT_EQ(std::vector<std::size_t>{}, chunks(0));
    EXPECT_EQ(std::vector<std::size_t>{254}, chunks(127));
    EXPECT_EQ((std::vector<std::size_t>{254, 2}), chunks(128));
    EXPECT_EQ((std::vector<std::size_t>{254, 254, 254}), chunks(381));
}

TEST(BodyData, NameIsOfVersionEightAndTellsBytesAndHandlesApart) {
    // FNV-1a of no byte and of "a", as its authors publish them: cbf29ce484222325,
    // af63dc4c8601ec8c.
    EXPECT_EQ(L"{CBF29CE4-8422-8325-8000-00000000002F}", bodyName({0x2F, ""}));
    EXPECT_EQ(L"{AF63DC4C-8601-8C8C-8000-00000000002F}", bodyName({0x2F, "a"}));
    EXPECT_EQ(L"{AF63DC4C-8601-8C8C-8000-000000000030}", bodyName({0x30, "a"}));
    EXPECT_EQ(L"{AF63DC4C-8601-8C8C-BFFF-FFFFFFFFFFFF}", bodyName({~std::uint64_t{0}, "a"}));
}

// --- bodies as bytes

TEST(BinaryBody, HeadAndModellersVersionLead) {
    const std::string bytes = BinaryBody().take();
    std::string wanted = "ACIS BinaryFile";
    wanted += std::string("\x28\x55\0\0\0\0\0\0\x02\0\0\0\x0C\0\0\0", 16);
    wanted +=
        "\x07\x07orlinth\x07\x0E"
        "ACIS 218.00 NT\x07\x18Sat Jan  1 00:00:00 2000";
    wanted += std::string("\x06\0\0\0\0\0\0\xF0\x3F", 9);              // 1
    wanted += std::string("\x06\x8D\xED\xB5\xA0\xF7\xC6\xB0\x3E", 9);  // 1e-6
    wanted += std::string("\x06\xBB\xBD\xD7\xD9\xDF\x7C\xDB\x3D", 9);  // 1e-10
    wanted += std::string(
        "\x0D\x09"
        "asmheader\x0C\xFF\xFF\xFF\xFF\x04\xFF\xFF\xFF\xFF",
        21);
    wanted +=
        "\x07\x0C"
        "208.0.4.7009\x11";
    wanted +=
        "\x0E\x03"
        "End\x0E\x02of\x0E\x03"
        "ASM\x0D\x04"
        "data";
    EXPECT_EQ(wanted, bytes);
}

TEST(BinaryBody, ValuesStandBehindTheirTypesAndReferencesAreOneHigher) {
    const std::size_t head = BinaryBody().take().size() - 20;  // the end takes 20 bytes
    BinaryBody body;
    body.begin("plane-surface");
    body.refer(BodyWriter::kNone);
    body.refer(0);
    body.refer(300);
    body.point({1, -2, 0});
    body.vector({-0.0, 0, 1});
    body.real(0.5);
    body.choice("forward", "reversed", false);
    body.choice("forward", "reversed", true);
    body.unbounded(1);
    body.parameter(2);
    body.unknownConvexity();
    body.place(BodyWriter::kBoth);
    body.zero();
    body.end();
    const std::string bytes = body.take();
    const std::string none("\x0C\xFF\xFF\xFF\xFF", 5), zero(8, '\0');
    const std::string one("\0\0\0\0\0\0\xF0\x3F", 8);
    std::string wanted = "\x0E\x05plane\x0D\x07surface" + none;
    wanted += std::string("\x04\xFF\xFF\xFF\xFF", 5) + none + none;
    wanted += std::string("\x0C\x01\0\0\0\x0C\x2D\x01\0\0", 10);
    wanted += '\x13' + one + std::string("\0\0\0\0\0\0\0\xC0", 8) + zero;
    wanted += '\x14' + zero + zero + one;
    wanted += std::string("\x06\0\0\0\0\0\0\xE0\x3F", 9);
    wanted += "\x0B\x0A\x0B";
    wanted += std::string("\x06\0\0\0\0\0\0\0\x40", 9) + "\x07\x07unknown";
    wanted += std::string("\x04\x02\0\0\0\x04\0\0\0\0\x11", 11);
    EXPECT_EQ(wanted, bytes.substr(head, bytes.size() - head - 20));
}

// --- solids of drawings

class BodiesOfRelease : public testing::TestWithParam<const char*> {
  protected:
    std::unique_ptr<AcDbDatabase> database =
        readDrawing(std::filesystem::u8path(ORLINTH_TEST_DATA) / "releases" /
                    (std::string(GetParam()) + ".dxf"));
    test::Working working{*database};
};

TEST_P(BodiesOfRelease, SavingAddsWhatSolidsTakeAndNothingElse) {
    ASSERT_EQ(Acad::eOk, test::append(*database, test::cylinder().release()));
    ASSERT_EQ(Acad::eOk, test::append(*database, test::cylinder().release()));
    const dxf::Changes changes = pendingChanges(*database);
    const dxf::Document& before = document(*database);
    const auto after = dxf::Document::fromBytes(test::savedBytes(*database), "saved");
    EXPECT_EQ(before.findings().size(), after->findings().size());
    std::vector<std::string> inserted;
    for (const dxf::Difference& difference : dxf::compare(before, *after)) {
        EXPECT_TRUE(dxf::isExpected(difference, before, *after, changes)) << difference.text();
        if (difference.kind == dxf::Difference::Kind::recordInserted) {
            inserted.push_back(difference.type);
        } else {
            EXPECT_EQ("FFF", difference.oldValue) << difference.text();  // $HANDSEED
        }
    }
    std::vector<std::string> wanted{"3DSOLID", "3DSOLID"};
    if (before.release() >= dxf::Release::R2013) {
        wanted.emplace_back("SECTION");
        wanted.insert(wanted.end(), 5, "ACDSSCHEMA");
        wanted.insert(wanted.end(), 2, "ACDSRECORD");
        wanted.emplace_back("ENDSEC");
    }
    EXPECT_EQ(wanted, inserted);
}

TEST_P(BodiesOfRelease, SavingTwiceWritesTheSame) {
    ASSERT_EQ(Acad::eOk, test::append(*database, test::cylinder().release()));
    EXPECT_EQ(test::savedBytes(*database), test::savedBytes(*database));
}

TEST_P(BodiesOfRelease, SavedDrawingTakesAnotherSolid) {
    ASSERT_EQ(Acad::eOk, test::append(*database, test::cylinder().release()));
    const auto again = drawingOf(dxf::Document::fromBytes(test::savedBytes(*database), "saved"));
    const test::Working other(*again);
    ASSERT_EQ(Acad::eOk, test::append(*again, test::cylinder().release()));
    const auto saved = dxf::Document::fromBytes(test::savedBytes(*again), "again");
    std::map<std::string, int> counts;
    for (dxf::RecordIndex record = 0; record < saved->size(); ++record)
        ++counts[std::string(saved->type(record))];
    EXPECT_EQ(2, counts["3DSOLID"]);
    const bool apart = saved->release() >= dxf::Release::R2013;
    EXPECT_EQ(apart ? 5 : 0, counts["ACDSSCHEMA"]);
    EXPECT_EQ(apart ? 2 : 0, counts["ACDSRECORD"]);
}

TEST_P(BodiesOfRelease, UndoneSolidLeavesNothing) {
    beginGroup(*database, L"solid");
    ASSERT_EQ(Acad::eOk, test::append(*database, test::cylinder().release()));
    endGroup(*database);
    EXPECT_NE(document(*database).bytes(), test::savedBytes(*database));
    EXPECT_TRUE(undo(*database));
    EXPECT_EQ(document(*database).bytes(), test::savedBytes(*database));
}

INSTANTIATE_TEST_SUITE_P(Releases, BodiesOfRelease,
                         testing::Values("r13", "r13_binary", "r14", "r14_binary", "r2000",
                                         "r2000_binary", "r2010", "r2010_binary", "r2013",
                                         "r2013_binary", "r2018", "r2018_binary"),
                         [](const auto& release) { return std::string(release.param); });

TEST(Solids, FromR2013OnHoldTheNameOfTheirBody) {
    for (const char* const release : {"AC1027", "AC1032"}) {
        const auto database = test::DrawingText(release).layer("0").database();
        ASSERT_EQ(Acad::eOk, test::append(*database, test::cylinder().release()));
        const auto saved = dxf::Document::fromBytes(test::savedBytes(*database), "saved");
        std::vector<std::string> solid, record;
        std::uint64_t handle = 0;
        for (dxf::RecordIndex i = 0; i < saved->size(); ++i) {
            if (saved->type(i) == "3DSOLID") {
                solid = test::groupsOf(*saved, i);
                handle = saved->handle(i).value_or(0);
            }
            if (saved->type(i) == "ACDSRECORD") record = test::groupsOf(*saved, i);
        }
        const std::string bytes = bodyBytes(Cylinder{{1, 2, 3}, {0, 0, 5}, 2});
        const std::wstring name = bodyName({handle, bytes});
        const std::string groups[] = {"100 AcDbModelerGeometry", "290 1",
                                      "2 " + std::string(name.begin(), name.end()),
                                      "100 AcDb3dSolid", "350 0"};
        ASSERT_GT(solid.size(), std::size(groups));
        EXPECT_TRUE(std::equal(std::begin(groups), std::end(groups), solid.end() - 5)) << release;
        ASSERT_GT(record.size(), 8u);
        EXPECT_EQ("94 " + std::to_string(bytes.size()), record[7]);
        std::string digits;
        for (std::size_t i = 8; i < record.size(); ++i) digits += record[i].substr(4);
        EXPECT_EQ(2 * bytes.size(), digits.size());
        EXPECT_EQ(0u, digits.rfind("414349532042696E61727946696C65", 0));
    }
}

TEST(Solids, OfABlockHaveTheirBodiesInTheSectionToo) {
    const auto database = test::DrawingText("AC1032").layer("0").block("ring", {}).database();
    ASSERT_EQ(Acad::eOk, test::append(*database, test::cylinder().release(), nullptr, L"ring"));
    const auto saved = dxf::Document::fromBytes(test::savedBytes(*database), "saved");
    std::vector<std::string> types;
    for (dxf::RecordIndex record = 0; record < saved->size(); ++record) {
        const std::string type(saved->type(record));
        if (type == "3DSOLID" || type == "ENDBLK" || type == "ACDSRECORD") types.push_back(type);
    }
    const auto solid = std::find(types.begin(), types.end(), "3DSOLID");
    ASSERT_NE(types.end(), solid);
    EXPECT_EQ("ENDBLK", *(solid + 1));
    EXPECT_EQ("ACDSRECORD", types.back());
}

}  // namespace
}  // namespace host::database
