/// \file
/// What can be asked for by number, as a range.
#pragma once

#include <cstddef>

namespace KESTparse {

/// The references that `At` gives for the numbers from 0 to `count`, in their order. `count` is
/// that of the begin: what is added meanwhile is not seen.
template <class At>
class Counted {
 public:
  class iterator {
   public:
    iterator(const At& at, std::size_t number) : at_(&at), number_(number) {}
    decltype(auto) operator*() const { return (*at_)(number_); }
    iterator& operator++() {
      ++number_;
      return *this;
    }
    bool operator==(const iterator& other) const { return number_ == other.number_; }

   private:
    const At* at_;
    std::size_t number_;
  };

  Counted(std::size_t count, At at) : at_(at), count_(count) {}
  [[nodiscard]] iterator begin() const { return {at_, 0}; }
  [[nodiscard]] iterator end() const { return {at_, count_}; }

 private:
  At at_;
  std::size_t count_;
};

}  // namespace KESTparse
