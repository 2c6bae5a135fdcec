// A drawing as a database: reading and saving it, and what the host itself asks of it.
//
// Functions of this header are the host's own: they count for no ordered failure and open nothing.
#pragma once

#include <dbmain.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "host/dxf/Edit.h"

namespace host::database {

// Reads the drawing at `path`. Raises dxf::ReadError. The database is not made the working one.
std::unique_ptr<AcDbDatabase> readDrawing(const std::filesystem::path& path,
                                          const dxf::Progress& progress = {});
// The same over a document at hand.
std::unique_ptr<AcDbDatabase> drawingOf(std::shared_ptr<const dxf::Document> document);

// The drawing as it was read, and what its database has that differs: nothing for a field that was
// set back to what stands in the drawing. Erased entities are taken out together with their
// sub-entities; new ones stand behind the last one of their block, new symbols behind the last one
// of their table. What the drawing lacks for them (a section, a table) is made.
const dxf::Document& document(const AcDbDatabase& database);
dxf::Changes pendingChanges(const AcDbDatabase& database);

// Writes the drawing with its changes to `path`, as dxf::save does. Raises dxf::WriteError;
// everything is as before then.
void saveDrawing(const AcDbDatabase& database, const std::filesystem::path& path,
                 const dxf::Progress& progress = {});

// Objects by their records, and the reverse; none for an object that the drawing lacks.
AcDbObjectId idOf(const AcDbDatabase& database, dxf::RecordIndex record);
std::optional<dxf::RecordIndex> recordOf(AcDbObjectId id);

// The object with this handle, hexadecimal and in either case; null when there is none.
AcDbObjectId idFromHandle(const AcDbDatabase& database, std::wstring_view handle);
AcDbObjectId idFromHandle(const AcDbDatabase& database, std::uint64_t handle);
// Whether the object was put into the database, rather than read with the drawing.
bool isNew(AcDbObjectId id);
// Upper case without leading zeros; empty for an object without a handle.
std::wstring handleText(AcDbObjectId id);

// "AcDbText", and "TEXT"; empty for an id that names nothing. An object that the drawing lacks has
// no record name.
std::wstring className(AcDbObjectId id);
std::wstring recordName(AcDbObjectId id);

// The groups of the object's own record as saving would write them, when they differ from those of
// the drawing or the drawing has none; empty for an object that is as it was read.
std::vector<dxf::GroupEdit> changedGroups(AcDbObjectId id);

// The entities of model space in the drawing's order, erased ones left out; those of any block.
std::vector<AcDbObjectId> modelSpaceIds(const AcDbDatabase& database);
std::vector<AcDbObjectId> blockIds(AcDbObjectId block);

// How an entity's layer stands.
struct LayerState {
    std::wstring name;
    bool frozen = false;
    bool locked = false;
    bool off = false;
    int color = 7;
};
LayerState layerState(AcDbObjectId entity);

// The same for many entities of one drawing, each layer looked at once: while no layer changes.
class LayerStates {
  public:
    const LayerState& of(AcDbObjectId entity);

  private:
    std::unordered_map<std::wstring, LayerState> byName_;
};

// Whether an entity can be seen: its layer neither frozen nor off, itself not invisible, not
// erased.
bool isVisible(AcDbObjectId entity);

// Why the object doesn't open: coordinates that are no numbers, with line or byte, what was
// expected and what stands there. Empty for one that opens.
std::wstring unreadableReason(AcDbObjectId id);

// Gives back every opening of the database's objects and tells which there were, as the ledger
// does.
std::vector<std::string> closeLeftOpen(AcDbDatabase& database);

}  // namespace host::database
