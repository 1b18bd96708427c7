/// \file
/// The lists of words in the files that teach editors the command files.
#pragma once

#include "Verb.h"

namespace kcf {

/// Writes the words of the vocabulary into files of editors. It is not listed, as it serves who
/// changes the vocabulary.
Verb editorWordsVerb();

}  // namespace kcf
