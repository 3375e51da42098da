// Stands in for the fuzzer: gives the target every file of a directory once.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "fuzz_input.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int argc, char* argv[]) {
  ombrin::require(argc == 2, "one argument, the directory");
  std::vector<std::filesystem::path> paths;
  for (const auto& entry : std::filesystem::directory_iterator(argv[1])) {
    paths.push_back(std::filesystem::absolute(entry.path()));
  }
  ombrin::require(!paths.empty(), "there are inputs");
  std::ranges::sort(paths);
  for (const auto& path : paths) {
    std::fprintf(stderr, "%s\n", path.c_str());
    std::ifstream file(path, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
  }
}
