// A program run as a child process, spoken to line by line.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ombrin {

// Owns the process; the destructor kills it when it still runs. One thread at a time.
class ChildProcess {
 public:
  using Milliseconds = std::chrono::milliseconds;

  // Starts `command` (a path and its arguments) in `directory` (the current one when empty) with
  // pipes as standard input and output. Standard error goes with standard output when
  // `mergeErrors`, else to /dev/null.
  explicit ChildProcess(const std::vector<std::string>& command, const std::string& directory = "",
                        bool mergeErrors = false);
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;
  ~ChildProcess();

  // False when the program no longer reads.
  bool write(std::string_view text);
  bool send(std::string_view line) { return write(std::string(line) + "\n"); }
  void closeInput();
  void closeOutput();  // nothing can be read any more

  // The next line without its line end; nothing when the deadline passes or the output ends.
  std::optional<std::string> readLine(Milliseconds deadline);
  // Reads lines up to one that begins with `prefix` and returns it.
  std::optional<std::string> waitFor(std::string_view prefix, Milliseconds deadline);
  // Everything up to the end of the output.
  std::string readAll(Milliseconds deadline);

  // The exit status, or 128 plus the signal; nothing when it still runs at the deadline.
  std::optional<int> waitForExit(Milliseconds deadline);
  void kill(int signal) const;

  pid_t pid() const { return pid_; }
  // Resident memory in kilobytes, 0 when unknown.
  long residentKb() const;
  // Processor time used so far, in milliseconds.
  long processorMs() const;
  // How long a process's threads, taken together, have been ready to run and had no processor so
  // far; in milliseconds.
  static long starvedMs(pid_t process);

 private:
  bool fill(std::chrono::steady_clock::time_point deadline);

  pid_t pid_ = -1;
  int input_ = -1;
  int output_ = -1;
  std::string buffer_;
  std::optional<int> status_;
};

}  // namespace ombrin
