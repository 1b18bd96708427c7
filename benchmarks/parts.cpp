/// \file
/// The inner parts of a conversion, each by itself.

#include <benchmark/benchmark.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>

#include "DocumentWriter.h"
#include "KESTcore/StandardSerie.h"
#include "KESTparse/base/Files.h"
#include "KESTparse/base/GlobalValues.h"
#include "KESTparse/document/SyntaxTree.h"
#include "KESTparse/framework/InputParser.h"
#include "KESTparse/framework/InputTag.h"
#include "KESTparse/root/KestrixInputRoot.h"

namespace {

using KESTparse::GlobalValues;
using KESTparse::InputBlock;
using KESTparse::KestrixInputRoot;

constexpr int numBlocks = 2000;

/// A setup of repeatable blocks.
std::string setup() {
  std::string text =
      "DOMAIN {\n KESTPLANE_2D {\n  region_name = r\n  OUTPUT {\n   console_time_step = 10\n";
  for (int i = 0; i < numBlocks; ++i) {
    text += "   SPECIAL_OUTPUT {\n    type = KESTviz\n    output_time_step = " + std::to_string(i) +
            ".5\n    variable = velocity\n    gridlines = on\n    threshold_wse = -3.25\n   }\n";
  }
  return text + "  }\n }\n}\n";
}

void parse(KestrixInputRoot& root, const std::string& text) {
  std::istringstream in(text);
  KESTparse::InputParser(root).parse(in, true, "setup.kcf");
}

void countBytes(benchmark::State& state, std::size_t bytes) {
  state.SetBytesProcessed(static_cast<std::int64_t>(bytes) * state.iterations());
}

/// Builds the tables of all places below `master`, of which a run builds those that it uses.
void declareAll(const InputBlock& master) {
  for (const InputBlock& child : master.logicalBlocks()) {
    declareAll(child);
  }
}

void schema(benchmark::State& state) {
  for ([[maybe_unused]] auto _ : state) {
    const KestrixInputRoot root;
    declareAll(root);
  }
}
BENCHMARK(schema);

/// Reading the text and blanking its comments; nothing is left for the state machine.
void commentBlanking(benchmark::State& state) {
  std::string text;
  for (int i = 0; i < 20 * numBlocks; ++i) {
    text += "// a remark on the line\n/* and one\n on two */\n";
  }
  for ([[maybe_unused]] auto _ : state) {
    KestrixInputRoot root;
    parse(root, text);
  }
  countBytes(state, text.size());
}
BENCHMARK(commentBlanking);

void stateMachine(benchmark::State& state) {
  const std::string text = setup();
  for ([[maybe_unused]] auto _ : state) {
    KestrixInputRoot root;
    parse(root, text);
  }
  countBytes(state, text.size());
}
BENCHMARK(stateMachine);

void syntaxTree(benchmark::State& state) {
  const std::string text = setup();
  for ([[maybe_unused]] auto _ : state) {
    benchmark::DoNotOptimize(KESTparse::SyntaxTree(text));
  }
  countBytes(state, text.size());
}
BENCHMARK(syntaxTree);

void population(benchmark::State& state) {
  const std::string text = setup();
  for ([[maybe_unused]] auto _ : state) {
    state.PauseTiming();
    auto root = std::make_unique<KestrixInputRoot>();
    parse(*root, text);
    state.ResumeTiming();
    root->populate();
    state.PauseTiming();
    root.reset();
    state.ResumeTiming();
  }
}
BENCHMARK(population);

void validation(benchmark::State& state) {
  KestrixInputRoot root;
  parse(root, setup());
  root.populate();
  for ([[maybe_unused]] auto _ : state) {
    // A change asks all tags anew.
    ++GlobalValues::instance().treeChanges;
    benchmark::DoNotOptimize(root.validate());
  }
}
BENCHMARK(validation);

void repeatedValidation(benchmark::State& state) {
  KestrixInputRoot root;
  parse(root, setup());
  root.populate();
  for ([[maybe_unused]] auto _ : state) {
    benchmark::DoNotOptimize(root.validate());
  }
}
BENCHMARK(repeatedValidation);

void emission(benchmark::State& state) {
  KestrixInputRoot root;
  parse(root, setup());
  root.populate();
  for ([[maybe_unused]] auto _ : state) {
    std::ostringstream out;
    KESTparse::DocumentWriter(root).write(out);
    benchmark::DoNotOptimize(out.view());
  }
}
BENCHMARK(emission);

/// One value of each kind, set again and again.
void tagValue(benchmark::State& state, const char* blockPath, const char* name, const char* value) {
  KestrixInputRoot root;
  const InputBlock* master = &root;
  for (std::string_view rest = blockPath; !rest.empty();) {
    const std::size_t end = std::min(rest.find('/'), rest.size());
    const int place = master->getLogicalBlockPosition(rest.substr(0, end));
    master = &master->getLogicalBlock(static_cast<std::size_t>(place));
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  const auto block = master->logicalClone(nullptr);
  KESTparse::InputTag& tag = block->getTag(name);
  for ([[maybe_unused]] auto _ : state) {
    tag.setRawValue(value);
  }
}
constexpr const char* output = "DOMAIN/KESTPLANE_2D/OUTPUT/SPECIAL_OUTPUT";
BENCHMARK_CAPTURE(tagValue, real, output, "threshold_wse", "-12.625");
BENCHMARK_CAPTURE(tagValue, integer, "DOMAIN/PARALLEL", "number_threads", "16");
BENCHMARK_CAPTURE(tagValue, word, "DOMAIN/KESTPLANE_2D", "region_name", "floodplain_2");
BENCHMARK_CAPTURE(tagValue, oneOfFew, output, "type", "node_history");
BENCHMARK_CAPTURE(tagValue, integers, output, "node_ids", "( 1 20 300 4000 50000 )");
BENCHMARK_CAPTURE(tagValue, reals, "DOMAIN/KESTPLANE_2D/HYDRAULICS/FRICTION", "friction",
                  "( 30 40.5 1e-3 22.75 )");
BENCHMARK_CAPTURE(tagValue, outputValues, output, "values", "( depth velocity max[wse] )");

/// A file of the benchmark, gone with it.
class InputFile {
 public:
  explicit InputFile(const std::string& content)
      : path_(std::filesystem::temp_directory_path() /
              ("kestrix-benchmark-" + std::to_string(::getpid()))) {
    std::ofstream(path_) << content;
  }
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;
  ~InputFile() { std::filesystem::remove(path_); }
  [[nodiscard]] std::string path() const { return path_.string(); }

 private:
  std::filesystem::path path_;
};

void series(benchmark::State& state) {
  std::string text;
  for (int i = 0; i < 50 * numBlocks; ++i) {
    text += std::to_string(i * 60) + ".0 12.375\n";
  }
  const InputFile file(text);
  GlobalValues::instance().verbosity = 0;
  for ([[maybe_unused]] auto _ : state) {
    Kestrix::Table table;
    Kestrix::StandardSerie(file.path()).copyTo(table);
    benchmark::DoNotOptimize(table);
  }
  countBytes(state, text.size());
}
BENCHMARK(series);

void meshScan(benchmark::State& state) {
  std::string text;
  for (int i = 0; i < 50 * numBlocks; ++i) {
    text += "E3T " + std::to_string(i) + " 1001 1002 2003 4\n";
  }
  const InputFile file(text + "NS 1 2 -3 inflow\n");
  for ([[maybe_unused]] auto _ : state) {
    GlobalValues::instance().readFiles = {};
    benchmark::DoNotOptimize(KESTparse::meshNodeStrings(file.path()));
  }
  countBytes(state, text.size());
}
BENCHMARK(meshScan);

}  // namespace
