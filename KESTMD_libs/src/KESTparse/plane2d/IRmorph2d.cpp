#include "KESTparse/plane2d/IRmorph2d.h"

#include "KESTparse/plane2d/IRGravitationalTransport.h"
#include "KESTparse/plane2d/IRapparentCohesion.h"
#include "KESTparse/plane2d/IRbedic2d.h"
#include "KESTparse/plane2d/IRbedload2d.h"
#include "KESTparse/plane2d/IRbedloadFormula2d.h"
#include "KESTparse/plane2d/IRbedmat2d.h"
#include "KESTparse/plane2d/IRmorphparam2d.h"
#include "KESTparse/plane2d/IRmorphsrc2d.h"
#include "KESTparse/plane2d/IRsuspload2d.h"
#include "KESTparse/plane2d/IRsuspparam2d.h"

namespace KESTparse {

void IRmorph2d::getDescription(std::ostream& out) const {
  out << "Defines the morphologic specifications for a simulation with bedload and/or suspended transport.";
}

void IRmorph2d::createSubBlocks() {
  subBlock<&Self::morphparam_ptr>("PARAMETER").mandatory();
  subBlock<&Self::bedmat_ptr>("BEDMATERIAL").mandatory();
  subBlock<&Self::bedload_ptr>("BEDLOAD");
  subBlock<&Self::ic_ptr>("INITIAL").mandatory();
  subBlock<&Self::susp_load_ptr>("SUSPENDED_LOAD");
  subBlock<&Self::gravity_ptr>("GRAVITATIONAL_TRANSPORT");
  subBlock<&Self::src_ptr>("SOURCE");
  subBlock<&Self::apparentcohesion_ptr>("APPARENT_COHESION");
}

void IRmorph2d::createTags() {}

void IRmorph2d::checkRules() {
  const bool exchangesWithBed = susp_load_ptr != nullptr &&
                                susp_load_ptr->susp_param_ptr != nullptr &&
                                susp_load_ptr->susp_param_ptr->sediment_exchange == "on";
  if (src_ptr != nullptr && bedload_ptr == nullptr && !exchangesWithBed) {
    report(
        Severity::warning, *this, {about(*src_ptr)},
        {"source-without-transport",
         "sediment from SOURCE stays where it is put, since neither BEDLOAD nor an exchange of SUSPENDED_LOAD with the bed moves it",
         "add BEDLOAD, or SUSPENDED_LOAD with 'sediment_exchange = on', or remove SOURCE"},
        "A source block for external sources has been defined without bedload or suspension with soil exchange being activated. This doesnt make a lot of sense unless you want to play some kind of bagger-simulator.");
  }
  if (bedmat_ptr != nullptr && bedload_ptr != nullptr && bedload_ptr->formula_ptr != nullptr) {
    const IRbedloadFormula2d& formula = *bedload_ptr->formula_ptr;
    bedmat_ptr->checkBedloadFormula(*this, about<&IRbedloadFormula2d::bedload_formula>(formula),
                                    formula.bedload_formula);
  }
}

}  // namespace KESTparse
