// The editor: commands, prompts, the frame window and the status bar.
#pragma once

#include <accmd.h>
#include <acedads.h>
#include <adscodes.h>
#include <rxregsvc.h>

class CMDIFrameWnd;

// The host's main window. Headless it exists all the same and can take the focus.
CMDIFrameWnd* acedGetAcadFrame();

// Prepares the host's dialogs for a module; called at the module's start.
void InitAcUiDLL();

// The meter in the status bar: a label and a range, then positions in it. 0 when it was done, -1
// for a null label or an empty range, or a position without a meter.
int acedSetStatusBarProgressMeter(const ACHAR* label, int from, int to);
int acedSetStatusBarProgressMeterPos(int position);
void acedRestoreStatusBar();
