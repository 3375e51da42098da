#include "shell/console.h"

#include <algorithm>

#include "board/display.h"
#include "board/fen.h"
#include "board/notation.h"
#include "protocol/refusal.h"
#include "util/print.h"
#include "util/scan.h"
#include "util/tokenizer.h"

namespace ombrin {

const Console::Command Console::COMMANDS[] = {
    {{}, "[p]<sq>         move piece p to square sq", nullptr},
    {{"go", "g"}, "g(o)            search", &Console::search},
    {{"reset"}, "reset           setup initial position", &Console::reset},
    {{"fen"}, "fen <fen>       setup board according to <fen>", &Console::setUpFen},
    {{"maxtime", "mt"}, "m(ax)t(ime)     set max search time (seconds)", &Console::limitTime},
    {{"maxdepth", "md"}, "m(ax)d(epth)    set max search depth", &Console::limitDepth},
    {{"moves", "m"}, "m(oves)         show all legal moves", &Console::listMoves},
    {{}, "", nullptr},
    {{"book"}, "book            show book contents", &Console::listBook},
    {{"buildbook"},
     "buildbook ...   create opening book from PGN file, see readme",
     &Console::buildBook},
    {{"mergebook"},
     "mergebook ...   create opening book from PGN file, see readme",
     &Console::mergeBooks},
    {{"divide"}, "divide [n]      count legal positions per move", &Console::divideTree},
    {{"perft"}, "perft  [n]      count legal moves to depth [n]", &Console::countTree},
    {{"set"}, "set             display/alter options", &Console::set},
    {{}, "", nullptr},
    {{}, "uci             enter uci mode", nullptr},
    {{}, "", nullptr},
    {{"quit", "q"}, "q(uit)          exit", &Console::quit},
    {{"logbook"}, nullptr, &Console::showBookStatistics},
    {{"loadbook"}, nullptr, &Console::loadBook},
    {{"eval"}, nullptr, &Console::showEvaluation},
    {{"help", "h", "?"}, nullptr, &Console::help},
};

const Console::Option Console::OPTIONS[] = {
    {"async", &Console::isOn<&Console::async_>, &Console::turn<&Console::async_>},
    {"book", &Console::isOn<&Console::useBook_>, &Console::turn<&Console::useBook_>},
    {"cleartt", &Console::isOn<&Console::clearTable_>, &Console::turn<&Console::clearTable_>},
    {"threads", &Console::threads, &Console::setThreads},
};

namespace {

// Piece placement as it stands at the beginning of a FEN?
bool isBoardField(std::string_view word) {
  const auto isKing = [](char letter) { return letter == 'k' || letter == 'K'; };
  return word.find_first_not_of("12345678pnbrqkPNBRQK/") == std::string_view::npos &&
         word.find('/') != std::string_view::npos && std::ranges::count_if(word, isKing) == 2;
}

// "12", "12." or a lone "."?
bool isMoveNumber(std::string_view word) {
  if (word.ends_with('.')) {
    word.remove_suffix(1);
    if (word.empty()) return true;
  }
  return !word.empty() && word.front() != '0' &&
         word.find_first_not_of("0123456789") == std::string_view::npos;
}

// "1.e4" without its number.
RefString withoutMoveNumber(const RefString& word) {
  const std::size_t point = word.view().find_first_not_of("0123456789");
  if (point == std::string_view::npos || point == 0 || word.view()[point] != '.') return word;
  return RefString(word.view().substr(word.view().find_first_not_of('.', point)));
}

bool looksLikeMove(std::string_view word) {
  return word == "o-o" || word == "o-o-o" || word == "O-O" || word == "O-O-O" ||
         word.find_first_of("12345678") != std::string_view::npos;
}

}  // namespace

void Console::handleLine(const RefString& command, const RefString& arguments) {
  if (command.empty()) return showBoard();
  for (const Command& known : COMMANDS) {
    if (known.handle != nullptr &&
        std::ranges::find(known.words, command.view()) != known.words.end()) {
      return (this->*known.handle)(arguments);
    }
  }
  if (isBoardField(command.view())) {
    setUp(std::string(command.view()) + ' ' + std::string(arguments.view()));
  } else {
    playMoves(command, arguments);
  }
}

bool Console::knows(const RefString& command) const {
  return std::ranges::any_of(COMMANDS, [&](const Command& known) {
    return known.handle != nullptr &&
           std::ranges::find(known.words, command.view()) != known.words.end();
  });
}

void Console::showBoard() const {
  printBoard(game_.board(), stdout);
}

void Console::help(const RefString& /*arguments*/) {
  constexpr char RULER[] = "--------------------------------------------------------";
  print(stdout, "help\n%s\n", RULER);
  for (const Command& command : COMMANDS) {
    if (command.help != nullptr) print(stdout, "%s\n", command.help);
  }
  print(stdout, "%s\n\n", RULER);
}

void Console::quit(const RefString& /*arguments*/) {
  leaving_ = true;
}

void Console::reset(const RefString& /*arguments*/) {
  game_.setUp(START_FEN);
  showBoard();
}

void Console::setUpFen(const RefString& arguments) {
  if (arguments.empty()) {
    print(stdout, "fen is required\n");
  } else {
    setUp(arguments.view());
  }
}

void Console::setUp(std::string_view fen) {
  if (!reportRefusal(game_.setUp(fen))) print(stdout, "setfen failed\n");
  showBoard();
}

void Console::set(const RefString& arguments) {
  constexpr std::size_t LONGEST_WORD = 8;
  std::string_view text = arguments.view();
  const std::string_view name = takeWord(text, LONGEST_WORD);
  const std::string_view value = takeWord(text, LONGEST_WORD);
  if (!value.empty()) return setOption(name, value);
  for (const Option& option : OPTIONS) {
    print(stdout, "%-7s=%i\n", option.name, (this->*option.value)());
  }
}

void Console::setOption(std::string_view name, std::string_view value) {
  for (const Option& option : OPTIONS) {
    if (name == option.name) return (this->*option.set)(value);
  }
  print(stdout, "set: unknown parameter: %s\n", std::string(name).c_str());
}

void Console::setThreads(std::string_view value) {
  control_.stopSearch();
  control_.search().setThreads(toInt(value));
}

void Console::playMoves(const RefString& command, const RefString& arguments) {
  Tokenizer rest;
  rest.setTrimmedText(arguments);
  bool moved = false;        // any
  bool lastWasMove = false;  // and nothing after it
  for (RefString word = command;; word = rest.nextToken()) {
    if (!word.empty() && !isMoveNumber(word.view())) {
      const RefString text = withoutMoveNumber(word);
      lastWasMove = looksLikeMove(text.view()) && playMove(text);
      if (!lastWasMove) break;
      moved = true;
    } else if (!word.empty()) {
      lastWasMove = false;
    }
    if (rest.atEnd()) break;
  }
  if (lastWasMove) {
    showBoard();
  } else {
    print(stdout, "no such command: %s\n", command.c_str());
  }
  if (moved) game_.compactPieces();
}

bool Console::playMove(const RefString& word) {
  const Move move = parseMove(game_.board(), word.view());
  if (move.isNull()) {
    print(stdout, "invalid move: %s\n", word.c_str());
    return false;
  }
  if (game_.play(move).isNull()) {
    print(stdout, "move not accepted: %s\n", word.c_str());
    return false;
  }
  return true;
}

}  // namespace ombrin
