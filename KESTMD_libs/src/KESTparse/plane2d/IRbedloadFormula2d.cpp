#include "KESTparse/plane2d/IRbedloadFormula2d.h"

#include "KESTparse/framework/Rules.h"

namespace KESTparse {

void IRbedloadFormula2d::getDescription(std::ostream& out) const {
  out << "The FORMULA block for morphology in 2D defines general settings related to the bedload transport formula.";
}

void IRbedloadFormula2d::createTags() {
  text<&Self::bedload_formula>(
      "The following bedload transport formulas can be selected (see Reference Manual RI)")
      .mandatory()
      .preset("unspecified_trsp")
      .oneOf({"mpm", "engelundhansen", "mpmh", "mpm_multi", "ashidamichiue", "parker",
              "wilcockcrowe", "rickenmann", "smartjaeggi", "smartjaeggi_multi", "wu", "power_law",
              "vanrijn"});
  real<&Self::bedload_factor>("This is an important calibration factor for bedload transport.")
      .defaultsTo("1.0");
  real<&Self::bedload_exponent>(
      "The bedload exponent is used for mpm and mpm_multi bedload transport formula.")
      .defaultsTo("1.5")
      .atLeast(1)
      .atMost(2)
      .usedIf("bedload_formula", {"mpm", "mpm_multi"});
  integers<&Self::theta_critical_index>(
      "This tag expects a list with material indices (integer numbers).")
      .usedIf("bedload_formula", {"mpm", "mpmh", "mpm_multi", "ashidamichiue", "rickenmann",
                                  "smartjaeggi", "smartjaeggi_multi", "parker", "wu", "vanrijn"});
  reals<&Self::theta_critical>(
      "The critical Shields parameter (dimensionless critical shear stress) is an important calibration factor.")
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
  text<&Self::local_slope_correction>(
      "The following corrections for the critical Shields paramter due to local bed slope can be selected")
      .defaultsTo("local_slope_vanrijn")
      .oneOf({"local_slope_vanrijn", "local_slope_chen", "no_local_slope"});
  real<&Self::critical_shear_stress_calibration>(
      "Factor used to modify the critical shear stress returned by the Shields diagram.")
      .defaultsTo("1.0")
      .atLeast(0)
      .atMost(100)
      .usedIf("bedload_formula", {"mpm", "mpm_multi", "ashidamichiue", "mpmh", "rickenmann",
                                  "smartjaeggi", "vanrijn"});
  real<&Self::hiding_exponent>(
      "This is the exponent of the hiding-exposure function in Hunziker's, Wu's, or Parker's non-uniform bed load formula.")
      .preset("-1E10")
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
      "The alpha factor is used for the extention of the original Smart & Jaeggi (single grain) transport formula to a multi grain approach.")
      .defaultsTo("1.05")
      .atLeast(1)
      .usedIf("bedload_formula", {"smartjaeggi_multi"});
  real<&Self::d90>(
      "This is the characteristic diameter d90 of the bed material. This parameter is mandatory for the 'rickenmann', 'smartjaeggi' and 'vanrijn' bed load transport formula.")
      .mandatory()
      .preset("1.0")
      .unit("[mm]")
      .above(0)
      .requiredIf("bedload_formula", {"rickenmann", "smartjaeggi", "vanrijn"});
  real<&Self::d30>(
      "This is the characteristic diameter d30 of the bed material. This parameter is mandatory for the 'rickenmann' and 'smartjaeggi' bed load transport formula.")
      .mandatory()
      .preset("1.0")
      .unit("[mm]")
      .above(0)
      .requiredIf("bedload_formula", {"rickenmann", "smartjaeggi"});
  text<&Self::bedforms_type>("Here the user defines weather or how to take bedforms into account.")
      .defaultsTo("no_bedforms")
      .oneOf({"no_bedforms", "user_defined_bedforms", "mpm_bedforms", "slope_dependent_bedforms"});
  integers<&Self::bedforms_index>(
      "This tag is used for user defined bedforms and expects a list with all required material indices (integer numbers).")
      .mandatory()
      .requiredIf("bedforms_type", {"user_defined_bedforms"});
  reals<&Self::bedforms_factor>(
      "This tag expects a list with bedform reduction coefficients corresponding to the material indices.")
      .mandatory()
      .requiredIf("bedforms_type", {"user_defined_bedforms"});
  real<&Self::slope_dependent_bedforms_factor>(
      "This tag expects a reduction factor, which is applied only for slopes below a certain bed slope, whichis defined in the tag 'slope_limit_bedforms'. This can be useful ...")
      .mandatory()
      .preset("1.0")
      .unit("[-]")
      .above(0)
      .atMost(1)
      .requiredIf("bedforms_type", {"slope_dependent_bedforms"});
  real<&Self::slope_limit_bedforms>(
      "This tag expects the slope below which the reduction factor 'slope_dependent_bedforms_factor' is valid.")
      .mandatory()
      .preset("1.0")
      .unit("[-]")
      .above(0)
      .atMost(1)
      .requiredIf("bedforms_type", {"slope_dependent_bedforms"});
}

void IRbedloadFormula2d::checkRules() {
  checkIndexedList(
      *this, about<&Self::theta_critical>(*this), about<&Self::theta_critical_index>(*this),
      theta_critical.size(), theta_critical_index.size(),
      {.indexMissing =
           "'theta_crit' has been specified in PARAMETER block for BEDLOAD but 'theta_crit_index' is missing. Please specify 'theta_crit_index'!",
       .valuesMissing =
           "'theta_crit_index' has been specified in PARAMETER block for BEDLOAD but 'theta_crit' is missing. Please specify 'theta_crit'!",
       .lengthsDiffer =
           "Number of entries in 'theta_critical_index' and 'theta_critic' do not match in PARAMETER block for BEDLOAD."});
  checkIndexedList(
      *this, about<&Self::bedforms_factor>(*this), about<&Self::bedforms_index>(*this),
      bedforms_factor.size(), bedforms_index.size(),
      {.indexMissing =
           "'bedforms_factor' has been specified in PARAMETER block for BEDLOAD but 'bedforms_index' is missing. Please specify 'bedforms_index'!",
       .valuesMissing =
           "'bedforms_index' has been specified in PARAMETER block for BEDLOAD but 'bedforms_factor' is missing. Please specify 'bedforms_factor'!",
       .lengthsDiffer =
           "Number of entries in 'bedforms_index' and 'bedforms_factor' do not match in PARAMETER block for BEDLOAD."});
}

}  // namespace KESTparse
