#include "host/dxf/Edit.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <optional>
#include <stdexcept>
#include <string_view>

#include "host/dxf/Files.h"
#include "host/dxf/Lines.h"
#include "host/dxf/NumberStyle.h"

namespace host::dxf {
namespace {

// Bytes of the file that others take the place of; an insertion replaces none.
struct Patch {
    std::size_t begin;
    std::size_t end;
    std::string bytes;
};

[[noreturn]] void refuse(const GroupEdit& edit, const std::string& why) {
    throw std::invalid_argument("edit of group code " + std::to_string(edit.code) + " at index " +
                                std::to_string(edit.index) + ": " + why);
}

bool isInteger(ValueType type) {
    return fixedSize(type) > 0 && type != ValueType::real;
}

void checkRange(const GroupEdit& edit, ValueType type, std::int64_t value) {
    const std::size_t bits = 8 * fixedSize(type);
    const bool fits = type == ValueType::boolean
                          ? value >= 0 && value <= 1
                          : bits == 64 || (value >= -(std::int64_t{1} << (bits - 1)) &&
                                           value < (std::int64_t{1} << (bits - 1)));
    if (!fits) refuse(edit, std::to_string(value) + " is out of its range");
}

void checkText(const GroupEdit& edit, const std::wstring& text) {
    if (text.find_first_of(std::wstring(L"\r\n\0", 3)) != std::wstring::npos) {
        refuse(edit, "a text can't hold a line end or a NUL");
    }
}

void checkHandle(const GroupEdit& edit, const std::wstring& text) {
    const bool hexadecimal =
        !text.empty() && text.size() <= 16 &&
        text.find_first_not_of(L"0123456789ABCDEFabcdef") == std::wstring::npos;
    if (!hexadecimal) refuse(edit, "a handle is 1 to 16 hexadecimal digits");
}

void checkChunk(const GroupEdit& edit, const std::wstring& text) {
    constexpr std::size_t longest = 2 * 255;
    const bool bytes = !text.empty() && text.size() <= longest && text.size() % 2 == 0 &&
                       text.find_first_not_of(L"0123456789ABCDEF") == std::wstring::npos;
    if (!bytes) refuse(edit, "a chunk is 1 to 255 bytes, in two hexadecimal digits each");
}

void checkEdit(const GroupEdit& edit) {
    const ValueType type = valueType(edit.code);
    if (type == ValueType::chunk && edit.kind == GroupEdit::Kind::replace)
        refuse(edit, "chunks can't be replaced");
    if (type == ValueType::real) {
        const auto* value = std::get_if<double>(&edit.value);
        if (value == nullptr) refuse(edit, "it takes a real");
        if (!std::isfinite(*value)) refuse(edit, "the value is not finite");
    } else if (isInteger(type)) {
        const auto* value = std::get_if<std::int64_t>(&edit.value);
        if (value == nullptr) refuse(edit, "it takes an integer");
        checkRange(edit, type, *value);
    } else {
        const auto* value = std::get_if<std::wstring>(&edit.value);
        if (value == nullptr) refuse(edit, "it takes a text");
        checkText(edit, *value);
        if (type == ValueType::handle) checkHandle(edit, *value);
        if (type == ValueType::chunk) checkChunk(edit, *value);
    }
}

template <class T>
void appendNumber(std::string& bytes, T number) {
    char raw[sizeof(T)];
    std::memcpy(raw, &number, sizeof(T));
    bytes.append(raw, sizeof(T));
}

bool identical(double a, double b) {
    return loadNumber<std::uint64_t>(reinterpret_cast<const char*>(&a)) ==
           loadNumber<std::uint64_t>(reinterpret_cast<const char*>(&b));
}

// Makes the patches of one document's changes.
class Editor {
  public:
    explicit Editor(const Document& document) : document_(document) {}

