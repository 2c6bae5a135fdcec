#include "host/dxf/Compare.h"

#include <algorithm>
#include <cstdio>

#include "host/dxf/Lines.h"
#include "host/dxf/NumberStyle.h"

namespace host::dxf {
namespace {

using Groups = std::vector<Group>;

bool same(const Group& a, const Group& b) {
    return a.code() == b.code() && a.bytes() == b.bytes();
}

std::string hexadecimal(std::string_view bytes) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string text;
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        text += kDigits[byte >> 4];
        text += kDigits[byte & 15];
    }
    return text;
}

std::string valueText(const Group& group, bool binary) {
    if (!binary) return std::string(group.bytes());
    if (const auto real = group.real()) return formatReal(*real, NumberStyle());
    if (const auto integer = group.integer()) return std::to_string(*integer);
    const bool text = group.type() == ValueType::text || group.type() == ValueType::handle;
    return text ? std::string(group.bytes()) : hexadecimal(group.bytes());
}

// A step of the way from one list of groups to another.
struct Step {
    enum class Kind : std::uint8_t { keep, remove, insert };
    Kind kind;
    std::size_t before;
    std::size_t after;
};

// A shortest way from `a` to `b` by keeping, removing and inserting. Takes a.size() * b.size()
// bytes.
std::vector<Step> shortestWay(const Groups& a, const Groups& b) {
    const std::size_t width = b.size() + 1;
    std::vector<std::uint32_t> kept(width * (a.size() + 1), 0);  // longest common rest from (i, j)
    for (std::size_t i = a.size(); i-- > 0;) {
        for (std::size_t j = b.size(); j-- > 0;) {
            kept[i * width + j] =
                same(a[i], b[j]) ? kept[(i + 1) * width + j + 1] + 1
                                 : std::max(kept[(i + 1) * width + j], kept[i * width + j + 1]);
        }
    }
    std::vector<Step> way;
    std::size_t i = 0;
    std::size_t j = 0;
    while (i < a.size() || j < b.size()) {
        if (i < a.size() && j < b.size() && same(a[i], b[j])) {
            way.push_back({Step::Kind::keep, i++, j++});
        } else if (j == b.size() ||
                   (i < a.size() && kept[(i + 1) * width + j] >= kept[i * width + j + 1])) {
            way.push_back({Step::Kind::remove, i++, j});
        } else {
            way.push_back({Step::Kind::insert, i, j++});
        }
    }
    return way;
}

// For lists too long for that: equal groups are kept as they come, a code that does not fit is
// looked for among the next few.
std::vector<Step> plainWay(const Groups& a, const Groups& b) {
    constexpr std::size_t kAhead = 64;
    const auto ahead = [](const Groups& list, std::size_t from, const Group& wanted) {
        const std::size_t end = std::min(list.size(), from + kAhead);
        for (std::size_t at = from; at < end; ++at) {
            if (same(list[at], wanted)) return at - from;
        }
        return kAhead;
    };
    std::vector<Step> way;
    std::size_t i = 0;
    std::size_t j = 0;
    while (i < a.size() && j < b.size()) {
        if (same(a[i], b[j])) {
            way.push_back({Step::Kind::keep, i++, j++});
            continue;
        }
        const std::size_t inserted = ahead(b, j, a[i]);
        const std::size_t removed = ahead(a, i, b[j]);
        if (removed <= inserted) way.push_back({Step::Kind::remove, i++, j});
        if (inserted <= removed) way.push_back({Step::Kind::insert, i, j++});
    }
    while (i < a.size()) way.push_back({Step::Kind::remove, i++, j});
    while (j < b.size()) way.push_back({Step::Kind::insert, i, j++});
    return way;
}

class Comparer {
  public:
    Comparer(const Document& before, const Document& after,
             const std::function<bool(const Difference&)>& report)
        : before_(before), after_(after), report_(report) {}

    void run() {
        if (before_.bytes() == after_.bytes()) return;
        compareHeads();
        compareRecords();
        if (before_.trailer() != after_.trailer()) {
            Difference difference;
            difference.kind = Difference::Kind::bytes;
            difference.oldValue = std::string(before_.trailer());
            difference.newValue = std::string(after_.trailer());
            difference.where = after_.position(after_.size() - 1);
            give(difference);
        }
    }

