// How the library's long operations report to the progress dialog how far they are, without knowing
// it: the dialog stands on a higher floor and registers its operations here.
//
// An application that wants its long operations shown sets `gProgress`; the library only reads it.
// While it is null, or the dialog is suppressed, operations run without progress and without a way
// to cancel.
#pragma once

namespace TamLib {

class ProgressDLG;

// The dialog that long operations poll; not owned. Null at first.
extern ProgressDLG* gProgress;

// What the dialog offers, set by its source; all null until then.
struct ProgressOperations {
    bool (*isSuppressed)(const ProgressDLG* dialog);
    void (*setPos)(ProgressDLG* dialog, float percent);
    bool (*isCancelled)(ProgressDLG* dialog);
};
extern ProgressOperations progressOperations;

// Whether there is a dialog and it is not suppressed.
bool ShowsProgress();
// Reports the position, 0 to 100, to the dialog when there is one.
void ReportProgress(float percent);
// Whether the user has cancelled; false when no dialog is to be asked. Pumps the dialog's messages.
bool ProgressCancelled();

}  // namespace TamLib
