#include "pgn/line_reader.h"

#include <algorithm>
#include <cstring>

namespace ombrin {

namespace {

constexpr std::string_view MARK = "\xef\xbb\xbf";

// A mark, or a tag's bracket with the empty half of a 16-bit character beside it.
bool isUtf16(std::string_view text) {
  using namespace std::string_view_literals;
  for (const std::string_view start : {"\xff\xfe"sv, "\xfe\xff"sv, "[\0"sv, "\0["sv}) {
    if (text.starts_with(start)) return true;
  }
  return false;
}

}  // namespace

std::optional<std::string_view> LineReader::next() {
  skipMark();
  while (true) {
    if (feed_ < begin_) feed_ = find('\n', begin_);
    if (carriage_ < begin_) carriage_ = find('\r', begin_);
    const std::size_t stop = std::min(feed_, carriage_);
    const bool complete = stop + 1 < end_ || (stop < end_ && stop == feed_);
    if (complete) return take(stop, stop + (stop + 1 == feed_ ? 2 : 1));
    // A carriage return at the very end may be the first half of a line end.
    if (end_ - begin_ < LARGEST_LINE && fill()) continue;
    if (stop < end_) return take(stop, stop + 1);
    if (begin_ == end_) return std::nullopt;
    return take(end_, end_);
  }
}

std::string_view LineReader::take(std::size_t end, std::size_t next) {
  const std::string_view line(buffer_.data() + begin_, end - begin_);
  begin_ = next;
  return line;
}

bool LineReader::atEnd() {
  skipMark();
  return !has(1);
}

bool LineReader::nextStartsWith(std::string_view start) {
  skipMark();
  return has(start.size()) && std::string_view(buffer_.data() + begin_, start.size()) == start;
}

void LineReader::skipMark() {
  if (has(1) && buffer_[begin_] == MARK.front() && has(MARK.size()) &&
      std::string_view(buffer_.data() + begin_, MARK.size()) == MARK) {
    begin_ += MARK.size();
  }
}

bool LineReader::has(std::size_t count) {
  while (end_ - begin_ < count) {
    if (!fill()) return false;
  }
  return true;
}

// The place of the first such character at or behind `from`, or end_.
std::size_t LineReader::find(char c, std::size_t from) const {
  const void* const found = std::memchr(buffer_.data() + from, c, end_ - from);
  return found == nullptr
             ? end_
             : static_cast<std::size_t>(static_cast<const char*>(found) - buffer_.data());
}

// Gets more bytes behind those that are there, which may move. False when there are none.
bool LineReader::fill() {
  if (atSourceEnd_) return false;
  const bool isFirst = buffer_.empty();
  if (isFirst) buffer_.resize(FIRST_SIZE);
  std::copy(buffer_.begin() + static_cast<std::ptrdiff_t>(begin_),
            buffer_.begin() + static_cast<std::ptrdiff_t>(end_), buffer_.begin());
  const std::size_t moved = begin_;
  end_ -= moved;
  begin_ = 0;
  // What lay before begin_ is looked for from there.
  const auto follow = [&](std::size_t& place, char c) {
    place = place < moved ? find(c, 0) : place - moved;
  };
  follow(feed_, '\n');
  follow(carriage_, '\r');
  if (end_ == buffer_.size()) buffer_.resize(2 * buffer_.size());

  const std::size_t old = end_;
  const std::size_t count = source_.read(std::span(buffer_).subspan(old));
  atSourceEnd_ = count == 0;
  end_ += count;
  if (feed_ == old) feed_ = find('\n', old);
  if (carriage_ == old) carriage_ = find('\r', old);
  if (isFirst && isUtf16(std::string_view(buffer_.data(), end_))) {
    isWide_ = true;
    atSourceEnd_ = true;
    end_ = feed_ = carriage_ = 0;
  }
  return begin_ < end_ && !atSourceEnd_;
}

}  // namespace ombrin
