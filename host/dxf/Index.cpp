#include "host/dxf/Index.h"

#include "host/dxf/IndexBuilder.h"
#include "host/dxf/Lines.h"

namespace host::dxf {

std::size_t HandleTable::slot(std::uint64_t handle) const {
    return static_cast<std::size_t>((handle * 0x9E3779B97F4A7C15ULL) >> shift_);
}

void HandleTable::build(const std::vector<Record>& records,
                        const std::function<void(RecordIndex, RecordIndex)>& duplicate) {
    std::size_t count = 0;
    for (const Record& record : records) count += record.handle != 0 ? 1 : 0;
    std::size_t size = 16;
    shift_ = 60;
    while (size < count + count / 2) {
        size *= 2;
        --shift_;
    }
    slots_.assign(size, kFree);
    for (std::size_t at = 0; at < records.size(); ++at) {
        if (records[at].handle == 0) continue;
        std::size_t place = slot(records[at].handle);
        while (slots_[place] != kFree && records[slots_[place]].handle != records[at].handle) {
            place = (place + 1) & (size - 1);
        }
        const auto record = static_cast<RecordIndex>(at);
        if (slots_[place] == kFree) {
            slots_[place] = record;
        } else {
            duplicate(record, slots_[place]);
        }
    }
}

std::optional<RecordIndex> HandleTable::find(const std::vector<Record>& records,
                                             std::uint64_t handle) const {
    if (handle == 0) return std::nullopt;
    std::size_t place = slot(handle);
    while (slots_[place] != kFree) {
        if (records[slots_[place]].handle == handle) return slots_[place];
        place = (place + 1) & (slots_.size() - 1);
    }
    return std::nullopt;
}

std::string_view Index::recordBytes(std::string_view file, RecordIndex record) const {
    const std::uint64_t begin = records[record].offset;
    const std::size_t next = static_cast<std::size_t>(record) + 1;
    const std::uint64_t end = next < records.size() ? records[next].offset : groupsEnd;
    return file.substr(begin, end - begin);
}

GroupRange Index::recordGroups(std::string_view file, RecordIndex record) const {
    return {recordBytes(file, record), form};
}

namespace {

// Drawings in the other format of their kind: the release's mark and bytes that no text has.
bool isDwg(std::string_view bytes) {
    return bytes.size() > 6 && bytes.substr(0, 2) == "AC" && bytes[6] == '\0';
}

}  // namespace

Index buildIndex(std::string_view bytes, const std::string& name, const Progress& progress) {
    IndexBuilder builder(bytes, name, progress);
    if (bytes.empty()) builder.fail(builder.codePosition(0), "a DXF drawing", "an empty file");
    if (isDwg(bytes)) {
        builder.fail(builder.codePosition(0), "a DXF drawing",
                     "a DWG drawing; save it as DXF in a CAD program");
    }
    // The sentinel's text alone decides: a damaged one is told as such.
    const std::string_view sentinel(kSentinel, kSentinelSize);
    if (bytes.substr(0, 18) == sentinel.substr(0, 18)) {
        scanBinary(builder);
    } else {
        scanAscii(builder);
    }
    return builder.take();
}

GroupRange findVariable(const GroupRange& groups, std::string_view name, Form form) {
    const char* begin = nullptr;
    for (const Group& group : groups) {
        if (group.code() == 9) {
            if (begin != nullptr) {
                const char* end = group.raw().data();
                return {{begin, static_cast<std::size_t>(end - begin)}, form};
            }
            if (trimmed(group.bytes()) == name) begin = group.raw().data() + group.raw().size();
        }
    }
    if (begin == nullptr) return {};
    const char* end = groups.raw().data() + groups.raw().size();
    return {{begin, static_cast<std::size_t>(end - begin)}, form};
}

}  // namespace host::dxf