    std::vector<Patch> patches(const Changes& changes) {
        std::vector<Patch> all;
        for (const auto& [record, edits] : changes) {
            insertRecords(record, edits, all);
            const bool onlyNew =
                !edits.empty() && std::all_of(edits.begin(), edits.end(), isOfNewRecord);
            if (onlyNew && record <= document_.size()) continue;
            if (record >= document_.size()) {
                throw std::invalid_argument("edit of record " + std::to_string(record) +
                                            ", which the drawing does not have");
            }
            takeRecord(record, edits, all);
        }
        return all;
    }

  private:
    void takeRecord(RecordIndex record, const std::vector<GroupEdit>& edits,
                    std::vector<Patch>& all) {
        if (std::any_of(edits.begin(), edits.end(), removes)) {
            const auto others = std::count_if(edits.begin(), edits.end(),
                                              [](const GroupEdit& e) { return !isOfNewRecord(e); });
            if (others > 1) refuse(edits.front(), "its record is removed");
            const std::string_view raw = document_.raw(record);
            all.push_back({offset(raw.data()), offset(raw.data()) + raw.size(), {}});
            return;
        }
        const GroupRange range = document_.groups(record);
        groups_.assign(range.begin(), range.end());
        atEof_ = document_.type(record) == "EOF";
        const std::size_t first = all.size();
        std::vector<bool> replaced(groups_.size(), false);
        for (const GroupEdit& edit : edits) {
            if (isOfNewRecord(edit)) continue;
            checkEdit(edit);
            if (edit.index >= groups_.size()) refuse(edit, "the record has no such group");
            if (edit.kind == GroupEdit::Kind::insertAfter) {
                insert(edit, all);
                continue;
            }
            if (groups_[edit.index].code() != edit.code) {
                refuse(edit, "the group has code " + std::to_string(groups_[edit.index].code()));
            }
            if (replaced[edit.index]) refuse(edit, "the group is replaced twice");
            replaced[edit.index] = true;
            replace(edit, all);
        }
        std::stable_sort(all.begin() + static_cast<std::ptrdiff_t>(first), all.end(),
                         [](const Patch& a, const Patch& b) { return a.begin < b.begin; });
    }

    static bool removes(const GroupEdit& edit) {
        return edit.kind == GroupEdit::Kind::removeRecord;
    }

    static bool isOfNewRecord(const GroupEdit& edit) {
        return edit.kind == GroupEdit::Kind::insertBefore;
    }

    // The new records before `record`, all in one patch.
    void insertRecords(RecordIndex record, const std::vector<GroupEdit>& edits,
                       std::vector<Patch>& all) {
        if (record > document_.size() || std::none_of(edits.begin(), edits.end(), isOfNewRecord)) {
            return;
        }
        const std::size_t at = record < document_.size()
                                   ? offset(document_.raw(record).data())
                                   : document_.bytes().size() - document_.trailer().size();
        Neighbour neighbour = neighbourOf(record);
        std::string bytes;
        bool begun = false;
        for (const GroupEdit& edit : edits) {
            if (!isOfNewRecord(edit)) continue;
            checkEdit(edit);
            begun = begun || edit.code == 0;
            if (!begun) refuse(edit, "a new record begins with group 0");
            appendGroup(edit, neighbour, bytes);
        }
        if (record == document_.size() && record > 0 && document_.type(record - 1) == "EOF") {
            refuse(edits.front(), "nothing can stand behind EOF");
        }
        if (neighbour.openEnd) {  // the file ends without a line end, and goes on so
            bytes.insert(0, neighbour.codeEnd);
            bytes.resize(bytes.size() - neighbour.valueEnd.size());
        }
        all.push_back({at, at, std::move(bytes)});
    }

    // What new records are written like.
    struct Neighbour {
        std::string_view codeEnd;
        std::string_view valueEnd;
        bool openEnd = false;
        std::map<int, std::string> codes;  // as spelt
    };

