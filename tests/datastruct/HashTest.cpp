#include "datastruct/Hash.h"

#include <gtest/gtest.h>

#include <random>
#include <stdexcept>
#include <type_traits>
#include <unordered_map>
#include <utility>
#include <vector>

#include "tests/datastruct/ArrayFaults.h"

using TamLib::Hash;
using test::Catch;
using test::MemoryFaults;
using test::Request;

namespace {

using Ints = Hash<int, int>;

std::uint32_t OneBucket(const int*) {
    return 7;
}
std::uint32_t ByValue(const int* key) {
    return static_cast<std::uint32_t>(*key);
}

template <class V>
std::vector<std::vector<int>> Keys(const Hash<int, V>& table) {
    std::vector<std::vector<int>> chains;
    for (const auto& chain : table.buckets) {
        chains.emplace_back();
        for (const auto& pair : chain) chains.back().push_back(pair.key);
    }
    return chains;
}

TEST(Hash, FieldsStandInTheirFixedOrder) {
    const Ints table;
    const auto* fields = reinterpret_cast<const unsigned char*>(&table);
    const auto offset = [&](const void* field) {
        return static_cast<const unsigned char*>(field) - fields;
    };
    EXPECT_EQ(offset(&table.hashFunction), 8);
    EXPECT_EQ(offset(&table.buckets), 16);
    EXPECT_EQ(offset(&table.maxChain), 64);
    EXPECT_EQ(offset(&table.entries), 68);
    EXPECT_TRUE(std::has_virtual_destructor_v<Ints>);
}

TEST(Hash, StartsWithTheBucketsItIsBuiltWith) {
    const Ints table(4, 10);
    EXPECT_EQ(table.buckets.count, 4u);
    EXPECT_EQ(table.buckets.capacity, 4u);
    EXPECT_EQ(table.buckets.increment, 5u);
    EXPECT_FALSE(table.buckets.bitwise);
    EXPECT_EQ(table.maxChain, 10u);
    EXPECT_EQ(table.entries, 0u);
    EXPECT_EQ(Ints(40).buckets.increment, 40u);
}

TEST(Hash, BytesOfIntegersHashToTheNumbersWorkedOutByHand) {
    const Ints table;
    // 5381 * 33^4 = 6381440901, modulo 2^32 2086473605; the first byte weighs 33^3 = 35937.
    EXPECT_EQ(table.HashOf(0), 2086473605u);
    EXPECT_EQ(table.HashOf(1), 2086473605u + 35937u);
    EXPECT_EQ(table.HashOf(2), 2086473605u + 2u * 35937u);
    // 16 adds 16 and 16 >> 4; 256 stands in the second byte, which weighs 33^2.
    EXPECT_EQ(table.HashOf(16), 2086473605u + 17u * 35937u);
    EXPECT_EQ(table.HashOf(256), 2086473605u + 1089u);
    // Four bytes of 255 + 15, weighing 35937 + 1089 + 33 + 1.
    EXPECT_EQ(table.HashOf(-1), 2086473605u + 270u * 37060u);
}

TEST(Hash, BytesOfOneAndOfEightHashByThemselves) {
    EXPECT_EQ(TamLib::ByteHash("", 0), 5381u);
    EXPECT_EQ(TamLib::ByteHash("a", 1), 5381u * 33u + 97u + 6u);
    const Hash<std::int64_t, bool> table;
    const std::int64_t key = 0x0102030405060708;
    EXPECT_EQ(table.HashOf(key), TamLib::ByteHash(&key, 8));
    int object = 0;
    int* const pointer = &object;
    EXPECT_EQ((Hash<int*, int>().HashOf(pointer)), TamLib::ByteHash(&pointer, sizeof(pointer)));
}

TEST(Hash, KeysGoByTheirBytesAndNotByTheirValue) {
    Ints table;
    table[1] = 10;
    table.Rehash(10);
    table[2] = 20;
    // 2086509542 and 2086545479 modulo 10.
    ASSERT_EQ(table.buckets.count, 10u);
    EXPECT_EQ(Keys(table)[2], std::vector<int>{1});
    EXPECT_EQ(Keys(table)[9], std::vector<int>{2});
}

TEST(Hash, AFunctionReplacesTheByteHash) {
    Ints table(1, 10, ByValue);
    EXPECT_EQ(table.HashOf(123), 123u);
    table[5] = 1;
    table.Rehash(4);
    EXPECT_EQ(Keys(table)[1], std::vector<int>{5});
    // A bucket is taken without a sign.
    table[-1] = 2;  // 4294967295 modulo 4
    EXPECT_EQ(Keys(table)[3], std::vector<int>{-1});
}

TEST(Hash, FirstInsertionLeavesOneBucket) {
    Ints brackets(4, 10);
    brackets[1] = 1;
    EXPECT_EQ(brackets.buckets.count, 1u);
    Ints set(4, 10);
    set.Set(1, 1);
    EXPECT_EQ(set.buckets.count, 1u);
    EXPECT_EQ(set.buckets.capacity, 1u);
    EXPECT_EQ(set.buckets.increment, 5u);
    Ints cleared(40, 10);
    cleared[1] = 1;
    cleared.Clear();
    cleared[2] = 2;
    EXPECT_EQ(cleared.buckets.count, 1u);
    EXPECT_EQ(cleared.buckets.increment, 40u);  // of the member, whatever was exchanged
}

TEST(Hash, LookupOnAnEmptyTableTouchesNothing) {
    const Ints table(4, 10);
    int value = 77;
    EXPECT_FALSE(table.Lookup(1, &value));
    EXPECT_EQ(value, 77);
    EXPECT_FALSE(table.Contains(1));
    EXPECT_EQ(table.buckets.count, 4u);
}

TEST(Hash, LookupOfAMissingKeyLeavesTheValue) {
    Ints table;
    table[1] = 10;
    int value = 77;
    EXPECT_FALSE(table.Lookup(2, &value));
    EXPECT_EQ(value, 77);
    EXPECT_TRUE(table.Lookup(1, &value));
    EXPECT_EQ(value, 10);
    EXPECT_TRUE(table.Contains(1));
}

TEST(Hash, BracketsInsertADefaultValue) {
    Ints ints;
    EXPECT_EQ(ints[3], 0);
    EXPECT_EQ(ints.entries, 1u);
    Hash<int, bool> flags;
    EXPECT_FALSE(flags[3]);
    Hash<int, int*> pointers;
    EXPECT_EQ(pointers[3], nullptr);
    ints[3] += 5;
    EXPECT_EQ(ints[3], 5);
    EXPECT_EQ(ints.entries, 1u);
}

TEST(Hash, EleventhBracketsOnOneBucketRehash) {
    Ints table(1, 10);
    for (int key = 0; key < 10; ++key) table[key] = key;
    EXPECT_EQ(table.buckets.count, 1u);
    table[9] = 99;  // present: no growth
    EXPECT_EQ(table.buckets.count, 1u);
    table[10] = 10;
    EXPECT_EQ(table.buckets.count, 10u);
    EXPECT_EQ(table.entries, 11u);
    for (int key = 0; key < 11; ++key) EXPECT_EQ(table[key], key == 9 ? 99 : key);
}

TEST(Hash, TwelfthSetOnOneBucketRehashes) {
    Ints table(1, 10);
    for (int key = 0; key < 11; ++key) table.Set(key, key);
    EXPECT_EQ(table.buckets.count, 1u);
    table.Set(10, 99);
    EXPECT_EQ(table.buckets.count, 1u);
    table.Set(11, 11);
    EXPECT_EQ(table.buckets.count, 10u);
    EXPECT_EQ(table.entries, 12u);
    for (int key = 0; key < 12; ++key) EXPECT_EQ(table[key], key == 10 ? 99 : key);
}

TEST(Hash, BracketsRehashBeforeAndSetAfterAdding) {
    // All keys in one chain: the table grows as often as entries pass buckets.
    Ints brackets(1, 10, OneBucket);
    for (int key = 0; key < 11; ++key) brackets[key] = key;
    EXPECT_EQ(brackets.buckets.count, 10u);  // grown with 10 entries in the table
    brackets[11] = 11;                       // 11 entries are above 10 buckets
    EXPECT_EQ(brackets.buckets.count, 37u);
    Ints set(1, 10, OneBucket);
    for (int key = 0; key < 12; ++key) set.Set(key, key);
    EXPECT_EQ(set.buckets.count, 10u);  // grown with 12 entries in the table
    set.Set(12, 12);
    EXPECT_EQ(set.buckets.count, 37u);
}

TEST(Hash, GrowsOnlyWithMoreEntriesThanBuckets) {
    Ints table(1, 10, OneBucket);
    for (int key = 0; key <= 37; ++key) {
        table[key] = key;
        const std::uint32_t expected = key < 10 ? 1 : key < 11 ? 10 : 37;
        EXPECT_EQ(table.buckets.count, expected) << key;
    }
    table[38] = 38;
    EXPECT_EQ(table.buckets.count, 118u);
    Ints set(1, 10, OneBucket);
    for (int key = 0; key <= 36; ++key) set.Set(key, key);
    EXPECT_EQ(set.buckets.count, 37u);
    set.Set(37, 37);
    EXPECT_EQ(set.buckets.count, 118u);
}

TEST(Hash, RehashSeriesIs1_10_37_118_361) {
    Ints table;
    std::vector<std::uint32_t> series;
    for (int key = 0; series.size() < 7; ++key) {
        table[key] = key;
        if (series.empty() || series.back() != table.buckets.count) {
            series.push_back(table.buckets.count);
        }
    }
    EXPECT_EQ(series, (std::vector<std::uint32_t>{1, 10, 37, 118, 361, 1090, 3277}));
    table.Rehash(-5);
    EXPECT_EQ(table.buckets.count, 3u * 3277u + 7u);
}

TEST(Hash, RehashTakesChainsAndPairsInTheirOrder) {
    Ints table(1, 100, ByValue);
    for (int key : {9, 2, 5, 8, 1, 4, 7}) table[key] = key;
    EXPECT_EQ(Keys(table), (std::vector<std::vector<int>>{{9, 2, 5, 8, 1, 4, 7}}));
    table.Rehash(3);
    EXPECT_EQ(Keys(table), (std::vector<std::vector<int>>{{9}, {1, 4, 7}, {2, 5, 8}}));
    table.Rehash(2);
    EXPECT_EQ(Keys(table), (std::vector<std::vector<int>>{{4, 2, 8}, {9, 1, 7, 5}}));
    EXPECT_EQ(table.buckets.capacity, 2u);
    EXPECT_EQ(table.entries, 7u);
}

TEST(Hash, SetOfAPresentKeyReplacesTheValueAlone) {
    Ints table;
    table.Set(1, 10);
    table.Set(2, 20);
    const auto keys = Keys(table);
    table.Set(1, 11);
    EXPECT_EQ(Keys(table), keys);
    EXPECT_EQ(table.entries, 2u);
    EXPECT_EQ(table[1], 11);
}

TEST(Hash, ValuesMayComeFromTheTableItself) {
    Ints table(1, 10);
    for (int key = 0; key < 5; ++key) table[key] = key * 10;
    table.Set(100, table[3]);  // the chain moves
    table.Set(101, table[100]);
    EXPECT_EQ(table[100], 30);
    EXPECT_EQ(table[101], 30);
    for (int key = 5; key < 8; ++key) table[key] = 0;
    const int& key = table.buckets.data[0].data[4].key;
    EXPECT_EQ(table[key], 40);
}

TEST(Hash, ClearEmptiesTheTableForNewUse) {
    Ints table;
    for (int key = 0; key < 50; ++key) table[key] = key;
    table.Clear();
    EXPECT_EQ(table.entries, 0u);
    EXPECT_EQ(table.buckets.count, 0u);
    int value = 5;
    EXPECT_FALSE(table.Lookup(1, &value));
    EXPECT_EQ(value, 5);
    table.Set(1, 2);
    EXPECT_EQ(table.buckets.count, 1u);
    EXPECT_TRUE(table.Lookup(1, &value));
    EXPECT_EQ(value, 2);
}

TEST(Hash, CopiesAreTablesOfTheirOwn) {
    Ints table;
    for (int key = 0; key < 50; ++key) table[key] = key;
    Ints copy(table);
    copy[7] = 70;
    copy[99] = 99;
    EXPECT_EQ(table[7], 7);
    EXPECT_FALSE(table.Contains(99));
    EXPECT_EQ(copy.entries, 51u);
}

TEST(Hash, ARehashWithoutMemoryLeavesTheTable) {
    Ints table(1, 10);
    for (int key = 0; key < 10; ++key) table[key] = key;
    {
        MemoryFaults memory;
        memory.Fail(Request::allocate, 1);
        const auto raised = Catch([&] { table[10] = 10; });
        EXPECT_EQ(raised.type, "TamExpNoMem");
        EXPECT_EQ(raised.line, 826);
    }
    EXPECT_EQ(table.entries, 10u);
    EXPECT_EQ(table.buckets.count, 1u);
    for (int key = 0; key < 10; ++key) EXPECT_EQ(table[key], key);
    table[10] = 10;
    EXPECT_EQ(table.buckets.count, 10u);
}

// Its n-th copy raises.
struct Touchy {
    Touchy() = default;
    explicit Touchy(int number) : value(number) {}
    Touchy(const Touchy& other) : value(other.value) { Copied(); }
    Touchy& operator=(const Touchy& other) {
        Copied();
        value = other.value;
        return *this;
    }
    friend bool operator==(const Touchy& a, const Touchy& b) { return a.value == b.value; }

