#include "Faults.h"

#include <mutex>

#include "HeadlessSystem.h"

namespace {

struct Order {
    std::mutex guard;
    std::string function;
    int first = 0;
    int last = 0;
    int passed = 0;
    DWORD code = 0;
};

Order& TheOrder() {
    static Order order;
    return order;
}

}  // namespace

bool posix::Refused(const char* function, DWORD* code) {
    Order& order = TheOrder();
    const std::lock_guard<std::mutex> lock(order.guard);
    if (order.function != function) return false;
    ++order.passed;
    if (order.passed < order.first || order.passed > order.last) return false;
    if (code != nullptr) *code = order.code;
    SetLastError(order.code);
    return true;
}

void headless::FailCall(const std::string& function, int n, DWORD code, int more) {
    Order& order = TheOrder();
    const std::lock_guard<std::mutex> lock(order.guard);
    order.function = function;
    order.first = n;
    order.last = n + more;
    order.passed = 0;
    order.code = code;
}

void headless::FailNoCall() {
    FailCall("", 0, 0);
}
