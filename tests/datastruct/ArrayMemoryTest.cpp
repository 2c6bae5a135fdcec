// Memory that is refused or runs out: what is raised, from where, and what the array holds then.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "datastruct/Array.h"
#include "tests/datastruct/ArrayFaults.h"
#include "tests/datastruct/ArrayLives.h"

using TamLib::Array;
using test::Catch;
using test::ExpectNoMemory;
using test::Life;
using test::MemoryFaults;
using test::Request;

namespace {

struct Bytes24 {
    double x, y, z;
};
struct Bytes128 {
    double numbers[16];
};

template <class T>
void ExpectRefusedAt(std::uint32_t n) {
    MemoryFaults memory;
    EXPECT_EQ(Catch([&] { Array<T>::_Allocate(n, 0, 804); }).type, "TamExpNoMem");
    EXPECT_EQ(Catch([&] { Array<T>::_ReAllocate(nullptr, n, 0, 826); }).type, "TamExpNoMem");
    EXPECT_EQ(memory.Requests(), 0) << "refused without an attempt";
    memory.Fail(Request::any, 1);
    EXPECT_EQ(Catch([&] { Array<T>::_Allocate(n - 1, 0, 804); }).type, "TamExpNoMem");
    EXPECT_EQ(memory.Requests(), 1) << "one less is asked for";
    EXPECT_EQ(memory.LastSize(), std::size_t{n - 1} * sizeof(T));
}

TEST(ArrayMemory, RequestsAreRefusedFromAPositive32BitByteSizeOn) {
    ExpectRefusedAt<Bytes24>(89478485);
    ExpectRefusedAt<double>(268435455);
    ExpectRefusedAt<Bytes128>(16777215);
    ExpectRefusedAt<char>(0x7FFFFFFF);
}

TEST(ArrayMemory, RefusalOfAllocateTellsBothSizes) {
    ExpectNoMemory(Catch([] { Array<Bytes24>().Allocate(89478485); }),
                   L"Out of memory in TamLib::Array::_Allocate().\n"
                   L"malloc() trying to allocate 24*89478485 = 2147483640 bytes.\n"
                   L"Old size was 0 bytes.",
                   804, L"datastruct/Array");
}

TEST(ArrayMemory, RefusalOfResizeTellsBothSizes) {
    Array<Bytes24> array(10);
    ExpectNoMemory(Catch([&] { array.Resize(89478485); }),
                   L"Out of memory in TamLib::Array::_ReAllocate().\n"
                   L"realloc() trying to allocate 24*89478485 = 2147483640 bytes.\n"
                   L"Old size was 240 bytes.",
                   826, L"datastruct/Array");
    EXPECT_EQ(array.capacity, 10u);
}

TEST(ArrayMemory, SizesInTheTextWrapIn32Bits) {
    ExpectNoMemory(Catch([] { Array<Bytes24>::_Allocate(0xFFFFFFFFu, 0x80000000u, 804); }),
                   L"Out of memory in TamLib::Array::_Allocate().\n"
                   L"malloc() trying to allocate 24*-1 = -24 bytes.\n"
                   L"Old size was 0 bytes.",
                   804, L"datastruct/Array");
}

TEST(ArrayMemory, FailureOfMakeRoomIsOfTheTemporaryBlock) {
    Array<Bytes24> array(10);
    for (int i = 0; i < 3; ++i) array.Append({});
    MemoryFaults memory;
    memory.Fail(Request::allocate, 1);
    ExpectNoMemory(Catch([&] { array.MakeRoom(1, 4); }),
                   L"Out of memory in TamLib::Array::_Allocate().\n"
                   L"malloc() trying to allocate 24*4 = 96 bytes.\n"
                   L"Old size was 240 bytes.",
                   850, L"datastruct/Array");
}

TEST(ArrayMemory, FailureOfAssignmentIsOfAllocate) {
    Array<Bytes24> source(10);
    source.Append({});
    source.Append({});
    for (const bool bitwise : {false, true}) {
        source.bitwise = bitwise;
        source.sorted = true;
        Array<Bytes24> target(3);
        target.Append({});
        MemoryFaults memory;
        memory.Fail(Request::allocate, 1);
        ExpectNoMemory(Catch([&] { target = source; }),
                       L"Out of memory in TamLib::Array::_Allocate().\n"
                       L"malloc() trying to allocate 24*2 = 48 bytes.\n"
                       L"Old size was 0 bytes.",
                       804, L"datastruct/Array");
        EXPECT_EQ(target.count, 0u);
        EXPECT_EQ(target.capacity, 0u);
        EXPECT_EQ(target.data, nullptr);
        EXPECT_EQ(target.increment, 10u);
        EXPECT_TRUE(target.sorted);
    }
}

TEST(ArrayMemory, GrowthBeyond32BitsIsRefused) {
    Array<char> array;
    array.Append('x');
    array.increment = 0xFFFFFFFFu;
    array.Resize(array.count);
    EXPECT_EQ(Catch([&] { array.Append('z'); }).line, 826);
    EXPECT_EQ(Catch([&] { array.Insert(0, 'z'); }).line, 826);
    EXPECT_EQ(Catch([&] { array.Set(1000, 'z'); }).line, 826);
}

TEST(ArrayMemory, ZeroElementsAreABlockOfOneByte) {
    MemoryFaults memory;
    int* block = Array<int>::_Allocate(0, 0, 466);
    EXPECT_NE(block, nullptr);
    EXPECT_EQ(memory.LastSize(), 1u);
    TamLib::HeapRelease(block);
    EXPECT_EQ(memory.Live(), 0);
}

TEST(ArrayMemory, ANullBlockIsReallocatedByMalloc) {
    MemoryFaults memory;
    memory.Fail(Request::reallocate, 1);
    void* block = TamLib::HeapReallocate(nullptr, 0, 16);
    EXPECT_NE(block, nullptr);
    EXPECT_EQ(memory.Passed(), 0);
    TamLib::HeapRelease(block);
}

TEST(ArrayMemory, FailedReallocFallsBackToMallocAndCopy) {
    for (const std::size_t size : {8u, 4u}) {
        MemoryFaults memory;
        auto* block = static_cast<char*>(TamLib::HeapAllocate(6));
        std::memcpy(block, "abcdef", 6);
        memory.Fail(Request::reallocate, 1);
        auto* fresh = static_cast<char*>(TamLib::HeapReallocate(block, 6, size));
        ASSERT_NE(fresh, nullptr);
        const std::size_t kept = size < 6 ? size : 6;
        EXPECT_EQ(std::string(fresh, kept), std::string("abcdef").substr(0, kept));
        EXPECT_EQ(memory.Live(), 1) << "the old block is given back";
        TamLib::HeapRelease(fresh);
    }
}

TEST(ArrayMemory, FailedReallocAndMallocKeepTheOldBlock) {
    Array<int> array(5);
    array.Append(1);
    {
        MemoryFaults memory;
        memory.Fail(Request::any, 1, 1);  // realloc, then malloc
        ExpectNoMemory(Catch([&] { array.Resize(9); }),
                       L"Out of memory in TamLib::Array::_ReAllocate().\n"
                       L"realloc() trying to allocate 4*9 = 36 bytes.\n"
                       L"Old size was 20 bytes.",
                       826, L"datastruct/Array");
        EXPECT_EQ(memory.Passed(), 2);
    }
    EXPECT_EQ(array.capacity, 5u);
    EXPECT_EQ(array[0], 1);
}

TEST(ArrayMemory, AppendGoesOnWhenOnlyReallocFails) {
    Array<int> array(5);
    for (int i = 0; i < 5; ++i) array.Append(i);
    MemoryFaults memory;
    memory.Fail(Request::reallocate, 1);
    array.Append(5);
    EXPECT_EQ(std::vector<int>(array.begin(), array.end()), (std::vector<int>{0, 1, 2, 3, 4, 5}));
}

// Every operation that takes memory, on an array of 5, 2, 4, 2, 1 with `spare` slots more.
struct Operation {
    const char* name;
    std::function<void(Array<Life>&)> run;
};

std::vector<Operation> Operations() {
    return {
        {"Append", [](Array<Life>& a) { a.Append(Life(9)); }},
        {"Append of its own", [](Array<Life>& a) { a.Append(a[1]); }},
        {"Add", [](Array<Life>& a) { a.sorted = true, a.Add(Life(3)); }},
        {"AddUnique", [](Array<Life>& a) { a.AddUnique(Life(9)); }},
        {"Set", [](Array<Life>& a) { a.Set(30, Life(9)); }},
        {"Insert", [](Array<Life>& a) { a.Insert(1, Life(9)); }},
        {"Insert of its own", [](Array<Life>& a) { a.Insert(1, a[3]); }},
        {"Remove", [](Array<Life>& a) { a.increment = 1, a.Remove(0, 1); }},
        {"Resize up", [](Array<Life>& a) { a.Resize(50); }},
        {"Resize down", [](Array<Life>& a) { a.Resize(3); }},
        {"MakeRoom", [](Array<Life>& a) { a.MakeRoom(2, 8); }},
        {"Allocate", [](Array<Life>& a) { a.Allocate(7); }},
        {"MakeUnique", [](Array<Life>& a) { a.increment = 1, a.MakeUnique(); }},
        {"Sort", [](Array<Life>& a) { a.Sort(); }},
        {"SortUnique", [](Array<Life>& a) { a.SortUnique(); }},
        {"copy", [](Array<Life>& a) { const Array<Life> copy(a); }},
        {"assignment",
         [](Array<Life>& a) {
             Array<Life> target(3);
             target = a;
         }},
        {"Slice", [](Array<Life>& a) { a.Slice(3, 20); }},
    };
}

std::vector<int> Values(const Array<Life>& array) {
    std::vector<int> values;
    for (const Life& life : array) values.push_back(life.Value());
    return values;
}

// Fails the n-th request of an operation, n = 1, 2 and so on until it passes.
void FailInTurn(const Operation& operation, std::uint32_t spare) {
    for (int n = 1;; ++n) {
        Life::Start();
        MemoryFaults memory;
        std::string raised;
        {
            Array<Life> array;
            array.compare = Life::Compare;
            array.Resize(5 + spare);
            for (int value : {5, 2, 4, 2, 1}) array.Append(Life(value));
            const std::vector<int> before = Values(array);
            // The request and, where it is a realloc, the malloc that stands in for it.
            memory.Fail(Request::any, n, 1);
            raised = Catch([&] { operation.run(array); }).type;
            const int refused = memory.Passed();
            memory.Fail(Request::any, 0);

            EXPECT_EQ(Life::living.size(), array.capacity);
            EXPECT_LE(array.count, array.capacity);
            const std::string name = operation.name;
            if (raised != "nothing") {
                EXPECT_EQ(raised, "TamExpNoMem");
                EXPECT_GE(refused, n);
                if (name == "Resize down") {
                    EXPECT_EQ(Values(array), (std::vector<int>{5, 2, 4}));
                } else if (name == "Remove") {
                    EXPECT_EQ(Values(array), (std::vector<int>{2, 4, 2, 1}));
                } else if (name == "MakeUnique") {
                    EXPECT_EQ(Values(array), (std::vector<int>{5, 4, 2, 1}));
                } else if (name == "Allocate") {
                    EXPECT_EQ(Values(array), std::vector<int>{});
                } else {
                    EXPECT_EQ(Values(array), before);
                }
            }
            array.Append(Life(77));  // still of use
            EXPECT_EQ(array[-1].Value(), 77);
        }
        EXPECT_EQ(Life::living.size(), 0u);
        EXPECT_EQ(Life::errors, 0);
        EXPECT_EQ(memory.Live(), 0);
        if (raised == "nothing") break;
    }
}

TEST(ArrayMemory, EveryRequestOfEveryOperationMayFail) {
    for (const Operation& operation : Operations()) {
        for (const std::uint32_t spare : {0u, 1u, 40u}) {
            SCOPED_TRACE(std::string(operation.name) + " with " + std::to_string(spare) + " spare");
            FailInTurn(operation, spare);
        }
    }
}

TEST(ArrayMemory, AnAssignmentThatRaisesLeavesTheElements) {
    for (const auto& operation : Operations()) {
        const std::string name = operation.name;
        if (name.rfind("Append", 0) != 0 && name.rfind("Insert", 0) != 0 && name != "Add" &&
            name != "AddUnique" && name != "Set" && name != "copy" && name != "assignment" &&
            name != "Slice") {
            continue;
        }
        SCOPED_TRACE(name);
        Life::Start();
        {
            Array<Life> array;
            array.compare = Life::Compare;
            for (int value : {5, 2, 4, 2, 1}) array.Append(Life(value));
            Life::raiseAtAssignment = 1;
            EXPECT_THROW(operation.run(array), std::runtime_error);
            EXPECT_EQ(Values(array), (std::vector<int>{5, 2, 4, 2, 1}));
            EXPECT_EQ(Life::living.size(), array.capacity);
        }
        EXPECT_EQ(Life::living.size(), 0u);
        EXPECT_EQ(Life::errors, 0);
    }
}

}  // namespace
