/// \file
/// What all fuzz targets share: a run that stops with a message of its own is no find.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace fuzz {

/// Makes reports silent and what ends the converter a `KESTparse::Stopped`, and forgets what
/// earlier runs read from files.
void beginRun();

/// The bytes of a run.
inline std::string_view asText(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

/// A file that holds the bytes of a run, for what is read by name.
class ScratchFile {
 public:
  explicit ScratchFile(std::string_view content);
  ScratchFile(const ScratchFile&) = delete;
  ScratchFile& operator=(const ScratchFile&) = delete;
  ~ScratchFile();

  [[nodiscard]] const std::string& path() const { return path_; }

 private:
  std::string path_;
};

/// Reads `text` as a command file and takes it the whole road to the text of its document; empty
/// when the setup has errors.
std::string convert(std::string_view text);

/// What the converter makes of a command file.
struct Outcome {
  bool converts;     ///< whether there is a document
  std::string text;  ///< the document, or what ends the run; empty when the validation finds errors
};
Outcome outcomeOf(std::string_view text);

/// Ends the run with a find where what must hold does not.
void require(bool holds, const char* what);

}  // namespace fuzz
