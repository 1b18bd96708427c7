#include "preview/Model.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <future>
#include <limits>
#include <optional>
#include <set>
#include <stdexcept>

#include "CommandFiles.h"
#include "KESTcore/Mesh.h"
#include "KESTparse/base/Conversions.h"
#include "KESTparse/base/Files.h"
#include "KESTparse/document/CheckedMesh.h"
#include "KESTparse/document/Document.h"
#include "KESTparse/root/KestrixInputRoot.h"
#include "KESTparse/vocabulary/TagTraits.h"
#include "preview/Bytes.h"
#include "preview/PackedMesh.h"
#include "preview/Series.h"

namespace kcf {
namespace {

using KESTparse::Severity;
using nlohmann::ordered_json;

/// Rows of a series that the page holds at most.
constexpr std::size_t rowLimit = 8000;

/// Values of outputs that have a component along x and one along y.
constexpr std::array<std::string_view, 4> vectorValues{"velocity", "specific_discharge", "momentum",
                                                       "bedload_vec"};

/// `text` with what is no UTF-8 replaced, since nothing else can stand in a page.
std::string utf8(const std::string& text) {
  return ordered_json::parse(
      ordered_json(text).dump(-1, ' ', false, ordered_json::error_handler_t::replace));
}

std::string shown(double number) {
  return fmt::format("{}", number);
}

/// What a series is about, by the tag that names it and the type of its block.
struct Quantity {
  std::string_view what;
  std::string_view unit;
  std::string_view argument = "time";
  std::string_view argumentUnit = "s";
};

Quantity quantityOf(std::string_view tag, std::string_view type, const std::string& path) {
  const bool isSediment = path.find("BEDLOAD") != std::string::npos ||
                          path.find("/MORPHOLOGY/SOURCE") != std::string::npos;
  const auto is = [type](std::string_view name) {
    return type.substr(type.starts_with("coupling_") ? 9 : 0) == name;
  };
  if (tag == "width_file") {
    return {"width", "m"};
  }
  if (tag == "weir_level_file" || (tag == "file" && is("weir"))) {
    return {"crest level", "m a.s.l."};
  }
  if (tag == "gate_level_file" || (tag == "file" && is("gate"))) {
    return {"gate level", "m a.s.l."};
  }
  if (tag == "gate_size_file") {
    return {"gate opening", "m"};
  }
  if (tag == "cycle_step_file") {
    return {"cycle step", "–"};
  }
  if (is("hqrelation")) {
    return {"discharge", "m³/s", "water level", "m a.s.l."};
  }
  if (is("zhydrograph")) {
    return {"water level", "m a.s.l."};
  }
  if (is("suspension_discharge") && path.find("KESTCHAIN_1D") != std::string::npos) {
    return {"concentration", "–"};
  }
  if (is("suspended_discharge") || is("suspension_discharge")) {
    return {"suspended load", "m³/s"};
  }
  if (isSediment) {
    return {"sediment discharge", "m³/s"};
  }
  if (path.ends_with("MOVABLE_BED")) {
    return {"bed elevation", "m a.s.l."};
  }
  if (is("hydrograph") || is("source_discharge") || is("qlateral")) {
    return {"discharge", "m³/s"};
  }
  if (tag == "root_value_series_file") {
    return {"target", "m a.s.l. or m³/s"};
  }
  return {is("saturation") ? "saturation" : "value", is("saturation") ? "–" : ""};
}

/// What `KIND/BLOCK` is called in the page.
std::string spoken(std::string_view blockName) {
  std::string text(blockName);
  std::transform(text.begin(), text.end(), text.begin(), [](char c) {
    return c == '_' ? ' ' : static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  });
  return text;
}

/// The name by which people know a block: its own, or that of the place where it acts.
std::string labelOf(const SetupBlock& block) {
  for (const std::string_view tag : {"name", "string_name", "cross_section", "string"}) {
    if (const SetupTag* const given = block.tag(tag); given != nullptr && !given->value.empty()) {
      return given->value;
    }
  }
  for (const auto& [first, second] : {std::pair{"string_name1", "string_name2"},
                                      {"cross_section_name_1", "cross_section_name_2"}}) {
    if (block.tag(first) != nullptr) {
      return block.value(first) + " – " + block.value(second);
    }
  }
  return block.value("type");
}

class ModelReader {
 public:
  ModelReader(const std::filesystem::path& path, std::filesystem::path folder)
      : folder_(std::move(folder)) {
    model_.path = path;
    model_.schema = std::make_unique<KESTparse::KestrixInputRoot>();
  }

  Model run() {
    model_.watched.push_back(model_.path);
    const auto text = keep(model_.path, readCommandFile(model_.path.string()));
    model_.text = utf8(*text);
    const auto tree = KESTparse::Document::readTree(*text, *model_.schema);
    const KESTparse::LineTable lines(tree->text());
    model_.setup = readSetup(*tree, lines, *model_.schema);
    readMeshes();
    // The check reads files of its own, which takes a while.
    auto check = std::async(std::launch::async, [this, &tree] { return findingsOf(tree); });
    addFile(describe(utf8(model_.path.filename().string()), "the command file", model_.path));
    const SetupBlock* const project = model_.setup->find("PROJECT");
    model_.title = project == nullptr ? "" : project->value("title");
    if (model_.title.empty()) {
      model_.title = model_.path.stem().string();
    }
    model_.page = {{"title", utf8(model_.title)},
                   {"regions", ordered_json::array()},
                   {"meshes", ordered_json::array()},
                   {"series", ordered_json::array()},
                   {"chains", ordered_json::array()},
                   {"beds", ordered_json::array()},
                   {"graph", {{"nodes", ordered_json::array()}, {"edges", ordered_json::array()}}}};
    if (const SetupBlock* const domain = model_.setup->find("DOMAIN"); domain != nullptr) {
      readDomain(*domain);
    } else {
      tell(Severity::error, "the setup has no block DOMAIN", "nothing can be simulated without one",
           1, "");
    }
    finishFiles();
    addDiagnostics(check.get(), lines);
    return std::move(model_);
  }

 private:
  /// Names and places of the files that the model is made of.
  [[nodiscard]] std::filesystem::path resolved(const std::string& name) const {
    return std::filesystem::path(name).is_absolute() ? std::filesystem::path(name) : folder_ / name;
  }

  /// A file that was read.
  struct ReadFile {
    std::uint64_t size = 0;
    std::weak_ptr<const std::string> text;  ///< gone once nobody needs it
    std::future<std::string> hash;          ///< worked out beside all else
  };

  /// A mesh with the text that it stands in.
  struct ReadMesh {
    std::shared_ptr<const std::string> text;
    Kestrix::Mesh mesh;
  };

