#include "tests/host/editor/Harness.h"

#include <stdexcept>

#include "host/database/Drawing.h"
#include "tests/host/editor/TestCommands.h"
#include "tests/host/support/LedgerListener.h"

namespace host::test {

namespace {

std::wstring joined(const std::vector<std::wstring>& lines) {
    std::wstring text;
    for (const std::wstring& line : lines) text += line + L'\n';
    return text;
}

}  // namespace

Harness::Harness(const DrawingText& drawing, std::vector<std::wstring> lines, By by) {
    if (by == By::script) {
        input_ = std::make_unique<editor::ScriptInput>(joined(lines), L"RUN.scr");
    } else {
        auto typed = std::make_unique<TypedInput>(std::move(lines));
        typed_ = typed.get();
        input_ = std::move(typed);
    }
    session_ = std::make_unique<editor::Session>(*input_, output_);
    session_->useDrawing(drawing.database());
    registerTestCommands();
    session_->onCommandEnded([this](editor::CommandResult& result) {
        results_.push_back(result);
        if (result.end == editor::CommandResult::End::unknown) {
            session_->error(L"no command " + result.name);
        }
    });
}

Harness::~Harness() {
    removeTestCommands();
}

std::wstring Harness::run() {
    session_->run();
    std::wstring shown = output_.shown;
    if (!shown.empty() && shown.back() == L'\n') shown.pop_back();
    return shown;
}

const editor::CommandResult& Harness::result() const {
    if (results_.size() != 1)
        throw std::logic_error(std::to_string(results_.size()) + " commands ran");
    return results_.front();
}

AcDbObjectId Harness::entity(std::wstring_view handle) const {
    return database::idFromHandle(*session_->drawing(), handle);
}

std::wstring handles(const std::vector<AcDbObjectId>& entities) {
    std::wstring text;
    for (const AcDbObjectId id : entities) {
        if (!text.empty()) text += L' ';
        text += database::handleText(id);
    }
    return text;
}

DrawingText smallTown() {
    DrawingText drawing("AC1009");
    drawing.variable("$VIEWCTR|10 50.0|20 25.0").variable("$VIEWSIZE|40 100.0");
    drawing.layer("street")
        .layer("names")
        .layer("locked", 4)
        .layer("frozen", 1)
        .layer("off", 0, -7);
    drawing.entity("LINE|5 10|8 street|10 0.0|20 0.0|30 0.0|11 100.0|21 0.0|31 0.0");
    drawing.entity("LINE|5 11|8 street|10 0.0|20 50.0|30 0.0|11 100.0|21 50.0|31 0.0");
    drawing.entity("CIRCLE|5 12|8 street|10 50.0|20 25.0|30 0.0|40 10.0");
    drawing.entity("TEXT|5 20|8 names|10 10.0|20 2.0|30 0.0|40 2.0|1 Kauppakatu");
    drawing.entity("TEXT|5 21|8 names|10 10.0|20 52.0|30 0.0|40 2.0|1 Torikatu");
    drawing.entity("TEXT|5 22|8 locked|10 10.0|20 10.0|30 0.0|40 2.0|1 Lukittu");
    drawing.entity("TEXT|5 23|8 frozen|10 10.0|20 20.0|30 0.0|40 2.0|1 Kylma");
    drawing.entity("TEXT|5 24|8 off|10 10.0|20 30.0|30 0.0|40 2.0|1 Pimea");
    return drawing;
}

}  // namespace host::test
