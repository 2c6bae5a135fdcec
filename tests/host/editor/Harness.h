// A session over a drawing from short texts, for tests: lines are its script or what a person
// types, and what a console would show is compared.
#pragma once

#include <dbmain.h>

#include <memory>
#include <string>
#include <vector>

#include "host/editor/Session.h"
#include "tests/host/editor/Recorder.h"
#include "tests/host/support/DrawingText.h"

namespace host::test {

class Harness {
  public:
    enum class By { script, person };

    // `lines` are the replies in turn. Commands of TestCommands.h are there.
    Harness(const DrawingText& drawing, std::vector<std::wstring> lines, By by = By::script);
    ~Harness();

    editor::Session& session() { return *session_; }
    AcDbDatabase& drawing() { return *session_->drawing(); }
    RecordingOutput& output() { return output_; }
    TypedInput* typed() { return typed_; }

    // Runs to the end of the lines and gives what was shown, without the last line end.
    std::wstring run();
    // How the commands went, in turn.
    const std::vector<editor::CommandResult>& results() const { return results_; }
    // The only command's result.
    const editor::CommandResult& result() const;

    AcDbObjectId entity(std::wstring_view handle) const;

  private:
    RecordingOutput output_;
    std::unique_ptr<editor::Input> input_;
    TypedInput* typed_ = nullptr;
    std::unique_ptr<editor::Session> session_;
    std::vector<editor::CommandResult> results_;
};

// Handles of the entities, separated by blanks, in their order.
std::wstring handles(const std::vector<AcDbObjectId>& entities);

// A street, a label and some signs in a view of height 100:
//   10 LINE street 0,0 - 100,0     11 LINE street 0,50 - 100,50      12 CIRCLE street 50,25 r 10
//   20 TEXT names "Kauppakatu" at 10,2 height 2                      21 TEXT names "Torikatu" at
//   10,52 22 TEXT locked at 10,10        23 TEXT frozen at 10,20           24 TEXT off at 10,30
DrawingText smallTown();

}  // namespace host::test
