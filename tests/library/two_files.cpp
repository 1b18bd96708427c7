/// \file
/// A program on the library: prints what is wrong with command files, each with its place, and
/// lives.

#include <fstream>
#include <iostream>
#include <sstream>

#include "KESTparse/document/Document.h"
#include "KESTparse/root/KestrixInputRoot.h"

int main(int argc, char** argv) {
  const KESTparse::KestrixInputRoot schema;
  for (int i = 1; i < argc; ++i) {
    std::ostringstream text;
    text << std::ifstream(argv[i], std::ios::binary).rdbuf();
    KESTparse::Document document(text.str(), schema);
    for (const KESTparse::Diagnostic& told : document.check()) {
      const KESTparse::LineColumn at = document.lines().at(told.at.at.begin);
      std::cout << argv[i] << ":" << at.line << ":" << at.column << ": " << told.message << "\n";
    }
  }
}
