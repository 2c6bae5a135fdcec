// What reading a drawing finds out: where its records stand, by which handles they are known, its
// release and code page, and what is odd. The inside of Document.
#ifndef HOST_DXF_INDEX_H
#define HOST_DXF_INDEX_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/dxf/CodePage.h"
#include "host/dxf/Document.h"

namespace host::dxf {

struct Record {
    std::uint64_t offset;        // of its first byte
    std::uint64_t handle;        // 0: none
    std::uint32_t groupsBefore;  // groups of the file before its first
    Section section;
};

// Records by handle: open addressing over record numbers.
class HandleTable {
  public:
    // Enters all records that have a handle, and calls `duplicate(record, first)` for each whose
    // handle an earlier record has.
    void build(const std::vector<Record>& records,
               const std::function<void(RecordIndex, RecordIndex)>& duplicate);
    std::optional<RecordIndex> find(const std::vector<Record>& records, std::uint64_t handle) const;

  private:
    static constexpr std::uint32_t kFree = 0xFFFFFFFF;
    std::size_t slot(std::uint64_t handle) const;

    std::vector<std::uint32_t> slots_;
    unsigned shift_ = 64;
};

struct Index {
    Form form;
    std::vector<Record> records;
    HandleTable handles;
    std::uint64_t groupsBegin = 0;  // after a byte order mark or the sentinel
    std::uint64_t groupsEnd = 0;    // after EOF or the last group
    Release release = Release::unknown;
    std::string codePage;
    const CodePage* page = nullptr;
    std::vector<Finding> findings;
    std::size_t omittedFindings = 0;

    std::string_view recordBytes(std::string_view file, RecordIndex record) const;
    GroupRange recordGroups(std::string_view file, RecordIndex record) const;
};

// Reads `bytes`, which are followed by kPadding bytes of 0. Raises ReadError, with `name` as the
// file.
Index buildIndex(std::string_view bytes, const std::string& name, const Progress& progress);

// The groups of variable `name` in `groups`, those of a HEADER section's record.
GroupRange findVariable(const GroupRange& groups, std::string_view name, Form form);

}  // namespace host::dxf

#endif