  /// The text of the file at `path`; null when it cannot be read.
  std::shared_ptr<const std::string> textAt(const std::filesystem::path& path) {
    const auto known = files_.find(path.string());
    if (known != files_.end() && !known->second.text.expired()) {
      return known->second.text.lock();
    }
    KESTparse::FileText read = KESTparse::readFile(path.string());
    if (known == files_.end()) {
      model_.watched.push_back(path);
    }
    if (!read.wasRead) {
      return nullptr;
    }
    return keep(path, std::move(read.content));
  }

  /// Keeps what was read at `path` as long as somebody needs it.
  std::shared_ptr<const std::string> keep(const std::filesystem::path& path, std::string content) {
    auto text = std::make_shared<const std::string>(std::move(content));
    const auto known = files_.find(path.string());
    if (known != files_.end()) {
      known->second.text = text;
      return text;
    }
    // The text is given up when it is hashed, and not with the hash.
    files_[path.string()] = {text->size(), text,
                             std::async(std::launch::async, [hashed = text]() mutable {
                               return hex(sha256(*std::exchange(hashed, nullptr)));
                             })};
    return text;
  }

  /// The tag of a 2D region that names its mesh; null when there is none.
  static const SetupTag* meshTagOf(const SetupBlock& plane) {
    const SetupBlock* const geometry = plane.find("GEOMETRY");
    return geometry == nullptr ? nullptr : geometry->tag("file");
  }

  /// Reads the meshes before all else, since the check looks into them, too.
  void readMeshes() {
    const SetupBlock* const domain = model_.setup->find("DOMAIN");
    for (const SetupBlock* plane :
         domain == nullptr ? std::vector<const SetupBlock*>() : domain->all("KESTPLANE_2D")) {
      const SetupTag* const file = meshTagOf(*plane);
      const std::filesystem::path path = file == nullptr ? "" : resolved(file->value);
      const auto text = file == nullptr ? nullptr : textAt(path);
      if (text != nullptr) {
        const auto [it, isNew] = meshes_.try_emplace(path.string());
        if (isNew) {
          it->second = {text, Kestrix::readMesh(*text, true)};
        }
        meshNames_.emplace(KESTparse::Document::pathOf(file->value, folder_.string()), &it->second);
      }
    }
  }

  /// All that the checker finds. Runs beside the reading, and looks at nothing that changes.
  [[nodiscard]] std::vector<KESTparse::Diagnostic> findingsOf(
      const std::shared_ptr<const KESTparse::SyntaxTree>& tree) const {
    KESTparse::DocumentOptions options{.directory = folder_.string()};
    for (const auto& [name, read] : meshNames_) {
      options.checkedFiles.meshes.emplace(name, KESTparse::checkMesh(*read->text, read->mesh));
    }
    return KESTparse::Document(tree, *model_.schema, std::move(options)).check();
  }

  /// The text of a file that the setup names; null when it cannot be read, which is told.
  std::shared_ptr<const std::string> named(const SetupBlock& block, const SetupTag& tag,
                                           const std::string& subject) {
    const std::filesystem::path path = resolved(tag.value);
    subjectOfFile_.emplace(path.lexically_normal(), subject);
    auto text = textAt(path);
    if (text == nullptr) {
      tell(Severity::error, "the file '" + tag.value + "' of " + whereOf(block) + " cannot be read",
           "names count from the folder '" + folder_.string() + "'", tag.line, subject);
    }
    return text;
  }

  NamedFile describe(const std::string& name, const std::string& usedBy,
                     const std::filesystem::path& path) {
    const auto known = files_.find(path.string());
    NamedFile file{name, usedBy, known != files_.end(), 0, path.string()};
    if (file.exists) {
      file.size = known->second.size;
    } else {
      std::error_code fault;
      const auto size = std::filesystem::file_size(path, fault);
      file.exists = !fault;
      file.size = fault ? 0 : size;
    }
    return file;
  }

  /// Puts the hashes, which are worked out beside all else, in place.
  void finishFiles() {
    std::map<std::string, std::string> known;
    for (NamedFile& file : model_.files) {
      const std::string path = std::exchange(file.sha256, "");
      if (!known.contains(path)) {
        const auto it = files_.find(path);
        const KESTparse::FileText text =
            it == files_.end() && file.exists ? KESTparse::readFile(path) : KESTparse::FileText();
        known[path] = it != files_.end() ? it->second.hash.get()
                                         : (text.wasRead ? hex(sha256(text.content)) : "");
      }
      file.sha256 = known[path];
    }
  }

  void tell(Severity severity, std::string message, std::string help, std::size_t line,
            std::string subject) {
    model_.notices.push_back({severity, std::move(message), std::move(help), "",
                              model_.path.string(), line, std::move(subject)});
  }

  /// Puts what the checker finds in front of what only the preview tells.
  void addDiagnostics(const std::vector<KESTparse::Diagnostic>& diagnostics,
                      const KESTparse::LineTable& lines) {
    std::vector<Notice> notices;
    for (const KESTparse::Diagnostic& told : diagnostics) {
      const bool isHere = told.at.file.empty();
      const std::size_t line = isHere ? lines.at(told.at.at.begin).line : told.at.line;
      notices.push_back({told.severity, told.message, told.help, told.code,
                         isHere ? model_.path.string() : told.at.file, line,
                         isHere ? subjectOf(line) : subjectOfFile(told.at.file)});
    }
    // The set looks at texts of the list, which must not move.
    notices.reserve(notices.size() + model_.notices.size());
    std::set<std::pair<std::string_view, std::size_t>> told;
    for (const Notice& notice : notices) {
      told.emplace(notice.file, notice.line);
    }
    for (Notice& own : model_.notices) {
      if (own.line == 0 || !told.contains({own.file, own.line})) {
        notices.push_back(std::move(own));
      }
    }
    model_.notices = std::move(notices);
  }

  /// The part of the page that shows what stands in a file that the setup names.
  [[nodiscard]] std::string subjectOfFile(const std::filesystem::path& path) const {
    const auto known = subjectOfFile_.find(path.lexically_normal());
    return known == subjectOfFile_.end() ? "files" : known->second;
  }

  /// The part of the page that shows a block; that of the block around it, `outer`, when it has
  /// none of its own.
  [[nodiscard]] std::string subjectOf(const SetupBlock& block, const std::string& outer) const {
    static const std::map<std::string_view, std::string_view> parts{{"KESTCHAIN_1D", "chain"},
                                                                    {"COUPLINGS", "links"},
                                                                    {"CONTROLLER", "links"},
                                                                    {"BEDMATERIAL", "bed"},
                                                                    {"OUTPUT", "outputs"}};
    if (const auto own = subjectOfBlock_.find(&block); own != subjectOfBlock_.end()) {
      return own->second;
    }
    if (const auto part = parts.find(block.name); part != parts.end()) {
      return std::string(part->second);
    }
    return Action::isOne(block.name) && outer.empty() ? "actions" : outer;
  }

