#include "instructions.hpp"

#include <unistd.h>

#include <array>
#include <cstdio>
#include <memory>
#include <stdexcept>

#include "engines.hpp"

// By this name callgrind knows when to count.
extern "C" __attribute__((noinline)) void ov_bench_counted_run(const bench::prepared* run) { (*run)(); }

namespace bench {

void run_counted(const shape& of, const sample& data, const std::string& engine) {
  prepared run;
  if (engine == "ov") run = prepare_ov(of, data);
  if (engine == "sqlite") run = prepare_sqlite(of, data);
  if (engine == "floor") run = prepare_floor(of, data);
  if (!run) throw std::runtime_error("no engine is called '" + engine + "'");
  run();
  ov_bench_counted_run(&run);
}

std::uint64_t count_instructions(const std::string& shape, std::size_t rows, const std::string& engine) {
  const std::string command =
      "valgrind --tool=callgrind --callgrind-out-file=/dev/null --toggle-collect=ov_bench_counted_run "
      "/proc/" +
      std::to_string(getpid()) + "/exe --rows " + std::to_string(rows) + " --shapes " + shape + " --run-once " +
      engine + " 2>&1";
  const std::unique_ptr<FILE, int (*)(FILE*)> output(popen(command.c_str(), "r"), pclose);
  if (!output) throw std::runtime_error("cannot start valgrind");
  std::array<char, 512> line;
  while (std::fgets(line.data(), static_cast<int>(line.size()), output.get()) != nullptr) {
    const std::string text = line.data();
    const std::size_t at = text.find("Collected : ");
    if (at != std::string::npos) return std::stoull(text.substr(at + 12));
  }
  throw std::runtime_error("valgrind counted nothing; is it installed?");
}

}  // namespace bench
