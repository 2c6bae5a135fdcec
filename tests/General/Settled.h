// The system as a test wants it, for as long as an object lives: clocks that stand still, calls
// that fail, versions, a screen. Natively the headless system is told; under Windows the functions
// that the library imports are replaced by ones that look here first (WindowsSubstitutes.cpp), so
// that the same tests run in both builds.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <windows.h>

namespace settled {

// Clocks that stand where they are put.
struct Clocks {
    DWORD milliseconds = 0;
    LONGLONG counter = 0;
    LONGLONG frequency = 10000000;
    ULONGLONG userTime = 0;  // in units of 100 ns, as the next
    ULONGLONG kernelTime = 0;
    std::int64_t seconds = 0;  // since 1970

    // Real time goes on on every clock, and processor time with it.
    void Advance(DWORD realMilliseconds, ULONGLONG userUnits = 0, ULONGLONG kernelUnits = 0) {
        milliseconds += realMilliseconds;
        counter += frequency / 1000 * realMilliseconds;
        userTime += userUnits;
        kernelTime += kernelUnits;
    }
};

// All clocks are settled while it lives; changes count after Show.
class Clock : public Clocks {
  public:
    Clock() { Show(); }
    explicit Clock(const Clocks& start) : Clocks(start) { Show(); }
    ~Clock();
    Clock(const Clock&) = delete;
    Clock& operator=(const Clock&) = delete;
    void Show() const;
    // Advance and Show.
    void Go(DWORD realMilliseconds, ULONGLONG userUnits = 0, ULONGLONG kernelUnits = 0) {
        Advance(realMilliseconds, userUnits, kernelUnits);
        Show();
    }
};

// While it lives the n-th call of a function (from 1), and `more` behind it, fail with a code.
class FailingCall {
  public:
    explicit FailingCall(const std::string& function, int n = 1, DWORD code = ERROR_ACCESS_DENIED,
                         int more = 0);
    ~FailingCall();
    FailingCall(const FailingCall&) = delete;
    FailingCall& operator=(const FailingCall&) = delete;
};

// What the system tells of itself while it lives.
class Windows {
  public:
    Windows(DWORD platform, DWORD major, DWORD minor, DWORD build, const wchar_t* servicePack,
            WORD architecture = PROCESSOR_ARCHITECTURE_AMD64);
    ~Windows();
    Windows(const Windows&) = delete;
    Windows& operator=(const Windows&) = delete;
};

// The name of the first processor in the registry while it lives.
class ProcessorName {
  public:
    explicit ProcessorName(const std::string& name);
    ~ProcessorName();
    ProcessorName(const ProcessorName&) = delete;
    ProcessorName& operator=(const ProcessorName&) = delete;
};

// The path of every module while it lives.
class ModulePath {
  public:
    explicit ModulePath(const std::wstring& path);
    ~ModulePath();
    ModulePath(const ModulePath&) = delete;
    ModulePath& operator=(const ModulePath&) = delete;
};

// "GetProcessId" cannot be found in kernel32.dll while it lives.
class NoGetProcessId {
  public:
    NoGetProcessId();
    ~NoGetProcessId();
    NoGetProcessId(const NoGetProcessId&) = delete;
    NoGetProcessId& operator=(const NoGetProcessId&) = delete;
};

// Nothing is opened while it lives; each call is answered and kept as "<verb> <file>".
class Shell {
  public:
    explicit Shell(int answer);
    ~Shell();
    Shell(const Shell&) = delete;
    Shell& operator=(const Shell&) = delete;
    // The calls since it was made.
    std::vector<std::wstring> Calls() const;

  private:
    std::size_t before_ = 0;
};

// Sets an environment variable, or takes it away, and puts it back at the end.
class Variable {
  public:
    Variable(const std::string& name, const std::optional<std::wstring>& value);
    ~Variable();
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;

  private:
    std::string name_;
    std::optional<std::wstring> before_;
};

}  // namespace settled
