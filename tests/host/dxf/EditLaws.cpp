// Laws of editing, over random edits of our own drawings.
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cmath>

#include "host/dxf/Compare.h"
#include "tests/host/dxf/Drawings.h"

namespace host::dxf {
namespace {

const std::vector<std::shared_ptr<const Document>>& drawings() {
    static const auto all = [] {
        std::vector<std::shared_ptr<const Document>> open;
        for (const auto& path : test::drawingsOf(test::dataFolder() / "releases")) {
            open.push_back(Document::open(path));
        }
        return open;
    }();
    return all;
}

double anyReal() {
    const double mantissa = *rc::gen::inRange(-1000000, 1000000) + 0.001953125;
    const int exponent = *rc::gen::inRange(-300, 280);
    return *rc::gen::element(mantissa, mantissa * 25.4, std::ldexp(mantissa, exponent));
}

GroupEdit::Value anyValue(int code) {
    switch (valueType(code)) {
        case ValueType::real:
            return anyReal();
        case ValueType::int16:
            return static_cast<std::int64_t>(*rc::gen::inRange(-32768, 32768));
        case ValueType::int32:
            return static_cast<std::int64_t>(*rc::gen::arbitrary<std::int32_t>());
        case ValueType::int64:
            return *rc::gen::arbitrary<std::int64_t>();
        case ValueType::boolean:
            return static_cast<std::int64_t>(*rc::gen::inRange(0, 2));
        case ValueType::handle:
            return L"A" + std::to_wstring(*rc::gen::inRange(0, 100000));
        default:
            return *rc::gen::container<std::wstring>(rc::gen::element<wchar_t>(
                L'a', L' ', L'\\', L'U', L'+', L'0', L'\u00E4', L'\u0416', L'\u20AC', L'\uFF71'));
    }
}

// One edit per record at most two groups apart, so that each difference has one edit to come from.
Changes anyChanges(const Document& document) {
    Changes changes;
    const auto count = *rc::gen::inRange<std::size_t>(1, 12);
    for (std::size_t at = 0; at < count; ++at) {
        const auto record = *rc::gen::inRange<RecordIndex>(0, document.size());
        if (document.type(record) == "SECTION") continue;  // its name follows its group 0
        const GroupRange range = document.groups(record);
        const std::vector<Group> groups(range.begin(), range.end());
        const auto index = *rc::gen::inRange<std::size_t>(0, groups.size());
        const int old = groups[index].code();
        if (*rc::gen::arbitrary<bool>() && old != 0 && old != 2 && old != 9 && old != 5 &&
            old != 105 && valueType(old) != ValueType::chunk) {
            changes[record] = {{GroupEdit::Kind::replace, index, old, anyValue(old)}};
        } else {
            const int code = *rc::gen::element(50, 40, 1, 70, 90, 290, 1040, 1071, 160, 340, 4);
            changes[record] = {{GroupEdit::Kind::insertAfter, index, code, anyValue(code)}};
        }
    }
    return changes;
}

// What a document says at the place of an edit.
bool holds(const Document& after, RecordIndex record, const GroupEdit& edit) {
    const GroupRange range = after.groups(record);
    const std::vector<Group> groups(range.begin(), range.end());
    const bool inserts = edit.kind == GroupEdit::Kind::insertAfter;
    const Group& group = groups.at(edit.index + (inserts ? 1 : 0));
    if (group.code() != edit.code) return false;
    if (const auto* real = std::get_if<double>(&edit.value)) return group.real() == *real;
    if (const auto* integer = std::get_if<std::int64_t>(&edit.value)) {
        return group.integer() == *integer;
    }
    // Text that looks like an escape is one when it is read back.
    const auto& text = std::get<std::wstring>(edit.value);
    return text.find(L'\\') != std::wstring::npos || after.decode(group.bytes()) == text;
}

RC_GTEST_PROP(EditLaws, ReadingBackGivesTheEditedValuesToTheBit, ()) {
    const auto& document = *rc::gen::elementOf(drawings());
    const Changes changes = anyChanges(*document);
    const auto after = Document::fromBytes(dxf::apply(*document, changes), "after.dxf");
    RC_ASSERT(after->size() == document->size());
    for (const auto& [record, edits] : changes) {
        for (const GroupEdit& edit : edits) RC_ASSERT(holds(*after, record, edit));
    }
}

RC_GTEST_PROP(EditLaws, ComparingListsExactlyTheEdits, ()) {
    const auto& document = *rc::gen::elementOf(drawings());
    const Changes changes = anyChanges(*document);
    const auto after = Document::fromBytes(dxf::apply(*document, changes), "after.dxf");
    std::size_t effective = 0;
    for (const auto& change : changes) {
        effective += after->raw(change.first) == document->raw(change.first) ? 0 : 1;
    }
    const std::vector<Difference> differences = compare(*document, *after);
    RC_ASSERT(differences.size() == effective);
    for (const Difference& difference : differences) {
        RC_ASSERT(difference.before && changes.count(*difference.before) == 1);
        RC_ASSERT(difference.code == changes.at(*difference.before).front().code);
    }
}

RC_GTEST_PROP(EditLaws, UntouchedRecordsKeepTheirBytes, ()) {
    const auto& document = *rc::gen::elementOf(drawings());
    const Changes changes = anyChanges(*document);
    const auto after = Document::fromBytes(dxf::apply(*document, changes), "after.dxf");
    for (RecordIndex record = 0; record < document->size(); ++record) {
        if (changes.count(record) == 0) RC_ASSERT(after->raw(record) == document->raw(record));
    }
    RC_ASSERT(after->trailer() == document->trailer());
}

RC_GTEST_PROP(EditLaws, EditingTwiceTheSameChangesNothingMore, ()) {
    const auto& document = *rc::gen::elementOf(drawings());
    Changes replacements;
    for (const auto& [record, edits] : anyChanges(*document)) {
        if (edits.front().kind == GroupEdit::Kind::replace) replacements[record] = edits;
    }
    const std::string once = dxf::apply(*document, replacements);
    RC_ASSERT(dxf::apply(*Document::fromBytes(once, "once.dxf"), replacements) == once);
}

}  // namespace
}  // namespace host::dxf
