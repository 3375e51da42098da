// Makes table files: all of up to so many men, or those named and what they rest on.
#include <algorithm>
#include <charconv>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "packing.h"
#include "record.h"
#include "solver.h"
#include "table_file.h"
#include "table_set.h"
#include "table_store.h"
#include "verifier.h"
#include "work_progress.h"

namespace {

using namespace bitbases;

constexpr const char* USAGE =
    "Usage: ombrin-bitbases [--threads N] [--verify] DIRECTORY [MEN | MATERIAL ...]\n"
    "Makes the tables of all endings of up to so many men, 4 unless it is said, or those of the\n"
    "materials, e.g. KBNK or KRPKR, and those they rest on. Tables that are there already are "
    "kept.\n"
    "  --threads N  threads to compute with (all processors)\n"
    "  --verify     also check every position of the tables asked for against its moves, and "
    "write\n"
    "               their numbers to the directory's tables.txt\n";

constexpr std::size_t CACHE = std::size_t{64} << 20;

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

bool readThreads(std::string_view text, int& threads) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), threads);
  return error == std::errc{} && end == text.data() + text.size() && threads >= 1 && threads <= 256;
}

void addUpTo(int men, std::vector<Material>& materials) {
  for (int n = 3; n <= men; ++n) {
    for (const Material& material : materialsOf(n)) materials.push_back(material);
  }
}

bool readOptions(std::vector<std::string_view> arguments, Options& options) {
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string_view argument = arguments[i];
    if (argument == "--verify") {
      options.verify = true;
    } else if (argument == "--threads") {
      if (++i == arguments.size() || !readThreads(arguments[i], options.threads)) return false;
    } else if (options.directory.empty()) {
      options.directory = argument;
    } else if (argument == "3" || argument == "4" || argument == "5") {
      addUpTo(argument.front() - '0', options.materials);
    } else {
      const auto material = Material::fromName(argument);
      if (!material) return false;
      options.materials.push_back(material->canonical());
    }
  }
  if (options.materials.empty()) addUpTo(4, options.materials);
  return !options.directory.empty() && !options.directory.starts_with('-');
}

void reportDamage(const std::string& path) {
  std::printf("%s is damaged\n", path.c_str());
}

// Makes and checks the tables of one directory.
class Workshop {
 public:
  explicit Workshop(const Options& options)
      : options_(options),
        store_(options.directory, options.threads),
        tables_(std::make_unique<TableSet>(reportDamage)),
        verifier_(*tables_, options.threads),
        record_(options.directory) {
    for (const Material& material : options.materials) addWithSuccessors(order_, material);
    tables_->setCache(CACHE);
  }

  // False when a table cannot be written, or is wrong.
  bool work() {
    progress_ = std::make_unique<WorkProgress>(order_);
    for (std::size_t i = 0; i < order_.size(); ++i) {
      const Material& material = order_[i];
      label_ = std::to_string(i + 1);
      label_.append("/").append(std::to_string(order_.size())).append(" ").append(material.name());
      const Stopwatch stopwatch;
      const bool wasThere = isThere(material);
      if (!wasThere && !make(material)) return false;
      if (!tables_->add(options_.directory, material)) return false;
      const bool isChecked = options_.verify && isAskedFor(material);
      if (isChecked && !check(material, wasThere ? 0 : stopwatch.seconds())) return false;
      progress_->finish(material, wasThere);
      if (wasThere && !isChecked) continue;
      std::printf("%s: %.1f s; %s\n", label_.c_str(), stopwatch.seconds(),
                  progress_->text().c_str());
      std::fflush(stdout);
    }
    std::printf("%zu tables, %.1f s\n", order_.size(), stopwatch_.seconds());
    return true;
  }

 private:
  bool isAskedFor(const Material& material) const {
    return std::ranges::any_of(
        options_.materials, [&](const Material& one) { return one.number() == material.number(); });
  }

  bool isThere(const Material& material) const {
    const auto file = TableFile::open(options_.directory, material);
    return file && file->isWhole();
  }

  bool make(const Material& material) {
    Solver solver(material, store_.source(), options_.threads);
    Stopwatch shown;
    const auto table = solver.solve([&](double part) {
      progress_->set(material, part);
      if (shown.seconds() < 10) return;
      shown = Stopwatch();
      std::printf("%s ...; %s\n", label_.c_str(), progress_->text().c_str());
      std::fflush(stdout);
    });
    const TableWriter writer =
        pack(*table, store_.source(), solver.longestChain(), options_.threads);
    if (writer.write(options_.directory)) return true;
    std::printf("%s cannot be written to %s\n", label_.c_str(), options_.directory.c_str());
    return false;
  }

  // `seconds` is what making the table took.
  bool check(const Material& material, double seconds) {
    const auto file = TableFile::open(options_.directory, material);
    if (!file) return false;
    if (record_.has(material, *file)) return true;
    const Stopwatch stopwatch;
    const Totals totals = verifier_.verify(material);
    if (totals.wrong != 0) {
      std::printf("%s: %llu positions are wrong\n", label_.c_str(),
                  static_cast<unsigned long long>(totals.wrong));
      return false;
    }
    if (seconds > 0) seconds += stopwatch.seconds();
    return record_.add(material, *file, totals, seconds);
  }

  const Options& options_;
  TableStore store_;
  std::unique_ptr<TableSet> tables_;
  Verifier verifier_;
  Record record_;
  std::vector<Material> order_;
  std::unique_ptr<WorkProgress> progress_;
  std::string label_;
  Stopwatch stopwatch_;
};

}  // namespace

int main(int argc, char** argv) {
  try {
    Options options;
    if (!readOptions({argv + 1, argv + argc}, options)) {
      std::fputs(USAGE, stderr);
      return 2;
    }
    std::error_code error;
    std::filesystem::create_directories(options.directory, error);
    return Workshop(options).work() ? 0 : 1;
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "%s\n", failure.what());
    return 1;
  }
}
