#include "pgn/pgn_reader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <random>
#include <span>
#include <string>
#include <vector>

namespace ombrin {
namespace {

// A text in memory, read in pieces of one size.
class TextSource : public ByteSource {
 public:
  TextSource(std::string text, std::size_t piece) : text_(std::move(text)), piece_(piece) {}

  std::size_t read(std::span<char> room) override {
    const std::size_t count = std::min({room.size(), piece_, text_.size() - taken_});
    std::copy_n(text_.data() + taken_, count, room.data());
    taken_ += count;
    return count;
  }
  std::uint64_t consumed() const override { return taken_; }

 private:
  std::string text_;
  std::size_t piece_;
  std::size_t taken_ = 0;
};

class Collection {
 public:
  explicit Collection(const std::string& text, std::size_t piece = SIZE_MAX)
      : source_(text, piece) {}

  const PgnGame* next() { return reader_.readGame(); }
  std::uint32_t lineCount() const { return reader_.lineCount(); }
  std::string problem() const { return lines_.problem(); }

  // What is left, one text per game: the moves, a colon, the result code.
  std::vector<std::string> rest() {
    std::vector<std::string> games;
    while (const PgnGame* game = next()) {
      std::string text;
      for (std::size_t i = 0; i < game->moves.size(); ++i) {
        text += std::string(game->moves[i]) + ' ';
      }
      games.push_back(text + ':' + std::to_string(game->result));
    }
    return games;
  }

