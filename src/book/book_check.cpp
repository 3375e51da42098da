#include "book/book_check.h"

#include <algorithm>
#include <istream>
#include <vector>

namespace ombrin {

namespace {

constexpr std::uint64_t BLOCK_BYTES = std::uint64_t{1} << 16;
// The most blocks that are read; between two of them, as many are left out as need be.
constexpr std::uint64_t MOST_BLOCKS = 1024;

std::uint64_t numberAt(const char* bytes, int count) {
  std::uint64_t value = 0;
  for (int i = 0; i < count; ++i) value = value << 8 | static_cast<unsigned char>(bytes[i]);
  return value;
}

// Do the two bytes behind the key name squares?
bool isSane(const char* move, int flags) {
  if ((flags & BOOK_WEIGHT) != 0) {
    return polyglot::isSane(static_cast<std::uint16_t>(numberAt(move, 2)));
  }
  return (numberAt(move, 1) & 0x08) == 0 && (numberAt(move + 1, 1) & 0x88) == 0;
}

}  // namespace

std::string bookProblem(std::istream& file, const BookHeader& header, std::uint64_t length) {
  if (length == 0) return "the file is empty";
  const auto start = static_cast<std::uint64_t>(header.size);
  const auto recordSize = static_cast<std::uint64_t>(header.recordSize);
  if (header.recordSize < recordSizeOf(header.flags) || start > length) {
    return "its header makes no sense";
  }
  if ((length - start) % recordSize != 0) return "it ends within a record";

  const std::uint64_t records = (length - start) / recordSize;
  const std::uint64_t perBlock = std::max<std::uint64_t>(BLOCK_BYTES / recordSize, 1);
  const std::uint64_t blocks = std::min((records + perBlock - 1) / perBlock, MOST_BLOCKS);
  std::vector<char> bytes(perBlock * recordSize);
  std::uint64_t last = 0;
  for (std::uint64_t block = 0; block < blocks; ++block) {
    // Spread evenly; one after the other when that is all of them.
    const std::uint64_t first =
        blocks < MOST_BLOCKS
            ? block * perBlock
            : static_cast<std::uint64_t>(static_cast<double>(block) / static_cast<double>(blocks) *
                                         static_cast<double>(records));
    const std::uint64_t count = std::min(perBlock, records - first);
    file.clear();
    file.seekg(static_cast<std::streamoff>(start + first * recordSize));
    if (!file.read(bytes.data(), static_cast<std::streamsize>(count * recordSize))) {
      return "it cannot be read";
    }
    for (std::uint64_t i = 0; i < count; ++i) {
      const char* const record = bytes.data() + i * recordSize;
      const std::uint64_t key = numberAt(record, 8);
      if (key < last) return "its records are not in order";
      last = key;
      if (!isSane(record + 8, header.flags)) return "its moves make no sense";
    }
  }
  return {};
}

}  // namespace ombrin
