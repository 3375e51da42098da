// A bitbase library that answers what a test tells it, and remembers what it was asked.
#pragma once

#include <array>
#include <string>

struct FakeLibrary {
  int loads = 0;
  std::string directory;
  int cacheBytes = 0;
  int mode = 0;

  int heldMen = 5;  // kings included; positions of more men are not found
  int answer = 0;
  int probes = 0;
  std::array<int, 9> lastProbe{};
};

using FakeLibraryFunction = FakeLibrary*();  // "fake_library"
