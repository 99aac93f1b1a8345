// The fuzzing targets over their corpus and over random inputs.
#include "fuzz/replay.hpp"

#include "fuzz/checks.hpp"

namespace fuzz {
namespace {

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
