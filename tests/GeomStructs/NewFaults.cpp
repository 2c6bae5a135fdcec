#include "tests/GeomStructs/NewFaults.h"

#include <cstddef>
#include <new>

namespace {

int refused = 0;
int passed = 0;

}  // namespace

void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
    if (++passed == refused) return nullptr;
    try {
        return ::operator new(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

namespace test {

NewFaults::NewFaults() {
    Fail(0);
}
NewFaults::~NewFaults() {
    Fail(0);
}
void NewFaults::Fail(int n) {
    refused = n;
    passed = 0;
}
int NewFaults::Passed() {
    return passed;
}

}  // namespace test