    // The record before `record` and itself; at the head of the file the comments there.
    Neighbour neighbourOf(RecordIndex record) {
        groups_.clear();
        const auto take = [this](const GroupRange& range) {
            groups_.insert(groups_.end(), range.begin(), range.end());
        };
        if (record > 0) take(document_.groups(record - 1));
        if (record == 0) take(document_.preamble());
        const bool stands = !groups_.empty();
        const std::size_t last = groups_.size();
        if (record < document_.size()) take(document_.groups(record));
        Neighbour neighbour;
        if (document_.binary() || groups_.empty()) return neighbour;
        const Group& group = groups_[stands ? last - 1 : 0];
        neighbour.codeEnd = codeLineEnd(group);
        neighbour.valueEnd = stands ? valueLineEnd(group) : neighbour.codeEnd;
        neighbour.openEnd = !isComplete(neighbour.valueEnd);
        if (neighbour.openEnd) neighbour.valueEnd = neighbour.codeEnd;
        return neighbour;
    }

    void appendGroup(const GroupEdit& edit, Neighbour& neighbour, std::string& bytes) {
        if (document_.binary()) {
            if (!isKnownCode(edit.code)) refuse(edit, "a binary drawing can't hold this code");
            bytes += binaryCode(edit.code) + binaryValue(edit);
            return;
        }
        const std::string value = asciiValue(edit, integerWidth(edit.code));
        checkBetween(edit, neighbour.codeEnd, value, neighbour.valueEnd);
        std::string& code = neighbour.codes[edit.code];
        if (code.empty()) code = asciiCode(edit.code);
        bytes += code;
        bytes += neighbour.codeEnd;
        bytes += value;
        bytes += neighbour.valueEnd;
    }

    std::size_t offset(const char* at) const {
        return static_cast<std::size_t>(at - document_.bytes().data());
    }

    bool saysAlready(const Group& group, const GroupEdit::Value& value) const {
        if (const auto* real = std::get_if<double>(&value)) {
            const auto old = group.real();
            return old && identical(*old, *real);
        }
        if (const auto* integer = std::get_if<std::int64_t>(&value)) {
            return group.integer() == *integer;
        }
        return document_.decode(group.bytes()) == std::get<std::wstring>(value);
    }

    void replace(const GroupEdit& edit, std::vector<Patch>& all) {
        const Group& group = groups_[edit.index];
        if (saysAlready(group, edit.value)) return;
        const std::size_t begin = offset(group.bytes().data());
        std::string bytes =
            document_.binary() ? binaryValue(edit) : asciiValue(edit, padding(group.bytes()));
        if (!document_.binary()) {
            checkBetween(edit, codeLineEnd(group), bytes, valueLineEnd(group));
        }
        // In a binary file the value's NUL stands behind the bytes of a text and is kept.
        if (document_.binary() && fixedSize(group.type()) == 0) bytes.pop_back();
        all.push_back({begin, begin + group.bytes().size(), std::move(bytes)});
    }

    // The columns of a value that is padded on the left.
    static std::size_t padding(std::string_view value) {
        return !value.empty() && value.front() == ' ' ? value.size() : 0;
    }

    void insert(const GroupEdit& edit, std::vector<Patch>& all) {
        if (edit.code == 0) refuse(edit, "group 0 begins a record of its own");
        if (atEof_) refuse(edit, "nothing can stand behind EOF");
        const Group& neighbour = groups_[edit.index];
        const std::size_t at = offset(neighbour.raw().data()) + neighbour.raw().size();
        if (document_.binary()) {
            if (!isKnownCode(edit.code)) refuse(edit, "a binary drawing can't hold this code");
            all.push_back({at, at, binaryCode(edit.code) + binaryValue(edit)});
            return;
        }
        const std::string_view codeEnd = codeLineEnd(neighbour);
        const std::string_view valueEnd = valueLineEnd(neighbour);
        const std::string value = asciiValue(edit, integerWidth(edit.code));
        checkBetween(edit, codeEnd, value, valueEnd);
        std::string bytes;
        if (!isComplete(valueEnd))
            bytes += codeEnd;  // the file ends without a line end, and goes on so
        bytes += asciiCode(edit.code);
        bytes += codeEnd;
        bytes += value;
        bytes += valueEnd;
        all.push_back({at, at, std::move(bytes)});
    }

