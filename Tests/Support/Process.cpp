#include "Support/Process.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <stdexcept>

namespace kelvane::test {
namespace {

constexpr auto patience = std::chrono::seconds(30);

struct Pipe {
  Pipe() {
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
  }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;
  ~Pipe() {
    ::close(ends[0]);
    closeWriter();
  }

  void closeWriter() {
    if (ends[1] >= 0) ::close(ends[1]);
    ends[1] = -1;
  }

  std::array<int, 2> ends{};
};

pid_t start(const std::vector<std::string>& arguments, const std::string& outputFile, const Pipe& out,
            const Pipe& err) {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  if (outputFile.empty())
    posix_spawn_file_actions_adddup2(&actions, out.ends[1], STDOUT_FILENO);
  else
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, outputFile.c_str(), O_WRONLY, 0);
  posix_spawn_file_actions_adddup2(&actions, err.ends[1], STDERR_FILENO);
  std::vector<std::string> copies = arguments;
  std::vector<char*> pointers;
  for (std::string& argument : copies) pointers.push_back(argument.data());
  pointers.push_back(nullptr);
  pid_t child = 0;
  const int error = ::posix_spawn(&child, pointers[0], &actions, nullptr, pointers.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  if (error != 0) throw std::runtime_error("cannot start " + arguments[0]);
  return child;
}

// Appends what there is to read; false at the end.
bool readSome(int descriptor, std::string& text) {
  std::array<char, 65536> buffer{};
  const ssize_t count = ::read(descriptor, buffer.data(), buffer.size());
  if (count > 0) text.append(buffer.data(), static_cast<std::size_t>(count));
  return count > 0 || (count < 0 && errno == EINTR);
}

// Reads both pipes until both are at their end. Kills the child when that takes too long.
void collect(pid_t child, const Pipe& out, const Pipe& err, ProcessResult& result) {
  using Clock = std::chrono::steady_clock;
  const auto deadline = Clock::now() + patience;
  std::array<pollfd, 2> sources{{{out.ends[0], POLLIN, 0}, {err.ends[0], POLLIN, 0}}};
  while (sources[0].fd >= 0 || sources[1].fd >= 0) {
    const auto rest = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
    if (rest.count() <= 0) {
      ::kill(child, SIGKILL);
      return;
    }
    if (::poll(sources.data(), sources.size(), static_cast<int>(rest.count())) <= 0) continue;
    if (sources[0].revents != 0 && !readSome(sources[0].fd, result.out)) sources[0].fd = -1;
    if (sources[1].revents != 0 && !readSome(sources[1].fd, result.err)) sources[1].fd = -1;
  }
}

}  // namespace

ProcessResult runProcess(const std::vector<std::string>& arguments, const std::string& outputFile) {
  Pipe out;
  Pipe err;
  const pid_t child = start(arguments, outputFile, out, err);
  out.closeWriter();
  err.closeWriter();
  ProcessResult result;
  collect(child, out, err, result);
  int status = 0;
  while (::waitpid(child, &status, 0) < 0 && errno == EINTR) continue;
  result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
  return result;
}

}  // namespace kelvane::test