  /// The part of the page that shows what stands at a line; empty when none does.
  [[nodiscard]] std::string subjectOf(std::size_t line) const {
    std::string subject;
    const SetupBlock* block = model_.setup.get();
    while (true) {
      const auto behind =
          std::upper_bound(block->blocks.begin(), block->blocks.end(), line,
                           [](std::size_t at, const SetupBlock& child) { return at < child.line; });
      if (behind == block->blocks.begin() || std::prev(behind)->lastLine < line) {
        break;
      }
      block = &*std::prev(behind);
      subject = subjectOf(*block, subject);
    }
    return subject == "links" && model_.page["graph"]["nodes"].size() < 2 ? "" : subject;
  }

  /// "region / hydraulics / boundary inflow".
  static std::string whereOf(const SetupBlock& block) {
    if (block.parent == nullptr || block.name == "DOMAIN") {
      return "";
    }
    const std::string above = whereOf(*block.parent);
    const std::string region = block.value("region_name");
    const std::string own =
        region.empty() ? spoken(block.name) + (labelOf(block).empty() ? "" : " " + labelOf(block))
                       : region;
    return above.empty() ? own : above + " / " + own;
  }

  void readDomain(const SetupBlock& domain) {
    for (const SetupBlock& block : domain.blocks) {
      if (block.name == "KESTPLANE_2D") {
        readPlane(block, addRegion(block, "2D"));
      } else if (block.name == "KESTCHAIN_1D") {
        readChain(block, addRegion(block, "1D"));
      } else if (block.name == "KESTSUB") {
        readSubsurface(block, addRegion(block, "subsurface"));
      } else if (block.name == "KEST_EXTERN") {
        addRegion(block, "external");
      }
    }
    readSeriesBelow(domain);
    readLinks(domain);
  }

  Region& addRegion(const SetupBlock& block, const std::string& kind) {
    Region region;
    region.name = utf8(block.value("region_name"));
    region.kind = kind;
    region.block = &block;
    if (region.name.empty()) {
      region.name = "unnamed " + kind + " region";
    }
    if (const SetupBlock* const time = block.find("TIMESTEP"); time != nullptr) {
      const auto total = time->numbers("total_run_time");
      const auto start = time->numbers("start_time");
      region.start = start.empty() ? 0 : std::max(start[0], 0.0);
      region.hasTime = !total.empty();
      region.end = total.empty() ? 0 : total[0];
    }
    const auto on = [&block, &region](std::string_view path, std::string what) {
      if (block.find(path) != nullptr) {
        region.physics.push_back(std::move(what));
      }
    };
    on("HYDRAULICS", kind == "1D" ? "flow in a chain of cross sections" : "shallow-water flow");
    on("HYDRAULICS/TURBULENCE_MODEL", "turbulence");
    on("MORPHOLOGY/BEDLOAD", "bed load");
    on("MORPHOLOGY/SUSPENDED_LOAD", "suspended load");
    on("MORPHOLOGY/GRAVITATIONAL_TRANSPORT", "slope failure");
    on("MORPHOLOGY/APPARENT_COHESION", "apparent cohesion");
    on("VEGETATION", "vegetation");
    if (kind == "subsurface") {
      region.physics.emplace_back("variably saturated flow in the ground");
    }
    if (kind == "external") {
      region.physics.emplace_back("computed by another program");
    }
    readOutputs(block, region);
    readNamedFiles(block);
    readActions(block, region.name, &block);
    model_.page["regions"].push_back(
        {{"name", region.name},
         {"kind", kind},
         {"start", region.start},
         {"end", region.hasTime ? ordered_json(region.end) : ordered_json(nullptr)}});
    model_.regions.push_back(std::move(region));
    return model_.regions.back();
  }

  /// What is acted on by the boundaries and sources of a block.
  static std::string fieldOf(std::string_view blockName) {
    return blockName == "BEDLOAD"      ? "bed load"
           : blockName == "MORPHOLOGY" ? "bed"
                                       : spoken(blockName);
  }

  /// Adds to an action what one of its tags says.
  static void tellOf(const SetupTag& tag, Action& action) {
    if (tag.name == "type" || tag.name == "name") {
      return;
    }
    const bool isPlace = Action::isPlace(tag.name);
    std::string& text = isPlace ? action.place : action.by;
    text += (text.empty() ? "" : ", ") + (isPlace ? "" : tag.name + " ") +
            utf8(fmt::format("{}", fmt::join(listItems(tag.value), " ")));
  }

  /// All boundaries and sources below `block`.
  void readActions(const SetupBlock& block, const std::string& region,
                   const SetupBlock* regionBlock) {
    for (const SetupBlock& child : block.blocks) {
      if (!Action::isOne(child.name)) {
        readActions(child, region, regionBlock);
        continue;
      }
      const bool isSource = child.name == "EXTERNAL_SOURCE";
      const SetupBlock& field = isSource && block.parent != nullptr ? *block.parent : block;
      Action action{region,
                    field.schema == nullptr || &field == regionBlock ? "" : fieldOf(field.name),
                    isSource ? "source" : spoken(child.name),
                    utf8(child.value("name")),
                    utf8(child.value("type")),
                    "",
                    "",
                    child.line};
      for (const SetupTag& tag : child.tags) {
        tellOf(tag, action);
      }
      model_.actions.push_back(std::move(action));
    }
  }

  /// All files that are named below `block`, with the tag that names them.
  void readNamedFiles(const SetupBlock& block) {
    for (const SetupTag& tag : block.tags) {
      if (tag.schema == nullptr) {
        continue;
      }
      const KESTparse::ValueKind kind = KESTparse::traitsOf(*tag.schema).kind;
      if (kind != KESTparse::ValueKind::file && kind != KESTparse::ValueKind::seriesFile) {
        continue;
      }
      const std::filesystem::path path = resolved(tag.value);
      NamedFile file = describe(utf8(tag.value), utf8(whereOf(block)), path);
      if (!file.exists && kind == KESTparse::ValueKind::file && tag.name != "mesh" &&
          block.name != "GEOMETRY") {
        tell(Severity::error,
             "the file '" + tag.value + "' of " + whereOf(block) + " cannot be read",
             "names count from the folder '" + folder_.string() + "'", tag.line, "files");
      }
      model_.watched.push_back(path);
      addFile(std::move(file));
    }
    for (const SetupBlock& child : block.blocks) {
      readNamedFiles(child);
    }
  }

  /// A file that several blocks name is listed once.
  void addFile(NamedFile file) {
    const auto [known, isNew] = placeOfFile_.try_emplace(file.sha256, model_.files.size());
    if (isNew) {
      model_.files.push_back(std::move(file));
    } else {
      model_.files[known->second].usedBy += "; " + file.usedBy;
    }
  }

