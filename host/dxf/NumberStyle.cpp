#include "host/dxf/NumberStyle.h"

#include <array>
#include <charconv>
#include <map>
#include <string_view>

namespace host::dxf {
namespace {

constexpr std::size_t kSamples = 10000;

// Counts the spellings of numbers.
class StyleMeter {
  public:
    // Takes the numbers of `record`; `false` when enough have been seen.
    bool take(const GroupRange& record) {
        for (const Group& group : record) {
            switch (group.type()) {
                case ValueType::real:
                    takeReal(trimmed(group.bytes()));
                    break;
                case ValueType::int16:
                    takeInteger(group.bytes(), int16Widths_);
                    break;
                case ValueType::int32:
                    takeInteger(group.bytes(), int32Widths_);
                    break;
                default:
                    break;
            }
        }
        return reals_ < kSamples;
    }

    bool any() const { return reals_ > 0; }

    NumberStyle style() const {
        NumberStyle style;
        std::size_t filled = 0;
        std::size_t most = 0;
        for (const auto& [decimals, count] : filled_) {
            filled += count;
            if (count > most) {
                most = count;
                style.decimals = decimals;
            }
        }
        if (filled <= pointZeros_ + bares_) style.decimals = 0;
        style.whole =
            bares_ > pointZeros_ ? NumberStyle::Whole::bare : NumberStyle::Whole::pointZero;
        style.int16Width = commonest(int16Widths_);
        style.int32Width = commonest(int32Widths_);
        return style;
    }

  private:
    using Counts = std::map<std::size_t, std::size_t>;

    void takeReal(std::string_view value) {
        if (value.empty() || value.find_first_not_of("+-.0123456789") != std::string_view::npos) {
            return;
        }
        ++reals_;
        const std::size_t point = value.find('.');
        if (point == std::string_view::npos) {
            ++bares_;
            return;
        }
        const std::size_t decimals = value.size() - point - 1;
        if (decimals == 1 && value.back() == '0') {
            ++pointZeros_;
        } else if (decimals > 1 && value.back() == '0') {
            ++filled_[decimals];
        }
    }

    static void takeInteger(std::string_view value, Counts& widths) {
        if (value.empty()) return;
        ++widths[value.front() == ' ' ? value.size() : 0];
    }

    static std::size_t commonest(const Counts& widths) {
        std::size_t width = 0;
        std::size_t most = 0;
        for (const auto& [candidate, count] : widths) {
            if (count > most) {
                most = count;
                width = candidate;
            }
        }
        return width;
    }

    std::size_t reals_ = 0;
    std::size_t bares_ = 0;
    std::size_t pointZeros_ = 0;
    Counts filled_;
    Counts int16Widths_;
    Counts int32Widths_;
};

bool holdsGeometry(Section section) {
    return section == Section::entities || section == Section::blocks;
}

}  // namespace

NumberStyle measureStyle(const Document& document) {
    StyleMeter geometry;
    for (RecordIndex record = 0; record < document.size(); ++record) {
        if (holdsGeometry(document.section(record)) && !geometry.take(document.groups(record))) {
            break;
        }
    }
    if (geometry.any()) return geometry.style();
    StyleMeter all;
    for (RecordIndex record = 0; record < document.size(); ++record) {
        if (!all.take(document.groups(record))) break;
    }
    return all.style();
}

std::string formatReal(double value, const NumberStyle& style) {
    // The longest plain spelling is that of the smallest double: 0. and some 1080 decimals.
    std::array<char, 1200> buffer;
    const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                            std::chars_format::fixed);
    static_cast<void>(error);
    std::string text(buffer.data(), end);
    const std::size_t point = text.find('.');
    const bool whole = point == std::string::npos;
    const std::size_t decimals = whole ? 0 : text.size() - point - 1;
    if (style.decimals > 0) {
        if (whole) text += '.';
        if (decimals < style.decimals) text.append(style.decimals - decimals, '0');
    } else if (whole && style.whole == NumberStyle::Whole::pointZero) {
        text += ".0";
    }
    return text;
}

}  // namespace host::dxf
