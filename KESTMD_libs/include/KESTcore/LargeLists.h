/// \file
/// Room for large lists.
#pragma once

#include <sys/mman.h>

#include <cstddef>
#include <memory>

namespace Kestrix {

/// Makes room for `count` items of a vector that is read here and there: in large pages where the
/// system has them, which are found in fewer steps. Room that stays empty costs nothing.
template <class List>
void reserveLarge(List& list, std::size_t count) {
  list.reserve(count);
#ifdef MADV_HUGEPAGE
  constexpr std::size_t page = std::size_t{2} << 20U;
  void* begin = list.data();
  std::size_t size = list.capacity() * sizeof(typename List::value_type);
  if (std::align(page, page, begin, size) != nullptr) {
    // A system without them takes small ones.
    static_cast<void>(madvise(begin, size / page * page, MADV_HUGEPAGE));
  }
#endif
}

}  // namespace Kestrix
