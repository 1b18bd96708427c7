#include "preview/Page.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <functional>
#include <random>
#include <span>
#include <string_view>

#include "preview/Bytes.h"
#include "preview/Html.h"

// Put into the program by assets.S.
// NOLINTBEGIN(modernize-avoid-c-arrays)
extern "C" {
extern const char kcf_page[];
extern const char kcf_page_end[];
extern const char kcf_style[];
extern const char kcf_style_end[];
extern const char kcf_dygraph_style[];
extern const char kcf_dygraph_style_end[];
extern const char kcf_dygraph[];
extern const char kcf_dygraph_end[];
extern const char kcf_dagre[];
extern const char kcf_dagre_end[];
extern const char kcf_core[];
extern const char kcf_core_end[];
extern const char kcf_mesh[];
extern const char kcf_mesh_end[];
extern const char kcf_series[];
extern const char kcf_series_end[];
extern const char kcf_figures[];
extern const char kcf_figures_end[];
}
// NOLINTEND(modernize-avoid-c-arrays)

namespace kcf {
namespace {

using nlohmann::ordered_json;

std::string_view asset(const char* begin, const char* end) {
  return {begin, static_cast<std::size_t>(end - begin)};
}

std::string htmlText(std::string_view text) {
  return Html().text(text).take();
}

std::string duration(double seconds) {
  constexpr double minute = 60;
  constexpr double hour = 3600;
  constexpr double day = 86400;
  if (seconds >= 2 * day) {
    return fmt::format("{:g} d", seconds / day);
  }
  if (seconds >= hour) {
    return fmt::format("{:g} h", seconds / hour);
  }
  return seconds >= 2 * minute ? fmt::format("{:g} min", seconds / minute)
                               : fmt::format("{:g} s", seconds);
}

/// `number` with its thousands apart.
std::string grouped(double number) {
  std::string digits = fmt::format("{:.0f}", number);
  for (std::ptrdiff_t i = static_cast<std::ptrdiff_t>(digits.size()) - 3; i > 0; i -= 3) {
    digits.insert(static_cast<std::size_t>(i), "\u202f");
  }
  return digits;
}

std::string plain(double number) {
  return fmt::format("{:.6g}", number);
}

std::string plain(const ordered_json& value) {
  return value.is_number()   ? plain(value.get<double>())
         : value.is_string() ? value.get<std::string>()
                             : "";
}

std::string joined(const ordered_json& list) {
  std::string text;
  for (const auto& item : list) {
    text += (text.empty() ? "" : ", ") + plain(item);
  }
  return text;
}

std::string bytesOf(double size) {
  constexpr double kilo = 1000;
  if (size < kilo) {
    return fmt::format("{:.0f} B", size);
  }
  return size < kilo * kilo ? fmt::format("{:.1f} kB", size / kilo)
                            : fmt::format("{:.1f} MB", size / kilo / kilo);
}

/// Lines of the command file that the page holds at most.
constexpr std::size_t lineLimit = 5000;

/// The sections of the page, each with its heading in the navigation.
class Sections {
 public:
  explicit Sections(const Model& model) : model_(&model) {}

  void write() {
    overview();
    if (!page()["meshes"].empty() || page().contains("grounds")) {
      mesh();
    }
    if (!page()["series"].empty()) {
      series();
    }
    if (!page()["chains"].empty()) {
      chains();
    }
    if (!page()["beds"].empty()) {
      beds();
    }
    links();
    actions();
    outputs();
    files();
    defaults();
    commandFile();
    signature();
  }

  std::string takeSections() { return html_.take(); }
  std::string takeNavigation() { return navigation_.take(); }

 private:
  [[nodiscard]] const ordered_json& page() const { return model_->page; }

  void begin(std::string_view id, std::string_view title) {
    navigation_.leaf("a", title, {{"href", "#" + std::string(id)}});
    const std::string heading = std::string(id) + "-title";
    html_.open("section", {{"id", id}, {"aria-labelledby", heading}})
        .leaf("h2", title, {{"id", heading}});
  }

