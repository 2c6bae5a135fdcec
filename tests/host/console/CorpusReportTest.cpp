// The program over every drawing of a folder, without writing them: each is reported and pictured,
// or refused with a sentence. ORLINTH_CORPUS names the folder; without it the drawings of
// tests/data are taken.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

#include "host/dxf/Errors.h"
#include "tests/host/console/ChildProcess.h"
#include "tests/host/dxf/Drawings.h"

namespace {

using namespace console_test;
namespace fs = std::filesystem;
using host::dxf::Document;

std::vector<fs::path> corpus() {
    const char* named = std::getenv("ORLINTH_CORPUS");
    // With its drive on Windows, where a first '/' stands for an option.
    return host::dxf::test::drawingsOf(fs::absolute(
        named == nullptr || *named == '\0' ? host::dxf::test::dataFolder() : fs::u8path(named)));
}

// Names the first entity that can give a direction; the origin where there is none.
std::string aLineOf(const Document& document) {
    for (host::dxf::RecordIndex record = 0; record < document.size(); ++record) {
        const std::string_view type = document.type(record);
        const auto handle = document.handle(record);
        if (handle && (type == "LINE" || type == "LWPOLYLINE" || type == "POLYLINE" ||
                       type == "ARC" || type == "CIRCLE" || type == "SPLINE")) {
            char text[32];
            std::snprintf(text, sizeof text, "handle=%llX",
                          static_cast<unsigned long long>(*handle));
            return text;
        }
    }
    return "0,0";
}

class CorpusReports : public testing::Test {
  protected:
    std::size_t tried_ = 0, reported_ = 0, pictured_ = 0;
    Folder results_;

    fs::path result(const char* extension) const {
        return results_ / (std::to_string(tried_) + extension);
    }

    Outcome align(const fs::path& drawing, const std::string& line) {
        ++tried_;
        return run({orlinth(),
                    {"align", drawing.u8string(), "--line", line, "--dry-run", "--report",
                     result(".json").u8string(), "--picture", result(".svg").u8string()},
                    results_.path(),
                    {}});
    }

    void expectRefused(const fs::path& drawing) {
        const Outcome outcome = align(drawing, "0,0");
        EXPECT_EQ(outcome.exit, 3) << outcome.output;
        EXPECT_NE(outcome.error.find(drawing.filename().u8string()), std::string::npos)
            << outcome.error;
        EXPECT_FALSE(fs::exists(result(".json")));
        EXPECT_FALSE(fs::exists(result(".svg")));
    }

    // Nothing to turn, or no line that can be read, is told as such and gives no picture.
    void expectReported(const fs::path& drawing, const Document& document) {
        const Outcome outcome = align(drawing, aLineOf(document));
        EXPECT_TRUE(outcome.exit == 0 || (outcome.exit == 1 && !outcome.error.empty()))
            << outcome.exit << '\n'
            << outcome.error;
        EXPECT_TRUE(fs::exists(result(".json"))) << outcome.error;
        EXPECT_EQ(fs::exists(result(".svg")), outcome.exit == 0) << outcome.error;
        pictured_ += outcome.exit == 0 ? 1 : 0;
        ++reported_;
    }

    void expectValid() {
#ifndef _WIN32  // the interpreter is not there under Wine
        const fs::path sources = exampleDrawing().parent_path().parent_path();
        const Outcome outcome =
            run({"/usr/bin/python3",
                 {(sources / "tests/host/console/validate_reports.py").string(),
                  (sources / "docs/report.schema.json").string(), results_.path().string()},
                 results_.path(),
                 {}});
        EXPECT_EQ(outcome.output + outcome.error, std::to_string(reported_) + " valid\n");
#endif
    }
};

TEST_F(CorpusReports, AreMadeOfEveryDrawingThatCanBeRead) {
    for (const fs::path& drawing : corpus()) {
        SCOPED_TRACE(drawing.u8string());
        const std::string before = host::dxf::test::readBytes(drawing);
        std::shared_ptr<const Document> document;
        try {
            document = Document::open(drawing);
        } catch (const host::dxf::ReadError&) {
        }
        if (document == nullptr) {
            expectRefused(drawing);
        } else {
            expectReported(drawing, *document);
        }
        EXPECT_EQ(host::dxf::test::readBytes(drawing), before);
    }
    EXPECT_GT(pictured_, 0U);
    expectValid();
}

}  // namespace
