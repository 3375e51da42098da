#include "search/statistics.h"

#include <algorithm>
#include <cinttypes>
#include <cmath>
#include <functional>

#include "util/format.h"

namespace ombrin {

namespace {

double ratio(double part, double whole) {
  return whole == 0 ? 0 : part / whole;
}
double percent(std::uint64_t part, std::uint64_t whole) {
  return 100 * ratio(static_cast<double>(part), static_cast<double>(whole));
}

void appendCount(std::string& text, std::uint64_t count) {
  const ShortCount shortened = shortCount(count);
  append(text, "%" PRIi64 "%c", shortened.value, shortened.unit);
}

std::uint64_t perSecond(std::uint64_t count, double seconds) {
  return static_cast<std::uint64_t>(std::llround(ratio(static_cast<double>(count), seconds)));
}

// The sum of one counter over all threads.
template <typename Select>
std::uint64_t sum(const SearchState& state, Select select) {
  std::uint64_t total = 0;
  for (const auto& thread : state.threads) {
    total += std::invoke(select, thread->counters).value();
  }
  return total;
}

void appendThread(std::string& text, const SearchThread& thread, std::uint64_t milliseconds) {
  constexpr std::uint64_t NANOSECONDS = 1'000'000;  // a millisecond's
  const double seconds = static_cast<double>(milliseconds) * 0.001;
  const SearchCounters& counters = thread.counters;
  const std::uint64_t wait = counters.waitTime.value() / NANOSECONDS;
  const std::uint64_t admin = counters.adminTime.value() / NANOSECONDS;
  std::uint64_t work = counters.workTime.value() / NANOSECONDS;
  if (thread.index == 0) work = milliseconds - std::min(milliseconds, wait + admin);
  const auto share = [seconds](std::uint64_t time) {
    return ratio(static_cast<double>(time), 10 * seconds);
  };

  if (thread.index == 0) {
    text += "master :";
  } else {
    append(text, "slave%i :", thread.index);
  }
  const ShortCount nodes = shortCount(counters.nodes());
  append(text, "%8" PRIi64 "%c", nodes.value, nodes.unit);
  append(text, " wait=%3.2f%%, admin=%3.2f%%, work=%5.2f%%, nps=", share(wait), share(admin),
         share(work));
  appendCount(text, perSecond(counters.nodes(), seconds));
  append(text, ", time=%" PRIu64, wait + admin + work);
  append(text, ", kills=%" PRIu64 "\n", thread.kills.value());
}

}  // namespace

ShortCount shortCount(std::uint64_t count) {
  constexpr std::string_view UNITS = " kmgt";
  std::size_t divisions = 0;
  for (; count > 99999 && divisions < 4; ++divisions) count /= 1024;
  return {static_cast<std::int64_t>(count), UNITS[divisions]};
}

std::string progressLine(const SearchState& state, std::uint64_t milliseconds, Score score,
                         std::string_view suffix) {
  std::string text;
  if (state.depth < 100) text += ' ';
  if (state.depth < 10) text += ' ';
  const int seldepth = state.mainThread().seldepth;
  append(text, "[%i/%i] ", state.depth, seldepth);
  if (seldepth < 10) text += ' ';

  const std::uint64_t seconds = milliseconds / 1000;
  if (seconds < 60) {
    append(text, "%8.3f", static_cast<double>(milliseconds) * 0.001);
  } else {
    append(text, "%2i:%02i:%02i", static_cast<int>(seconds / 3600),
           static_cast<int>(seconds / 60 % 60), static_cast<int>(seconds % 60));
  }
  const ShortCount nodes = shortCount(state.nodes());
  append(text, "%8" PRIi64 "%c", nodes.value, nodes.unit);

  if (score >= MATE_BOUND || score <= -MATE_BOUND) {
    append(text, "     %+3i#", score.movesToMate());
  } else {
    append(text, "%8i ", score.value());
  }
  text += ' ';
  text += suffix;
  return text;
}

std::string statisticsBlock(const SearchState& state, std::uint64_t milliseconds) {
  const auto count = [&state](auto select) { return sum(state, select); };
  const auto ttCount = [&state](auto select) {
    return sum(state, [select](const SearchCounters& counters) -> const Counter& {
      return std::invoke(select, counters.tt);
    });
  };
  using C = SearchCounters;
  const std::uint64_t inodes = count(&C::inodes);
  const std::uint64_t fnodes = count(&C::fnodes);
  const std::uint64_t qnodes = count(&C::qnodes);
  const std::uint64_t pnodes = count(&C::pnodes);
  const std::uint64_t total = inodes + qnodes + pnodes;
  const std::uint64_t cutnodes = count(&C::cutnodes);
  const std::uint64_t nullcuts = count(&C::nullcuts);
  const std::uint64_t probes = count(&C::probes);
  const std::uint64_t upd = ttCount(&TtCounters::upd);
  const std::uint64_t stores = ttCount(&TtCounters::stores);

  std::string text;
  append(text, "nodes  : i=%5.2f%%, f=%5.2f%%, q=%5.2f%%, p=%5.2f%%", percent(inodes, total),
         percent(fnodes, total), percent(qnodes - std::min(qnodes, fnodes), total),
         percent(pnodes, total));
  text += ", nps=";
  appendCount(text, perSecond(total, static_cast<double>(milliseconds) * 0.001));
  append(text, "\ninodes : pv=%5.2f%%, cut=%5.2f%%, all=%5.2f%%, end=%5.2f%%\n",
         percent(count(&C::pvnodes), inodes), percent(cutnodes + nullcuts, inodes),
         percent(count(&C::allnodes), inodes), percent(count(&C::endnodes), inodes));
  text += "tt     : probes=";
  appendCount(text, probes);
  append(text, ", hits=%5.2f%%, cuts=%5.2f%%", percent(count(&C::hits), probes),
         percent(count(&C::cuts), probes));
  append(text, ", upd=%5.2f%%, full=%5.2f%%\n", percent(upd, upd + stores),
         percent(stores - ttCount(&TtCounters::overwrites), state.tt.entries()));
  append(text, "order  : 1stpv=%5.2f%%, 1stcut=%5.2f%%\n",
         percent(count(&C::raises), count(&C::pvnodes)), percent(count(&C::firstcuts), cutnodes));
  // Killers are not counted when they are tried, only when they cut.
  append(text, "killers: %5.2f%%, #=%" PRIu64 "/%i, killed=%5.2f%%\n", 0.0, count(&C::killercuts),
         0, percent(count(&C::killercuts), inodes));
  append(text, "null   : %5.2f%%, cuts=%5.2f%%\n", percent(count(&C::nullnodes), total),
         percent(nullcuts, count(&C::nulltries)));
  append(text, "iid    : %5.2f%%\n", percent(count(&C::iidnodes), total));
  text += "reduce :  tries=";
  appendCount(text, count(&C::reducetries));
  append(text, ", fail=%5.2f%%\n", percent(count(&C::reducefails), count(&C::reducetries)));
  text += "smp    : splits=";
  appendCount(text, count(&C::splits));
  append(text, ", fail=%5.2f%%\n", percent(count(&C::splitfails), count(&C::splits)));
  for (int i = 0; i < state.threadCount; ++i) appendThread(text, *state.threads[i], milliseconds);
  return text;
}

}  // namespace ombrin
