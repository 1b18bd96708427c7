#include "KESTparse/plane2d/IRic2d.h"

#include "KESTparse/framework/ListRules.h"
#include "KESTparse/framework/Rules.h"

namespace KESTparse {

void IRic2d::getDescription(std::ostream& out) const {
  out << "Defines initial conditions for hydraulics in 2D. If no initial condition is specified for parts or the whole domain, the initial conditions is set to dry.";
}

void IRic2d::createTags() {
  text<&Self::type>("dry: This is the most simple initial condition.")
      .mandatory()
      .preset("dry")
      .oneOf({"dry", "continue", "index_table"});
  fileName<&Self::file>(
      "This is the filename of a continue-file. This file must be given in the binary HDF5 format. (To view or edit the HDF5 file there exist special programs in the web)")
      .mandatory()
      .preset("UnspecifiedInitialFile")
      .requiredIf("type", {"continue"});
  real<&Self::restart_solution_time>(
      "This time specifies the time at which the solution is read from the restart file.")
      .defaultsTo("-1.0")
      .unit("[s]")
      .atLeast(-1)
      .usedIf("type", {"continue"});
  integers<&Self::index>(
      "This is a list of integers representing the material indices defined in the computational mesh (.2dm file).")
      .mandatory()
      .unit("[-]")
      .requiredIf("type", {"index_table"});
  reals<&Self::u>(
      "This is a list of values for the velocity in x-direction (u) corresponding to the list of material indices.")
      .mandatory()
      .unit("[m/s]")
      .requiredIf("type", {"index_table"});
  reals<&Self::v>(
      "This is a list of values for the velocity in y-direction (v) corresponding to the list of material indices.")
      .mandatory()
      .unit("[m/s]")
      .requiredIf("type", {"index_table"});
  reals<&Self::wse>(
      "This is a list of values for the water surface elevation (wse) corresponding to the list of material indices.")
      .unit("[m]")
      .requiredIf("type", {"index_table"});
  reals<&Self::h>(
      "This is a list of values for the water depth (h) corresponding to the list of material indices.")
      .unit("[m]")
      .requiredIf("type", {"index_table"});
  reals<&Self::saturations_lower_upper>(
      "Effective saturation values corresponding to the lower and upper z-elevations over the whole mesh.");
  reals<&Self::saturations_z_lower_upper>(
      "Lower and upper elevations for which the given effective water saturations are specified.");
}

void IRic2d::checkRules() {
  if (!index.empty()) {
    checkIndexTable();
  }
  if (type == "continue" &&
      checkRestartFile(*this, {about<&Self::file>(*this), about<&Self::type>(*this)}, file, {})) {
    checkRestartTime(*this, about<&Self::file>(*this), about<&Self::restart_solution_time>(*this),
                     file, restart_solution_time);
  }
  if (saturations_lower_upper.empty() && saturations_z_lower_upper.empty()) {
    return;
  }
  if (saturations_lower_upper.size() != 2) {
    error<&Self::saturations_lower_upper, &Self::saturations_z_lower_upper>(
        {"saturation-count",
         "the number of saturations in 'saturations_lower_upper' is {0} and not 2",
         "give the saturations at the lower and at the upper elevation, such as 'saturations_lower_upper = ( 1.0 0.3 )'"},
        "Exactly two values of effective saturations must be specified. A minimum and a maximum value. Please correct the input file.",
        saturations_lower_upper.size());
  }
  if (saturations_z_lower_upper.size() != 2) {
    error<&Self::saturations_z_lower_upper, &Self::saturations_lower_upper>(
        {"saturation-elevation-count",
         "the number of elevations in 'saturations_z_lower_upper' is {0} and not 2",
         "give the lower and the upper elevation in m, such as 'saturations_z_lower_upper = ( 380.0 390.0 )'"},
        "Exactly two values of elevation for effective saturations must be specified. A minimum and a maximum value. Please correct the input file.",
        saturations_z_lower_upper.size());
  }
}

void IRic2d::checkIndexTable() {
  if (v.size() != index.size()) {
    reportIndexCount<&Self::v, &Self::index>(
        *this,
        "Number of entries in 'index' and 'v' do not match in INITIAL block for HYDRAULICS. Make sure, materialindex in 'index' has assigned a velocity in 'v'.");
  }
  if (u.size() != index.size()) {
    reportIndexCount<&Self::u, &Self::index>(
        *this,
        "Number of entries in 'index' and 'u' do not match in INITIAL block for HYDRAULICS. Make sure, materialindex in 'index' has assigned a velocity in 'u'.");
  }
  constexpr const char* wseCount =
      "Number of entries in 'index' and 'wse' do not match in INITIAL block for HYDRAULICS. Make sure, materialindex in 'index' has assigned a velocity in 'wse'.";
  if (h.empty() && wse.empty()) {
    // The report counts the missing list too; that is the same fault.
    for (const char* text :
         {"Neither 'h' nor 'wse' has been defined. You have to define at least one of these.",
          wseCount}) {
      error<&Self::index>(
          {"no-depth", "the material indices lack their water depths or water levels",
           "give either 'h' or 'wse' one value in m for each material index"},
          "{}", text);
    }
  } else if (h.empty()) {
    if (wse.size() != index.size()) {
      reportIndexCount<&Self::wse, &Self::index>(*this, wseCount);
    }
  } else if (wse.empty()) {
    if (h.size() != index.size()) {
      reportIndexCount<&Self::h, &Self::index>(
          *this,
          "Number of entries in 'index' and 'h' do not match in INITIAL block for HYDRAULICS. Make sure, materialindex in 'index' has assigned a velocity in 'h'.");
    }
  } else {
    error<&Self::wse, &Self::h>(
        {"two-depths", "both the water depths 'h' and the water levels 'wse' are given",
         "keep one of the two lists"},
        "Both, 'h' and 'wse' have been assigned to a material index in INITIAL block for HYDRAULICS. Using 'index_table' as initial type, the definition of 'h' OR 'wse' is mandatory.");
  }
}

}  // namespace KESTparse
