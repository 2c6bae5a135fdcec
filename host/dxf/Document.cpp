#include "host/dxf/Document.h"

#include <algorithm>
#include <new>
#include <utility>

#include "host/dxf/Files.h"
#include "host/dxf/Index.h"
#include "host/dxf/Lines.h"

namespace host::dxf {

std::shared_ptr<const Document> Document::open(const std::filesystem::path& path,
                                               const Progress& progress) {
    try {
        FileBytes file = readFile(path);
        const std::string_view bytes(file.bytes.get(), file.size);
        return std::make_shared<const Document>(Private(), path.u8string(), std::move(file.bytes),
                                                bytes, progress);
    } catch (const std::bad_alloc&) {
        throw ReadError(path.u8string(), std::nullopt, "a drawing that fits into memory",
                        "a larger one");
    }
}

std::shared_ptr<const Document> Document::fromBytes(std::string bytes, std::string name) {
    auto storage = std::make_unique<char[]>(bytes.size() + kPadding);
    std::copy(bytes.begin(), bytes.end(), storage.get());
    const std::string_view view(storage.get(), bytes.size());
    return std::make_shared<const Document>(Private(), std::move(name), std::move(storage), view,
                                            Progress());
}

Document::Document(Private, std::string name, std::unique_ptr<char[]> storage,
                   std::string_view bytes, const Progress& progress)
    : name_(std::move(name)),
      storage_(std::move(storage)),
      bytes_(bytes),
      index_(std::make_unique<const Index>(buildIndex(bytes_, name_, progress))) {}

Document::~Document() = default;

RecordIndex Document::size() const {
    return static_cast<RecordIndex>(index_->records.size());
}

Section Document::section(RecordIndex record) const {
    return index_->records[record].section;
}

std::string_view Document::type(RecordIndex record) const {
    return trimmed(groups(record).begin()->bytes());
}

GroupRange Document::groups(RecordIndex record) const {
    return index_->recordGroups(bytes_, record);
}

std::string_view Document::raw(RecordIndex record) const {
    return index_->recordBytes(bytes_, record);
}

Position Document::position(RecordIndex record) const {
    return position(record, 0);
}

Position Document::position(RecordIndex record, std::size_t group) const {
    const Record& entry = index_->records[record];
    if (!binary()) return {Position::Unit::line, 2 * (entry.groupsBefore + group) + 1};
    const GroupRange all = groups(record);
    auto at = all.begin();
    std::uint64_t offset = entry.offset;
    for (; group > 0 && at != all.end(); --group, ++at) offset += at->raw().size();
    return {Position::Unit::byte, offset};
}

std::optional<std::uint64_t> Document::handle(RecordIndex record) const {
    const std::uint64_t handle = index_->records[record].handle;
    if (handle == 0) return std::nullopt;
    return handle;
}

std::optional<RecordIndex> Document::find(std::uint64_t handle) const {
    return index_->handles.find(index_->records, handle);
}

GroupRange Document::preamble() const {
    const std::uint64_t begin = index_->groupsBegin;
    return {bytes_.substr(begin, index_->records.front().offset - begin), index_->form};
}

std::string_view Document::trailer() const {
    return bytes_.substr(index_->groupsEnd);
}

GroupRange Document::headerVariable(std::string_view name) const {
    for (RecordIndex record = 0; record < size(); ++record) {
        if (section(record) != Section::header) continue;
        const GroupRange found = findVariable(groups(record), name, index_->form);
        if (!found.empty()) return found;
    }
    return {};
}

Release Document::release() const {
    return index_->release;
}

Form Document::form() const {
    return index_->form;
}

const std::string& Document::codePage() const {
    return index_->codePage;
}

bool Document::utf8() const {
    return index_->page == nullptr;
}

std::wstring Document::decode(std::string_view text) const {
    return decodeText(text, index_->page);
}

std::string Document::encode(std::wstring_view text) const {
    return encodeText(text, index_->page);
}

const std::vector<Finding>& Document::findings() const {
    return index_->findings;
}

std::size_t Document::omittedFindings() const {
    return index_->omittedFindings;
}

}  // namespace host::dxf
