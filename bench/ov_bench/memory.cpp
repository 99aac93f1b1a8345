#include "memory.hpp"

#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <stdexcept>
#include <string>

#include "engines.hpp"

namespace bench {

namespace {

double status_kilobytes(const std::string& name) {
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;) {
    double kilobytes = 0;
    if (word == name && status >> kilobytes) return kilobytes;
  }
  return 0;
}

[[noreturn]] void measure_in_child(const shape& of, const sample& data, int result) {
  try {
    malloc_trim(0);
    const prepared run = prepare_ov(of, data);
    const double before = status_kilobytes("VmRSS:");
    run();
    const double risen = status_kilobytes("VmHWM:") - before;
    _exit(write(result, &risen, sizeof risen) == sizeof risen ? 0 : 1);
  } catch (...) {
    _exit(1);
  }
}

}  // namespace

double peak_kilobytes(const shape& of, const sample& data) {
  int ends[2];
  if (pipe(ends) != 0) throw std::runtime_error("cannot make a pipe");
  const pid_t child = fork();
  if (child < 0) throw std::runtime_error("cannot start a process");
  if (child == 0) measure_in_child(of, data, ends[1]);
  close(ends[1]);
  double risen = 0;
  const bool is_read = read(ends[0], &risen, sizeof risen) == sizeof risen;
  close(ends[0]);
  waitpid(child, nullptr, 0);
  if (!is_read) throw std::runtime_error(of.name + ": the process that measures memory failed");
  return risen;
}

}  // namespace bench
