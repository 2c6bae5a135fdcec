// Points of the screen as a class. Comes with <afxwin.h>.
#pragma once

#include <windows.h>

// A pixel: x to the right, y downwards.
class CPoint : public POINT {
  public:
    CPoint() : POINT{0, 0} {}
    CPoint(int px, int py) : POINT{px, py} {}
};
