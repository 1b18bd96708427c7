/// \file
/// Visitors over the nodes of a tree.
#pragma once

#include <string>

namespace KESTparse {

class InputBlock;
class InputTagBoolean;
class InputTagComposite;
class InputTagCondExclusive;
class InputTagCondRequiredIf;
class InputTagCondUsedIf;
class InputTagEnumBase;
class InputTagFile;
class InputTagPosition;
class InputTagSeriesFile;
class InputTagSlope;
class InputTagSpecialOutputValueList;
class InputTagString;
class InputTagStringStd;
template <typename T>
class InputTagList;
template <typename T>
class InputTagNumber;
template <typename T>
class InputTagTaggedList;

/// Does something for each kind of tag. A visitor need not care for the conditions around a tag: by
/// default they show the tag within.
class InputTagVisitor {
 public:
  virtual ~InputTagVisitor();
  virtual void visit(const InputTagNumber<int>& tag) = 0;
  virtual void visit(const InputTagNumber<double>& tag) = 0;
  virtual void visit(const InputTagSlope& tag) = 0;
  virtual void visit(const InputTagBoolean& tag) = 0;
  virtual void visit(const InputTagString& tag) = 0;
  virtual void visit(const InputTagStringStd& tag) = 0;
  virtual void visit(const InputTagFile& tag) = 0;
  virtual void visit(const InputTagSeriesFile& tag) = 0;
  virtual void visit(const InputTagPosition& tag) = 0;
  virtual void visit(const InputTagEnumBase& tag) = 0;
  virtual void visit(const InputTagList<int>& tag) = 0;
  virtual void visit(const InputTagList<double>& tag) = 0;
  virtual void visit(const InputTagList<std::string>& tag) = 0;
  virtual void visit(const InputTagSpecialOutputValueList& tag) = 0;
  virtual void visit(const InputTagTaggedList<double>& tag) = 0;
  virtual void visit(const InputTagCondUsedIf& tag);
  virtual void visit(const InputTagCondRequiredIf& tag);
  virtual void visit(const InputTagCondExclusive& tag);
};

/// Does nothing for any kind: the base of visitors that look at a few.
class SelectiveTagVisitor : public InputTagVisitor {
 public:
  using InputTagVisitor::visit;
  void visit(const InputTagNumber<int>& tag) override;
  void visit(const InputTagNumber<double>& tag) override;
  void visit(const InputTagSlope& tag) override;
  void visit(const InputTagBoolean& tag) override;
  void visit(const InputTagString& tag) override;
  void visit(const InputTagStringStd& tag) override;
  void visit(const InputTagFile& tag) override;
  void visit(const InputTagSeriesFile& tag) override;
  void visit(const InputTagPosition& tag) override;
  void visit(const InputTagEnumBase& tag) override;
  void visit(const InputTagList<int>& tag) override;
  void visit(const InputTagList<double>& tag) override;
  void visit(const InputTagList<std::string>& tag) override;
  void visit(const InputTagSpecialOutputValueList& tag) override;
  void visit(const InputTagTaggedList<double>& tag) override;
};

/// Does something for a block.
class InputBlockVisitor {
 public:
  virtual ~InputBlockVisitor() = default;
  virtual void visit(const InputBlock& block) = 0;
};

}  // namespace KESTparse
