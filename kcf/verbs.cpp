#include "CommandLine.h"
#include "check/Check.h"
#include "diff/Diff.h"
#include "editors/EditorWords.h"
#include "explain/Explain.h"
#include "format/Format.h"
#include "fromjson/FromJson.h"
#include "installation/Installation.h"
#include "language-server/LanguageServer.h"
#include "manual/Manual.h"
#include "preview/Preview.h"
#include "schema/Schema.h"
#include "set/Set.h"
#include "template/Template.h"
#include "vocabulary/Vocabulary.h"

namespace kcf {

const Program& program() {
  static const Program self = {
      .name = "kcf",
      .summary = "Work with KCF command files: what may stand in them, and what does",
      .details = R"(Command files describe simulations of KESTRIX in nested blocks of tags. This
program holds the vocabulary that main-converter(1) checks them against.)",
      .options = {{.name = "--help", .help = "Print this help, or that of a verb", .letter = 'h'},
                  {.name = "--version", .help = "Print the version"},
                  {.name = "--licences", .help = "Print the licences of what it is built with"}},
      .verbs =
          {
              checkVerb(),
              formatVerb(),
              languageServerVerb(),
              templateVerb(),
              fromJsonVerb(),
              explainVerb(),
              manualVerb(),
              schemaVerb(),
              vocabularyVerb(),
              setVerb(),
              diffVerb(),
              previewVerb(),
              installationVerb(),
              editorWordsVerb(),
          },
      .statuses = {{"0", "All is well"},
                   {"1", "Something was found, not found, or could not be done"},
                   {"2", "The command line cannot be understood"}},
      .examples = {
          {"Write the manual and open it", "kcf manual -o manual && xdg-open manual/index.html"},
          {"Look at a setup before it runs", "kcf preview setup.kcf && xdg-open setup.html"},
          {"Begin with a whole setup", "kcf template flood-2d -o my-flood"}}};
  return self;
}

}  // namespace kcf
