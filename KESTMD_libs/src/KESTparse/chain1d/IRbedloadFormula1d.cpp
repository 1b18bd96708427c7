#include "KESTparse/chain1d/IRbedloadFormula1d.h"

namespace KESTparse {

void IRbedloadFormula1d::getDescription(std::ostream& out) const {
  out << "The FORMULA block for morphology in 1D defines general settings related to the bedload transport formula.";
}

void IRbedloadFormula1d::createTags() {
  text<&Self::bedload_formula>(
      "The following bedload transport formulas can be selected (see Reference Manual RI)")
      .mandatory()
      .preset("unsepcified_trsp")
      .oneOf({"mpm", "engelundhansen", "mpmh", "mpm_multi", "ashidamichiue", "parker",
              "wilcockcrowe", "power_law", "rickenmann", "smartjaeggi", "smartjaeggi_multi", "wu",
              "vanrijn"});
  real<&Self::bedload_factor>(
      "This factor is multiplied with the bedload transport computed by the bedload formula and can be used as a calibration parameter.")
      .defaultsTo("1.0");
  real<&Self::bedload_exponent>(
      "The bedload exponent is used for mpm and mpm_multi bedload transport formula.")
      .defaultsTo("1.5")
      .atLeast(1)
      .atMost(2)
      .usedIf("bedload_formula", {"mpm", "mpm_multi"});
  real<&Self::theta_critical>(
      "The critical Shields parameter (dimensionless critical shear stress) is an important calibration factor.")
      .defaultsTo("-1.0")
      .usedIf("bedload_formula", {"mpm", "mpmh", "mpm_multi", "ashidamichiue", "rickenmann",
                                  "smartjaeggi", "smartjaeggi_multi", "vanrijn", "parker", "wu"});
  text<&Self::theta_critical_approach>(
      "This tag is used if no tag 'theta_critical' is defined or if certain material indices are missing.The following approaches to determine critical Shields paramter ...")
      .defaultsTo("theta_critical_vanrijn")
      .oneOf({"theta_critical_vanrijn", "theta_critical_yalin"})
      .usedIf("bedload_formula", {"mpm", "mpmh", "mpm_multi", "ashidamichiue", "rickenmann",
                                  "smartjaeggi", "smartjaeggi_multi", "vanrijn"});
  text<&Self::theta_critical_hiding>(
      "This tag is used if no tag 'theta_critical' is defined or if certain material indices are missing.")
      .defaultsTo("mean")
      .oneOf({"mean", "median", "geometric", "fraction"})
      .usedIf("bedload_formula", {"mpm_multi", "ashidamichiue", "smartjaeggi_multi"});
  real<&Self::critical_shear_stress_calibration>(
      "Factor used to modify the critical shear stress returned by the Shields diagram.")
      .defaultsTo("1.0")
      .atLeast(0)
      .atMost(100)
      .usedIf("bedload_formula", {"mpm", "mpm_multi", "ashidamichiue", "mpmh", "rickenmann",
                                  "smartjaeggi", "smartjaeggi_multi", "vanrijn"});
  real<&Self::hiding_exponent>(
      "This is the exponent of the hiding-exposure function in Hunziker's, Wu's, or Parker's non-uniform bed load formula.")
      .defaultsTo("-1E10")
      .usedIf("bedload_formula", {"mpmh", "wu", "parker"});
  real<&Self::power_law_a>(
      "This is the linear factor 'a' for the power law transport formula (a*u^b). By default, it is set to 1.0.")
      .defaultsTo("1.0")
      .usedIf("bedload_formula", {"power_law"});
  real<&Self::power_law_b>(
      "This is the exponent b for the power law transport formula (a*u^b). By default, it is set to 1.0.")
      .defaultsTo("1.0")
      .usedIf("bedload_formula", {"power_law"});
  real<&Self::alpha>(
      "The coefficient of alpha is used instead of the term (d90/d30)^(0.2) of the original (single grain) Smart & Jaeggi transport formula. By default, it is set to 1.05.")
      .defaultsTo("1.05")
      .atLeast(1)
      .usedIf("bedload_formula", {"smartjaeggi_multi"});
  real<&Self::d90>(
      "This is the characteristic diameter d90 of the bed material. This parameter is mandatory for the 'rickenmann', 'smartjaeggi' and 'vanrijn' bed load transport formula.")
      .mandatory()
      .preset("-1.0")
      .unit("[mm]")
      .above(0)
      .requiredIf("bedload_formula", {"rickenmann", "smartjaeggi", "vanrijn"});
  real<&Self::d30>(
      "This is the characteristic diameter d30 of the bed material. This parameter is mandatory for the 'rickenmann' and 'smartjaeggi' bed load transport formula.")
      .mandatory()
      .preset("-1.0")
      .unit("[mm]")
      .above(0)
      .requiredIf("bedload_formula", {"rickenmann", "smartjaeggi"});
  real<&Self::angle_of_repose>(
      "The angle of repose of the bedmaterial in degrees is considered to be the same in the whole region.")
      .defaultsTo("30.0")
      .unit("[degree]");
  real<&Self::bed_forms>(
      "This factor is applied in case of bed forms to determine the effective bottom shear stress θ'; from the bottom shear stress θ. This factor must be set to a value smaller or equal 1.0.")
      .defaultsTo("1.0")
      .atMost(5);
  text<&Self::local_slope>(
      "This flag determines if the critical Shields paramter is corrected due to local bed slope (gravitational influence).")
      .defaultsTo("on")
      .oneOf({"off", "on"})
      .usedIf("bedload_formula",
              {"mpm", "mpm_multi", "ashidamichiue", "parker", "power_law", "vanrijn", "wu"});
  text<&Self::use_energy_slope>(
      "This flag determines the slope calcualtion for the bed load transport formula of 'smartjaeggi' and 'smartjaeggi_multi'. The slope can either be determined from the ...")
      .defaultsTo("on")
      .oneOf({"on", "off"})
      .usedIf("bedload_formula", {"smartjaeggi", "smartjaeggi_multi"});
}

}  // namespace KESTparse
