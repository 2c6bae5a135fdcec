#include "host/console/Program.h"

#include <exception>
#include <filesystem>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <variant>

#include "host/console/Account.h"
#include "host/console/AlignAnswers.h"
#include "host/console/Bulk.h"
#include "host/console/ExceptionText.h"
#include "host/console/Files.h"
#include "host/console/HostCommands.h"
#include "host/console/Interruption.h"
#include "host/console/LineReader.h"
#include "host/console/Options.h"
#include "host/console/Picturing.h"
#include "host/console/Printer.h"
#include "host/console/ProgramFile.h"
#include "host/console/Report.h"
#include "host/console/Saver.h"
#include "host/console/SelectionNotes.h"
#include "host/console/SessionOutput.h"
#include "host/console/StandardInput.h"
#include "host/console/Verdict.h"
#include "host/database/Ledger.h"
#include "host/dxf/Errors.h"
#include "host/editor/Script.h"
#include "host/editor/Session.h"
#include "host/editor/Words.h"

namespace host::console {

namespace {

using editor::Session;

bool isPerson(const Options& options) {
    return options.script.empty() && !options.align && inputIsTerminal();
}

// The script of a call. It is read once: a pipe gives it only once, and all drawings get the same.
class Script {
  public:
    explicit Script(std::filesystem::path file) : file_(std::move(file)) {}

    // Throws UnreadableFile.
    std::unique_ptr<editor::Input> input() {
        if (!text_) text_ = readScript(file_);
        return std::make_unique<editor::ScriptInput>(*text_, editor::fromUtf8(utf8(file_)));
    }

  private:
    const std::filesystem::path file_;
    std::optional<std::wstring> text_;
};

std::unique_ptr<editor::Input> makeInput(const Options& options, Script& script,
                                         SessionOutput& output) {
    if (options.align) return std::make_unique<AlignAnswers>(*options.align);
    if (options.script.empty()) return std::make_unique<StandardInput>(output);
    return script.input();
}

// One drawing's part of a call, from opening what was named to the last word.
class Call {
  public:
    Call(const Options& options, Script& script, Printer& printer)
        : options_(options),
          script_(script),
          printer_(printer),
          saver_(options, printer, account_),
          verdict_(options, isPerson(options)),
          workplace_{options, printer, saver_, verdict_, account_, {}, false, isPerson(options)} {}

    TaskResult run() {
        SessionOutput output(printer_);
        const std::unique_ptr<editor::Input> input = makeInput(options_, script_, output);
        {
            Session session(*input, output);
            prepare(session);
            session.run();
            printer_.endLine();
            finish(session);
        }
        for (const std::string& leak : database::Ledger::instance().leaks())
            printer_.error("internal: the session left open: " + leak);
        result_.exit = exit_;
        return result_;
    }

  private:
    void prepare(Session& session) {
        session.setExceptionReporter([] { return editor::fromUtf8(describeException()); });
        session.onCommandEnded([this, &session](editor::CommandResult& result) {
            verdict_.hear(session, result);
            const CommandRun* const run = account_.hear(session, result);
            if (run != nullptr) tell(session, *run);
        });
        addHostCommands(session, workplace_);
        session.loadModule(options_.module.empty() ? besideProgram("ZEPTOrlinth.arx")
                                                   : options_.module);
        if (!options_.drawing.empty()) {
            openDrawing(session, workplace_, options_.drawing);
            if (isPerson(options_)) session.print(L" HELP lists the commands.");
        } else if (isPerson(options_)) {
            session.print(L"No drawing is open. OPEN opens one, HELP lists the commands.");
        }
    }

    // Commands are silent about what they do.
    void tell(Session& session, const CommandRun& run) {
        std::vector<std::string> sentences;
        if (options_.align && run.end == editor::CommandResult::End::done)
            sentences = lacking(*session.drawing(), options_.align->filters);
        sentences.push_back(sentenceOf(run));
        for (const std::string& sentence : sentences)
            if (!sentence.empty()) session.print(L"\n" + editor::fromUtf8(sentence));
    }

