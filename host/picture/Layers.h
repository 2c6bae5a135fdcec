// The layers of a drawing as a picture shows them.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>

#include "host/database/DatabaseImp.h"
#include "host/picture/Colors.h"

namespace host::picture {

struct Layer {
    std::wstring name;
    Rgb color;
    bool isFrozen = false;
    bool isOff = false;
    std::wstring linetype = L"CONTINUOUS";
    int weight = -3;  // as a pen's
};

class Layers {
  public:
    explicit Layers(const AcDbImpDatabase& database) : database_(database) {}

    // The layer of this name in any case; one that the drawing does not list is visible and of
    // colour 7.
    const Layer& named(const std::wstring& name);

  private:
    const AcDbImpDatabase& database_;
    std::unordered_map<std::wstring, Layer> known_;
};

}  // namespace host::picture
