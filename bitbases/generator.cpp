// Makes table files: all of three and four men, or those named and what they rest on.
#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "solver.h"
#include "table_file.h"
#include "table_set.h"
#include "verifier.h"

namespace {

using namespace bitbases;

constexpr const char* USAGE =
    "Usage: ombrin-bitbases [--threads N] [--verify] DIRECTORY [MATERIAL ...]\n"
    "Makes the tables of the materials, e.g. KBNK or KRPKR, and those they rest on; without a\n"
    "material, all of three and four men. Tables that are there already are kept.\n"
    "  --threads N  threads to compute with (all processors)\n"
    "  --verify     then check every position of the materials' tables against its moves\n";

struct Options {
  int threads = static_cast<int>(std::max(1U, std::thread::hardware_concurrency()));
  bool verify = false;
  std::string directory;
  std::vector<Material> materials;
};

// Adds the materials that the table of `material` rests on, and then itself.
void addWithSuccessors(std::vector<Material>& order, const Material& material) {
  for (const Material& known : order) {
    if (known.number() == material.number()) return;
  }
  for (const Material& next : material.successors()) addWithSuccessors(order, next);
  order.push_back(material);
}

bool readOptions(std::vector<std::string_view> arguments, Options& options) {
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string_view argument = arguments[i];
    if (argument == "--verify") {
      options.verify = true;
    } else if (argument == "--threads") {
      if (++i == arguments.size()) return false;
      const std::string_view text = arguments[i];
      const auto [end, error] =
          std::from_chars(text.data(), text.data() + text.size(), options.threads);
      if (error != std::errc{} || end != text.data() + text.size() || options.threads < 1 ||
          options.threads > 256) {
        return false;
      }
    } else if (options.directory.empty()) {
      options.directory = argument;
    } else {
      const auto material = Material::fromName(argument);
      if (!material) return false;
      options.materials.push_back(material->canonical());
    }
  }
  if (options.materials.empty()) {
    for (const int men : {3, 4}) {
      for (const Material& material : materialsOf(men)) options.materials.push_back(material);
    }
  }
  return !options.directory.empty() && !options.directory.starts_with('-');
}

class Stopwatch {
 public:
  double seconds() const {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count();
  }

 private:
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

// Makes the table unless it is there; its messages begin with `label`. False when it cannot be
// written and read.
bool provide(const Material& material, const std::string& label, const Options& options,
             TableSet& tables) {
  if (tables.add(options.directory, material)) return true;
  const Stopwatch stopwatch;
  const Layout layout(material);
  const bool isLarge = material.men() > 4;
  std::printf("%s %s: %llu positions ...%s", label.c_str(), material.name().c_str(),
              static_cast<unsigned long long>(layout.size()), isLarge ? "\n" : "");
  std::fflush(stdout);
  const auto report = [&](double stage) {
    if (!isLarge) return;
    if (stage < 1) {
      std::printf("  %.0f%% of the positions looked at\n", 100 * stage);
    } else {
      std::printf("  pass %.0f, %.0f s\n", stage, stopwatch.seconds());
    }
    std::fflush(stdout);
  };
  const auto values = Solver(material, tables, options.threads).solve(report);
  if (!writeTable(options.directory, material, layout, values) ||
      !tables.add(options.directory, material)) {
    std::printf(" cannot be written to %s\n", options.directory.c_str());
    return false;
  }
  std::printf(" %.1f s\n", stopwatch.seconds());
  return true;
}

bool check(const Material& material, const Options& options, const TableSet& tables) {
  const Totals totals = verify(material, tables, options.threads);
  std::printf(
      "%s: won %llu, drawn %llu, lost %llu, wrong %llu\n", material.name().c_str(),
      static_cast<unsigned long long>(totals.won), static_cast<unsigned long long>(totals.drawn),
      static_cast<unsigned long long>(totals.lost), static_cast<unsigned long long>(totals.wrong));
  std::fflush(stdout);
  return totals.wrong == 0;
}

int run(const Options& options) {
  static TableSet tables;
  const Stopwatch stopwatch;
  std::error_code error;
  std::filesystem::create_directories(options.directory, error);
  std::vector<Material> order;
  for (const Material& material : options.materials) addWithSuccessors(order, material);
  for (std::size_t i = 0; i < order.size(); ++i) {
    const std::string label =
        "[" + std::to_string(i + 1) + "/" + std::to_string(order.size()) + "]";
    if (!provide(order[i], label, options, tables)) return 1;
  }
  bool isRight = true;
  if (options.verify) {
    for (const Material& material : options.materials) {
      isRight = check(material, options, tables) && isRight;
    }
  }
  std::printf("%zu tables, %.1f s\n", order.size(), stopwatch.seconds());
  return isRight ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    Options options;
    if (!readOptions({argv + 1, argv + argc}, options)) {
      std::fputs(USAGE, stderr);
      return 2;
    }
    return run(options);
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "%s\n", failure.what());
    return 1;
  }
}
