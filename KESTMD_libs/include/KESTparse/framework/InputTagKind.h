/// \file
/// What every tag kind has, for the sources that define one.
#pragma once

#include "KESTparse/base/Assert.h"
#include "KESTparse/framework/InputTag.h"
#include "KESTparse/framework/InputTagVisitor.h"

namespace KESTparse {

template <class Self, class Base>
void TagKind<Self, Base>::accept(InputTagVisitor& visitor) const {
  visitor.visit(static_cast<const Self&>(*this));
}

template <class Self, class Base>
std::unique_ptr<InputTag> TagKind<Self, Base>::logicalClone(InputBlock& actualParent) const {
  ASSERT(this->getLogicalMaster() == nullptr, "this->logicalMaster_ == nullptr");
  if constexpr (!Self::mayRepeat) {
    ASSERT(!this->repeatable(), "");
  }
  return std::make_unique<Self>(static_cast<const Self&>(*this), actualParent);
}

}  // namespace KESTparse
