// Memory that fails on demand, under the containers, for the length of a test.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <new>
#include <string>

#include "datastruct/Memory.h"
#include "tam/TamExceptions.h"

namespace test {

enum class Request { any, allocate, reallocate, allocateArray };

// What MemoryFaults counts and refuses; plain functions of the run-time's form have to reach it.
struct FaultState {
    Request kind = Request::any;
    int first = 0;
    int last = 0;
    int passed = 0;
    int requests = 0;
    int live = 0;
    std::size_t lastSize = 0;
};

// Counts all requests and blocks, and refuses those that it is told to. One at a time.
class MemoryFaults {
  public:
    MemoryFaults() : before_(TamLib::runTimeMemory) {
        state = FaultState();
        TamLib::runTimeMemory = {Allocate, Reallocate, Release, AllocateArray, ReleaseArray};
    }
    ~MemoryFaults() { TamLib::runTimeMemory = before_; }
    MemoryFaults(const MemoryFaults&) = delete;
    MemoryFaults& operator=(const MemoryFaults&) = delete;

    // The n-th request of the kind from now on fails, and `more` after it.
    void Fail(Request kind, int n, int more = 0) {
        state.kind = kind;
        state.first = n;
        state.last = n + more;
        state.passed = 0;
    }
    // Requests of the armed kind since Fail; of any kind when nothing was armed.
    static int Passed() { return state.passed; }
    // All requests since the beginning.
    static int Requests() { return state.requests; }
    // Blocks taken and not given back.
    static int Live() { return state.live; }
    // The size of the last request in bytes.
    static std::size_t LastSize() { return state.lastSize; }

  private:
    static inline FaultState state;

    static bool Refused(Request kind, std::size_t bytes) {
        ++state.requests;
        state.lastSize = bytes;
        if (state.kind != Request::any && state.kind != kind) return false;
        ++state.passed;
        return state.first != 0 && state.passed >= state.first && state.passed <= state.last;
    }
    static void* Counted(void* block) {
        if (block != nullptr) ++state.live;
        return block;
    }
    static void* Allocate(std::size_t bytes) {
        return Refused(Request::allocate, bytes) ? nullptr : Counted(std::malloc(bytes));
    }
    static void* Reallocate(void* block, std::size_t bytes) {
        if (Refused(Request::reallocate, bytes)) return nullptr;
        if (block == nullptr) return Counted(std::malloc(bytes));
        return std::realloc(block, bytes);
    }
    static void Release(void* block) {
        if (block != nullptr) --state.live;
        std::free(block);
    }
    static void* AllocateArray(std::size_t bytes) {
        return Refused(Request::allocateArray, bytes) ? nullptr : Counted(::operator new[](bytes));
    }
    static void ReleaseArray(void* block) {
        if (block != nullptr) --state.live;
        ::operator delete[](block);
    }

    TamLib::RunTimeMemory before_;
};

// What an operation raised: class, line, source name, the text before the memory report.
struct Raised {
    std::string type;
    int line = 0;
    std::wstring file;
    std::wstring text;
};

template <class Operation>
Raised Catch(Operation operation) {
    const auto described = [](const char* type, const TamLib::TamExpBase& raised) {
        return Raised{type, raised.line, raised.file, raised.message};
    };
    try {
        operation();
    } catch (const TamLib::TamExpNoMem& raised) {
        return described("TamExpNoMem", raised);
    } catch (const TamLib::TamExpRange& raised) {
        return described("TamExpRange", raised);
    }
    return {"nothing", 0, L"", L""};
}

// The raise is an exhausted memory whose message begins with `text`, followed at once by the
// report.
inline void ExpectNoMemory(const Raised& raised, const std::wstring& text, int line,
                           const std::wstring& file) {
    EXPECT_EQ(raised.type, "TamExpNoMem");
    EXPECT_EQ(raised.line, line);
    EXPECT_EQ(raised.file, file);
    ASSERT_EQ(raised.text.substr(0, text.size()), text);
    const std::wstring report = raised.text.substr(text.size());
    const std::size_t digits = report.find_first_not_of(L"0123456789");
    ASSERT_NE(digits, std::wstring::npos);
    EXPECT_GT(digits, 0u);
    EXPECT_EQ(report.substr(digits, 29), L" percent of memory is in use.");
}

}  // namespace test
