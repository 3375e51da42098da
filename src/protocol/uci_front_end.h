#pragma once

#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "book/book_picker.h"
#include "game/game.h"
#include "protocol/engine_control.h"
#include "protocol/engine_status.h"
#include "protocol/log_redirection.h"
#include "protocol/output_stream.h"
#include "protocol/report_throttle.h"
#include "search/search_observer.h"
#include "util/ref_string.h"
#include "util/tokenizer.h"

namespace ombrin {

// Speaks the Universal Chess Interface: sets up positions, turns "go" into limits of the search
// clock, answers from the opening book, and reports a search's progress and result.
//
// Commands arrive on the command thread, with the game lock held; the observer's operations come on
// the search thread and touch neither the board nor the game lock. The status decides which of the
// two prints the best move: `finished` does, unless the client may not hear it yet, because it has
// the engine ponder or analyse without end. Then the answer is held back, and "ponderhit" or "stop"
// gives it. Every "go" has one answer.
class UciFrontEnd final : public SearchObserver {
 public:
  struct Settings {
    std::string logDirectory;
    bool trace = false;
    std::optional<int> timeGap;  // milliseconds of the remaining time to keep in reserve
  };

  UciFrontEnd(EngineControl& control, Game& game, BookPicker& picker, OutputStream& output)
      : control_(control), game_(game), picker_(picker), output_(output) {}

  void configure(Settings settings) { settings_ = std::move(settings); }
  // Has the protocol been entered?
  bool isActive() const { return active_; }

  // Takes a line that the protocol knows, entered or not. An empty command is taken, without
  // effect, while the protocol is active.
  bool handleLine(const RefString& command, const RefString& arguments);

  void finished(const SearchReport& report) override;
  void reportBestLine(const SearchReport& report) override;
  void reportCurrentMove(const RootMoveReport& report) override;

 private:
  struct Command {
    std::string_view word;
    void (UciFrontEnd::*handle)();
  };
  struct Range {
    int least;
    int most;
  };
  // A row both of what is announced and of what "setoption" takes.
  struct Option {
    const char* name;
    const char* type;
    std::string (*standard)(const UciFrontEnd&);  // the default that is announced; null: none
    std::optional<Range> range;
    void (UciFrontEnd::*set)(std::string_view value);
  };
  void enter();
  void position();
  void go();
  void isReady();
  void setOption();
  void newGame();
  void ponderhit();
  void stop();
  void quit();

  void setOpponent(std::string_view value);
  void setHash(std::string_view value);
  void clearHash(std::string_view value);
  void setPonder(std::string_view value);
  void setOwnBook(std::string_view value);
  void setThreads(std::string_view value);
  void setMoveOverhead(std::string_view value);
  void setAnalyseMode(std::string_view value);
  void ignoreOption(std::string_view /*value*/) {}

  void redirectLog();
  void redirectErrors();
  void announce();
  std::string optionLines() const;
  void stopForPosition(UciStatus status);
  // Sets up the board from the tokens and returns the token that follows.
  RefString setUp(RefString token);
  void playMoves();
  bool isPlaying(const SearchLimits& limits) const;
  bool answerFromBook();
  // What "go" asks for; `status` becomes what the engine is then doing.
  SearchLimits readLimits(UciStatus& status);
  void completeLimits(SearchLimits& limits);
  int reserve(int remaining) const;
  // The next token's number; nothing when the token is not one.
  std::optional<std::int64_t> numberToken();
  // Prints what the search came to that ended unheard.
  void reportHeldBack();
  void sendInfo(const SearchReport& report);
  void sendBestMove(Move bestMove, Move ponderMove);
  void send(std::string_view line);
  // A step worth noting, to the log and, when traces are on, to the GUI. A null text shows as "?".
  void trace(const char* text);
  void logLine(const char* text, const char* suffix = "");

  static const Command COMMANDS[];
  static const Option OPTIONS[];

  EngineControl& control_;
  Game& game_;
  BookPicker& picker_;
  OutputStream& output_;
  std::mutex outputLock_;  // guards output_, a line at a time
  EngineStatus<UciStatus> status_;
  Settings settings_;
  bool active_ = false;
  bool useBook_ = true;
  bool canPonder_ = false;
  bool isAnalysis_ = false;
  int moveOverhead_ = 0;  // milliseconds; 0: see reserve()
  SearchLimits limits_;   // of the last "go"
  Tokenizer tokens_;
  LogRedirection logs_;
  ReportThrottle throttle_;  // search thread; reset before it starts

  // The opponent, as the GUI reports it.
  RefString opponentName_;
  RefString opponentTitle_;
  RefString opponentKind_;
  int opponentElo_ = 0;
};

}  // namespace ombrin
