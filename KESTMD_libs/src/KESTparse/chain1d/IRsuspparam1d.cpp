#include "KESTparse/chain1d/IRsuspparam1d.h"

#include "KESTparse/chain1d/IRbedmat1d.h"
#include "KESTparse/chain1d/IRmorph1d.h"
#include "KESTparse/framework/Rules.h"

namespace KESTparse {

void IRsuspparam1d::getDescription(std::ostream& out) const {
  out << "The PARAMETER block for suspended load in 1D contains general settings dealing with suspended transport.";
}

void IRsuspparam1d::createTags() {
  text<&Self::local_slope>(
      "This flag determines if the gravitational influence of the local slope within the elements should be considered for suspended-load transport.")
      .defaultsTo("on")
      .oneOf({"off", "on"});
  text<&Self::scheme>("The numerical scheme used for advection computation.")
      .mandatory()
      .preset("mdpm")
      .oneOf({"upwindSuspension", "mdpm", "quick", "quickest", "holly"});
  real<&Self::diffusion_factor>(
      "The factor representing the constant eddy diffusivity Γ can be given here. If it's not given, it is computed by the program according to (RII-1.115).")
      .preset("-1.0")
      .unit("[-]")
      .atLeast(0);
  real<&Self::diffusion_factor_dynamic>(
      "This is a calibration parameter for the dynamical computed turbulent viscosity (eddy viscosity averaged over depth).")
      .defaultsTo("1.0");
  text<&Self::sediment_exchange>(
      "Defines if there is exchange of sediment with the river bed (deposition/entrainment).")
      .mandatory()
      .preset("off")
      .oneOf({"on", "off"});
  text<&Self::use_transport_type_factor>(
      "If both bed load and suspended load transport are taken into account and sediment exchange is possible, the so-called transport type factor φ can be used.")
      .defaultsTo("no")
      .oneOf({"yes", "no"})
      .requiredIf("sediment_exchange", {"on"});
  text<&Self::transport_type_factor>(
      "There are basically two approaches to determine how the sediment transport can be splitted into suspended load transport and bed load transport.")
      .defaultsTo("vanrijn")
      .oneOf({"vanrijn", "bagnold"})
      .requiredIf("sediment_exchange", {"on"});
  real<&Self::pickup_factor>(
      "This is an important calibration factor for the pick-up rate during suspended load transport.")
      .defaultsTo("1.0")
      .requiredIf("sediment_exchange", {"on"});
  text<&Self::sink_velocity_type>(
      "There are many different (semi-)empirical formulas for the settling velocity of a sediment particles.")
      .defaultsTo("vanrijn")
      .preset("none")
      .oneOf({"vanrijn", "wuwang", "zhang", "user_defined_settling_velocities"});
  reals<&Self::settling_velocities>(
      "Here, the settling velocities must be assigned for each grain class, no matter if it is in suspension or not.")
      .mandatory()
      .preset("-1.0")
      .unit("[mm/s]")
      .requiredIf("sink_velocity_type", {"user_defined_settling_velocities"});
  text<&Self::exchange_type>(
      "There are two typical approaches that describe how the sediment exchange rate between soil and suspension can be computed [RI Chapter 2.2.3]:concentrations This approach ...")
      .defaultsTo("concentrations")
      .preset("none")
      .oneOf({"concentrations", "shear_stresses"})
      .requiredIf("sediment_exchange", {"on"});
  text<&Self::concentration_type>(
      "The reference concentration for entrainment can be computed using the approach of Van Rijn (1984) - which is used as default - the approach of Zyserman & Fredsøe (1994) ...")
      .defaultsTo("vanrijn")
      .preset("none")
      .oneOf({"vanrijn", "zyserman", "constant_factor"})
      .requiredIf("sediment_exchange", {"on"});
  real<&Self::factor_for_near_bed_concentration>(
      "This factor defines the ratio of the near-bed suspended sediment concentration and the depth-averaged suspended sediment concentration")
      .defaultsTo("1.0")
      .requiredIf("concentration_type", {"constant_factor"});
  real<&Self::factor_depth_reference_height>(
      "If the reference concentration for entrainment is computed according to Van Rijn, then the reference height a can be chosen.")
      .defaultsTo("0.1")
      .requiredIf("concentration_type", {"vanrijn"});
  real<&Self::factor_m>(
      "This is a calibration factor which is used if sediment exchange is computed following the approach using shear stresses.")
      .preset("-1.0")
      .requiredIf("exchange_type", {"shear_stresses"});
  real<&Self::factor_n>(
      "This is a calibration factor which is used if sediment exchange is computed following the approach using shear stresses.")
      .preset("-1.0")
      .requiredIf("exchange_type", {"shear_stresses"});
  real<&Self::tk>(
      "This is a calibration factor which is used if sediment exchange is computed following the approach using shear stresses.")
      .preset("-1.0")
      .requiredIf("exchange_type", {"shear_stresses"});
  real<&Self::shape_factor>(
      "The Corey shape factor describes the irregularity of the shapes of sediment particles in natural rivers.")
      .preset("-1.0");
}

void IRsuspparam1d::checkRules() {
  if (isOneOf(scheme, {"mdpm", "holly"}) && sediment_exchange == "on") {
    error<&Self::scheme, &Self::sediment_exchange>(
        {"scheme-without-exchange", "the scheme '{0}' cannot exchange sediment with the bed",
         "set 'scheme = quick' or 'scheme = quickest', or 'sediment_exchange = off'"},
        "The chosen scheme '{}' works for pollutant transport only! If you would like to take sediment exchange into account, please switch to the QUICK or QUICKEST scheme. If sediment exchange can be neglected, deactivate sediment exchange, i.e. set 'sediment_exchange' to 'off'.",
        scheme);
  }
  const auto* const morphology = ancestor<IRmorph1d>();
  if (morphology != nullptr && morphology->bedmat_ptr != nullptr) {
    morphology->bedmat_ptr->checkSettlingVelocities(*this, about<&Self::settling_velocities>(*this),
                                                    sink_velocity_type, settling_velocities);
  }
}

}  // namespace KESTparse
