// Edits of a drawing: groups replaced or inserted, records inserted or removed, everything else
// kept byte for byte.
//
// A document never changes; edits stand beside it and are put in when it is saved. What is written
// follows the file:
//   reals     in the way the file writes them (NumberStyle.h), always with as many digits as
//   reading
//             the identical double back takes; never with an exponent
//   integers  padded with blanks as the record's, or else the file's, other values of their type
//   codes     padded as the record's other codes of as many digits; a new record's as those of the
//             record before it
//   texts     in the encoding of the file, \U+nnnn for what its code page lacks
//   line ends as those of the neighbouring group
//   binary    numbers as they are, little-endian
// A replacement that says what the group says already leaves it alone, spelling included.
#ifndef HOST_DXF_EDIT_H
#define HOST_DXF_EDIT_H

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <variant>
#include <vector>

#include "host/dxf/Document.h"

namespace host::dxf {

struct GroupEdit {
    enum class Kind : std::uint8_t {
        replace,      // the value of group `index`, whose code is `code`
        insertAfter,  // a new group `code` behind group `index`; several there stand in edit order
        // A group of new records that stand before the record, in edit order; the first of them,
        // and each with code 0, begins one. `index` means nothing. Before record Document::size()
        // is behind the last one.
        insertBefore,
        removeRecord  // the whole record, as its only edit; index, code and value mean nothing
    };
    using Value = std::variant<double, std::int64_t, std::wstring>;

    Kind kind = Kind::replace;
    std::size_t index = 0;  // in Document::groups of the record as it was read
    int code = 0;
    // double for reals, integer for integers and booleans, text for texts, handles and the bytes of
    // chunks in hexadecimal digits
    Value value;
};

// Edits by record, in any order within a record.
using Changes = std::map<RecordIndex, std::vector<GroupEdit>>;

// The bytes of the drawing with `changes` put in. Raises std::invalid_argument for edits that can't
// be: a record or group that is not there, a replacement whose code is another than the group's or
// comes twice, a value that is not of the code's type, not finite, out of the binary form's range,
// or a text with a line end or NUL in it, a chunk replaced, one of no or more than 255 bytes, group
// 0 inserted into a record or none at the head of new ones, something behind EOF, a record removed
// that has other edits than new records before it. Called with its namespace (dxf::apply), for
// std::apply has the same name.
std::string apply(const Document& document, const Changes& changes);

// Writes the drawing with `changes` put in to `target`: to a new file beside it, flushed, then
// renamed over it (Files.h says what is kept of the target). Unchanged stretches go from the
// document to the file as they stand. `target` may be the document's own file. Raises WriteError,
// and std::invalid_argument as apply() does; the target is then as it was.
void save(const Document& document, const Changes& changes, const std::filesystem::path& target,
          const Progress& progress = {});

}  // namespace host::dxf

#endif
