#include "host/console/Options.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <iterator>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "host/console/Arguments.h"
#include "host/console/Bulk.h"
#include "host/console/Files.h"
#include "host/console/HelpTexts.h"
#include "host/editor/Nearest.h"
#include "host/editor/Words.h"
#include "host/picture/PictureFile.h"

namespace host::console {

namespace {

constexpr const char* version = "orlinth 0.1.0";

bool startsWith(std::string_view text, std::string_view start) {
    return text.substr(0, start.size()) == start;
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

// Without the blanks beside commas and at the ends: neither a layer nor a class has them there.
std::string trimmedAtCommas(std::string_view text) {
    std::string result;
    const char* separator = "";
    for (const std::string& part : split(text, ',')) {
        result += std::exchange(separator, ",");
        const std::size_t begin = part.find_first_not_of(' ');
        if (begin != std::string::npos)
            result += part.substr(begin, part.find_last_not_of(' ') - begin + 1);
    }
    return result;
}

// Inside double quotes of an answer a quote would end the text.
bool canBeQuoted(std::string_view text) {
    return !text.empty() && text.find('"') == std::string_view::npos;
}

void readLine(const std::string& text, AlignRequest& request) {
    constexpr std::string_view byHandle = "handle=";
    constexpr std::string_view byLayer = "layer=";
    if (startsWith(text, byHandle)) {
        request.lineHandle = text.substr(byHandle.size());
        if (isHandle(request.lineHandle)) return;
    } else if (startsWith(text, byLayer)) {
        request.lineLayer = text.substr(byLayer.size());
        if (!request.lineLayer.empty()) return;
    } else if (numbers<2>(text)) {
        request.linePoint = text;
        return;
    }
    throw std::invalid_argument(
        "--line takes handle=2F (hexadecimal digits), a point x,y or "
        "layer=NAME; '" +
        text + "' is none of them");
}

constexpr const char* aFile = "the name of a file";

// `align` answers what a session asks for, and takes no script.
std::vector<OptionForm> optionForms(bool align) {
    const char* const ofAlign =
        align ? "" : "belongs to 'orlinth align DRAWING'; a session asks for it";
    OptionForm line{"--line", "", "", "a line, as in handle=2F or 25496080,6672015", false};
    line.elsewhere = ofAlign;
    OptionForm select{"--select", "", "", "a filter, as in layer=KATU", false, true};
    select.elsewhere = ofAlign;
    OptionForm flip{"--flip"};
    flip.elsewhere = ofAlign;
    OptionForm script{"--script", "-s", "/s", aFile};
    if (align) script.elsewhere = "has no place beside align, which gives the answers itself";
    OptionForm report{"--report", "", "", aFile};
    report.takesDash = true;
    return {{"--help", "-h"},
            {"--version"},
            {"--input", "-i", "/i", aFile},
            script,
            {"--output", "-o", "", aFile},
            report,
            {"--picture", "", "", aFile},
            {"--summary", "", "", aFile},
            {"--log", "", "", aFile},
            {"--module", "", "", aFile},
            {"--verify"},
            {"--dry-run"},
            {"--readonly", "", "/readonly"},
            {"--quiet"},
            line,
            select,
            flip};
}

// A word before all others may be meant as the name of a command.
void refuseOtherCommands(const Arguments& given) {
    const auto firstNames =
        given.names.begin() + static_cast<std::ptrdiff_t>(given.namesBeforeDashes);
    if (std::find(given.names.begin(), firstNames, "align") != firstNames)
        throw std::invalid_argument("align comes first: orlinth align DRAWING --line LINE");
    if (given.namesBeforeDashes < 2) return;
    const std::string& first = given.names.front();
    std::error_code error;
    const std::filesystem::path file = pathFromUtf8(first);
    if (file.has_extension() || std::filesystem::exists(file, error)) return;
    throw std::invalid_argument(
        "'" + first + "' is no drawing, and orlinth has no command of that name" +
        editor::toUtf8(editor::didYouMean(editor::fromUtf8(first), {L"align"})));
}

void readDrawings(const Arguments& given, bool align, Options& options) {
    const std::vector<std::string>& names = given.names;
    const std::string input = given.value("--input");
    if (!names.empty() && !input.empty())
        throw std::invalid_argument("the drawing was named twice: '" + names.front() + "' and '" +
                                    input + "'");
    if (names.size() < 2) {
        options.drawing = pathFromUtf8(names.empty() ? input : names.front());
        return;
    }
    if (!align && !given.has("--script"))
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
        {"--summary", &options.summary},
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

void refuseOtherFormats(const Options& options) {
    const auto refuse = [](const char* option, const char* takes,
                           const std::filesystem::path& file) {
        throw std::invalid_argument(std::string(option) + " writes " + takes + "; '" + utf8(file) +
                                    "' does not");
    };
    if (!options.picture.empty() && !picture::formatOf(options.picture))
        refuse("--picture", "files whose names end with .svg, .png or .pdf", options.picture);
    const bool summarizes =
        hasEnding(options.summary, ".json") || hasEnding(options.summary, ".csv");
    if (!options.summary.empty() && !summarizes)
        refuse("--summary", "files whose names end with .json or .csv", options.summary);
    const std::pair<const char*, const std::filesystem::path*> texts[] = {
        {"--report", &options.report}, {"--log", &options.log}};
    for (const auto& [option, file] : texts)
        if (hasEnding(*file, ".dxf") || !otherFormat(*file).empty())
            throw std::invalid_argument(std::string(option) + " writes no drawing; '" +
                                        utf8(*file) + "' is the name of one");
}

void refuseQuietSession(const Options& options) {
    if (options.quiet && !options.align && options.script.empty())
        throw std::invalid_argument("--quiet goes with -s SCRIPT or align; a session asks");
}

void readAlign(const Arguments& given, Options& options) {
    AlignRequest& request = options.align.emplace();
    if (options.drawing.empty() && options.drawings.empty())
        throw std::invalid_argument("align needs a drawing");
    if (!given.has("--line"))
        throw std::invalid_argument(
            "align needs --line handle=2F, --line x,y or --line layer=NAME");
    readLine(given.value("--line"), request);
    for (const std::string& text : given.values("--select"))
        request.filters.push_back(parseFilter(text));
    request.flip = given.has("--flip");
}

// Throws std::invalid_argument for what can't be used.
std::variant<Options, Farewell> parse(const std::vector<std::string>& arguments, bool align) {
    const std::vector<OptionForm> forms = optionForms(align);
    const Arguments given = readArguments(arguments, forms);
    if (!align) refuseOtherCommands(given);
    refuseMisplaced(given, forms);
    if (given.has("--help"))
        return Farewell{Exit::done, std::string(align ? alignHelpText : helpText), {}};
    if (given.has("--version")) return Farewell{Exit::done, programVersion() + "\n", {}};
    const auto file = [&](const char* option) { return pathFromUtf8(given.value(option)); };
    Options options;
    readDrawings(given, align, options);
    options.script = file("--script");
    options.output = file("--output");
    options.report = file("--report");
    options.picture = file("--picture");
    options.summary = file("--summary");
    options.log = file("--log");
    options.module = file("--module");
    options.verify = given.has("--verify");
    options.dryRun = given.has("--dry-run");
    options.readOnly = given.has("--readonly");
    options.quiet = given.has("--quiet");
    if (align) readAlign(given, options);
    for (const Options& task : tasksOf(options)) refuseOverwriting(task);
    refuseOtherFormats(options);
    refuseQuietSession(options);
    return options;
}

Farewell usage(const std::string& what, bool align) {
    const std::string help = align ? "orlinth align --help" : "orlinth --help";
    return {Exit::usage, {}, what + "\nTry '" + help + "'."};
}

}  // namespace

std::variant<Options, Farewell> parseOptions(const std::vector<std::string>& given) {
    const bool align = !given.empty() && given.front() == "align";
    try {
        return parse({given.begin() + (align ? 1 : 0), given.end()}, align);
    } catch (const std::invalid_argument& error) {
        return usage(error.what(), align);
    }
}

Farewell nothingAsked() {
    return {Exit::usage,
            {},
            "there is nothing to do: no drawing, no script, and nothing on standard input\n" +
                std::string(callForms()) + "\nTry 'orlinth --help'."};
}

std::string programVersion() {
    return version;
}

Filter parseFilter(const std::string& text) {
    const std::size_t equals = text.find('=');
    const std::string name = text.substr(0, equals);
    const std::string value =
        equals == std::string::npos ? std::string() : trimmedAtCommas(text.substr(equals + 1));
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
