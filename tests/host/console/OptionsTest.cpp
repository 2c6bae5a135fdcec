#include "host/console/Options.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

#include "tests/host/console/Transcript.h"

namespace {

using namespace host::console;

Options accepted(const std::vector<std::string>& arguments) {
    auto result = parseOptions(arguments);
    if (const Farewell* farewell = std::get_if<Farewell>(&result))
        throw std::runtime_error("refused: " + farewell->error);
    return std::get<Options>(result);
}

// What standard error says; empty when the arguments were accepted.
std::string refusal(const std::vector<std::string>& arguments) {
    const auto result = parseOptions(arguments);
    const Farewell* const farewell = std::get_if<Farewell>(&result);
    if (farewell == nullptr) return {};
    EXPECT_EQ(farewell->code, Exit::usage);
    EXPECT_EQ(farewell->output, "");
    return farewell->error;
}

bool contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

TEST(Options, NothingGivenIsASessionWithoutADrawing) {
    const Options options = accepted({});
    EXPECT_TRUE(options.drawing.empty() && options.script.empty() && options.output.empty() &&
                options.log.empty() && options.module.empty());
    EXPECT_FALSE(options.verify || options.dryRun || options.readOnly || options.align.has_value());
}

TEST(Options, EveryOptionIsRead) {
    const Options options =
        accepted({"in.dxf", "-s", "run.scr", "-o", "out.dxf", "--verify", "--dry-run", "--readonly",
                  "--log", "l.txt", "--module", "m.arx"});
    EXPECT_EQ(options.drawing, "in.dxf");
    EXPECT_EQ(options.script, "run.scr");
    EXPECT_EQ(options.output, "out.dxf");
    EXPECT_EQ(options.log, "l.txt");
    EXPECT_EQ(options.module, "m.arx");
    EXPECT_TRUE(options.verify && options.dryRun && options.readOnly);
}

TEST(Options, LongAndShortAndSlashFormsMeanTheSame) {
    for (const char* input : {"-i", "--input", "/i", "/I"})
        EXPECT_EQ(accepted({input, "in.dxf"}).drawing, "in.dxf") << input;
    for (const char* script : {"-s", "--script", "/s", "/S"})
        EXPECT_EQ(accepted({script, "run.scr"}).script, "run.scr") << script;
    for (const char* readonly : {"--readonly", "/readonly", "/READONLY"})
        EXPECT_TRUE(accepted({readonly}).readOnly) << readonly;
    EXPECT_EQ(accepted({"--output=o.dxf"}).output, "o.dxf");
}

TEST(Options, PathsKeepBlanksAndFinnishLetters) {
    EXPECT_EQ(utf8(accepted({"kansio 1/Mäntyrinteentie ÅÖ.dxf"}).drawing),
              "kansio 1/Mäntyrinteentie ÅÖ.dxf");
}

TEST(Options, UnknownOptionsAreRefusedByName) {
    EXPECT_TRUE(contains(refusal({"in.dxf", "--colour"}), "--colour"));
    EXPECT_TRUE(contains(refusal({"in.dxf", "-x"}), "-x"));
    EXPECT_TRUE(contains(refusal({"in.dxf", "second.dxf"}), "second.dxf"));
}

TEST(Options, AReportGoesToAFileOrToStandardOutput) {
    EXPECT_EQ(accepted({"in.dxf", "--report", "r.json"}).report, "r.json");
    EXPECT_EQ(accepted({"in.dxf", "--report", "-"}).report, "-");
    EXPECT_EQ(accepted({"align", "in.dxf", "--line", "1,2", "--report", "-"}).report, "-");
    EXPECT_TRUE(contains(refusal({"in.dxf", "--report", "--verify"}), "--report"));
    EXPECT_TRUE(contains(refusal({"in.dxf", "--report", "in.dxf"}), "overwrite the drawing"));
    EXPECT_TRUE(contains(refusal({"in.dxf", "--report", "a.b", "-o", "a.b"}), "the same file"));
    // Standard output is no file that could be overwritten.
    EXPECT_EQ(accepted({"-o", "./-", "--report", "-"}).report, "-");
}

TEST(Options, MissingAndEmptyValuesAreRefused) {
    for (const char* option : {"-i", "-s", "-o", "--report", "--log", "--module"}) {
        EXPECT_TRUE(contains(refusal({option}), option)) << option;
        EXPECT_TRUE(contains(refusal({option, ""}), std::string(option) + " needs the name"))
            << option;
    }
    EXPECT_NE(refusal({"-o", "--verify"}), "");
    EXPECT_TRUE(contains(refusal({""}), "empty"));
}

TEST(Options, MessagesSpellOptionsAsTheyWereTyped) {
    EXPECT_TRUE(contains(refusal({"-o"}), "-o needs"));
    EXPECT_TRUE(contains(refusal({"--output"}), "--output needs"));
    EXPECT_TRUE(contains(refusal({"/I"}), "/I needs"));
    EXPECT_TRUE(contains(refusal({"-o", "/s"}), "'/s' is an option"));
    EXPECT_FALSE(contains(refusal({"-o", "/s"}), "./"));
    EXPECT_TRUE(contains(refusal({"-o", "a", "-o", "b"}), "-o was given twice: 'a' and 'b'"));
    EXPECT_TRUE(contains(refusal({"-oa", "--output=b"}), "-o and --output are one option"));
    EXPECT_TRUE(contains(refusal({"align", "--line"}), "--line needs a line"));
}

TEST(Options, AValueMayHangOnItsOption) {
    EXPECT_EQ(accepted({"-oout.dxf"}).output, "out.dxf");
    EXPECT_EQ(accepted({"--output=a=b.dxf"}).output, "a=b.dxf");
    EXPECT_TRUE(contains(refusal({"-o=out.dxf"}), "no '='"));
    EXPECT_TRUE(contains(refusal({"--verify=1"}), "takes no value"));
    EXPECT_TRUE(contains(refusal({"-hx"}), "no option -x"));
}

TEST(Options, AnEmptyValueThatHangsOnItsOptionDoesNotTakeTheNextWord) {
    EXPECT_TRUE(contains(refusal({"a.dxf", "--output=", "b.dxf"}), "--output needs the name"));
    EXPECT_TRUE(contains(refusal({"--output="}), "--output needs the name"));
    EXPECT_TRUE(accepted({"--verify=", "a.dxf"}).verify);
    EXPECT_EQ(accepted({"--", "--output="}).drawing, "--output=");
}

TEST(Options, NamesThatMeanSomethingToTheParserAreNames) {
    for (const char* name :
         {"/tmp/in.dxf", "/tmp:1", "[a,b].dxf", "[a,b]", "{}", "++", "a=b", "="}) {
        EXPECT_EQ(accepted({name}).drawing, std::filesystem::u8path(name)) << name;
        EXPECT_EQ(accepted({"--output", name}).output, std::filesystem::u8path(name)) << name;
    }
}

TEST(Options, ASlashStandsForTheDashes) {
    EXPECT_EQ(accepted({"/i:in.dxf", "/o", "out.dxf"}).drawing, "in.dxf");
    EXPECT_EQ(accepted({"/output:out.dxf"}).output, "out.dxf");
    EXPECT_TRUE(contains(refusal({"/i", "a", "-i", "b"}), "-i was given twice: 'a' and 'b'"));
}

TEST(Options, FlagsMayRepeat) {
    EXPECT_TRUE(accepted({"--verify", "--verify", "--verify=true"}).verify);
}

TEST(Options, MisspeltOptionsAreToldWithWhatWasMeant) {
    EXPECT_TRUE(contains(refusal({"--verfy"}), "did you mean --verify?"));
    EXPECT_TRUE(contains(refusal({"--dryrun"}), "did you mean --dry-run?"));
    EXPECT_TRUE(contains(refusal({"--dry"}), "did you mean --dry-run?"));
    EXPECT_FALSE(contains(refusal({"--colour"}), "did you mean"));
}

TEST(Options, AWordBeforeTheDrawingsIsNoDrawing) {
    EXPECT_TRUE(contains(refusal({"ALIGN", "in.dxf"}), "did you mean align?"));
    EXPECT_TRUE(contains(refusal({"aling", "in.dxf", "--line", "1,2"}), "did you mean align?"));
    EXPECT_TRUE(contains(refusal({"aling.dxf", "in.dxf"}), "one name too many"));
    EXPECT_EQ(accepted({"aling"}).drawing, "aling") << "a name alone may be that of a file";
}

TEST(Options, NothingAskedIsAnsweredByTheWaysToCall) {
    const Farewell farewell = nothingAsked();
    EXPECT_EQ(farewell.code, Exit::usage);
    EXPECT_EQ(farewell.output, "");
    EXPECT_TRUE(contains(farewell.error, "  orlinth align DRAWING... --line LINE"));
    EXPECT_FALSE(contains(farewell.error, "Options:"));
}

TEST(Options, ADrawingNamedTwiceIsRefused) {
    EXPECT_TRUE(contains(refusal({"a.dxf", "-i", "b.dxf"}), "twice"));
}

TEST(Options, BehindTwoDashesOnlyNamesFollow) {
    EXPECT_EQ(accepted({"-o", "b.dxf", "--", "a.dxf"}).drawing, "a.dxf");
    EXPECT_TRUE(contains(refusal({"--", "a.dxf", "--verify"}), "'--verify' is one name too many"));
    EXPECT_EQ(accepted({"--", "-dash.dxf"}).drawing, "-dash.dxf");
    EXPECT_EQ(accepted({"--", "align"}).drawing, "align");
    EXPECT_EQ(accepted({"--", "/s"}).drawing, "/s");
}

TEST(Options, ARefusalTellsWhereToReadOn) {
    EXPECT_TRUE(contains(refusal({"--colour"}), "Try 'orlinth --help'."));
    EXPECT_TRUE(contains(refusal({"align", "--colour"}), "Try 'orlinth align --help'."));
}

TEST(Options, OnlyTheDrawingMayBeOverwritten) {
    EXPECT_EQ(refusal({"in.dxf", "-o", "in.dxf"}), "");
    EXPECT_TRUE(
        contains(refusal({"in.dxf", "-s", "run.scr", "-o", "run.scr"}), "overwrite the script"));
    EXPECT_TRUE(
        contains(refusal({"in.dxf", "--module", "m.arx", "-o", "m.arx"}), "overwrite the module"));
    EXPECT_TRUE(contains(refusal({"in.dxf", "--log", "in.dxf"}), "overwrite the drawing"));
    EXPECT_TRUE(contains(refusal({"in.dxf", "--log", "./in.dxf"}), "overwrite the drawing"));
    EXPECT_TRUE(
        contains(refusal({"in.dxf", "-s", "run.scr", "--log", "run.scr"}), "overwrite the script"));
    EXPECT_TRUE(contains(refusal({"in.dxf", "-o", "o.dxf", "--log", "o.dxf"}), "the same file"));
}

TEST(Options, ALinkToTheDrawingIsTheDrawing) {
    const console_test::Folder folder;
    console_test::write(folder / "in.dxf", "x");
    std::error_code error;
    std::filesystem::create_hard_link(folder / "in.dxf", folder / "other.dxf", error);
    ASSERT_FALSE(error) << error.message();
    EXPECT_TRUE(contains(refusal({utf8(folder / "in.dxf"), "--log", utf8(folder / "other.dxf")}),
                         "overwrite the drawing"));
}

TEST(Options, HelpAndVersionEndTheProgramWell) {
    for (const std::vector<std::string>& arguments : std::vector<std::vector<std::string>>{
             {"--help"}, {"-h"}, {"--version"}, {"align", "--help"}, {"in.dxf", "--help"}}) {
        const auto result = parseOptions(arguments);
        ASSERT_TRUE(std::holds_alternative<Farewell>(result));
        EXPECT_EQ(std::get<Farewell>(result).code, Exit::done);
        EXPECT_NE(std::get<Farewell>(result).output, "");
        EXPECT_EQ(std::get<Farewell>(result).error, "");
    }
}

// Lines of the help that begin with two blanks and "orlinth" are examples, unless they stand for
// forms.
TEST(Options, EveryExampleOfTheHelpIsAccepted) {
    int examples = 0;
    for (const std::vector<std::string>& help :
         std::vector<std::vector<std::string>>{{"--help"}, {"align", "--help"}}) {
        const auto result = parseOptions(help);
        for (const std::string& line : console_test::lines(std::get<Farewell>(result).output)) {
            if (line.rfind("  orlinth ", 0) != 0 || contains(line, "[")) continue;
            std::vector<std::string> words = console_test::splitCommandLine(line);
            words.erase(words.begin());
            EXPECT_EQ(refusal(words), "") << line;
            ++examples;
        }
    }
    EXPECT_EQ(examples, 10);
}

TEST(Options, TheHelpNamesEveryOption) {
    const std::string help = std::get<Farewell>(parseOptions({"--help"})).output;
    for (const char* option :
         {"-i, --input", "-s, --script", "-o, --output", "--picture", "--dry-run", "--verify",
          "--readonly", "--log", "--module", "-h, --help", "--version", "/i", "/s", "/readonly"})
        EXPECT_TRUE(contains(help, option)) << option;
    const std::string align = std::get<Farewell>(parseOptions({"align", "--help"})).output;
    for (const char* option : {"--line handle=", "--line x,y", "--line layer=", "--select",
                               "--flip", "layer=", "type=", "handle=", "window=", "crossing="})
        EXPECT_TRUE(contains(align, option)) << option;
}

TEST(Options, PictureIsOfOneOfThreeFormats) {
    for (const char* name : {"a.svg", "a.PNG", "folder/a.b.pdf"})
        EXPECT_EQ(accepted({"in.dxf", "--picture", name}).picture, std::filesystem::path(name));
    for (const char* name : {"a.jpg", "svg", "a."})
        EXPECT_TRUE(contains(refusal({"in.dxf", "--picture", name}), ".svg, .png or .pdf")) << name;
    EXPECT_TRUE(accepted({"in.dxf"}).picture.empty());
}

TEST(AlignOptions, LineIsAHandleOrAPoint) {
    EXPECT_EQ(accepted({"align", "in.dxf", "--line", "handle=2f"}).align->lineHandle, "2f");
    const AlignRequest byPoint =
        *accepted({"align", "in.dxf", "--line", "25496062.5,-6672008"}).align;
    EXPECT_EQ(byPoint.lineHandle, "");
    EXPECT_EQ(byPoint.linePoint, "25496062.5,-6672008");
    EXPECT_EQ(accepted({"align", "in.dxf", "--line", "-5,+3e2"}).align->linePoint, "-5,+3e2");
}

TEST(AlignOptions, TheOnlyLineOfALayerMayBeMeant) {
    const AlignRequest byLayer = *accepted({"align", "in.dxf", "--line", "layer=VANHA KATU"}).align;
    EXPECT_EQ(byLayer.lineLayer, "VANHA KATU");
    EXPECT_TRUE(byLayer.lineHandle.empty() && byLayer.linePoint.empty());
    EXPECT_TRUE(contains(refusal({"align", "in.dxf", "--line", "layer="}), "none of them"));
}

TEST(AlignOptions, AnythingElseAsALineIsRefused) {
    for (const char* line : {"2F", "handle=", "handle=2G", "handle=0", "handle=12345678901234567",
                             "1,2,3", "1,", "1;2", "x,y", "nan,1", "1,inf", "1,2 "})
        EXPECT_TRUE(contains(refusal({"align", "in.dxf", "--line", line}), "--line")) << line;
}

TEST(AlignOptions, DrawingAndLineAreNeeded) {
    EXPECT_TRUE(contains(refusal({"align", "--line", "handle=2F"}), "needs a drawing"));
    EXPECT_TRUE(contains(refusal({"align", "in.dxf"}), "needs --line"));
    EXPECT_EQ(accepted({"align", "-i", "in.dxf", "--line", "handle=2F"}).drawing, "in.dxf");
}

TEST(AlignOptions, AScriptHasNoPlaceBesideAlign) {
    EXPECT_NE(refusal({"align", "in.dxf", "--line", "handle=2F", "-s", "run.scr"}), "");
}

TEST(AlignOptions, LineSelectAndFlipBelongToAlignAlone) {
    EXPECT_NE(refusal({"in.dxf", "--line", "handle=2F"}), "");
    EXPECT_NE(refusal({"in.dxf", "--select", "all"}), "");
    EXPECT_NE(refusal({"in.dxf", "--flip"}), "");
}

TEST(AlignOptions, FiltersKeepTheirOrderAndNumber) {
    const AlignRequest request =
        *accepted({"align", "in.dxf", "--line", "handle=2F", "--select", "all", "--select",
                   "layer=VANHA NIMISTÖ,X*", "--select", "window=1,2,3,4", "--flip"})
             .align;
    ASSERT_EQ(request.filters.size(), 3U);
    EXPECT_EQ(request.filters[0].kind, Filter::Kind::all);
    EXPECT_EQ(request.filters[1].kind, Filter::Kind::layer);
    EXPECT_EQ(request.filters[1].pattern, "VANHA NIMISTÖ,X*");
    EXPECT_EQ(request.filters[2].corners, (std::array<double, 4>{1, 2, 3, 4}));
    EXPECT_TRUE(request.flip);
    EXPECT_TRUE(accepted({"align", "in.dxf", "--line", "handle=2F"}).align->filters.empty());
}

TEST(AlignOptions, EveryKindOfFilterIsRead) {
    EXPECT_EQ(parseFilter("type=TEXT,INSERT").pattern, "TEXT,INSERT");
    EXPECT_EQ(parseFilter("handle=2F,3a").handles, (std::vector<std::string>{"2F", "3a"}));
    EXPECT_EQ(parseFilter("crossing=-1.5,2e3,0,+4").corners,
              (std::array<double, 4>{-1.5, 2000, 0, 4}));
    EXPECT_EQ(parseFilter("crossing=1,2,3,4").kind, Filter::Kind::crossing);
    EXPECT_EQ(parseFilter("window=1,2,3,4").kind, Filter::Kind::window);
}

TEST(AlignOptions, MalformedFiltersAreRefusedWithTheirText) {
    for (const std::string text :
         {"", "everything", "all=1", "layer", "layer=", "type=", "type=\"TEXT\"",
          "handle=", "handle=2F,", "handle=xyz", "window=1,2,3", "window=1,2,3,4,5",
          "crossing=a,b,c,d", "colour=red"}) {
        const std::string error =
            refusal({"align", "in.dxf", "--line", "handle=2F", "--select", text});
        EXPECT_TRUE(contains(error, text)) << text;
        EXPECT_NE(error, "") << text;
    }
}

}  // namespace
