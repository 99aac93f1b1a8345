// Runs a check over its corpus and over random inputs.
#ifndef FUZZ_REPLAY_HPP_
#define FUZZ_REPLAY_HPP_

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <span>
#include <vector>

#include "ov_sql_executor/support/stack_weights.hpp"

namespace fuzz {

using check = void (*)(std::span<const std::uint8_t>);

inline void replay(const char* target, check checked) {
  const std::filesystem::path corpus = std::filesystem::path(OV_FUZZ_CORPUS) / target;
  std::size_t files = 0;
  for (const auto& each : std::filesystem::directory_iterator(corpus)) {
    std::ifstream file(each.path(), std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
    checked({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
    ++files;
  }
  EXPECT_GT(files, 0U);
}

inline unsigned number_from_environment(const char* name, unsigned otherwise) {
  const char* const asked = std::getenv(name);
  return asked == nullptr ? otherwise : static_cast<unsigned>(std::strtoul(asked, nullptr, 10));
}

// The environment may say how many, and which.
inline void try_random_inputs(check checked) {
  const unsigned rounds =
      number_from_environment("OV_FUZZ_ROUNDS", ov::sql_executor::stack_weights::guards_frames ? 600 : 3000);
  const unsigned seed = number_from_environment("OV_FUZZ_SEED", std::random_device{}());
  std::fprintf(stderr, "seed %u\n", seed);  // here, since what breaks ends the process
  std::mt19937 random(seed);
  std::vector<std::uint8_t> input;
  for (unsigned round = 0; round < rounds; ++round) {
    input.resize(random() % 400);
    for (std::uint8_t& byte : input) byte = static_cast<std::uint8_t>(random());
    checked(input);
  }
}

}  // namespace fuzz

#endif  // FUZZ_REPLAY_HPP_
