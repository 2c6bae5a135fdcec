#include "host/editor/EntityName.h"

#include "host/database/Drawing.h"

namespace host::editor {

std::wstring entityName(AcDbObjectId entity) {
    const std::wstring type = database::recordName(entity);
    const std::wstring handle = database::handleText(entity);
    return (type.empty() ? L"entity" : type) + L" " +
           (handle.empty() ? L"without a handle" : handle);
}

std::wstring entityOnLayer(AcDbObjectId entity) {
    return entityName(entity) + L" on layer " + database::layerState(entity).name;
}

}  // namespace host::editor
