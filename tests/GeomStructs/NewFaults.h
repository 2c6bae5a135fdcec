// Single objects that can't be had: `new (std::nothrow)` refused on demand, for the length of a
// test.
#pragma once

namespace test {

class NewFaults {
  public:
    NewFaults();
    ~NewFaults();
    NewFaults(const NewFaults&) = delete;
    NewFaults& operator=(const NewFaults&) = delete;

    // The n-th request from now on fails, once.
    static void Fail(int n);
    // Requests since the last Fail, or since the beginning.
    static int Passed();
};

}  // namespace test
