// Compressed collections are read as what they hold.
#include "pgn/compressed_source.h"

#include <gtest/gtest.h>

#include <array>
#include <fstream>
#include <string>

#include "pgn/file_source.h"
#include "temporary_directory.h"

namespace ombrin {
namespace {

constexpr std::string_view TEXT = "1. e4 e5 1-0\n";

// The text as the libraries' own programs compress it.
struct Sample {
  std::string_view bytes;
  std::unique_ptr<Decoder> (*makeDecoder)();
};
using namespace std::string_view_literals;
constexpr std::array<Sample, 3> SAMPLES = {{
    {"\x1f\x8b\x08\x00\x00\x00\x00\x00\x02\x03\x33\xd4\x53\x48\x35\x51\x48\x35\x55\x30"
     "\xd4\x35\xe0\x02\x00\x67\x86\x0b\x14\x0d\x00\x00\x00"
     ""sv,
     makeGzipDecoder},
    {"\x28\xb5\x2f\xfd\x04\x58\x69\x00\x00\x31\x2e\x20\x65\x34\x20\x65\x35\x20\x31\x2d"
     "\x30\x0a\x6f\xa6\x75\x50"
     ""sv,
     makeZstdDecoder},
    {"\x42\x5a\x68\x39\x31\x41\x59\x26\x53\x59\x50\x63\xdb\xdf\x00\x00\x04\x59\x00\x00"
     "\x10\x40\x03\x66\x00\x02\x00\x20\x00\x31\x06\x4c\x40\xd0\x34\xf5\x18\x30\x40\x72"
     "\xa5\xe2\xee\x48\xa7\x0a\x12\x0a\x0c\x7b\x7b\xe0"
     ""sv,
     makeBzip2Decoder},
}};

struct Read {
  std::string text;
  std::string problem;
};
Read read(std::string_view bytes) {
  std::ofstream("games", std::ios::binary) << bytes;
  Read read;
  const std::unique_ptr<ByteSource> source = openSource("games", read.problem);
  if (!source) return read;
  std::array<char, 5> room;
  while (const std::size_t count = source->read(room)) read.text.append(room.data(), count);
  read.problem = source->problem();
  EXPECT_TRUE(source->consumed() == bytes.size() || !read.problem.empty());
  return read;
}

TEST(CompressedSource, GivesWhatTheFileHolds) {
  const TemporaryDirectory directory;
  EXPECT_EQ(read(TEXT).text, TEXT);
  EXPECT_EQ(read("").text, "");
  for (const Sample& sample : SAMPLES) {
    const std::string bytes(sample.bytes);
    if (sample.makeDecoder() == nullptr) {
      EXPECT_NE(read(bytes).problem.find("built without"), std::string::npos);
      continue;
    }
    EXPECT_EQ(read(bytes).text, TEXT);
    EXPECT_EQ(read(bytes).problem, "");
    // Two files, one behind the other.
    EXPECT_EQ(read(bytes + bytes).text, std::string(TEXT) + std::string(TEXT));
    EXPECT_EQ(read(bytes.substr(0, bytes.size() - 3)).problem,
              "the compressed file ends too early");
    std::string damaged = bytes;
    damaged[damaged.size() - 3] ^= 1;  // of the check at the end
    EXPECT_EQ(read(damaged).problem, "the compressed file is damaged");
  }
}

}  // namespace
}  // namespace ombrin
