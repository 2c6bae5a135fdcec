// The library's counted array: it knows whether it is sorted and whether its members are unique,
// compares through a replaceable function, grows in fixed steps, and raises exceptions when memory
// or a range to remove runs out. Strings, point arrays and polylines derive from it.
//
// Settings. Fields are open to derived classes and callers, who keep `count` within `capacity`.
// - `bitwise`: the elements are plain bytes; none is constructed, destroyed or assigned by its own
//   operations. Only for types that need none of these; never for a type with virtual operations.
// - `compare`: negative, 0 or positive as its first argument comes before, equals or comes after
//   its second. It has to be pure and to call an element equal to itself. Null stands for the
//   comparison by bytes, and lets Sort() move each element once. The UsualComparison of a type
//   (datastruct/Comparison.h) sorts fastest.
// - `sorted`, `unique`: promises about the content. Intended: appending takes back `sorted`; Set,
//   Insert and Reverse leave it as it is, and nothing ever takes back `unique`.
//
// Elements. Unless `bitwise` is set, every slot up to `capacity` holds a live object, constructed
// by default where nothing was stored. Elements are moved in memory as bytes, without their copy
// operations: an element type holds no pointer to itself. Its default construction and its
// destruction raise nothing; its assignment may, and then the array keeps what it had, the element
// assigned to excepted.
//
// Indexes are signed. A negative one counts from the end, -1 being the last element. Indexes of At,
// operator[], Set and Insert are not tested further; a wrong one is the caller's fault. An item
// passed by reference may be an element of the array itself.
//
// Growth is by fixed steps of `increment`, never by doubling: give the capacity that
// will be needed.
//
// Errors: TamExpNoMem when memory is refused (datastruct/Memory.h) and TamExpRange from Remove,
// both from L"datastruct/Array". A failed operation leaves the elements as they were.
#pragma once

#include <cstdint>

#include "datastruct/ArrayIterator.h"
#include "datastruct/Bytes.h"
#include "datastruct/Memory.h"
#include "datastruct/Vector.h"

namespace TamLib {

// The comparison that an array of T starts with: the element's bytes, giving -1, 0 or 1. A type
// with an order of its own specialises it.
template <class T>
struct DefaultComparison {
    static std::int32_t Compare(const T* first, const T* second) {
        return CompareBytes(first, second, kElementBytes<T>);
    }
};

template <class T>
class Array : public Vector<T> {
  public:
    using CompareFunction = std::int32_t (*)(const T*, const T*);
    using ChecksumFunction = std::uint32_t (*)(const T*);

    // An empty array with room for `initialCapacity` elements. `increment` is the larger of
    // it and 5.
    explicit Array(std::uint32_t initialCapacity = 0);
    // As assignment to an empty array.
    Array(const Array& other);
    // Takes settings and block over; `other` is left empty.
    Array(Array&& other) noexcept;
    // Takes the settings (`compare`, `sorted`, `unique`, `increment`, `bitwise`) and copies the
    // elements; the capacity becomes exactly the count. Intended: a copy is marked `sorted` only
    // when the source is so and is `bitwise` or empty, because objects are appended one by one.
    // Without memory the array is left empty with the settings of `other`.
    Array& operator=(const Array& other);

    // The operations below up to Data stand in the class's table, in this order after one another.

    // Calls `fn` on each element in order.
    void ForEach(void (*fn)(T*)) override;
    // Gives up all elements and the block; settings stay. Returns 0.
    std::int32_t Clear() override;
    // Whether compare(item, element) is 0 for an element. Linear, whatever `sorted` says.
    bool Contains(const T& item) const override;
    // A new cursor at position 0, owned by the caller.
    ArrayIterator<T>* NewIterator() override;

    // Not `sorted`: Append. `sorted`: Insert before the first element for which compare(item,
    // element) is other than 1. Gives the index, also when Insert declines a duplicate. Intended:
    // linear although the array is sorted.
    std::int32_t Add(const T& item) override;
    // Find(item) when the array contains it, Append otherwise; gives the index.
    std::int32_t AddUnique(const T& item) override;
    // Stores at the index. An index at or beyond `count` makes the array longer, with
    // `increment` + index + 1 slots when it has to grow; elements passed over are whatever their
    // slots hold, which is default content unless an element stood there before.
    void Set(std::int32_t index, const T& item) override;
    // Stores before the element at the index, 0 to `count`; -1 is behind the last element, -2
    // before it. Does nothing when `unique` is set and the array contains the item.
    void Insert(std::int32_t index, const T& item) override;
    // Removes `n` elements from the index on. Raises TamExpRange with an empty message: line 997
    // when fewer than `n` stand there, else 999 when the index is `count`. Spare slots beyond
    // `increment` are given back down to 5 (intended: 5, whatever `increment` is).
    void Remove(std::int32_t index, std::uint32_t n) override;
    // The index of an element equal to `item`, -1 if there is none: BinarySearch when `sorted`, the
    // first otherwise.
    std::int32_t Find(const T& item) const override;
    // How many elements compare equal to `item`; linear.
    std::uint32_t Count(const T& item) const override;
    // Orders the elements and sets `sorted`; equal elements stand in no defined order. With a null
    // `compare` and two elements or more, TamExpNoMem may come from L"datastruct/Ordering" too, and
    // from three on the capacity becomes the count.
    void Sort() override;
    // Orders the elements and keeps one of equals; sets `sorted` and `unique`. Nothing changes when
    // memory is refused.
    void SortUnique() override;
    // Removes elements until none equals another, keeping the last of equals (1, 2, 1 becomes 2,
    // 1), and sets `unique`. Does nothing when that is set already. Quadratic.
    void MakeUnique() override;
    // Turns the order round. Intended: `sorted` stays as it is.
    void Reverse() override;
    // The element at the index; no test of any kind.
    T* At(std::int32_t index) override;

