#include "support/child_process.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

namespace ombrin {

namespace {

using Clock = std::chrono::steady_clock;

void becomeProgram(const std::vector<std::string>& command, const std::string& directory, int in,
                   int out, bool mergeErrors) {
  dup2(in, STDIN_FILENO);
  dup2(out, STDOUT_FILENO);
  if (mergeErrors) {
    dup2(out, STDERR_FILENO);
  } else {
    dup2(open("/dev/null", O_WRONLY), STDERR_FILENO);
  }
  if (!directory.empty() && chdir(directory.c_str()) != 0) _exit(126);
  signal(SIGPIPE, SIG_DFL);
  std::vector<char*> arguments;
  for (const std::string& argument : command) {
    arguments.push_back(const_cast<char*>(argument.c_str()));
  }
  arguments.push_back(nullptr);
  execv(arguments[0], arguments.data());
  _exit(127);
}

}  // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& command, const std::string& directory,
                           bool mergeErrors) {
  signal(SIGPIPE, SIG_IGN);
  std::array<int, 2> toChild;
  std::array<int, 2> fromChild;
  if (pipe2(toChild.data(), O_CLOEXEC) != 0 || pipe2(fromChild.data(), O_CLOEXEC) != 0) return;
  pid_ = fork();
  if (pid_ == 0) becomeProgram(command, directory, toChild[0], fromChild[1], mergeErrors);
  close(toChild[0]);
  close(fromChild[1]);
  input_ = toChild[1];
  output_ = fromChild[0];
}

ChildProcess::~ChildProcess() {
  closeInput();
  closeOutput();
  if (pid_ > 0 && !status_) {
    ::kill(pid_, SIGKILL);
    waitpid(pid_, nullptr, 0);
  }
}

bool ChildProcess::write(std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = ::write(input_, text.data(), text.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    text.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

void ChildProcess::closeInput() {
  if (input_ >= 0) close(input_);
  input_ = -1;
}

void ChildProcess::closeOutput() {
  if (output_ >= 0) close(output_);
  output_ = -1;
}

bool ChildProcess::fill(Clock::time_point deadline) {
  const auto left = std::chrono::ceil<Milliseconds>(deadline - Clock::now()).count();
  pollfd waiting{output_, POLLIN, 0};
  if (poll(&waiting, 1, static_cast<int>(std::max<long>(left, 0))) <= 0) return false;
  std::array<char, 4096> chunk;
  const ssize_t count = read(output_, chunk.data(), chunk.size());
  if (count <= 0) return false;
  buffer_.append(chunk.data(), static_cast<std::size_t>(count));
  return true;
}

std::optional<std::string> ChildProcess::readLine(Milliseconds deadline) {
  const Clock::time_point end = Clock::now() + deadline;
  std::size_t searched = 0;
  for (;;) {
    const std::size_t newline = buffer_.find('\n', searched);
    if (newline != std::string::npos) {
      std::string line = buffer_.substr(0, newline);
      buffer_.erase(0, newline + 1);
      return line;
    }
    searched = buffer_.size();
    if (!fill(end)) return std::nullopt;
  }
}

std::optional<std::string> ChildProcess::waitFor(std::string_view prefix, Milliseconds deadline) {
  const Clock::time_point end = Clock::now() + deadline;
  for (;;) {
    std::optional<std::string> line = readLine(std::chrono::ceil<Milliseconds>(end - Clock::now()));
    if (!line || line->compare(0, prefix.size(), prefix) == 0) return line;
  }
}

std::string ChildProcess::readAll(Milliseconds deadline) {
  const Clock::time_point end = Clock::now() + deadline;
  while (fill(end)) {
  }
  return std::move(buffer_);
}

std::optional<int> ChildProcess::waitForExit(Milliseconds deadline) {
  const Clock::time_point end = Clock::now() + deadline;
  while (!status_) {
    int status = 0;
    if (waitpid(pid_, &status, WNOHANG) == pid_) {
      status_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    } else if (Clock::now() >= end) {
      return std::nullopt;
    } else {
      std::this_thread::sleep_for(Milliseconds(1));
    }
  }
  return status_;
}

void ChildProcess::kill(int signal) const {
  ::kill(pid_, signal);
}

long ChildProcess::residentKb() const {
  std::ifstream file("/proc/" + std::to_string(pid_) + "/status");
  for (std::string line; std::getline(file, line);) {
    if (line.rfind("VmRSS:", 0) == 0) return std::stol(line.substr(6));
  }
  return 0;
}

long ChildProcess::processorMs() const {
  std::ifstream file("/proc/" + std::to_string(pid_) + "/stat");
  std::string text;
  std::getline(file, text);
  std::istringstream fields(text.substr(text.rfind(')') + 2));
  std::string field;
  for (int i = 0; i < 11; ++i) fields >> field;
  long user = 0;
  long system = 0;
  fields >> user >> system;
  return (user + system) * 1000 / sysconf(_SC_CLK_TCK);
}

long ChildProcess::starvedMs(pid_t process) {
  long nanoseconds = 0;
  std::error_code error;
  const std::string tasks = "/proc/" + std::to_string(process) + "/task";
  for (const auto& task : std::filesystem::directory_iterator(tasks, error)) {
    std::ifstream file(task.path() / "schedstat");
    long running = 0;
    long waiting = 0;
    if (file >> running >> waiting) nanoseconds += waiting;
  }
  return nanoseconds / 1000000;
}

}  // namespace ombrin
