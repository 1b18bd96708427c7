#include "KESTparse/plane2d/IRbedparameter2d.h"

#include "KESTparse/framework/Rules.h"

namespace KESTparse {

void IRbedparameter2d::getDescription(std::ostream& out) const {
  out << "The PARAMETER block for morphology in 2D contains general settings dealing with bedload transport.";
}

void IRbedparameter2d::createTags() {
  integers<&Self::upwind_index>(
      "This tag expects a list with all material indices (integer numbers).");
  reals<&Self::upwind>(
      "This tag expects a list with upwind factors corresponding to the material indices.");
  real<&Self::bedload_routing_start>(
      "This indicates, at what time sediment transport is started during a simulation. A value of 0.0 means bed load transport from the beginning.")
      .defaultsTo("0.0")
      .unit("[s]");
  text<&Self::limit_bedload_wetted>(
      "This option limits the bed load transport to sediment-elements which are surrounded completely by fully wetted elements.")
      .defaultsTo("on")
      .oneOf({"off", "on"});
  text<&Self::use_real_edge_lengths>(
      "This flag determines whether the bedload is calculated over the real edge lengths (3d) instead of over the plane projections (default).")
      .defaultsTo("off")
      .oneOf({"off", "on"});
  text<&Self::use_cell_averaged_bedload_flux>(
      "This flag determines the approach for bedload flux computation on the edge of the sediment cell (edgeV).")
      .defaultsTo("off")
      .oneOf({"off", "on"});
}

void IRbedparameter2d::checkRules() {
  checkIndexedList(
      *this, about<&Self::upwind>(*this), about<&Self::upwind_index>(*this), upwind.size(),
      upwind_index.size(),
      {.indexMissing =
           "'upwind' has been specified in PARAMETER block for BEDLOAD but 'upwind_index' is missing. Please specify 'upwind_index'!",
       .valuesMissing =
           "'upwind_index' has been specified PARAMETER block for BEDLOAD but 'upwind' is missing. Please specify 'upwind'!",
       .lengthsDiffer =
           "Number of entries in 'upwind_index' and 'upwind' do not match in PARAMETER block for BEDLOAD."});
}

}  // namespace KESTparse
