// Two drawings compared group by group: the proof that saving changed what was meant and nothing
// else.
//
// Records are matched in their order by type and handle; where the order breaks, by looking which
// of the two drawings has the other's record further on, and where there are no handles, by equal
// bytes within the next 256 records. Groups of matched records are matched by their codes and
// values. Every byte counts: drawings without differences are identical.
#ifndef HOST_DXF_COMPARE_H
#define HOST_DXF_COMPARE_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "host/dxf/Document.h"
#include "host/dxf/Edit.h"

namespace host::dxf {

struct Difference {
    enum class Kind : std::uint8_t {
        changed,    // a group has another value
        inserted,   // a group is new
        removed,    // a group is gone
        respelled,  // same code and value, but other blanks around the code or another line end
        recordInserted,  // a whole record is new
        recordRemoved,   // a whole record is gone
        bytes            // bytes outside of all groups differ: mark at the head, text after EOF
    };

    Kind kind = Kind::changed;
    std::optional<RecordIndex>
        before;  // the record in either drawing; none where it has no such one,
    std::optional<RecordIndex> after;  // and for groups before the first record
    std::string type;
    std::optional<std::uint64_t> handle;

    // The group's index in the record of the drawing before; for an inserted one that of the group
    // it stands behind, as in GroupEdit (for one at the very head, 0).
    std::size_t index = 0;
    int code = 0;
    std::string
        oldValue;  // as it stands in the file; numbers of binary files in decimals, chunks in
    std::string newValue;  // hexadecimal digits; for a record its type
    Position where;        // in the drawing after, or of what is gone in the drawing before

    std::string text() const;  // one line, UTF-8: "line 120: TEXT 2F, group 50 inserted: '45.0'"
};

// Gives the differences to `report`, in the order of the drawings, until it answers false.
void compare(const Document& before, const Document& after,
             const std::function<bool(const Difference&)>& report);

// All of them.
std::vector<Difference> compare(const Document& before, const Document& after);

// Whether `difference` is what an edit of `changes` makes: the same record and code, a replaced
// group or an inserted one, and the edit's value; the record that is removed; or a new record of
// the same groups.
bool isExpected(const Difference& difference, const Document& before, const Document& after,
                const Changes& changes);

}  // namespace host::dxf

#endif
