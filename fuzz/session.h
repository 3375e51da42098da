// Sessions with the whole engine, in this process.
#pragma once

#include <algorithm>
#include <chrono>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <thread>

#include "board/fen.h"
#include "fuzz_input.h"
#include "scratch_directory.h"
#include "shell/engine.h"
#include "support/random_positions.h"
#include "util/scan.h"
#include "util/tokenizer.h"

namespace ombrin {

// An input is text in which every byte from 128 stands for a word of the target's table or of the
// common ones, so that one changed byte is another command, position or move.
class SessionText {
 public:
  explicit SessionText(std::span<const std::string_view> words) : words_(words) {}

  std::string expand(std::string_view input) const {
    std::string text;
    for (const char character : input) {
      const auto byte = static_cast<unsigned char>(character);
      if (byte < FIRST_WORD) {
        text += character;
      } else {
        text += word(byte - FIRST_WORD);
        text += ' ';
      }
    }
    return text;
  }

 private:
  static constexpr std::size_t FIRST_WORD = 128;
  static constexpr std::string_view COMMON[] = {
      "e2e4",       "e7e5",     "g1f3",      "b8c6",       "e1g1",  "e7e8q",
      "a2a1n",      "Nf3",      "exd5",      "O-O",        "0000",  "-1",
      "0",          "1",        "2",         "2147483647", "-9e9",  "99999999999999999999",
      "4294967296", "book.obk", "games.pgn", "none",       "value", "name",
  };

  std::string_view word(std::size_t number) const {
    if (number < words_.size()) return words_[number];
    number -= words_.size();
    if (number < VARIED_FENS.size()) return VARIED_FENS[number];
    return COMMON[(number - VARIED_FENS.size()) % std::size(COMMON)];
  }

  std::span<const std::string_view> words_;
};

// Would the line end the process, write elsewhere, or need much time or memory?
inline bool isTooMuch(std::string_view line) {
  line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
  Tokenizer words;
  words.setText(line);
  const RefString command = words.nextToken();
  std::string_view rest = words.rest().view();
  if (command == "quit") return true;
  if (command == "buildbook" || command == "mergebook" || command == "loadbook") {
    return rest.find('/') != std::string_view::npos;
  }
  const auto isAbove = [](std::string_view text, std::int64_t limit, std::int64_t absent) {
    return takeNumber(text).value_or(absent) > limit;
  };
  if (command == "perft" || command == "divide") return isAbove(rest, 2, 2);
  if (command == "md" || command == "maxdepth") return isAbove(rest, 2, 0) || !isAbove(rest, 0, 0);
  if (command == "mt" || command == "maxtime") return isAbove(rest, 1, 0);
  if (command == "memory") return isAbove(rest, 4, 0);
  if (command == "smp" || command == "cores") return isAbove(rest, 2, 0);
  // Threads and Hash; an option's number may stand behind anything.
  if (command == "setoption" || command == "set") {
    for (std::size_t i = 0; i < rest.size(); ++i) {
      if (rest[i] > '2' && rest[i] <= '9') return true;
      if (i > 0 && rest[i] >= '0' && rest[i] <= '9' && rest[i - 1] >= '0' && rest[i - 1] <= '9') {
        return true;
      }
    }
  }
  return false;
}

// Lets a search that goes on by itself get somewhere before the next line meets it.
inline void waitMoment() {
  std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

// Feeds the lines of `opening` and then those of the input to a new engine. A line of one '!' is
// for this loop: to wait a moment.
inline void playSession(std::string_view opening, const SessionText& words,
                        std::string_view input) {
  static const ScratchDirectory scratch;
  scratch.clear();
  scratch.write("games.pgn",
                "[WhiteElo \"2700\"]\n[BlackElo \"2700\"]\n[Result \"1-0\"]\n\n"
                "1. e4 e5 2. Nf3 Nc6 3. Bb5 a6 1-0\n");
  scratch.write("ombrin.ini",
                "search.nthreads=1\ntt.cachemb=1\nuci.trace=1\nbook.file=book.obk\n"
                "book.build.file=book.obk\nbook.build.minply=0\nbook.build.mingames=0\n"
                "book.build.minquality=0\n");
  const WorkingIn directory(scratch);

  // The console is there under a protocol too, and its searches hold everything up.
  std::string text = "md 2\nmt 1\n";
  text += opening;
  text += words.expand(input);
  Engine engine;
  engine.start("ombrin.ini");
  int lines = 0;
  for (std::string_view rest = text; !rest.empty() && lines < 200; ++lines) {
    const std::string_view line = takeLine(rest);
    if (line == "!") {
      waitMoment();
    } else if (!isTooMuch(line)) {
      engine.handleLine(line);
    }
  }
}

}  // namespace ombrin
