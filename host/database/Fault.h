// Failing on order, for tests: the n-th call into the host answers with a status of the test's
// choice without doing anything, and functions that hand out new objects answer null.
//
// Every function of the host that returns a status, and every one that hands out a new object, asks
// here first (HOST_CALL). Calls that the host makes itself while it serves one don't count; neither
// do those made under a Quiet.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace host::fault {

// The n-th call from now (1 is the next), or the n-th one of the function `name`
// ("acdbOpenAcDbEntity", "AcDbObject::upgradeOpen"), fails once with `status`. Replaces an earlier
// order; counting and the list of names start afresh. An n of 0 orders nothing and only counts.
void arm(std::size_t n, int status);
void arm(std::string_view name, std::size_t n, int status);

// Withdraws the order; counting and the list of names start afresh.
void disarm();

// Calls since arm() or disarm(), and the names of the first 100000 of them in their order.
std::size_t calls();
std::vector<std::string> names();

// Whether the ordered failure has happened.
bool fired();

// What a refused call returns: the ordered status, or null where a pointer is due.
struct Refusal {
    int status;
    template <class T>
    operator T() const {
        if constexpr (std::is_pointer_v<T>) {
            return nullptr;
        } else {
            return static_cast<T>(status);
        }
    }
};

// One call into the host, from its first line to its last.
class Call {
  public:
    explicit Call(const char* name) noexcept;
    ~Call();
    Call(const Call&) = delete;
    Call& operator=(const Call&) = delete;

    bool refused() const { return refused_; }
    Refusal refusal() const { return {status_}; }

  private:
    bool refused_ = false;
    int status_ = 0;
};

// While it lives, calls count as the host's own.
class Quiet {
  public:
    Quiet() noexcept;
    ~Quiet();
    Quiet(const Quiet&) = delete;
    Quiet& operator=(const Quiet&) = delete;
};

// While it lives, calls count again: the host is inside a function of the module's.
class Outside {
  public:
    Outside() noexcept;
    ~Outside();
    Outside(const Outside&) = delete;
    Outside& operator=(const Outside&) = delete;

  private:
    int depth_;
};

}  // namespace host::fault

// First line of every function that a test may order to fail.
#define HOST_CALL(name)                       \
    const ::host::fault::Call hostCall(name); \
    if (hostCall.refused()) return hostCall.refusal()
