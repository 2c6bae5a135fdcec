#include "OrlinthApp.h"

#include <aced.h>
#include <afxwin.h>

#include "ARX/ReportARX.h"
#include "tam/FrameWindow.h"

namespace {

HWND HostWindow() {
    const CMDIFrameWnd* const frame = acedGetAcadFrame();
    return frame != nullptr ? frame->GetSafeHwnd() : nullptr;
}

}  // namespace

AcRx::AppRetCode COrlinthApp::OnInitApp(void* packet) {
    const AcRx::AppRetCode result = AcRxArxApp::OnInitApp(packet);
    static const HWND keptHandle = HostWindow();
    TamLib::frameWindow = CWnd::FromHandle(keptHandle);
    TamLib::ReportToMessageArea();
    return result;
}

AcRx::AppRetCode COrlinthApp::OnUnloadApp(void* packet) {
    return AcRxArxApp::OnUnloadApp(packet);
}

void COrlinthApp::RegisterServerComponents() {}
