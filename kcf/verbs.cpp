#include "CommandLine.h"
#include "manual/Manual.h"
#include "schema/Schema.h"
#include "template/Template.h"
#include "vocabulary/Vocabulary.h"

namespace kcf {

const std::vector<Verb>& verbs() {
  static const std::vector<Verb> all = {
      templateVerb(),
      manualVerb(),
      schemaVerb(),
      vocabularyVerb(),
  };
  return all;
}

}  // namespace kcf
