#include "set/Study.h"

#include <fmt/format.h>

#include <algorithm>
#include <atomic>
#include <exception>
#include <filesystem>
#include <iostream>
#include <map>
#include <set>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>

#include "KESTparse/base/Conversions.h"
#include "NamedFiles.h"
#include "OutputFile.h"
#include "Tell.h"
#include "Verb.h"

namespace kcf {
namespace {

namespace fs = std::filesystem;

/// A name in braces that stands for the number of a row.
constexpr std::string_view rowName = "row";

/// A text with names of columns in braces.
class Pattern {
 public:
  /// Throws a `std::runtime_error` where a name is no column of `table`.
  Pattern(std::string_view text, const Table& table) {
    for (std::size_t open = text.find('{'); open != std::string_view::npos; open = text.find('{')) {
      const std::size_t close = text.find('}', open);
      if (close == std::string_view::npos) {
        break;
      }
      const std::string_view name = text.substr(open + 1, close - open - 1);
      const auto column = std::find(table.columns.begin(), table.columns.end(), name);
      if (column == table.columns.end() && name != rowName) {
        throw std::runtime_error(fmt::format("there is no column for '{{{}}}'; the table has {}",
                                             name, KESTparse::quotedList(table.columns)));
      }
      pieces_.push_back({std::string(text.substr(0, open)), column - table.columns.begin()});
      text.remove_prefix(close + 1);
    }
    end_ = text;
  }

  /// The columns that it names.
  void addColumnsTo(std::set<std::ptrdiff_t>& columns) const {
    for (const Piece& piece : pieces_) {
      columns.insert(piece.column);
    }
  }

  /// The text for a row; empty where a cell that it names is.
  [[nodiscard]] std::string of(const Table& table, std::size_t row) const {
    std::string text;
    for (const Piece& piece : pieces_) {
      const std::string cell = cellOf(table, row, piece.column);
      if (cell.empty()) {
        return {};
      }
      text += piece.before + cell;
    }
    return text + end_;
  }

  /// A cell that would lead to another folder; empty when there is none.
  [[nodiscard]] std::string straying(const Table& table, std::size_t row) const {
    for (const Piece& piece : pieces_) {
      std::string cell = cellOf(table, row, piece.column);
      if (cell == "." || cell == ".." || cell.find('/') != std::string::npos) {
        return cell;
      }
    }
    return {};
  }

 private:
  struct Piece {
    std::string before;
    std::ptrdiff_t column;  // behind the last one for the number of the row
  };

  static std::string cellOf(const Table& table, std::size_t row, std::ptrdiff_t column) {
    const auto place = static_cast<std::size_t>(column);
    return place == table.columns.size()
               ? std::to_string(row + 1)
               : std::string(KESTparse::trim(table.rows[row].cells[place]));
  }

  std::vector<Piece> pieces_;
  std::string end_;
};

/// A command file of the study.
struct Run {
  fs::path path;
  std::string text;
  std::vector<std::pair<fs::path, fs::path>> files;  // what to put where
  std::string fault;                                 // why it cannot be; empty when it can
};

class Study {
 public:
  Study(const StudyPlan& plan, const KESTparse::TreeEditor& original, Judge& judge)
      : plan_(plan), original_(original), judge_(judge), into_(plan.into, plan.table) {
    std::set<std::ptrdiff_t> names;
    into_.addColumnsTo(names);
    for (const Change& change : plan.changes) {
      paths_.emplace_back(change.path, plan.table);
      values_.emplace_back(change.value, plan.table);
      paths_.back().addColumnsTo(names);
      values_.back().addColumnsTo(names);
    }
    for (std::size_t i = 0; i < plan.table.columns.size(); ++i) {
      if (names.contains(static_cast<std::ptrdiff_t>(i))) {
        continue;
      }
      const std::string& column = plan.table.columns[i];
      try {
        original.requireTag(column);
      } catch (const KESTparse::EditFault& fault) {
        throw std::runtime_error(
            fmt::format("{}: the column '{}' is no path, and nothing names it as {{{}}}: {}",
                        plan.tableName, column, column, fault.what()));
      }
      columns_.push_back(i);
    }
  }

  int write() {
    runs_.resize(plan_.table.rows.size());
    prepareAll();
    requireOwnPlaces();
    if (const int status = tellFaults(); status != status::done) {
      return status;
    }
    for (const Run& run : runs_) {
      write(run);
    }
    std::cout << fmt::format("{} command file{} written\n", runs_.size(),
                             runs_.size() == 1 ? "" : "s");
    return status::done;
  }

 private:
  void prepareAll() {
    std::atomic<std::size_t> next = 0;
    const auto work = [&] {
      for (std::size_t row = next++; row < runs_.size(); row = next++) {
        try {
          prepare(row, runs_[row]);
        } catch (const std::exception& fault) {
          runs_[row].fault = fmt::format(": {}\n", reasonOf(fault));
        }
      }
    };
    const std::size_t most = std::max(1U, std::thread::hardware_concurrency());
    std::vector<std::jthread> workers;
    for (std::size_t i = 1; i < std::min(most, runs_.size()); ++i) {
      workers.emplace_back(work);
    }
    work();
  }

