// New entities in drawings of every release, ASCII and binary: the bytes of the whole saved file.
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>

#include "tests/host/database/NewEntities.h"
#include "tests/host/support/LedgerListener.h"

using namespace host;
using host::database::document;
using host::database::readDrawing;

namespace {

constexpr int kShortest = -1;  // 3.0
constexpr int kBare = -2;      // 3

// A release as tests/data has it, and how its ASCII drawing is spelt.
struct Clothes {
    const char* name;
    const char* lineEnd;
    std::size_t codeWidth;
    int decimals;
    std::size_t integerWidth;
    bool handles, markers, owners, light;
    const char* umlaut;  // the a of Hameentie with its dots
    const char* zhe;     // a letter that code pages of the west lack
};

constexpr const char* kEscaped = "\\U+0416";
constexpr const char* kZheUtf8 = "\xD0\x96";

const Clothes kClothes[] = {
    {"r9", "\n", 0, 6, 0, false, false, false, false, "\xE4", kEscaped},
    {"r10", "\r\n", 0, kBare, 0, true, false, false, false, "\xE4", kEscaped},
    {"r12", "\r\n", 3, kShortest, 6, true, false, false, false, "\x84", kEscaped},
    {"r13", "\n", 3, kShortest, 6, true, true, false, false, "\x84", kEscaped},
    {"r14", "\r\n", 3, 10, 0, true, true, false, true, "\xE4", kEscaped},
    {"r2000", "\r\n", 3, kShortest, 0, true, true, true, true, "\xE4", kEscaped},
    {"r2004", "\n", 0, kShortest, 0, true, true, true, true, "\xE4", kEscaped},
    {"r2007", "\r\n", 3, kShortest, 6, true, true, true, true, "\xC3\xA4", kZheUtf8},
    {"r2010", "\n", 3, kBare, 0, true, true, true, true, "\xC3\xA4", kZheUtf8},
    {"r2013", "\r\n", 3, 16, 0, true, true, true, true, "\xC3\xA4", kZheUtf8},
    {"r2018", "\n", 3, kShortest, 0, true, true, true, true, "\xC3\xA4", kZheUtf8},
};

// Groups for one release: "5 h" stands only where there are handles, "330 " where there are owners,
// "100 " where there are markers.
class Expected {
  public:
    Expected(const Clothes& clothes, bool binary) : clothes_(clothes), binary_(binary) {}

    Expected& record(const char* type, const char* handle, const char* owner) {
        add(0, type);
        const bool symbol = std::strcmp(type, "LAYER") == 0;
        if (symbol ? clothes_.markers : clothes_.handles) add(5, handle);
        if (clothes_.owners) add(330, owner);
        return *this;
    }
    Expected& marker(const char* name) {
        if (clothes_.markers) add(100, name);
        return *this;
    }
    Expected& add(int code, const std::string& text) {
        putCode(code);
        bytes_ += text + (binary_ ? std::string(1, '\0') : std::string(clothes_.lineEnd));
        return *this;
    }
    Expected& real(int code, double value) {
        putCode(code);
        if (binary_) {
            raw(value);
            return *this;
        }
        char text[64];
        std::snprintf(text, sizeof(text), "%.*f", clothes_.decimals >= 0 ? clothes_.decimals : 3,
                      value);
        std::string spelt = text;
        if (clothes_.decimals < 0) {
            while (spelt.back() == '0') spelt.pop_back();
            if (spelt.back() == '.') {
                clothes_.decimals == kBare ? spelt.pop_back() : spelt.push_back('0');
            }
        }
        bytes_ += spelt + clothes_.lineEnd;
        return *this;
    }
    Expected& point(int code, double x, double y, double z) {
        return real(code, x).real(code + 10, y).real(code + 20, z);
    }
    Expected& integer(int code, int value) {
        putCode(code);
        if (binary_ && code >= 90 && code < 100) {
            raw(static_cast<std::int32_t>(value));
        } else if (binary_) {
            raw(static_cast<std::int16_t>(value));
        } else {
            const std::string text = std::to_string(value);
            const std::size_t width = std::max(clothes_.integerWidth, text.size());
            bytes_ += std::string(width - text.size(), ' ') + text + clothes_.lineEnd;
        }
        return *this;
    }
    const std::string& bytes() const { return bytes_; }

