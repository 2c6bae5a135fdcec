// The raw start of an extension module. Included by exactly one source of such a module: it makes
// the class and factory lists move aside when the module is loaded, before the static constructors
// of the module run.
#pragma once

#include <afxwin.h>

// 101 is the first priority that a program may use; static constructors without one come last.
__attribute__((constructor(101))) static void AfxRawStart() {
    AfxMoveListsAside();
}
