#include "KESTparse/linking/IRcouplingLateral.h"

#include <algorithm>
#include <utility>

#include "KESTparse/base/Conversions.h"
#include "KESTparse/base/Files.h"
#include "KESTparse/chain1d/IRcalc1d.h"
#include "KESTparse/chain1d/IRgeom1d.h"
#include "KESTparse/framework/Rules.h"
#include "KESTparse/root/IRdomain.h"

namespace KESTparse {

void IRcouplingLateral::getDescription(std::ostream& out) const {
  out << "A lateral coupling is a special coupling type, which can be used to couple a 1-D river channel model with a 2-D floodplain model.";
}

void IRcouplingLateral::createTags() {
  text<&Self::kestchain>(
      "1-D channel flow model. This 1-D model represents the 1-D flow within the river channel.")
      .mandatory();
  text<&Self::kestplane>(
      "2-D floodplain model. This 2-D model represents the floodplain which is coupled laterally with the river channel.")
      .mandatory();
  fileName<&Self::connections_filename>(
      "Name of file which defines the couplings between 1-D cross sections and 2-D edges as given by the user.The file must have 4 columns")
      .requiredIf("connections_automatic", {"no"});
  real<&Self::c_m>("Empircal de Marchi coefficient in weir formula with frontal flow (2D -> 1D).")
      .defaultsTo("0.66");
  text<&Self::momentum_sink>("Determines if the source also affects the momentum.")
      .defaultsTo("yes")
      .oneOf({"yes", "no"});
  real<&Self::momentum_factor>("Factor to control the momentum source term [-]. Default: 1.0.")
      .defaultsTo("1.0")
      .atLeast(0);
  boolean<&Self::suppressed_overfall>(
      "This flag indicates whether in the case of a supressed overfall a reduction factor should be taken into account for calculating the overfall discharge coefficient 'my'. ...")
      .defaultsTo("no")
      .preset("0");
  boolean<&Self::connections_automatic>(
      "This flag determines if the lateral coupling connections between 1-D cross sections and 2-D edges (at the boundary of the 2-D mesh) shall be find and created ...")
      .defaultsTo("no")
      .preset("0");
  integers<&Self::connections_index>(
      "Parameter for automatic creation of coupling connections at lateral coupling, used only if the flag 'lateral_connection_automatic' is set to 'yes'.It describes a list of ...")
      .requiredIf("connections_automatic", {"yes"});
  real<&Self::connections_distance>(
      "Parameter for automatic creation of coupling connections at lateral coupling, used only if the flag 'lateral_coupling_automatic' is set to 'yes'.A connection is created ...")
      .defaultsTo("10.0")
      .unit("[m]")
      .requiredIf("connections_automatic", {"yes"});
  boolean<&Self::weir_from_dyke1D>(
      "This flag indicates whether the weir height for lateral exchange is determined from interpolated values of the 1-D dyke heights or from the elevations of the 2-D edges.")
      .mandatory()
      .preset("0");
  boolean<&Self::weir_determination_nodes>(
      "This flag is only used if 'weir_from_dyke1D' is set to 'no', i.e.")
      .defaultsTo("no")
      .preset("0")
      .usedIf("weir_from_dyke1D", {"no"});
  real<&Self::damping_factor>(
      "This flag determines the damping factor which is applied for the lateral coupling.")
      .defaultsTo("0.5")
      .unit("[-]")
      .atLeast(0)
      .below(1);
  real<&Self::factor_adjust>(
      "General adjustment factor to reduce or increase all exchanged discharges in lateral coupling.")
      .defaultsTo("1.0");
  boolean<&Self::print_series>("print time series of exchanged values of the coupled boundaries")
      .defaultsTo("no")
      .preset("0");
}

namespace {

/// Takes tokens off a text; line ends are white space like any other.
class Tokens {
 public:
  explicit Tokens(std::string_view text) : text_(text), rest_(text) {}

  /// The next token; empty at the end of the text.
  std::string_view next() {
    constexpr std::string_view whiteSpace = " \t\n\v\f\r";
    rest_.remove_prefix(std::min(rest_.find_first_not_of(whiteSpace), rest_.size()));
    const std::string_view token =
        rest_.substr(0, std::min(rest_.find_first_of(whiteSpace), rest_.size()));
    rest_.remove_prefix(token.size());
    return token;
  }
  void skipLine() { rest_.remove_prefix(std::min(rest_.find('\n'), rest_.size())); }

  /// Sets the line and the column of `subject` to those of a token.
  void place(std::string_view token, Subject& subject) const {
    const std::string_view before =
        text_.substr(0, static_cast<std::size_t>(token.data() - text_.data()));
    const std::size_t lineBegin = before.rfind('\n') + 1;
    subject.line = static_cast<std::uint32_t>(std::count(before.begin(), before.end(), '\n') + 1);
    subject.column = static_cast<std::uint32_t>(before.size() - lineBegin + 1);
  }

