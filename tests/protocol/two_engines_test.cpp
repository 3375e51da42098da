#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <string>

#include "protocol/uci_front_end.h"
#include "util/log.h"

namespace ombrin {
namespace {

// An engine that writes what it says into a file of its own.
struct UciEngine {
  using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

  explicit UciEngine(int threads) {
    search.setThreads(threads);
    search.boot();
  }

  void handle(const char* command, const char* arguments = "") {
    const auto lock = control.lockGame();
    uci.handleLine(command, arguments);
  }
  // A search waits for the one before it.
  void waitForEnd() { search.setThreads(search.threadCount()); }
  std::string said() {
    std::string text(static_cast<std::size_t>(std::ftell(file.get())), '\0');
    std::rewind(file.get());
    text.resize(std::fread(text.data(), 1, text.size(), file.get()));
    return text;
  }

  Tt tt{256};
  Bitbases bitbases;
  SearchController search{tt, bitbases};
  EngineControl control{search};
  Game game;
  BookFile book{game.board()};
  BookPicker picker{book};
  File file{std::tmpfile(), &std::fclose};
  FileOutputStream output{file.get()};
  UciFrontEnd uci{control, game, picker, output};
};

TEST(TwoEngines, SearchSideBySideInOneProcess) {
  logFile = nullptr;
  {
    UciEngine white(1);
    UciEngine black(2);
    white.handle("position", "fen 6k1/5ppp/8/8/8/8/5PPP/4R1K1 w - -");
    black.handle("position", "fen 4r1k1/5ppp/8/8/8/8/5PPP/6K1 b - -");
    white.handle("go", "depth 3");
    black.handle("go", "depth 3");
    white.waitForEnd();
    black.waitForEnd();
    EXPECT_NE(white.said().find("bestmove e1e8\n"), std::string::npos);
    EXPECT_NE(black.said().find("bestmove e8e1\n"), std::string::npos);
  }
  logFile = stdout;
}

}  // namespace
}  // namespace ombrin
