#include <algorithm>
#include <array>
#include <csignal>
#include <random>
#include <regex>
#include <sstream>

#include "board/fen.h"
#include "board/notation.h"
#include "program/session.h"
#include "support/random_positions.h"

namespace ombrin {
namespace {

constexpr char INI[] = "search.nthreads=1\nwinboard.timegap=0\nwinboard.logdir=logs\n";
constexpr char MOVE[] = "move [a-h][1-8][a-h][1-8][qrbn]?";
constexpr char THINKING[] = R"(\d+ -?\d+ \d+ \d+( [a-h][1-8][a-h][1-8][qrbn]?)+)";

bool matches(const std::string& line, const std::string& pattern) {
  return std::regex_match(line, std::regex(pattern));
}

// The engine in a WinBoard game against a test that knows the rules.
class Winboard : public testing::Test {
 protected:
  Winboard() : session_(INI) {
    session_.send("xboard");
    session_.send("protover 2");
    session_.linesUpTo("feature done=1");
  }

  void send(std::string_view line) { session_.send(line); }
  void newGame() {
    send("new");
    ASSERT_TRUE(setFen(board_, START_FEN));
  }
  Lines ask(std::string_view line) { return session_.askWinboard(line); }

  void setUp(std::string_view fen) {
    ASSERT_TRUE(setFen(board_, fen));
    send("force");
    send("setboard " + writeFen(board_));
  }
  // Plays on our board.
  void play(const std::string& text) {
    const Move move = parseMove(board_, text);
    ASSERT_FALSE(move.isNull()) << text << " in " << writeFen(board_);
    board_.makeRoom();
    makeMove(board_, move);
  }
  // The engine's next move, which must be legal; empty when the game ends without one.
  std::string engineMove() {
    for (;;) {
      const std::string line = session_.line();
      if (testing::Test::HasFailure()) return {};
      // The result of the game before, or of this one?
      if (line.find(" {") != std::string::npos && legalTexts().empty()) return {};
      if (!line.starts_with("move ")) continue;
      EXPECT_TRUE(matches(line, MOVE)) << line;
      play(line.substr(5));
      return line.substr(5);
    }
  }
  // The move that the engine ponders on, from a thinking line.
  std::string ponderedMove() {
    for (;;) {
      const std::string line = session_.line();
      if (testing::Test::HasFailure()) return {};
      if (!matches(line, THINKING)) continue;
      std::istringstream words(line);
      std::string word;
      for (int i = 0; i < 5; ++i) words >> word;
      return word;
    }
  }
  Lines legalTexts() {
    Lines texts;
    for (const Move move : legalMoves(board_)) texts.push_back(moveToCoordinates(move));
    return texts;
  }
  // The game as the engine has it: the position in the log after a move in force mode.
  std::string log() const { return session_.fileText("logs/ombrin-0000.log"); }

