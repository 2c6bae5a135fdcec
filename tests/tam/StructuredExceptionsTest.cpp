#include <gtest/gtest.h>

#include <cstdlib>
#include <new>
#include <string>

#include <windows.h>
#ifndef _WIN32
#include <Headless.h>
#endif

#include "tam/TamExceptions.h"

using namespace TamLib;

// Refuses memory to `new (std::nothrow)` for the tests below.
namespace {
bool refuseMemory = false;
}

void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
    if (refuseMemory) return nullptr;
    try {
        return ::operator new(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

namespace {

int somewhere = 0;

// The platform's record of a fault, made by hand.
struct Fault {
    explicit Fault(DWORD code) {
        record.ExceptionCode = code;
        record.ExceptionAddress = &somewhere;
        pointers.ExceptionRecord = &record;
    }
    EXCEPTION_RECORD record{};
    EXCEPTION_POINTERS pointers{};
};

class StructuredExceptions : public ::testing::Test {
  protected:
    void SetUp() override {
        translatingSeException = false;
#ifndef _WIN32
        headless::ForgetCalls();
#endif
    }
    void TearDown() override {
        translatingSeException = false;
        refuseMemory = false;
    }
};

TEST_F(StructuredExceptions, TheFlagStartsClear) {
    EXPECT_FALSE(translatingSeException);
}

TEST_F(StructuredExceptions, TranslationThrowsAPointerToANewObject) {
    Fault fault(EXCEPTION_ACCESS_VIOLATION);
    try {
        TranslateSeException(EXCEPTION_ACCESS_VIOLATION, &fault.pointers);
        FAIL() << "nothing was thrown";
    } catch (TamExpWinSeException* caught) {
        ASSERT_NE(caught, nullptr);
        EXPECT_EQ(caught->GetCode(), 0xC0000005u);
        EXPECT_EQ(caught->GetPointers(), &fault.pointers);
        EXPECT_EQ(caught->GetAddress(), &somewhere);
        EXPECT_EQ(std::wstring(caught->message), L"");
        EXPECT_EQ(caught->line, 398);
        EXPECT_EQ(std::wstring(caught->file), L"tam/TamExceptions");
        EXPECT_FALSE(translatingSeException);  // cleared when the object stood
        caught->Delete();
    }
}

TEST_F(StructuredExceptions, TheThrownPointerIsCaughtAsAPointerToTheRoot) {
    Fault fault(EXCEPTION_ACCESS_VIOLATION);
    try {
        TranslateSeException(1, &fault.pointers);
        FAIL() << "nothing was thrown";
    } catch (TamExpBase* caught) {
        static_cast<TamExpWinSeException*>(caught)->Delete();
    }
}

TEST_F(StructuredExceptions, TheFilterTranslatesWithTheCode1000) {
    Fault fault(EXCEPTION_ACCESS_VIOLATION);
    try {
        SeExceptionFilter(&fault.pointers);
        FAIL() << "nothing was thrown";
    } catch (TamExpWinSeException* caught) {
        EXPECT_EQ(caught->GetCode(), 1000u);
        caught->Delete();
    }
}

TEST_F(StructuredExceptions, AFaultDuringATranslationIsNotTranslated) {
    Fault fault(EXCEPTION_ACCESS_VIOLATION);
    translatingSeException = true;
    EXPECT_NO_THROW(TranslateSeException(EXCEPTION_ACCESS_VIOLATION, &fault.pointers));
    EXPECT_NO_THROW(EXPECT_EQ(SeExceptionFilter(&fault.pointers), 0));
    EXPECT_TRUE(translatingSeException);
}

TEST_F(StructuredExceptions, WithoutMemoryANullPointerIsThrownAndTheFlagStays) {
    Fault fault(EXCEPTION_ACCESS_VIOLATION);
    refuseMemory = true;
    try {
        TranslateSeException(EXCEPTION_ACCESS_VIOLATION, &fault.pointers);
        FAIL() << "nothing was thrown";
    } catch (TamExpWinSeException* caught) {
        EXPECT_EQ(caught, nullptr);
        EXPECT_TRUE(translatingSeException);
    }
}

TEST_F(StructuredExceptions, ConstructionClearsTheFlagAndOtherFormsDoNot) {
    Fault fault(EXCEPTION_ACCESS_VIOLATION);
    translatingSeException = true;
    const TamExpWinSeException original(5, &fault.pointers);
    EXPECT_FALSE(translatingSeException);
    translatingSeException = true;
    const TamExpWinSeException copy(
        original);  // NOLINT(performance-unnecessary-copy-initialization)
    const TamExpWinSeException fresh;
    EXPECT_TRUE(translatingSeException);
    EXPECT_EQ(copy.GetCode(), 5u);
}

TEST_F(StructuredExceptions, ACopyTakesCodeAndRecordAndNothingElse) {
    Fault fault(EXCEPTION_ACCESS_VIOLATION);
    TamExpWinSeException original(7, &fault.pointers);
    original.message[0] = L'x';
    original.message[1] = 0;
    original.line = 1;
    original.file = L"other";
    const TamExpWinSeException copy(
        original);  // NOLINT(performance-unnecessary-copy-initialization)
    EXPECT_EQ(copy.GetCode(), 7u);
    EXPECT_EQ(copy.GetPointers(), &fault.pointers);
    EXPECT_EQ(std::wstring(copy.message), L"");
    EXPECT_EQ(copy.line, 398);
    EXPECT_EQ(std::wstring(copy.file), L"tam/TamExceptions");
}

TEST_F(StructuredExceptions, AStackOverflowLeavesTheMessageEmpty) {
    Fault fault(EXCEPTION_STACK_OVERFLOW);
    const TamExpWinSeException exception(1000, &fault.pointers);
    EXPECT_EQ(std::wstring(exception.message), L"");
}

#ifndef _WIN32

TEST_F(StructuredExceptions, AStackOverflowIsThreeLinesToTheDebugger) {
    Fault fault(EXCEPTION_STACK_OVERFLOW);
    const TamExpWinSeException exception(1000,
                                         &fault.pointers);  // the filter's code: the record counts
    EXPECT_EQ(headless::DebugOutput(),
              L"!!!!!!!!!!!!!!!!!!!!!!!!!!!!!!!!!\n"
              L"EXCEPTION_STACK_OVERFLOW occurred\n"
              L"!!!!!!!!!!!!!!!!!!!!!!!!!!!!!!!!!\n");
}

TEST_F(StructuredExceptions, TheCodeAloneTellsNothingOfTheStack) {
    Fault fault(EXCEPTION_ACCESS_VIOLATION);
    const TamExpWinSeException exception(EXCEPTION_STACK_OVERFLOW, &fault.pointers);
    EXPECT_EQ(headless::DebugOutput(), L"");
}

#else

// Real faults. A vectored handler stands where a host has its translator: it sends the thread to a
// function that calls the library's, on the stack of the faulting function.
EXCEPTION_RECORD realRecord;
EXCEPTION_POINTERS realPointers;
void (*landing)() = nullptr;
void* closedPage = nullptr;
int returnedAtOnce = 0;

// A fault of the translation itself: the library's function is to return, then the platform goes
// on, which here means that the memory becomes readable and the faulting instruction runs again.
LONG GoOnAfterSecondFault(EXCEPTION_POINTERS* pointers) {
    TranslateSeException(pointers->ExceptionRecord->ExceptionCode, pointers);
    ++returnedAtOnce;
    DWORD before = 0;
    VirtualProtect(closedPage, 1, PAGE_READWRITE, &before);
    return EXCEPTION_CONTINUE_EXECUTION;
}

LONG CALLBACK OnFault(EXCEPTION_POINTERS* pointers) {
    if (pointers->ExceptionRecord->ExceptionCode != EXCEPTION_ACCESS_VIOLATION) {
        return EXCEPTION_CONTINUE_SEARCH;
    }
    if (translatingSeException) return GoOnAfterSecondFault(pointers);
    realRecord = *pointers->ExceptionRecord;
    realPointers.ExceptionRecord = &realRecord;
    realPointers.ContextRecord = nullptr;
    // As a call of the landing from the faulting instruction, so that unwinding finds its way.
    auto* const stack = reinterpret_cast<DWORD64*>(pointers->ContextRecord->Rsp) - 1;
    *stack = pointers->ContextRecord->Rip;
    pointers->ContextRecord->Rsp = reinterpret_cast<DWORD64>(stack);
    pointers->ContextRecord->Rip = reinterpret_cast<DWORD64>(landing);
    return EXCEPTION_CONTINUE_EXECUTION;
}

class FaultHandler {
  public:
    explicit FaultHandler(void (*function)()) : handle_(AddVectoredExceptionHandler(1, OnFault)) {
        landing = function;
    }
    ~FaultHandler() { RemoveVectoredExceptionHandler(handle_); }
    FaultHandler(const FaultHandler&) = delete;
    FaultHandler& operator=(const FaultHandler&) = delete;

  private:
    void* handle_;
};

void Nothing() {}
void (*volatile opaqueNothing)() = Nothing;

// Writes through the address. The call before it gives the function a frame with room for a callee,
// which the landing uses; through volatile pointers the compiler takes both for calls that may
// throw.
__attribute__((noinline)) void Write(volatile int* address) {
    opaqueNothing();
    *address = 1;
    opaqueNothing();
}
void (*volatile opaqueWrite)(volatile int*) = Write;

// The exception that a write to address 0 arrives as; null if none came.
TamExpWinSeException* CatchFault() {
    try {
        opaqueWrite(nullptr);
    } catch (TamExpWinSeException* exception) {
        return exception;
    }
    return nullptr;
}

TEST_F(StructuredExceptions, ARealAccessFaultArrivesAsAnException) {
    const FaultHandler handler(
        [] { TranslateSeException(realRecord.ExceptionCode, &realPointers); });
    TamExpWinSeException* const caught = CatchFault();
    ASSERT_NE(caught, nullptr);
    EXPECT_EQ(caught->GetCode(), 0xC0000005u);
    EXPECT_EQ(caught->GetPointers(), &realPointers);
    EXPECT_EQ(caught->GetAddress(), realRecord.ExceptionAddress);
    EXPECT_NE(caught->GetAddress(), nullptr);
    EXPECT_FALSE(translatingSeException);
    caught->Delete();
}

TEST_F(StructuredExceptions, ARealAccessFaultArrivesThroughTheFilter) {
    const FaultHandler handler([] { SeExceptionFilter(&realPointers); });
    TamExpWinSeException* const caught = CatchFault();
    ASSERT_NE(caught, nullptr);
    EXPECT_EQ(caught->GetCode(), 1000u);
    caught->Delete();
}

TEST_F(StructuredExceptions, ARealFaultOfTheConstructionIsLeftToThePlatform) {
    const FaultHandler handler(nullptr);
    closedPage = VirtualAlloc(nullptr, 4096, MEM_COMMIT | MEM_RESERVE, PAGE_NOACCESS);
    ASSERT_NE(closedPage, nullptr);
    returnedAtOnce = 0;
    try {
        TranslateSeException(1, static_cast<EXCEPTION_POINTERS*>(closedPage));
        ADD_FAILURE() << "nothing was thrown";
    } catch (TamExpWinSeException* caught) {
        EXPECT_EQ(returnedAtOnce, 1);
        EXPECT_EQ(caught->GetPointers(), closedPage);
        EXPECT_FALSE(translatingSeException);
        caught->Delete();
    }
    VirtualFree(closedPage, 0, MEM_RELEASE);
}

#endif

}  // namespace
