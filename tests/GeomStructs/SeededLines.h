// Random lines whose seed is told by each failure in their scope.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "tests/GeomStructs/RandomLines.h"

namespace TamLib {

class SeededLines : public RandomLines {
  public:
    explicit SeededLines(unsigned seed)
        : RandomLines(seed), trace_(__FILE__, __LINE__, "seed " + std::to_string(seed)) {}

  private:
    testing::ScopedTrace trace_;
};

}  // namespace TamLib
