// AcDbHandle: an object's number in its own drawing; 0 for an object without one.
#pragma once

#include <adesk.h>

class AcDbHandle {
  public:
    AcDbHandle() = default;
    AcDbHandle(int low, int high)
        : m_value((static_cast<Adesk::UInt64>(static_cast<Adesk::UInt32>(high)) << 32) |
                  static_cast<Adesk::UInt32>(low)) {}
    explicit AcDbHandle(Adesk::UInt64 value) : m_value(value) {}
    // Hexadecimal text; anything else gives 0.
    explicit AcDbHandle(const ACHAR* text);

    Adesk::UInt32 low() const { return static_cast<Adesk::UInt32>(m_value); }
    Adesk::UInt32 high() const { return static_cast<Adesk::UInt32>(m_value >> 32); }
    bool isNull() const { return m_value == 0; }

    static constexpr int kStrSiz = 17;
    // Hexadecimal, upper case, no leading zeros; `buffer` has room for kStrSiz characters.
    bool getIntoAsciiBuffer(ACHAR* buffer) const;

    operator Adesk::UInt64() const { return m_value; }
    bool operator==(const AcDbHandle& other) const { return m_value == other.m_value; }
    bool operator!=(const AcDbHandle& other) const { return m_value != other.m_value; }
    bool operator<(const AcDbHandle& other) const { return m_value < other.m_value; }

  private:
    Adesk::UInt64 m_value = 0;
};
