#include "NamedFiles.h"

#include "KESTparse/framework/InputBlock.h"
#include "KESTparse/framework/InputTagString.h"
#include "KESTparse/framework/InputTagVisitor.h"

namespace kcf {
namespace {

class FileTest : public KESTparse::SelectiveTagVisitor {
 public:
  using SelectiveTagVisitor::visit;
  void visit(const KESTparse::InputTagFile& /*tag*/) override { isFile = true; }
  void visit(const KESTparse::InputTagSeriesFile& /*tag*/) override { isFile = true; }

  bool isFile = false;
};

void gather(const KESTparse::InputBlock& block, std::set<std::string>& names) {
  for (std::size_t i = 0; i < block.getNumTags(); ++i) {
    if (namesFile(block.getTag(i))) {
      names.insert(block.getTag(i).getRawValue());
    }
  }
  for (std::size_t i = 0; i < block.getNumBlocks(); ++i) {
    gather(block.getBlock(i), names);
  }
}

}  // namespace

bool namesFile(const KESTparse::InputTag& tag) {
  FileTest test;
  tag.accept(test);
  return test.isFile;
}

std::set<std::string> namedFiles(const KESTparse::InputBlock& root) {
  std::set<std::string> names;
  gather(root, names);
  return names;
}

}  // namespace kcf
