// The MFC string under its other header name.
#pragma once

#include "afxstr.h"
