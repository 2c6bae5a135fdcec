#include "host/console/Narrowing.h"

#include <acutads.h>

#include <algorithm>
#include <cstddef>

#include "host/database/Drawing.h"
#include "host/editor/Drawn.h"
#include "host/editor/EntityFigure.h"
#include "host/editor/Words.h"

namespace host::console {

namespace {

bool matches(const std::wstring& text, const std::string& pattern) {
    return acutWcMatchEx(text.c_str(), editor::fromUtf8(pattern).c_str(), true);
}

bool passes(AcDbObjectId entity, const Filter& filter, database::LayerStates& layers) {
    using Kind = Filter::Kind;
    const auto box = [&] {
        const auto& c = filter.corners;
        return editor::PlanBox::around({c[0], c[1]}, {c[2], c[3]});
    };
    switch (filter.kind) {
        case Kind::all:
            return true;
        case Kind::layer:
            return matches(layers.of(entity).name, filter.pattern);
        case Kind::type:
            return matches(database::recordName(entity), filter.pattern);
        case Kind::handle:
            return std::any_of(
                filter.handles.begin(), filter.handles.end(), [&](const std::string& handle) {
                    return database::idFromHandle(*entity.database(), editor::fromUtf8(handle)) ==
                           entity;
                });
        case Kind::window:
            return database::isVisible(entity) && editor::planFigure(entity).inside(box());
        case Kind::crossing:
            return database::isVisible(entity) && editor::planFigure(entity).crosses(box());
    }
    return false;
}

}  // namespace

bool selectsAll(const std::vector<Filter>& filters) {
    return std::all_of(filters.begin(), filters.end(),
                       [](const Filter& filter) { return filter.kind == Filter::Kind::all; });
}

std::string described(const std::vector<Filter>& filters) {
    std::string text;
    for (const Filter& filter : filters) text += (text.empty() ? "" : ", ") + filter.text;
    return text;
}

std::vector<AcDbObjectId> passing(const AcDbDatabase& drawing, const std::vector<Filter>& filters) {
    std::vector<AcDbObjectId> entities = editor::Drawn(drawing).entities();
    database::LayerStates layers;
    for (const Filter& filter : filters)
        entities.erase(
            std::remove_if(entities.begin(), entities.end(),
                           [&](AcDbObjectId entity) { return !passes(entity, filter, layers); }),
            entities.end());
    return entities;
}

Narrowed narrowed(const AcDbDatabase& drawing, const std::vector<Filter>& filters) {
    Narrowed found;
    database::LayerStates layers;
    for (const AcDbObjectId entity : passing(drawing, filters)) {
        const database::LayerState& layer = layers.of(entity);
        if (!layer.frozen) (layer.locked ? found.lockedOut : found.entities).push_back(entity);
    }
    return found;
}

std::vector<AcDbObjectId> linesOn(const AcDbDatabase& drawing, const std::string& layer) {
    const std::wstring name = editor::fromUtf8(layer);
    std::vector<AcDbObjectId> lines;
    database::LayerStates layers;
    for (const AcDbObjectId entity : editor::Drawn(drawing).entities())
        if (editor::isLine(entity) && editor::equalIgnoringCase(layers.of(entity).name, name))
            lines.push_back(entity);
    return lines;
}

}  // namespace host::console