  void readOutputs(const SetupBlock& block, const Region& region) {
    const SetupBlock* const output = block.find("OUTPUT");
    if (output == nullptr) {
      return;
    }
    const auto add = [this, &block, &region](const SetupBlock& of, const std::string& type,
                                             std::string_view tag) {
      const auto interval = of.numbers(tag);
      constexpr double never = 1e30;
      if (interval.empty() || interval[0] <= 0 || interval[0] >= never) {
        return;
      }
      // Drawn while the simulation runs, or written once: the interval means nothing.
      const bool isTimed = type != "KESTviz" && type != "sediment_grid";
      Output entry{region.name, type, "", isTimed ? interval[0] : 0, 0, 0};
      const double span = region.end - region.start;
      entry.times = isTimed && region.hasTime && span >= 0
                        ? static_cast<std::size_t>(std::min(span / interval[0], 1e15)) + 1
                        : 0;
      for (const std::string_view values :
           {"values", "node_values", "element_values", "stringdef_values", "edge_values",
            "boundary_values", "balance_values", "variable"}) {
        if (const SetupTag* const given = of.tag(values); given != nullptr) {
          for (const std::string& item : listItems(given->value)) {
            entry.values += (entry.values.empty() ? "" : ", ") + item;
          }
        }
      }
      entry.values = utf8(entry.values);
      entry.numbers = numbersOf(of, block);
      model_.outputs.push_back(std::move(entry));
    };
    add(*output, "default output", "output_time_step");
    add(*output, "restart file", "restart_time_step");
    for (const SetupBlock* special : output->all("SPECIAL_OUTPUT")) {
      add(*special, utf8(special->value("type")), "output_time_step");
    }
  }

  /// How many numbers an output writes each time: values times places. 0 until the mesh is known,
  /// and where the setup does not tell.
  static double numbersOf(const SetupBlock& output, const SetupBlock& region) {
    const auto count = [&output](std::string_view places, std::string_view values) {
      return static_cast<double>(output.items(places).size() * output.items(values).size());
    };
    double numbers = count("node_ids", "node_values") + count("element_ids", "element_values") +
                     count("stringdefs", "stringdef_values") + count("edge_ids", "edge_values") +
                     static_cast<double>(output.items("balance_values").size());
    if (const SetupBlock* const hydraulics = region.find("HYDRAULICS"); hydraulics != nullptr) {
      numbers += static_cast<double>(hydraulics->all("BOUNDARY").size() *
                                     output.items("boundary_values").size());
    }
    if (output.tag("ids") != nullptr) {
      numbers +=
          static_cast<double>(output.items("ids").size()) * componentsOf(output.value("values"));
    }
    if (output.value("type") == "cut_plane") {
      numbers += cellsOfCut(output, region) * componentsOf(output.value("values"));
    }
    for (const SetupTag& tag : output.tags) {
      // Of a chain: what is written over time at cross sections, rather than once.
      const auto items = listItems(tag.value);
      if (std::find(items.begin(), items.end(), "time") != items.end()) {
        numbers += static_cast<double>(output.items("cross_sections").size());
      }
    }
    return numbers;
  }

  /// How many cells of the ground lie in the plane of an output.
  static double cellsOfCut(const SetupBlock& output, const SetupBlock& region) {
    const SetupBlock* const geometry = region.find("GEOMETRY");
    const std::string plane = output.value("cut_plane");
    double cells = geometry == nullptr ? 0 : 1;
    for (const auto& [axis, tag] :
         {std::pair{'x', "no_cells_i"}, {'y', "no_cells_j"}, {'z', "no_cells_k"}}) {
      if (cells > 0 && plane.find(axis) != std::string::npos) {
        const auto along = geometry->numbers(tag);
        cells *= along.empty() ? 0 : std::max(along[0], 0.0);
      }
    }
    return plane.size() == 2 ? cells : 0;
  }

  /// How many numbers the values of an output take at one place.
  static double componentsOf(const std::string& values) {
    double count = 0;
    for (const std::string& value : listItems(values)) {
      const bool isVector =
          std::any_of(vectorValues.begin(), vectorValues.end(), [&value](std::string_view vector) {
            return value == vector || value.find(fmt::format("[{}]", vector)) != std::string::npos;
          });
      count += isVector ? 2 : 1;
    }
    return count;
  }

  // 2D.

  void readPlane(const SetupBlock& block, Region& region) {
    ordered_json mesh = {{"region", region.name},
                         {"subject", "mesh-" + std::to_string(model_.page["meshes"].size())},
                         {"label", region.name}};
    const std::string subject = mesh["subject"];
    subjectOfBlock_.emplace(&block, subject);
    const SetupTag* const file = meshTagOf(block);
    std::set<std::string> names;
    if (file != nullptr) {
      mesh["file"] = utf8(file->value);
      // A file that has come only now is read when it is looked at again.
      const auto read = named(*block.find("GEOMETRY"), *file, subject) == nullptr
                            ? meshes_.end()
                            : meshes_.find(resolved(file->value).string());
      if (read != meshes_.end()) {
        addMesh(read->second, file->value, mesh, block, names);
        addOutputSizes(region, mesh);
      }
    } else {
      tell(Severity::error, "the region '" + region.name + "' names no mesh",
           "give the tag 'file' in its block GEOMETRY", block.line, subject);
    }
    mesh["tables"] = tablesOf(block);
    addSources(block, mesh);
    readBed(block, region);
    model_.page["meshes"].push_back(std::move(mesh));
  }

  void addOutputSizes(const Region& region, const ordered_json& mesh) {
    for (Output& output : model_.outputs) {
      if (output.region == region.name && output.numbers == 0 &&
          (output.type == "node_centered" || output.type == "element_centered")) {
        output.numbers = mesh[output.type == "node_centered" ? "nodes" : "elements"].get<double>() *
                         componentsOf(output.values);
      }
    }
  }

