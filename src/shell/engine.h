#pragma once

#include <string>
#include <string_view>

#include "book/book_file.h"
#include "book/book_picker.h"
#include "egbb/bitbases.h"
#include "game/game.h"
#include "protocol/engine_control.h"
#include "protocol/output_stream.h"
#include "protocol/uci_front_end.h"
#include "protocol/winboard_front_end.h"
#include "search/search_controller.h"
#include "search/tt.h"
#include "shell/console.h"
#include "shell/engine_settings.h"
#include "util/ini_file.h"
#include "util/tokenizer.h"

namespace ombrin {

// The whole engine: every object, made in order of dependence and joined here, and the loop that
// hands lines of input to them. Used on one thread, the command thread.
class Engine {
 public:
  Engine() = default;
  Engine(const Engine&) = delete;
  Engine& operator=(const Engine&) = delete;
  ~Engine();

  // Loads the settings of the named file, applies them, starts the search thread, and sets the
  // start position up and shows it. Once, before lines are handled.
  void start(const std::string& iniFile);
  // Reads and handles the lines of standard input until it ends or a command says to leave. A
  // search may still be running then.
  void run();
  void handleLine(std::string_view line);

 private:
  void applySettings(const EngineSettings& settings);
  // As many as there are processors when `threads` is 0.
  void startThreads(int threads);

  IniFile settings_;
  Tt tt_;
  Bitbases bitbases_;
  SearchController search_{tt_, bitbases_};
  EngineControl control_{search_};
  Game game_;
  FileOutputStream output_{stdout};
  BookFile book_{game_.board()};
  BookPicker picker_{book_};
  UciFrontEnd uci_{control_, game_, picker_, output_};
  WinboardFrontEnd winboard_{control_, game_, picker_, output_};
  Console console_{control_, game_, book_, picker_, settings_};
  Tokenizer words_;
};

}  // namespace ombrin