  /// Where a script draws.
  void picture(std::string_view id, std::string_view className = "") {
    html_.open("div", {{"id", id}, {"class", className}}).close();
  }

  void beginDetails(std::string_view summary) { html_.open("details").leaf("summary", summary); }

  void overview() {
    begin("overview", "Overview");
    html_.open("div", {{"class", "regions"}});
    for (const Region& region : model_->regions) {
      html_.open("article")
          .open("h3")
          .text(region.name)
          .leaf("span", region.kind, {{"class", "tag"}});
      html_.close().open("dl");
      fact("Time", region.hasTime
                       ? fmt::format("{} to {} s ({})", plain(region.start), plain(region.end),
                                     duration(region.end - region.start))
                       : "not told");
      std::string physics;
      for (const std::string& one : region.physics) {
        physics += (physics.empty() ? "" : ", ") + one;
      }
      fact("Computes", physics);
      for (const auto& mesh : page()["meshes"]) {
        if (mesh["region"] == region.name && mesh.contains("elements")) {
          fact("Mesh",
               fmt::format("{} elements, {} nodes, {} m²", grouped(mesh["elements"].get<double>()),
                           grouped(mesh["nodes"].get<double>()),
                           grouped(mesh["area"].get<double>())));
          fact("Elevation",
               fmt::format("{} to {} m", plain(mesh["lowest"]), plain(mesh["highest"])));
        }
      }
      for (const auto& chain : page()["chains"]) {
        if (chain["region"] == region.name) {
          fact("Chain", std::to_string(chain["sections"].size()) + " cross sections");
        }
      }
      html_.close().close();
    }
    html_.close();
    notices();
    html_.close();
  }

  void fact(std::string_view term, std::string_view text) {
    html_.leaf("dt", term).leaf("dd", text);
  }

  void notices() {
    html_.leaf("h3", "What to look at");
    if (model_->notices.empty()) {
      html_.leaf("p", "kcf check finds nothing, and all that the setup names is shown.",
                 {{"class", "good"}});
      return;
    }
    html_.open("ul", {{"class", "notices"}});
    for (const Notice& notice : model_->notices) {
      const std::string_view severity = notice.severity == KESTparse::Severity::error ? "error"
                                        : notice.severity == KESTparse::Severity::warning
                                            ? "warning"
                                            : "note";
      html_.open("li", {{"class", severity}}).leaf("strong", severity).text(" ");
      html_.text(notice.message);
      if (!notice.help.empty()) {
        html_.leaf("span", " – " + notice.help, {{"class", "help"}});
      }
      if (notice.line > 0) {
        place(notice);
      }
      if (!notice.subject.empty()) {
        html_.text(" ").leaf("a", "show",
                             {{"href", "#" + notice.subject},
                              {"aria-label", "Show what this is about: " + notice.message}});
      }
      html_.close();
    }
    html_.close();
  }

  /// The line that a notice is about, with a link to it where it stands in the page.
  void place(const Notice& notice) {
    const std::string line = std::to_string(notice.line);
    const std::string shown = std::filesystem::path(notice.file).filename().string() + ":" + line;
    html_.text(" ").open("code");
    if (notice.file == model_->path && notice.line <= lineLimit) {
      html_.leaf("a", shown, {{"href", "#line-" + line}});
    } else {
      html_.text(shown);
    }
    html_.close();
  }

  void mesh() {
    begin("mesh", "Mesh");
    picture("mesh-view", "mesh");
    for (const auto& mesh : page()["meshes"]) {
      const std::string subject = mesh["subject"];
      html_.open("div", {{"id", subject}, {"class", "anchor"}});
      if (mesh.contains("materials")) {
        beginDetails("Tables of " + mesh["region"].get<std::string>());
        materials(mesh);
        strings(mesh);
        sources(mesh);
        html_.close();
      } else {
        html_.leaf("p", "The mesh of " + mesh["region"].get<std::string>() + " cannot be shown.");
      }
      html_.close();
    }
    html_.close();
  }

