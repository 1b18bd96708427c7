#include "KESTparse/chain1d/IRparam1d.h"

#include "KESTparse/chain1d/IRcalc1d.h"
#include "KESTparse/chain1d/IRsect_comp1d.h"
#include "KESTparse/framework/InputTag.h"
#include "KESTparse/framework/Rules.h"

namespace KESTparse {

void IRparam1d::getDescription(std::ostream& out) const {
  out << "This block contains general numerical parameters for hydraulic simulations.";
}

void IRparam1d::createSubBlocks() {
  subBlock<&Self::sect_comp_ptr>("SECTION_COMPUTATION").mandatory();
}

void IRparam1d::createTags() {
  real<&Self::minimum_water_depth>("The water depth for which the channel is considered to be dry.")
      .mandatory()
      .unit("[m]")
      .above(0);
  boolean<&Self::stretch_boundary_elem>(
      "Boundary elements are usually only half as long in flow direction as internal elements.")
      .defaultsTo("yes");
  text<&Self::riemann_solver>(
      "Three different types of solvers for the Riemann problem can be chosen")
      .defaultsTo("roe")
      .oneOf({"roe", "upwind", "hll"});
  text<&Self::simulation_scheme>("Defines the scheme for the time integration of the simulation.")
      .defaultsTo("explicit")
      .oneOf({"explicit"});
}

void IRparam1d::checkRulesAlways() {
  const InputBlock* const geometry = getBlockByPath("../../GEOMETRY");
  if (geometry == nullptr) {
    report(Severity::error, *this, {about(enclosing<IRcalc1d>())},
           {"no-geometry", "the region has no GEOMETRY block", "add GEOMETRY to KESTCHAIN_1D"},
           "No GEOMETRY-Block was found. Please complete the input file.");
    return;
  }
  if (!geometry->hasTag("type")) {
    return;
  }
  const std::string& format = geometry->getTag("type", 0).getRawValue();
  ASSERT(isOneOf(format, {"varlen", "hecras", "kestrix"}),
         "geometry type " << format << " is unknown. Fix me!");
  if (sect_comp_ptr != nullptr && format == "varlen") {
    report(
        Severity::warning, *this, {about(*sect_comp_ptr)},
        {"section-computation-overridden",
         "the topography file of type 'varlen' may tell the same as SECTION_COMPUTATION",
         "tell it in one of the two places"},
        "SECTION_COMPUTATION block is used in input file combined with a geometry input type 'varlen', where the same information can be defined. If you defined the section_computation in the varlen-topography-file, the values from the .kcf file will be overridden.");
  } else if (sect_comp_ptr == nullptr && format != "varlen") {
    error(
        {"no-section-computation",
         "PARAMETER does not tell how the values of the cross sections are computed",
         "add the block SECTION_COMPUTATION to PARAMETER"},
        "SECTION_COMPUTATION block has not been defined. When using 'hecras' or 'kestirx' as geometry input type, the SECTION_COMPUTATION is mandatory");
  }
}

}  // namespace KESTparse
