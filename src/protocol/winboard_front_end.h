#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "book/book_picker.h"
#include "game/game.h"
#include "platform/printf_format.h"
#include "protocol/engine_control.h"
#include "protocol/engine_status.h"
#include "protocol/log_redirection.h"
#include "protocol/output_stream.h"
#include "protocol/report_throttle.h"
#include "protocol/winboard_log.h"
#include "search/search_observer.h"
#include "util/ref_string.h"
#include "util/tokenizer.h"

namespace ombrin {

// Speaks the WinBoard/xboard protocol, version 2: plays the game, decides after every move whether
// to think, to ponder or to wait, takes moves back, follows the time controls, and prints thinking
// lines and its moves.
//
// How the two threads share the game. A search that ends calls `finished` on the search thread.
// It plays the engine's move, prints it, and may go on to make the move that it expects in reply
// and ponder on it, while the GUI, having read the move, already sends the next command. Therefore:
//
// 1. All of this happens under the game lock (EngineControl), which the command loop holds for
//    every line too. Whatever command follows a printed move finds the game complete.
// 2. `finished` takes the game lock first and replaces the status then. A command that has set the
//    status to IDLE under the game lock has thereby decided that a search which is still ending
//    has no consequences.
// 3. Whatever waits for the search to end (a stop) does so without the game lock, which
//    EngineControl sees to, because `finished` needs it.
// 4. `finished` cannot start a search and wait for the thread on which it runs itself. It hands the
//    ponder search over as the next one (EngineControl::searchNext), which begins when `finished`
//    has returned; a stop that comes in between stops it all the same.
// 5. A ponderhit may end the search and wait for that end. If `finished` comes meanwhile, it leaves
//    thinking on to the command thread, so that the ponderhit never meets the search after the one
//    it was meant for.
//
// Only what thinking lines and progress need is touched outside the game lock; it is atomic or has
// a lock of its own.
class WinboardFrontEnd final : public SearchObserver {
 public:
  struct Settings {
    std::string logDirectory;
    std::optional<int> timeGap;  // milliseconds of the remaining time to keep in reserve
  };

  WinboardFrontEnd(EngineControl& control, Game& game, BookPicker& picker, OutputStream& output)
      : control_(control), game_(game), picker_(picker), output_(output) {}

  void configure(Settings settings) { settings_ = std::move(settings); }
  // Has the protocol been entered?
  bool isActive() const { return active_; }

  // Takes a line that the protocol knows, entered or not, and every line while the protocol is
  // active: an empty command without effect, a move without "usermove", as from a GUI that passes
  // over the features, and an unknown word with an error message. Command thread, with the game
  // lock held.
  bool handleLine(const RefString& command, const RefString& arguments);

  void finished(const SearchReport& report) override;
  void reportBestLine(const SearchReport& report) override;
  void reportCurrentMove(const RootMoveReport& report) override;

 private:
  static constexpr int NO_SIDE = -1;  // force mode

  struct Command {
    std::string_view word;
    void (WinboardFrontEnd::*handle)();
  };
  // What the engine's last searched move came with.
  struct Answer {
    Game::Place place;  // behind the move
    Move expected;      // the reply; may be null
  };
  enum class Caller { COMMAND_THREAD, SEARCH_THREAD };

  // Commands without effect.
  void ignore() {}
  void enter();
  void listFeatures();
  void rejected();
  void level();
  void smp();
  void memory();
  void newGame();
  void variant();
  void setBoard();
  void force();
  void ping();
  void time();
  void moveTime();
  void depthLimit();
  void go();
  void userMove() { userMove(tokens_.rest()); }
  void userMove(const RefString& text);
  void undo();
  void remove();
  void moveNow();
  void stop();
  void easy() { ponder_ = false; }
  void hard() { ponder_ = true; }
  void post() { post_ = true; }
  void noPost() { post_ = false; }
  void analyze();
  void exitAnalysis();
  void pause();
  void resume();
  void quit();
  void hint();
  void listBookMoves();
  void tellProgress();

  void redirectLog();
  std::optional<int> numberArgument(int absent);
  void restartAnalysis();

  void think(Caller caller);
  void startThinking(Caller caller, WinboardStatus status, bool infinite);
  bool playBookMove();
  bool makePonderMove();
  SearchLimits limits(bool infinite);
  void ponderhit();
  // Plays what a search came to.
  void answer(Caller caller, const SearchReport& report);
  void announceWin(Color winner);

  // The move as a word of the game board; a search knows it as one of its own board.
  Move onGameBoard(Move move);
  // Uses the game as the GUI knows it: without the reply that is pondered on.
  template <typename Use>
  void useWithoutPonderMove(Use use);
  void takeBackForUser();

  void send(const char* format, ...) OMBRIN_PRINTF_FORMAT(2, 3);
  void note(const char* format, ...) OMBRIN_PRINTF_FORMAT(2, 3);

  static const Command COMMANDS[];

  EngineControl& control_;
  Game& game_;
  BookPicker& picker_;
  OutputStream& output_;
  std::mutex outputLock_;  // guards output_, a line at a time
  EngineStatus<WinboardStatus> status_;
  Settings settings_;
  bool active_ = false;
  Tokenizer tokens_;
  LogRedirection logs_;
  WinboardLog log_;
  ReportThrottle throttle_;  // search thread; reset before it starts
  std::atomic<bool> post_ = false;
  std::mutex progressLock_;  // guards progress_, which the search thread writes
  RootMoveReport progress_;
  // What the lines of a ponder search start behind. Search thread; set before it starts.
  Move ponderedMove_;

  // The rest under the game lock.
  bool ponder_ = false;
  bool analyze_ = false;
  bool paused_ = false;
  int engineSide_ = WHITE;
  int sideBeforeAnalysis_ = WHITE;
  Game::Place searched_{};         // where the last search began
  std::uint64_t searchStart_ = 0;  // tickCount() then
  std::optional<Answer> lastAnswer_;
  bool duringPonderhit_ = false;
  bool thinkAfterPonderhit_ = false;

  // Time control. Milliseconds.
  int movesPerControl_ = 0;  // 0: the whole game
  std::uint32_t basePly_ = 0;
  int millis_ = 0;
  int incrementMs_ = 0;
  std::optional<int> fixedMoveTime_;
  int depthLimit_ = 0;   // 0: none
  SearchLimits limits_;  // of the last search
};

}  // namespace ombrin
