#include "host/console/Options.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <iterator>
#include <stdexcept>
#include <string_view>
#include <utility>

#include <CLI/CLI.hpp>

#include "host/console/Bulk.h"
#include "host/console/Files.h"
#include "host/picture/PictureFile.h"

namespace host::console {

namespace {

constexpr const char* version = "orlinth 0.1.0";

constexpr const char* helpText =
    R"(orlinth turns the texts and symbols of a drawing along a line, without a seat of the CAD program.

  orlinth [DRAWING] [options]       a session with the drawing open; a Command: prompt in a terminal
  orlinth DRAWING... -s FILE        a script over several drawings
  orlinth align DRAWING... --line LINE [--select FILTER]... [--flip] [options]
                                    one command, start to end; `orlinth align --help` tells more

Options:
  -i, --input DRAWING     the same as DRAWING (/i is accepted too)
  -s, --script FILE       take the answers from a script; the session ends with it (/s)
  -o, --output FILE       save there when the session ended well; nothing is written without -o, QSAVE
                          or SAVEAS; FOLDER/ keeps the drawing's name, and {} stands for it in a name
      --report FILE       what was turned and what was left, and why: JSON for machines in a file .json,
                          text otherwise, - for standard output
      --picture FILE      picture of the change, .svg .png or .pdf: the picked line, what was turned
                          before (pale) and after, what was left marked
      --dry-run           everything but writing the drawing
      --verify            after saving, compare the two files group by group and list each difference
      --readonly          refuse to save (/readonly)
      --log FILE          everything printed, UTF-8
      --module FILE       module to load (default: ZEPTOrlinth.arx beside the program)
  -h, --help              this text
      --version           the version

Commands in a session: ZEPTAlignEntities, OPEN, SAVE, SAVEAS, QSAVE, QUIT, U, UNDO, REDO, SCRIPT, LIST, LAYER,
ZOOM, SETVAR, REGEN, HELP. In a terminal Tab completes, Escape or Ctrl-C cancels the running command.
An entity is picked by a point (25496080,6672015) or by its handle: (handent "2F").

Examples:
  orlinth align streets.dxf --line handle=2F -o turned.dxf
      turns every text and symbol along the entity whose handle is 2F
  orlinth -i streets.dxf -s run.scr -o turned.dxf --verify
      takes the answers from a script, then proves that nothing else in the file has changed;
      run.scr, one answer a line, the empty line ends the selection, k turns the symbols round:
          ZEPTAlignEntities
          (handent "2F")
          ALL

          k
  orlinth streets.dxf
      a session; QSAVE saves, QUIT leaves

Exit codes:
  0  done
  1  a command was cancelled, or there was nothing to do: no line at the pick, nothing selected
  2  usage: unknown option, missing value
  3  the drawing, script or module can't be read
  4  the result can't be written; the target and the source are as they were
  5  the script ended inside a prompt, or named a command that does not exist
  6  --verify found a difference that the command did not make
)";

constexpr const char* alignHelpText =
    R"(orlinth align turns the texts and symbols of a drawing along one of its lines.

  orlinth align DRAWING... --line LINE [--select FILTER]... [--flip] [options]

  --line handle=2F        the entity with this handle gives the direction
  --line x,y              the entity at this point does
  --select FILTER         which entities are turned; several --select narrow the selection:
      all                       all that is not on a frozen or locked layer (the default)
      layer=PATTERN             on a layer that matches: * any text, ? one character, A,B either
      type=TEXT,INSERT          of one of these classes, as the drawing names them
      handle=A,B                with one of these handles
      window=x1,y1,x2,y2        wholly inside the rectangle
      crossing=x1,y1,x2,y2      inside the rectangle or crossing it
  --flip                  turn the symbols half a revolution; texts always stay readable

Options: -i, -o, --report, --picture, --dry-run, --verify, --readonly, --log, --module as `orlinth --help` tells.

Examples:
  orlinth align streets.dxf --line handle=2F -o turned.dxf
  orlinth align streets.dxf --line handle=2F --select all --flip -o turned.dxf
  orlinth align streets.dxf --line 25496080,6672015 --select "layer=OSOITE*" --select type=TEXT -o turned.dxf
  orlinth align streets.dxf --line handle=2F --flip --dry-run --report -
      tells what would be turned, and by how much
  orlinth align north.dxf south.dxf --line handle=2F -o turned/ --report "turned/{}.json"
      several drawings, each by itself, and a table of all; {} stands for the name of each
  orlinth align streets.dxf --line handle=2F --flip --dry-run --picture change.svg
)";

