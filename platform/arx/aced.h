// The editor: commands, prompts, the frame window and the status bar.
#pragma once

#include <accmd.h>
#include <acedads.h>
#include <adscodes.h>
#include <rxregsvc.h>

class CMDIFrameWnd;
class CPoint;
class CView;

// The host's main window. Headless it exists all the same and can take the focus.
CMDIFrameWnd* acedGetAcadFrame();

// Prepares the host's dialogs for a module; called at the module's start.
void InitAcUiDLL();

// The meter in the status bar: a label and a range, then positions in it. 0 when it was done, -1
// for a null label or an empty range, or a position without a meter.
int acedSetStatusBarProgressMeter(const ACHAR* label, int from, int to);
int acedSetStatusBarProgressMeterPos(int position);
void acedRestoreStatusBar();

// A place in the drawing as the window functions take it.
using acedDwgPoint = double[3];

// The number of the viewport that a pixel of the drawing window lies in. The host has one, 2.
int acedGetWinNum(int x, int y);

// Between pixels of a viewport, (0, 0) being the upper left one, and the drawing: the centre of the
// view is in the middle of the screen, whose height in pixels the view's height fills; z is 0 and
// is ignored. Pixels are rounded. 1; 0, and the result unchanged, for another viewport's number, or
// where the place is out of any pixel's reach.
int acedCoordFromPixelToWorld(int viewport, CPoint pixel, acedDwgPoint world);
int acedCoordFromWorldToPixel(int viewport, const acedDwgPoint world, CPoint& pixel);

// The window that shows the drawing. Headless it exists all the same.
CView* acedGetAcadDwgView();

// Colours of the drawing window, 0x00BBGGRR.
struct AcColorSettings {
    Adesk::UInt32 dwGfxModelBkColor;
    Adesk::UInt32 dwGfxLayoutBkColor;
};
// False for a null pointer.
bool acedGetCurrentColors(AcColorSettings* settings);
