#include "KESTparse/subsurface/IRbndrSub.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "KESTparse/framework/Rules.h"

namespace KESTparse {

void IRbndrSub::getDescription(std::ostream& out) const {
  out << "Defines boundary conditions for subsurface model.";
}

namespace {

constexpr Words onFaces{"bounce_back", "pressure",      "saturation",
                        "hydrostatic", "zero_gradient", "seepage"};

}  // namespace

void IRbndrSub::createTags() {
  text<&Self::type>("pressure: Applies given pressure on the boundary nodes.")
      .mandatory()
      .preset("seepage")
      .oneOf({"bounce_back", "pressure", "saturation", "hydrostatic", "zero_gradient", "seepage",
              "coupling_kestplane"});
  text<&Self::face>("Defines the face of the cubic mesh, where the boundary shall be applied.")
      .mandatory()
      .preset("north")
      .oneOf({"west", "east", "north", "south", "back", "front"})
      .requiredIf("type", onFaces);
  reals<&Self::from_to1>(
      "Specification of boundary region which is given as rectangle. Coordinate range at axis 1. Sequence of coordinates = xz, yz, xy.")
      .mandatory()
      .requiredIf("type", onFaces);
  reals<&Self::from_to2>(
      "Specification of boundary region which is given as rectangle. Coordinate range at axis 2. Sequence of coordinates = xz, yz, xy.")
      .mandatory()
      .requiredIf("type", onFaces);
  seriesFile<&Self::file, &Self::file_table>("Filename of the file containing the time series")
      .preset("UnspecifiedBoundaryFile");
  real<&Self::depth_min>(
      "Minimum depth for the kestplane sub-domain which is used for the determination of the hydrostatic boundary conditions.")
      .defaultsTo("0.01")
      .unit("[-]")
      .usedIf("type", {"coupling_kestplane"});
  real<&Self::z_reduction>("").defaultsTo("0.0").unit("[-]").usedIf("type", {"coupling_kestplane"});
  integers<&Self::material_index>(
      "Material indices of 2-D elements which shall be used for coupling with the subsurface model.")
      .usedIf("type", {"coupling_kestplane"});
  text<&Self::name>("Unique name of boundary needed for coupling.")
      .mandatory()
      .preset("undefined")
      .requiredIf("type", {"coupling_kestplane"});
  identifiedBy({"name"});
}

void IRbndrSub::checkRules() {
  if (!deriveKind()) {
    error<&Self::type>({"unknown-type", "there is no boundary type '{0}'",
                        "choose one of the types that the manual lists, such as 'type = seepage'"},
                       "The boundary type '{}' is not supported. Please correct the input.", type);
  }
  if (!deriveFaceLetter()) {
    error<&Self::face>({"unknown-face", "the mesh has no face '{0}'",
                        "choose 'west', 'east', 'north', 'south', 'back' or 'front'"},
                       "The boundary face '{}' is not supported. Please correct the input.", face);
  }
  const bool needsFile =
      kind == Kind::saturation || kind == Kind::pressure || kind == Kind::hydrostatic;
  if (needsFile && file == "UnspecifiedBoundaryFile") {
    error<&Self::file, &Self::type>(
        {"boundary-without-file", "a boundary of type '{0}' needs its values over time",
         "name the series of times and values in 'file'"},
        "No file is given for boundary type '{}'. Please correct the input.", type);
  }
  if (material_index.empty()) {
    material_index.push_back(1);
  }
  const auto isRange = [](const std::vector<double>& list) {
    return list.empty() || list.size() == 2;
  };
  if (!isRange(from_to1) || !isRange(from_to2)) {
    const bool isFirst = !isRange(from_to1);
    const Subject wrong = isFirst ? about<&Self::from_to1>(*this) : about<&Self::from_to2>(*this);
    report(
        Severity::error, *this, {wrong},
        {"range-count", "'{1}' needs two coordinates, from and to, and has {2}",
         "give two coordinates, such as '{1} = (0.0 10.0)'"},
        "The boundary range must contain 2 values (from->to) for boundary type '{}'. Please correct the input.",
        type, wrong.member, isFirst ? from_to1.size() : from_to2.size());
  }
}

bool IRbndrSub::deriveKind() {
  static constexpr std::pair<std::string_view, Kind> kinds[] = {
      {"bounce_back", Kind::bounce_back},
      {"saturation", Kind::saturation},
      {"pressure", Kind::pressure},
      {"hydrostatic", Kind::hydrostatic},
      {"seepage", Kind::seepage},
      {"zero_gradient", Kind::zero_gradient},
      {"coupling_kestplane", Kind::coupling_kestplane}};
  const auto* const it = std::find_if(std::begin(kinds), std::end(kinds),
                                      [this](const auto& entry) { return entry.first == type; });
  if (it == std::end(kinds)) {
    return false;
  }
  kind = it->second;
  return true;
}

bool IRbndrSub::deriveFaceLetter() {
  // The letter is the first of the word.
  const bool isKnown = isOneOf(face, {"north", "east", "west", "south", "back", "front"});
  if (isKnown) {
    faceLetter = face.front();
  }
  return isKnown;
}

}  // namespace KESTparse
