// Filters of selections: which entities pass, by the groups that the drawing has for them.
#pragma once

#include <adsdef.h>
#include <dbid.h>

#include <memory>
#include <string>
#include <vector>

namespace host::editor {

class Filter {
  public:
    // Everything passes.
    Filter();
    // Reads a chain as acedads.h tells it; a null chain lets everything pass. False, with a
    // sentence in `problem`, for operators that don't match up, an operator without a value, groups
    // nested more than 200 deep, and codes that entities are not tested by (-3, -2, -1).
    bool read(const resbuf* chain, std::wstring& problem);

    bool passes(AcDbObjectId entity) const;

  private:
    struct Node;
    std::vector<std::shared_ptr<const Node>> all_;

    class Reader;
};

}  // namespace host::editor
