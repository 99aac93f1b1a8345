// The fuzzing targets over their corpus and over random inputs.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <vector>

#include "fuzz/checks.hpp"
#include "ov_sql_executor/support/stack_weights.hpp"

namespace fuzz {
namespace {

using check = void (*)(std::span<const std::uint8_t>);

void replay(const char* target, check checked) {
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

unsigned number_from_environment(const char* name, unsigned otherwise) {
  const char* const asked = std::getenv(name);
  return asked == nullptr ? otherwise : static_cast<unsigned>(std::strtoul(asked, nullptr, 10));
}

// The environment may say how many, and which.
void try_random_inputs(check checked) {
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

TEST(Fuzz, any_plan_keeps_its_promises) {
  replay("any_plan", check_any_plan);
  try_random_inputs(check_any_plan);
}

TEST(Fuzz, equal_plans_have_equal_rows) {
  replay("equal_plans", check_equal_plans);
  try_random_inputs(check_equal_plans);
}

}  // namespace
}  // namespace fuzz
