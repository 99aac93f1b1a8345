#ifndef OVSQL_SLT_FILE_PROCESS_HPP_
#define OVSQL_SLT_FILE_PROCESS_HPP_

#include <sys/types.h>

#include <string>

#include "file_report.hpp"
#include "run_file.hpp"

namespace slt {

// A process that runs one file, so that a crash or an endless loop ends no other file's run. The process writes its
// lists into a pipe and its counts into memory that both share.
class file_process {
 public:
  // Starts the process; the system ends it after some seconds. Throws std::system_error.
  file_process(std::string path, const std::string& engine, unsigned seconds);
  ~file_process();
  file_process(file_process&& other) noexcept;
  file_process& operator=(file_process&&) = delete;

  const std::string& path() const { return path_; }

  // Readable when there is something to take.
  int descriptor() const { return descriptor_; }

  // Reads what has come. Returns false when the process has ended.
  bool take();

  // What came of the file. A crash or running out of time is an error. Requires: the process has ended.
  file_report report();

 private:
  void start(const std::string& engine, unsigned seconds);
  [[noreturn]] void run(const std::string& engine, unsigned seconds, int output);
  void add_end(file_report& report, int status) const;

  std::string path_;
  run_progress* progress_;
  int descriptor_ = -1;
  pid_t process_ = -1;
  std::string messages_;
  unsigned seconds_;
};

}  // namespace slt

#endif  // OVSQL_SLT_FILE_PROCESS_HPP_
