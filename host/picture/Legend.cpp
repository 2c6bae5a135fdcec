#include "host/picture/Legend.h"

#include <algorithm>

#include "host/editor/Words.h"
#include "host/picture/FontWidths.h"
#include "host/picture/Svg.h"

namespace host::picture {
namespace {

constexpr double headSize = 4.0;  // font sizes in millimetres
constexpr double keySize = 3.2;
constexpr double noteSize = 2.6;

std::wstring counted(std::size_t count, const wchar_t* one, const wchar_t* more) {
    return std::to_wstring(count) + (count == 1 ? one : more);
}

// "3 HATCH, 1 IMAGE"
std::wstring listed(const std::map<std::wstring, std::size_t>& counts) {
    std::wstring text;
    for (const auto& [name, count] : counts)
        text += (text.empty() ? L"" : L", ") + std::to_wstring(count) + L" " + name;
    return text;
}

std::wstring headline(const Caption& caption, const Tally& tally) {
    std::wstring text = caption.drawing;
    if (caption.command.empty()) return text;
    text += L" \u2014 " + caption.command;
    const database::TurnCounts& counts = tally.counts;
    if (counts.turned == 0 && counts.left == 0) return text + L": nothing was turned";
    if (tally.hasLine) text += L" along " + tally.line;
    return text + L": " + editor::fromUtf8(counts.text());
}

std::wstring notes(const Tally& tally) {
    std::wstring text;
    const auto add = [&](const std::wstring& sentence) {
        text += (text.empty() ? L"" : L"  ") + sentence + L".";
    };
    if (!tally.reasons.empty()) add(L"Left: " + listed(tally.reasons));
    if (tally.outside != 0)
        add(counted(tally.outside, L" entity lies", L" entities lie") + L" outside of the picture");
    if (!tally.unknown.empty()) add(L"Not drawn: " + listed(tally.unknown));
    if (tally.abridged != 0)
        add(counted(tally.abridged, L" block is shown as its box", L" blocks are shown as boxes"));
    if (tally.omitted != 0)
        add(counted(tally.omitted, L" entity is", L" entities are") +
            L" left out: the picture was full");
    return text;
}

// Cut to a width in millimetres.
std::wstring cut(std::wstring text, double size, double width) {
    constexpr std::size_t longest = 1000;
    if (text.size() > longest) text.resize(longest);
    if (widthOf(text) * size <= width) return text;
    while (!text.empty() && widthOf(text + L"\u2026") * size > width) text.pop_back();
    return text + L"\u2026";
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
    writer.words("headline", headline(caption, tally), headSize);
    writer.line(6.5);
    if (tally.hasLine)
        writer.key("<path class=\"picked\" stroke-width=\"1\" d=\"M0 -1.1h9\"/>", 9.0,
                   L"the picked line");
    if (tally.counts.turned != 0) {
        writer.key(letters("before"), 6.0, L"before");
        writer.key(letters("after"), 6.5, L"after: turned along its nearest segment");
    }
    if (tally.hasMarks)
        writer.key("<path class=\"mark\" stroke-width=\".5\" d=\"M0 -2l2 2M0 0l2 -2\"/>", 2.0,
                   L"left as it was");
    writer.line(5.5);
    const std::wstring text = notes(tally);
    if (!text.empty()) writer.words("note", text, noteSize);
    return writer.take();
}

}  // namespace host::picture
