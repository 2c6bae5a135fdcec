// The host's main window, kept by the module for as long as it lives: the owner of message boxes
// and the window that gets the focus before a pick. Null without a host.
#pragma once

class CWnd;

namespace TamLib {

extern CWnd* frameWindow;

}  // namespace TamLib
