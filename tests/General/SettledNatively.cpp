#ifndef _WIN32
#include <cstdlib>

#include "HeadlessSystem.h"
#include "tests/General/Settled.h"
#include "tests/General/TestFolder.h"

namespace settled {

void Clock::Show() const {
    headless::SetClocks({milliseconds, counter, frequency, userTime, kernelTime, seconds});
}
Clock::~Clock() {
    headless::SetClocks({});
}

FailingCall::FailingCall(const std::string& function, int n, DWORD code, int more) {
    headless::FailCall(function, n, code, more);
}
FailingCall::~FailingCall() {
    headless::FailNoCall();
}

Windows::Windows(DWORD platform, DWORD major, DWORD minor, DWORD build, const wchar_t* servicePack,
                 WORD architecture) {
    OSVERSIONINFOW version{sizeof version, major, minor, build, platform, {}};
    std::wstring(servicePack).copy(version.szCSDVersion, 127);
    headless::SetWindowsVersion(version);
    headless::SetProcessorArchitecture(architecture);
}
Windows::~Windows() {
    headless::SetWindowsVersion(std::nullopt);
    headless::SetProcessorArchitecture(PROCESSOR_ARCHITECTURE_AMD64);
}

ProcessorName::ProcessorName(const std::string& name) {
    headless::SetProcessorName(name);
}
ProcessorName::~ProcessorName() {
    headless::SetProcessorName(std::nullopt);
}

ModulePath::ModulePath(const std::wstring& path) {
    headless::SetModulePath(path);
}
ModulePath::~ModulePath() {
    headless::SetModulePath(std::nullopt);
}

NoGetProcessId::NoGetProcessId() {
    headless::HideProcedure("GetProcessId", true);
}
NoGetProcessId::~NoGetProcessId() {
    headless::HideProcedure("GetProcessId", false);
}

Shell::Shell(int answer) : before_(headless::ShellCalls().size()) {
    headless::AnswerShellCalls(answer);
}
Shell::~Shell() {
    headless::AnswerShellCalls(42);
}
std::vector<std::wstring> Shell::Calls() const {
    const std::vector<std::wstring> all = headless::ShellCalls();
    return {all.begin() + static_cast<std::ptrdiff_t>(before_), all.end()};
}

namespace {

void Set(const std::string& name, const std::optional<std::wstring>& value) {
    if (value) {
        setenv(name.c_str(), test::FromWide(*value).c_str(), 1);
    } else {
        unsetenv(name.c_str());
    }
}

}  // namespace

Variable::Variable(const std::string& name, const std::optional<std::wstring>& value)
    : name_(name) {
    if (const char* const before = std::getenv(name.c_str())) before_ = test::ToWide(before);
    Set(name_, value);
}
Variable::~Variable() {
    Set(name_, before_);
}

}  // namespace settled
#endif
