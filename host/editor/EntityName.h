// What the host calls an entity when it speaks of one.
#pragma once

#include <dbid.h>

#include <string>

namespace host::editor {

// "LWPOLYLINE 2F", "POLYLINE without a handle"; "entity" stands for a type that nothing tells.
std::wstring entityName(AcDbObjectId entity);

// The same with its layer: "LWPOLYLINE 2F on layer KATU".
std::wstring entityOnLayer(AcDbObjectId entity);

}  // namespace host::editor
