// Bodies of the merge sort. Included by MergeSort.h.
//
// The runs hold handles: the elements themselves where they are plain and small, pointers to them
// otherwise. So the given block stays whole until nothing can fail any more. A run of pointers
// keeps those that were left out behind the others, to be destroyed at the end.
#pragma once

#include <algorithm>
#include <memory>
#include <utility>

#include "datastruct/MergeSort.h"

namespace TamLib {
namespace detail {

// Runs of the elements themselves.
template <class T>
struct ValueRuns {
    using Handle = T;
    static constexpr bool kKeepsDropped = false;
    static const T* Element(const Handle& handle) { return &handle; }
    static const Handle& Of(T* element) { return *element; }
};

// Runs of pointers to the elements.
template <class T>
struct PointerRuns {
    using Handle = T*;
    static constexpr bool kKeepsDropped = true;
    static const T* Element(Handle handle) { return handle; }
    static Handle Of(T* element) { return element; }
};

constexpr std::size_t kLargestValue = 64;  // above it copying costs more than following a pointer

template <class T>
using RunsOf =
    std::conditional_t<std::is_trivially_copyable_v<T> && kElementBytes<T> <= kLargestValue,
                       ValueRuns<T>, PointerRuns<T>>;

// An owned block of handles of `n` elements, in raw memory. A refusal names the elements, whatever
// their handles are.
template <class T, class H>
class RawBlock {
  public:
    explicit RawBlock(std::uint32_t n) : block_(Taken(n)) {}
    ~RawBlock() { HeapRelease(block_); }
    RawBlock(const RawBlock&) = delete;
    RawBlock& operator=(const RawBlock&) = delete;

    H* Get() { return block_; }
    H* Detach() { return std::exchange(block_, nullptr); }
    void Free() { HeapRelease(Detach()); }

  private:
    static H* Taken(std::uint32_t n) {
        const bool refused = n >= ArrayMemory<T>::kRefusedCount;
        void* block = refused ? nullptr : HeapAllocate(n * kElementBytes<H>);
        if (block == nullptr) RaiseAllocateFailed(kElementBytes<T>, n, n, kMergeLine);
        return static_cast<H*>(block);
    }

    H* block_;
};

// What stays the same through one sort. `Runs` is ValueRuns or PointerRuns.
template <class T, class Runs, class C>
struct MergeRules {
    using Handle = typename Runs::Handle;

    MergeMode mode;
    const C& comparison;
    MergeFilter<T> filter;

    std::int32_t Compare(const Handle& first, const Handle& second) const {
        return comparison(Runs::Element(first), Runs::Element(second));
    }
};

// One merge of two runs into `out`, which has `room` slots: kept handles from the front, dropped
// ones from the back.
//
// An element is to be dropped when it equals the one written last. Mostly that is known beforehand:
// the last one has been compared with one head, and with the other as its neighbour in the run. The
// merge is `settled_` as long as this holds for both heads.
template <class T, class Runs, class C>
class Merger {
  public:
    using Handle = typename Runs::Handle;

    // `distinct`: neighbours within each run are known to differ.
    Merger(const MergeRules<T, Runs, C>& rules, Handle* out, std::uint32_t room, bool distinct)
        : rules_(rules),
          out_(out),
          back_(out + room),
          distinct_(distinct),
          settles_((distinct || rules.mode == MergeMode::keepAll) && rules.filter == nullptr),
          settled_(settles_) {}

    // Gives how many were kept.
    std::uint32_t Merge(const Handle* left, std::uint32_t leftCount, const Handle* right,
                        std::uint32_t rightCount) {
        std::uint32_t i = 0;
        std::uint32_t j = 0;
        while (i < leftCount && j < rightCount) {
            const bool exhausted =
                settled_ && !TakeSettled(left, i, leftCount, right, j, rightCount);
            if (exhausted) break;
            const std::int32_t order = settled_ ? 0 : rules_.Compare(left[i], right[j]);
            if (order < 0) {
                settled_ = Take(left[i], {Side::left, i, j}) && settles_;
                ++i;
            } else if (order > 0) {
                settled_ = Take(right[j], {Side::right, j, i}) && settles_;
                ++j;
            } else {
                TakeEqual(left[i], i, right[j], j);
                ++i;
                ++j;
            }
        }
        TakeRest(left, i, leftCount, Side::left);
        TakeRest(right, j, rightCount, Side::right);
        return kept_;
    }

  private:
    enum class Side { none, left, right };
    static constexpr std::uint32_t kNowhere = 0xFFFFFFFFu;

    // An element that was written: its run, its place there, and the place in the other run of the
    // head that it was found to differ from.
    struct Written {
        Side side = Side::none;
        std::uint32_t index = 0;
        std::uint32_t facing = kNowhere;
    };

