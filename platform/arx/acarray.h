// AcArray<T>: the interface's growing array over plain records (ids, points). It grows by its
// current length, at least by the grow length and at most by 65536 bytes' worth of elements.
#pragma once

#include <adesk.h>

#include <cassert>
#include <cstddef>
#include <new>
#include <utility>

// False when an allocation has been ordered to fail; asked before every allocation of an AcArray.
bool acArrayMayAllocate();

template <class T>
class AcArray {
  public:
    explicit AcArray(int initPhysicalLength = 0, int initGrowLength = 8)
        : m_growLength(initGrowLength < 1 ? 1 : initGrowLength) {
        if (initPhysicalLength > 0) setPhysicalLength(initPhysicalLength);
    }
    AcArray(const AcArray& other) : m_growLength(other.m_growLength) { *this = other; }
    // Leaves the source empty.
    AcArray(AcArray&& other) noexcept { swap(other); }
    ~AcArray() { delete[] m_elements; }

    AcArray& operator=(const AcArray& other) {
        if (this == &other) return *this;
        if (m_physicalLength < other.m_length) {
            m_length = 0;
            setPhysicalLength(other.m_length);
            if (m_physicalLength < other.m_length) return *this;
        }
        for (int i = 0; i < other.m_length; ++i) m_elements[i] = other.m_elements[i];
        m_length = other.m_length;
        return *this;
    }
    AcArray& operator=(AcArray&& other) noexcept {
        swap(other);
        return *this;
    }

    bool operator==(const AcArray& other) const {
        if (m_length != other.m_length) return false;
        for (int i = 0; i < m_length; ++i) {
            if (!(m_elements[i] == other.m_elements[i])) return false;
        }
        return true;
    }

    // Indexes are not checked beyond a debug assertion.
    T& operator[](int index) { return at(index); }
    const T& operator[](int index) const { return at(index); }
    T& at(int index) {
        assert(isValid(index));
        return m_elements[index];
    }
    const T& at(int index) const {
        assert(isValid(index));
        return m_elements[index];
    }
    T& first() { return at(0); }
    const T& first() const { return at(0); }
    T& last() { return at(m_length - 1); }
    const T& last() const { return at(m_length - 1); }

    // Index of the new element; -1, and the array unchanged, when memory is refused.
    int append(const T& value) {
        const T copy = value;
        if (!reserveOneMore()) return -1;
        m_elements[m_length] = copy;  // NOLINT(clang-analyzer-core*): room was made
        return m_length++;
    }
    AcArray& append(const AcArray& other) {
        const int count = other.m_length;
        for (int i = 0; i < count; ++i) append(other.m_elements[i]);
        return *this;
    }
    // Elements from `index` on move up; `index` may be the length.
    AcArray& insertAt(int index, const T& value) {
        assert(index >= 0 && index <= m_length);
        const T copy = value;
        if (!reserveOneMore()) return *this;
        for (int i = m_length; i > index; --i) m_elements[i] = m_elements[i - 1];
        m_elements[index] = copy;
        ++m_length;
        return *this;
    }
    AcArray& removeAt(int index) {
        assert(isValid(index));
        for (int i = index; i + 1 < m_length; ++i) m_elements[i] = m_elements[i + 1];
        --m_length;
        return *this;
    }
    // Removes the first equal element; false when there is none.
    bool remove(const T& value, int startIndex = 0) {
        int index = 0;
        if (!find(value, index, startIndex)) return false;
        removeAt(index);
        return true;
    }
    AcArray& removeAll() {
        m_length = 0;
        return *this;
    }
    AcArray& removeLast() { return removeAt(m_length - 1); }

    bool contains(const T& value, int startIndex = 0) const {
        int index = 0;
        return find(value, index, startIndex);
    }
    // Index of the first equal element from `startIndex` on, or -1.
    int find(const T& value) const {
        int index = -1;
        return find(value, index, 0) ? index : -1;
    }
    bool find(const T& value, int& index, int startIndex = 0) const {
        for (int i = startIndex; i < m_length; ++i) {
            if (m_elements[i] == value) {
                index = i;
                return true;
            }
        }
        return false;
    }

    int length() const { return m_length; }
    int logicalLength() const { return m_length; }
    int physicalLength() const { return m_physicalLength; }
    int growLength() const { return m_growLength; }
    bool isEmpty() const { return m_length == 0; }

    AcArray& setLogicalLength(int length) {
        if (length > m_physicalLength) setPhysicalLength(length);
        if (length <= m_physicalLength) m_length = length;
        return *this;
    }
    // A shorter physical length cuts elements off. Unchanged when memory is refused.
    AcArray& setPhysicalLength(int length) {
        if (length == m_physicalLength) return *this;
        T* elements = nullptr;
        if (length > 0) {
            if (acArrayMayAllocate())
                elements = new (std::nothrow) T[static_cast<std::size_t>(length)];
            if (elements == nullptr) return *this;
        }
        if (m_length > length) m_length = length;
        for (int i = 0; i < m_length; ++i)
            elements[i] = m_elements[i];  // NOLINT(clang-analyzer-core*)
        delete[] m_elements;
        m_elements = elements;
        m_physicalLength = length;
        return *this;
    }
    AcArray& setGrowLength(int length) {
        m_growLength = length < 1 ? 1 : length;
        return *this;
    }

    T* asArrayPtr() { return m_elements; }
    const T* asArrayPtr() const { return m_elements; }

    void swap(AcArray& other) noexcept {
        std::swap(m_elements, other.m_elements);
        std::swap(m_physicalLength, other.m_physicalLength);
        std::swap(m_length, other.m_length);
        std::swap(m_growLength, other.m_growLength);
    }

  private:
    bool isValid(int index) const { return index >= 0 && index < m_length; }

    bool reserveOneMore() {
        if (m_length < m_physicalLength) return true;
        constexpr std::size_t limit = 0x10000;
        const auto bytes = static_cast<std::size_t>(m_length) * sizeof(T);
        const int doubling = bytes < limit ? m_length : static_cast<int>(limit / sizeof(T));
        setPhysicalLength(m_length + (m_growLength > doubling ? m_growLength : doubling));
        return m_length < m_physicalLength;
    }

    T* m_elements = nullptr;
    int m_physicalLength = 0;
    int m_length = 0;
    int m_growLength = 8;
};