  private:
    // What stands before the first record: a mark or the sentinel, and comments.
    void compareHeads() {
        const auto head = [](const Document& document) {
            const GroupRange preamble = document.preamble();
            const auto size = preamble.raw().data() - document.bytes().data();
            return document.bytes().substr(0, static_cast<std::size_t>(size));
        };
        if (head(before_) != head(after_)) {
            Difference difference;
            difference.kind = Difference::Kind::bytes;
            difference.oldValue = std::string(head(before_));
            difference.newValue = std::string(head(after_));
            difference.where = {after_.binary() ? Position::Unit::byte : Position::Unit::line,
                                after_.binary() ? 0U : 1U};
            give(difference);
        }
        const GroupRange a = before_.preamble();
        const GroupRange b = after_.preamble();
        compareGroups(std::nullopt, std::nullopt, {a.begin(), a.end()}, {b.begin(), b.end()});
    }

    void compareRecords() {
        RecordIndex i = 0;
        RecordIndex j = 0;
        while (!stopped_ && (i < before_.size() || j < after_.size())) {
            if (i == before_.size()) {
                recordInserted(j++);
            } else if (j == after_.size()) {
                recordRemoved(i++);
            } else if (before_.raw(i) == after_.raw(j)) {
                ++i;
                ++j;
            } else {
                matchUnequal(i, j);
            }
        }
    }

    // Moves on from two records that differ.
    void matchUnequal(RecordIndex& i, RecordIndex& j) {
        const bool sameType = before_.type(i) == after_.type(j);
        const auto handle = before_.handle(i);
        if (sameType && handle == after_.handle(j) && (handle || realigns(i, j))) {
            matched(i++, j++);
            return;
        }
        const std::uint64_t gone = distance(after_, j, before_, i);   // records of `before` skipped
        const std::uint64_t added = distance(before_, i, after_, j);  // records of `after` skipped
        if (gone == kNowhere && added == kNowhere) {
            if (sameType) {
                matched(i++, j++);
            } else {
                recordRemoved(i++);
                recordInserted(j++);
            }
        } else if (added <= gone) {
            recordInserted(j++);
        } else {
            recordRemoved(i++);
        }
    }

    // Whether the drawings go on alike, record by record, after few records.
    bool realigns(RecordIndex i, RecordIndex j) const {
        constexpr RecordIndex kAhead = 16;
        for (RecordIndex step = 1; step <= kAhead; ++step) {
            const bool endA = i + step >= before_.size();
            const bool endB = j + step >= after_.size();
            if (endA || endB) return endA == endB;
            if (before_.raw(i + step) == after_.raw(j + step)) return true;
        }
        return false;
    }

    // How far behind record `from` of `other` the record `wanted` of `document` stands.
    static std::uint64_t distance(const Document& document, RecordIndex wanted,
                                  const Document& other, RecordIndex from) {
        if (const auto handle = document.handle(wanted)) {
            const auto found = other.find(*handle);
            return found && *found > from ? *found - from : kNowhere;
        }
        constexpr std::uint64_t kAhead = 256;
        const std::string_view raw = document.raw(wanted);
        for (std::uint64_t step = 1; step <= kAhead && from + step < other.size(); ++step) {
            if (other.raw(static_cast<RecordIndex>(from + step)) == raw) return step;
        }
        return kNowhere;
    }

    void recordInserted(RecordIndex record) {
        Difference difference;
        difference.kind = Difference::Kind::recordInserted;
        difference.after = record;
        difference.type = std::string(after_.type(record));
        difference.handle = after_.handle(record);
        difference.newValue = difference.type;
        difference.where = after_.position(record);
        give(difference);
    }

    void recordRemoved(RecordIndex record) {
        Difference difference;
        difference.kind = Difference::Kind::recordRemoved;
        difference.before = record;
        difference.type = std::string(before_.type(record));
        difference.handle = before_.handle(record);
        difference.oldValue = difference.type;
        difference.where = before_.position(record);
        give(difference);
    }

    void matched(RecordIndex i, RecordIndex j) {
        const GroupRange a = before_.groups(i);
        const GroupRange b = after_.groups(j);
        compareGroups(i, j, {a.begin(), a.end()}, {b.begin(), b.end()});
    }

    void compareGroups(std::optional<RecordIndex> i, std::optional<RecordIndex> j, const Groups& a,
                       const Groups& b) {
        recordBefore_ = i;
        recordAfter_ = j;
        std::size_t head = 0;
        while (head < a.size() && head < b.size() && same(a[head], b[head])) {
            spelling(a[head], head, b[head], head);
            ++head;
        }
        std::size_t tail = 0;
        while (head + tail < a.size() && head + tail < b.size() &&
               same(a[a.size() - tail - 1], b[b.size() - tail - 1])) {
            ++tail;
        }
        const auto middle = [head, tail](const Groups& all) {
            return Groups(all.begin() + static_cast<std::ptrdiff_t>(head),
                          all.end() - static_cast<std::ptrdiff_t>(tail));
        };
        compareMiddle(middle(a), middle(b), head);
        for (std::size_t at = tail; at > 0; --at) {
            spelling(a[a.size() - at], a.size() - at, b[b.size() - at], b.size() - at);
        }
    }

