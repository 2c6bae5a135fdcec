// The module's own application class.
#pragma once

#include "ArxAppFrame.h"

class COrlinthApp : public AcRxArxApp {
  public:
    // The base, then sets TamLib::frameWindow to the object of the host's main window. The
    // host is asked for its window once in the life of the module; later calls look the kept
    // handle up anew.
    AcRx::AppRetCode OnInitApp(void* packet) override;
    AcRx::AppRetCode OnUnloadApp(void* packet) override;
    // This module offers no servers.
    void RegisterServerComponents() override;
};

static_assert(sizeof(COrlinthApp) == sizeof(AcRxArxApp), "the module's class adds no field");
