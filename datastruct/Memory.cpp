#include "datastruct/Memory.h"

#include <algorithm>
#include <cstdlib>
#include <new>

#include "datastruct/StringPrint.h"
#include "tam/TamExceptions.h"

namespace TamLib {
namespace {

constexpr const wchar_t* kSource = L"datastruct/Array";

void* NewBytes(std::size_t bytes) {
    return ::operator new[](bytes, std::nothrow);
}

void DeleteBytes(void* block) {
    ::operator delete[](block);
}

[[noreturn]] void RaiseNoMemory(const wchar_t* format, std::size_t elementSize, std::uint32_t count,
                                std::uint32_t oldCount, std::int32_t line) {
    const auto size = static_cast<std::uint32_t>(elementSize);
    wchar_t text[601];
    PrintWithin(text, format, static_cast<std::int32_t>(size), static_cast<std::int32_t>(count),
                static_cast<std::int32_t>(size * count),
                static_cast<std::int32_t>(size * oldCount));
    throw TamExpNoMem(text, line, kSource);
}

}  // namespace

RunTimeMemory runTimeMemory = {std::malloc, std::realloc, std::free, NewBytes, DeleteBytes};

void* HeapAllocate(std::size_t bytes) {
    return runTimeMemory.allocate(std::max<std::size_t>(bytes, 1));
}

void* HeapReallocate(void* block, std::size_t oldBytes, std::size_t newBytes) {
    if (block == nullptr) return runTimeMemory.allocate(newBytes);
    if (void* resized = runTimeMemory.reallocate(block, newBytes)) return resized;
    void* fresh = runTimeMemory.allocate(newBytes);
    if (fresh != nullptr) {
        std::memcpy(fresh, block, std::min(oldBytes, newBytes));
        runTimeMemory.release(block);
    }
    return fresh;
}

void HeapRelease(void* block) {
    runTimeMemory.release(block);
}

void RaiseAllocateFailed(std::size_t elementSize, std::uint32_t count, std::uint32_t oldCount,
                         std::int32_t line) {
    RaiseNoMemory(
        L"Out of memory in TamLib::Array::_Allocate().\n"
        L"malloc() trying to allocate %i*%i = %i bytes.\n"
        L"Old size was %i bytes.",
        elementSize, count, oldCount, line);
}

void RaiseReAllocateFailed(std::size_t elementSize, std::uint32_t count, std::uint32_t oldCount,
                           std::int32_t line) {
    RaiseNoMemory(
        L"Out of memory in TamLib::Array::_ReAllocate().\n"
        L"realloc() trying to allocate %i*%i = %i bytes.\n"
        L"Old size was %i bytes.",
        elementSize, count, oldCount, line);
}

}  // namespace TamLib
