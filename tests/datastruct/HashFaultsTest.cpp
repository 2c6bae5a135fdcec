// Tables when memory is refused: each request of each operation in turn. Chains take theirs by
// realloc, whose refusal nobody notices; everything else comes from malloc.
#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <string>

#include "datastruct/StringHash.h"
#include "tests/datastruct/ArrayFaults.h"

using TamLib::StringBase;
using TamLib::StringHash;
using test::Catch;
using test::MemoryFaults;
using test::Request;

namespace {

using Text = StringBase<wchar_t>;
using Table = StringHash<Text>;
using Content = std::map<std::wstring, std::wstring>;

Text Value(int number) {
    Text value;
    value.Format(L"value %i", number);
    return value;
}

// As many keys in one chain of one bucket as `operator[]` puts there before it rehashes.
void Fill(Table& table, int entries) {
    for (int i = 0; i < entries; ++i) table.Set(Text(i), Value(i));
}

Content ContentOf(Table& table) {
    Content content;
    for (auto& chain : table.buckets) {
        for (auto& pair : chain) content[pair.key.Data()] = pair.value.Data();
    }
    EXPECT_EQ(content.size(), table.entries);
    return content;
}

struct Operation {
    const char* name;
    int entries;        // of the table before
    bool mayHaveAdded;  // when it fails: the entry stands and the rehash behind it was refused
    std::function<void(Table&)> run;
};

std::vector<Operation> Operations() {
    return {
        {"brackets into nothing", 0, false, [](Table& t) { t[Text(L"new")]; }},
        {"brackets", 3, false, [](Table& t) { t[Text(L"new")]; }},
        {"brackets that rehash", 10, false, [](Table& t) { t[Text(L"new")]; }},
        {"brackets of a present key", 3, false, [](Table& t) { t[Text(L"2")]; }},
        {"Set into nothing", 0, false, [](Table& t) { t.Set(Text(L"new"), Value(9)); }},
        {"Set", 3, false, [](Table& t) { t.Set(Text(L"new"), Value(9)); }},
        {"Set that rehashes", 11, true, [](Table& t) { t.Set(Text(L"new"), Value(9)); }},
        {"Rehash", 8, false, [](Table& t) { t.Rehash(5); }},
        {"copy", 8, false, [](Table& t) { const Table copy(t); }},
        {"Lookup", 8, false,
         [](Table& t) {
             Text value;
             t.Lookup(Text(L"5"), &value);
         }},
    };
}

// Gives how many requests the operation has.
int FailInTurn(const Operation& operation) {
    for (int n = 1;; ++n) {
        MemoryFaults memory;
        std::string raised;
        {
            Table table;
            Fill(table, operation.entries);
            const Content before = ContentOf(table);
            memory.Fail(Request::allocate, n);
            raised = Catch([&] { operation.run(table); }).type;
            memory.Fail(Request::any, 0);
            Content after = ContentOf(table);
            if (raised != "nothing") {
                EXPECT_EQ(raised, "TamExpNoMem");
                if (operation.mayHaveAdded) after.erase(L"new");
                EXPECT_EQ(after, before);
            }
            table.Set(Text(L"later"), Value(1));  // still of use
            EXPECT_TRUE(table.Contains(Text(L"later")));
        }
        EXPECT_EQ(memory.Live(), 0);
        if (raised == "nothing") return n - 1;
    }
}

TEST(HashFaults, EveryRequestOfEveryOperationMayFail) {
    for (const Operation& operation : Operations()) {
        SCOPED_TRACE(operation.name);
        EXPECT_GT(FailInTurn(operation), 0);
    }
}

TEST(HashFaults, ASetWhoseRehashIsRefusedHasStoredItsEntry) {
    MemoryFaults memory;
    Table table;
    Fill(table, 11);
    ASSERT_EQ(table.buckets.count, 1u);
    const Text key(L"new");
    const Text value = Value(9);
    memory.Fail(Request::allocate, 3);  // the copies of key and value pass
    EXPECT_EQ(Catch([&] { table.Set(key, value); }).type, "TamExpNoMem");
    memory.Fail(Request::any, 0);
    EXPECT_EQ(table.entries, 12u);
    EXPECT_EQ(table.buckets.count, 1u);
    EXPECT_TRUE(table.Contains(key));
}

}  // namespace
