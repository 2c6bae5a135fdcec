// The groups of an entity, as filters ask for them: what the drawing says, with what commands have
// changed since.
#pragma once

#include <dbid.h>
#include <gepnt3d.h>

#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace host::editor {

// Texts are decoded, points whole (10 with 20 and 30), angles in radians, handles and flags as the
// drawing has them.
using GroupValue = std::variant<std::wstring, double, long long, AcGePoint3d>;

class EntityGroups {
  public:
    explicit EntityGroups(AcDbObjectId entity) : entity_(entity) {}

    // All values of a group code. Codes that a drawing may leave out have their meaning all the
    // same: 6 "BYLAYER", 8 "0", 62 256, 60 and 67 0, 410 "Model", 50 0, 38 and 39 0, 210 (0, 0, 1),
    // 7 "STANDARD".
    std::vector<GroupValue> values(int code) const;

    // All groups in their order, as they stand: those of an embedded object and extended data are
    // left out, and so are chunks of bytes and numbers that are none.
    std::vector<std::pair<int, GroupValue>> all() const;

  private:
    std::vector<GroupValue> stored(int code) const;
    std::vector<GroupValue> classNames() const;

    AcDbObjectId entity_;
};

}  // namespace host::editor
