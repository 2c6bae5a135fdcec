#include "host/editor/DrawingView.h"

#include <algorithm>
#include <optional>

#include "host/database/Drawing.h"
#include "host/editor/Drawn.h"
#include "host/editor/Words.h"

namespace host::editor {

namespace {

using View = Session::Implementation::View;

std::optional<double> real(const dxf::GroupRange& groups, int code) {
    const auto group = groups.find(code);
    return group ? group->real() : std::nullopt;
}

std::optional<View> viewOf(const dxf::GroupRange& center, int xCode,
                           const dxf::GroupRange& height) {
    const auto value = real(height, 40);
    if (!value || !(*value > 0.0)) return std::nullopt;
    return View{{real(center, xCode).value_or(0.0), real(center, xCode + 10).value_or(0.0), 0.0},
                *value};
}

std::optional<View> activeViewport(const dxf::Document& document) {
    for (dxf::RecordIndex record = 0; record < document.size(); ++record) {
        const dxf::Section section = document.section(record);
        if (section == dxf::Section::blocks || section == dxf::Section::entities) break;
        if (section != dxf::Section::tables || document.type(record) != "VPORT") continue;
        const dxf::GroupRange groups = document.groups(record);
        const auto name = groups.find(2);
        if (name && equalIgnoringCase(trimmed(document.decode(name->bytes())), L"*ACTIVE")) {
            return viewOf(groups, 12, groups);
        }
    }
    return std::nullopt;
}

View everything(AcDbDatabase& drawing) {
    const PlanBox box = Drawn(drawing).extents();
    if (box.empty()) return {};
    const double height = std::max(box.max.y - box.min.y, box.max.x - box.min.x);
    return {{(box.min.x + box.max.x) / 2.0, (box.min.y + box.max.y) / 2.0, 0.0},
            height > 0.0 ? height : 1.0};
}

}  // namespace

View savedView(AcDbDatabase& drawing) {
    const dxf::Document& document = database::document(drawing);
    if (const auto view = activeViewport(document)) return *view;
    const auto center = document.headerVariable("$VIEWCTR");
    if (const auto view = viewOf(center, 10, document.headerVariable("$VIEWSIZE"))) return *view;
    return everything(drawing);
}

}  // namespace host::editor
