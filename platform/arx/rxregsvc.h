// What a module asks of the host while it is initialised: the registry and the class hierarchy.
#pragma once

#include <rxclass.h>
#include <rxdefs.h>
#include <rxdict.h>
#include <rxnames.h>
