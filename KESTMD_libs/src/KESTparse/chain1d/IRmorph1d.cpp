#include "KESTparse/chain1d/IRmorph1d.h"

#include "KESTparse/chain1d/IRGravitationalTransport1d.h"
#include "KESTparse/chain1d/IRbedic1d.h"
#include "KESTparse/chain1d/IRbedload1d.h"
#include "KESTparse/chain1d/IRbedloadFormula1d.h"
#include "KESTparse/chain1d/IRbedmat1d.h"
#include "KESTparse/chain1d/IRmorphparam1d.h"
#include "KESTparse/chain1d/IRmorphsrc1d.h"
#include "KESTparse/chain1d/IRsuspload1d.h"

namespace KESTparse {

void IRmorph1d::getDescription(std::ostream& out) const {
  out << "This Block defines the morphologic specifications for the simulation.";
}

void IRmorph1d::createSubBlocks() {
  subBlock<&Self::morphparam_ptr>("PARAMETER").mandatory();
  subBlock<&Self::bedmat_ptr>("BEDMATERIAL").mandatory();
  subBlock<&Self::bedload_ptr>("BEDLOAD");
  subBlock<&Self::susp_load_ptr>("SUSPENDED_LOAD");
  subBlock<&Self::initial_ptr>("INITIAL").mandatory();
  subBlock<&Self::source_ptr>("SOURCE");
  subBlock<&Self::gravity_ptr>("GRAVITATIONAL_TRANSPORT");
}

void IRmorph1d::createTags() {}

void IRmorph1d::checkRulesAlways() {
  if (bedload_ptr == nullptr && susp_load_ptr == nullptr) {
    error({"no-transport", "MORPHOLOGY has neither BEDLOAD nor SUSPENDED_LOAD",
           "add the block BEDLOAD, the block SUSPENDED_LOAD, or both"},
          "At least block 'BEDLOAD' or 'SUSPENDED_LOAD' must be defined.");
  }
  if (initial_ptr == nullptr) {
    error({"no-initial", "MORPHOLOGY does not tell how the bed is at the start",
           "add the block INITIAL, such as 'INITIAL {{ type = initial_mesh }}'"},
          "The 'INITIAL' block must be defined for morphological simulations.");
  }
  if (bedmat_ptr != nullptr && bedload_ptr != nullptr && bedload_ptr->formula_ptr != nullptr) {
    const IRbedloadFormula1d& formula = *bedload_ptr->formula_ptr;
    bedmat_ptr->checkBedloadFormula(*this, about<&IRbedloadFormula1d::bedload_formula>(formula),
                                    formula.bedload_formula);
  }
}

}  // namespace KESTparse
