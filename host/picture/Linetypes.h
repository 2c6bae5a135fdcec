// The line types of a drawing.
#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "host/database/DatabaseImp.h"

namespace host::picture {

class Linetypes {
  public:
    explicit Linetypes(const AcDbImpDatabase& database);

    // The lengths of dashes and gaps in turn, dots of length 0, in drawing units and scaled as the
    // whole drawing is; empty for a continuous line and for a line type that the drawing does not
    // list. Texts and shapes between the dashes are gaps.
    const std::vector<double>& named(const std::wstring& name);

  private:
    std::vector<double> read(const std::wstring& name) const;

    const AcDbImpDatabase& database_;
    double scale_ = 1.0;
    std::unordered_map<std::wstring, std::vector<double>> known_;
};

}  // namespace host::picture
