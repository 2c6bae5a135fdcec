// The command ZEPTAlignEntities: see AlignPolyLine for what it does.
#pragma once

// The host's callback. Nothing is kept between runs and nothing is caught: an exception from below
// leaves through the host's call, and the destructors on the way are all the cleaning up there is.
void RunAlignEntities();