  Session session_;
  Board board_;
};

TEST_F(Winboard, ListsItsFeatures) {
  Session session;
  session.ask("");
  session.askWinboard("xboard");
  EXPECT_EQ(joined(session.askWinboard("protover 2")),
            "feature done=0\nfeature ping=1\nfeature setboard=1\nfeature usermove=1\n"
            "feature myname=\"ombrin-0.5c\"\nfeature analyze=1\nfeature variants=\"normal\"\n"
            "feature colors=0\nfeature ics=1\nfeature name=1\nfeature pause=1\nfeature smp=1\n"
            "feature memory=1\nfeature egt=0\nfeature time=1\nfeature debug=1\nfeature "
            "sigint=0\nfeature sigterm=1\nfeature done=1\n");
}

TEST_F(Winboard, AnswersInFixedWords) {
  const struct {
    const char* command;
    const char* answer;
  } cases[] = {
      {"ping 7", "pong 7\n"},
      {"ping", "pong 0\n"},
      {"variant normal", ""},
      {"variant atomic", "tellusererror variant not supported: atomic\n"},
      {"setboard 8/8/8/8/8/8/8/8 w - -", "tellusererror Illegal position\n"},
      {"usermove e2e5", "Illegal move: e2e5\n"},
      {"usermove e7e8q", "Illegal move: e7e8q\n"},
      {"undo", "tellusererror cannot undo\n"},
      {"remove", "tellusererror cannot undo\ntellusererror cannot undo\n"},
      {"accepted setboard", ""},
      {"rejected usermove", ""},
      {"level 08 08:08 08", ""},
      {"time nonsense", ""},
      {".", ""},
      {"draw", ""},
      {"result 1/2-1/2 {agreed}", ""},
      {"", ""},
      {"e2e5", "Illegal move: e2e5\n"},
      {"O-O", "Illegal move: O-O\n"},
      {"castle now", "Error (unknown command): castle\n"},
      {"perft 1", "Error (unknown command): perft\n"},
  };
  send("new");
  send("force");
  for (const auto& [command, answer] : cases) {
    std::string lines = joined(ask(command));
    // What the board says about a refusal comes before.
    if (lines.size() > std::string_view(answer).size()) {
      lines = lines.substr(lines.size() - std::string_view(answer).size());
    }
    EXPECT_EQ(lines, answer) << command;
  }
  const std::string text = log();
  EXPECT_NE(text.find("ignored rejected feature usermove\n"), std::string::npos);
  EXPECT_TRUE(std::regex_search(text, std::regex(R"(-->\d{11}:\[_idle_\]: ping 7\n)"
                                                 R"(<--\d{11}:\[_idle_\]: pong 7\n)")));
}

TEST_F(Winboard, MatesAndIsMated) {
  setUp("6k1/5ppp/8/8/8/8/5PPP/4R1K1 w - -");
  send("st 1");
  send("go");
  EXPECT_EQ(joined(session_.linesUpTo("1-0")), "move e1e8\n1-0 {White mates}\n");
  setUp("4r1k1/5ppp/8/8/8/8/5PPP/6K1 b - -");
  send("go");
  EXPECT_EQ(joined(session_.linesUpTo("0-1")), "move e8e1\n0-1 {Black mates}\n");
  // The fool's mate, against the engine.
  send("new");
  send("force");
  for (const char* move : {"f2f3", "e7e5", "g2g4"}) send(std::string("usermove ") + move);
  send("usermove d8h4");
  send("go");
  EXPECT_EQ(session_.line(), "0-1 {Black mates}");
  setUp("7k/8/5KQ1/8/8/8/8/8 w - -");
  send("usermove f6f7");
  send("go");
  EXPECT_EQ(session_.line(), "1/2-1/2 {Stalemate}");
}

TEST_F(Winboard, PlaysWholeGamesToTheirEnd) {
  // The engine has both sides in turn, down to the mate.
  setUp("7k/8/8/8/8/8/R7/1R5K w - -");
  for (int ply = 0; ply < 60; ++ply) {
    send("time 100");
    send("go");
    const std::string line = session_.waitFor("move ");
    play(line.substr(5));
    if (legalTexts().empty()) break;
    send("force");
  }
  EXPECT_TRUE(legalTexts().empty());
  EXPECT_EQ(session_.line(), "1-0 {White mates}");
}

TEST_F(Winboard, PondersOnTheExpectedMove) {
  newGame();
  send("hard");
  send("post");
  send("time 1000");
  play("e2e4");
  send("usermove e2e4");
  int hits = 0;
  for (int round = 0; round < 2; ++round) {
    engineMove();
    const std::string expected = ponderedMove();
    play(expected);
    send("usermove " + expected);
    ++hits;
  }
  engineMove();
  // And once another one, in algebraic notation.
  const std::string expected = ponderedMove();
  Lines texts = legalTexts();
  std::erase(texts, expected);
  play(texts.front());
  send("usermove " + texts.front());
  EXPECT_FALSE(engineMove().empty());
  const std::string text = log();
  std::size_t found = 0;
  for (std::size_t at = 0; (at = text.find("]: ponderhit\n", at)) != std::string::npos; ++at)
    ++found;
  EXPECT_EQ(found, static_cast<std::size_t>(hits));
  EXPECT_NE(text.find("stop(): undo pondermove"), std::string::npos);
}

TEST_F(Winboard, TellsPonderedPromotionsApart) {
  // Black moves its king, and White's only sensible reply is to promote.
  const struct {
    const char* reply;
    bool hit;
  } cases[] = {{"e7e8", true}, {"e7e8q", true}, {"e8=Q+", true}, {"e7e8n", false}};
  for (const auto& [reply, hit] : cases) {
    Session session(INI);
    session.send("xboard");
    session.send("hard");
    session.send("post");
    session.send("time 100");
    session.send("setboard 8/4P3/8/8/8/k7/p7/K7 b - -");
    session.send("go");
    session.waitFor("move a3");
    // Thinking lines of the ponder search begin with the move that it is about.
    std::string line;
    do {
      line = session.line();
    } while (!matches(line, THINKING) || line.find(" e7e8q") == std::string::npos);
    session.send(std::string("usermove ") + reply);
    session.waitFor("move ");
    EXPECT_EQ(session.fileText("logs/ombrin-0000.log").find("]: ponderhit\n") != std::string::npos,
              hit)
        << reply;
  }
}

TEST_F(Winboard, TakesMovesBack) {
  newGame();
  send("level 0 5 0");
  send("time 30000");
  send("usermove e2e4");
  send("undo");  // while it thinks
  EXPECT_TRUE(contains(ask("undo"), "tellusererror cannot undo"));
  send("hard");
  send("time 300");
  play("d2d4");
  send("usermove d2d4");
  engineMove();
  send("remove");  // while it ponders
  EXPECT_TRUE(contains(ask("undo"), "tellusererror cannot undo"));
  // Captures, castling, promotion and en passant come back as they were.
  setUp("r3k2r/1P6/8/8/5p2/8/4P3/R3K2R w KQkq -");
  const std::string before = writeFen(board_);
  // A GUI that passes over the features sends moves by themselves.
  const Lines moves = {"usermove b7a8q", "usermove e8e7", "e2e4", "f4e3", "O-O", "Rh1+", "g1h1"};
  for (const std::string& move : moves) EXPECT_EQ(ask(move).size(), 0U) << move;
  for (std::size_t i = 0; i < moves.size(); ++i) EXPECT_EQ(ask("undo").size(), 0U);
  EXPECT_TRUE(contains(ask("undo"), "tellusererror cannot undo"));
  // All of them are legal again, so castling rights are back too.
  for (const char* move : {"e1c1", "e8g8"})
    EXPECT_EQ(ask(std::string("usermove ") + move).size(), 0U);
}

TEST_F(Winboard, FollowsTheTimeControl) {
  newGame();
  send("level 40 5 0");
  send("time 30000");
  send("sd 1");
  for (int move = 0; move < 3; ++move) {
    const std::string mine = legalTexts().front();
    play(mine);
    send("usermove " + mine);
    engineMove();
  }
  const std::string text = log();
  for (int made = 0; made < 3; ++made) {
    const std::string line = "remaining moves until time control=" + std::to_string(40 - made) +
                             " (nmoved=" + std::to_string(made) + ")\n";
    EXPECT_NE(text.find(line), std::string::npos) << line;
  }
  // 300000 * 1.5 / 41 milliseconds for each of 40 moves, twice that for the first out of book.
  EXPECT_NE(text.find("Nominal search time is 21.95 seconds, infinite=0, timegap=0ms\n"),
            std::string::npos);
  send("time 0");
  ask("");
  EXPECT_NE(log().find("time(): warning no millis left!\n"), std::string::npos);
  // A fixed time stays whatever the clock says.
  send("st 1");
  send("time 100000");
  send("go");
  engineMove();
  EXPECT_NE(log().find("Nominal search time is 1.00 seconds"), std::string::npos);
}

TEST_F(Winboard, CountsFractionsOfSeconds) {
  const struct {
    const char* control;
    const char* logged;
  } cases[] = {
      {"level 40 0:30.5 0.25", "millis=30500, incms=250\n"},
      {"level 0 1 .5", "millis=60000, incms=500\n"},
      {"level 0 0.5 1", "millis=30000, incms=1000\n"},
      {"st 0.1", "Nominal search time is 0.10 seconds"},
  };
  newGame();
  for (const auto& [control, logged] : cases) {
    send("force");
    send(control);
    send("go");
    send("?");
    engineMove();
    EXPECT_NE(log().find(logged), std::string::npos) << control;
  }
}

TEST_F(Winboard, Analyses) {
  newGame();
  send("force");
  send("post");
  send("analyze");
  const auto analysed = [&](const char* first) {
    for (;;) {
      const std::string line = session_.line();
      if (testing::Test::HasFailure()) return false;
      EXPECT_FALSE(line.starts_with("move ")) << line;
      if (!matches(line, THINKING)) continue;
      std::istringstream words(line);
      std::string word;
      for (int i = 0; i < 5; ++i) words >> word;
      // The side to move shows by the rank that its man leaves.
      if (std::string_view(first).find(word[1]) != std::string_view::npos) return true;
    }
  };
  EXPECT_TRUE(analysed("12"));
  const Lines progress = ask(".");
  EXPECT_TRUE(std::any_of(progress.begin(), progress.end(), [](const std::string& line) {
    return matches(line, R"(stat01: \d+ \d+ [1-9]\d* 1?\d 20 [a-h][12][a-h][34])");
  })) << joined(progress);
  send("usermove e2e4");
  EXPECT_TRUE(analysed("78"));
  send("undo");
  EXPECT_TRUE(analysed("12"));
  send("setboard 4k3/4p3/8/8/8/8/8/4K3 b - -");
  EXPECT_TRUE(analysed("78"));
  send("new");
  EXPECT_TRUE(analysed("12"));
  send("exit");
  // In force mode again: the move is made and nothing is thought.
  ask("");
  EXPECT_EQ(ask("usermove e2e4").size(), 0U);
  EXPECT_EQ(ask("usermove e7e5").size(), 0U);
}

TEST_F(Winboard, HintsAtTheReplyThatItExpects) {
  newGame();
  EXPECT_TRUE(ask("hint").empty());
  send("st 600");
  send("sd 4");
  for (const char* pondering : {"easy", "hard"}) {
    send(pondering);
    send("go");
    engineMove();
    const std::string hint = joined(ask("hint"));
    ASSERT_TRUE(hint.starts_with("Hint: ")) << pondering;
    const std::string reply = hint.substr(6, hint.size() - 7);
    EXPECT_TRUE(contains(legalTexts(), reply)) << reply;
    // The expected reply is not on the board yet.
    EXPECT_EQ(joined(ask("hint")), hint);
    send("force");
    EXPECT_TRUE(ask("usermove " + reply).empty());
    play(reply);
  }
}

TEST_F(Winboard, PausesAndResumes) {
  send("new");
  send("time 30000");
  send("usermove e2e4");
  send("pause");
  EXPECT_EQ(ask("time 10").size(), 0U);
  send("resume");
  EXPECT_TRUE(matches(session_.waitFor("move "), MOVE));
}

TEST_F(Winboard, PlaysAtOnceWhenTold) {
  send("new");
  send("level 0 60 0");
  send("time 360000");
  send("usermove e2e4");
  send("?");
  EXPECT_TRUE(matches(session_.waitFor("move "), MOVE));
}

TEST_F(Winboard, LeavesAGameAloneThatSomeoneElseChanged) {
  Session session(INI);
  for (const char* command : {"new", "time 360000", "usermove e2e4", "reset", "?"}) {
    session.ask(command);
  }
  session.ask("setoption name Clear Hash");  // waits for the search to end
  EXPECT_TRUE(contains(session.ask(""), "/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 0"));
}

TEST_F(Winboard, TakesBackWhatOthersPlayed) {
  Session session(INI);
  session.ask("e4 d5 exd5");
  session.ask("Qxd5");
  session.ask("undo");
  session.ask("remove");
  EXPECT_TRUE(contains(session.ask(""), "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq"));
  session.ask("position startpos moves e2e4 d7d5 e4d5");
  session.ask("undo");
  EXPECT_TRUE(contains(session.ask(""), "/ppp1pppp/8/3p4/4P3/8/PPPP1PPP/RNBQKBNR w KQkq - 0 2"));
  session.ask("remove");
  EXPECT_TRUE(contains(session.ask("undo"), "tellusererror cannot undo"));
}

TEST_F(Winboard, IsNotInterruptedBySignals) {
  send("new");
  session_.process().kill(SIGINT);
  EXPECT_TRUE(ask("time 100").empty());
}

TEST_F(Winboard, PlaysFastWhilePondering) {
  // Answers come at once, so that commands meet searches that are ending or beginning.
  newGame();
  send("hard");
  send("post");
  std::mt19937 random(99);
  for (int move = 0; move < 200; ++move) {
    const Lines texts = legalTexts();
    if (texts.empty() || board_.reversiblePlies() > 90) {
      newGame();
      continue;
    }
    std::string mine = texts[random() % texts.size()];
    play(mine);
    send("time 27");  // some ten milliseconds for a move
    const bool takesBack = move % 7 == 3;
    if (takesBack) {
      // A moment of thought on a second move that is then taken back.
      session_.write("otim 27\nusermove " + mine + "\nundo\nusermove " + mine + "\n");
    } else {
      send("usermove " + mine);
    }
    if (engineMove().empty()) {
      EXPECT_TRUE(legalTexts().empty());
      newGame();
    } else if (takesBack) {
      // An answer that was faster than "undo" is what that took back, and our move came twice.
      const Lines late = ask("computer");
      if (std::any_of(late.begin(), late.end(),
                      [](const std::string& line) { return line.starts_with("Illegal move"); })) {
        newGame();
      }
    }
    if (testing::Test::HasFailure()) return;
  }
}

}  // namespace
}  // namespace ombrin
