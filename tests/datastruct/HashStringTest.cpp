#include <gtest/gtest.h>

#include <random>
#include <string>
#include <unordered_map>

#include "datastruct/StringHash.h"

using TamLib::HashString;
using TamLib::StringBase;
using TamLib::StringHash;
using TamLib::StringHashBase;

namespace {

using Text = StringBase<wchar_t>;
using Narrow = StringBase<char>;

std::uint32_t HashOf(const wchar_t* text) {
    const Text key(text);
    return HashString(&key);
}

TEST(StringHash, HashesToTheNumbersWorkedOutByHand) {
    EXPECT_EQ(HashOf(L""), 0u);
    EXPECT_EQ(HashOf(L"A"), 65u);
    EXPECT_EQ(HashOf(L"\u00E4"), 0xE4u);
    EXPECT_EQ(HashOf(L"\u20AC"), 0x20ACu);
    // "AB": 65 + ((66 + 1) | 0x410000); "ABC": h << 16 is 0x00840000 then.
    EXPECT_EQ(HashOf(L"AB"), 0x410084u);
    EXPECT_EQ(HashOf(L"ABC"), 0x410084u + 0x840045u);
}

TEST(StringHash, NarrowCharactersHashWithoutASign) {
    const Narrow key("\xE4");
    EXPECT_EQ(HashString(&key), 0xE4u);
    EXPECT_EQ((StringHashBase<char, int>().HashOf(Narrow("AB"))), 0x410084u);
}

TEST(StringHash, TheTableUsesTheHashOfStrings) {
    const StringHash<int> table(4, 10);
    EXPECT_EQ(table.hashFunction, &HashString<wchar_t>);
    EXPECT_EQ(table.HashOf(Text(L"ABC")), HashOf(L"ABC"));
    EXPECT_EQ(table.buckets.count, 4u);
    EXPECT_EQ(table.maxChain, 10u);
}

TEST(StringHash, StringsThatDifferInCaseAreTwoKeys) {
    StringHash<int> table;
    table[Text(L"Katu")] = 1;
    table[Text(L"katu")] = 2;
    table.Set(Text(L"KATU"), 3);
    EXPECT_EQ(table.entries, 3u);
    EXPECT_EQ(table[Text(L"Katu")], 1);
    EXPECT_EQ(table[Text(L"katu")], 2);
}

TEST(StringHash, TheEmptyStringIsAKey) {
    StringHash<bool> table;
    EXPECT_FALSE(table.Contains(Text()));
    table[Text()] = true;
    EXPECT_TRUE(table.Contains(Text(L"")));
    EXPECT_FALSE(table.Contains(Text(L"a")));
}

TEST(StringHash, KeysOfOneHashAreToldApart) {
    StringHashBase<char, int> table;
    table.hashFunction = [](const Narrow*) { return std::uint32_t{5}; };
    for (const char* key : {"a", "b", "ab", "ba", "abc"}) table[Narrow(key)] = key[0] * 10;
    EXPECT_EQ(table.entries, 5u);
    EXPECT_EQ(table[Narrow("ba")], 'b' * 10);
    EXPECT_FALSE(table.Contains(Narrow("abd")));
}

TEST(StringHash, TheComparisonOfAKeySettlesEquality) {
    StringHash<int> table;
    table.hashFunction = [](const Text*) { return std::uint32_t{5}; };
    Text key(L"Katu");
    key.compare = [](const wchar_t* a, const wchar_t* b) {
        return static_cast<std::int32_t>((*a | 0x20) != (*b | 0x20));
    };
    table[key] = 1;
    EXPECT_TRUE(table.Contains(Text(L"kATU")));
    EXPECT_FALSE(table.Contains(Text(L"kAT")));
    EXPECT_FALSE(table.Contains(Text(L"kATI")));
}

TEST(StringHash, KeysWithoutAComparisonAreComparedByThemselves) {
    StringHash<int> table;
    table.hashFunction = [](const Text*) { return std::uint32_t{5}; };
    Text key(L"Katu");
    key.compare = nullptr;
    table[key] = 1;
    table.Set(Text(L"kuja"), 2);
    EXPECT_EQ(table.entries, 2u);
    Text wanted(L"Katu");
    wanted.compare = nullptr;
    EXPECT_TRUE(table.Contains(wanted));
    EXPECT_TRUE(table.Contains(Text(L"Katu")));
    wanted = Text(L"katu");
    wanted.compare = nullptr;
    EXPECT_FALSE(table.Contains(wanted));
    EXPECT_EQ(table[Text(L"kuja")], 2);
}

TEST(StringHash, AgreesWithAMapOverRandomUse) {
    std::mt19937 random(41);
    StringHash<std::int64_t> table(4, 10);
    std::unordered_map<std::wstring, std::int64_t> model;
    for (int step = 0; step < 20000; ++step) {
        std::wstring key;
        for (std::size_t i = random() % 6; i > 0; --i) {
            key += static_cast<wchar_t>(L'a' + random() % 4 * 0x40);
        }
        const Text text(key.c_str());
        if (random() % 2 == 0) {
            table[text] = step;
            model[key] = step;
        } else if (random() % 2 == 0) {
            table.Set(text, -step);
            model[key] = -step;
        }
        std::int64_t value = 77;
        const auto found = model.find(key);
        ASSERT_EQ(table.Lookup(text, &value), found != model.end());
        ASSERT_EQ(value, found != model.end() ? found->second : 77);
        ASSERT_EQ(table.entries, model.size());
    }
}

TEST(StringHash, ValuesMayBeArraysStringsAndPointersToTables) {
    StringHash<TamLib::Array<Text>*> layers;
    TamLib::Array<Text> names;
    names.Append(Text(L"tie"));
    layers.Set(Text(L"kartta"), &names);
    EXPECT_EQ(layers[Text(L"kartta")]->count, 1u);
    StringHash<TamLib::Array<int>> counts;
    for (int i = 0; i < 200; ++i) counts[Text(i)].Append(i);
    for (int i = 0; i < 200; ++i) EXPECT_EQ(counts[Text(i)][0], i);
    TamLib::Hash<std::int64_t, Text> handles;
    for (int i = 0; i < 200; ++i) handles.Set(i, Text(i));
    EXPECT_EQ(std::wstring(handles[150].Data()), L"150");
}

}  // namespace
