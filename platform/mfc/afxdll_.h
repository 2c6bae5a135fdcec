// What a module shares with the framework: its class and factory lists, kept in the framework's
// module state, and the record of an extension module. Comes with <afxwin.h>.
#pragma once

#include <windows.h>

// One class known at run time; the classes of a module form a list.
struct CRuntimeClass {
    LPCSTR m_lpszClassName;
    int m_nObjectSize;
    CRuntimeClass* m_pNextClass;
};

// A maker of objects for other programs; the factories of a module form a list.
class COleObjectFactory {
  public:
    COleObjectFactory* m_pNextFactory = nullptr;
};

// An extension module: a module whose classes take part in the framework's state of the program
// that loads it.
struct AFX_EXTENSION_MODULE {
    BOOL bInitialized;
    HMODULE hModule;
    HMODULE hResource;
    CRuntimeClass* pFirstSharedClass;        // the module's own classes
    COleObjectFactory* pFirstSharedFactory;  // the module's own factories
};

// Takes the classes and factories that were registered since the module's raw start out of the
// module state into `state`, and puts the lists that the raw start had moved aside back. FALSE
// when `state` was initialised before (nothing changes then) or when a test has ordered failure.
BOOL AfxInitExtensionModule(AFX_EXTENSION_MODULE& state, HMODULE module);

// Deletes the CDynLinkLibrary objects of the module and marks `state` as not initialised. Nothing
// happens to a state that isn't initialised. `all` is accepted for the interface's sake.
void AfxTermExtensionModule(AFX_EXTENSION_MODULE& state, BOOL all = FALSE);

// Makes the classes and resources of an extension module known to the program. Made with `new` and
// left alone: it belongs to the framework, which deletes it when the module is terminated.
class CDynLinkLibrary {
  public:
    explicit CDynLinkLibrary(AFX_EXTENSION_MODULE& state, BOOL system = FALSE);
    CDynLinkLibrary(const CDynLinkLibrary&) = delete;
    CDynLinkLibrary& operator=(const CDynLinkLibrary&) = delete;
    virtual ~CDynLinkLibrary();

    HMODULE m_hModule;
    HMODULE m_hResource;
    CRuntimeClass* m_pFirstClass;
    COleObjectFactory* m_pFirstFactory;
    BOOL m_bSystem;
    CDynLinkLibrary* m_pNextDLL;
};

// The framework's state of the program.
struct AFX_MODULE_STATE {
    CRuntimeClass* m_pClassList = nullptr;        // classes registered so far, the last one first
    COleObjectFactory* m_pFactoryList = nullptr;  // factories registered so far
    CRuntimeClass* m_pClassInit = nullptr;        // what a raw start has moved aside
    COleObjectFactory* m_pFactoryInit = nullptr;  // what a raw start has moved aside
    CDynLinkLibrary* m_pLibraryList = nullptr;    // modules made known, the last one first
};
AFX_MODULE_STATE* AfxGetModuleState();

// The raw start of an extension module: moves both lists aside, so that what the module's static
// constructors register can be told apart. <afxdllx.h> arranges the call.
void AfxMoveListsAside();