    static void Copied() {
        if (raiseAt != 0 && --raiseAt == 0) throw std::runtime_error("refused");
    }
    static inline int raiseAt = 0;
    int value = 0;
};

TEST(Hash, ARehashThatFailsWhileCopyingLeavesTheTable) {
    Hash<int, Touchy> table(1, 10);
    for (int key = 0; key < 10; ++key) table.Set(key, Touchy(key));
    MemoryFaults memory;
    for (int n = 1; n <= 10; ++n) {
        Touchy::raiseAt = n;
        EXPECT_THROW(table.Rehash(-1), std::runtime_error);
        EXPECT_EQ(memory.Live(), 0);
        EXPECT_EQ(table.entries, 10u);
        EXPECT_EQ(table.buckets.count, 1u);
        for (int key = 0; key < 10; ++key) {
            Touchy value;
            EXPECT_TRUE(table.Lookup(key, &value));
            EXPECT_EQ(value.value, key);
        }
    }
}

TEST(Hash, AnInsertionThatFailsAddsNothing) {
    Hash<Touchy, Touchy> table;
    table.Set(Touchy(1), Touchy(1));
    for (int n = 1; n <= 2; ++n) {  // the key, the value
        Touchy::raiseAt = n;
        EXPECT_THROW(table.Set(Touchy(2), Touchy(2)), std::runtime_error);
    }
    Touchy::raiseAt = 1;
    EXPECT_THROW(table[Touchy(3)], std::runtime_error);
    EXPECT_EQ(table.entries, 1u);
    EXPECT_FALSE(table.Contains(Touchy(2)));
    EXPECT_FALSE(table.Contains(Touchy(3)));
}

TEST(Hash, AgreesWithAMapOverRandomUse) {
    std::mt19937 random(31);
    for (int round = 0; round < 20; ++round) {
        Hash<std::int64_t, int> table(static_cast<std::uint32_t>(round), 10);
        std::unordered_map<std::int64_t, int> model;
        for (int step = 0; step < 3000; ++step) {
            const std::int64_t key =
                static_cast<std::int64_t>(random() % 700) * (round % 2 == 0 ? 1 : 0x100000001);
            switch (random() % 4) {
                case 0:
                    table[key] += step;
                    model[key] += step;
                    break;
                case 1:
                    table.Set(key, step);
                    model[key] = step;
                    break;
                case 2: {
                    int value = -1;
                    const auto found = model.find(key);
                    ASSERT_EQ(table.Lookup(key, &value), found != model.end());
                    ASSERT_EQ(value, found != model.end() ? found->second : -1);
                    break;
                }
                default:
                    ASSERT_EQ(table.Contains(key), model.count(key) != 0);
            }
            ASSERT_EQ(table.entries, model.size());
        }
    }
}

}  // namespace
