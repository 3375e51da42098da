#include <cstdio>
#include <cstdlib>
#include <new>

#include "platform/end_request.h"
#include "platform/standard_streams.h"
#include "protocol/end_process.h"
#include "protocol/program_name.h"
#include "shell/engine.h"
#include "util/print.h"

namespace {

void outOfMemory() {
  ombrin::print(stdout, "malloc failed\n");
  std::abort();
}

}  // namespace

int main(int argc, char* argv[]) {
  std::set_new_handler(outOfMemory);
  ombrin::passBytesUnchanged();
  for (std::FILE* stream : {stdout, stdin, stderr}) std::setvbuf(stream, nullptr, _IONBF, 0);
  ombrin::print(stdout, "\n%s-%s\n\n", ombrin::PROGRAM_NAME, ombrin::VERSION);
  if (argc > 2) {
    ombrin::print(stdout, "Usage:  ombrin [inifile]\n");
    return -1;
  }
  ombrin::onEndRequest([](const char* why) { ombrin::endProcess(why); });
  ombrin::Engine engine;
  engine.start(argc > 1 ? argv[1] : "ombrin.ini");
  engine.run();
  ombrin::endProcess();
}
