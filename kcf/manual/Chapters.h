/// \file
/// The chapters of the guide.
#pragma once

#include <string>
#include <vector>

#include "KESTparse/vocabulary/Places.h"

namespace kcf {

/// A chapter of the guide.
struct Chapter {
  std::string name;  ///< of its page, without an ending
  std::string title;
  std::string lead;  ///< its first sentence
  std::string html;
  std::vector<std::string> blocks;  ///< paths of the blocks that it links to
};

/// All chapters in their order, their links to blocks and tags turned into links to pages. Throws a
/// `std::runtime_error` when one leads to no block.
std::vector<Chapter> chapters(const std::vector<KESTparse::Place>& places);

}  // namespace kcf
