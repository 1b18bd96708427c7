/// \file
/// All that the page of a setup shows.
#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "KESTparse/root/KestrixInputRoot.h"
#include "preview/Setup.h"

namespace kcf {

/// A file that the setup names, or the command file itself.
struct NamedFile {
  std::string name;    ///< as it is named
  std::string usedBy;  ///< "river / hydraulics / boundary inflow"
  bool exists = false;
  std::uint64_t size = 0;
  std::string sha256;  ///< empty when it cannot be read
};

/// An output of the simulation and how often it is written.
struct Output {
  std::string region;
  std::string type;
  std::string values;
  double interval = 0;    ///< [s]; 0 when it is not written by time
  std::size_t times = 0;  ///< over the run
  double numbers = 0;     ///< that are written over the run; 0 when that cannot be told
};

/// A boundary or a source.
struct Action {
  std::string region;
  std::string field;  ///< what it acts on, such as "hydraulics"
  std::string kind;   ///< "boundary", "inner boundary", "source"
  std::string name;
  std::string type;
  std::string place;  ///< names of strings, cross sections, ids
  std::string by;     ///< all else that it is given
  std::size_t line = 0;

  /// Whether blocks of that name are boundaries or sources.
  static bool isOne(std::string_view blockName);
  /// Whether a tag of that name tells where one acts.
  static bool isPlace(std::string_view tagName);
};

/// What is simulated in one region.
struct Region {
  std::string name;
  std::string kind;  ///< "2D", "1D", "subsurface", "external"
  double start = 0;  ///< [s]
  double end = 0;    ///< [s]
  bool hasTime = false;
  std::vector<std::string> physics;
  const SetupBlock* block = nullptr;
};

// NOLINTNEXTLINE(bugprone-exception-escape): a path does not throw when it is moved.
struct Model {
  std::string title;
  std::filesystem::path path;
  std::string text;  ///< of the command file
  std::vector<Notice> notices;
  std::vector<NamedFile> files;
  std::vector<Region> regions;
  std::vector<Output> outputs;
  std::vector<Action> actions;
  nlohmann::ordered_json page;  ///< what the scripts of the page draw
  /// Compressed lists of numbers that `page` names.
  std::vector<std::vector<std::uint8_t>> streams;
  std::unique_ptr<KESTparse::KestrixInputRoot> schema;  ///< the master that `setup` reads
  std::unique_ptr<SetupBlock> setup;
  /// The files that the page depends on.
  std::vector<std::filesystem::path> watched;
};

/// Reads the setup at `path` with all that it names. Names count from `folder`.
/// Throws a `std::runtime_error` when the command file cannot be read.
Model readModel(const std::filesystem::path& path, const std::filesystem::path& folder);

}  // namespace kcf
