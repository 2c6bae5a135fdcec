// A drawing in DXF of any release, ASCII or binary, kept byte for byte.
//
// Reading checks that the file consists of whole groups and indexes its records; groups are parsed
// when they are asked for, so that an open drawing takes little more memory than the file. A
// document never changes: edits stand beside it (Edit.h) and are put in when it is saved. What is
// odd in a drawing but does not keep it from being read (NaN, missing handles, text after EOF, ...)
// is kept as it stands and told as a finding; docs/dxf.md lists which is which.
#ifndef HOST_DXF_DOCUMENT_H
#define HOST_DXF_DOCUMENT_H

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/dxf/Errors.h"
#include "host/dxf/Group.h"

namespace host::dxf {

// Called now and then during long work with the fraction done, growing from 0 to 1; the last call
// says 1. What it throws ends the work: nothing is left half-done.
using Progress = std::function<void(double)>;

// The number of a record in its file, from 0. A record is one group 0 and what follows it up to the
// next group 0; a SECTION record therefore holds its name, that of HEADER all variables too.
using RecordIndex = std::uint32_t;

enum class Section : std::uint8_t {
    none,  // outside of sections, EOF among them
    header,
    classes,
    tables,
    blocks,
    entities,
    objects,
    thumbnail,
    other
};

// By $ACADVER: AC1004, AC1006, AC1009 (R11 and R12), AC1012, AC1014, AC1015, AC1018, AC1021,
// AC1024, AC1027, AC1032. Unknown when there is no such variable or it says something else.
enum class Release : std::uint8_t {
    unknown,
    R9,
    R10,
    R12,
    R13,
    R14,
    R2000,
    R2004,
    R2007,
    R2010,
    R2013,
    R2018
};

// Something odd that was kept as it is.
struct Finding {
    Position where;
    std::string message;
};

struct Index;

class Document {
  public:
    // Reads the drawing at `path`. Raises ReadError.
    static std::shared_ptr<const Document> open(const std::filesystem::path& path,
                                                const Progress& progress = {});

    // The same for bytes at hand; `name` stands for the file in messages.
    static std::shared_ptr<const Document> fromBytes(std::string bytes, std::string name);

    Document(const Document&) = delete;
    Document& operator=(const Document&) = delete;
    ~Document();

    const std::string& name() const { return name_; }  // path or name, UTF-8
    std::string_view bytes() const { return bytes_; }  // the whole file

    // Records, in the order of the file. A SECTION and its ENDSEC belong to the section they frame.
    RecordIndex size() const;
    Section section(RecordIndex record) const;
    std::string_view type(RecordIndex record) const;  // "LINE"; blanks around it left out
    GroupRange groups(RecordIndex record) const;      // its group 0 first, which has index 0
    std::string_view raw(RecordIndex record) const;   // all bytes of its groups
    Position position(RecordIndex record) const;      // of the code of its group 0
    Position position(RecordIndex record, std::size_t group) const;

    // The record's own handle: its first group 5 (105 for DIMSTYLE, whose 5 is a block name),
    // before any extended data. None when it is missing, empty, zero or not hexadecimal, and for
    // records of the header and class sections, which have none.
    std::optional<std::uint64_t> handle(RecordIndex record) const;

    // The record with `handle`; of several the first.
    std::optional<RecordIndex> find(std::uint64_t handle) const;

    // Groups before the first record (comments), and the bytes after the value of EOF.
    GroupRange preamble() const;
    std::string_view trailer() const;

    // The value groups of the header variable `name` ("$INSUNITS"); empty when there is none.
    GroupRange headerVariable(std::string_view name) const;

    Release release() const;
    Form form() const;
    bool binary() const { return form().binary; }

    // $DWGCODEPAGE as it stands; empty when it is missing.
    const std::string& codePage() const;

    // Whether texts are UTF-8 (R2007 and later, whatever the code page says).
    bool utf8() const;

    // A text for display: decoded as UTF-8 or by the code page, \U+nnnn and \M+nxxxx replaced.
    // Bytes that mean nothing there become U+FFFD.
    std::wstring decode(std::string_view text) const;

    // The bytes of a text for this file: UTF-8, or the code page with \U+nnnn for what it lacks.
    std::string encode(std::wstring_view text) const;

    // In the order of the file, the first kMaxFindings of them, and how many more there were.
    static constexpr std::size_t kMaxFindings = 1000;
    const std::vector<Finding>& findings() const;
    std::size_t omittedFindings() const;

  private:
    struct Private {};  // makes the constructor ours alone, but open to make_shared

  public:
    Document(Private, std::string name, std::unique_ptr<char[]> storage, std::string_view bytes,
             const Progress& progress);

  private:
    std::string name_;
    std::unique_ptr<char[]> storage_;
    std::string_view bytes_;
    std::unique_ptr<const Index> index_;
};

}  // namespace host::dxf

#endif
