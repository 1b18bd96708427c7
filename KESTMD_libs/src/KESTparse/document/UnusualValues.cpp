#include "KESTparse/document/UnusualValues.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <map>
#include <optional>

#include "KESTparse/base/Conversions.h"
#include "KESTparse/chain1d/IRgeom1d.h"
#include "KESTparse/framework/InputBlock.h"
#include "KESTparse/framework/InputTag.h"

namespace KESTparse {
namespace {

using UnusualValues = std::vector<UnusualValue>;

/// The number of a tag; nothing when it is not given.
std::optional<double> numberOf(const InputBlock& block, std::string_view name) {
  const InputTag* const tag = block.findTag(name);
  return tag == nullptr ? std::nullopt : std::optional(stringToDouble(tag->getRawText()));
}

std::vector<std::string> itemsOf(const InputTag& tag) {
  return split(" \t\r\n()", tag.getRawText());
}

/// The value of a tag where it is below `least` or above `greatest`; `sentence` speaks of it.
UnusualValues outside(const InputBlock& block, std::string_view name, double least, double greatest,
                      std::string_view sentence, std::string_view help) {
  const auto value = numberOf(block, name);
  if (!value || (*value >= least && *value <= greatest)) {
    return {};
  }
  return {{.tag = block.findTag(name),
           .message = fmt::format(fmt::runtime(sentence), *value),
           .help = std::string(help)}};
}

/// A friction law whose coefficients are told from those of others by their size.
struct FrictionLaw {
  std::string_view type;
  std::string_view noun;
  std::string_view unit;
  double least;
  double greatest;
  std::string_view help;
};
constexpr std::array<FrictionLaw, 3> frictionLaws{{
    {"manning", "a Manning coefficient", "s/m^(1/3)", 0, 1,
     "give it between 0.01 and 0.2, or set 'type = strickler'"},
    {"strickler", "a Strickler coefficient", "m^(1/3)/s", 1, 300,
     "give it between 10 and 100, or set 'type = manning'"},
    {"chezy", "a Chezy coefficient", "m^(1/2)/s", 1, 300, "give it between 10 and 100"},
}};

UnusualValues checkFriction(const InputBlock& block) {
  UnusualValues found;
  const InputTag* const type = block.findTag("type");
  const auto* const law =
      std::find_if(frictionLaws.begin(), frictionLaws.end(), [type](const FrictionLaw& known) {
        return type != nullptr && known.type == type->getRawText();
      });
  if (law == frictionLaws.end()) {
    return found;
  }
  for (const std::string_view name : {"default_friction", "friction"}) {
    const InputTag* const tag = block.findTag(name);
    const auto items = tag == nullptr ? std::vector<std::string>() : itemsOf(*tag);
    const auto odd = std::find_if(items.begin(), items.end(), [law](const std::string& item) {
      const double value = stringToDouble(item);
      return value != 0 && (value < law->least || value > law->greatest);
    });
    if (odd != items.end()) {
      found.push_back({.tag = tag,
                       .item = static_cast<std::size_t>(odd - items.begin()) + 1,
                       .other = type,
                       .message = fmt::format("{} of {} {} is unusual", law->noun, *odd, law->unit),
                       .help = std::string(law->help)});
    }
  }
  return found;
}

UnusualValues checkPort(const InputBlock& block) {
  return outside(block, "port", 1, 65535, "there is no port {}", "give a port from 1024 to 65535");
}

UnusualValues checkParameter(const InputBlock& block) {
  // No block has both.
  UnusualValues found = checkPort(block);
  return !found.empty()
             ? found
             : outside(block, "minimum_water_depth", 0, 1, "water of less than {} m counts as dry",
                       "give the depth in m, such as 'minimum_water_depth = 0.01'");
}

UnusualValues checkParallel(const InputBlock& block) {
  return outside(block, "number_threads", 1, 1024, "a simulation cannot run in {} threads",
                 "give the number of processors that it may use, 1 or more");
}

UnusualValues checkTimes(const InputBlock& block) {
  const auto start = numberOf(block, "start_time");
  const auto end = numberOf(block, "total_run_time");
  if (!start || !end || *start < *end || *start < 0) {
    return {};
  }
  return {{.tag = block.findTag("start_time"),
           .other = block.findTag("total_run_time"),
           .message = fmt::format("the simulation begins at {} s, but ends at {} s", *start, *end),
           .help = "give a 'start_time' before 'total_run_time'"}};
}

UnusualValues checkInterval(const InputBlock& block) {
  const auto interval = numberOf(block, "output_time_step");
  const InputBlock* region = &block;
  while (region != nullptr && region->getLogicalBlockPosition("TIMESTEP") < 0) {
    region = region->getActualParent();
  }
  if (!interval || region == nullptr || region->getNumBlocksNamed("TIMESTEP") == 0) {
    return {};
  }
  const InputBlock& step = region->getBlock("TIMESTEP", 0);
  const auto end = numberOf(step, "total_run_time");
  // So long an interval stands for "never".
  constexpr double never = 1e30;
  if (!end || *interval <= *end || *interval >= never) {
    return {};
  }
  return {{.tag = block.findTag("output_time_step"),
           .other = step.findTag("total_run_time"),
           .message = fmt::format("an output every {} s never comes: the simulation ends at {} s",
                                  *interval, *end),
           .help = "give an 'output_time_step' in s that fits into the simulation"}};
}

UnusualValues checkStartValue(const InputBlock& block) {
  const auto value = numberOf(block, "start_value");
  const InputTag* const range = block.findTag("range");
  const auto items = range == nullptr ? std::vector<std::string>() : itemsOf(*range);
  if (!value || items.size() != 2) {
    return {};
  }
  const double least = stringToDouble(items[0]);
  const double greatest = stringToDouble(items[1]);
  if (least > greatest || (*value >= least && *value <= greatest)) {
    return {};
  }
  return {{.tag = block.findTag("start_value"),
           .other = range,
           .message = fmt::format("the start value {} lies outside of the range from {} to {}",
                                  *value, items[0], items[1]),
           .help = "give a 'start_value' within 'range', or another 'range'"}};
}

/// The gate of a channel closes at its sill.
UnusualValues checkGate(const InputBlock& block) {
  const auto level = numberOf(block, "gate_level");
  const auto bottom = numberOf(block, "gate_bottom_level");
  if (!level || !bottom || *level >= *bottom) {
    return {};
  }
  return {{.tag = block.findTag("gate_level"),
           .other = block.findTag("gate_bottom_level"),
           .message = fmt::format("the gate at {} m lies below its sill at {} m", *level, *bottom),
           .help = "give 'gate_level' in m above sea level, as 'gate_bottom_level' is"}};
}

/// The cross sections beside an inner boundary of a channel are neighbours.
UnusualValues checkNeighbours(const InputBlock& block) {
  const InputTag* const first = block.findTag("cross_section_name_1");
  const InputTag* const second = block.findTag("cross_section_name_2");
  const auto* const geometry =
      first == nullptr || second == nullptr
          ? nullptr
          : dynamic_cast<const IRgeom1d*>(block.getBlockByPath("../../GEOMETRY"));
  const int from = geometry == nullptr ? -1 : geometry->crossSectionIndex(first->getRawText());
  const int to = geometry == nullptr ? -1 : geometry->crossSectionIndex(second->getRawText());
  if (from < 0 || to < 0 || std::abs(from - to) <= 1) {
    return {};
  }
  return {{.tag = second,
           .other = geometry->findTag("cross_section_order"),
           .message =
               fmt::format("the inner boundary lies between '{}' and '{}', which are no neighbours",
                           first->getRawText(), second->getRawText()),
           .help = "name two cross sections that follow each other in 'cross_section_order'"}};
}

UnusualValues checkSides(const InputBlock& block) {
  UnusualValues found = checkGate(block);
  const UnusualValues neighbours = checkNeighbours(block);
  found.insert(found.end(), neighbours.begin(), neighbours.end());
  const InputTag* const first = block.findTag("string_name1");
  const InputTag* const second = block.findTag("string_name2");
  if (first != nullptr && second != nullptr && first->getRawText() == second->getRawText()) {
    found.push_back(
        {.tag = second,
         .other = first,
         .message = fmt::format("the inner boundary has '{}' on both sides", second->getRawText()),
         .help = "name in 'string_name2' the string on the other side"});
  }
  return found;
}

UnusualValues checkOrder(const InputBlock& block) {
  UnusualValues found;
  const InputTag* const order = block.findTag("cross_section_order");
  const auto items = order == nullptr ? std::vector<std::string>() : itemsOf(*order);
  std::map<std::string_view, std::size_t> counts;
  for (std::size_t i = 0; i < items.size(); ++i) {
    if (++counts[items[i]] == 2) {
      found.push_back(
          {.tag = order,
           .item = i + 1,
           .message = fmt::format("cross section '{}' stands twice in the order", items[i]),
           .help = "name each cross section once, from upstream to downstream"});
    }
  }
  return found;
}

UnusualValues checkFormula(const InputBlock& block) {
  const InputTag* const tag = block.findTag("theta_critical");
  const auto items = tag == nullptr ? std::vector<std::string>() : itemsOf(*tag);
  const auto odd = std::find_if(items.begin(), items.end(),
                                [](const std::string& item) { return stringToDouble(item) >= 1; });
  if (odd == items.end()) {
    return {};
  }
  return {{.tag = tag,
           .item = static_cast<std::size_t>(odd - items.begin()) + 1,
           .message = fmt::format("a critical Shields parameter of {} is unusual", *odd),
           .help = "give it between 0.03 and 0.06, such as 'theta_critical = (0.047)'"}};
}

/// Layers are listed from the surface down.
UnusualValues checkLayers(const InputBlock& block) {
  UnusualValues found;
  const InputTag* above = nullptr;
  for (std::size_t i = 0; i < block.getNumBlocks(); ++i) {
    const InputBlock& layer = block.getBlock(i);
    const InputTag* const bottom =
        layer.getName() == "LAYER" ? layer.findTag("bottom_elevation") : nullptr;
    if (bottom == nullptr) {
      continue;
    }
    if (above != nullptr &&
        stringToDouble(bottom->getRawText()) >= stringToDouble(above->getRawText())) {
      found.push_back(
          {.tag = bottom,
           .other = above,
           .message = fmt::format("the layer ends at {} m, not below the one before it at {} m",
                                  bottom->getRawText(), above->getRawText()),
           .help = "list the layers from the surface down"});
    }
    above = bottom;
  }
  return found;
}

}  // namespace

UnusualCheck unusualCheckOf(std::string_view keyword) {
  static const std::map<std::string_view, UnusualCheck> checks{
      {"BOUNDARY", checkGate},
      {"FORMULA", checkFormula},
      {"FRICTION", checkFriction},
      {"GEOMETRY", checkOrder},
      {"INNER_BOUNDARY", checkSides},
      {"KEST_EXTERN", checkPort},
      {"MANIPULATED_VARIABLE", checkStartValue},
      {"OUTPUT", checkInterval},
      {"PARALLEL", checkParallel},
      {"PARAMETER", checkParameter},
      {"SOIL_DEF", checkLayers},
      {"SPECIAL_OUTPUT", checkInterval},
      {"TIMESTEP", checkTimes}};
  const auto known = checks.find(keyword);
  return known == checks.end() ? nullptr : known->second;
}

}  // namespace KESTparse
