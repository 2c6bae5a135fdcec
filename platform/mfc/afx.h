// The root of MFC: what every other header of it brings along.
#pragma once

#include <windows.h>

#include "afxstr.h"

// The root of the framework's classes.
class CObject {
  public:
    CObject() = default;
    CObject(const CObject&) = delete;
    CObject& operator=(const CObject&) = delete;
    virtual ~CObject() = default;
};

#include "afxfile_.h"
