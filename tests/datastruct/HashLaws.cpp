// Tables against std::unordered_map over random sequences of operations; a failing one is
// shortened.
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <tuple>
#include <unordered_map>
#include <vector>

#include "datastruct/Hash.h"

using TamLib::Hash;

namespace {

using Step = std::tuple<int, int, int>;

std::uint32_t FewBuckets(const int* key) {
    return static_cast<std::uint32_t>(*key) / 16u;
}

RC_GTEST_PROP(HashLaws, OperationsAgreeWithAMap, (bool ownFunction)) {
    const std::vector<Step> steps = *rc::gen::container<std::vector<Step>>(rc::gen::tuple(
        rc::gen::inRange(0, 12), rc::gen::inRange(-200, 200), rc::gen::arbitrary<int>()));
    const int limit = *rc::gen::inRange(1, 12);
    Hash<int, int> table(4, static_cast<std::uint32_t>(limit), ownFunction ? FewBuckets : nullptr);
    std::unordered_map<int, int> model;
    for (const auto& [operation, key, value] : steps) {
        if (operation < 5) {
            table[key] = value;
            model[key] = value;
        } else if (operation < 9) {
            table.Set(key, value);
            model[key] = value;
        } else if (operation == 9) {
            table.Rehash(value % 50 == 0 ? -1 : std::abs(value % 50));
        } else if (operation == 10 && key == 0) {
            table.Clear();
            model.clear();
        } else {
            RC_ASSERT(table.Contains(key) == (model.count(key) != 0));
        }
        RC_ASSERT(table.entries == model.size());
    }
    std::size_t pairs = 0;
    for (std::uint32_t i = 0; i < table.buckets.count; ++i) {
        for (const auto& pair : table.buckets.data[i]) {
            ++pairs;
            RC_ASSERT(table.HashOf(pair.key) % table.buckets.count == i);
            RC_ASSERT(model.at(pair.key) == pair.value);
        }
    }
    RC_ASSERT(pairs == model.size());
    for (const auto& [key, value] : model) {
        int found = ~value;
        RC_ASSERT(table.Lookup(key, &found));
        RC_ASSERT(found == value);
    }
}

}  // namespace
