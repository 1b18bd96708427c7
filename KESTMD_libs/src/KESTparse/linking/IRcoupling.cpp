#include "KESTparse/linking/IRcoupling.h"

#include "KESTparse/linking/IRcouplingsub.h"

namespace KESTparse {

void IRcoupling::getDescription(std::ostream& out) const {
  out << "Defines a coupling type which connects two or three sub-domains via their boundary conditions or external sources.";
}

void IRcoupling::createSubBlocks() {
  subBlock<&Self::couplinghyd_ptr>("HYDRAULICS");
  subBlock<&Self::couplingbed_ptr>("BEDLOAD");
  subBlock<&Self::couplingsusp_ptr>("SUSPENSION");
  subBlock<&Self::coupling_subsurface_ptr>("SUBSURFACE");
}

void IRcoupling::createTags() {
  text<&Self::type>(
      "type of the coupling sequential: A sequential coupling is the most common coupling type.")
      .mandatory()
      .oneOf({"sequential", "junction", "bifurcation", "riemann", "confluence_wse", "external"});
  text<&Self::upstream_subdomain>("upstream region name")
      .mandatory()
      .requiredIf("type", {"sequential", "bifurcation", "riemann"});
  text<&Self::downstream_subdomain>("downstream region name")
      .mandatory()
      .requiredIf("type", {"sequential", "junction", "riemann", "confluence_wse"});
  boolean<&Self::two_way_coupling>("defines if WSE is handed over to upstream sub-domain")
      .defaultsTo("no")
      .preset("0")
      .usedIf("type", {"sequential", "junction", "split"});
  integer<&Self::average_steps>(
      "exchanged discharges are averaged over this number of previous time steps (damps oscillations)")
      .defaultsTo("1");
  boolean<&Self::print_series>("print time series of exchanged values of the coupled boundaries")
      .defaultsTo("no")
      .preset("0");
  text<&Self::upstream_subdomain1>("upstream region name")
      .mandatory()
      .requiredIf("type", {"junction", "confluence_wse"});
  text<&Self::upstream_subdomain2>("upstream region name")
      .mandatory()
      .requiredIf("type", {"junction", "confluence_wse"});
  text<&Self::downstream_subdomain1>("downstream region name")
      .mandatory()
      .requiredIf("type", {"bifurcation"});
  text<&Self::downstream_subdomain2>("downstream region name")
      .mandatory()
      .requiredIf("type", {"bifurcation"});
  real<&Self::factor_bifurcation>(
      "defines the fraction of the exchanged values which receives the downstream_subdomain1")
      .mandatory()
      .preset("0.5")
      .atLeast(0)
      .atMost(1)
      .requiredIf("type", {"bifurcation"});
  real<&Self::momentum_factor_up>(
      "The exchanged momentum between the subdomains is multiplied with this factor.")
      .defaultsTo("1.0")
      .requiredIf("type", {"riemann"});
  real<&Self::espilon>("Internal parameter, please do not change.").defaultsTo("1E-6");
  real<&Self::momentum_factor_down>(
      "The exchanged momentum between the subdomains is multiplied with this factor.")
      .defaultsTo("1.0")
      .requiredIf("type", {"riemann"});
  text<&Self::external_subdomain>(
      "Name of KESTextern subdomain, representing the external program, or different module (sub-surface flow model), which shall be used for coupling with KESTRIX.")
      .requiredIf("type", {"external"});
  text<&Self::kestrix_subdomain>(
      "Name of the KESTRIX subdomain which shall be coupled with a KESTextern subdomain or different module (sub-surface flow model).")
      .mandatory()
      .requiredIf("type", {"external"});
  integer<&Self::iter_exchange>(
      "Number of iterations after which data is exchanged with KESTextern-subdomain or different module (sub-surface flow model).")
      .defaultsTo("1")
      .unit("[-]")
      .requiredIf("type", {"external"});
  real<&Self::tau>(
      "Time [s] which is needed to adjust water level of subdomain to water level at junction. The larger the value the more damped is the behaviour.")
      .defaultsTo("10")
      .unit("[s]")
      .usedIf("type", {"confluence_wse"});
  text<&Self::check>(
      "The program generally checks if the upstream sub-domains are ahead in time before the downstream sub-domains can be executed.")
      .defaultsTo("yes")
      .requiredIf("two_way_coupling", {"yes"});
}

void IRcoupling::checkRules() {
  if (couplinghyd_ptr == nullptr && couplingbed_ptr == nullptr && couplingsusp_ptr == nullptr &&
      coupling_subsurface_ptr == nullptr) {
    error(
        {"nothing-coupled", "the COUPLING does not tell what its regions exchange",
         "add at least one of the blocks HYDRAULICS, BEDLOAD, SUSPENSION and SUBSURFACE"},
        "At least one type of coupling must be specified in the COUPLING block. Choose hydraulic, bed load and/or suspension coupling.");
  }
}

}  // namespace KESTparse