  private:
    template <class T>
    void raw(T value) {
        char memory[sizeof(T)];
        std::memcpy(memory, &value, sizeof(T));
        bytes_.append(memory, sizeof(T));
    }
    void putCode(int code) {
        const std::string text = std::to_string(code);
        if (!binary_) {
            const std::size_t width = std::max(clothes_.codeWidth, text.size());
            bytes_ += std::string(width - text.size(), ' ') + text + clothes_.lineEnd;
        } else if (clothes_.markers) {
            raw(static_cast<std::int16_t>(code));
        } else {
            bytes_ += static_cast<char>(code);
        }
    }

    const Clothes& clothes_;
    bool binary_;
    std::string bytes_;
};

class NewEntitiesOfRelease : public testing::TestWithParam<std::tuple<std::size_t, bool>> {
  protected:
    const Clothes clothes = kClothes[std::get<0>(GetParam())];
    const bool binary = std::get<1>(GetParam());

    void SetUp() override {
        database = readDrawing(std::filesystem::u8path(ORLINTH_TEST_DATA) / "releases" /
                               (std::string(clothes.name) + (binary ? "_binary.dxf" : ".dxf")));
        working.emplace(*database);
        before = std::string(document(*database).bytes());
    }
    void TearDown() override { working.reset(); }

    Expected expected() const { return {clothes, binary}; }

    // The handle of the n-th new object that has one.
    std::string handle(int n) const {
        char text[17];
        std::snprintf(text, sizeof(text), "%X", 0xFFF + n);
        return text;
    }

    // The offset of the first record of this type in the section, from `from` on.
    std::size_t offsetOf(dxf::Section section, std::string_view type, dxf::RecordIndex from = 0) {
        const dxf::Document& drawing = document(*database);
        for (dxf::RecordIndex record = from; record < drawing.size(); ++record) {
            if (drawing.section(record) == section && drawing.type(record) == type) {
                return static_cast<std::size_t>(drawing.raw(record).data() -
                                                drawing.bytes().data());
            }
        }
        ADD_FAILURE() << "no " << type;
        return 0;
    }

    // The drawing with `entities` at the end of its entities and $HANDSEED raised to that of n.
    std::string with(const std::string& entities, int n) {
        std::string bytes = before;
        bytes.insert(offsetOf(dxf::Section::entities, "ENDSEC"), entities);
        if (!clothes.handles) return bytes;
        const std::size_t seed = bytes.find("FFF", bytes.find("$HANDSEED"));
        return bytes.replace(seed, 3, handle(n));
    }

    std::string saved() const { return test::savedBytes(*database); }

    std::unique_ptr<AcDbDatabase> database;
    std::optional<test::Working> working;
    std::string before;
};

}  // namespace

TEST_P(NewEntitiesOfRelease, ALineTakesTheDrawingsForm) {
    auto* line = new AcDbLine({25496000.125, 6672000.5, 3.0}, {25496010.0, 6672000.0, -0.5});
    line->setColorIndex(5);
    ASSERT_EQ(test::append(*database, line), Acad::eOk);
    Expected wanted = expected();
    wanted.record("LINE", handle(0).c_str(), "1F").marker("AcDbEntity").add(8, "KATU");
    wanted.integer(62, 5).marker("AcDbLine").point(10, 25496000.125, 6672000.5, 3.0);
    wanted.point(11, 25496010.0, 6672000.0, -0.5);
    EXPECT_EQ(saved(), with(wanted.bytes(), 1));
}

TEST_P(NewEntitiesOfRelease, ATextIsEncodedForTheDrawing) {
    auto* text = new AcDbText({1.5, 2.0, 0.0}, L"H\u00E4meentie \u0416", AcDbObjectId::kNull, 2.5);
    ASSERT_EQ(text->setLayer(L"osoite"), Acad::eOk);
    ASSERT_EQ(test::append(*database, text), Acad::eOk);
    Expected wanted = expected();
    wanted.record("TEXT", handle(0).c_str(), "1F").marker("AcDbEntity").add(8, "OSOITE");
    wanted.marker("AcDbText").point(10, 1.5, 2.0, 0.0).real(40, 2.5);
    wanted.add(1, std::string("H") + clothes.umlaut + "meentie " + clothes.zhe);
    wanted.marker("AcDbText");
    EXPECT_EQ(saved(), with(wanted.bytes(), 1));
}

