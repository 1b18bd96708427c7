#include "KESTparse/plane2d/IRsuspparam2d.h"

#include "KESTparse/bedmaterial/IRgrainclass.h"
#include "KESTparse/plane2d/IRbedmat2d.h"
#include "KESTparse/plane2d/IRmorph2d.h"

namespace KESTparse {

void IRsuspparam2d::getDescription(std::ostream& out) const {
  out << "The PARAMETER block for suspended load in 2D contains general settings dealing with suspended transport.";
}

void IRsuspparam2d::createTags() {
  text<&Self::scheme>(
      "This is the type of the numerical scheme used for the computation of advective fluxes.")
      .mandatory()
      .preset("upwind")
      .oneOf({"mdpm", "upwind"});
  text<&Self::diffusion>(
      "This option defines if and what kind of diffusion factor shall be used.Choices are 'off', 'constant' and 'dynamic'. If set to 'off', there is no calculation of diffusive ...")
      .mandatory()
      .preset("off")
      .oneOf({"off", "constant", "dynamic"});
  real<&Self::diffusion_factor>(
      "The factor representing the constant eddy diffusivity Γ can be given here. If it's not given, it is computed by the program according to (RII-1.115).")
      .preset("-1.0")
      .requiredIf("diffusion", {"constant"});
  real<&Self::diffusion_factor_dynamic>(
      "This is a calibration parameter for the dynamical computed turbulent viscosity (eddy viscosity averaged over depth).")
      .defaultsTo("1.0")
      .requiredIf("diffusion", {"dynamic"});
  text<&Self::sediment_exchange>(
      "This option defines whether there is exchange of suspended sediment with the river bed (deposition/entrainment) or not.")
      .mandatory()
      .preset("yes")
      .oneOf({"off", "on"});
  text<&Self::use_transport_type_factor>(
      "This option defines if the transport type factor shall be used.")
      .preset("on")
      .oneOf({"yes", "no"})
      .requiredIf("sediment_exchange", {"on"});
  text<&Self::transport_type_factor>(
      "Name of the approach for the computation of the transport type factor.")
      .defaultsTo("vanrijn")
      .oneOf({"vanrijn", "bagnold"})
      .requiredIf("sediment_exchange", {"on"});
  integer<&Self::number_susp_fractions>(
      "This number determines the amount of grain classes used for suspended load.")
      .defaultsTo("1")
      .atLeast(1);
  reals<&Self::pickup_factors>(
      "The rate of suspension entry according to the suggestion by Bennet and Nordin (1977) may strongly depend on the so-called 'reference concentration for suspension entry'. ...")
      .defaultsTo("( 1.0 )")
      .preset("1.0")
      .requiredIf("sediment_exchange", {"on"});
  real<&Self::factor_depth_reference_height>(
      "At the reference height the reference concentration is calculated.")
      .defaultsTo("0.1")
      .requiredIf("sediment_exchange", {"on"});
  real<&Self::adaption_length_factor>(
      "This is an important calibration factor for the pick-up rate during suspension transport.")
      .defaultsTo("1.0")
      .requiredIf("sediment_exchange", {"on"});
  text<&Self::sink_velocity_type>(
      "There are many different (semi-)empirical formulas for the settling velocity of a sediment particles.")
      .defaultsTo("vanrijn")
      .oneOf({"vanrijn", "wuwang", "zhang", "user_defined_settling_velocities"})
      .requiredIf("sediment_exchange", {"on"});
  reals<&Self::settling_velocities>(
      "Here, the settling velocities must be assigned for each grain class, no matter if it is in suspension or not.")
      .mandatory()
      .preset("-1.0")
      .unit("[mm/s]")
      .requiredIf("sink_velocity_type", {"user_defined_settling_velocities"});
  real<&Self::corey_shape_factor>(
      "The Corey shape factor describes the irregularity of the shapes of sediment particles in natural rivers.")
      .defaultsTo("0.7")
      .requiredIf("sink_velocity_type", {"wuwang"});
  text<&Self::concentration_type>(
      "Name of the formula for the computation of the near bed computation which is used to calculate exchange of suspended material with the soil.")
      .defaultsTo("vanrijn")
      .oneOf({"vanrijn", "zyserman"})
      .requiredIf("sediment_exchange", {"on"});
  text<&Self::limit_pickup_to_bedload>(
      "This flag which determines if pick-up rate shall be limited to the bed-load capacity of the grain multiplied with the transport type factor.")
      .defaultsTo("off")
      .oneOf({"on", "off"})
      .requiredIf("sediment_exchange", {"on"});
  text<&Self::theta_critical_from_bedload>(
      "This option defines how to determine the critical dimensionless shear stress 'theta'. If set to 'yes', theta is taken as it was determined in the bed-load calculations ...")
      .preset("no")
      .oneOf({"yes", "no"})
      .requiredIf("sediment_exchange", {"on"});
  text<&Self::local_slope_correction>(
      "The following corrections for the critical Shields paramter due to local bed slope can be selected")
      .defaultsTo("local_slope_vanrijn")
      .oneOf({"local_slope_vanrijn", "local_slope_chen", "no_local_slope"});
  text<&Self::exchange_type>(
      "There are two typical approaches that describe how the sediment exchange rate between soil and suspension can be computed [RI Chapter 2.2.3]:concentrations This approach ...")
      .defaultsTo("concentrations")
      .preset("none")
      .oneOf({"concentrations", "shear_stresses"})
      .requiredIf("sediment_exchange", {"on"});
  real<&Self::factor_m>(
      "This is a calibration factor which is used if sediment exchange is computed following the approach using shear stresses.")
      .defaultsTo("0.00001")
      .requiredIf("exchange_type", {"shear_stresses"});
  real<&Self::factor_n>(
      "This is a calibration factor which is used if sediment exchange is computed following the approach using shear stresses.")
      .defaultsTo("1.0")
      .requiredIf("exchange_type", {"shear_stresses"});
  real<&Self::tk>(
      "This is a calibration factor which is used if sediment exchange is computed following the approach using shear stresses.")
      .defaultsTo("0.0018")
      .requiredIf("exchange_type", {"shear_stresses"});
  text<&Self::shear_stress_deposition_conc>(
      "There are two typical approaches that describe how the sediment exchange rate between soil and suspension can be:reference This approach uses the reference concentration to determine the deposition rate.")
      .defaultsTo("reference")
      .oneOf({"reference", "actual"})
      .requiredIf("exchange_type", {"shear_stresses"});
  real<&Self::ref_conc_factor>(
      "his is a calibration factor which is used if sediment exchange is computed following the approach using shear stresses.")
      .defaultsTo("1.0")
      .above(0)
      .requiredIf("shear_stress_deposition_conc", {"reference"});
}

void IRsuspparam2d::checkRules() {
  const IRbedmat2d* const material = enclosing<IRmorph2d>().bedmat_ptr;
  // Without grain classes there is nothing to compare with; that they are missing is told above.
  const bool hasGrains = material != nullptr && material->grncls_ptr != nullptr;
  const std::size_t numDiameters = hasGrains ? material->numGrainClasses() : 0;
  const auto numFractions = static_cast<std::size_t>(number_susp_fractions);
  if (hasGrains && numFractions > numDiameters) {
    report(
        Severity::error, *this,
        {about<&Self::number_susp_fractions>(*this),
         about<&IRgrainclass::diameters>(*material->grncls_ptr)},
        {"too-many-fractions",
         "more grain classes shall be suspended ({0}) than GRAIN_CLASS lists ({1})",
         "lower 'number_susp_fractions' to the number of diameters in GRAIN_CLASS, or list more diameters there"},
        "number of suspended fractions is higher than the amount of grain classes defined in the bed material block!",
        numFractions, numDiameters);
  }
  if (numFractions != pickup_factors.size() && sediment_exchange == "on") {
    error<&Self::pickup_factors, &Self::number_susp_fractions>(
        {"pickup-count",
         "the number of values in 'pickup_factors' ({0}) is not that of the suspended grain classes ({1})",
         "give 'pickup_factors' as many values as 'number_susp_fractions' tells"},
        "The amount of pickup factors is different from the number of suspended fractions. Make sure to assign a pickup factor for every fraction.",
        pickup_factors.size(), numFractions);
  }
  if (material != nullptr) {
    material->checkSettlingVelocities(*this, about<&Self::settling_velocities>(*this),
                                      sink_velocity_type, settling_velocities);
  }
}

}  // namespace KESTparse
