// GlobalMemoryStatus from /proc.
#include <fstream>
#include <mutex>
#include <string>

#include "Headless.h"

namespace {

struct Settled {
    std::mutex guard;
    std::optional<MEMORYSTATUS> status;
};

Settled& TheSettled() {
    static Settled settled;
    return settled;
}

// The figure of a line such as "MemTotal:  16315412 kB" in bytes, 0 if there is no such line.
SIZE_T ProcFigure(const char* file, const std::string& label) {
    std::ifstream stream(file);
    for (std::string line; std::getline(stream, line);) {
        if (line.compare(0, label.size(), label) != 0) continue;
        const unsigned long long kilobytes =
            std::strtoull(line.c_str() + label.size(), nullptr, 10);
        return static_cast<SIZE_T>(kilobytes) << 10;
    }
    return 0;
}

MEMORYSTATUS RealStatus() {
    const char* const machine = "/proc/meminfo";
    MEMORYSTATUS status{};
    status.dwTotalPhys = ProcFigure(machine, "MemTotal:");
    status.dwAvailPhys = ProcFigure(machine, "MemAvailable:");
    // The "paging file" of the interface is what can be committed at all: memory and swap.
    status.dwTotalPageFile = status.dwTotalPhys + ProcFigure(machine, "SwapTotal:");
    status.dwAvailPageFile = status.dwAvailPhys + ProcFigure(machine, "SwapFree:");
    status.dwTotalVirtual = static_cast<SIZE_T>(1) << 47;
    status.dwAvailVirtual = status.dwTotalVirtual - ProcFigure("/proc/self/status", "VmSize:");
    if (status.dwTotalPhys != 0) {
        const SIZE_T used = status.dwTotalPhys - status.dwAvailPhys;
        status.dwMemoryLoad = static_cast<DWORD>(used / (status.dwTotalPhys / 100 + 1));
    }
    return status;
}

}  // namespace

void GlobalMemoryStatus(MEMORYSTATUS* status) {
    Settled& settled = TheSettled();
    const std::lock_guard<std::mutex> lock(settled.guard);
    *status = settled.status ? *settled.status : RealStatus();
    status->dwLength = static_cast<DWORD>(sizeof *status);
}

void headless::SetMemoryStatus(const std::optional<MEMORYSTATUS>& status) {
    Settled& settled = TheSettled();
    const std::lock_guard<std::mutex> lock(settled.guard);
    settled.status = status;
}
