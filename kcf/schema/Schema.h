/// \file
/// The shape of the converter's documents.
#pragma once

#include <nlohmann/json_fwd.hpp>

#include "Verb.h"

namespace KESTparse {

class InputBlock;

/// A JSON Schema (draft 2020-12) of the documents that the converter makes of setups below the
/// master `root`.
nlohmann::ordered_json documentSchema(const InputBlock& root);

}  // namespace KESTparse

namespace kcf {

/// Prints the JSON Schema of the documents.
Verb schemaVerb();

}  // namespace kcf
