#include "KESTparse/linking/IRkestextern.h"

#include "KESTparse/framework/Rules.h"
#include "KESTparse/linking/IRbndrExtern.h"

namespace KESTparse {

void IRkestextern::getDescription(std::ostream& out) const {
  out << "This block includes all information for a 2D simulation.";
}

void IRkestextern::createSubBlocks() {
  subBlock<&Self::bndr_ptrV>("BOUNDARY").repeatable();
}

void IRkestextern::createTags() {
  word<&Self::region_name>(
      "The name of the external region has to be specified. This name is needed identify the external sub-domain in the coupling process and for the output over TCP/IP.")
      .mandatory();
  word<&Self::fixed_time_step>(
      "Enforce a fixed time step for the KESTextern subdomain within the local-time-stepping algorithm.")
      .defaultsTo("on")
      .oneOf({"off", "on"});
  integer<&Self::port>(
      "This parameters represents the port number of the external program which shall be coupled with Kestrix.");
  text<&Self::ip>(
      "This parameter represents the ip-address of the external program which shall be coupled with Kestrix.");
  identifiedBy({"region_name"});
}

void IRkestextern::checkRules() {
  if (bndr_ptrV.empty()) {
    warning({"no-boundary", "the external region has no BOUNDARY by which others can reach it",
             "add a BOUNDARY with 'type = discharge' and a 'name'"},
            "No BOUNDARY block has been defined for KESTextern subdomain!");
  }
  for (const auto& [i, j] : equalPairs(bndr_ptrV, &IRbndrExtern::name)) {
    report(Severity::error, *this,
           {about<&IRbndrExtern::name>(*bndr_ptrV[j]), about<&IRbndrExtern::name>(*bndr_ptrV[i])},
           {"second-name", "two BOUNDARY blocks {1}", "give each BOUNDARY a 'name' of its own"},
           "Two boundaries share the same name '{}' Every BOUNDARY needs a unique name assigned.",
           bndr_ptrV[i]->name,
           bndr_ptrV[i]->hasTag("name") ? fmt::format("share the name '{}'", bndr_ptrV[i]->name)
                                        : "have no name");
  }
}

}  // namespace KESTparse