 private:
  TextSource source_;
  LineReader lines_{source_};
  PgnReader reader_{lines_};
};

using Games = std::vector<std::string>;

TEST(PgnReader, ReadsMoveTextAsTolerantlyAsCollectionsNeed) {
  const struct {
    const char* what;
    std::string text;
    Games games;
  } cases[] = {
      {"an empty file", "", {}},
      {"comment, variation, numbers, glyph",
       "1.e4 {best by test} e5 (1... c5 2. Nf3) 2. Nf3 $1 2...Nc6 1-0\n",
       {"e4 e5 Nf3! Nc6 :2"}},
      {"every glyph, and codes without one",
       "$1 e4 $1 e5 $2 d4 $3 d5 $4 c4 $5 c5 $6 h3 $0 h6 $7 $139 a3 $2 $1 $x 1/2-1/2",
       {"e4! e5? d4!! d5?? c4!? c5?! h3 h6! a3?! $x :1"}},
      {"a comment over lines",
       "e4 {one\ntwo\n\n[Event \"no tag\"]\nthree} e5 {x}d4 0-1",
       {"e4 e5 d4 :3"}},
      {"what is glued to a move", "e4{a b}e5;c\nNf3$1$10(Nc3)Nc6$2 1-0", {"e4 e5 Nf3!! Nc6? :2"}},
      {"glyphs on their own", "e4 ! e5 ?! *", {"e4! e5?! :0"}},
      {"an unclosed comment swallows the rest", "e4 {e5\n\n[Event \"x\"]\n\nd4 1-0\n", {"e4 :0"}},
      {"nested variations", "e4 (d4 (c4 c5) d5) e5 ((a) b) Nf3 *", {"e4 e5 Nf3 :0"}},
      {"a variation over lines", "e4 (d4 d5\n(c4\n\nc5) -- Nf3) e5 *", {"e4 e5 :0"}},
      {"comments inside variations", "e4 (d4 {why) not\n(} d5 ; no)\n% no)\n) e5 *", {"e4 e5 :0"}},
      {"an open variation ends with its game", "e4 (d4\n[Event \"b\"]\n\nc4 *", {"e4 :0", "c4 :0"}},
      {"comments to the end of the line", "e4 ; {e5\n% x\n%\ne5 % *", {"e4 e5 % :0"}},
      {"what has no beginning", "e4) e5} *", {"e4 e5 :0"}},
      {"evaluations and draw offers", "e4 +/= e5 = -+ +0.32 d4 (=) *", {"e4 e5 d4 :0"}},
      {"castling with zeros", "1.0-0 0-0-0+ 10. 0-0! 0-1", {"O-O O-O-O+ O-O! :3"}},
      {"null moves stay", "e4 -- Z0 *", {"e4 -- Z0 :0"}},
      {"en passant", "exd6 e.p. exd6e.p.+ ep fxe3ep *", {"exd6 exd6 fxe3 :0"}},
      {"figurines",
       "1.\xe2\x99\x98"
       "f3 \xe2\x99\x9f"
       "e5 e8=\xe2\x99\x95\xef\xb8\x8e+ \xe2\x89\xa5 *",
       {"Nf3 e5 e8=Q+ \xe2\x89\xa5 :0"}},
      {"variations of any depth", "e4 " + std::string(100000, '(') + " e5 *", {"e4 :0"}},
      {"tabs, blanks, carriage returns",
       "  \te4\t\te5   d4\r\n\r\n\td5 1-0\r\n",
       {"e4 e5 d4 d5 :2"}},
      {"no blank line between games, or several",
       "[Event \"a\"]\n\ne4 1-0\n[Event \"b\"]\n\nd4 0-1\n\n\n[Event \"c\"]\n\n\nc4 *\n\n\n",
       {"e4 :2", "d4 :3", "c4 :0"}},
      {"tags only", "[Result \"1-0\"]\n[Event \"b\"]\n", {":2"}},
      {"byte-order marks, of a file put together of several, too",
       "\xef\xbb\xbf[Result \"1-0\"]\n\ne4 1-0\n\xef\xbb\xbf[Result \"0-1\"]\n\nd4 "
       "0-1\n\xef\xbb\xbf",
       {"e4 :2", "d4 :3"}},
      {"a result token decides when the tag does not", "[Result \"*\"]\n\ne4 1-0", {"e4 :2"}},
      {"but not against the tag", "[Result \"1-0\"]\n\ne4 0-1", {"e4 :2"}},
      {"a token that begins with a result is one; 1/2 is not",
       "e4 1/2-1/2xyz 1/2 1-",
       {"e4 /2 :1"}},
  };
  for (const auto& example : cases) {
    EXPECT_EQ(Collection(example.text).rest(), example.games) << example.what;
  }
}

// However a text arrives and its lines end, the games are the same.
TEST(PgnReader, ReadsAnyLineEndsInAnyPieces) {
  const std::string text =
      "\xef\xbb\xbf[Event \"a\"]\n[Result \"1-0\"]\n\n1. e4 {x\n\ny} e5\n2. Nf3 ; c\nNc6\n1-0\n\n"
      "[Event \"b\"]\n\nd4\n\xef\xbb\xbf[Event \"c\"]\n\nc4 *";
  const Games games = {"e4 e5 Nf3 Nc6 :2", "d4 :0", "c4 :0"};
  for (const std::string end : {"\n", "\r\n", "\r"}) {
    std::string variant;
    for (const char c : text) variant += c == '\n' ? end : std::string(1, c);
    for (const std::size_t piece : {std::size_t{1}, std::size_t{2}, std::size_t{7}, SIZE_MAX}) {
      Collection collection(variant, piece);
      EXPECT_EQ(collection.rest(), games) << piece;
      EXPECT_EQ(collection.lineCount(), 16U) << piece;
    }
  }
}

TEST(PgnReader, RefusesUtf16ByName) {
  for (const std::string start : {"\xff\xfe[", "\xfe\xff", "["}) {
    Collection collection(start + std::string(1, '\0') + "E");
    EXPECT_TRUE(collection.rest().empty());
    EXPECT_NE(collection.problem().find("UTF-16"), std::string::npos);
  }
  EXPECT_EQ(Collection("[Event").problem(), "");
}

TEST(PgnReader, EndsACommentOfAThousandLinesBeforeTheNextGame) {
  const auto collection = [](int lines) {
    std::string text = "[Event \"a\"]\n\ne4 {open\n[Event \"inside\"]\n";
    for (int i = 2; i < lines; ++i) text += "[%eval 0]\n";
    return Collection(text + "[Event \"b\"]\n\nd4 *\n");
  };
  EXPECT_EQ(collection(1000).rest(), Games{"e4 :0"});
  EXPECT_EQ(collection(1001).rest(), (Games{"e4 :0", "d4 :0"}));
  Collection swallowed = collection(1001);
  EXPECT_EQ(swallowed.next()->warning, "a comment is open for more than 1000 lines");
  EXPECT_EQ(swallowed.next()->warning, "");
}

TEST(PgnReader, StoresTags) {
  Collection collection(
      "[Event \"M\xfcnchen (open) \\\"A\\\"\"]\n[Site   \"X\"]\n[Date \"1\"]\n[EventDate \"2\"]\n"
      "[Round \"3.1\"]\n[White \"A, B\"]\n[Black \"\"]\n[WhiteElo \" 2401x\"]\n"
      "[BlackElo \"99999999999\"]\n[ECO \"A00\"]\n[FEN \"8/8\"]\n[WhiteTitle \"GM\"]\n"
      "[event \"small\"]\n[Site]\n[Site \"unclosed\n\ne4 1-0\n[Event \"second\"]\n");
  const auto tags = [](const PgnGame* game) {
    return game->event + '|' + game->site + '|' + game->date + '|' + game->round + '|' +
           game->white + '|' + game->black + '|' + std::to_string(game->whiteElo) + '|' +
           std::to_string(game->blackElo) + '|' + game->eco + '|' + game->fen;
  };
  const PgnGame* game = collection.next();
  ASSERT_NE(game, nullptr);
  EXPECT_EQ(tags(game), "M\xfcnchen (open) \\|unclosed|2|3.1|A, B||2401|2147483647|A00|8/8");
  EXPECT_EQ(collection.lineCount(), 17U);

  game = collection.next();
  ASSERT_NE(game, nullptr);
  EXPECT_EQ(tags(game), "second||||||0|0||");
  EXPECT_EQ(game->result, NO_RESULT);
  EXPECT_TRUE(game->moves.empty());
  EXPECT_EQ(collection.lineCount(), 18U);
  EXPECT_EQ(collection.next(), nullptr);
}

TEST(PgnReader, WarnsOfResultsThatMakeNoSense) {
  const struct {
    const char* text;
    std::string warning;
  } cases[] = {
      {"[Result \"1-0\"]\n\ne4 0-1\n", "Warning: mixed results: 0-1 <> 1-0"},
      {"[Result \"won\"]\n\ne4 1-0\n", "invalid result: won\"]"},
      {"[Result \"1-0 (time)\"]\n\ne4 1-0\n", ""},
      {"[Result \"1/2-1/2\"]\n\ne4 *\n", "Warning: mixed results: * <> 1/2-1/2"},
  };
  for (const auto& example : cases) {
    Collection collection(example.text);
    const PgnGame* game = collection.next();
    ASSERT_NE(game, nullptr);
    EXPECT_EQ(game->warning, example.warning);
  }
}

// CR LF counts once.
std::uint32_t linesOf(const std::string& text) {
  std::uint32_t lines = 0;
  char last = '\n';
  for (const char c : text) {
    lines += c == '\r' || (c == '\n' && last != '\r') ? 1 : 0;
    last = c;
  }
  return lines + (last == '\n' || last == '\r' ? 0 : 1);
}

// Whatever is in a file, every line is read once and the reader comes to an end.
TEST(PgnReader, EndsOnDamagedFiles) {
  std::ifstream file(OMBRIN_SOURCE_DIR "/examples/sample.pgn");
  const std::string sound{std::istreambuf_iterator<char>(file), {}};
  ASSERT_EQ(Collection(sound).rest().size(), 12U);
  std::mt19937 random(11);
  for (int round = 0; round < 100; ++round) {
    std::string text = sound;
    for (int damage = 0; damage < 40; ++damage) {
      constexpr std::string_view NASTY = "{}()[]\"$;%\n\r\t *10\0\xff";
      text[random() % text.size()] = NASTY[random() % NASTY.size()];
    }
    text.resize(random() % text.size());
    const std::uint32_t lines = linesOf(text);
    Collection collection(text);
    const std::size_t count = collection.rest().size();
    EXPECT_EQ(collection.lineCount(), lines);
    EXPECT_LE(count, lines);
  }
}

TEST(PgnReader, KeepsNoMoreThanAGameNeeds) {
  MoveTexts moves;
  const std::string text(MoveTexts::MAX_BYTES / 4, 'x');
  for (int i = 0; i < 6; ++i) moves.add(text);
  EXPECT_EQ(moves.size(), 4U);
  moves.appendToLast("!");
  EXPECT_EQ(moves[3], text);
}

}  // namespace
}  // namespace ombrin
