#include "KESTparse/subsurface/IRgeomSub.h"

#include <algorithm>

#include "KESTparse/framework/Rules.h"
#include "KESTparse/subsurface/IRzoneSub.h"

namespace KESTparse {

void IRgeomSub::getDescription(std::ostream& out) const {
  out << "Defines the cubic mesh for this 3D-simulation. The cube dimensions and coordinates have to be specified.";
}

void IRgeomSub::createSubBlocks() {
  subBlock<&Self::zones_ptrV>("ZONE").repeatable();
}

void IRgeomSub::createTags() {
  reals<&Self::ref_coordinates>(
      "Reference point of lower, left edge of groundwater lattice. Coordinates (xref, yref, zref) are expected.")
      .mandatory();
  reals<&Self::base_vector_i>(
      "Base vector in i-direction of sub-surface Lattice. Coordinates (i_x, i_y, i_z) are expected.")
      .mandatory();
  reals<&Self::base_vector_j>(
      "Base vector in i-direction of sub-surface Lattice. Coordinates (j_x, j_y, j_z) are expected.")
      .mandatory();
  real<&Self::cell_size>("Size (length) of cubic cells").mandatory().preset("1.0").unit("[m]");
  integer<&Self::no_cells_i>("Number of cells of domain in i-direction")
      .mandatory()
      .preset("1.0")
      .unit("[-]");
  integer<&Self::no_cells_j>("Number of cells of domain in j-direction")
      .mandatory()
      .preset("1.0")
      .unit("[-]");
  integer<&Self::no_cells_k>("Number of cells of domain in vertical k-direction")
      .mandatory()
      .preset("1.0")
      .unit("[-]");
}

void IRgeomSub::checkRules() {
  if (zones_ptrV.size() >= 2) {
    checkZones();
  }
  // The number shown is always that of the reference coordinates.
  constexpr std::size_t numCoordinates = 3;
  if (ref_coordinates.size() != numCoordinates) {
    error<&Self::ref_coordinates>(
        {"coordinate-count", "'ref_coordinates' needs three coordinates, x, y and z, and has {0}",
         "give three, such as 'ref_coordinates = (0.0 0.0 0.0)'"},
        "Exactly three reference coordinates must be given. Only '{}' are given. \nPlease correct the input.",
        ref_coordinates.size());
  }
  if (base_vector_i.size() != numCoordinates) {
    error<&Self::base_vector_i>(
        {"coordinate-count", "'base_vector_i' needs three coordinates, x, y and z, and has {1}",
         "give three, such as 'base_vector_i = (1.0 0.0 0.0)'"},
        "Exactly three vector coordinates for the base vector in i-direction of the lattice must be given. Only '{}' are given. \nPlease correct the input.",
        ref_coordinates.size(), base_vector_i.size());
  }
  if (base_vector_j.size() != numCoordinates) {
    error<&Self::base_vector_j>(
        {"coordinate-count", "'base_vector_j' needs three coordinates, x, y and z, and has {1}",
         "give three, such as 'base_vector_j = (0.0 1.0 0.0)'"},
        "Exactly three vector coordinates for the base vector in j-direction of the lattice must be given. Only '{}' are given. \nPlease correct the input.",
        ref_coordinates.size(), base_vector_j.size());
  }
}

void IRgeomSub::checkZones() {
  // The walk over the zones ends with the first one of type "default" and never reaches the last.
  const auto last = zones_ptrV.end() - 1;
  const auto defaultZone = std::find_if(
      zones_ptrV.begin(), last, [](const IRzoneSub* zone) { return zone->type == "default"; });
  const auto walkEnd = static_cast<std::size_t>(defaultZone - zones_ptrV.begin());
  for (const auto& [i, j] : equalPairs(zones_ptrV, &IRzoneSub::name)) {
    if (i <= walkEnd) {
      report(
          Severity::error, *this,
          {about<&IRzoneSub::name>(*zones_ptrV[j]), about<&IRzoneSub::name>(*zones_ptrV[i])},
          {"second-name", "two ZONE blocks share the name '{0}'",
           "give each ZONE a 'name' of its own"},
          "Two zone definitions in ZONE blocks share the same name: '{}' Every zone definition should have a unique name.",
          zones_ptrV[i]->name);
    }
  }
  if (defaultZone == last) {
    report(Severity::error, *this,
           {(*last)->type == "default" ? about<&IRzoneSub::type>(**last) : about(*this)},
           {"no-default-zone", "none of the ZONE blocks before the last one has the type 'default'",
            "put a ZONE with 'type = default' before the last one"},
           "A ZONE with type 'default'  must be given in the ZONE blocks.");
  }
}

}  // namespace KESTparse
