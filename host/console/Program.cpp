#include "host/console/Program.h"

#include <exception>
#include <filesystem>
#include <memory>
#include <string>
#include <variant>

#include "host/console/Account.h"
#include "host/console/AlignAnswers.h"
#include "host/console/Bulk.h"
#include "host/console/ExceptionText.h"
#include "host/console/Files.h"
#include "host/console/HostCommands.h"
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

std::unique_ptr<editor::Input> makeInput(const Options& options, SessionOutput& output) {
    if (options.align) return std::make_unique<AlignAnswers>(*options.align);
    if (options.script.empty()) return std::make_unique<StandardInput>(output);
    return std::make_unique<editor::ScriptInput>(readScript(options.script),
                                                 editor::fromUtf8(utf8(options.script)));
}

// One call of the program, from opening what was named to the last word.
class Call {
  public:
    Call(const Options& options, Printer& printer)
        : options_(options),
          printer_(printer),
          saver_(options, printer, account_),
          verdict_(options, isPerson(options)),
          workplace_{options, printer, saver_, verdict_, account_, {}, false, isPerson(options)} {}

    TaskResult run() {
        SessionOutput output(printer_);
        const std::unique_ptr<editor::Input> input = makeInput(options_, output);
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
        result_.stopsAll = saver_.wasInterrupted();
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

    void finish(Session& session) {
        exit_ = verdict_.exit();
        if (!options_.report.empty())
            saveAndReport(session);
        else
            save(session);
        if (exit_ == Exit::done && !saver_.proved()) exit_ = Exit::unproved;
        if (!options_.picture.empty()) drawPicture(session);
        if (options_.verify && !saver_.hasSaved())
            printer_.print("Nothing was saved, so there is nothing to verify.\n");
        if (session.drawing() == nullptr) return;
        const Record record = account_.record(*session.drawing());
        const database::TurnCounts counts = record.outcome().counts();
        result_.turned = counts.turned;
        result_.left = counts.left;
        result_.savedAs = utf8(saver_.target());
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
    void saveAndReport(Session& session) {
        if (session.drawing() == nullptr) {
            save(session);
            return refuse(Exit::cancelled, "there is no report: no drawing is open");
        }
        const Record record = account_.record(*session.drawing());
        ReportFile report(options_.report, printer_);
        const bool saves = !options_.output.empty() && verdict_.endedWell();
        try {
            report.prepare(record,
                           {utf8(saves ? options_.output : saver_.target()), options_.dryRun});
        } catch (const dxf::WriteError& error) {
            refuse(Exit::unwritable, error.what());
            if (saves)
                printer_.error(utf8(options_.output) +
                               " was not written, because the report can't be");
            return;
        }
        save(session);
        try {
            report.publish(record, {utf8(saver_.target()), options_.dryRun});
        } catch (const dxf::WriteError& error) {
            refuse(Exit::unwritable, error.what());
        }
    }

    // Of several failures the first decides.
    void refuse(Exit exit, const std::string& sentence) {
        printer_.error(sentence);
        if (exit_ == Exit::done) exit_ = exit;
    }

    void writeOutput(Session& session) {
        if (!verdict_.endedWell()) {
            printer_.error(utf8(options_.output) +
                           " was not written, because the session did not end well");
        } else if (session.drawing() == nullptr) {
            printer_.error(utf8(options_.output) + " was not written: no drawing is open");
            exit_ = Exit::cancelled;
        } else {
            try {
                saver_.save(*session.drawing(), options_.output);
            } catch (const NotSaved& error) {
                printer_.error(error.what());
                exit_ = Exit::unwritable;
            }
        }
    }

    void drawPicture(const Session& session) {
        const std::string name = utf8(options_.picture);
        if (!verdict_.endedWell())
            return printer_.error(name + " was not written, because the session did not end well");
        if (session.drawing() == nullptr)
            return refuse(Exit::cancelled, name + " was not written: no drawing is open");
        try {
            writePicture(*session.drawing(), workplace_.drawing.filename(),
                         account_.record(*session.drawing()), options_, printer_);
        } catch (const NotPictured& error) {
            refuse(error.code(), error.what());
        }
    }

    const Options& options_;
    Printer& printer_;
    Account account_;
    Saver saver_;
    Verdict verdict_;
    Workplace workplace_;
    Exit exit_ = Exit::done;
    TaskResult result_;
};

TaskResult perform(const Options& options, Printer& printer) {
    const auto unreadable = [&](const std::exception& error, bool inAll) {
        printer.error(error.what());
        TaskResult result;
        result.exit = Exit::unreadable;
        result.stopsAll = inAll;
        return result;
    };
    try {
        demandPicture(options);
        makeFolder(options);
        return Call(options, printer).run();
    } catch (const NotPictured& error) {
        printer.error(error.what());
        TaskResult result;
        result.exit = error.code();
        result.stopsAll = true;
        return result;
    } catch (const UnreadableFile& error) {  // the script
        return unreadable(error, true);
    } catch (const editor::ModuleError& error) {
        return unreadable(error, true);
    } catch (const dxf::ReadError& error) {
        return unreadable(error, false);
    } catch (...) {
        printer.error("internal: " + describeException());
        TaskResult result;
        result.exit = Exit::cancelled;
        return result;
    }
}

Exit perform(const std::vector<Options>& tasks, Printer& printer) {
    if (tasks.size() == 1) return perform(tasks.front(), printer).exit;
    return runInTurn(tasks, printer, [&](const Options& task) { return perform(task, printer); });
}

Exit farewell(const Farewell& farewell) {
    Printer printer({});
    printer.print(farewell.output);
    if (!farewell.error.empty()) printer.error(farewell.error);
    return farewell.code;
}

Exit runWithLog(const Options& options) {
    try {
        Printer printer(options.log);
        const Exit exit = perform(tasksOf(options), printer);
        if (!printer.logComplete())
            printer.error("the log '" + utf8(options.log) + "' could not be written to its end");
        return exit;
    } catch (const LogError& error) {
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
