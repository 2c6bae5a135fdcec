// What of the runs of a session a picture shows, and pictures where librsvg is missing.
#include "host/console/Picturing.h"

#include <gtest/gtest.h>

#include "host/picture/PictureFile.h"
#include "tests/host/console/ChildProcess.h"

namespace {

using namespace console_test;
using host::console::changeOf;
using host::console::CommandRun;
using host::console::LeftEntity;
using host::console::Reason;
using host::console::Record;
using host::console::TurnedEntity;

AcDbObjectId id(int number) {
    return AcDbObjectId(static_cast<Adesk::IntDbId>(number));
}

TurnedEntity turned(int number, double degreesBefore) {
    TurnedEntity entity;
    entity.id = id(number);
    entity.before.degrees = degreesBefore;
    return entity;
}

LeftEntity left(int number, Reason reason, const std::string& detail = {}) {
    LeftEntity entity;
    entity.id = id(number);
    entity.reason = reason;
    entity.detail = detail;
    return entity;
}

CommandRun run(int line) {
    CommandRun result;
    result.line.emplace();
    result.line->id = id(line);
    return result;
}

TEST(ChangeOf, TakesTheRotationBeforeTheFirstRunAndWhatNoneTurned) {
    Record record;
    record.runs = {run(1), run(2)};
    record.runs[0].turned = {turned(10, 180), turned(11, 90)};
    record.runs[0].left = {left(13, Reason::erased)};
    record.runs[1].turned = {turned(10, 45)};
    record.runs[1].left = {left(11, Reason::lockedLayer), left(12, Reason::notOpened, "why")};
    const auto change = changeOf(record);
    EXPECT_EQ(change.line, id(2));
    ASSERT_EQ(change.turned.size(), 2U);
    EXPECT_EQ(change.turned[0].entity, id(10));
    EXPECT_DOUBLE_EQ(change.turned[0].formerRotation, 3.14159265358979323846);
    EXPECT_DOUBLE_EQ(change.turned[1].formerRotation, 3.14159265358979323846 / 2);
    EXPECT_FALSE(change.turned[0].stoodSo);
    ASSERT_EQ(change.left.size(), 2U);
    EXPECT_EQ(change.left[0].entity, id(13));
    EXPECT_EQ(change.left[1].entity, id(12));
    EXPECT_NE(change.left[1].reason.find(L"(why)"), std::wstring::npos);
    EXPECT_EQ(record.outcome().textWithReasons(),
              "2 turned, 2 left: 1 could not be opened, 1 erased");
}

TEST(ChangeOf, WhatWasTurnedAndTurnedBackStoodSo) {
    Record record;
    record.runs = {run(1), run(1), run(1)};
    record.runs[0].turned = {turned(10, 180), turned(11, 180)};  // to 0
    record.runs[1].turned = {turned(10, 0), turned(11, 0)};
    record.runs[1].turned[0].after.degrees = 180;
    record.runs[1].turned[1].after.degrees = 180;
    record.runs[1].turned[1].after.insertion.x = 1;
    record.runs[2].left = {left(10, Reason::erased)};
    const auto change = changeOf(record);
    EXPECT_TRUE(change.turned.at(0).stoodSo);
    EXPECT_EQ(change.turned.at(0).moved, 0);
    EXPECT_FALSE(change.turned.at(1).stoodSo);
    EXPECT_EQ(change.turned.at(1).moved, 1);
    EXPECT_EQ(record.outcome().text(), "2 turned (1 stood so already), 0 left");
}

TEST(ChangeOf, PassesOverRunsThatWereTakenBackOrPickedNothing) {
    Record record;
    record.runs = {run(1), run(2), CommandRun()};
    record.runs[0].turned = {turned(10, 0)};
    record.runs[1].turned = {turned(11, 0)};
    record.runs[1].takenBack = true;
    const auto change = changeOf(record);
    EXPECT_EQ(change.line, id(1));
    EXPECT_EQ(change.turned.size(), 1U);
    EXPECT_TRUE(changeOf({}).line.isNull());
}

Outcome alignWith(const std::filesystem::path& program, const Folder& folder, const char* picture) {
    write(folder / "streets.dxf", read(exampleDrawing()));
    return console_test::run(
        {program,
         {"align", "streets.dxf", "--line", "handle=2F", "-o", "out.dxf", "--picture", picture},
         folder.path(),
         {}});
}

void expectRefusal(const Outcome& outcome, const Folder& folder) {
    EXPECT_EQ(outcome.exit, 2);
    EXPECT_NE(outcome.error.find("PNG and PDF can't be written here: librsvg is not available"),
              std::string::npos)
        << outcome.error;
    EXPECT_NE(outcome.error.find(".svg works everywhere"), std::string::npos);
    EXPECT_EQ(outcome.output, "");
    EXPECT_FALSE(std::filesystem::exists(folder / "out.dxf"));
}

#ifdef ORLINTH_RENDERS

TEST(PictureOfTheProgram, PngAndPdfAreRendered) {
    const Folder folder;
    EXPECT_EQ(alignWith(orlinth(), folder, "a.png").exit, 0);
    EXPECT_EQ(read(folder / "a.png").substr(1, 3), "PNG");
    EXPECT_EQ(alignWith(orlinth(), folder, "a.pdf").exit, 0);
    EXPECT_EQ(read(folder / "a.pdf").substr(0, 5), "%PDF-");
}

// The program in a folder that has all its parts but the module that renders.
TEST(PictureOfTheProgram, WithoutItsModulePngIsRefusedAndSvgIsWritten) {
    const Folder folder;
    const std::filesystem::path parts = orlinth().parent_path();
    std::filesystem::copy_file(orlinth(), folder / "orlinth");
    for (const auto& entry : std::filesystem::directory_iterator(parts)) {
        const std::string name = entry.path().filename().string();
        const bool needed = name.rfind("lib", 0) == 0 || name == "ZEPTOrlinth.arx";
        if (needed) std::filesystem::create_symlink(entry.path(), folder / name);
    }
    expectRefusal(alignWith(folder / "orlinth", folder, "a.png"), folder);
    EXPECT_EQ(alignWith(folder / "orlinth", folder, "a.svg").exit, 0);
    EXPECT_TRUE(std::filesystem::exists(folder / "a.svg"));
}

#else

TEST(PictureOfTheProgram, WithoutItsModulePngIsRefused) {
    const Folder folder;
    expectRefusal(alignWith(orlinth(), folder, "a.pdf"), folder);
}

#endif

}  // namespace
