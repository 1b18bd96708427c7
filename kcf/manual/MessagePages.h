/// \file
/// What the rules of blocks say, and the codes of diagnostics.
#pragma once

#include <kainjow/mustache.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "KESTparse/vocabulary/Places.h"

namespace KESTparse {
struct CodeFacts;
class KestrixInputRoot;
}  // namespace KESTparse

namespace kcf {

/// The rules of a block as a list in HTML, each with its code; empty where there are none.
/// \param page   the page on which the tags of the block are; empty for the same page
/// \param anchor in front of the names of the rules
std::string rulesHtml(const KESTparse::InputBlock& block, const std::string& page,
                      const std::string& anchor);

/// The anchor of a rule on the page of its block.
std::string ruleAnchor(std::string_view rule);

/// A code of diagnostics.
struct ToldCode {
  const KESTparse::CodeFacts* facts;
  std::string stop;  ///< what stops the converter in its example; empty where nothing does
};

/// All of them, group by group.
std::vector<ToldCode> toldCodes(const KESTparse::KestrixInputRoot& root);

/// The page of the codes, those of rules included.
std::string codesHtml(const std::vector<ToldCode>& codes,
                      const std::vector<KESTparse::Place>& places);

}  // namespace kcf
