#include "KESTparse/plane2d/IRtimestep2d.h"

#include "KESTparse/framework/Rules.h"

namespace KESTparse {

void IRtimestep2d::getDescription(std::ostream& out) const {
  out << "The TIMESTEP block is used to specify numerical parameters related to the time and timestep for the simulation, as time step, total run time, CFL number etc.";
}

void IRtimestep2d::createTags() {
  real<&Self::CFL>(
      "Courant-Friedrichs-Lewy number. This parameter is used to control the time step.")
      .defaultsTo("1.0")
      .unit("[-]")
      .above(0)
      .atMost(2);
  real<&Self::minimum_time_step>(
      "This option throws a warning on the console during the simulation, if the actual time step is lower than the minimum time step defined here.")
      .defaultsTo("0.001")
      .unit("[s]")
      .above(0);
  real<&Self::maximum_time_step>(
      "This parameter defines a maximum time step size for the simulation.")
      .defaultsTo("100.0")
      .unit("[s]")
      .above(0);
  real<&Self::initial_time_step>(
      "This parameter only influences the time step of a simulation during no-flow conditions (when the CFL criterion is not applicable, e.g.")
      .defaultsTo("1.0")
      .unit("[s]")
      .above(0);
  real<&Self::total_run_time>("This parameter needs to be specified by the user.")
      .mandatory()
      .preset("0.0")
      .unit("[s]")
      .above(0);
  real<&Self::start_time>(
      "This parameter defines the time (in seconds) when the simulation starts.")
      .defaultsTo("-1.0")
      .unit("[s]");
  text<&Self::ignore_wave_celerity>(
      "This option ('ignore_wave_celerity = on') enables the calculation of the numerical timestep (based on CFL condition) without considering the wave celerity c = sqrt(g*h).")
      .defaultsTo("off")
      .oneOf({"off", "on"});
  real<&Self::maximum_waterdepth>(
      "In the case of 'ignore_wave_celerity = on', this value is used for the calculation of the wave celerity (c = sqrt(g*h)).Hence, the calcualtion of the numerical time step ...")
      .defaultsTo("0.0")
      .unit("[m]")
      .atLeast(0)
      .requiredIf("ignore_wave_celerity", {"on"});
  text<&Self::morph_cycle>("This specifies the cycle steps for hydrodynamic routing.")
      .defaultsTo("off")
      .oneOf({"off", "constant", "dynamic"});
  real<&Self::cycle_step>("").defaultsTo("1.0").unit("[-]").atLeast(0).requiredIf("morph_cycle",
                                                                                  {"constant"});
  seriesFile<&Self::cycle_step_file, &Self::cycle_step_file_table>(
      "This is the filename of a .txt-file that describes the cycle step as a function in time.")
      .preset("UnspecifiedHydroStepFile")
      .requiredIf("morph_cycle", {"dynamic"});
}

void IRtimestep2d::checkRules() {
  if (morph_cycle == "dynamic" && isOneOf(cycle_step_file, {"", "UnspecifiedHydroStepFile"})) {
    error<&Self::cycle_step_file, &Self::morph_cycle>(
        {"dynamic-cycle-without-file",
         "a dynamic 'morph_cycle' needs a file with its cycle steps over time",
         "name it in 'cycle_step_file', or set 'morph_cycle = constant' and give 'cycle_step'"},
        "A 'filename' must be defined for a morph cycle with dynamic cycle steps in time. ");
  }
}

}  // namespace KESTparse
