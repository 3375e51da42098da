// Bitbase files of any bytes, or whole ones with a few bytes damaged, and any questions to the
// library.
#include <algorithm>
#include <array>
#include <bit>
#include <iterator>
#include <memory>
#include <vector>

#include "../bitbases/moves.h"
#include "../bitbases/table_file.h"
#include "../bitbases/table_set.h"
#include "scratch_directory.h"
#include "table_pattern.h"

extern "C" {
void load_egbb_5men(const char* directory, int cacheBytes, int mode);
void log_egbb_5men(void (*function)(const char* line));
int probe_egbb_5men(int side, int whiteKing, int blackKing, int piece1, int square1, int piece2,
                    int square2, int piece3, int square3);
}

using namespace ombrin;

namespace {

// Hands out the input's bytes; zeros when there are no more.
class Bytes {
 public:
  Bytes(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}

  bool atEnd() const { return size_ == 0; }
  std::uint8_t next() {
    if (size_ == 0) return 0;
    --size_;
    return *data_++;
  }
  std::uint32_t nextWord() {
    std::uint32_t word = 0;
    for (int i = 0; i < 4; ++i) word = word << 8 | next();
    return word;
  }
  std::string_view rest() const { return textOf(data_, size_); }

 private:
  const std::uint8_t* data_;
  std::size_t size_;
};

std::string readFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

void damage(std::string& file, Bytes& bytes) {
  for (int count = bytes.next() % 4; count > 0 && !file.empty(); --count) {
    // Headers are 56 bytes.
    const std::uint8_t where = bytes.next();
    const std::size_t offset = where < 64 ? where : bytes.nextWord();
    file[offset % file.size()] = static_cast<char>(bytes.next());
  }
  const std::uint8_t cut = bytes.next();
  if (cut < 16) file.resize(file.size() - std::min<std::size_t>(cut, file.size()));
  if (cut > 240) file.append(cut - 240U, '\0');
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  silence();
  static const ScratchDirectory scratch;
  static const std::vector<bitbases::Material> materials = bitbases::materialsOf(3);
  scratch.clear();
  Bytes bytes(data, size);
  const std::uint8_t kind = bytes.next();
  const bitbases::Material& material = materials[kind / 2 % materials.size()];
  const bool isRaw = kind % 2 == 0;
  std::string file;
  if (isRaw) {
    file = bytes.rest();
  } else {
    const std::uint64_t won = bytes.nextWord();
    writePattern(scratch.path(), material, won, bytes.nextWord());
    file = readFile(tablePath(scratch.path(), material));
    damage(file, bytes);
  }
  scratch.write(std::string_view(tablePath("", material)), file);

  static int reports;
  reports = 0;
  const auto set =
      std::make_unique<bitbases::TableSet>([](const std::string& /*path*/) { ++reports; });
  set->setCache(0);
  const auto table = bitbases::TableFile::open(scratch.path(), material);
  const bool isWhole = table && table->isWhole();
  require(set->add(scratch.path(), material) == (table != nullptr), "a file is held or refused");
  if (table) {
    for (std::uint32_t word = 0; word < table->grid().words(); word += 97) {
      bitbases::Position position = table->grid().frame(word);
      position.king[1] = static_cast<int>(word % 64);
      const int men = std::popcount(occupied(position));
      if (men < material.men() || !isLegal(position)) continue;
      require(set->value(position) || !isWhole, "a whole table has values");
    }
  }
  require(reports <= 1 && (!isWhole || reports == 0), "damage is told once");
  require(set->holds(material) == (table && reports == 0), "and ends a table");

  // What the library once holds it keeps.
  log_egbb_5men([](const char*) {});
  load_egbb_5men(scratch.path().c_str(), 0, 1);
  for (int count = 0; count < 16 && !bytes.atEnd(); ++count) {
    std::array<int, 9> query;
    for (int& number : query) {
      const std::uint8_t byte = bytes.next();
      number = byte == 255 ? static_cast<int>(bytes.nextWord()) : byte - (byte > 200 ? 256 : 0);
    }
    const auto [side, white, black, p1, s1, p2, s2, p3, s3] = query;
    const int score = probe_egbb_5men(side, white, black, p1, s1, p2, s2, p3, s3);
    require(score == 99999 || std::abs(score) <= 8000, "an answer is a score or none");
  }
  return 0;
}
