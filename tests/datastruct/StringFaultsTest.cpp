// Every operation with every request for memory refused in turn: it raises TamExpNoMem, leaves
// strings whole and leaks nothing.
#include <cstdio>
#include <functional>

#include "tests/datastruct/ArrayFaults.h"
#include "tests/datastruct/StringTestSupport.h"

using namespace TamLib;

namespace {

void ExpectWhole(const Wide& text) {
    EXPECT_LE(text.count, text.capacity);
    EXPECT_EQ(text.data == nullptr, text.capacity == 0);
}

// What an operation works with. `text` must be whole afterwards.
struct Subject {
    Wide text{L"a,bb,\"c,d\",$$ katu"};
    Wide other{L"katu"};
    Array<Wide> fields;
};

// Runs the operation with the first request refused, the second, and so on until one run has none
// to refuse; gives the number of refusals. A refusal lasts, so that no second attempt saves the
// operation.
int RefuseInTurn(const std::function<void(Subject&)>& operation, bool textStays) {
    test::MemoryFaults faults;
    for (int n = 1;; ++n) {
        bool raised = false;
        {
            Subject subject;
            const std::wstring before = Std(subject.text);
            faults.Fail(test::Request::any, n, 1000);
            const test::Raised result = test::Catch([&] { operation(subject); });
            faults.Fail(test::Request::any, 0);
            raised = result.type != "nothing";
            ExpectWhole(subject.text);
            for (const Wide& field : subject.fields) ExpectWhole(field);
            if (raised) {
                EXPECT_EQ(result.type, "TamExpNoMem");
                EXPECT_EQ(result.file, L"datastruct/Array");
                if (textStays) {
                    EXPECT_EQ(Std(subject.text), before);
                }
            }
        }
        EXPECT_EQ(test::MemoryFaults::Live(), 0) << n;
        if (!raised) return n - 1;
    }
}

int RefuseInTurn(const std::function<void(Subject&)>& operation) {
    return RefuseInTurn(operation, true);
}

TEST(StringFaults, Construction) {
    EXPECT_EQ(RefuseInTurn([](Subject&) { const Wide made(L"abc"); }), 1);
    EXPECT_EQ(RefuseInTurn([](Subject& s) { const Wide made(s.text); }), 1);
    EXPECT_EQ(RefuseInTurn([](Subject&) { const Wide made(L'x'); }), 1);
    EXPECT_EQ(RefuseInTurn([](Subject&) { const Wide made(1.5); }), 2);
    EXPECT_EQ(RefuseInTurn([](Subject&) { const Wide made(std::int32_t{5}); }), 2);
}

TEST(StringFaults, TheTerminator) {
    EXPECT_EQ(RefuseInTurn([](Subject& s) { Wide(s.text).Data(); }), 2);
}

TEST(StringFaults, Conversions) {
    EXPECT_GT(RefuseInTurn([](Subject& s) { s.text.ToNarrow(); }), 0);
    EXPECT_GT(RefuseInTurn([](Subject& s) { s.text.ToUpper(); }), 0);
    EXPECT_GT(RefuseInTurn([](Subject& s) { s.text.ToLong(); }), 0);
    EXPECT_GT(RefuseInTurn([](Subject& s) { s.text.ToDouble(); }), 0);
}

TEST(StringFaults, Pieces) {
    EXPECT_GT(RefuseInTurn([](Subject& s) { s.text.Sub(2, 1); }), 0);
    EXPECT_GT(RefuseInTurn([](Subject& s) { s.text.Left(3); }), 0);
    EXPECT_GT(RefuseInTurn([](Subject& s) { s.text.Right(0); }), 0);
}

TEST(StringFaults, AppendLeavesTheTextAsItWas) {
    EXPECT_EQ(RefuseInTurn([](Subject& s) { s.text.Append(s.other, 2); }), 1);
    EXPECT_GT(RefuseInTurn([](Subject& s) { s.text.Append(s.text, 2); }), 1);
    EXPECT_GT(RefuseInTurn([](Subject& s) { s.text + s.other; }), 1);
}

TEST(StringFaults, ReplaceLeavesTheTextAsItWas) {
    EXPECT_GT(RefuseInTurn([](Subject& s) { s.text.Replace(L",", L"; "); }), 2);
    EXPECT_GT(RefuseInTurn([](Subject& s) { s.text.Replace(s.other, Wide(), false); }), 0);
}

TEST(StringFaults, JoinLeavesTheTextAsItWas) {
    EXPECT_GT(RefuseInTurn([](Subject& s) {
                  s.fields.Append(s.other);
                  s.fields.Append(s.text);
                  s.text.Join(s.fields, s.other);
              }),
              2);
}

TEST(StringFaults, SplittingLeavesTheTextAsItWas) {
    EXPECT_GT(RefuseInTurn([](Subject& s) { s.text.Split(s.fields, L",", true, L'"'); }), 4);
    EXPECT_GT(RefuseInTurn([](Subject& s) { s.text.SplitFixed(s.fields, 3, 2, 2, 2); }), 4);
}

TEST(StringFaults, SubstituteLeavesTheTextWhole) {
    EXPECT_GT(RefuseInTurn([](Subject& s) { s.text.Substitute(L"$", L'$', 1.5); }, false), 4);
}

TEST(StringFaults, FormatLeavesTheTextWhole) {
    EXPECT_GT(RefuseInTurn([](Subject& s) { s.text.Format(L"%300i", 1); }, false), 4);
    EXPECT_EQ(RefuseInTurn([](Subject& s) { s.text.Format(L"%i", 1); }, false), 0);
}

TEST(StringFaults, FilesAndStreams) {
    const char* const name = "string_faults.txt";
    std::FILE* const file = std::fopen(name, "wb");
    ASSERT_NE(file, nullptr);
    for (int i = 0; i < 400; ++i) std::fputc(i % 40 == 39 ? 10 : 'a', file);
    std::fclose(file);
    EXPECT_GT(RefuseInTurn([](Subject& s) { s.text.LoadFromFile(L"string_faults.txt"); }, false),
              0);
    EXPECT_GT(RefuseInTurn(
                  [name](Subject& s) {
                      struct Closed {
                          std::FILE* stream;
                          ~Closed() { std::fclose(stream); }
                      } const closed{std::fopen(name, "rb")};
                      s.text.ReadLine(closed.stream);
                  },
                  false),
              1);
    std::remove(name);
}

TEST(StringFaults, ATextBeyondTheLargestCountIsRefusedWithoutAnAttempt) {
    test::MemoryFaults faults;
    const Wide text(L"ab");
    const int before = test::MemoryFaults::Requests();
    EXPECT_EQ(test::Catch([&] { text.Sub(0, 0x7FFFFFFE); }).type, "TamExpNoMem");
    EXPECT_EQ(test::MemoryFaults::Requests(), before);
}

}  // namespace
