#include "KESTparse/subsurface/IRspecoutSub.h"

#include "KESTparse/framework/Rules.h"

namespace KESTparse {

void IRspecoutSub::getDescription(std::ostream& out) const {
  out << "The Special Output block defines a desired output of a simulation.";
}

namespace {

constexpr Words allTypes{"cut_plane", "cut_line", "seepage_line"};

}  // namespace

void IRspecoutSub::createTags() {
  text<&Self::type>(
      "There are different types for the output. Dependent on the choice, further parameters may be needed.")
      .mandatory()
      .preset("undefinedType")
      .oneOf(allTypes);
  real<&Self::output_time_step>(
      "This parameter defines the interval in [s] for which the output shall be written.")
      .mandatory()
      .preset("100.0")
      .unit("[s]")
      .atLeast(0);
  words<&Self::values>(
      "These are the variables which can be written either on the nodes or on the element centers of the grid.")
      .mandatory()
      .validEntries(
          {"hlb", "theta", "lambda", "velocity_x", "velocity_y", "velocity_total", "velocity"})
      .requiredIf("type", {"cut_plane", "cut_line"});
  text<&Self::format>(
      "This option provides a choice between different formats for the output of salar or vector data on the mehs.")
      .mandatory()
      .oneOf({"ascii", "qgis"})
      .requiredIf("type", allTypes);
  text<&Self::cut_plane>(
      "This option defines the orientation of the plane which is 'cut' through the 3D mesh.It can be chosen between the x-z plane ('xz'), the y-z plane ('yz') and the x-y plane ...")
      .mandatory()
      .preset("off")
      .oneOf({"xz", "yz", "xy"})
      .usedIf("type", allTypes);
  real<&Self::cut_plane_position>(
      "This option defines at which location along the corresponding axis, the cut shall be places.")
      .mandatory()
      .preset("0.0")
      .usedIf("type", allTypes);
  real<&Self::cut_line_position_z>(
      "This parameter defines whether an additional cut at the given z-location shall be made. Works only with type 'cut_plane' and only for ASCII-scalar-output.")
      .preset("-1E32")
      .usedIf("type", {"cut_line"});
  real<&Self::cut_line_position_y>(
      "This parameter defines whether an additional cut at the given z-location shall be made. Works only with type 'cut_plane' and only for ASCII-scalar-output.")
      .preset("-1E32")
      .usedIf("type", {"cut_line"});
  real<&Self::cut_line_position_x>(
      "This parameter defines whether an additional cut at the given z-location shall be made. Works only with type 'cut_plane' and only for ASCII-scalar-output.")
      .preset("-1E32")
      .usedIf("type", {"cut_line"});
  real<&Self::cut_z_position>(
      "This parameter defines at which z-location a plane is cut. Works only with other types than 'cut_plane'.")
      .preset("-1E32");
}

namespace {

/// The preset that says that a position was not given.
constexpr double notGiven = -1E32;

}  // namespace

void IRspecoutSub::checkRules() {
  if (type == "cut_plane" && cut_z_position != notGiven) {
    warning<&Self::cut_z_position, &Self::type>(
        {"unused-position", "output of type 'cut_plane' does not use 'cut_z_position'",
         "remove it, and give the place of the plane by 'cut_plane_position'"},
        "The boundary type 'cut_plane' does not allow for specifying 'cut_z_position'. Value is ignored.");
    cut_z_position = notGiven;
  }
  if (isOneOf(type, {"cut_line", "seepage_line"}) && format == "qgis") {
    error<&Self::format, &Self::type>(
        {"no-qgis", "output of type '{0}' cannot be written in the format 'qgis'",
         "set 'format = ascii'"},
        "The boundary type 'cut_line' cannot be combined with format 'qgis'. Please correct the input.",
        type);
  }
  if (type == "cut_line") {
    checkCutLine();
  }
}

void IRspecoutSub::checkCutLine() {
  // The plane yz asks for y and z, but it is x and z that must not stand together.
  const bool hasXAndZ = cut_line_position_x > notGiven && cut_line_position_z > notGiven;
  if (cut_plane == "xz") {
    if (cut_line_position_x == notGiven && cut_line_position_z == notGiven) {
      error<&Self::cut_line_position_x, &Self::cut_line_position_z, &Self::cut_plane>(
          {"no-line-position", "a line in the plane 'xz' needs its place on one of the two axes",
           "give 'cut_line_position_x' or 'cut_line_position_z'"},
          "The boundary type 'cut_line' at cut_plane = xz, requires either 'cut_line_position_x' or 'cut_line_position_z' to be defined. Please correct the input.");
    }
  } else if (cut_plane == "yz") {
    if (cut_line_position_y == notGiven && cut_line_position_z == notGiven) {
      error<&Self::cut_line_position_y, &Self::cut_line_position_z, &Self::cut_plane>(
          {"no-line-position", "a line in the plane 'yz' needs its place on one of the two axes",
           "give 'cut_line_position_y' or 'cut_line_position_z'"},
          "The boundary type 'cut_line' at cut_plane = yz, requires either 'cut_line_position_y' or 'cut_line_position_z' to be defined. Please correct the input.");
    }
  } else {
    error<&Self::cut_plane, &Self::type>(
        {"no-line-in-xy", "no line can be cut in the plane '{0}'",
         "set 'cut_plane = xz' or 'cut_plane = yz'"},
        "Line cutting is not supported for xy-plane. Please correct th input.", cut_plane);
    return;
  }
  if (hasXAndZ) {
    error<&Self::cut_line_position_x, &Self::cut_line_position_z>(
        {"two-line-positions",
         "a line lies at one place, but 'cut_line_position_x' and 'cut_line_position_z' are given",
         "remove one of the two"},
        "The boundary type 'cut_line' at cut_plane = xz, must not have 'cut_line_position_x' and 'cut_line_position_z' defined. Please correct the input.");
  }
}

}  // namespace KESTparse
