// Opening books through the program's three interfaces.
#include <signal.h>

#include "program/session.h"

namespace ombrin {
namespace {

constexpr char INI[] =
    "search.nthreads=1\nuci.trace=1\nbook.build.mingames=1\nbook.build.minelo=0\n"
    "book.build.minply=0\nbook.build.minquality=0\nbook.build.minscorew=0\n"
    "book.build.minscoreb=0\nbook.play.mingames=1\nbook.play.minelo=0\nbook.play.minscorew=0\n"
    "book.play.minscoreb=0\n";

class Books : public testing::Test {
 protected:
  Books() : session_(INI) {
    session_.ask("");
    std::ofstream pgn(session_.directory() / "games.pgn");
    for (int game = 0; game < 4; ++game) {
      pgn << "[White \"A\"]\n[Black \"B\"]\n[Result \"1/2-1/2\"]\n"
             "[WhiteElo \"2500\"]\n[BlackElo \"2500\"]\n\n"
             "1. Nf3 Nc6 2. e3 e6 3. a3 1/2-1/2\n\n";
    }
  }
  Lines build() { return session_.ask("buildbook games.pgn"); }

  Session session_;
};

TEST_F(Books, AreBuiltAndShown) {
  const Lines lines = build();
  for (const char* part :
       {"opening games.obk...", "book found: games.obk, ", "criteria: maxply=0", "100.0%  g1f3"}) {
    EXPECT_TRUE(contains(lines, part)) << part << " is not in\n" << joined(lines);
  }
  EXPECT_TRUE(contains(session_.ask("book"), "100.0%  g1f3"));
  EXPECT_TRUE(contains(session_.ask("logbook"), "total moves="));
  EXPECT_TRUE(contains(session_.ask("a4"), "1. a2a4"));
  EXPECT_EQ(joined(session_.ask("book")), "position not in book\n");
}

TEST_F(Books, AreMergedAndLoaded) {
  build();
  std::filesystem::copy(session_.directory() / "games.obk", session_.directory() / "other.obk");
  EXPECT_TRUE(contains(session_.ask("mergebook games.obk other.obk both.obk"), "100.0%  g1f3"));
  EXPECT_TRUE(contains(session_.ask("loadbook both.obk"), "book found: both.obk, "));
  EXPECT_TRUE(contains(session_.ask("book"), "100.0%  g1f3"));
  EXPECT_EQ(joined(session_.ask("loadbook none.obk")), "could not read book file: none.obk\n");
  EXPECT_EQ(joined(session_.ask("book")), "book not open!\n");
}

TEST_F(Books, ExplainTheirCommands) {
  EXPECT_EQ(joined(session_.ask("buildbook")),
            "Usage:\n    buildbook <pgnfile> [inifile [maxgames]]]\n");
  EXPECT_EQ(joined(session_.ask("mergebook one two")),
            "Usage:\n    mergebook <masterbook> <secondarybook> <resultbook>\n");
  for (const char* command : {"book", "logbook"}) {
    EXPECT_EQ(joined(session_.ask(command)), "book not open!\n");
  }
  EXPECT_EQ(session_.ask("loadbook").size(), 0U);
}

TEST_F(Books, AreBuiltFromSeveralSourcesAndBecomePolyglots) {
  const std::filesystem::path directory = session_.directory();
  std::filesystem::create_directory(directory / "more games");
  std::filesystem::copy(directory / "games.pgn", directory / "more games" / "second.pgn");
  session_.ask("buildbook games.pgn \"more games\"");
  EXPECT_TRUE(contains(session_.ask("book"), "g1f3   2710        8 "));
  std::ofstream(directory / "bin.ini") << INI << "book.build.file=games.bin\n";
  const Lines lines = session_.ask("buildbook games.obk bin.ini");
  EXPECT_TRUE(contains(lines, "saved 5 moves")) << joined(lines);
  EXPECT_TRUE(contains(session_.ask("book"), "100.0%  g1f3      0    65535 "));
}

// Standard input gives no games, so the building goes on until the program has to end.
TEST_F(Books, LeaveNothingBehindOnEndRequest) {
  for (const int signal : {SIGTERM, SIGINT}) {
    Session session(INI);
    const auto countFiles = [&session] {
      return std::distance(std::filesystem::directory_iterator(session.directory()), {});
    };
    session.send("buildbook -");
    session.waitFor("processing...");
    EXPECT_EQ(countFiles(), 2);
    session.process().kill(signal);
    EXPECT_EQ(session.exitStatus(), 0);
    EXPECT_EQ(countFiles(), 1);
  }
}

TEST_F(Books, AreOpenedAtTheStart) {
  build();
  Session session(INI + ("book.file=" + (session_.directory() / "games.obk").string() + "\n"));
  EXPECT_TRUE(contains(session.ask(""), "book found: "));
  EXPECT_TRUE(contains(session.ask("book"), "100.0%  g1f3"));
}

TEST_F(Books, PlayAtTheConsole) {
  build();
  session_.ask("md 1");
  EXPECT_TRUE(contains(session_.ask("g"), "picked book move: g1f3"));
  EXPECT_TRUE(contains(session_.ask("g nobook"), "nodes  :"));
  session_.ask("set book 0");
  EXPECT_TRUE(contains(session_.ask("g"), "nodes  :"));
}

TEST_F(Books, PlayUnderUci) {
  build();
  session_.ask("uci");
  const auto answer = [&](const char* position, const char* go = "go movetime 10") {
    session_.send(position);
    session_.send(go);
    const Lines lines = session_.linesUpTo("bestmove");
    const Lines rest = session_.ask("isready");
    return std::pair(lines.back(), contains(rest, "go()...ok [book]"));
  };
  // The book plays, but it does not analyse, and an analysis does not leave it.
  EXPECT_FALSE(answer("position startpos", "go depth 2").second);
  EXPECT_EQ(answer("position startpos"), std::pair(std::string("bestmove g1f3"), true));
  EXPECT_EQ(answer("position startpos moves g1f3"), std::pair(std::string("bestmove b8c6"), true));
  // Out of book, and the book is not asked again in this game, which has passed that position.
  EXPECT_FALSE(answer("position startpos moves e2e4").second);
  EXPECT_FALSE(answer("position startpos moves e2e4 e7e5").second);
  // Another game.
  EXPECT_TRUE(answer("position startpos moves g1f3").second);
  EXPECT_FALSE(answer("position startpos moves e2e4").second);
  session_.send("ucinewgame");
  EXPECT_TRUE(answer("position startpos").second);
  session_.send("setoption name OwnBook value false");
  session_.send("ucinewgame");
  EXPECT_FALSE(answer("position startpos").second);
}

TEST_F(Books, PlayUnderWinboard) {
  build();
  session_.askWinboard("xboard");
  session_.send("new");
  EXPECT_EQ(joined(session_.askWinboard("bk")), " g1f3 100.0%\n\n");
  session_.send("sd 1");
  session_.send("usermove g1f3");
  EXPECT_EQ(session_.waitFor("move "), "move b8c6");
  session_.send("usermove e2e3");
  EXPECT_EQ(session_.waitFor("move "), "move e7e6");
  session_.askWinboard("undo");
  session_.send("go");
  EXPECT_EQ(session_.waitFor("move "), "move e7e6");
}

}  // namespace
}  // namespace ombrin