  void addMesh(const ReadMesh& file, const std::string& fileName, ordered_json& mesh,
               const SetupBlock& block, std::set<std::string>& names) {
    const Kestrix::Mesh& read = file.mesh;
    const Kestrix::MeshNodeIndex index(read.nodeIds);
    PackedMesh packed = packMesh(read, index);
    const std::string subject = mesh["subject"];
    mesh["nodes"] = packed.numNodes;
    mesh["elements"] = packed.numElements;
    mesh["origin"] = packed.origin;
    mesh["step"] = packed.step;
    mesh["prediction"] = packed.prediction;
    mesh["lowest"] = packed.lowest;
    mesh["highest"] = packed.highest;
    mesh["area"] = packed.area;
    mesh["materials"] = packed.materials;
    mesh["materialCounts"] = packed.materialCounts;
    mesh["materialAreas"] = packed.materialAreas;
    mesh["streams"] = ordered_json::array();
    for (auto& stream : packed.streams) {
      mesh["streams"].push_back(model_.streams.size());
      model_.streams.push_back(std::move(stream));
    }
    if (packed.numElements == 0) {
      tell(Severity::error, "the mesh '" + fileName + "' holds no element that can be drawn", "", 0,
           subject);
    }
    if (packed.numLost > 0) {
      tell(Severity::error,
           fmt::format(
               "{} of the mesh '{}' name nodes that are not there",
               packed.numLost == 1 ? "1 element" : fmt::format("{} elements", packed.numLost),
               fileName),
           "they are not drawn", 0, subject);
    }
    for (const Kestrix::MeshFault& fault : read.faults) {
      const Kestrix::MeshPosition at = Kestrix::meshPosition(*file.text, fault.place);
      model_.notices.push_back(
          {Severity::error,
           fmt::format(
               "{} of the mesh '{}' cannot be read",
               read.faults.size() == 1 ? "one line" : fmt::format("{} lines", read.faults.size()),
               fileName),
           "the first of them is told", "", fileName, at.line, subject});
      break;
    }
    addStrings(read, index, packed, block, mesh, fileName, names);
  }

  /// The node strings of the mesh with what the setup says of them.
  void addStrings(const Kestrix::Mesh& read, const Kestrix::MeshNodeIndex& index,
                  const PackedMesh& packed, const SetupBlock& block, ordered_json& mesh,
                  const std::string& fileName, std::set<std::string>& names) {
    ordered_json strings = ordered_json::array();
    const SetupBlock* const geometry = block.find("GEOMETRY");
    for (const Kestrix::MeshString& string : read.strings) {
      ordered_json places = ordered_json::array();
      ordered_json ids = ordered_json::array();
      for (const std::int32_t id : string.nodeIds) {
        const std::uint32_t node = index.find(id);
        if (node != Kestrix::MeshNodeIndex::none) {
          places.push_back(packed.placeOfNode[node]);
        }
        ids.push_back(id);
      }
      ordered_json entry = {{"name", utf8(string.name)}, {"nodes", places}, {"ids", ids}};
      const SetupBlock* definition = nullptr;
      for (const SetupBlock* candidate : geometry->all("STRINGDEF")) {
        definition = candidate->value("name") == string.name ? candidate : definition;
      }
      if (definition != nullptr) {
        entry["upstream"] = utf8(definition->value("upstream_direction"));
      }
      entry["uses"] = usesOf(block, string.name);
      names.insert(string.name);
      strings.push_back(std::move(entry));
    }
    for (const SetupBlock* definition : geometry->all("STRINGDEF")) {
      if (!names.contains(definition->value("name"))) {
        tell(Severity::error,
             "the mesh '" + fileName + "' has no node string '" + definition->value("name") + "'",
             "names of node strings stand at the end of its NS lines",
             definition->tag("name") == nullptr ? definition->line : definition->tag("name")->line,
             mesh["subject"]);
      }
    }
    mesh["strings"] = std::move(strings);
    mesh["inner"] = innerBoundariesOf(block);
  }

  static ordered_json innerBoundariesOf(const SetupBlock& block) {
    ordered_json all = ordered_json::array();
    for (const std::string_view path : {"HYDRAULICS", "MORPHOLOGY/BEDLOAD"}) {
      if (const SetupBlock* const holder = block.find(path); holder != nullptr) {
        for (const SetupBlock* inner : holder->all("INNER_BOUNDARY")) {
          all.push_back({{"type", utf8(inner->value("type"))},
                         {"first", utf8(inner->value("string_name1"))},
                         {"second", utf8(inner->value("string_name2"))},
                         {"field", path == "HYDRAULICS" ? "hydraulics" : "bed load"}});
        }
      }
    }
    return all;
  }

  /// What acts on a string: field, kind and type.
  static ordered_json usesOf(const SetupBlock& block, const std::string& name) {
    ordered_json uses = ordered_json::array();
    for (const auto& [path, field] : {std::pair{"HYDRAULICS", "hydraulics"},
                                      {"MORPHOLOGY/BEDLOAD", "bed load"},
                                      {"MORPHOLOGY/SUSPENDED_LOAD", "suspended load"}}) {
      const SetupBlock* const holder = block.find(path);
      if (holder == nullptr) {
        continue;
      }
      for (const SetupBlock& child : holder->blocks) {
        const bool isInner =
            child.name == "INNER_BOUNDARY" &&
            (child.value("string_name1") == name || child.value("string_name2") == name);
        if (isInner || (child.name == "BOUNDARY" && child.value("string_name") == name)) {
          uses.push_back({{"field", field},
                          {"kind", isInner ? "inner boundary" : "boundary"},
                          {"type", utf8(child.value("type"))},
                          {"name", utf8(child.value("name"))}});
        }
      }
    }
    return uses;
  }

  /// What the setup gives to elements by their materials.
  static ordered_json tablesOf(const SetupBlock& block) {
    ordered_json tables = ordered_json::array();
    const auto add = [&tables, &block](std::string_view path, std::string_view keys,
                                       std::string_view values, std::string_view label,
                                       std::string_view unit, std::string_view otherwise) {
      const SetupBlock* const holder = block.find(path);
      if (holder == nullptr) {
        return;
      }
      const auto materials = holder->items(keys);
      const auto given = holder->items(values);
      const std::string rest = otherwise.empty() ? "" : holder->value(otherwise);
      if (std::min(materials.size(), given.size()) == 0 && rest.empty()) {
        return;
      }
      ordered_json entries = ordered_json::object();
      for (std::size_t i = 0; i < std::min(materials.size(), given.size()); ++i) {
        entries[utf8(materials[i])] = utf8(given[i]);
      }
      tables.push_back({{"label", label}, {"unit", unit}, {"values", entries}});
      if (!rest.empty()) {
        tables.back()["otherwise"] = utf8(rest);
      }
    };
    const SetupBlock* const friction = block.find("HYDRAULICS/FRICTION");
    const std::string law = friction == nullptr ? "" : friction->value("type");
    const std::string_view unit = law == "strickler" ? "m^(1/3)/s"
                                  : law == "manning" ? "s/m^(1/3)"
                                                     : "m";
    const bool hasTable = friction != nullptr && friction->value("input_type") == "index_table";
    add("HYDRAULICS/FRICTION", hasTable ? "index" : "", "friction",
        law.empty() ? "friction" : utf8("friction (" + law + ")"), unit, "default_friction");
    for (const auto& [tag, label, tagUnit] : {std::tuple{"h", "initial depth", "m"},
                                              {"wse", "initial water level", "m"},
                                              {"u", "initial velocity along x", "m/s"},
                                              {"v", "initial velocity along y", "m/s"}}) {
      add("HYDRAULICS/INITIAL", "index", tag, label, tagUnit, "");
    }
    add("MORPHOLOGY/BEDMATERIAL/SOIL_ASSIGNMENT", "index", "soil", "soil", "", "");
    add("MORPHOLOGY/PARAMETER", "control_volume_thickness_index", "control_volume_thickness",
        "control volume", "m", "");
    add("MORPHOLOGY/BEDLOAD/FORMULA", "theta_critical_index", "theta_critical",
        "critical Shields value", "–", "");
    add("MORPHOLOGY/BEDLOAD/FORMULA", "bedforms_index", "bedforms_factor", "bedforms factor", "–",
        "");
    add("MORPHOLOGY/BEDLOAD/PARAMETER", "upwind_index", "upwind", "upwind factor of bed load", "–",
        "");
    add("MORPHOLOGY/BEDLOAD/DIRECTION", "lateral_index", "radius_static", "radius of curvature",
        "m", "");
    for (const auto& [tag, label] : {std::pair{"angle_failure_dry", "failure angle, dry"},
                                     {"angle_failure_wetted", "failure angle, wetted"},
                                     {"angle_failure_deposited", "failure angle, deposited"}}) {
      add("MORPHOLOGY/GRAVITATIONAL_TRANSPORT", "index", tag, label, "°", "");
    }
    add("MORPHOLOGY/SUSPENDED_LOAD/INITIAL", "index", "concentration", "initial concentration", "–",
        "");
    add("MORPHOLOGY/SUSPENDED_LOAD/INITIAL", "index", "mixture", "initial suspended mixture", "",
        "");
    return tables;
  }

