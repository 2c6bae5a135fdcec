// Point3dArrayBase<Point3d>: the array of points under polylines and point sets, an
// `Array<Point3d>` with a stored box and a shift for output.
//
// Elements are plain data, compared by `Point3d::CompareArray` (1e-6 by coordinate). The stored box
// is only a place for what a caller computed: nothing here keeps it up to date.
#pragma once

#include <algorithm>
#include <cstdint>

#include "GeomEnts/Point3d.h"
#include "datastruct/Array.h"

namespace TamLib {

template <class T>
class Point3dArrayBase : public Array<T> {
  public:
    T maxPoint;                  // largest corner of the stored box
    T minPoint;                  // smallest corner of the stored box
    std::int32_t hasBounds = 0;  // the two corners hold a box
    T offset;                    // output adds it to every point; the geometric queries ignore it

    // Empty; growth is the larger of `initialCapacity` and 5, and 0 allocates nothing.
    explicit Point3dArrayBase(int initialCapacity = 0) : Array<T>(0) {
        this->bitwise = true;
        this->compare = &T::CompareArray;
        this->increment = static_cast<std::uint32_t>(std::max(initialCapacity, 5));
        if (initialCapacity > 0) this->Resize(static_cast<std::uint32_t>(initialCapacity));
    }
    // Copies take the elements and settings as `Array` does, then the box,
    // `hasBounds` and `offset`.
    Point3dArrayBase(const Point3dArrayBase&) = default;
    Point3dArrayBase(Point3dArrayBase&&) noexcept = default;
    Point3dArrayBase& operator=(const Point3dArrayBase&) = default;
    ~Point3dArrayBase() override = default;

    // As `Array::Clear`; `hasBounds` and `offset` are cleared too, the corners stay. Returns 0.
    std::int32_t Clear() override {
        hasBounds = 0;
        offset = T();
        return Array<T>::Clear();
    }
    // `FindPoint(point, false)`.
    std::int32_t Find(const T& point) const override { return FindPoint(point, false); }

    // The index of an element that compares equal to `point`. An unsorted array is scanned and the
    // first one taken; a sorted one is bisected, and from there the neighbours within 1e-6 in x are
    // looked at, since equality within a tolerance is not transitive. When none is equal: -1, or
    // with `approximate` the index of the nearest point in 3D, the first of equally near ones; -1
    // when empty.
    int FindPoint(const T& point, bool approximate) const;

    // Orders the points by increasing 3D distance from `point`, by `CompareDistance`; equally far
    // ones keep their order. The array is not `sorted` afterwards.
    void SortByDistance(const T& point);

    // A new `AcGePoint3dArray` of copies of the points, owned by the caller. Throws `TamExpAcad`,
    // "Allocation of AcGePoint3dArray failed", without memory. Defined in
    // GeomStructs/Point3dArrayARX.h, which its callers include: the host's array is a name for a
    // template that can't be declared here.
    auto ToAcGePoint3dArray() const;

  private:
    int FindSorted(const T& point) const;
    int FindNearest(const T& point) const;
};

template <class T>
int Point3dArrayBase<T>::FindPoint(const T& point, bool approximate) const {
    int found = -1;
    if (this->sorted) {
        found = FindSorted(point);
    } else {
        const T* const hit =
            std::find_if(this->data, this->data + this->count,
                         [&](const T& element) { return this->compare(&point, &element) == 0; });
        if (hit != this->data + this->count) found = static_cast<int>(hit - this->data);
    }
    return found < 0 && approximate ? FindNearest(point) : found;
}

template <class T>
int Point3dArrayBase<T>::FindSorted(const T& point) const {
    const T* const begin = this->data;
    const T* const end = begin + this->count;
    const T* const position = std::lower_bound(
        begin, end, point,
        [this](const T& element, const T& value) { return this->compare(&element, &value) < 0; });
    const auto alongside = [&point](const T& element) {
        return std::fabs(element.x - point.x) < 1e-6;
    };
    for (const T* p = position; p != end && alongside(*p); ++p)
        if (this->compare(&point, p) == 0) return static_cast<int>(p - begin);
    for (const T* p = position; p != begin && alongside(p[-1]); --p)
        if (this->compare(&point, p - 1) == 0) return static_cast<int>(p - 1 - begin);
    return -1;
}

template <class T>
int Point3dArrayBase<T>::FindNearest(const T& point) const {
    double best = 1.7976931348623157e308;
    int nearest = -1;
    for (std::uint32_t i = 0; i < this->count; ++i) {
        const double squared = SquaredDistance(point, this->data[i]);
        if (squared < best) {
            best = squared;
            nearest = static_cast<int>(i);
        }
    }
    return nearest;
}

template <class T>
void Point3dArrayBase<T>::SortByDistance(const T& point) {
    std::stable_sort(this->data, this->data + this->count,
                     [&point](const T& a, const T& b) { return CompareDistance(point, a, b) < 0; });
    this->sorted = false;
}

}  // namespace TamLib