TEST_P(NewEntitiesOfRelease, ALightPolylineIsAnOldOneUpToR13) {
    auto* polyline = new AcDbPolyline;
    polyline->addVertexAt(0, {1.5, 2.0});
    polyline->addVertexAt(1, {3.5, 2.0}, 0.5);
    polyline->setClosed(true);
    polyline->setElevation(4.0);
    ASSERT_EQ(test::append(*database, polyline), Acad::eOk);
    Expected wanted = expected();
    const auto begin = [&](const char* type, int n, const std::string& owner) {
        wanted.record(type, handle(n).c_str(), owner.c_str()).marker("AcDbEntity").add(8, "KATU");
    };
    if (clothes.light) {
        begin("LWPOLYLINE", 0, "1F");
        wanted.marker("AcDbPolyline").integer(90, 2).integer(70, 1).real(38, 4.0);
        wanted.real(10, 1.5).real(20, 2.0).real(10, 3.5).real(20, 2.0).real(42, 0.5);
        EXPECT_EQ(saved(), with(wanted.bytes(), 1));
        return;
    }
    begin("POLYLINE", 0, "1F");
    wanted.marker("AcDb2dPolyline").integer(66, 1).point(10, 0.0, 0.0, 4.0).integer(70, 1);
    begin("VERTEX", 1, handle(0));
    wanted.marker("AcDbVertex").marker("AcDb2dVertex").point(10, 1.5, 2.0, 4.0);
    begin("VERTEX", 2, handle(0));
    wanted.marker("AcDbVertex").marker("AcDb2dVertex").point(10, 3.5, 2.0, 4.0).real(42, 0.5);
    begin("SEQEND", 3, handle(0));
    EXPECT_EQ(saved(), with(wanted.bytes(), 4));
}

TEST_P(NewEntitiesOfRelease, AnOldPolylineHasVerticesAndAnEnd) {
    AcGePoint3dArray points;
    points.append({1.5, 2.0, 3.0});
    points.append({4.5, 5.0, 6.0});
    ASSERT_EQ(test::append(*database, new AcDb3dPolyline(AcDb::k3dSimplePoly, points)), Acad::eOk);
    Expected wanted = expected();
    const auto begin = [&](const char* type, int n, const std::string& owner) {
        wanted.record(type, handle(n).c_str(), owner.c_str()).marker("AcDbEntity").add(8, "KATU");
    };
    begin("POLYLINE", 0, "1F");
    wanted.marker("AcDb3dPolyline").integer(66, 1).point(10, 0.0, 0.0, 0.0).integer(70, 8);
    begin("VERTEX", 1, handle(0));
    wanted.marker("AcDbVertex").marker("AcDb3dPolylineVertex").point(10, 1.5, 2.0, 3.0);
    wanted.integer(70, 32);
    begin("VERTEX", 2, handle(0));
    wanted.marker("AcDbVertex").marker("AcDb3dPolylineVertex").point(10, 4.5, 5.0, 6.0);
    wanted.integer(70, 32);
    begin("SEQEND", 3, handle(0));
    EXPECT_EQ(saved(), with(wanted.bytes(), 4));
}

TEST_P(NewEntitiesOfRelease, ALayerStandsAtTheEndOfItsTableWhoseCountGrows) {
    AcDbObjectId id;
    ASSERT_EQ(test::addLayer(*database, L"A12345", &id), Acad::eOk);
    const dxf::Document& drawing = document(*database);
    const auto table = static_cast<dxf::RecordIndex>(*database::recordOf(database->layerTableId()));
    std::string bytes = before;
    Expected wanted = expected();
    char owner[17];
    std::snprintf(owner, sizeof(owner), "%llX",
                  static_cast<unsigned long long>(drawing.handle(table).value_or(0)));
    wanted.record("LAYER", handle(0).c_str(), owner).marker("AcDbSymbolTableRecord");
    wanted.marker("AcDbLayerTableRecord").add(2, "A12345").integer(70, 0).integer(62, 7);
    wanted.add(6, "CONTINUOUS");
    if (clothes.owners) wanted.integer(370, -3);
    bytes.insert(offsetOf(dxf::Section::tables, "ENDTAB", table), wanted.bytes());
    const auto count = drawing.groups(table).find(70);
    const auto place = static_cast<std::size_t>(count->bytes().data() - drawing.bytes().data());
    const std::size_t digit = binary ? place : place + count->bytes().size() - 1;
    ASSERT_EQ(bytes[digit], binary ? '\6' : '6');
    bytes[digit] = binary ? '\7' : '7';
    if (clothes.markers) bytes.replace(bytes.find("FFF", bytes.find("$HANDSEED")), 3, handle(1));
    EXPECT_EQ(saved(), bytes);
}

TEST_P(NewEntitiesOfRelease, ClassesThatTheReleaseLacksAreRefused) {
    auto* text = new AcDbMText;
    text->setTextHeight(2.5);
    text->setContents(L"a");
    EXPECT_EQ(test::append(*database, text),
              clothes.markers ? Acad::eOk : Acad::eInvalidDwgVersion);
    auto* ellipse = new AcDbEllipse({1, 2, 3}, AcGeVector3d::kZAxis, {5, 0, 0}, 0.5);
    EXPECT_EQ(test::append(*database, ellipse),
              clothes.markers ? Acad::eOk : Acad::eInvalidDwgVersion);
    EXPECT_EQ(saved() == before, !clothes.markers);
}

