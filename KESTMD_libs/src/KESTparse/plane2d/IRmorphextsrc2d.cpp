#include "KESTparse/plane2d/IRmorphextsrc2d.h"

namespace KESTparse {

void IRmorphextsrc2d::getDescription(std::ostream& out) const {
  out << "The EXTERNAL_SOURCE block is used for additional sources or sinks for bedload.";
}

void IRmorphextsrc2d::createTags() {
  word<&Self::name>("Unique identifier which is used to define couplings between domains.")
      .preset("unspecified_name");
  text<&Self::type>("This is the type of the external source. sediment_discharge")
      .mandatory()
      .preset("undefinedType")
      .oneOf({"sediment_discharge", "coupling_sediment_discharge", "dredge"});
  seriesFile<&Self::file, &Self::file_table>(
      "This is the name of the file with the source values listed over time.")
      .mandatory()
      .preset("UnspecifiedSedimentSourceFile")
      .requiredIf("type", {"sediment_discharge"});
  text<&Self::mixture>("This is the name of the mixture for the sediment source.")
      .mandatory()
      .preset("undefinedMixture")
      .requiredIf("type", {"sediment_discharge"});
  integers<&Self::node_ids>(
      "This is a list of the node ids where the source or sink shall take place. Another possibility is to define element ids or use material index.");
  integers<&Self::elem_ids>(
      "This is a list of (hydraulic) element ids where the source or sink shall take place. Another possibility is to define node ids or use material index.");
  integers<&Self::index>(
      "This is the material index where the external sediment source or sink is located. Another possibility is to define element ids or node ids.");
  integers<&Self::dredge_node_ids_redist>(
      "Optional. This is a list of node ids where dredged sediment volume of the dredge source shall be re-distributed to. Another possibility is to define element ids.")
      .requiredIf("type", {"dredge"});
  integers<&Self::dredge_elem_ids_redist>(
      "Optional. This is a list of (hydraulic) element ids where dredged sediment volume of the dredge source shall be re-distributed to.")
      .requiredIf("type", {"dredge"});
  real<&Self::dredge_level_absolute>(
      "indicates the absolute bed level which is aimed at due to dredging. This elevation is used for all defined elements.")
      .defaultsTo("-1.0")
      .unit("[m.a.s.l]")
      .usedIf("type", {"dredge"});
  real<&Self::dredge_height_relative>(
      "indicates the relative sediment height over the original bed level is aimed at due to dredging. This elevation may vary from element to element.")
      .defaultsTo("-1.0")
      .unit("[m]")
      .usedIf("type", {"dredge"});
  real<&Self::dredge_trigger_height>(
      "this is the trigger height of sediment deposition for the start of the dregding.")
      .mandatory()
      .unit("[m]")
      .atLeast(0)
      .requiredIf("type", {"dredge"});
  real<&Self::dredge_rate_max>("maximum dredge rate which is used for dredging.")
      .defaultsTo("1E32")
      .unit("[m3/s]")
      .atLeast(0)
      .usedIf("type", {"dredge"});
  identifiedBy({"name"});
}

void IRmorphextsrc2d::checkRules() {
  if (node_ids.empty() && elem_ids.empty() && index.empty()) {
    error<&Self::node_ids, &Self::elem_ids, &Self::index>(
        {"no-place", "the source does not tell where sediment is added or taken",
         "list nodes of the mesh in 'node_ids', elements in 'elem_ids', or material indices in 'index'"},
        "No 'node_id', 'elem_id, or 'index' were defined to allocate the external sediment source. Please correct the input.");
  }
  if (type != "dredge") {
    return;
  }
  const bool hasLevel = dredge_level_absolute != -1.0;
  const bool hasHeight = dredge_height_relative != -1.0;
  if (!hasLevel && !hasHeight) {
    error<&Self::dredge_level_absolute, &Self::dredge_height_relative, &Self::type>(
        {"dredge-without-level", "the dredging has no bed level to reach",
         "give 'dredge_level_absolute' in m a.s.l., or 'dredge_height_relative' in m above the original bed; -1 stands for neither"},
        "For a 'dredge' source neither the 'absolute_dredge_level' nor the 'relative_dredge_height' are specified. This is not permitted. Please correct the input.");
  }
  if (hasLevel && hasHeight) {
    error<&Self::dredge_height_relative, &Self::dredge_level_absolute>(
        {"dredge-with-two-levels",
         "the dredging has two bed levels to reach, an absolute and a relative one",
         "keep either 'dredge_level_absolute' or 'dredge_height_relative'"},
        "For a 'dredge' source an absolute dredge level is given as well as an relative dredge height. This is not permitted. Please correct the input.");
    return;
  }
  dredge_level_is_absolute = hasLevel;
}

}  // namespace KESTparse
