#include "KESTparse/chain1d/IRmorphextsrc1d.h"

#include "KESTparse/chain1d/IRcalc1d.h"
#include "KESTparse/chain1d/IRgeom1d.h"
#include "KESTparse/framework/Rules.h"

namespace KESTparse {

void IRmorphextsrc1d::getDescription(std::ostream& out) const {
  out << "The external source block is used for additional lateral sources beneath the boundary conditions, e.g. unloading of bed load or lateral sediment inflow.";
}

void IRmorphextsrc1d::createTags() {
  word<&Self::name>("Unique identifier which is used to define controllers or couplings.")
      .preset("unspecified_name");
  text<&Self::type>("Type of the external sediment source: sediment_discharge")
      .mandatory()
      .preset("undefinedType")
      .oneOf({"sediment_discharge", "coupling_sediment_discharge", "dredge", "bed_load_function"});
  seriesFile<&Self::file, &Self::file_table>(
      "Name of the file containing the time dependent sediment discharge for the source.")
      .mandatory()
      .preset("NoFile.txt")
      .requiredIf("type", {"sediment_discharge", "bed_load_function"});
  text<&Self::mixture>(
      "Mixture of the sediment added by a 'sediment_discharge' or 'bed_load_function' source.")
      .mandatory()
      .preset("undefinedMixture")
      .requiredIf("type", {"sediment_discharge", "bed_load_function"});
  integers<&Self::grain_classes>(
      "defines for each grain class if it can be dredged (1) or not (0).")
      .mandatory()
      .requiredIf("type", {"dredge"});
  text<&Self::cross_section>(
      "Name of the cross section to which the external sediment source is applied.")
      .mandatory()
      .preset("undefinedCrossSection");
  real<&Self::dredge_level>("indicates the bed level which is aimed at due to dredging.")
      .mandatory()
      .unit("[m.a.s.l]")
      .requiredIf("type", {"dredge"});
  real<&Self::dredge_trigger_height>(
      "this is the trigger height of sediment deposition for the start of the dregding.")
      .mandatory()
      .unit("[m]")
      .atLeast(0)
      .requiredIf("type", {"dredge"});
  real<&Self::maximum_dredge_rate>("maximum dredge rate which is used for dredging.")
      .defaultsTo("1E32")
      .unit("[m3/s]")
      .atLeast(0)
      .usedIf("type", {"dredge"});
  text<&Self::erode_below_fixed_bed>(
      "Setting this parameter to 'yes' allows negative sediment sources (sinks) to erode below the fixed bed.")
      .defaultsTo("no")
      .oneOf({"yes", "no"})
      .usedIf("type", {"sediment_discharge"});
  text<&Self::print_volumes>(
      "Setting this parameter to 'yes' creates additional ascii-output containing the integrated amount of added / removed sediment volumes.")
      .defaultsTo("no")
      .oneOf({"yes", "no"})
      .usedIf("type", {"sediment_discharge", "dredge"});
  identifiedBy({"name"});
}

void IRmorphextsrc1d::checkRules() {
  const IRgeom1d* const geometry = enclosing<IRcalc1d>().geom_ptr;
  if (geometry == nullptr) {
    return;
  }
  if (geometry->crossSectionIndex(cross_section) == -1) {
    error<&Self::cross_section>(
        {"unknown-cross-section", "there is no cross section '{0}' in this region",
         "name a cross section of 'cross_section_order' in GEOMETRY{1}, or add '{0}' there"},
        "'cross section' '{}' could not be found within the geometry", cross_section,
        perhaps(cross_section, geometry->cross_section_order));
  }
  if (type == "bed_load_function") {
    geometry->requireCrossSection(*this, {about<&Self::cross_section>(*this)}, cross_section);
  }
}

}  // namespace KESTparse
