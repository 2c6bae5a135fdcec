// An independent reader, ezdxf, reads what we wrote: natively only, for it is a package of the
// distribution's own Python.
#ifndef _WIN32

#include <gtest/gtest.h>
#include <stdlib.h>

#include "tests/host/dxf/Drawings.h"
#include "tests/host/support/Releases.h"

namespace host::dxf {
namespace {

constexpr char kScript[] = R"(
import math, sys, ezdxf
expected = {}
for line in open(sys.argv[2]):
    handle, rotation = line.split()
    expected[handle] = float(rotation)
drawing = ezdxf.readfile(sys.argv[1])
seen = 0
for entity in drawing.modelspace().query('TEXT INSERT'):
    rotation = entity.dxf.get('rotation', 0.0)
    if rotation != expected[entity.dxf.handle]:
        sys.exit('%s has %r, not %r' % (entity, rotation, expected[entity.dxf.handle]))
    seen += 1
if seen != len(expected):
    sys.exit('%d of %d entities' % (seen, len(expected)))
)";

class Ezdxf : public testing::TestWithParam<const char*> {};

TEST_P(Ezdxf, ReadsTheRotationsThatWereWritten) {
    const auto document = Document::open(test::dataFolder() / "releases" / GetParam());
    const test::TemporaryFolder folder;
    Changes changes;
    std::string expected;
    double degrees = 12.3;
    for (RecordIndex record = 0; record < document->size(); ++record) {
        const std::string_view type = document->type(record);
        if (document->section(record) != Section::entities ||
            (type != "TEXT" && type != "INSERT")) {
            continue;
        }
        degrees += 29.7 / 0.9;
        std::size_t index = 0;
        std::size_t behind = 0;
        bool found = false;
        for (const Group& group : document->groups(record)) {
            found = found || group.code() == 50;
            if (!found && (group.code() == (type == "TEXT" ? 1 : 43) || group.code() == 30)) {
                behind = index;
            }
            if (group.code() == 50) changes[record] = {test::replaceReal(index, 50, degrees)};
            ++index;
        }
        if (!found) changes[record] = {test::insertReal(behind, 50, degrees)};
        char line[64];
        std::snprintf(line, sizeof(line), "%llX %.17g\n",
                      static_cast<unsigned long long>(document->handle(record).value()), degrees);
        expected += line;
    }
    ASSERT_GE(changes.size(), 9U);
    save(*document, changes, folder / "turned.dxf");
    test::writeBytes(folder / "check.py", kScript);
    test::writeBytes(folder / "expected.txt", expected);
    const std::string command = "/usr/bin/python3 '" + (folder / "check.py").string() + "' '" +
                                (folder / "turned.dxf").string() + "' '" +
                                (folder / "expected.txt").string() + "' 2>&1";
    EXPECT_EQ(std::system(command.c_str()), 0) << command;
}

INSTANTIATE_TEST_SUITE_P(Releases, Ezdxf, testing::ValuesIn(host::test::releasesFrom("r10.dxf")));

// The generator of tests/data has not drifted from its results.
TEST(TestData, IsWhatItsGeneratorWrites) {
    const std::string command =
        "/usr/bin/python3 '" + (test::dataFolder() / "make_drawings.py").string() + "' --check";
    EXPECT_EQ(std::system(command.c_str()), 0);
}

}  // namespace
}  // namespace host::dxf

#endif
