#include "book/book_format.h"

#include <algorithm>
#include <array>
#include <istream>
#include <ostream>

namespace ombrin {

namespace {

constexpr std::uint32_t LARGEST_COUNT = 0xffff;

template <int BYTES>
void append(char*& out, std::uint64_t value) {
  for (int shift = 8 * (BYTES - 1); shift >= 0; shift -= 8) {
    *out++ = static_cast<char>(value >> shift & 0xff);
  }
}

template <int BYTES>
std::uint64_t take(const char*& in) {
  std::uint64_t value = 0;
  for (int i = 0; i < BYTES; ++i) value = value << 8 | static_cast<unsigned char>(*in++);
  return value;
}

bool fill(std::istream& in, char* bytes, int count) {
  return static_cast<bool>(in.read(bytes, count));
}

std::uint64_t storedElo(const BookEntry& entry) {
  return static_cast<std::uint64_t>(std::clamp(entry.elo() + 0.5, 0.0, 65535.0));
}

void writePolyglotRecord(const BookEntry& entry, std::ostream& out) {
  std::array<char, polyglot::RECORD_SIZE> bytes{};
  char* at = bytes.data();
  append<8>(at, entry.key);
  append<2>(at, polyglot::moveOf(entry));
  append<2>(at, polyglot::weightOf(entry));
  out.write(bytes.data(), bytes.size());
}

}  // namespace

void writeHeader(const BookHeader& header, std::ostream& out) {
  std::array<char, BookHeader::SIZE> bytes{};
  char* at = bytes.data() + 8;
  for (const char mark : {'O', 'B', 'K', '\0'}) *at++ = mark;
  for (const int byte : {header.size, header.version, header.recordSize, header.flags}) {
    append<1>(at, static_cast<std::uint64_t>(byte));
  }
  out.write(bytes.data(), bytes.size());
}

bool readHeader(std::istream& in, BookHeader& header) {
  std::uint64_t mark = 0;
  header = BookHeader::headerless();
  if (!readKey(mark, in)) return false;
  if (mark != 0) return true;
  std::array<char, 8> bytes{};
  if (!fill(in, bytes.data(), static_cast<int>(bytes.size()))) return false;
  const char* at = bytes.data() + 4;
  header.size = std::max(static_cast<int>(take<1>(at)), BookHeader::SIZE);
  header.version = static_cast<int>(take<1>(at));
  header.recordSize = static_cast<int>(take<1>(at));
  header.flags = static_cast<int>(take<1>(at)) & (BOOK_KEY | BOOK_COUNTS | BOOK_ELO);
  return true;
}

void writeRecord(const BookEntry& entry, std::ostream& out, int flags) {
  if ((flags & BOOK_WEIGHT) != 0) return writePolyglotRecord(entry, out);
  std::array<std::uint32_t, 3> left = {entry.wins, entry.draws, entry.losses};
  while ((left[0] | left[1] | left[2]) != 0) {
    std::array<char, recordSizeOf(BOOK_COUNTS | BOOK_ELO)> bytes;
    char* at = bytes.data();
    append<8>(at, entry.key);
    append<1>(at, entry.from);
    append<1>(at, entry.to);
    for (std::uint32_t& count : left) {
      // Without counts in the file there is nothing to split.
      const std::uint32_t part =
          (flags & BOOK_COUNTS) != 0 ? std::min(count, LARGEST_COUNT) : count;
      if ((flags & BOOK_COUNTS) != 0) append<2>(at, part);
      count -= part;
    }
    if ((flags & BOOK_ELO) != 0) append<2>(at, storedElo(entry));
    out.write(bytes.data(), at - bytes.data());
  }
}

bool readRecord(BookEntry& entry, std::istream& in, int flags) {
  if ((flags & BOOK_KEY) != 0 && !readKey(entry.key, in)) return false;
  std::array<char, recordSizeOf(BOOK_COUNTS | BOOK_ELO) - 8> bytes;
  if (!fill(in, bytes.data(), recordSizeOf(flags) - 8)) return false;
  const char* at = bytes.data();
  entry.promotion = 0;
  if ((flags & BOOK_WEIGHT) != 0) {
    polyglot::setMove(entry, static_cast<std::uint16_t>(take<2>(at)));
    entry.wins = entry.losses = 0;
    entry.draws = static_cast<std::uint32_t>(take<2>(at));
    entry.eloFactor = 0;
    return true;
  }
  entry.from = static_cast<std::uint8_t>(take<1>(at));
  entry.to = static_cast<std::uint8_t>(take<1>(at));
  for (std::uint32_t* count : {&entry.wins, &entry.draws, &entry.losses}) {
    *count = (flags & BOOK_COUNTS) != 0 ? static_cast<std::uint32_t>(take<2>(at)) : 0;
  }
  entry.eloFactor = (flags & BOOK_ELO) != 0 ? factorOf(static_cast<double>(take<2>(at))) : 0;
  return true;
}

bool readKey(std::uint64_t& key, std::istream& in) {
  std::array<char, 8> bytes{};
  if (!fill(in, bytes.data(), static_cast<int>(bytes.size()))) return false;
  const char* at = bytes.data();
  key = take<8>(at);
  return true;
}

}  // namespace ombrin
