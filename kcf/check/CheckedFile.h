/// \file
/// A command file that was looked at, as the forms of output see it.
#pragma once

#include <cstddef>
#include <optional>
#include <set>
#include <string>

#include "KESTparse/document/Document.h"

namespace kcf {

/// A place with the path of its file as it is told. Lines and columns count from 1.
struct ShownPlace {
  std::string file;
  KESTparse::LineColumn begin;
  KESTparse::LineColumn end;  ///< excluded
  bool isInCommandFile = true;
};

/// A command file and what is wrong with it.
class CheckedFile {
 public:
  /// \param path as it is told.
  /// \param directory the folder that names in it count from, as it is told; empty for the current
  /// one.
  CheckedFile(std::string path, std::string directory, KESTparse::Document& document);

  [[nodiscard]] const std::string& path() const { return path_; }
  [[nodiscard]] const std::string& text() const { return document_->syntax().text(); }
  [[nodiscard]] const KESTparse::LineTable& lines() const { return document_->lines(); }
  [[nodiscard]] const std::vector<KESTparse::Diagnostic>& diagnostics() const {
    return *diagnostics_;
  }
  [[nodiscard]] std::size_t errors() const { return errors_; }
  [[nodiscard]] std::size_t warnings() const { return diagnostics_->size() - errors_; }
  /// See `KESTparse::Document`.
  [[nodiscard]] std::optional<bool> converts() const { return converts_; }

  [[nodiscard]] ShownPlace placeOf(KESTparse::Span at) const;
  [[nodiscard]] ShownPlace placeOf(const KESTparse::TextPlace& place) const;

 private:
  std::string path_;
  std::string directory_;
  KESTparse::Document* document_;
  const std::vector<KESTparse::Diagnostic>* diagnostics_;
  std::size_t errors_;
  std::optional<bool> converts_;
};

/// One of the forms in which `kcf check` tells what it finds. `render` may be called from several
/// threads at once; what it returns is written in the order of the files.
class Report {
 public:
  Report() = default;
  Report(const Report&) = delete;
  Report& operator=(const Report&) = delete;
  virtual ~Report() = default;

  /// What is told of one file.
  struct Part {
    std::string file;                  ///< of the file as a whole
    std::string diagnostics;           ///< of what is wrong with it
    std::string firstCode;             ///< of the first diagnostic; empty when there is none
    std::set<std::string> codes = {};  ///< of all, where the form lists them
    std::size_t errors = 0;
    std::size_t warnings = 0;
  };

  [[nodiscard]] Part partOf(const CheckedFile& file) const;
  /// Takes the part of the next file.
  virtual void add(Part part) = 0;
  /// Ends the output.
  virtual void finish() = 0;

 protected:
  virtual void render(const CheckedFile& file, Part& part) const = 0;
};

}  // namespace kcf
