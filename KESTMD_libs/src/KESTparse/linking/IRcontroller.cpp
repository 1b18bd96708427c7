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
  const auto* const domain_ptr_ = ancestor<IRdomain>();
  ASSERT(domain_ptr_ != nullptr, "");
  // Each controller tells all double uses of the domain.
  for (const std::string& key : domain_ptr_->placesControlledAgain()) {
    error("Boundary condition '{}' is already controlled by another controller.", key);
  }
  if (output && output_time_step == 0) {
    warning(
        "The output_time_step for controller output is set to 0 (or not defined). This may lead to large output files. Set the time_step to a positive number in [s] to decrease the output file size.");
  }
  if (!output && output_time_step > 0) {
    warning(
        "An output_time_step has been defined but output is set to no (or not defined). Set output to yes if you want a controller output.");
  }
}

}  // namespace KESTparse
