#include "tam/FrameWindow.h"

namespace TamLib {

CWnd* frameWindow = nullptr;

}  // namespace TamLib
