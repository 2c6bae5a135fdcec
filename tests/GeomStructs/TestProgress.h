// A progress dialog for tests of what long operations tell it. One at a time.
#pragma once

#include <vector>

#include "tam/Progress.h"

namespace TamLib {

class TestProgress {
  public:
    TestProgress() : before_(progressOperations) {
        current_ = this;
        progressOperations = {
            [](const ProgressDLG*) { return current_->suppressed; },
            [](ProgressDLG*, float percent) { current_->told.push_back(percent); },
            [](ProgressDLG*) { return ++current_->polls >= current_->cancelAt; }};
        gProgress = reinterpret_cast<ProgressDLG*>(this);
    }
    ~TestProgress() {
        gProgress = nullptr;
        progressOperations = before_;
    }
    TestProgress(const TestProgress&) = delete;
    TestProgress& operator=(const TestProgress&) = delete;

    bool suppressed = false;
    int cancelAt = 1 << 30;  // the poll that is answered by "cancelled"
    int polls = 0;
    std::vector<float> told;

  private:
    static inline TestProgress* current_ = nullptr;
    ProgressOperations before_;
};

}  // namespace TamLib
