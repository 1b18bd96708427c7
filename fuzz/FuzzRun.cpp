#include "FuzzRun.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <streambuf>
#include <utility>

#include "DocumentWriter.h"
#include "JsonEmission.h"
#include "KESTparse/base/Console.h"
#include "KESTparse/base/GlobalValues.h"
#include "KESTparse/framework/Guard.h"
#include "KESTparse/framework/InputParser.h"
#include "KESTparse/root/KestrixInputRoot.h"

namespace fuzz {
namespace {

/// Takes all that is written to the console and keeps nothing, until the program ends.
class Silence : public std::streambuf {
 public:
  Silence() : out_(std::cout.rdbuf(this)), error_(std::cerr.rdbuf(this)) {}
  Silence(const Silence&) = delete;
  Silence& operator=(const Silence&) = delete;
  ~Silence() override {
    std::cout.rdbuf(out_);
    std::cerr.rdbuf(error_);
  }

 protected:
  int overflow(int c) override { return c == EOF ? 0 : c; }
  std::streamsize xsputn(const char* /*text*/, std::streamsize size) override { return size; }

 private:
  std::streambuf* out_;
  std::streambuf* error_;
};

}  // namespace

void beginRun() {
  static KESTparse::QuietConsole host;
  static const Silence silence;
  KESTparse::GlobalValues& values = KESTparse::GlobalValues::instance();
  values = {};
  values.basePath = ".";
  values.console = &host;
}

ScratchFile::ScratchFile(std::string_view content)
    : path_(std::filesystem::temp_directory_path() / "kestrix-fuzz-XXXXXX") {
  const int descriptor = mkstemp(path_.data());
  const ssize_t written = write(descriptor, content.data(), content.size());
  if (close(descriptor) != 0 || written != static_cast<ssize_t>(content.size())) {
    std::abort();
  }
}

ScratchFile::~ScratchFile() {
  std::remove(path_.c_str());
}

std::string convert(std::string_view text) {
  // The schema is built once for all runs.
  static const KESTparse::KestrixInputRoot schema;
  const auto root = schema.logicalClone(nullptr);
  KESTparse::InputParser parser(*root);
  std::istringstream in{std::string(text)};
  parser.parse(in, true, "fuzz.kcf");
  root->populate();
  const bool isValid = parser.validateSummary(std::cerr);
  if (!isValid || !parser.getMessage().empty()) {
    return {};
  }
  std::string expected;
  try {
    expected = KESTparse::documentOf(*root).dump(2);
  } catch (const nlohmann::json::exception& fault) {
    // Text that is no UTF-8 has no document; the converter ends with the library's report.
    expected = fault.what();
  }
  std::ostringstream out;
  try {
    KESTparse::DocumentWriter(*root).write(out);
  } catch (const nlohmann::json::exception& fault) {
    out << fault.what();
  }
  if (out.view() != expected) {
    std::abort();
  }
  return expected;
}

Outcome outcomeOf(std::string_view text) {
  beginRun();
  Outcome outcome{};
  const auto stop = KESTparse::stopOf([&] { outcome.text = convert(text); });
  if (stop) {
    outcome.text = stop->text;
  }
  // Instead of a document that is no UTF-8 there is a report.
  outcome.converts = !stop && outcome.text.starts_with('{');
  return outcome;
}

void require(bool holds, const char* what) {
  if (!holds) {
    std::fprintf(stderr, "%s\n", what);
    std::abort();
  }
}

}  // namespace fuzz
