// The application frame of a module: one handler for each message of the host, and what every
// module does on loading and unloading. A module derives its own class from AcRxArxApp.
//
// Every handler takes the packet that came with the message and answers kRetOK, so that loading
// never fails by the module's own decision. The frame relies on the host's having the dictionaries
// "DynamicLinker" and "ACAD_REGISTERED_COMMANDS" in its registry and does not test for them.
#pragma once

#include <rxdefs.h>
#include <windows.h>

#include <cstdint>

struct ArxCustomClass;

#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored \
    "-Wnon-virtual-dtor"  // intended: the handlers fill the table from slot 1
#endif

// The part of a module that knows the database alone: custom classes.
class AcRxDbxApp {
  public:
    // The handlers in the order of the messages, kInitAppMsg (1) first and kNullMsg (0) last.

    // Keeps the module's handle; asks the dynamic linker to let the module be unloaded
    // (`unlockApp`) and to accept several open documents (`mdiAware`); calls
    // RegisterServerComponents; initialises every custom class and marks it registered, and has the
    // class hierarchy built if there was at least one.
    virtual AcRx::AppRetCode OnInitApp(void* packet);
    // Deletes the descriptors of the registered custom classes, derived classes before their bases,
    // and clears their marks.
    virtual AcRx::AppRetCode OnUnloadApp(void* packet);
    virtual AcRx::AppRetCode OnLoadDwg(void* packet);
    virtual AcRx::AppRetCode OnUnloadDwg(void* packet);
    virtual AcRx::AppRetCode OnInvokeSubroutine(void* packet);
    virtual AcRx::AppRetCode OnConfigure(void* packet);
    virtual AcRx::AppRetCode OnEnd(void* packet);
    virtual AcRx::AppRetCode OnQuit(void* packet);
    virtual AcRx::AppRetCode OnSave(void* packet);
    virtual AcRx::AppRetCode OnDependency(void* packet);
    virtual AcRx::AppRetCode OnNoDependency(void* packet);
    virtual AcRx::AppRetCode OnOleUnloadApp(void* packet);
    virtual AcRx::AppRetCode OnPreQuit(void* packet);
    virtual AcRx::AppRetCode OnInitDialog(void* packet);
    virtual AcRx::AppRetCode OnEndDialog(void* packet);
    virtual AcRx::AppRetCode OnNull(void* packet);

    // The place for servers that a module offers to other programs.
    virtual void RegisterServerComponents() = 0;

    // Hands a message to its handler and returns the handler's answer. Messages above 15, and
    // negative ones taken as unsigned, answer kRetOK and call nothing.
    AcRx::AppRetCode Dispatch(std::uint32_t message, void* packet);

    HINSTANCE moduleInstance = nullptr;  // the module's handle, from kInitAppMsg on
    bool unlockApp = true;
    bool mdiAware = true;

  private:
    static void RemoveClass(ArxCustomClass& entry);
};

// The part of a module that knows the editor: commands and functions for LISP.
class AcRxArxApp : public AcRxDbxApp {
  public:
    // The base, then adds every command to the command stack. Its answer is the base's.
    AcRx::AppRetCode OnInitApp(void* packet) override;
    // The base, then removes every command from the command stack. Its answer is the base's.
    AcRx::AppRetCode OnUnloadApp(void* packet) override;
    // Defines every LISP function under its number in the table, nulls not counted, and registers
    // those that want it.
    AcRx::AppRetCode OnLoadDwg(void* packet) override;
    // Takes every LISP function away again.
    AcRx::AppRetCode OnUnloadDwg(void* packet) override;
    // Calls the LISP function whose number the host gives, and answers kRetOK whatever it returned.
    AcRx::AppRetCode OnInvokeSubroutine(void* packet) override;
};

#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

static_assert(sizeof(AcRxDbxApp) == 3 * sizeof(void*), "table pointer, instance, two flags");
static_assert(sizeof(AcRxArxApp) == sizeof(AcRxDbxApp), "the second layer adds no field");
