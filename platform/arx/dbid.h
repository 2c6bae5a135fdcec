// AcDbObjectId: 8 bytes that name an object for as long as the process runs. 0 is the null id. Ids
// are unique over all databases, those that are gone included, so that a stale id is refused and
// never mistaken for another object.
#pragma once

#include <acadstrc.h>
#include <adesk.h>
#include <dbhandle.h>

#include <cstddef>
#include <functional>

class AcDbDatabase;
class AcRxClass;

class AcDbObjectId {
  public:
    static const AcDbObjectId kNull;

    constexpr AcDbObjectId() = default;
    explicit constexpr AcDbObjectId(Adesk::IntDbId value) : m_value(value) {}

    bool isNull() const { return m_value == 0; }
    void setNull() { m_value = 0; }
    // True when the id names an object of a living database, erased or not.
    bool isValid() const;
    bool isErased() const;
    // The class of the object, without opening it; null for an id that is not valid.
    AcRxClass* objectClass() const;
    AcDbDatabase* database() const;
    // The object's handle in its drawing; null for a drawing that has none, as releases to R12 may.
    AcDbHandle handle() const;

    Adesk::IntDbId asOldId() const { return m_value; }
    AcDbObjectId& setFromOldId(Adesk::IntDbId value) {
        m_value = value;
        return *this;
    }
    operator long long() const { return m_value; }

    bool operator==(const AcDbObjectId& other) const { return m_value == other.m_value; }
    bool operator!=(const AcDbObjectId& other) const { return m_value != other.m_value; }
    bool operator<(const AcDbObjectId& other) const { return m_value < other.m_value; }
    bool operator>(const AcDbObjectId& other) const { return m_value > other.m_value; }

  private:
    Adesk::IntDbId m_value = 0;
};

static_assert(sizeof(AcDbObjectId) == 8, "ids are stored in 8 bytes");

template <>
struct std::hash<AcDbObjectId> {
    std::size_t operator()(const AcDbObjectId& id) const noexcept {
        return std::hash<long long>()(id.asOldId());
    }
};
