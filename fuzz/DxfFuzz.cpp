// Any bytes: refused with a place, or read, walked through, kept to the byte, edited and compared.
#include <cstdlib>
#include <stdexcept>
#include <string>

#include "host/dxf/Compare.h"
#include "host/dxf/Edit.h"

namespace {

using namespace host::dxf;

void demand(bool holds) {
    if (!holds) std::abort();
}

void walk(const Document& document) {
    std::size_t size =
        static_cast<std::size_t>(document.preamble().raw().data() - document.bytes().data()) +
        document.preamble().raw().size();
    for (RecordIndex record = 0; record < document.size(); ++record) {
        for (const Group& group : document.groups(record)) {
            size += group.raw().size();
            document.decode(group.bytes());
            demand(!(group.real() && group.integer()));
        }
        const auto handle = document.handle(record);
        demand(!handle || document.find(*handle).value() <= record);
    }
    demand(size + document.trailer().size() == document.bytes().size());
    document.headerVariable("$ACADVER");
}

// One edit, chosen by the bytes themselves.
Changes anEdit(const Document& document, std::size_t choice) {
    const auto record = static_cast<RecordIndex>(choice % document.size());
    const GroupRange groups = document.groups(record);
    std::size_t count = 0;
    for (auto at = groups.begin(); at != groups.end(); ++at) ++count;
    const std::size_t index = choice / 7 % count;
    switch (choice % 3) {
        case 0:
            return {{record, {{GroupEdit::Kind::insertAfter, index, 50, 97.5}}}};
        case 1:
            return {{record, {{GroupEdit::Kind::insertAfter, index, 1, L"\u00E4\u0416"}}}};
        default:
            return {{record, {{GroupEdit::Kind::insertAfter, index, 70, std::int64_t{-3}}}}};
    }
}

void edit(const Document& document, std::size_t choice) {
    const Changes changes = anEdit(document, choice);
    std::string bytes;
    try {
        bytes = host::dxf::apply(document, changes);
    } catch (const std::invalid_argument&) {
        return;  // behind EOF
    }
    const auto after = Document::fromBytes(bytes, "after.dxf");
    demand(after->size() == document.size());
    demand(!compare(document, *after).empty());
    demand(compare(*after, *after).empty());
    const RecordIndex record = changes.begin()->first;
    for (RecordIndex other = 0; other < document.size(); ++other) {
        demand(other == record || after->raw(other) == document.raw(other));
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    try {
        const auto document = Document::fromBytes(bytes, "fuzz.dxf");
        demand(host::dxf::apply(*document, {}) == bytes);
        walk(*document);
        edit(*document, size == 0 ? 0 : size + data[size / 2]);
    } catch (const ReadError& error) {
        demand(error.where().has_value() && !error.found().empty());
    }
    return 0;
}
