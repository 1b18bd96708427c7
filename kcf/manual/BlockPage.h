/// \file
/// The page of one block.
#pragma once

#include <kainjow/mustache.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "KESTparse/vocabulary/Places.h"
#include "vocabulary/Supplement.h"

namespace KESTparse {
class InputTag;
}

namespace kcf {

/// A link to a page, or to a place on it.
struct Link {
  std::string page;
  std::string name;
};

/// The description of a block.
std::string descriptionOf(const KESTparse::InputBlock& block);

/// What stands around a block, and tells of it elsewhere.
struct BlockContext {
  const std::vector<KESTparse::Place>* places;
  const Supplement* supplement;
  std::vector<Link> uses;  ///< whole setups that hold it
};

/// What the template of a block's page shows.
kainjow::mustache::data blockData(const KESTparse::Place& place, const BlockContext& context);

/// The description of a tag, completed where it needs to be.
std::string tagDescription(const KESTparse::Place& place, const KESTparse::InputTag& tag,
                           const Supplement& supplement);

}  // namespace kcf