    virtual ~Array();

    // The wrapping sum of fn(element) * (i + 1) * 119, i counting from 0; ByteChecksum of the
    // element when `fn` is null.
    virtual std::uint32_t Checksum(ChecksumFunction fn) const;
    // The block.
    virtual T* Data();

    const T* At(std::int32_t index) const { return const_cast<Array*>(this)->At(index); }
    const T* Data() const { return const_cast<Array*>(this)->Data(); }
    T& operator[](std::int32_t index) { return data[Normal(index)]; }
    const T& operator[](std::int32_t index) const { return data[Normal(index)]; }
    T* begin() { return data; }
    T* end() { return data + count; }
    const T* begin() const { return data; }
    const T* end() const { return data + count; }

    // Stores behind the last element and gives its index. Takes back `sorted`.
    std::int32_t Append(const T& item);
    // Makes the capacity `n`. Elements beyond it are given up; new slots hold default content, zero
    // bytes with `bitwise`. 0 gives the block back.
    void Resize(std::uint32_t n);
    // Gives up all elements and takes a block of exactly `n` slots with default content.
    void Allocate(std::uint32_t n);
    // Opens a gap of `n` slots before the element at the index, 0 to `count`, for the caller to
    // store in; `count` stays. Live spare slots are rotated into the gap. Grows by `increment` + n.
    void MakeRoom(std::uint32_t index, std::uint32_t n);
    // The index of an element equal to `item` in a sorted array. Without one: -1, or with `nearest`
    // the index of the last element before it, 0 when it comes before all. Intended: 0 also when it
    // comes after all. -1 on an empty array.
    std::int32_t BinarySearch(const T& item, bool nearest) const;
    // The elements from `first` to `last`, both included, as a ring: negative indexes count from
    // the end, a `last` before `first` goes on round the end, and a range longer than the array
    // repeats it. Empty when the array is, or when `last` stays before `first`. Settings are those
    // of this array, with `increment` 10; the capacity is the length of the range, also of an empty
    // array, and at least 10.
    Array Slice(std::int32_t first, std::int32_t last) const;
    // Exchanges block, capacity and count with `other`; settings stay.
    void SwapBlocks(Array& other);

    // The only points at which the array takes memory; see ArrayMemory.
    static T* _Allocate(std::uint32_t n, std::uint32_t oldCount, std::int32_t line) {
        return ArrayMemory<T>::_Allocate(n, oldCount, line);
    }
    static T* _ReAllocate(T* block, std::uint32_t n, std::uint32_t oldCount, std::int32_t line) {
        return ArrayMemory<T>::_ReAllocate(block, n, oldCount, line);
    }

    bool bitwise = false;
    CompareFunction compare = &DefaultComparison<T>::Compare;
    bool sorted = false;
    bool unique = false;
    std::uint32_t count = 0;
    std::uint32_t increment = 5;
    std::uint32_t capacity = 0;
    T* data = nullptr;

  private:
    CompareFunction Comparison() const;
    std::uint32_t Normal(std::int32_t index) const;
    std::int64_t SlotOf(const T& item) const;
    const T& Moved(std::int64_t slot, const T& item) const;
    void AppendGrowing(const T& item);
    void EnsureSpare(std::uint32_t n);
    void RotateSpareTo(std::uint32_t index, std::uint32_t n);
    void Store(T& slot, const T& item);
    void FillSlots(std::uint32_t from, std::uint32_t to);
    void DestroySlots(std::uint32_t from, std::uint32_t to);
    void FreeBlock();
    void CopyElements(const Array& other);
    bool HasAnother(const T& item) const;
};

}  // namespace TamLib

#include "datastruct/ArrayStorage.h"

#include "datastruct/ArrayOperations.h"
