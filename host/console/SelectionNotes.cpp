#include "host/console/SelectionNotes.h"

#include <acdbads.h>
#include <dbmain.h>
#include <dbsymtb.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <map>
#include <unordered_set>
#include <utility>

#include "host/console/Narrowing.h"
#include "host/database/Drawing.h"
#include "host/database/Fault.h"
#include "host/editor/Drawn.h"
#include "host/editor/EntityName.h"
#include "host/editor/Layers.h"
#include "host/editor/Nearest.h"
#include "host/editor/Words.h"

namespace host::console {

namespace {

using editor::fromUtf8;
using editor::toUtf8;
using Ids = std::vector<AcDbObjectId>;
using Names = std::vector<std::wstring>;

std::string joined(const std::vector<std::string>& parts) {
    std::string text;
    for (const std::string& part : parts) text += (text.empty() ? "" : ", ") + part;
    return text;
}

std::string counted(std::size_t count, const char* one, const char* many) {
    return std::to_string(count) + " " + (count == 1 ? one : many);
}

// "KATU 27, RAKENNUS 12 and 3 more": the most frequent first, those alike by name.
std::string frequencies(const Ids& entities,
                        const std::function<std::wstring(AcDbObjectId)>& nameOf) {
    constexpr std::size_t most = 12;
    std::map<std::wstring, std::size_t> counts;
    for (const AcDbObjectId entity : entities) ++counts[nameOf(entity)];
    std::vector<std::pair<std::wstring, std::size_t>> sorted(counts.begin(), counts.end());
    std::stable_sort(sorted.begin(), sorted.end(),
                     [](const auto& a, const auto& b) { return a.second > b.second; });
    std::vector<std::string> parts;
    for (std::size_t i = 0; i < sorted.size() && i < most; ++i)
        parts.push_back(toUtf8(sorted[i].first) + " " + std::to_string(sorted[i].second));
    const std::string more =
        sorted.size() > most ? " and " + std::to_string(sorted.size() - most) + " more" : "";
    return joined(parts) + more;
}

std::string layersOf(const Ids& entities) {
    database::LayerStates layers;
    return frequencies(entities, [&](AcDbObjectId entity) { return layers.of(entity).name; });
}

// The names of a pattern that can only mean themselves.
Names plainNames(const std::string& pattern) {
    Names plain;
    for (const std::wstring& name : editor::split(fromUtf8(pattern), L','))
        if (name.find_first_of(L"#@.*?~[]`") == std::wstring::npos) plain.push_back(name);
    return plain;
}

bool hasName(const Names& names, const std::wstring& name) {
    return std::any_of(names.begin(), names.end(), [&](const std::wstring& each) {
        return editor::equalIgnoringCase(each, name);
    });
}

Names layerNames(const AcDbDatabase& drawing) {
    const fault::Quiet quiet;
    Names names;
    editor::forEachLayer(const_cast<AcDbDatabase&>(drawing),
                         [&](const AcDbLayerTableRecord& layer) {
                             const ACHAR* name = nullptr;
                             if (layer.getName(name) == Acad::eOk && name != nullptr)
                                 names.emplace_back(name);
                         });
    return names;
}

Names typesOf(const Ids& entities) {
    Names types;
    for (const AcDbObjectId entity : entities) {
        const std::wstring type = database::recordName(entity);
        if (!hasName(types, type)) types.push_back(type);
    }
    return types;
}

// "no layer KATUU (did you mean KATU?)"
std::string noSuch(const std::string& what, const std::wstring& name, const Names& names) {
    const std::wstring meant = editor::nearest(name, names);
    return what + toUtf8(name + (meant.empty() ? L"" : L" (did you mean " + meant + L"?)"));
}

// The filters that let nothing pass even by themselves, and what there is instead.
std::string whatThereIs(const AcDbDatabase& drawing, const Filter& filter, const Ids& all) {
    using Kind = Filter::Kind;
    switch (filter.kind) {
        case Kind::layer:
            return "entities are on " + layersOf(all);
        case Kind::type:
            return "there are " + frequencies(all, database::recordName);
        case Kind::window:
        case Kind::crossing: {
            const editor::PlanBox box = editor::Drawn(drawing).extents();
            if (box.empty()) return {};
            return "the drawing reaches from " +
                   toUtf8(editor::numberText(box.min.x) + L"," + editor::numberText(box.min.y) +
                          L" to " + editor::numberText(box.max.x) + L"," +
                          editor::numberText(box.max.y));
        }
        default:
            return {};
    }
}

// "layer TARKISTETTU is locked": of entities on layers that are locked or frozen, all of them.
std::string layersThatForbid(const Ids& entities) {
    std::vector<std::string> parts;
    Names known;
    database::LayerStates layers;
    for (const AcDbObjectId entity : entities) {
        const database::LayerState& layer = layers.of(entity);
        if (hasName(known, layer.name)) continue;
        known.push_back(layer.name);
        parts.push_back("layer " + toUtf8(layer.name) + " is " +
                        (layer.frozen ? "frozen" : "locked"));
    }
    return joined(parts);
}

std::string asGiven(const std::vector<Filter>& filters) {
    std::string text;
    for (const Filter& filter : filters) text += " --select " + filter.text;
    return text;
}

}  // namespace

std::vector<std::string> lackingHandles(const AcDbDatabase& drawing,
                                        const std::vector<Filter>& filters) {
    std::vector<std::string> missing;
    const Ids all = editor::Drawn(drawing).entities();
    const std::unordered_set<AcDbObjectId> known(all.begin(), all.end());
    for (const Filter& filter : filters)
        for (const std::string& handle : filter.handles)
            if (known.count(database::idFromHandle(drawing, fromUtf8(handle))) == 0)
                missing.push_back(handle);
    return missing;
}

std::vector<std::string> lacking(const AcDbDatabase& drawing, const std::vector<Filter>& filters) {
    std::vector<std::string> sentences;
    for (const Filter& filter : filters) {
        const bool isLayer = filter.kind == Filter::Kind::layer;
        if (!isLayer && filter.kind != Filter::Kind::type) continue;
        const Names names =
            isLayer ? layerNames(drawing) : typesOf(editor::Drawn(drawing).entities());
        const std::string what =
            isLayer ? "There is no layer " : "There is no entity of the class ";
        for (const std::wstring& name : plainNames(filter.pattern))
            if (!hasName(names, name)) sentences.push_back(noSuch(what, name, names) + ".");
    }
    return sentences;
}

std::string whyNothing(const AcDbDatabase& drawing, const std::vector<Filter>& filters) {
    const Ids all = editor::Drawn(drawing).entities();
    if (all.empty()) return "there is no entity in the drawing";
    const std::vector<std::string> handles = lackingHandles(drawing, filters);
    if (!handles.empty())
        return std::string("the drawing has no entity with the ") +
               (handles.size() == 1 ? "handle " : "handles ") + joined(handles);
    const Ids found = passing(drawing, filters);
    if (!found.empty())
        return counted(found.size(), "entity passes", "entities pass") + asGiven(filters) +
               ", but " + layersThatForbid(found);
    std::string text = "no entity passes" + asGiven(filters);
    for (const std::string& sentence : lacking(drawing, filters)) {
        std::string part = sentence.substr(0, sentence.size() - 1);
        part.front() = 't';
        text += "; " + part;
    }
    for (const Filter& filter : filters) {
        const std::size_t alone = passing(drawing, {filter}).size();
        const std::string instead = alone == 0 ? whatThereIs(drawing, filter, all) : std::string();
        if (!instead.empty())
            text += "; " + instead;
        else if (filters.size() > 1)
            text += "; " + filter.text + " by itself: " + std::to_string(alone);
    }
    return text;
}

std::string whyNoLine(const AcDbDatabase& drawing, const std::string& layer) {
    constexpr std::size_t most = 20;
    const Ids lines = linesOn(drawing, layer);
    if (!lines.empty()) {
        std::vector<std::string> names;
        for (std::size_t i = 0; i < lines.size() && i < most; ++i)
            names.push_back(toUtf8(editor::entityName(lines[i])));
        const std::string more =
            lines.size() > most ? " and " + std::to_string(lines.size() - most) + " more" : "";
        return std::to_string(lines.size()) + " lines lie on layer " + layer +
               ", not one: " + joined(names) + more + "; --line handle=2F names one";
    }
    const Names names = layerNames(drawing);
    Ids all = editor::Drawn(drawing).entities();
    all.erase(std::remove_if(all.begin(), all.end(),
                             [](AcDbObjectId entity) { return !editor::isLine(entity); }),
              all.end());
    const std::string instead =
        all.empty() ? "the drawing has no lines" : "lines are on " + layersOf(all);
    return (hasName(names, fromUtf8(layer))
                ? "no line lies on layer " + layer
                : noSuch("there is no layer ", fromUtf8(layer), names)) +
           "; " + instead;
}

}  // namespace host::console