    // Whether the next line begins behind `lineEnd`.
    bool isComplete(std::string_view lineEnd) const {
        return !lineEnd.empty() && (lineEnd.back() == '\n' || document_.form().loneReturns);
    }

    // In a file of lone returns that has line feeds too, nothing between a return and a line feed
    // would make one line end of both.
    static void checkBetween(const GroupEdit& edit, std::string_view codeEnd,
                             const std::string& value, std::string_view valueEnd) {
        if (value.empty() && codeEnd == "\r" && valueEnd == "\n") {
            refuse(edit, "an empty text can't stand between a return and a line feed");
        }
    }

    std::string_view codeLineEnd(const Group& group) const {
        const std::string_view text = codeText(group);
        const char* end = text.data() + text.size();
        return {end, static_cast<std::size_t>(group.bytes().data() - end)};
    }

    static std::string_view valueLineEnd(const Group& group) {
        const char* end = group.bytes().data() + group.bytes().size();
        const char* next = group.raw().data() + group.raw().size();
        return {end, static_cast<std::size_t>(next - end)};
    }

    std::string_view codeText(const Group& group) const {
        const char* begin = group.raw().data();
        const LineSpan line =
            lineAt(begin, begin + group.raw().size(), document_.form().loneReturns);
        return {begin, static_cast<std::size_t>(line.end - begin)};
    }

    // A code as the record writes codes: with the blanks of another of as many digits, or else as
    // wide as the record's group 0.
    std::string asciiCode(int code) const {
        const std::string digits = std::to_string(code);
        for (const Group& group : groups_) {
            const std::string_view text = codeText(group);
            const std::string_view bare = trimmed(text);
            if (bare.size() != digits.size()) continue;
            const auto before = static_cast<std::size_t>(bare.data() - text.data());
            return std::string(text.substr(0, before)) + digits +
                   std::string(text.substr(before + bare.size()));
        }
        const auto zero = std::find_if(groups_.begin(), groups_.end(),
                                       [](const Group& group) { return group.code() == 0; });
        const std::size_t width = zero == groups_.end() ? 0 : codeText(*zero).size();
        return std::string(width > digits.size() ? width - digits.size() : 0, ' ') + digits;
    }

    std::size_t integerWidth(int code) {
        const ValueType type = valueType(code);
        if (!isInteger(type)) return 0;
        for (const Group& group : groups_) {
            if (group.type() == type) return padding(group.bytes());
        }
        if (type == ValueType::int16) return style().int16Width;
        return type == ValueType::int32 ? style().int32Width : 0;
    }

    const NumberStyle& style() {
        if (!style_) style_ = measureStyle(document_);
        return *style_;
    }

    std::string asciiValue(const GroupEdit& edit, std::size_t width) {
        if (const auto* text = std::get_if<std::wstring>(&edit.value)) {
            return document_.encode(*text);
        }
        const auto* real = std::get_if<double>(&edit.value);
        std::string number = real != nullptr ? formatReal(*real, style())
                                             : std::to_string(std::get<std::int64_t>(edit.value));
        if (number.size() < width) number.insert(0, width - number.size(), ' ');
        return number;
    }

    std::string binaryCode(int code) const {
        std::string bytes;
        if (document_.form().wideCodes) {
            appendNumber(bytes, static_cast<std::int16_t>(code));
        } else if (code < kWideCodeFollows) {
            bytes += static_cast<char>(code);
        } else {
            bytes += static_cast<char>(kWideCodeFollows);
            appendNumber(bytes, static_cast<std::int16_t>(code));
        }
        return bytes;
    }