  static void addSources(const SetupBlock& block, ordered_json& mesh) {
    mesh["sources"] = ordered_json::array();
    for (const auto& [path, field] : {std::pair{"HYDRAULICS/SOURCE", "hydraulics"},
                                      {"MORPHOLOGY/SOURCE", "bed"},
                                      {"MORPHOLOGY/SUSPENDED_LOAD/SOURCE", "suspended load"}}) {
      const SetupBlock* const holder = block.find(path);
      if (holder == nullptr) {
        continue;
      }
      for (const SetupBlock* source : holder->all("EXTERNAL_SOURCE")) {
        ordered_json elements = source->numbers("element_ids");
        for (const double id : source->numbers("elem_ids")) {
          elements.push_back(id);
        }
        mesh["sources"].push_back({{"name", utf8(source->value("name"))},
                                   {"field", field},
                                   {"type", utf8(source->value("type"))},
                                   {"elements", elements},
                                   {"nodes", source->numbers("node_ids")},
                                   {"materials", source->numbers("index")}});
      }
    }
  }

  void readBed(const SetupBlock& block, const Region& region) {
    const SetupBlock* const bed = block.find("MORPHOLOGY/BEDMATERIAL");
    if (bed == nullptr) {
      return;
    }
    ordered_json entry = {{"region", region.name},
                          {"diameters", ordered_json::array()},
                          {"mixtures", ordered_json::array()},
                          {"soils", ordered_json::array()}};
    if (const SetupBlock* const grains = bed->find("GRAIN_CLASS"); grains != nullptr) {
      entry["diameters"] = grains->numbers("diameters");
    }
    for (const SetupBlock* mixture : bed->all("MIXTURE")) {
      entry["mixtures"].push_back({{"name", utf8(mixture->value("name"))},
                                   {"fractions", mixture->numbers("volume_fraction")}});
    }
    const SetupBlock* const assignment = bed->find("SOIL_ASSIGNMENT");
    for (const SetupBlock* soil : bed->all("SOIL_DEF")) {
      ordered_json layers = ordered_json::array();
      for (const SetupBlock* layer : soil->all("LAYER")) {
        const auto bottom = layer->numbers("bottom_elevation");
        layers.push_back(
            {{"mixture", utf8(layer->value("mixture"))},
             {"bottom", bottom.empty() ? ordered_json(nullptr) : ordered_json(bottom[0])}});
      }
      ordered_json materials = ordered_json::array();
      if (assignment != nullptr) {
        const auto indices = assignment->items("index");
        const auto soils = assignment->items("soil");
        for (std::size_t i = 0; i < std::min(indices.size(), soils.size()); ++i) {
          if (soils[i] == soil->value("name")) {
            materials.push_back(utf8(indices[i]));
          }
        }
      }
      entry["soils"].push_back(
          {{"name", utf8(soil->value("name"))}, {"layers", layers}, {"materials", materials}});
    }
    model_.page["beds"].push_back(std::move(entry));
  }

  // 1D.

  void readChain(const SetupBlock& block, const Region& region) {
    ordered_json chain = {{"region", region.name},
                          {"sections", ordered_json::array()},
                          {"marks", ordered_json::array()},
                          {"bands", ordered_json::array()}};
    std::set<std::string> known;
    if (const SetupBlock* const geometry = block.find("GEOMETRY"); geometry != nullptr) {
      for (const std::string& name : geometry->items("cross_section_order")) {
        chain["sections"].push_back(utf8(name));
        known.insert(name);
      }
    }
    const auto mark = [this, &chain, &known](const SetupBlock& of, const std::string& field) {
      ordered_json at = ordered_json::array();
      for (const std::string_view tag : {"string", "cross_section", "cross_section_name_1",
                                         "cross_section_name_2", "cross_sections"}) {
        for (const std::string& name : of.items(tag)) {
          at.push_back(utf8(name));
          if (tag != "string" && !known.contains(name)) {
            tell(Severity::error, "the chain has no cross section '" + name + "'",
                 "cross sections are listed in cross_section_order", of.line, "chain");
          }
        }
      }
      chain["marks"].push_back({{"kind", spoken(of.name)},
                                {"field", field},
                                {"name", utf8(of.value("name"))},
                                {"type", utf8(of.value("type"))},
                                {"side", utf8(of.value("side"))},
                                {"at", at}});
    };
    for (const auto& [path, field] : {std::pair{"HYDRAULICS", "hydraulics"},
                                      {"HYDRAULICS/SOURCE", "hydraulics"},
                                      {"MORPHOLOGY/BEDLOAD", "bed load"},
                                      {"MORPHOLOGY/SUSPENDED_LOAD", "suspended load"},
                                      {"MORPHOLOGY/SOURCE", "bed"},
                                      {"MORPHOLOGY/SUSPENDED_LOAD/SOURCE", "suspended load"}}) {
      if (const SetupBlock* const holder = block.find(path); holder != nullptr) {
        for (const SetupBlock& child : holder->blocks) {
          if (child.name == "BOUNDARY" || child.name == "INNER_BOUNDARY" ||
              child.name == "EXTERNAL_SOURCE") {
            mark(child, field);
          }
        }
      }
    }
    addBands(block, chain);
    readBed(block, region);
    model_.page["chains"].push_back(std::move(chain));
  }