  void materials(const ordered_json& mesh) {
    std::vector<std::string> titles{"Material", "#Elements", "#Area [m²]"};
    for (const auto& table : mesh["tables"]) {
      const std::string unit = table["unit"];
      titles.push_back(table["label"].get<std::string>() + (unit.empty() ? "" : " [" + unit + "]"));
    }
    std::vector<std::vector<std::string>> rows;
    for (std::size_t i = 0; i < mesh["materials"].size(); ++i) {
      const std::string material = std::to_string(mesh["materials"][i].get<int>());
      rows.push_back({material, grouped(mesh["materialCounts"][i].get<double>()),
                      grouped(mesh["materialAreas"][i].get<double>())});
      for (const auto& table : mesh["tables"]) {
        const auto& values = table["values"];
        rows.back().push_back(values.contains(material) ? values[material].get<std::string>()
                              : table.contains("otherwise")
                                  ? table["otherwise"].get<std::string>() + " (default)"
                                  : "–");
      }
    }
    writeTable(html_, "Materials of " + mesh["region"].get<std::string>(), titles, rows);
  }

  void strings(const ordered_json& mesh) {
    std::vector<std::vector<std::string>> rows;
    for (const auto& string : mesh["strings"]) {
      std::string uses;
      for (const auto& use : string["uses"]) {
        uses += (uses.empty() ? "" : "; ") + use["field"].get<std::string>() + " " +
                use["kind"].get<std::string>() + " " + use["type"].get<std::string>();
      }
      const auto& ids = string["ids"];
      rows.push_back({string["name"].get<std::string>(), std::to_string(ids.size()),
                      ids.empty() ? "" : plain(ids.front()) + " … " + plain(ids.back()),
                      string.contains("upstream") ? string["upstream"].get<std::string>()
                                                  : "not defined in the setup",
                      uses.empty() ? "–" : uses});
    }
    if (!rows.empty()) {
      writeTable(html_, "Node strings of " + mesh["region"].get<std::string>(),
                 {"Name", "#Nodes", "From … to node", "Upstream side", "Acts as"}, rows);
    }
  }

  void sources(const ordered_json& mesh) {
    std::vector<std::vector<std::string>> rows;
    for (const auto& source : mesh["sources"]) {
      const std::string name = source["name"];
      rows.push_back({name.empty() ? "unnamed" : name, source["field"].get<std::string>(),
                      source["type"].get<std::string>(), joined(source["elements"]),
                      joined(source["nodes"]), joined(source["materials"])});
    }
    if (!rows.empty()) {
      writeTable(html_, "Sources of " + mesh["region"].get<std::string>(),
                 {"Name", "Of", "Type", "Elements", "Nodes", "Materials"}, rows);
    }
  }

  void series() {
    begin("series", "Series");
    picture("series-view", "series");
    beginDetails("Table of the series");
    std::vector<std::vector<std::string>> rows;
    for (const auto& entry : page()["series"]) {
      const std::string argument = entry["argumentUnit"];
      rows.push_back(
          {entry["where"].get<std::string>(), entry["file"].get<std::string>(),
           entry["quantity"].get<std::string>() + " [" + entry["unit"].get<std::string>() + "]",
           entry.contains("rows") ? plain(entry["rows"]) : "cannot be read"});
      for (const std::string_view end : {"first", "last"}) {
        rows.back().push_back(entry.contains(end) ? plain(entry[std::string(end)]) + " " + argument
                                                  : "");
      }
      std::string extremes;
      if (entry.contains("columns")) {
        for (const auto& column : entry["columns"]) {
          extremes += (extremes.empty() ? "" : "; ") + plain(column["lowest"]) + " to " +
                      plain(column["highest"]);
        }
      }
      rows.back().push_back(extremes);
      std::string remarks = joined(entry["remarks"]);
      for (const auto& jump : entry.value("jumps", ordered_json::array())) {
        remarks += (remarks.empty() ? "" : ", ") +
                   fmt::format("jumps from {} to {} at {} s", plain(jump["from"]),
                               plain(jump["to"]), plain(jump["time"]));
      }
      rows.back().push_back(remarks);
    }
    writeTable(html_, "Series of the setup",
               {"Where", "File", "Quantity", "#Rows", "#From", "#To", "Range", "Remarks"}, rows);
    html_.close().close();
  }

