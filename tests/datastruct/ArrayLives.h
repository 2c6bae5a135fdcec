// An element that counts its lives. Each construction gives a serial number, which stands in the
// object and in a register of the living; the object may be moved in memory as bytes, but it may be
// neither doubled nor lost: destroying, reading or assigning to a dead one is noted as an error. It
// owns memory, so that leaks show, and its assignment can be made to raise.
#pragma once

#include <cstdint>
#include <memory>
#include <set>
#include <stdexcept>

namespace test {

class Life {
  public:
    Life() : Life(0) {}
    explicit Life(int number) : serial_(++lastSerial), value_(new int(number)) {
        living.insert(serial_);
    }
    Life(const Life& other) : Life(other.Value()) {}
    Life& operator=(const Life& other) {
        if (raiseAtAssignment != 0 && --raiseAtAssignment == 0) throw std::runtime_error("refused");
        Check();
        *value_ = other.Value();
        return *this;
    }
    ~Life() {
        Check();
        living.erase(serial_);
        delete value_;
    }

    int Value() const {
        Check();
        return *value_;
    }

    static std::int32_t Compare(const Life* first, const Life* second) {
        return (first->Value() > second->Value()) - (first->Value() < second->Value());
    }

    // Before a test: nothing lives, nothing went wrong.
    static void Start() {
        living.clear();
        errors = 0;
        raiseAtAssignment = 0;
    }

    static inline std::set<std::int64_t> living;
    static inline int errors = 0;
    static inline int raiseAtAssignment = 0;  // the n-th assignment from now raises

  private:
    void Check() const { errors += living.count(serial_) == 0; }

    static inline std::int64_t lastSerial = 0;

    std::int64_t serial_;
    int* value_;
};

}  // namespace test
