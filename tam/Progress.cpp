#include "tam/Progress.h"

namespace TamLib {

ProgressDLG* gProgress = nullptr;
ProgressOperations progressOperations = {};

bool ShowsProgress() {
    return gProgress != nullptr && progressOperations.isSuppressed != nullptr &&
           !progressOperations.isSuppressed(gProgress);
}

void ReportProgress(float percent) {
    if (ShowsProgress()) progressOperations.setPos(gProgress, percent);
}

bool ProgressCancelled() {
    return ShowsProgress() && progressOperations.isCancelled(gProgress);
}

}  // namespace TamLib
