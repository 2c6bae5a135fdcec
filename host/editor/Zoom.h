// ZOOM: which part of the drawing is looked at. Without a screen this decides how far a pick
// reaches (a hundredth of the view's height) and what VIEWCTR and VIEWSIZE say; the drawing is not
// changed.
#pragma once

#include "host/editor/Session.h"

namespace host::editor {

// Asks until it has a view, and says which:
//   All          what is drawn and the drawing's limits together
//   Center       a point, then the height of the view, or a magnification as in 2x
//   Extents      what is drawn
//   Previous     the view before; ten of them are kept
//   Scale        2: half of what All shows, 2x: half of what is shown now, about the same centre
//   Window       a rectangle, also by a point as the first reply
//   Enter        leaves the view as it is
// A view is as much wider than high as the screen is. Where there is no width and no height, as
// around a single point, the height stays. Throws CommandFailure without a drawing, when nothing is
// drawn, and when there is no view before; Session::Cancelled.
void zoom(Session& session);

}  // namespace host::editor
