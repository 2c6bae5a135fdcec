// Arrays against std::vector over random sequences of operations; a failing sequence is shortened.
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <string>
#include <tuple>
#include <vector>

#include "datastruct/Array.h"
#include "datastruct/LwArray.h"

using TamLib::Array;

namespace {

std::int32_t CompareInts(const int* a, const int* b) {
    return (*a > *b) - (*a < *b);
}

// An operation by number, with what it takes.
using Step = std::tuple<int, int, int>;

rc::Gen<std::vector<Step>> Steps(int operations) {
    return rc::gen::container<std::vector<Step>>(rc::gen::tuple(
        rc::gen::inRange(0, operations), rc::gen::inRange(-8, 40), rc::gen::inRange(0, 12)));
}

// What the array promises, kept the plain way.
struct Model {
    std::vector<int> values;
    bool sorted = false;
    bool unique = false;
    std::size_t capacity = 0;
    std::size_t increment = 5;

    bool Has(int value) const { return std::count(values.begin(), values.end(), value) != 0; }

    void Append(int value) {
        sorted = false;
        if (values.size() == capacity) capacity += increment;
        values.push_back(value);
    }
    void Insert(int index, int value) {
        if (unique && Has(value)) return;
        if (values.size() == capacity) capacity += increment + 1;
        values.insert(values.begin() + index, value);
    }
    void Add(int value) {
        if (!sorted) {
            Append(value);
            return;
        }
        // The first element that the value is not above, which need not be in order.
        const auto at = std::find_if(values.begin(), values.end(),
                                     [value](int element) { return !(value > element); });
        Insert(static_cast<int>(at - values.begin()), value);
    }
    void Set(std::size_t index, int value) {
        if (index >= capacity) capacity = increment + index + 1;
        if (index >= values.size()) values.resize(index + 1);
        values[index] = value;
    }
    void Remove(std::size_t index, std::size_t n) {
        const auto from = values.begin() + static_cast<std::ptrdiff_t>(index);
        values.erase(from, from + static_cast<std::ptrdiff_t>(n));
        if (capacity - values.size() > increment) capacity = values.size() + 5;
    }
    void MakeUnique() {
        if (unique) return;
        unique = true;
        for (std::size_t i = 0; i < values.size();) {
            if (std::count(values.begin() + static_cast<std::ptrdiff_t>(i), values.end(),
                           values[i]) > 1) {
                Remove(i, 1);
            } else {
                ++i;
            }
        }
    }
};

void Apply(const Step& step, Array<int>& array, Model& model) {
    const auto [operation, number, value] = step;
    const int n = static_cast<int>(model.values.size());
    const int at = ((number % (n + 1)) + n + 1) % (n + 1);  // 0 to n
    switch (operation) {
        case 0:
            array.Append(value);
            model.Append(value);
            break;
        case 1:
            array.Add(value);
            model.Add(value);
            break;
        case 2:
            array.Insert(number % 2 == 0 ? at : at - n - 1, value);
            model.Insert(at, value);
            break;
        case 3:
            if (at < n) {
                const int length = std::min(value, n - at);
                array.Remove(number % 2 == 0 ? at : at - n, static_cast<std::uint32_t>(length));
                model.Remove(static_cast<std::size_t>(at), static_cast<std::size_t>(length));
            }
            break;
        case 4:
            if (at < n) {
                array.Set(number % 2 == 0 ? at : at - n, value);
                model.Set(static_cast<std::size_t>(at), value);
            }
            break;
        case 5:
            array.Sort();
            std::sort(model.values.begin(), model.values.end());
            model.sorted = true;
            break;
        case 6:
            array.Reverse();
            std::reverse(model.values.begin(), model.values.end());
            break;
        case 7:
            if (!model.sorted) {  // a sorted array finds by bisecting, which may be any of equals
                array.MakeUnique();
                model.MakeUnique();
            }
            break;
        case 8:
            if (!model.sorted) {
                if (!model.Has(value)) model.Append(value);
                const std::int32_t index = array.AddUnique(value);
                RC_ASSERT(index == std::find(model.values.begin(), model.values.end(), value) -
                                       model.values.begin());
            }
            break;
        case 9: {
            const Array<int> copy(array);
            array = copy;
            model.capacity = model.values.size();
            if (!model.values.empty() && !array.bitwise) model.sorted = false;
            break;
        }
        default:
            array.Set(n + value, number);
            // Slots passed over are cleaned by Remove, so that they are 0.
            model.Set(static_cast<std::size_t>(n + value), number);
            break;
    }
}

void ExpectSame(const Array<int>& array, const Model& model) {
    RC_ASSERT(std::vector<int>(array.begin(), array.end()) == model.values);
    RC_ASSERT(array.sorted == model.sorted);
    RC_ASSERT(array.unique == model.unique);
    RC_ASSERT(array.capacity == model.capacity);
    for (int value = -1; value < 13; ++value) {
        RC_ASSERT(array.Contains(value) == model.Has(value));
        RC_ASSERT(array.Count(value) == static_cast<std::uint32_t>(std::count(
                                            model.values.begin(), model.values.end(), value)));
        if (model.sorted) continue;
        const auto found = std::find(model.values.begin(), model.values.end(), value);
        RC_ASSERT(
            array.Find(value) ==
            (found == model.values.end() ? -1 : static_cast<int>(found - model.values.begin())));
    }
}

RC_GTEST_PROP(ArrayLaws, OperationsAgreeWithAVectorInContentFlagsAndCapacity, (bool bitwise)) {
    const int initial = *rc::gen::inRange(0, 9);
    const std::vector<Step> steps = *Steps(11);
    Array<int> array(static_cast<std::uint32_t>(initial));
    array.compare = CompareInts;
    array.bitwise = bitwise;
    Model model;
    model.capacity = static_cast<std::size_t>(initial);
    model.increment = static_cast<std::size_t>(std::max(initial, 5));
    for (const Step& step : steps) {
        Apply(step, array, model);
        ExpectSame(array, model);
    }
}

RC_GTEST_PROP(ArrayLaws, ReversingTwiceChangesNothing, (const std::vector<int>& values)) {
    Array<int> array;
    for (int value : values) array.Append(value);
    array.Reverse();
    array.Reverse();
    RC_ASSERT(std::vector<int>(array.begin(), array.end()) == values);
}

RC_GTEST_PROP(ArrayLaws, WhatIsInsertedAndRemovedAgainLeavesTheRest,
              (const std::vector<int>& values, int value)) {
    Array<int> array;
    for (int element : values) array.Append(element);
    const auto at = *rc::gen::inRange<int>(0, static_cast<int>(values.size()) + 1);
    array.Insert(at, value);
    RC_ASSERT(array[at] == value);
    array.Remove(at, 1);
    RC_ASSERT(std::vector<int>(array.begin(), array.end()) == values);
}

RC_GTEST_PROP(ArrayLaws, FindOnASortedArrayFindsWhatIsThere, (std::vector<int> values)) {
    Array<int> array;
    array.compare = CompareInts;
    for (int& value : values) {
        value %= 50;
        array.Append(value);
    }
    array.Sort();
    for (int value = -50; value <= 50; ++value) {
        const std::int32_t index = array.Find(value);
        const bool present = std::count(values.begin(), values.end(), value) != 0;
        RC_ASSERT((index >= 0) == present);
        if (present) RC_ASSERT(array[index] == value);
        const std::int32_t nearest = array.BinarySearch(value, true);
        if (present || values.empty()) continue;
        if (array[-1] < value) {
            RC_ASSERT(nearest == 0);
        } else {
            RC_ASSERT(nearest == 0 || array[nearest] < value);
            RC_ASSERT(nearest + 1 >= static_cast<int>(array.count) || array[nearest + 1] > value);
        }
    }
}

RC_GTEST_PROP(ArrayLaws, SliceIsTheRing, (const std::vector<int>& values)) {
    RC_PRE(!values.empty());
    const int n = static_cast<int>(values.size());
    Array<int> array;
    for (int value : values) array.Append(value);
    const int first = *rc::gen::inRange(-n, 2 * n);
    const int last = *rc::gen::inRange(-n, 3 * n);
    int from = first < 0 ? first + n : first;
    int to = last < 0 ? last + n : last;
    if (to < from) to += n;
    std::vector<int> expected;
    for (int i = from; i <= to; ++i) expected.push_back(values[static_cast<std::size_t>(i % n)]);
    const Array<int> slice = array.Slice(first, last);
    RC_ASSERT(std::vector<int>(slice.begin(), slice.end()) == expected);
}

RC_GTEST_PROP(LwArrayLaws, HoldsWhatWasAdded, (const std::vector<std::string>& values)) {
    TamLib::LwArray<int, 6> array;
    std::vector<int> model;
    for (const std::string& value : values) {
        const int number = static_cast<int>(value.size());
        RC_ASSERT(array.Add(number) == static_cast<int>(model.size()));
        model.push_back(number);
    }
    const TamLib::LwArray<int, 6> copy(array);
    RC_ASSERT(std::vector<int>(copy.begin(), copy.end()) == model);
}

}  // namespace
