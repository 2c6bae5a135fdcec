// The C part of the interface under its oldest name.
#pragma once

#include <adslib.h>
