// Every drawing of a folder is drawn: ORLINTH_CORPUS names it; without it the drawings of
// tests/data are taken. Pictures are well-formed, and of a size that has to do with the drawing's.
#include <gtest/gtest.h>

#include <cstdlib>

#include "host/dxf/Errors.h"
#include "tests/host/dxf/Drawings.h"
#include "tests/host/picture/Pictured.h"

namespace {

using namespace picture_test;
namespace fs = std::filesystem;

std::vector<fs::path> corpus() {
    const char* named = std::getenv("ORLINTH_CORPUS");
    return host::dxf::test::drawingsOf(
        named == nullptr || *named == '\0' ? host::dxf::test::dataFolder() : fs::u8path(named));
}

TEST(CorpusPictures, AreDrawnOfEveryDrawingThatCanBeRead) {
    std::size_t drawn = 0;
    for (const fs::path& path : corpus()) {
        SCOPED_TRACE(path.u8string());
        std::unique_ptr<AcDbDatabase> database;
        try {
            database = host::database::readDrawing(path);
        } catch (const host::dxf::ReadError&) {
            continue;  // told as such, which the tests of reading see to
        }
        const std::string svg =
            host::picture::draw(*database, {}, {path.filename().wstring(), L""});
        EXPECT_NO_THROW(parseXml(svg).onlyOfClass("drawing"));
        EXPECT_LT(svg.size(), 20 * fs::file_size(path) + 1'000'000);
        ++drawn;
    }
    EXPECT_GT(drawn, 0U);
}

// What can be turned is shown as turned, with the former state beside it.
TEST(CorpusPictures, ShowEveryTextAndSymbolBeforeAndAfter) {
    for (const fs::path& path : corpus()) {
        SCOPED_TRACE(path.u8string());
        std::unique_ptr<AcDbDatabase> database;
        try {
            database = host::database::readDrawing(path);
        } catch (const host::dxf::ReadError&) {
            continue;
        }
        host::picture::Change change;
        for (const AcDbObjectId id : host::database::modelSpaceIds(*database)) {
            const std::wstring name = host::database::recordName(id);
            if (name == L"TEXT" || name == L"INSERT") change.turned.push_back({id, 0.5});
            if (name == L"LINE" && change.line.isNull()) change.line = id;
        }
        const std::string svg =
            host::picture::draw(*database, change, {path.filename().wstring(), L"TURN"});
        Element root;
        ASSERT_NO_THROW(root = parseXml(svg));
        EXPECT_EQ(root.onlyOfClass("model").onlyOfClass("after").children.size() > 0,
                  root.onlyOfClass("model").onlyOfClass("before").children.size() > 0);
    }
}

}  // namespace
