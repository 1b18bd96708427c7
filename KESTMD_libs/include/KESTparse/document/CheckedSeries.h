/// \file
/// What is wrong in a time series.
#pragma once

#include <limits>
#include <optional>
#include <string_view>
#include <vector>

#include "KESTcore/Mesh.h"
#include "KESTcore/Table.h"
#include "KESTparse/document/FileFaults.h"

namespace KESTparse {

/// What the tag that names a series makes of its columns.
struct SeriesUse {
  /// The first column in words, with its unit: "time" in "s"; empty when nothing is known of it,
  /// and its order is then not looked at.
  std::string_view argument = "time";
  std::string_view unit = "s";
  std::optional<double> begin = {};  ///< when the simulation begins [s], if the argument is time
  std::optional<double> end = {};    ///< when it ends [s]
  /// The values in words, such as "discharge", and the least and the greatest that they may be.
  std::string_view quantity = "value";
  double least = -std::numeric_limits<double>::infinity();
  double greatest = std::numeric_limits<double>::infinity();
  /// Whether the first row is a zero and behind it the numbers of the nodes that the columns are
  /// about.
  bool namesNodes = false;
  const Kestrix::MeshNodeIndex* nodes = nullptr;  ///< those of the mesh; null when not known
};

/// Where a series needs a closer look.
enum class SeriesLook { nowhere, atEnds, everywhere };

/// What is wrong in the series `text`. The first fault for which the library refuses to read it, if
/// there is one, has the code `unequal-rows` or makes rows unequal.
std::vector<PlacedFault> checkSeries(std::string_view text, const SeriesUse& use,
                                     SeriesLook look = SeriesLook::everywhere);

/// Where `checkSeries` must look at a series that is plain text and nothing but numbers, which were
/// read as `rows`.
SeriesLook neededLook(const Kestrix::Table& rows, const SeriesUse& use);

}  // namespace KESTparse
