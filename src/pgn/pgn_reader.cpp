#include "pgn/pgn_reader.h"

#include <algorithm>
#include <optional>

#include "util/print.h"
#include "util/ref_string.h"
#include "util/scan.h"

namespace ombrin {

namespace {

struct TextTag {
  std::string_view start;
  std::string PgnGame::*field;
};
constexpr std::array<TextTag, 9> TEXT_TAGS = {{
    {"[Event ", &PgnGame::event},
    {"[Site ", &PgnGame::site},
    {"[Date ", &PgnGame::date},
    {"[EventDate ", &PgnGame::date},
    {"[Round ", &PgnGame::round},
    {"[White ", &PgnGame::white},
    {"[Black ", &PgnGame::black},
    {"[FEN ", &PgnGame::fen},
    {"[ECO ", &PgnGame::eco},
}};

struct NumberTag {
  std::string_view start;
  int PgnGame::*field;
};
constexpr std::array<NumberTag, 2> NUMBER_TAGS = {{
    {"[WhiteElo ", &PgnGame::whiteElo},
    {"[BlackElo ", &PgnGame::blackElo},
}};

// By annotation code; code 0 is no glyph.
constexpr std::array<std::string_view, 7> GLYPHS = {"", "!", "?", "!!", "??", "!?", "?!"};

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

// The code of the first result text that `text` starts with.
std::optional<int> resultAtStart(std::string_view text) {
  for (int code = 0; code < static_cast<int>(PGN_RESULT_TEXTS.size()); ++code) {
    if (text.starts_with(PGN_RESULT_TEXTS[code])) return code;
  }
  return std::nullopt;
}

// The text behind the first quotation mark after the tag's name; empty when there is none.
std::string_view fromQuote(std::string_view line) {
  const std::size_t nameEnd = std::min(line.find(' '), line.size());
  const std::size_t quote = line.find('"', nameEnd);
  return quote == std::string_view::npos ? std::string_view() : line.substr(quote + 1);
}

// Drops everything up to the next closing brace. False when there is none: the comment goes on.
bool skipComment(std::string_view& text) {
  const std::size_t brace = text.find('}');
  if (brace == std::string_view::npos) return false;
  text.remove_prefix(brace + 1);
  return true;
}

// Drops a variation with those inside it, or as far as a comment in it; at the most the line.
void skipVariation(std::string_view& text) {
  int depth = 0;
  std::size_t index = 0;
  for (; index < text.size() && text[index] != '{'; ++index) {
    if (text[index] == '(') ++depth;
    if (text[index] == ')' && --depth == 0) {
      ++index;
      break;
    }
  }
  text.remove_prefix(index);
}

// Takes what stands before the first blank or tab, and the blanks that follow.
std::string_view takeToken(std::string_view& text) {
  std::size_t end = 0;
  while (end < text.size() && text[end] != ' ' && text[end] != '\t') ++end;
  const std::string_view token = text.substr(0, end);
  if (end < text.size()) ++end;
  while (end < text.size() && text[end] == ' ') ++end;
  text.remove_prefix(end);
  return token;
}

}  // namespace

const PgnGame* PgnReader::readGame() {
  if (file_.atEnd()) return nullptr;
  game_.clear();
  bool inHeader = true;
  while (const std::optional<std::string_view> line = file_.readLine()) {
    ++lineCount_;
    inHeader = inHeader && line->starts_with('[');
    readLine(*line);
    if (inHeader) continue;
    const int next = file_.peek();
    if (next == EOF || (next == '[' && !game_.inComment)) break;
  }
  if (!game_.warning.empty()) {
    print(stdout, "line %u: WARN %s\n", lineCount_, game_.warning.c_str());
  }
  return &game_;
}

void PgnReader::readLine(std::string_view line) {
  if (!game_.inComment && line.starts_with('[')) {
    readTag(line);
  } else {
    readMoveText(line);
  }
}

void PgnReader::readTag(std::string_view line) {
  const std::string_view rest = fromQuote(line);
  const std::string_view value = rest.substr(0, rest.find('"'));
  if (line.starts_with("[Result ")) {
    setResultTag(value, rest);
    return;
  }
  for (const TextTag& tag : TEXT_TAGS) {
    if (line.starts_with(tag.start)) game_.*tag.field = value;
  }
  for (const NumberTag& tag : NUMBER_TAGS) {
    if (line.starts_with(tag.start)) game_.*tag.field = toInt(value);
  }
}

void PgnReader::setResultTag(std::string_view value, std::string_view restOfLine) {
  if (const std::optional<int> code = resultAtStart(value)) {
    game_.result = *code;
  } else {
    game_.warning = "invalid result: ";
    game_.warning += restOfLine;
  }
}

void PgnReader::readMoveText(std::string_view line) {
  line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
  // An empty line inside a comment changes nothing either.
  while (!line.empty()) {
    if (game_.inComment || line.front() == '{') {
      game_.inComment = !skipComment(line);
      if (game_.inComment) return;
    } else if (line.front() == '(') {
      skipVariation(line);
    } else {
      readToken(takeToken(line));
    }
  }
}

void PgnReader::readToken(std::string_view token) {
  if (readResult(token)) return;
  while (!token.empty() && (isDigit(token.front()) || token.front() == '.')) {
    token.remove_prefix(1);
  }
  if (token.empty()) return;
  if (token.front() == '$' && token.size() > 1 && isDigit(token[1])) {
    const auto code = static_cast<std::size_t>(token[1] - '0');
    if (code < GLYPHS.size()) game_.moves.appendToLast(GLYPHS[code]);
    return;
  }
  // Evaluation symbols and draw offers.
  if (std::string_view("+-=").find(token.front()) != std::string_view::npos) return;
  game_.moves.add(token);
}

bool PgnReader::readResult(std::string_view token) {
  // Most tokens are moves and need no comparison of texts.
  if (token.empty() || (token.front() != '*' && token.front() != '1' && token.front() != '0')) {
    return false;
  }
  const std::optional<int> code = resultAtStart(token);
  if (!code) return false;
  if (game_.result != NO_RESULT && game_.result != *code) {
    game_.warning = "Warning: mixed results: ";
    game_.warning += PGN_RESULT_TEXTS[*code];
    game_.warning += " <> ";
    game_.warning += PGN_RESULT_TEXTS[game_.result];
  } else {
    game_.result = *code;
  }
  return true;
}

}  // namespace ombrin