  /// What holds along the chain.
  static void addBands(const SetupBlock& block, ordered_json& chain) {
    if (const SetupBlock* const friction = block.find("HYDRAULICS/FRICTION"); friction != nullptr) {
      chain["bands"].push_back({{"label", "friction (" + utf8(friction->value("type")) + ")"},
                                {"text", utf8(friction->value("default_friction")) +
                                             " unless the cross section tells"}});
    }
    if (const SetupBlock* const soils = block.find("MORPHOLOGY/BEDMATERIAL/SOIL_ASSIGNMENT");
        soils != nullptr) {
      const auto indices = soils->items("index");
      const auto names = soils->items("soil");
      std::string text;
      for (std::size_t i = 0; i < std::min(indices.size(), names.size()); ++i) {
        text += (text.empty() ? "" : ", ") + indices[i] + ": " + names[i];
      }
      chain["bands"].push_back({{"label", "soils by index"}, {"text", utf8(text)}});
    }
  }

  // The ground.

  void readSubsurface(const SetupBlock& block, const Region& region) {
    const SetupBlock* const geometry = block.find("GEOMETRY");
    if (geometry == nullptr) {
      return;
    }
    const auto origin = geometry->numbers("ref_coordinates");
    const auto i = geometry->numbers("base_vector_i");
    const auto j = geometry->numbers("base_vector_j");
    const auto size = geometry->numbers("cell_size");
    const auto ni = geometry->numbers("no_cells_i");
    const auto nj = geometry->numbers("no_cells_j");
    if (origin.size() < 2 || i.size() < 2 || j.size() < 2 || size.empty() || ni.empty() ||
        nj.empty()) {
      return;
    }
    const auto corner = [&](double a, double b) {
      return ordered_json::array({origin[0] + size[0] * (a * i[0] + b * j[0]),
                                  origin[1] + size[0] * (a * i[1] + b * j[1])});
    };
    model_.page["grounds"].push_back(
        {{"region", region.name},
         {"outline", {corner(0, 0), corner(ni[0], 0), corner(ni[0], nj[0]), corner(0, nj[0])}}});
  }

  // Series.

  void readSeriesBelow(const SetupBlock& block) {
    for (const SetupTag& tag : block.tags) {
      if (tag.schema != nullptr &&
          KESTparse::traitsOf(*tag.schema).kind == KESTparse::ValueKind::seriesFile) {
        addSeries(block, tag);
      }
    }
    for (const SetupBlock& child : block.blocks) {
      readSeriesBelow(child);
    }
  }

  [[nodiscard]] const Region* regionOf(const SetupBlock& block) const {
    for (const SetupBlock* above = &block; above != nullptr; above = above->parent) {
      for (const Region& region : model_.regions) {
        if (region.block == above) {
          return &region;
        }
      }
    }
    return nullptr;
  }

  void addSeries(const SetupBlock& block, const SetupTag& tag) {
    const std::size_t number = model_.page["series"].size();
    const std::string subject = "series-" + std::to_string(number);
    subjectOfBlock_.emplace(&block, subject);
    const std::string type =
        block.value(block.name == "MONITORED_VARIABLE" ? "root_value_type" : "type");
    const Quantity quantity = quantityOf(tag.name, type, block.path());
    const Region* const region = regionOf(block);
    ordered_json entry = {{"subject", subject},
                          {"region", region == nullptr ? "" : region->name},
                          {"where", utf8(whereOf(block))},
                          {"label", utf8(labelOf(block))},
                          {"kind", spoken(block.name)},
                          {"type", utf8(type)},
                          {"quantity", quantity.what},
                          {"unit", quantity.unit},
                          {"argument", quantity.argument},
                          {"argumentUnit", quantity.argumentUnit},
                          {"file", utf8(tag.value)},
                          {"remarks", ordered_json::array()}};
    if (region == nullptr) {
      // A controller's files belong to no region.
      addFile(describe(utf8(tag.value), utf8(whereOf(block)), resolved(tag.value)));
    }
    if (const auto text = named(block, tag, subject); text != nullptr) {
      const Series series = readSeries(*text);
      describeSeries(series, entry, region, block, tag);
    }
    model_.page["series"].push_back(std::move(entry));
  }

  /// Steps of more than half of the range within a hundredth of the time; the first few of them.
  static ordered_json jumpsOf(const Series& series) {
    constexpr std::size_t most = 3;
    constexpr double brief = 0.01;
    const auto& times = series.columns[0];
    const double pause = brief * (times.back() - times.front());
    ordered_json jumps = ordered_json::array();
    for (std::size_t c = 1; c < series.columns.size(); ++c) {
      const auto& column = series.columns[c];
      const auto [low, high] = std::minmax_element(column.begin(), column.end());
      const double least = (*high - *low) / 2;
      for (std::size_t i = 1; least > 0 && i < column.size() && jumps.size() < most; ++i) {
        if (std::abs(column[i] - column[i - 1]) >= least && times[i] - times[i - 1] <= pause) {
          jumps.push_back({{"time", times[i]}, {"from", column[i - 1]}, {"to", column[i]}});
        }
      }
    }
    return jumps;
  }

  void describeSeries(const Series& series, ordered_json& entry, const Region* region,
                      const SetupBlock& block, const SetupTag& tag) {
    const std::string subject = entry["subject"];
    const auto remark = [&](Severity severity, const std::string& what) {
      entry["remarks"].push_back(what);
      tell(severity, "the series '" + tag.value + "' of " + whereOf(block) + " " + what, "",
           tag.line, subject);
    };
    entry["rows"] = series.size();
    if (series.oddLine > 0) {
      remark(Severity::error,
             fmt::format("has a line that is no row of it: line {}", series.oddLine));
    }
    if (series.size() == 0 || series.columns.size() < 2) {
      remark(Severity::error, series.size() == 0 ? "is empty" : "has only one column");
      return;
    }
    const auto& times = series.columns[0];
    entry["first"] = times.front();
    entry["last"] = times.back();
    entry["columns"] = ordered_json::array();
    for (std::size_t c = 1; c < series.columns.size(); ++c) {
      const auto [low, high] =
          std::minmax_element(series.columns[c].begin(), series.columns[c].end());
      entry["columns"].push_back({{"lowest", *low}, {"highest", *high}});
    }
    const bool isOverTime = entry["argument"] == "time";
    if (isOverTime) {
      entry["jumps"] = jumpsOf(series);
    }
    const auto falls =
        std::adjacent_find(times.begin(), times.end(), [](double a, double b) { return b <= a; });
    if (falls != times.end()) {
      remark(Severity::error, "does not increase behind " + shown(*falls));
    }
    if (isOverTime && region != nullptr && region->hasTime) {
      if (times.back() < region->end) {
        remark(Severity::warning, "ends at " + shown(times.back()) + " s, before the simulation (" +
                                      shown(region->end) + " s)");
      }
      if (times.front() > region->start) {
        remark(Severity::warning, "begins at " + shown(times.front()) +
                                      " s, after the start of the simulation (" +
                                      shown(region->start) + " s)");
      }
    }
    std::vector<std::uint8_t> bytes;
    const std::vector<std::size_t> rows = rowsToDraw(series, rowLimit);
    for (const auto& column : series.columns) {
      for (const std::size_t row : rows) {
        std::array<std::uint8_t, sizeof(double)> piece{};
        std::memcpy(piece.data(), &column[row], sizeof(double));
        bytes.insert(bytes.end(), piece.begin(), piece.end());
      }
    }
    entry["shownRows"] = rows.size();
    entry["stream"] = model_.streams.size();
    model_.streams.push_back(deflated(bytes));
  }

