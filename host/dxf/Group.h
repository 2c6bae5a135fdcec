// Groups of a drawing: a code and its value, looked at in the bytes of the file.
//
// A group is parsed when it is asked for; nothing of it is stored. Groups and ranges look into the
// bytes of their document and live no longer than it.
#ifndef HOST_DXF_GROUP_H
#define HOST_DXF_GROUP_H

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <optional>
#include <string_view>

#include "host/dxf/Codes.h"

namespace host::dxf {

// How the groups of a file are laid out.
struct Form {
    bool binary = false;
    bool wideCodes = false;    // binary: codes take two bytes (R13 and later), not one
    bool loneReturns = false;  // ASCII: a return without a line feed ends a line too
};

// One group as it stands in the file.
class Group {
  public:
    Group() = default;
    Group(const char* begin, const char* value, std::size_t valueLength, const char* end, int code,
          bool binary)
        : begin_(begin),
          value_(value),
          end_(end),
          valueLength_(valueLength),
          code_(code),
          binary_(binary) {}

    int code() const { return code_; }
    ValueType type() const { return valueType(code_); }

    // The value, undecoded. ASCII: its line without the line end, blanks included. Binary: a text
    // without its NUL, a chunk without its length, the bytes of a number.
    std::string_view bytes() const { return {value_, valueLength_}; }

    // Everything of the group, from the first byte of its code to the last of its line end or
    // value.
    std::string_view raw() const { return {begin_, static_cast<std::size_t>(end_ - begin_)}; }

    // The value as a number, when the code's type is real and it is a finite one; "NaN", "1,5",
    // empty and overflowing values have none. Numbers too small for a double are zero.
    std::optional<double> real() const;

    // The value as a whole number, when the code's type is one of the integers or boolean.
    std::optional<std::int64_t> integer() const;

    // The value as a handle, when the code's type is one: 1 to 16 hexadecimal digits, blanks around
    // them allowed.
    std::optional<std::uint64_t> handle() const;

  private:
    const char* begin_ = nullptr;
    const char* value_ = nullptr;
    const char* end_ = nullptr;
    std::size_t valueLength_ = 0;
    int code_ = 0;
    bool binary_ = false;
};

// Groups that follow one another in a file, in their order.
class GroupRange {
  public:
    class iterator {
      public:
        using iterator_category = std::input_iterator_tag;
        using value_type = Group;
        using difference_type = std::ptrdiff_t;
        using pointer = const Group*;
        using reference = const Group&;

        iterator() = default;
        iterator(const char* at, const char* end, Form form);

        const Group& operator*() const { return group_; }
        const Group* operator->() const { return &group_; }
        iterator& operator++();
        bool operator==(const iterator& other) const { return at_ == other.at_; }
        bool operator!=(const iterator& other) const { return at_ != other.at_; }

      private:
        const char* at_ = nullptr;
        const char* end_ = nullptr;
        Form form_;
        Group group_;
    };

    GroupRange() = default;
    // `bytes` hold whole groups of `form`, as reading the document has made sure of.
    GroupRange(std::string_view bytes, Form form) : bytes_(bytes), form_(form) {}

    iterator begin() const { return {bytes_.data(), bytes_.data() + bytes_.size(), form_}; }
    iterator end() const {
        return {bytes_.data() + bytes_.size(), bytes_.data() + bytes_.size(), form_};
    }
    bool empty() const { return bytes_.empty(); }
    std::string_view raw() const { return bytes_; }

    // The first group of the range with `code`, if there is one.
    std::optional<Group> find(int code) const;

  private:
    std::string_view bytes_;
    Form form_;
};

// The numbers that stand in texts, alone or with blanks around them; the rules of Group.
std::optional<double> parseReal(std::string_view text);
std::optional<std::int64_t> parseInteger(std::string_view text);
std::optional<std::uint64_t> parseHandle(std::string_view text);

// `text` without the blanks and tabs around it.
std::string_view trimmed(std::string_view text);

}  // namespace host::dxf

#endif
