#include "board/board.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <set>

#include "board/display.h"
#include "board/exchange.h"
#include "board/fen.h"
#include "board/make_move.h"
#include "board/move_generation.h"
#include "board/notation.h"
#include "board/self_check.h"
#include "board/zobrist.h"

namespace ombrin {
namespace {

// What a call prints to standard output.
template <typename Call>
std::string printedBy(Call&& call) {
  testing::internal::CaptureStdout();
  call();
  return testing::internal::GetCapturedStdout();
}

std::string shown(const Board& board, int mode = 0) {
  return printedBy([&] { printBoard(board, stdout, mode); });
}

void play(Board& board, std::initializer_list<const char*> moves) {
  for (const char* text : moves) {
    const Move move = parseMove(board, text);
    ASSERT_FALSE(move.isNull()) << text;
    makeMove(board, move);
  }
}

TEST(Zobrist, HasDistinctNumbersThatNeverChange) {
  std::set<std::uint64_t> distinct(zobrist::Z.begin(), zobrist::Z.end());
  EXPECT_EQ(distinct.size(), zobrist::Z.size());
  EXPECT_FALSE(distinct.count(0));
  std::uint64_t checksum = 0;
  for (const std::uint64_t number : zobrist::Z) checksum = checksum * 31 + number;
  // Book files hold keys made of these numbers: this value must stay.
  EXPECT_EQ(checksum, 5598644918146985756ULL);
}

TEST(Board, RemembersOnlyUsefulEnPassantSquares) {
  Board board;
  ASSERT_TRUE(setFen(board, START_FEN));
  play(board, {"e4"});
  EXPECT_EQ(board.epSquare, 0);
  play(board, {"d5", "e5", "f5"});
  EXPECT_EQ(board.epSquare, 0x55);
}

TEST(Board, ForgetsOldMovesButNoRepetition) {
  Board board;
  ASSERT_TRUE(setFen(board, START_FEN));
  const char* shuffle[] = {"Nf3", "Nf6", "Ng1", "Ng8"};
  std::uint32_t longest = 0;
  for (int ply = 0; ply < 5000; ++ply) {
    board.makeRoom();
    longest = std::max(longest, board.ply);
    play(board, {shuffle[ply % 4]});
    if (ply > 200) {
      ASSERT_EQ(board.hash, board.hashHistory[board.ply - 4]);
    }
  }
  EXPECT_EQ(board.gamePly(), 5000U);
  EXPECT_LE(longest + Board::SEARCH_HEADROOM, static_cast<std::uint32_t>(Board::HISTORY));
  EXPECT_GT(board.reversiblePlies(), 99U);
}

TEST(Fen, RefusesWhatNoGameReachesAndSaysWhy) {
  const struct {
    const char* fen;
    const char* message;
  } cases[] = {
      {"rnbqkbnr/pppppppp/9/8/8/8/PPPPPPPP/RNBQKBNR w", "invalid char in fen: 9"},
      {"8/8/8/8/8/8/8/K6k/8 w", "Illegal FEN: too many rows"},
      {"54k/8/8/8/8/8/8/K7 w", "Illegal FEN: too many files in row 8"},
      {"K6k/8/8/8/8/8/8/8 x", "fen: invalid stm: x"},
      {"8/8/8/8/8/8/8/K7 w", "Illegal FEN: no Black king"},
      {"k6k/8/8/8/8/8/8/K7 w", "Illegal FEN: too many men: k"},
      {"k6P/8/8/8/8/8/8/K7 w", "Illegal FEN: pawn on row 8"},
      {"k7/8/8/8/8/PPPPPPPP/P7/K7 w", "Illegal FEN: too many men: P"},
      {"k7/8/8/8/8/N7/PPPPPPPP/KNN5 w", "Illegal FEN: too many White men promoted"},
      {"1k6/8/8/8/8/8/8/1RK5 w", "Illegal FEN: side not to move is in check"},
      {"k7/1K6/8/8/8/8/8/8 w", "Illegal FEN: side not to move is in check"},
      {"k7/2N5/8/3B4/8/8/8/RK6 b", "Illegal FEN: triple check?!"},
      {"k7/8/8/3B4/8/8/8/RK6 b", "Illegal FEN: double slider attack not possible"},
      {"", "Illegal FEN: no White king"},
  };
  Board board;
  for (const auto& test : cases) {
    EXPECT_EQ(setFen(board, test.fen).error, test.message) << test.fen;
  }
}

TEST(Fen, RepairsWhatItCanDoWithout) {
  const struct {
    const char* fen;
    int rights;
    int epSquare;
    const char* log;
  } cases[] = {
      {"rnbqkbnr/pppppppp/8/8/8/7R/PPPPPPP1/RNBQKBN1 w KQkq -", 14, 0, "castling K invalid\n"},
      {"k7/8/8/8/8/8/8/K7 w Kx -", 0, 0,
       "castling K invalid\nsetFen(): illegal castling char: x\n"},
      {"k7/8/8/8/4P3/8/8/K7 b - e3", 0, 0x24, ""},
      {"k7/8/8/8/8/8/8/K7 b - e5", 0, 0x44, "setFen() ep square on wrong row: 4\n"},
      {"k7/8/8/8/8/8/8/K7 b - a1", 0, 0, "FEN: invalid ep square: 0\n"},
      {"k7/8/8/8/8/8/8/K7 b - i3", 0, 0, "FEN: invalid ep square: 28\n"},
      {"k7/8/8/8/8/8/8/K7 b - - 37x 4;0 more", 0, 0,
       "illegal char in fifty: x\nfenfields: 0 more\n"},
      {"k7/8/8/8/6N1/8/8/K7 w - - 1 1y", 0, 0, "illegal char in move nr: y\n"},
      {"8/8/5k2/8/6N1/8/8/K7 b - -", 0, 0, "fen: pseudo last move=g4g4+\n"},
      {"8/8/8/3k4/4P3/8/8/K7 b - e3", 0, 0x24, "fen: pseudo last move=e2e4+\n"},
      {"8/8/8/k2P4/8/8/3B4/K7 b - d4", 0, 0x33,
       "setFen() ep square on wrong row: 3\nfen: pseudo last move=d2d2+\n"},
  };
  Board board;
  for (const auto& test : cases) {
    const std::string printed = printedBy([&] { EXPECT_TRUE(setFen(board, test.fen)); });
    EXPECT_EQ(printed, test.log) << test.fen;
    EXPECT_EQ(board.rights, test.rights) << test.fen;
    EXPECT_EQ(board.epSquare, test.epSquare) << test.fen;
    EXPECT_EQ(board.hash, board.computeHash()) << test.fen;
  }
}

// Beside what can be written: board_property_test.cpp reads that back.
TEST(Notation, ReadsWhatPeopleType) {
  const std::string start(START_FEN);
  const std::string promoting = "3r4/4P2k/8/8/8/8/8/K7 w - -";
  const std::string capturing = "k7/8/8/3n4/4P3/8/8/K7 w - -";
  const struct {
    std::string fen;
    const char* text;
    const char* move;  // as moveToText writes it; empty for no move
  } cases[] = {
      {start, "Pe4", "e2e4"},
      {start, "e2-e4", "e2e4"},
      {start, "e5", ""},
      {start, "%", ""},
      {start, "", ""},
      {start, "N", ""},
      {start, "OOOO", ""},
      {"4k3/8/8/8/8/8/8/4K2R w K -", "o-o", "O-O"},
      {"4kr2/8/8/8/8/8/8/4K2R w K -", "O-O", ""},
      {"6b1/8/8/3pP3/8/1K6/8/7k w - d6", "exd6", ""},     // lays the king bare
      {"1r6/8/k7/8/4P3/8/8/K4B2 b - e3", "Rb5", "b8b5"},  // the double step uncovered the check
      {promoting, "e7e8", "e7e8=Q"},
      {promoting, "e8R", "e7e8=R"},
      {promoting, "exd8b", "e7xd8=B"},
      {capturing, "ed", "e4xd5"},
  };
  Board board;
  for (const auto& test : cases) {
    ASSERT_TRUE(setFen(board, test.fen));
    const Move move = parseMove(board, test.text);
    EXPECT_EQ(move ? moveToText(move) : "", test.move) << test.text;
  }
  ASSERT_TRUE(setFen(board, "k7/8/8/8/8/5N2/8/KN6 w - -"));
  testing::internal::CaptureStderr();
  EXPECT_TRUE(parseMove(board, "Nd2").isNull());
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "ambiguous move: f3d2 _and_ b1d2\n");
  EXPECT_EQ(printedBy([&] { EXPECT_TRUE(parseMove(board, "0-0").isNull()); }),
            "illegal char in move 0-0: 48\n");
}

TEST(Exchange, SwapsOff) {
  const struct {
    const char* fen;
    const char* move;
    int value;
  } cases[] = {
      {"k7/8/2p5/3n4/4P3/8/8/K7 w - -", "e4xd5", 3},       // defended, and wins a knight
      {"k7/8/2p5/3p4/8/8/3Q4/K7 w - -", "d2xd5", -9},      // queen for a pawn
      {"k7/8/8/3p4/8/8/3Q4/K7 w - -", "d2xd5", 1},         // undefended
      {"8/8/4k3/3p4/8/8/3Q4/K7 w - -", "d2xd5", -9},       // defended by the king
      {"8/8/4k3/3p4/8/8/3Q4/K2R4 w - -", "d2xd5", 1},      // which may not recapture
      {"k2r4/8/8/3p4/8/8/3R4/K2R4 w - -", "d2xd5", 1},     // the rook behind joins
      {"k2r4/3r4/8/3p4/8/8/3R4/K2R4 w - -", "d2xd5", -4},  // behind their rook too
      {"8/8/4k3/3n4/4K3/8/3Q4/8 w - -", "d2xd5", 3},       // nor beside the other king
      {"k2q4/8/5n2/3p4/8/8/3R4/K2R4 w - -", "d2xd5", -4},  // the knight recaptures, not the queen
      {"k7/8/8/8/8/8/3p4/K3N3 b - -", "d2xe1q", 11},       // takes and promotes
      {"k7/8/8/8/8/8/3p4/K4R2 b - -", "d2d1q", -2},        // promotes onto an attacked square
  };
  Board board;
  for (const auto& test : cases) {
    ASSERT_TRUE(setFen(board, test.fen)) << test.fen;
    const Move move = parseMove(board, test.move);
    ASSERT_FALSE(move.isNull()) << test.fen;
    EXPECT_EQ(see(board, board.side, move), test.value) << test.fen << " " << test.move;
  }
}

TEST(Display, DrawsTheBoardWithTheLatestMovesMaterialAndKeys) {
  Board board;
  ASSERT_TRUE(setFen(board, START_FEN));
  play(board, {"e4", "e5", "Nf3"});
  const std::string text = shown(board);
  const std::string top =
      "\n   +---+---+---+---+---+---+---+---+\n"
      " 8 |*r*|*n*|*b*|*q*|*k*|*b*|*n*|*r*|   1. e2e4   e7e5  \n"
      "   +---+---+---+---+---+---+---+---+   2. g1f3   ...\n"
      " 7 |*p*|*p*|*p*|*p*|   |*p*|*p*|*p*|\n";
  EXPECT_EQ(text.substr(0, top.size()), top);
  EXPECT_NE(text.find("+---+  40-40=0 \n     a   b   c   d   e   f   g   h\n\n"
                      "rnbqkbnr/pppp1ppp/8/4p3/4P3/5N2/PPPP1PPP/RNBQKB1R b KQkq - 1 3\n hash="),
            std::string::npos)
      << text;
  EXPECT_NE(shown(board, 1).find(" 1 | 60| 48| 50| 70| 44| 50|  0| 60|"), std::string::npos);
  EXPECT_NE(shown(board, 2).find(" 1 | 6b| 54| 60| 76| 44| 61|  0| 6c|"), std::string::npos);
  EXPECT_EQ(printedBy([&] { printBoard(board, nullptr); }), "");

  ASSERT_TRUE(setFen(board, "k7/8/8/8/8/8/8/KN6 w - -"));
  EXPECT_NE(shown(board).find("+---+  3-0=3  N\n"), std::string::npos);

  ASSERT_TRUE(setFen(board, START_FEN));
  for (int i = 0; i < 10; ++i) play(board, {"Nf3", "Nf6", "Ng1", "Ng8"});
  EXPECT_NE(shown(board).find("|   7. g1f3   g8f6"), std::string::npos) << shown(board);
}

TEST(SelfCheckDeathTest, NamesWhatIsBroken) {
  Board board;
  ASSERT_TRUE(setFen(board, START_FEN));
  checkBoard(board, "sound", NULL_MOVE);
  const auto broken = [](void (*breakIt)(Board&)) {
    Board victim;
    setFen(victim, START_FEN);
    breakIt(victim);
    dup2(2, 1);  // death tests look at standard error
    checkBoard(victim, "label", NULL_MOVE);
  };
  EXPECT_DEATH(broken([](Board& b) { b.at(E1) = EMPTY; }), "label wrong index: sq=4");
  EXPECT_DEATH(broken([](Board& b) { b.hash ^= 1; }), ": hash not ok: label");
  EXPECT_DEATH(broken([](Board& b) { b.WhiteMaterial = Material(); }),
               "label: WhiteMaterial not ok: 0!=71222820");
  EXPECT_DEATH(broken([](Board& b) { b.at(H1) = EMPTY; }), "label: WK: rook!=h1");
}

}  // namespace
}  // namespace ombrin