    // An interruption is looked at between the steps: what is begun is given up or completed, so
    // that no file is left half done, and a report tells of the drawing that was saved.
    void finish(Session& session) {
        const Interruption interruption;
        exit_ = verdict_.exit();
        if (session.drawing() != nullptr) record_ = account_.record(*session.drawing());
        if (!options_.report.empty())
            saveAndReport(session, interruption);
        else
            save(session);
        if (exit_ == Exit::done && !saver_.proved()) exit_ = Exit::unproved;
        if (!options_.picture.empty()) drawPicture(session);
        if (options_.verify && !saver_.hasSaved())
            printer_.print("Nothing was saved, so there is nothing to verify.\n");
        result_.stopsAll = interruption.happened();
        if (session.drawing() == nullptr) return;
        const Outcome outcome = record_.outcome();
        result_.session = SessionResult{outcome.counts(), outcome.leftByReason(),
                                        outcome.textWithReasons(), record_.findings};
        const Saved last = saved(*session.drawing());
        result_.savedAs = last.file;
        result_.changedSince = last.changedSince;
    }

    Saved saved(const AcDbDatabase& drawing) const {
        const bool isSaved = !saver_.target().empty();
        return {shownName(saver_.target()), options_.dryRun, isSaved && saver_.isModified(drawing)};
    }

    void save(Session& session) {
        if (!options_.output.empty())
            writeOutput(session);
        else if (!workplace_.discarded && session.drawing() != nullptr &&
                 saver_.isModified(*session.drawing()))
            printer_.print(saver_.changes(*session.drawing()) + "; not saved: " +
                           (options_.readOnly ? "--readonly forbids it.\n"
                            : options_.dryRun ? "this is a dry run.\n"
                                              : "that takes -o FILE, QSAVE or SAVEAS.\n"));
    }

    // The report is prepared first, so that the drawing stays as it was when there can be none.
    void saveAndReport(Session& session, const Interruption& interruption) {
        if (session.drawing() == nullptr) {
            save(session);
            return refuse(Exit::cancelled, "there is no report: no drawing is open");
        }
        ReportFile report(options_, record_, printer_);
        const bool saves = !options_.output.empty() && verdict_.endedWell();
        try {
            report.prepare(saves ? Saved{shownName(options_.output), options_.dryRun}
                                 : saved(*session.drawing()));
            if (interruption.happened())
                throw dxf::WriteError(utf8(options_.report), "it was interrupted");
        } catch (const dxf::WriteError& error) {
            refuse(Exit::unwritable, error.what(), "the report can't be written");
            if (saves)
                printer_.error(utf8(options_.output) +
                               " was not written, because the report can't be");
            return;
        }
        save(session);
        try {
            report.publish(saved(*session.drawing()));
        } catch (const dxf::WriteError& error) {
            refuse(Exit::unwritable, error.what(), "the report can't be written");
        }
    }

    // Of several failures the first decides. `trouble` is what the table of the drawings says of
    // it.
    void refuse(Exit exit, const std::string& sentence, const char* trouble = "") {
        printer_.error(sentence);
        if (exit_ != Exit::done) return;
        exit_ = exit;
        result_.trouble = trouble;
    }

    void writeOutput(Session& session) {
        if (!verdict_.endedWell()) {
            printer_.error(utf8(options_.output) +
                           " was not written, because the session did not end well" + givenUp());
        } else if (session.drawing() == nullptr) {
            refuse(Exit::cancelled, utf8(options_.output) + " was not written: no drawing is open");
        } else {
            try {
                saver_.save(*session.drawing(), options_.output);
            } catch (const NotSaved& error) {
                refuse(Exit::unwritable, error.what());
            }
        }
    }

    // "; 68 turned, 30 left are given up"
    std::string givenUp() const {
        const Outcome outcome = record_.outcome();
        if (outcome.turned.empty() && outcome.otherChanges == 0) return {};
        return "; what was done till then is given up: " + outcome.text();
    }

