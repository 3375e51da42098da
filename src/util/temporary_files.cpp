#include "util/temporary_files.h"

#include <algorithm>
#include <filesystem>
#include <mutex>
#include <random>
#include <vector>

#include "platform/file_name.h"
#include "platform/new_file.h"

namespace ombrin {

namespace {

// A process that ends has no other way to know what it leaves behind.
struct Registry {
  std::mutex mutex;
  std::vector<std::string> names;
};
Registry& registry() {
  static Registry instance;
  return instance;
}

std::string randomLetters() {
  constexpr std::size_t COUNT = 8;
  constexpr std::string_view LETTERS = "abcdefghijklmnopqrstuvwxyz";
  std::random_device random;
  std::string text;
  while (text.size() < COUNT) text += LETTERS[random() % LETTERS.size()];
  return text;
}

}  // namespace

std::string makeTemporaryFile(std::string_view target) {
  constexpr int TRIES = 100;
  Registry& known = registry();
  const std::lock_guard lock(known.mutex);
  for (int tries = 0; tries < TRIES; ++tries) {
    std::string name = std::string(target) + '.' + randomLetters() + ".tmp";
    const NewFile result = createNewFile(name);
    if (result == NewFile::FAILED) return {};
    if (result == NewFile::EXISTS) continue;
    known.names.push_back(name);
    return name;
  }
  return {};
}

void forgetTemporaryFile(const std::string& name) {
  Registry& known = registry();
  const std::lock_guard lock(known.mutex);
  std::erase(known.names, name);
}

void removeTemporaryFiles() {
  Registry& known = registry();
  known.mutex.lock();
  for (const std::string& name : known.names) {
    std::error_code ignored;
    std::filesystem::remove(pathOf(name), ignored);
  }
}

}  // namespace ombrin
