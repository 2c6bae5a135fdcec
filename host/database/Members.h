// The objects that another one holds: those of the drawing, then those that were added. A view that
// holds until the next change of the database.
#pragma once

#include <cstddef>
#include <iterator>
#include <vector>

#include "host/database/Structure.h"

namespace host::database {

class Members {
  public:
    Members() = default;
    Members(const std::vector<ObjectNumber>& listed, const std::vector<ObjectNumber>& added)
        : listed_(listed.data()), listedCount_(listed.size()), added_(&added) {}
    // Those of the drawing are numbers in a row.
    Members(Structure::Range range, const std::vector<ObjectNumber>& added)
        : first_(range.begin), listedCount_(range.end - range.begin), added_(&added) {}

    std::size_t size() const { return listedCount_ + (added_ == nullptr ? 0 : added_->size()); }
    ObjectNumber operator[](std::size_t index) const {
        if (index >= listedCount_) return (*added_)[index - listedCount_];
        return listed_ != nullptr ? listed_[index] : first_ + static_cast<ObjectNumber>(index);
    }
    // The index of `number`; size() when it isn't one of them.
    std::size_t find(ObjectNumber number) const {
        std::size_t index = 0;
        while (index < size() && (*this)[index] != number) ++index;
        return index;
    }

    class iterator {
      public:
        using iterator_category = std::input_iterator_tag;
        using value_type = ObjectNumber;
        using difference_type = std::ptrdiff_t;
        using pointer = const ObjectNumber*;
        using reference = ObjectNumber;

        iterator(const Members& members, std::size_t index) : members_(&members), index_(index) {}
        ObjectNumber operator*() const { return (*members_)[index_]; }
        iterator& operator++() {
            ++index_;
            return *this;
        }
        bool operator==(const iterator& other) const { return index_ == other.index_; }
        bool operator!=(const iterator& other) const { return index_ != other.index_; }

      private:
        const Members* members_;
        std::size_t index_;
    };
    iterator begin() const { return {*this, 0}; }
    iterator end() const { return {*this, size()}; }

  private:
    const ObjectNumber* listed_ = nullptr;
    ObjectNumber first_ = 0;
    std::size_t listedCount_ = 0;
    const std::vector<ObjectNumber>* added_ = nullptr;
};

}  // namespace host::database
