// The text forms of Point3d and Box.
#include <gtest/gtest.h>

#include <cwchar>
#include <string>

#include "GeomEnts/Box.h"
#include "datastruct/String.h"

namespace TamLib {
namespace {

std::wstring Text(StringBase<wchar_t> text) {
    return text.Data();
}

TEST(Point3dText, HasSevenDecimalsInTheBuffer) {
    wchar_t buffer[64];
    Point3d(1, -2.5, 25496123.4567891).ToText(buffer);
    EXPECT_EQ(std::wstring(L"(1.0000000, -2.5000000, 25496123.4567891)"), buffer);
}

TEST(Point3dText, IsCutToTheBuffer) {
    wchar_t buffer[8] = L"xxxxxxx";
    Point3d(1, 2, 3).ToText(buffer);
    EXPECT_EQ(std::wstring(L"(1.0000"), buffer);
    wchar_t one[1] = {L'x'};
    Point3d(1, 2, 3).ToText(one);
    EXPECT_EQ(L'\0', one[0]);
    wchar_t untouched = L'x';
    Point3d(1, 2, 3).ToText(&untouched, 0);
    EXPECT_EQ(L'x', untouched);
    // Exactly as many characters as the buffer holds: the last gives way to the terminator.
    wchar_t exact[33];
    Point3d(1, 2, 3).ToText(exact);
    EXPECT_EQ(std::wstring(L"(1.0000000, 2.0000000, 3.0000000)").substr(0, 32), exact);
}

TEST(Point3dText, IsPrintedByTheFormatGiven) {
    const Point3d p(1, -2.5, 3.3);
    EXPECT_EQ(L"1.000000,-2.500000,3.300000", Text(p.ToString()));
    EXPECT_EQ(L"1.0 -2.5 3.3", Text(p.ToString(L"%.1f %.1f %.1f")));
    EXPECT_EQ(L"1.000000,-2.500000", Text(p.ToString2d()));
    EXPECT_EQ(L"1|-2.5000", Text(p.ToString2d(L"%.0f|%.4f")));
}

TEST(Point3dText, LargeCoordinatesAreNotCut) {
    const double huge = 1e300;
    const std::wstring text = Text(Point3d(huge, -huge, huge).ToString());
    EXPECT_EQ(3 * (301 + 7) + 1 + 2u, text.size());
}

struct ParseCase {
    const wchar_t* text;
    bool ok;
    double x, y, z;  // from (7, 8, 9)
};

TEST(Point3dParse, StoresBeforeItJudges) {
    const ParseCase cases[] = {
        {L"1.5,2.5", true, 1.5, 2.5, 9},
        {L"1,2,3", true, 1, 2, 3},
        {L"-1.25,-2,-.5", true, -1.25, -2, -0.5},
        {L"1,2,3,4", false, 1, 2, 3},
        {L"1e3,2", false, 1000, 2, 9},
        {L"1, 2", false, 1, 2, 9},
        {L"1 ,2", false, 1, 2, 9},
        {L"+1,2", false, 1, 2, 9},
        {L"5", false, 5, 8, 9},
        {L"", false, 0, 8, 9},
        {L",", true, 0, 0, 9},
        {L",,", true, 0, 0, 0},
        {L"1,,3", true, 1, 0, 3},
        {L"1,2,", true, 1, 2, 0},
        {L"abc,2", false, 0, 2, 9},
        {L"1,2,x", false, 1, 2, 0},
        // Passes the check of characters, converts up to where a number ends.
        {L"1-2,3.4.5", true, 1, 3.4, 9},
        {L"-,.", true, 0, 0, 9},
        {L"\u0661,2", false, 0, 2, 9},  // a digit of another script
        {L"25496123.456,6672345.678", true, 25496123.456, 6672345.678, 9},
    };
    for (const ParseCase& c : cases) {
        Point3d p(7, 8, 9);
        EXPECT_EQ(c.ok, p.Parse(c.text)) << std::string(c.text, c.text + std::wcslen(c.text));
        EXPECT_EQ(c.x, p.x) << std::string(c.text, c.text + std::wcslen(c.text));
        EXPECT_EQ(c.y, p.y) << std::string(c.text, c.text + std::wcslen(c.text));
        EXPECT_EQ(c.z, p.z) << std::string(c.text, c.text + std::wcslen(c.text));
    }
}

TEST(Point3dParse, ConstructorParses) {
    const Point3d p{StringBase<wchar_t>(L"1,2")};
    EXPECT_EQ(1.0, p.x);
    EXPECT_EQ(2.0, p.y);
    EXPECT_EQ(0.0, p.z);
}

TEST(BoxText, EndsWithTheLowerHeightAgain) {
    const Box box(1.0, 4.0, 2.0, 8.0, 3.0, 5.0);
    EXPECT_EQ(L"(1.000000,2.000000,3.000000)-(4.000000,8.000000,3.000000)", Text(box.ToString()));
    EXPECT_EQ(L"1 2 3 4 8 3", Text(box.ToString(L"%.0f %.0f %.0f %.0f %.0f %.0f")));
    EXPECT_EQ(L"(1.000000,2.000000)-(4.000000,8.000000)", Text(box.ToString2d()));
    EXPECT_EQ(L"1 2 4 8", Text(box.ToString2d(L"%.0f %.0f %.0f %.0f")));
}

}  // namespace
}  // namespace TamLib
