#include "host/picture/Layers.h"

#include <cstdlib>

#include "host/database/ObjectFields.h"

namespace host::picture {

const Layer& Layers::named(const std::wstring& name) {
    const auto known = known_.find(name);
    if (known != known_.end()) return known->second;
    Layer layer;
    layer.name = name;
    layer.color = indexedColor(7);
    if (const auto number = database_.find(database::Table::layer, name)) {
        database::LayerFields read;
        const auto& fields =
            static_cast<const database::LayerFields&>(database_.fieldsAt(*number, read));
        layer.name = fields.name;
        layer.color = indexedColor(std::abs(fields.color));
        layer.isOff = fields.color < 0;
        layer.isFrozen = (fields.flags & database::LayerFields::kFrozen) != 0;
        layer.linetype = fields.linetype;
        if (const auto record = database_.recordOf(*number)) {
            const dxf::GroupRange groups = database_.document().groups(*record);
            const auto whole = [&](int code) {
                const auto group = groups.find(code);
                return group ? group->integer() : std::nullopt;
            };
            if (const auto value = whole(420)) layer.color = trueColor(*value);
            if (const auto value = whole(370)) layer.weight = static_cast<int>(*value);
        }
    }
    return known_.emplace(name, std::move(layer)).first->second;
}

}  // namespace host::picture
