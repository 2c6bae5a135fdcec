// A block of the run-time's heap for what the system fills in; given back at the end.
#pragma once

#include <cstring>

#include "datastruct/Memory.h"

namespace TamLib {

class HeapBlock {
  public:
    // Cleared bytes; without memory the block is null.
    explicit HeapBlock(std::size_t bytes = 0) { Take(bytes); }
    ~HeapBlock() { HeapRelease(block_); }
    HeapBlock(const HeapBlock&) = delete;
    HeapBlock& operator=(const HeapBlock&) = delete;

    // Other bytes, cleared, in place of those before; false, with a null block, without memory.
    bool Take(std::size_t bytes) {
        HeapRelease(block_);
        block_ = bytes != 0 ? HeapAllocate(bytes) : nullptr;
        if (block_ != nullptr) std::memset(block_, 0, bytes);
        return block_ != nullptr;
    }

    template <class T = void>
    T* As() const {
        return static_cast<T*>(block_);
    }

  private:
    void* block_ = nullptr;
};

}  // namespace TamLib
