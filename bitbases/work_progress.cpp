#include "work_progress.h"

#include <array>
#include <cstdio>

#include "grid.h"

namespace bitbases {

namespace {

std::string rounded(double value, int digits) {
  std::array<char, 64> buffer;
  std::snprintf(buffer.data(), buffer.size(), "%.*f", digits, value);
  return buffer.data();
}

std::string duration(double seconds) {
  if (seconds < 100) return rounded(seconds, 0) + " s";
  if (seconds < 6000) return rounded(seconds / 60, 0) + " min";
  return rounded(seconds / 3600, 1) + " h";
}

}  // namespace

WorkProgress::WorkProgress(const std::vector<Material>& tables) {
  for (const Material& material : tables) total_ += Grid(material).words();
}

void WorkProgress::set(const Material& material, double part) {
  now_ = part * Grid(material).words();
}

void WorkProgress::finish(const Material& material, bool wasThere) {
  const double words = Grid(material).words();
  done_ += words;
  if (wasThere) there_ += words;
  now_ = 0;
}

std::string WorkProgress::text() const {
  const double worked = done_ - there_ + now_;
  const double left = total_ - done_ - now_;
  std::string text = rounded(100 * (1 - left / total_), 1) + " % done";
  if (worked > 0) text += ", " + duration(stopwatch_.seconds() / worked * left) + " left";
  return text;
}

}  // namespace bitbases
