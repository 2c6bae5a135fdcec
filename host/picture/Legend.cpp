#include "host/picture/Legend.h"

#include <algorithm>
#include <cmath>
#include <sstream>
#include <vector>

#include "host/editor/Words.h"
#include "host/picture/FontWidths.h"
#include "host/picture/Svg.h"

namespace host::picture {
namespace {

constexpr double headSize = 4.0;  // font sizes in millimetres
constexpr double keySize = 3.2;
constexpr double noteSize = 2.6;

// Bold letters are wider than those whose widths are known, by less than this.
constexpr double widthOfBold = 1.18;
constexpr std::size_t mostNoteLines = 3;

std::wstring wide(const std::string& ascii) {
    return {ascii.begin(), ascii.end()};
}

std::wstring counted(std::size_t count, const wchar_t* one, const wchar_t* more) {
    return std::to_wstring(count) + (count == 1 ? one : more);
}

// With two digits that count: "0.047".
std::string roughText(double value) {
    const double unit = std::pow(10.0, std::floor(std::log10(value)) - 1.0);
    return shortText(std::round(value / unit) * unit);
}

// "3 HATCH, 1 IMAGE"
std::wstring listed(const std::map<std::wstring, std::size_t>& counts) {
    std::wstring text;
    for (const auto& [name, count] : counts)
        text += (text.empty() ? L"" : L", ") + std::to_wstring(count) + L" " + name;
    return text;
}

// Behind the drawing's name.
std::wstring resultOf(const Caption& caption, const Tally& tally) {
    if (caption.command.empty()) return {};
    std::wstring text = L" \u2014 " + caption.command;
    const database::TurnCounts& counts = tally.counts;
    if (counts.turned == 0 && counts.left == 0) return text + L": nothing was turned";
    if (tally.lines == 1) text += L" along " + tally.line;
    if (tally.lines > 1) text += L" along " + std::to_wstring(tally.lines) + L" lines";
    return text + L": " + editor::fromUtf8(counts.text());
}

// The gravest first.
std::vector<std::wstring> notes(const Tally& tally) {
    std::vector<std::wstring> all;
    const auto add = [&](std::size_t count, const wchar_t* one, const wchar_t* more) {
        if (count != 0) all.push_back(counted(count, one, more) + L".");
    };
    add(tally.elsewhere, L" changed or picked entity is not in model space, and not shown",
        L" changed or picked entities are not in model space, and not shown");
    add(tally.turnedOutside, L" turned entity lies outside of the picture",
        L" turned entities lie outside of the picture");
    add(tally.groundsOnly, L" turned entity is shown by its ground alone",
        L" turned entities are shown by their grounds alone");
    if (tally.labelHeight > 0.0)
        all.push_back(L"Labels are " + wide(roughText(tally.labelHeight)) +
                      L" mm high at this scale: zoom in, the SVG holds them.");
    add(tally.ringed, L" turned entity is smaller than 0.5 mm here, in a ring",
        L" turned entities are smaller than 0.5 mm here, each in a ring");
    if (tally.nearlySo != 0)
        all.push_back(L"Outlined: " + std::to_wstring(tally.outlined - tally.nearlySo) +
                      L" stood so already, " + std::to_wstring(tally.nearlySo) +
                      L" turned by less than can be seen.");
    add(tally.turnedOmitted, L" turned entity is left out: the picture was full",
        L" turned entities are left out: the picture was full");
    add(tally.unmarked, L" entity that was left has no cross",
        L" entities that were left have no crosses");
    add(tally.omitted, L" entity is left out: the picture was full",
        L" entities are left out: the picture was full");
    if (tally.detail > 0.0)
        all.push_back(L"Details below " + wide(shortText(tally.detail)) + L" mm are left out.");
    add(tally.abridged, L" block is shown as its box", L" blocks are shown as boxes");
    add(tally.outside, L" entity lies outside of the picture",
        L" entities lie outside of the picture");
    add(tally.cropped, L" entity reaches out of it", L" entities reach out of it");
    add(tally.empty, L" block reference has nothing to show",
        L" block references have nothing to show");
    if (!tally.unknown.empty()) all.push_back(L"Not drawn: " + listed(tally.unknown) + L".");
    if (!tally.reasons.empty()) all.push_back(L"Left: " + listed(tally.reasons) + L".");
    return all;
}

// Cut to a width in millimetres.
std::wstring cut(std::wstring text, double size, double width) {
    constexpr std::size_t longest = 1000;
    if (text.size() > longest) text.resize(longest);
    if (widthOf(text) * size <= width) return text;
    while (!text.empty() && widthOf(text + L"\u2026") * size > width) text.pop_back();
    return text + L"\u2026";
}

// Cut in its middle.
std::wstring shortened(const std::wstring& text, double size, double width) {
    if (widthOf(text) * size <= width) return text;
    std::size_t kept = std::min<std::size_t>(text.size() / 2, 500);
    const auto some = [&] {
        return text.substr(0, kept) + L"\u2026" + text.substr(text.size() - kept);
    };
    while (kept > 0 && widthOf(some()) * size > width) --kept;
    return some();
}

// Sentences in lines of a width, broken at blanks; the last line is cut.
std::vector<std::wstring> linesOf(const std::vector<std::wstring>& sentences, double size,
                                  double width, std::size_t most) {
    std::vector<std::wstring> lines(1);
    for (const std::wstring& sentence : sentences) {
        std::wistringstream words((lines.back().empty() ? L"" : L" ") + sentence);
        std::wstring word;
        while (words >> word) {
            std::wstring& line = lines.back();
            std::wstring longer = line;
            if (!line.empty()) longer += L' ';
            longer += word;
            if (line.empty() || lines.size() == most || widthOf(longer) * size <= width)
                line = longer;
            else
                lines.push_back(word);
        }
    }
    lines.back() = cut(lines.back(), size, width);
    return lines;
}

class Writer {
  public:
    explicit Writer(const Sheet& sheet)
        : left_(sheet.frame().min.x), right_(sheet.frame().max.x), x_(left_) {
        y_ = sheet.frame().max.y;
    }

