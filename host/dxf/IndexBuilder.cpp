#include "host/dxf/IndexBuilder.h"

#include <limits>
#include <utility>

#include "host/dxf/Lines.h"
#include "host/dxf/Utf8.h"

namespace host::dxf {
namespace {

constexpr std::uint64_t kReportEvery = 4U << 20;

struct SectionName {
    std::string_view name;
    Section section;
};

constexpr SectionName kSections[] = {
    {"HEADER", Section::header},
    {"CLASSES", Section::classes},
    {"TABLES", Section::tables},
    {"BLOCKS", Section::blocks},
    {"ENTITIES", Section::entities},
    {"OBJECTS", Section::objects},
    {"THUMBNAILIMAGE", Section::thumbnail},
};

struct ReleaseName {
    std::string_view name;
    Release release;
};

constexpr ReleaseName kReleases[] = {
    {"AC1004", Release::R9},    {"AC1006", Release::R10},   {"AC1009", Release::R12},
    {"AC1012", Release::R13},   {"AC1014", Release::R14},   {"AC1015", Release::R2000},
    {"AC1018", Release::R2004}, {"AC1021", Release::R2007}, {"AC1024", Release::R2010},
    {"AC1027", Release::R2013}, {"AC1032", Release::R2018},
};

Section sectionNamed(std::string_view name) {
    for (const SectionName& known : kSections) {
        if (known.name == name) return known.section;
    }
    return Section::other;
}

Release releaseNamed(std::string_view name) {
    for (const ReleaseName& known : kReleases) {
        if (known.name == name) return known.release;
    }
    return Release::unknown;
}

// Records that have no handle in any release.
bool isBare(std::string_view type) {
    return type == "ENDTAB";
}

}  // namespace

bool isBlank(std::string_view bytes) {
    constexpr std::string_view kBlanks(" \t\r\n\0\x1a", 6);
    return bytes.find_first_not_of(kBlanks) == std::string_view::npos;
}

IndexBuilder::IndexBuilder(std::string_view bytes, const std::string& name,
                           const Progress& progress)
    : bytes_(bytes),
      name_(name),
      progress_(progress),
      nextReport_(progress ? 0 : std::numeric_limits<std::uint64_t>::max()) {
    index_.page = findCodePage("");
}

void IndexBuilder::find(Position where, std::string message) {
    if (index_.findings.size() < Document::kMaxFindings) {
        index_.findings.push_back({where, std::move(message)});
    } else {
        ++index_.omittedFindings;
    }
}

void IndexBuilder::fail(Position where, std::string expected, std::string found) const {
    throw ReadError(name_, where, std::move(expected), std::move(found));
}

Position IndexBuilder::codePosition(std::uint64_t offset) const {
    if (index_.form.binary) return {Position::Unit::byte, offset};
    return {Position::Unit::line, 2 * groups_ + 1};
}

Position IndexBuilder::valuePosition() const {
    if (index_.form.binary) return {Position::Unit::byte, valueOffset_};
    return {Position::Unit::line, 2 * groups_ + 2};
}

Position IndexBuilder::recordPosition(const Record& record) const {
    if (index_.form.binary) return {Position::Unit::byte, record.offset};
    return {Position::Unit::line, 2ULL * record.groupsBefore + 1};
}

void IndexBuilder::tellProgress(std::uint64_t offset) {
    progress_(bytes_.empty() ? 0.0
                             : static_cast<double>(offset) / static_cast<double>(bytes_.size()));
    nextReport_ = offset + kReportEvery;
}

void IndexBuilder::pushRecord(std::uint64_t offset) {
    if (groups_ > std::numeric_limits<std::uint32_t>::max() - 1) {
        fail(codePosition(offset), "a drawing of less than 4294967295 groups", "more");
    }
    std::vector<Record>& records = index_.records;
    if (records.size() == records.capacity()) {
        // Sized by what the file has held so far: doubling would cost more memory than the index.
        const double share = static_cast<double>(offset + 1) / static_cast<double>(bytes_.size());
        const auto whole = static_cast<double>(records.size()) / share;
        records.reserve(records.size() + records.size() / 4 + 64);
        if (records.size() > 10000 && whole * 1.05 > static_cast<double>(records.capacity())) {
            records.reserve(static_cast<std::size_t>(whole * 1.05));
        }
    }
    records.push_back({offset, 0, static_cast<std::uint32_t>(groups_), section_});
}

void IndexBuilder::startRecord(std::string_view value, std::uint64_t offset) {
    closeRecord(offset);
    const std::string_view type = trimmed(value);
    if (expectName_) find(codePosition(offset), "the section above has no name (group 2)");
    expectName_ = false;
    handleDue_ = false;
    wantedHandle_ = kNoHandle;
    if (type == "SECTION") {
        startSection(type);
        pushRecord(offset);
    } else if (type == "ENDSEC") {
        if (!inSection_) find(codePosition(offset), "ENDSEC ends a section that was not begun");
        pushRecord(offset);
        section_ = Section::none;
        inSection_ = false;
    } else if (type == "EOF") {
        if (inSection_) find(codePosition(offset), "EOF stands in a section that has no ENDSEC");
        section_ = Section::none;
        pushRecord(offset);
        ended_ = true;
    } else {
        if (!inSection_ && !toldOutside_) {
            find(codePosition(offset), shown(type) + " stands outside of the sections");
            toldOutside_ = true;
        }
        if (section_ != Section::header && section_ != Section::classes) {
            const bool dimStyle = section_ == Section::tables && type == "DIMSTYLE";
            wantedHandle_ = dimStyle ? 105 : 5;
            handleDue_ = !isBare(type) && inSection_ && section_ != Section::other &&
                         section_ != Section::thumbnail;
        }
        pushRecord(offset);
    }
}

void IndexBuilder::startSection(std::string_view type) {
    if (inSection_) {
        find(codePosition(0), std::string(type) + " begins before the section above has ended");
    }
    section_ = Section::other;
    inSection_ = true;
    expectName_ = true;
}

void IndexBuilder::nameSection(int code, std::string_view value) {
    expectName_ = false;
    if (code != 2) {
        find(codePosition(valueOffset_), "the section above has no name (group 2)");
        return;
    }
    section_ = sectionNamed(trimmed(value));
    index_.records.back().section = section_;
    sawHeader_ = sawHeader_ || section_ == Section::header;
}

void IndexBuilder::takeHandle(int code, std::string_view value) {
    wantedHandle_ = kNoHandle;
    handleDue_ = false;
    const std::optional<std::uint64_t> handle = parseHandle(value);
    if (handle && *handle != 0) {
        index_.records.back().handle = *handle;
    } else {
        oddValue(code, value, "a handle");
    }
}

void IndexBuilder::closeRecord(std::uint64_t end) {
    if (index_.records.empty()) return;
    Record& record = index_.records.back();
    if (record.section == Section::header && index_.release == Release::unknown) readHeader(end);
    if (handleDue_ && index_.release >= Release::R13) {
        const Position where = index_.form.binary
                                   ? Position{Position::Unit::byte, record.offset}
                                   : Position{Position::Unit::line, 2ULL * record.groupsBefore + 1};
        find(where, "the record has no handle");
    }
}

// Finds out release and encoding from the HEADER record that ends at `end`, then checks its texts.
void IndexBuilder::readHeader(std::uint64_t end) {
    const Record& header = index_.records.back();
    const GroupRange groups(bytes_.substr(header.offset, end - header.offset), index_.form);
    const GroupRange version = findVariable(groups, "$ACADVER", index_.form);
    const GroupRange page = findVariable(groups, "$DWGCODEPAGE", index_.form);
    const Position where = recordPosition(header);
    if (!version.empty()) {
        sawRelease_ = true;
        const std::string_view name = trimmed(version.begin()->bytes());
        index_.release = releaseNamed(name);
        if (index_.release == Release::unknown) {
            find(where, "$ACADVER of this header says " + shown(name) + ", an unknown release");
        }
    }
    if (!page.empty()) index_.codePage = std::string(trimmed(page.begin()->bytes()));
    const CodePage* named = findCodePage(index_.codePage);
    if (index_.release >= Release::R2007) {
        index_.page = nullptr;
    } else if (named != nullptr) {
        index_.page = named;
    } else {
        find(where, "$DWGCODEPAGE of this header says " + shown(index_.codePage) +
                        ", which is not known; texts are shown by ANSI_1252");
    }
    std::uint64_t offset = header.offset;
    std::uint64_t line = 2ULL * header.groupsBefore + 2;
    for (const Group& group : groups) {
        if (group.type() == ValueType::text && hasHighBytes(group.bytes())) {
            checkEncoding(group.bytes(), index_.form.binary ? Position{Position::Unit::byte, offset}
                                                            : Position{Position::Unit::line, line});
        }
        offset += group.raw().size();
        line += 2;
    }
}

void IndexBuilder::checkEncoding(std::string_view value, Position where) {
    const bool valid = utf8::isValid(value);
    if (index_.page == nullptr) {
        if (!valid) find(where, shown(value) + " is no UTF-8");
    } else if (valid && !toldEncoding_) {
        toldEncoding_ = true;
        find(where, shown(value) + " looks like UTF-8, where texts of this release are " +
                        (index_.codePage.empty() ? "ANSI_1252" : index_.codePage));
    }
}

void IndexBuilder::oddValue(int code, std::string_view value, const char* expected) {
    find(valuePosition(), "group " + std::to_string(code) + " holds " + shown(value) + " where " +
                              expected + " belongs");
}

void IndexBuilder::checkAnnouncedLength(std::int64_t length) {
    if (length >= 0 && static_cast<std::uint64_t>(length) <= bytes_.size()) return;
    find(valuePosition(), "the group before announces " + std::to_string(length) +
                              " bytes of data, the whole file has " +
                              std::to_string(bytes_.size()));
}

void IndexBuilder::findDuplicates() {
    index_.handles.build(index_.records, [this](RecordIndex record, RecordIndex first) {
        find(recordPosition(index_.records[record]),
             "the record has the handle of the one at " +
                 recordPosition(index_.records[first]).text());
    });
}

void IndexBuilder::finish(std::uint64_t groupsEnd) {
    index_.groupsEnd = groupsEnd;
    if (index_.records.empty()) {
        fail(codePosition(groupsEnd), "a record (group code 0)", "the end of the file");
    }
    closeRecord(groupsEnd);
    if (!sawHeader_) {
        find(codePosition(groupsEnd), "the drawing has no HEADER section");
    } else if (!sawRelease_) {
        find(codePosition(groupsEnd), "the drawing does not say its release ($ACADVER)");
    }
    if (!ended_) {
        find(codePosition(groupsEnd), inSection_ ? "the drawing ends within a section, without EOF"
                                                 : "the drawing has no EOF");
    } else if (!isBlank(bytes_.substr(groupsEnd))) {
        find(codePosition(groupsEnd), shown(bytes_.substr(groupsEnd)) + " stands after EOF");
    }
    findDuplicates();
    if (progress_) progress_(1.0);
}

}  // namespace host::dxf
