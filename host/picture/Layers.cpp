#include "host/picture/Layers.h"

#include <cstdlib>

#include "host/database/ObjectFields.h"

namespace host::picture {

const Layer& Layers::named(const std::wstring& name) {
    const auto known = known_.find(name);
    if (known != known_.end()) return known->second;
    Layer layer{name, indexedColor(7), true};
    if (const auto number = database_.find(database::Table::layer, name)) {
        database::LayerFields read;
        const auto& fields =
            static_cast<const database::LayerFields&>(database_.fieldsAt(*number, read));
        layer.name = fields.name;
        layer.color = indexedColor(std::abs(fields.color));
        layer.visible = fields.color >= 0 && (fields.flags & database::LayerFields::kFrozen) == 0;
        if (const auto record = database_.recordOf(*number)) {
            const auto own = database_.document().groups(*record).find(420);
            const auto value = own ? own->integer() : std::nullopt;
            if (value) layer.color = trueColor(*value);
        }
    }
    return known_.emplace(name, std::move(layer)).first->second;
}

}  // namespace host::picture