  void chains() {
    begin("chain", "1D chain");
    picture("chain-view");
    for (const auto& chain : page()["chains"]) {
      beginDetails("Table of " + chain["region"].get<std::string>());
      std::vector<std::vector<std::string>> rows;
      for (const auto& mark : chain["marks"]) {
        const std::string name = mark["name"];
        rows.push_back({joined(mark["at"]), mark["kind"].get<std::string>(),
                        mark["field"].get<std::string>(), mark["type"].get<std::string>(), name,
                        mark["side"].get<std::string>()});
      }
      writeTable(html_, "What acts on the chain " + chain["region"].get<std::string>(),
                 {"At", "Kind", "Of", "Type", "Name", "Side"}, rows);
      html_.leaf("p", "Cross sections in their order: " + joined(chain["sections"]));
      for (const auto& band : chain["bands"]) {
        html_.leaf("p", band["label"].get<std::string>() + ": " + band["text"].get<std::string>());
      }
      html_.close();
    }
    html_.close();
  }

  void beds() {
    begin("bed", "Bed");
    picture("bed-view");
    for (const auto& bed : page()["beds"]) {
      const std::string region = bed["region"];
      beginDetails("Tables of the bed of " + region);
      std::vector<std::string> titles{"Mixture"};
      for (const auto& diameter : bed["diameters"]) {
        titles.push_back("#" + plain(diameter) + " mm");
      }
      std::vector<std::vector<std::string>> rows;
      for (const auto& mixture : bed["mixtures"]) {
        rows.push_back({mixture["name"].get<std::string>()});
        for (std::size_t i = 0; i + 1 < titles.size(); ++i) {
          rows.back().push_back(
              i < mixture["fractions"].size() ? plain(mixture["fractions"][i]) + " %" : "–");
        }
      }
      writeTable(html_, "Mixtures of " + region, titles, rows);
      rows.clear();
      for (const auto& soil : bed["soils"]) {
        std::string layers;
        for (const auto& layer : soil["layers"]) {
          layers += (layers.empty() ? "" : ", then ") + layer["mixture"].get<std::string>() +
                    " down to " + plain(layer["bottom"]) + " m";
        }
        rows.push_back({soil["name"].get<std::string>(),
                        layers.empty() ? "no layer: fixed" : layers, joined(soil["materials"])});
      }
      writeTable(html_, "Soils of " + region, {"Soil", "Layers from the surface", "Of materials"},
                 rows);
      html_.close();
    }
    html_.close();
  }

  void links() {
    const auto& graph = page()["graph"];
    if (graph["nodes"].size() < 2) {
      return;
    }
    begin("links", "Links");
    picture("links-view");
    beginDetails("Table of the links");
    std::vector<std::vector<std::string>> rows;
    const auto label = [&graph](const ordered_json& id) {
      for (const auto& node : graph["nodes"]) {
        if (node["id"] == id) {
          return node["label"].get<std::string>();
        }
      }
      return std::string();
    };
    for (const auto& edge : graph["edges"]) {
      rows.push_back({label(edge["from"]), edge["both"].get<bool>() ? "to and from" : "to",
                      label(edge["to"]), edge["label"].get<std::string>(),
                      edge["detail"].get<std::string>()});
    }
    writeTable(html_, "Couplings and controllers", {"From", "Direction", "To", "Kind", "By"}, rows);
    html_.close().close();
  }

