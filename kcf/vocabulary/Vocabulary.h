/// \file
/// The vocabulary of command files as data.
#pragma once

#include <nlohmann/json_fwd.hpp>

#include "Verb.h"

namespace KESTparse {

class InputBlock;

/// All blocks below and including the master `root`, depth first in the order of the schema, each
/// with its tags and all that the schema says of them: `{"blocks": [...]}`.
nlohmann::ordered_json vocabulary(const InputBlock& root);

}  // namespace KESTparse

namespace kcf {

/// Prints the vocabulary.
Verb vocabularyVerb();

}  // namespace kcf
