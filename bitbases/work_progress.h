#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "material.h"

namespace bitbases {

class Stopwatch {
 public:
  double seconds() const {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count();
  }

 private:
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

// How much of a long work on tables is done, by the number of their positions.
class WorkProgress {
 public:
  explicit WorkProgress(const std::vector<Material>& tables);

  // Of the table at hand, so much (from 0 to 1) is done.
  void set(const Material& material, double part);
  // It is done. When it took no work, it does not count for the speed.
  void finish(const Material& material, bool wasThere);
  // "34.2 % done, 12 min left"
  std::string text() const;

 private:
  Stopwatch stopwatch_;
  double total_ = 0;
  double done_ = 0;   // tables
  double there_ = 0;  // of these
  double now_ = 0;    // of the table at hand
};

}  // namespace bitbases
