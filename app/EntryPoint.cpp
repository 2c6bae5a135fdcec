// The module's doors: what the system and the host call.
#include <afxdllx.h>
#include <rxdefs.h>

#include "Module.h"
#include "OrlinthApp.h"

#if defined(_WIN32)
#define ARX_EXPORT extern "C" __declspec(dllexport)
#else
#define ARX_EXPORT extern "C" __attribute__((visibility("default")))
#endif

namespace {

COrlinthApp theApp;

}  // namespace

// The host's only door.
ARX_EXPORT AcRx::AppRetCode acrxEntryPoint(AcRx::AppMsgCode message, void* packet) {
    return theApp.Dispatch(static_cast<std::uint32_t>(message), packet);
}

// The version of the interface that the module was built against, read by the host on loading.
ARX_EXPORT int acrxGetApiVersion() {
    return 19;
}

// Called by the system, after the static constructors and before the static destructors.
extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID /*reserved*/) {
    switch (reason) {
        case DLL_PROCESS_ATTACH:
            return AttachModule(instance);
        case DLL_PROCESS_DETACH:
            return DetachModule();
        default:
            return TRUE;
    }
}

#if !defined(_WIN32)
namespace {

// Stands in for a system that calls DllMain: made after `theApp`, gone before it.
class ProcessAttachment {
  public:
    ProcessAttachment() {
        GetModuleHandleExW(
            GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
            reinterpret_cast<LPCWSTR>(&theApp), &instance_);
        DllMain(instance_, DLL_PROCESS_ATTACH, nullptr);
    }
    ~ProcessAttachment() { DllMain(instance_, DLL_PROCESS_DETACH, nullptr); }
    ProcessAttachment(const ProcessAttachment&) = delete;
    ProcessAttachment& operator=(const ProcessAttachment&) = delete;

  private:
    HINSTANCE instance_ = nullptr;
};
const ProcessAttachment attachment;

}  // namespace
#endif
