// Bodies of regions and solids, record by record, in the two forms in which drawings hold them:
// text (SAT, version 4.00) and binary (SAB, version 218.00), both of the ACIS format.
#pragma once

#include <gepnt3d.h>
#include <gevec3d.h>

#include <string>
#include <string_view>
#include <vector>

namespace host::database {

// Takes the records of one body in their order. A record refers to others by their number in that
// order, from 0.
class BodyWriter {
  public:
    static constexpr int kNone = -1;  // refers to no record

    virtual ~BodyWriter() = default;

    // Begins a record without attributes; its type's words are joined by hyphens.
    virtual void begin(std::string_view type) = 0;
    virtual void end() = 0;

    virtual void refer(int record) = 0;
    virtual void point(const AcGePoint3d& point) = 0;
    virtual void vector(const AcGeVector3d& vector) = 0;
    virtual void real(double value) = 0;
    // One of two words; the binary form tells whether it is the second one.
    virtual void choice(const char* first, const char* second, bool isSecond) = 0;
    void unbounded(int bounds);

    // What only later versions have. The parameters of an edge's ends:
    virtual void parameter(double value) = 0;
    // whether the edge is convex, which is for the reader to find out:
    virtual void unknownConvexity() = 0;
    // where a vertex stands on its edge: at its start, at its end, at both:
    enum Place { kStart, kEnd, kBoth };
    virtual void place(Place place) = 0;
    // a number of coedges that is always 0:
    virtual void zero() = 0;
};

// Lines of text: three of heading, the records, the end.
class TextBody : public BodyWriter {
  public:
    TextBody();
    std::vector<std::string> take();

    void begin(std::string_view type) override;
    void end() override;
    void refer(int record) override;
    void point(const AcGePoint3d& point) override;
    void vector(const AcGeVector3d& vector) override;
    void real(double value) override;
    void choice(const char* first, const char* second, bool isSecond) override;
    void parameter(double) override {}
    void unknownConvexity() override {}
    void place(Place) override {}
    void zero() override {}

  private:
    void word(std::string_view word);

    std::vector<std::string> lines_;
    std::string line_;
};

// Bytes: a signature, four numbers and the heading; the records, whose values each stand behind a
// byte that tells their type, numbers little-endian; the end. A record with the modeller's version
// leads, so that all others have numbers one higher.
class BinaryBody : public BodyWriter {
  public:
    BinaryBody();
    std::string take();

    void begin(std::string_view type) override;
    void end() override;
    void refer(int record) override;
    void point(const AcGePoint3d& point) override;
    void vector(const AcGeVector3d& vector) override;
    void real(double value) override;
    void choice(const char* first, const char* second, bool isSecond) override;
    void parameter(double value) override { real(value); }
    void unknownConvexity() override;
    void place(Place place) override;
    void zero() override;

  private:
    void tag(unsigned char tag);
    void integer(int value);
    void text(unsigned char tag, std::string_view text);
    void typeWords(std::string_view type);
    void beginRecord(std::string_view type);
    void raw(double value);

    std::string bytes_;
};

}  // namespace host::database
