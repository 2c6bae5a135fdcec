// What the program writes, against angles that are computed here from the vertices: PlainDrawing.h
// for both builds, and the package ezdxf as an independent reader natively.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "tests/host/console/ChildProcess.h"
#include "tests/host/console/PlainDrawing.h"
#include "tests/host/console/Transcript.h"

namespace {

using namespace console_test;
using Entities = std::map<std::string, Record>;

class Alignment : public testing::Test {
  protected:
    Alignment() { write(folder_ / "streets.dxf", read(exampleDrawing())); }

    Outcome call(std::vector<std::string> arguments) const {
        return run({orlinth(), std::move(arguments), folder_.path(), {}});
    }

    // Aligns along the entity `line` into out.dxf.
    void align(const std::string& line, std::vector<std::string> more = {}) const {
        more.insert(more.begin(),
                    {"align", "streets.dxf", "--line", "handle=" + line, "-o", "out.dxf"});
        const Outcome outcome = call(more);
        ASSERT_EQ(outcome.exit, 0) << outcome.error;
        ASSERT_EQ(outcome.error, "");
    }

    Entities before() const { return readEntities(folder_ / "streets.dxf"); }
    Entities after() const { return readEntities(folder_ / "out.dxf"); }

    // Every group but 50, and 10 and 20 of texts that stand by 11, is the same text as before.
    void expectNothingElseChanged(const Record& was, const Record& is) const {
        Record plainWas = was;
        Record plainIs = is;
        const bool justified = was.type == "TEXT" && (was.number(72) != 0 || was.number(73) != 0) &&
                               was.number(72) != 3 && was.number(72) != 5;
        for (Record* record : {&plainWas, &plainIs}) {
            auto& groups = record->groups;
            for (std::size_t i = groups.size(); i-- > 0;) {
                const int code = groups[i].first;
                if (code == 50 || (justified && (code == 10 || code == 20)))
                    groups.erase(groups.begin() + static_cast<std::ptrdiff_t>(i));
            }
        }
        EXPECT_EQ(plainWas.groups, plainIs.groups) << was.type << " " << was.handle();
    }

    // The position of a justified text has turned about its alignment point by as much as the text.
    void expectPositionFollows(const Record& was, const Record& is) const {
        const double turn = (is.number(50) - was.number(50)) * 3.141592653589793 / 180;
        const double dx = was.number(10) - was.number(11);
        const double dy = was.number(20) - was.number(21);
        EXPECT_NEAR(is.number(10), was.number(11) + dx * std::cos(turn) - dy * std::sin(turn), 1e-7)
            << was.handle();
        EXPECT_NEAR(is.number(20), was.number(21) + dx * std::sin(turn) + dy * std::cos(turn), 1e-7)
            << was.handle();
    }

    // Compares every entity of out.dxf with what aligning `picked` entities along `line` has to
    // give.
    void expectAligned(const std::string& line, bool flip,
                       const std::function<bool(const Record&)>& picked) const {
        const Entities was = before();
        const Entities is = after();
        const auto layers = readLayers(folder_ / "streets.dxf");
        const std::vector<Plane> vertices = verticesOf(was.at(line));
        ASSERT_EQ(was.size(), is.size());
        int turned = 0;
        for (const auto& [handle, entity] : was) {
            const Record& result = is.at(handle);
            expectNothingElseChanged(entity, result);
            if (!isTurned(entity, layers) || !picked(entity)) {
                EXPECT_EQ(entity.groups, result.groups) << handle;
                continue;
            }
            ++turned;
            EXPECT_NEAR(result.number(50), expectedRotation(entity, vertices, flip), 1e-10)
                << handle;
            if (entity.type == "TEXT" && (entity.number(72) != 0 || entity.number(73) != 0) &&
                entity.number(72) != 3 && entity.number(72) != 5)
                expectPositionFollows(entity, result);
        }
        EXPECT_GT(turned, 0);
    }

