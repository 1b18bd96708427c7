/// \file
/// The catalogue of the values that a simulation of a 2D region can write.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace KESTparse::OutputAllBaseInfo {

/// What a value needs of the simulation, besides morphology for any but the first.
enum Dependency : std::uint32_t {
  always = 0,             ///< nothing
  needsBedload = 1,       ///< bedload or gravitational transport
  needsSuspension = 2,    ///< suspended load
  needsAnyTransport = 3,  ///< bedload, gravitational transport or suspended load
};

// For each list there is a function for the names and one for the dependencies, of equal length.

/// Values on elements; `withBalanceValues` adds the terms of the balance.
std::vector<std::string> elementValueNames(bool withBalanceValues);
std::vector<std::uint32_t> elementValueDependencies(bool withBalanceValues);
/// Values on nodes.
std::vector<std::string> nodeValueNames();
std::vector<std::uint32_t> nodeValueDependencies();
/// Values across string definitions.
std::vector<std::string> stringdefValueNames();
std::vector<std::uint32_t> stringdefValueDependencies();
/// Values on edges.
std::vector<std::string> edgeValueNames();
std::vector<std::uint32_t> edgeValueDependencies();
/// Values over boundaries.
std::vector<std::string> boundaryValueNames();
std::vector<std::uint32_t> boundaryValueDependencies();
/// Values over the whole region.
std::vector<std::string> balanceValueNames();
std::vector<std::uint32_t> balanceValueDependencies();
/// The names on elements, then those on nodes. A name on both is an assertion.
std::vector<std::string> allValueNames(bool withBalanceValues);
/// Parallel to `allValueNames`.
std::vector<std::uint32_t> allValueDependencies(bool withBalanceValues);

}  // namespace KESTparse::OutputAllBaseInfo
