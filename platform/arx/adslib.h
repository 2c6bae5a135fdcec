// The C part of the interface as one header.
#pragma once

#include <acedads.h>
#include <acutads.h>
#include <adscodes.h>
#include <adsdef.h>
