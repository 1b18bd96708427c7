#include "KESTparse/linking/IRcouplingsub.h"

namespace KESTparse {

void IRcouplingsub::getDescription(std::ostream& out) const {
  out << "Defines the interfaces of a coupling. Two or three coupling interfaces (=boundaries or external sources) must be specified by which the coupling takes places.";
}

void IRcouplingsub::createTags() {
  text<&Self::upstream_interface>("name of upstream boundary/source");
  text<&Self::downstream_interface>("name of downstream boundary/source");
  text<&Self::upstream_interface1>(
      "name of upstream boundary/source 1, Only needed for 'confluence_wse' or 'junction' coupling.");
  text<&Self::upstream_interface2>(
      "name of upstream boundary/source 2, Only needed for 'confluence_wse' or 'junction' coupling.");
  text<&Self::downstream_interface1>(
      "name of downstream boundary/source 1, Only needed for 'bifurcation' coupling.");
  text<&Self::downstream_interface2>(
      "name of downstream boundary/source 2, Only needed for 'bifurcation' coupling.");
  text<&Self::external_interface>(
      "name of interface of the KESTextern subodmain or different model (sub-surface model).");
  text<&Self::kestrix_interface>("name of interface of the KESTRIX subdomain.");
}

}  // namespace KESTparse
