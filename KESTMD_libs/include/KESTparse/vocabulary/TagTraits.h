/// \file
/// What the kind of a tag and the conditions around it tell.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "KESTparse/framework/Range.h"

namespace KESTparse {

class InputTag;
struct Condition;

/// What a value looks like in a command file.
enum class ValueKind {
  integer,
  real,
  text,
  file,
  seriesFile,
  position,
  integers,
  reals,
  words,
  outputValues,
  namedReals
};

/// A rule around a tag.
struct TagRule {
  enum class Kind { usedIf, requiredIf, exclusive };
  Kind kind;
  const Condition* condition;  ///< null for an exclusion
  std::string_view other;      ///< the tag that the rule looks at
};

/// All that a prototype tells beyond what `InputTag` itself does.
struct TagTraits {
  ValueKind kind = ValueKind::text;
  const InputTag* value = nullptr;   ///< the prototype within all rules
  Range<double> range;               ///< of numbers
  bool mayReturnToPreset = false;    ///< of numbers; see `InputTagNumber`
  std::string pattern;               ///< of texts, a regular expression; empty for a free one
  int itemCount = 0;                 ///< of lists; see `ListParser`
  std::string_view constraint;       ///< free words on what a list must satisfy
  std::vector<std::string> entries;  ///< the only words that a list may hold, if there are any
  std::vector<TagRule> rules;        ///< outermost first
};

TagTraits traitsOf(const InputTag& tag);

/// Whether the default is a number that the range of the tag refuses, so that one must be given
/// where the tag is used.
bool refusesItsDefault(const InputTag& tag, const TagTraits& traits);

/// Whether the prototype `tag` is one of a list and takes `text` as a value, whatever its siblings
/// are.
bool takesAsList(const InputTag& tag, std::string_view text);

/// How a value of that kind is written, where the name of its type leaves that open; or empty.
std::string formOf(ValueKind kind);

/// Whether `tag` must be given when the condition of `rule` is met. A tag that is not mandatory is
/// not, whatever its rule is called, unless its default cannot stand.
bool isRequirement(const TagRule& rule, const InputTag& tag);

/// Dresses a name or a value in a sentence.
using Dress = std::string (*)(std::string_view text);

/// What `rule` says of `tag`, in words.
std::string sentenceOf(const TagRule& rule, const InputTag& tag, Dress tagDress, Dress valueDress);

/// The only values that the tag may have, if there are any.
std::vector<std::string> allowedValuesOf(const InputTag& tag);

/// Puts `fresh` in place of each `old` in `text`.
void replaceAll(std::string& text, std::string_view old, std::string_view fresh);

/// `text` with signs in place of HTML entities: "x &gt;= 0" becomes "x >= 0".
std::string withSigns(std::string text);

}  // namespace KESTparse
