#include "threads.hpp"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <thread>

#include "engines.hpp"
#include "ovcoredb/database.hpp"

namespace bench {

namespace {

constexpr int rounds = 60;
constexpr double least_seconds = 0.002;  // of one timing: short, so that some are not disturbed by other programs

double now() { return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count(); }

double seconds_of(const prepared& run, int runs) {
  const double begin = now();
  for (int i = 0; i < runs; ++i) run();
  return (now() - begin) / runs;
}

// So many threads wait here for each other.
class meeting {
 public:
  explicit meeting(int threads) : threads_(threads) {}

  void wait() {
    const int turn = turn_.load();
    if (arrived_.fetch_add(1) % threads_ == threads_ - 1) {
      turn_.fetch_add(1);
    } else {
      while (turn_.load() == turn) std::this_thread::yield();
    }
  }

 private:
  int threads_;
  std::atomic<int> arrived_ = 0;
  std::atomic<int> turn_ = 0;
};

// Threads that do the same work at the same time, each on a context of its own, which it opens.
class team {
 public:
  team(const on_any_context& work, const sample& data, int threads, int runs)
      : work_(work), data_(data), runs_(runs), meeting_(threads), last_(static_cast<std::size_t>(threads)) {}

  // How long it takes until all are done: the least of all rounds.
  double measure() {
    std::vector<std::thread> threads;
    for (double& last : last_) threads.emplace_back([&] { take_part(last); });
    for (std::thread& each : threads) each.join();
    return least_;
  }

 private:
  void take_part(double& last) {
    const ovcoredb::context context(data_.core());
    const prepared run = work_(context.handle());
    run();
    for (int round = 0; round < rounds; ++round) {
      meeting_.wait();
      last = seconds_of(run, runs_);
      meeting_.wait();
      if (&last == last_.data()) least_ = std::min(least_, *std::max_element(last_.begin(), last_.end()));
    }
  }

  const on_any_context& work_;
  const sample& data_;
  int runs_;
  meeting meeting_;
  std::vector<double> last_;  // what each took in this round
  double least_ = 1e9;
};

int runs_of_a_timing(const prepared& run) {
  run();
  return static_cast<int>(std::clamp(least_seconds / std::max(seconds_of(run, 1), 1e-7), 1.0, 10'000.0));
}

}  // namespace

std::vector<double> speed_of_two_threads(const shape& of, const sample& data) {
  const on_any_context work = prepare_ov_for_contexts(of, data);
  const int runs = runs_of_a_timing(work(data.context()));
  std::vector<double> factors;
  for (int i = 0; i < 8; ++i) {
    const double alone = team(work, data, 1, runs).measure();
    const double together = team(work, data, 2, runs).measure();
    factors.push_back(2 * alone / together);
  }
  return factors;
}

}  // namespace bench
