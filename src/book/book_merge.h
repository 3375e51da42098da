#pragma once

#include <string>

namespace ombrin {

// What becomes of a position that both books know.
enum class MergeRule {
  MASTER_WINS,  // the master's moves alone
  SUM,          // all moves of both, with their games together
};

// Writes the positions of both books, which are of one kind, to `result`. Reports on standard
// output. True when the result is complete under its name.
bool mergeBooks(const std::string& master, const std::string& secondary, const std::string& result,
                MergeRule rule = MergeRule::MASTER_WINS);

}  // namespace ombrin
