#include "tests/host/support/DrawingText.h"

#include <cstring>

#include "host/database/Drawing.h"

namespace host::test {
namespace {

template <class T>
void appendRaw(std::string& bytes, T value) {
    char raw[sizeof(T)];
    std::memcpy(raw, &value, sizeof(T));
    bytes.append(raw, sizeof(T));
}

void appendCode(std::string& bytes, int code, bool wideCodes) {
    if (wideCodes) {
        appendRaw(bytes, static_cast<std::int16_t>(code));
    } else if (code < 255) {
        bytes += static_cast<char>(code);
    } else {
        bytes += '\xFF';
        appendRaw(bytes, static_cast<std::int16_t>(code));
    }
}

void appendValue(std::string& bytes, int code, const std::string& value) {
    switch (dxf::valueType(code)) {
        case dxf::ValueType::real:
            return appendRaw(bytes, std::stod(value));
        case dxf::ValueType::int16:
            return appendRaw(bytes, static_cast<std::int16_t>(std::stoi(value)));
        case dxf::ValueType::int32:
            return appendRaw(bytes, static_cast<std::int32_t>(std::stol(value)));
        case dxf::ValueType::int64:
            return appendRaw(bytes, static_cast<std::int64_t>(std::stoll(value)));
        case dxf::ValueType::boolean:
            return appendRaw(bytes, static_cast<char>(std::stoi(value)));
        default:
            bytes += value;
            bytes += '\0';
    }
}

}  // namespace

void DrawingText::take(std::vector<Tag>& tags, std::string_view record, bool typed) {
    bool first = typed;
    while (!record.empty()) {
        const std::size_t end = std::min(record.find('|'), record.size());
        const std::string piece(record.substr(0, end));
        record.remove_prefix(std::min(end + 1, record.size()));
        const std::size_t blank = std::min(piece.find(' '), piece.size());
        if (first) {
            tags.push_back({0, piece});
        } else {
            tags.push_back({std::stoi(piece.substr(0, blank)),
                            blank < piece.size() ? piece.substr(blank + 1) : std::string()});
        }
        first = false;
    }
}

void DrawingText::frame(std::vector<Tag>& tags, std::string_view section,
                        const std::vector<Tag>& content) {
    if (content.empty()) return;
    tags.push_back({0, "SECTION"});
    tags.push_back({2, std::string(section)});
    tags.insert(tags.end(), content.begin(), content.end());
    tags.push_back({0, "ENDSEC"});
}

DrawingText& DrawingText::variable(std::string_view nameAndGroups) {
    const std::size_t end = nameAndGroups.find('|');
    header_.push_back({9, std::string(nameAndGroups.substr(0, end))});
    take(header_, nameAndGroups.substr(end + 1), false);
    return *this;
}

DrawingText& DrawingText::declare(std::string_view record) {
    take(classes_, record, true);
    return *this;
}

DrawingText& DrawingText::layer(std::string_view name, int flags, int color) {
    take(layers_,
         "LAYER|2 " + std::string(name) + "|70 " + std::to_string(flags) + "|62 " +
             std::to_string(color) + "|6 CONTINUOUS",
         true);
    return *this;
}

DrawingText& DrawingText::table(std::string_view name, const std::vector<std::string>& records) {
    take(tables_, "TABLE|2 " + std::string(name) + "|70 " + std::to_string(records.size()), true);
    for (const std::string& record : records) take(tables_, record, true);
    tables_.push_back({0, "ENDTAB"});
    return *this;
}

DrawingText& DrawingText::block(std::string_view name, const std::vector<std::string>& entities,
                                std::string_view groups) {
    take(blocks_, "BLOCK|8 0|2 " + std::string(name) + "|" + std::string(groups), true);
    for (const std::string& entity : entities) take(blocks_, entity, true);
    take(blocks_, "ENDBLK|8 0", true);
    return *this;
}

DrawingText& DrawingText::entity(std::string_view record) {
    take(entities_, record, true);
    return *this;
}

DrawingText& DrawingText::object(std::string_view record) {
    take(objects_, record, true);
    return *this;
}

std::vector<DrawingText::Tag> DrawingText::all() const {
    std::vector<Tag> header;
    if (!release_.empty()) header = {{9, "$ACADVER"}, {1, release_}};
    header.insert(header.end(), header_.begin(), header_.end());
    std::vector<Tag> tables = tables_;
    if (!layers_.empty()) {
        tables.push_back({0, "TABLE"});
        tables.push_back({2, "LAYER"});
        tables.push_back({70, "1"});
        tables.insert(tables.end(), layers_.begin(), layers_.end());
        tables.push_back({0, "ENDTAB"});
    }
    std::vector<Tag> tags;
    frame(tags, "HEADER", header);
    frame(tags, "CLASSES", classes_);
    frame(tags, "TABLES", tables);
    frame(tags, "BLOCKS", blocks_);
    frame(tags, "ENTITIES", entities_);
    frame(tags, "OBJECTS", objects_);
    tags.push_back({0, "EOF"});
    return tags;
}

std::string DrawingText::ascii() const {
    std::string bytes;
    for (const Tag& tag : all()) {
        std::string code = std::to_string(tag.code);
        if (code.size() < 3) code.insert(0, 3 - code.size(), ' ');
        bytes += code + "\n" + tag.value + "\n";
    }
    return bytes;
}

std::string DrawingText::binary(bool wideCodes) const {
    std::string bytes("AutoCAD Binary DXF\r\n\x1a\0", 22);
    for (const Tag& tag : all()) {
        appendCode(bytes, tag.code, wideCodes);
        appendValue(bytes, tag.code, tag.value);
    }
    return bytes;
}

std::shared_ptr<const dxf::Document> DrawingText::document() const {
    return dxf::Document::fromBytes(ascii(), "test.dxf");
}

std::unique_ptr<AcDbDatabase> DrawingText::database() const {
    return database::drawingOf(document());
}

std::unique_ptr<AcDbDatabase> DrawingText::binaryDatabase(bool wideCodes) const {
    return database::drawingOf(dxf::Document::fromBytes(binary(wideCodes), "test.dxf"));
}

std::vector<std::string> groupsOf(const dxf::Document& document, dxf::RecordIndex record) {
    std::vector<std::string> lines;
    for (const dxf::Group& group : document.groups(record)) {
        lines.push_back(std::to_string(group.code()) + " " + std::string(group.bytes()));
    }
    return lines;
}

std::string savedBytes(const AcDbDatabase& database) {
    return dxf::apply(database::document(database), database::pendingChanges(database));
}

}  // namespace host::test
