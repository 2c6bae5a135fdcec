#include <afxstr.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <utility>

namespace {

std::wstring Text(const CString& string) {
    return string.GetString();
}

TEST(CString, IsOnePlainPointer) {
    EXPECT_EQ(sizeof(CString), sizeof(void*));
}

TEST(CString, ANullTextIsEmpty) {
    const CString string(static_cast<const wchar_t*>(nullptr));
    EXPECT_TRUE(string.IsEmpty());
    EXPECT_EQ(string.GetLength(), 0);
    EXPECT_EQ(Text(string), L"");
}

TEST(CString, CopiesShareTheirCharactersUntilOneChanges) {
    const CString first(L"katu");
    CString second(first);
    EXPECT_EQ(first.GetString(), second.GetString());
    second += L'1';
    EXPECT_EQ(Text(first), L"katu");
    EXPECT_EQ(Text(second), L"katu1");
    EXPECT_EQ(second.GetLength(), 5);
}

TEST(CString, AssignmentToItselfKeepsTheText) {
    CString string(L"tie");
    const CString& same = string;
    string = same;
    EXPECT_EQ(Text(string), L"tie");
}

TEST(CString, AMovedFromStringIsEmpty) {
    CString first(L"kuja");
    const CString second(std::move(first));
    EXPECT_EQ(Text(second), L"kuja");
    EXPECT_TRUE(first.IsEmpty());  // NOLINT(bugprone-use-after-move): the fact under test
}

TEST(CString, MovedBytewiseInMemoryItStaysWhole) {
    void* const blocks[2] = {std::malloc(sizeof(CString)), std::malloc(sizeof(CString))};
    new (blocks[0]) CString(L"polku");
    std::memcpy(blocks[1], blocks[0], sizeof(CString));
    auto* const moved = static_cast<CString*>(blocks[1]);
    *moved += L" 7";
    EXPECT_EQ(Text(*moved), L"polku 7");
    moved->~CString();
    std::free(blocks[0]);
    std::free(blocks[1]);
}

TEST(CString, AppendsAPartOfItself) {
    CString string(L"abc");
    string += string.GetString() + 1;
    EXPECT_EQ(Text(string), L"abcbc");
    string += string;
    EXPECT_EQ(Text(string), L"abcbcabcbc");
}

TEST(CString, ABufferIsItsOwnAndKeepsTheText) {
    const CString first(L"ab");
    CString second(first);
    wchar_t* const buffer = second.GetBuffer(10);
    EXPECT_EQ(std::wstring(buffer), L"ab");
    std::wcscpy(buffer, L"0123456789");
    second.ReleaseBuffer();
    EXPECT_EQ(second.GetLength(), 10);
    EXPECT_EQ(Text(first), L"ab");
    second.GetBuffer();
    second.ReleaseBuffer(4);
    EXPECT_EQ(Text(second), L"0123");
}

TEST(CString, FormatsAndComparesAndJoins) {
    CString string;
    string.Format(L"%s %i", L"tie", 12);
    EXPECT_TRUE(string == L"tie 12");
    EXPECT_TRUE(string != CString(L"tie"));
    EXPECT_TRUE(CString(L"tie") < string);
    EXPECT_EQ(string.Compare(L"tie 13"), -1);
    EXPECT_EQ(Text(L"<" + string + L">" + CString(L"!")), L"<tie 12>!");
    string.Format(L"%s", L"");
    EXPECT_TRUE(string.IsEmpty());
    CStringA narrow;
    narrow.Format("%s-%c", "a", 'b');
    EXPECT_STREQ(narrow.GetString(), "a-b");
}

TEST(CString, TakesAGivenNumberOfCharacters) {
    const CString string(L"abcdef", 3);
    EXPECT_EQ(Text(string), L"abc");
    EXPECT_EQ(string[2], L'c');
    EXPECT_EQ(string[3], L'\0');
}

}  // namespace
