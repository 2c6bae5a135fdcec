#include "host/database/Fields.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "host/database/Names.h"

namespace host::database {
namespace {

constexpr double kPi = 3.14159265358979323846;

// Where the groups of one field stand in the record; -1 for one that is missing.
using Places = std::array<int, 3>;
constexpr Places kNowhere{-1, -1, -1};

int axisCount(FieldKind kind) {
    return kind == FieldKind::point || kind == FieldKind::factors ? 3 : 1;
}

int axisCode(const FieldSpec& spec, int axis) {
    return spec.code + axis * (spec.kind == FieldKind::point ? 10 : 1);
}

// Points, vectors and factors are three doubles in a row.
double& axisOf(const FieldSpec& spec, Fields& fields, int axis) {
    return static_cast<double*>(spec.place(fields))[axis];
}

bool sameValue(const FieldSpec& spec, Fields& a, Fields& b) {
    if (spec.kind == FieldKind::integer)
        return *static_cast<int*>(spec.place(a)) == *static_cast<int*>(spec.place(b));
    if (spec.kind == FieldKind::text)
        return *static_cast<std::wstring*>(spec.place(a)) ==
               *static_cast<std::wstring*>(spec.place(b));
    for (int axis = 0; axis < axisCount(spec.kind); ++axis)
        if (axisOf(spec, a, axis) != axisOf(spec, b, axis)) return false;
    return true;
}

// Groups of the object's own, by their index in the record.
class OwnGroups {
  public:
    // Whether the group belongs to the object itself; to be asked for each group in turn.
    bool own(const dxf::Group& group) {
        if (embedded_) return false;
        if (group.code() == 101) {
            embedded_ = true;
            return false;
        }
        if (group.code() == 102) {
            const std::string_view text = dxf::trimmed(group.bytes());
            inBraces_ = !text.empty() && text.front() == '{';
            return false;
        }
        return !inBraces_ && group.code() < 1000;
    }

  private:
    bool inBraces_ = false;
    bool embedded_ = false;
};

// Calls `take(group, index)` for the object's own groups; group 0 is none of them.
template <class Take>
void forEachOwn(const dxf::Document& document, dxf::RecordIndex record, const Take& take) {
    OwnGroups groups;
    int index = -1;
    for (const dxf::Group& group : document.groups(record)) {
        if (++index > 0 && groups.own(group)) take(group, index);
    }
}

class Reader {
  public:
    Reader(const dxf::Document& document, Fields& fields)
        : document_(document), fields_(fields), places_(fields.table().size(), kNowhere) {}

    void read(dxf::RecordIndex record) {
        forEachOwn(document_, record, [this](const dxf::Group& group, int index) {
            if (!take(group, index) && !fields_.unreadable) {
                fields_.unreadable = Unreadable{static_cast<std::size_t>(index), group.code()};
            }
        });
        fields_.finish([this](int code) { return seen(code); });
    }

    const std::vector<Places>& places() const { return places_; }

  private:
    bool take(const dxf::Group& group, int index) {
        const FieldTable& table = fields_.table();
        for (std::size_t i = 0; i < table.size(); ++i) {
            for (int axis = 0; axis < axisCount(table[i].kind); ++axis) {
                if (group.code() != axisCode(table[i], axis)) continue;
                places_[i][static_cast<std::size_t>(axis)] = index;
                return set(table[i], axis, group);
            }
        }
        return fields_.takeGroup(document_, group);
    }

    bool set(const FieldSpec& spec, int axis, const dxf::Group& group) {
        if (spec.kind == FieldKind::text) {
            *static_cast<std::wstring*>(spec.place(fields_)) = document_.decode(group.bytes());
            return true;
        }
        if (spec.kind == FieldKind::integer) {
            // A whole number that can't be read leaves the default: it hides no place.
            if (const auto value = group.integer()) {
                *static_cast<int*>(spec.place(fields_)) = static_cast<int>(*value);
            }
            return true;
        }
        const auto value = group.real();
        if (!value) return false;
        axisOf(spec, fields_, axis) = spec.kind == FieldKind::angle ? toRadians(*value) : *value;
        return true;
    }

    bool seen(int code) const {
        const FieldTable& table = fields_.table();
        for (std::size_t i = 0; i < table.size(); ++i) {
            for (int axis = 0; axis < axisCount(table[i].kind); ++axis) {
                if (axisCode(table[i], axis) == code) {
                    return places_[i][static_cast<std::size_t>(axis)] >= 0;
                }
            }
        }
        return false;
    }

    const dxf::Document& document_;
    Fields& fields_;
    std::vector<Places> places_;
};

// Makes the edits of one record.
class Writer {
  public:
    Writer(const FieldTable& table, std::vector<Places> places)
        : table_(table), places_(std::move(places)) {}

