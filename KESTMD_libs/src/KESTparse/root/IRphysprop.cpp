#include "KESTparse/root/IRphysprop.h"

#include <cmath>

#include "KESTparse/base/Conversions.h"

namespace KESTparse {
namespace {

/// The tag of `block` that is bound to a value of the whole process.
template <double GlobalValues::*Member>
Subject aboutGlobal(const IRphysprop& block) {
  return {.block = &block, .member = memberName<Member>()};
}

}  // namespace

void IRphysprop::getDescription(std::ostream& out) const {
  out << "Some universally valid properties for all computational areas to follow are defined here.";
}

void IRphysprop::createTags() {
  const GlobalValues constants;
  globalReal<&GlobalValues::gravity>("gravity", "Acceleration due to gravity")
      .defaultsTo(doubleToString(constants.gravity))
      .unit("[m/s2]")
      .atLeast(0);
  globalReal<&GlobalValues::viscosity>("viscosity", "Kinematic viscosity")
      .defaultsTo(doubleToString(constants.viscosity))
      .unit("[m2/s]")
      .atLeast(0);
  globalReal<&GlobalValues::rhoFluid>("rho_fluid", "Fluid density")
      .defaultsTo(doubleToString(constants.rhoFluid))
      .unit("[kg/m3]")
      .atLeast(0);
}

void IRphysprop::getExample(std::ostream& out) const {
  out << "PHYSICAL_PROPERTIES {\n  gravity = 9.81\n  viscosity = 1e-06\n  rho_fluid = 1000\n}\n";
}

void IRphysprop::checkRules() {
  GlobalValues& globalvalues = GlobalValues::instance();
  const double gravity = globalvalues.gravity;
  ASSERT(globalvalues.gravity > 0, "");
  globalvalues.sqrtGravity = std::sqrt(gravity);
  globalvalues.sqrtTwoGravity = std::sqrt(2.0 * gravity);
  globalvalues.reciprocalGravity = 1.0 / gravity;
  if (gravity > 100 || gravity < 1) {
    report(
        Severity::warning, *this, {aboutGlobal<&GlobalValues::gravity>(*this)},
        {"unusual-gravity", "a gravity of {0} m/s2 is unusual",
         "give the acceleration in m/s2; on earth it is 9.81"},
        "Your defined gravitational acceleration constant = {} seems to be out of range of common values. Are you really sure the input is correct?",
        doubleToString(gravity));
  }
  if (globalvalues.viscosity > 0.001 || globalvalues.viscosity < 1e-8) {
    report(
        Severity::warning, *this, {aboutGlobal<&GlobalValues::viscosity>(*this)},
        {"unusual-viscosity", "a kinematic viscosity of {0} m2/s is unusual",
         "give the kinematic viscosity in m2/s; that of water is about 1e-06"},
        "Your defined viscosity = {} [m2/s] seems to be out of range of common values. Are you really sure the input is correct?",
        doubleToString(globalvalues.viscosity));
  }
  if (globalvalues.rhoFluid > 5000 || globalvalues.rhoFluid < 10) {
    report(
        Severity::warning, *this, {aboutGlobal<&GlobalValues::rhoFluid>(*this)},
        {"unusual-density", "a fluid density of {0} kg/m3 is unusual",
         "give the density in kg/m3; that of water is about 1000"},
        "Your defined density = {} [kg/m3] seems to be out of range of common values. Are you really sure the input is correct?",
        doubleToString(globalvalues.rhoFluid));
  }
}

}  // namespace KESTparse
