/// \file
/// Makes the tree of a command file's text, and nothing else.

#include <cstdlib>
#include <iostream>
#include <utility>

#include "KESTparse/base/Files.h"
#include "KESTparse/document/SyntaxTree.h"

// Whatever is wrong with its file ends the measurement.
// NOLINTNEXTLINE(bugprone-exception-escape)
int main(int argc, char** argv) {
  KESTparse::FileText file = KESTparse::readFile(argc > 1 ? argv[1] : "");
  const KESTparse::SyntaxTree tree(std::move(file.content));
  std::cout << tree.nodes().size() << " nodes\n";
  return file.wasRead ? EXIT_SUCCESS : EXIT_FAILURE;
}
