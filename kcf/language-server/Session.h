/// \file
/// What all files of a session share.
#pragma once

#include "KESTparse/root/KestrixInputRoot.h"
#include "language-server/FileFacts.h"
#include "language-server/NameIndex.h"
#include "language-server/Text.h"
#include "vocabulary/Supplement.h"

namespace kcf::server {

/// The vocabulary, what files hold, and what the client can do. What the client can do is set
/// before any file is opened, and stays.
struct Session {
  KESTparse::KestrixInputRoot schema;
  Supplement supplement;
  NamingTable namings{schema};
  mutable FileFactsMemory files;

  Encoding encoding = Encoding::utf16;
  bool takesSnippets = false;
  bool takesNestedSymbols = false;
  bool takesRelated = false;
  bool takesVersionedEdits = false;
  bool takesProgress = false;
  bool sendsConfiguration = false;
  bool watchesFiles = false;
};

/// Whether the value of a tag names a file.
bool isFileTag(const KESTparse::InputTag& tag);

}  // namespace kcf::server