    void line(double step) {
        y_ += step;
        x_ = left_;
    }

    void words(const char* kind, const std::wstring& text, double size) {
        const std::wstring shown = cut(text, size, right_ - x_);
        out_ += "<text";
        addAttribute(out_, "class", kind);
        addAttribute(out_, "x", fixedText(x_, 2));
        addAttribute(out_, "y", fixedText(y_, 2));
        addAttribute(out_, "font-size", shortText(size));
        out_ += ">" + escaped(shown) + "</text>\n";
        x_ += widthOf(shown) * size;
    }

    double width() const { return right_ - left_; }

    // A sample with words behind it.
    void key(const std::string& sample, double width, const std::wstring& text) {
        out_ += "<g transform=\"translate(" + fixedText(x_, 2) + " " + fixedText(y_, 2) + ")\">" +
                sample + "</g>\n";
        x_ += width + 1.5;
        words("key", text, keySize);
        x_ += 6.0;
    }

    std::string take() { return "<g class=\"legend\">\n" + out_ + "</g>\n"; }

  private:
    std::string out_;
    const double left_, right_;
    double x_, y_ = 0.0;
};

std::string letters(const char* group) {
    const std::string turned = std::string(group) == "after" ? " transform=\"rotate(-12)\"" : "";
    const std::string ground =
        turned.empty() ? "" : "<path class=\"ground\" d=\"M-.4 .5v-3.4h6.2v3.4z\"/>";
    return "<g class=\"" + std::string(group) + "\"" + turned + ">" + ground +
           "<text font-size=\"3.2\">Aa7</text></g>";
}

}  // namespace

std::string legend(const Sheet& sheet, const Caption& caption, const Tally& tally) {
    Writer writer(sheet);
    writer.line(6.5);
    const std::wstring result = resultOf(caption, tally);
    const double size = headSize * widthOfBold;
    const double room = std::max(writer.width() - widthOf(result) * size, writer.width() / 5.0);
    writer.words("headline",
                 cut(shortened(caption.drawing, size, room) + result, size, writer.width()),
                 headSize);
    writer.line(6.5);
    if (tally.lines != 0)
        writer.key(
            "<path class=\"picked\" stroke-width=\"1\" d=\"M0 -1.1h7\"/>"
            "<path class=\"arrow\" d=\"M9 -1.1l-3.6 -1.5v3z\"/>",
            9.0, tally.lines == 1 ? L"the picked line" : L"the picked lines");
    if (tally.counts.turned != 0) {
        writer.key(letters("before"), 6.0, L"before");
        writer.key(letters("after"), 6.5, L"after: along its nearest segment");
    }
    if (tally.outlined != 0)
        writer.key("<path class=\"ground unchanged\" stroke-width=\".2\" d=\"M0 .5v-3.4h4v3.4z\"/>",
                   4.0, tally.nearlySo == 0 ? L"stood so already" : L"looks as before");
    if (tally.hasMarks)
        writer.key("<path class=\"mark\" stroke-width=\".5\" d=\"M0 -2l2 2M0 0l2 -2\"/>", 2.0,
                   L"left as it was");
    double step = 5.5;
    for (const std::wstring& line :
         linesOf(notes(tally), noteSize, writer.width(), mostNoteLines)) {
        writer.line(step);
        if (!line.empty()) writer.words("note", line, noteSize);
        step = 3.6;
    }
    return writer.take();
}

}  // namespace host::picture
