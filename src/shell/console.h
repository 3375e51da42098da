#pragma once

#include <array>
#include <string>
#include <string_view>

#include "book/book_file.h"
#include "book/book_picker.h"
#include "game/game.h"
#include "protocol/engine_control.h"
#include "util/ini_file.h"
#include "util/ref_string.h"

namespace ombrin {

// The commands that a person types, answered on standard output. Used on the command thread, with
// the game lock held.
class Console {
 public:
  Console(EngineControl& control, Game& game, BookFile& book, BookPicker& picker,
          const IniFile& settings)
      : control_(control), game_(game), book_(book), picker_(picker), settings_(settings) {}

  // The ini file that was named at start-up; the one for building books unless a command names
  // another.
  void setIniFile(std::string name) { iniFile_ = std::move(name); }
  // The processor's clock in MHz, for the cost of a position in clock ticks; 0 when unknown.
  void setProcessorClock(int megahertz) { processorClock_ = megahertz; }

  // Is the word a command, not a move or a position?
  bool knows(const RefString& command) const;
  // Takes any line: a command, a position in FEN, or moves to make on the board.
  void handleLine(const RefString& command, const RefString& arguments);
  // Has the command to leave been given?
  bool isLeaving() const { return leaving_; }

  void showBoard() const;
  // Opens the book of that name instead of the one that is open, and takes over its settings.
  void loadBook(const RefString& name);

 private:
  // A row both of the dispatch table and of the help text.
  struct Command {
    std::array<std::string_view, 3> words;  // the command and its short forms; unused ones empty
    const char* help;                       // null: not listed
    void (Console::*handle)(const RefString& arguments);  // null: only listed
  };

  // A row both of what "set" changes and of what it shows.
  struct Option {
    const char* name;
    int (Console::*value)() const;
    void (Console::*set)(std::string_view value);  // which is not empty
  };

  void help(const RefString& arguments);
  void quit(const RefString& arguments);
  void reset(const RefString& arguments);
  void setUpFen(const RefString& arguments);
  void set(const RefString& arguments);
  void divideTree(const RefString& arguments);
  void countTree(const RefString& arguments);
  void listMoves(const RefString& arguments);
  void search(const RefString& arguments);
  void limitDepth(const RefString& arguments);
  void limitTime(const RefString& arguments);
  void listBook(const RefString& arguments);
  void buildBook(const RefString& arguments);
  void mergeBooks(const RefString& arguments);
  void showBookStatistics(const RefString& arguments);
  void showEvaluation(const RefString& arguments);

  void setOption(std::string_view name, std::string_view value);
  template <bool Console::*FLAG>
  int isOn() const {
    return this->*FLAG ? 1 : 0;
  }
  template <bool Console::*FLAG>
  void turn(std::string_view value) {
    this->*FLAG = value.front() == '1';
  }
  int threads() const { return control_.search().threadCount(); }
  void setThreads(std::string_view value);
  void setUp(std::string_view fen);
  void playMoves(const RefString& command, const RefString& arguments);
  bool playMove(const RefString& word);
  bool showBookMove();
  void showBook();

  static const Command COMMANDS[];
  static const Option OPTIONS[];

  EngineControl& control_;
  Game& game_;
  BookFile& book_;
  BookPicker& picker_;
  const IniFile& settings_;
  std::string iniFile_;
  bool leaving_ = false;
  bool async_ = false;
  bool useBook_ = true;
  bool clearTable_ = true;
  SearchLimits limits_{.moveTime = DEFAULT_MOVE_TIME};
  SearchObserver observer_;  // the log tells what a search finds
  int processorClock_ = 0;
};

}  // namespace ombrin