    // Takes heads as long as they differ, without a branch on their order. True when it ends at
    // equal heads, false when a run is exhausted.
    bool TakeSettled(const Handle* left, std::uint32_t& i, std::uint32_t leftCount,
                     const Handle* right, std::uint32_t& j, std::uint32_t rightCount) {
        const Handle* l = left + i;
        const Handle* r = right + j;
        const Handle* const leftEnd = left + leftCount;
        const Handle* const rightEnd = right + rightCount;
        Handle* const begin = out_ + kept_;
        Handle* out = begin;
        std::int32_t order = 0;
        std::int32_t before = 0;
        do {
            before = order;
            order = rules_.Compare(*l, *r);
            if (order == 0) break;
            const bool fromLeft = order < 0;
            *out++ = *(fromLeft ? l : r);
            l += fromLeft;
            r += !fromLeft;
        } while (l != leftEnd && r != rightEnd);
        i = static_cast<std::uint32_t>(l - left);
        j = static_cast<std::uint32_t>(r - right);
        kept_ = static_cast<std::uint32_t>(out - out_);
        if (out != begin && order == 0) {
            last_ = before < 0 ? Written{Side::left, i - 1, j} : Written{Side::right, j - 1, i};
        }
        return order == 0;
    }

    // Whether the element was kept.
    bool Take(const Handle& handle, const Written& place) {
        if (kept_ > 0 && rules_.mode != MergeMode::keepAll && !KnownToDiffer(place) &&
            rules_.Compare(out_[kept_ - 1], handle) == 0) {
            Drop(handle);
            return false;
        }
        if (rules_.filter != nullptr && rules_.filter(Runs::Element(handle))) {
            Drop(handle);
            return false;
        }
        out_[kept_++] = handle;
        last_ = place;
        return true;
    }

    void TakeEqual(const Handle& left, std::uint32_t i, const Handle& right, std::uint32_t j) {
        switch (rules_.mode) {
            case MergeMode::keepAll:
                Take(left, {Side::left, i, kNowhere});
                Take(right, {Side::right, j, kNowhere});
                break;
            case MergeMode::keepOne:
                Drop(left);
                Take(right, {Side::right, j, kNowhere});
                settled_ = false;
                break;
            case MergeMode::dropPairs:
                Drop(left);
                Drop(right);
                settled_ = false;
                break;
        }
    }

    // What one run has left when the other is exhausted.
    void TakeRest(const Handle* run, std::uint32_t from, std::uint32_t count, Side side) {
        for (; from < count && !settled_; ++from) {
            settled_ = Take(run[from], {side, from, kNowhere}) && settles_;
        }
        std::copy(run + from, run + count, out_ + kept_);
        kept_ += count - from;
    }

    // The element written last and the one at this place have been compared with each other before.
    bool KnownToDiffer(const Written& place) const {
        return place.side == last_.side ? distinct_ && place.index == last_.index + 1
                                        : place.index == last_.facing;
    }

    void Drop(const Handle& handle) {
        if constexpr (Runs::kKeepsDropped) *--back_ = handle;
    }