    Folder folder_;
};

bool everything(const Record&) {
    return true;
}

TEST_F(Alignment, EveryTextAndSymbolFollowsTheMainStreet) {
    align("2F");
    expectAligned("2F", false, everything);
}

TEST_F(Alignment, FlippedSymbolsLieAlongTheStreetAndTextsAsBefore) {
    align("2F", {"--flip"});
    expectAligned("2F", true, everything);
}

TEST_F(Alignment, AStraightLineGivesOneDirection) {
    align("30", {"--flip"});
    expectAligned("30", true, everything);
}

TEST_F(Alignment, AligningTwiceGivesTheSameAngles) {
    align("2F", {"--flip"});
    const Entities first = after();
    write(folder_ / "streets.dxf", read(folder_ / "out.dxf"));
    align("2F", {"--flip"});
    for (const auto& [handle, entity] : after())
        EXPECT_EQ(entity.text(50), first.at(handle).text(50)) << handle;
}

TEST_F(Alignment, ThePickedPointAndTheHandleGiveTheSameFile) {
    align("2F");
    const std::string byHandle = read(folder_ / "out.dxf");
    ASSERT_EQ(call({"align", "streets.dxf", "--line", "25496080,6672015", "-o", "out.dxf"}).exit,
              0);
    EXPECT_EQ(read(folder_ / "out.dxf"), byHandle);
}

TEST_F(Alignment, ScriptAndOneShotGiveTheSameFile) {
    align("2F", {"--select", "all", "--flip"});
    write(folder_ / "run.scr", "ZEPTAlignEntities\n(handent \"2F\")\nALL\n\nk\n");
    ASSERT_EQ(call({"-i", "streets.dxf", "-s", "run.scr", "-o", "scripted.dxf"}).exit, 0);
    EXPECT_EQ(read(folder_ / "scripted.dxf"), read(folder_ / "out.dxf"));
}

TEST_F(Alignment, LayerFiltersKeepToMatchingLayersWhateverTheirCase) {
    align("2F", {"--select", "layer=osoite*,KORKEUS"});
    expectAligned("2F", false, [](const Record& entity) {
        return entity.text(8) == "OSOITENUMERO" || entity.text(8) == "KORKEUS";
    });
}

TEST_F(Alignment, TypeFiltersKeepToNamedClasses) {
    align("2F", {"--select", "type=insert", "--flip"});
    expectAligned("2F", true, [](const Record& entity) { return entity.type == "INSERT"; });
}

TEST_F(Alignment, HandleFiltersKeepToNamedEntities) {
    align("2F", {"--select", "handle=63,0095,99"});
    expectAligned("2F", false, [](const Record& entity) {
        return entity.handle() == "63" || entity.handle() == "95" || entity.handle() == "99";
    });
}

// Symbols stand at one point of these, so that a window around the point's surroundings holds them
// whole.
TEST_F(Alignment, WindowsKeepToWhatLiesWhollyInside) {
    align("2F",
          {"--select", "window=25496000,6671990,25496120,6672045", "--select", "type=INSERT"});
    expectAligned("2F", false, [](const Record& entity) {
        const double x = entity.number(10) - 25496000;
        const double y = entity.number(20) - 6672000;
        return entity.type == "INSERT" && x > 0 && x < 120 && y > -10 && y < 45;
    });
}

TEST_F(Alignment, SeveralFiltersNarrowEachOther) {
    align("2F",
          {"--select", "type=TEXT", "--select", "layer=*NUMERO", "--select", "handle=6A,6C,95"});
    expectAligned("2F", false, [](const Record& entity) {
        return entity.type == "TEXT" && entity.text(8) == "OSOITENUMERO" &&
               (entity.handle() == "6A" || entity.handle() == "6C" || entity.handle() == "95");
    });
}

#ifndef _WIN32
// Natively only: the package is there for Linux.
TEST_F(Alignment, AnIndependentReaderComputesTheSameAngles) {
    const std::filesystem::path script = std::filesystem::path(ORLINTH_TEST_DATA).parent_path() /
                                         "host" / "console" / "check_alignment.py";
    for (const std::string flip : {"", "--flip"}) {
        align("2F", flip.empty() ? std::vector<std::string>() : std::vector<std::string>{flip});
        const Outcome outcome =
            run({"/usr/bin/python3",
                 {script.string(), "streets.dxf", "out.dxf", "2F", flip.empty() ? "0" : "1"},
                 folder_.path(),
                 {}});
        EXPECT_EQ(outcome.exit, 0) << outcome.output << outcome.error;
        EXPECT_EQ(outcome.output, "68 entities follow the line\n");
    }
}
#endif

}  // namespace
