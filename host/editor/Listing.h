// LIST and LAYER: what the drawing has, told at the command line. Nothing is changed.
#pragma once

#include "host/editor/Session.h"

namespace host::editor {

// Asks for entities and tells of each its class and handle, layer, and what makes its geometry, as
// EntityDetails.h has it. Stops between two lines when it is asked to. Throws CommandFailure
// without a drawing and when nothing was selected; Session::Cancelled.
void listEntities(Session& session);

// Tells the current layer and asks for an option until Enter; "?" asks for a pattern and lists the
// layers whose names match, sorted: how they stand, colour, linetype. Other options are refused: no
// layer is changed here. Throws CommandFailure without a drawing; Session::Cancelled.
void listLayers(Session& session);

}  // namespace host::editor
