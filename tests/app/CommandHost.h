// The embedded host with the module loaded and a drawing of the test's own open, and the answers of
// one run of the command.
#pragma once

#include <dbents.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "DrawingText.h"
#include "host/database/Drawing.h"
#include "host/database/Fault.h"
#include "host/database/Ledger.h"
#include "host/editor/Scripted.h"
#include "host/editor/Session.h"
#include "tam/TamExceptions.h"

namespace app_test {

using host::editor::CommandResult;
using End = CommandResult::End;

inline std::filesystem::path ModulePath() {
    return std::filesystem::path(ORLINTH_BIN_DIR) / "ZEPTOrlinth.arx";
}

// A file of this test program's own, gone when the object is.
class TemporaryFile {
  public:
    explicit TemporaryFile(const std::string& name)
        : path_(
              std::filesystem::temp_directory_path() /
              ("orlinth-" + std::to_string(reinterpret_cast<std::uintptr_t>(this)) + "-" + name)) {}
    ~TemporaryFile() {
        std::error_code ignored;
        std::filesystem::remove(path_, ignored);
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    const std::filesystem::path& Path() const { return path_; }
    std::string Bytes() const {
        std::ifstream file(path_, std::ios::binary);
        std::ostringstream bytes;
        bytes << file.rdbuf();
        return bytes.str();
    }

  private:
    std::filesystem::path path_;
};

class NoInput : public host::editor::Input {
  public:
    host::editor::Reply next(const host::editor::Request&) override { return {}; }
    void stop() override {}
    bool stopsWhenOutOfStep() const override { return false; }
    bool pending() const override { return true; }
};

class KeptOutput : public host::editor::Output {
  public:
    void print(std::wstring_view text) override { words += text; }
    void prompt(std::wstring_view text) override { words += text; }
    void reply(const host::editor::Reply&) override {}
    void error(std::wstring_view sentence) override { errors += sentence; }

    std::wstring words;
    std::wstring errors;
};

class CommandTest : public ::testing::Test {
  protected:
    void TearDown() override {
        host::fault::disarm();
        EXPECT_EQ(host::database::Ledger::instance().leaks(), std::vector<std::string>{});
        host::database::Ledger::instance().forget();
    }

    // Opens the drawing, and loads the module if that has not been done. Answers that nobody asked
    // for and records of prompts are gone.
    void Open(const DrawingText& drawing) {
        scripted.reset();
        scripted.emplace();
        original = drawing.Bytes();
        std::ofstream(file_.Path(), std::ios::binary) << original;
        session.openDrawing(file_.Path());
        session.loadModule(ModulePath());
    }

    AcDbObjectId Id(const std::string& handle) const {
        const AcDbObjectId id = host::database::idFromHandle(
            *session.drawing(), std::wstring(handle.begin(), handle.end()));
        EXPECT_FALSE(id.isNull()) << handle;
        return id;
    }

    std::vector<AcDbObjectId> Ids(const std::vector<std::string>& handles) const {
        std::vector<AcDbObjectId> ids;
        for (const std::string& handle : handles) ids.push_back(Id(handle));
        return ids;
    }

    // Runs the command: the picked line, the selection, and the reply (none: the question is
    // cancelled).
    CommandResult Run(const std::string& line, const std::vector<std::string>& handles,
                      const std::optional<std::wstring>& reply) {
        scripted->pick(Id(line));
        scripted->select(Ids(handles));
        if (reply) {
            scripted->type(*reply);
        } else {
            scripted->failType(RTCAN);
        }
        return session.runCommand(L"ZEPTAlignEntities");
    }

    // The rotation as the host keeps it.
    double Rotation(const std::string& handle) const {
        const host::fault::Quiet quiet;
        AcDbEntity* entity = nullptr;
        EXPECT_EQ(acdbOpenAcDbEntity(entity, Id(handle), AcDb::kForRead), Acad::eOk) << handle;
        if (entity == nullptr) return std::nan("");
        double rotation = std::nan("");
        if (const auto* text = AcDbText::cast(entity)) rotation = text->rotation();
        if (const auto* symbol = AcDbBlockReference::cast(entity)) rotation = symbol->rotation();
        entity->close();
        return rotation;
    }

    // What saving writes now.
    std::string Saved() {
        const host::fault::Quiet quiet;
        const TemporaryFile target("saved.dxf");
        host::database::saveDrawing(*session.drawing(), target.Path());
        return target.Bytes();
    }

    NoInput input;
    KeptOutput output;
    host::editor::Session session{input, output};
    std::optional<host::editor::Scripted> scripted{std::in_place};
    std::string original;  // the bytes of the drawing

  private:
    TemporaryFile file_{"drawing.dxf"};
};

}  // namespace app_test
