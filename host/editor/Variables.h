// System variables: the host's settings and what it tells about itself, by name.
#pragma once

#include <adsdef.h>

#include <map>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include <gepnt3d.h>

namespace host::editor {

// A point of two coordinates, which the interface tells as RTPOINT; points in space are RT3DPOINT.
struct PlanePoint {
    double x = 0.0;
    double y = 0.0;
    bool operator==(const PlanePoint& other) const { return x == other.x && y == other.y; }
    bool operator!=(const PlanePoint& other) const { return !(*this == other); }
};

using VariableValue =
    std::variant<short, std::int32_t, double, AcGePoint3d, std::wstring, PlanePoint>;

class Variables {
  public:
    Variables();

    // The value of a variable; null for an unknown name. Values that follow from the session and
    // its drawing are worked out now.
    const VariableValue* get(std::wstring_view name);
    // False for an unknown name, one that can only be read, another type, or a value out of range.
    // Whole numbers are taken for reals.
    bool set(std::wstring_view name, const VariableValue& value);
    bool isReadOnly(std::wstring_view name) const;
    // All names, sorted.
    std::vector<std::wstring> names() const;

  private:
    struct Entry {
        VariableValue value;
        bool readOnly = false;
        double least = -1e99;  // of numbers
        double most = 1e99;
        VariableValue (*work)() = nullptr;               // null: the value stands as it is
        bool (*assign)(const VariableValue&) = nullptr;  // null: the value is kept here
    };
    void add(const wchar_t* name, Entry entry) { entries_.emplace(name, std::move(entry)); }

    std::map<std::wstring, Entry, std::less<>> entries_;
};

// The value that the interface tells: the test's, if one was given (see Scripted.h), else the
// session's; null for an unknown name, and without either.
const VariableValue* variableValue(std::wstring_view name);

}  // namespace host::editor