  // Links.

  void readLinks(const SetupBlock& domain) {
    ordered_json& nodes = model_.page["graph"]["nodes"];
    for (const Region& region : model_.regions) {
      nodes.push_back({{"id", "region " + upper(region.name)},
                       {"label", region.name},
                       {"kind", region.kind + " region"}});
    }
    if (const SetupBlock* const couplings = domain.find("COUPLINGS"); couplings != nullptr) {
      for (const SetupBlock& coupling : couplings->blocks) {
        if (coupling.name == "COUPLING") {
          addCoupling(coupling);
        } else if (coupling.name == "COUPLING_LATERAL") {
          addEdge(coupling, coupling.value("kestchain"), coupling.value("kestplane"), "lateral",
                  "over the dykes", true);
        }
      }
    }
    for (const SetupBlock* controller : domain.all("CONTROLLER")) {
      addController(*controller);
    }
  }

  static std::string upper(const std::string& name) { return KESTparse::toUpper(name); }

  void addEdge(const SetupBlock& block, const std::string& from, const std::string& to,
               const std::string& label, const std::string& detail, bool isBoth) {
    for (const std::string& name : {from, to}) {
      const bool isKnown = std::any_of(
          model_.regions.begin(), model_.regions.end(),
          [&name](const Region& region) { return upper(region.name) == upper(utf8(name)); });
      if (!isKnown) {
        tell(Severity::error, "there is no region '" + name + "'", "it is named by a coupling",
             block.line, "links");
        const ordered_json missing = {{"id", "region " + upper(utf8(name))},
                                      {"label", utf8(name)},
                                      {"kind", "missing region"}};
        auto& nodes = model_.page["graph"]["nodes"];
        if (std::find(nodes.begin(), nodes.end(), missing) == nodes.end()) {
          nodes.push_back(missing);
        }
      }
    }
    model_.page["graph"]["edges"].push_back({{"from", "region " + upper(utf8(from))},
                                             {"to", "region " + upper(utf8(to))},
                                             {"label", utf8(label)},
                                             {"detail", utf8(detail)},
                                             {"both", isBoth}});
  }

  void addCoupling(const SetupBlock& coupling) {
    std::string detail;
    for (const SetupBlock& field : coupling.blocks) {
      std::string names;
      for (const SetupTag& tag : field.tags) {
        names += (names.empty() ? "" : " → ") + tag.value;
      }
      detail += (detail.empty() ? "" : "; ") + spoken(field.name) + ": " + names;
    }
    const std::string type = coupling.value("type");
    std::vector<std::string> from;
    std::vector<std::string> to;
    for (const std::string_view tag : {"upstream_subdomain", "upstream_subdomain1",
                                       "upstream_subdomain2", "external_subdomain"}) {
      if (coupling.tag(tag) != nullptr) {
        from.push_back(coupling.value(tag));
      }
    }
    for (const std::string_view tag : {"downstream_subdomain", "downstream_subdomain1",
                                       "downstream_subdomain2", "kestrix_subdomain"}) {
      if (coupling.tag(tag) != nullptr) {
        to.push_back(coupling.value(tag));
      }
    }
    const bool isBoth = coupling.value("two_way_coupling") == "yes" || type == "external" ||
                        type == "riemann" || type == "confluence_wse";
    for (const std::string& a : from) {
      for (const std::string& b : to) {
        addEdge(coupling, a, b, type, detail, isBoth);
      }
    }
  }

  void addController(const SetupBlock& controller) {
    auto& graph = model_.page["graph"];
    const std::string name = utf8(controller.value("name"));
    const std::string id = "controller " + name;
    graph["nodes"].push_back(
        {{"id", id}, {"label", name}, {"kind", utf8(controller.value("type")) + " controller"}});
    const auto link = [&](const SetupBlock& variable, bool isMonitored) {
      const std::string position = variable.value("position");
      const std::string region = "region " + upper(utf8(position.substr(0, position.find('.'))));
      graph["edges"].push_back(
          {{"from", isMonitored ? region : id},
           {"to", isMonitored ? id : region},
           {"label", utf8(isMonitored ? "measures " + variable.value("type") : "sets")},
           {"detail", utf8(variable.value("name") + " at " + position)},
           {"both", false}});
    };
    for (const SetupBlock* variable : controller.all("MONITORED_VARIABLE")) {
      link(*variable, true);
    }
    for (const SetupBlock* variable : controller.all("MANIPULATED_VARIABLE")) {
      link(*variable, false);
    }
  }

  std::filesystem::path folder_;
  Model model_;
  std::map<const SetupBlock*, std::string> subjectOfBlock_;     // what shows its mesh or its series
  std::map<std::string, std::size_t> placeOfFile_;              // in the list of files, by path
  std::map<std::filesystem::path, std::string> subjectOfFile_;  // what shows the content of a file
  std::map<std::string, ReadFile> files_;                       // by paths
  std::map<std::string, ReadMesh> meshes_;                      // by paths
  std::map<std::string, const ReadMesh*>
      meshNames_;  // by the paths under which the check opens them
};

}  // namespace

bool Action::isOne(std::string_view blockName) {
  return blockName == "BOUNDARY" || blockName == "INNER_BOUNDARY" || blockName == "EXTERNAL_SOURCE";
}

bool Action::isPlace(std::string_view tagName) {
  constexpr std::array<std::string_view, 19> places{"string_name",
                                                    "string_name1",
                                                    "string_name2",
                                                    "string",
                                                    "cross_section",
                                                    "cross_sections",
                                                    "cross_section_name_1",
                                                    "cross_section_name_2",
                                                    "side",
                                                    "element_ids",
                                                    "elem_ids",
                                                    "node_ids",
                                                    "index",
                                                    "material_index",
                                                    "face",
                                                    "from_to1",
                                                    "from_to2",
                                                    "x_values",
                                                    "y_values"};
  return std::find(places.begin(), places.end(), tagName) != places.end();
}

Model readModel(const std::filesystem::path& path, const std::filesystem::path& folder) {
  return ModelReader(path, folder).run();
}

}  // namespace kcf