  void actions() {
    if (model_->actions.empty()) {
      return;
    }
    begin("actions", "Boundaries");
    std::vector<std::vector<std::string>> rows;
    for (const Action& action : model_->actions) {
      rows.push_back({action.name.empty() ? "–" : action.name, action.region,
                      action.field.empty() ? action.kind : action.field + " " + action.kind,
                      action.type, action.place, action.by});
    }
    writeTable(html_, "Boundaries and sources", {"Name", "Region", "Kind", "Type", "At", "Given"},
               rows);
    html_.close();
  }

  void outputs() {
    begin("outputs", "Outputs");
    double total = 0;
    std::vector<std::vector<std::string>> rows;
    for (const Output& output : model_->outputs) {
      const double size = output.numbers * static_cast<double>(output.times) * sizeof(double);
      total += size;
      rows.push_back({output.region, output.type, output.values, plain(output.interval),
                      grouped(static_cast<double>(output.times)), size > 0 ? bytesOf(size) : "–"});
    }
    writeTable(html_, "Outputs over the run",
               {"Region", "Output", "Values", "#Every [s]", "#Times", "#About"}, rows);
    html_.leaf("p",
               fmt::format("About {} together. Sizes count 8 bytes a number, without what a format "
                           "adds; text takes about twice that. Where there is none, the setup does "
                           "not tell how many numbers are written.",
                           bytesOf(total)),
               {{"class", "hint"}});
    html_.close();
  }

  void files() {
    begin("files", "Files");
    std::vector<std::vector<std::string>> rows;
    for (const NamedFile& file : model_->files) {
      rows.push_back({file.name, file.usedBy,
                      file.exists ? bytesOf(static_cast<double>(file.size)) : "missing",
                      file.sha256});
    }
    writeTable(html_, "Files of the setup", {"File", "Used by", "#Size", "SHA-256"}, rows);
    html_.close();
  }

  void defaults() {
    begin("defaults", "Defaults");
    std::vector<std::vector<std::string>> rows;
    collectDefaults(*model_->setup, rows);
    beginDetails(fmt::format("{} values that the setup leaves to their defaults", rows.size()));
    writeTable(html_, "Defaults in force", {"Tag", "Block", "Value", "Unit"}, rows);
    html_.close().close();
  }

  static void collectDefaults(const SetupBlock& block,
                              std::vector<std::vector<std::string>>& rows) {
    for (const KESTparse::InputTag* tag : block.defaults()) {
      rows.push_back({std::string(tag->getName()),
                      block.path() + " (line " + std::to_string(block.line) + ")",
                      tag->getDefaultValue(), tag->getUnit()});
    }
    for (const SetupBlock& child : block.blocks) {
      collectDefaults(child, rows);
    }
  }

