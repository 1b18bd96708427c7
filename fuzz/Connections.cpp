/// \file
/// Fuzz target: the connections of a lateral coupling.

#include "FuzzRun.h"
#include "KESTparse/base/Console.h"
#include "KESTparse/framework/InputParseError.h"

namespace {

/// The blocks around the connections that reading them asks for; what else they lack is of no
/// consequence.
std::string setupWith(const std::string& connections) {
  return "DOMAIN {\n"
         " KESTCHAIN_1D {\n  region_name = chain\n"
         "  GEOMETRY {\n   cross_section_order = ( Q1 Q2 Q1 Q3 )\n  }\n }\n"
         " COUPLINGS {\n  COUPLING_LATERAL {\n   kestchain = chain\n   kestplane = plane\n"
         "   connections_filename = " +
         connections + "\n   weir_from_dyke1D = yes\n  }\n }\n}\n";
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::beginRun();
  const fuzz::ScratchFile file(fuzz::asText(data, size));
  try {
    fuzz::convert(setupWith(file.path()));
  } catch (const KESTparse::Stopped&) {
  } catch (const KESTparse::InputParseError&) {
  }
  return 0;
}
