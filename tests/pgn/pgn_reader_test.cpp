#include "pgn/pgn_reader.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace ombrin {
namespace {

// A collection held in memory.
class Collection {
 public:
  explicit Collection(const std::string& text)
      : stream_(std::tmpfile(), &std::fclose), file_(stream_.get()), reader_(file_) {
    std::fwrite(text.data(), 1, text.size(), stream_.get());
    std::rewind(stream_.get());
  }

  const PgnGame* next() { return reader_.readGame(); }
  std::uint32_t lineCount() const { return reader_.lineCount(); }

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
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> stream_;
  TextFile file_;
  PgnReader reader_;
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
      {"a comment inside a word goes with it", "e4{a b} e5 1-0", {"e4{a b} e5 :2"}},
      {"an unclosed comment swallows the rest", "e4 {e5\n\n[Event \"x\"]\n\nd4 1-0\n", {"e4 :0"}},
      {"nested variations", "e4 (d4 (c4 c5) d5) e5 ((a) b) Nf3 *", {"e4 e5 Nf3 :0"}},
      {"a variation ends with its line", "e4 (d4 d5\nc4) e5 *", {"e4 c4) e5 :0"}},
      {"a comment ends a variation", "e4 (d4 {why) not} d5) e5 *", {"e4 d5) e5 :0"}},
      {"a semicolon is no comment", "e4 ; e5\n% x\n*", {"e4 ; e5 % x :0"}},
      {"evaluations and draw offers", "e4 +/= e5 = -+ +0.32 d4 (=) *", {"e4 e5 d4 :0"}},
      {"castling with zeros is lost, null moves stay", "0-0 -- O-O Z0 *", {"O-O Z0 :0"}},
      {"variations of any depth", "e4 " + std::string(100000, '(') + " e5 *", {"e4 :0"}},
      {"tabs, blanks, carriage returns",
       "  \te4\t\te5   d4\r\n\r\n\td5 1-0\r\n",
       {"e4 e5 d4 d5 :2"}},
      {"no blank line between games, or several",
       "[Event \"a\"]\n\ne4 1-0\n[Event \"b\"]\n\nd4 0-1\n\n\n[Event \"c\"]\n\n\nc4 *\n\n\n",
       {"e4 :2", "d4 :3", "c4 :0"}},
      {"tags only", "[Result \"1-0\"]\n[Event \"b\"]\n", {":2"}},
      {"a byte-order mark costs the first line",
       "\xef\xbb\xbf[Event \"a\"]\n[Result \"1-0\"]\n\ne4 1-0\n",
       {"\xef\xbb\xbf[Event \"a\"] :0", "e4 :2"}},
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
    testing::internal::CaptureStdout();
    const PgnGame* game = collection.next();
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              example.warning.empty() ? "" : "line 3: WARN " + example.warning + "\n");
    ASSERT_NE(game, nullptr);
    EXPECT_EQ(game->warning, example.warning);
  }
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
    std::uint32_t lines = text.empty() || text.back() == '\n' ? 0 : 1;
    for (const char c : text) lines += c == '\n' ? 1 : 0;
    testing::internal::CaptureStdout();
    Collection collection(text);
    const std::size_t count = collection.rest().size();
    testing::internal::GetCapturedStdout();
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
