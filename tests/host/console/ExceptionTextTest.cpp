#include "host/console/ExceptionText.h"

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>
#include <string>

#include "tam/TamExceptions.h"

namespace {

using host::console::describeException;
using namespace TamLib;

template <class Thrown>
std::string described(Thrown thrown) {
    try {
        throw thrown;
    } catch (...) {
        return describeException();
    }
}

TEST(ExceptionText, TellsClassMessageLineAndSourceOfTheLibrarysExceptions) {
    EXPECT_EQ(described(TamExpAcad(L"Allocation of AcDbLine failed", 321, L"GeomEnts/Line")),
              "TamLib::TamExpAcad \"Allocation of AcDbLine failed\" at line 321 in GeomEnts/Line");
    EXPECT_EQ(described(TamExpInternal(L"Käännös\n", 7, L"a/b")),
              "TamLib::TamExpInternal \"Käännös\" at line 7 in a/b");
}

TEST(ExceptionText, AnEmptyMessageIsLeftOut) {
    EXPECT_EQ(described(TamExpRange(L"", 12, L"datastruct/Array")),
              "TamLib::TamExpRange at line 12 in datastruct/Array");
    EXPECT_EQ(described(TamExpDivZero()), "TamLib::TamExpDivZero at line 445 in tam/TamExceptions");
}

TEST(ExceptionText, NamesTheClassThatWasThrownNotTheOneThatCatches) {
    EXPECT_EQ(described(TamExpActionCancelled(L"User cancelled the action.", 1, L"x")),
              "TamLib::TamExpActionCancelled \"User cancelled the action.\" at line 1 in x");
}

TEST(ExceptionText, ATranslatedStructuredExceptionIsDescribedThroughItsPointerAndFreed) {
    EXPECT_EQ(described(new TamExpWinSeException(0xC0000005U, nullptr)),
              "TamLib::TamExpWinSeException at line 398 in tam/TamExceptions");
    EXPECT_EQ(described(static_cast<TamExpWinSeException*>(nullptr)),
              "TamLib::TamExpWinSeException without an object, for want of memory");
}

TEST(ExceptionText, OtherPointersAreDescribedToo) {
    TamExpInvalidArgs kept;
    EXPECT_EQ(described(static_cast<TamExpBase*>(&kept)),
              "TamLib::TamExpInvalidArgs at line 486 in tam/TamExceptions");
    std::runtime_error error("why");
    EXPECT_EQ(described(static_cast<std::exception*>(&error)), "std::runtime_error \"why\"");
    EXPECT_EQ(described(static_cast<const char*>("plain")), "the text \"plain\"");
    EXPECT_EQ(described(static_cast<const wchar_t*>(L"leveä")), "the text \"leveä\"");
}

TEST(ExceptionText, StandardExceptionsTellClassAndWords) {
    EXPECT_EQ(described(std::out_of_range("vector::at")), "std::out_of_range \"vector::at\"");
    EXPECT_EQ(described(std::bad_alloc()), "std::bad_alloc \"std::bad_alloc\"");
}

TEST(ExceptionText, AnythingElseIsKnownByItsClass) {
    EXPECT_EQ(described(42), "an exception of class int");
    EXPECT_EQ(described(static_cast<TamExpBase*>(nullptr)),
              "an exception of class TamLib::TamExpBase*");
}

}  // namespace
