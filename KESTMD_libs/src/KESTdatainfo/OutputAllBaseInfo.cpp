#include "KESTdatainfo/OutputAllBaseInfo.h"

#include <algorithm>
#include <span>

#include "KESTparse/base/Assert.h"

namespace KESTparse::OutputAllBaseInfo {
namespace {

struct Entry {
  const char* name;
  Dependency dependency;
};

constexpr Entry elementEntries[] = {
    {"depth", always},
    {"velocity", always},
    {"wse", always},
    {"z_element", always},
    {"concentration", needsSuspension},
    {"susp_load", needsSuspension},
    {"susp_net_deposition_rate", needsSuspension},
    {"friction", always},
    {"tau", always},
    {"abs_velocity", always},
    {"susp_grain_conc", needsSuspension},
    {"theta_critical", needsBedload},
    {"specific_discharge", always},
    {"susp_total_pickup", needsSuspension},
    {"susp_total_deposition", needsSuspension},
    {"susp_grain_pickup", needsSuspension},
    {"susp_grain_deposition", needsSuspension},
    {"saturation", always},
    {"pore_pressure", always},
    {"external_source_discharge", always},
    {"radius_curvature", needsBedload},
    {"radius_curvature_abs", needsBedload},
    {"momentum", always},
    {"abs_momentum", always},
    {"water_table", always},
    {"biomass", always},
    {"carrying_cap", always},
};

constexpr Entry elementBalanceEntries[] = {
    {"source_bed", always},
    {"source_friction", always},
    {"source_wall_friction", always},
    {"source_internal_friction", always},
    {"balance_discharge_fluxes", always},
    {"balance_momentum_fluxes", always},
};

constexpr Entry nodeEntries[] = {
    {"grain_size", needsAnyTransport},
    {"grain_bedload", needsBedload},
    {"z_node", always},
    {"deltaz", needsAnyTransport},
    {"bedload_vec", needsBedload},
    {"sediment_sum", needsAnyTransport},
};

constexpr Entry stringdefEntries[] = {
    {"Q", always},   {"Qsed", needsBedload}, {"conc", needsSuspension}, {"u", always},
    {"wse", always}, {"zbed", always},       {"energy_head", always},
};

constexpr Entry edgeEntries[] = {
    {"u2h", always},
    {"v2h", always},
    {"gh2", always},
    {"depth", always},
    {"u_norm", always},
    {"v_tang", always},
    {"susp_upper_C", needsSuspension},
    {"susp_fluxAAx", needsSuspension},
};

constexpr Entry boundaryEntries[] = {{"Q", always}, {"Qsed", needsBedload}};

constexpr Entry balanceEntries[] = {
    {"sediment", needsAnyTransport}, {"timestep", always}, {"water_volume", always}};

void append(std::vector<std::string>& names, std::span<const Entry> entries) {
  for (const Entry& entry : entries) {
    names.emplace_back(entry.name);
  }
}

void append(std::vector<std::uint32_t>& dependencies, std::span<const Entry> entries) {
  for (const Entry& entry : entries) {
    dependencies.push_back(entry.dependency);
  }
}

template <typename T>
std::vector<T> listOf(std::span<const Entry> entries) {
  std::vector<T> list;
  append(list, entries);
  return list;
}

template <typename T>
std::vector<T> elementList(bool withBalanceValues) {
  std::vector<T> list = listOf<T>(elementEntries);
  if (withBalanceValues) {
    append(list, elementBalanceEntries);
  }
  return list;
}

}  // namespace

std::vector<std::string> elementValueNames(bool withBalanceValues) {
  return elementList<std::string>(withBalanceValues);
}

std::vector<std::uint32_t> elementValueDependencies(bool withBalanceValues) {
  return elementList<std::uint32_t>(withBalanceValues);
}

std::vector<std::string> nodeValueNames() {
  return listOf<std::string>(nodeEntries);
}

std::vector<std::uint32_t> nodeValueDependencies() {
  return listOf<std::uint32_t>(nodeEntries);
}

std::vector<std::string> stringdefValueNames() {
  return listOf<std::string>(stringdefEntries);
}

std::vector<std::uint32_t> stringdefValueDependencies() {
  return listOf<std::uint32_t>(stringdefEntries);
}

std::vector<std::string> edgeValueNames() {
  return listOf<std::string>(edgeEntries);
}

std::vector<std::uint32_t> edgeValueDependencies() {
  return listOf<std::uint32_t>(edgeEntries);
}

std::vector<std::string> boundaryValueNames() {
  return listOf<std::string>(boundaryEntries);
}

std::vector<std::uint32_t> boundaryValueDependencies() {
  return listOf<std::uint32_t>(boundaryEntries);
}

std::vector<std::string> balanceValueNames() {
  return listOf<std::string>(balanceEntries);
}

std::vector<std::uint32_t> balanceValueDependencies() {
  return listOf<std::uint32_t>(balanceEntries);
}

std::vector<std::string> allValueNames(bool withBalanceValues) {
  std::vector<std::string> ret = elementValueNames(withBalanceValues);
  const std::vector<std::string> onNodes = nodeValueNames();
  for (const std::string& onNode : onNodes) {
    ASSERT(ret.end() == std::find(ret.begin(), ret.end(), onNode),
           "bad, value " << onNode << " is already defined within element. rename it");
  }
  ret.insert(ret.end(), onNodes.begin(), onNodes.end());
  return ret;
}

std::vector<std::uint32_t> allValueDependencies(bool withBalanceValues) {
  std::vector<std::uint32_t> dependencies = elementValueDependencies(withBalanceValues);
  append(dependencies, nodeEntries);
  return dependencies;
}

}  // namespace KESTparse::OutputAllBaseInfo
