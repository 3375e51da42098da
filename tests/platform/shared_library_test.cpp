#include "platform/shared_library.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <string>

#include "temporary_directory.h"

namespace ombrin {
namespace {

namespace fs = std::filesystem;

// The path of the mathematical library that this very program has loaded.
std::string loadedLibrary() {
  std::ifstream maps("/proc/self/maps");
  for (std::string line; std::getline(maps, line);) {
    const std::size_t name = line.find('/');
    if (name != std::string::npos && line.find("/libm.so") != std::string::npos) {
      return line.substr(name);
    }
  }
  return {};
}

class SharedLibraryTest : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_FALSE(original_.empty());
    fs::create_symlink(original_, "own.so");
  }

  const TemporaryDirectory directory_;
  const std::string original_ = loadedLibrary();
};

TEST_F(SharedLibraryTest, ANameIsAPath) {
  for (const std::string& path : {std::string("own.so"), (directory_.path() / "own.so").string()}) {
    SharedLibrary library;
    ASSERT_TRUE(library.open(path)) << path;
    auto* const cosine = library.function<double(double)>("cos");
    ASSERT_NE(cosine, nullptr);
    EXPECT_EQ(cosine(1.5), std::cos(1.5));
    EXPECT_EQ(library.function<void()>("no_such_function"), nullptr);
  }
}

TEST_F(SharedLibraryTest, NothingIsOpenAfterAFailureOrAClose) {
  SharedLibrary library;
  const std::string systemName = fs::path(original_).filename();
  for (const std::string& path : {systemName, std::string(), std::string(".")}) {
    ASSERT_TRUE(library.open("own.so"));
    EXPECT_FALSE(library.open(path)) << path;
    EXPECT_FALSE(library.isOpen());
    EXPECT_EQ(library.function<double(double)>("cos"), nullptr);
  }
  ASSERT_TRUE(library.open("own.so"));
  library.close();
  EXPECT_FALSE(library.isOpen());
}

}  // namespace
}  // namespace ombrin
