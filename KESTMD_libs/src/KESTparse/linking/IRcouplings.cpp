#include "KESTparse/linking/IRcouplings.h"

#include "KESTparse/linking/IRcoupling.h"
#include "KESTparse/linking/IRcouplingLateral.h"
#include "KESTparse/linking/IRcouplingparam.h"

namespace KESTparse {

void IRcouplings::getDescription(std::ostream& out) const {
  out << "This block includes all information for the coupling of two or more sub-domains.";
}

void IRcouplings::createSubBlocks() {
  subBlock<&Self::coupling_param_ptr>("PARAMETER");
  subBlock<&Self::coupling_ptrV>("COUPLING").repeatable();
  subBlock<&Self::couplingLateral_ptrV>("COUPLING_LATERAL").repeatable();
}

void IRcouplings::createTags() {}

}  // namespace KESTparse
