// The view that a drawing was left in.
#pragma once

#include <dbmain.h>

#include "host/editor/SessionState.h"

namespace host::editor {

// Centre and height of the active viewport, or of the header's view for drawings before viewports;
// without either, everything that is drawn. The height is above 0.
Session::Implementation::View savedView(AcDbDatabase& drawing);

}  // namespace host::editor
