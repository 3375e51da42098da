#pragma once

#include "search/counter.h"
#include "search/tt.h"

namespace ombrin {

// What a search thread did in the current search.
struct SearchCounters {
  Counter inodes;  // interior nodes
  Counter qnodes;  // quiescence nodes
  Counter fnodes;  // frontier: calls of quiescence from the main search
  Counter pnodes;  // moves pruned without a search

  Counter pvnodes;   // nodes with an exact score
  Counter cutnodes;  // fail highs by the hash move or one of the picker's, at split nodes too
  Counter allnodes;  // nodes that failed low
  Counter endnodes;  // nodes without a legal move

  Counter probes;  // of the transposition table
  Counter hits;
  Counter cuts;  // nodes that a hit ended
  TtCounters tt;

  Counter raises;      // moves that raised alpha
  Counter firstcuts;   // fail highs by the first move
  Counter killercuts;  // fail highs by a killer
  Counter nulltries;
  Counter nullcuts;
  Counter nullnodes;  // nodes below a null move
  Counter iidnodes;   // nodes of internal iterative deepening
  Counter reducetries;
  Counter reducefails;

  Counter splits;      // split nodes opened
  Counter splitfails;  // of those, aborted by a fail high
  Counter splitmoves;  // moves searched at split nodes
  Counter splitnodes;  // nodes below own split nodes
  Counter waitTime;    // nanoseconds without work,
  Counter adminTime;   // joining and leaving split nodes,
  Counter workTime;    // and searching

  // Everything this thread has looked at.
  std::uint64_t nodes() const { return inodes.value() + qnodes.value() + pnodes.value(); }
};

}  // namespace ombrin
