// A session under the WinBoard protocol.
#include "session.h"

using namespace ombrin;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static constexpr std::string_view WORDS[] = {
      "\nnew",         "\nsetboard",
      "\nforce",       "\nping",
      "\ntime",        "\notim",
      "\nst",          "\nsd",
      "\nsd 3",        "\ngo",
      "\nusermove",    "\nundo",
      "\nremove",      "\n?",
      "\ndraw",        "\nresult",
      "\neasy",        "\nhard",
      "\npost",        "\nnopost",
      "\nanalyze",     "\nexit",
      "\npause",       "\nresume",
      "\nlevel",       "\nlevel 40 0:01 0",
      "\nlevel 0 5 1", "\nmemory",
      "\ncores",       "\nvariant normal",
      "\nprotover 2",  "\nrejected",
      "\nxboard",      "\n.",
      "\n!\n",         "\nusermove e2e4",
  };
  silence();
  playSession("xboard\n", SessionText(WORDS), textOf(data, size));
  return 0;
}
