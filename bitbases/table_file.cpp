#include "table_file.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <filesystem>
#include <fstream>

namespace bitbases {

namespace {

constexpr std::uint32_t VERSION = 3;

struct Header {
  std::array<char, 8> magic{'E', 'G', 'B', 'B', 'W', 'D', 'L', 0};
  std::uint32_t version = VERSION;
  std::uint32_t blockWords = Block::WORDS;
  std::array<char, 16> name{};
  std::uint64_t words = 0;
  std::uint32_t order = 0;
  std::uint32_t longestChain = 0;
  std::uint32_t reserved = 0;
  std::uint32_t checksum = 0;
};
static_assert(sizeof(Header) == 56);

Header headerOf(const Material& material, const Grid& grid, std::uint32_t order,
                std::uint32_t longestChain, std::span<const std::byte> index) {
  Header header;
  std::ranges::copy(material.name(), header.name.begin());
  header.words = grid.words();
  header.order = order;
  header.longestChain = longestChain;
  const auto before =
      std::as_bytes(std::span(&header, 1)).first(sizeof header - sizeof header.checksum);
  header.checksum = checksum(index, checksum(before, 0));
  return header;
}

std::uint32_t blockCount(const Grid& grid) {
  return 2 * static_cast<std::uint32_t>((grid.words() + Block::WORDS - 1) / Block::WORDS);
}

}  // namespace

std::string tablePath(const std::string& directory, const Material& material) {
  std::string path = directory;
  std::ranges::replace(path, '\\', '/');
  if (!path.empty() && path.back() != '/') path += '/';
  for (const char letter : material.name()) path += static_cast<char>(letter - 'A' + 'a');
  return path + ".wdl";
}

TableFile::TableFile(std::string path, const Material& material, int order)
    : path_(std::move(path)), file_(path_), grid_(material, order) {}

std::unique_ptr<const TableFile> TableFile::open(const std::string& directory,
                                                 const Material& material) {
  const std::string path = tablePath(directory, material);
  const File file(path);
  Header header;
  if (!file.isOpen() || !file.read(0, std::as_writable_bytes(std::span(&header, 1))) ||
      header.order >= static_cast<std::uint32_t>(Grid(material).orders())) {
    return nullptr;
  }
  std::unique_ptr<TableFile> table(new TableFile(path, material, static_cast<int>(header.order)));
  if (!table->readIndex(material)) return nullptr;
  return table;
}

bool TableFile::readIndex(const Material& material) {
  if (!file_.isOpen()) return false;
  Header header;
  const std::uint32_t count = blockCount(grid_);
  data_ = sizeof header + std::uint64_t{count} * sizeof(Entry);
  if (file_.size() < data_ || !file_.read(0, std::as_writable_bytes(std::span(&header, 1)))) {
    return false;
  }
  index_.resize(count);
  const auto bytes = std::as_writable_bytes(std::span(index_));
  if (!file_.read(sizeof header, bytes)) return false;
  longestChain_ = static_cast<int>(header.longestChain);
  const Header expected = headerOf(material, grid_, header.order, header.longestChain, bytes);
  if (std::memcmp(&header, &expected, sizeof header) != 0) return false;
  checksum_ = header.checksum;
  // What the checksum cannot tell: that whoever wrote the file knew how.
  std::uint32_t last = 0;
  for (const Entry& entry : index_) {
    if (entry.end < last || entry.end - last > largestPacked()) return false;
    last = entry.end;
  }
  return file_.size() == data_ + last;
}

bool TableFile::read(std::uint32_t number, Block& block) const {
  const std::uint32_t begin = number == 0 ? 0 : index_[number - 1].end;
  const auto [end, sum] = index_[number];
  thread_local std::vector<std::byte> bytes;
  bytes.resize(end - begin);
  return file_.read(data_ + begin, bytes) && bitbases::checksum(bytes, number) == sum &&
         unpack(bytes, block);
}

bool TableFile::isWhole() const {
  Block block;
  for (std::uint32_t number = 0; number < blocks(); ++number) {
    if (!read(number, block)) return false;
  }
  return true;
}

TableWriter::TableWriter(const Material& material, int order, int longestChain)
    : material_(material),
      order_(order),
      longestChain_(longestChain),
      grid_(material, order),
      blocks_(blockCount(grid_)) {}

bool TableWriter::write(const std::string& directory) const {
  std::vector<TableFile::Entry> index;
  std::uint32_t end = 0;
  for (const std::vector<std::byte>& block : blocks_) {
    end += static_cast<std::uint32_t>(block.size());
    index.push_back({end, checksum(block, index.size())});
  }
  const auto indexBytes = std::as_bytes(std::span(index));
  const Header header = headerOf(material_, grid_, static_cast<std::uint32_t>(order_),
                                 static_cast<std::uint32_t>(longestChain_), indexBytes);
  const std::string path = tablePath(directory, material_);
  const std::string unfinished = path + ".part";
  std::ofstream file(unfinished, std::ios::binary | std::ios::trunc);
  const auto put = [&file](std::span<const std::byte> bytes) {
    file.write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
  };
  put(std::as_bytes(std::span(&header, 1)));
  put(indexBytes);
  for (const std::vector<std::byte>& block : blocks_) put(block);
  file.close();
  std::error_code error;
  if (file.good()) std::filesystem::rename(unfinished, path, error);
  const bool isWritten = file.good() && !error;
  if (!isWritten) std::filesystem::remove(unfinished, error);
  return isWritten;
}

}  // namespace bitbases
