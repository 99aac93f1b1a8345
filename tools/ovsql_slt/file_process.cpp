#include "file_process.hpp"

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <sstream>
#include <system_error>
#include <utility>

namespace slt {
namespace {

// A message is a letter and fields that end with zero bytes: F text, or R outcome count place reason.
constexpr char end_of_field = '\0';

[[noreturn]] void fail(const char* what) { throw std::system_error(errno, std::generic_category(), what); }

run_progress* make_shared_progress() {
  void* const memory = mmap(nullptr, sizeof(run_progress), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) fail("mmap");
  return new (memory) run_progress();
}

void write_all(int output, const std::string& message) {
  for (std::size_t done = 0; done < message.size();) {
    const ssize_t written = write(output, message.data() + done, message.size() - done);
    if (written < 0 && errno != EINTR) std::_Exit(EXIT_FAILURE);
    if (written > 0) done += static_cast<std::size_t>(written);
  }
}

class message_reader {
 public:
  explicit message_reader(const std::string& messages) : input_(messages) {}

  void read_into(file_report& report) {
    for (int kind = input_.get(); kind == 'F' || kind == 'R'; kind = input_.get()) {
      kind == 'F' ? report.failures.push_back(field()) : read_reason(report);
    }
  }

 private:
  std::string field() {
    std::string text;
    std::getline(input_, text, end_of_field);
    return text;
  }

  void read_reason(file_report& report) {
    const int of = std::atoi(field().c_str());
    const std::uint64_t count = std::strtoull(field().c_str(), nullptr, 10);
    const std::string place = field();
    const std::string reason = field();
    // A crash may have cut the last message.
    if (!input_.eof()) report.add_reason(static_cast<outcome>(of), reason, count, place);
  }

  std::istringstream input_;
};

}  // namespace

file_process::file_process(std::string path, const std::string& engine, unsigned seconds)
    : path_(std::move(path)), progress_(make_shared_progress()), seconds_(seconds) {
  start(engine, seconds);
}

file_process::file_process(file_process&& other) noexcept
    : path_(std::move(other.path_)),
      progress_(std::exchange(other.progress_, nullptr)),
      descriptor_(std::exchange(other.descriptor_, -1)),
      process_(std::exchange(other.process_, -1)),
      messages_(std::move(other.messages_)),
      seconds_(other.seconds_) {}

file_process::~file_process() {
  if (descriptor_ >= 0) close(descriptor_);
  if (progress_ != nullptr) munmap(progress_, sizeof(run_progress));
}

void file_process::start(const std::string& engine, unsigned seconds) {
  std::array<int, 2> ends{};
  if (pipe(ends.data()) != 0) fail("pipe");
  process_ = fork();
  if (process_ < 0) fail("fork");
  if (process_ == 0) run(engine, seconds, ends[1]);
  close(ends[1]);
  descriptor_ = ends[0];
}

void file_process::run(const std::string& engine, unsigned seconds, int output) {
  alarm(seconds);
  const run_listener listener{[&](const std::string& text) { write_all(output, "F" + text + end_of_field); },
                              [&](outcome of, const std::string& reason, const reason_count& known) {
                                write_all(output, "R" + std::to_string(static_cast<int>(of)) + end_of_field +
                                                      std::to_string(known.count) + end_of_field + known.first_place +
                                                      end_of_field + reason + end_of_field);
                              }};
  run_file(path_, engine, *progress_, listener);
  std::_Exit(EXIT_SUCCESS);
}

bool file_process::take() {
  std::array<char, 65536> buffer{};
  const ssize_t count = read(descriptor_, buffer.data(), buffer.size());
  if (count > 0) messages_.append(buffer.data(), static_cast<std::size_t>(count));
  return count > 0 || (count < 0 && errno == EINTR);
}

file_report file_process::report() {
  int status = 0;
  while (waitpid(process_, &status, 0) < 0 && errno == EINTR) {
  }
  file_report report;
  report.counts = progress_->counts;
  message_reader(messages_).read_into(report);
  add_end(report, status);
  return report;
}

void file_process::add_end(file_report& report, int status) const {
  if (WIFEXITED(status) && WEXITSTATUS(status) == EXIT_SUCCESS) return;
  const bool late = WIFSIGNALED(status) && WTERMSIG(status) == SIGALRM;
  const std::string how = WIFSIGNALED(status) ? strsignal(WTERMSIG(status)) : "it exited";
  const std::string reason = late ? "not done after " + std::to_string(seconds_) + " s" : "crashed: " + how;
  const std::string place = path_ + ":" + std::to_string(progress_->line);
  report.add(outcome::error);
  report.add_reason(outcome::error, reason, 1, place);
  report.failures.push_back("error: " + place + ": " + reason);
}

}  // namespace slt