bool startsWith(std::string_view text, std::string_view start) {
    return text.substr(0, start.size()) == start;
}

bool equalsIgnoringCase(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](unsigned char x, unsigned char y) {
        return std::tolower(x) == std::tolower(y);
    });
}

std::vector<std::string> split(std::string_view text, char separator) {
    std::vector<std::string> parts;
    std::size_t begin = 0;
    for (;;) {
        const std::size_t end = text.find(separator, begin);
        parts.emplace_back(text.substr(begin, end - begin));
        if (end == std::string_view::npos) return parts;
        begin = end + 1;
    }
}

// The whole of `text` as a finite number, or nothing. Never asks the locale.
std::optional<double> number(std::string_view text) {
    if (!text.empty() && text.front() == '+') text.remove_prefix(1);
    double value = 0;
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value);
    if (result.ec != std::errc() || result.ptr != end || !std::isfinite(value)) return std::nullopt;
    return value;
}

template <std::size_t count>
std::optional<std::array<double, count>> numbers(std::string_view text) {
    const std::vector<std::string> parts = split(text, ',');
    std::array<double, count> values{};
    if (parts.size() != count) return std::nullopt;
    for (std::size_t i = 0; i < count; ++i) {
        const std::optional<double> value = number(parts[i]);
        if (!value) return std::nullopt;
        values[i] = *value;
    }
    return values;
}

// A handle is up to 16 hexadecimal digits and not zero.
bool isHandle(std::string_view text) {
    return !text.empty() && text.size() <= 16 &&
           std::all_of(text.begin(), text.end(),
                       [](unsigned char c) { return std::isxdigit(c) != 0; }) &&
           text.find_first_not_of('0') != std::string_view::npos;
}

// Inside double quotes of an answer a quote would end the text.
bool canBeQuoted(std::string_view text) {
    return !text.empty() && text.find('"') == std::string_view::npos;
}

void readLine(const std::string& text, AlignRequest& request) {
    constexpr std::string_view byHandle = "handle=";
    if (startsWith(text, byHandle)) {
        request.lineHandle = text.substr(byHandle.size());
        if (isHandle(request.lineHandle)) return;
    } else if (numbers<2>(text)) {
        request.linePoint = text;
        return;
    }
    throw std::invalid_argument("--line takes handle=2F (hexadecimal digits) or a point x,y; '" +
                                text + "' is neither");
}

// The switches of the well-known console, spelled as this program spells them.
std::vector<std::string> withFamiliarSwitches(std::vector<std::string> arguments) {
    constexpr std::pair<const char*, const char*> familiar[] = {
        {"/i", "-i"}, {"/s", "-s"}, {"/readonly", "--readonly"}};
    for (std::string& argument : arguments)
        for (const auto& [slash, dash] : familiar)
            if (equalsIgnoringCase(argument, slash)) argument = dash;
    return arguments;
}

// The texts that the option parser fills before they are looked at more closely.
struct Raw {
    std::vector<std::string> positional;
    std::string input, script, output, report, picture, log, module, line;
    std::vector<std::string> filters;
    bool help = false;
    bool version = false;
};

void addCommonOptions(CLI::App& app, Raw& raw, Options& options) {
    app.allow_extras();
    app.set_help_flag();
    app.add_flag("-h,--help", raw.help);
    app.add_flag("--version", raw.version);
    app.add_option("DRAWING", raw.positional);
    app.add_option("-i,--input", raw.input);
    app.add_option("-o,--output", raw.output);
    app.add_option("--report", raw.report);
    app.add_option("--picture", raw.picture);
    app.add_option("--log", raw.log);
    app.add_option("--module", raw.module);
    app.add_flag("--verify", options.verify);
    app.add_flag("--dry-run", options.dryRun);
    app.add_flag("--readonly", options.readOnly);
}

