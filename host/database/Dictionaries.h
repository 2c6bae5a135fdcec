// Dictionaries of a drawing: objects by name, as its OBJECTS section lists them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/dxf/Document.h"

namespace host::database {

// The dictionary of the styles of multi-lines, and the one that every drawing has.
constexpr const wchar_t* kMlineStyles = L"ACAD_MLINESTYLE";
constexpr const wchar_t* kStandardMline = L"STANDARD";

struct DictionaryEntry {
    std::wstring name;
    std::uint64_t handle;  // 0 when the drawing gives none
};
// In the drawing's order.
std::vector<DictionaryEntry> dictionaryEntries(const dxf::Document& document,
                                               dxf::RecordIndex dictionary);

// The first one, which names all others; none in a drawing without objects.
std::optional<dxf::RecordIndex> rootDictionary(const dxf::Document& document);
std::optional<dxf::RecordIndex> mlineStyleDictionary(const dxf::Document& document);

}  // namespace host::database
