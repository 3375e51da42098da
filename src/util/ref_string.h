// A counted string: copies share one text until one of them changes it.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace ombrin {

// The number of texts alive in the process, shared ones counted once. A diagnostic.
extern std::atomic<std::uint32_t> liveStrings;

// A text of any bytes, NUL included. Copying shares the text; append() on a shared text makes the
// holder a copy of its own first. A RefString belongs to one thread at a time, and so do all that
// share a text with it. One that was moved from may only be assigned to or destroyed. Running out
// of memory ends the process.
class RefString {
 public:
  RefString();                       // empty
  RefString(std::string_view text);  // NOLINT(google-explicit-constructor)
  RefString(const char* text);  // NOLINT(google-explicit-constructor): null gives the empty text

  std::string_view view() const { return *text_; }
  const char* c_str() const { return text_->c_str(); }
  std::size_t length() const { return text_->size(); }
  bool empty() const { return text_->empty(); }
  bool sharesTextWith(const RefString& other) const { return text_ == other.text_; }

  void append(std::string_view more);
  // The bytes from index `from` up to, not including, index min(to, length()); the empty text when
  // `from` is not below that.
  RefString substring(std::size_t from, std::size_t to) const;
  void clear();

  friend bool operator==(const RefString& a, std::string_view b) { return a.view() == b; }

 private:
  std::shared_ptr<std::string> text_;
};

}  // namespace ombrin
