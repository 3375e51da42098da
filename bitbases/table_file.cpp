#include "table_file.h"

#include <algorithm>
#include <bit>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <vector>

namespace bitbases {

static_assert(std::endian::native == std::endian::little);

namespace {

constexpr std::uint32_t VERSION = 1;

struct Header {
  std::array<char, 8> magic{'E', 'G', 'B', 'B', 'W', 'D', 'L', 0};
  std::uint32_t version = VERSION;
  std::uint32_t reserved = 0;
  std::array<char, 16> name{};
  std::uint64_t positions = 0;
  std::uint64_t checksum = 0;
};
static_assert(sizeof(Header) == 48);

std::uint64_t dataSize(const Layout& layout) {
  return (layout.size() + 4) / 5;
}

constexpr std::uint64_t mixed(std::uint64_t sum, std::uint64_t word) {
  sum = (sum ^ word) * 0x9e3779b97f4a7c15;
  return sum ^ (sum >> 29);
}

// Word by word, so that a table is checked as fast as it is read.
std::uint64_t checksum(std::span<const std::byte> bytes, std::uint64_t sum) {
  for (; bytes.size() >= sizeof(std::uint64_t); bytes = bytes.subspan(sizeof(std::uint64_t))) {
    std::uint64_t word;
    std::memcpy(&word, bytes.data(), sizeof word);
    sum = mixed(sum, word);
  }
  for (const std::byte byte : bytes) sum = mixed(sum, static_cast<std::uint64_t>(byte));
  return sum;
}

// The header of a file with that data.
Header makeHeader(const Material& material, const Layout& layout, std::span<const std::byte> data) {
  Header header;
  std::ranges::copy(material.name(), header.name.begin());
  header.positions = layout.size();
  const std::uint64_t named = checksum(std::as_bytes(std::span(header.name)), header.positions);
  header.checksum = checksum(data, named);
  return header;
}

std::vector<std::byte> pack(std::span<const std::uint8_t> values) {
  std::vector<std::byte> data((values.size() + 4) / 5);
  for (std::size_t i = 0; i < data.size(); ++i) {
    const auto five = values.subspan(5 * i, std::min<std::size_t>(5, values.size() - 5 * i));
    unsigned byte = 0;
    for (std::size_t j = five.size(); j > 0; --j) byte = 3 * byte + five[j - 1];
    data[i] = static_cast<std::byte>(byte);
  }
  return data;
}

}  // namespace

std::string tablePath(const std::string& directory, const Material& material) {
  std::string path = directory;
  std::ranges::replace(path, '\\', '/');
  if (!path.empty() && path.back() != '/') path += '/';
  for (const char letter : material.name()) path += static_cast<char>(letter - 'A' + 'a');
  return path + ".wdl";
}

std::optional<std::span<const std::byte>> tableData(std::span<const std::byte> file,
                                                    const Material& material,
                                                    const Layout& layout) {
  if (file.size() != sizeof(Header) + dataSize(layout)) return std::nullopt;
  const auto data = file.subspan(sizeof(Header));
  const Header expected = makeHeader(material, layout, data);
  if (std::memcmp(file.data(), &expected, sizeof expected) != 0) return std::nullopt;
  // What the checksum cannot tell: that whoever wrote the file knew the base.
  if (std::ranges::any_of(data, [](std::byte byte) { return static_cast<unsigned>(byte) > 242; })) {
    return std::nullopt;
  }
  return data;
}

bool writeTable(const std::string& directory, const Material& material, const Layout& layout,
                std::span<const std::uint8_t> values) {
  const std::vector<std::byte> data = pack(values);
  const Header header = makeHeader(material, layout, data);
  const std::string path = tablePath(directory, material);
  const std::string unfinished = path + ".part";
  std::ofstream file(unfinished, std::ios::binary | std::ios::trunc);
  file.write(reinterpret_cast<const char*>(&header), sizeof header);
  file.write(reinterpret_cast<const char*>(data.data()), static_cast<std::streamsize>(data.size()));
  file.close();
  std::error_code error;
  if (file.good()) std::filesystem::rename(unfinished, path, error);
  const bool isWritten = file.good() && !error;
  if (!isWritten) std::filesystem::remove(unfinished, error);
  return isWritten;
}

}  // namespace bitbases
