#include "KESTparse/plane2d/IRparam2d.h"

namespace KESTparse {

void IRparam2d::getDescription(std::ostream& out) const {
  out << "The PARAMETER block for hydraulics is used to specify general numerical parameters for the simulation, as time step, total run time, CFL number, solver type etc.";
}

void IRparam2d::createTags() {
  real<&Self::minimum_water_depth>("This parameter is a key element in shallow waters simulation.")
      .defaultsTo("0.05")
      .unit("[m]")
      .atLeast(0);
  text<&Self::riemann_solver>(
      "Different solvers for the Riemann problem are applicable. At the moment the use of the exact solver is strongly recommended.")
      .defaultsTo("exact")
      .oneOf({"exact", "hll", "hllc"});
  real<&Self::riemann_tolerance>(
      "The exact Riemann solver performs an iterative solution of an analytical equation for the depth.")
      .defaultsTo("1.0e-6")
      .preset("1E-6")
      .unit("[m]")
      .above(0)
      .usedIf("riemann_solver", {"exact"});
  text<&Self::simulation_scheme>(
      "The keyword 'exp' indicates an explicit time integration scheme (Euler method). An implicit time integrator has not yet been implemented in 2D.")
      .defaultsTo("exp")
      .oneOf({"exp"});
  keptText(
      "velocity_update_partial",
      "The velocity calculation from the momentum fluxes requires a division by the water depth.")
      .defaultsTo("volume_area")
      .preset("0")
      .oneOf({"volume_area", "depth"});
  text<&Self::dynamic_depth_solver>(
      "There are two possibilities for the choice of the dephts for the formulation of the riemann problem.")
      .defaultsTo("on")
      .preset("off")
      .oneOf({"off", "on"});
  real<&Self::dynamic_depth_solver_precision>(
      "This tag is only used if 'dynamic_depth_solver' = on.")
      .defaultsTo("0.005")
      .unit("[m]");
  real<&Self::geo_min_area_ratio>(
      "Set the minimum area ratio (i.e. element's area divided by the average element area)for which is checked during the geometry checks at the beginning of a simulation.")
      .defaultsTo("0.05")
      .unit("[-]");
  real<&Self::geo_max_angle_quadrilateral>(
      "Set the maximum angle for ambiguous quadrilateral elements (i.e.")
      .defaultsTo("45")
      .preset("45.0")
      .unit("[-]");
  real<&Self::geo_min_aspect_ratio>(
      "Set the aspect ratio for which is checked during the geometry checks at the beginning of a simulation. The default value should usually not be changed.")
      .defaultsTo("0.06")
      .unit("[-]");
}

void IRparam2d::checkRules() {
  velocity_update_depth = hasTag("velocity_update_partial") &&
                          getTag("velocity_update_partial", 0).getRawValue() != "volume_area";
}

}  // namespace KESTparse
