// How a drawing's records hang together: its symbol tables and styles of multi-lines, its blocks
// and what they hold, the sub-entities of polylines and block references. Found out when it is
// first asked for, from record types and the few groups that say it.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "host/dxf/Document.h"

namespace host::database {

// An object of a database: the record that holds it, or from Document::size() on one that the
// drawing lacks.
using ObjectNumber = std::uint32_t;

// The symbol tables, and the dictionary of multi-line styles, which is looked into as they are.
enum class Table : std::uint8_t { block, layer, linetype, textStyle, mlineStyle };
constexpr int kTables = 4;  // symbol tables

class Structure {
  public:
    explicit Structure(const dxf::Document& document) : document_(document) {}

    // An object that every drawing has, though this one doesn't say it.
    struct Implied {
        Table table;
        bool isTable;  // the table itself, or one of its records
        std::wstring name;
    };
    // What `number`, which is no record's, stands for; null for an unknown one.
    const Implied* implied(ObjectNumber number) const;

    ObjectNumber tableObject(Table table) const;
    const std::vector<ObjectNumber>& tableRecords(Table table) const;
    // The record of this name, ignoring case. A layer that only entities name counts too.
    std::optional<ObjectNumber> find(Table table, std::wstring_view name) const;
    // The same without looking for layers that only entities name.
    std::optional<ObjectNumber> findListed(Table table, std::wstring_view name) const;

    ObjectNumber modelSpace() const;
    ObjectNumber paperSpace() const;
    // The block whose record is `number` ...
    struct Block {
        ObjectNumber object;
        std::wstring name;
        std::optional<dxf::RecordIndex> begin;  // its BLOCK
        dxf::RecordIndex end = 0;               // its ENDBLK, or what stands in its place
    };
    const Block* block(ObjectNumber number) const;
    // ... and its entities in the drawing's order.
    const std::vector<ObjectNumber>& entities(ObjectNumber block) const;
    // The block between whose BLOCK and ENDBLK the record stands.
    std::optional<ObjectNumber> enclosingBlock(dxf::RecordIndex record) const;

    // Sub-entities of a POLYLINE or INSERT: its VERTEX or ATTRIB records, from the first to behind
    // the last.
    struct Range {
        dxf::RecordIndex begin;
        dxf::RecordIndex end;
    };
    Range subEntities(dxf::RecordIndex owner) const;
    // The POLYLINE or INSERT of a VERTEX, ATTRIB or SEQEND; none for one that stands alone.
    std::optional<dxf::RecordIndex> ownerOfSubEntity(dxf::RecordIndex record) const;
    static bool isSubEntity(std::string_view type);

    // The class that the CLASSES section gives to a record type; empty when it doesn't tell.
    std::wstring declaredClass(std::string_view type) const;

  private:
    struct TableIndex {
        std::optional<ObjectNumber> object;
        std::vector<ObjectNumber> records;
        std::unordered_map<std::wstring, ObjectNumber> byName;
    };
    struct Tables {
        TableIndex tables[kTables + 1];
        std::vector<Block> blocks;  // in the drawing's order
        std::unordered_map<ObjectNumber, std::size_t> byObject;
        std::vector<std::pair<dxf::RecordIndex, std::size_t>> byBegin;
        std::vector<Implied> implied;
    };
    class Builder;

    Tables& tables() const;
    void addUsedLayers() const;
    std::vector<ObjectNumber> collectEntities(const Block& block) const;

    const dxf::Document& document_;
    mutable std::unique_ptr<Tables> tables_;
    mutable std::optional<std::map<std::string, std::wstring, std::less<>>> declaredClasses_;
    mutable bool usedLayersAdded_ = false;
    mutable std::unordered_map<ObjectNumber, std::vector<ObjectNumber>> entities_;
    mutable std::optional<dxf::RecordIndex> lastOwner_;
    mutable Range lastRange_{0, 0};
};

}  // namespace host::database
