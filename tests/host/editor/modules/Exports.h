// How the exports of a module are declared.
#pragma once

#include <rxdefs.h>

#if defined(_WIN32)
#define MODULE_EXPORT extern "C" __declspec(dllexport)
#else
#define MODULE_EXPORT extern "C" __attribute__((visibility("default")))
#endif

MODULE_EXPORT AcRx::AppRetCode acrxEntryPoint(AcRx::AppMsgCode message, void* packet);
MODULE_EXPORT const wchar_t* acrxGetApiVersion();
