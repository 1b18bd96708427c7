#include "KESTparse/linking/IRcontroller.h"

#include "KESTparse/linking/IRctrlmanipulatedvar.h"
#include "KESTparse/linking/IRctrlmonitoredvar.h"
#include "KESTparse/root/IRdomain.h"

namespace KESTparse {

void IRcontroller::getDescription(std::ostream& out) const {
  out << "This block defines a controller object, which can be used to dynamically enforce some target, such as maintaining a certain water surface elevation or keeping the flow over a weir fixed.It can also be used to change boundary conditions like inflow, ...";
}

void IRcontroller::createSubBlocks() {
  subBlock<&Self::monitored>("MONITORED_VARIABLE").repeatable();
  subBlock<&Self::manipulated>("MANIPULATED_VARIABLE").repeatable();
}

void IRcontroller::createTags() {
  word<&Self::name>("Name of the controller. This name is used to name the output-files.")
      .mandatory();
  text<&Self::type>(
      "Type of controller object. Choose between PID and HID. A human interface device (HID) controller allows for interactively changing the boundary conditions (e.g.")
      .mandatory()
      .oneOf({"PID", "HID"});
  boolean<&Self::output>(
      "Write all monitored and manipulated variables to a file named controller_'name'.txt.")
      .defaultsTo("no")
      .preset("0");
  real<&Self::output_time_step>(
      "The output time step defines the time interval after which an output of monitored and manipulated variables is written to file.")
      .defaultsTo("0")
      .preset("0.0")
      .unit("[s]")
      .atLeast(0)
      .usedIf("output", {"yes"});
  identifiedBy({"name"});
}

const std::string& IRcontroller::monitoredName(std::size_t idx) const {
  ASSERT(idx < monitored.size(), "");
  return monitored[idx]->name;
}

const IRctrlmonitoredvar* IRcontroller::findMonitored(std::string_view variable) const {
  const auto places = monitoredNames_.find(variable, monitored, &IRctrlmonitoredvar::name);
  return places.count == 0 ? nullptr : monitored[places.first];
}

bool IRcontroller::hasManipulated(std::string_view variable) const {
  return manipulatedNames_.find(variable, manipulated, &IRctrlmanipulatedvar::name).count > 0;
}

void IRcontroller::checkRules() {
  // Each controller tells all double uses of the domain.
  for (const auto& [place, again, first] : enclosing<IRdomain>().placesControlledAgain()) {
    report(Severity::error, *this,
           {about<&IRctrlmanipulatedvar::position_identifier>(*again),
            about<&IRctrlmanipulatedvar::position_identifier>(*first)},
           {"controlled-twice", "two MANIPULATED_VARIABLE blocks move '{0}'",
            "remove one of them, or give it the 'position' of another boundary or source"},
           "Boundary condition '{}' is already controlled by another controller.", place);
  }
  if (output && output_time_step == 0) {
    warning<&Self::output_time_step, &Self::output>(
        {"output-every-step", "the controller writes its output at each time step",
         "give an 'output_time_step' above 0 s for a smaller file"},
        "The output_time_step for controller output is set to 0 (or not defined). This may lead to large output files. Set the time_step to a positive number in [s] to decrease the output file size.");
  }
  if (!output && output_time_step > 0) {
    warning<&Self::output, &Self::output_time_step>(
        {"output-off", "an 'output_time_step' is given, but the controller writes no output",
         "set 'output = yes', or remove 'output_time_step'"},
        "An output_time_step has been defined but output is set to no (or not defined). Set output to yes if you want a controller output.");
  }
}

}  // namespace KESTparse
