// The bitbase library and its generator as others see them: a file with two functions, a program.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace bitbase_test {

constexpr int NOT_HELD = 99999;

// A position in the library's terms.
struct Query {
  // Placement and side to move as in FEN, at most three men besides the kings.
  static Query of(std::string_view fen);

  int side = 0;
  std::array<int, 2> king{};
  std::array<std::array<int, 2>, 3> men{};  // code and square
};

class Library {
 public:
  // Loads a copy that it puts into the directory: a library keeps its tables as long as the process
  // lives, and only another file is another library.
  explicit Library(const std::string& directory);

  void load(const std::string& directory) const { load_(directory.c_str(), 16 << 20, 1); }
  int probe(const Query& query) const;
  int probe(std::string_view fen) const { return probe(Query::of(fen)); }
  // What it has told its log since the last call.
  std::vector<std::string> takeLog() const;

 private:
  void (*load_)(const char*, int, int) = nullptr;
  int (*probe_)(int, int, int, int, int, int, int, int, int) = nullptr;
};

// A directory for one test, empty and without a separator at its end.
std::string makeDirectory(const std::string& name);

// The program's standard output, after "failed\n" when its exit status is not 0.
std::string generate(const std::string& arguments);

// KPKP alone rests on twenty tables, too many to be made under a sanitizer.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr std::string_view MATERIALS = "KPK KQKR";
#else
constexpr std::string_view MATERIALS = "KPK KQKR KRKN KBNK KPKP";
#endif

constexpr bool HAS_ALL = MATERIALS.ends_with("KPKP");

// A directory with these tables and those that they rest on; made once.
const std::string& tables();

}  // namespace bitbase_test
