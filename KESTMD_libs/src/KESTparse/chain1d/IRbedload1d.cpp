#include "KESTparse/chain1d/IRbedload1d.h"

#include "KESTparse/chain1d/IRbedbndr1d.h"
#include "KESTparse/chain1d/IRbedloadFormula1d.h"
#include "KESTparse/chain1d/IRbedparameter1d.h"

namespace KESTparse {

void IRbedload1d::getDescription(std::ostream& out) const {
  out << "Defines all needed data for bed load transport.";
}

void IRbedload1d::createSubBlocks() {
  subBlock<&Self::parameter_ptr>("PARAMETER").mandatory();
  subBlock<&Self::formula_ptr>("FORMULA").mandatory();
  subBlock<&Self::bndr_ptrV>("BOUNDARY").mandatory().repeatable();
}

void IRbedload1d::createTags() {}

void IRbedload1d::checkRules() {
  if (bndr_ptrV.size() != 2) {
    report(Severity::error, *this, {bndr_ptrV.size() > 2 ? about(*bndr_ptrV[2]) : about(*this)},
           {"boundary-count", "bed load needs exactly two BOUNDARY blocks, and BEDLOAD has {0}",
            "give one BOUNDARY with 'string = upstream' and one with 'string = downstream'"},
           "Exactly two 'BOUNDARY' blocks are required. One 'upstream' and one 'downstream' ",
           bndr_ptrV.size());
  } else if (bndr_ptrV[0]->string == bndr_ptrV[1]->string) {
    const std::string& end = bndr_ptrV[0]->string;
    report(Severity::error, *this,
           {about<&IRbedbndr1d::string>(*bndr_ptrV[1]), about<&IRbedbndr1d::string>(*bndr_ptrV[0])},
           {"same-end", "both BOUNDARY blocks of BEDLOAD are at the end '{0}' of the channel",
            "set 'string = {1}' in one of them"},
           "Both 'BOUNDARY' blocks are defined on boundary '{}'", end,
           end == "upstream" ? "downstream" : "upstream");
  }
}

}  // namespace KESTparse
