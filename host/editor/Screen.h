// What modules do with the screen, for tests: how often they asked for the frame and the dialogs.
#pragma once

namespace host::editor {

struct ScreenRecord {
    int frameRequests = 0;   // acedGetAcadFrame
    int dialogRequests = 0;  // InitAcUiDLL
};

ScreenRecord& screenRecord();

}  // namespace host::editor
