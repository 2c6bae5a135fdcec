// The lines that LIST shows of an entity below its heading: lengths with LUPREC decimals, angles in
// degrees with AUPREC.
#pragma once

#include <gepnt3d.h>
#include <gevec3d.h>

#include <string>
#include <string_view>
#include <vector>

namespace host::editor {

class Details {
  public:
    Details(int lengthDigits, int angleDigits)
        : lengthDigits_(lengthDigits), angleDigits_(angleDigits) {}

    void line(std::wstring_view text);
    void point(std::wstring_view what, const AcGePoint3d& point);
    void vector(std::wstring_view what, const AcGeVector3d& vector);
    void value(std::wstring_view what, double number);
    void count(std::wstring_view what, long long number);
    void angle(std::wstring_view what, double radians);
    void quoted(std::wstring_view what, std::wstring_view words);
    // Several numbers, eight to a line.
    void values(std::wstring_view what, const std::vector<double>& numbers);

    // What is told in most cases by saying nothing: a thickness of 0, a normal along z.
    void thickness(double thickness);
    void normal(const AcGeVector3d& normal);

    // While one lives, lines stand one step further in.
    class Indented {
      public:
        explicit Indented(Details& details) : details_(details) { ++details_.depth_; }
        ~Indented() { --details_.depth_; }
        Indented(const Indented&) = delete;
        Indented& operator=(const Indented&) = delete;

      private:
        Details& details_;
    };

    // Each line begins with its line end and indentation.
    const std::vector<std::wstring>& lines() const { return lines_; }

  private:
    std::wstring length(double value) const;

    const int lengthDigits_;
    const int angleDigits_;
    int depth_ = 1;
    std::vector<std::wstring> lines_;
};

}  // namespace host::editor