    std::vector<dxf::GroupEdit> edits(Fields& before, Fields& after) {
        for (std::size_t i = 0; i < table_.size(); ++i) {
            for (int axis = 0; axis < axisCount(table_[i].kind); ++axis) {
                if (auto value = changed(table_[i], axis, before, after)) {
                    put(i, axis, std::move(*value));
                }
            }
        }
        return std::move(edits_);
    }

  private:
    static std::optional<dxf::GroupEdit::Value> changed(const FieldSpec& spec, int axis,
                                                        Fields& before, Fields& after) {
        if (spec.kind == FieldKind::text) {
            const auto& text = *static_cast<std::wstring*>(spec.place(after));
            if (*static_cast<std::wstring*>(spec.place(before)) == text) return std::nullopt;
            return text;
        }
        if (spec.kind == FieldKind::integer) {
            const int value = *static_cast<int*>(spec.place(after));
            if (*static_cast<int*>(spec.place(before)) == value) return std::nullopt;
            return static_cast<std::int64_t>(value);
        }
        const double value = axisOf(spec, after, axis);
        const double former = axisOf(spec, before, axis);
        if (former == value) return std::nullopt;
        if (spec.kind != FieldKind::angle) return value;
        // An angle that is read back from the drawing as what it was has not changed: degrees and
        // radians may differ in their last bits on the way there and back.
        if (toRadians(toDegrees(value)) == former) return std::nullopt;
        return toDegrees(value);
    }

    void put(std::size_t entry, int axis, dxf::GroupEdit::Value value) {
        const int place = places_[entry][static_cast<std::size_t>(axis)];
        const bool present = place >= 0;
        edits_.push_back(
            {present ? dxf::GroupEdit::Kind::replace : dxf::GroupEdit::Kind::insertAfter,
             static_cast<std::size_t>(present ? place : placeBefore(entry, axis)),
             axisCode(table_[entry], axis), std::move(value)});
    }

    // The group to insert behind: the last one of the nearest entry that precedes and is present.
    int placeBefore(std::size_t entry, int axis) const {
        for (int before = axis - 1; before >= 0; --before) {
            const int place = places_[entry][static_cast<std::size_t>(before)];
            if (place >= 0) return place;
        }
        while (entry-- > 0) {
            const int place = *std::max_element(places_[entry].begin(), places_[entry].end());
            if (place >= 0) return place;
        }
        return 0;
    }

    const FieldTable& table_;
    std::vector<Places> places_;
    std::vector<dxf::GroupEdit> edits_;
};

}  // namespace

bool Fields::isFinite() const {
    const std::unique_ptr<Fields> copy = clone();
    for (const FieldSpec& spec : table()) {
        if (spec.kind == FieldKind::text || spec.kind == FieldKind::integer) continue;
        for (int axis = 0; axis < axisCount(spec.kind); ++axis) {
            if (!std::isfinite(axisOf(spec, *copy, axis))) return false;
        }
    }
    return true;
}

bool sameApartFrom(int code, const Fields& a, const Fields& b) {
    const std::unique_ptr<Fields> first = a.clone();
    const std::unique_ptr<Fields> second = b.clone();
    const FieldTable& table = a.table();
    return std::all_of(table.begin(), table.end(), [&](const FieldSpec& spec) {
        return spec.code == code || sameValue(spec, *first, *second);
    });
}

void readFields(const dxf::Document& document, dxf::RecordIndex record, Fields& fields) {
    Reader(document, fields).read(record);
}

std::optional<dxf::Group> ownGroup(const dxf::Document& document, dxf::RecordIndex record,
                                   int code) {
    std::optional<dxf::Group> found;
    forEachOwn(document, record, [&](const dxf::Group& group, int) {
        if (group.code() == code) found = group;
    });
    return found;
}

std::vector<dxf::GroupEdit> editsFor(const dxf::Document& document, dxf::RecordIndex record,
                                     const Fields& fields) {
    // Fields of the class as it starts, which reading fills; a clone would keep what was changed.
    const std::unique_ptr<Fields> before = fields.fresh();
    Reader reader(document, *before);
    reader.read(record);
    const std::unique_ptr<Fields> after = fields.stored();
    return Writer(before->table(), reader.places()).edits(*before, *after);
}

std::wstring describe(const dxf::Document& document, dxf::RecordIndex record,
                      const Unreadable& unreadable) {
    std::size_t index = 0;
    for (const dxf::Group& group : document.groups(record)) {
        if (index++ != unreadable.group) continue;
        return fromUtf8(document.position(record, unreadable.group).text() + ": group " +
                        std::to_string(unreadable.code) + " holds " + dxf::shown(group.bytes()) +
                        ", a number was expected");
    }
    return {};
}

double toRadians(double degrees) {
    return degrees * kPi / 180.0;
}

double toDegrees(double radians) {
    return radians * 180.0 / kPi;
}

}  // namespace host::database
