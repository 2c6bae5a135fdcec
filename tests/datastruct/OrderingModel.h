// The sorting routines in their plain form, step by step over std::vector, to compare with.
#pragma once

#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

#include "datastruct/MergeSort.h"

namespace test {

// A key that is compared and a mark that tells equal elements apart.
struct Marked {
    int key;
    int mark;
    friend bool operator==(const Marked& a, const Marked& b) {
        return a.key == b.key && a.mark == b.mark;
    }
};

// The same as an object of more bytes than sorting copies about.
struct MarkedLarge {
    int key;
    int mark;
    int more[30];
};

template <class T>
std::int32_t CompareKeys(const T* a, const T* b) {
    return (a->key > b->key) - (a->key < b->key);
}

template <class T>
using Comparing = std::function<std::int32_t(const T*, const T*)>;

template <class T>
class PlainQuickSort {
  public:
    PlainQuickSort(Comparing<T> comparison, int insertionSpan, std::function<int()> random)
        : compare_(std::move(comparison)), limit_(insertionSpan), random_(std::move(random)) {}

    void Sort(std::vector<T>& v, int high, int low) {
        if (high <= low) return;
        const int span = high - low;
        int pivotAt = (high + low) / 2;
        if (span > 200) {
            const int a = high - random_() % span;
            const int b = low + random_() % span;
            const int m = Median(v, high, low, (high + low) / 2);
            pivotAt = Median(v, m, b, a);
        }
        const T pivot = At(v, pivotAt);
        int i = low;
        int j = high;
        while (i <= j) {
            while (compare_(&At(v, i), &pivot) < 0) ++i;
            while (compare_(&pivot, &At(v, j)) < 0) --j;
            if (i > j) break;
            std::swap(At(v, i), At(v, j));
            ++i;
            --j;
        }
        if (j - low >= limit_ + 1) {
            Sort(v, j, low);
        } else if (low < j) {
            Insert(v, j, low);
        }
        if (high - i > limit_) {
            Sort(v, high, i);
        } else if (i < high) {
            Insert(v, high, i);
        }
    }

  private:
    static T& At(std::vector<T>& v, int i) { return v[static_cast<std::size_t>(i)]; }

    int Median(std::vector<T>& v, int a, int b, int c) {
        const auto greater = [&](int p, int q) {
            return compare_(&At(v, p), &At(v, q)) > 0 ? p : q;
        };
        const auto lesser = [&](int p, int q) {
            return compare_(&At(v, p), &At(v, q)) < 0 ? p : q;
        };
        const int x = greater(b, c);
        const int y = greater(a, c);
        const int z = greater(a, b);
        return lesser(lesser(x, y), lesser(y, z));
    }

    void Insert(std::vector<T>& v, int high, int low) {
        for (int k = low + 1; k <= high; ++k) {
            for (int at = k; at > low && compare_(&At(v, at - 1), &At(v, at)) > 0; --at) {
                std::swap(At(v, at - 1), At(v, at));
            }
        }
    }

    Comparing<T> compare_;
    int limit_;
    std::function<int()> random_;
};

// A sorted run and the slots of the block it stands in.
template <class T>
struct PlainRun {
    std::vector<T> kept;
    std::size_t capacity = 0;
    bool isNew = false;
};

template <class T>
class PlainMergeSort {
  public:
    PlainMergeSort(Comparing<T> comparison, int mode, std::function<bool(const T*)> filter = {})
        : compare_(std::move(comparison)), mode_(mode), filter_(std::move(filter)) {}

    PlainRun<T> Sort(const std::vector<T>& v, std::size_t capacity) {
        if (v.size() < 3) return SortFew(v, capacity);
        const auto middle = v.begin() + static_cast<std::ptrdiff_t>(v.size() / 2);
        const PlainRun<T> left = Sort(std::vector<T>(v.begin(), middle), capacity);
        const PlainRun<T> right = Sort(std::vector<T>(middle, v.end()), 0);
        return Merge(left.kept, right.kept);
    }

    PlainRun<T> Merge(const std::vector<T>& left, const std::vector<T>& right) {
        std::vector<T> out;
        std::size_t i = 0;
        std::size_t j = 0;
        while (i < left.size() || j < right.size()) {
            if (j == right.size()) {
                Take(out, left[i++]);
            } else if (i == left.size()) {
                Take(out, right[j++]);
            } else {
                const int order = compare_(&left[i], &right[j]);
                if (order < 0) {
                    Take(out, left[i++]);
                } else if (order > 0) {
                    Take(out, right[j++]);
                } else {
                    if (mode_ == 0) Keep(out, left[i]);
                    if (mode_ == 0) Keep(out, right[j]);
                    if (mode_ == 1) Take(out, right[j]);
                    ++i;
                    ++j;
                }
            }
        }
        return {out, left.size() + right.size(), true};
    }

  private:
    PlainRun<T> SortFew(std::vector<T> v, std::size_t capacity) {
        if (v.size() == 2) {
            const int order = compare_(&v[0], &v[1]);
            if (order > 0) std::swap(v[0], v[1]);
            if (order == 0) v.resize(static_cast<std::size_t>(2 - mode_));
        }
        return {v, capacity, false};
    }

    void Take(std::vector<T>& out, const T& element) {
        if (!out.empty() && mode_ != 0 && compare_(&out.back(), &element) == 0) return;
        Keep(out, element);
    }
    void Keep(std::vector<T>& out, const T& element) {
        if (filter_ && filter_(&element)) return;
        out.push_back(element);
    }

    Comparing<T> compare_;
    int mode_;
    std::function<bool(const T*)> filter_;
};

// Calls `visit` with each sequence of up to `longest` numbers below `letters`.
template <class Visit>
void ForEachSequence(int longest, int letters, Visit visit) {
    for (int n = 0; n <= longest; ++n) {
        std::vector<int> sequence(static_cast<std::size_t>(n), 0);
        for (;;) {
            visit(sequence);
            int digit = n - 1;
            while (digit >= 0 && ++sequence[static_cast<std::size_t>(digit)] == letters) {
                sequence[static_cast<std::size_t>(digit--)] = 0;
            }
            if (digit < 0) break;
        }
    }
}

}  // namespace test
