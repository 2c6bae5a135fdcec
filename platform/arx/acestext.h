// Names of the status codes.
#pragma once

#include <acadstrc.h>
#include <adesk.h>

// "eOk", "eWasErased" ...: the name of the code as it stands in Acad::ErrorStatus; a code that is
// not listed there gives "Unknown". The text belongs to the host.
const ACHAR* acadErrorStatusText(Acad::ErrorStatus status);