    void compareMiddle(const Groups& a, const Groups& b, std::size_t head) {
        constexpr std::size_t kLargestTable = 1U << 20;
        const bool sameCodes =
            a.size() == b.size() &&
            std::equal(a.begin(), a.end(), b.begin(),
                       [](const Group& x, const Group& y) { return x.code() == y.code(); });
        if (sameCodes) {
            for (std::size_t at = 0; at < a.size(); ++at) {
                pair(a[at], head + at, b[at], head + at);
            }
            return;
        }
        const bool small = (a.size() + 1) * (b.size() + 1) <= kLargestTable;
        follow(small ? shortestWay(a, b) : plainWay(a, b), a, b, head);
    }

    // Reports a way. Where groups are removed and inserted side by side, those of the same code are
    // one group that has changed.
    void follow(const std::vector<Step>& way, const Groups& a, const Groups& b, std::size_t head) {
        std::size_t at = 0;
        while (at < way.size()) {
            if (way[at].kind == Step::Kind::keep) {
                spelling(a[way[at].before], head + way[at].before, b[way[at].after],
                         head + way[at].after);
                ++at;
                continue;
            }
            std::vector<std::size_t> removed;
            std::vector<std::size_t> inserted;
            const std::size_t place = head + way[at].before;  // the first group not before the run
            for (; at < way.size() && way[at].kind != Step::Kind::keep; ++at) {
                if (way[at].kind == Step::Kind::remove) {
                    removed.push_back(way[at].before);
                } else {
                    inserted.push_back(way[at].after);
                }
            }
            followRun(removed, inserted, a, b, head, place);
        }
    }

    void followRun(const std::vector<std::size_t>& removed,
                   const std::vector<std::size_t>& inserted, const Groups& a, const Groups& b,
                   std::size_t head, std::size_t place) {
        std::size_t last =
            place == 0 ? 0 : place - 1;  // the group that an inserted one stands behind
        std::size_t next = 0;
        for (const std::size_t old : removed) {
            std::size_t match = next;
            while (match < inserted.size() && b[inserted[match]].code() != a[old].code()) ++match;
            if (match == inserted.size()) {
                group(Difference::Kind::removed, head + old, &a[old], nullptr, 0);
            } else {
                for (; next < match; ++next) {
                    group(Difference::Kind::inserted, last, nullptr, &b[inserted[next]],
                          head + inserted[next]);
                }
                pair(a[old], head + old, b[inserted[match]], head + inserted[match]);
                next = match + 1;
            }
            last = head + old;
        }
        for (; next < inserted.size(); ++next) {
            group(Difference::Kind::inserted, last, nullptr, &b[inserted[next]],
                  head + inserted[next]);
        }
    }

    void pair(const Group& a, std::size_t indexA, const Group& b, std::size_t indexB) {
        if (same(a, b)) {
            spelling(a, indexA, b, indexB);
        } else {
            group(Difference::Kind::changed, indexA, &a, &b, indexB);
        }
    }

    void spelling(const Group& a, std::size_t indexA, const Group& b, std::size_t indexB) {
        if (a.raw() != b.raw()) group(Difference::Kind::respelled, indexA, &a, &b, indexB);
    }

    void group(Difference::Kind kind, std::size_t index, const Group* a, const Group* b,
               std::size_t indexAfter) {
        Difference difference;
        difference.kind = kind;
        difference.before = recordBefore_;
        difference.after = recordAfter_;
        if (recordBefore_) {
            difference.type = std::string(before_.type(*recordBefore_));
            difference.handle = before_.handle(*recordBefore_);
        }
        difference.index = index;
        difference.code = a != nullptr ? a->code() : b->code();
        if (a != nullptr) difference.oldValue = valueText(*a, before_.binary());
        if (b != nullptr) difference.newValue = valueText(*b, after_.binary());
        difference.where = b != nullptr ? place(after_, recordAfter_, indexAfter)
                                        : place(before_, recordBefore_, index);
        give(difference);
    }

    static Position place(const Document& document, std::optional<RecordIndex> record,
                          std::size_t index) {
        if (record) return document.position(*record, index);
        if (document.binary()) return {Position::Unit::byte, kSentinelSize};
        return {Position::Unit::line, 2 * index + 1};
    }

    void give(const Difference& difference) {
        if (!stopped_) stopped_ = !report_(difference);
    }

