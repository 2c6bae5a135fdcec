#include "host/database/Dictionaries.h"

#include <dbdict.h>

#include "host/database/DatabaseImp.h"
#include "host/database/Fault.h"
#include "host/database/Names.h"
#include "host/database/ObjectFields.h"
#include "host/database/ObjectImp.h"

using namespace host::database;

ACRX_DXF_DEFINE_MEMBERS(AcDbDictionary, AcDbObject, 0, 0, 0, DICTIONARY, ObjectDBX)

namespace host::database {

std::vector<DictionaryEntry> dictionaryEntries(const dxf::Document& document,
                                               dxf::RecordIndex dictionary) {
    constexpr int kName = 3;
    constexpr int kSoftOwner = 350;
    constexpr int kHardOwner = 360;
    std::vector<DictionaryEntry> entries;
    bool inBraces = false;
    for (const dxf::Group& group : document.groups(dictionary)) {
        if (group.code() == 102) inBraces = !inBraces;
        if (inBraces) continue;
        if (group.code() == kName) entries.push_back({document.decode(group.bytes()), 0});
        const bool isObject = group.code() == kSoftOwner || group.code() == kHardOwner;
        if (isObject && !entries.empty()) entries.back().handle = group.handle().value_or(0);
    }
    return entries;
}

std::optional<dxf::RecordIndex> rootDictionary(const dxf::Document& document) {
    for (dxf::RecordIndex record = 0; record < document.size(); ++record) {
        const bool isObject = document.section(record) == dxf::Section::objects;
        if (isObject && document.type(record) == "DICTIONARY") return record;
    }
    return std::nullopt;
}

std::optional<dxf::RecordIndex> mlineStyleDictionary(const dxf::Document& document) {
    const auto root = rootDictionary(document);
    if (!root) return std::nullopt;
    for (const DictionaryEntry& entry : dictionaryEntries(document, *root)) {
        if (!sameName(entry.name, kMlineStyles)) continue;
        const auto found = document.find(entry.handle);
        if (found && document.type(*found) == "DICTIONARY") return found;
    }
    return std::nullopt;
}

}  // namespace host::database

namespace {

std::optional<ObjectNumber> numberOf(const AcDbImpDatabase& database, ObjectNumber dictionary,
                                     const ACHAR* name) {
    const host::dxf::Document& document = database.document();
    if (const auto record = database.recordOf(dictionary)) {
        for (const DictionaryEntry& entry : dictionaryEntries(document, *record)) {
            if (sameName(entry.name, name)) return document.find(entry.handle);
        }
    }
    const bool holdsStyles = dictionary == database.structure().tableObject(Table::mlineStyle);
    return holdsStyles ? database.find(Table::mlineStyle, name) : std::nullopt;
}

}  // namespace

AcDbDictionary::AcDbDictionary() {
    impl()->setFields(std::make_unique<NoFields>());
}

Acad::ErrorStatus AcDbDictionary::getAt(const ACHAR* name, AcDbObjectId& id) const {
    HOST_CALL("AcDbDictionary::getAt");
    if (!impl()->mayRead()) return Acad::eNotOpenForRead;
    if (name == nullptr) return Acad::eInvalidInput;
    const AcDbImpDatabase* const database = impl()->database();
    if (database == nullptr) return Acad::eKeyNotFound;
    const auto number = numberOf(*database, AcDbImpDatabase::numberOf(objectId()), name);
    if (!number || !database->isObject(*number)) return Acad::eKeyNotFound;
    if (database->isErased(*number)) return Acad::eWasErased;
    id = database->idOf(*number);
    return Acad::eOk;
}

bool AcDbDictionary::has(const ACHAR* name) const {
    const host::fault::Quiet quiet;
    AcDbObjectId id;
    return getAt(name, id) == Acad::eOk;
}