    // A byte of length, then the bytes.
    static std::string binaryChunk(const std::wstring& digits) {
        const auto value = [](wchar_t digit) {
            return digit <= L'9' ? digit - L'0' : digit - L'A' + 10;
        };
        std::string bytes(1, static_cast<char>(digits.size() / 2));
        for (std::size_t i = 0; i < digits.size(); i += 2)
            bytes += static_cast<char>(16 * value(digits[i]) + value(digits[i + 1]));
        return bytes;
    }

    // The value's bytes, a text's NUL among them.
    std::string binaryValue(const GroupEdit& edit) const {
        std::string bytes;
        if (const auto* real = std::get_if<double>(&edit.value)) {
            appendNumber(bytes, *real);
        } else if (const auto* integer = std::get_if<std::int64_t>(&edit.value)) {
            appendNumber(bytes, *integer);
            bytes.resize(fixedSize(valueType(edit.code)));  // little-endian: the low bytes lead
        } else if (valueType(edit.code) == ValueType::chunk) {
            bytes = binaryChunk(std::get<std::wstring>(edit.value));
        } else {
            bytes = document_.encode(std::get<std::wstring>(edit.value));
            bytes += '\0';
        }
        return bytes;
    }

    const Document& document_;
    std::vector<Group> groups_;  // of the record under way
    bool atEof_ = false;         // it is EOF
    std::optional<NumberStyle> style_;
};

// Gives the bytes of the edited drawing to `take`, stretch by stretch.
template <class Take>
void eachStretch(const Document& document, const std::vector<Patch>& patches, Take take) {
    const std::string_view bytes = document.bytes();
    std::size_t at = 0;
    for (const Patch& patch : patches) {
        take(bytes.substr(at, patch.begin - at));
        take(std::string_view(patch.bytes));
        at = patch.end;
    }
    take(bytes.substr(at));
}

// Collects small pieces, so that a drawing with many edits is written in few calls, and reports how
// far it has come.
class Output {
  public:
    Output(ReplacingFile& file, std::size_t total, const Progress& progress)
        : file_(file), total_(total), progress_(progress) {
        buffer_.reserve(kPiece);
        report();
    }

    void write(std::string_view bytes) {
        while (!bytes.empty()) {
            if (buffer_.empty() && bytes.size() >= kPiece) {
                put(bytes.substr(0, kPiece));
                bytes.remove_prefix(kPiece);
                continue;
            }
            const std::size_t size = std::min(bytes.size(), kPiece - buffer_.size());
            buffer_.append(bytes.substr(0, size));
            bytes.remove_prefix(size);
            if (buffer_.size() == kPiece) flush();
        }
    }

    void flush() {
        put(buffer_);
        buffer_.clear();
    }

  private:
    static constexpr std::size_t kPiece = 1U << 20;

    void put(std::string_view bytes) {
        file_.write(bytes);
        written_ += bytes.size();
        report();
    }

    void report() const {
        if (!progress_ || written_ >= total_) return;
        progress_(static_cast<double>(written_) / static_cast<double>(total_));
    }

    ReplacingFile& file_;
    std::size_t total_;
    const Progress& progress_;
    std::size_t written_ = 0;
    std::string buffer_;
};

}  // namespace

std::string apply(const Document& document, const Changes& changes) {
    const std::vector<Patch> patches = Editor(document).patches(changes);
    std::string result;
    std::size_t size = document.bytes().size();
    for (const Patch& patch : patches) size += patch.bytes.size();
    result.reserve(size);
    eachStretch(document, patches, [&result](std::string_view bytes) { result += bytes; });
    return result;
}

void save(const Document& document, const Changes& changes, const std::filesystem::path& target,
          const Progress& progress) {
    const std::vector<Patch> patches = Editor(document).patches(changes);
    ReplacingFile file(target);
    Output output(file, document.bytes().size(), progress);
    eachStretch(document, patches, [&output](std::string_view bytes) { output.write(bytes); });
    output.flush();
    file.commit();
    if (progress) progress(1.0);
}

}  // namespace host::dxf