    static constexpr std::uint64_t kNowhere = ~std::uint64_t{0};

    const Document& before_;
    const Document& after_;
    const std::function<bool(const Difference&)>& report_;
    std::optional<RecordIndex> recordBefore_;  // under comparison
    std::optional<RecordIndex> recordAfter_;
    bool stopped_ = false;
};

Difference::Kind kindOf(const GroupEdit& edit) {
    switch (edit.kind) {
        case GroupEdit::Kind::replace:
            return Difference::Kind::changed;
        case GroupEdit::Kind::insertAfter:
            return Difference::Kind::inserted;
        default:
            return Difference::Kind::recordRemoved;
    }
}

bool hasValue(const Difference& difference, const Document& before, const GroupEdit::Value& value) {
    if (const auto* real = std::get_if<double>(&value)) {
        return parseReal(difference.newValue) == *real;
    }
    if (const auto* integer = std::get_if<std::int64_t>(&value)) {
        return parseInteger(difference.newValue) == *integer;
    }
    return before.decode(difference.newValue) == std::get<std::wstring>(value);
}

}  // namespace

std::string Difference::text() const {
    if (kind == Kind::bytes) {
        return where.text() + ": bytes outside of groups: " + shown(oldValue) + " became " +
               shown(newValue);
    }
    std::string line = where.text() + ": " + (type.empty() ? "comment" : type);
    if (handle) {
        char digits[17];
        std::snprintf(digits, sizeof(digits), "%llX", static_cast<unsigned long long>(*handle));
        line += ' ';
        line += digits;
    }
    if (kind == Kind::recordInserted) return line + " inserted";
    if (kind == Kind::recordRemoved) return line + " removed";
    line += ", group " + std::to_string(code);
    switch (kind) {
        case Kind::inserted:
            return line + " inserted: " + shown(newValue);
        case Kind::removed:
            return line + " removed: " + shown(oldValue);
        case Kind::respelled:
            return line + ": other blanks or line end around " + shown(newValue);
        default:
            return line + ": " + shown(oldValue) + " became " + shown(newValue);
    }
}

void compare(const Document& before, const Document& after,
             const std::function<bool(const Difference&)>& report) {
    Comparer(before, after, report).run();
}

std::vector<Difference> compare(const Document& before, const Document& after) {
    std::vector<Difference> all;
    compare(before, after, [&all](const Difference& difference) {
        all.push_back(difference);
        return true;
    });
    return all;
}

namespace {

bool says(const Group& group, const Document& document, const GroupEdit& edit) {
    if (group.code() != edit.code) return false;
    if (const auto* real = std::get_if<double>(&edit.value)) return group.real() == *real;
    if (const auto* integer = std::get_if<std::int64_t>(&edit.value)) {
        return group.integer() == *integer;
    }
    const std::string value = group.type() == ValueType::chunk ? valueText(group, document.binary())
                                                               : std::string(group.bytes());
    return document.decode(value) == std::get<std::wstring>(edit.value);
}

// Whether the record is one of those that `edits` insert.
bool isNewRecord(const Document& document, RecordIndex record,
                 const std::vector<GroupEdit>& edits) {
    const GroupRange range = document.groups(record);
    const Groups groups(range.begin(), range.end());
    const auto matches = [&](auto edit) {
        for (const Group& group : groups) {
            const bool ended = edit == edits.end() || edit->kind != GroupEdit::Kind::insertBefore;
            if (ended || !says(group, document, *edit)) return false;
            ++edit;
        }
        return edit == edits.end() || edit->kind != GroupEdit::Kind::insertBefore ||
               edit->code == 0;
    };
    for (auto edit = edits.begin(); edit != edits.end(); ++edit) {
        if (edit->kind == GroupEdit::Kind::insertBefore && edit->code == 0 && matches(edit)) {
            return true;
        }
    }
    return false;
}

}  // namespace

bool isExpected(const Difference& difference, const Document& before, const Document& after,
                const Changes& changes) {
    if (difference.kind == Difference::Kind::recordInserted) {
        return std::any_of(changes.begin(), changes.end(), [&](const auto& change) {
            return isNewRecord(after, *difference.after, change.second);
        });
    }
    if (!difference.before) return false;
    const auto edits = changes.find(*difference.before);
    if (edits == changes.end()) return false;
    return std::any_of(edits->second.begin(), edits->second.end(), [&](const GroupEdit& edit) {
        return kindOf(edit) == difference.kind &&
               (edit.kind == GroupEdit::Kind::removeRecord ||
                (edit.code == difference.code && edit.index == difference.index &&
                 hasValue(difference, before, edit.value)));
    });
}

}  // namespace host::dxf
