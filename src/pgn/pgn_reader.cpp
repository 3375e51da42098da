#include "pgn/pgn_reader.h"

#include <algorithm>
#include <optional>

#include "pgn/move_spelling.h"
#include "util/ref_string.h"
#include "util/scan.h"

namespace ombrin {

namespace {

struct TextTag {
  std::string_view start;
  std::string PgnGame::*field;
};
constexpr std::array<TextTag, 10> TEXT_TAGS = {{
    {"[Event ", &PgnGame::event},
    {"[Site ", &PgnGame::site},
    {"[Date ", &PgnGame::date},
    {"[EventDate ", &PgnGame::date},
    {"[Round ", &PgnGame::round},
    {"[White ", &PgnGame::white},
    {"[Black ", &PgnGame::black},
    {"[FEN ", &PgnGame::fen},
    {"[ECO ", &PgnGame::eco},
    {"[Variant ", &PgnGame::variant},
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

// What a character may mean inside a word.
enum Trait : unsigned {
  ENDS_WORD = 1,     // a blank, or what stands by itself
  STARTS_GLYPH = 2,  // of which the word knows nothing
  IS_ODD = 4,        // in words that are not spelled like most
};
constexpr std::array<std::uint8_t, 256> makeTraits() {
  std::array<std::uint8_t, 256> traits{};
  for (const char c : {' ', '\t', '\v', '\f', '{', '}', '(', ')', ';'}) {
    traits[static_cast<unsigned char>(c)] = ENDS_WORD;
  }
  traits['$'] = STARTS_GLYPH;
  for (const unsigned c : {unsigned{'p'}, FIGURINE_LEAD, VARIANT_LEAD}) traits[c] = IS_ODD;
  return traits;
}
constexpr std::array<std::uint8_t, 256> TRAITS = makeTraits();

unsigned traitsOf(char c) {
  return TRAITS[static_cast<unsigned char>(c)];
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

// Without the number of a move and its dots. Castling may begin with a digit, too.
std::string_view withoutNumber(std::string_view word) {
  while (!word.empty() && (isDigit(word.front()) || word.front() == '.') &&
         !isCastlingWithZeros(word)) {
    word.remove_prefix(1);
  }
  return word;
}

}  // namespace

const PgnGame* PgnReader::readGame() {
  if (lines_.atEnd()) return nullptr;
  game_.clear();
  commentLines_ = 0;
  variationDepth_ = 0;
  bool inHeader = true;
  while (const std::optional<std::string_view> line = lines_.next()) {
    ++lineCount_;
    inHeader = inHeader && line->starts_with('[');
    readLine(*line);
    if (!inHeader && isGameNext()) break;
  }
  return &game_;
}

// Does the next line begin another game?
bool PgnReader::isGameNext() {
  if (commentLines_ == 0) return lines_.nextStartsWith("[");
  if (commentLines_ <= MAX_COMMENT_LINES || !lines_.nextStartsWith("[Event ")) return false;
  game_.warning = "a comment is open for more than 1000 lines";
  return true;
}

void PgnReader::readLine(std::string_view line) {
  if (commentLines_ > 0) {
    ++commentLines_;
  } else if (line.starts_with('[')) {
    return readTag(line);
  } else if (line.starts_with('%')) {
    return;
  }
  readMoveText(line);
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

void PgnReader::readMoveText(std::string_view text) {
  // An empty line inside a comment changes nothing either.
  while (!text.empty()) {
    if (commentLines_ > 0 || text.front() == '{') {
      const std::size_t brace = text.find('}');
      if (brace == std::string_view::npos) {
        commentLines_ = std::max(commentLines_, 1U);
        return;
      }
      commentLines_ = 0;
      text.remove_prefix(brace + 1);
    } else if (text.front() == ';') {
      return;
    } else if (variationDepth_ > 0 || text.front() == '(') {
      text = skipVariation(text);
    } else if ((traitsOf(text.front()) & ENDS_WORD) != 0) {
      text.remove_prefix(1);  // a blank, or the end of something that has no beginning
    } else {
      text = readToken(text);
    }
  }
}

// As far as it goes in this line, or to a comment in it. Returns what follows.
std::string_view PgnReader::skipVariation(std::string_view text) {
  std::size_t index = 0;
  for (; index < text.size() && text[index] != '{' && text[index] != ';'; ++index) {
    if (text[index] == '(') ++variationDepth_;
    if (text[index] == ')' && --variationDepth_ == 0) return text.substr(index + 1);
  }
  return text.substr(index);
}

// Returns what follows.
std::string_view PgnReader::readToken(std::string_view text) {
  if (text.front() == '$' && text.size() > 1 && isDigit(text[1])) return readGlyph(text);
  unsigned traits = 0;
  std::size_t end = 0;
  for (; end < text.size(); ++end) {
    const unsigned here = traitsOf(text[end]);
    if ((here & ENDS_WORD) != 0 || ((here & STARTS_GLYPH) != 0 && end > 0)) break;
    traits |= here;
  }
  readWord(text.substr(0, end), traits);
  return text.substr(end);
}

// Of the number, only the first digit tells. Returns what follows.
std::string_view PgnReader::readGlyph(std::string_view text) {
  const auto code = static_cast<std::size_t>(text[1] - '0');
  if (code < GLYPHS.size()) game_.moves.appendToLast(GLYPHS[code]);
  std::size_t end = 1;
  while (end < text.size() && isDigit(text[end])) ++end;
  return text.substr(end);
}

void PgnReader::readWord(std::string_view word, unsigned traits) {
  if (readResult(word)) return;
  word = withoutNumber(word);
  if (word.empty()) return;
  switch (word.front()) {
    case '!':
    case '?':
      return game_.moves.appendToLast(word);
    case '-':
      // A null move is no move of this game, but what follows it is none either.
      if (word == "--") game_.moves.add(word);
      return;
    case '+':
    case '=':
      return;  // evaluation symbols and draw offers
    case '0':
      traits |= IS_ODD;
      break;
    default:
      break;
  }
  if ((traits & IS_ODD) != 0) return addOddMove(word);
  game_.moves.add(word);
}

void PgnReader::addOddMove(std::string_view word) {
  const std::string move = usualSpelling(word);
  if (!move.empty()) game_.moves.add(move);
}

bool PgnReader::readResult(std::string_view word) {
  // Most words are moves and need no comparison of texts.
  if (word.front() != '*' && word.front() != '1' && word.front() != '0') return false;
  const std::optional<int> code = resultAtStart(word);
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