 private:
  std::string_view text_;
  std::string_view rest_;
};

/// The last of the regions that is named so, whatever the case of the letters; null for none.
const IRcalc1d* findChain(const std::vector<IRcalc1d*>& regions, std::string_view name) {
  const std::string wanted = toUpper(name);
  const auto it = std::find_if(regions.rbegin(), regions.rend(), [&wanted](const IRcalc1d* region) {
    return toUpper(region->region_name) == wanted;
  });
  return it == regions.rend() ? nullptr : *it;
}

}  // namespace

void IRcouplingLateral::checkRules() {
  if (connections_automatic) {
    return;
  }
  if (connections_filename.empty()) {
    error<&Self::connections_filename, &Self::connections_automatic>(
        {"no-file", "nothing tells which cross sections and edges are connected",
         "name their file in 'connections_filename', or set 'connections_automatic = yes'"},
        "A file must be given, which defines the lateral connections (you may use the automatic generation of coupling connections, to ease this process!).");
    return;
  }
  const Fault& found = fault_.get([this] { return readConnections(); });
  if (!found.text.empty()) {
    report(
        Severity::error, *this, {found.subject}, {found.rule, "{2}", "{3}"},
        "There was an error while reading the lateral connections file '{}':\n\nError:\t\tfound in the COUPLING block.{}\n",
        connections_filename, found.text, found.sentence, found.help);
  }
}

template <typename... Values>
IRcouplingLateral::Fault IRcouplingLateral::fault(
    const RuleWords<std::type_identity_t<Values>...>& rule, const Subject& subject,
    std::string_view text, const Values&... values) {
  return {.text = std::string(text),
          .rule = rule.name,
          .sentence = fmt::vformat(rule.sentence, fmt::make_format_args(values...)),
          .help = fmt::vformat(rule.help, fmt::make_format_args(values...)),
          .subject = subject};
}

IRcouplingLateral::Fault IRcouplingLateral::readConnections() {
  connections = {};
  const auto& chains = enclosing<IRdomain>().cr1d_ptrV;
  const IRcalc1d* const chain = findChain(chains, kestchain);
  if (chain == nullptr) {
    return fault(
        {"unknown-region", "there is no 1D region named '{0}'",
         "give the 'region_name' of a KESTCHAIN_1D{1}"},
        about<&Self::kestchain>(*this),
        fmt::format(
            "\nError:\t\tA lateral coupling with unknwon kestchain subdomain '{}'.\n\t\tPlease correct the input data in the input file.",
            kestchain),
        kestchain, perhaps(kestchain, chains, &IRcalc1d::region_name));
  }
  const std::string path = resolvePath(connections_filename);
  const FileText file = readFile(path);
  if (!file.wasRead) {
    return fault(
        {"missing-file",
         "the file of the lateral connections '{0}' does not exist or cannot be opened",
         "correct the name in 'connections_filename', or put the file there"},
        about<&Self::connections_filename>(*this),
        fmt::format(
            "\nError:\t\tError trying to access the data file for lateral coupling.\nError:\t\t'{}' could not be opened.\n\t\tMake sure, the file exists and restart the simulation.",
            path),
        connections_filename);
  }
  Fault found = readConnections(file.content, chain->geom_ptr);
  if (!found.text.empty()) {
    found.text = fmt::format(
        "\nError:\t\tError reading the file '{}'.{}\n\t\tPlease correct the input file and restart the simulation.",
        path, found.text);
    found.subject.file = path;
  }
  return found;
}

IRcouplingLateral::Fault IRcouplingLateral::readConnections(std::string_view text,
                                                            const IRgeom1d* geometry) {
  Tokens tokens(text);
  const auto at = [this, &tokens](std::string_view token) {
    Subject subject = about<&Self::connections_filename>(*this);
    tokens.place(token, subject);
    return subject;
  };
  for (std::string_view name = tokens.next(); !name.empty() && name != "end" && name != "end/";
       name = tokens.next()) {
    if (name.starts_with("//") || name.starts_with('#')) {
      tokens.skipLine();
      continue;
    }
    // An unknown cross section points to the first one.
    const int known = geometry == nullptr ? -1 : geometry->crossSectionIndex(name);
    connections.crossSectionNames.emplace_back(name);
    connections.crossSectionIndices.push_back(std::max(known, 0));
    const std::string_view dyke = tokens.next();
    if (dyke.empty()) {
      return fault(
          {"no-dyke-side", "the connection of '{0}' does not tell the side of the dyke",
           "write behind the cross section 0 for the left or 1 for the right dyke, looking "
           "downstream, and the two nodes of the 2D edge"},
          at(name), "\nError:\t\tThe definition of the dyke location (1/0) could not be found.",
          name);
    }
    const int dykeLocation = stringToInt(dyke);
    if (dykeLocation != 0 && dykeLocation != 1) {
      return fault(
          {"unknown-dyke-side", "the side of the dyke at '{0}' is '{1}', neither 0 nor 1",
           "write 0 for the left or 1 for the right dyke, looking downstream"},
          at(dyke),
          fmt::format("\nError:\t\tThe definition of the dyke location (0/1) is not valid: {}",
                      dykeLocation),
          name, dyke);
    }
    connections.dykeLocations.push_back(dykeLocation);
    for (std::vector<int>* nodes : {&connections.firstNodes, &connections.secondNodes}) {
      const std::string_view node = tokens.next();
      if (node.empty()) {
        return fault({"no-nodes", "the connection of '{0}' lacks a node of its 2D edge",
                      "write behind the side of the dyke the two nodes of the edge in the mesh"},
                     at(name), "\nError:\t\tThe node ids could not be read.", name);
      }
      nodes->push_back(stringToInt(node));
    }
    tokens.skipLine();
  }
  return {};
}

}  // namespace KESTparse
