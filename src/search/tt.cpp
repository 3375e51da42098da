#include "search/tt.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <bit>
#include <cstdlib>
#include <limits>
#include <span>
#include <utility>
#include <vector>

#include "platform/huge_pages.h"
#include "platform/processors.h"
#include "platform/thread.h"
#include "util/log.h"
#include "util/print.h"

namespace ombrin {

namespace {

constexpr LogChannel TT_LOG{"tt"};
constexpr std::size_t MIN_KB = 256;
constexpr std::size_t ALIGNMENT = 128;
// How much worth an entry of an earlier search loses against those of the current one.
constexpr int OLD_ENTRY = 8192;

std::uint32_t keyOf(const Board& board) {
  return static_cast<std::uint32_t>(board.hash >> 32);
}

std::uint16_t toSixteenBits(int value) {
  using Limits = std::numeric_limits<std::int16_t>;
  return static_cast<std::uint16_t>(std::clamp<int>(value, Limits::min(), Limits::max()));
}

// Piece indices name individual pieces, so the same position reached in another order of moves may
// have the other knight on the square where the stored move captures one.
Move repaired(const Board& board, Move move) {
  if (!move.isCapture()) return move;
  const Piece standing = board.at(move.victimSquare());
  if (standing == move.captured()) return move;
  return standing.kind() == move.captured().kind() ? move.withCaptured(standing) : NULL_MOVE;
}

}  // namespace

void Tt::Release::operator()(void* block) const {
  std::free(block);  // NOLINT(cppcoreguidelines-no-malloc): see obtain()
}

Tt::Tt(std::uint64_t kb) {
  resize(kb);
}

Tt::~Tt() = default;

void Tt::resize(std::uint64_t kb) {
  constexpr std::size_t MAX_KB = std::bit_floor(std::numeric_limits<std::size_t>::max()) / 1024;
  const std::uint64_t wanted = std::clamp<std::uint64_t>(std::bit_floor(kb), MIN_KB, MAX_KB);
  const std::size_t bytes = 1024 * static_cast<std::size_t>(wanted);
  if (bytes == bytes_) return;
  block_.reset();
  bytes_ = bytes;
  while (!obtain()) {
    logInfo(TT_LOG, "tt: malloc(%zu) failed, retrying...\n", bytes_);
    bytes_ /= 2;
    if (bytes_ < CLUSTER * ENTRY_BYTES) {
      logError(TT_LOG, "FATAL: failed to malloc Tt!\n");
      flushLog();
      print(stderr, "FATAL: failed to malloc Tt!\n");
      std::abort();
    }
  }
  generation_ = 1;
  isUnused_ = true;
  mask_ = entries() - 1;
  logInfo(TT_LOG, "tt.kb     =%zu\n", bytes_ / 1024);
  logInfo(TT_LOG, "tt.entries=%zx\n", entries());
  logInfo(TT_LOG, "tt.addr   =%p\n", static_cast<void*>(slots_));
}

// Zeroed memory straight from the C library: a big block comes as fresh pages that are zero already
// and cost nothing until they are used, and a failure is an answer here, not an exception.
bool Tt::obtain() {
  std::size_t space = bytes_ + ALIGNMENT;
  block_.reset(std::calloc(space, 1));  // NOLINT(cppcoreguidelines-no-malloc)
  void* start = block_.get();
  if (start == nullptr) return false;
  slots_ = static_cast<Slot*>(std::align(ALIGNMENT, bytes_, start, space));
  preferHugePages(slots_, bytes_);
  return true;
}

// Also makes the system find memory for every page now, which can take longer than a whole move: it
// must not have to do so while a search looks at the clock only every few hundred nodes.
void Tt::clear() {
  constexpr std::size_t SLICE = (std::size_t{16} << 20) / ENTRY_BYTES;
  const auto processors = static_cast<std::size_t>(std::max(processorCount(), 1));
  const std::size_t parts = std::clamp<std::size_t>(entries() / SLICE, 1, processors);
  std::vector<Thread> helpers;
  for (std::size_t part = 0; part < parts; ++part) {
    const std::span slice(slots_ + entries() * part / parts,
                          slots_ + entries() * (part + 1) / parts);
    const auto fill = [slice] { std::fill(slice.begin(), slice.end(), Slot{}); };
    // The last part is this thread's own, and so is one for which there is no thread.
    Thread helper = part + 1 < parts ? Thread::createSuspended(fill) : Thread();
    if (helper.running()) {
      helper.resume();
      helpers.push_back(std::move(helper));
    } else {
      fill();
    }
  }
  for (Thread& helper : helpers) helper.join();
  generation_ = 1;
  isUnused_ = false;
}

void Tt::makeReady() {
  if (isUnused_) clear();
}

Tt::Slot Tt::pack(std::uint32_t key, const TtEntry& entry, std::uint8_t generation) {
  const std::uint32_t scoreAndDepth = toSixteenBits(entry.score.value()) |
                                      static_cast<std::uint32_t>(toSixteenBits(entry.depth)) << 16;
  const std::uint32_t move = entry.move.word();
  const std::uint32_t check = key ^ move ^ scoreAndDepth;
  return {static_cast<std::uint64_t>(move) << 32 | check,
          static_cast<std::uint64_t>(entry.bound) << 56 |
              static_cast<std::uint64_t>(generation) << 48 | scoreAndDepth};
}

// Does an entry that is shallower than the one the table holds for its position replace it?
bool Tt::improves(const TtEntry& entry, Slot old) {
  switch (old.bound()) {
    case TT_EXACT:
      return false;
    case TT_LOWER:
      return entry.bound == TT_LOWER && entry.score > old.score();
    case TT_UPPER:
      return entry.bound != TT_LOWER && entry.score < old.score();
    default:
      return entry.bound != TT_LOWER;
  }
}

// Reads and writes are relaxed: halves that do not belong together fail the check, and nothing
// outside the entry depends on what it says.
Tt::Slot Tt::read(std::size_t index) const {
  Slot& slot = slots_[index];
  return {std::atomic_ref(slot.checkAndMove).load(std::memory_order_relaxed),
          std::atomic_ref(slot.payload).load(std::memory_order_relaxed)};
}

void Tt::write(std::size_t index, Slot contents) {
  Slot& slot = slots_[index];
  std::atomic_ref(slot.checkAndMove).store(contents.checkAndMove, std::memory_order_relaxed);
  std::atomic_ref(slot.payload).store(contents.payload, std::memory_order_relaxed);
}

bool Tt::probe(const Board& board, TtEntry& entry) const {
  const std::size_t first = index(board);
  const std::uint32_t key = keyOf(board);
  for (std::size_t i = 0; i < CLUSTER; ++i) {
    const Slot slot = read(first ^ i);
    if (slot.key() != key) continue;
    entry.move = repaired(board, Move(slot.move()));
    entry.score = slot.score();
    entry.depth = slot.depth();
    entry.bound = slot.bound();
    entry.generation = slot.generation();
    return true;
  }
  return false;
}

void Tt::store(const Board& board, const TtEntry& entry, TtCounters& counters) {
  const std::size_t first = index(board);
  const std::uint32_t key = keyOf(board);
  std::array<Slot, CLUSTER> cluster;

  // Step 1. An entry of the same position is improved in place.
  for (std::size_t i = 0; i < CLUSTER; ++i) {
    cluster[i] = read(first ^ i);
    if (cluster[i].key() != key) continue;
    if (cluster[i].depth() <= entry.depth || improves(entry, cluster[i])) {
      ++counters.upd;
      write(first ^ i, pack(key, entry, generation_));
    }
    return;
  }

  // Step 2. Otherwise the entry of least worth goes: the shallowest one of an earlier search, or
  // when there is none, the shallowest of all.
  std::size_t victim = 0;
  int least = OLD_ENTRY;
  for (std::size_t i = 0; i < CLUSTER; ++i) {
    const bool old = cluster[i].generation() != generation_;
    const int worth = cluster[i].depth() - (old ? OLD_ENTRY : 0);
    if (worth < least) {
      least = worth;
      victim = i;
    }
  }
  ++counters.stores;
  if (cluster[victim].generation() == generation_) ++counters.overwrites;
  write(first ^ victim, pack(key, entry, generation_));
}

void Tt::erase(const Board& board) {
  const std::size_t first = index(board);
  const std::uint32_t key = keyOf(board);
  for (std::size_t i = 0; i < CLUSTER; ++i) {
    if (read(first ^ i).key() == key) write(first ^ i, Slot{});
  }
}

}  // namespace ombrin