// An empty value is as good as none: a shell variable that was not set. An option in the place of a
// file means that the file was forgotten. The parser takes -o=FILE for a file named "=FILE".
void refuseMissingValues(const CLI::App& app) {
    for (const CLI::Option* option : app.get_options()) {
        if (option->get_type_size() == 0) continue;
        const std::string name = option->get_name();
        const bool isFile = name != "--line" && name != "--select";
        for (const std::string& value : option->results()) {
            std::string refusal = name;
            if (value.empty()) {
                throw std::invalid_argument(
                    refusal.append(" needs a value; it was given an empty one"));
            }
            if (!isFile || (value.front() != '-' && value.front() != '=')) continue;
            if (name == "--report" && value == "-") continue;
            if (value.front() == '-')
                refusal.append(" needs a value; '").append(value).append("' is an option");
            else
                refusal.append(" and its value have a blank between them, no '='");
            throw std::invalid_argument(
                refusal.append(" (write ./").append(value).append(" for a file of that name)"));
        }
    }
}

void refuseStranger(const std::string& stranger) {
    const std::string_view option = std::string_view(stranger).substr(0, stranger.find('='));
    if (option == "--line" || option == "--select" || option == "--flip")
        throw std::invalid_argument(std::string(option) +
                                    " belongs to 'orlinth align DRAWING', a session asks for it");
    if (stranger == "align")
        throw std::invalid_argument("align comes first: orlinth align DRAWING --line LINE");
    throw std::invalid_argument(stranger.substr(0, 1) == "-"
                                    ? "there is no option " + stranger
                                    : "'" + stranger + "' is one name too many");
}

void readDrawings(const Raw& raw, bool align, Options& options) {
    const std::vector<std::string>& names = raw.positional;
    if (!names.empty() && !raw.input.empty())
        throw std::invalid_argument("the drawing was named twice: '" + names.front() + "' and '" +
                                    raw.input + "'");
    if (names.size() < 2) {
        options.drawing = pathFromUtf8(names.empty() ? raw.input : names.front());
        return;
    }
    if (!align && raw.script.empty())
        throw std::invalid_argument("'" + names[1] +
                                    "' is one name too many: several drawings take -s SCRIPT, or "
                                    "align");
    for (const std::string& name : names) options.drawings.push_back(pathFromUtf8(name));
}

// Only a drawing may be overwritten by its own result.
void refuseOverwriting(const Options& options) {
    const std::filesystem::path report = options.report == "-" ? "" : options.report;
    const std::pair<const char*, const std::filesystem::path*> written[] = {
        {"--output", &options.output},
        {"--report", &report},
        {"--picture", &options.picture},
        {"--log", &options.log}};
    const std::pair<const char*, const std::filesystem::path*> read[] = {
        {"the script", &options.script},
        {"the module", &options.module},
        {"the drawing", &options.drawing}};
    for (const auto& [option, target] : written)
        for (const auto& [name, source] : read)
            if (isSameFile(*target, *source) &&
                !(target == &options.output && source == &options.drawing))
                throw std::invalid_argument(std::string(option) + " would overwrite " + name +
                                            " '" + utf8(*source) + "'");
    for (std::size_t i = 0; i < std::size(written); ++i)
        for (std::size_t j = i + 1; j < std::size(written); ++j)
            if (isSameFile(*written[i].second, *written[j].second))
                throw std::invalid_argument(std::string(written[i].first) + " and " +
                                            written[j].first + " name the same file '" +
                                            utf8(*written[j].second) + "'");
}

void refuseOtherFormats(const std::filesystem::path& file) {
    if (!file.empty() && !picture::formatOf(file))
        throw std::invalid_argument(
            "--picture writes files whose names end with .svg, .png or .pdf; '" + utf8(file) +
            "' does not");
}

void readAlign(const Raw& raw, Options& options) {
    AlignRequest& request = *options.align;
    if (options.drawing.empty() && options.drawings.empty())
        throw std::invalid_argument("align needs a drawing");
    if (raw.line.empty()) throw std::invalid_argument("align needs --line handle=2F or --line x,y");
    readLine(raw.line, request);
    for (const std::string& text : raw.filters) request.filters.push_back(parseFilter(text));
}