    const MergeRules<T, Runs, C>& rules_;
    Handle* out_;
    Handle* back_;
    bool distinct_;
    bool settles_;  // after an element is kept, the merge is settled
    bool settled_;
    std::uint32_t kept_ = 0;
    Written last_;
};

// Two runs side by side in `from`, of `half` and `n` - `half` slots, merged into the `n` slots of
// `out`, with all that has been dropped before behind the kept ones.
template <class T, class Runs, class C>
std::uint32_t MergeHalves(const MergeRules<T, Runs, C>& rules, const typename Runs::Handle* from,
                          std::uint32_t half, std::uint32_t n, std::uint32_t leftKept,
                          std::uint32_t rightKept, typename Runs::Handle* out) {
    Merger<T, Runs, C> merger(rules, out, n, true);
    const std::uint32_t kept = merger.Merge(from, leftKept, from + half, rightKept);
    if constexpr (Runs::kKeepsDropped) {
        auto* behind = std::copy(from + leftKept, from + half, out + kept);
        std::copy(from + half + rightKept, from + n, behind);
    }
    return kept;
}

// Sorts `n` elements, at least 1, into a run in `out`, and gives how many are kept. `other` is room
// for as many handles.
template <class T, class Runs, class C>
std::uint32_t SortRun(const MergeRules<T, Runs, C>& rules, T* elements, std::uint32_t n,
                      typename Runs::Handle* out, typename Runs::Handle* other) {
    if (n == 1) {
        out[0] = Runs::Of(elements);
        return 1;
    }
    if (n == 2) {
        const std::int32_t order = rules.comparison(elements, elements + 1);
        out[0] = Runs::Of(elements + (order > 0));
        out[1] = Runs::Of(elements + (order <= 0));
        return order == 0 ? 2 - static_cast<std::uint32_t>(rules.mode) : 2;
    }
    const std::uint32_t half = n / 2;
    const std::uint32_t left = SortRun(rules, elements, half, other, out);
    const std::uint32_t right = SortRun(rules, elements + half, n - half, other + half, out + half);
    return MergeHalves(rules, other, half, n, left, right, out);
}

// Moves the first `kept` of `n` elements into a new block of `capacity` slots, destroys the others
// and fills the block up with default content.
template <class T>
T* GatherElements(T* const* elements, std::uint32_t kept, std::uint32_t n, std::uint32_t capacity) {
    T* const out = ArrayMemory<T>::_Allocate(capacity, capacity, kMergeLine);
    for (std::uint32_t i = 0; i < kept; ++i) MoveElements(out + i, elements[i], 1);
    for (std::uint32_t i = kept; i < n; ++i) std::destroy(elements[i], elements[i] + 1);
    std::uninitialized_value_construct(out + kept, out + capacity);
    return out;
}

// MergeSortRun from three elements on.
template <class T, class C>
T* SortedBlock(T* block, std::uint32_t count, std::uint32_t& outCount, std::uint32_t& outCapacity,
               const MergeRules<T, RunsOf<T>, C>& rules) {
    using Handle = typename RunsOf<T>::Handle;
    const std::uint32_t half = count / 2;
    RawBlock<T, Handle> runs(count);
    RawBlock<T, Handle> other(count);
    const std::uint32_t left = SortRun(rules, block, half, runs.Get(), other.Get());
    const std::uint32_t right =
        SortRun(rules, block + half, count - half, runs.Get() + half, other.Get() + half);
    outCapacity = left + right;
    if constexpr (RunsOf<T>::kKeepsDropped) {
        outCount = MergeHalves(rules, runs.Get(), half, count, left, right, other.Get());
        return GatherElements(other.Get(), outCount, count, outCapacity);
    } else {
        other.Free();
        RawBlock<T, T> out(outCapacity);
        Merger<T, RunsOf<T>, C> merger(rules, out.Get(), outCapacity, true);
        outCount = merger.Merge(runs.Get(), left, runs.Get() + half, right);
        std::uninitialized_value_construct(out.Get() + outCount, out.Get() + outCapacity);
        return out.Detach();
    }
}

}  // namespace detail

template <class T, class C>
T* MergeRuns(T* left, std::uint32_t leftCount, T* right, std::uint32_t rightCount,
             std::uint32_t& outCount, std::uint32_t& outCapacity, MergeMode mode,
             const C& comparison, MergeFilter<T> filter) {
    using Runs = detail::PointerRuns<T>;
    const detail::MergeRules<T, Runs, C> rules{mode, comparison, filter};
    const std::uint32_t n = leftCount + rightCount;
    detail::RawBlock<T, T*> from(n);
    detail::RawBlock<T, T*> merged(n);
    for (std::uint32_t i = 0; i < leftCount; ++i) from.Get()[i] = left + i;
    for (std::uint32_t j = 0; j < rightCount; ++j) from.Get()[leftCount + j] = right + j;
    detail::Merger<T, Runs, C> merger(rules, merged.Get(), n, false);
    outCount = merger.Merge(from.Get(), leftCount, from.Get() + leftCount, rightCount);
    outCapacity = n;
    return detail::GatherElements(merged.Get(), outCount, n, n);
}

template <class T, class C>
T* MergeSortRun(T* block, std::uint32_t count, std::uint32_t capacity, std::uint32_t& outCount,
                std::uint32_t& outCapacity, MergeMode mode, const C& comparison, bool& isNew,
                MergeFilter<T> filter) {
    if (count >= 3) {
        T* const out = detail::SortedBlock<T, C>(block, count, outCount, outCapacity,
                                                 {mode, comparison, filter});
        isNew = true;
        return out;
    }
    outCount = count;
    outCapacity = capacity;
    isNew = false;
    if (count == 2) {
        const std::int32_t order = comparison(block, block + 1);
        if (order > 0) SwapElements(block[0], block[1]);
        if (order == 0) outCount -= static_cast<std::uint32_t>(mode);
    }
    return block;
}

template <class T, class C>
void Order(T*& block, std::uint32_t& count, std::uint32_t& capacity, MergeMode mode,
           const C& comparison) {
    if (count <= 1) return;
    if (mode == MergeMode::keepAll) {
        SortByPointers(block, static_cast<std::int32_t>(count) - 1, capacity, comparison);
        return;
    }
    std::uint32_t outCount = 0;
    std::uint32_t outCapacity = 0;
    bool isNew = false;
    T* const out =
        MergeSortRun(block, count, capacity, outCount, outCapacity, mode, comparison, isNew);
    if (isNew) {
        if (capacity > count) std::destroy(block + count, block + capacity);
        ArrayMemory<T>::Release(block);
    }
    block = out;
    count = outCount;
    capacity = outCapacity;
}

}  // namespace TamLib
