// The host as a place to make things in and to talk to: layers, entities, texts, the view.
//
// A null `database` is the working one. What the output of geometry calls, from below this
// floor, is declared there: ARXAddLayer, ARXAddToModelSpace, ARXMakeText,
// ARXGetStandardMlineStyle and ARXViewSize.
#pragma once

#include "GeomEnts/DrawingOutput.h"