  /// Makes the text of a row and looks at it as it will stand there.
  void prepare(std::size_t row, Run& run) {
    if (const std::string cell = into_.straying(plan_.table, row); !cell.empty()) {
      throw std::runtime_error(fmt::format("'{}' cannot be a part of a file name", cell));
    }
    run.path = into_.of(plan_.table, row);
    if (run.path.empty()) {
      throw std::runtime_error("a cell that the name of the file needs is empty");
    }
    KESTparse::TreeEditor editor = original_;
    for (std::size_t i = 0; i < values_.size(); ++i) {
      set(editor, paths_[i].of(plan_.table, row), values_[i].of(plan_.table, row));
    }
    for (const std::size_t column : columns_) {
      set(editor, plan_.table.columns[column],
          std::string(KESTparse::trim(plan_.table.rows[row].cells[column])));
    }
    run.text = editor.text();
    KESTparse::Document document = judge_.read(run.text);
    const std::vector<KESTparse::Diagnostic> broken = judge_.broken(document);
    if (haveError(broken)) {
      run.fault = ":\n" + linesOf(broken, "  ");
      return;
    }
    addFiles(document.root(), run);
    if (!plan_.mayReplace && fs::exists(fs::symlink_status(run.path))) {
      throw std::runtime_error(
          fmt::format("'{}' is there already; --force replaces it", run.path.generic_string()));
    }
  }

  /// Finds what is to be put beside the command file.
  void addFiles(const KESTparse::InputBlock& root, Run& run) const {
    const fs::path from = plan_.directory.empty() ? "." : plan_.directory;
    for (const std::string& name : namedFiles(root)) {
      const fs::path source = from / name;
      const fs::path target = (run.path.parent_path() / name).lexically_normal();
      std::error_code unknown;
      if (fs::path(name).is_absolute() || !fs::is_regular_file(source, unknown) ||
          fs::equivalent(source, target, unknown)) {
        continue;
      }
      if (fs::exists(fs::symlink_status(target, unknown))) {
        // A copy of an earlier run is as good as the file.
        if (plan_.mayReplace && plan_.copiesFiles) {
          run.files.emplace_back(source, target);
          continue;
        }
        throw std::runtime_error(
            fmt::format("'{}' is there already, and it is another file", target.generic_string()));
      }
      run.files.emplace_back(source, target);
    }
  }

  /// An empty value leaves the tag as it is.
  static void set(KESTparse::TreeEditor& editor, const std::string& path,
                  const std::string& value) {
    if (!path.empty() && !value.empty()) {
      editor.set(path, value);
    }
  }

  /// Refuses rows that write the same file.
  void requireOwnPlaces() {
    std::map<fs::path, std::size_t> lines;
    for (std::size_t row = 0; row < runs_.size(); ++row) {
      Run& run = runs_[row];
      const std::size_t line = plan_.table.rows[row].line;
      const auto [other, isNew] = lines.try_emplace(run.path.lexically_normal(), line);
      if (!isNew && run.fault.empty()) {
        run.fault = fmt::format(": '{}' would be written twice, by line {} too\n",
                                run.path.generic_string(), other->second);
      }
    }
  }

  [[nodiscard]] int tellFaults() const {
    constexpr std::size_t most = 20;
    std::size_t count = 0;
    for (std::size_t row = 0; row < runs_.size(); ++row) {
      if (!runs_[row].fault.empty() && count++ < most) {
        tell(fmt::format("{}: line {}{}", plan_.tableName, plan_.table.rows[row].line,
                         runs_[row].fault));
      }
    }
    if (count == 0) {
      return status::done;
    }
    if (count > most) {
      tell(fmt::format("and {} more rows", count - most));
    }
    tell(fmt::format("kcf: nothing was written: {} of {} rows {} wrong", count, runs_.size(),
                     count == 1 ? "is" : "are"));
    return status::failed;
  }

  void write(const Run& run) const {
    std::error_code fault;
    const auto require = [&fault](const fs::path& path) {
      if (fault) {
        throw std::runtime_error(
            fmt::format("'{}' cannot be written: {}", path.generic_string(), fault.message()));
      }
    };
    const auto makeFolder = [&](const fs::path& file) {
      if (file.has_parent_path()) {
        fs::create_directories(file.parent_path(), fault);
        require(file.parent_path());
      }
    };
    makeFolder(run.path);
    for (const auto& [source, target] : run.files) {
      makeFolder(target);
      if (plan_.copiesFiles) {
        fs::copy_file(source, target, fs::copy_options::overwrite_existing, fault);
      } else if (!fs::equivalent(source, target, fault)) {
        fault.clear();
        const fs::path folder =
            fs::canonical(target.has_parent_path() ? target.parent_path() : ".");
        fs::create_symlink(fs::canonical(source).lexically_relative(folder), target, fault);
      }
      require(target);
    }
    writeFile(run.path.string(), run.text, plan_.mayReplace);
  }

  const StudyPlan& plan_;
  const KESTparse::TreeEditor& original_;
  Judge& judge_;
  Pattern into_;
  std::vector<Pattern> paths_;
  std::vector<Pattern> values_;
  std::vector<std::size_t> columns_;  // that are paths
  std::vector<Run> runs_;
};

}  // namespace

int writeStudy(const StudyPlan& plan, const KESTparse::TreeEditor& original, Judge& judge) {
  return Study(plan, original, judge).write();
}

}  // namespace kcf