    void drawPicture(const Session& session) {
        const std::string name = utf8(options_.picture);
        if (!verdict_.endedWell())
            return printer_.error(name + " was not written, because the session did not end well");
        if (session.drawing() == nullptr)
            return refuse(Exit::cancelled, name + " was not written: no drawing is open");
        try {
            writePicture(*session.drawing(), workplace_.drawing.filename(), record_, options_,
                         printer_);
        } catch (const NotPictured& error) {
            refuse(error.code(), error.what(), "the picture can't be written");
        }
    }

    const Options& options_;
    Script& script_;
    Printer& printer_;
    Account account_;
    Record record_;  // once the session has ended, when a drawing is open
    Saver saver_;
    Verdict verdict_;
    Workplace workplace_;
    Exit exit_ = Exit::done;
    TaskResult result_;
};

// Throws dxf::WriteError when what is to be written can't be, as far as that shows beforehand: then
// nothing is done in vain.
void demandTargets(const Options& options) {
    if (!options.output.empty() && !options.readOnly) demandTarget(options.output, options.folders);
    if (!options.report.empty() && options.report != "-")
        demandTarget(options.report, options.folders);
    if (!options.picture.empty()) demandTarget(options.picture, options.folders);
}

TaskResult perform(const Options& options, Script& script, Printer& printer) {
    const auto failed = [&](Exit exit, const std::exception& error, bool inAll) {
        printer.error(error.what());
        TaskResult result;
        result.exit = exit;
        result.stopsAll = inAll;
        return result;
    };
    try {
        demandPicture(options);
        demandTargets(options);
        return Call(options, script, printer).run();
    } catch (const NotPictured& error) {
        return failed(error.code(), error, true);
    } catch (const UnreadableFile& error) {  // the script
        return failed(Exit::unreadable, error, true);
    } catch (const editor::ModuleError& error) {
        return failed(Exit::unreadable, error, true);
    } catch (const dxf::ReadError& error) {
        return failed(Exit::unreadable, error, false);
    } catch (const dxf::WriteError& error) {
        return failed(Exit::unwritable, error, false);
    } catch (...) {
        printer.error("internal: " + describeException());
        TaskResult result;
        result.exit = Exit::cancelled;
        return result;
    }
}

// Standard output was lost, and nobody chose not to read it.
Exit withOutput(Exit exit, Printer& printer) {
    if (printer.outputLoss().empty()) return exit;
    printer.error("standard output could not take everything: " + printer.outputLoss());
    return exit == Exit::done ? Exit::unwritable : exit;
}

Exit farewell(const Farewell& farewell) {
    Printer printer({});
    printer.print(farewell.output);
    if (!farewell.error.empty()) printer.error(farewell.error);
    return withOutput(farewell.code, printer);
}

Exit runWithLog(const Options& options) {
    try {
        Printer printer(options.log);
        if (!options.summary.empty()) demandTarget(options.summary, {});
        if (options.quiet) printer.beQuiet();
        Script script(options.script);
        const Exit exit = withOutput(
            runInTurn(tasksOf(options), printer,
                      [&](const Options& task) { return perform(task, script, printer); }),
            printer);
        if (!printer.logComplete())
            printer.error("the log '" + utf8(options.log) + "' could not be written to its end");
        return exit;
    } catch (const std::runtime_error& error) {  // LogError, or of the summary dxf::WriteError
        Printer({}).error(error.what());
        return Exit::unwritable;
    }
}

}  // namespace

int runProgram(const std::vector<std::string>& arguments) {
    if (arguments.empty() && !inputIsTerminal() && inputIsEmpty())
        return static_cast<int>(farewell(nothingAsked()));
    const auto parsed = parseOptions(arguments);
    if (const Farewell* last = std::get_if<Farewell>(&parsed))
        return static_cast<int>(farewell(*last));
    return static_cast<int>(runWithLog(std::get<Options>(parsed)));
}

}  // namespace host::console