Farewell usage(const std::string& what, bool align) {
    const std::string help = align ? "orlinth align --help" : "orlinth --help";
    return {Exit::usage, {}, what + "\nTry '" + help + "'."};
}

// Throws CLI::ParseError and std::invalid_argument for what can't be used.
std::variant<Options, Farewell> parse(std::vector<std::string> arguments, bool align) {
    Raw raw;
    Options options;
    CLI::App app;
    addCommonOptions(app, raw, options);
    if (align) {
        options.align.emplace();
        app.add_option("--line", raw.line);
        app.add_option("--select", raw.filters)
            ->expected(1)
            ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
        app.add_flag("--flip", options.align->flip);
    } else {
        app.add_option("-s,--script", raw.script);
    }
    std::reverse(arguments.begin(), arguments.end());  // the order in which the parser takes them
    app.parse(std::move(arguments));
    // "--" says that only names follow; the parser leaves the mark itself over.
    if (!align)
        for (const std::string& name : raw.positional)
            if (name == "align") refuseStranger(name);
    for (const std::string& stranger : app.remaining())
        if (stranger != "--") refuseStranger(stranger);
    if (raw.help) return Farewell{Exit::done, align ? alignHelpText : helpText, {}};
    if (raw.version) return Farewell{Exit::done, programVersion() + "\n", {}};
    refuseMissingValues(app);
    readDrawings(raw, align, options);
    options.script = pathFromUtf8(raw.script);
    options.output = pathFromUtf8(raw.output);
    options.report = pathFromUtf8(raw.report);
    options.picture = pathFromUtf8(raw.picture);
    options.log = pathFromUtf8(raw.log);
    options.module = pathFromUtf8(raw.module);
    if (align) readAlign(raw, options);
    refuseOtherFormats(options.picture);
    for (const Options& task : tasksOf(options)) refuseOverwriting(task);
    return options;
}

}  // namespace

std::variant<Options, Farewell> parseOptions(const std::vector<std::string>& given) {
    std::vector<std::string> arguments = withFamiliarSwitches(given);
    const bool align = !arguments.empty() && arguments.front() == "align";
    if (align) arguments.erase(arguments.begin());
    try {
        return parse(std::move(arguments), align);
    } catch (const CLI::ArgumentMismatch& error) {
        const std::string_view what = error.what();
        return usage(std::string(what.substr(0, what.find(':'))) + " takes one value, once", align);
    } catch (const CLI::ParseError& error) {
        return usage(error.what(), align);
    } catch (const std::invalid_argument& error) {
        return usage(error.what(), align);
    }
}

std::string programVersion() {
    return version;
}

Filter parseFilter(const std::string& text) {
    const std::size_t equals = text.find('=');
    const std::string name = text.substr(0, equals);
    const std::string value = equals == std::string::npos ? std::string() : text.substr(equals + 1);
    const auto refuse = [&](const std::string& why) {
        throw std::invalid_argument("--select " + text + ": " + why);
    };
    Filter filter;
    filter.text = text;
    if (text == "all") return filter;
    if (name == "layer" || name == "type") {
        if (!canBeQuoted(value)) refuse("a " + name + " needs a name after '=', without quotes");
        filter.kind = name == "layer" ? Filter::Kind::layer : Filter::Kind::type;
        filter.pattern = value;
    } else if (name == "handle") {
        filter.kind = Filter::Kind::handle;
        filter.handles = split(value, ',');
        if (!std::all_of(filter.handles.begin(), filter.handles.end(), isHandle))
            refuse("handles are hexadecimal digits with commas between them, as in handle=2F,3A");
    } else if (name == "window" || name == "crossing") {
        filter.kind = name == "window" ? Filter::Kind::window : Filter::Kind::crossing;
        const auto corners = numbers<4>(value);
        if (!corners) refuse("four numbers x1,y1,x2,y2 are needed after '='");
        filter.corners = *corners;
    } else {
        refuse("a filter is all, layer=, type=, handle=, window= or crossing=");
    }
    return filter;
}

std::filesystem::path pathFromUtf8(const std::string& text) {
    return std::filesystem::u8path(text);
}

std::string utf8(const std::filesystem::path& path) {
    return path.u8string();
}

}  // namespace host::console