  /// The text of the setup, to which the notices lead.
  void commandFile() {
    begin("setup", "Command file");
    beginDetails("The command file, line by line");
    html_.open("ol", {{"class", "listing"}});
    std::size_t line = 1;
    for (std::string_view rest = model_->text; !rest.empty() && line <= lineLimit; ++line) {
      const std::size_t end = std::min(rest.find('\n'), rest.size());
      html_.leaf("li", rest.substr(0, end), {{"id", "line-" + std::to_string(line)}});
      rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    html_.close();
    if (line > lineLimit) {
      html_.leaf("p", "Further lines are left out.", {{"class", "hint"}});
    }
    html_.close().close();
  }

  void signature() {
    begin("sign", "Sign-off");
    html_.open("div", {{"class", "signature"}});
    for (const std::string_view label : {"Setup by", "Checked by", "Date"}) {
      html_.open("p").leaf("span", label).close();
    }
    html_.close().close();
  }

  const Model* model_;
  Html html_;
  Html navigation_;
};

/// `json` as it may stand in a script element.
std::string embedded(const ordered_json& json) {
  std::string text = json.dump(-1, ' ', false, ordered_json::error_handler_t::replace);
  std::string safe;
  safe.reserve(text.size());
  for (const char c : text) {
    if (c == '<') {
      safe += "\\u003c";
    } else {
      safe += c;
    }
  }
  return safe;
}

std::string digest(std::string_view text) {
  std::string source = "'sha256-";
  appendBase64(source, sha256(text));
  return source + "'";
}

/// A word that cannot be guessed.
std::string secret() {
  std::random_device source;
  std::string word;
  constexpr int parts = 4;
  for (int i = 0; i < parts; ++i) {
    word += fmt::format("{:08x}", source());
  }
  return word;
}

/// What a gap of the template is filled with: it appends to the page.
using Filling = std::function<void(std::string&)>;

/// Fills the gaps `{{name}}` of the template.
std::string filled(std::string_view text, std::size_t size,
                   const std::vector<std::pair<std::string_view, Filling>>& fillings) {
  std::string out;
  out.reserve(size);
  while (true) {
    const std::size_t gap = text.find("{{");
    out += text.substr(0, gap);
    if (gap == std::string_view::npos) {
      return out;
    }
    const std::size_t end = text.find("}}", gap);
    for (const auto& [name, fill] : fillings) {
      if (name == text.substr(gap + 2, end - gap - 2)) {
        fill(out);
      }
    }
    text.remove_prefix(end + 2);
  }
}

/// The data of the page, which the scripts read.
void appendData(std::string& out, const ordered_json& page, const Model& model) {
  out += R"(<script type="application/json" id="setup-data">)" + embedded(page) + "</script>\n";
  for (std::size_t i = 0; i < model.streams.size(); ++i) {
    out += R"(<script type="text/plain" id="stream-)" + std::to_string(i) + "\">";
    appendBase64(out, model.streams[i]);
    out += "</script>\n";
  }
}

}  // namespace

std::string pageOf(const Model& model, const std::string& stampName, const std::string& stamp) {
  const std::array scripts{
      asset(kcf_dygraph, kcf_dygraph_end), asset(kcf_dagre, kcf_dagre_end),
      asset(kcf_core, kcf_core_end),       asset(kcf_mesh, kcf_mesh_end),
      asset(kcf_series, kcf_series_end),   asset(kcf_figures, kcf_figures_end)};
  const std::string style = std::string(asset(kcf_dygraph_style, kcf_dygraph_style_end)) +
                            std::string(asset(kcf_style, kcf_style_end));
  std::string scriptElements;
  std::string policy =
      "default-src 'none'; img-src data:; base-uri 'none'; form-action 'none'; style-src " +
      digest(style) + "; script-src";
  for (const std::string_view script : scripts) {
    policy += " " + digest(script);
    scriptElements += "<script>" + std::string(script) + "</script>\n";
  }
  ordered_json page = model.page;
  if (!stamp.empty()) {
    // The only script that is no part of the page: the one beside it, by a word that nothing else
    // knows. The policy cannot name a file of a folder.
    const std::string word = secret();
    page["stamp"] = {{"name", stampName}, {"value", stamp}, {"nonce", word}};
    policy += " 'nonce-" + word + "'";
  }
  Sections sections(model);
  sections.write();
  const std::string hash = model.files.empty() ? "" : model.files.front().sha256;
  constexpr std::size_t roomForTheRest = 1 << 20;
  std::size_t size = roomForTheRest;
  for (const auto& stream : model.streams) {
    size += stream.size() * 4 / 3;
  }
  const auto text = [](std::string part) -> Filling {
    return [part = std::move(part)](std::string& out) { out += part; };
  };
  return filled(asset(kcf_page, kcf_page_end), size,
                {{"policy", text(htmlText(policy))},
                 {"title", text(htmlText(page["title"].get<std::string>()))},
                 {"style", text(style)},
                 {"subtitle", text(htmlText("Setup preview of " + model.files.front().name))},
                 {"navigation", text(sections.takeNavigation())},
                 {"sections", text(sections.takeSections())},
                 {"version", text(KESTRIX_VERSION)},
                 {"hash", text(hash)},
                 {"data", [&page, &model](std::string& out) { appendData(out, page, model); }},
                 {"scripts", text(scriptElements)}});
}

}  // namespace kcf
