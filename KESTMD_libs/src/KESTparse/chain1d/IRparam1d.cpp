#include "KESTparse/chain1d/IRparam1d.h"

#include "KESTparse/chain1d/IRsect_comp1d.h"

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

}  // namespace KESTparse
