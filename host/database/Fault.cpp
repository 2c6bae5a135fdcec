#include "host/database/Fault.h"

#include <acarray.h>

namespace host::fault {
namespace {

struct Order {
    std::size_t countdown = 0;  // calls until the failing one; 0: none ordered
    std::string name;           // only calls of this function count down; empty: all do
    int status = 0;
};

struct State {
    Order order;
    std::vector<std::string> names;
    std::size_t calls = 0;
    bool fired = false;
};

constexpr std::size_t kMostNames = 100000;

State& state() {
    static State instance;
    return instance;
}

// How many calls of the host this thread is inside of.
thread_local int depth = 0;

void set(std::string name, std::size_t n, int status) {
    state() = State{};
    state().order = {n, std::move(name), status};
}

}  // namespace

void arm(std::size_t n, int status) {
    set({}, n, status);
}

void arm(std::string_view name, std::size_t n, int status) {
    set(std::string(name), n, status);
}

void disarm() {
    state() = State{};
}

std::size_t calls() {
    return state().calls;
}

std::vector<std::string> names() {
    return state().names;
}

bool fired() {
    return state().fired;
}

Call::Call(const char* name) noexcept {
    if (depth++ > 0) return;
    State& now = state();
    ++now.calls;
    if (now.names.size() < kMostNames) now.names.emplace_back(name);
    Order& order = now.order;
    if (order.countdown == 0 || (!order.name.empty() && order.name != name)) return;
    if (--order.countdown > 0) return;
    now.fired = true;
    refused_ = true;
    status_ = order.status;
}

Call::~Call() {
    --depth;
}

Quiet::Quiet() noexcept {
    ++depth;
}

Quiet::~Quiet() {
    --depth;
}

Outside::Outside() noexcept : depth_(depth) {
    depth = 0;
}

Outside::~Outside() {
    depth = depth_;
}

}  // namespace host::fault

bool acArrayMayAllocate() {
    const host::fault::Call call("AcArray");
    return !call.refused();
}
