#include "host/editor/Session.h"

#include <adscodes.h>
#include <dbapserv.h>

#include <algorithm>

#include "host/database/Drawing.h"
#include "host/database/Ledger.h"
#include "host/database/Undo.h"
#include "host/editor/CommandStack.h"
#include "host/editor/DrawingView.h"
#include "host/editor/Modules.h"
#include "host/editor/Points.h"
#include "host/editor/SessionState.h"
#include "host/editor/Words.h"

namespace host::editor {

namespace {

Session* living = nullptr;

std::wstring wide(const std::exception& error) {
    return fromUtf8(error.what());
}

// The open drawing's entry in the ledger.
constexpr std::uint64_t openDocument = 1;
std::string describeDocument(std::uint64_t) {
    return "the open drawing";
}

}  // namespace

CommandFailure::CommandFailure(std::wstring sentence)
    : std::runtime_error(toUtf8(sentence)), sentence_(std::move(sentence)) {}

Session::Session(Input& input, Output& output) {
    if (living != nullptr) throw std::logic_error("there is one session at a time");
    implementation_ = std::make_unique<Implementation>(*this, input, output);
    living = this;
}

Session::~Session() {
    Modules::instance().unloadAll([this] {
        error(L"a module could not be unloaded: " + implementation_->describeException());
    });
    implementation_->closeDrawing();
    // LISP gives its selection sets back while there still is a session.
    implementation_->lisp.clear();
    living = nullptr;
}

Session* Session::current() {
    return living;
}

void Session::openDrawing(const std::filesystem::path& path) {
    useDrawing(database::readDrawing(path));
}

void Session::useDrawing(std::unique_ptr<AcDbDatabase> drawing) {
    implementation_->useDrawing(std::move(drawing));
}

void Session::closeDrawing() {
    implementation_->closeDrawing();
}

AcDbDatabase* Session::drawing() const {
    return implementation_->drawing();
}

void Session::loadModule(const std::filesystem::path& path) {
    try {
        Modules::instance().load(path);
    } catch (const ModuleError&) {
        throw;
    } catch (...) {
        throw ModuleError("the module '" + path.u8string() +
                          "' could not start: " + toUtf8(implementation_->describeException()));
    }
}

void Session::unloadModule(const std::filesystem::path& path) {
    Modules::instance().unload(path);
}

std::vector<std::filesystem::path> Session::modules() const {
    return Modules::instance().paths();
}

void Session::addHostCommand(HostCommand command) {
    std::vector<std::wstring> names = command.aliases;
    names.push_back(command.name);
    for (const HostCommand& known : implementation_->hostCommands) {
        for (const std::wstring& name : names) {
            const auto same = [&](const std::wstring& other) {
                return equalIgnoringCase(name, other);
            };
            if (same(known.name) || std::any_of(known.aliases.begin(), known.aliases.end(), same)) {
                throw std::logic_error("the command " + toUtf8(name) + " exists already");
            }
        }
    }
    implementation_->hostCommands.push_back(std::move(command));
}

const std::vector<Session::HostCommand>& Session::hostCommands() const {
    return implementation_->hostCommands;
}

std::vector<std::wstring> Session::commandNames() const {
    std::vector<std::wstring> names = CommandStack::instance().names();
    for (const HostCommand& command : implementation_->hostCommands) names.push_back(command.name);
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    return names;
}

std::vector<std::wstring> Session::lispNames() const {
    return implementation_->lisp.names();
}

CommandResult Session::runCommand(std::wstring_view name) {
    return implementation_->runCommand(name, {});
}

void Session::run() {
    implementation_->run();
}

void Session::quit() {
    implementation_->quitting = true;
}

bool Session::quitting() const {
    return implementation_->quitting;
}

void Session::interrupt() {
    implementation_->interrupted = true;
}

void Session::onCommandEnded(std::function<void(CommandResult&)> listener) {
    implementation_->listener = std::move(listener);
}

void Session::setExceptionReporter(std::function<std::wstring()> reporter) {
    implementation_->exceptionReporter = std::move(reporter);
}

void Session::runScript(std::wstring text, std::wstring name) {
    implementation_->startScript(std::move(text), std::move(name));
}

std::wstring Session::askWord(std::wstring_view prompt, std::vector<std::wstring> completions) {
    return implementation_->askForWord(
        {Request::Kind::word, std::wstring(prompt), std::move(completions)});
}

std::wstring Session::askFile(std::wstring_view prompt, std::vector<std::wstring> types) {
    return implementation_->askForWord(
        {Request::Kind::word, std::wstring(prompt), {}, std::move(types)});
}

std::wstring Session::askText(std::wstring_view prompt) {
    return implementation_->askOrCancel({Request::Kind::text, std::wstring(prompt), {}}).text;
}

const std::wstring& Session::restOfLine() const {
    return implementation_->restOfLine();
}

void Session::dropRestOfLine() {
    implementation_->dropRestOfLine();
}

void Session::print(std::wstring_view text) {
    implementation_->print(text);
}

void Session::error(std::wstring_view sentence) {
    implementation_->error(sentence);
}

int Session::undo(int steps) {
    AcDbDatabase* open = drawing();
    int done = 0;
    while (open != nullptr && done < steps && database::undo(*open)) ++done;
    return done;
}

int Session::redo(int steps) {
    AcDbDatabase* open = drawing();
    int done = 0;
    while (open != nullptr && done < steps && database::redo(*open)) ++done;
    return done;
}

// --- what a session keeps ----------------------------------------------------------------------

Session::Implementation::Implementation(Session& owner, Input& input, Output& output)
    : lisp([this](const std::wstring& text) { print(text); }),
      owner_(owner),
      input_(input),
      output_(output) {
    lisp::defineDrawingFunctions(lisp);
    lisp::defineSessionFunctions(lisp);
    lisp.stopWhen([this] { return interrupted.load(); });
}

Session::Implementation::~Implementation() = default;

Answer Session::Implementation::askOrCancel(const Request& request) {
    Answer answer = ask(request);
    PromptRecord noted;
    noted.reply = answer.text;
    noted.code = answer.isCancel() || answer.kind == Answer::Kind::failed ? RTCAN : RTNORM;
    record(noted);
    if (noted.code == RTCAN) throw Cancelled();
    return answer;
}

std::wstring Session::Implementation::askForWord(const Request& request) {
    const Answer answer = askOrCancel(request);
    if (answer.kind == Answer::Kind::value && !lisp::isWord(answer.value)) {
        throw CommandFailure(answer.text + L" gives " + lisp::brief(answer.value) +
                             L"; a text or a number is needed");
    }
    return answer.word();
}

std::optional<AcGePoint3d> Session::Implementation::pointFrom(const Answer& answer) const {
    return answer.kind == Answer::Kind::value ? lisp::pointOf(answer.value)
                                              : parsePoint(trimmed(answer.text), lastPoint);
}

std::wstring Session::Implementation::describeException() const {
    if (exceptionReporter) return exceptionReporter();
    try {
        throw;
    } catch (const std::exception& error) {
        return wide(error);
    } catch (...) {
        return L"an exception of an unknown class";
    }
}

void Session::Implementation::useDrawing(std::unique_ptr<AcDbDatabase> drawing) {
    // Values that are being worked with may name entities of the drawing that is open.
    if (lisp.isEvaluating())
        throw CommandFailure(L"another drawing can't be opened from inside of an expression");
    closeDrawing();
    drawing_ = std::move(drawing);
    acdbHostApplicationServices()->setWorkingDatabase(drawing_.get());
    if (drawing_ == nullptr) return;
    if (script_ != nullptr) {
        database::beginGroup(*drawing_, L"SCRIPT");
        scriptGroupIsOpen_ = true;
    }
    Modules::instance().send(AcRx::kLoadDwgMsg);
}

const Session::Implementation::View& Session::Implementation::view() {
    if (!view_) view_ = drawing_ == nullptr ? View() : savedView(*drawing_);
    return *view_;
}

void Session::Implementation::lockDocument(AcAp::DocLockMode mode) {
    documentLocks_.push_back(mode);
    database::Ledger::instance().opened("document lock", openDocument, describeDocument);
}

void Session::Implementation::unlockDocument(std::size_t kept) {
    while (documentLocks_.size() > kept) {
        documentLocks_.pop_back();
        database::Ledger::instance().closed("document lock", openDocument);
    }
}

void Session::Implementation::closeDrawing() {
    if (drawing_ == nullptr) return;
    Modules::instance().send(AcRx::kUnloadDwgMsg);
    unlockDocument(0);
    // Names of entities and sets mean nothing in another drawing.
    lisp.clear();
    previousSelection.clear();
    earlierViews.clear();
    lastPoint = {};
    view_.reset();
    scriptGroupIsOpen_ = false;
    acdbHostApplicationServices()->setWorkingDatabase(nullptr);
    drawing_.reset();
}

}  // namespace host::editor
