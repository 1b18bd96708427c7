#include "KESTparse/linking/IRcouplingparam.h"

namespace KESTparse {

void IRcouplingparam::getDescription(std::ostream& out) const {
  out << "The PARAMETER block for the couplings contains general settings dealing with coupling mechanisms.";
}

void IRcouplingparam::createTags() {
  text<&Self::max_time_level>(
      "This parameter sets the maximum time level of the sub-domains in the local-time-stepping algorithm.")
      .defaultsTo("32")
      .oneOf({"1", "2", "4", "8", "16", "32"});
  real<&Self::factor_time_step_reduction>(
      "Using the local-time-stepping algorithm, the CFL criteria is not strictly guaranteed if the flow conditions change abruptly.")
      .defaultsTo("1.0")
      .atLeast(0)
      .atMost(1);
  text<&Self::server>(
      "If Kestrix is coupled with external programs over tcp&/ip it must be specified if Kestrix runs as server- oder client-application.")
      .defaultsTo("yes")
      .oneOf({"yes", "no"});
  text<&Self::ip_address>(
      "IP-Address on which Kestrix runs as a server. If the external coupling runs on a common pc this is typically the local machine.")
      .defaultsTo("127.0.0.1")
      .usedIf("server", {"yes"});
  integer<&Self::port>("Port number used for coupling over tcp/ip with external programs.")
      .defaultsTo("5000")
      .usedIf("server", {"yes"});
  integer<&Self::max_buffer>(
      "Maximum buffer specifying maximum length of send char array. If very much data must be send over network, you probably need to increase this value.")
      .defaultsTo("2000");
  integer<&Self::packet_size>(
      "When data is send over tcp/ip the data must be split in several packets.")
      .defaultsTo("1000");
  text<&Self::log_network>(
      "If Kestrix is coupled with external programs over tcp&/ip all sent and recieved data can be logged into a file.")
      .defaultsTo("off")
      .oneOf({"on", "off"});
}

void IRcouplingparam::checkRules() {
  if (packet_size > max_buffer) {
    error<&Self::packet_size, &Self::max_buffer>(
        {"packet-above-buffer", "a packet of size {0} does not fit into the buffer of size {1}",
         "set 'packet_size' to {1} at most, or 'max_buffer' to {0} at least"},
        "packet_size: {} must not be larger than max_buffer: {}", packet_size, max_buffer);
  }
}

}  // namespace KESTparse