TEST_P(NewEntitiesOfRelease, UndoingGivesTheBytesOfBefore) {
    database::beginGroup(*database, L"DRAW");
    test::addLayer(*database, L"uusi");
    auto* line = new AcDbLine({1, 2, 3}, {4, 5, 6});
    line->setLayer(L"UUSI");
    ASSERT_EQ(test::append(*database, line), Acad::eOk);
    AcGePoint3dArray points;
    points.append({1.5, 2.0, 3.0});
    ASSERT_EQ(test::append(*database, new AcDb2dPolyline(points)), Acad::eOk);
    database::endGroup(*database);
    const std::string drawn = saved();
    ASSERT_NE(drawn, before);
    EXPECT_TRUE(database::undo(*database));
    EXPECT_EQ(saved(), before);
    EXPECT_TRUE(database::redo(*database));
    EXPECT_EQ(saved(), drawn);
}

TEST_P(NewEntitiesOfRelease, ComparingTellsNothingElse) {
    test::addLayer(*database, L"uusi");
    for (int i = 0; i < 5; ++i) {
        ASSERT_EQ(test::append(*database, new AcDbCircle({i * 1.0, 2, 3}, {0, 0, 1}, 1.0 + i)),
                  Acad::eOk);
    }
    const dxf::Changes changes = database::pendingChanges(*database);
    const auto after = dxf::Document::fromBytes(saved(), "saved.dxf");
    const auto differences = dxf::compare(document(*database), *after);
    for (const dxf::Difference& difference : differences) {
        EXPECT_TRUE(dxf::isExpected(difference, document(*database), *after, changes))
            << difference.text();
    }
    // Five circles, a layer, its table's count, and where there are handles, their seed.
    EXPECT_EQ(differences.size(), clothes.handles ? 8U : 7U);
    EXPECT_EQ(after->findings().size(), document(*database).findings().size());
}

TEST_P(NewEntitiesOfRelease, OurOwnReadingFindsThemAgain) {
    const AcGeVector3d down(0.0, 0.0, -1.0);
    ASSERT_EQ(test::append(*database, new AcDbArc({1, 2, 3}, down, 4.0, 0.5, 1.5)), Acad::eOk);
    auto* polyline = new AcDbPolyline;
    for (unsigned i = 0; i < 4; ++i) polyline->addVertexAt(i, {i * 1.0, i * 2.0}, i * 0.25);
    ASSERT_EQ(test::append(*database, polyline), Acad::eOk);
    const auto again = database::drawingOf(dxf::Document::fromBytes(saved(), "saved.dxf"));
    const auto ids = database::modelSpaceIds(*again);
    ASSERT_EQ(ids.size(), database::modelSpaceIds(*database).size());
    AcDbArc* arc = nullptr;
    ASSERT_EQ(acdbOpenObject(arc, ids[ids.size() - 2], AcDb::kForRead), Acad::eOk);
    EXPECT_TRUE(arc->center().isEqualTo({1, 2, 3}));
    EXPECT_EQ(arc->normal().z, -1.0);
    EXPECT_NEAR(arc->startAngle(), 0.5, 1e-15);
    EXPECT_NEAR(arc->endAngle(), 1.5, 1e-15);
    arc->close();
    AcDbCurve* curve = nullptr;
    ASSERT_EQ(acdbOpenObject(curve, ids.back(), AcDb::kForRead), Acad::eOk);
    EXPECT_EQ(curve->isA() == AcDbPolyline::desc(), clothes.light);
    double end = 0.0;
    EXPECT_EQ(curve->getEndParam(end), Acad::eOk);
    EXPECT_EQ(end, 3.0);
    AcGePoint3d point;
    EXPECT_EQ(curve->getPointAtParam(2.0, point), Acad::eOk);
    EXPECT_TRUE(point.isEqualTo({2, 4, 0}));
    curve->close();
}

INSTANTIATE_TEST_SUITE_P(Releases, NewEntitiesOfRelease,
                         testing::Combine(testing::Range<std::size_t>(0, std::size(kClothes)),
                                          testing::Bool()),
                         [](const auto& drawing) {
                             return std::string(kClothes[std::get<0>(drawing.param)].name) +
                                    (std::get<1>(drawing.param) ? "_binary" : "");
                         });
